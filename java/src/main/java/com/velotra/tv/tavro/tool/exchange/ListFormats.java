package com.velotra.tv.tavro.tool.exchange;

import com.velotra.tv.tavro.tool.input.Failure;
import com.velotra.tv.tavro.tool.input.Source;
import com.velotra.tv.tavro.tool.records.Kind;
import java.util.Arrays;
import java.util.List;
import java.util.Optional;
import java.util.regex.Pattern;

/** The formats that hold whole lists, recognized by their content. */
public final class ListFormats {
    private static final int BEGINNING = 4096; // bytes, more than the column names of any kind
    private static final Pattern JSON = Pattern.compile("\\s*\\{\\s*\"format\"\\s*:\\s*\"" + JsonWriter.FORMAT + "\".*",
            Pattern.DOTALL);

    private ListFormats() {}

    /** Returns whether a file has lists as CSV or JSON. */
    public static boolean isOne(Source source) {
        String beginning = beginning(source);
        return isJson(beginning) || beginning.lines().findFirst().flatMap(ListFormats::separator).isPresent();
    }

    /**
     * Reads the lists of a file.
     *
     * @param kind of a CSV file that does not say it
     * @throws Failure if the file is malformed as a whole; malformed rows are in the tables
     */
    public static List<ListTable> read(Source source, Optional<Kind> kind) {
        return isJson(beginning(source)) ? JsonReader.read(source) : List.of(CsvReader.read(source, kind));
    }

    private static boolean isJson(String beginning) {
        return JSON.matcher(beginning).matches();
    }

    /** Returns the separator of a CSV file with a list, given its first line: spreadsheets also use ; and tabs. */
    static Optional<Character> separator(String firstLine) {
        for (char separator : new char[] {',', ';', '\t'}) {
            if (Arrays.stream(firstLine.split(String.valueOf(separator), -1))
                    .map(name -> Columns.normalized(name.replace("\"", "")))
                    .anyMatch(Columns.RECORD_ID::equals)) {
                return Optional.of(separator);
            }
        }
        return Optional.empty();
    }

    private static String beginning(Source source) {
        byte[] bytes = source.bytes();
        int length = Math.min(bytes.length, BEGINNING);
        while (length > 0 && length < bytes.length && (bytes[length] & 0xC0) == 0x80) {
            length--; // part of a character, without which the text is not valid UTF-8
        }
        return new Source(source.name(), source.fileName(), Arrays.copyOf(bytes, length)).text();
    }
}
