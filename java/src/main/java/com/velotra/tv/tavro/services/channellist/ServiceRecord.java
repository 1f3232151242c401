package com.velotra.tv.tavro.services.channellist;

import java.nio.ByteBuffer;
import java.util.Arrays;
import java.util.EnumSet;
import java.util.List;
import java.util.Set;
import java.util.stream.Collectors;

/** A view of the 552 bytes of one service record, decoded field by field. */
public final class ServiceRecord extends RecordView<ServiceField> {
    /** Bytes of one record. */
    public static final int SIZE = 552;

    private static final Set<ServiceField> FLAG_WORDS =
            EnumSet.of(ServiceField.NETWORK_MASK, ServiceField.OPTION_MASK, ServiceField.OPTION_MASK_2);

    /**
     * Views {@code record} without copying it.
     *
     * @throws IllegalArgumentException if it is not 552 bytes long
     */
    public ServiceRecord(byte[] record) {
        super(one(record, SIZE, "service"));
    }

    private ServiceRecord(ByteBuffer bytes) {
        super(bytes);
    }

    /**
     * Views consecutive records.
     *
     * @throws IllegalArgumentException if the last one is incomplete
     */
    public static List<ServiceRecord> listOf(byte[] records) {
        return many(records, SIZE, "service", ServiceRecord::new);
    }

    /** Returns the id of the record within its list. */
    public int recordId() {
        return number(ServiceField.RECORD_ID);
    }

    /** Returns the 32-bit channel id. */
    public long channelId() {
        return value(ServiceField.CHANNEL_ID);
    }

    /** Returns the major channel number inside the channel id, where DVB and DTMB services have it: bits 18 and up. */
    public int majorChannelNumber() {
        return (int) (channelId() >>> 18);
    }

    /** Returns the service_id (ETSI EN 300 468). */
    public int serviceId() {
        return number(ServiceField.SERVICE_ID);
    }

    /** Returns the name of the service. */
    public String name() {
        return text(ServiceField.NAME);
    }

    /** Returns the broadcast system; see {@link BroadcastType}. */
    public int broadcastType() {
        return number(ServiceField.BROADCAST_TYPE);
    }

    /** Returns the service type: 1, 4, 7 audio and video; 2, 5, 8 audio. */
    public int serviceType() {
        return number(ServiceField.SERVICE_TYPE);
    }

    /** Returns the transport stream record that carries the service; 0,0 for none. */
    public RecordId transportStream() {
        return new RecordId(number(ServiceField.TSL_ID), number(ServiceField.TSL_RECORD_ID));
    }

    /** Returns the network record of the service; 0,0 for none. */
    public RecordId network() {
        return new RecordId(number(ServiceField.NWL_ID), number(ServiceField.NWL_RECORD_ID));
    }

    /** Returns the satellite record that the service is received from; 0,0 for none. */
    public RecordId satellite() {
        return new RecordId(number(ServiceField.SATL_ID), number(ServiceField.SATL_RECORD_ID));
    }

    /** Returns the short name of a DVB or DTMB service. */
    public String shortName() {
        return text(ServiceField.SHORT_NAME);
    }

    /** Returns the CA_system_id of a DVB or DTMB service. */
    public int caSystemId() {
        return number(ServiceField.CA_SYSTEM_ID);
    }

    /** Returns the logical channel number of a DVB service; 0 if it has none. */
    public int logicalChannelNumber() {
        return broadcastType() == BroadcastType.DVB ? number(ServiceField.LCN) : 0;
    }

    /** Returns free_CA_mode, from the field of the broadcast type. */
    public int freeCaMode() {
        return number(broadcastType() == BroadcastType.DTMB
                ? ServiceField.DTMB_FREE_CA_MODE
                : ServiceField.DVB_FREE_CA_MODE);
    }

    /** Returns service_type of the service descriptor, from the field of the broadcast type. */
    public int sdtServiceType() {
        return switch (broadcastType()) {
            case BroadcastType.DTMB -> number(ServiceField.DTMB_SDT_SERVICE_TYPE);
            case BroadcastType.TYPE_5 -> number(ServiceField.TYPE_5_SDT_SERVICE_TYPE);
            default -> number(ServiceField.DVB_SDT_SERVICE_TYPE);
        };
    }

    /** Returns the flags that are set, of all three flag words. */
    public Set<ServiceFlag> flags() {
        Set<ServiceFlag> flags = EnumSet.allOf(ServiceFlag.class);
        flags.removeIf(flag -> !has(flag));
        return flags;
    }

    /** Returns whether a flag is set. */
    public boolean has(ServiceFlag flag) {
        return (value(flag.word) & flag.bit) != 0;
    }

    /** Returns whether the service is scrambled. */
    public boolean scrambled() {
        return has(ServiceFlag.SCRAMBLED);
    }

    /** Returns whether the service is visible. */
    public boolean visible() {
        return has(ServiceFlag.VISIBLE);
    }

    @Override
    List<ServiceField> fields() {
        return Arrays.stream(ServiceField.values()).filter(field -> field.belongsTo(broadcastType())).toList();
    }

    @Override
    String format(ServiceField field) {
        if (field == ServiceField.CHANNEL_ID) {
            String numbers = channelNumbers();
            return String.format("0x%08x", channelId()) + (numbers.isEmpty() ? "" : " (" + numbers + ")");
        }
        if (FLAG_WORDS.contains(field)) {
            return String.format("0x%08x %s", value(field), keysOfFlags(field));
        }
        return super.format(field);
    }

    /** The keys of the flags that are set in one flag word, in alphabetical order. */
    private String keysOfFlags(ServiceField word) {
        return flags().stream().filter(flag -> flag.word == word).map(ServiceFlag::key).sorted()
                .collect(Collectors.joining(" "));
    }

    /** Returns the channel numbers inside the channel id, as in "major 7"; empty where its bits are not known. */
    public String channelNumbers() {
        return switch (broadcastType()) {
            case BroadcastType.DVB, BroadcastType.DTMB -> "major " + majorChannelNumber();
            case BroadcastType.TYPE_5 ->
                    "major " + (channelId() >>> 18 & 0xFF) + ", minor " + (channelId() >>> 8 & 0xFF);
            default -> "";
        };
    }

    @Override
    public String toString() {
        return "service " + recordId() + " \"" + Printable.of(name()) + '"';
    }
}
