package com.velotra.tv.tavro.tool.matching;

import com.velotra.tv.tavro.tool.records.Kind;
import com.velotra.tv.tavro.tool.records.Record;
import com.velotra.tv.tavro.tool.records.RecordList;
import java.util.EnumMap;
import java.util.HashMap;
import java.util.Map;
import java.util.Optional;
import java.util.function.BiFunction;

/** The lists to which the records of another list refer. Each is read at most once. */
public final class Companions {
    private final BiFunction<Kind, Integer, Optional<RecordList>> lists;
    private final Map<Kind, Map<Integer, Optional<RecordList>>> known = new EnumMap<>(Kind.class);

    /** Finds lists by kind and id through {@code lists}. */
    public Companions(BiFunction<Kind, Integer, Optional<RecordList>> lists) {
        this.lists = lists;
    }

    /** Returns companions of records whose references lead nowhere. */
    public static Companions none() {
        return new Companions((kind, listId) -> Optional.empty());
    }

    /** Returns a list; empty if there is none. */
    public Optional<RecordList> list(Kind kind, int listId) {
        // List 0 stands for no list.
        return listId == 0 ? Optional.empty() : known.computeIfAbsent(kind, of -> new HashMap<>())
                .computeIfAbsent(listId, id -> lists.apply(kind, id));
    }

    /** Returns the record to which a record refers; empty if there is none. */
    public Optional<Record> find(Reference reference, Record from) {
        return list(reference.target(), reference.listId(from))
                .flatMap(list -> list.byId(reference.recordId(from)));
    }
}
