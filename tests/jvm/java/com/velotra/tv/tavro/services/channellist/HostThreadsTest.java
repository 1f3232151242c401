package com.velotra.tv.tavro.services.channellist;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertNull;
import static org.junit.jupiter.api.Assertions.assertTrue;

import java.util.ArrayList;
import java.util.HashMap;
import java.util.List;
import java.util.Map;
import java.util.Optional;
import java.util.Random;
import java.util.concurrent.ConcurrentHashMap;
import java.util.concurrent.CyclicBarrier;
import java.util.concurrent.ExecutorService;
import java.util.concurrent.Executors;
import java.util.concurrent.Future;
import java.util.function.Function;
import java.util.stream.Collectors;
import org.junit.jupiter.api.AfterEach;
import org.junit.jupiter.api.BeforeEach;
import org.junit.jupiter.api.Test;

/**
 * Eight threads use lists of all kinds at once, over the workstation's platform: nothing is lost, and every record is
 * found.
 *
 * <p>Each thread adds, reads, updates and removes records of its own in lists that all of them use. Meanwhile lists are
 * closed, and service lists are filtered, which opens and closes lists of other kinds.
 */
class HostThreadsTest {
    private static final int THREADS = 8;
    private static final int CALLS = Integer.getInteger("tavro.threadCalls", 100_000);

    private static final int LIST = 81;
    private static final int FILTERED = 82;
    private static final int MOST_OWN_RECORDS = 12;
    private static final int STREAM_ID = 1089;

    private final VltTvChannelList services = VltTvChannelList.getInstance();
    private final VltTvTransportStreamList streams = VltTvTransportStreamList.getInstance();
    private final VltTvNetworkList networks = VltTvNetworkList.getInstance();
    private final VltTvSatelliteList satellites = VltTvSatelliteList.getInstance();

    private final ExecutorService pool = Executors.newFixedThreadPool(THREADS);
    private volatile boolean failed;

    /** How the test adds, reads and updates records of a kind, of which it knows the name. */
    private interface Names {
        RecordId add(String name);

        Optional<String> get(RecordId id);

        void update(RecordId id, String name);

        Map<RecordId, String> all();
    }

    /** The lists of a kind, with the records that are in list LIST now. */
    private record Shared(TvList lists, Names names, Map<RecordId, String> records) {
        Shared(TvList lists, Names names) {
            this(lists, names, new ConcurrentHashMap<>());
        }
    }

    private final List<Shared> kinds = List.of(
            new Shared(services, new Names() {
                @Override
                public RecordId add(String name) {
                    return services.add(LIST, new VltTvChannelInfoBase().setServiceName(name));
                }

                @Override
                public Optional<String> get(RecordId id) {
                    return services.get(id).map(ServiceRecord::name);
                }

                @Override
                public void update(RecordId id, String name) {
                    services.update(LIST, VltTvChannelInfoBase.forRecord(id).setServiceName(name));
                }

                @Override
                public Map<RecordId, String> all() {
                    return byId(services.getAll(LIST), record -> new RecordId(LIST, record.recordId()),
                            ServiceRecord::name);
                }
            }),
            new Shared(streams, new Names() {
                @Override
                public RecordId add(String name) {
                    return streams.add(LIST, new VltTvTransportStreamInfoBase().setAcTsName(name));
                }

                @Override
                public Optional<String> get(RecordId id) {
                    return streams.get(id).map(TransportStreamRecord::name);
                }

                @Override
                public void update(RecordId id, String name) {
                    streams.update(LIST, VltTvTransportStreamInfoBase.forRecord(id).setAcTsName(name));
                }

                @Override
                public Map<RecordId, String> all() {
                    return byId(streams.getAll(LIST), record -> new RecordId(LIST, record.recordId()),
                            TransportStreamRecord::name);
                }
            }),
            new Shared(networks, new Names() {
                @Override
                public RecordId add(String name) {
                    return networks.add(LIST, named(new VltTvNetworkInfoBase(), name));
                }

                @Override
                public Optional<String> get(RecordId id) {
                    return networks.get(id).map(VltTvNetworkInfo::getNetworkName);
                }

                @Override
                public void update(RecordId id, String name) {
                    networks.update(LIST, named(VltTvNetworkInfoBase.forRecord(id), name));
                }

                @Override
                public Map<RecordId, String> all() {
                    return byId(networks.getAll(LIST), VltTvNetworkInfo::id, VltTvNetworkInfo::getNetworkName);
                }

                private VltTvNetworkInfoBase named(VltTvNetworkInfoBase info, String name) {
                    info.setNetworkName(name);
                    return info;
                }
            }),
            new Shared(satellites, new Names() {
                @Override
                public RecordId add(String name) {
                    return satellites.add(LIST, named(new VltTvSatelliteInfoBase(), name));
                }

                @Override
                public Optional<String> get(RecordId id) {
                    return satellites.get(id).map(VltTvSatelliteInfo::getName);
                }

                @Override
                public void update(RecordId id, String name) {
                    satellites.update(named(VltTvSatelliteInfoBase.forRecord(id), name));
                }

                @Override
                public Map<RecordId, String> all() {
                    return byId(satellites.getAll(LIST), VltTvSatelliteInfo::id, VltTvSatelliteInfo::getName);
                }

                private VltTvSatelliteInfoBase named(VltTvSatelliteInfoBase info, String name) {
                    info.setName(name);
                    return info;
                }
            }));

    private static <T> Map<RecordId, String> byId(List<T> records, Function<T, RecordId> id, Function<T, String> name) {
        return records.stream().collect(Collectors.toMap(id, name));
    }

    /** Services that the filters find by their transport streams, in a list of their own. */
    @BeforeEach
    void makeLists() {
        services.nativeSetup(); // a manager without a path: filters would load the file of an earlier test
        services.open(FILTERED);
        for (Shared kind : kinds) {
            kind.lists.open(LIST);
        }
        for (int streamId : new int[] {STREAM_ID, STREAM_ID + 1}) {
            RecordId stream = streams.add(LIST, new VltTvTransportStreamInfoBase().setTransportStreamId(streamId)
                    .setAcTsName("pinned"));
            kinds.get(ListKind.TRANSPORT_STREAM.ordinal()).records.put(stream, "pinned");
            for (int i = 0; i < 3; i++) {
                RecordId service = services.add(FILTERED, new VltTvChannelInfoBase().setServiceName("S" + streamId)
                        .setTslRecId(stream));
                services.update(FILTERED, service);
                services.update(FILTERED, VltTvChannelInfoBase.forRecord(service).setTslRecId(stream));
            }
        }
    }

    @AfterEach
    void removeLists() {
        pool.shutdownNow();
        services.delete(FILTERED);
        kinds.forEach(kind -> kind.lists.delete(LIST));
    }

    /** The calls of one thread. */
    private final class Worker {
        private final int number;
        private final Random random;
        private final List<Map<RecordId, String>> own = new ArrayList<>();
        private int calls;

        Worker(int number) {
            this.number = number;
            random = new Random(number);
            kinds.forEach(kind -> own.add(new HashMap<>()));
        }

        /** Makes its calls, or fewer once a thread has failed. */
        int run(CyclicBarrier start) throws Exception {
            start.await();
            boolean done = false;
            try {
                for (; calls < CALLS / THREADS && !failed; calls++) {
                    int kind = random.nextInt(kinds.size());
                    call(kinds.get(kind), own.get(kind));
                }
                done = true;
            } finally {
                failed |= !done;
            }
            return calls;
        }

        private void call(Shared kind, Map<RecordId, String> mine) {
            int choice = random.nextInt(100);
            if (choice < 2) {
                filter();
            } else if (choice < 4) {
                Map<RecordId, String> all = kind.names.all();
                mine.forEach((id, name) -> assertEquals(name, all.get(id), () -> "in the whole list: " + id));
            } else if (choice < 6) {
                kind.lists.close(LIST);
            } else if (mine.isEmpty() || choice < 16 && mine.size() < MOST_OWN_RECORDS) {
                String name = nextName();
                RecordId id = kind.names.add(name);
                assertNull(kind.records.put(id, name), () -> "added under an id that is taken: " + id);
                mine.put(id, name);
            } else {
                RecordId id = List.copyOf(mine.keySet()).get(random.nextInt(mine.size()));
                if (choice < 24) {
                    mine.remove(id);
                    kind.records.remove(id); // before the removal: the id may be given again right after
                    kind.lists.remove(id);
                } else if (choice < 40) {
                    String name = nextName();
                    kind.names.update(id, name);
                    kind.records.put(id, name);
                    mine.put(id, name);
                } else {
                    assertEquals(Optional.of(mine.get(id)), kind.names.get(id), () -> "read alone: " + id);
                }
            }
        }

        private void filter() {
            if (random.nextBoolean()) {
                String expected = "S" + STREAM_ID;
                assertEquals(
                        List.of(expected, expected, expected),
                        services.byTransportStream(FILTERED, STREAM_ID).stream().map(ServiceRecord::name).toList());
            } else {
                assertEquals(List.of(), services.byNetwork(FILTERED, 1));
            }
        }

        private String nextName() {
            return "thread " + number + " call " + calls;
        }
    }

    @Test
    void mixedCallsOfManyThreadsLoseNothingAndFindEveryRecord() throws Exception {
        CyclicBarrier start = new CyclicBarrier(THREADS);
        List<Future<Integer>> results = new ArrayList<>();
        for (int i = 0; i < THREADS; i++) {
            Worker worker = new Worker(i);
            results.add(pool.submit(() -> worker.run(start)));
        }
        int calls = 0;
        for (Future<Integer> result : results) {
            calls += result.get();
        }
        assertEquals(CALLS / THREADS * THREADS, calls);
        for (Shared kind : kinds) {
            assertTrue(kind.records.size() > THREADS, () -> kind.lists.kind() + ": " + kind.records.size());
            assertEquals(kind.records, kind.names.all(), () -> "the list of each " + kind.lists.kind().recordName());
        }
    }
}
