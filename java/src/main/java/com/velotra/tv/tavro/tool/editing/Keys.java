package com.velotra.tv.tavro.tool.editing;

import com.velotra.tv.tavro.services.channellist.KeyedValues;
import com.velotra.tv.tavro.tool.records.Kind;
import java.lang.reflect.Method;
import java.util.Arrays;
import java.util.Comparator;
import java.util.List;
import java.util.Locale;
import java.util.Map;
import java.util.Optional;
import java.util.TreeMap;

/** The Java keys that change a record, which are the setters of the kind's Java object, without its identifier. */
final class Keys {
    private static final String SET = "set";
    private static final List<String> IDENTIFIERS =
            List.of("svlidsvlrecid", "tslidtslrecid", "nwlidnwlrecid", "recid");

    private final Map<String, Method> setters = new TreeMap<>(); // by key in lower case

    private Keys(Class<? extends KeyedValues> type) {
        for (Method method : type.getMethods()) {
            String key = method.getName().startsWith(SET) ? lower(method.getName().substring(SET.length())) : "";
            if (!key.isEmpty() && !IDENTIFIERS.contains(key) && method.getParameterCount() == 1) {
                setters.put(key, method);
            }
        }
    }

    static Keys of(Kind kind) {
        return new Keys(NativeObjects.empty(kind).getClass());
    }

    private static String lower(String key) {
        return key.toLowerCase(Locale.ROOT);
    }

    /** Returns whether there is that key, in upper or lower case. */
    boolean has(String key) {
        return setters.containsKey(lower(key));
    }

    /** Returns the type of the key's values: int, boolean, String, RecordId or an array. */
    Class<?> type(String key) {
        return setters.get(lower(key)).getParameterTypes()[0];
    }

    /** Sets a value, which has the type of the key. */
    void set(KeyedValues object, String key, Object value) {
        try {
            setters.get(lower(key)).invoke(object, new Object[] {value}); // one argument, also if it is an array
        } catch (ReflectiveOperationException e) {
            throw new IllegalStateException(key, e);
        }
    }

    /** Returns the known word of {@code candidates} that is most like a misspelled one, if one is like it. */
    static Optional<String> like(String word, List<String> candidates) {
        return candidates.stream().filter(candidate -> distance(lower(word), lower(candidate)) <= 1 + word.length() / 4)
                .min(Comparator.comparingInt(candidate -> distance(lower(word), lower(candidate))));
    }

    /** The number of letters to insert, remove or replace. */
    private static int distance(String from, String to) {
        int[] row = new int[to.length() + 1];
        Arrays.setAll(row, i -> i);
        for (int i = 1; i <= from.length(); i++) {
            int diagonal = row[0];
            row[0] = i;
            for (int j = 1; j <= to.length(); j++) {
                int best = Math.min(diagonal + (from.charAt(i - 1) == to.charAt(j - 1) ? 0 : 1),
                        1 + Math.min(row[j], row[j - 1]));
                diagonal = row[j];
                row[j] = best;
            }
        }
        return row[to.length()];
    }
}
