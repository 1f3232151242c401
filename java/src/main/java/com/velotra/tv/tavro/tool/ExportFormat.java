package com.velotra.tv.tavro.tool;

import com.velotra.tv.tavro.tool.records.Kind;
import java.util.Arrays;
import java.util.Locale;
import java.util.stream.Collectors;
import picocli.CommandLine.ITypeConverter;
import picocli.CommandLine.TypeConversionException;

/** The formats of the export command. */
enum ExportFormat {
    CSV, JSON, VDR, DVBV5, TIF, TIF_JSON;

    /** Returns whether records of a kind can be exported in this format. */
    boolean has(Kind kind) {
        return switch (this) {
            case CSV, JSON -> true;
            case DVBV5 -> kind == Kind.SERVICES || kind == Kind.STREAMS;
            default -> kind == Kind.SERVICES;
        };
    }

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
