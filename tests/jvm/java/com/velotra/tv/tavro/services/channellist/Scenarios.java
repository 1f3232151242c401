package com.velotra.tv.tavro.services.channellist;

import java.util.ArrayList;
import java.util.Arrays;
import java.util.Collections;
import java.util.List;

/** Every native on each of its paths: success and every kind of failure. */
final class Scenarios {
    private static final int FAILS = -5; // a status that nothing distinguishes

    private final List<Scenario> all = new ArrayList<>();

    private Scenarios() {}

    /** The whole table. */
    static List<Scenario> all() {
        Scenarios table = new Scenarios();
        for (ListClass kind : ListClass.values()) {
            table.addForwarding(kind);
        }
        return Collections.unmodifiableList(table.all);
    }

    /** The state in which each scenario begins: nothing is scripted, only list 1 of each kind is open. */
    static void begin() {
        Script.reset();
        try {
            for (ListClass kind : ListClass.values()) {
                for (int id = 1; id <= 3; id++) {
                    kind.method("native_close", int.class).invoke(kind.list(), id);
                }
                kind.method("native_open", int.class).invoke(kind.list(), 1);
            }
            ListClass.SERVICES.method("nativeSetup").invoke(ListClass.SERVICES.list()); // knows no path
        } catch (ReflectiveOperationException e) {
            throw new IllegalStateException(e);
        }
        Script.reset();
        Script.logLevel("d");
    }

    private void add(ListClass kind, String name, Class<?>[] types, String path, Runnable setUp, Object... arguments) {
        all.add(new Scenario(kind, kind.method(name, types), path, setUp, Arrays.asList(arguments)));
    }

    private void addForwarding(ListClass kind) {
        add(kind, "nativeSetup", new Class<?>[0], "success", () -> {});
        for (String name : List.of("native_clean", "native_close", "native_delete")) {
            Class<?>[] types = {int.class};
            String call = kind.call(name.substring(7));
            add(kind, name, types, "success", () -> {}, 1);
            add(kind, name, types, "the list is not open", () -> {}, 2);
            add(kind, name, types, "the list cannot be opened", () -> Script.answer(kind.call("open"), FAILS), 2);
            add(kind, name, types, "the middleware fails", () -> Script.answer(call, FAILS), 1);
        }
    }
}
