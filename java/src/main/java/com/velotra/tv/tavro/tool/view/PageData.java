package com.velotra.tv.tavro.tool.view;

import com.google.gson.stream.JsonWriter;
import com.velotra.tv.tavro.tool.matching.Companions;
import com.velotra.tv.tavro.tool.matching.Matching;
import com.velotra.tv.tavro.tool.matching.Pairing;
import com.velotra.tv.tavro.tool.matching.Side;
import com.velotra.tv.tavro.tool.output.AsciiControls;
import com.velotra.tv.tavro.tool.records.Field;
import com.velotra.tv.tavro.tool.records.Kind;
import com.velotra.tv.tavro.tool.records.Layout;
import com.velotra.tv.tavro.tool.records.RecordList;
import com.velotra.tv.tavro.tool.storage.ListEntry;
import com.velotra.tv.tavro.tool.storage.Snapshot;
import java.io.IOException;
import java.io.Writer;
import java.nio.file.Path;
import java.time.Instant;
import java.util.ArrayList;
import java.util.List;
import java.util.Optional;

/**
 * The data of a page: the lists of one storage directory, or of two to compare, and the layouts of the records.
 *
 * <p>It is written as JSON that is safe inside an HTML script element.
 */
public final class PageData {
    /** A list with the entry under which its storage has it. */
    record Stored(ListEntry entry, RecordList records) {}

    /** The lists of one directory, by kind and id. */
    record Lists(Path directory, List<Stored> lists) {
        Optional<RecordList> list(Kind kind, int listId) {
            return lists.stream().map(Stored::records)
                    .filter(list -> list.kind() == kind && list.listId() == listId).findFirst();
        }
    }

    private final List<Lists> sides;

    PageData(List<Lists> sides) {
        this.sides = sides;
    }

    /**
     * Reads one or two storage directories.
     *
     * @throws com.velotra.tv.tavro.tool.input.Failure if one cannot be read
     */
    public static PageData read(List<Path> directories) {
        return new PageData(directories.stream().map(PageData::lists).toList());
    }

    private static Lists lists(Path directory) {
        List<Stored> lists = new ArrayList<>();
        try (Snapshot snapshot = Snapshot.open(directory)) {
            for (ListEntry entry : snapshot.lists()) {
                snapshot.list(entry.kind(), entry.listId())
                        .ifPresent(records -> lists.add(new Stored(entry, records)));
            }
        }
        return new Lists(directory, lists);
    }

    /** Returns the number of lists in all directories. */
    public int lists() {
        return sides.stream().mapToInt(side -> side.lists.size()).sum();
    }

    /** Returns the number of records in all lists. */
    public int records() {
        return sides.stream().flatMap(side -> side.lists.stream()).mapToInt(list -> list.records.size()).sum();
    }

    void write(Writer out) throws IOException {
        JsonWriter json = new JsonWriter(new AsciiControls(out));
        json.setHtmlSafe(true);
        json.beginObject();
        json.name("kinds").beginArray();
        for (Kind kind : Kind.values()) {
            write(kind, json);
        }
        json.endArray().name("sides").beginArray();
        for (Lists side : sides) {
            write(side, json);
        }
        json.endArray();
        if (sides.size() == 2) {
            writePairs(json);
        }
        json.endObject();
        json.flush();
    }

    private static void write(Kind kind, JsonWriter json) throws IOException {
        json.beginObject().name("name").value(kind.toString()).name("noun").value(kind.noun());
        json.name("size").value(kind.recordBytes()).name("idOffset").value(kind.idOffset());
        json.name("fields").beginArray();
        for (Field field : Layout.of(kind).fields()) {
            json.beginObject().name("name").value(field.name()).name("label").value(field.label());
            json.name("offset").value(field.offset()).name("width").value(field.width());
            json.name("style").value(field.style().name()).name("path").value(field.path());
            json.name("meaning").value(field.meaning()).name("keys").beginArray();
            for (Field.Key key : field.keys()) {
                json.value(key.name());
            }
            json.endArray().name("flags").beginObject();
            for (Field.Flag flag : field.flags()) {
                json.name(flag.key()).value(flag.mask());
            }
            json.endObject().endObject();
        }
        json.endArray().endObject();
    }

    private static void write(Lists side, JsonWriter json) throws IOException {
        json.beginObject().name("directory").value(side.directory.toAbsolutePath().normalize().toString());
        json.name("lists").beginArray();
        for (Stored list : side.lists) {
            json.beginObject().name("kind").value(list.entry.kind().ordinal()).name("id").value(list.entry.listId());
            json.name("name").value(list.entry.name()).name("version").value(list.entry.version());
            json.name("changed").value(list.entry.changed().map(Instant::toString).orElse(null));
            new ListData(list.records).write(json);
            json.endObject();
        }
        json.endArray().endObject();
    }

    /** For each list of the second directory: each record's partner in the same list of the first, as index or -1. */
    private void writePairs(JsonWriter json) throws IOException {
        Companions before = new Companions(sides.get(0)::list);
        Companions after = new Companions(sides.get(1)::list);
        json.name("pairs").beginArray();
        for (Stored list : sides.get(1).lists) {
            RecordList to = list.records;
            RecordList from = sides.get(0).list(to.kind(), to.listId())
                    .orElseGet(() -> RecordList.of(to.kind(), to.listId(), to.name(), List.of()));
            Pairing pairs = Matching.of(new Side(from, before),
                    new Side(to, after));
            json.beginArray();
            for (int i = 0; i < to.size(); i++) {
                json.value(pairs.fromOf(i));
            }
            json.endArray();
        }
        json.endArray();
    }
}
