package com.velotra.tv.tavro.tool.call;

import com.google.gson.JsonElement;
import com.velotra.tv.tavro.services.channellist.KeyedValues;
import com.velotra.tv.tavro.services.channellist.VltTvNetworkInfoBase;
import com.velotra.tv.tavro.services.channellist.VltTvSatelliteInfoBase;
import com.velotra.tv.tavro.tool.input.Similar;
import com.velotra.tv.tavro.tool.records.Kind;
import java.lang.reflect.Parameter;
import java.util.ArrayList;
import java.util.Arrays;
import java.util.LinkedHashMap;
import java.util.List;
import java.util.Map;
import java.util.stream.Collectors;

/** Finds the overload that a user's words are for, and makes its arguments of them. */
final class ArgumentReader {
    private final List<Native> overloads;
    private final List<String> words;

    ArgumentReader(List<Native> overloads, List<String> words) {
        this.overloads = overloads;
        this.words = words;
    }

    /** The words fit another number or form of arguments, so another overload may be meant. */
    private static final class OtherForm extends RuntimeException {
        private static final long serialVersionUID = 1L;
    }

    /**
     * Returns the arguments by overload; there is one.
     *
     * @throws WrongCall if the words fit no overload, or several
     */
    Map.Entry<Native, Object[]> read() {
        Map<Native, Object[]> fitting = new LinkedHashMap<>();
        for (Native each : overloads) {
            try {
                fitting.put(each, arguments(each));
            } catch (OtherForm e) {
                // Perhaps the next one.
            }
        }
        String signatures = overloads.stream().map(Native::signature).collect(Collectors.joining(" or "));
        if (fitting.isEmpty()) {
            throw new WrongCall("the arguments " + words.stream().map(word -> "'" + word + "'")
                    .collect(Collectors.joining(" ", words.isEmpty() ? "(none)" : "", ""))
                    + " do not fit " + signatures);
        }
        if (fitting.size() > 1) {
            throw new WrongCall("null fits " + signatures + "; write its type, such as String:null");
        }
        return fitting.entrySet().iterator().next();
    }

    private Object[] arguments(Native method) {
        Parameter[] parameters = method.method().getParameters();
        List<List<String>> wordsOf = new ArrayList<>();
        int next = 0;
        for (Parameter parameter : parameters) {
            int end = next + 1;
            while (Native.isObject(parameter.getType()) && end < words.size() && isAssignment(words.get(next))
                    && isAssignment(words.get(end))) {
                end++;
            }
            if (end > words.size()) {
                throw new OtherForm();
            }
            wordsOf.add(words.subList(next, end));
            next = end;
        }
        if (next < words.size()) {
            throw new OtherForm();
        }
        Object[] arguments = new Object[parameters.length];
        for (int i = 0; i < arguments.length; i++) {
            arguments[i] = argument(parameters[i], wordsOf.get(i));
        }
        return arguments;
    }

    private Object argument(Parameter parameter, List<String> own) {
        Class<?> type = parameter.getType();
        String word = own.get(0);
        boolean isNull = word.equals(Values.NULL) || word.equals(type.getSimpleName() + ":" + Values.NULL);
        if (isNull && type != int.class) {
            return null;
        }
        if (Native.isObject(type)) {
            return object(type, own);
        }
        if (type == List.class) {
            return list(parameter, word);
        }
        boolean isForObject = word.startsWith("{") || isAssignment(word) || word.endsWith(":" + Values.NULL);
        if (isForObject && isObjectElsewhere()) {
            throw new OtherForm();
        }
        return Values.read(parameter.getName(), word, type);
    }

    private boolean isObjectElsewhere() {
        return overloads.stream().flatMap(each -> Arrays.stream(each.method().getParameterTypes()))
                .anyMatch(Native::isObject);
    }

    private static boolean isAssignment(String word) {
        return word.matches("(?s)[A-Za-z][A-Za-z0-9]*=.*");
    }

    private KeyedValues object(Class<?> type, List<String> own) {
        RecordObjects objects = new RecordObjects(type);
        if (own.get(0).startsWith("{")) {
            return objects.read(Values.json(type.getSimpleName(), own.get(0)));
        }
        KeyedValues object = objects.empty();
        for (String word : own) {
            if (!isAssignment(word)) {
                throw new OtherForm();
            }
            int equals = word.indexOf('=');
            objects.put(object, word.substring(0, equals), word.substring(equals + 1));
        }
        return object;
    }

    private List<?> list(Parameter parameter, String word) {
        Class<?> element = Native.elementType(parameter);
        if (element == String.class && !word.startsWith("[")) {
            return keys(word);
        }
        JsonElement json = Values.json(parameter.getName(), word);
        RecordObjects objects = element == String.class ? null : new RecordObjects(element);
        // deliberate: a list of objects may contain texts, because Java does not check what a list contains.
        return Values.elements(parameter.getName(), json, each -> each.isJsonObject() && objects != null
                ? objects.read(each) : Values.read(parameter.getName(), each, String.class));
    }

    /** Reads keys separated by commas. Unlike a JSON array, which may contain any text, they must be known. */
    private List<String> keys(String word) {
        Class<?> type = overloads.get(0).kind() == Kind.NETWORKS
                ? VltTvNetworkInfoBase.class : VltTvSatelliteInfoBase.class;
        List<String> known = new RecordObjects(type).names();
        List<String> keys = List.of(word.split(",", -1));
        for (String key : keys) {
            if (!known.contains(key)) {
                throw new WrongCall("unknown key '" + key + "'" + Similar.suggestion(key, known)
                        + "; a JSON array may contain any text");
            }
        }
        return keys;
    }
}
