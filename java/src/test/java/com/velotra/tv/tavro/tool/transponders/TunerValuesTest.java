package com.velotra.tv.tavro.tool.transponders;

import static org.junit.jupiter.api.Assertions.assertEquals;

import com.velotra.tv.tavro.tool.records.Field;
import com.velotra.tv.tavro.tool.records.Kind;
import com.velotra.tv.tavro.tool.records.Layout;
import java.util.Locale;
import java.util.Map;
import java.util.TreeMap;
import org.junit.jupiter.api.Test;

/** The numbers that the importer stores, and the names under which other commands print them. */
class TunerValuesTest {
    private static Map<String, Integer> names(String field) {
        Map<String, Integer> names = new TreeMap<>();
        for (Field.Code code : Layout.of(Kind.STREAMS).field(field).orElseThrow().codes()) {
            names.put(code.name().toUpperCase(Locale.ROOT), code.javaValue());
        }
        return names;
    }

    @Test
    void numbersHaveTheirNamesInTheRecordLayouts() {
        assertEquals(new TreeMap<>(TunerValues.MODULATION), names("ter_modulation"));
        assertEquals(new TreeMap<>(TunerValues.POLARIZATION), names("sat_polarization"));
        assertEquals(new TreeMap<>(TunerValues.PILOT), names("sat_pilot"));
        assertEquals(new TreeMap<>(TunerValues.FEC_INNER), names("sat_fec_inner"));
        assertEquals(new TreeMap<>(TunerValues.CODE_RATE_TERRESTRIAL), names("ter_code_rate"));
        assertEquals(new TreeMap<>(TunerValues.GUARD_INTERVAL_T2), names("ter_guard_interval_t2"));
        Map<String, Integer> modes = names("ter_transmission_mode");
        modes.keySet().retainAll(TunerValues.TRANSMISSION_MODE.keySet());
        assertEquals(new TreeMap<>(TunerValues.TRANSMISSION_MODE), modes);
    }
}
