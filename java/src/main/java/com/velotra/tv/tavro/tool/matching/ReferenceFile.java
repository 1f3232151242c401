package com.velotra.tv.tavro.tool.matching;

import com.velotra.tv.tavro.services.channellist.BroadcastType;
import com.velotra.tv.tavro.tool.input.Malformed;
import com.velotra.tv.tavro.tool.input.Place;
import com.velotra.tv.tavro.tool.input.Source;
import com.velotra.tv.tavro.tool.input.SourceText;
import com.velotra.tv.tavro.tool.input.Text;
import com.velotra.tv.tavro.tool.records.Field;
import com.velotra.tv.tavro.tool.records.Kind;
import com.velotra.tv.tavro.tool.records.Record;
import java.util.ArrayList;
import java.util.List;
import java.util.regex.Matcher;
import java.util.regex.Pattern;

/**
 * A text file with the order, numbers and names of services, one per line: {@code number;name;network-stream-service}.
 *
 * <p>The ids are the original network id, transport stream id and service id, each decimal or hexadecimal with 0x. An
 * empty number or name keeps the old value; without ids, the name finds the service. Empty lines and lines that
 * begin with # are skipped. A name may contain semicolons.
 */
public final class ReferenceFile implements Guide {
    private static final int MAJOR_SHIFT = 18; // of the major channel number in a channel id
    private static final int MAJOR_BITS = 14;
    private static final int TYPE_5_MAJOR_BITS = 8;
    private static final Pattern LINE = Pattern.compile("([^;]*);(.*);([^;]*)");
    private static final String ID = "(0[xX][0-9a-fA-F]+|[0-9]+)";
    private static final Pattern IDS = Pattern.compile(ID + "\\s*-\\s*" + ID + "\\s*-\\s*" + ID);

    private static final Field NAME = Fields.NAME.get(Kind.SERVICES);
    private static final Field LCN = Fields.of(Kind.SERVICES, "lcn");
    private static final Field CHANNEL_ID = Fields.of(Kind.SERVICES, "channel_id");
    private static final Field BROADCAST_TYPE = Fields.of(Kind.SERVICES, "broadcast_type");

    private final List<Entry> entries = new ArrayList<>();
    private final List<Malformed> malformed;

    private record Entry(Place place, String text, Integer number, String name, String ids) {
        String nameAsKey() {
            return name.isEmpty() ? null : name;
        }
    }

    /** Parses a file. */
    public ReferenceFile(Source source) {
        malformed = SourceText.read(source, this::take);
    }

    /** Returns the lines that cannot be parsed; the others can be used nevertheless. */
    public List<Malformed> malformed() {
        return malformed;
    }

    /** Returns an entry as it is in the file, with its place. */
    public String text(int entry) {
        return entries.get(entry).place + ": " + entries.get(entry).text;
    }

    private void take(Place place, String line) {
        if (line.isBlank() || line.stripLeading().startsWith("#")) {
            return;
        }
        Matcher parts = LINE.matcher(line);
        if (!parts.matches()) {
            throw new IllegalArgumentException(Text.excerpt(line) + " is not number;name;network-stream-service");
        }
        String number = parts.group(1).strip();
        String name = parts.group(2).strip();
        String ids = parts.group(3).strip();
        if (name.isEmpty() && ids.isEmpty()) {
            throw new IllegalArgumentException(Text.excerpt(line) + " has neither a name nor ids");
        }
        NAME.parse(name, new byte[Kind.SERVICES.recordBytes()]);
        entries.add(new Entry(place, line.strip(),
                number.isEmpty() ? null : SourceText.number(number, 10, 0, (1 << MAJOR_BITS) - 1, "channel number"),
                name, ids.isEmpty() ? null : identity(ids)));
    }

    /** The ids in the form of {@link Identity#service}. */
    private static String identity(String text) {
        Matcher ids = IDS.matcher(text);
        if (!ids.matches()) {
            throw new IllegalArgumentException(
                    Text.excerpt(text) + " is not network-stream-service, as in 1-1101-28106");
        }
        return id(ids.group(1)) + "-" + id(ids.group(2)) + "-" + id(ids.group(3));
    }

    private static int id(String text) {
        boolean hex = text.startsWith("0x") || text.startsWith("0X");
        return SourceText.number(hex ? text.substring(2) : text, hex ? 16 : 10, 0, 0xFFFF, "id");
    }

    @Override
    public int size() {
        return entries.size();
    }

    @Override
    public Pairing pair(Side list) {
        Pairing pairing = new Pairing(list.list().size(), entries.size());
        Identity identity = new Identity(list);
        pairing.pair(i -> identity.service(list.list().get(i)), entry -> entries.get(entry).ids);
        pairing.pair(i -> Identity.name(list.list().get(i)), entry -> entries.get(entry).nameAsKey());
        return pairing;
    }

    @Override
    public void apply(Part part, int entry, Record record, byte[] bytes) {
        Entry values = entries.get(entry);
        if (part == Part.NAMES && !values.name.isEmpty()) {
            NAME.parse(values.name, bytes);
        } else if (part == Part.NUMBERS && values.number != null) {
            try {
                number(values.number, record, bytes);
            } catch (IllegalArgumentException e) {
                throw new IllegalArgumentException(values.place + ": " + e.getMessage(), e);
            }
        }
    }

    private static int majorBits(int broadcastType) {
        return switch (broadcastType) {
            case BroadcastType.DVB, BroadcastType.DTMB -> MAJOR_BITS;
            case BroadcastType.TYPE_5 -> TYPE_5_MAJOR_BITS;
            default -> throw new IllegalArgumentException(
                    "services of broadcast type " + broadcastType + " have no channel number that is known");
        };
    }

    /** DVB services have the number in a field of their own, too. */
    private static void number(int number, Record record, byte[] bytes) {
        int type = (int) BROADCAST_TYPE.number(record);
        int bits = majorBits(type);
        if (number >= 1 << bits) {
            throw new IllegalArgumentException(
                    "channel number " + number + " is too large for a service of broadcast type " + type);
        }
        long mask = (1L << bits) - 1 << MAJOR_SHIFT;
        long channelId = CHANNEL_ID.number(record) & ~mask | (long) number << MAJOR_SHIFT;
        CHANNEL_ID.parse(String.valueOf(channelId), bytes);
        if (LCN.in(record)) {
            LCN.parse(String.valueOf(number), bytes);
        }
    }
}
