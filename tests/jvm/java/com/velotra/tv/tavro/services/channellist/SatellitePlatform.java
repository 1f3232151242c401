package com.velotra.tv.tavro.services.channellist;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertSame;

import java.util.ArrayList;
import java.util.Arrays;
import java.util.List;
import org.junit.jupiter.api.BeforeEach;

/** What tests of the natives of VltTvSatelliteList share. */
abstract class SatellitePlatform extends ScriptedPlatform {
    static final int SIZE = 412;
    static final String LOG = "log 3 -: ";
    static final String PREFIX = LOG + "[jni_VltTvList_Init] ";
    static final String BRIDGE = "com_velotra_tv_tavro_satellitelist_";

    /** The keys in the order in which an update asks for them, and an add with the polarization in its place. */
    static final List<String> MAIN_KEYS = List.of(
            "MaskStatusOn", "MaskLnbUniver", "MaskLnbSingcab", "MaskLnbSingcabJess", "LnbSignalDetected",
            "OrbitPosition", "Name",
            "AntennaType");
    static final List<String> DISEQC_KEYS = List.of(
            "LnbPower", "ToneBurst", "DiseqcType", "Tone22k", "SingleCableUserBandMain", "UnicablePosition",
            "DiseqcPosition",
            "SingleCableBandFreqMain", "MduType", "DiseqcTypeEx", "DiseqcPositionEx");
    static final List<String> SUB_KEYS = List.of(
            "SingleCableUserBandSub", "SingleCableBandFreqSub", "LnbType", "LnbLowFreq", "LnbHighFreq",
            "LnbSwitchFreq");
    static final List<String> UPDATE_KEYS = joined(MAIN_KEYS, DISEQC_KEYS, SUB_KEYS);
    static final List<String> ADD_KEYS = joined(MAIN_KEYS, DISEQC_KEYS, List.of("DiseqcPolar"), SUB_KEYS);

    final VltTvSatelliteList satellites = VltTvSatelliteList.getInstance();

    /** A record without two neighboring bytes alike, under record id 17 and the name "Uno". */
    final byte[] stored = Records.with8(Records.withText(Records.with16(Records.patterned(SIZE), 0, 17), 282, "Uno"),
            346, 0);

    @BeforeEach
    void beginWithoutOpenSatelliteLists() {
        for (int id = 1; id <= 9; id++) {
            satellites.nativeClose(id);
        }
        Script.reset();
    }

    /**
     * Opens satellite lists, so that their handles are known (0x40001 for list 1) and opening is not in the journal.
     */
    @Override
    void open(int... ids) {
        for (int id : ids) {
            assertEquals(0, satellites.nativeOpen(id));
        }
        Script.reset();
    }

    /** A satellite without any value but its identifier. */
    static VltTvSatelliteInfoBase named(String identifier) {
        VltTvSatelliteInfoBase info = new VltTvSatelliteInfoBase();
        info.setRecId(identifier);
        return info;
    }

    /** What a zeroed record is preset to before the values of a new satellite go in, under that record id. */
    static byte[] added(int recordId) {
        return Records.with8(Records.with16(new byte[SIZE], 0, recordId), 48, 0xFF);
    }

    /** The line that begins a native. */
    static String entry(String function, int number) {
        return PREFIX + "[" + BRIDGE + function + "][" + number + "] ";
    }

    /** What the store writes of an open list when it looks its handle up. */
    static String found(int id) {
        return store("[NativeVltTvSatelliteList][getSatHandle]: satId = " + id + " satHandle:0x4000" + id + "\n");
    }

    static String store(String text) {
        return "log 3 [SATELITE] NativeVltTvSatelliteList_Cpp: " + text;
    }

    /** The lines of natives and conversions. */
    static List<String> bridgeLines() {
        return lines(LOG);
    }

    /** The middleware's calls. */
    static List<String> calls() {
        return lines("x_");
    }

    @SafeVarargs
    static List<String> joined(List<String>... lists) {
        List<String> all = new ArrayList<>();
        for (List<String> list : lists) {
            all.addAll(list);
        }
        return all;
    }

    private static List<String> lines(String start) {
        return Arrays.stream(Script.lines()).filter(line -> line.startsWith(start)).toList();
    }

    /** A satellite that remembers for which keys it was asked. */
    static final class Asked extends VltTvSatelliteInfoBase {
        final List<String> keys = new ArrayList<>();

        @Override
        public boolean isContainsKey(VltTvSatelliteInfoBase info, String key) {
            assertSame(this, info);
            keys.add(key);
            return super.isContainsKey(info, key);
        }
    }
}
