package com.velotra.tv.tavro.tool.call;

import com.google.gson.JsonElement;
import com.google.gson.JsonObject;
import com.velotra.tv.tavro.services.channellist.KeyedValues;
import com.velotra.tv.tavro.tool.input.Similar;
import java.lang.reflect.Field;
import java.lang.reflect.Method;
import java.util.ArrayList;
import java.util.LinkedHashMap;
import java.util.List;
import java.util.Locale;
import java.util.Map;
import java.util.TreeMap;
import java.util.stream.Collectors;

/**
 * The record objects of one class, with values by key.
 *
 * <p>deliberate: values go into the fields and not through the setters, because the natives read the fields, and a call
 * must be able to hand in values that setters refuse, such as a malformed identifier.
 */
final class RecordObjects {
    private record Key(String name, Method setter, Field field) {}

    private final Class<?> type;
    private final Map<String, Key> keys = new TreeMap<>(); // by name in lower case

    RecordObjects(Class<?> type) {
        this.type = type;
        Map<String, Field> fields = fields(type);
        for (Method setter : type.getMethods()) {
            if (setter.getName().startsWith("set") && setter.getParameterCount() == 1) {
                KeyedValues object = empty();
                mark(setter, object);
                String name = object.keys().iterator().next();
                keys.put(lower(name), new Key(name, setter, fields.get(lower(name))));
            }
        }
    }

    private static Map<String, Field> fields(Class<?> type) {
        Map<String, Field> fields = new TreeMap<>();
        for (Class<?> each = type; each != KeyedValues.class; each = each.getSuperclass()) {
            for (Field field : each.getDeclaredFields()) {
                field.setAccessible(true);
                fields.put(lower(field.getName()), field);
            }
        }
        return fields;
    }

    private static String lower(String key) {
        return key.toLowerCase(Locale.ROOT);
    }

    /** Returns an object without values. */
    KeyedValues empty() {
        try {
            return (KeyedValues) type.getConstructor().newInstance();
        } catch (ReflectiveOperationException e) {
            throw new IllegalStateException(type.getName(), e);
        }
    }

    private static void mark(Method setter, KeyedValues object) {
        Class<?> value = setter.getParameterTypes()[0];
        try {
            setter.invoke(object, new Object[] {value == int.class ? Integer.valueOf(0)
                    : value == boolean.class ? Boolean.FALSE : null});
        } catch (ReflectiveOperationException e) {
            throw new IllegalStateException(setter.getName(), e);
        }
    }

    /** Returns the names of the keys in alphabetical order. */
    List<String> names() {
        return keys.values().stream().map(Key::name).toList();
    }

    /**
     * Sets the value of a key, in upper or lower case, from a text.
     *
     * @throws WrongCall if there is no such key, or its value is of another type
     */
    void put(KeyedValues object, String name, String text) {
        Key key = key(name);
        put(object, key, Values.read(key.name(), text, key.field().getType()));
    }

    /** Returns an object with the values of a JSON object. */
    KeyedValues read(JsonElement json) {
        JsonObject values = json.getAsJsonObject();
        KeyedValues object = empty();
        for (String name : values.keySet()) {
            Key key = key(name);
            put(object, key, Values.read(key.name(), values.get(name), key.field().getType()));
        }
        return object;
    }

    private Key key(String name) {
        Key key = keys.get(lower(name));
        if (key == null) {
            throw new WrongCall(type.getSimpleName() + " has no key '" + name + "'"
                    + Similar.suggestion(name, names()) + "; docs/java-contract.md lists the keys");
        }
        return key;
    }

    private static void put(KeyedValues object, Key key, Object value) {
        mark(key.setter(), object);
        try {
            key.field().set(object, value);
        } catch (ReflectiveOperationException e) {
            throw new IllegalStateException(key.name(), e);
        }
    }

    /** Returns the values that are set, as text, in the order in which they were set. */
    static Map<String, String> values(KeyedValues object) {
        Map<String, Field> fields = fields(object.getClass());
        Map<String, String> values = new LinkedHashMap<>();
        for (String name : object.keys()) {
            try {
                values.put(name, Values.show(fields.get(lower(name)).get(object)));
            } catch (ReflectiveOperationException e) {
                throw new IllegalStateException(name, e);
            }
        }
        return values;
    }

    /** Returns the object on one line. */
    static String line(KeyedValues object) {
        List<String> parts = new ArrayList<>();
        values(object).forEach((name, value) -> parts.add(name + "=" + value));
        return parts.stream().collect(Collectors.joining(", ", object.getClass().getSimpleName() + "{", "}"));
    }
}
