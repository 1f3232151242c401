package com.velotra.tv.tavro.tool;

import com.velotra.tv.tavro.services.channellist.ChannelListException;
import com.velotra.tv.tavro.services.channellist.RecordId;
import com.velotra.tv.tavro.services.channellist.ServiceRecord;
import com.velotra.tv.tavro.services.channellist.VltTvChannelInfoBase;
import com.velotra.tv.tavro.services.channellist.VltTvChannelList;
import com.velotra.tv.tavro.tool.sources.ModifiedUtf8;
import java.io.PrintStream;
import java.util.Collections;
import java.util.LinkedHashMap;
import java.util.List;
import java.util.Map;

/** Adds the services of a file to a service list, one at a time. */
final class ServiceImport {
    // service_type (ETSI EN 300 468 table 87): 1 digital television, 2 digital radio sound.
    private static final int TELEVISION = 1;
    private static final int RADIO = 2;

    // What a record keeps of its texts, in bytes of modified UTF-8.
    private static final int NAME_BYTES = 64;
    private static final int SHORT_NAME_BYTES = 16;

    private static final int PROGRESS_EVERY = 1000;

    private final VltTvChannelList lists;
    private final CompanionImport companions;
    private final int listId;
    private final PrintStream progress;

    // The network records of the services that have one, by the services' record ids.
    private final Map<Integer, RecordId> networks = new LinkedHashMap<>();

    ServiceImport(VltTvChannelList lists, CompanionImport companions, int listId, PrintStream progress) {
        this.lists = lists;
        this.companions = companions;
        this.listId = listId;
        this.progress = progress;
    }

    /** The network records of the services that have one, by the services' record ids. */
    Map<Integer, RecordId> networks() {
        return Collections.unmodifiableMap(networks);
    }

    /**
     * Adds services behind those that the list has.
     *
     * @throws Main.Failure naming the service that could not be added; those before it are in the list then
     */
    void addAll(List<ChannelsConf.Service> services) {
        int added = 0;
        for (ChannelsConf.Service service : services) {
            try {
                RecordId id = lists.add(listId, convert(service));
                companions.networkOf(service).ifPresent(network -> networks.put(id.recordId(), network));
            } catch (ChannelListException e) {
                throw new Main.Failure(String.format(
                        "%s: '%s', service id %d, number %d of %d; those before it are in the list",
                        e.getMessage(), service.name(), service.serviceId(), added + 1, services.size()));
            }
            added++;
            if (added % PROGRESS_EVERY == 0) {
                progress.printf("  %d of %d services%n", added, services.size());
            }
        }
    }

    /** The values of one service as a record object. */
    VltTvChannelInfoBase convert(ChannelsConf.Service service) {
        int type = service.videoPid() == 0 ? RADIO : TELEVISION;
        VltTvChannelInfoBase info = new VltTvChannelInfoBase()
                .setBroadcastType(ServiceRecord.BROADCAST_DVB)
                .setServiceType(type)
                .setSdtServiceType(type)
                .setServiceName(name(service))
                .setServiceId(service.serviceId())
                .setTslRecId(companions.streamOf(service))
                .setVnetActive(true)
                .setVnetEpg(true)
                .setVnetVisible(true)
                .setVnetNumericSelectable(true)
                .setVnetScrambled(service.scrambled())
                .setFreeCaMode(service.scrambled() ? 1 : 0);
        companions.satelliteOf(service).ifPresent(info::setSatlRecId);
        if (!service.shortName().isEmpty()) {
            info.setServiceShortName(shortName(service));
        }
        if (service.scrambled()) {
            info.setCaSystemId(service.caIds().get(0));
        }
        if (service.number() != 0) {
            info.setMajorChannelNumber(service.number())
                    .setLogicalChannelNumber(service.number())
                    .setOriginalLcn(service.number())
                    .setVoptLcnApplied(true);
        }
        return info;
    }

    // The library cuts at a byte; cutting here at a character keeps the last one whole.

    /** The name as a record keeps it. */
    static String name(ChannelsConf.Service service) {
        return ModifiedUtf8.cut(service.name(), NAME_BYTES);
    }

    /** The short name as a record keeps it. */
    static String shortName(ChannelsConf.Service service) {
        return ModifiedUtf8.cut(service.shortName(), SHORT_NAME_BYTES);
    }
}
