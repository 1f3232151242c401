package com.velotra.tv.tavro.services.channellist;

import java.util.ArrayList;
import java.util.LinkedHashSet;
import java.util.List;
import java.util.Set;
import java.util.regex.Matcher;
import java.util.regex.Pattern;

/** Replaces what differs between two sequences without a meaning: the words of a kind, and ids of lists. */
final class KindWords {
    private static final Pattern LIST_ID = Pattern.compile(
            "(?<=0x[1-4]000)\\d|(?<=Id = )\\d+|(?<=recId = |sRecID: )\\d+(?=,)"
                    + "|(?<=_open\\()\\d|(?<=_create\\(\"fs_)\\w+\", \\d|(?<=\")\\d+(?=,)"
                    + "|(?<=\", )\\d(?=\\))");

    private static final String[][] KINDS = {
        {"x_(svl|tsl|nwl|satl)_", "x_KIND_"},
        {"(fs_)(Svl|Tsl|Nwl|satl)_", "$1KIND_"},
        {"0x[1-4](?=000)", "0xK"},
        {"\\b(svl|tsl|nwl|satl)_rec_id", "KIND_rec_id"},
        {"(svl|tsl|nwl|sat)RecId", "KINDRecId"},
        {"\\b(mwdb|sat|svl|tsl|nwl)Id\\b", "id"},
        {"(src|dest)(Mwdb|Sat)Id", "$1Id"},
        {"(get|set|delete|clear)(Mwdb|Sat)Handle", "$1Handle"},
        {"(mwdb|sat)Handle:", "handle:"},
        {"VltTv(Channel|TransportStream|Network|Satellite)", "VltTvKIND"},
        {"^(. )?([DE]) ([*-]): "
                + "(\\[jni_VltTvList_Init\\] ?|\\[NativeVlt(Tv)?\\w+List\\]|\\[NativeVltTvKINDList\\])?", "$1$2 "},
        {"com_velotra_tv_tavro_(channel|transportstream|network|satellite)list_", ""},
        {"com_velotra_tv_tavro_(ch|ts|nw)_list_", ""},
        {"\\[(\\w+)\\]\\[\\d+\\]", "$1"},
        {"getSvlInfo", "getInfo"},
        {"(?i)remove_info", "remove_info"},
        {"[sS]vlIdSvlRecId|[tT]slIdTslRecId|NwlIdNwlRecId|\\bRecId\\b", "IDENTIFIER"},
        {":rec_id:\\d+.*", ":record"},
        {"(ts|nw|sat|ch)List->", "list->"},
        {"\\b(552|724|304|412)\\b", "SIZE"},
        {"returns (byte\\[[1-9]\\d*\\]|VltTvKINDInfo|\\[VltTvKINDInfo.*\\])", "returns RECORDS"},
        {"\\[\\d+\\]", "[N]"},
        {"get_num_recs", "get_num_rec"},
        {"(nwl|satl)To(Network|Satellite)Info", "toInfo"},
        {"setNwlIdNwlRecId|setRecId", "setIDENTIFIER"},
        {"set(Network)?Name", "setName"},
        {"VltTvKINDInfo(Base)?\\.<init>", "INFO"},
        {"(returns |NewStringUTF\\()\"\\d+,\\d+\"", "$1IDENTIFIER"},
        {"JNI: looks up [^;]*; ", "JNI: "},
        {"asks for \\d+ keys", "asks for keys"},
    };

    private static final Pattern[] PATTERNS = new Pattern[KINDS.length];

    static {
        for (int i = 0; i < KINDS.length; i++) {
            PATTERNS[i] = Pattern.compile(KINDS[i][0]);
        }
    }

    private KindWords() {}

    /** The lines with the words of no kind. */
    static List<String> neutral(List<String> lines) {
        List<String> neutral = new ArrayList<>();
        for (String line : lines) {
            String text = line;
            for (int i = 0; i < KINDS.length; i++) {
                text = PATTERNS[i].matcher(text).replaceAll(KINDS[i][1]);
            }
            neutral.add(text);
        }
        return neutral;
    }

    /**
     * The lines of a sequence with letters for list ids: A for the first that the arguments name, and so on. Texts that
     * are arguments and values of records are left out.
     */
    static List<String> withoutIds(NativeSequence sequence) {
        Set<String> ids = new LinkedHashSet<>();
        addIds(ids, sequence.scenario().arguments());
        List<String> order = new ArrayList<>(ids);
        return sequence.lines().stream().map(line -> LIST_ID.matcher(line).replaceAll(id -> {
            int at = order.indexOf(id.group().replaceFirst(".* ", ""));
            return Matcher.quoteReplacement(at < 0 ? id.group() : String.valueOf((char) ('A' + at)));
        })).map(KindWords::withoutValues).toList();
    }

    /** A debug line without the values in it. */
    private static String logTemplate(String line) {
        return line.replaceFirst("(:rec_id|[=:] (?=[^\\[=]*$)).*", "").replaceAll("\\d+", "n");
    }

    private static String withoutValues(String line) {
        if (line.startsWith("JNI: ")) {
            return line.replaceAll("looks up [^;]*(; )?", "").replaceAll("reads (identifier|path) [^;]*", "reads $1")
                    .replaceAll("RecId = ((?![;,] ).)*", "RecId").replaceAll("\\d+", "n");
        }
        return line.startsWith("D ") ? logTemplate(line) : line;
    }

    private static void addIds(Set<String> ids, List<?> arguments) {
        for (Object argument : arguments) {
            if (argument instanceof List<?> list) {
                addIds(ids, list);
            } else if (argument instanceof KeyedValues object && Ledger.hasIdentifier(object)) {
                ids.add(String.valueOf(object.identifier()).replaceFirst(",.*", ""));
            } else if (argument instanceof Integer || argument instanceof String) {
                ids.add(String.valueOf(argument).replaceFirst(",.*", ""));
            }
        }
    }
}
