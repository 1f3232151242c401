package com.velotra.tv.tavro.services.channellist;

import java.lang.reflect.Method;
import java.lang.reflect.Modifier;
import java.util.Arrays;
import java.util.Comparator;
import java.util.List;
import java.util.function.Supplier;

/** The four list classes, with what differs between their natives. */
enum ListClass {
    SERVICES(VltTvChannelList.getInstance(), "svl", 1, VltTvChannelInfoBase::new),
    STREAMS(VltTvTransportStreamList.getInstance(), "tsl", 2, VltTvTransportStreamInfoBase::new),
    NETWORKS(VltTvNetworkList.getInstance(), "nwl", 3, VltTvNetworkInfoBase::new),
    SATELLITES(VltTvSatelliteList.getInstance(), "satl", 4, VltTvSatelliteInfoBase::new);

    private final TvList list;
    private final String prefix;
    private final int number;
    private final Supplier<KeyedValues> objects;

    ListClass(TvList list, String prefix, int number, Supplier<KeyedValues> objects) {
        this.list = list;
        this.prefix = prefix;
        this.number = number;
        this.objects = objects;
    }

    TvList list() {
        return list;
    }

    /** The name of a middleware call, such as {@code x_svl_open}. */
    String call(String operation) {
        return "x_" + prefix + "_" + operation;
    }

    /** The handle of an open list. */
    int handle(int listId) {
        return number << 16 | listId;
    }

    /** A record object without values. */
    KeyedValues object() {
        return objects.get();
    }

    /** The class's native of that name and these parameters. Satellites spell names without underscore. */
    Method method(String name, Class<?>... parameters) {
        try {
            Method method = list.getClass().getDeclaredMethod(spelled(name), parameters);
            method.setAccessible(true);
            return method;
        } catch (NoSuchMethodException e) {
            throw new AssertionError(e);
        }
    }

    private String spelled(String name) {
        return this == SATELLITES && name.startsWith("native_")
                ? "native" + Character.toUpperCase(name.charAt(7)) + name.substring(8)
                : name;
    }

    /** All natives of the class, in the order of their names and parameters. */
    List<Method> natives() {
        return Arrays.stream(list.getClass().getDeclaredMethods())
                .filter(method -> Modifier.isNative(method.getModifiers()))
                .sorted(Comparator.comparing(Scenario::nativeName))
                .toList();
    }
}
