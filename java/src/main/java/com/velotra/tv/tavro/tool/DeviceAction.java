package com.velotra.tv.tavro.tool;

import java.util.Arrays;
import java.util.List;
import java.util.Locale;
import java.util.stream.Collectors;
import picocli.CommandLine.ITypeConverter;
import picocli.CommandLine.TypeConversionException;

/** What ./tavro device does, with the arguments and options that each takes. */
enum DeviceAction {
    PUSH(0, Integer.MAX_VALUE, "--directory", "--library", "--program", "--install", "--restore"),
    CONFORM(0, Integer.MAX_VALUE, "--directory", "--junit"),
    LOG_LEVEL(0, 1, "--directory", "--reset"),
    LOG(0, 1, "--color", "--dump", "--since"),
    PULL(1, 2, "--show", "--diff", "--kind");

    private final int least;
    private final int most;
    private final List<String> options;

    DeviceAction(int least, int most, String... options) {
        this.least = least;
        this.most = most;
        this.options = List.of(options);
    }

    /** Returns what is wrong with a number of arguments or with an option, or null. */
    String problem(List<String> arguments, List<String> givenOptions) {
        for (String option : givenOptions) {
            String others = Arrays.stream(values())
                    .filter(other -> other.options.contains(option))
                    .map(DeviceAction::toString)
                    .collect(Collectors.joining(", "));
            if (!others.isEmpty() && !options.contains(option)) {
                return "option '" + option + "' is for " + others + ", not for " + this;
            }
        }
        if (arguments.size() < least) {
            return this + ": missing argument REMOTE";
        }
        return arguments.size() > most ? this + ": unexpected argument '" + arguments.get(most) + "'" : null;
    }

    @Override
    public String toString() {
        return name().toLowerCase(Locale.ROOT).replace('_', '-');
    }

    /** The name of an action. */
    static final class Converter implements ITypeConverter<DeviceAction> {
        @Override
        public DeviceAction convert(String text) {
            return Arrays.stream(values()).filter(action -> action.toString().equals(text)).findFirst()
                    .orElseThrow(() -> new TypeConversionException("unknown action '" + text + "': use "
                            + Arrays.stream(values()).map(DeviceAction::toString).collect(Collectors.joining(", "))));
        }
    }
}
