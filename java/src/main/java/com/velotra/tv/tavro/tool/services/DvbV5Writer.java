package com.velotra.tv.tavro.tool.services;

import com.velotra.tv.tavro.tool.input.Tally;
import com.velotra.tv.tavro.tool.transponders.Transponder;
import java.io.IOException;
import java.util.List;

/** Writes transponders and services as DVBv5 files, which {@code DvbV5File} reads. */
public final class DvbV5Writer {
    private DvbV5Writer() {}

    /** Writes a scan table. */
    public static void writeTransponders(List<Transponder> transponders, Appendable out, Tally lost)
            throws IOException {
        for (Transponder transponder : transponders) {
            heading(transponder.name(), "CHANNEL", out, lost);
            parameters(transponder, out);
            out.append('\n');
        }
    }

    /** Writes a channel list. */
    public static void writeServices(List<Service> services, Appendable out, Tally lost) throws IOException {
        for (Service service : services) {
            heading(service.name(), "-", out, lost);
            if (service.name().isEmpty()) {
                lost.count("name"); // it gets one
            }
            parameter("SERVICE_ID", service.serviceId(), out);
            if (service.networkId() != 0 || service.transportStreamId() != 0) {
                parameter("NETWORK_ID", service.networkId(), out);
                parameter("TRANSPORT_ID", service.transportStreamId(), out);
            }
            if (service.number() != 0) {
                parameter("VCHANNEL", service.number(), out);
            }
            if (service.hasVideo()) {
                parameter("VIDEO_PID", 0x1FFF, out);
            }
            parameters(service.transponder(), out);
            out.append('\n');
        }
    }

    private static void heading(String name, String unnamed, Appendable out, Tally lost) throws IOException {
        String written = name.replaceAll("\\p{Cc}", " ").replaceAll("\\](?=\\s*#)", ")").strip();
        // A replacement character stands for bytes that are not a text.
        if (!written.equals(name) || name.indexOf('\uFFFD') >= 0 || written.equalsIgnoreCase("CHANNEL")) {
            lost.count("name");
        }
        out.append('[').append(written.isEmpty() ? unnamed : written).append("]\n");
    }

    private static void parameters(Transponder transponder, Appendable out) throws IOException {
        for (var parameter : transponder.values().entrySet()) {
            out.append('\t').append(parameter.getKey()).append(" = ").append(parameter.getValue()).append('\n');
        }
    }

    private static void parameter(String key, int value, Appendable out) throws IOException {
        out.append('\t').append(key).append(" = ").append(Integer.toString(value)).append('\n');
    }
}
