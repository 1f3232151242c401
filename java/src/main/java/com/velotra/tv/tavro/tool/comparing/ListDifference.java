package com.velotra.tv.tavro.tool.comparing;

import com.velotra.tv.tavro.tool.matching.Comparison;
import com.velotra.tv.tavro.tool.records.Kind;
import com.velotra.tv.tavro.tool.records.RecordList;

/**
 * What differs between two lists.
 *
 * @param from the first list
 * @param to the second list
 * @param comparison their records
 */
record ListDifference(RecordList from, RecordList to, Comparison comparison) {
    Kind kind() {
        return from.kind();
    }

    /** The lists, for people. */
    String title() {
        return kind().noun() + " list " + from.listId()
                + (from.listId() == to.listId() ? "" : " and " + to.listId());
    }
}
