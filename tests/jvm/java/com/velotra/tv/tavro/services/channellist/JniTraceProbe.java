package com.velotra.tv.tavro.services.channellist;

import java.util.ArrayList;
import java.util.List;

/** A program for {@link JniTraceTest}: a few calls of natives, of which one throws. */
final class JniTraceProbe {
    private JniTraceProbe() {}

    /** Prints what the natives return. With an argument, nothing throws. */
    public static void main(String[] arguments) {
        VltTvNetworkList networks = VltTvNetworkList.getInstance();
        System.out.println(networks.native_open(1));
        VltTvNetworkInfoBase network = new VltTvNetworkInfoBase();
        network.setNetworkName("Z\u00fcrich \"1\"\n");
        System.out.println(networks.nativeAdd(1, network));
        List<String> keys = new ArrayList<>(List.of("NetworkName"));
        System.out.println(networks.native_getInfo("1,1", keys).getNetworkName().length());
        VltTvNetworkInfoBase throwing = Throwing.network(arguments.length == 0 ? "NetworkVersion" : "");
        throwing.setNwlIdNwlRecId("1,1");
        try {
            System.out.println(networks.native_updateInfo(1, throwing));
        } catch (Throwing.Thrown e) {
            System.out.println("threw " + e.getMessage());
        }
        VltTvTransportStreamList streams = VltTvTransportStreamList.getInstance();
        System.out.println(streams.native_getInfoList(1));
    }
}
