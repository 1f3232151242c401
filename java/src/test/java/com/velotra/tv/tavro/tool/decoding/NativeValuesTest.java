package com.velotra.tv.tavro.tool.decoding;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertTrue;

import com.velotra.tv.tavro.services.channellist.KeyedValues;
import com.velotra.tv.tavro.services.channellist.VltTvNetworkInfoBase;
import com.velotra.tv.tavro.services.channellist.VltTvNetworkList;
import com.velotra.tv.tavro.services.channellist.VltTvSatelliteInfoBase;
import com.velotra.tv.tavro.services.channellist.VltTvSatelliteList;
import com.velotra.tv.tavro.tool.records.Field;
import com.velotra.tv.tavro.tool.records.Kind;
import com.velotra.tv.tavro.tool.records.Layout;
import com.velotra.tv.tavro.tool.records.Record;
import com.velotra.tv.tavro.tool.records.RecordList;
import com.velotra.tv.tavro.tool.storage.StoredLists;
import java.util.List;
import java.util.Random;
import org.junit.jupiter.api.Test;

/** The fields of networks and satellites, against what the natives return for the same records. */
class NativeValuesTest {
    private static final int LIST = 60;
    private static final int RECORDS = 50;

    private final Random random = new Random(5);
    private int compared;

    private static Object call(Object object, String method, Object... arguments) {
        try {
            for (java.lang.reflect.Method one : object.getClass().getMethods()) {
                if (one.getName().equals(method)) {
                    return one.invoke(object, arguments);
                }
            }
        } catch (ReflectiveOperationException e) {
            throw new AssertionError(method, e);
        }
        throw new AssertionError("no method " + method);
    }

    /** Sets every key of a kind to a random value, flags and rules included. */
    private <T extends KeyedValues> T random(Kind kind, T info) {
        for (Field field : Layout.of(kind).fields()) {
            for (Field.Key key : field.keys()) {
                switch (key.rule()) {
                    case NUMBER -> call(info, "set" + key, random.nextInt());
                    case TEXT -> call(info, "set" + key, "name " + random.nextInt());
                    case RULE -> call(info, "set" + key, random.nextInt(8));
                    default -> { }
                }
            }
            field.flags().forEach(flag -> call(info, "set" + flag.key(), random.nextInt(2)));
        }
        return info;
    }

    private void compare(Kind kind, List<? extends KeyedValues> infos) {
        RecordList records = StoredLists.read(kind, LIST);
        assertEquals(RECORDS, infos.size());
        for (KeyedValues info : infos) {
            Record record = records.byId(info.id().recordId()).orElseThrow();
            for (Field field : Layout.of(kind).fields()) {
                for (Field.Key key : field.keys()) {
                    if (key.rule() == Field.Rule.NUMBER) {
                        assertEquals(call(info, "get" + key), (int) field.number(record), key::name);
                        compared++;
                    } else if (key.rule() == Field.Rule.TEXT && field.width() > 1) {
                        assertEquals(call(info, "get" + key), field.format(record), key::name);
                        compared++;
                    }
                }
                for (Field.Flag flag : field.flags()) {
                    int bit = (field.number(record) & flag.mask()) != 0 ? 1 : 0;
                    assertEquals(call(info, "get" + flag.key()), bit, flag::key);
                    compared++;
                }
            }
        }
    }

    @Test
    void networksHaveTheValuesThatTheNativesReturn() {
        VltTvNetworkList networks = VltTvNetworkList.getInstance();
        networks.open(LIST);
        for (int i = 0; i < RECORDS; i++) {
            networks.add(LIST, random(Kind.NETWORKS, new VltTvNetworkInfoBase()));
        }
        compare(Kind.NETWORKS, networks.getAll(LIST));
        assertEquals(5 * RECORDS, compared);
    }

    @Test
    void satellitesHaveTheValuesThatTheNativesReturn() {
        VltTvSatelliteList satellites = VltTvSatelliteList.getInstance();
        satellites.open(LIST);
        for (int i = 0; i < RECORDS; i++) {
            satellites.add(LIST, random(Kind.SATELLITES, new VltTvSatelliteInfoBase()));
        }
        compare(Kind.SATELLITES, satellites.getAll(LIST));
        assertTrue(compared > 20 * RECORDS, "compared: " + compared);
    }
}
