package com.velotra.tv.tavro.tool.device;

import java.util.Optional;
import java.util.regex.Matcher;
import java.util.regex.Pattern;

/**
 * A line as {@code logcat -v threadtime} prints it. In bug reports, the user comes before the process.
 *
 * @param head what comes before the level: time, user if given, process and thread
 * @param process process id
 * @param level V, D, I, W, E or F
 * @param tag tag without the blanks after it, maybe empty
 */
record LogLine(String head, String process, String level, String tag, String text) {
    private static final Pattern FORM = Pattern.compile("((?:\\d{4}-)?\\d\\d-\\d\\d \\d\\d:\\d\\d:\\d\\d\\.\\d{3,9}"
            + "(?: [+-]\\d{4})?(?: +[a-z]\\w*| +\\d+(?= +\\d+ +\\d+ ))? +(\\d+) +\\d+) ([VDIWEFAS]) (.*)");

    /** Reads a line. Returns nothing for a line of another form. */
    static Optional<LogLine> parse(String line) {
        Matcher form = FORM.matcher(line);
        if (!form.matches()) {
            return Optional.empty();
        }
        // logcat pads the tag with blanks to 8 characters, and then comes ": ".
        String rest = form.group(4);
        int end = rest.indexOf(": ");
        String text = end < 0 ? "" : rest.substring(end + 2);
        end = end < 0 && rest.endsWith(":") ? rest.length() - 1 : end;
        return end < 0 ? Optional.empty()
                : Optional.of(new LogLine(form.group(1), form.group(2), form.group(3),
                        rest.substring(0, end).strip(), text));
    }

    /** Returns whether two lines can be parts of one text: logcat repeats the head for each line of a text. */
    boolean continues(LogLine before) {
        return head.equals(before.head) && level.equals(before.level) && tag.equals(before.tag);
    }

    /** Returns this line with another line of the same text. The line feed between them is printed as \n. */
    LogLine with(LogLine next) {
        return new LogLine(head, process, level, tag, text + "\\n" + next.text);
    }

    /** Returns the line as logcat prints it, so that a filtered log can be filtered again. */
    @Override
    public String toString() {
        return String.format("%s %s %-8s: %s", head, level, tag, text).stripTrailing();
    }
}
