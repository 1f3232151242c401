package com.velotra.tv.tavro.services.channellist;

import java.io.Serializable;
import java.util.List;

/**
 * What a problem looks like.
 *
 * @param symptom what a program sees: a result or an error, and what it asked of the platform
 * @param log the lines that were logged meanwhile, such as {@code E Tag: text}, without blanks at their ends
 */
record Observation(String symptom, List<String> log) implements Serializable {
    private static final long serialVersionUID = 1L;
}
