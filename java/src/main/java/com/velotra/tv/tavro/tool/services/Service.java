package com.velotra.tv.tavro.tool.services;

import com.velotra.tv.tavro.tool.input.Place;
import com.velotra.tv.tavro.tool.transponders.Transponder;
import java.util.List;

/**
 * One service of a file.
 *
 * @param place in the file
 * @param name its name
 * @param shortName its short name; empty if it has none
 * @param transponder that carries it
 * @param hasVideo true for television, false for radio
 * @param caIds CA_system_ids (ETSI TS 101 162); none if it is not scrambled
 * @param serviceId service_id
 * @param networkId original_network_id; 0 if unknown
 * @param transportStreamId transport_stream_id; 0 if unknown
 * @param number channel number; 0 if the file has none
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
    /** The largest channel number: 14 bits, both in the channel id and in broadcasts. */
    static final int MAX_NUMBER = 0x3FFF;

    /** Returns whether it has a CA system. */
    public boolean scrambled() {
        return !caIds.isEmpty();
    }
}
