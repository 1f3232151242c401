package com.velotra.tv.tavro.tool.services;

import com.velotra.tv.tavro.tool.input.Tally;
import java.io.IOException;
import java.util.List;

/** Writes services in the channels.conf format of Debian's vdr package, the reverse of {@link ChannelsConf}. */
public final class ChannelsConfWriter {
    /** Video PID of a television service: its real one is not in records, and the null packets' one harms nothing. */
    private static final int SOME_VIDEO = 0x1FFF;

    private ChannelsConfWriter() {}

    /**
     * Writes services.
     *
     * @param lost counts the values that the format cannot hold
     */
    public static void write(List<Service> services, Appendable out, Tally lost) throws IOException {
        int firstNumbered = firstNumbered(services);
        int next = 0;
        for (int i = 0; i < services.size(); i++) {
            Service service = services.get(i);
            if (i < firstNumbered) {
                if (service.number() != 0) {
                    lost.count("lcn"); // numbers only increase, and once they begin every service has one
                }
            } else if (service.number() != next) {
                out.append(":@").append(Integer.toString(service.number())).append('\n');
            }
            next = i < firstNumbered ? 0 : service.number() + 1;
            out.append(line(service, lost)).append('\n');
        }
    }

    /** Returns the first of the services at the end whose channel numbers increase. */
    private static int firstNumbered(List<Service> services) {
        int first = services.size();
        int after = Service.MAX_NUMBER + 1;
        while (first > 0 && services.get(first - 1).number() > 0 && services.get(first - 1).number() < after) {
            first--;
            after = services.get(first).number();
        }
        return first;
    }

    private static String line(Service service, Tally lost) {
        String position = service.transponder().position();
        char medium = service.transponder().values().get("DELIVERY_SYSTEM").charAt(3); // as in DVBT2
        VdrTuning.Fields tuning = VdrTuning.fields(medium, service.transponder().values());
        tuning.lost().forEach(lost::count);
        String caId = service.scrambled() ? Integer.toHexString(service.caIds().get(0)) : "0";
        return String.join(":", names(service, lost), tuning.frequency(), tuning.parameters(),
                medium == 'S' ? position : String.valueOf(medium), tuning.symbolRate(),
                service.hasVideo() ? Integer.toString(SOME_VIDEO) : "0", "0", "0", caId,
                Integer.toString(service.serviceId()), Integer.toString(service.networkId()),
                Integer.toString(service.transportStreamId()), "0");
    }

    /** Returns the name and the short name. A bar stands for a colon, and the last comma is before the short name. */
    private static String names(Service service, Tally lost) {
        String name = field(service.name());
        name = name.isEmpty() ? "-" : name;
        String shortName = field(service.shortName()).replace(',', ' ');
        count(service.name(), name, "name", lost);
        count(service.shortName(), shortName, "short_name", lost);
        // A line that begins with a number sign is a comment; blanks before a name are ignored.
        String start = name.startsWith("#") ? " " : "";
        return start + name + (shortName.isEmpty() && !name.contains(",") ? "" : "," + shortName);
    }

    private static String field(String text) {
        return text.replaceAll("[;\\p{Cc}]", " ").strip().replace(':', '|');
    }

    /** Counts a text that does not come back; a replacement character stands for bytes that are not a text. */
    private static void count(String text, String written, String field, Tally lost) {
        if (!written.replace('|', ':').equals(text) || text.indexOf('\uFFFD') >= 0) {
            lost.count(field);
        }
    }
}
