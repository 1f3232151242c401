package com.velotra.tv.tavro.tool.exchange;

import java.util.HashMap;
import java.util.Map;

/** Keeps one object per text. Most values of a list are alike, so this saves most of the memory. */
final class SharedTexts {
    private static final int MOST = 1 << 16;

    private final Map<String, String> texts = new HashMap<>();

    String shared(String text) {
        if (texts.size() == MOST) {
            texts.clear();
        }
        String known = texts.putIfAbsent(text, text);
        return known == null ? text : known;
    }
}
