package com.velotra.tv.tavro.tool;

import com.velotra.tv.tavro.services.channellist.RecordId;
import com.velotra.tv.tavro.services.channellist.ServiceRecord;
import com.velotra.tv.tavro.services.channellist.VltTvChannelInfoBase;
import com.velotra.tv.tavro.services.channellist.VltTvChannelList;
import java.io.PrintStream;
import java.util.LinkedHashMap;
import java.util.List;
import java.util.Map;

/** Adds the services of a file to a service list, one at a time. */
final class ServiceImport {
    // service_type (ETSI EN 300 468 table 87): 1 digital television, 2 digital radio sound.
    private static final int TELEVISION = 1;
    private static final int RADIO = 2;

    private static final int PROGRESS_EVERY = 1000;

    private final VltTvChannelList lists;
    private final int listId;
    private final PrintStream progress;

    // Transport streams in the order in which they were met, each with its number from 1.
    private final Map<String, Integer> transponders = new LinkedHashMap<>();

    ServiceImport(VltTvChannelList lists, int listId, PrintStream progress) {
        this.lists = lists;
        this.listId = listId;
        this.progress = progress;
    }

    /** How many transport streams the services so far lie on. */
    int transponders() {
        return transponders.size();
    }

    void addAll(List<ChannelsConf.Service> services) {
        int added = 0;
        for (ChannelsConf.Service service : services) {
            lists.add(listId, convert(service));
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
                .setServiceName(service.name())
                .setServiceId(service.serviceId())
                .setTslRecId(new RecordId(listId, transponderOf(service)))
                .setVnetActive(true)
                .setVnetVisible(true)
                .setVnetNumericSelectable(true)
                .setVnetScrambled(service.scrambled())
                .setFreeCaMode(service.scrambled() ? 1 : 0);
        if (!service.shortName().isEmpty()) {
            info.setServiceShortName(service.shortName());
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

    private int transponderOf(ChannelsConf.Service service) {
        return transponders.computeIfAbsent(service.transponder(), key -> transponders.size() + 1);
    }
}
