package com.velotra.tv.tavro.tool;

import com.velotra.tv.tavro.tool.output.Terminal;
import java.io.FilterOutputStream;
import java.io.IOException;
import java.io.OutputStream;
import java.io.PrintStream;
import java.nio.charset.StandardCharsets;

/**
 * UTF-8 output that cannot control the terminal, since texts come from files and broadcasts. Control characters other
 * than line feeds become dots. Only colors remain, on a terminal that has them: sequences of ESC, [, one or two digits
 * and m. Keeps the first failure, which a PrintStream does not report.
 */
final class SafeOutput extends FilterOutputStream {
    private static final byte[] DOT = "·".getBytes(StandardCharsets.UTF_8);
    private static final int C1_LEAD = 0xC2; // U+0080 to U+009F in UTF-8: this byte, and one from 0x80 to 0x9F
    private static final int DELETE = 0x7F;

    private static final int ESCAPE = 0x1B;
    private static final int MOST_DIGITS = 2; // of a color

    private final StringBuilder color = new StringBuilder(); // what has come of a sequence, without its ESC
    private boolean colorPending;
    private boolean leadPending;
    private IOException failure;

    private SafeOutput(OutputStream out) {
        super(out);
    }

    /** Returns a stream that writes safely to {@code out}. */
    static Stream over(OutputStream out) {
        return new Stream(new SafeOutput(out));
    }

    /** Replaces System.out and System.err. */
    static final class Stream extends PrintStream {
        private final SafeOutput output;

        private Stream(SafeOutput output) {
            super(output, true, StandardCharsets.UTF_8);
            this.output = output;
        }

        /** Flushes. Returns the first failure to write, or null. */
        IOException failure() {
            flush();
            return output.failure;
        }
    }

    @Override
    public void write(int value) throws IOException {
        int unsigned = value & 0xFF;
        if (colorPending && continuesColor(unsigned)) {
            return;
        }
        if (unsigned == ESCAPE && Terminal.hasColors()) {
            colorPending = true;
        } else {
            writeText(unsigned);
        }
    }

    /** Takes a byte after ESC. Returns whether it belongs to a color; if not, what came before it is printed. */
    private boolean continuesColor(int unsigned) throws IOException {
        int digits = color.length() - 1;
        if (digits < 0 && unsigned == '[' || digits >= 0 && digits < MOST_DIGITS && Character.isDigit(unsigned)) {
            color.append((char) unsigned);
            return true;
        }
        String text = color.toString();
        color.setLength(0);
        colorPending = false;
        if (digits > 0 && unsigned == 'm') {
            out.write(("\u001b" + text + "m").getBytes(StandardCharsets.US_ASCII));
            return true;
        }
        out.write(DOT);
        out.write(text.getBytes(StandardCharsets.US_ASCII));
        return false;
    }

    private void writeText(int unsigned) throws IOException {
        if (leadPending) {
            leadPending = false;
            if (unsigned >= 0x80 && unsigned <= 0x9F) {
                out.write(DOT);
                return;
            }
            out.write(C1_LEAD);
        }
        if (unsigned == C1_LEAD) {
            leadPending = true;
        } else if (unsigned < ' ' && unsigned != '\n' || unsigned == DELETE) {
            out.write(DOT);
        } else {
            out.write(unsigned);
        }
    }

    @Override
    public void write(byte[] bytes, int offset, int length) throws IOException {
        try {
            for (int i = offset; i < offset + length; i++) {
                write(bytes[i]);
            }
        } catch (IOException e) {
            remember(e);
        }
    }

    @Override
    public void flush() throws IOException {
        try {
            out.flush();
        } catch (IOException e) {
            remember(e);
        }
    }

    private void remember(IOException e) throws IOException {
        failure = failure == null ? e : failure;
        throw e;
    }
}
