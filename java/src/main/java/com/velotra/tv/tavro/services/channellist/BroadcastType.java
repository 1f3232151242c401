package com.velotra.tv.tavro.services.channellist;

/** Values of the broadcast type of services and transport streams. The natives define no names for others. */
public final class BroadcastType {
    /** DVB. */
    public static final int DVB = 2;

    /** A system whose services have a service type of their own and no other specific values that are known. */
    public static final int TYPE_5 = 5;

    /** DTMB. */
    public static final int DTMB = 7;

    private BroadcastType() {}
}
