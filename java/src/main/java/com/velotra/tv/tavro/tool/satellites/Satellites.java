package com.velotra.tv.tavro.tool.satellites;

import com.velotra.tv.tavro.services.channellist.OrbitalPosition;
import com.velotra.tv.tavro.services.channellist.RecordId;
import com.velotra.tv.tavro.services.channellist.VltTvSatelliteInfo;
import com.velotra.tv.tavro.services.channellist.VltTvSatelliteList;
import com.velotra.tv.tavro.tool.input.Text;
import java.util.HashMap;
import java.util.List;
import java.util.Map;
import java.util.Optional;

/** The satellite records of one list by orbital position. Of several at one position, the first counts. */
public final class Satellites {
    private final int listId;
    private final Map<OrbitalPosition, RecordId> records = new HashMap<>();
    private final Map<RecordId, OrbitalPosition> positions = new HashMap<>();

    /** Reads the positions of a list. A list that does not exist is not created. */
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
        positions.put(id, position);
    }

    /** Returns the position of a satellite record; nothing if the list has no such record. */
    public Optional<OrbitalPosition> positionOf(RecordId id) {
        return Optional.ofNullable(positions.get(id));
    }

    /** Returns the satellite at a position. */
    public Optional<RecordId> at(OrbitalPosition position) {
        return Optional.ofNullable(records.get(position));
    }

    /** Returns the satellite at a position such as {@code S19.2E}; nothing if there is none. */
    public Optional<RecordId> find(String position) {
        return parse(position).flatMap(this::at);
    }

    /** Returns why {@link #find} finds no satellite. */
    public String whyNone(String position) {
        if (position.isEmpty()) {
            return "no orbital position at the end of the file's name";
        }
        if (records.isEmpty()) {
            return "no satellites in satellite list " + listId;
        }
        return parse(position).isPresent()
                ? "no satellite at " + position + " in satellite list " + listId
                : Text.excerpt(position) + " is not an orbital position";
    }

    /**
     * Parses a position in a line of a file.
     *
     * @throws IllegalArgumentException if it is not a position
     */
    static OrbitalPosition read(String position) {
        return parse(position).orElseThrow(() -> new IllegalArgumentException(
                Text.excerpt(position)
                        + " is not an orbital position; write degrees from 0 to 180 as in S19.2E or S5W"));
    }

    /** Parses a position; nothing if it is not one. */
    public static Optional<OrbitalPosition> parse(String position) {
        try {
            return Optional.of(OrbitalPosition.parse(position));
        } catch (IllegalArgumentException e) {
            return Optional.empty();
        }
    }
}
