package com.velotra.tv.tavro.tool.comparing;

import com.velotra.tv.tavro.tool.matching.Comparison;
import com.velotra.tv.tavro.tool.matching.Difference;
import com.velotra.tv.tavro.tool.matching.FieldChange;
import com.velotra.tv.tavro.tool.records.RecordList;
import com.velotra.tv.tavro.tool.storage.ListEntry;
import java.util.LinkedHashMap;
import java.util.Map;

/** Differences as a value for JSON. */
public final class DifferenceJson {
    private DifferenceJson() {}

    /** Returns an object; with {@code counts}, only how many records differ. */
    public static Map<String, Object> of(Differences differences, boolean counts) {
        Map<String, Object> json = new LinkedHashMap<>();
        json.put("from", differences.from());
        json.put("to", differences.to());
        json.put("equal", differences.isEmpty());
        if (differences.directories()) {
            json.put("removed_lists", differences.removed().stream().map(DifferenceJson::of).toList());
            json.put("added_lists", differences.added().stream().map(DifferenceJson::of).toList());
        }
        json.put("lists", differences.lists().stream().map(list -> of(list, counts)).toList());
        return json;
    }

    /** Returns what a command changes in a list, as an object. */
    public static Map<String, Object> ofChanges(RecordList before, RecordList after) {
        return of(new ListDifference(before, after, Comparison.ofStates(before, after)), false);
    }

    private static Map<String, Object> of(ListEntry list) {
        Map<String, Object> json = new LinkedHashMap<>();
        json.put("kind", list.kind().toString());
        json.put("list", list.listId());
        json.put("records", list.records());
        return json;
    }

    private static Map<String, Object> of(ListDifference list, boolean counts) {
        Comparison comparison = list.comparison();
        Map<String, Object> json = new LinkedHashMap<>();
        json.put("kind", list.kind().toString());
        json.put("from_list", list.from().listId());
        json.put("to_list", list.to().listId());
        json.put("removed", comparison.removed());
        json.put("added", comparison.added());
        json.put("changed", comparison.changed());
        json.put("moved", comparison.moved());
        json.put("equal", comparison.equal());
        if (counts) {
            json.put("fields", comparison.byField());
        } else {
            json.put("differences",
                    comparison.differences().stream().map(difference -> of(list, difference)).toList());
        }
        return json;
    }

    private static Map<String, Object> of(ListDifference list, Difference difference) {
        Map<String, Object> json = new LinkedHashMap<>();
        json.put("change", difference.added() ? "added" : difference.removed() ? "removed"
                : difference.changed() ? "changed" : "moved");
        json.put("from", difference.added() ? null : RecordNames.id(list.from(), difference.from()));
        json.put("to", difference.removed() ? null : RecordNames.id(list.to(), difference.to()));
        json.put("name", RecordNames.name(difference.record()));
        if (!difference.added()) {
            json.put("from_place", difference.fromPlace());
        }
        if (!difference.removed()) {
            json.put("to_place", difference.toPlace());
        }
        if (!difference.added() && !difference.removed()) {
            json.put("moved", difference.moved());
            json.put("fields", difference.fields().stream().map(DifferenceJson::of).toList());
        }
        return json;
    }

    private static Map<String, Object> of(FieldChange change) {
        Map<String, Object> json = new LinkedHashMap<>();
        json.put("field", change.name());
        json.put("label", change.label());
        json.put("from", change.from());
        json.put("to", change.to());
        json.put("from_text", change.fromText());
        json.put("to_text", change.toText());
        return json;
    }
}
