package com.velotra.tv.tavro.tool;

import com.velotra.tv.tavro.tool.input.Text;
import com.velotra.tv.tavro.tool.output.JsonOutput;
import com.velotra.tv.tavro.tool.output.Table;
import com.velotra.tv.tavro.tool.output.Terminal;
import com.velotra.tv.tavro.tool.storage.Access;
import com.velotra.tv.tavro.tool.storage.ListEntry;
import com.velotra.tv.tavro.tool.storage.Storage;
import com.velotra.tv.tavro.tool.storage.StoredLists;
import java.time.Instant;
import java.time.ZoneId;
import java.time.format.DateTimeFormatter;
import java.util.LinkedHashMap;
import java.util.List;
import java.util.Map;
import java.util.concurrent.Callable;
import picocli.CommandLine.Command;
import picocli.CommandLine.Mixin;
import picocli.CommandLine.Option;

/** ./tavro lists. */
@Command(
        name = "lists",
        description = {
            "Prints the lists in the storage directory, each with its number of records, its version and the "
                + "time of its last change. The version increases with every change."},
        footer = {"", "Examples: ./tavro lists", "          ./tavro lists --kind services --json"})
final class ListsCommand implements Callable<Integer> {
    private static final DateTimeFormatter LOCAL = DateTimeFormatter.ofPattern("yyyy-MM-dd HH:mm:ss");

    @Mixin
    private HelpOption help;

    @Mixin
    private AnyKindOption kind;

    @Option(names = "--json", description = "Print JSON; times are in UTC.")
    private boolean json;

    @Override
    public Integer call() {
        Access.readOnly();
        List<ListEntry> lists = StoredLists.all().stream().filter(list -> kind.includes(list.kind())).toList();
        if (json) {
            JsonOutput.printEach(lists.stream().map(ListsCommand::object));
        } else if (lists.isEmpty()) {
            System.err.println(noLists(kind));
        } else {
            System.out.print(table(lists).toString(Terminal.columns()));
            System.out.println(Text.count(lists.size(), kind.noun()));
        }
        return ExitCode.DONE;
    }

    /** Returns the message for a storage directory without lists of the kind. */
    static String noLists(AnyKindOption kind) {
        return "no " + kind.noun() + "s in " + Storage.directory() + "; " + Shell.command() + " import makes some";
    }

    private static Table table(List<ListEntry> lists) {
        Table table = new Table("kind", ">list", "storage name", ">records", ">version", "last change");
        for (ListEntry list : lists) {
            table.add(list.kind(), list.listId(), list.name(), list.records(), list.version(),
                    list.changed().map(time -> LOCAL.format(time.atZone(ZoneId.systemDefault()))).orElse("-"));
        }
        return table;
    }

    private static Map<String, Object> object(ListEntry list) {
        Map<String, Object> object = new LinkedHashMap<>();
        object.put("kind", list.kind().toString());
        object.put("list", list.listId());
        object.put("name", list.name());
        object.put("records", list.records());
        object.put("version", list.version());
        object.put("changed", list.changed().map(Instant::toString).orElse(null));
        return object;
    }
}
