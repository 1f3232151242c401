package com.velotra.tv.tavro.services.channellist;

import java.nio.ByteBuffer;
import java.util.Arrays;
import java.util.List;

/** A view of the 724 bytes of one transport stream record, decoded by medium. */
public final class TransportStreamRecord extends RecordView {
    /** Bytes of one record. */
    public static final int SIZE = 724;

    /** Values of {@link #medium()}. */
    public static final int TERRESTRIAL = 1;

    public static final int CABLE = 2;
    public static final int SATELLITE = 3;

    /**
     * Views {@code record} without copying it.
     *
     * @throws IllegalArgumentException when it is not 724 bytes long
     */
    public TransportStreamRecord(byte[] record) {
        super(one(record, SIZE, "transport stream"));
    }

    private TransportStreamRecord(ByteBuffer bytes) {
        super(bytes);
    }

    /**
     * Views records that stand one behind the other.
     *
     * @throws IllegalArgumentException when the last one is incomplete
     */
    public static List<TransportStreamRecord> listOf(byte[] records) {
        return many(records, SIZE, "transport stream", TransportStreamRecord::new);
    }

    /** The record's id within its list. */
    public int recordId() {
        return number(TransportStreamField.RECORD_ID);
    }

    /** 1 terrestrial, 2 cable, 3 satellite. */
    public int medium() {
        return number(TransportStreamField.MEDIUM);
    }

    /** Frequency, in the unit in which it was stored. */
    public long frequency() {
        return value(TransportStreamField.FREQUENCY);
    }

    /** transport_stream_id. */
    public int transportStreamId() {
        return number(TransportStreamField.TRANSPORT_STREAM_ID);
    }

    /** original_network_id. */
    public int originalNetworkId() {
        return number(TransportStreamField.ORIGINAL_NETWORK_ID);
    }

    /** The transport stream's name. */
    public String name() {
        return text(TransportStreamField.NAME);
    }

    /** The network record that the stream belongs to. */
    public RecordId network() {
        return new RecordId(number(TransportStreamField.NWL_ID), number(TransportStreamField.NWL_RECORD_ID));
    }

    /** The satellite record that the stream is received from. */
    public RecordId satellite() {
        return new RecordId(number(TransportStreamField.SATL_ID), number(TransportStreamField.SATL_RECORD_ID));
    }

    /** The mode word of the medium: 1 or 2 for DVB-T or T2, C or C2, S or S2; 0 when it is not known. */
    public int mode() {
        return number(switch (medium()) {
            case CABLE -> TransportStreamField.CAB_MODE;
            case SATELLITE -> TransportStreamField.SAT_MODE;
            default -> TransportStreamField.TER_MODE;
        });
    }

    @Override
    List<TransportStreamField> fields() {
        return Arrays.stream(TransportStreamField.values()).filter(field -> field.belongsTo(medium())).toList();
    }

    @Override
    public String toString() {
        return "transport stream " + recordId() + " at " + frequency();
    }
}
