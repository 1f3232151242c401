package com.velotra.tv.tavro.tool.listing;

import com.velotra.tv.tavro.services.channellist.RecordField.Style;
import com.velotra.tv.tavro.tool.records.Field;
import com.velotra.tv.tavro.tool.records.Record;
import java.util.List;
import java.util.Locale;
import java.util.Objects;
import java.util.OptionalLong;
import java.util.function.Function;
import java.util.function.LongFunction;

/**
 * A column of a table of records: a field of the record itself, or a value that is computed from it and from the
 * records that it refers to. Columns of texts have no numbers.
 */
public final class Column {
    /** The number of a record that has none. */
    public static final long NONE = Long.MIN_VALUE;

    /** What the values of a column are. */
    public enum Type {
        /** Numbers, printed as numbers. */
        NUMBER,
        /** Numbers with names, printed as these. */
        CODE,
        /** 0 and 1, printed as yes and no. */
        FLAG,
        /** Free texts. */
        TEXT,
        /** Texts of a small vocabulary, the same in upper and lower case. */
        TERM
    }

    /** Computes the number of a record; {@link #NONE} if it has none. */
    interface Numbers {
        long of(Record record, References references);
    }

    /** Computes the text of a record; null if it has none. */
    interface Texts {
        String of(Record record, References references);
    }

    private static final String YES = "yes";
    private static final String NO = "no";
    private static final String NO_VALUE = "-";

    private final String name;
    private final String heading;
    private final String unit;
    private final Type type;
    private final boolean right;
    private final Numbers numbers;
    private final Texts texts;
    private final Function<String, OptionalLong> literals;

    private Column(String name, String heading, String unit, Type type, boolean right, Numbers numbers, Texts texts,
            Function<String, OptionalLong> literals) {
        this.name = name;
        this.heading = heading;
        this.unit = unit;
        this.type = type;
        this.right = right;
        this.numbers = numbers;
        this.texts = texts;
        this.literals = literals;
    }

    /** A column of numbers. */
    static Column number(String name, String heading, Numbers numbers) {
        return new Column(name, heading, "", Type.NUMBER, true, numbers,
                (record, references) -> text(numbers.of(record, references), Long::toString), Column::decimalOrHex);
    }

    /** A column of numbers in which 0 is printed as no value. */
    static Column numberOrNone(String name, String heading, Numbers numbers) {
        return new Column(name, heading, "", Type.NUMBER, true, numbers, (record, references) ->
                text(numbers.of(record, references), value -> value == 0 ? null : Long.toString(value)),
                Column::decimalOrHex);
    }

    /** A column of numbers with a text form of their own. */
    static Column code(String name, String heading, boolean right, Numbers numbers, LongFunction<String> toText,
            Function<String, OptionalLong> literals) {
        return new Column(name, heading, "", Type.CODE, right, numbers,
                (record, references) -> text(numbers.of(record, references), toText),
                text -> literals.apply(text).isPresent() ? literals.apply(text) : decimalOrHex(text));
    }

    /**
     * A column of numbers that have names in the table of {@code field}. Other numbers are printed as numbers. A name
     * may be given without its unit, as in 8 for 8 MHz.
     */
    static Column code(String name, String heading, Field field, Numbers numbers) {
        List<Field.Code> codes = field.codes();
        return code(name, heading, false, numbers, value -> codes.stream()
                .filter(code -> code.number() == value).map(Field.Code::name).findFirst().orElse(Long.toString(value)),
                text -> only(codes.stream().filter(code -> code.name().equalsIgnoreCase(text)
                        || code.name().toLowerCase(Locale.ROOT).startsWith(text.toLowerCase(Locale.ROOT) + " "))
                        .mapToLong(Field.Code::number).toArray()));
    }

    /** The number, unless several have the name. */
    private static OptionalLong only(long[] numbers) {
        return numbers.length == 1 ? OptionalLong.of(numbers[0]) : OptionalLong.empty();
    }

    /** A column of yes and no: the flag that a Java key sets in a word. */
    static Column flag(String name, String heading, Field word, String key) {
        long mask = mask(word, key);
        Numbers numbers = (record, references) -> (word.number(record) & mask) == mask ? 1 : 0;
        return new Column(name, heading, "", Type.FLAG, false, numbers,
                (record, references) -> numbers.of(record, references) == 0 ? NO : YES, Column::yesOrNo);
    }

    /** The bit that a Java key sets in a flag word. */
    static long mask(Field word, String key) {
        return word.flags().stream().filter(flag -> flag.key().equals(key)).findFirst().orElseThrow().mask();
    }

    private static OptionalLong yesOrNo(String text) {
        return switch (text.toLowerCase(Locale.ROOT)) {
            case YES, "true", "1" -> OptionalLong.of(1);
            case NO, "false", "0" -> OptionalLong.of(0);
            default -> OptionalLong.empty();
        };
    }

    /** A column of free texts. */
    static Column text(String name, String heading, Texts texts) {
        return new Column(name, heading, "", Type.TEXT, false, null, texts, null);
    }

    /** A column of texts of a small vocabulary. */
    static Column term(String name, String heading, Texts texts) {
        return new Column(name, heading, "", Type.TERM, false, null, texts, null);
    }

    /** A column of a field. Records without the field have no value. */
    static Column of(Field field) {
        if (field.style() == Style.TEXT) {
            return text(field.name(), field.label(),
                    (record, references) -> field.in(record) ? field.shown(record) : null);
        }
        Numbers numbers = (record, references) -> field.in(record) ? field.number(record) : NONE;
        if (!field.codes().isEmpty()) {
            return code(field.name(), field.label(), field, numbers);
        }
        return new Column(field.name(), field.label(), field.unit(), Type.NUMBER, true, numbers,
                (record, references) -> field.in(record) ? field.format(record) : null, Column::decimalOrHex);
    }

    /** The same column with another heading. */
    Column headed(String newHeading) {
        return new Column(name, newHeading, unit, type, right, numbers, texts, literals);
    }

    /** The same column with a unit. */
    Column in(String newUnit) {
        return new Column(name, heading, newUnit, type, right, numbers, texts, literals);
    }

    /** The same column of another record, which {@code target} finds; no value if it finds null. */
    Column through(Target target) {
        Numbers targetNumbers = numbers == null ? null : (record, references) -> {
            Record other = target.of(record, references);
            return other == null ? NONE : numbers.of(other, references);
        };
        return new Column(name, heading, unit, type, right, targetNumbers, (record, references) -> {
            Record other = target.of(record, references);
            return other == null ? null : texts.of(other, references);
        }, literals);
    }

    /** Finds the record that a record refers to; null if there is none. */
    interface Target {
        Record of(Record record, References references);
    }

    private static String text(long value, LongFunction<String> toText) {
        return value == NONE ? null : toText.apply(value);
    }

    private static OptionalLong decimalOrHex(String text) {
        try {
            boolean hex = text.startsWith("0x") || text.startsWith("0X");
            return OptionalLong.of(hex ? Long.parseLong(text, 2, text.length(), 16) : Long.parseLong(text));
        } catch (NumberFormatException e) {
            return OptionalLong.empty();
        }
    }

    /** Returns the name in options and JSON, such as "service_id". */
    public String name() {
        return name;
    }

    /** Returns the name for people, such as "service id". */
    public String heading() {
        return heading;
    }

    /** Returns the unit of the numbers, as in {@link Field#unit}; empty if they have none. */
    public String unit() {
        return unit;
    }

    public Type type() {
        return type;
    }

    /** Returns whether the values are numbers, so that they can be compared as such. */
    public boolean hasNumbers() {
        return numbers != null;
    }

    /** Returns whether tables align the values to the right. */
    public boolean alignsRight() {
        return right;
    }

    /** Returns the number of a record; {@link #NONE} if it has none. */
    public long number(Record record, References references) {
        return numbers.of(record, references);
    }

    /** Returns the value as text; null if the record has none. */
    public String text(Record record, References references) {
        return texts.of(record, references);
    }

    /** Returns the value as a table shows it. */
    public String cell(Record record, References references) {
        return Objects.requireNonNullElse(texts.of(record, references), NO_VALUE);
    }

    /** Returns the value for JSON: a number, a boolean, a text or null. */
    public Object json(Record record, References references) {
        return switch (type) {
            case NUMBER -> {
                long number = number(record, references);
                yield number == NONE ? null : (Object) number;
            }
            case FLAG -> number(record, references) != 0;
            default -> text(record, references);
        };
    }

    /** Returns the number that a text stands for: decimal, hexadecimal after 0x, or the name of a code. */
    public OptionalLong parse(String text) {
        return literals.apply(text);
    }

    @Override
    public String toString() {
        return name;
    }
}
