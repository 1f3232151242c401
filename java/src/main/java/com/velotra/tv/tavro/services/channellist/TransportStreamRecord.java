package com.velotra.tv.tavro.services.channellist;

import java.nio.ByteBuffer;
import java.util.Arrays;
import java.util.List;

/** A view of the 724 bytes of one transport stream record, decoded by medium. */
public final class TransportStreamRecord extends RecordView<TransportStreamField> {
    /** Bytes of one record. */
    public static final int SIZE = 724;

    /** Medium: terrestrial. */
    public static final int TERRESTRIAL = 1;

    /** Medium: cable. */
    public static final int CABLE = 2;

    /** Medium: satellite. */
    public static final int SATELLITE = 3;

    /**
     * Views {@code record} without copying it.
     *
     * @throws IllegalArgumentException if it is not 724 bytes long
     */
    public TransportStreamRecord(byte[] record) {
        super(one(record, SIZE, "transport stream"));
    }

    private TransportStreamRecord(ByteBuffer bytes) {
        super(bytes);
    }

    /**
     * Views consecutive records.
     *
     * @throws IllegalArgumentException if the last one is incomplete
     */
    public static List<TransportStreamRecord> listOf(byte[] records) {
        return many(records, SIZE, "transport stream", TransportStreamRecord::new);
    }

    /** Returns the id of the record within its list. */
    public int recordId() {
        return number(TransportStreamField.RECORD_ID);
    }

    /** Returns the medium: {@link #TERRESTRIAL}, {@link #CABLE} or {@link #SATELLITE}. */
    public int medium() {
        return number(TransportStreamField.MEDIUM);
    }

    /** Returns the frequency, in the unit in which it was stored. */
    public long frequency() {
        return value(TransportStreamField.FREQUENCY);
    }

    /** Returns the transport_stream_id. */
    public int transportStreamId() {
        return number(TransportStreamField.TRANSPORT_STREAM_ID);
    }

    /** Returns the original_network_id. */
    public int originalNetworkId() {
        return number(TransportStreamField.ORIGINAL_NETWORK_ID);
    }

    /** Returns the name of the transport stream. */
    public String name() {
        return text(TransportStreamField.NAME);
    }

    /** Returns the network record that the stream belongs to; 0,0 for none. */
    public RecordId network() {
        return new RecordId(number(TransportStreamField.NWL_ID), number(TransportStreamField.NWL_RECORD_ID));
    }

    /** Returns the satellite record that the stream is received from; 0,0 for none. */
    public RecordId satellite() {
        return new RecordId(number(TransportStreamField.SATL_ID), number(TransportStreamField.SATL_RECORD_ID));
    }

    /** Returns the mode of the medium: 1 for DVB-T, C or S, 2 for T2, C2 or S2, 0 if it is not known. */
    public int mode() {
        return switch (medium()) {
            case CABLE -> number(TransportStreamField.CAB_MODE);
            case SATELLITE -> number(TransportStreamField.SAT_MODE);
            default -> number(TransportStreamField.TER_MODE);
        };
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
