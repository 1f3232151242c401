package com.velotra.tv.tavro.tool.editing;

import com.velotra.tv.tavro.services.channellist.KeyedValues;
import com.velotra.tv.tavro.services.channellist.RecordField.Style;
import com.velotra.tv.tavro.services.channellist.RecordId;
import com.velotra.tv.tavro.tool.input.Failure;
import com.velotra.tv.tavro.tool.records.Field;
import com.velotra.tv.tavro.tool.records.Field.Key;
import com.velotra.tv.tavro.tool.records.Field.Rule;
import com.velotra.tv.tavro.tool.records.Layout;
import com.velotra.tv.tavro.tool.records.Record;
import java.lang.reflect.Array;
import java.nio.ByteBuffer;
import java.util.ArrayList;
import java.util.HashSet;
import java.util.List;
import java.util.Locale;
import java.util.Optional;
import java.util.Set;
import java.util.stream.Collectors;
import java.util.stream.Stream;

/**
 * The values that the user gives a record, as the Java object that the natives take, and as the record that must be
 * there afterwards: the natives cut numbers and ignore values without a word.
 */
final class Edit {
    /** Fields that decide which fields a record has. */
    private static final List<String> SELECTORS = List.of("broadcast_type", "medium", "broadcasttype",
            "broadcastmedium");

    private final String what;
    private final Keys keys;
    private final Layout layout;
    private final KeyedValues object;
    private final List<Expected> expected = new ArrayList<>();
    private Record target;
    private boolean translated; // whether the library decides what some value is stored as

    /** What a field must be afterwards: its text, or some bits of its number. */
    private record Expected(Field field, long bits, Record like) {
        boolean isIn(Record record) {
            return field.style() == Style.TEXT ? text(record).equals(text(like))
                    : (field.number(record) & bits) == (field.number(like) & bits);
        }

        /** The bytes up to the terminator: a native may leave others behind it. */
        private ByteBuffer text(Record record) {
            byte[] bytes = record.bytes(field.offset(), field.width());
            int length = 0;
            while (length < bytes.length && bytes[length] != 0) {
                length++;
            }
            return ByteBuffer.wrap(bytes, 0, length);
        }
    }

    private Edit(String what, Record before, KeyedValues object) {
        this.what = what;
        this.keys = Keys.of(before.kind());
        this.layout = Layout.of(before.kind());
        this.object = object;
        this.target = before;
    }

    /**
     * Puts values into the Java object of a record.
     *
     * @param what names the record in messages
     * @param before the record, or zeros for a new one
     * @throws Failure if the key or field does not exist, or the value does not fit
     */
    static Edit of(String what, Record before, KeyedValues object, List<Assignment> assignments) {
        Edit edit = new Edit(what, before, object);
        Set<String> names = new HashSet<>();
        List<Assignment> selectorsFirst = Stream.concat(
                assignments.stream().filter(Edit::selects),
                assignments.stream().filter(assignment -> !selects(assignment))).toList();
        for (Assignment assignment : selectorsFirst) {
            if (!names.add(assignment.name())) {
                throw new Failure(assignment.name() + " is given twice");
            }
            edit.assign(assignment.name(), assignment.value());
        }
        return edit;
    }

    private static boolean selects(Assignment assignment) {
        return SELECTORS.contains(fieldName(assignment.name()));
    }

    private static String fieldName(String name) {
        return name.replace('-', '_').toLowerCase(Locale.ROOT);
    }

    /**
     * Checks that a record has the values.
     *
     * @throws Failure naming the first that it does not have
     */
    void check(Record after) {
        for (Expected one : expected) {
            if (!one.isIn(after)) {
                throw new Failure("the library does not accept " + one.field().format(target) + " as the "
                        + one.field().label() + " of " + what + ": it would be " + one.field().format(after)
                        + "; nothing was changed");
            }
        }
    }

    /** Returns whether the record already has all values. */
    boolean changesNothing(Record before) {
        return !translated && target.equals(before);
    }

    private void assign(String name, String value) {
        try {
            boolean exactKey = keyOf(name).filter(name::equals).isPresent();
            Optional<Field> field = layout.field(fieldName(name));
            if (!exactKey && field.isPresent()) {
                assign(field.get(), value);
            } else if (keys.has(name)) {
                assignKey(name, value);
            } else {
                throw unknown(name);
            }
        } catch (IllegalArgumentException e) {
            throw new Failure(name + ": " + e.getMessage());
        }
    }

    /** The key of that name as the layout spells it. */
    private Optional<String> keyOf(String name) {
        return keyNames().filter(name::equalsIgnoreCase).findFirst();
    }

    private Stream<String> keyNames() {
        return layout.fields().stream()
                .flatMap(field -> Stream.concat(field.keys().stream().map(Key::name),
                        field.flags().stream().map(Field.Flag::key)))
                .filter(keys::has).distinct();
    }

    private Failure unknown(String name) {
        List<String> names = Stream.concat(keyNames(), layout.fields().stream().map(Field::name)).toList();
        return new Failure(target.kind().noun() + " records have no key or field '" + name + "'"
                + Keys.like(name, names).map(like -> "; did you mean '" + like + "'?")
                        .orElse("; ./tavro show LIST,RECORD --bytes prints their names"));
    }

    /** Sets a field to a value of its text form. */
    private void assign(Field field, String value) {
        if (!field.in(target)) {
            throw new Failure(what + " has no " + field.label() + ": it is not of that broadcast type or medium");
        }
        Record next = target.with(field, value);
        if (field.flags().isEmpty()) {
            assignByKey(field, next);
        } else {
            assignFlags(field, field.number(target), field.number(next));
        }
        target = next;
    }

    private void assignFlags(Field field, long before, long after) {
        long unknown = before ^ after;
        for (Field.Flag flag : field.flags()) {
            if (((before ^ after) & flag.mask()) != 0) {
                setFlag(flag.key(), (after & flag.mask()) != 0);
                unknown &= ~flag.mask();
            }
        }
        if (unknown != 0) {
            throw new IllegalArgumentException(
                    "no key sets the bits 0x" + Long.toHexString(unknown) + " of the " + field.label());
        }
        expect(field, before ^ after, target.with(field, Long.toString(after)));
    }

    private void setFlag(String key, boolean on) {
        keys.set(object, key, keys.type(key) == boolean.class ? (Object) on : (Object) (on ? 1 : 0));
    }

    /** Sets the key of a field so that the field becomes what it is in {@code next}. */
    private void assignByKey(Field field, Record next) {
        Key key = field.keys().stream().filter(one -> keys.has(one.name()))
                .min((one, other) -> Boolean.compare(one.rule() == Rule.RULE, other.rule() == Rule.RULE))
                .orElseThrow(() -> new IllegalArgumentException("no key sets the " + field.label()));
        Class<?> type = keys.type(key.name());
        if (type.isArray()) {
            throw new IllegalArgumentException("it is set through the key " + key.name());
        }
        switch (key.rule()) {
            case TEXT -> {
                if (field.format(next).startsWith("0x")) {
                    throw new IllegalArgumentException("the key " + key.name() + " takes no raw bytes");
                }
                keys.set(object, key.name(), field.format(next));
            }
            case RECORD_ID -> setReference(key.name(), reference(key.name(), next));
            default -> keys.set(object, key.name(), javaValue(field, key, field.number(next)));
        }
        expect(field, -1, next);
    }

    private static int javaValue(Field field, Key key, long number) {
        if (key.rule() != Rule.NUMBER) {
            for (Field.Code code : field.codes()) {
                if (code.number() == number) {
                    return code.javaValue();
                }
            }
            if (key.rule() == Rule.CODE) {
                throw new IllegalArgumentException("the key " + key.name() + " has no value for " + number);
            }
        }
        return (int) number;
    }

    private void expect(Field field, long bits, Record like) {
        if (expected.stream().anyMatch(one -> one.field() == field && one.bits() == bits)) {
            throw new IllegalArgumentException("a value of the " + field.label() + " is given twice");
        }
        expected.add(new Expected(field, bits, like));
    }

    /** Sets a key to a value of its Java type. */
    private void assignKey(String name, String value) {
        String key = keyOf(name).orElse(name);
        List<Field> fields = layout.fields(target).stream().filter(field -> hasKey(field, key)).toList();
        if (fields.isEmpty()) {
            throw new Failure(what + " has no " + key + ": it is not of that broadcast type or medium");
        }
        Field field = fields.get(0);
        Class<?> type = keys.type(key);
        Optional<Field.Flag> flag = field.flags().stream().filter(one -> one.key().equals(key)).findFirst();
        if (flag.isPresent()) {
            long before = field.number(target);
            long after = ValueTexts.isOn(value) ? before | flag.get().mask() : before & ~flag.get().mask();
            setFlag(key, ValueTexts.isOn(value));
            target = target.with(field, Long.toString(after));
            expect(field, flag.get().mask(), target);
        } else if (type.isArray()) {
            assignArray(key, type == int[].class ? ValueTexts.numbers(value) : ValueTexts.frequencies(value),
                    type == int[].class ? fields.size() : fields.size() / 2);
        } else if (rule(field, key) == Rule.RECORD_ID) {
            assignReference(key, ValueTexts.reference(value));
        } else if (rule(field, key) == Rule.NUMBER || rule(field, key) == Rule.TEXT) {
            assign(field, value);
        } else {
            assignCode(field, key, value);
        }
    }

    private void assignArray(String key, Object array, int most) {
        if (Array.getLength(array) > most) {
            throw new IllegalArgumentException("it has room for " + most + " values");
        }
        translated = true;
        keys.set(object, key, array);
    }

    private static boolean hasKey(Field field, String key) {
        return field.keys().stream().anyMatch(one -> one.name().equals(key))
                || field.flags().stream().anyMatch(one -> one.key().equals(key));
    }

    private static Rule rule(Field field, String key) {
        return field.keys().stream().filter(one -> one.name().equals(key)).findFirst().orElseThrow().rule();
    }

    /** Sets a key whose value the library translates: a Java value, or the name of a code. */
    private void assignCode(Field field, String key, String value) {
        translated = true;
        for (Field.Code code : field.codes()) {
            if (code.name().equalsIgnoreCase(value) || Integer.toString(code.javaValue()).equals(value)) {
                keys.set(object, key, code.javaValue());
                return;
            }
        }
        if (rule(field, key) == Rule.CODE) {
            throw new IllegalArgumentException("'" + value + "' is none of its values: " + field.codes().stream()
                    .map(code -> code.javaValue() + " (" + code.name() + ")").collect(Collectors.joining(", ")));
        }
        keys.set(object, key, ValueTexts.number(value));
    }

    private void assignReference(String key, RecordId id) {
        for (Field field : layout.fields(target)) {
            if (hasKey(field, key)) {
                target = target.with(field, Integer.toString(isRecordPart(field) ? id.recordId() : id.listId()));
                expect(field, -1, target);
            }
        }
        setReference(key, id);
    }

    private void setReference(String key, RecordId id) {
        keys.set(object, key, keys.type(key) == String.class ? id.toString() : id);
    }

    /** The reference that a key stands for, from its two fields. */
    private RecordId reference(String key, Record record) {
        int[] parts = new int[2];
        layout.fields(record).stream().filter(field -> hasKey(field, key))
                .forEach(field -> parts[isRecordPart(field) ? 1 : 0] = (int) field.number(record));
        return new RecordId(parts[0], parts[1]);
    }

    private static boolean isRecordPart(Field field) {
        return field.name().endsWith("record_id");
    }
}
