package com.velotra.tv.tavro.tool.shell;

import com.velotra.tv.tavro.tool.input.Failure;
import com.velotra.tv.tavro.tool.records.Field;
import com.velotra.tv.tavro.tool.records.Kind;
import com.velotra.tv.tavro.tool.records.Layout;
import com.velotra.tv.tavro.tool.records.Record;
import com.velotra.tv.tavro.tool.storage.ListEntry;
import com.velotra.tv.tavro.tool.storage.Snapshot;
import com.velotra.tv.tavro.tool.storage.Storage;
import java.util.List;
import java.util.Optional;
import java.util.stream.Stream;

/** Words that name what the storage directory holds: lists, records and fields of a kind. */
final class StoredWords {
    /** More records than these are not read by a person. */
    private static final int MOST_RECORDS = 500;

    private final Kind kind;

    StoredWords(Kind kind) {
        this.kind = kind;
    }

    /** List ids. */
    Stream<Suggestion> lists() {
        return entries().stream().map(list -> Suggestion.word(String.valueOf(list.listId()), described(list)));
    }

    private static String described(ListEntry list) {
        return list.records() + (list.records() == 1 ? " record" : " records");
    }

    /** LIST,RECORD: first the list, then its records with their names. */
    Stream<Suggestion> records(String start) {
        int comma = start.indexOf(',');
        if (comma < 0) {
            return entries().stream().map(list -> Suggestion.start(list.listId() + ",", described(list)));
        }
        String list = start.substring(0, comma);
        if (!list.matches("[0-9]{1,5}")) {
            return Stream.of();
        }
        String first = start.substring(comma + 1);
        Optional<Field> name = Layout.of(kind).field("name");
        return read(Integer.parseInt(list)).stream()
                .filter(record -> String.valueOf(record.id()).startsWith(first))
                .limit(MOST_RECORDS)
                .map(record -> Suggestion.word(list + "," + record.id(),
                        name.map(field -> field.format(record)).orElse("")));
    }

    /** KEY=VALUE: fields and Java keys, and then the names of the codes that the field can have, or yes and no. */
    Stream<Suggestion> keys(String start) {
        int equals = start.indexOf('=');
        if (equals >= 0) {
            String key = start.substring(0, equals);
            return Layout.of(kind).fields().stream().flatMap(field -> values(field, key))
                    .map(value -> Suggestion.word(key + "=" + value, ""));
        }
        return Layout.of(kind).fields().stream()
                .flatMap(field -> Stream.concat(names(field), flags(field))
                        .map(key -> Suggestion.start(key + "=", field.label())));
    }

    private static Stream<String> names(Field field) {
        return Stream.concat(Stream.of(field.name()), field.keys().stream().map(Field.Key::name)).distinct();
    }

    private static Stream<String> flags(Field field) {
        return field.flags().stream().map(Field.Flag::key).filter(key -> key != null && !key.isEmpty());
    }

    private static Stream<String> values(Field field, String key) {
        if (flags(field).anyMatch(key::equals)) {
            return Stream.of("yes", "no");
        }
        return names(field).anyMatch(key::equals) ? field.codes().stream().map(Field.Code::name).distinct()
                : Stream.of();
    }

    /** Fields, separated by commas. */
    Stream<Suggestion> fields(String start) {
        String before = start.substring(0, start.lastIndexOf(',') + 1);
        return Layout.of(kind).fields().stream()
                .map(field -> Suggestion.start(before + field.name(), field.label()));
    }

    // Completion must not disturb the line: what cannot be read has no words.
    private List<ListEntry> entries() {
        try (Snapshot snapshot = Snapshot.open(Storage.directory())) {
            return snapshot.lists().stream().filter(list -> list.kind() == kind).toList();
        } catch (Failure e) {
            return List.of();
        }
    }

    private List<Record> read(int listId) {
        try (Snapshot snapshot = Snapshot.open(Storage.directory())) {
            return snapshot.list(kind, listId).map(List::<Record>copyOf).orElse(List.of());
        } catch (Failure e) {
            return List.of();
        }
    }
}
