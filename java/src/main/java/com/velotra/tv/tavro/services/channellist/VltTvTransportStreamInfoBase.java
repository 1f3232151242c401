package com.velotra.tv.tavro.services.channellist;

/**
 * The values of one transport stream that are to be written; {@link TransportStreamRecord} is what is read. See
 * {@link KeyedValues} for the rules.
 *
 * <p>Where a tuning value is stored depends on the medium: the one that is set here, else the medium of the stored
 * record.
 */
public class VltTvTransportStreamInfoBase extends KeyedValues {
    // Identity.
    protected String tslIdTslRecId;
    protected int broadcastType;
    protected int broadcastMedium;
    protected int networkId;
    protected int originalNetworkId;
    protected int transportStreamId;
    protected String tslNwlRecId;
    protected String tslSatlRecId;
    protected String networkName;
    protected String acTsName;
    protected int barkerChannel;
    protected int isHomeTransponder;
    protected int rcKeyId;

    // Tuning.
    protected int frequency;
    protected int bandwidth;
    protected int broadcastMode;
    protected int standard;
    protected int plpId;
    protected int plpGroupId;
    protected int fecInner;
    protected int fecOuter;
    protected int modulation;
    protected int guardInterval;
    protected int transmissionMode;
    protected int hierarchy;
    protected int symbolRate;
    protected int pilotInsert;
    protected int rollOff;
    protected int codeRate;
    protected int tunerPolarizaTion;
    protected int signalStrength;
    protected int signalQuality;
    protected AlternateFrequencyInfoBase[] alternateFrequencyInfoList;

    /**
     * An alternate frequency. The natives read the components by their names.
     *
     * @param alternateFreq frequency in the unit of the frequency of the stream
     * @param alternateBandwidth bandwidth in kHz
     */
    public record AlternateFrequencyInfoBase(int alternateFreq, int alternateBandwidth) {}

    /** Creates an object without values. */
    public VltTvTransportStreamInfoBase() {}

    /** Returns a new object for an update of the record {@code id}, of which only the record id counts. */
    public static VltTvTransportStreamInfoBase forRecord(RecordId id) {
        return new VltTvTransportStreamInfoBase().setTslIdTslRecId(id);
    }

    /** Returns whether {@code info} carries a value under {@code key}. Called by the natives. */
    public boolean isContainsKey(VltTvTransportStreamInfoBase info, String key) {
        return info.hasKey(key);
    }

    @Override
    String identifier() {
        return tslIdTslRecId;
    }

    // Identity.

    /** The record to update; its list part is ignored. */
    public VltTvTransportStreamInfoBase setTslIdTslRecId(RecordId id) {
        tslIdTslRecId = id == null ? null : id.toString();
        mark("TslIdTslRecId");
        return this;
    }

    /** Broadcast system, 8 bits; see {@link BroadcastType}. */
    public VltTvTransportStreamInfoBase setBroadcastType(int value) {
        broadcastType = value;
        mark("BroadcastType");
        return this;
    }

    /** 1 terrestrial, 2 cable, 3 satellite; decides where tuner parameters are stored. */
    public VltTvTransportStreamInfoBase setBroadcastMedium(int value) {
        broadcastMedium = value;
        mark("BroadcastMedium");
        return this;
    }

    /** network_id, 16 bits (ETSI EN 300 468). */
    public VltTvTransportStreamInfoBase setNetworkId(int value) {
        networkId = value;
        mark("NetworkId");
        return this;
    }

    /** original_network_id, 16 bits. */
    public VltTvTransportStreamInfoBase setOriginalNetworkId(int value) {
        originalNetworkId = value;
        mark("OriginalNetworkId");
        return this;
    }

    /** transport_stream_id, 16 bits. */
    public VltTvTransportStreamInfoBase setTransportStreamId(int value) {
        transportStreamId = value;
        mark("TransportStreamId");
        return this;
    }

    /** The network record that the stream belongs to; the list part is cut to 8 bits. */
    public VltTvTransportStreamInfoBase setTslNwlRecId(RecordId id) {
        tslNwlRecId = id == null ? null : id.toString();
        mark("TslNwlRecId");
        return this;
    }

    /** The satellite record that the stream is received from. */
    public VltTvTransportStreamInfoBase setTslSatlRecId(RecordId id) {
        tslSatlRecId = id == null ? null : id.toString();
        mark("TslSatlRecId");
        return this;
    }

    /** Network name; stored when it has at most 31 bytes of modified UTF-8. */
    public VltTvTransportStreamInfoBase setNetworkName(String text) {
        networkName = text;
        mark("NetworkName");
        return this;
    }

    /** Transport stream name; stored when it has at most 40 bytes of modified UTF-8. */
    public VltTvTransportStreamInfoBase setAcTsName(String text) {
        acTsName = text;
        mark("AcTsName");
        return this;
    }

    /** The stream carries a barker channel. */
    public VltTvTransportStreamInfoBase setBarkerChannel(boolean on) {
        barkerChannel = on ? 1 : 0;
        mark("BarkerChannel");
        return this;
    }

    /** The stream is the home transponder. */
    public VltTvTransportStreamInfoBase setIsHomeTransponder(boolean on) {
        isHomeTransponder = on ? 1 : 0;
        mark("IsHomeTransponder");
        return this;
    }

    /** Remote-control key id, 8 bits. */
    public VltTvTransportStreamInfoBase setRcKeyId(int value) {
        rcKeyId = value;
        mark("RcKeyId");
        return this;
    }

    // Tuning.

    /** Frequency, in the unit that the lists of the TV are kept in; nothing for an unknown medium. */
    public VltTvTransportStreamInfoBase setFrequency(int value) {
        frequency = value;
        mark("Frequency");
        return this;
    }

    /** Bandwidth in kHz: 1712, 5000, 6000, 7000, 8000 or 10000. */
    public VltTvTransportStreamInfoBase setBandwidth(int value) {
        bandwidth = value;
        mark("Bandwidth");
        return this;
    }

    /** Mode word of the medium: 1 or 2 for DVB-T or T2, C or C2, S or S2. */
    public VltTvTransportStreamInfoBase setBroadcastMode(int value) {
        broadcastMode = value;
        mark("BroadcastMode");
        return this;
    }

    /** Terrestrial 3 T, 4 T2; cable 1 C, 2 C2; satellite 5 S, 6 S2, by the medium set here. */
    public VltTvTransportStreamInfoBase setStandard(int value) {
        standard = value;
        mark("Standard");
        return this;
    }

    /** PLP id, 8 bits. */
    public VltTvTransportStreamInfoBase setPlpId(int value) {
        plpId = value;
        mark("PlpId");
        return this;
    }

    /** PLP group id, 8 bits. */
    public VltTvTransportStreamInfoBase setPlpGroupId(int value) {
        plpGroupId = value;
        mark("PlpGroupId");
        return this;
    }

    /** Inner FEC, 1 to 9; taken to be FEC_inner of the delivery system descriptors (EN 300 468, clause 6.2.13). */
    public VltTvTransportStreamInfoBase setFecInner(int value) {
        fecInner = value;
        mark("FecInner");
        return this;
    }

    /** Outer FEC, 1 or 2; taken to be FEC_outer of the delivery system descriptors (EN 300 468, clause 6.2.13). */
    public VltTvTransportStreamInfoBase setFecOuter(int value) {
        fecOuter = value;
        mark("FecOuter");
        return this;
    }

    /** Modulation, 1 to 28. */
    public VltTvTransportStreamInfoBase setModulation(int value) {
        modulation = value;
        mark("Modulation");
        return this;
    }

    /** Guard interval, 2 to 5 for T and 2 to 8 for T2. */
    public VltTvTransportStreamInfoBase setGuardInterval(int value) {
        guardInterval = value;
        mark("GuardInterval");
        return this;
    }

    /** Transmission mode, 2 to 9. */
    public VltTvTransportStreamInfoBase setTransmissionMode(int value) {
        transmissionMode = value;
        mark("TransmissionMode");
        return this;
    }

    /** Hierarchy, 4 to 7. */
    public VltTvTransportStreamInfoBase setHierarchy(int value) {
        hierarchy = value;
        mark("Hierarchy");
        return this;
    }

    /** Symbol rate of cable and satellite. */
    public VltTvTransportStreamInfoBase setSymbolRate(int value) {
        symbolRate = value;
        mark("SymbolRate");
        return this;
    }

    /** Pilots, 8 bits. */
    public VltTvTransportStreamInfoBase setPilotInsert(int value) {
        pilotInsert = value;
        mark("PilotInsert");
        return this;
    }

    /** Roll-off, 3 or 4. */
    public VltTvTransportStreamInfoBase setRollOff(int value) {
        rollOff = value;
        mark("RollOff");
        return this;
    }

    /** Code rate: of satellite 2 to 11, of terrestrial 2 to 9. */
    public VltTvTransportStreamInfoBase setCodeRate(int value) {
        codeRate = value;
        mark("CodeRate");
        return this;
    }

    /** Polarization; the spelling is the key's own. */
    public VltTvTransportStreamInfoBase setTunerPolarizaTion(int value) {
        tunerPolarizaTion = value;
        mark("TunerPolarizaTion");
        return this;
    }

    /** Signal strength, 8 bits. */
    public VltTvTransportStreamInfoBase setSignalStrength(int value) {
        signalStrength = value;
        mark("SignalStrength");
        return this;
    }

    /** Signal quality. */
    public VltTvTransportStreamInfoBase setSignalQuality(int value) {
        signalQuality = value;
        mark("SignalQuality");
        return this;
    }

    /** Up to five alternate frequencies; of a longer array nothing is stored. */
    public VltTvTransportStreamInfoBase setAlternateFrequencyInfoList(AlternateFrequencyInfoBase... frequencies) {
        alternateFrequencyInfoList = frequencies;
        mark("AlternateFrequencyInfoList");
        return this;
    }
}
