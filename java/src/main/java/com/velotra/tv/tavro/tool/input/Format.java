package com.velotra.tv.tavro.tool.input;

import java.util.EnumMap;
import java.util.List;
import java.util.Map;
import java.util.regex.Pattern;

/** The formats that can be imported. The content of a file decides its format; its name does not matter. */
public enum Format {
    /**
     * Blocks of {@code KEY = VALUE} lines with a heading in brackets: scan tables and channel lists of the DVBv5 tools.
     */
    DVBV5("\\[.*|[A-Za-z0-9_]+\\s*=.*"),
    /** Scan tables with one line per transponder. */
    LEGACY_SCAN_TABLE("(T2?|C|S[12]?|A)\\s+\\d{4,}(\\s.*)?"),
    /** channels.conf in the form of Debian's vdr. */
    CHANNELS(":.*|[^:]+:\\d+:[^:]*:([A-RT-Z]|S\\d[\\d.]*[EW]):(?:[^:]*:){6,8}[^:]*"),
    /** diseqc.conf in the form of Debian's vdr. */
    DISEQC("S\\d[\\d.]*[EW]\\s+\\d+\\s+[A-Za-z]\\s+\\d+(\\s.*)?|\\d[\\d\\s]*:"),
    /** sources.conf in the form of Debian's vdr. */
    SOURCES("(S\\d[\\d.]*[EW]|[A-RT-Z])\\s+\\D.*");

    /** The supported formats, for messages. */
    public static final String KNOWN =
            "supported: CSV and JSON of an export, DVBv5 tables, one-line scan tables, and vdr's channels.conf, "
            + "sources.conf and diseqc.conf";

    /** A file is binary if one character in this many is a control character. */
    private static final int BINARY_ONE_IN = 20;

    private static final int LOOKED_AT = 8192;

    // Other programs' settings files have headings and values too.
    private static final Pattern DVBV5_KEY = Pattern.compile("(FREQUENCY|DELIVERY_SYSTEM|SERVICE_ID)\\s*=.*");

    private final Pattern line;

    Format(String line) {
        this.line = Pattern.compile(line);
    }

    /**
     * Returns the format of most lines of a source; with equal counts, the first one above.
     *
     * @throws Failure saying what the source is instead
     */
    public static Format of(Source source) {
        if (source.bytes().length > Source.MOST) {
            refuse(source, "it is larger than " + (Source.MOST >> 20) + " MiB");
        }
        ForeignFormat.of(source.bytes()).ifPresent(name -> refuse(source, "it is " + name));
        List<String> lines = source.lines();
        if (isBinary(lines)) {
            refuse(source, "it is a binary file");
        }
        Map<Format, Integer> votes = new EnumMap<>(Format.class);
        boolean empty = true;
        boolean dvbV5 = false;
        boolean channels = false;
        for (String untrimmed : lines) {
            String text = untrimmed.strip();
            if (text.isEmpty() || text.startsWith("#")) {
                continue;
            }
            empty = false;
            dvbV5 = dvbV5 || DVBV5_KEY.matcher(text).matches();
            channels = channels || text.indexOf(':') > 0 && CHANNELS.line.matcher(text).matches();
            for (Format format : values()) {
                if (format.line.matcher(text).matches()) {
                    votes.merge(format, 1, Integer::sum);
                    break;
                }
            }
        }
        if (!dvbV5) {
            votes.remove(DVBV5);
        }
        if (!channels) { // a file with only group headings is not a list
            votes.remove(CHANNELS);
        }
        if (votes.isEmpty()) {
            refuse(source, empty ? "it has nothing but blank lines and comments"
                    : "unknown format; " + KNOWN);
        }
        Format most = DVBV5;
        for (Format format : values()) {
            most = votes.getOrDefault(format, 0) > votes.getOrDefault(most, 0) ? format : most;
        }
        return most;
    }

    private static void refuse(Source source, String reason) {
        throw new Failure("cannot import " + source.name() + ": " + reason);
    }

    private static boolean isBinary(List<String> lines) {
        int looked = 0;
        int controls = 0;
        for (String line : lines) {
            for (int i = 0; i < line.length() && looked < LOOKED_AT; i++, looked++) {
                char character = line.charAt(i);
                controls += Character.isISOControl(character) && character != '\t' && character != '\f' ? 1 : 0;
            }
        }
        return controls > 0 && controls * BINARY_ONE_IN >= looked;
    }
}
