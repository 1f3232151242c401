package com.velotra.tv.tavro.services.channellist;

import java.lang.reflect.Field;
import java.lang.reflect.Method;
import java.lang.reflect.Modifier;
import java.util.Arrays;
import java.util.Comparator;
import java.util.List;
import java.util.function.Supplier;

/** The four list classes, with what differs between their natives. */
enum ListClass {
    SERVICES(VltTvChannelList.getInstance(), "svl", VltTvChannelInfoBase::new, "svlIdSvlRecId", 552, 0, 40),
    STREAMS(VltTvTransportStreamList.getInstance(), "tsl", VltTvTransportStreamInfoBase::new, "tslIdTslRecId", 724, 0,
            544),
    NETWORKS(VltTvNetworkList.getInstance(), "nwl", VltTvNetworkInfoBase::new, "NwlIdNwlRecId", 304, 4, 13),
    SATELLITES(VltTvSatelliteList.getInstance(), "satl", VltTvSatelliteInfoBase::new, "RecId", 412, 0, 282);

    private final TvList list;
    private final String prefix;
    private final Supplier<KeyedValues> objects;
    private final String identifierField;
    private final int recordSize;
    private final int recordIdAt;
    private final int nameAt;

    ListClass(TvList list, String prefix, Supplier<KeyedValues> objects, String identifierField, int recordSize,
            int recordIdAt, int nameAt) {
        this.list = list;
        this.prefix = prefix;
        this.objects = objects;
        this.identifierField = identifierField;
        this.recordSize = recordSize;
        this.recordIdAt = recordIdAt;
        this.nameAt = nameAt;
    }

    TvList list() {
        return list;
    }

    /** The name of a middleware call, such as {@code x_svl_open}. */
    String call(String operation) {
        return "x_" + prefix + "_" + operation;
    }

    int recordSize() {
        return recordSize;
    }

    /** The bytes of a record with that id and the name "Text". No two neighboring bytes of the others are alike. */
    byte[] record(int recordId) {
        byte[] record = Records.with16(Records.patterned(recordSize), recordIdAt, recordId);
        return Records.withText(record, nameAt, "Text");
    }

    /** A record object without values. */
    KeyedValues object() {
        return objects.get();
    }

    /** A record object that has only an identifier, which may be any text or null. */
    KeyedValues named(String identifier) {
        return name(object(), identifier);
    }

    /** Gives a record object an identifier, which may be any text or null. */
    KeyedValues name(KeyedValues object, String identifier) {
        try {
            Field field = object.getClass().getDeclaredField(identifierField);
            field.setAccessible(true);
            field.set(object, identifier);
        } catch (ReflectiveOperationException e) {
            throw new IllegalStateException(e);
        }
        object.mark(identifierKey());
        return object;
    }

    /** The key of a record object's identifier. */
    String identifierKey() {
        return Character.toUpperCase(identifierField.charAt(0)) + identifierField.substring(1);
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

    /** Closes lists 1 to 3 and opens list 1. */
    void leaveOneListOpen() {
        closeLists(1, 3);
        invoke("native_open", 1);
    }

    /** Closes the lists with ids from {@code first} to {@code last}; those that are not open stay as they are. */
    void closeLists(int first, int last) {
        for (int id = first; id <= last; id++) {
            invoke("native_close", id);
        }
    }

    private void invoke(String name, int id) {
        try {
            method(name, int.class).invoke(list, id);
        } catch (ReflectiveOperationException e) {
            throw new IllegalStateException(e);
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
