package com.velotra.tv.tavro.services.channellist;

import java.util.Arrays;
import java.util.EnumSet;
import java.util.List;
import java.util.Set;

/** The values of one satellite, to be written or as read. See {@link KeyedValues} for the rules. */
public class VltTvSatelliteInfoBase extends KeyedValues {
    // Identity.
    protected String RecId;
    protected String Name;
    protected int OrbitPosition;

    // Flags: 1 sets one, any other value clears it.
    protected int MaskStatusOn;
    protected int lnbSignalDetected;
    protected int MaskLnbUniver;
    protected int MaskLnbSingcab;
    protected int MaskLnbSingcabJess;

    // Antenna and LNB.
    protected int AntennaType;
    protected int LnbType;
    protected int LnbLowFreq;
    protected int LnbHighFreq;
    protected int LnbSwitchFreq;
    protected int LnbPower;

    // Switches (DiSEqC).
    protected int DiseqcType;
    protected int DiseqcPosition;
    protected int ToneBurst;
    protected int Tone22k;
    protected int DiseqcPolar;
    protected int DiseqcTypeEx;
    protected int DiseqcPositionEx;
    protected int MduType;

    // Single cable.
    protected int UnicablePosition;
    protected int SingleCableUserBandMain;
    protected int SingleCableBandFreqMain;
    protected int SingleCableUserBandSub;
    protected int SingleCableBandFreqSub;

    /** Creates an object without values. */
    public VltTvSatelliteInfoBase() {}

    /** Returns a new object for an update of the record {@code id}. */
    public static VltTvSatelliteInfoBase forRecord(RecordId id) {
        VltTvSatelliteInfoBase info = new VltTvSatelliteInfoBase();
        info.setRecId(id.toString());
        return info;
    }

    /** Returns the flags that are set. */
    public Set<SatelliteFlag> flags() {
        Set<SatelliteFlag> flags = EnumSet.allOf(SatelliteFlag.class);
        flags.removeIf(flag -> !has(flag));
        return flags;
    }

    /** Returns whether a flag is set. */
    public boolean has(SatelliteFlag flag) {
        return flag.get.applyAsInt(this) == 1;
    }

    /** Sets or clears a flag, like the setter that is named after its key. */
    public void put(SatelliteFlag flag, boolean on) {
        flag.put.accept(this, on ? 1 : 0);
    }

    @Override
    String identifier() {
        return RecId;
    }

    /** Returns whether {@code info} carries a value under {@code key}. Called by the natives. */
    public boolean isContainsKey(VltTvSatelliteInfoBase info, String key) {
        return info.hasKey(key);
    }

    /** Makes this equal to another object, keys and values. */
    void copyFrom(VltTvSatelliteInfoBase from) {
        copyKeys(from);
        RecId = from.RecId;
        Name = from.Name;
        OrbitPosition = from.OrbitPosition;
        MaskStatusOn = from.MaskStatusOn;
        lnbSignalDetected = from.lnbSignalDetected;
        MaskLnbUniver = from.MaskLnbUniver;
        MaskLnbSingcab = from.MaskLnbSingcab;
        MaskLnbSingcabJess = from.MaskLnbSingcabJess;
        AntennaType = from.AntennaType;
        LnbType = from.LnbType;
        LnbLowFreq = from.LnbLowFreq;
        LnbHighFreq = from.LnbHighFreq;
        LnbSwitchFreq = from.LnbSwitchFreq;
        LnbPower = from.LnbPower;
        DiseqcType = from.DiseqcType;
        DiseqcPosition = from.DiseqcPosition;
        ToneBurst = from.ToneBurst;
        Tone22k = from.Tone22k;
        DiseqcPolar = from.DiseqcPolar;
        DiseqcTypeEx = from.DiseqcTypeEx;
        DiseqcPositionEx = from.DiseqcPositionEx;
        MduType = from.MduType;
        UnicablePosition = from.UnicablePosition;
        SingleCableUserBandMain = from.SingleCableUserBandMain;
        SingleCableBandFreqMain = from.SingleCableBandFreqMain;
        SingleCableUserBandSub = from.SingleCableUserBandSub;
        SingleCableBandFreqSub = from.SingleCableBandFreqSub;
    }

    /** Returns every value, whether or not its key is marked: equal for two satellites with the same values. */
    public List<Object> allValues() {
        return Arrays.asList(
                RecId, Name, OrbitPosition, MaskStatusOn, lnbSignalDetected, MaskLnbUniver, MaskLnbSingcab,
                MaskLnbSingcabJess,
                AntennaType, LnbType, LnbLowFreq, LnbHighFreq, LnbSwitchFreq, LnbPower, DiseqcType, DiseqcPosition,
                ToneBurst, Tone22k,
                DiseqcPolar, DiseqcTypeEx, DiseqcPositionEx, MduType, UnicablePosition, SingleCableUserBandMain,
                SingleCableBandFreqMain,
                SingleCableUserBandSub, SingleCableBandFreqSub);
    }

    // Identity.

    /** The record to update, with its list, in text form. See {@link #forRecord}. */
    public void setRecId(String id) {
        RecId = id;
        mark("RecId");
    }

    /** Returns the identifier in text form; see {@link #id}. */
    public String getRecId() {
        return RecId;
    }

    /** Name; its first 64 bytes of modified UTF-8 are stored. Null leaves the stored name. */
    public void setName(String text) {
        Name = text;
        mark("Name");
    }

    /** Returns the value of "Name". */
    public String getName() {
        return Name;
    }

    /** Orbital position, signed, 16 bits: tenths of a degree; see {@link OrbitalPosition}. */
    public void setOrbitPosition(int value) {
        OrbitPosition = value;
        mark("OrbitPosition");
    }

    /** Returns the value of "OrbitPosition". */
    public int getOrbitPosition() {
        return OrbitPosition;
    }

    // Flags: 1 sets one, any other value clears it.

    /** Whether the satellite is enabled. */
    public void setMaskStatusOn(int value) {
        MaskStatusOn = value;
        mark("MaskStatusOn");
    }

    /** Returns the value of "MaskStatusOn". */
    public int getMaskStatusOn() {
        return MaskStatusOn;
    }

    /** Whether the LNB's signal was detected. */
    public void setLnbSignalDetected(int value) {
        lnbSignalDetected = value;
        mark("LnbSignalDetected");
    }

    /** Returns the value of "LnbSignalDetected". */
    public int getLnbSignalDetected() {
        return lnbSignalDetected;
    }

    /** Whether the LNB is a universal one. */
    public void setMaskLnbUniver(int value) {
        MaskLnbUniver = value;
        mark("MaskLnbUniver");
    }

    /** Returns the value of "MaskLnbUniver". */
    public int getMaskLnbUniver() {
        return MaskLnbUniver;
    }

    /** Whether the LNB is a single-cable one. */
    public void setMaskLnbSingcab(int value) {
        MaskLnbSingcab = value;
        mark("MaskLnbSingcab");
    }

    /** Returns the value of "MaskLnbSingcab". */
    public int getMaskLnbSingcab() {
        return MaskLnbSingcab;
    }

    /** Whether the LNB is a single-cable one of the second generation. */
    public void setMaskLnbSingcabJess(int value) {
        MaskLnbSingcabJess = value;
        mark("MaskLnbSingcabJess");
    }

    /** Returns the value of "MaskLnbSingcabJess". */
    public int getMaskLnbSingcabJess() {
        return MaskLnbSingcabJess;
    }

    // Antenna and LNB.

    /**
     * Kind of the LNB and mode of its switch at once; overrides the three LNB flags. 0 and 6 universal, 1 single-cable,
     * 2 single-cable of the second generation; 3, 4 and 5 universal behind a committed, an extended and a second
     * extended switch. Other values change nothing. Read back, 6 is 0; a satellite without any LNB flag has no value.
     */
    public void setAntennaType(int value) {
        AntennaType = value;
        mark("AntennaType");
    }

    /** Returns the value of "AntennaType". */
    public int getAntennaType() {
        return AntennaType;
    }

    /** LNB type, 32 bits. */
    public void setLnbType(int value) {
        LnbType = value;
        mark("LnbType");
    }

    /** Returns the value of "LnbType". */
    public int getLnbType() {
        return LnbType;
    }

    /** Local oscillator frequency of the low band, 16 bits; in MHz, as the workstation imports it. */
    public void setLnbLowFreq(int value) {
        LnbLowFreq = value;
        mark("LnbLowFreq");
    }

    /** Returns the value of "LnbLowFreq". */
    public int getLnbLowFreq() {
        return LnbLowFreq;
    }

    /** Local oscillator frequency of the high band, 16 bits; in MHz, as the workstation imports it. */
    public void setLnbHighFreq(int value) {
        LnbHighFreq = value;
        mark("LnbHighFreq");
    }

    /** Returns the value of "LnbHighFreq". */
    public int getLnbHighFreq() {
        return LnbHighFreq;
    }

    /** Frequency at which the bands are switched, 16 bits; in MHz, as the workstation imports it. */
    public void setLnbSwitchFreq(int value) {
        LnbSwitchFreq = value;
        mark("LnbSwitchFreq");
    }

    /** Returns the value of "LnbSwitchFreq". */
    public int getLnbSwitchFreq() {
        return LnbSwitchFreq;
    }

    /** LNB power setting, 32 bits. */
    public void setLnbPower(int value) {
        LnbPower = value;
        mark("LnbPower");
    }

    /** Returns the value of "LnbPower". */
    public int getLnbPower() {
        return LnbPower;
    }

    // Switches (DiSEqC).

    /** Mode of the switch, 32 bits: 0 tone burst only, 2 committed switch. */
    public void setDiseqcType(int value) {
        DiseqcType = value;
        mark("DiseqcType");
    }

    /** Returns the value of "DiseqcType". */
    public int getDiseqcType() {
        return DiseqcType;
    }

    /**
     * Position of the switch: 0 to 3 its port, 5 tone burst A, 6 tone burst B, any other none. Overrides the tone
     * burst.
     */
    public void setDiseqcPosition(int value) {
        DiseqcPosition = value;
        mark("DiseqcPosition");
    }

    /** Returns the value of "DiseqcPosition". */
    public int getDiseqcPosition() {
        return DiseqcPosition;
    }

    /** Tone burst, 8 bits: 0 burst A, 1 burst B, 255 none. */
    public void setToneBurst(int value) {
        ToneBurst = value;
        mark("ToneBurst");
    }

    /** Returns the value of "ToneBurst". */
    public int getToneBurst() {
        return ToneBurst;
    }

    /** 22 kHz tone, 8 bits. */
    public void setTone22k(int value) {
        Tone22k = value;
        mark("Tone22k");
    }

    /** Returns the value of "Tone22k". */
    public int getTone22k() {
        return Tone22k;
    }

    /** Polarization, 32 bits; stored in new satellites only, updates ignore it. */
    public void setDiseqcPolar(int value) {
        DiseqcPolar = value;
        mark("DiseqcPolar");
    }

    /** Returns the value of "DiseqcPolar". */
    public int getDiseqcPolar() {
        return DiseqcPolar;
    }

    /** Mode of the extended switch, 32 bits. */
    public void setDiseqcTypeEx(int value) {
        DiseqcTypeEx = value;
        mark("DiseqcTypeEx");
    }

    /** Returns the value of "DiseqcTypeEx". */
    public int getDiseqcTypeEx() {
        return DiseqcTypeEx;
    }

    /** Port of the extended switch, 8 bits. */
    public void setDiseqcPositionEx(int value) {
        DiseqcPositionEx = value;
        mark("DiseqcPositionEx");
    }

    /** Returns the value of "DiseqcPositionEx". */
    public int getDiseqcPositionEx() {
        return DiseqcPositionEx;
    }

    /** MDU type, 32 bits. */
    public void setMduType(int value) {
        MduType = value;
        mark("MduType");
    }

    /** Returns the value of "MduType". */
    public int getMduType() {
        return MduType;
    }

    // Single cable.

    /** Single-cable position, 32 bits. */
    public void setUnicablePosition(int value) {
        UnicablePosition = value;
        mark("UnicablePosition");
    }

    /** Returns the value of "UnicablePosition". */
    public int getUnicablePosition() {
        return UnicablePosition;
    }

    /** User band of the main tuner, 32 bits. */
    public void setSingleCableUserBandMain(int value) {
        SingleCableUserBandMain = value;
        mark("SingleCableUserBandMain");
    }

    /** Returns the value of "SingleCableUserBandMain". */
    public int getSingleCableUserBandMain() {
        return SingleCableUserBandMain;
    }

    /** Band frequency of the main tuner, 16 bits; in MHz, as the workstation imports it. */
    public void setSingleCableBandFreqMain(int value) {
        SingleCableBandFreqMain = value;
        mark("SingleCableBandFreqMain");
    }

    /** Returns the value of "SingleCableBandFreqMain". */
    public int getSingleCableBandFreqMain() {
        return SingleCableBandFreqMain;
    }

    /** User band of the sub tuner, 32 bits. */
    public void setSingleCableUserBandSub(int value) {
        SingleCableUserBandSub = value;
        mark("SingleCableUserBandSub");
    }

    /** Returns the value of "SingleCableUserBandSub". */
    public int getSingleCableUserBandSub() {
        return SingleCableUserBandSub;
    }

    /** Band frequency of the sub tuner, 16 bits; in MHz, as the workstation imports it. */
    public void setSingleCableBandFreqSub(int value) {
        SingleCableBandFreqSub = value;
        mark("SingleCableBandFreqSub");
    }

    /** Returns the value of "SingleCableBandFreqSub". */
    public int getSingleCableBandFreqSub() {
        return SingleCableBandFreqSub;
    }
}
