package com.velotra.tv.tavro.tool.matching;

import com.velotra.tv.tavro.tool.records.Field;
import com.velotra.tv.tavro.tool.records.Kind;
import com.velotra.tv.tavro.tool.records.Record;
import com.velotra.tv.tavro.tool.records.RecordList;
import java.util.EnumMap;
import java.util.HashMap;
import java.util.LinkedHashSet;
import java.util.Map;
import java.util.Optional;
import java.util.Set;

/**
 * Makes records of a rescan refer to the transport streams, networks and satellites of the edited list.
 *
 * <p>A record that has the same identity there takes the place of the one in the rescan. If there is none, the
 * reference stays as it is in the rescan. If that is in another storage directory, an edited record keeps its own
 * reference, and a new record has none.
 */
final class Links {
    private final Side edited;
    private final Side rescan;
    private final boolean sameStorage;
    private final Identity editedIdentity;
    private final Identity rescanIdentity;
    private final Map<Reference, Map<Object, Target>> targets = new HashMap<>();
    private final Map<Kind, Integer> cleared = new EnumMap<>(Kind.class);

    private record Target(int listId, int recordId) {
        static final Target NONE = new Target(0, 0);
    }

    Links(Side edited, Side rescan) {
        this.edited = edited;
        this.rescan = rescan;
        sameStorage = edited.companions() == rescan.companions();
        editedIdentity = new Identity(edited);
        rescanIdentity = new Identity(rescan);
    }

    /** Returns how many references were cleared, by the kind that they refer to. */
    Map<Kind, Integer> cleared() {
        return cleared;
    }

    /**
     * Returns {@code merged}, whose references may be those of the rescan, with its references adapted.
     *
     * @param before the edited record; empty if the record is new
     * @param found the record in the rescan
     */
    Record adapt(Record merged, Optional<Record> before, Record found) {
        Record adapted = merged;
        for (Reference reference : Reference.of(merged.kind())) {
            Target target = target(reference, before, found);
            adapted = put(put(adapted, reference.list(), target.listId), reference.record(), target.recordId);
        }
        return adapted;
    }

    private static Record put(Record record, Field field, int value) {
        return field.number(record) == value ? record : record.with(field, String.valueOf(value));
    }

    private Target target(Reference reference, Optional<Record> before, Record found) {
        Target there = of(reference, found);
        Object key = key(rescan, rescanIdentity, reference, found);
        Optional<Target> here = before.map(record -> of(reference, record));
        if (key != null) {
            boolean same = before.isPresent() && key.equals(key(edited, editedIdentity, reference, before.get()));
            Map<Object, Target> own = targets.computeIfAbsent(reference, this::ownTargets);
            if (same || own.containsKey(key)) {
                return same ? here.get() : own.get(key);
            }
        }
        if (there.equals(Target.NONE)) {
            return here.orElse(there);
        }
        if (sameStorage) {
            return there;
        }
        if (here.isPresent()) {
            return here.get();
        }
        cleared.merge(reference.target(), 1, Integer::sum);
        return Target.NONE;
    }

    private static Target of(Reference reference, Record from) {
        return new Target(reference.listId(from), reference.recordId(from));
    }

    private static Object key(Side side, Identity identity, Reference reference, Record from) {
        return side.companions().find(reference, from).map(target -> key(identity, target)).orElse(null);
    }

    private static Object key(Identity identity, Record target) {
        return switch (target.kind()) {
            case STREAMS -> {
                String place = identity.stream(target);
                yield (place == null ? identity.streamByReference(target) : place) + " " + identity.streamIds(target);
            }
            case NETWORKS -> identity.network(target);
            case SATELLITES -> identity.satellite(target);
            case SERVICES -> throw new IllegalArgumentException("nothing refers to services");
        };
    }

    /** The records of the lists to which the edited records refer; if there are none, of the lists with their id. */
    private Map<Object, Target> ownTargets(Reference reference) {
        Set<Integer> ids = new LinkedHashSet<>();
        edited.list().forEach(record -> ids.add(reference.listId(record)));
        ids.remove(0);
        if (ids.isEmpty()) {
            ids.add(edited.list().listId());
        }
        Map<Object, Target> found = new HashMap<>();
        for (int id : ids) {
            edited.companions().list(reference.target(), id).ifPresent(list -> addTargets(list, found));
        }
        return found;
    }

    private void addTargets(RecordList list, Map<Object, Target> found) {
        for (Record record : list) {
            found.putIfAbsent(key(editedIdentity, record), new Target(list.listId(), record.id()));
        }
    }
}
