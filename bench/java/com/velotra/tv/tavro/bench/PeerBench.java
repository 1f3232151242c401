package com.velotra.tv.tavro.bench;

import com.velotra.tv.tavro.services.channellist.NativeServices;
import com.velotra.tv.tavro.services.channellist.ServiceRecord;
import com.velotra.tv.tavro.services.channellist.VltTvChannelInfoBase;
import java.nio.file.Path;
import java.util.ArrayList;
import java.util.List;
import java.util.stream.IntStream;

/**
 * Compares the natives over the workstation's platform with other ways to store the same services from Java:
 * sqlite-jdbc with records as blobs or as columns, JSON with Gson, and Java serialization. TAVRO_HOME must name an
 * empty directory.
 */
public final class PeerBench {
    private static final String NATIVES = "natives";
    private static final String BLOBS = "sqlite_jdbc_blobs";
    private static final String COLUMNS = "sqlite_jdbc_columns";
    private static final String JSON = "json";
    private static final String SERIALIZATION = "serialization";

    private static final int LIST_OF_ADDS = 1;
    private static final int LIST_OF_SAMPLES = 2;
    private static final int FIRST_LIST = 3;

    private static final int WARM_UP_ADDS = 2_000;
    private static final int QUICK_ADDS = 500;
    private static final int ADDS = 4_000; // enough for checkpoints of the database in every round
    private static final int MOST_ADDS = 60_000; // a list holds at most 65,535 records
    private static final int SIZE = 20_000;
    private static final int[] SIZES = {100, 1_000, 10_000, SIZE, 60_000};
    private static final int QUICK_SIZE = 1_000;
    private static final int[] QUICK_SIZES = {100, QUICK_SIZE};

    private final Options options;
    private final Path home;
    private final Results results = new Results("peers");
    private boolean headPrinted;
    private int lists = FIRST_LIST;
    /** Result of the last read, stored so that no read is optimized away. */
    private volatile Object read;

    private PeerBench(Options options, Path home) {
        this.options = options;
        this.home = home;
    }

    /** Runs the selected benchmarks. */
    public static void main(String[] arguments) throws Exception {
        new PeerBench(Options.parse(arguments), Path.of(System.getenv("TAVRO_HOME"))).run();
    }

    private void run() throws Exception {
        adds();
        for (int size : options.quick() ? QUICK_SIZES : SIZES) {
            reads(size);
        }
        if (options.json().isPresent() && !options.listOnly()) {
            results.write(options.json().get());
        }
    }

    /** Returns whether to run a contest. With --benchmark_list_tests, prints the names instead. */
    private boolean chosen(Contest contest) {
        List<String> names = contest.names().stream().filter(options::chooses).toList();
        if (options.listOnly()) {
            names.forEach(System.out::println);
        }
        return !names.isEmpty() && !options.listOnly();
    }

    private void finished(List<Result> more) {
        if (!headPrinted) {
            results.head(System.out, "natives/");
            headPrinted = true;
        }
        results.add(more, System.out);
    }

    private static final class Additions {
        List<VltTvChannelInfoBase> infos;
        List<byte[]> records;
        List<Service> services;
        BlobTable blobs;
        ColumnTable columns;
    }

    /** Adds services to growing lists, one transaction each. */
    private void adds() throws Exception {
        Additions all = new Additions();
        Contest contest = new Contest("peers/add_one", "")
                .entrant(NATIVES, times -> {
                    for (int i = 0; i < times; i++) {
                        NativeServices.add(LIST_OF_ADDS, all.infos.get(i % all.infos.size()));
                    }
                })
                .entrant(BLOBS, 1.2, times -> {
                    for (int i = 0; i < times; i++) {
                        all.blobs.add(all.records.get(i % all.records.size()));
                    }
                })
                .entrant(COLUMNS, 1.2, times -> {
                    for (int i = 0; i < times; i++) {
                        all.columns.add(all.services.get(i % all.services.size()));
                    }
                });
        if (!chosen(contest)) {
            return;
        }
        all.infos = IntStream.range(0, 64).mapToObj(SameList::service).toList();
        all.records = SameList.fill(LIST_OF_SAMPLES, all.infos);
        all.services = all.records.stream().map(ServiceRecord::new).map(Service::of).toList();
        NativeServices.open(LIST_OF_ADDS);
        try (BlobTable blobs = new BlobTable(home.resolve("adds-blobs.db"));
                ColumnTable columns = new ColumnTable(home.resolve("adds-columns.db"))) {
            all.blobs = blobs;
            all.columns = columns;
            int rounds = options.rounds(13, 5);
            int adds = Math.min(options.quick() ? QUICK_ADDS : ADDS, MOST_ADDS / rounds);
            finished(contest.runFixed(rounds, WARM_UP_ADDS, adds));
        }
    }

    /** Reads one record and whole lists, and writes whole lists. */
    private void reads(int size) throws Exception {
        SameList[] lists = new SameList[1]; // created when the first contest runs
        List<Contest> contests = new ArrayList<>();
        if (size == (options.quick() ? QUICK_SIZE : SIZE)) {
            contests.add(readOne(lists, size));
            contests.add(writeAll(lists, size));
        }
        contests.add(readAll(lists, size));
        try {
            for (Contest contest : contests) {
                if (chosen(contest)) {
                    if (lists[0] == null) {
                        lists[0] = new SameList(home, this.lists++, size);
                    }
                    finished(contest.runTimed(
                            options.rounds(20, 5), options.quick() ? 0.2 : 2, options.quick() ? 0.005 : 0.05));
                }
            }
        } finally {
            if (lists[0] != null) {
                lists[0].close();
            }
        }
    }

    private Contest readOne(SameList[] lists, int size) {
        int step = 7; // steps through the list out of page order
        return new Contest("peers/read_one", "/" + size)
                .entrant(NATIVES, times -> {
                    for (int i = 0, id = 0; i < times; i++, id = (id + step) % size) {
                        read = NativeServices.read(lists[0].identifiers[id]);
                    }
                })
                .entrant(BLOBS, 1, times -> {
                    for (int i = 0, id = 0; i < times; i++, id = (id + step) % size) {
                        read = lists[0].blobs.read(id + 1);
                    }
                })
                .entrant(COLUMNS, 1, times -> {
                    for (int i = 0, id = 0; i < times; i++, id = (id + step) % size) {
                        read = lists[0].columns.read(id + 1);
                    }
                });
    }

    private Contest readAll(SameList[] lists, int size) {
        return new Contest("peers/read_all", "/" + size)
                .entrant(NATIVES, again(() -> NativeServices.readAll(lists[0].listId)))
                .entrant(BLOBS, 1, again(() -> lists[0].blobs.readAll()))
                .entrant(COLUMNS, 1, again(() -> lists[0].columns.readAll()))
                .entrant(JSON, 1, again(() -> ListFiles.readJson(lists[0].json)))
                .entrant(SERIALIZATION, 1, again(() -> ListFiles.readSerialized(lists[0].serialized)));
    }

    private interface Reading {
        Object read() throws Exception;
    }

    private Contest.Action again(Reading reading) {
        return times -> {
            for (int i = 0; i < times; i++) {
                read = reading.read();
            }
        };
    }

    private static Contest writeAll(SameList[] lists, int size) {
        return new Contest("peers/write_all", "/" + size)
                .entrant(NATIVES, times -> {
                    for (int i = 0; i < times; i++) {
                        NativeServices.store(lists[0].listId, lists[0].stored.toString());
                    }
                })
                .entrant(JSON, 1, times -> {
                    for (int i = 0; i < times; i++) {
                        ListFiles.writeJson(lists[0].json, lists[0].services);
                    }
                })
                .entrant(SERIALIZATION, 1, times -> {
                    for (int i = 0; i < times; i++) {
                        ListFiles.writeSerialized(lists[0].serialized, lists[0].services);
                    }
                });
    }
}
