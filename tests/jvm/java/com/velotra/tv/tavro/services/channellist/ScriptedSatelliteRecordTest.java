package com.velotra.tv.tavro.services.channellist;

import static org.junit.jupiter.api.Assertions.assertArrayEquals;
import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertTrue;

import java.nio.charset.StandardCharsets;
import java.util.List;
import java.util.Map;
import java.util.function.Consumer;
import java.util.function.ObjIntConsumer;
import java.util.function.ToIntFunction;
import java.util.stream.Collectors;
import java.util.stream.Stream;
import org.junit.jupiter.api.BeforeEach;
import org.junit.jupiter.api.Test;

/** Each value of a satellite on its way into the record and out of it. */
class ScriptedSatelliteRecordTest extends SatellitePlatform {
    private static final int MASK = 4;
    private static final int TYPE = 40;
    private static final int PORT = 44;
    private static final int BURST = 48;
    private static final int TYPE_EX = 84;
    private static final int TYPE_EX2 = 92;

    /** A key whose value lies in the record as it is. */
    private record Number(
            String key,
            ObjIntConsumer<VltTvSatelliteInfoBase> set,
            ToIntFunction<VltTvSatelliteInfoBase> get,
            int offset,
            int width,
            String line) {
        byte[] in(byte[] record, int value) {
            return switch (width) {
                case 1 -> Records.with8(record, offset, value);
                case 2 -> Records.with16(record, offset, value);
                default -> Records.with32(record, offset, value);
            };
        }

        /** What is read back of a value. */
        int kept(int value) {
            return switch (width) {
                case 1 -> value & 0xFF;
                case 2 -> key.equals("OrbitPosition") ? (short) value : value & 0xFFFF;
                default -> value;
            };
        }
    }

    private static final List<Number> NUMBERS = List.of(
            new Number("OrbitPosition", VltTvSatelliteInfoBase::setOrbitPosition,
                    VltTvSatelliteInfoBase::getOrbitPosition, 280, 2, "i2_orb_pos"),
            new Number("LnbPower", VltTvSatelliteInfoBase::setLnbPower, VltTvSatelliteInfoBase::getLnbPower, 56, 4,
                    "e_lnb_power"),
            new Number("ToneBurst", VltTvSatelliteInfoBase::setToneBurst, VltTvSatelliteInfoBase::getToneBurst, BURST,
                    1, "ui1_tone_burst"),
            new Number("DiseqcType", VltTvSatelliteInfoBase::setDiseqcType, VltTvSatelliteInfoBase::getDiseqcType, TYPE,
                    4, "e_diseqc_type"),
            new Number("Tone22k", VltTvSatelliteInfoBase::setTone22k, VltTvSatelliteInfoBase::getTone22k, 47, 1,
                    "ui1_22k"),
            new Number(
                    "SingleCableUserBandMain", VltTvSatelliteInfoBase::setSingleCableUserBandMain,
                    VltTvSatelliteInfoBase::getSingleCableUserBandMain, 72, 4, "e_user_band"),
            new Number(
                    "UnicablePosition", VltTvSatelliteInfoBase::setUnicablePosition,
                    VltTvSatelliteInfoBase::getUnicablePosition, 64, 4,
                    "e_position"),
            new Number(
                    "SingleCableBandFreqMain", VltTvSatelliteInfoBase::setSingleCableBandFreqMain,
                    VltTvSatelliteInfoBase::getSingleCableBandFreqMain, 76, 2, "ui2_band_freq"),
            new Number("MduType", VltTvSatelliteInfoBase::setMduType, VltTvSatelliteInfoBase::getMduType, 80, 4,
                    "e_mdu_type"),
            new Number(
                    "DiseqcTypeEx", VltTvSatelliteInfoBase::setDiseqcTypeEx, VltTvSatelliteInfoBase::getDiseqcTypeEx,
                    TYPE_EX, 4,
                    "e_diseqc_type_ex"),
            new Number(
                    "DiseqcPositionEx", VltTvSatelliteInfoBase::setDiseqcPositionEx,
                    VltTvSatelliteInfoBase::getDiseqcPositionEx, 88, 1,
                    "ui1_port_ex"),
            new Number("DiseqcPolar", VltTvSatelliteInfoBase::setDiseqcPolar, VltTvSatelliteInfoBase::getDiseqcPolar,
                    52, 4, "e_polar"),
            new Number(
                    "SingleCableUserBandSub", VltTvSatelliteInfoBase::setSingleCableUserBandSub,
                    VltTvSatelliteInfoBase::getSingleCableUserBandSub, 192, 4, "e_user_band"),
            new Number(
                    "SingleCableBandFreqSub", VltTvSatelliteInfoBase::setSingleCableBandFreqSub,
                    VltTvSatelliteInfoBase::getSingleCableBandFreqSub, 196, 2, "ui2_band_freq"),
            new Number("LnbType", VltTvSatelliteInfoBase::setLnbType, VltTvSatelliteInfoBase::getLnbType, 8, 4,
                    "e_lnb_type"),
            new Number("LnbLowFreq", VltTvSatelliteInfoBase::setLnbLowFreq, VltTvSatelliteInfoBase::getLnbLowFreq, 12,
                    2, "ui2_lnb_low_freq"),
            new Number(
                    "LnbHighFreq", VltTvSatelliteInfoBase::setLnbHighFreq, VltTvSatelliteInfoBase::getLnbHighFreq, 14,
                    2, "ui2_lnb_high_freq"),
            new Number(
                    "LnbSwitchFreq", VltTvSatelliteInfoBase::setLnbSwitchFreq, VltTvSatelliteInfoBase::getLnbSwitchFreq,
                    16, 2,
                    "ui2_lnb_switch_freq"));

    /** A key that is one bit of the mask. */
    private record Flag(
            String key, ObjIntConsumer<VltTvSatelliteInfoBase> set, ToIntFunction<VltTvSatelliteInfoBase> get,
            int bit) {}

    private static final List<Flag> FLAGS = List.of(
            new Flag("MaskStatusOn", VltTvSatelliteInfoBase::setMaskStatusOn, VltTvSatelliteInfoBase::getMaskStatusOn,
                    0x2000),
            new Flag("MaskLnbUniver", VltTvSatelliteInfoBase::setMaskLnbUniver,
                    VltTvSatelliteInfoBase::getMaskLnbUniver, 0x4000),
            new Flag("MaskLnbSingcab", VltTvSatelliteInfoBase::setMaskLnbSingcab,
                    VltTvSatelliteInfoBase::getMaskLnbSingcab, 0x8000),
            new Flag(
                    "MaskLnbSingcabJess", VltTvSatelliteInfoBase::setMaskLnbSingcabJess,
                    VltTvSatelliteInfoBase::getMaskLnbSingcabJess,
                    0x10000),
            new Flag(
                    "LnbSignalDetected", VltTvSatelliteInfoBase::setLnbSignalDetected,
                    VltTvSatelliteInfoBase::getLnbSignalDetected, 0x20));

    @BeforeEach
    void openTheList() {
        open(1);
    }

    /** The record that an update of `before` with these values writes. */
    private static byte[] updated(VltTvSatelliteList satellites, byte[] before,
            Consumer<VltTvSatelliteInfoBase> values) {
        Script.reset();
        Script.logLevel("D");
        Script.answer("x_satl_get_rec", before);
        VltTvSatelliteInfoBase info = named("1,17");
        values.accept(info);
        assertEquals(0, satellites.nativeUpdateInfo(info));
        return Script.lastRecord();
    }

    private byte[] updated(byte[] before, Consumer<VltTvSatelliteInfoBase> values) {
        return updated(satellites, before, values);
    }

    /** The record that a new satellite with these values becomes. */
    private byte[] addedWith(Consumer<VltTvSatelliteInfoBase> values) {
        Script.reset();
        Script.logLevel("D");
        VltTvSatelliteInfoBase info = new VltTvSatelliteInfoBase();
        values.accept(info);
        assertEquals("1,2", satellites.nativeAdd(1, info));
        return Script.lastRecord();
    }

    /** The conversion's lines of the latest native. */
    private static List<String> conversionLines() {
        return bridgeLines().stream()
                .filter(line -> !line.contains(BRIDGE) && !line.contains("[satList->")
                        && !line.contains("[combineMId]"))
                .toList();
    }

    private static void assertLines(String... texts) {
        assertEquals(Stream.of(texts).map(text -> PREFIX + text).toList(), conversionLines());
    }

    /** What is read of a record: all values, and each value by its key, which must be the same. */
    private VltTvSatelliteInfoBase read(byte[] record, String... keys) {
        Script.reset();
        Script.logLevel("D");
        Script.always("x_satl_get_rec", record);
        return satellites.nativeGetInfo("1,17", keys.length == 0 ? null : List.of(keys));
    }

    @Test
    void everyNumberGoesToItsPlaceCutToItsWidthAndNoOtherByteChanges() {
        for (Number number : NUMBERS) {
            for (int value : new int[] {0x12345678, -2, 1, 0}) {
                String line = number.line + " = " + number.kept(value) + " \n";
                assertArrayEquals(number.in(added(2), value), addedWith(info -> number.set.accept(info, value)),
                        number.key);
                assertLines(line);
                byte[] record = updated(stored, info -> number.set.accept(info, value));
                if (number.key.equals("DiseqcPolar")) { // into new records alone
                    assertArrayEquals(stored, record);
                    assertLines();
                } else {
                    assertArrayEquals(number.in(stored, value), record, number.key);
                    assertLines(line);
                }
            }
        }
    }

    @Test
    void everyNumberIsReadFromItsPlaceAloneOrWithAllOthers() {
        byte[] record = Records.with32(stored, MASK, 0);
        for (Number number : NUMBERS) {
            for (int value : new int[] {0x12345678, -2, 1, 0}) {
                byte[] changed = number.in(record, value);
                assertEquals(number.kept(value), number.get.applyAsInt(read(changed)), number.key);
                VltTvSatelliteInfoBase alone = read(changed, number.key);
                assertEquals(number.kept(value), number.get.applyAsInt(alone), number.key);
                assertEquals(List.of("RecId", number.key), List.copyOf(alone.keys()));
            }
        }
    }

    @Test
    void anOrbitPositionIsSignedAndCutTo16Bits() {
        assertArrayEquals(Records.with16(stored, 280, -300), updated(stored, info -> info.setOrbitPosition(-300)));
        assertLines("i2_orb_pos = -300 \n");
        assertEquals(-300, read(Records.with16(stored, 280, -300)).getOrbitPosition());
        assertArrayEquals(Records.with16(stored, 280, 4464), updated(stored, info -> info.setOrbitPosition(70000)));
        assertLines("i2_orb_pos = 4464 \n");
    }

    @Test
    void everyFlagIsSetByOneAloneAndLeavesTheOtherBits() {
        for (Flag flag : FLAGS) {
            for (int mask : new int[] {0, -1, 0x00ABCDEF, 0x7ED41230}) {
                for (int value : new int[] {1, 0, 2, -1}) {
                    byte[] record = updated(Records.with32(stored, MASK, mask), info -> flag.set.accept(info, value));
                    int expected = value == 1 ? mask | flag.bit : mask & ~flag.bit;
                    assertArrayEquals(Records.with32(stored, MASK, expected), record, flag.key);
                    assertLines(String.format("ui4_mask = 0x%04X (%d, 0x%04X) \n", expected, value, flag.bit));
                }
            }
            assertArrayEquals(Records.with32(added(2), MASK, flag.bit), addedWith(info -> flag.set.accept(info, 1)));
        }
    }

    @Test
    void everyFlagIsReadAsOneOrZeroAloneOrWithAllOthers() {
        for (Flag flag : FLAGS) {
            for (int mask : new int[] {flag.bit, ~flag.bit, -1, 0}) {
                byte[] record = Records.with32(stored, MASK, mask);
                int expected = (mask & flag.bit) == 0 ? 0 : 1;
                assertEquals(expected, flag.get.applyAsInt(read(record)), flag.key);
                VltTvSatelliteInfoBase alone = read(record, flag.key);
                assertEquals(expected, flag.get.applyAsInt(alone), flag.key);
                assertEquals(List.of("RecId", flag.key), List.copyOf(alone.keys()));
            }
        }
    }

    /** The record with the first 64 bytes of a name, filled up with zeros, and its terminator. */
    private static byte[] withName(byte[] record, byte[] name) {
        byte[] copy = record.clone();
        for (int i = 0; i < 64; i++) {
            copy[282 + i] = i < name.length ? name[i] : 0;
        }
        copy[346] = 0;
        return copy;
    }

    @Test
    void aNameIsCutAt64BytesFilledUpWithZerosAndTerminated() {
        byte[] before = Records.with8(stored, 346, 0x77);
        for (int length : new int[] {0, 1, 5, 63, 64, 65, 70}) {
            String name = "n".repeat(length);
            String cut = "n".repeat(Math.min(length, 64));
            byte[] expected = withName(before, cut.getBytes(StandardCharsets.UTF_8));
            assertArrayEquals(expected, updated(before, info -> info.setName(name)));
            assertLines("ac_sat_name = " + cut + " \n");
            assertArrayEquals(withName(added(2), cut.getBytes(StandardCharsets.UTF_8)),
                    addedWith(info -> info.setName(name)));
            assertEquals(cut, read(expected).getName());
            assertEquals(cut, read(expected, "Name").getName());
        }
    }

    @Test
    void aNameThatFillsItsBytesIsReadWithoutTheByteAfterThem() {
        String full = "n".repeat(64);
        byte[] record = Records.with8(withName(stored, full.getBytes(StandardCharsets.UTF_8)), 346, 0x77);
        assertEquals(full, read(record).getName());
        assertEquals(full, read(record, "Name").getName());
    }

    @Test
    void aNameIsStoredAsModifiedUtf8AndCutBetweenItsBytes() {
        byte[] text = {'A', (byte) 0xC3, (byte) 0xBC, (byte) 0xC0, (byte) 0x80};
        assertArrayEquals(withName(stored, text), updated(stored, info -> info.setName("Aü\0")));
        assertEquals("Aü", read(withName(stored, new byte[] {'A', (byte) 0xC3, (byte) 0xBC})).getName());
        byte[] cut = ("n".repeat(63) + "\u00fc").getBytes(StandardCharsets.UTF_8);
        Script.logLevel("");
        Script.answer("x_satl_get_rec", stored);
        VltTvSatelliteInfoBase info = named("1,17");
        info.setName("n".repeat(63) + "ü");
        assertEquals(0, satellites.nativeUpdateInfo(info));
        assertArrayEquals(withName(stored, cut), Script.lastRecord());
    }

    @Test
    void aNullNameLeavesTheNameAndIsToldWithIt() {
        byte[] before = Records.with8(stored, 346, 0x77);
        assertArrayEquals(before, updated(before, info -> info.setName(null)));
        assertLines("ac_sat_name = Uno \n");
        assertArrayEquals(added(2), addedWith(info -> info.setName(null)));
        assertLines("ac_sat_name =  \n");
    }

    @Test
    void anAntennaTypeReplacesLnbKindAndFrom3To5TheDiseqcModes() {
        Map<Integer, Integer> kinds =
                Map.of(0, 0x4000, 1, 0x8000, 2, 0x10000, 3, 0x4000, 4, 0x4000, 5, 0x4000, 6, 0x4000);
        Map<Integer, int[]> modes = Map.of(3, new int[] {2, 0, 0}, 4, new int[] {0, 4, 0}, 5, new int[] {0, 0, 5});
        for (int type : new int[] {0, 1, 2, 3, 4, 5, 6, 7, -1, 256, Integer.MIN_VALUE}) {
            for (int mask : new int[] {0, -1, 0x0001C000, 0x12342020}) {
                byte[] before = Records.with32(stored, MASK, mask);
                int changed = kinds.containsKey(type) ? mask & ~0x1C000 | kinds.get(type) : mask;
                byte[] expected = Records.with32(before, MASK, changed);
                if (modes.containsKey(type)) {
                    int[] mode = modes.get(type);
                    expected = Records.with32(expected, TYPE, mode[0]);
                    expected = Records.with32(expected, TYPE_EX, mode[1]);
                    expected = Records.with32(expected, TYPE_EX2, mode[2]);
                }
                assertArrayEquals(expected, updated(before, info -> info.setAntennaType(type)), "type " + type);
                assertLines("pt_satl_rec.ui4_mask = " + changed + " \n");
            }
        }
    }

    @Test
    void anAntennaTypeOverridesTheFlagsOfTheSameObject() {
        byte[] record = addedWith(info -> {
            info.setAntennaType(0);
            info.setMaskLnbSingcab(1);
            info.setMaskStatusOn(1);
        });
        assertArrayEquals(Records.with32(added(2), MASK, 0x6000), record);
        record = addedWith(info -> {
            info.setAntennaType(7);
            info.setMaskLnbSingcab(1);
        });
        assertArrayEquals(Records.with32(added(2), MASK, 0x8000), record);
        assertLines("ui4_mask = 0x8000 (1, 0x8000) \n", "pt_satl_rec.ui4_mask = 32768 \n");
    }

    @Test
    void theDiseqcModesOfTheSameObjectOverrideThoseOfItsAntennaType() {
        byte[] record = addedWith(info -> {
            info.setDiseqcTypeEx(9);
            info.setDiseqcType(8);
            info.setAntennaType(5);
        });
        byte[] expected = Records.with32(Records.with32(Records.with32(added(2), MASK, 0x4000), TYPE, 8), TYPE_EX, 9);
        assertArrayEquals(Records.with32(expected, TYPE_EX2, 5), record);
    }

    @Test
    void aSwitchPositionIsAPortAToneBurstOrNone() {
        for (int position : new int[] {0, 1, 2, 3, 4, 5, 6, 7, 255, 256, 258, 261, -1, Integer.MIN_VALUE}) {
            byte[] expected = switch (position) {
                case 5 -> Records.with8(stored, BURST, 0);
                case 6 -> Records.with8(stored, BURST, 1);
                case 0, 1, 2, 3 -> Records.with8(Records.with8(stored, PORT, position), BURST, 0xFF);
                default -> Records.with8(Records.with8(stored, PORT, 0xFF), BURST, 0xFF);
            };
            assertArrayEquals(expected, updated(stored, info -> info.setDiseqcPosition(position)),
                    "position " + position);
            assertLines("ui1_port = " + (expected[PORT] & 0xFF) + " ui1_tone_burst = " + (expected[BURST] & 0xFF)
                    + "\n");
        }
    }

    @Test
    void aSwitchPositionOverridesTheToneBurstOfTheSameObject() {
        for (int position : new int[] {2, 5}) {
            byte[] record = updated(stored, info -> {
                info.setDiseqcPosition(position);
                info.setToneBurst(1);
            });
            assertArrayEquals(
                    position == 5
                            ? Records.with8(stored, BURST, 0)
                            : Records.with8(Records.with8(stored, PORT, 2), BURST, 0xFF),
                    record);
        }
    }

    @Test
    void anObjectWithAllKeysWritesOneLineAKeyInTheOrderOfTheKeys() {
        addedWith(info -> {
            for (Number number : NUMBERS) {
                number.set.accept(info, 1);
            }
            for (Flag flag : FLAGS) {
                flag.set.accept(info, 1);
            }
            info.setName("Uno");
            info.setAntennaType(1);
            info.setDiseqcPosition(1);
        });
        assertLines(
                "ui4_mask = 0x2000 (1, 0x2000) \n",
                "ui4_mask = 0x6000 (1, 0x4000) \n",
                "ui4_mask = 0xE000 (1, 0x8000) \n",
                "ui4_mask = 0x1E000 (1, 0x10000) \n",
                "ui4_mask = 0x1E020 (1, 0x0020) \n",
                "i2_orb_pos = 1 \n",
                "ac_sat_name = Uno \n",
                "pt_satl_rec.ui4_mask = 40992 \n",
                "e_lnb_power = 1 \n",
                "ui1_tone_burst = 1 \n",
                "e_diseqc_type = 1 \n",
                "ui1_22k = 1 \n",
                "e_user_band = 1 \n",
                "e_position = 1 \n",
                "ui1_port = 1 ui1_tone_burst = 255\n",
                "ui2_band_freq = 1 \n",
                "e_mdu_type = 1 \n",
                "e_diseqc_type_ex = 1 \n",
                "ui1_port_ex = 1 \n",
                "e_polar = 1 \n",
                "e_user_band = 1 \n",
                "ui2_band_freq = 1 \n",
                "e_lnb_type = 1 \n",
                "ui2_lnb_low_freq = 1 \n",
                "ui2_lnb_high_freq = 1 \n",
                "ui2_lnb_switch_freq = 1 \n");
    }

    /** A record with that mask and those DiSEqC modes. */
    private byte[] antenna(int mask, int type, int typeEx, int typeEx2) {
        byte[] record = Records.with32(Records.with32(stored, MASK, mask), TYPE, type);
        return Records.with32(Records.with32(record, TYPE_EX, typeEx), TYPE_EX2, typeEx2);
    }

    @Test
    void anAntennaTypeIsReadFromTheFirstLnbKindThatIsSet() {
        for (int more : new int[] {0, 0x4000, 0x10000, 0x14000, ~0x1C000}) {
            assertAntennaType(1, antenna(0x8000 | more, 0, 4, 0));
        }
        for (int more : new int[] {0, 0x4000, ~0x1C000}) {
            assertAntennaType(2, antenna(0x10000 | more, 0, 0, 5));
        }
        int[][] modes = {{4, 0, 4, 0}, {5, 0, 0, 5}, {3, 2, 0, 0}};
        for (int[] mode : modes) {
            assertAntennaType(mode[0], antenna(0x4000, mode[1], mode[2], mode[3]));
            assertAntennaType(mode[0], antenna(0x4000 | ~0x1C000, mode[1], mode[2], mode[3]));
        }
        int[][] others = {
            {0, 0, 0}, {1, 0, 0}, {2, 4, 0}, {2, 0, 5}, {2, 4, 5}, {0, 4, 5}, {0, 5, 0}, {0, 0, 4}, {1, 4, 0},
            {1, 0, 5}, {2, 0, 1}, {2, 1, 0}
        };
        for (int[] mode : others) {
            assertAntennaType(0, antenna(0x4000, mode[0], mode[1], mode[2]));
        }
    }

    private void assertAntennaType(int expected, byte[] record) {
        assertEquals(expected, read(record).getAntennaType());
        assertEquals(List.of(), Script.linesWith("error handling"));
        VltTvSatelliteInfoBase alone = read(record, "AntennaType");
        assertEquals(expected, alone.getAntennaType());
        assertEquals(List.of("RecId", "AntennaType"), List.copyOf(alone.keys()));
        assertEquals(List.of(), Script.linesWith("error handling"));
    }

    @Test
    void aRecordWithoutAnLnbKindHasNoAntennaTypeAndOneLine() {
        for (int mask : new int[] {0, ~0x1C000}) {
            byte[] record = antenna(mask, 2, 0, 0);
            String line = LOG + "[get_sub2_main_data] error handling \n";
            VltTvSatelliteInfoBase all = read(record);
            assertTrue(!all.keys().contains("AntennaType") && all.keys().contains("LnbPower"));
            assertEquals(List.of(line), Script.linesWith("error handling"));
            assertEquals(List.of("RecId"), List.copyOf(read(record, "AntennaType").keys()));
            assertEquals(List.of(line), Script.linesWith("error handling"));
        }
    }

    @Test
    void aSwitchPositionIsReadFromTheBurstOrThePortByTheDiseqcType() {
        // Type, port, burst, position.
        int[][] cases = {
            {0, 3, 0, 5}, {0, 3, 1, 6}, {0, 3, 2, 255}, {0, 3, 0xFF, 255}, {2, 3, 0, 3}, {2, 0, 1, 0},
            {2, 0xFF, 0, 255}, {2, 200, 0, 200},
            {1, 3, 0, 255}, {3, 3, 1, 255}, {-1, 0, 0, 255}, {256, 3, 0, 255}
        };
        for (int[] c : cases) {
            byte[] record = Records.with8(Records.with8(Records.with32(stored, TYPE, c[0]), PORT, c[1]), BURST, c[2]);
            assertEquals(c[3], read(record).getDiseqcPosition());
            VltTvSatelliteInfoBase alone = read(record, "DiseqcPosition");
            assertEquals(c[3], alone.getDiseqcPosition());
            assertEquals(List.of("RecId", "DiseqcPosition"), List.copyOf(alone.keys()));
        }
    }

    @Test
    void whatIsAddedIsReadBackTheSame() {
        byte[] record = addedWith(info -> {
            for (int i = 0; i < NUMBERS.size(); i++) {
                NUMBERS.get(i).set.accept(info, 11 + i);
            }
            info.setMaskStatusOn(1);
            info.setLnbSignalDetected(1);
            info.setAntennaType(2);
            info.setName("Due");
        });
        VltTvSatelliteInfoBase info = read(record);
        assertEquals(
                NUMBERS.stream().collect(Collectors.toMap(Number::key, number -> 11 + NUMBERS.indexOf(number))),
                NUMBERS.stream().collect(Collectors.toMap(Number::key, number -> number.get.applyAsInt(info))));
        assertEquals(
                List.of(1, 0, 0, 1, 1), FLAGS.stream().map(flag -> flag.get.applyAsInt(info)).toList());
        assertEquals(2, info.getAntennaType());
        assertEquals("Due", info.getName());
    }
}
