package com.velotra.tv.tavro.tool.services;

import com.velotra.tv.tavro.services.channellist.BroadcastType;
import com.velotra.tv.tavro.services.channellist.RecordId;
import com.velotra.tv.tavro.services.channellist.ServiceFlag;
import com.velotra.tv.tavro.services.channellist.ServiceRecord;
import com.velotra.tv.tavro.services.channellist.VltTvChannelInfoBase;
import com.velotra.tv.tavro.services.channellist.VltTvChannelList;
import com.velotra.tv.tavro.services.channellist.VltTvNetworkList;
import com.velotra.tv.tavro.services.channellist.VltTvTransportStreamList;
import com.velotra.tv.tavro.tool.input.ImportReport;
import com.velotra.tv.tavro.tool.input.ModifiedUtf8;
import com.velotra.tv.tavro.tool.transponders.NotImportable;
import com.velotra.tv.tavro.tool.transponders.StreamImport;
import com.velotra.tv.tavro.tool.transponders.StreamImport.Ids;
import com.velotra.tv.tavro.tool.transponders.StreamImport.Stored;
import java.nio.file.Path;
import java.util.HashMap;
import java.util.List;
import java.util.Map;
import java.util.Optional;

/**
 * Stores services in service lists, and the transport streams and networks that they refer to in the lists with the
 * same id. A service that is already in its list is updated.
 */
public final class ServiceImport {
    /** Called for every stored service. */
    public interface Observer {
        void stored(Service service, RecordId id, Stored stream);
    }

    // service_type (ETSI EN 300 468 table 87): 1 digital television, 2 digital radio sound.
    private static final int TELEVISION = 1;
    private static final int RADIO = 2;

    // Length of the fields, in bytes of modified UTF-8.
    private static final int NAME_BYTES = 64;
    private static final int SHORT_NAME_BYTES = 16;

    private final VltTvChannelList lists;
    private final VltTvTransportStreamList streamLists;
    private final StreamImport streams;
    private final Networks networks;
    private final ImportReport report;
    private final Observer observer;
    private final Map<Integer, ServiceList> targets = new HashMap<>();
    // Stored by this import, by all values in the file.
    private final Map<List<Object>, Stored> transponders = new HashMap<>();

    /** Stores transport streams through {@code streams}. */
    public ServiceImport(VltTvChannelList lists, VltTvTransportStreamList streamLists, VltTvNetworkList networkLists,
            StreamImport streams, ImportReport report, Observer observer) {
        this.lists = lists;
        this.streamLists = streamLists;
        this.streams = streams;
        this.networks = new Networks(networkLists, report);
        this.report = report;
        this.observer = observer;
    }

    /**
     * Stores services, and then writes their network references in the storage directory {@code storage}.
     *
     * @throws com.velotra.tv.tavro.services.channellist.ChannelListException if the storage fails; records stored so
     *         far are kept
     */
    public void storeAll(List<Service> services, Path storage) {
        report.beginSteps();
        for (Service service : services) {
            try {
                store(service);
            } catch (NotImportable e) {
                report.notImported(service.place(), e.getMessage());
            }
            report.step(services.size(), "services");
        }
        for (ServiceList list : targets.values()) {
            list.writeNetworks(storage);
        }
    }

    private void store(Service service) throws NotImportable {
        Stored stream = streamOf(service);
        ServiceList list = targets.computeIfAbsent(
                stream.id().listId(), id -> new ServiceList(lists, streamLists, id, report));
        RecordId id = list.store(service.serviceId(), stream, before -> convert(service, stream.id(), before));
        if (id == null) {
            return;
        }
        if (service.networkId() != 0) {
            list.setNetwork(id, networks.of(list.id(), service.networkId()));
        }
        cutName("service name", service.name(), NAME_BYTES);
        cutName("short name", service.shortName(), SHORT_NAME_BYTES);
        if (service.caIds().size() > 1) {
            report.dropped("CA system ids after the first");
        }
        observer.stored(service, id, stream);
    }

    private void cutName(String what, String name, int most) {
        if (ModifiedUtf8.bytes(name) > most) {
            report.dropped("the end of a " + what + " longer than " + most + " bytes");
        }
    }

    private Stored streamOf(Service service) throws NotImportable {
        Ids ids = new Ids(service.networkId(), service.transportStreamId());
        List<Object> all = List.of(service.transponder().position(), service.transponder().values(), ids);
        Stored known = transponders.get(all);
        if (known == null) {
            known = streams.store(service.transponder(), ids, networks::of);
            transponders.put(all, known);
        }
        return known;
    }

    /** @param before record to be updated, whose edits by the user are kept; nothing for a new record */
    private VltTvChannelInfoBase convert(Service service, RecordId stream, Optional<ServiceRecord> before) {
        int type = service.hasVideo() ? TELEVISION : RADIO;
        VltTvChannelInfoBase info = new VltTvChannelInfoBase()
                .setBroadcastType(BroadcastType.DVB)
                .setServiceType(type)
                .setSdtServiceType(type)
                .setServiceId(service.serviceId())
                .setTslRecId(stream)
                .setVnetScrambled(service.scrambled())
                .setFreeCaMode(service.scrambled() ? 1 : 0)
                .setCaSystemId(service.scrambled() ? service.caIds().get(0) : 0);
        streams.satelliteOf(service.transponder()).ifPresent(info::setSatlRecId);
        if (before.isEmpty()) {
            info.setVnetActive(true).setVnetEpg(true).setVnetVisible(true).setVnetNumericSelectable(true);
        }
        if (before.filter(record -> record.has(ServiceFlag.NAME_EDITED)).isEmpty()) {
            info.setServiceName(name(service)).setServiceShortName(shortName(service));
        }
        if (service.number() != 0 && before.filter(record -> record.has(ServiceFlag.NUMBER_EDITED)).isEmpty()) {
            info.setMajorChannelNumber(service.number())
                    .setLogicalChannelNumber(service.number())
                    .setOriginalLcn(service.number())
                    .setVoptLcnApplied(true);
        }
        return info;
    }

    // deliberate: the library would cut names too, but within a character.

    /** Returns the name, cut to the length of its field. */
    public static String name(Service service) {
        return ModifiedUtf8.cut(service.name(), NAME_BYTES);
    }

    /** Returns the short name, cut to the length of its field. */
    public static String shortName(Service service) {
        return ModifiedUtf8.cut(service.shortName(), SHORT_NAME_BYTES);
    }
}
