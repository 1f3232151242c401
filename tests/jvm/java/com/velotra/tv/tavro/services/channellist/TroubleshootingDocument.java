package com.velotra.tv.tavro.services.channellist;

import java.io.IOException;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.ArrayList;
import java.util.LinkedHashMap;
import java.util.List;
import java.util.Map;
import java.util.regex.MatchResult;
import java.util.regex.Matcher;
import java.util.regex.Pattern;

/** The entries of docs/troubleshooting.md: headings of the third level, each with four points. */
final class TroubleshootingDocument {
    private static final Pattern HEADING = Pattern.compile("(?m)^### (.+)$");
    private static final Pattern POINT = Pattern.compile("(?ms)^- \\*\\*(\\w+)\\*\\*: (.+?)(?=^- |^#|\\z|^$)");
    private static final Pattern LITERAL = Pattern.compile("`([^`]+)`");
    private static final String ELSEWHERE = " On Android";

    private TroubleshootingDocument() {}

    /**
     * One entry.
     *
     * @param points by their names, with blanks in place of line ends
     */
    record Entry(String heading, Map<String, String> points) {
        /** The texts in backticks of a point, up to the sentence about Android, whose texts are not seen here. */
        List<String> literals(String point) {
            String text = points.get(point);
            int end = text.indexOf(ELSEWHERE);
            return LITERAL.matcher(end < 0 ? text : text.substring(0, end)).results()
                    .map(found -> found.group(1)).toList();
        }
    }

    static List<Entry> entries(Path document) throws IOException {
        String text = Files.readString(document);
        List<MatchResult> headings = HEADING.matcher(text).results().toList();
        List<Entry> entries = new ArrayList<>();
        for (int i = 0; i < headings.size(); i++) {
            int end = i + 1 < headings.size() ? headings.get(i + 1).start() : text.length();
            Map<String, String> points = new LinkedHashMap<>();
            Matcher point = POINT.matcher(text.substring(headings.get(i).end(), end));
            while (point.find()) {
                points.put(point.group(1), point.group(2).strip().replaceAll("\\s*\n\\s*", " "));
            }
            entries.add(new Entry(headings.get(i).group(1), points));
        }
        return entries;
    }
}
