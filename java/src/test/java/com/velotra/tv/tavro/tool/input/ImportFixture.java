package com.velotra.tv.tavro.tool.input;

import java.io.ByteArrayOutputStream;
import java.io.PrintStream;
import java.nio.charset.StandardCharsets;
import java.util.List;

/** Sources and reports for the tests of imports. */
public final class ImportFixture {
    private ImportFixture() {}

    /** A file in UTF-8 with those lines. Messages print {@code fileName} alone. */
    public static Source source(String fileName, String... lines) {
        return new Source(fileName, fileName, (String.join("\n", lines) + "\n").getBytes(StandardCharsets.UTF_8));
    }

    /** The summary of a report. */
    public static String summary(ImportReport report) {
        ByteArrayOutputStream out = new ByteArrayOutputStream();
        report.print(new PrintStream(out, true, StandardCharsets.UTF_8));
        return out.toString(StandardCharsets.UTF_8);
    }

    /** The lines of the summary that are about lists. */
    public static List<String> lists(ImportReport report) {
        return summary(report).lines().filter(line -> line.matches("[a-z ]+ list \\d+: .*")).toList();
    }
}
