package com.velotra.tv.tavro.tool.matching;

import com.velotra.tv.tavro.tool.input.Failure;
import com.velotra.tv.tavro.tool.records.Record;
import com.velotra.tv.tavro.tool.records.RecordList;
import java.util.BitSet;

/** Record ids that a list does not have yet. */
public final class FreeIds {
    private static final int LEAST = 1;
    private static final int MOST = 65_534;

    private final RecordList list;
    private final BitSet used;
    private int next = LEAST;

    /** Looks at the ids of a list. */
    public FreeIds(RecordList list) {
        this(list, new BitSet(MOST + 2));
        for (Record record : list) {
            used.set(record.id());
        }
    }

    /** Takes the used ids of a list that is being made; {@code list} is named in messages. */
    public FreeIds(RecordList list, BitSet used) {
        this.list = list;
        this.used = used;
    }

    /**
     * Returns the lowest id after all that are used, as the natives choose it, otherwise the lowest free one.
     *
     * @throws Failure if the list is full
     */
    public int take() {
        return take(0);
    }

    /**
     * Returns {@code wanted} if it is free, otherwise the lowest id after all that are used, otherwise the lowest one.
     *
     * @throws Failure if the list is full
     */
    public int take(int wanted) {
        int id = wanted >= LEAST && wanted <= MOST && !used.get(wanted) ? wanted : Math.max(LEAST, used.length());
        if (id > MOST) {
            next = used.nextClearBit(next);
            id = next;
        }
        if (id > MOST) {
            throw new Failure(list.kind().noun() + " list " + list.listId() + " is full: no record id is free");
        }
        used.set(id);
        return id;
    }
}
