package com.velotra.tv.tavro.tool.satellites;

import com.velotra.tv.tavro.services.channellist.OrbitalPosition;
import com.velotra.tv.tavro.tool.input.Malformed;
import com.velotra.tv.tavro.tool.input.Place;
import com.velotra.tv.tavro.tool.input.Source;
import com.velotra.tv.tavro.tool.input.SourceText;
import java.util.ArrayList;
import java.util.List;

/**
 * A file in the sources.conf format of Debian's vdr package. A line has a code and a name, separated by blanks. The
 * code of a satellite is its position, such as {@code S19.2E}; a single letter other than S is a source of another
 * medium. Blank lines and lines that begin with {@code #} are ignored.
 */
final class SourcesConf {
    /** A satellite: its place in the file, its position in the sky and its name. */
    record Satellite(Place place, OrbitalPosition position, String name) {}

    private final List<Satellite> satellites = new ArrayList<>();
    private final List<String> others = new ArrayList<>();
    private final List<Malformed> malformed = new ArrayList<>();

    private SourcesConf() {}

    /** Reads a file. Malformed lines are collected, not thrown. */
    static SourcesConf read(Source source) {
        SourcesConf conf = new SourcesConf();
        conf.malformed.addAll(SourceText.read(source, (place, line) -> conf.take(place, line.strip())));
        return conf;
    }

    /** The satellites. */
    List<Satellite> satellites() {
        return satellites;
    }

    /** The codes of sources of other media. */
    List<String> others() {
        return others;
    }

    /** The malformed lines. */
    List<Malformed> malformed() {
        return malformed;
    }

    private void take(Place place, String line) {
        if (line.isEmpty() || line.startsWith("#")) {
            return;
        }
        String[] fields = line.split("\\s+", 2);
        if (fields[0].matches("[A-RT-Z]")) {
            others.add(fields[0]);
            return;
        }
        OrbitalPosition position = Satellites.read(fields[0]);
        if (fields.length < 2) {
            throw new IllegalArgumentException("the satellite at " + position + " has no name");
        }
        satellites.add(new Satellite(place, position, fields[1]));
    }
}
