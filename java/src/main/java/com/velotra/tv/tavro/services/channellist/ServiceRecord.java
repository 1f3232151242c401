package com.velotra.tv.tavro.services.channellist;

import java.nio.ByteBuffer;
import java.util.Arrays;
import java.util.List;
import java.util.Set;
import java.util.TreeSet;

/** A view of the 552 bytes of one service record, decoded field by field. */
public final class ServiceRecord extends RecordView {
    /** Bytes of one record. */
    public static final int SIZE = 552;

    /** Values of {@link #broadcastType()} whose specific part is known. */
    public static final int BROADCAST_DVB = 2;

    public static final int BROADCAST_TYPE_5 = 5;
    public static final int BROADCAST_DTMB = 7;

    /**
     * Views {@code record} without copying it.
     *
     * @throws IllegalArgumentException when it is not 552 bytes long
     */
    public ServiceRecord(byte[] record) {
        super(one(record, SIZE, "service"));
    }

    private ServiceRecord(ByteBuffer bytes) {
        super(bytes);
    }

    /**
     * Views records that stand one behind the other.
     *
     * @throws IllegalArgumentException when the last one is incomplete
     */
    public static List<ServiceRecord> listOf(byte[] records) {
        return many(records, SIZE, "service", ServiceRecord::new);
    }

    /** The record's id within its list. */
    public int recordId() {
        return number(ServiceField.RECORD_ID);
    }

    /** The 32-bit channel id. */
    public long channelId() {
        return value(ServiceField.CHANNEL_ID);
    }

    /** The major channel number inside the channel id, as DVB and DTMB services keep it: bits 18 and up. */
    public int majorChannelNumber() {
        return (int) (channelId() >>> 18);
    }

    /** service_id (ETSI EN 300 468). */
    public int serviceId() {
        return number(ServiceField.SERVICE_ID);
    }

    /** The service's name. */
    public String name() {
        return text(ServiceField.NAME);
    }

    /** Broadcast system: 2 DVB, 7 DTMB, or 3 and 5. */
    public int broadcastType() {
        return number(ServiceField.BROADCAST_TYPE);
    }

    /** Service type: 1, 4, 7 audio and video; 2, 5, 8 audio. */
    public int serviceType() {
        return number(ServiceField.SERVICE_TYPE);
    }

    /** The transport stream record that carries the service. */
    public RecordId transportStream() {
        return new RecordId(number(ServiceField.TSL_ID), number(ServiceField.TSL_RECORD_ID));
    }

    /** The network record of the service. */
    public RecordId network() {
        return new RecordId(number(ServiceField.NWL_ID), number(ServiceField.NWL_RECORD_ID));
    }

    /** The satellite record that the service is received from. */
    public RecordId satellite() {
        return new RecordId(number(ServiceField.SATL_ID), number(ServiceField.SATL_RECORD_ID));
    }

    /** List id of {@link #transportStream()}. */
    public int tslId() {
        return number(ServiceField.TSL_ID);
    }

    /** Record id of {@link #transportStream()}. */
    public int tslRecordId() {
        return number(ServiceField.TSL_RECORD_ID);
    }

    /** List id of {@link #network()}. */
    public int nwlId() {
        return number(ServiceField.NWL_ID);
    }

    /** Record id of {@link #network()}. */
    public int nwlRecordId() {
        return number(ServiceField.NWL_RECORD_ID);
    }

    /** List id of {@link #satellite()}. */
    public int satlId() {
        return number(ServiceField.SATL_ID);
    }

    /** Record id of {@link #satellite()}. */
    public int satlRecordId() {
        return number(ServiceField.SATL_RECORD_ID);
    }

    /** Short name of a DVB or DTMB service. */
    public String shortName() {
        return text(ServiceField.SHORT_NAME);
    }

    /** CA_system_id of a DVB or DTMB service. */
    public int caSystemId() {
        return number(ServiceField.CA_SYSTEM_ID);
    }

    /** Logical channel number of a DVB service; 0 when it has none. */
    public int logicalChannelNumber() {
        return broadcastType() == BROADCAST_DVB ? number(ServiceField.LCN) : 0;
    }

    /** free_CA_mode, at the place that the broadcast type has it. */
    public int freeCaMode() {
        return number(broadcastType() == BROADCAST_DTMB ? ServiceField.DTMB_FREE_CA_MODE : ServiceField.DVB_FREE_CA_MODE);
    }

    /** service_type of the service descriptor, at the place that the broadcast type has it. */
    public int sdtServiceType() {
        return number(switch (broadcastType()) {
            case BROADCAST_DTMB -> ServiceField.DTMB_SDT_SERVICE_TYPE;
            case BROADCAST_TYPE_5 -> ServiceField.TYPE_5_SDT_SERVICE_TYPE;
            default -> ServiceField.DVB_SDT_SERVICE_TYPE;
        });
    }

    /** Names of the network flags that are set. */
    public Set<String> networkFlags() {
        return flags(ServiceField.NETWORK_MASK);
    }

    /** Names of the option flags that are set, of both option words. */
    public Set<String> optionFlags() {
        Set<String> flags = flags(ServiceField.OPTION_MASK);
        flags.addAll(flags(ServiceField.OPTION_MASK_2));
        return flags;
    }

    private Set<String> flags(RecordField word) {
        Set<String> names = new TreeSet<>();
        for (ServiceFlag flag : ServiceFlag.values()) {
            if (flag.word == word && (value(word) & flag.bit) != 0) {
                names.add(flag.key);
            }
        }
        return names;
    }

    /** Whether a flag is set. */
    public boolean has(ServiceFlag flag) {
        return (value(flag.word) & flag.bit) != 0;
    }

    /** Whether the service is scrambled. */
    public boolean scrambled() {
        return has(ServiceFlag.SCRAMBLED);
    }

    /** Whether the service is visible. */
    public boolean visible() {
        return has(ServiceFlag.VISIBLE);
    }

    @Override
    List<ServiceField> fields() {
        return Arrays.stream(ServiceField.values()).filter(field -> field.belongsTo(broadcastType())).toList();
    }

    @Override
    String format(RecordField field) {
        if (field == ServiceField.CHANNEL_ID) {
            return String.format("0x%08x", channelId()) + channelNumbers();
        }
        if (field == ServiceField.NETWORK_MASK || field == ServiceField.OPTION_MASK || field == ServiceField.OPTION_MASK_2) {
            return String.format("0x%08x %s", value(field), String.join(" ", flags(field)));
        }
        return super.format(field);
    }

    /** The channel numbers inside the channel id, where its layout is known. */
    private String channelNumbers() {
        return switch (broadcastType()) {
            case BROADCAST_DVB, BROADCAST_DTMB -> " (major " + majorChannelNumber() + ')';
            case BROADCAST_TYPE_5 ->
                    " (major " + (channelId() >>> 18 & 0xFF) + ", minor " + (channelId() >>> 8 & 0xFF) + ')';
            default -> "";
        };
    }

    @Override
    public String toString() {
        return "service " + recordId() + " \"" + Printable.of(name()) + '"';
    }
}
