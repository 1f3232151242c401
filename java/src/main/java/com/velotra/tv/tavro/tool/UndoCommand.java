package com.velotra.tv.tavro.tool;

import com.velotra.tv.tavro.services.channellist.Printable;
import com.velotra.tv.tavro.tool.changes.SavedList;
import com.velotra.tv.tavro.tool.changes.Undo;
import com.velotra.tv.tavro.tool.changes.UndoEntry;
import com.velotra.tv.tavro.tool.changes.UndoHistory;
import com.velotra.tv.tavro.tool.output.JsonOutput;
import com.velotra.tv.tavro.tool.output.Table;
import com.velotra.tv.tavro.tool.output.Terminal;
import com.velotra.tv.tavro.tool.storage.Storage;
import java.time.Instant;
import java.time.ZoneId;
import java.time.format.DateTimeFormatter;
import java.util.LinkedHashMap;
import java.util.List;
import java.util.Map;
import java.util.OptionalInt;
import java.util.concurrent.Callable;
import java.util.stream.Collectors;
import picocli.CommandLine.Command;
import picocli.CommandLine.Mixin;
import picocli.CommandLine.Option;
import picocli.CommandLine.Parameters;

/** ./tavro undo. */
@Command(
        name = "undo",
        description = {
            "Restores the lists that the last command changed. With N, restores lists to their state before the "
                + "command N, which also takes back all later changes of the same lists. The last "
                + UndoHistory.MOST + " commands can be undone. Undo is itself a change: a second undo takes back "
                + "the first."},
        footer = {"", "Examples: ./tavro undo", "          ./tavro undo --list"})
final class UndoCommand implements Callable<Integer> {
    private static final DateTimeFormatter LOCAL = DateTimeFormatter.ofPattern("yyyy-MM-dd HH:mm:ss");

    @Mixin
    private HelpOption help;

    @Parameters(paramLabel = "N", arity = "0..1", converter = Converters.ChangeNumber.class,
            description = "Number of the command, as --list prints it (default: the last one).")
    private Integer number;

    @Option(names = {"-l", "--list"}, description = "Print the commands that can be undone; change nothing.")
    private boolean list;

    @Option(names = "--json", description = "Like --list, but as JSON; times are in UTC.")
    private boolean json;

    @Override
    public Integer call() {
        if (list || json) {
            print(UndoHistory.of(Storage.directory()).entries());
            return ExitCode.DONE;
        }
        Undo.Done done = Undo.undo(number == null ? OptionalInt.empty() : OptionalInt.of(number));
        System.out.println("undone: " + Printable.of(done.entry().command()));
        for (SavedList saved : done.entry().lists()) {
            String how = saved.existed() ? "restored" : "deleted, as it did not exist";
            System.out.println("  " + saved + ": " + (done.restored().contains(saved) ? how : "it was as before"));
        }
        return ExitCode.DONE;
    }

    private void print(List<UndoEntry> entries) {
        if (json) {
            JsonOutput.printEach(entries.stream().map(UndoCommand::object));
        } else if (entries.isEmpty()) {
            System.err.println("nothing to undo in " + Storage.directory());
        } else {
            Table table = new Table(">number", "time", "command", "lists");
            for (UndoEntry entry : entries) {
                table.add(entry.number(), LOCAL.format(entry.time().atZone(ZoneId.systemDefault())),
                        entry.command() + (entry.finished() ? "" : " (did not finish)"),
                        entry.lists().stream().map(SavedList::toString).collect(Collectors.joining(", ")));
            }
            System.out.print(table.toString(Terminal.columns()));
        }
    }

    private static Map<String, Object> object(UndoEntry entry) {
        Map<String, Object> object = new LinkedHashMap<>();
        object.put("number", entry.number());
        object.put("time", Instant.from(entry.time()).toString());
        object.put("command", entry.command());
        object.put("finished", entry.finished());
        object.put("lists", entry.lists().stream().map(saved -> {
            Map<String, Object> one = new LinkedHashMap<>();
            one.put("kind", saved.kind().toString());
            one.put("list", saved.listId());
            one.put("existed", saved.existed());
            return one;
        }).toList());
        return object;
    }
}
