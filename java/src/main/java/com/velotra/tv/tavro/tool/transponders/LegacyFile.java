package com.velotra.tv.tavro.tool.transponders;

import com.velotra.tv.tavro.tool.input.Malformed;
import com.velotra.tv.tavro.tool.input.Place;
import com.velotra.tv.tavro.tool.input.Source;
import com.velotra.tv.tavro.tool.input.SourceText;
import com.velotra.tv.tavro.tool.input.Text;
import java.util.ArrayList;
import java.util.LinkedHashMap;
import java.util.List;
import java.util.Locale;
import java.util.Map;
import java.util.regex.Matcher;
import java.util.regex.Pattern;

/**
 * A scan table with one line per transponder, the predecessor of the DVBv5 tables. The first word is the delivery
 * system, which defines the values that follow. Values at the end may be missing. {@code #} begins a comment.
 *
 * <pre>
 * T   FREQUENCY BANDWIDTH FEC_HP FEC_LP MODULATION MODE GUARD HIERARCHY
 * T2  as T, then the PLP id
 * S   FREQUENCY POLARIZATION SYMBOL_RATE FEC
 * S2  as S, then ROLLOFF MODULATION STREAM_ID
 * C   FREQUENCY SYMBOL_RATE FEC MODULATION
 * A   FREQUENCY MODULATION
 * </pre>
 */
public final class LegacyFile {
    private record System(String name, List<String> keys) {}

    private static final List<String> SATELLITE =
            List.of("FREQUENCY", "POLARIZATION", "SYMBOL_RATE", "INNER_FEC", "ROLLOFF", "MODULATION", "STREAM_ID");
    private static final List<String> TERRESTRIAL = List.of(
            "FREQUENCY", "BANDWIDTH_HZ", "CODE_RATE_HP", "CODE_RATE_LP", "MODULATION",
            "TRANSMISSION_MODE", "GUARD_INTERVAL", "HIERARCHY", "STREAM_ID");

    private static final Map<String, System> SYSTEMS = Map.of(
            "T", new System("DVBT", TERRESTRIAL.subList(0, 8)),
            "T2", new System("DVBT2", TERRESTRIAL),
            "C", new System("DVBC/ANNEX_A", List.of("FREQUENCY", "SYMBOL_RATE", "INNER_FEC", "MODULATION")),
            "S", new System("DVBS", SATELLITE.subList(0, 4)),
            "S1", new System("DVBS", SATELLITE),
            "S2", new System("DVBS2", SATELLITE),
            "A", new System("ATSC", List.of("FREQUENCY", "MODULATION")));

    private static final Map<String, String> POLARIZATION =
            Map.of("H", "HORIZONTAL", "V", "VERTICAL", "L", "LEFT", "R", "RIGHT");

    private static final Pattern BLANKS = Pattern.compile("\\s+");
    private static final Pattern FREQUENCY = Pattern.compile("\\d{1,18}");
    private static final Pattern BANDWIDTH = Pattern.compile("(\\d{1,2})(?:\\.(\\d{1,3}))?MHz");
    private static final Pattern NUMBER_FIRST = Pattern.compile("(\\d+)(PSK|APSK|VSB|QAM)"); // 8PSK
    private static final Pattern NUMBER_LAST = Pattern.compile("(PSK|APSK|VSB|QAM)(\\d+)"); // QAM64

    private final String position;
    private final List<Transponder> transponders = new ArrayList<>();
    private final List<Malformed> malformed = new ArrayList<>();

    private LegacyFile(String position) {
        this.position = position;
    }

    /** Reads a file. Malformed lines are collected, not thrown. */
    public static LegacyFile read(Source source) {
        LegacyFile file = new LegacyFile(DvbV5File.positionIn(source.fileName()));
        file.malformed.addAll(
                SourceText.read(source, (place, line) -> file.take(place, SourceText.withoutComment(line).strip())));
        return file;
    }

    /** Returns the transponders of the file. */
    public List<Transponder> transponders() {
        return transponders;
    }

    /** Returns the malformed lines. */
    public List<Malformed> malformed() {
        return malformed;
    }

    private void take(Place place, String line) {
        if (line.isEmpty()) {
            return;
        }
        String[] words = BLANKS.split(line);
        System system = SYSTEMS.get(words[0]);
        if (system == null) {
            throw new IllegalArgumentException("delivery system " + Text.excerpt(words[0])
                    + " is not T, T2, C, S, S1, S2 or A");
        }
        if (words.length < 2 || !FREQUENCY.matcher(words[1]).matches()) {
            throw new IllegalArgumentException(Text.excerpt(line) + " has no frequency after its delivery system");
        }
        if (words.length - 1 > system.keys.size()) {
            throw new IllegalArgumentException(
                    Text.excerpt(line) + " has " + (words.length - 1) + " values; " + words[0] + " takes at most "
                            + system.keys.size());
        }
        Map<String, String> values = new LinkedHashMap<>();
        for (int i = 1; i < words.length; i++) {
            String key = system.keys.get(i - 1);
            values.put(key, value(key, words[i]));
        }
        values.put("DELIVERY_SYSTEM",
                words[0].equals("A") ? Transponder.atscSystem(values.getOrDefault("MODULATION", "")) : system.name);
        transponders.add(new Transponder(place, "", position, values));
    }

    /**
     * Returns a value under its DVBv5 name. A value without one is returned unchanged, and reported when it is mapped.
     */
    private static String value(String key, String word) {
        return switch (key) {
            case "POLARIZATION" -> POLARIZATION.getOrDefault(word, word);
            case "TRANSMISSION_MODE" -> word.toUpperCase(Locale.ROOT);
            case "MODULATION" -> modulation(word);
            case "BANDWIDTH_HZ" -> bandwidth(word);
            default -> word;
        };
    }

    private static String modulation(String word) {
        Matcher first = NUMBER_FIRST.matcher(word);
        if (first.matches()) {
            return first.group(2) + "/" + first.group(1);
        }
        Matcher last = NUMBER_LAST.matcher(word);
        return last.matches() ? last.group(1) + "/" + last.group(2) : word;
    }

    private static String bandwidth(String word) {
        Matcher matcher = BANDWIDTH.matcher(word);
        if (!matcher.matches()) {
            return word;
        }
        String thousandths = ((matcher.group(2) == null ? "" : matcher.group(2)) + "000").substring(0, 3);
        return Integer.toString(Integer.parseInt(matcher.group(1) + thousandths) * 1000);
    }
}
