package com.velotra.tv.tavro.tool.device;

import java.util.HashMap;
import java.util.HashSet;
import java.util.Map;
import java.util.Optional;
import java.util.Set;
import java.util.function.Consumer;

/**
 * Finds the lines of the library in a log. Lines with one of its tags are its own. Its other lines have no tag: the
 * system then prints an empty one, or since Android 11 the name of the program. So a line is also the library's if it
 * has one of the library's formats, and
 * <ul>
 * <li>begins in a way that no other program uses, or
 * <li>has an empty tag, or
 * <li>its process has written other lines of the library, without a tag of its own.
 * </ul>
 */
final class LogFilter {
    private final LogFormats formats = new LogFormats();
    private final Consumer<LogLine> output;
    private final Set<String> processes = new HashSet<>();
    private final Map<String, String> programTags = new HashMap<>(); // by process
    private LogLine last; // the last line of the library, which the next one may continue
    private int lines;
    private int readable;
    private int found;

    LogFilter(Consumer<LogLine> output) {
        this.output = output;
    }

    /** Takes the next line of a log. */
    void add(String text) {
        lines++;
        Optional<LogLine> line = LogLine.parse(text);
        if (line.isEmpty()) {
            return;
        }
        readable++;
        if (last != null && continuesLast(line.get())) {
            last = last.with(line.get());
            return;
        }
        end();
        if (isOurs(line.get())) {
            last = line.get();
        }
    }

    /** Passes on the line that is being joined. */
    void end() {
        if (last != null) {
            found++;
            output.accept(last);
            last = null;
        }
    }

    /** Returns the number of lines read. */
    int lines() {
        return lines;
    }

    /** Returns the number of lines in the form that can be read. */
    int readable() {
        return readable;
    }

    /** Returns the number of lines passed on. */
    int found() {
        return found;
    }

    private boolean continuesLast(LogLine line) {
        return line.continues(last) && formats.mayContinue(last.tag(), last.text())
                && !formats.matches(line.tag(), line.text());
    }

    private boolean isOurs(LogLine line) {
        boolean ours = formats.hasTag(line.tag());
        if (!ours && formats.matches(line.tag(), line.text())) {
            if (LogFormats.isUnmistakable(line.text())) {
                programTags.put(line.process(), line.tag());
                ours = true;
            } else {
                String programTag = programTags.get(line.process());
                ours = line.tag().isEmpty() || (programTag == null ? processes.contains(line.process())
                        : programTag.equals(line.tag()));
            }
        }
        if (ours) {
            processes.add(line.process());
        }
        return ours;
    }
}
