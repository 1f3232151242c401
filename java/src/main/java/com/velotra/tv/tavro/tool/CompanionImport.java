package com.velotra.tv.tavro.tool;

import com.velotra.tv.tavro.services.channellist.RecordId;
import com.velotra.tv.tavro.services.channellist.TransportStreamRecord;
import com.velotra.tv.tavro.services.channellist.VltTvNetworkInfoBase;
import com.velotra.tv.tavro.services.channellist.VltTvNetworkList;
import com.velotra.tv.tavro.services.channellist.VltTvTransportStreamInfoBase;
import com.velotra.tv.tavro.services.channellist.VltTvTransportStreamList;
import com.velotra.tv.tavro.tool.satellites.Satellites;
import com.velotra.tv.tavro.tool.sources.Tally;
import java.util.HashMap;
import java.util.LinkedHashMap;
import java.util.Map;
import java.util.Optional;

/**
 * Makes the transport stream and network records that services point at, one for each stream and network met, and points
 * satellite streams at their satellites.
 */
final class CompanionImport {
    private static final int BROADCAST_DVB = 2;

    private static final int STANDARD_S = 5;
    private static final int STANDARD_S2 = 6;

    private final VltTvTransportStreamList streamLists;
    private final VltTvNetworkList networkLists;
    private final int listId;

    private final Satellites satellites;
    private final Tally withoutSatellite = new Tally("Transport streams without a satellite record, by reason:");
    private final Map<String, RecordId> streams = new LinkedHashMap<>();
    private final Map<Integer, RecordId> networks = new HashMap<>();

    /**
     * Records go to the transport stream list and the network list with the id {@code listId}, which are opened. Those of
     * satellite services point at {@code satellites}.
     */
    CompanionImport(
            VltTvTransportStreamList streamLists, VltTvNetworkList networkLists, Satellites satellites, int listId) {
        this.streamLists = streamLists;
        this.networkLists = networkLists;
        this.satellites = satellites;
        this.listId = listId;
        streamLists.open(listId);
        networkLists.open(listId);
    }

    /** How many transport streams were met. */
    int streams() {
        return streams.size();
    }

    /** How many networks were met. */
    int networks() {
        return networks.size();
    }

    /** The record of the service's transport stream, a new one when there is none like it yet. */
    RecordId streamOf(ChannelsConf.Service service) {
        RecordId known = streams.get(service.transponder());
        if (known == null) {
            known = streamLists.add(listId, convert(service));
            streams.put(service.transponder(), known);
        }
        return known;
    }

    /** Transport streams of satellites that point at no satellite record, by reason. */
    Tally withoutSatellite() {
        return withoutSatellite;
    }

    /** The record of the service's satellite; none when there is none, and of another medium. */
    Optional<RecordId> satelliteOf(ChannelsConf.Service service) {
        return service.position().flatMap(satellites::at);
    }

    /** The record of the service's network, a new one when there is none like it yet; none when the file names none. */
    Optional<RecordId> networkOf(ChannelsConf.Service service) {
        if (service.networkId() == 0) {
            return Optional.empty();
        }
        return Optional.of(networks.computeIfAbsent(service.networkId(), networkId -> {
            VltTvNetworkInfoBase info = new VltTvNetworkInfoBase();
            info.setNwlNetworkId(networkId);
            info.setNetworkName("Network " + networkId);
            return networkLists.add(listId, info);
        }));
    }

    /** The values of a service's transport stream as a record object: frequencies in kHz, symbol rates in symbols a second. */
    VltTvTransportStreamInfoBase convert(ChannelsConf.Service service) {
        VltTvTransportStreamInfoBase info = new VltTvTransportStreamInfoBase()
                .setBroadcastType(BROADCAST_DVB)
                .setBroadcastMedium(medium(service.medium()))
                .setNetworkId(service.networkId())
                .setOriginalNetworkId(service.networkId())
                .setTransportStreamId(service.transportStreamId())
                .setFrequency(kilohertz(service));
        networkOf(service).ifPresent(info::setTslNwlRecId);
        if (service.medium() != ChannelsConf.Medium.TERRESTRIAL) {
            info.setSymbolRate(service.symbolRate() * 1000);
        }
        if (service.medium() == ChannelsConf.Medium.SATELLITE) {
            info.setStandard(service.parameters().contains("S1") ? STANDARD_S2 : STANDARD_S);
            satellites.pointAt(service.source(), info::setTslSatlRecId).ifPresent(withoutSatellite::count);
        }
        return info;
    }

    static int medium(ChannelsConf.Medium medium) {
        return switch (medium) {
            case TERRESTRIAL -> TransportStreamRecord.TERRESTRIAL;
            case CABLE -> TransportStreamRecord.CABLE;
            case SATELLITE -> TransportStreamRecord.SATELLITE;
        };
    }

    /** Files give MHz for satellites; for cable and terrestrial MHz, kHz or Hz, told apart by their size. */
    static int kilohertz(ChannelsConf.Service service) {
        int frequency = service.frequency();
        if (service.medium() == ChannelsConf.Medium.SATELLITE || frequency < 1000) {
            return frequency * 1000;
        }
        return frequency < 1_000_000 ? frequency : frequency / 1000;
    }
}
