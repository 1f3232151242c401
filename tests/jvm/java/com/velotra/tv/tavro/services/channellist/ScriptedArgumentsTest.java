package com.velotra.tv.tavro.services.channellist;

import static org.junit.jupiter.api.Assertions.assertEquals;

import java.io.ByteArrayOutputStream;
import java.io.DataOutputStream;
import java.io.IOException;
import java.lang.reflect.Method;
import java.util.ArrayList;
import java.util.Arrays;
import java.util.HexFormat;
import java.util.List;
import java.util.Set;
import java.util.TreeSet;
import java.util.concurrent.Callable;
import java.util.concurrent.FutureTask;
import org.junit.jupiter.api.AfterEach;
import org.junit.jupiter.api.BeforeEach;
import org.junit.jupiter.api.Test;

/** Whatever arguments the natives get, they return and keep the platform's rules. */
class ScriptedArgumentsTest {
    private static final int NATIVES = 72;

    /** Keys whose texts are stored only if they fit. */
    private static final Set<String> ONLY_WHOLE = Set.of("AcTsName", "NetworkName");

    private final List<TvList> kinds = List.of(
            VltTvChannelList.getInstance(), VltTvTransportStreamList.getInstance(), VltTvNetworkList.getInstance(),
            VltTvSatelliteList.getInstance());

    @BeforeEach
    void withoutAScript() {
        Script.reset();
    }

    /** Other classes that run in the same virtual machine expect no open list. */
    @AfterEach
    void closeTheListsOfTheArguments() {
        Script.reset();
        for (ListClass each : ListClass.values()) {
            each.closeLists(1, 9);
            each.closeLists(65_534, 65_535);
        }
        Script.reset();
    }

    /** Makes a call and describes its fault. Returns an empty text if there is none. */
    private static String fault(EdgeArguments.Call call) {
        Script.reset();
        Object result = call.make();
        Class<?> type = call.method().getReturnType();
        if (type == String.class && result == null) {
            return "returned null";
        }
        List<String> lines = Arrays.stream(Script.lines()).filter(line -> line.startsWith("x_")).toList();
        long locks = lines.stream().filter(line -> line.contains("_lock(")).count();
        long unlocks = lines.stream().filter(line -> line.contains("_unlock(")).count();
        boolean staysLocked = call.hasRefusedElement()
                && (call.list() instanceof VltTvChannelList || call.list() instanceof VltTvNetworkList);
        return locks == unlocks + (staysLocked ? 1 : 0) ? "" : locks + " locks, " + unlocks + " unlocks";
    }

    /** Calls on a thread with a short stack, because -Xcheck:jni prints the stack with each of its warnings. */
    private static <T> T onAThread(Callable<T> calls) throws Exception {
        FutureTask<T> task = new FutureTask<>(calls);
        new Thread(task).start();
        return task.get();
    }

    @Test
    void everyNativeReturnsAndReleasesItsLocks() throws Exception {
        Set<String> called = new TreeSet<>();
        assertEquals(List.of(), onAThread(() -> faultsOfAllNatives(called)));
        assertEquals(NATIVES, called.size());
    }

    private List<String> faultsOfAllNatives(Set<String> called) {
        List<String> faults = new ArrayList<>();
        for (TvList list : kinds) {
            for (Method method : BadInputCalls.natives(list)) {
                for (EdgeArguments.Call call : EdgeArguments.of(list, method, "/data")) {
                    String fault = fault(call);
                    if (!fault.isEmpty()) {
                        faults.add("\n" + call + ": " + fault);
                    }
                    called.add(method.toString());
                }
            }
        }
        return faults;
    }

    /** Text as Java hands it out: a NUL has two bytes, a character beyond 16 bits two times three. */
    private static byte[] modifiedUtf8(String text) {
        ByteArrayOutputStream bytes = new ByteArrayOutputStream();
        try {
            new DataOutputStream(bytes).writeUTF(text);
        } catch (IOException e) {
            throw new IllegalStateException(e);
        }
        return Arrays.copyOfRange(bytes.toByteArray(), 2, bytes.size());
    }

    /** The bytes of a text's field; some fields have two parts. */
    private static int width(RecordKeys.Key key) {
        return key.targets().stream().mapToInt(RecordKeys.Target::width).sum();
    }

    /** The bytes that a text leaves in a field of a new record. */
    private static byte[] stored(RecordKeys.Key key, String text) {
        byte[] field = new byte[width(key)];
        byte[] bytes = modifiedUtf8(text);
        if (bytes.length < field.length || !ONLY_WHOLE.contains(key.name())) {
            System.arraycopy(bytes, 0, field, 0, Math.min(bytes.length, field.length - 1));
        }
        return field;
    }

    @Test
    void textsAreCutAfterTheLastByteThatFits() throws Exception {
        assertEquals(
                Set.of("AcTsName", "DadInfo", "Name", "NetworkName", "ServiceName", "ServiceProfileName",
                        "ServiceShortName"), onAThread(this::checkTexts));
    }

    private Set<String> checkTexts() {
        RecordKeys table = new RecordKeys();
        Set<String> tested = new TreeSet<>();
        for (TvList list : kinds) {
            Class<? extends KeyedValues> type = BadInputCalls.OBJECTS.get(list.getClass());
            Method add = BadInputCalls.natives(list).stream()
                    .filter(method -> method.toString().endsWith("nativeAdd(int," + type.getName() + ")"))
                    .findFirst().orElseThrow();
            for (RecordKeys.Key key : table.of(BadInputCalls.kind(list))) {
                if (key.kind().equals("text")) {
                    tested.add(key.name());
                    checkText(list, add, BadInputCalls.newObject(type), key);
                }
            }
        }
        return tested;
    }

    private static void checkText(TvList list, Method add, KeyedValues object, RecordKeys.Key key) {
        RecordKeys.Target place = key.targets().get(0);
        if (!place.views().isEmpty()) {
            boolean isService = object instanceof VltTvChannelInfoBase;
            BadInputCalls.put(object, isService ? "broadcastType" : "broadcastMedium", place.views().get(0));
        }
        for (String character : List.of("\0", "é", "\u20AC", "\uD83D\uDE00", "\uD83D", "\uDE00\uD83D")) {
            for (int before = width(key) - 8; before <= width(key) + 1; before++) {
                for (int count = 0; count <= 2; count++) {
                    String text = "x".repeat(before) + character.repeat(count);
                    Script.reset();
                    BadInputCalls.put(object, key.field(), text);
                    BadInputCalls.invoke(list, add, 1, object);
                    byte[] field = Arrays.copyOfRange(
                            Script.lastRecord(), place.offset(), place.offset() + width(key));
                    assertEquals(hex(stored(key, text)), hex(field), key.name() + ": " + before + " x and " + hex(
                            modifiedUtf8(character.repeat(count))));
                }
            }
        }
    }

    private static String hex(byte[] bytes) {
        return HexFormat.of().formatHex(bytes);
    }
}
