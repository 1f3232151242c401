package com.velotra.tv.tavro.tool.comparing;

import com.velotra.tv.tavro.services.channellist.Printable;
import com.velotra.tv.tavro.tool.input.Text;
import com.velotra.tv.tavro.tool.matching.Comparison;
import com.velotra.tv.tavro.tool.matching.Difference;
import com.velotra.tv.tavro.tool.matching.FieldChange;
import com.velotra.tv.tavro.tool.output.Ansi;
import com.velotra.tv.tavro.tool.records.RecordList;
import com.velotra.tv.tavro.tool.storage.ListEntry;
import java.io.PrintWriter;
import java.util.ArrayList;
import java.util.List;

/** Prints differences for people: removed, added and changed records, each with the values that differ. */
public final class DifferenceText {
    private static final String INDENT = "    ";

    private final PrintWriter out;
    private final boolean counts;

    /** Prints to {@code out}, which the caller flushes; with {@code counts}, only how many records differ. */
    public DifferenceText(PrintWriter out, boolean counts) {
        this.out = out;
        this.counts = counts;
    }

    /** Prints what differs, and ends with a summary. */
    public void print(Differences differences) {
        if (!differences.isEmpty()) {
            out.println(Ansi.RED.paint(Printable.of("--- " + differences.from())));
            out.println(Ansi.GREEN.paint(Printable.of("+++ " + differences.to())));
        }
        for (ListDifference list : differences.lists()) {
            print(list, differences.directories());
        }
        differences.removed().forEach(list -> out.println(Ansi.RED.paint("- " + title(list))));
        differences.added().forEach(list -> out.println(Ansi.GREEN.paint("+ " + title(list))));
        out.println(summary(differences));
    }

    private static String title(ListEntry list) {
        return list.kind().noun() + " list " + list.listId() + ": " + Text.count(list.records(), "record");
    }

    private void print(ListDifference list, boolean oneOfSeveral) {
        if (list.comparison().isEmpty()) {
            return;
        }
        if (oneOfSeveral) {
            out.println(Ansi.BOLD.paint(list.title() + ": " + summary(list.comparison())));
        }
        if (counts) {
            list.comparison().byField().forEach((field, number) -> out.printf("  %-30s %d%n", field, number));
        } else {
            printRecords(list);
        }
    }

    private void printRecords(ListDifference list) {
        list.comparison().differences().forEach(difference -> print(list, difference));
    }

    /** Prints what a command changes in a list. */
    public void printChanges(RecordList before, RecordList after) {
        printRecords(new ListDifference(before, after, Comparison.ofStates(before, after)));
    }

    private void print(ListDifference list, Difference difference) {
        String title = RecordNames.of(difference.added() ? list.to() : list.from(), difference.record());
        if (difference.removed()) {
            out.println(Ansi.RED.paint("- " + title));
        } else if (difference.added()) {
            out.println(Ansi.GREEN.paint("+ " + title));
        } else {
            String moved = " moved from " + difference.fromPlace() + " to " + difference.toPlace();
            out.println(Ansi.YELLOW.paint("~ " + title + (difference.moved() ? moved : "")));
            difference.fields().forEach(this::print);
        }
    }

    private void print(FieldChange change) {
        out.println(INDENT + change.label() + ": " + value(change.fromText()) + " -> " + value(change.toText()));
    }

    private static String value(String text) {
        return text == null ? "none" : Printable.of(text);
    }

    private static String summary(Differences differences) {
        List<ListDifference> lists = differences.lists();
        if (!differences.directories()) {
            return summary(lists.get(0).comparison());
        }
        long different = lists.stream().filter(list -> !list.comparison().isEmpty()).count();
        List<String> parts = new ArrayList<>();
        add(parts, different, different == 1 ? "list differs" : "lists differ");
        add(parts, differences.removed().size(), "removed");
        add(parts, differences.added().size(), "added");
        add(parts, lists.size() - different, "equal");
        return (different == 0 ? "lists: " : "") + join(parts);
    }

    /** Returns how many records differ, in words. */
    public static String summary(Comparison comparison) {
        List<String> parts = new ArrayList<>();
        add(parts, comparison.removed(), "removed");
        add(parts, comparison.added(), "added");
        add(parts, comparison.changed(), "changed");
        add(parts, comparison.moved(), "moved");
        add(parts, comparison.equal(), "equal");
        return join(parts);
    }

    private static void add(List<String> parts, long number, String what) {
        if (number > 0) {
            parts.add(number + " " + what);
        }
    }

    private static String join(List<String> parts) {
        return parts.isEmpty() ? "both are empty" : String.join(", ", parts);
    }
}
