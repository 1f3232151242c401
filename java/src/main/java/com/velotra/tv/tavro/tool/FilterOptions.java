package com.velotra.tv.tavro.tool;

import com.velotra.tv.tavro.tool.listing.Filter;
import com.velotra.tv.tavro.tool.listing.References;
import com.velotra.tv.tavro.tool.records.Kind;
import com.velotra.tv.tavro.tool.records.Record;
import com.velotra.tv.tavro.tool.storage.StoredLists;
import java.util.LinkedHashMap;
import java.util.List;
import java.util.Map;
import java.util.Objects;
import java.util.Set;
import java.util.stream.Collectors;
import picocli.CommandLine.Model.CommandSpec;
import picocli.CommandLine.Option;
import picocli.CommandLine.ParameterException;

/** The options that select records through the filters of the natives. */
final class FilterOptions {
    @Option(names = "--by-stream", paramLabel = "STREAM", converter = Converters.StreamFilter.class,
            description = "Only services of this transport stream: LIST,RECORD or a transport stream id.")
    private Filter byStream;

    @Option(names = "--by-network", paramLabel = "ID", converter = Converters.NetworkFilter.class,
            description = "Only services or transport streams of this network id.")
    private Filter byNetwork;

    @Option(names = "--by-satellite", paramLabel = "SAT", converter = Converters.SatelliteFilter.class,
            description = "Only services or transport streams of this satellite: LIST,RECORD or a position such "
                    + "as 19.2E.")
    private Filter bySatellite;

    /** Returns whether one of the options is given. */
    boolean given() {
        return !filters().isEmpty();
    }

    /** Checks that the options select records of a kind. */
    void check(Kind kind, CommandSpec command) {
        filters().forEach((option, filter) -> {
            if (!filter.kinds().contains(kind)) {
                throw new ParameterException(command.commandLine(), option + " does not select " + kind + ", but "
                        + filter.kinds().stream().map(Kind::toString).collect(Collectors.joining(" and ")));
            }
        });
    }

    /** Reads the records of a list that all given options select. */
    List<Record> read(Kind kind, int listId, References references) {
        List<Record> records = null;
        for (Filter filter : filters().values()) {
            List<Record> selected = filter.read(kind, listId, references);
            records = records == null ? selected : both(records, selected);
        }
        return records == null ? StoredLists.read(kind, listId) : records;
    }

    private Map<String, Filter> filters() {
        Map<String, Filter> filters = new LinkedHashMap<>();
        filters.put("--by-stream", byStream);
        filters.put("--by-network", byNetwork);
        filters.put("--by-satellite", bySatellite);
        filters.values().removeIf(Objects::isNull);
        return filters;
    }

    private static List<Record> both(List<Record> records, List<Record> others) {
        Set<Integer> ids = others.stream().map(Record::id).collect(Collectors.toSet());
        return records.stream().filter(record -> ids.contains(record.id())).toList();
    }
}
