package com.velotra.tv.tavro.tool.transponders;

import com.velotra.tv.tavro.tool.records.Field;
import com.velotra.tv.tavro.tool.records.Kind;
import com.velotra.tv.tavro.tool.records.Layout;
import com.velotra.tv.tavro.tool.records.Record;
import java.util.HashSet;
import java.util.LinkedHashMap;
import java.util.List;
import java.util.Map;
import java.util.Optional;
import java.util.Set;
import java.util.function.Consumer;

/** The tuning parameters of a transport stream record under their DVBv5 names: what an import maps, in reverse. */
public final class StreamTuning {
    /** A parameter, the field that holds it, and the Java numbers of its values; null for a number without a code. */
    private record Parameter(String key, String field, Map<String, Integer> numbers) {}

    private static final Map<Integer, List<Parameter>> PARAMETERS = Map.of(
            TunerValues.TERRESTRIAL, List.of(
                    new Parameter("BANDWIDTH_HZ", "ter_bandwidth", TunerValues.BANDWIDTH),
                    new Parameter("CODE_RATE_HP", "ter_code_rate", TunerValues.CODE_RATE_TERRESTRIAL),
                    new Parameter("INNER_FEC", "ter_fec_inner", TunerValues.FEC_INNER),
                    new Parameter("MODULATION", "ter_modulation", TunerValues.MODULATION),
                    new Parameter("TRANSMISSION_MODE", "ter_transmission_mode", TunerValues.TRANSMISSION_MODE),
                    new Parameter("GUARD_INTERVAL", "ter_guard_interval", TunerValues.GUARD_INTERVAL_T),
                    new Parameter("GUARD_INTERVAL", "ter_guard_interval_t2", TunerValues.GUARD_INTERVAL_T2),
                    new Parameter("HIERARCHY", "ter_hierarchy", TunerValues.HIERARCHY),
                    new Parameter("STREAM_ID", "ter_plp_id", null)),
            TunerValues.CABLE, List.of(
                    new Parameter("SYMBOL_RATE", "cab_symbol_rate", null),
                    new Parameter("INNER_FEC", "cab_fec_inner", TunerValues.FEC_INNER),
                    new Parameter("MODULATION", "cab_modulation", TunerValues.MODULATION)),
            TunerValues.SATELLITE, List.of(
                    new Parameter("POLARIZATION", "sat_polarization", TunerValues.POLARIZATION),
                    new Parameter("SYMBOL_RATE", "sat_symbol_rate", null),
                    new Parameter("INNER_FEC", "sat_fec_inner", TunerValues.FEC_INNER),
                    new Parameter("MODULATION", "sat_modulation", TunerValues.MODULATION),
                    new Parameter("ROLLOFF", "sat_roll_off", TunerValues.ROLL_OFF),
                    new Parameter("PILOT", "sat_pilot", TunerValues.PILOT)));

    // The mode of a record without a known standard is written as the first generation of its medium.
    private static final Map<Integer, Parameter> STANDARDS = Map.of(
            TunerValues.TERRESTRIAL, new Parameter("DVBT", "ter_mode",
                    Map.of("DVBT", TunerValues.STANDARD_T, "DVBT2", TunerValues.STANDARD_T2)),
            TunerValues.CABLE, new Parameter("DVBC/ANNEX_A", "cab_mode",
                    Map.of("DVBC/ANNEX_A", TunerValues.STANDARD_C)),
            TunerValues.SATELLITE, new Parameter("DVBS", "sat_mode",
                    Map.of("DVBS", TunerValues.STANDARD_S, "DVBS2", TunerValues.STANDARD_S2)));

    /** Fields that an import fills from the parameters of other fields. */
    private static final Set<String> DERIVED = Set.of("sat_modulation_copy", "sat_code_rate");

    private static final Layout LAYOUT = Layout.of(Kind.STREAMS);

    private StreamTuning() {}

    /** Returns the names of the fields that {@link #values} reads, or that an import derives from them. */
    public static Set<String> fields() {
        Set<String> names = new HashSet<>(DERIVED);
        names.addAll(Set.of("medium", "frequency", "broadcast_type"));
        PARAMETERS.values().forEach(list -> list.forEach(parameter -> names.add(parameter.field)));
        STANDARDS.values().forEach(standard -> names.add(standard.field));
        return names;
    }

    /**
     * Returns the parameters of a record: delivery system, frequency, and those that are set. Empty if the formats have
     * no name for its medium or standard.
     *
     * @param lost is called with the name of each field whose value has no name in the formats
     */
    public static Optional<Map<String, String>> values(Record stream, Consumer<String> lost) {
        int medium = (int) number(stream, "medium");
        Parameter standard = STANDARDS.get(medium);
        long frequency = number(stream, "frequency");
        if (standard == null || frequency == 0) {
            return Optional.empty();
        }
        Map<String, String> values = new LinkedHashMap<>();
        String system = standard.key;
        if (number(stream, standard.field) != 0) {
            system = name(stream, standard);
            if (system == null) {
                return Optional.empty();
            }
        } else {
            lost.accept(standard.field);
        }
        values.put("DELIVERY_SYSTEM", system);
        values.put("FREQUENCY", medium == TunerValues.SATELLITE ? Long.toString(frequency) : frequency + "000");
        for (Parameter parameter : PARAMETERS.get(medium)) {
            boolean always = parameter.key.equals("POLARIZATION"); // its first code is 0
            if (!always && number(stream, parameter.field) == 0) {
                continue;
            }
            String name = belongs(parameter, system) ? name(stream, parameter) : null;
            if (name == null) {
                lost.accept(parameter.field);
            } else {
                values.put(parameter.key, name);
            }
        }
        return Optional.of(values);
    }

    private static boolean belongs(Parameter parameter, String system) {
        return switch (parameter.field) {
            case "ter_guard_interval" -> system.equals("DVBT");
            case "ter_guard_interval_t2", "ter_plp_id" -> system.equals("DVBT2");
            default -> true;
        };
    }

    private static long number(Record stream, String field) {
        return field(field).number(stream);
    }

    private static Field field(String name) {
        return LAYOUT.field(name).orElseThrow(() -> new IllegalStateException("no field " + name));
    }

    /** Returns the DVBv5 name of a value; null if it has none. */
    private static String name(Record stream, Parameter parameter) {
        Field field = field(parameter.field);
        long stored = field.number(stream);
        if (parameter.numbers == null) {
            return Long.toString(stored);
        }
        for (Map.Entry<String, Integer> entry : parameter.numbers.entrySet()) {
            if (stored(field, entry.getValue()) == stored) {
                return entry.getKey();
            }
        }
        return null;
    }

    /** Returns the number that is stored for a Java number; -1 if there is none. */
    private static long stored(Field field, int javaValue) {
        return field.codes().stream().filter(code -> code.javaValue() == javaValue).mapToLong(Field.Code::number)
                .findFirst().orElse(-1);
    }
}
