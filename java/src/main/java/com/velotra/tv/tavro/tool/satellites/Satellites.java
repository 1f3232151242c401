package com.velotra.tv.tavro.tool.satellites;

import com.velotra.tv.tavro.services.channellist.OrbitalPosition;
import com.velotra.tv.tavro.services.channellist.RecordId;
import com.velotra.tv.tavro.services.channellist.VltTvSatelliteInfo;
import com.velotra.tv.tavro.services.channellist.VltTvSatelliteList;
import java.util.HashMap;
import java.util.List;
import java.util.Map;
import java.util.Optional;
import java.util.function.Consumer;

/** The satellite records of one list by their orbital positions, of several at one position the first. */
public final class Satellites {
    private final int listId;
    private final Map<OrbitalPosition, RecordId> records = new HashMap<>();

    /** Reads the positions of a list; none when there is no such list, which is not created. */
    public Satellites(VltTvSatelliteList lists, int listId) {
        this.listId = listId;
        if (lists.exists(listId)) {
            for (VltTvSatelliteInfo satellite : lists.getAll(listId, List.of("OrbitPosition"))) {
                add(new OrbitalPosition(satellite.getOrbitPosition()), satellite.id());
            }
        }
    }

    void add(OrbitalPosition position, RecordId id) {
        records.putIfAbsent(position, id);
    }

    /** The satellite at that position. */
    public Optional<RecordId> at(OrbitalPosition position) {
        return Optional.ofNullable(records.get(position));
    }

    /**
     * Hands the satellite at {@code position}, as in {@code S19.2E}, to {@code setter}. Returns why there is none when there is
     * none.
     */
    public Optional<String> pointAt(String position, Consumer<RecordId> setter) {
        if (records.isEmpty()) {
            return Optional.of("no satellites in satellite list " + listId);
        }
        try {
            Optional<RecordId> satellite = at(OrbitalPosition.parse(position));
            satellite.ifPresent(setter);
            return satellite.isPresent()
                    ? Optional.empty()
                    : Optional.of("no satellite at " + position + " in satellite list " + listId);
        } catch (IllegalArgumentException e) {
            return Optional.of(e.getMessage());
        }
    }
}
