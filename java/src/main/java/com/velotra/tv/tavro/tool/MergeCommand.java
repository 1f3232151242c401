package com.velotra.tv.tavro.tool;

import com.velotra.tv.tavro.tool.ListUpdate.Outcome;
import com.velotra.tv.tavro.tool.comparing.OperandReader;
import com.velotra.tv.tavro.tool.comparing.RecordNames;
import com.velotra.tv.tavro.tool.input.Failure;
import com.velotra.tv.tavro.tool.input.Text;
import com.velotra.tv.tavro.tool.matching.Merge;
import com.velotra.tv.tavro.tool.matching.Part;
import com.velotra.tv.tavro.tool.matching.Side;
import com.velotra.tv.tavro.tool.records.Kind;
import com.velotra.tv.tavro.tool.records.Record;
import java.util.EnumSet;
import java.util.LinkedHashMap;
import java.util.List;
import java.util.Map;
import java.util.Set;
import java.util.concurrent.Callable;
import picocli.CommandLine.Command;
import picocli.CommandLine.Mixin;
import picocli.CommandLine.Model.CommandSpec;
import picocli.CommandLine.Option;
import picocli.CommandLine.Spec;

/** ./tavro merge. */
@Command(
        name = "merge",
        description = {
            "Merges a rescan into an edited list. Records are matched by identity and then by name. New "
                + "records are added at the end. Matched records take the broadcast's values from the rescan, and "
                + "keep what a user edits: order, names, channel numbers, and hidden, locked and deleted flags. "
                + "Records that are missing from the rescan are printed and kept.",
            "",
            "The rescan is a list id, DIR:ID (a list of another storage directory) or a list file. Merge "
                + "satellites, networks and streams before services: new services refer to them."},
        footer = {"", "Examples: ./tavro merge 1 --from 2 --dry-run",
            "          ./tavro merge 1 --from rescan.list --remove-missing"})
final class MergeCommand implements Callable<Integer> {
    @Mixin
    private HelpOption help;

    @Spec
    private CommandSpec spec;

    @Mixin
    private ListUpdate update;

    @Option(names = "--from", paramLabel = "OTHER", required = true, description = "The rescan.")
    private String from;

    @Option(names = "--remove-missing", description = "Remove records that are missing from the rescan.")
    private boolean removeMissing;

    @Option(names = "--take", paramLabel = "PARTS", defaultValue = "",
            description = "Also take these parts from the rescan, separated by commas: names, numbers, flags. Names "
                    + "and numbers stay in services that are flagged as edited.")
    private String take;

    @Override
    public Integer call() {
        Set<Part> taken = Parts.parse(take, EnumSet.of(Part.NAMES, Part.NUMBERS, Part.FLAGS), spec.commandLine());
        return update.run((edited, reader) -> merge(edited, reader, taken));
    }

    private Outcome merge(Side edited, OperandReader reader, Set<Part> taken) {
        Side rescan = reader.readList(from).side();
        if (rescan.list().isEmpty() && removeMissing) {
            throw new Failure("the rescan is empty, so all records would be removed; to empty the list, use "
                    + Shell.command() + " clean");
        }
        Merge merge = Merge.of(edited, rescan, taken, removeMissing);
        needIdentities(edited.list().kind(), merge.cleared());
        Map<String, List<String>> remarks = new LinkedHashMap<>();
        if (!merge.missing().isEmpty()) {
            remarks.put("missing from the rescan, " + (removeMissing ? "removed:" : "kept:"),
                    merge.missing().stream().map(record -> RecordNames.of(edited.list(), record)).toList());
        }
        if (!merge.takenNumbers().isEmpty()) {
            remarks.put("new, with a channel number that another service has:",
                    merge.takenNumbers().stream().map(record -> RecordNames.of(edited.list(), record)).toList());
        }
        merge.cleared().forEach((kind, number) -> remarks.put(Text.count(number, "new " + edited.list().kind().noun())
                + " without a " + kind.noun() + ": the " + kind.noun() + " lists here do not have it", List.of()));
        return new Outcome(merge.list(), remarks, json(edited, merge));
    }

    /** New records from another storage directory would not be found again without their streams or satellites. */
    private void needIdentities(Kind kind, Map<Kind, Integer> cleared) {
        Kind identifying = kind == Kind.SERVICES ? Kind.STREAMS : Kind.SATELLITES;
        if (cleared.containsKey(identifying)) {
            throw new Failure("no " + identifying.noun() + " here for "
                    + Text.count(cleared.get(identifying), "new " + kind.noun()) + " in " + from
                    + "; merge the " + identifying + " first");
        }
    }

    private static Map<String, Object> json(Side edited, Merge merge) {
        Map<String, Object> values = new LinkedHashMap<>();
        values.put("missing", ids(edited, merge.missing()));
        values.put("taken_numbers", ids(edited, merge.takenNumbers()));
        Map<String, Integer> cleared = new LinkedHashMap<>();
        merge.cleared().forEach((Kind kind, Integer number) -> cleared.put(kind.toString(), number));
        values.put("cleared_references", cleared);
        return values;
    }

    private static List<String> ids(Side edited, List<Record> records) {
        return records.stream().map(record -> RecordNames.id(edited.list(), record)).toList();
    }
}
