package com.velotra.tv.tavro.services.channellist;

/** The named fields of a service record: where they are, and what they are called when printed. */
public enum ServiceField implements RecordField {
    RECORD_ID("record id", 0, 2),
    CHANNEL_ID("channel id", 4, 4),
    NETWORK_MASK("network flags", 8, 4),
    OPTION_MASK("option flags", 12, 4),
    OPTION_MASK_2("option flags 2", 16, 4),
    SERVICE_ID("service id", 24, 2),
    TSL_ID("transport stream list", 26, 2),
    TSL_RECORD_ID("transport stream record", 28, 2),
    NWL_ID("network list", 30, 2),
    NWL_RECORD_ID("network record", 32, 2),
    SATL_ID("satellite list", 34, 2),
    SATL_RECORD_ID("satellite record", 36, 2),
    BROADCAST_TYPE("broadcast type", 38, 1),
    SERVICE_TYPE("service type", 39, 1),
    NAME("name", 40, 65, Style.TEXT, Part.HEADER),

    SHORT_NAME("short name", 156, 17, Style.TEXT, Part.DVB_AND_DTMB),
    CA_SYSTEM_ID("CA system id", 174, 2, Style.HEX, Part.DVB_AND_DTMB),
    RUNNING_STATUS("running status", 176, 4, Part.DVB_AND_DTMB),
    LINKAGE_MASK("linkage descriptors", 180, 4, Style.HEX, Part.DVB_AND_DTMB),
    CA_REPLACEMENT_ON_ID("CA replacement network id", 184, 2, Part.DVB_AND_DTMB),
    CA_REPLACEMENT_TS_ID("CA replacement stream id", 186, 2, Part.DVB_AND_DTMB),
    CA_REPLACEMENT_SVC_ID("CA replacement service id", 188, 2, Part.DVB_AND_DTMB),
    SVC_REPLACEMENT_ON_ID("replacement network id", 190, 2, Part.DVB_AND_DTMB),
    SVC_REPLACEMENT_TS_ID("replacement stream id", 192, 2, Part.DVB_AND_DTMB),
    SVC_REPLACEMENT_SVC_ID("replacement service id", 194, 2, Part.DVB_AND_DTMB),
    EIT_SCHEDULE_ON_ID("EIT schedule network id", 196, 2, Part.DVB_AND_DTMB),
    EIT_SCHEDULE_TS_ID("EIT schedule stream id", 198, 2, Part.DVB_AND_DTMB),
    EIT_SCHEDULE_SVC_ID("EIT schedule service id", 200, 2, Part.DVB_AND_DTMB),
    HD_SIMULCAST_ON_ID("HD simulcast network id", 202, 2, Part.DVB_AND_DTMB),
    HD_SIMULCAST_TS_ID("HD simulcast stream id", 204, 2, Part.DVB_AND_DTMB),
    HD_SIMULCAST_SVC_ID("HD simulcast service id", 206, 2, Part.DVB_AND_DTMB),

    DVB_FREE_CA_MODE("free CA mode", 216, 1, Part.DVB),
    CI_HOST_SHUNNING("CI host shunning mode", 217, 1, Part.DVB),
    CI_TUNE_SERVICE("CI tune service", 224, 1, Part.DVB),
    EIT_PF_FLAG("EIT present/following", 259, 1, Part.DVB),
    LCN("logical channel number", 260, 2, Part.DVB),
    ORIGINAL_LCN("original LCN", 262, 2, Part.DVB),
    LCN_INDEX("LCN index", 264, 2, Part.DVB),
    DISPLAYING_FLAG("displaying-id flag", 271, 1, Part.DVB),
    DISPLAYING_TS_ID("displaying stream id", 272, 2, Part.DVB),
    DISPLAYING_SVC_ID("displaying service id", 274, 2, Part.DVB),
    COMPONENT_INFO("component descriptor", 280, 4, Style.HEX, Part.DVB),
    DVB_SDT_SERVICE_TYPE("SDT service type", 284, 1, Part.DVB),
    DAD_INFO("DAD information", 286, 33, Style.TEXT, Part.DVB),
    CATEGORY_MASK("category mask", 324, 4, Style.HEX, Part.DVB),
    PROFILE_NAME("service profile name", 328, 33, Style.TEXT, Part.DVB),
    REGION_LEVEL("target region level", 361, 1, Part.DVB),
    REGION_CODE_1("target region code 1", 362, 2, Part.DVB),
    REGION_CODE_2("target region code 2", 364, 2, Part.DVB),
    REGION_CODE_3("target region code 3", 366, 2, Part.DVB),
    STREAM_CONTENT("SDT stream content", 368, 1, Part.DVB),
    STREAM_CONTENT_EXT("SDT stream content extension", 369, 1, Part.DVB),
    STREAM_COMPONENT_TYPE("SDT stream component type", 370, 1, Part.DVB),

    TYPE_5_SDT_SERVICE_TYPE("SDT service type", 152, 1, Part.TYPE_5),

    DTMB_FREE_CA_MODE("free CA mode", 214, 1, Part.DTMB),
    DTMB_SDT_SERVICE_TYPE("SDT service type", 217, 1, Part.DTMB);

    private enum Part { HEADER, DVB_AND_DTMB, DVB, TYPE_5, DTMB }

    private final String label;
    private final int offset;
    private final int width;
    private final Style style;
    private final Part part;

    ServiceField(String label, int offset, int width) {
        this(label, offset, width, Part.HEADER);
    }

    ServiceField(String label, int offset, int width, Part part) {
        this(label, offset, width, Style.NUMBER, part);
    }

    ServiceField(String label, int offset, int width, Style style, Part part) {
        this.label = label;
        this.offset = offset;
        this.width = width;
        this.style = style;
        this.part = part;
    }

    /** Whether services of that broadcast type have the field. */
    public boolean belongsTo(int broadcastType) {
        return switch (part) {
            case HEADER -> true;
            case DVB_AND_DTMB ->
                    broadcastType == BroadcastType.DVB || broadcastType == BroadcastType.DTMB;
            case DVB -> broadcastType == BroadcastType.DVB;
            case TYPE_5 -> broadcastType == BroadcastType.TYPE_5;
            case DTMB -> broadcastType == BroadcastType.DTMB;
        };
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
