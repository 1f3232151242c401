package com.velotra.tv.tavro.tool.satellites;

import com.velotra.tv.tavro.services.channellist.OrbitalPosition;
import com.velotra.tv.tavro.tool.sources.Malformed;
import com.velotra.tv.tavro.tool.sources.SourceFile;
import java.io.IOException;
import java.nio.file.Path;
import java.util.ArrayList;
import java.util.List;

/**
 * Satellite positions in the sources.conf form of Debian's vdr package: a line is a code and a name with blanks between them.
 * Codes of satellites are positions as in {@code S19.2E}; a single letter other than S stands for a source of another medium. Blank
 * lines and lines that begin with {@code #} say nothing.
 */
final class SourcesConf {
    /** A satellite: where it is in the file and in the sky, and its name. */
    record Source(Path file, int line, OrbitalPosition position, String name) {
        String place() {
            return file + ":" + line;
        }
    }

    final List<Source> satellites = new ArrayList<>();
    final List<String> others = new ArrayList<>(); // codes of other media
    final List<Malformed> malformed = new ArrayList<>();

    private SourcesConf() {}

    /** Reads a file. Malformed lines are collected, not thrown. */
    static SourcesConf read(Path file) throws IOException {
        SourcesConf conf = new SourcesConf();
        conf.malformed.addAll(SourceFile.read(file, (number, line) -> conf.take(file, number, line.strip())));
        return conf;
    }

    private void take(Path file, int number, String line) {
        if (line.isEmpty() || line.startsWith("#")) {
            return;
        }
        String[] fields = line.split("\\s+", 2);
        if (fields[0].matches("[A-RT-Z]")) {
            others.add(fields[0]);
            return;
        }
        OrbitalPosition position = OrbitalPosition.parse(fields[0]);
        if (fields.length < 2) {
            throw new IllegalArgumentException("the satellite at " + fields[0] + " has no name");
        }
        satellites.add(new Source(file, number, position, fields[1]));
    }
}
