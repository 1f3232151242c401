package com.velotra.tv.tavro.tool.shell;

import java.io.File;
import java.util.Arrays;
import java.util.stream.Stream;

/** Completion of file names. */
final class FileNames {
    private FileNames() {}

    /** Returns the files in the directory of {@code start}; a directory ends with a slash. */
    static Stream<Suggestion> complete(String start) {
        String parent = start.substring(0, start.lastIndexOf('/') + 1);
        String[] names = new File(parent.isEmpty() ? "." : parent).list();
        if (names == null) {
            return Stream.of();
        }
        String first = start.substring(parent.length());
        return Arrays.stream(names).sorted()
                .filter(name -> name.startsWith(first) && (!name.startsWith(".") || first.startsWith(".")))
                .map(name -> new File(parent.isEmpty() ? "." : parent, name).isDirectory()
                        ? Suggestion.start(parent + name + "/", "")
                        : Suggestion.word(parent + name, ""));
    }
}
