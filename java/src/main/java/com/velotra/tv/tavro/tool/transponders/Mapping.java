package com.velotra.tv.tavro.tool.transponders;

import com.velotra.tv.tavro.services.channellist.BroadcastType;
import com.velotra.tv.tavro.services.channellist.Printable;
import com.velotra.tv.tavro.services.channellist.VltTvTransportStreamInfoBase;
import com.velotra.tv.tavro.tool.input.ModifiedUtf8;
import com.velotra.tv.tavro.tool.input.Text;
import java.util.ArrayList;
import java.util.List;
import java.util.Map;
import java.util.Set;
import java.util.function.IntConsumer;
import java.util.regex.Pattern;

/**
 * Maps a transponder to the values of a transport stream record: frequency in kHz for every medium, symbol rate in
 * symbols per second, bandwidth in kHz. AUTO and values that mean "none" (an unused stream id, a bandwidth of 0) set no
 * key.
 */
final class Mapping {
    private record System(int medium, int standard, boolean dvb) {}

    private static final int NO_STANDARD = 0;

    private static final Map<String, System> SYSTEMS = Map.of(
            "DVBT", new System(TunerValues.TERRESTRIAL, TunerValues.STANDARD_T, true),
            "DVBT2", new System(TunerValues.TERRESTRIAL, TunerValues.STANDARD_T2, true),
            "DVBC/ANNEX_A", new System(TunerValues.CABLE, TunerValues.STANDARD_C, true),
            "DVBC/ANNEX_B", new System(TunerValues.CABLE, NO_STANDARD, false),
            "DVBS", new System(TunerValues.SATELLITE, TunerValues.STANDARD_S, true),
            "DVBS2", new System(TunerValues.SATELLITE, TunerValues.STANDARD_S2, true),
            "ISDBT", new System(TunerValues.TERRESTRIAL, NO_STANDARD, false),
            "ATSC", new System(TunerValues.TERRESTRIAL, NO_STANDARD, false));

    // The keys that a record of a medium has a field for. Records of different media share bytes, and the library
    // stores some keys whatever the medium: a bandwidth would end up in a cable record's symbol rate.
    private static final Map<Integer, Set<String>> KEYS = Map.of(
            TunerValues.TERRESTRIAL, Set.of("BANDWIDTH_HZ", "MODULATION", "INNER_FEC", "CODE_RATE_HP", "GUARD_INTERVAL",
                    "TRANSMISSION_MODE", "HIERARCHY", "STREAM_ID"),
            TunerValues.CABLE, Set.of("SYMBOL_RATE", "MODULATION", "INNER_FEC"),
            TunerValues.SATELLITE, Set.of("SYMBOL_RATE", "MODULATION", "INNER_FEC", "POLARIZATION", "ROLLOFF", "PILOT",
                    "STREAM_ID"));

    private static final Pattern NUMBER = Pattern.compile("\\d{1,18}");
    private static final long NO_STREAM_ID = 0xFFFFFFFFL;
    private static final int NAME_BYTES = 40;
    private static final int KEY_COLUMNS = 40;

    private final Transponder transponder;
    private final String systemName;
    private final System system;
    private final VltTvTransportStreamInfoBase info = new VltTvTransportStreamInfoBase();
    private final List<String> dropped = new ArrayList<>();
    private int frequency;
    private int polarization;
    private long streamId;
    private int symbolRate;

    /** Maps a transponder; throws the reason if it cannot become a record. */
    Mapping(Transponder transponder) throws NotImportable {
        this.transponder = transponder;
        systemName = transponder.values().getOrDefault("DELIVERY_SYSTEM", "");
        system = SYSTEMS.get(systemName);
        if (system == null) {
            throw new NotImportable(systemName.isEmpty() ? "no delivery system"
                    : "unknown delivery system " + Text.excerpt(systemName));
        }
        map();
    }

    /** Returns the medium, which decides the list. */
    int medium() {
        return system.medium;
    }

    String systemName() {
        return systemName;
    }

    VltTvTransportStreamInfoBase info() {
        return info;
    }

    /** Returns the dropped values, one text per value. */
    List<String> dropped() {
        return dropped;
    }

    /** Returns the frequency in kHz. */
    int frequency() {
        return frequency;
    }

    /** Returns the polarization as in a record; 0 for a medium without polarization. */
    int polarization() {
        return polarization;
    }

    /** Returns the input stream identifier or PLP id; 0 if none. A satellite record has no field for it. */
    long streamId() {
        return streamId;
    }

    /** Returns the symbols per second; 0 if unknown. */
    int symbolRate() {
        return symbolRate;
    }

    private void map() throws NotImportable {
        frequency = readFrequency();
        info.setBroadcastMedium(system.medium).setFrequency(frequency);
        if (system.dvb) {
            info.setBroadcastType(BroadcastType.DVB);
        }
        if (system.standard == NO_STANDARD) {
            dropped.add("the standard " + systemName);
        } else {
            info.setStandard(system.standard);
        }
        if (ModifiedUtf8.bytes(transponder.name()) > NAME_BYTES) {
            dropped.add("a heading that does not fit the name");
        } else if (!transponder.name().isEmpty()) {
            info.setAcTsName(transponder.name());
        }
        transponder.values().forEach(this::map);
    }

    private int readFrequency() throws NotImportable {
        String text = transponder.values().get("FREQUENCY");
        if (text == null) {
            throw new NotImportable("no frequency");
        }
        long value = number(text);
        long kilohertz = system.medium == TunerValues.SATELLITE ? value : Math.round(value / 1000.0);
        if (kilohertz > Integer.MAX_VALUE) {
            throw new NotImportable("FREQUENCY " + Text.excerpt(text) + " is beyond 32 bits of kHz");
        }
        if (system.medium != TunerValues.SATELLITE && value > 0 && value % 1000 != 0) {
            dropped.add("a fraction of a kHz in FREQUENCY");
        }
        if (kilohertz <= 0) {
            throw new NotImportable("FREQUENCY " + Text.excerpt(text) + " is not a frequency");
        }
        return (int) kilohertz;
    }

    private void map(String key, String value) {
        if (key.equals("DELIVERY_SYSTEM") || key.equals("FREQUENCY")) {
            return;
        }
        if (!KEYS.get(system.medium).contains(key)) {
            leave(key, value);
            return;
        }
        boolean t2 = systemName.equals("DVBT2");
        switch (key) {
            case "BANDWIDTH_HZ" -> {
                if (!value.equals("0")) {
                    put(key, value, TunerValues.BANDWIDTH, info::setBandwidth);
                }
            }
            case "SYMBOL_RATE" -> put(key, value, number(value), rate -> {
                info.setSymbolRate(rate);
                symbolRate = rate;
            });
            case "MODULATION" -> put(key, value, TunerValues.MODULATION, info::setModulation);
            case "POLARIZATION" -> {
                put(key, value, TunerValues.POLARIZATION, info::setTunerPolarizaTion);
                polarization = TunerValues.POLARIZATION.getOrDefault(value, 0);
            }
            case "INNER_FEC" -> {
                put(key, value, TunerValues.FEC_INNER, info::setFecInner);
                if (system.medium == TunerValues.SATELLITE) {
                    put("the code rate of " + key, value, TunerValues.CODE_RATE_SATELLITE, info::setCodeRate);
                }
            }
            case "CODE_RATE_HP" -> put(key, value, TunerValues.CODE_RATE_TERRESTRIAL, info::setCodeRate);
            case "GUARD_INTERVAL" -> put(
                    key, value, t2 ? TunerValues.GUARD_INTERVAL_T2 : TunerValues.GUARD_INTERVAL_T,
                    system.dvb ? info::setGuardInterval : null);
            case "TRANSMISSION_MODE" -> put(key, value, TunerValues.TRANSMISSION_MODE, info::setTransmissionMode);
            case "HIERARCHY" -> put(key, value, TunerValues.HIERARCHY, info::setHierarchy);
            case "STREAM_ID" -> mapStreamId(value);
            case "ROLLOFF" -> put(key, value, TunerValues.ROLL_OFF, info::setRollOff);
            case "PILOT" -> put(key, value, TunerValues.PILOT, info::setPilotInsert);
            default -> throw new IllegalStateException("no rule for " + key);
        }
    }

    private void leave(String key, String value) {
        if (!isNone(value)) {
            dropped.add(key.startsWith("ISDBT_") ? "ISDB-T layers and segments"
                    : key.equals("SERVICE_ID") || key.contains("PID") ? "services and PIDs"
                    : Text.fit(Printable.of(key), KEY_COLUMNS));
        }
    }

    // In a satellite record, the bytes of the PLP id are the signal quality.
    private void mapStreamId(String value) {
        long id = number(value);
        if (id == NO_STREAM_ID) {
            return;
        }
        if (system.medium != TunerValues.TERRESTRIAL || id < 0 || id > 0xFF) {
            dropped.add("STREAM_ID of " + systemName);
        } else {
            info.setPlpId((int) id);
        }
        streamId = system.medium == TunerValues.SATELLITE || id <= 0xFF ? Math.max(id, 0) : 0;
    }

    private static boolean isNone(String value) {
        return value.isEmpty() || value.equals("AUTO") || value.equals("NONE") || value.equals("QAM/AUTO");
    }

    private void put(String key, String value, Map<String, Integer> numbers, IntConsumer setter) {
        Integer number = numbers.get(value);
        if (number != null && setter != null) {
            setter.accept(number);
        } else if (!isNone(value)) {
            dropped.add(key + " " + Text.excerpt(value));
        }
    }

    private void put(String key, String value, long number, IntConsumer setter) {
        if (number > 0 && number <= Integer.MAX_VALUE) {
            setter.accept((int) number);
        } else if (number != 0 && !isNone(value)) {
            dropped.add(key + " " + Text.excerpt(value));
        }
    }

    /** Returns the number; -1 if the text is not a number. */
    private static long number(String text) {
        return text != null && NUMBER.matcher(text).matches() ? Long.parseLong(text) : -1;
    }
}
