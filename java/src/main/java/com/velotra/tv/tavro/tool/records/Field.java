package com.velotra.tv.tavro.tool.records;

import com.velotra.tv.tavro.services.channellist.OrbitalPosition;
import com.velotra.tv.tavro.services.channellist.Printable;
import com.velotra.tv.tavro.services.channellist.RecordField.Style;
import com.velotra.tv.tavro.services.channellist.ServiceRecord;
import java.util.List;
import java.util.Optional;

/**
 * A field of a record: where it is, what it is called, and how its value is written as text.
 *
 * <p>{@link #format} and {@link #parse} are lossless: parsing what was formatted restores every byte of the field. A
 * text field whose bytes are not a text followed by zeros is written as {@code 0x} and its bytes in hexadecimal.
 */
public final class Field {
    /** How the natives store the value of a Java key in a field. */
    public enum Rule {
        /** The number as it is, cut to the field's width. */
        NUMBER,
        /** The code that a table has for the number. */
        CODE,
        /** A text, cut to the field's width. */
        TEXT,
        /** The list or the record of a record identifier. */
        RECORD_ID,
        /** A rule of the key's own. */
        RULE
    }

    /** A key of the Java objects whose value goes to a field. */
    public record Key(String name, Rule rule) {
        @Override
        public String toString() {
            return name;
        }
    }

    /** A bit of a flag word, and the Java key that sets it. */
    public record Flag(long mask, String key) {}

    /**
     * A number that has a name.
     *
     * @param number as it is stored
     * @param javaValue the value of the Java key for which it is stored; equal for most fields
     * @param name what it means, such as "satellite"; several numbers may have the same name
     */
    public record Code(long number, int javaValue, String name) {}

    /** What the tables of the structures say about a field. */
    record Source(String name, String label, int offset, int width, Style style, int longestText, String member,
            String unit, String meaning, List<Key> keys, List<Flag> flags, List<Code> codes, List<Layout.View> views,
            int selector) {}

    private static final String TENTHS_OF_A_DEGREE = "0.1 degrees";
    private static final String CHANNEL_ID = "channel_id";

    private final Source source;
    private final Names names;

    Field(Source source) {
        this.source = source;
        this.names = new Names(source.codes(), source.flags());
    }

    /** Returns the name in options, CSV headings and JSON: the Java constant in lower case, such as "service_id". */
    public String name() {
        return source.name();
    }

    /** Returns the name for people, such as "service id". */
    public String label() {
        return source.label();
    }

    public int offset() {
        return source.offset();
    }

    /** Returns the number of bytes; 1, 2 or 4 for numbers. */
    public int width() {
        return source.width();
    }

    public Style style() {
        return source.style();
    }

    /** Returns what is to be known about the value beyond its label and unit; empty if that is nothing. */
    public String meaning() {
        return source.meaning();
    }

    /** Returns the unit in which {@code ./tavro import} stores the number, such as "kHz"; empty if it has none. */
    public String unit() {
        return source.unit();
    }

    /** Returns the Java keys whose value goes to the field, without those of flags. */
    public List<Key> keys() {
        return source.keys();
    }

    /** Returns the known bits of a flag word, lowest first. */
    public List<Flag> flags() {
        return source.flags();
    }

    /** Returns the numbers that have a name. */
    public List<Code> codes() {
        return source.codes();
    }

    /** Returns the views that have the field; none if all records have it. */
    public List<Layout.View> views() {
        return source.views();
    }

    /** Returns the member of the C++ structure, from the record: "u_tuner.t_sat.e_pol". */
    public String path() {
        return source.views().isEmpty() ? source.member() : source.views().get(0).member() + '.' + source.member();
    }

    /** Returns the member in the view of a record: several views begin with the same structure. */
    public String path(Record record) {
        for (Layout.View view : source.views()) {
            if (view.value() == record.unsigned(source.selector(), 1)) {
                return view.member() + '.' + source.member();
            }
        }
        return path();
    }

    /** Returns whether a record has the field: some depend on the broadcast type or the medium. */
    public boolean in(Record record) {
        for (Layout.View view : source.views()) {
            if (view.value() == record.unsigned(source.selector(), 1)) {
                return true;
            }
        }
        return source.views().isEmpty();
    }

    /** Returns the value of a number field. */
    public long number(Record record) {
        long value = record.unsigned(offset(), width());
        return style() == Style.SIGNED ? (short) value : value;
    }

    /** Returns the value as lossless text. */
    public String format(Record record) {
        return switch (style()) {
            case TEXT -> RecordText.of(record.bytes(offset(), width()), source.longestText());
            case HEX -> RecordNumber.hex(number(record), width());
            case NUMBER, SIGNED -> Long.toString(number(record));
        };
    }

    /** Returns the value as {@link #format} does, but a text without the bytes after its NUL. */
    public String shown(Record record) {
        return style() == Style.TEXT
                ? RecordText.shown(record.bytes(offset(), width()), source.longestText()) : format(record);
    }

    /**
     * Returns the value for people, as in {@code 3 (satellite)}, {@code 22000000 Bd} or
     * {@code 0x0000000a (VnetActive, VnetVisible)}. It is printable, and {@link #parse} does not read it.
     */
    public String describe(Record record) {
        String text = format(record);
        if (style() == Style.TEXT) {
            String shown = shown(record);
            String bytes = shown.equals(text) ? "" : " (" + text.replaceFirst("(00)+$", "") + ")";
            return '"' + Printable.of(shown) + '"' + bytes;
        }
        return text + (unit().isEmpty() || unit().equals(TENTHS_OF_A_DEGREE) ? "" : " " + unit())
                + name(record).map(name -> " (" + name + ")").orElse("");
    }

    /** Returns what a number means: its name, flags, channel numbers or position; empty if that is not known. */
    public Optional<String> name(Record record) {
        String name = "";
        if (name().equals(CHANNEL_ID)) {
            name = new ServiceRecord(record.bytes()).channelNumbers();
        } else if (unit().equals(TENTHS_OF_A_DEGREE)) {
            name = new OrbitalPosition((int) number(record)).toString();
        } else if (style() != Style.TEXT) {
            name = names.of(number(record));
        }
        return name.isEmpty() ? Optional.empty() : Optional.of(name);
    }

    /**
     * Writes a value into a record's bytes. A number may be decimal, hexadecimal with {@code 0x}, or the name of a code
     * or its unambiguous beginning. A flag word may also be a list of flags to set or clear, as in
     * {@code +VnetVisible -VnetEpg}, which leaves its other bits as they are.
     *
     * @throws IllegalArgumentException with a message for the user if the text is not a value of this field
     */
    public void parse(String value, byte[] record) {
        if (style() == Style.TEXT) {
            byte[] text = RecordText.parse(value, label(), width(), source.longestText());
            System.arraycopy(text, 0, record, offset(), width());
            return;
        }
        long before = RecordNumber.get(record, offset(), width());
        RecordNumber.put(parseNumber(value, before), record, offset(), width());
    }

    private long parseNumber(String value, long before) {
        boolean signed = style() == Style.SIGNED;
        long least = signed ? -(1L << 8 * width() - 1) : 0;
        long most = (1L << (signed ? 8 * width() - 1 : 8 * width())) - 1;
        try {
            long number = names.isFlags(value) ? names.changed(value, before) : RecordNumber.parse(value);
            if (number >= least && number <= most) {
                return number;
            }
        } catch (NumberFormatException e) {
            // Not a number, perhaps a name.
        }
        return names.number(value).orElseThrow(() -> new IllegalArgumentException("'" + value + "' cannot be the "
                + label() + ": it must be a number from " + least + " to " + most + names.hint()));
    }

    @Override
    public String toString() {
        return name();
    }
}
