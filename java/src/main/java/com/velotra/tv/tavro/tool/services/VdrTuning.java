package com.velotra.tv.tavro.tool.services;

import com.velotra.tv.tavro.tool.input.Text;
import com.velotra.tv.tavro.tool.transponders.Transponder;
import java.util.ArrayList;
import java.util.LinkedHashMap;
import java.util.List;
import java.util.Locale;
import java.util.Map;
import java.util.regex.Matcher;
import java.util.regex.Pattern;

/**
 * The tuning fields of a channels.conf line under their DVBv5 names: frequency, parameters and symbol rate.
 *
 * <p>A parameter is a letter and a number: H, V, L, R polarization; B bandwidth in MHz; C code rate (of terrestrial
 * services, the high-priority one); D low-priority code rate; G guard interval; I inversion; M modulation; N
 * pilot; O roll-off; P stream id; Q T2 system id; S generation (1: S2 or T2); T transmission mode; X single or multiple
 * antennas; Y hierarchy. 999 is "automatic".
 */
final class VdrTuning {
    /**
     * The tuning fields of a line.
     *
     * @param lost names of the values that the fields cannot hold
     */
    record Fields(String frequency, String parameters, String symbolRate, List<String> lost) {}

    private static final Pattern PARAMETER = Pattern.compile("([A-Z])(\\d*)");
    private static final String AUTO = "999";

    // Numbers whose DVBv5 name does not follow from a rule.
    private static final Map<String, String> MODULATION = Map.of(
            "2", "QPSK", "5", "PSK/8", "6", "APSK/16", "7", "APSK/32", "10", "VSB/8", "11", "VSB/16", "12", "DQPSK",
            "998", "QAM/AUTO");
    private static final Map<String, String> GUARD_INTERVAL = Map.of("19128", "19/128", "19256", "19/256");
    private static final Map<String, String> BANDWIDTH = Map.of("1712", "1712000");

    private final char source;
    private final Map<String, String> values = new LinkedHashMap<>();
    private boolean second; // generation of the delivery system

    private VdrTuning(char source) {
        this.source = source;
    }

    /**
     * Returns the tuning parameters of a service.
     *
     * @param source first letter of the source field: S, C, T or A
     * @param frequency as in the file: MHz for satellites; MHz, kHz or Hz for other media, depending on its size
     * @param symbolRate in thousands per second; ignored for terrestrial services
     * @throws IllegalArgumentException if the parameters are malformed
     */
    static Map<String, String> values(char source, int frequency, String parameters, int symbolRate) {
        VdrTuning tuning = new VdrTuning(source);
        tuning.values.put("FREQUENCY", Long.toString(tuning.frequency(frequency)));
        String text = parameters.toUpperCase(Locale.ROOT);
        Matcher matcher = PARAMETER.matcher(text);
        int end = 0;
        while (matcher.find() && matcher.start() == end) {
            tuning.take(matcher.group(1).charAt(0), matcher.group(2));
            end = matcher.end();
        }
        if (end != text.length()) {
            throw new IllegalArgumentException("tuning parameters " + Text.excerpt(parameters)
                    + " are not letters with numbers");
        }
        if ((source == 'S' || source == 'C') && symbolRate > 0) {
            tuning.values.put("SYMBOL_RATE", Long.toString(symbolRate * 1000L));
        }
        tuning.values.put("DELIVERY_SYSTEM", tuning.deliverySystem());
        return tuning.values;
    }

    /** Returns kHz for satellites, Hz for other media. */
    private long frequency(int frequency) {
        if (source == 'S') {
            return frequency * 1000L;
        }
        return frequency < 1000 ? frequency * 1_000_000L : frequency < 1_000_000 ? frequency * 1000L : frequency;
    }

    private String deliverySystem() {
        return switch (source) {
            case 'S' -> second ? "DVBS2" : "DVBS";
            case 'C' -> "DVBC/ANNEX_A";
            case 'T' -> second ? "DVBT2" : "DVBT";
            default -> Transponder.atscSystem(values.getOrDefault("MODULATION", ""));
        };
    }

    private void take(char letter, String number) {
        if (number.isEmpty() && "HVLR".indexOf(letter) < 0) {
            values.put("parameter " + letter, "without a number"); // reported as dropped
            return;
        }
        switch (letter) {
            case 'H' -> values.put("POLARIZATION", "HORIZONTAL");
            case 'V' -> values.put("POLARIZATION", "VERTICAL");
            case 'L' -> values.put("POLARIZATION", "LEFT");
            case 'R' -> values.put("POLARIZATION", "RIGHT");
            case 'B' -> put("BANDWIDTH_HZ", number, BANDWIDTH.getOrDefault(number, number + "000000"));
            case 'C' -> put(source == 'T' ? "CODE_RATE_HP" : "INNER_FEC", number, rate(number));
            case 'D' -> put("CODE_RATE_LP", number, rate(number));
            case 'G' -> put("GUARD_INTERVAL", number, GUARD_INTERVAL.getOrDefault(number, "1/" + number));
            case 'I' -> put("INVERSION", number, number.equals("0") ? "OFF" : "ON");
            case 'M' -> put("MODULATION", number, MODULATION.getOrDefault(number, "QAM/" + number));
            case 'N' -> put("PILOT", number, number.equals("0") ? "OFF" : "ON");
            case 'O' -> put("ROLLOFF", number.equals("0") ? AUTO : number, number);
            case 'P' -> putUnlessZero("STREAM_ID", number);
            case 'Q' -> putUnlessZero("T2_SYSTEM_ID", number);
            case 'S' -> second = number.equals("1");
            case 'T' -> put("TRANSMISSION_MODE", number, number + "K");
            case 'X' -> putUnlessZero("MISO", number);
            case 'Y' -> put("HIERARCHY", number, number.equals("0") ? "NONE" : number);
            default -> values.put("parameter " + letter, number);
        }
    }

    private void put(String key, String number, String value) {
        values.put(key, number.equals(AUTO) ? "AUTO" : value);
    }

    private void putUnlessZero(String key, String number) {
        if (!number.matches("0*")) {
            values.put(key, number);
        }
    }

    /** Returns a code rate: 2/3 for 23, 9/10 for 910. */
    private static String rate(String number) {
        return number.equals("0") || number.isEmpty() ? "NONE" : number.charAt(0) + "/" + number.substring(1);
    }

    /**
     * Returns the tuning fields of a line, the reverse of {@link #values(char, int, String, int)}.
     *
     * @param source first letter of the source field: S, C or T
     * @param values tuning parameters under their DVBv5 names
     */
    static Fields fields(char source, Map<String, String> values) {
        long frequency = Long.parseLong(values.get("FREQUENCY"));
        long written = source == 'S' ? Math.round(frequency / 1000.0)
                : frequency >= 1_000_000 && frequency < 1_000_000_000 ? frequency / 1000 : frequency;
        long symbolRate = Math.round(Long.parseLong(values.getOrDefault("SYMBOL_RATE", "0")) / 1000.0);
        StringBuilder parameters = new StringBuilder();
        values.forEach((key, value) -> parameters.append(parameter(source, key, value)));
        parameters.append(values.get("DELIVERY_SYSTEM").endsWith("2") ? "S1" : source == 'S' ? "S0" : "");
        List<String> lost = new ArrayList<>();
        if (written > Integer.MAX_VALUE) {
            lost.add("FREQUENCY");
        } else {
            Map<String, String> read = values(source, (int) written, parameters.toString(), (int) symbolRate);
            values.forEach((key, value) -> {
                if (!value.equals(read.get(key))) {
                    lost.add(key);
                }
            });
        }
        return new Fields(Long.toString(written), parameters.toString(), Long.toString(symbolRate), lost);
    }

    private static String parameter(char source, String key, String value) {
        String digits = value.replaceAll("\\D", "");
        return switch (key) {
            case "POLARIZATION" -> value.substring(0, 1);
            case "BANDWIDTH_HZ" -> "B" + key(BANDWIDTH, value, digits.replaceFirst("000000$", ""));
            case "CODE_RATE_HP" -> "C" + digits;
            case "INNER_FEC" -> source == 'T' ? "" : "C" + digits;
            case "GUARD_INTERVAL" -> "G" + key(GUARD_INTERVAL, value, value.replaceFirst("^1/", ""));
            case "MODULATION" -> "M" + key(MODULATION, value, digits);
            case "PILOT" -> "N" + (value.equals("OFF") ? "0" : "1");
            case "ROLLOFF" -> "O" + digits;
            case "STREAM_ID" -> "P" + digits;
            case "TRANSMISSION_MODE" -> "T" + digits;
            case "HIERARCHY" -> "Y" + (value.equals("NONE") ? "0" : digits);
            default -> "";
        };
    }

    /** Returns the key of a value in a table; {@code otherwise} if it has none. */
    private static String key(Map<String, String> table, String value, String otherwise) {
        return table.entrySet().stream().filter(entry -> entry.getValue().equals(value)).map(Map.Entry::getKey)
                .findFirst().orElse(otherwise);
    }
}
