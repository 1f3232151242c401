package com.velotra.tv.tavro.tool;

import java.util.Arrays;
import java.util.Locale;
import java.util.stream.Collectors;
import picocli.CommandLine.ITypeConverter;
import picocli.CommandLine.TypeConversionException;

/** The formats of the export command. */
enum ExportFormat {
    CSV, JSON;

    @Override
    public String toString() {
        return name().toLowerCase(Locale.ROOT).replace('_', '-');
    }

    /** The name of a format. */
    static final class Converter implements ITypeConverter<ExportFormat> {
        @Override
        public ExportFormat convert(String text) {
            return Arrays.stream(values()).filter(format -> format.toString().equals(text)).findFirst()
                    .orElseThrow(() -> new TypeConversionException("unknown format '" + text + "': use "
                            + Arrays.stream(values()).map(ExportFormat::toString).collect(Collectors.joining(", "))));
        }
    }
}
