package com.velotra.tv.tavro.tool.output;

import com.velotra.tv.tavro.services.channellist.Printable;
import com.velotra.tv.tavro.tool.input.Text;
import java.util.ArrayList;
import java.util.List;

/** A text table. Every column is as wide as its widest cell. */
public final class Table {
    private static final String GAP = "  ";

    private final List<String[]> rows = new ArrayList<>();
    private final boolean[] right;

    /** A heading that begins with {@code >} makes a right-aligned column. */
    public Table(String... headings) {
        right = new boolean[headings.length];
        String[] row = new String[headings.length];
        for (int i = 0; i < headings.length; i++) {
            right[i] = headings[i].startsWith(">");
            row[i] = right[i] ? headings[i].substring(1) : headings[i];
        }
        rows.add(row);
    }

    /** Returns the line after a table that does not show all rows; empty if it shows all. */
    public static String more(int hidden) {
        return hidden > 0 ? "… and " + hidden + " more" + System.lineSeparator() : "";
    }

    public void add(Object... cells) {
        String[] row = new String[right.length];
        for (int i = 0; i < row.length; i++) {
            row[i] = Printable.of(cells[i].toString());
        }
        rows.add(row);
    }

    /** Formats the table in lines of at most {@code columns}. */
    public String toString(int columns) {
        int[] widths = new int[right.length];
        for (String[] row : rows) {
            for (int i = 0; i < row.length; i++) {
                widths[i] = Math.max(widths[i], Text.width(row[i]));
            }
        }
        StringBuilder out = new StringBuilder();
        for (String[] row : rows) {
            StringBuilder line = new StringBuilder();
            for (int i = 0; i < row.length; i++) {
                String padding = " ".repeat(widths[i] - Text.width(row[i]));
                line.append(i == 0 ? "" : GAP).append(right[i] ? padding + row[i] : row[i] + padding);
            }
            out.append(Text.fit(line.toString().stripTrailing(), columns)).append(System.lineSeparator());
        }
        return out.toString();
    }
}
