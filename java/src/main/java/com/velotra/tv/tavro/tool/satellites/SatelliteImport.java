package com.velotra.tv.tavro.tool.satellites;

import com.velotra.tv.tavro.services.channellist.OrbitalPosition;
import com.velotra.tv.tavro.services.channellist.RecordId;
import com.velotra.tv.tavro.services.channellist.VltTvSatelliteInfoBase;
import com.velotra.tv.tavro.services.channellist.VltTvSatelliteList;
import com.velotra.tv.tavro.tool.input.ImportReport;
import com.velotra.tv.tavro.tool.input.ListCounts;
import com.velotra.tv.tavro.tool.input.ModifiedUtf8;
import com.velotra.tv.tavro.tool.input.Source;
import java.util.ArrayList;
import java.util.LinkedHashMap;
import java.util.LinkedHashSet;
import java.util.List;
import java.util.Map;
import java.util.OptionalInt;
import java.util.Set;

/**
 * Stores satellites and their dish settings in a satellite list. A satellite whose position is already in the list is
 * updated: a list has one satellite per position.
 */
public final class SatelliteImport {
    private static final int NAME_BYTES = 64; // of modified UTF-8

    private final VltTvSatelliteList lists;
    private final int listId;
    private final ImportReport report;

    private final List<SourcesConf.Satellite> sources = new ArrayList<>();
    private final Map<OrbitalPosition, List<DiseqcConf.Sequence>> sequences = new LinkedHashMap<>();
    private ListCounts counts;
    private Satellites satellites;

    /** Stores into list {@code listId}, which {@link #store} opens. */
    public SatelliteImport(VltTvSatelliteList lists, int listId, ImportReport report) {
        this.lists = lists;
        this.listId = listId;
        this.report = report;
    }

    /** Adds the satellites of a sources.conf; {@link #store} stores them. */
    public void addSources(Source source) {
        SourcesConf conf = SourcesConf.read(source);
        sources.addAll(conf.satellites());
        report.read(conf.satellites().size(), "satellite", conf.malformed());
        conf.others().forEach(code -> report.skipped("not a satellite (source " + code + ")"));
    }

    /** Adds the dish settings of a diseqc.conf; {@link #store} stores them. */
    public void addSwitches(Source source) {
        DiseqcConf conf = DiseqcConf.read(source);
        conf.sequences().forEach(
                (position, lines) -> sequences.computeIfAbsent(position, key -> new ArrayList<>()).addAll(lines));
        report.read(conf.sequences().size(), "dish setting", conf.malformed());
        for (int i = 0; i < conf.restrictions(); i++) {
            report.dropped("a restriction to certain devices");
        }
    }

    /**
     * Stores everything that was added. Returns all satellites of the list.
     *
     * @throws com.velotra.tv.tavro.services.channellist.ChannelListException if the storage fails; records stored so
     *         far are kept
     */
    public Satellites store() {
        lists.open(listId);
        satellites = new Satellites(lists, listId);
        counts = report.list("satellite list " + listId, () -> lists.exists(listId)
                ? lists.getAll(listId, List.of()).size() : -1);
        Set<OrbitalPosition> done = new LinkedHashSet<>();
        for (SourcesConf.Satellite source : sources) {
            if (done.add(source.position())) {
                storeAt(source.position(), source);
            } else {
                counts.repeated();
            }
        }
        for (OrbitalPosition position : sequences.keySet()) {
            if (done.contains(position)) {
                continue;
            }
            if (satellites.at(position).isPresent()) {
                storeAt(position, null);
            } else {
                report.notImported(position,
                        "dish settings for a position without a satellite (import sources.conf too)");
            }
        }
        return satellites;
    }

    /** @param source satellite of a sources.conf; null if there are only dish settings */
    private void storeAt(OrbitalPosition position, SourcesConf.Satellite source) {
        RecordId known = satellites.at(position).orElse(null);
        VltTvSatelliteInfoBase info = new VltTvSatelliteInfoBase();
        info.setOrbitPosition(position.tenths());
        if (source != null) {
            info.setName(ModifiedUtf8.cut(source.name(), NAME_BYTES));
        }
        Dish dish = sequences.containsKey(position) ? new Dish(sequences.get(position)) : null;
        if (dish != null) {
            dish.put(info, polarization(known));
        }
        List<Object> before = known == null ? List.of() : values(known);
        RecordId id = known == null ? lists.add(listId, info) : update(known, info);
        satellites.add(position, id);
        if (dish != null) {
            dish.burstBesidePort().ifPresent(burst -> {
                VltTvSatelliteInfoBase beside = new VltTvSatelliteInfoBase();
                beside.setToneBurst(burst);
                update(id, beside);
            });
            dish.dropped().forEach(report::dropped);
            report.switched();
        }
        if (known == null) {
            counts.added();
        } else {
            counts.updated(id.recordId(), !values(id).equals(before));
        }
        if (source != null && !info.getName().equals(source.name())) {
            report.dropped("the end of a name longer than " + NAME_BYTES + " bytes");
        }
    }

    private OptionalInt polarization(RecordId known) {
        return known == null ? OptionalInt.empty()
                : lists.get(known).stream().mapToInt(VltTvSatelliteInfoBase::getDiseqcPolar).findFirst();
    }

    private List<Object> values(RecordId id) {
        return lists.get(id).map(VltTvSatelliteInfoBase::allValues).orElse(List.of());
    }

    private RecordId update(RecordId id, VltTvSatelliteInfoBase info) {
        info.setRecId(id.toString());
        lists.update(info);
        return id;
    }
}
