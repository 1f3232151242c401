package com.velotra.tv.tavro.tool.editing;

import com.velotra.tv.tavro.services.channellist.BroadcastType;
import com.velotra.tv.tavro.services.channellist.RecordId;
import com.velotra.tv.tavro.services.channellist.ServiceRecord;
import com.velotra.tv.tavro.services.channellist.VltTvChannelInfoBase;
import com.velotra.tv.tavro.services.channellist.VltTvChannelList;
import com.velotra.tv.tavro.tool.input.Failure;
import com.velotra.tv.tavro.tool.records.Kind;
import com.velotra.tv.tavro.tool.records.Record;
import com.velotra.tv.tavro.tool.records.RecordList;
import com.velotra.tv.tavro.tool.storage.StoredLists;
import java.util.ArrayList;
import java.util.HashSet;
import java.util.LinkedHashMap;
import java.util.List;
import java.util.Map;
import java.util.Set;

/**
 * Channel numbers of services: the logical channel number of a DVB service, and of all services the major channel
 * number. A service whose number is set is marked as one whose number was edited.
 */
final class Numbering {
    private Numbering() {}

    /** Returns the channel number of a service; 0 if it has none. */
    static int of(Record service) {
        ServiceRecord record = new ServiceRecord(service.bytes());
        return record.broadcastType() == BroadcastType.DVB ? record.logicalChannelNumber()
                : record.majorChannelNumber();
    }

    /**
     * Returns consecutive numbers for records, by record.
     *
     * @throws Failure if a service that is not among them has one of the numbers
     */
    static Map<RecordId, Integer> consecutive(RecordList list, List<RecordId> ids, int from) {
        Map<RecordId, Integer> numbers = new LinkedHashMap<>();
        Set<Integer> records = new HashSet<>();
        for (RecordId id : ids) {
            numbers.put(id, from + numbers.size());
            records.add(id.recordId());
        }
        for (Record service : list) {
            int number = of(service);
            if (number >= from && number < from + ids.size() && !records.contains(service.id())) {
                throw new Failure("service " + list.listId() + "," + service.id() + " already has the number " + number
                        + "; give it another one first, or number the whole list anew with --renumber");
            }
        }
        return numbers;
    }

    /** Returns consecutive numbers for all records, in list order. */
    static Map<RecordId, Integer> all(RecordList list, int from) {
        List<RecordId> ids = new ArrayList<>();
        list.forEach(service -> ids.add(new RecordId(list.listId(), service.id())));
        return consecutive(list, ids, from);
    }

    /**
     * Sets the numbers of services that have others.
     *
     * @throws Failure if the library does not accept one
     */
    static void set(RecordList list, Map<RecordId, Integer> numbers) {
        VltTvChannelList lists = VltTvChannelList.getInstance();
        numbers.forEach((id, number) -> {
            Record service = list.byId(id.recordId()).orElseThrow();
            if (of(service) == number) {
                return;
            }
            VltTvChannelInfoBase info = VltTvChannelInfoBase.forRecord(id).setMajorChannelNumber(number)
                    .setVoptChNumEdited(true);
            if (new ServiceRecord(service.bytes()).broadcastType() == BroadcastType.DVB) {
                info.setLogicalChannelNumber(number);
            }
            lists.update(list.listId(), info);
        });
        RecordList after = StoredLists.read(Kind.SERVICES, list.listId());
        numbers.forEach((id, number) -> {
            if (of(after.byId(id.recordId()).orElseThrow()) != number) {
                throw new Failure("service " + id + " cannot have the number " + number + "; nothing was changed");
            }
        });
    }
}
