package com.velotra.tv.tavro.tool;

import com.velotra.tv.tavro.services.channellist.OrbitalPosition;
import com.velotra.tv.tavro.services.channellist.RecordId;
import com.velotra.tv.tavro.tool.editing.Assignment;
import com.velotra.tv.tavro.tool.editing.RecordRange;
import com.velotra.tv.tavro.tool.listing.Filter;
import com.velotra.tv.tavro.tool.records.Kind;
import com.velotra.tv.tavro.tool.transponders.ListIds;
import java.util.Arrays;
import java.util.Locale;
import picocli.CommandLine.ITypeConverter;
import picocli.CommandLine.TypeConversionException;

/**
 * Converters for the arguments of the commands. Their exceptions are the message that the user sees, and the same as in
 * {@code ./tavro}, which checks these arguments before it builds.
 */
final class Converters {
    private static final int LAST_LIST = 65_535;

    private Converters() {}

    /** LIST,RECORD. */
    static final class Record implements ITypeConverter<RecordId> {
        @Override
        public RecordId convert(String text) {
            try {
                RecordId id = RecordId.parse(text);
                if (id.namesRecord()) {
                    return id;
                }
            } catch (IllegalArgumentException e) {
                // Falls through to the message that also covers ids out of range.
            }
            throw new TypeConversionException("'" + text + "' is not a record: write LIST,RECORD, a list id from 1 to "
                    + LAST_LIST + " and a record id from 0 to " + (LAST_LIST - 1));
        }
    }

    /** LIST,RECORD or LIST,FIRST-LAST. */
    static final class Records implements ITypeConverter<RecordRange> {
        @Override
        public RecordRange convert(String text) {
            try {
                return RecordRange.parse(text);
            } catch (IllegalArgumentException e) {
                throw new TypeConversionException(e.getMessage());
            }
        }
    }

    /** KEY=VALUE. */
    static final class KeyAndValue implements ITypeConverter<Assignment> {
        @Override
        public Assignment convert(String text) {
            try {
                return Assignment.parse(text);
            } catch (IllegalArgumentException e) {
                throw new TypeConversionException(e.getMessage());
            }
        }
    }

    /** A channel number: as many bits as the channel id has for it. */
    static final class ChannelNumber implements ITypeConverter<Integer> {
        @Override
        public Integer convert(String text) {
            return number(text, 1, (1 << 14) - 1, "a channel number");
        }
    }

    /** A position in a list. */
    static final class Position implements ITypeConverter<Integer> {
        @Override
        public Integer convert(String text) {
            return number(text, 1, LAST_LIST, "a position");
        }
    }

    /** The number of a command that can be undone. */
    static final class ChangeNumber implements ITypeConverter<Integer> {
        @Override
        public Integer convert(String text) {
            return number(text, 1, Integer.MAX_VALUE, "the number of a change");
        }
    }

    /** A list id. */
    static final class ListId implements ITypeConverter<Integer> {
        @Override
        public Integer convert(String text) {
            return number(text, 1, LAST_LIST, "a list id");
        }
    }

    /** The first of the lists that an import fills. */
    static final class FirstList implements ITypeConverter<Integer> {
        @Override
        public Integer convert(String text) {
            return number(text, 1, LAST_LIST - ListIds.COUNT + 1, "a first list id");
        }
    }

    /** A transport stream: its record or its transport_stream_id. */
    static final class StreamFilter implements ITypeConverter<Filter> {
        @Override
        public Filter convert(String text) {
            if (text.indexOf(',') >= 0) {
                return Filter.byStream(new Record().convert(text));
            }
            return Filter.byTransportStreamId(number(text, 0, LAST_LIST, "a transport stream: write LIST,RECORD or a "
                    + "transport stream id"));
        }
    }

    /** A network, by its network_id. */
    static final class NetworkFilter implements ITypeConverter<Filter> {
        @Override
        public Filter convert(String text) {
            return Filter.byNetwork(number(text, 0, LAST_LIST, "a network id"));
        }
    }

    /** A satellite: its record or its orbital position. */
    static final class SatelliteFilter implements ITypeConverter<Filter> {
        @Override
        public Filter convert(String text) {
            if (text.indexOf(',') >= 0) {
                return Filter.bySatellite(new Record().convert(text));
            }
            String position = text.toUpperCase(Locale.ROOT);
            try {
                return Filter.byPosition(OrbitalPosition.parse(position.startsWith("S") ? position : "S" + position)
                        .tenths());
            } catch (IllegalArgumentException e) {
                throw new TypeConversionException(
                        "'" + text + "' is not a satellite: write LIST,RECORD or a position such as 19.2E");
            }
        }
    }

    /** A list kind. */
    static final class KindName implements ITypeConverter<Kind> {
        @Override
        public Kind convert(String text) {
            return Arrays.stream(Kind.values())
                    .filter(kind -> kind.toString().equals(text))
                    .findFirst()
                    .orElseThrow(() -> new TypeConversionException(
                            "unknown kind '" + text + "': use services, streams, networks or satellites"));
        }
    }

    /** A number of records. */
    static final class Count implements ITypeConverter<Integer> {
        @Override
        public Integer convert(String text) {
            return number(text, 0, Integer.MAX_VALUE, "a number of records");
        }
    }

    private static int number(String text, int least, int most, String what) {
        // Stricter than Java, which accepts signs and the digits of other scripts.
        if (text.matches("[0-9]{1,10}")) {
            long value = Long.parseLong(text);
            if (value >= least && value <= most) {
                return (int) value;
            }
        }
        throw new TypeConversionException(
                "'" + text + "' is not " + what + ": it must be from " + least + " to " + most);
    }
}
