package com.velotra.tv.tavro.tool.services;

import com.velotra.tv.tavro.services.channellist.OrbitalPosition;
import com.velotra.tv.tavro.tool.input.Malformed;
import com.velotra.tv.tavro.tool.input.Place;
import com.velotra.tv.tavro.tool.input.Source;
import com.velotra.tv.tavro.tool.input.SourceText;
import com.velotra.tv.tavro.tool.input.Text;
import com.velotra.tv.tavro.tool.transponders.Transponder;
import java.util.ArrayList;
import java.util.List;

/**
 * A service list in the channels.conf format of Debian's vdr package.
 *
 * <p>A line is a service, with thirteen fields separated by colons:
 *
 * <pre>Name,Short;Provider:Frequency:Parameters:Source:SymbolRate:VPID:APIDs:TPID:CAIDs:SID:NID:TID:RID</pre>
 *
 * Older files lack the last field. A bar in a name stands for a colon; a short name has no comma. A line that begins
 * with a colon is a group heading. {@code :@N} before its text numbers the following services from N, up to the next
 * heading with a number. Numbers only increase. Blank lines and lines that begin with {@code #} are ignored.
 */
public final class ChannelsConf {
    private static final int FIELDS = 13;
    private static final int FIRST_CA_SYSTEM = 0x100; // smaller numbers are devices of the receiver

    private final List<Service> services = new ArrayList<>();
    private final List<Malformed> malformed = new ArrayList<>();
    private int groups;

    private int nextNumber;

    private ChannelsConf() {}

    /** Reads a file. Malformed lines are collected, not thrown. */
    public static ChannelsConf read(Source source) {
        ChannelsConf conf = new ChannelsConf();
        conf.malformed.addAll(SourceText.read(source, conf::take));
        return conf;
    }

    /** The services of the file. */
    public List<Service> services() {
        return services;
    }

    /** The malformed lines. */
    public List<Malformed> malformed() {
        return malformed;
    }

    /** The number of group headings. */
    public int groups() {
        return groups;
    }

    private void take(Place place, String line) {
        if (line.isBlank() || line.startsWith("#")) {
            return;
        }
        if (line.startsWith(":")) {
            takeHeading(line.substring(1));
        } else {
            services.add(parse(place, line, nextNumber));
            nextNumber = nextNumber == 0 || nextNumber == Service.MAX_NUMBER ? 0 : nextNumber + 1;
        }
    }

    private void takeHeading(String text) {
        if (text.startsWith("@")) {
            String number = text.substring(1).split("\\s", 2)[0];
            nextNumber = SourceText.number(number, 10, Math.max(1, nextNumber), Service.MAX_NUMBER, "channel number");
        }
        groups++;
    }

    private static Service parse(Place place, String line, int number) {
        String[] fields = line.split(":", -1);
        if (fields.length != FIELDS && fields.length != FIELDS - 1) {
            throw new IllegalArgumentException(
                    fields.length + " fields instead of " + FIELDS + " (separated by colons)");
        }
        String[] names = fields[0].split(";", 2)[0].split(",(?=[^,]*$)", 2);
        if (names[0].isBlank()) {
            throw new IllegalArgumentException("the service has no name");
        }
        return new Service(
                place,
                text(names, 0),
                text(names, 1),
                transponder(place, fields),
                SourceText.number(fields[5].split("[+=]", 2)[0], 10, 0, 0x1FFF, "video PID") != 0,
                caIds(fields[8]),
                SourceText.number(fields[9], 10, 0, 0xFFFF, "service id"),
                SourceText.number(fields[10], 10, 0, 0xFFFF, "network id"),
                SourceText.number(fields[11], 10, 0, 0xFFFF, "transport stream id"),
                number);
    }

    private static String text(String[] parts, int index) {
        return index < parts.length ? parts[index].replace('|', ':').strip() : "";
    }

    private static Transponder transponder(Place place, String[] fields) {
        int frequency = SourceText.number(fields[1], 10, 1, Integer.MAX_VALUE, "frequency");
        String source = fields[3];
        boolean satellite = !source.matches("[CTA]");
        if (satellite) {
            try {
                OrbitalPosition.parse(source);
            } catch (IllegalArgumentException e) {
                throw new IllegalArgumentException("source " + Text.excerpt(source)
                        + " is not C, T, A or a position as in S19.2E", e);
            }
        }
        int symbolRate = SourceText.number(fields[4], 10, 0, Integer.MAX_VALUE, "symbol rate");
        return new Transponder(
                place, "", satellite ? source : "",
                VdrTuning.values(source.charAt(0), frequency, fields[2], symbolRate));
    }

    private static List<Integer> caIds(String field) {
        List<Integer> ids = new ArrayList<>();
        for (String id : field.split(",", -1)) {
            int value = SourceText.number(id, 16, 0, 0xFFFF, "CA id");
            if (value >= FIRST_CA_SYSTEM) {
                ids.add(value);
            }
        }
        return List.copyOf(ids);
    }
}
