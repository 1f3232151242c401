package com.velotra.tv.tavro.tool.satellites;

import com.velotra.tv.tavro.services.channellist.SatelliteFlag;
import com.velotra.tv.tavro.services.channellist.VltTvSatelliteInfoBase;
import com.velotra.tv.tavro.tool.satellites.DiseqcConf.Sequence;
import java.util.LinkedHashSet;
import java.util.List;
import java.util.Locale;
import java.util.Map;
import java.util.Objects;
import java.util.OptionalInt;
import java.util.Set;
import java.util.TreeMap;
import java.util.function.Function;
import java.util.function.Predicate;
import java.util.stream.Collectors;
import java.util.stream.Stream;

/**
 * The dish settings of one satellite, as values of its record.
 *
 * <p>The file has a line for each band and polarization; a record has fields for two bands and one switch. Settings
 * that differ between lines are kept only if they differ as a universal LNB requires; others are dropped. The platform
 * does not define the numbers of tone, power and polarization; this class does.
 */
final class Dish {
    private static final int TONE_OFF = 0;
    private static final int TONE_ON = 1;
    private static final int TONE_BY_BAND = 2; // on in the high band

    private static final int POWER_13_V = 1;
    private static final int POWER_18_V = 2;
    private static final int POWER_BY_POLARIZATION = 3; // 18 V for horizontal and left

    private static final Map<Character, Integer> POLARIZATION = Map.of('H', 0, 'V', 1, 'L', 2, 'R', 3);

    private static final int DISEQC_BURST_ONLY = 0;
    private static final int DISEQC_COMMITTED = 2;
    private static final int DISEQC_EX_NONE = 0;
    private static final int DISEQC_EX_UNCOMMITTED = 4;
    private static final int BURST_POSITION = 5; // A; B is the next
    private static final int NO_POSITION = 255;

    // MHz: the bands of a universal LNB, and an end of band above all transponders.
    private static final List<Integer> UNIVERSAL = List.of(9750, 11700, 10600);
    private static final int OPEN_END = 99999;

    // DiSEqC commands that a record has a field for. The value of the first two is their last digit.
    private static final String COMMITTED = "E0 10 38 F[0-9A-F]";
    private static final String UNCOMMITTED = "E0 10 39 F[0-9A-F]";
    private static final String SINGLE_CABLE = "E0 10 5A( [0-9A-F]{2}){2}";
    private static final String SINGLE_CABLE_SECOND_GENERATION = "70( [0-9A-F]{2}){3}";

    private final List<Sequence> sequences;
    private final Set<String> dropped = new LinkedHashSet<>();
    private final Integer port;
    private final Integer burst;

    /** @param sequences at least one */
    Dish(List<Sequence> sequences) {
        this.sequences = sequences;
        port = same("switch ports that differ", command -> hexDigit(command, COMMITTED, 2));
        burst = same("tone bursts that differ", command -> "AB".contains(command) ? "AB".indexOf(command) : null);
    }

    /** Returns the dropped values, one text per value. Valid after {@link #put}. */
    Set<String> dropped() {
        return dropped;
    }

    /** Returns the tone burst beside a switch port. It must be written after the port, which overwrites it. */
    OptionalInt burstBesidePort() {
        return port != null && burst != null ? OptionalInt.of(burst) : OptionalInt.empty();
    }

    /**
     * Puts the values into a record object. An update cannot change the polarization.
     *
     * @param polarizationBefore polarization of the record to be updated; nothing for a new record
     */
    void put(VltTvSatelliteInfoBase info, OptionalInt polarizationBefore) {
        info.put(SatelliteFlag.ENABLED, true);
        putLnb(info);
        putSwitch(info);
        putTone(info);
        putPower(info);
        putPolarization(info, polarizationBefore);
        commands().forEach(this::drop);
    }

    private void putLnb(VltTvSatelliteInfoBase info) {
        Map<Character, TreeMap<Integer, Integer>> bands = sequences.stream().collect(Collectors.groupingBy(
                Sequence::polarization,
                Collectors.toMap(Sequence::upTo, Sequence::oscillator, this::firstOscillator, TreeMap::new)));
        TreeMap<Integer, Integer> first = bands.get(sequences.get(0).polarization());
        if (bands.values().stream().anyMatch(other -> !other.equals(first))) {
            dropped.add("bands that differ by polarization");
        }
        if (first.size() > 2) {
            dropped.add("more than two bands");
        }
        if (first.lastKey() < OPEN_END) {
            dropped.add("the upper end of the last band");
        }
        info.setLnbLowFreq(first.firstEntry().getValue());
        info.setLnbSwitchFreq(0);
        info.setLnbHighFreq(0);
        Map.Entry<Integer, Integer> high = first.higherEntry(first.firstKey());
        if (high != null) {
            info.setLnbSwitchFreq(first.firstKey());
            info.setLnbHighFreq(high.getValue());
        }
        Integer singleCable = same("single-cable positions that differ", Dish::singleCablePosition);
        boolean second = commands().anyMatch(command -> command.matches(SINGLE_CABLE_SECOND_GENERATION));
        boolean universal = List.of(info.getLnbLowFreq(), info.getLnbSwitchFreq(), info.getLnbHighFreq())
                .equals(UNIVERSAL);
        info.put(SatelliteFlag.LNB_UNIVERSAL, singleCable == null && universal);
        info.put(SatelliteFlag.LNB_SINGLE_CABLE, singleCable != null && !second);
        info.put(SatelliteFlag.LNB_SINGLE_CABLE_2, singleCable != null && second);
        info.setUnicablePosition(singleCable == null ? 0 : singleCable);
    }

    private int firstOscillator(int first, int second) {
        if (first != second) {
            dropped.add("several oscillators for one band");
        }
        return first;
    }

    private void putSwitch(VltTvSatelliteInfoBase info) {
        info.setDiseqcType(port == null ? DISEQC_BURST_ONLY : DISEQC_COMMITTED);
        info.setDiseqcPosition(port != null ? port : burst != null ? BURST_POSITION + burst : NO_POSITION);
        Integer uncommitted = same("uncommitted switch ports that differ",
                command -> hexDigit(command, UNCOMMITTED, 0));
        info.setDiseqcTypeEx(uncommitted == null ? DISEQC_EX_NONE : DISEQC_EX_UNCOMMITTED);
        info.setDiseqcPositionEx(uncommitted == null ? 0 : uncommitted);
    }

    private void putTone(VltTvSatelliteInfoBase info) {
        int low = sequences.stream().mapToInt(Sequence::upTo).min().orElseThrow();
        if (all(sequence -> last(sequence, "t", "T").equals("t"))) {
            info.setTone22k(TONE_OFF);
        } else if (all(sequence -> last(sequence, "t", "T").equals("T"))) {
            info.setTone22k(TONE_ON);
        } else if (all(sequence -> last(sequence, "t", "T").equals(sequence.upTo() == low ? "t" : "T"))) {
            info.setTone22k(TONE_BY_BAND);
        } else if (sequences.stream().anyMatch(sequence -> !last(sequence, "t", "T").isEmpty())) {
            dropped.add("a tone that depends on more than the band");
        }
    }

    private void putPower(VltTvSatelliteInfoBase info) {
        if (all(sequence -> last(sequence, "v", "V").equals("v"))) {
            info.setLnbPower(POWER_13_V);
        } else if (all(sequence -> last(sequence, "v", "V").equals("V"))) {
            info.setLnbPower(POWER_18_V);
        } else if (all(sequence -> last(sequence, "v", "V").equals(
                "HL".indexOf(sequence.polarization()) < 0 ? "v" : "V"))) {
            info.setLnbPower(POWER_BY_POLARIZATION);
        } else if (sequences.stream().anyMatch(sequence -> !last(sequence, "v", "V").isEmpty())) {
            dropped.add("a voltage that depends on more than the polarization");
        }
    }

    private void putPolarization(VltTvSatelliteInfoBase info, OptionalInt before) {
        Set<Character> polarizations = sequences.stream().map(Sequence::polarization).collect(Collectors.toSet());
        if (polarizations.size() > 1) {
            dropped.add("more than one polarization (each transport stream has its own)");
            return;
        }
        int polarization = POLARIZATION.get(polarizations.iterator().next());
        if (before.isEmpty()) {
            info.setDiseqcPolar(polarization);
        } else if (before.getAsInt() != polarization) {
            dropped.add("the polarization of an existing satellite");
        }
    }

    private void drop(String text) {
        if (text.startsWith("W")) {
            dropped.add("waiting times");
        } else if (text.startsWith("P")) {
            dropped.add("positioners");
        } else if (text.matches("[0-9A-F]{2}( .*)?")
                && !text.matches(
                        String.join("|", COMMITTED, UNCOMMITTED, SINGLE_CABLE, SINGLE_CABLE_SECOND_GENERATION))) {
            dropped.add("the DiSEqC command " + text);
        }
    }

    /** Returns all commands; DiSEqC commands without brackets, in upper case, with one blank between bytes. */
    private Stream<String> commands() {
        return sequences.stream().flatMap(sequence -> sequence.commands().stream())
                .map(command -> command.startsWith("[")
                ? command.replaceAll("[\\[\\]]", "").strip().replaceAll("\\s+", " ").toUpperCase(Locale.ROOT)
                : command);
    }

    /** Returns the first value of any command; null if none has one. Drops {@code difference} if there are others. */
    private Integer same(String difference, Function<String, Integer> value) {
        List<Integer> values = commands().map(value).filter(Objects::nonNull).distinct().toList();
        if (values.size() > 1) {
            dropped.add(difference);
        }
        return values.isEmpty() ? null : values.get(0);
    }

    private boolean all(Predicate<Sequence> rule) {
        return sequences.stream().allMatch(rule);
    }

    // A bank number has a bit for the band, a bit for the polarization, and the position above them.
    private static Integer singleCablePosition(String command) {
        return command.startsWith("S") ? Integer.parseInt(command.substring(1)) >> 2 : null;
    }

    /** Returns the last digit of a DiSEqC command, shifted right; null if the command does not match. */
    private static Integer hexDigit(String command, String pattern, int shift) {
        return command.matches(pattern) ? Character.digit(command.charAt(command.length() - 1), 16) >> shift : null;
    }

    /** Returns the last occurrence of two commands, which is the one in effect; empty if there is none. */
    private static String last(Sequence sequence, String one, String other) {
        return sequence.commands().stream()
                .filter(command -> command.equals(one) || command.equals(other))
                .reduce("", (before, command) -> command);
    }
}
