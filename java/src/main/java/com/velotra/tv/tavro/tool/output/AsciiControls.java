package com.velotra.tv.tavro.tool.output;

import java.io.FilterWriter;
import java.io.IOException;
import java.io.Writer;

/**
 * Writes JSON with escapes for DEL and the C1 control characters, which occur in texts only and which Gson does not
 * escape, so that no text controls a terminal.
 */
public final class AsciiControls extends FilterWriter {
    private static final int DELETE = 0x7F;
    private static final int LAST_C1 = 0x9F;

    /** Writes to another writer. */
    public AsciiControls(Writer out) {
        super(out);
    }

    @Override
    public void write(int character) throws IOException {
        if (character >= DELETE && character <= LAST_C1) {
            out.write(String.format("\\u%04x", character));
        } else {
            out.write(character);
        }
    }

    @Override
    public void write(char[] characters, int offset, int length) throws IOException {
        int from = offset;
        int end = offset + length;
        for (int i = offset; i < end; i++) {
            if (characters[i] >= DELETE && characters[i] <= LAST_C1) {
                out.write(characters, from, i - from);
                write(characters[i]);
                from = i + 1;
            }
        }
        out.write(characters, from, end - from);
    }

    @Override
    public void write(String text, int offset, int length) throws IOException {
        write(text.toCharArray(), offset, length);
    }
}
