package com.velotra.tv.tavro.bench;

import com.velotra.tv.tavro.services.channellist.RecordId;
import com.velotra.tv.tavro.services.channellist.VltTvTransportStreamInfoBase.AlternateFrequencyInfoBase;
import java.lang.reflect.Method;
import java.util.ArrayList;
import java.util.Comparator;
import java.util.HashMap;
import java.util.List;
import java.util.Map;

/** Makes the record objects that benchmarks pass to the natives. */
public final class Records {
    private static final AlternateFrequencyInfoBase[] ALTERNATES = {
        new AlternateFrequencyInfoBase(474_000, 8000), new AlternateFrequencyInfoBase(482_000, 7000)
    };

    private Records() {}

    /**
     * Makes {@code size} objects of a class, each with values for {@code keys} keys.
     *
     * @param first the first keys, as "Key=number" separated by commas (for text keys the number is ignored); other
     *         keys follow in alphabetical order, with the number 1
     * @param identifierKey the key of the record's identifier, which does not count as one of the keys
     * @param listId the list id of the identifiers; record ids start at 1
     * @param identified whether the identifiers are set
     */
    public static List<Object> make(
            String className, String first, int keys, String identifierKey, int listId, boolean identified, int size)
            throws ReflectiveOperationException {
        Class<?> type = Class.forName(className);
        Map<String, Integer> values = new HashMap<>();
        List<String> order = new ArrayList<>();
        for (String entry : first.split(",")) {
            String[] parts = entry.split("=");
            values.put("set" + parts[0], Integer.valueOf(parts[1]));
            order.add("set" + parts[0]);
        }
        List<Method> setters = new ArrayList<>();
        for (Method method : type.getMethods()) {
            if (method.getName().startsWith("set")
                    && method.getParameterCount() == 1
                    && !method.getName().equals("set" + identifierKey)) {
                setters.add(method);
            }
        }
        setters.sort(Comparator.comparingInt((Method method) -> rank(order, method.getName())).thenComparing(
                Method::getName));
        Method identifierSetter = identifierSetter(type, "set" + identifierKey);
        List<Object> records = new ArrayList<>();
        for (int id = 1; id <= size; ++id) {
            Object record = type.getConstructor().newInstance();
            if (identified) {
                identifierSetter.invoke(record, identifier(identifierSetter, listId + "," + id));
            }
            for (Method setter : setters.subList(0, Math.min(keys, setters.size()))) {
                setter.invoke(record, value(setter, values.getOrDefault(setter.getName(), 1)));
            }
            records.add(record);
        }
        return records;
    }

    private static int rank(List<String> order, String name) {
        int index = order.indexOf(name);
        return index < 0 ? order.size() : index;
    }

    private static Method identifierSetter(Class<?> type, String name) throws NoSuchMethodException {
        for (Method method : type.getMethods()) {
            if (method.getName().equals(name)) {
                return method;
            }
        }
        throw new NoSuchMethodException(type + " has no " + name);
    }

    private static Object identifier(Method setter, String text) {
        return setter.getParameterTypes()[0] == RecordId.class ? RecordId.parse(text) : text;
    }

    private static Object value(Method setter, int number) {
        Class<?> type = setter.getParameterTypes()[0];
        if (type == int.class) {
            return number;
        }
        if (type == boolean.class) {
            return true;
        }
        if (setter.getName().endsWith("RecId")) {
            return identifier(setter, "11,7");
        }
        if (type == String.class) {
            return "Some text";
        }
        if (type == int[].class) {
            return new int[] {1, 2};
        }
        if (type == AlternateFrequencyInfoBase[].class) {
            return ALTERNATES;
        }
        throw new IllegalArgumentException("no value for " + setter);
    }
}
