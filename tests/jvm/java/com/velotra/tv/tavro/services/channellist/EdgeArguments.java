package com.velotra.tv.tavro.services.channellist;

import java.lang.reflect.Field;
import java.lang.reflect.Method;
import java.lang.reflect.Modifier;
import java.util.AbstractList;
import java.util.ArrayList;
import java.util.Arrays;
import java.util.Collections;
import java.util.List;
import java.util.stream.Stream;

/** Calls of every native with arguments at the edges of what Java can pass, none of which may end the process. */
final class EdgeArguments {
    /** One call. A refused element leaves some lists locked. */
    record Call(TvList list, Method method, Object[] arguments, String edge, boolean hasRefusedElement) {
        Object make() {
            return BadInputCalls.invoke(list, method, arguments);
        }

        @Override
        public String toString() {
            return BadInputCalls.fullName(method) + " with " + edge;
        }
    }

    private record Edge(Object value, String name, boolean isRefused) {
        Edge(Object value, String name) {
            this(value, name, false);
        }
    }

    private static final int HUGE = 100_000;
    private static final int[] INTS = {
        Integer.MIN_VALUE, -65_537, -1, 0, 1, 65_534, 65_535, 65_536, 65_541, Integer.MAX_VALUE};

    /** Texts with edge cases of modified UTF-8. */
    private static final List<String> TEXTS = List.of(
            "", "\0", "a\0b", "é".repeat(200), "\uD83D\uDE00".repeat(100), "xxx" + "\uD83D\uDE00".repeat(100), "\uD83D",
            "\uDE00\uD83D", "x".repeat(300) + "\uD83D", "\uFFFF\uFEFF", "%s%n%1000000d", "x".repeat(HUGE));

    /** Identifiers that no native ends the process at. BadInputTest has the others. */
    private static final List<String> IDENTIFIERS = List.of(
            "", "3", "3,4x", "3x,4", "-1,4", "3,-1", "+3,4", " 3,4", "3, 4", "3,4,5", "0,4", "0,0", "65535,65535",
            "65536,4", "65539,65540", "9,4", "3,4\0", "3,4\uD83D\uDE00", "3,4\uD83D", "3,4" + " ".repeat(HUGE),
            "3,4," + "9".repeat(HUGE), "0".repeat(HUGE) + "3,4", "x".repeat(HUGE));

    private EdgeArguments() {}

    /** The calls of a native; files are in a folder. */
    static List<Call> of(TvList list, Method method, String folder) {
        if (method.getParameterCount() == 0) {
            return List.of(new Call(list, method, new Object[0], "nothing", false));
        }
        Object[] working = BadInputCalls.workingArguments(list, method, folder + "/list");
        List<Call> calls = new ArrayList<>();
        for (int i = 0; i < working.length; i++) {
            for (Edge edge : edges(list, method, method.getParameterTypes()[i], folder)) {
                Object[] arguments = working.clone();
                arguments[i] = edge.value;
                calls.add(new Call(list, method, arguments, edge.name,
                        edge.isRefused && edge.value instanceof List));
            }
        }
        return calls;
    }

    private static List<Edge> edges(TvList list, Method method, Class<?> type, String folder) {
        Class<? extends KeyedValues> object = BadInputCalls.OBJECTS.get(list.getClass());
        if (type == int.class) {
            return Arrays.stream(INTS).mapToObj(value -> new Edge(value, String.valueOf(value))).toList();
        } else if (type == String.class) {
            boolean isPath = method.getName().matches("native(_o|O)pen|native(_s|S)tore");
            return strings(isPath ? paths(folder) : IDENTIFIERS);
        } else if (type == List.class) {
            return method.getName().endsWith("pdateInfoList") ? listsOfObjects(object) : listsOfKeys(object);
        }
        List<Edge> edges = new ArrayList<>(objects(object));
        edges.add(new Edge(null, "null"));
        return edges;
    }

    private static List<Edge> strings(List<String> texts) {
        List<Edge> edges = new ArrayList<>();
        edges.add(new Edge(null, "null"));
        texts.forEach(text -> edges.add(new Edge(text, name(text))));
        return edges;
    }

    private static List<String> paths(String folder) {
        return Stream.concat(Stream.of("", folder, folder + "/nothing/list", folder + "/\0"),
                TEXTS.stream().map(text -> folder + "/x" + text)).toList();
    }

    /** Objects with every key, and edges as their values. */
    private static List<Edge> objects(Class<? extends KeyedValues> type) {
        List<Edge> edges = new ArrayList<>();
        edges.add(new Edge(BadInputCalls.newObject(type), "an object without values"));
        edges.add(new Edge(filled(type, 0, null, null, null), "an object with nulls"));
        for (int number : INTS) {
            edges.add(new Edge(filled(type, number, "x", "3,4", new int[] {number}), "an object with " + number));
        }
        for (String text : TEXTS) {
            edges.add(new Edge(filled(type, 1, text, "3,4", new int[HUGE]), "an object with " + name(text)));
        }
        edges.addAll(identifiedObjects(type));
        return edges;
    }

    private static List<Edge> identifiedObjects(Class<? extends KeyedValues> type) {
        List<Edge> edges = new ArrayList<>();
        for (String identifier : IDENTIFIERS) {
            boolean isRefused = !identifier.matches("(?s)[0-9]+,[0-9]+(,.*)?");
            KeyedValues object = filled(type, 1, "x", identifier, new int[0]);
            edges.add(new Edge(object, "an object of " + name(identifier), isRefused));
        }
        return edges;
    }

    private static KeyedValues filled(
            Class<? extends KeyedValues> type, int number, String text, String identifier, int[] numbers) {
        KeyedValues object = BadInputCalls.newObject(type);
        List<String> identifiers = BadInputCalls.FIELDS.get(type);
        for (Field field : type.getDeclaredFields()) {
            if (Modifier.isStatic(field.getModifiers())) {
                continue;
            }
            Class<?> kind = field.getType();
            Object value = kind == int.class ? (Object) number
                    : kind == String.class ? identifiers.contains(field.getName()) ? identifier : text
                    : kind == int[].class ? numbers
                    : text == null ? null : new VltTvTransportStreamInfoBase.AlternateFrequencyInfoBase[1];
            BadInputCalls.put(object, field.getName(), value);
        }
        return object;
    }

    private static KeyedValues named(Class<? extends KeyedValues> type, String identifier) {
        return BadInputCalls.put(BadInputCalls.newObject(type), BadInputCalls.FIELDS.get(type).get(0), identifier);
    }

    private static List<Edge> listsOfObjects(Class<? extends KeyedValues> type) {
        KeyedValues object = named(type, "3,4");
        KeyedValues refused = named(type, "3,4x");
        List<Edge> edges = new ArrayList<>(List.of(
                new Edge(null, "null"),
                new Edge(List.of(), "an empty list"),
                new Edge(Collections.singletonList(null), "a null element"),
                new Edge(Arrays.asList(object, null, object), "a null element in the middle"),
                new Edge(List.of(refused), "a refused element", true),
                new Edge(List.of(object, refused, object), "a refused element in the middle", true),
                new Edge(Collections.nCopies(500, object), "500 elements"),
                new Edge(sized(-1, object), "a list with a negative size"),
                new Edge(sized(5, null), "a list that has only null elements")));
        for (Edge edge : identifiedObjects(type)) {
            edges.add(new Edge(Arrays.asList(object, edge.value), edge.name + " as an element", edge.isRefused));
        }
        return edges;
    }

    private static List<Edge> listsOfKeys(Class<? extends KeyedValues> type) {
        List<String> keys = Arrays.stream(type.getDeclaredFields()).map(Field::getName)
                .map(name -> Character.toUpperCase(name.charAt(0)) + name.substring(1)).toList();
        return List.of(
                new Edge(null, "null"),
                new Edge(List.of(), "an empty list"),
                new Edge(keys, "all keys"),
                new Edge(TEXTS, "texts that are not keys"),
                new Edge(Arrays.asList(keys.get(0), null, keys.get(1)), "a null element"),
                new Edge(Collections.nCopies(500, keys.get(0)), "500 elements"),
                new Edge(sized(-1, keys.get(0)), "a list with a negative size"));
    }

    private static List<Object> sized(int size, Object element) {
        return new AbstractList<>() {
            @Override
            public Object get(int index) {
                return element;
            }

            @Override
            public int size() {
                return size;
            }
        };
    }

    private static String name(String text) {
        if (text == null) {
            return "null";
        }
        StringBuilder name = new StringBuilder("\"");
        text.chars().limit(20).forEach(c -> name.append(c > ' ' && c < 0x7F ? (char) c : '.'));
        return name.append(text.length() > 20 ? "…\" of " + text.length() + " characters" : "\"").toString();
    }
}
