package com.velotra.tv.tavro.tool;

import com.velotra.tv.tavro.tool.matching.Part;
import java.util.EnumSet;
import java.util.Set;
import java.util.stream.Collectors;
import picocli.CommandLine;
import picocli.CommandLine.ParameterException;

/** Options with parts of a list, separated by commas. */
final class Parts {
    private Parts() {}

    /** Returns the parts that an option names; an empty text names none. */
    static Set<Part> parse(String text, Set<Part> allowed, CommandLine command) {
        Set<Part> parts = EnumSet.noneOf(Part.class);
        for (String name : text.isEmpty() ? new String[0] : text.split(",", -1)) {
            parts.add(allowed.stream().filter(part -> part.toString().equals(name.strip())).findFirst()
                    .orElseThrow(() -> new ParameterException(command, "unknown part '" + name + "': use "
                            + allowed.stream().map(Part::toString).collect(Collectors.joining(", ")))));
        }
        return parts;
    }
}
