package com.velotra.tv.tavro.tool.importing;

import com.velotra.tv.tavro.services.channellist.ChannelListException;
import com.velotra.tv.tavro.services.channellist.Printable;
import com.velotra.tv.tavro.services.channellist.VltTvChannelList;
import com.velotra.tv.tavro.services.channellist.VltTvNetworkList;
import com.velotra.tv.tavro.services.channellist.VltTvSatelliteList;
import com.velotra.tv.tavro.services.channellist.VltTvTransportStreamList;
import com.velotra.tv.tavro.tool.changes.ChangeLock;
import com.velotra.tv.tavro.tool.exchange.ListFormats;
import com.velotra.tv.tavro.tool.exchange.ListTable;
import com.velotra.tv.tavro.tool.input.Failure;
import com.velotra.tv.tavro.tool.input.Format;
import com.velotra.tv.tavro.tool.input.ImportReport;
import com.velotra.tv.tavro.tool.input.Malformed;
import com.velotra.tv.tavro.tool.input.Place;
import com.velotra.tv.tavro.tool.input.Source;
import com.velotra.tv.tavro.tool.records.Kind;
import com.velotra.tv.tavro.tool.satellites.SatelliteImport;
import com.velotra.tv.tavro.tool.satellites.Satellites;
import com.velotra.tv.tavro.tool.services.ChannelsConf;
import com.velotra.tv.tavro.tool.services.DvbV5Services;
import com.velotra.tv.tavro.tool.services.Service;
import com.velotra.tv.tavro.tool.services.ServiceImport;
import com.velotra.tv.tavro.tool.storage.Storage;
import com.velotra.tv.tavro.tool.transponders.DvbV5File;
import com.velotra.tv.tavro.tool.transponders.LegacyFile;
import com.velotra.tv.tavro.tool.transponders.ListIds;
import com.velotra.tv.tavro.tool.transponders.NotImportable;
import com.velotra.tv.tavro.tool.transponders.StreamImport;
import com.velotra.tv.tavro.tool.transponders.Transponder;
import java.io.IOException;
import java.nio.file.FileSystemLoopException;
import java.nio.file.FileVisitOption;
import java.nio.file.FileVisitResult;
import java.nio.file.Files;
import java.nio.file.Path;
import java.nio.file.SimpleFileVisitor;
import java.nio.file.attribute.BasicFileAttributes;
import java.util.ArrayList;
import java.util.EnumSet;
import java.util.List;
import java.util.Optional;
import java.util.Set;
import java.util.TreeSet;
import java.util.function.BiConsumer;
import java.util.stream.Stream;

/**
 * Imports files into lists. All files are read first. Then satellites, transponders and services are stored, in this
 * order, so that each can refer to the ones before.
 */
public final class Importer {
    private final ListIds ids;
    private final ImportReport report;
    private final SatelliteImport satelliteImport;
    private boolean satellitesRead;
    private final List<Transponder> transponders = new ArrayList<>();
    private final List<Service> services = new ArrayList<>();
    private final Optional<Kind> kindOfTables;
    private Optional<byte[]> standardInput = Optional.empty();
    private final List<ListTable> tables = new ArrayList<>();

    /** Reports what happens to each record to {@code report}. */
    public Importer(ListIds ids, ImportReport report) {
        this(ids, report, Optional.empty());
    }

    /** @param kindOfTables kind of the list in a CSV file that does not say it */
    public Importer(ListIds ids, ImportReport report, Optional<Kind> kindOfTables) {
        this.ids = ids;
        this.kindOfTables = kindOfTables;
        this.report = report;
        satelliteImport = new SatelliteImport(VltTvSatelliteList.getInstance(), ids.satellite(), report);
    }

    /**
     * Reads a file, or all regular files below a folder in the order of their names. Files that cannot be used are
     * reported. Files of unknown format in a folder are skipped.
     */
    public void read(Path path) {
        if (path.toString().isEmpty()) {
            report.refusedFile("cannot import a file without a name");
            return;
        }
        if (path.equals(Source.STANDARD_INPUT) || !Files.isDirectory(path)) {
            try {
                Source source = Source.read(path);
                if (path.equals(Source.STANDARD_INPUT)) {
                    standardInput = Optional.of(source.bytes());
                }
                content(source).run();
            } catch (Failure e) {
                report.refusedFile(e.getMessage());
            }
            return;
        }
        // Files are read and parsed in parallel; their contents are taken in order.
        filesBelow(path).parallelStream().map(this::contentInFolder).forEachOrdered(Runnable::run);
    }

    private Runnable contentInFolder(Path file) {
        Source source;
        try {
            source = Source.read(file);
        } catch (Failure e) {
            return () -> report.refusedFile(e.getMessage());
        }
        try {
            return content(source);
        } catch (Failure e) {
            return () -> report.skippedFile(e.getMessage());
        }
    }

    private List<Path> filesBelow(Path folder) {
        List<Path> files = new ArrayList<>();
        try {
            Set<FileVisitOption> options = EnumSet.of(FileVisitOption.FOLLOW_LINKS);
            Files.walkFileTree(folder, options, Integer.MAX_VALUE, new SimpleFileVisitor<>() {
                @Override
                public FileVisitResult visitFile(Path file, BasicFileAttributes attributes) {
                    if (attributes.isRegularFile()) {
                        files.add(file);
                    }
                    return FileVisitResult.CONTINUE;
                }

                @Override
                public FileVisitResult visitFileFailed(Path file, IOException failure) {
                    // a link to a parent folder, which is already read
                    if (failure instanceof FileSystemLoopException) {
                        return FileVisitResult.CONTINUE;
                    }
                    report.refusedFile("cannot read " + Printable.of(file.toString()) + ": " + Source.reason(failure));
                    return FileVisitResult.CONTINUE;
                }
            });
        } catch (IOException e) {
            report.refusedFile("cannot read " + Printable.of(folder.toString()) + ": " + Source.reason(e));
        }
        files.sort(null);
        return files;
    }

    /** Parses a file of any format. Returns an action that adds its content to this import. */
    private Runnable content(Source source) {
        if (ListFormats.isOne(source)) {
            List<ListTable> found = ListFormats.read(source, kindOfTables);
            return () -> {
                tables.addAll(found);
                report.read(0, "", List.of());
            };
        }
        return switch (Format.of(source)) {
            case DVBV5 -> {
                DvbV5File file = DvbV5File.read(source);
                DvbV5Services named = DvbV5Services.of(file);
                List<Transponder> found = file.transponders();
                List<Malformed> malformed = Stream.concat(file.malformed().stream(), named.malformed().stream())
                        .toList();
                yield () -> {
                    transponders.addAll(found);
                    services.addAll(named.services());
                    report.read(found.size(), "transponder", malformed);
                    report.alsoRead(named.services().size(), "service");
                };
            }
            case LEGACY_SCAN_TABLE -> {
                LegacyFile file = LegacyFile.read(source);
                yield () -> {
                    transponders.addAll(file.transponders());
                    report.read(file.transponders().size(), "transponder", file.malformed());
                };
            }
            case CHANNELS -> {
                ChannelsConf file = ChannelsConf.read(source);
                yield () -> {
                    services.addAll(file.services());
                    report.read(file.services().size(), "service", file.malformed());
                };
            }
            case SOURCES -> () -> {
                satellitesRead = true;
                satelliteImport.addSources(source);
            };
            case DISEQC -> () -> {
                satellitesRead = true;
                satelliteImport.addSwitches(source);
            };
        };
    }

    /** Returns what was read from standard input. */
    public Optional<byte[]> standardInput() {
        return standardInput;
    }

    /** Returns the lists that were read from CSV and JSON; {@link #store} does not store them. */
    public List<ListTable> tables() {
        return tables;
    }

    /** Returns whether anything else was read, which {@link #store} stores. */
    public boolean hasRecords() {
        return satellitesRead || !transponders.isEmpty() || !services.isEmpty();
    }

    /**
     * Calls {@code target} for each list that {@link #store} will change.
     *
     * @param problem is called for each transponder or service that cannot be stored
     */
    public void check(BiConsumer<Kind, Integer> target, BiConsumer<Place, String> problem) {
        if (satellitesRead) {
            target.accept(Kind.SATELLITES, ids.satellite());
        }
        Set<Integer> streamLists = new TreeSet<>();
        transponders.forEach(transponder -> listOf(transponder, problem).ifPresent(streamLists::add));
        Set<Integer> serviceLists = new TreeSet<>();
        services.forEach(service -> listOf(service.transponder(), problem).ifPresent(serviceLists::add));
        streamLists.addAll(serviceLists);
        streamLists.forEach(id -> target.accept(Kind.STREAMS, id));
        for (int id : serviceLists) {
            target.accept(Kind.NETWORKS, id);
            target.accept(Kind.SERVICES, id);
        }
    }

    private Optional<Integer> listOf(Transponder transponder, BiConsumer<Place, String> problem) {
        try {
            return Optional.of(StreamImport.listOf(transponder, ids));
        } catch (NotImportable e) {
            problem.accept(transponder.place(), e.getMessage());
            return Optional.empty();
        }
    }

    /**
     * Stores everything that was read, except tables. Only one command at a time changes a storage directory, because
     * what is added depends on what is there.
     *
     * @throws Failure if the storage fails; the change that this is part of then restores the lists
     */
    public void store(StreamImport.Observer streamObserver, ServiceImport.Observer serviceObserver) {
        ChangeLock lock = ChangeLock.take(Storage.directory(), report::waiting);
        try {
            Satellites satellites =
                    satellitesRead ? satelliteImport.store()
                            : new Satellites(VltTvSatelliteList.getInstance(), ids.satellite());
            VltTvTransportStreamList streamLists = VltTvTransportStreamList.getInstance();
            StreamImport streams = new StreamImport(streamLists, satellites, ids, report, streamObserver);
            streams.storeAll(transponders);
            new ServiceImport(VltTvChannelList.getInstance(), streamLists, VltTvNetworkList.getInstance(), streams,
                    report, serviceObserver)
                    .storeAll(services, Storage.directory());
        } catch (ChannelListException e) {
            throw new Failure("the import stopped: " + e.problem() + "; " + Storage.whyItFails());
        } finally {
            lock.release();
        }
    }
}
