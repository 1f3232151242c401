package com.velotra.tv.tavro.tool;

import com.velotra.tv.tavro.services.channellist.Printable;
import com.velotra.tv.tavro.tool.input.Failure;
import com.velotra.tv.tavro.tool.input.Text;
import com.velotra.tv.tavro.tool.listing.Search;
import com.velotra.tv.tavro.tool.listing.Titles;
import com.velotra.tv.tavro.tool.output.JsonOutput;
import com.velotra.tv.tavro.tool.output.Table;
import com.velotra.tv.tavro.tool.output.Terminal;
import com.velotra.tv.tavro.tool.records.Record;
import com.velotra.tv.tavro.tool.storage.Access;
import com.velotra.tv.tavro.tool.storage.ListEntry;
import com.velotra.tv.tavro.tool.storage.StoredLists;
import java.util.ArrayList;
import java.util.LinkedHashMap;
import java.util.List;
import java.util.Map;
import java.util.Set;
import java.util.concurrent.Callable;
import picocli.CommandLine.Command;
import picocli.CommandLine.Mixin;
import picocli.CommandLine.Option;
import picocli.CommandLine.Parameters;

/** ./tavro find. */
@Command(
        name = "find",
        description = "Finds services, transport streams, networks and satellites in all lists by their names or "
                + "numbers: service id, channel number, frequency, transport stream id, network id or position. "
                + "Exits with 1 if nothing is found.",
        footer = {"", "Examples: ./tavro find sport", "          ./tavro find 12187 --kind streams",
            "          ./tavro find 19.2E"})
final class FindCommand implements Callable<Integer> {
    @Mixin
    private HelpOption help;

    @Parameters(paramLabel = "TEXT", arity = "1..*", description = "Part of a name, in any case and with or "
                    + "without accents, or a number. With several texts, a record must match all of them.")
    private List<String> texts;

    @Mixin
    private AnyKindOption kind;

    @Option(names = "--first", paramLabel = "N", converter = Converters.Count.class,
            description = "Print at most N records.")
    private int first = Integer.MAX_VALUE;

    @Option(names = "--json", description = "Print JSON.")
    private boolean json;

    private record Found(Record record, int listId, Set<String> matches) {}

    @Override
    public Integer call() {
        Access.readOnly();
        List<Found> found = search();
        List<Found> shown = found.subList(0, Math.min(first, found.size()));
        if (json) {
            JsonOutput.printEach(shown.stream().map(FindCommand::object));
        }
        if (found.isEmpty()) {
            throw new Failure("nothing found: no record in any " + kind.noun() + " has '"
                    + Printable.of(String.join("' and '", texts)) + "' in its name or as a number");
        }
        if (!json) {
            System.out.print(table(shown).toString(Terminal.columns()));
            System.out.print(Table.more(found.size() - shown.size()));
            System.out.println(Text.count(found.size(), "record"));
        }
        return ExitCode.DONE;
    }

    private List<Found> search() {
        Search search = new Search(texts);
        List<Found> found = new ArrayList<>();
        for (ListEntry list : StoredLists.all()) {
            if (kind.includes(list.kind()) && list.records() > 0) {
                for (Record record : StoredLists.read(list.kind(), list.listId())) {
                    Set<String> matches = search.matches(record);
                    if (!matches.isEmpty()) {
                        found.add(new Found(record, list.listId(), matches));
                    }
                }
            }
        }
        return found;
    }

    private static Table table(List<Found> found) {
        Table table = new Table("kind", "record", "name", "found");
        for (Found one : found) {
            table.add(one.record.kind(), one.listId + "," + one.record.id(), Titles.of(one.record),
                    String.join(", ", one.matches));
        }
        return table;
    }

    private static Map<String, Object> object(Found found) {
        Map<String, Object> object = new LinkedHashMap<>();
        object.put("kind", found.record.kind().toString());
        object.put("list", found.listId);
        object.put("record", found.record.id());
        object.put("name", Titles.of(found.record));
        object.put("found", List.copyOf(found.matches));
        return object;
    }
}
