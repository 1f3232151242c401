package com.velotra.tv.tavro.tool.satellites;

import com.velotra.tv.tavro.services.channellist.ChannelListException;
import com.velotra.tv.tavro.services.channellist.OrbitalPosition;
import com.velotra.tv.tavro.services.channellist.RecordId;
import com.velotra.tv.tavro.services.channellist.VltTvSatelliteInfoBase;
import com.velotra.tv.tavro.services.channellist.VltTvSatelliteList;
import com.velotra.tv.tavro.tool.sources.Malformed;
import com.velotra.tv.tavro.tool.sources.ModifiedUtf8;
import com.velotra.tv.tavro.tool.sources.Tally;
import java.io.IOException;
import java.io.PrintStream;
import java.nio.file.Path;
import java.util.ArrayList;
import java.util.LinkedHashMap;
import java.util.LinkedHashSet;
import java.util.List;
import java.util.Map;
import java.util.Set;

/**
 * Adds satellites to a satellite list, and how dishes are switched to them. A satellite at a position that the list has already
 * is updated: a list has one a position.
 */
public final class SatelliteImport {
    private static final int NAME_BYTES = 64; // of modified UTF-8

    private final VltTvSatelliteList lists;
    private final int listId;
    private final PrintStream progress;

    private final List<SourcesConf.Source> sources = new ArrayList<>();
    private final Map<OrbitalPosition, List<DiseqcConf.Sequence>> sequences = new LinkedHashMap<>();
    private final Tally stored = new Tally("Satellites stored:");
    private final Tally notImported = new Tally("Not imported, by reason:");
    private final Tally left = new Tally("Imported without what a record has no place for:");
    private int files;
    private int malformed;

    /** Satellites go to list {@code listId}, which is opened when they are stored. */
    public SatelliteImport(VltTvSatelliteList lists, int listId, PrintStream progress) {
        this.lists = lists;
        this.listId = listId;
        this.progress = progress;
    }

    /** Takes the satellites of a file in the sources.conf form; {@link #store} stores them. */
    public void addSources(Path file) throws IOException {
        SourcesConf conf = SourcesConf.read(file);
        sources.addAll(conf.satellites);
        conf.others.forEach(code -> notImported.count("no satellite but source " + code));
        took(conf.malformed);
    }

    /** Takes what a file in the diseqc.conf form says about dishes; {@link #store} stores it. */
    public void addSwitches(Path file) throws IOException {
        DiseqcConf conf = DiseqcConf.read(file);
        conf.sequences.forEach((position, lines) -> sequences.computeIfAbsent(position, key -> new ArrayList<>()).addAll(lines));
        for (int i = 0; i < conf.restrictions; i++) {
            left.count("a restriction to some devices");
        }
        took(conf.malformed);
    }

    private void took(List<Malformed> lines) {
        files++;
        malformed += lines.size();
        lines.forEach(line -> progress.println("  left out " + line));
    }

    /** Stores everything that was taken. Returns the satellites of the list, those of before among them. */
    public Satellites store() {
        lists.open(listId);
        Satellites satellites = new Satellites(lists, listId);
        Set<OrbitalPosition> done = new LinkedHashSet<>();
        for (SourcesConf.Source source : sources) {
            if (done.add(source.position())) {
                storeAt(source.position(), source, satellites);
            } else {
                refuse(source.place(), "a position that was named before");
            }
        }
        for (OrbitalPosition position : sequences.keySet()) {
            if (done.contains(position)) {
                continue;
            }
            if (satellites.at(position).isPresent()) {
                storeAt(position, null, satellites);
            } else {
                refuse(position.toString(), "switching to a position where there is no satellite");
            }
        }
        return satellites;
    }

    private void refuse(String what, String reason) {
        notImported.count(reason);
        progress.println("  not imported " + what + ": " + reason);
    }

    /** @param source the satellite's name and place in its file, or null when the file says only how to switch to it */
    private void storeAt(OrbitalPosition position, SourcesConf.Source source, Satellites satellites) {
        RecordId known = satellites.at(position).orElse(null);
        VltTvSatelliteInfoBase info = new VltTvSatelliteInfoBase();
        info.setOrbitPosition(position.tenths());
        if (source != null) {
            info.setName(ModifiedUtf8.cut(source.name(), NAME_BYTES));
        }
        Dish dish = sequences.containsKey(position) ? new Dish(sequences.get(position)) : null;
        if (dish != null) {
            dish.put(info, known == null);
        }
        try {
            RecordId id = known == null ? lists.add(listId, info) : update(known, info);
            if (dish != null) {
                dish.burstBesidePort().ifPresent(burst -> {
                    VltTvSatelliteInfoBase beside = new VltTvSatelliteInfoBase();
                    beside.setToneBurst(burst);
                    update(id, beside);
                });
                dish.left().forEach(left::count);
            }
            satellites.add(position, id);
            stored.count(known == null ? "added" : "updated");
            if (dish != null) {
                stored.count("with how the dish is switched to them");
            }
            if (source != null && !info.getName().equals(source.name())) {
                left.count("the end of a name longer than " + NAME_BYTES + " bytes");
            }
        } catch (ChannelListException e) {
            refuse(source == null ? position.toString() : source.place(), e.getMessage());
        }
    }

    private RecordId update(RecordId id, VltTvSatelliteInfoBase info) {
        info.setRecId(id.toString());
        lists.update(info);
        return id;
    }

    /** Satellites that were added, updated and given their switching. */
    public Map<String, Integer> stored() {
        return stored.counts();
    }

    /** What did not become a record or part of one, by reason. */
    public Map<String, Integer> notImported() {
        return notImported.counts();
    }

    /** Satellites of which something was left out because the record has no place for it, by what it was. */
    public Map<String, Integer> left() {
        return left.counts();
    }

    /** Lines that could not be read. */
    public int malformed() {
        return malformed;
    }

    /** Prints what came of it. */
    public void printSummary(PrintStream out) {
        out.printf("%d files, %d satellites, switching for %d, %d malformed lines%n", files, sources.size(), sequences.size(), malformed);
        for (Tally tally : List.of(stored, notImported, left)) {
            tally.print(out);
        }
        out.printf("satellite list %d: %d records%n", listId, lists.getAll(listId, List.of()).size());
    }
}
