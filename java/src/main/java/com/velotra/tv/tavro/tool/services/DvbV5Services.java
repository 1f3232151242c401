package com.velotra.tv.tavro.tool.services;

import com.velotra.tv.tavro.tool.input.Malformed;
import com.velotra.tv.tavro.tool.input.SourceText;
import com.velotra.tv.tavro.tool.transponders.DvbV5File;
import com.velotra.tv.tavro.tool.transponders.Transponder;
import java.util.ArrayList;
import java.util.LinkedHashMap;
import java.util.List;
import java.util.Map;

/** The services of a DVBv5 file: named blocks with a {@code SERVICE_ID}. */
public final class DvbV5Services {
    // Keys of the service; all others are tuning parameters.
    private static final String SERVICE_KEYS = "SERVICE_ID|NETWORK_ID|TRANSPORT_ID|VIDEO_PID|AUDIO_PID|PID_.*";

    private final List<Service> services = new ArrayList<>();
    private final List<Malformed> malformed = new ArrayList<>();

    private DvbV5Services() {}

    /** Reads the services of a file. */
    public static DvbV5Services of(DvbV5File file) {
        DvbV5Services found = new DvbV5Services();
        for (DvbV5File.Block block : file.blocks()) {
            if (block.isService()) {
                try {
                    found.services.add(service(block, file.position()));
                } catch (IllegalArgumentException e) {
                    found.malformed.add(new Malformed(block.place(), e.getMessage()));
                }
            }
        }
        return found;
    }

    /** The services. */
    public List<Service> services() {
        return services;
    }

    /** The malformed services. */
    public List<Malformed> malformed() {
        return malformed;
    }

    private static Service service(DvbV5File.Block block, String position) {
        Map<String, String> values = block.values();
        Map<String, String> tuning = new LinkedHashMap<>(values);
        tuning.keySet().removeIf(key -> key.matches(SERVICE_KEYS));
        int number = channelNumber(values.getOrDefault("VCHANNEL", ""));
        if (number != 0) {
            tuning.remove("VCHANNEL"); // otherwise it stays, and is reported as dropped
        }
        return new Service(
                block.place(),
                block.heading(),
                "",
                new Transponder(block.place(), "", position, tuning),
                values.containsKey("VIDEO_PID") && !values.get("VIDEO_PID").equals("0"),
                List.of(),
                number(values, "SERVICE_ID", 0xFFFF),
                number(values, "NETWORK_ID", 0xFFFF),
                number(values, "TRANSPORT_ID", 0xFFFF),
                number);
    }

    private static int channelNumber(String text) {
        int number = text.matches("\\d{1,5}") ? Integer.parseInt(text) : 0;
        return number <= Service.MAX_NUMBER ? number : 0;
    }

    private static int number(Map<String, String> values, String key, int most) {
        return SourceText.number(values.getOrDefault(key, "0"), 10, 0, most, key);
    }
}
