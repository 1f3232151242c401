package com.velotra.tv.tavro.services.channellist;

import java.lang.reflect.Array;
import java.lang.reflect.Field;
import java.lang.reflect.Method;
import java.lang.reflect.Modifier;
import java.util.Arrays;
import java.util.Comparator;
import java.util.List;
import java.util.stream.IntStream;
import java.util.stream.Stream;

/** Record objects with all their values set. */
final class FilledObjects {
    private FilledObjects() {}

    /** The same object with all values but some set, by its setters; texts of identifiers name record 1,1. */
    static <T extends KeyedValues> T withAll(T info, String... but) {
        Stream<Method> setters = Arrays.stream(info.getClass().getMethods())
                .filter(method -> method.getName().startsWith("set") && method.getParameterCount() == 1)
                .filter(method -> !List.of(but).contains(method.getName().substring(3)));
        setters.sorted(Comparator.comparing(Method::getName)).forEach(setter -> {
            try {
                setter.invoke(info, value(setter));
            } catch (ReflectiveOperationException e) {
                throw new AssertionError(setter.toString(), e);
            }
        });
        if (info.keys().size() <= 5) {
            throw new AssertionError("there are more keys than " + info.keys());
        }
        return info;
    }

    /** All keys of an object's class. */
    static List<String> allKeys(KeyedValues info) {
        return List.copyOf(withAll(info).keys());
    }

    /** Makes the values null that are objects. Their keys stay set. */
    static void clearObjects(KeyedValues info) {
        try {
            for (Field field : info.getClass().getDeclaredFields()) {
                if (!Modifier.isStatic(field.getModifiers()) && !field.getType().isPrimitive()) {
                    field.setAccessible(true);
                    field.set(info, null);
                }
            }
        } catch (ReflectiveOperationException e) {
            throw new AssertionError(e);
        }
    }

    private static Object value(Method setter) {
        Class<?> type = setter.getParameterTypes()[0];
        if (type == String.class) {
            return setter.getName().endsWith("RecId") ? "1,1" : "Text";
        } else if (type == RecordId.class) {
            return new RecordId(1, 1);
        } else if (type == boolean.class) {
            return true;
        } else if (type == int.class) {
            return 1;
        } else if (type == int[].class) {
            return IntStream.range(0, 5).toArray();
        }
        Object array = Array.newInstance(type.getComponentType(), 5); // as many as are taken
        Arrays.setAll((Object[]) array, i -> new VltTvTransportStreamInfoBase.AlternateFrequencyInfoBase(i, 8000));
        return array;
    }
}
