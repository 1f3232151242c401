package com.example.channels;

import com.velotra.tv.tavro.services.channellist.RecordId;
import com.velotra.tv.tavro.services.channellist.ServiceRecord;

/** One channel, as menus show it. */
public record Channel(RecordId id, int number, String name, boolean visible) {
    static Channel of(int listId, ServiceRecord service) {
        return new Channel(new RecordId(listId, service.recordId()), service.majorChannelNumber(), service.name(),
                service.visible());
    }

    @Override
    public String toString() {
        return String.format("%3d  %s%s", number, name, visible ? "" : " (hidden)");
    }
}
