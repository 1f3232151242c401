package com.velotra.tv.tavro.tool.input;

import java.io.ByteArrayOutputStream;
import java.io.PrintStream;
import java.nio.charset.StandardCharsets;
import java.util.List;

/** Sources and reports for the tests of imports. */
public final class ImportFixture {
    private ImportFixture() {}

    /** Returns a UTF-8 file with these lines, called {@code fileName} in messages. */
    public static Source source(String fileName, String... lines) {
        return new Source(fileName, fileName, (String.join("\n", lines) + "\n").getBytes(StandardCharsets.UTF_8));
    }

    /** Returns the summary of a report. */
    public static String summary(ImportReport report) {
        ByteArrayOutputStream out = new ByteArrayOutputStream();
        report.print(new PrintStream(out, true, StandardCharsets.UTF_8));
        return out.toString(StandardCharsets.UTF_8);
    }

    /** Returns the lines of the summary about lists. */
    public static List<String> lists(ImportReport report) {
        return summary(report).lines().filter(line -> line.matches("[a-z ]+ list \\d+: .*")).toList();
    }
}
