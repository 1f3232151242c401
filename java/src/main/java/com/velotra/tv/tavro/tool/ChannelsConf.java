package com.velotra.tv.tavro.tool;

import com.velotra.tv.tavro.services.channellist.OrbitalPosition;
import com.velotra.tv.tavro.tool.sources.Malformed;
import com.velotra.tv.tavro.tool.sources.SourceFile;
import java.io.IOException;
import java.nio.file.Path;
import java.util.ArrayList;
import java.util.List;
import java.util.Optional;

/**
 * Service lists in the channels.conf form of Debian's vdr package.
 *
 * <p>A line is a service: thirteen fields with colons between them,
 *
 * <pre>Name,Short;Provider:Frequency:Parameters:Source:SymbolRate:VPID:APIDs:TPID:CAIDs:SID:NID:TID:RID</pre>
 *
 * of which older files leave the last one out. A bar in a name stands for a colon; a short name holds no comma. A line
 * that begins with a colon is a group heading; {@code :@N} in front of its text gives the number N to the service that
 * follows, and the next numbers to those behind it, up to the next heading with a number. Numbers only grow. Blank lines
 * and lines that begin with {@code #} say nothing.
 */
final class ChannelsConf {
    /** What the first letter of the source says. */
    enum Medium { SATELLITE, CABLE, TERRESTRIAL }

    /**
     * One service.
     *
     * @param name its name
     * @param shortName its short name, or empty
     * @param provider its provider, or empty
     * @param frequency as the file gives it: its unit depends on medium and age of the file
     * @param parameters tuning parameters, letters with their values
     * @param medium satellite, cable or terrestrial
     * @param source the whole source, as in S19.2E
     * @param symbolRate in thousands a second
     * @param videoPid 0 for a service without pictures
     * @param caIds CA_system_ids (ETSI TS 101 162); none for a service in the clear
     * @param serviceId service_id
     * @param networkId original_network_id, or 0
     * @param transportStreamId transport_stream_id, or 0
     * @param number the channel number that the file gives, or 0
     */
    record Service(
            String name,
            String shortName,
            String provider,
            int frequency,
            String parameters,
            Medium medium,
            String source,
            int symbolRate,
            int videoPid,
            List<Integer> caIds,
            int serviceId,
            int networkId,
            int transportStreamId,
            int number) {
        /** What makes a transport stream: services that agree in it share one. */
        String transponder() {
            return source + ":" + frequency + ":" + parameters + ":" + symbolRate;
        }

        /** Where the satellite stands; empty for another medium. */
        Optional<OrbitalPosition> position() {
            return medium == Medium.SATELLITE ? Optional.of(OrbitalPosition.parse(source)) : Optional.empty();
        }

        boolean scrambled() {
            return !caIds.isEmpty();
        }
    }

    private static final int FIELDS = 13;
    private static final int MAX_NUMBER = 0x3FFF; // 14 bits, in the channel id as in broadcasts
    private static final int FIRST_CA_SYSTEM = 0x100; // below are numbers of local devices

    final List<Service> services = new ArrayList<>();
    final List<Malformed> malformed = new ArrayList<>();
    int groups;
    int ignored; // blank lines and comments

    private int nextNumber;

    private ChannelsConf() {}

    /** Reads a file. Malformed lines are collected, not thrown. */
    static ChannelsConf read(Path file) throws IOException {
        ChannelsConf conf = new ChannelsConf();
        conf.malformed.addAll(SourceFile.read(file, (number, line) -> conf.take(line)));
        return conf;
    }

    private void take(String line) {
        if (line.isBlank() || line.startsWith("#")) {
            ignored++;
        } else if (line.startsWith(":")) {
            takeHeading(line.substring(1));
        } else {
            services.add(parse(line, nextNumber));
            nextNumber = nextNumber == 0 || nextNumber == MAX_NUMBER ? 0 : nextNumber + 1;
        }
    }

    private void takeHeading(String text) {
        if (text.startsWith("@")) {
            String number = text.substring(1).split("\\s", 2)[0];
            nextNumber = SourceFile.number(number, 10, Math.max(1, nextNumber), MAX_NUMBER, "channel number");
        }
        groups++;
    }

    private static Service parse(String line, int number) {
        String[] fields = line.split(":", -1);
        if (fields.length != FIELDS && fields.length != FIELDS - 1) {
            throw new IllegalArgumentException(
                    fields.length + " fields instead of " + FIELDS + " with colons between them");
        }
        String[] nameAndProvider = fields[0].split(";", 2);
        String[] names = nameAndProvider[0].split(",(?=[^,]*$)", 2);
        if (names[0].isBlank()) {
            throw new IllegalArgumentException("the service has no name");
        }
        return new Service(
                text(names, 0),
                text(names, 1),
                text(nameAndProvider, 1),
                SourceFile.number(fields[1], 10, 1, Integer.MAX_VALUE, "frequency"),
                fields[2],
                medium(fields[3]),
                fields[3],
                SourceFile.number(fields[4], 10, 0, Integer.MAX_VALUE, "symbol rate"),
                SourceFile.number(fields[5].split("[+=]", 2)[0], 10, 0, 0x1FFF, "video PID"),
                caIds(fields[8]),
                SourceFile.number(fields[9], 10, 0, 0xFFFF, "service id"),
                SourceFile.number(fields[10], 10, 0, 0xFFFF, "network id"),
                SourceFile.number(fields[11], 10, 0, 0xFFFF, "transport stream id"),
                number);
    }

    private static String text(String[] parts, int index) {
        return index < parts.length ? parts[index].replace('|', ':').strip() : "";
    }

    private static Medium medium(String source) {
        if (source.equals("C")) {
            return Medium.CABLE;
        }
        if (source.equals("T")) {
            return Medium.TERRESTRIAL;
        }
        try {
            OrbitalPosition.parse(source);
            return Medium.SATELLITE;
        } catch (IllegalArgumentException e) {
            throw new IllegalArgumentException("source '" + source + "' is not C, T or a position as in S19.2E");
        }
    }

    private static List<Integer> caIds(String field) {
        List<Integer> ids = new ArrayList<>();
        for (String id : field.split(",", -1)) {
            int value = SourceFile.number(id, 16, 0, 0xFFFF, "CA id");
            if (value >= FIRST_CA_SYSTEM) {
                ids.add(value);
            }
        }
        return List.copyOf(ids);
    }
}
