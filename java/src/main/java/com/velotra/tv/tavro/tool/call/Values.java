package com.velotra.tv.tavro.tool.call;

import com.google.gson.JsonElement;
import com.google.gson.JsonNull;
import com.google.gson.JsonParseException;
import com.google.gson.JsonParser;
import com.google.gson.JsonPrimitive;
import com.velotra.tv.tavro.services.channellist.KeyedValues;
import com.velotra.tv.tavro.services.channellist.Printable;
import com.velotra.tv.tavro.services.channellist.VltTvTransportStreamInfoBase.AlternateFrequencyInfoBase;
import java.util.Arrays;
import java.util.List;
import java.util.function.Function;
import java.util.stream.Collectors;
import java.util.stream.StreamSupport;

/** Values of arguments and fields, from and to text. */
final class Values {
    static final String NULL = "null";

    private Values() {}

    /** Reads JSON. */
    static JsonElement json(String what, String text) {
        try {
            return JsonParser.parseString(text);
        } catch (JsonParseException e) {
            throw new WrongCall(what + ": '" + text + "' is not JSON");
        }
    }

    /** Reads a value of a type: int or String as it is, and other types as JSON. */
    static Object read(String what, String text, Class<?> type) {
        boolean isJson = type == String.class ? text.length() > 1 && text.startsWith("\"") && text.endsWith("\"")
                : type != int.class;
        return read(what, isJson ? json(what, text)
                : text.equals(NULL) ? JsonNull.INSTANCE : new JsonPrimitive(text), type);
    }

    static Object read(String what, JsonElement json, Class<?> type) {
        if (type == int.class) {
            return number(what, json);
        }
        if (json.isJsonNull()) {
            return null;
        }
        if (type == int[].class) {
            return elements(what, json, element -> number(what, element)).stream().mapToInt(each -> each).toArray();
        }
        if (type == AlternateFrequencyInfoBase[].class) {
            return elements(what, json, element -> frequency(what, element))
                    .toArray(AlternateFrequencyInfoBase[]::new);
        }
        if (!json.isJsonPrimitive()) {
            throw new WrongCall(what + ": '" + json + "' is not a text");
        }
        return json.getAsString();
    }

    private static int number(String what, JsonElement json) {
        String text = json.isJsonPrimitive() ? json.getAsString() : json.toString();
        if (text.matches("-?[0-9]{1,10}")) {
            long number = Long.parseLong(text);
            if (number == (int) number) {
                return (int) number;
            }
        }
        throw new WrongCall(what + ": '" + text + "' is not an int: write " + Integer.MIN_VALUE + " to "
                + Integer.MAX_VALUE);
    }

    private static AlternateFrequencyInfoBase frequency(String what, JsonElement json) {
        List<Integer> numbers = elements(what, json, element -> number(what, element));
        if (numbers.size() != 2) {
            throw new WrongCall(what + ": '" + json + "' is not a pair: write [FREQUENCY,BANDWIDTH]");
        }
        return new AlternateFrequencyInfoBase(numbers.get(0), numbers.get(1));
    }

    /** Reads a JSON array. */
    static <T> List<T> elements(String what, JsonElement json, Function<JsonElement, T> read) {
        if (!json.isJsonArray()) {
            throw new WrongCall(what + ": '" + json + "' is not a JSON array");
        }
        return StreamSupport.stream(json.getAsJsonArray().spliterator(), false).map(read)
                .collect(Collectors.toList()); // may contain null
    }

    /** Returns a value as text on one line. */
    static String show(Object value) {
        if (value instanceof String text) {
            return '"' + Printable.of(text) + '"';
        }
        if (value instanceof KeyedValues object) {
            return RecordObjects.line(object);
        }
        if (value instanceof List<?> list) {
            return list.stream().map(Values::show).collect(Collectors.joining(", ", "[", "]"));
        }
        if (value instanceof int[] numbers) {
            return Arrays.toString(numbers);
        }
        return value instanceof Object[] array ? Arrays.toString(array) : String.valueOf(value);
    }
}
