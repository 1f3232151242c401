package com.velotra.tv.tavro.services.channellist;

import com.velotra.tv.tavro.services.channellist.VltTvTransportStreamInfoBase.AlternateFrequencyInfoBase;
import java.lang.reflect.InvocationTargetException;
import java.lang.reflect.Method;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.Arrays;
import java.util.Comparator;
import java.util.LinkedHashMap;
import java.util.Map;

/**
 * Makes lists of all kinds and carries them from one storage directory to another, for comparing what different builds
 * of the library write.
 *
 * <pre>
 * fill           records with values under every key, added and updated, in list 60 of each kind
 * store FOLDER   every list of every kind to a file of its own
 * load FOLDER    those files into lists of the same kinds and ids
 * </pre>
 */
final class ListTransfer {
    private static final int FILLED = 60;
    private static final int RECORDS = 48;
    private static final Map<String, TvList> KINDS = new LinkedHashMap<>();

    static {
        KINDS.put("services", VltTvChannelList.getInstance());
        KINDS.put("streams", VltTvTransportStreamList.getInstance());
        KINDS.put("networks", VltTvNetworkList.getInstance());
        KINDS.put("satellites", VltTvSatelliteList.getInstance());
    }

    private ListTransfer() {}

    public static void main(String[] arguments) throws Exception {
        switch (arguments[0]) {
            case "fill" -> fill();
            case "store" -> store(Path.of(arguments[1]));
            case "load" -> load(Path.of(arguments[1]));
            default -> throw new IllegalArgumentException("no such command: " + arguments[0]);
        }
    }

    private static void fill() throws ReflectiveOperationException {
        KINDS.values().forEach(lists -> lists.open(FILLED));
        for (int round = 0; round < RECORDS; round++) {
            RecordId service = VltTvChannelList.getInstance()
                    .add(FILLED, filled(new VltTvChannelInfoBase(), round, null));
            VltTvChannelList.getInstance().update(FILLED, filled(new VltTvChannelInfoBase(), round + 1, service));
            RecordId stream = VltTvTransportStreamList.getInstance()
                    .add(FILLED, filled(new VltTvTransportStreamInfoBase(), round, null));
            VltTvTransportStreamList.getInstance()
                    .update(FILLED, filled(new VltTvTransportStreamInfoBase(), round + 2, stream));
            RecordId network = VltTvNetworkList.getInstance()
                    .add(FILLED, filled(new VltTvNetworkInfoBase(), round, null));
            VltTvNetworkList.getInstance().update(FILLED, filled(new VltTvNetworkInfoBase(), round + 1, network));
            RecordId satellite = VltTvSatelliteList.getInstance()
                    .add(FILLED, filled(new VltTvSatelliteInfoBase(), round, null));
            VltTvSatelliteList.getInstance().update(filled(new VltTvSatelliteInfoBase(), round + 2, satellite));
        }
        System.out.printf("filled list %d of %d kinds with %d records each%n", FILLED, KINDS.size(), RECORDS);
    }

    /**
     * An object with a value of its own under every key, in an order of its own; its identifier is that of a record to
     * update.
     */
    private static <T> T filled(T info, int round, RecordId update) throws ReflectiveOperationException {
        Method[] setters = Arrays.stream(info.getClass().getDeclaredMethods())
                .filter(method -> method.getName().startsWith("set"))
                .sorted(Comparator.comparing(Method::getName))
                .toArray(Method[]::new);
        for (int i = 0; i < setters.length; i++) {
            Object value = isIdentifier(setters[i]) ? update : value(setters[i].getParameterTypes()[0], round, i);
            if (value != null) {
                boolean text = setters[i].getParameterTypes()[0] == String.class;
                invoke(setters[i], info, text ? value.toString() : value);
            }
        }
        return info;
    }

    private static boolean isIdentifier(Method setter) {
        return setter.getName().matches("set(SvlIdSvlRecId|TslIdTslRecId|NwlIdNwlRecId|RecId)");
    }

    /** The codes of every table and beyond in the first rounds, then numbers of 32 bits and either sign. */
    private static Object value(Class<?> type, int round, int key) {
        int number = round < 32 ? (round + key) % 32 : (round * 0x9E3779B1) ^ (key * 0x85EBCA6B);
        if (type == int.class) {
            return number;
        } else if (type == boolean.class) {
            return (round >> key % 5 & 1) != 0;
        } else if (type == String.class) {
            return "Zwölf 漢 𝄞 ".repeat(4).substring(0, (round + key) % 12 * 2);
        } else if (type == RecordId.class) {
            return new RecordId(number & 0xFFFF, number >>> 16);
        } else if (type == int[].class) {
            return new int[] {number, round, -1};
        } else if (type == AlternateFrequencyInfoBase[].class) {
            return new AlternateFrequencyInfoBase[] {new AlternateFrequencyInfoBase(number, 6000 + round % 4 * 1000)};
        }
        throw new IllegalArgumentException("no value for " + type);
    }

    private static void invoke(Method setter, Object info, Object value) throws ReflectiveOperationException {
        try {
            setter.invoke(info, value);
        } catch (InvocationTargetException e) {
            throw new IllegalStateException("cannot " + setter.getName() + " " + value, e);
        }
    }

    private static void store(Path folder) {
        for (Map.Entry<String, TvList> kind : KINDS.entrySet()) {
            for (int id = 1; id <= FILLED; id++) {
                if (kind.getValue().exists(id)) {
                    kind.getValue().store(id, folder.resolve(kind.getKey() + "-" + id).toString());
                }
            }
        }
    }

    private static void load(Path folder) {
        for (Map.Entry<String, TvList> kind : KINDS.entrySet()) {
            for (int id = 1; id <= FILLED; id++) {
                Path file = folder.resolve(kind.getKey() + "-" + id);
                if (Files.exists(file)) {
                    kind.getValue().open(id, file.toString());
                }
            }
        }
    }
}
