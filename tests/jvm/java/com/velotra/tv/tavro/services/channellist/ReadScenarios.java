package com.velotra.tv.tavro.services.channellist;

import static com.velotra.tv.tavro.services.channellist.JniCalls.Failing.first;
import static com.velotra.tv.tavro.services.channellist.JniCalls.Failing.nth;
import static com.velotra.tv.tavro.services.channellist.Scenarios.FAILS;

import java.util.Arrays;
import java.util.List;

/** The paths of the natives that read records. */
final class ReadScenarios {
    private static final int TS_ID = 1101;
    private static final int NETWORK_ID = 8468;

    private final Scenarios table;
    private final ListClass kind;

    ReadScenarios(Scenarios table, ListClass kind) {
        this.table = table;
        this.kind = kind;
    }

    void add() {
        switch (kind) {
            case SERVICES -> {
                bytesOfOne("native_getSvlInfo");
                services(table.of(kind, "native_getSvlInfoList", int.class), "by_brdcst_type", 1, 2);
                services(table.of(kind, "native_getInfoListByTransportStreamRecord", int.class, int.class), "by_ts",
                        1, 2, 7);
                byTransportStream();
                byNetwork();
            }
            case STREAMS -> {
                bytesOfOne("native_getInfo");
                streams(table.of(kind, "native_getInfoList", int.class), "get_num_recs", "get_rec_by_rec_idx", 1, 2);
                streams(table.of(kind, "native_getInfoListBySatellite", int.class, int.class), "get_num_rec_by_sat",
                        "get_rec_by_sat", 1, 2, 7);
            }
            default -> {
                object();
                objects();
            }
        }
    }

    private void bytesOfOne(String name) {
        Scenarios.Paths paths = table.of(kind, name, String.class);
        identifiers(paths);
        paths.without("there is no memory for the array", first("NewByteArray"), this::oneRecord, "1,5");
    }

    /** Paths that reads of one record share. */
    private void identifiers(Scenarios.Paths paths, Object... keys) {
        paths.path("success", this::oneRecord, join("1,5", keys))
                .path("the list is not open", this::oneRecord, join("2,5", keys))
                .fails("the list cannot be opened", "open", join("2,5", keys))
                .path("the list is opened without a handle", () -> Script.always(kind.call("open"), 0, 0),
                        join("2,5", keys))
                .fails("the record does not exist", "get_rec", join("1,5", keys))
                .path("list 0", join("0,5", keys))
                .path("the record id has more than 16 bits", this::oneRecord, join("1,65541", keys))
                .path("the identifier has a second comma", this::oneRecord, join("1,5,9", keys))
                .path("the identifier is null", join(null, keys))
                .path("the identifier is empty", join("", keys))
                .path("the identifier has no comma", join("15", keys))
                .without("there is no memory for the identifier", first("GetStringUTFChars"), join("1,5", keys));
        if (kind != ListClass.SATELLITES) { // elsewhere this ends the process
            paths.path("the identifier has other characters than digits", join("1,a", keys));
        }
    }

    private static Object[] join(Object first, Object... more) {
        Object[] all = new Object[1 + more.length];
        all[0] = first;
        System.arraycopy(more, 0, all, 1, more.length);
        return all;
    }

    /** The record that is read. */
    private void oneRecord() {
        Script.always(kind.call("get_rec"), kind.record(5));
    }

    // Services.

    /** Paths of reads of a list through a handle of their own. */
    private void services(Scenarios.Paths paths, String by, int list, int unopened, Object... more) {
        String count = "x_svl_get_num_rec_" + by;
        String read = "x_svl_get_rec_" + by;
        Object[] arguments = join(list, more);
        paths.path("two records", () -> Script.always(count, 0, 2), arguments)
                .path("the list is not open", () -> Script.always(count, 0, 1), join(unopened, more))
                .path("list 0", () -> Script.always(count, 0, 1), join(0, more))
                .path("no record", arguments)
                .path("the count fails", () -> Script.always(count, FAILS, 2), arguments)
                .path("the second record cannot be read", () -> {
                    Script.always(count, 0, 2);
                    Script.answer(read, 0);
                    Script.always(read, FAILS, 0);
                }, arguments)
                .path("the list cannot be opened", () -> {
                    Script.always("x_svl_open", FAILS, 0);
                    Script.always(count, 0, 2);
                }, arguments)
                .path("the locks and the close fail", () -> {
                    Script.always(count, 0, 1);
                    for (String call : List.of("read_lock", "read_unlock", "close")) {
                        Script.always(kind.call(call), FAILS, 0);
                    }
                }, arguments)
                .without("there is no memory for the array", first("NewByteArray"), () -> Script.always(count, 0, 1),
                        arguments);
    }

    private void byTransportStream() {
        Scenarios.Paths paths = table.of(kind, "native_getInfoListByTransportStream", int.class, int.class);
        services(paths, "by_brdcst_type", 1, 2, TS_ID);
        filter(paths, ListClass.STREAMS, Records.with16(new byte[18], 16, TS_ID), 26, TS_ID);
    }

    private void byNetwork() {
        Scenarios.Paths paths = table.of(kind, "native_getInfoListByNetwork", int.class, int.class);
        services(paths, "by_brdcst_type", 1, 2, NETWORK_ID);
        filter(paths, ListClass.NETWORKS, Records.with16(new byte[12], 10, NETWORK_ID), 30, NETWORK_ID);
    }

    /** Paths of a filter, which reads the companion record that each service names at an offset. */
    private void filter(Scenarios.Paths paths, ListClass companion, byte[] matching, int at, int wanted) {
        Runnable three = () -> {
            Script.always("x_svl_get_num_rec_by_brdcst_type", 0, 3);
            byte[] service = Records.with16(new byte[ServiceRecord.SIZE], at, 1);
            for (int i = 0; i < 3; i++) {
                Script.answer("x_svl_get_rec_by_brdcst_type",
                        Records.with16(Records.with16(service, at + 2, 7 + i), 0, 1 + i));
            }
        };
        String read = companion.call("get_rec");
        paths.path("the first and the third of three services match", () -> {
            three.run();
            Script.answer(read, matching);
            Script.answer(read, new byte[18]);
            Script.answer(read, matching);
        }, 1, wanted);
        paths.path("no service matches", three, 1, wanted);
        paths.path("companion records cannot be read", () -> {
            three.run();
            Script.always(read, FAILS, 0);
        }, 1, wanted);
        paths.path("the companion list cannot be opened again", () -> {
            three.run();
            Script.always(companion.call("open"), FAILS, 0);
            Script.always(companion.call("create"), FAILS, 0);
            Script.always(read, matching);
        }, 1, wanted);
        paths.path("the services come from a file", () -> {
            VltTvChannelList.getInstance().native_open(1, "/data/list.bin");
            Script.reset();
            three.run();
            Script.always(read, matching);
        }, 1, wanted);
    }

    // Transport streams.

    private void streams(
            Scenarios.Paths paths, String count, String read, int list, int unopened, Object... more) {
        Object[] arguments = join(list, more);
        Runnable two = () -> Script.always(kind.call(count), 0, 2);
        paths.path("two records", two, arguments)
                .path("the list is not open", two, join(unopened, more))
                .path("list 0", two, join(0, more))
                .path("no record", arguments)
                .path("the count fails", () -> Script.always(kind.call(count), FAILS, 2), arguments)
                .path("the second record cannot be read", () -> {
                    two.run();
                    Script.answer(kind.call(read), 0);
                    Script.always(kind.call(read), FAILS, 0);
                }, arguments)
                .fails("the list cannot be opened", "open", join(unopened, more))
                .path("the locks fail", () -> {
                    two.run();
                    Script.always(kind.call("read_lock"), FAILS, 0);
                    Script.always(kind.call("read_unlock"), FAILS, 0);
                }, arguments)
                .without("there is no memory for the array", first("NewByteArray"), two, arguments);
    }

    // Networks and satellites.

    private List<String> someKeys() {
        return kind == ListClass.NETWORKS
                ? List.of("NetworkName", "NwlIdNwlRecId")
                : List.of("Name", "AntennaType", "DiseqcPosition");
    }

    private void object() {
        Scenarios.Paths paths = table.of(kind, "native_getInfo", String.class, List.class);
        identifiers(paths, someKeys());
        paths.path("all values", this::oneRecord, "1,5", null);
        keys(paths, this::oneRecord, "1,5");
        missing(paths, this::oneRecord, "1,5");
    }

    private void objects() {
        Scenarios.Paths paths = table.of(kind, "native_getInfoList", int.class, List.class);
        String count = kind.call(kind == ListClass.NETWORKS ? "get_num_rec" : "get_num_recs");
        String read = kind.call("get_rec_by_rec_idx");
        Runnable two = () -> {
            Script.always(count, 0, 2);
            Script.answer(read, kind.record(5));
            Script.answer(read, kind.record(6));
        };
        Runnable one = () -> {
            Script.always(count, 0, 1);
            Script.answer(read, kind.record(5));
        };
        paths.path("two records, all values", two, 1, null)
                .path("two records", two, 1, someKeys())
                .path("the list is not open", one, 2, someKeys())
                .path("list 0", one, 0, someKeys())
                .path("no record", 1, someKeys())
                .path("the count fails", () -> Script.always(count, FAILS, 2), 1, someKeys())
                .fails("the list cannot be opened", "open", 2, someKeys())
                .path("the second record cannot be read", () -> {
                    Script.always(count, 0, 2);
                    Script.answer(read, kind.record(5));
                    Script.answer(read, FAILS);
                }, 1, someKeys())
                .path("the locks fail", () -> {
                    one.run();
                    Script.always(kind.call("read_lock"), FAILS, 0);
                    Script.always(kind.call("read_unlock"), FAILS, 0);
                }, 1, someKeys());
        keys(paths, one, 1);
        missing(paths, one, 1);
        paths.without("the list class is missing", first("FindClass(\"java/util/ArrayList"), one, 1, null)
                .without("the list's constructor is missing", first("\"<init>\""), one, 1, null)
                .without("there is no memory for the list", first("NewObject("), one, 1, null)
                .without("the list's add method is missing", first("\"add\""), one, 1, null);
    }

    /** Paths that differ in the keys. */
    private void keys(Scenarios.Paths paths, Runnable setUp, Object from) {
        paths.path("all keys", setUp, from, FilledObjects.allKeys(kind.object()))
                .path("no keys", setUp, from, List.of())
                .path("an unknown key", setUp, from, List.of("name"))
                .path("a null key", setUp, from, Arrays.asList(someKeys().get(0), null))
                .without("there is no memory for a key", first("GetStringUTFChars(string"), setUp, from, someKeys());
        if (kind == ListClass.SATELLITES) {
            paths.path("all values of a satellite without LNB", () -> {
                Script.always(kind.call("get_rec"), new byte[kind.recordSize()]);
                Script.always(kind.call("get_rec_by_rec_idx"), new byte[kind.recordSize()]);
                Script.always(kind.call("get_num_recs"), 0, 1);
            }, from, null);
        }
    }

    /** Paths on which Java lacks a class or a method, or has no memory. */
    private void missing(Scenarios.Paths paths, Runnable setUp, Object from) {
        boolean networks = kind == ListClass.NETWORKS;
        String info = networks ? "VltTvNetworkInfo" : "VltTvSatelliteInfo";
        int before = from instanceof String ? 0 : 1; // the list's class comes first
        paths.without("the info class is missing", first(info + "\""), setUp, from, null)
                .without("the info class's constructor is missing", nth(1 + before, "\"<init>\""), setUp, from, null)
                .without("the base class is missing", first(info + "Base\""), setUp, from, null)
                .without("the base class's constructor is missing", nth(2 + before, "\"<init>\""), setUp, from, null)
                .without("there is no memory for the first object", nth(1 + before, "NewObject("), setUp, from, null)
                .without("there is no memory for the second object", nth(2 + before, "NewObject("), setUp, from, null)
                .without("the method that takes the values over is missing", first("lTo" + info.substring(5)), setUp,
                        from, null)
                .without("a setter is missing", first(networks ? "\"setNetworkName\"" : "\"setName\""), setUp, from,
                        null)
                .without("there is no memory for a value", first("NewStringUTF(\"Text\""), setUp, from, null)
                .without("the identifier's setter is missing", first("RecId\""), setUp, from, null)
                .without("there is no memory for the identifier's string", first("NewStringUTF(\"1,"), setUp, from,
                        null)
                .without("the keys' size method is missing", first("\"size\""), setUp, from, someKeys())
                .without("the keys' get method is missing", first("\"get\""), setUp, from, someKeys());
    }
}
