package com.velotra.tv.tavro.tool.editing;

import com.velotra.tv.tavro.services.channellist.RecordId;
import com.velotra.tv.tavro.services.channellist.VltTvTransportStreamInfoBase.AlternateFrequencyInfoBase;
import java.util.Arrays;
import java.util.Locale;

/** Values as the user writes them. */
final class ValueTexts {
    private ValueTexts() {}

    static boolean isOn(String value) {
        return switch (value.toLowerCase(Locale.ROOT)) {
            case "1", "true", "yes", "on" -> true;
            case "0", "false", "no", "off" -> false;
            default -> throw new IllegalArgumentException("'" + value + "' is neither yes nor no");
        };
    }

    static int number(String value) {
        try {
            long number = Long.decode(value.matches("0[0-9]+") ? value.replaceFirst("0+(?=.)", "") : value);
            if (number >= Integer.MIN_VALUE && number < 1L << Integer.SIZE) {
                return (int) number;
            }
        } catch (NumberFormatException e) {
            // Falls through to the message.
        }
        throw new IllegalArgumentException("'" + value + "' is not a number of 32 bits");
    }

    static int[] numbers(String value) {
        return value.isEmpty() ? new int[0] : Arrays.stream(value.split(",")).mapToInt(ValueTexts::number).toArray();
    }

    /** Frequencies with bandwidths, such as 506000:8000,514000:8000. */
    static AlternateFrequencyInfoBase[] frequencies(String value) {
        return Arrays.stream(value.split(",")).map(one -> {
            String[] parts = one.split(":", -1);
            if (parts.length != 2) {
                throw new IllegalArgumentException("'" + one + "' is not of the form FREQUENCY:BANDWIDTH");
            }
            return new AlternateFrequencyInfoBase(number(parts[0]), number(parts[1]));
        }).toArray(AlternateFrequencyInfoBase[]::new);
    }

    static RecordId reference(String value) {
        return value.equals("none") ? new RecordId(0, 0) : RecordId.parse(value);
    }
}
