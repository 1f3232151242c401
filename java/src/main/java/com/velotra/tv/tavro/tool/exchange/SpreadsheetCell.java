package com.velotra.tv.tavro.tool.exchange;

import java.nio.charset.Charset;
import java.util.HexFormat;
import java.util.regex.Pattern;

/**
 * Texts in the cells of a CSV file. Spreadsheets change texts that look like something else: they read numbers, dates,
 * formulas and truth values. Such a text gets an apostrophe, by which spreadsheets themselves mark texts. Control
 * characters other than line feeds do not survive a spreadsheet either; a text with one is written in hexadecimal.
 */
final class SpreadsheetCell {
    private static final char TEXT_MARK = '\'';
    private static final int NO_CHARACTER = 0xFFFE; // to the CSV library
    private static final String HEX = "0x"; // the bytes of a text field, as Field.parse takes them
    private static final Charset RECORD_TEXT = Charset.forName("CESU-8");

    // Months with a number, as in MAR1 and May 7, become dates. Spreadsheets use the language of the user: months and
    // truth values are those of English, German and French.
    private static final Pattern LOOKS_DIFFERENT = Pattern.compile(
            "[^\\p{L}].*|(true|false|wahr|falsch|vrai|faux)"
            + "|(jan|feb|mar|apr|may|jun|jul|aug|sep|oct|nov|dec|m\u00E4r|mai|okt|dez|f\u00E9v|avr|juin|juil|ao\u00FB"
            + "|d\u00E9c)\\p{L}*\\W*\\d.*",
            Pattern.CASE_INSENSITIVE | Pattern.UNICODE_CASE | Pattern.DOTALL);

    private SpreadsheetCell() {}

    /** Returns the cell for a text. */
    static String of(String text) {
        if (text.isEmpty() || text.startsWith(HEX)) {
            return text;
        }
        if (text.chars().anyMatch(SpreadsheetCell::isFragile)) {
            return HEX + HexFormat.of().formatHex(text.getBytes(RECORD_TEXT));
        }
        return LOOKS_DIFFERENT.matcher(text).matches() ? TEXT_MARK + text : text;
    }

    private static boolean isFragile(int character) {
        return Character.isISOControl(character) && character != '\n' || character == NO_CHARACTER;
    }

    /** Returns the text in a cell. */
    static String text(String cell) {
        return !cell.isEmpty() && cell.charAt(0) == TEXT_MARK ? cell.substring(1) : cell;
    }
}
