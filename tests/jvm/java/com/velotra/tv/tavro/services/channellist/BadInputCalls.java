package com.velotra.tv.tavro.services.channellist;

import java.lang.reflect.Constructor;
import java.lang.reflect.Field;
import java.lang.reflect.InvocationTargetException;
import java.lang.reflect.Method;
import java.lang.reflect.Modifier;
import java.util.ArrayList;
import java.util.Arrays;
import java.util.Comparator;
import java.util.List;
import java.util.Map;
import java.util.stream.Stream;

/**
 * The natives, and every way in which one takes a record identifier: as text, in an object, in an element of a list.
 */
final class BadInputCalls {
    /** What natives get as list id. */
    static final int LIST = 5;

    /** The kinds of list, as the document names them. */
    static final Map<String, Class<? extends TvList>> KINDS = Map.of(
            "service", VltTvChannelList.class, "transport stream", VltTvTransportStreamList.class,
            "network", VltTvNetworkList.class, "satellite", VltTvSatelliteList.class);

    /** The record objects that the natives of a list class take. */
    static final Map<Class<?>, Class<? extends KeyedValues>> OBJECTS = Map.of(
            VltTvChannelList.class, VltTvChannelInfoBase.class,
            VltTvTransportStreamList.class, VltTvTransportStreamInfoBase.class,
            VltTvNetworkList.class, VltTvNetworkInfoBase.class,
            VltTvSatelliteList.class, VltTvSatelliteInfoBase.class);

    /**
     * The fields of objects that hold identifiers. The first names the record itself, the others records that it refers
     * to.
     */
    static final Map<Class<?>, List<String>> FIELDS = Map.of(
            VltTvChannelInfoBase.class, List.of("svlIdSvlRecId", "tslRecId", "satlRecId"),
            VltTvTransportStreamInfoBase.class, List.of("tslIdTslRecId", "tslNwlRecId", "tslSatlRecId"),
            VltTvNetworkInfoBase.class, List.of("NwlIdNwlRecId"),
            VltTvSatelliteInfoBase.class, List.of("RecId"));

    /** Where an identifier is passed, as the document names it. */
    enum Place {
        ARGUMENT("argument"), OBJECT("object"), REFERENCE("reference"), FIRST("first element"), LATER("later element");

        final String text;

        Place(String text) {
            this.text = text;
        }
    }

    /** One way: a native, and for objects the field that holds the identifier. */
    record Call(TvList list, Method method, Place place, String field) {
        /** What the native returns for that identifier. */
        Object with(String identifier) {
            Object[] arguments = Arrays.stream(method.getParameterTypes()).map(type -> argument(type, identifier))
                    .toArray();
            return invoke(list, method, arguments);
        }

        private Object argument(Class<?> type, String identifier) {
            if (type == int.class) {
                return LIST;
            } else if (type == String.class) {
                return identifier;
            } else if (type != List.class) {
                return object(identifier);
            } else if (place == Place.ARGUMENT) {
                return null; // all keys
            }
            return place == Place.LATER ? List.of(named("3,2"), object(identifier)) : List.of(object(identifier));
        }

        private KeyedValues object(String identifier) {
            if (place != Place.REFERENCE) {
                return named(identifier);
            }
            return put(named("3,4"), field, identifier);
        }

        private KeyedValues named(String identifier) {
            Class<? extends KeyedValues> type = OBJECTS.get(method.getDeclaringClass());
            return put(newObject(type), FIELDS.get(type).get(0), identifier);
        }

        @Override
        public String toString() {
            return fullName(method) + ", " + place.text + (field == null ? "" : " " + field);
        }
    }

    /** A call with a list that has an element of another class. */
    record ForeignElement(TvList list, Method method, Object element) {
        Object make() {
            Object[] arguments = workingArguments(list, method, "/data/list");
            for (int i = 0; i < arguments.length; i++) {
                if (method.getParameterTypes()[i] == List.class) {
                    arguments[i] = List.of(element);
                }
            }
            return invoke(list, method, arguments);
        }
    }

    private BadInputCalls() {}

    /** Every native that takes a list, with an element of each class that it does not expect. */
    static List<ForeignElement> foreignElements() {
        List<Object> elements = new ArrayList<>(List.of(new Object(), "text", 7, List.of()));
        lists().forEach(list -> elements.add(newObject(OBJECTS.get(list.getClass()))));
        List<ForeignElement> calls = new ArrayList<>();
        for (TvList list : lists()) {
            for (Method method : natives(list)) {
                boolean takesObjects = method.getName().endsWith("pdateInfoList");
                Class<?> expected = takesObjects ? OBJECTS.get(list.getClass()) : String.class;
                if (List.of(method.getParameterTypes()).contains(List.class)) {
                    elements.stream().filter(element -> element.getClass() != expected)
                            .forEach(element -> calls.add(new ForeignElement(list, method, element)));
                }
            }
        }
        return calls;
    }

    /** The name of a list's kind. */
    static String kind(TvList list) {
        return KINDS.entrySet().stream().filter(kind -> kind.getValue() == list.getClass()).findFirst().orElseThrow()
                .getKey();
    }

    /** The four list classes, as objects whose nativeSetup was not called. */
    static List<TvList> lists() {
        return KINDS.values().stream().sorted(Comparator.comparing(Class::getName)).map(BadInputCalls::list).toList();
    }

    /** The natives of a list class, in the order of their signatures. */
    static List<Method> natives(TvList list) {
        return Arrays.stream(list.getClass().getDeclaredMethods())
                .filter(method -> Modifier.isNative(method.getModifiers()))
                .sorted(Comparator.comparing(BadInputCalls::signature))
                .toList();
    }

    /** All natives of the four classes but nativeSetup, in the order in which the probe calls them. */
    static List<String> nativesButSetup() {
        return lists().stream().flatMap(list -> natives(list).stream()
                .filter(method -> !method.getName().equals("nativeSetup"))
                .map(BadInputCalls::fullName)).toList();
    }

    /** The signature with its class: {@code VltTvChannelList.native_open(int)}. */
    static String fullName(Method method) {
        return method.getDeclaringClass().getSimpleName() + "." + signature(method);
    }

    /** As the documents write it: {@code native_updateInfo(int, …InfoBase)}. */
    static String signature(Method method) {
        List<String> types = Arrays.stream(method.getParameterTypes()).map(Class::getSimpleName).toList();
        return method.getName() + "(" + String.join(", ", types).replaceAll("\\w+InfoBase", "…InfoBase") + ")";
    }

    /** Every way there is. */
    static List<Call> all() {
        List<Call> calls = new ArrayList<>();
        for (TvList list : lists()) {
            for (Method method : natives(list)) {
                calls(list, method).forEach(calls::add);
            }
        }
        return calls;
    }

    private static Stream<Call> calls(TvList list, Method method) {
        List<Class<?>> types = List.of(method.getParameterTypes());
        List<String> references = FIELDS.get(OBJECTS.get(list.getClass())).stream().skip(1).toList();
        Stream<Call> inReferences = references.stream().map(field -> new Call(list, method, Place.REFERENCE, field));
        if (types.stream().anyMatch(KeyedValues.class::isAssignableFrom)) {
            return Stream.concat(Stream.of(new Call(list, method, Place.OBJECT, null)), inReferences);
        } else if (method.getName().endsWith("pdateInfoList")) {
            Stream<Call> inElements = Stream.of(Place.FIRST, Place.LATER)
                    .map(place -> new Call(list, method, place, null));
            return Stream.concat(inElements, inReferences);
        }
        boolean takesPath = method.getName().matches("native(_o|O)pen|native(_s|S)tore");
        boolean takesIdentifier = types.contains(String.class) && !takesPath;
        return takesIdentifier ? Stream.of(new Call(list, method, Place.ARGUMENT, null)) : Stream.of();
    }

    /** Arguments for a native other than nativeSetup: list 5, record 3,4, an object that names it, a path. */
    static Object[] workingArguments(TvList list, Method method, String path) {
        List<Call> calls = calls(list, method).toList();
        return Arrays.stream(method.getParameterTypes()).map(type -> {
            if (calls.isEmpty()) {
                return type == int.class ? (Object) LIST : type == String.class ? path : null;
            }
            return calls.get(0).argument(type, "3,4");
        }).toArray();
    }

    static Object invoke(TvList list, Method method, Object... arguments) {
        try {
            method.setAccessible(true);
            return method.invoke(list, arguments);
        } catch (InvocationTargetException e) {
            throw new IllegalStateException(signature(method), e.getCause());
        } catch (ReflectiveOperationException e) {
            throw new IllegalStateException(signature(method), e);
        }
    }

    /** A list class whose nativeSetup was not called. */
    static TvList list(Class<? extends TvList> type) {
        try {
            Constructor<? extends TvList> constructor = type.getDeclaredConstructor();
            constructor.setAccessible(true);
            return constructor.newInstance();
        } catch (ReflectiveOperationException e) {
            throw new IllegalStateException(e);
        }
    }

    static KeyedValues newObject(Class<? extends KeyedValues> type) {
        try {
            return type.getDeclaredConstructor().newInstance();
        } catch (ReflectiveOperationException e) {
            throw new IllegalStateException(e);
        }
    }

    /** Puts a value into a field as it is, and marks its key, which is the field's name with a capital. */
    static KeyedValues put(KeyedValues object, String name, Object value) {
        try {
            Field field = object.getClass().getDeclaredField(name);
            field.setAccessible(true);
            field.set(object, value);
        } catch (ReflectiveOperationException e) {
            throw new IllegalStateException(e);
        }
        object.mark(Character.toUpperCase(name.charAt(0)) + name.substring(1));
        return object;
    }
}
