package com.velotra.tv.tavro.services.channellist;

/**
 * The named fields of a transport stream record. Tuner parameters are those of one medium; parameters of different
 * media share bytes.
 */
public enum TransportStreamField implements RecordField {
    RECORD_ID("record id", 0, 2, Style.NUMBER, 0),
    BROADCAST_TYPE("broadcast type", 4, 1, Style.NUMBER, 0),
    MEDIUM("medium", 5, 1, Style.NUMBER, 0),
    FLAGS("flags", 8, 4, Style.HEX, 0),
    NETWORK_ID("network id", 12, 2, Style.NUMBER, 0),
    ORIGINAL_NETWORK_ID("original network id", 14, 2, Style.NUMBER, 0),
    TRANSPORT_STREAM_ID("transport stream id", 16, 2, Style.NUMBER, 0),
    NWL_RECORD_ID("network record", 18, 2, Style.NUMBER, 0),
    NWL_ID("network list", 20, 1, Style.NUMBER, 0),
    FREQUENCY("frequency", 44, 4, Style.NUMBER, 0),
    TER_BANDWIDTH("bandwidth code", 48, 4, Style.NUMBER, TransportStreamRecord.TERRESTRIAL),
    TER_FEC_OUTER("outer FEC code", 52, 4, Style.NUMBER, TransportStreamRecord.TERRESTRIAL),
    TER_FEC_INNER("inner FEC code", 56, 4, Style.NUMBER, TransportStreamRecord.TERRESTRIAL),
    TER_MODULATION("modulation", 60, 4, Style.NUMBER, TransportStreamRecord.TERRESTRIAL),
    TER_HIERARCHY("hierarchy code", 64, 4, Style.NUMBER, TransportStreamRecord.TERRESTRIAL),
    TER_TRANSMISSION_MODE("transmission mode code", 76, 4, Style.NUMBER, TransportStreamRecord.TERRESTRIAL),
    TER_MODE("mode (1 T, 2 T2)", 120, 4, Style.NUMBER, TransportStreamRecord.TERRESTRIAL),
    TER_PLP_ID("PLP id", 124, 1, Style.NUMBER, TransportStreamRecord.TERRESTRIAL),
    TER_CODE_RATE("code rate code", 132, 4, Style.NUMBER, TransportStreamRecord.TERRESTRIAL),
    TER_GUARD_INTERVAL("guard interval code (T)", 144, 4, Style.NUMBER, TransportStreamRecord.TERRESTRIAL),
    TER_GUARD_INTERVAL_T2("guard interval code (T2)", 148, 4, Style.NUMBER, TransportStreamRecord.TERRESTRIAL),
    TER_PLP_GROUP_ID("PLP group id", 164, 1, Style.NUMBER, TransportStreamRecord.TERRESTRIAL),
    TER_SIGNAL_LEVEL("signal level", 165, 1, Style.NUMBER, TransportStreamRecord.TERRESTRIAL),
    TER_SIGNAL_QUALITY("signal quality", 168, 4, Style.NUMBER, TransportStreamRecord.TERRESTRIAL),
    CAB_SYMBOL_RATE("symbol rate", 48, 4, Style.NUMBER, TransportStreamRecord.CABLE),
    CAB_FEC_OUTER("outer FEC code", 52, 4, Style.NUMBER, TransportStreamRecord.CABLE),
    CAB_FEC_INNER("inner FEC code", 56, 4, Style.NUMBER, TransportStreamRecord.CABLE),
    CAB_MODULATION("modulation", 60, 4, Style.NUMBER, TransportStreamRecord.CABLE),
    CAB_MODE("mode (1 C, 2 C2)", 80, 4, Style.NUMBER, TransportStreamRecord.CABLE),
    CAB_SIGNAL_LEVEL("signal level", 92, 1, Style.NUMBER, TransportStreamRecord.CABLE),
    CAB_SIGNAL_QUALITY("signal quality", 96, 4, Style.NUMBER, TransportStreamRecord.CABLE),
    SAT_SYMBOL_RATE("symbol rate", 56, 4, Style.NUMBER, TransportStreamRecord.SATELLITE),
    SAT_FEC_INNER("inner FEC code", 68, 4, Style.NUMBER, TransportStreamRecord.SATELLITE),
    SAT_MODULATION("modulation", 72, 4, Style.NUMBER, TransportStreamRecord.SATELLITE),
    SAT_POLARIZATION("polarization", 76, 4, Style.NUMBER, TransportStreamRecord.SATELLITE),
    SAT_MODE("mode (1 S, 2 S2)", 92, 4, Style.NUMBER, TransportStreamRecord.SATELLITE),
    SAT_ROLL_OFF("roll-off code", 100, 4, Style.NUMBER, TransportStreamRecord.SATELLITE),
    SAT_CODE_RATE("code rate code", 108, 4, Style.NUMBER, TransportStreamRecord.SATELLITE),
    SAT_PILOT("pilots", 112, 1, Style.NUMBER, TransportStreamRecord.SATELLITE),
    SAT_SIGNAL_LEVEL("signal level", 121, 1, Style.NUMBER, TransportStreamRecord.SATELLITE),
    SAT_SIGNAL_QUALITY("signal quality", 124, 4, Style.NUMBER, TransportStreamRecord.SATELLITE),
    RC_KEY_ID("remote-control key id", 176, 1, Style.NUMBER, 0),
    NAME("name", 212, 41, Style.TEXT, 0),
    NETWORK_NAME("network name", 544, 32, Style.TEXT, 0),
    ALT_FREQUENCY_1("alternate frequency 1", 576, 4, Style.NUMBER, 0),
    ALT_BANDWIDTH_1("alternate bandwidth code 1", 580, 4, Style.NUMBER, 0),
    ALT_FREQUENCY_2("alternate frequency 2", 584, 4, Style.NUMBER, 0),
    ALT_BANDWIDTH_2("alternate bandwidth code 2", 588, 4, Style.NUMBER, 0),
    ALT_FREQUENCY_3("alternate frequency 3", 592, 4, Style.NUMBER, 0),
    ALT_BANDWIDTH_3("alternate bandwidth code 3", 596, 4, Style.NUMBER, 0),
    ALT_FREQUENCY_4("alternate frequency 4", 600, 4, Style.NUMBER, 0),
    ALT_BANDWIDTH_4("alternate bandwidth code 4", 604, 4, Style.NUMBER, 0),
    ALT_FREQUENCY_5("alternate frequency 5", 608, 4, Style.NUMBER, 0),
    ALT_BANDWIDTH_5("alternate bandwidth code 5", 612, 4, Style.NUMBER, 0),
    FLAGS_EX("more flags", 704, 4, Style.HEX, 0),
    TSL_ID("list", 708, 2, Style.NUMBER, 0),
    SATL_ID("satellite list", 712, 2, Style.NUMBER, 0),
    SATL_RECORD_ID("satellite record", 714, 2, Style.NUMBER, 0);

    private final String label;
    private final int offset;
    private final int width;
    private final Style style;
    private final int medium; // 0: every medium has the field

    TransportStreamField(String label, int offset, int width, Style style, int medium) {
        this.label = label;
        this.offset = offset;
        this.width = width;
        this.style = style;
        this.medium = medium;
    }

    /** Whether transport streams of that medium have the field. */
    public boolean belongsTo(int streamMedium) {
        return medium == 0 || medium == streamMedium;
    }

    @Override
    public String label() {
        return label;
    }

    @Override
    public int offset() {
        return offset;
    }

    @Override
    public int width() {
        return width;
    }

    @Override
    public Style style() {
        return style;
    }
}
