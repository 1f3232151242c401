package com.velotra.tv.tavro.tool;

import com.velotra.tv.tavro.services.channellist.RecordId;
import com.velotra.tv.tavro.tool.records.Kind;
import com.velotra.tv.tavro.tool.transponders.ListIds;
import java.util.Arrays;
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
