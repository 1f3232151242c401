package com.velotra.tv.tavro.services.channellist;

import static org.junit.jupiter.api.Assertions.assertTrue;

import java.io.IOException;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.ArrayList;
import java.util.LinkedHashMap;
import java.util.List;
import java.util.Map;
import java.util.concurrent.Callable;
import java.util.function.Supplier;
import java.util.regex.Matcher;
import java.util.regex.Pattern;

/** Problems with natives, over the scripted platform. */
final class TroubleshootingCalls {
    private static final VltTvChannelList LISTS = VltTvChannelList.getInstance();
    private static final VltTvTransportStreamList STREAMS = VltTvTransportStreamList.getInstance();
    private static final Pattern LOG = Pattern.compile("(?s)log (\\d) (.*?): (.*?)\\s*");
    private static final int NO_FREE_ID = 65535;
    private static final int MANY = 65535;
    private static final int LEFT = 16 << 20; // bytes; a full list takes 35 MiB

    private final Map<String, Callable<Observation>> problems = new LinkedHashMap<>();

    private TroubleshootingCalls() {}

    /** The problems by the headings of their entries. */
    static Map<String, Callable<Observation>> all() {
        TroubleshootingCalls calls = new TroubleshootingCalls();
        calls.addLog();
        calls.addResults();
        calls.addRecords();
        calls.addArguments();
        return calls.problems;
    }

    private void addLog() {
        add("There are no log lines", "", () -> LISTS.native_clean(1), "native_clean");
        add("A call fails without a line", "e", () -> {
            Script.always("x_svl_get_rec", -104, 0);
            return LISTS.native_getSvlInfo("1,17");
        }, "native_getSvlInfo");
        add("Lines have no tag", "d", () -> LISTS.native_updateInfo(1, named(new RecordId(1, 5))), "native_updateInfo");
        add("The log says Invalid String", "e", () -> LISTS.native_getSvlInfo(null), "native_getSvlInfo");
        add("The log says sa_svl_buffer malloc fail", "d", () -> {
            Script.always("x_svl_get_num_rec_by_brdcst_type", 0, MANY);
            return withoutMemory(() -> LISTS.native_getSvlInfoList(1));
        }, "native_getSvlInfoList");
    }

    private void addResults() {
        add("A native returns -22", "d", () -> {
            Script.answer("x_svl_clean", -106);
            return LISTS.native_clean(1);
        }, "native_clean");
        add("An add returns an empty text", "d", () -> {
            Script.answer("x_svl_add_rec", -113);
            return LISTS.nativeAdd(1, new VltTvChannelInfoBase());
        }, "nativeAdd");
        add("A list accepts no more records", "d", () -> {
            Script.answer("x_svl_qry_rec_id", 0, NO_FREE_ID);
            return LISTS.nativeAdd(1, new VltTvChannelInfoBase());
        }, "nativeAdd");
        add("A read of a list returns null", "d", () -> {
            Script.always("x_svl_get_num_rec_by_brdcst_type", 0, 2);
            Script.answer("x_svl_get_rec_by_brdcst_type", -104);
            return LISTS.native_getSvlInfoList(1);
        }, "native_getSvlInfoList");
        add("A load returns 0 and the list is empty", "e", () -> {
            LISTS.native_close(1);
            Script.answer("x_svl_fs_sync", -8);
            return LISTS.native_open(1, "/data/services");
        }, "native_open");
        add("Changes are gone after a restart", "e", () -> LISTS.native_close(1), "native_close");
        add("A list stays locked", "e", () -> LISTS.native_updateInfoList(1, List.of(new Unnamed())),
                "native_updateInfoList");
        add("A change of another process is lost", "e", () -> {
            Script.answer("x_svl_lock", -107);
            return LISTS.native_updateInfo(1, named(new RecordId(1, 5)));
        }, "native_updateInfo");
    }

    private void addRecords() {
        add("Values are in the wrong fields", "e", () -> {
            byte[] shifted = new byte[ServiceRecord.SIZE];
            LISTS.nativeAdd(1, named(null));
            byte[] record = Script.lastRecord();
            System.arraycopy(record, 0, shifted, 4, record.length - 4); // the middleware's header is longer
            Script.always("x_svl_get_rec", shifted);
            return new ServiceRecord(LISTS.native_getSvlInfo("1,1"));
        }, "the service News");
        add("A value is not stored", "e", () -> {
            VltTvChannelInfoBase info = new VltTvChannelInfoBase();
            info.serviceName = "News"; // without its key
            LISTS.nativeAdd(1, info);
            return new ServiceRecord(Script.lastRecord());
        }, "an add without the key");
        add("A name is cut off", "e", () -> {
            LISTS.nativeAdd(1, new VltTvChannelInfoBase().setServiceName("N".repeat(100)));
            return new ServiceRecord(Script.lastRecord()).name().length();
        }, "the length of a name of 100 letters");
        add("An update changes record 0", "e", () -> LISTS.native_updateInfo(1, named(null)), "native_updateInfo");
        add("A filter closes lists", "e", () -> {
            STREAMS.native_open(2);
            LISTS.native_open(1);
            Script.always("x_svl_get_num_rec_by_brdcst_type", 0, 1);
            return LISTS.native_getInfoListByTransportStream(1, 1089).length;
        }, "native_getInfoListByTransportStream");
    }

    private void addArguments() {
        add("List 65537 is list 1", "e", () -> LISTS.native_clean(0x10001), "native_clean");
        add("List 0 does not exist", "d", () -> LISTS.native_clean(0), "native_clean");
        addEnding("A bad identifier ends the process", "nativeRemove", () -> () -> LISTS.nativeRemove("3,"));
        addEnding("A native before nativeSetup ends the process", "native_open", () -> {
            ClassLoader fresh = new ChangedClasses(Map.of(), copyOfTheLibrary());
            TroubleshootingLoads.load(fresh);
            return () -> TroubleshootingLoads.call(fresh, "VltTvChannelList", "native_open", 1, "/data/services");
        });
    }

    private static VltTvChannelInfoBase named(RecordId id) {
        VltTvChannelInfoBase info = id == null ? new VltTvChannelInfoBase() : VltTvChannelInfoBase.forRecord(id);
        return info.setServiceName("News");
    }

    /** Makes a call while list 1 is open, with log lines from a level on. */
    private void add(String heading, String level, Callable<Object> call, String name) {
        problems.put(heading, () -> {
            Script.reset();
            LISTS.native_close(1);
            STREAMS.native_close(2);
            LISTS.nativeSetup(); // a manager that knows no path
            LISTS.native_open(1);
            Script.reset();
            Script.logLevel(level);
            Object result = call.call();
            String[] journal = Script.lines();
            Script.reset();
            return observation(name + " returns " + text(result), journal);
        });
    }

    /** Makes a call that ends the process, in a copy of it. */
    private void addEnding(String heading, String name, Callable<Callable<Object>> prepared) {
        problems.put(heading, () -> {
            Callable<Object> call = prepared.call();
            String outcome = Copies.outcomes(1, i -> {
                try {
                    return text(call.call());
                } catch (Exception e) {
                    return e.toString();
                }
            }).get(0);
            assertTrue(outcome.startsWith("ends: "), outcome);
            return new Observation(name + " " + outcome, List.of());
        });
    }

    private static Observation observation(String symptom, String[] journal) {
        StringBuilder calls = new StringBuilder(symptom);
        List<String> log = new ArrayList<>();
        for (String line : journal) {
            Matcher parts = LOG.matcher(line);
            if (parts.matches()) {
                log.add((parts.group(1).equals("6") ? "E " : "D ")
                        + (parts.group(2).equals("-") ? "" : parts.group(2)) + ": " + parts.group(3));
            } else {
                calls.append("; ").append(line);
            }
        }
        return new Observation(calls.toString(), log);
    }

    private static String text(Object result) {
        return result instanceof byte[] bytes ? bytes.length + " bytes"
                : result instanceof String ? '"' + result.toString() + '"' : String.valueOf(result);
    }

    /** Makes a call while this process cannot get memory for a full service list. */
    private static Object withoutMemory(Supplier<Object> call) throws IOException, InterruptedException {
        String used = Files.readString(Path.of("/proc/self/status")).replaceAll("(?s).*VmData:\\s*(\\d+) kB.*", "$1");
        limitMemory(String.valueOf((Long.parseLong(used) << 10) + LEFT));
        try {
            return call.get();
        } finally {
            limitMemory("unlimited");
        }
    }

    private static void limitMemory(String bytes) throws IOException, InterruptedException {
        int exit = new ProcessBuilder("prlimit", "--pid", String.valueOf(ProcessHandle.current().pid()),
                "--data=" + bytes + ":").inheritIO().start().waitFor();
        if (exit != 0) {
            throw new IllegalStateException("prlimit returned exit code " + exit);
        }
    }

    private static Path copyOfTheLibrary() throws IOException {
        Path copy = Files.createTempDirectory("tavro").resolve("library.so");
        copy.toFile().deleteOnExit();
        return Files.copy(Path.of(TroubleshootingChild.libraries(), "libvelotra_tavro_channellist.so"), copy);
    }

    /** Has an identifier that cannot be parsed. */
    static final class Unnamed extends VltTvChannelInfoBase {
        Unnamed() {
            setServiceName("Unnamed");
            svlIdSvlRecId = "1";
            mark("SvlIdSvlRecId");
        }
    }
}
