package com.velotra.tv.tavro.services.channellist;

import java.lang.reflect.Method;
import java.util.Arrays;
import java.util.List;

/** What natives do: each native of a kind does one of these, and most of these are done for each kind. */
enum NativeOperation {
    SET_UP("Set up", "nativeSetup\\(\\)"),
    OPEN("Open a list", "nativeOpen\\(int\\)"),
    LOAD("Open a list and load it from a file", "nativeOpen\\(int, String\\)"),
    CLOSE("Close a list", "nativeClose\\(int\\)"),
    DELETE("Delete a list", "nativeDelete\\(int\\)"),
    CLEAN("Remove all records", "nativeClean\\(int\\)"),
    STORE("Store a list to a file", "nativeStore\\(int, String\\)"),
    COPY("Copy a list", "nativeCopy\\(int, int\\)"),
    READ("Read a record", "nativeGet(Svl)?Info\\(String.*"),
    READ_ALL("Read all records of a list", "nativeGet(Svl)?InfoList\\(.*"),
    BY_ID("Read the services of a transport stream id or network id",
            "nativeGetInfoListBy(TransportStream|Network)\\(.*"),
    BY_STREAM_RECORD("Read the services of a transport stream record",
            "nativeGetInfoListByTransportStreamRecord\\(.*"),
    BY_SATELLITE("Read the transport streams of a satellite", "nativeGetInfoListBySatellite\\(.*"),
    UPDATE("Update a record", "nativeUpdateInfo\\(.*Base\\)"),
    UPDATE_LIST("Update many records", "nativeUpdateInfoList\\(.*"),
    REPLACE("Write a record over another", "nativeUpdateInfo\\(int, String\\)"),
    ADD("Add a record", "nativeAdd\\(int, V.*"),
    ADD_COPY("Add a copy of a record", "nativeAdd\\(int, String\\)"),
    REMOVE("Remove a record", "nativeRemove\\(.*"),
    REMOVE_BY_ID("Remove a record by record id", "nativeRemoveByRecId\\(.*");

    /** Paths that are preferred to the first one as example of success. */
    private static final List<String> SUCCESSES =
            List.of("the list exists", "the first and the third of three services match");

    private final String title;
    private final String natives;

    NativeOperation(String title, String natives) {
        this.title = title;
        this.natives = natives;
    }

    String title() {
        return title;
    }

    /** The operation of a native. */
    static NativeOperation of(Method method) {
        String name = Scenario.nativeName(method).replaceFirst(".*\\.native_?", "");
        String spelled = "native" + Character.toUpperCase(name.charAt(0)) + name.substring(1);
        List<NativeOperation> found =
                Arrays.stream(values()).filter(operation -> spelled.matches(operation.natives)).toList();
        if (found.size() != 1) {
            throw new AssertionError(method + " has not one operation: " + found);
        }
        return found.get(0);
    }

    /** The path of a native that the others are compared with. */
    NativeSequence success(List<NativeSequence> paths) {
        return paths.stream().filter(path -> SUCCESSES.contains(path.scenario().path())).findFirst()
                .orElse(paths.get(0));
    }
}
