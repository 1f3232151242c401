package com.velotra.tv.tavro.tool.call;

import com.velotra.tv.tavro.services.channellist.KeyedValues;
import com.velotra.tv.tavro.tool.records.Kind;
import java.lang.reflect.Method;
import java.lang.reflect.Parameter;
import java.lang.reflect.ParameterizedType;
import java.lang.reflect.Type;
import java.lang.reflect.WildcardType;
import java.util.Arrays;
import java.util.Map;
import java.util.stream.Collectors;

/**
 * One native of a list class.
 *
 * @param kind the kind of the list class
 * @param method its Java method
 */
record Native(Kind kind, Method method) {
    /** What arguments mean, by the names of the parameters. */
    private static final Map<String, String> MEANINGS = Map.ofEntries(
            Map.entry("mwdbId", "list id"),
            Map.entry("sourceId", "id of the list to copy"),
            Map.entry("destinationId", "id of the list that receives the copy"),
            Map.entry("identifier", "record, as LIST,RECORD"),
            Map.entry("path", "file"),
            Map.entry("keys", "keys of the values to read, KEY,KEY or null for all"),
            Map.entry("transportStreamId", "transport_stream_id"),
            Map.entry("transportStreamRecordId", "record id in the transport stream list with the same id"),
            Map.entry("networkId", "network_id"),
            Map.entry("satelliteRecordId", "record id in the satellite list with the same id"));

    /** Returns the name of the class without its package. */
    String className() {
        return method.getDeclaringClass().getSimpleName();
    }

    String name() {
        return method.getName();
    }

    /** Returns result, name and parameters as in Java. */
    String signature() {
        return method.getReturnType().getSimpleName() + " " + name() + "(" + Arrays.stream(method.getParameters())
                .map(parameter -> typeName(parameter) + " " + parameter.getName()).collect(Collectors.joining(", "))
                + ")";
    }

    /** Returns what the arguments mean, as "name: meaning", separated by semicolons. */
    String meanings() {
        return Arrays.stream(method.getParameters())
                .map(parameter -> parameter.getName() + ": " + meaning(parameter))
                .collect(Collectors.joining("; "));
    }

    private static String meaning(Parameter parameter) {
        if (isObject(parameter.getType())) {
            return "KEY=VALUE… or a JSON object";
        }
        return MEANINGS.getOrDefault(parameter.getName(), "JSON array of objects");
    }

    /** Returns whether a parameter takes a record object. */
    static boolean isObject(Class<?> type) {
        return KeyedValues.class.isAssignableFrom(type);
    }

    /** Returns the type of the elements of a parameter that is a list. */
    static Class<?> elementType(Parameter list) {
        Type element = ((ParameterizedType) list.getParameterizedType()).getActualTypeArguments()[0];
        return (Class<?>) (element instanceof WildcardType wildcard ? wildcard.getUpperBounds()[0] : element);
    }

    /** Returns the name of a parameter's type without packages and wildcards. */
    static String typeName(Parameter parameter) {
        return parameter.getParameterizedType() instanceof ParameterizedType
                ? parameter.getType().getSimpleName() + "<" + elementType(parameter).getSimpleName() + ">"
                : parameter.getType().getSimpleName();
    }
}
