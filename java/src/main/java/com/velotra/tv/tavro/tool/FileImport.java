package com.velotra.tv.tavro.tool;

import com.velotra.tv.tavro.services.channellist.VltTvSatelliteList;
import com.velotra.tv.tavro.services.channellist.VltTvTransportStreamList;
import com.velotra.tv.tavro.tool.satellites.SatelliteImport;
import com.velotra.tv.tavro.tool.satellites.Satellites;
import com.velotra.tv.tavro.tool.transponders.ScanImport;
import java.io.IOException;
import java.io.PrintStream;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.ArrayList;
import java.util.List;
import java.util.stream.Stream;

/** Imports files into lists, told apart by their names: satellites first, so that transponders can point at them. */
final class FileImport {
    private static final String SOURCES = "sources.conf";
    private static final String SWITCHES = "diseqc.conf";

    private final List<Path> sources = new ArrayList<>();
    private final List<Path> switches = new ArrayList<>();
    private final List<Path> scanTables = new ArrayList<>();

    /** @param paths files, or folders whose files are taken in the order of their names */
    FileImport(List<Path> paths) throws IOException {
        for (Path path : paths) {
            try (Stream<Path> tree = Files.walk(path)) {
                tree.filter(Files::isRegularFile).sorted().forEach(this::take);
            }
        }
    }

    private void take(Path file) {
        switch (file.getFileName().toString()) {
            case SOURCES -> sources.add(file);
            case SWITCHES -> switches.add(file);
            default -> scanTables.add(file);
        }
    }

    /**
     * Terrestrial transponders go to list {@code firstList}, cable to the next one, satellite to the one behind it and satellites
     * to the satellite list of that number.
     */
    void run(int firstList, PrintStream out, PrintStream progress) throws IOException {
        int satelliteList = firstList + 2;
        VltTvSatelliteList satelliteLists = VltTvSatelliteList.getInstance();
        Satellites satellites;
        if (sources.isEmpty() && switches.isEmpty()) {
            satellites = new Satellites(satelliteLists, satelliteList);
        } else {
            SatelliteImport satelliteImport = new SatelliteImport(satelliteLists, satelliteList, progress);
            for (Path file : sources) {
                satelliteImport.addSources(file);
            }
            for (Path file : switches) {
                satelliteImport.addSwitches(file);
            }
            satellites = satelliteImport.store();
            satelliteImport.printSummary(out);
        }
        if (!scanTables.isEmpty()) {
            ScanImport scan = new ScanImport(
                    VltTvTransportStreamList.getInstance(), satellites, firstList, progress, (entry, id) -> { });
            for (Path file : scanTables) {
                scan.add(file);
            }
            scan.printSummary(out);
        }
    }
}
