package com.velotra.tv.tavro.tool.satellites;

import com.velotra.tv.tavro.services.channellist.OrbitalPosition;
import com.velotra.tv.tavro.tool.input.Malformed;
import com.velotra.tv.tavro.tool.input.Source;
import com.velotra.tv.tavro.tool.input.SourceText;
import com.velotra.tv.tavro.tool.input.Text;
import java.util.ArrayList;
import java.util.LinkedHashMap;
import java.util.List;
import java.util.Map;
import java.util.regex.Matcher;
import java.util.regex.Pattern;

/**
 * A file in the diseqc.conf format of Debian's vdr package. A line has a satellite position, the frequency in MHz up to
 * which the line applies, a polarization (V, H, L or R), the local oscillator in MHz and commands:
 *
 * <pre>
 * t T      22 kHz tone off, on
 * v V      13 V, 18 V
 * A B      tone burst A, B
 * [E0 …]   DiSEqC command of up to six bytes
 * Sn       the following command is a single-cable command for bank n
 * Pn       positioner
 * Wn       wait n ms
 * </pre>
 *
 * A line of numbers and a colon restricts the following lines to certain devices. Blank lines and lines that begin with
 * {@code #} are ignored.
 */
final class DiseqcConf {
    /**
     * The commands for one band and polarization.
     *
     * @param upTo end of the band in MHz; the last band ends above all transponders
     * @param polarization V, H, L or R
     * @param oscillator in MHz, 16 bits
     * @param commands as written in the file
     */
    record Sequence(int upTo, char polarization, int oscillator, List<String> commands) {}

    private static final Pattern COMMAND = Pattern.compile("\\[[^\\]]*\\]?|[^\\s\\[]+");
    private static final Pattern KNOWN = Pattern.compile(
            "[tTvVAB]|P\\d*|[SW]\\d{1,6}|\\[\\s*[0-9A-Fa-f]{2}(\\s+[0-9A-Fa-f]{2}){0,5}\\s*\\]");
    private static final int FIELDS = 4;

    private final Map<OrbitalPosition, List<Sequence>> sequences = new LinkedHashMap<>();
    private final List<Malformed> malformed = new ArrayList<>();
    private int restrictions;

    private DiseqcConf() {}

    /** Reads a file. Malformed lines are collected, not thrown. */
    static DiseqcConf read(Source source) {
        DiseqcConf conf = new DiseqcConf();
        conf.malformed.addAll(SourceText.read(source, (place, line) -> conf.take(line.strip())));
        return conf;
    }

    /** The sequences of each position, in the order of the file. */
    Map<OrbitalPosition, List<Sequence>> sequences() {
        return sequences;
    }

    /** The malformed lines. */
    List<Malformed> malformed() {
        return malformed;
    }

    /** The number of restrictions to certain devices. */
    int restrictions() {
        return restrictions;
    }

    private void take(String line) {
        if (line.isEmpty() || line.startsWith("#")) {
            return;
        }
        if (line.matches("[\\d\\s]+:")) {
            restrictions++;
            return;
        }
        String[] fields = line.split("\\s+", FIELDS + 1);
        if (fields.length < FIELDS) {
            throw new IllegalArgumentException(
                    fields.length + " fields instead of position, frequency, polarization, oscillator and commands");
        }
        if (!fields[2].matches("[VHLR]")) {
            throw new IllegalArgumentException("polarization " + Text.excerpt(fields[2]) + " is not V, H, L or R");
        }
        OrbitalPosition position = Satellites.read(fields[0]);
        Sequence sequence = new Sequence(
                SourceText.number(fields[1], 10, 1, Integer.MAX_VALUE, "frequency"),
                fields[2].charAt(0),
                SourceText.number(fields[3], 10, 1, 0xFFFF, "oscillator"),
                commands(fields.length > FIELDS ? fields[FIELDS] : ""));
        sequences.computeIfAbsent(position, key -> new ArrayList<>()).add(sequence);
    }

    private static List<String> commands(String text) {
        List<String> commands = new ArrayList<>();
        for (Matcher command = COMMAND.matcher(text); command.find(); ) {
            if (!KNOWN.matcher(command.group()).matches()) {
                throw new IllegalArgumentException(Text.excerpt(command.group()) + " is not a command");
            }
            commands.add(command.group());
        }
        return List.copyOf(commands);
    }
}
