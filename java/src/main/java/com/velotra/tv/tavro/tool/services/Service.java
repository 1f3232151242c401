package com.velotra.tv.tavro.tool.services;

import com.velotra.tv.tavro.tool.input.Place;
import com.velotra.tv.tavro.tool.transponders.Transponder;
import java.util.List;

/**
 * One service of a channel list.
 *
 * @param place where it is in the file
 * @param name its name
 * @param shortName its short name, or empty
 * @param transponder what it is received on
 * @param hasVideo whether it is television; other services are radio
 * @param caIds CA_system_ids (ETSI TS 101 162); none for a service in the clear
 * @param serviceId service_id
 * @param networkId original_network_id, or 0
 * @param transportStreamId transport_stream_id, or 0
 * @param number the channel number that the file gives, or 0
 */
public record Service(
        Place place,
        String name,
        String shortName,
        Transponder transponder,
        boolean hasVideo,
        List<Integer> caIds,
        int serviceId,
        int networkId,
        int transportStreamId,
        int number) {
    /** The largest channel number: 14 bits, in the channel id as in broadcasts. */
    static final int MAX_NUMBER = 0x3FFF;

    public boolean scrambled() {
        return !caIds.isEmpty();
    }
}
