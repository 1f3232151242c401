package com.velotra.tv.tavro.services.channellist;

import java.util.Arrays;
import java.util.List;

/**
 * The values of one satellite: a bag of optional values, each under its key, on the way in and on the way out.
 *
 * <p>A value that is set marks its key; see {@link VltTvChannelInfoBase} for the rules. Fields are called as their keys, but for
 * one: the native side reads them so.
 */
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

    /** Whether {@code info} carries a value under {@code key}. Called by the native side. */
    public boolean isContainsKey(VltTvSatelliteInfoBase info, String key) {
        return info.hasKey(key);
    }

    /** Makes this the same as another bag, keys and values. */
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

    /** Every value, whether or not its key is set: equal for two satellites that hold the same. */
    public List<Object> allValues() {
        return Arrays.asList(
                RecId, Name, OrbitPosition, MaskStatusOn, lnbSignalDetected, MaskLnbUniver, MaskLnbSingcab, MaskLnbSingcabJess,
                AntennaType, LnbType, LnbLowFreq, LnbHighFreq, LnbSwitchFreq, LnbPower, DiseqcType, DiseqcPosition, ToneBurst, Tone22k,
                DiseqcPolar, DiseqcTypeEx, DiseqcPositionEx, MduType, UnicablePosition, SingleCableUserBandMain, SingleCableBandFreqMain,
                SingleCableUserBandSub, SingleCableBandFreqSub);
    }

    // Identity.

    /** The record to update, with its list. */
    public void setRecId(String id) {
        RecId = id;
        mark("RecId");
    }

    /** The value under "RecId". */
    public String getRecId() {
        return RecId;
    }

    /** Name; its first 64 bytes of modified UTF-8 are stored. Null leaves the stored name. */
    public void setName(String text) {
        Name = text;
        mark("Name");
    }

    /** The value under "Name". */
    public String getName() {
        return Name;
    }

    /** Orbital position, signed, 16 bits: tenths of a degree; see {@link OrbitalPosition}. */
    public void setOrbitPosition(int value) {
        OrbitPosition = value;
        mark("OrbitPosition");
    }

    /** The value under "OrbitPosition". */
    public int getOrbitPosition() {
        return OrbitPosition;
    }

    // Flags: 1 sets one, any other value clears it.

    /** Whether the satellite is enabled. */
    public void setMaskStatusOn(int value) {
        MaskStatusOn = value;
        mark("MaskStatusOn");
    }

    /** The value under "MaskStatusOn". */
    public int getMaskStatusOn() {
        return MaskStatusOn;
    }

    /** Whether the LNB's signal was detected. */
    public void setLnbSignalDetected(int value) {
        lnbSignalDetected = value;
        mark("LnbSignalDetected");
    }

    /** The value under "LnbSignalDetected". */
    public int getLnbSignalDetected() {
        return lnbSignalDetected;
    }

    /** Whether the LNB is a universal one. */
    public void setMaskLnbUniver(int value) {
        MaskLnbUniver = value;
        mark("MaskLnbUniver");
    }

    /** The value under "MaskLnbUniver". */
    public int getMaskLnbUniver() {
        return MaskLnbUniver;
    }

    /** Whether the LNB is a single-cable one. */
    public void setMaskLnbSingcab(int value) {
        MaskLnbSingcab = value;
        mark("MaskLnbSingcab");
    }

    /** The value under "MaskLnbSingcab". */
    public int getMaskLnbSingcab() {
        return MaskLnbSingcab;
    }

    /** Whether the LNB is a single-cable one of the second generation. */
    public void setMaskLnbSingcabJess(int value) {
        MaskLnbSingcabJess = value;
        mark("MaskLnbSingcabJess");
    }

    /** The value under "MaskLnbSingcabJess". */
    public int getMaskLnbSingcabJess() {
        return MaskLnbSingcabJess;
    }

    // Antenna and LNB.

    /**
     * Kind of the LNB and mode of its switch at once; overrides the three LNB flags. 0 and 6 universal, 1 single-cable, 2
     * single-cable of the second generation; 3, 4 and 5 universal behind a committed, an extended and a second extended
     * switch. Other values change nothing. Read back, 6 is 0; a satellite without any LNB flag has no value.
     */
    public void setAntennaType(int value) {
        AntennaType = value;
        mark("AntennaType");
    }

    /** The value under "AntennaType". */
    public int getAntennaType() {
        return AntennaType;
    }

    /** LNB type, 32 bits. */
    public void setLnbType(int value) {
        LnbType = value;
        mark("LnbType");
    }

    /** The value under "LnbType". */
    public int getLnbType() {
        return LnbType;
    }

    /** Local oscillator frequency of the low band, 16 bits; in MHz, as this workstation has it. */
    public void setLnbLowFreq(int value) {
        LnbLowFreq = value;
        mark("LnbLowFreq");
    }

    /** The value under "LnbLowFreq". */
    public int getLnbLowFreq() {
        return LnbLowFreq;
    }

    /** The same of the high band. */
    public void setLnbHighFreq(int value) {
        LnbHighFreq = value;
        mark("LnbHighFreq");
    }

    /** The value under "LnbHighFreq". */
    public int getLnbHighFreq() {
        return LnbHighFreq;
    }

    /** Frequency at which the bands are switched, 16 bits; in MHz, as this workstation has it. */
    public void setLnbSwitchFreq(int value) {
        LnbSwitchFreq = value;
        mark("LnbSwitchFreq");
    }

    /** The value under "LnbSwitchFreq". */
    public int getLnbSwitchFreq() {
        return LnbSwitchFreq;
    }

    /** LNB power setting, 32 bits. */
    public void setLnbPower(int value) {
        LnbPower = value;
        mark("LnbPower");
    }

    /** The value under "LnbPower". */
    public int getLnbPower() {
        return LnbPower;
    }

    // Switches (DiSEqC).

    /** Mode of the switch, 32 bits: 0 tone burst only, 2 committed switch. */
    public void setDiseqcType(int value) {
        DiseqcType = value;
        mark("DiseqcType");
    }

    /** The value under "DiseqcType". */
    public int getDiseqcType() {
        return DiseqcType;
    }

    /** Position of the switch: 0 to 3 its port, 5 tone burst A, 6 tone burst B, any other none. Overrides the tone burst. */
    public void setDiseqcPosition(int value) {
        DiseqcPosition = value;
        mark("DiseqcPosition");
    }

    /** The value under "DiseqcPosition". */
    public int getDiseqcPosition() {
        return DiseqcPosition;
    }

    /** Tone burst, 8 bits: 0 burst A, 1 burst B, 255 none. */
    public void setToneBurst(int value) {
        ToneBurst = value;
        mark("ToneBurst");
    }

    /** The value under "ToneBurst". */
    public int getToneBurst() {
        return ToneBurst;
    }

    /** 22 kHz tone, 8 bits. */
    public void setTone22k(int value) {
        Tone22k = value;
        mark("Tone22k");
    }

    /** The value under "Tone22k". */
    public int getTone22k() {
        return Tone22k;
    }

    /** Polarisation, 32 bits; taken into new satellites alone, not by updates. */
    public void setDiseqcPolar(int value) {
        DiseqcPolar = value;
        mark("DiseqcPolar");
    }

    /** The value under "DiseqcPolar". */
    public int getDiseqcPolar() {
        return DiseqcPolar;
    }

    /** Mode of the extended switch, 32 bits. */
    public void setDiseqcTypeEx(int value) {
        DiseqcTypeEx = value;
        mark("DiseqcTypeEx");
    }

    /** The value under "DiseqcTypeEx". */
    public int getDiseqcTypeEx() {
        return DiseqcTypeEx;
    }

    /** Port of the extended switch, 8 bits. */
    public void setDiseqcPositionEx(int value) {
        DiseqcPositionEx = value;
        mark("DiseqcPositionEx");
    }

    /** The value under "DiseqcPositionEx". */
    public int getDiseqcPositionEx() {
        return DiseqcPositionEx;
    }

    /** MDU type, 32 bits. */
    public void setMduType(int value) {
        MduType = value;
        mark("MduType");
    }

    /** The value under "MduType". */
    public int getMduType() {
        return MduType;
    }

    // Single cable.

    /** Single-cable position, 32 bits. */
    public void setUnicablePosition(int value) {
        UnicablePosition = value;
        mark("UnicablePosition");
    }

    /** The value under "UnicablePosition". */
    public int getUnicablePosition() {
        return UnicablePosition;
    }

    /** User band of the main tuner, 32 bits. */
    public void setSingleCableUserBandMain(int value) {
        SingleCableUserBandMain = value;
        mark("SingleCableUserBandMain");
    }

    /** The value under "SingleCableUserBandMain". */
    public int getSingleCableUserBandMain() {
        return SingleCableUserBandMain;
    }

    /** Band frequency of the main tuner, 16 bits; in MHz, as this workstation has it. */
    public void setSingleCableBandFreqMain(int value) {
        SingleCableBandFreqMain = value;
        mark("SingleCableBandFreqMain");
    }

    /** The value under "SingleCableBandFreqMain". */
    public int getSingleCableBandFreqMain() {
        return SingleCableBandFreqMain;
    }

    /** User band of the sub tuner, 32 bits. */
    public void setSingleCableUserBandSub(int value) {
        SingleCableUserBandSub = value;
        mark("SingleCableUserBandSub");
    }

    /** The value under "SingleCableUserBandSub". */
    public int getSingleCableUserBandSub() {
        return SingleCableUserBandSub;
    }

    /** Band frequency of the sub tuner, 16 bits; in MHz, as this workstation has it. */
    public void setSingleCableBandFreqSub(int value) {
        SingleCableBandFreqSub = value;
        mark("SingleCableBandFreqSub");
    }

    /** The value under "SingleCableBandFreqSub". */
    public int getSingleCableBandFreqSub() {
        return SingleCableBandFreqSub;
    }
}
