package com.velotra.tv.tavro.services.channellist;

import java.util.ArrayList;
import java.util.Arrays;
import java.util.List;
import java.util.stream.Collectors;

/**
 * Every native on each of its paths: success, and every failure that the contract describes.
 *
 * <p>List 1 of each kind is open, lists 2 and 3 are not. The middleware succeeds with everything that is not scripted.
 * Paths on which a native ends the process are not here.
 */
final class Scenarios {
    /** A status that no native distinguishes from others. */
    static final int FAILS = -5;

    /** A set-up that scripts nothing. */
    static final Runnable NOTHING = () -> { };

    private final List<Scenario> all = new ArrayList<>();

    private Scenarios() {}

    /** The whole table, native by native. */
    static List<Scenario> all() {
        Scenarios table = new Scenarios();
        for (ListClass kind : ListClass.values()) {
            new ListScenarios(table, kind).add();
            new ReadScenarios(table, kind).add();
            new WriteScenarios(table, kind).add();
        }
        return List.copyOf(table.all);
    }

    /** Where the paths of one native are added. */
    Paths of(ListClass kind, String name, Class<?>... parameters) {
        return new Paths(kind, name, parameters);
    }

    /** The paths of one native. */
    final class Paths {
        private final ListClass kind;
        private final String name;
        private final Class<?>[] parameters;

        private Paths(ListClass kind, String name, Class<?>[] parameters) {
            this.kind = kind;
            this.name = name;
            this.parameters = parameters;
        }

        /** A path on which nothing is scripted. */
        Paths path(String path, Object... arguments) {
            return path(path, NOTHING, arguments);
        }

        /** A path over a scripted platform. */
        Paths path(String path, Runnable setUp, Object... arguments) {
            return add(path, setUp, JniCalls.Failing.NONE, arguments);
        }

        /** A path on which every middleware call of that name fails. */
        Paths fails(String path, String call, Object... arguments) {
            return path(path, () -> Script.always(kind.call(call), FAILS, 0), arguments);
        }

        /** A path on which a JNI call fails. */
        Paths without(String path, JniCalls.Failing failing, Runnable setUp, Object... arguments) {
            return add(path, setUp, failing, arguments);
        }

        Paths without(String path, JniCalls.Failing failing, Object... arguments) {
            return without(path, failing, NOTHING, arguments);
        }

        private Paths add(String path, Runnable setUp, JniCalls.Failing failing, Object... arguments) {
            // One class of lists, so that the recording does not depend on the virtual machine's other ones.
            List<Object> copies = Arrays.stream(arguments)
                    .map(argument -> argument instanceof List<?> list ? new ArrayList<>(list) : argument)
                    .collect(Collectors.toCollection(ArrayList::new));
            all.add(new Scenario(kind, kind.method(name, parameters), path, setUp, failing, copies));
            return this;
        }
    }
}
