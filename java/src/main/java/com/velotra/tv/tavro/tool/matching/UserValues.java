package com.velotra.tv.tavro.tool.matching;

import com.velotra.tv.tavro.services.channellist.ServiceFlag;
import com.velotra.tv.tavro.tool.records.Field;
import com.velotra.tv.tavro.tool.records.Kind;
import com.velotra.tv.tavro.tool.records.Layout;
import com.velotra.tv.tavro.tool.records.Record;
import java.util.ArrayList;
import java.util.Arrays;
import java.util.HashMap;
import java.util.List;
import java.util.Map;
import java.util.Set;

/**
 * Which values a merge keeps and which it takes from the rescan.
 *
 * <p>It keeps the record id, the list id, the {@link Part parts} that belong to the user, the settings of a satellite's
 * dish, and what has no name: bytes without a field, and bits of flag words that are not known. It takes all else.
 */
final class UserValues {
    private static final Field OPTIONS = Fields.of(Kind.SERVICES, "option_mask");
    private static final long NUMBER_EDITED = Fields.bit("option_mask", ServiceFlag.NUMBER_EDITED);
    private static final long NAME_EDITED = Fields.bit("option_mask", ServiceFlag.NAME_EDITED);
    private static final Set<String> TAKEN_OF_NETWORKS = Set.of("network_id", "version");
    private static final Set<String> TAKEN_OF_SATELLITES = Set.of("orbital_position");
    private static final Map<Kind, String> LIST_ID = Map.of(Kind.STREAMS, "tsl_id", Kind.NETWORKS, "nwl_id");

    private final Kind kind;
    private final Set<Part> taken;
    private final List<Bits> always; // kept
    private final Map<Field, Long> named = new HashMap<>(); // the known bits of flag words

    /** Keeps all parts but {@code taken}. These are kept only if the record says that the user edited them. */
    UserValues(Kind kind, Set<Part> taken) {
        this.kind = kind;
        this.taken = taken;
        always = Layout.of(kind).fields().stream().filter(this::isAlwaysKept)
                .map(field -> new Bits(field, Bits.WHOLE)).toList();
        Layout.of(kind).fields().forEach(field ->
                field.flags().forEach(flag -> named.merge(field, flag.mask(), (all, bit) -> all | bit)));
    }

    private boolean isAlwaysKept(Field field) {
        return switch (kind) {
            case SERVICES -> field.name().equals("record_id");
            case STREAMS -> field.name().equals("record_id") || field.name().equals(LIST_ID.get(kind));
            case NETWORKS -> !TAKEN_OF_NETWORKS.contains(field.name()) && !isOfAPart(field);
            case SATELLITES -> !TAKEN_OF_SATELLITES.contains(field.name()) && !isOfAPart(field);
        };
    }

    private boolean isOfAPart(Field field) {
        return Arrays.stream(Part.values()).flatMap(part -> part.of(kind).stream())
                .anyMatch(bits -> bits.field().equals(field));
    }

    /** Returns the edited record with the values of the rescan that the merge takes. */
    Record merged(Record edited, Record rescan) {
        List<Bits> kept = kept(edited);
        byte[] bytes;
        if (Layout.of(kind).fields(edited).equals(Layout.of(kind).fields(rescan))) {
            bytes = edited.bytes();
            for (Field field : Layout.of(kind).fields(rescan)) {
                long mask = named.getOrDefault(field, Bits.WHOLE);
                new Bits(field, mask).copy(rescan, edited, bytes);
            }
        } else { // another broadcast type or medium: other fields share the bytes
            bytes = rescan.bytes();
        }
        kept.forEach(bits -> bits.copy(edited, rescan, bytes));
        return Record.of(kind, bytes);
    }

    private List<Bits> kept(Record edited) {
        List<Bits> kept = new ArrayList<>(always);
        for (Part part : Part.values()) {
            if (!taken.contains(part) || isEdited(edited, part)) {
                kept.addAll(part.of(kind));
            }
        }
        return kept;
    }

    private boolean isEdited(Record record, Part part) {
        long edited = part == Part.NUMBERS ? NUMBER_EDITED : part == Part.NAMES ? NAME_EDITED : 0;
        return kind == Kind.SERVICES && (OPTIONS.number(record) & edited) != 0;
    }

    /** Returns a record of the rescan as a new one of the edited list. */
    Record added(Record rescan, int rescanListId, int listId, int recordId) {
        Record added = rescan.with(Fields.RECORD_ID.get(kind), String.valueOf(recordId));
        if (LIST_ID.containsKey(kind)) {
            Field list = Fields.of(kind, LIST_ID.get(kind));
            // A list id that is not the list's own has another meaning, and stays.
            return list.number(rescan) == rescanListId ? added.with(list, String.valueOf(listId)) : added;
        }
        return added;
    }
}
