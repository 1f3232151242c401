package com.velotra.tv.tavro.tool.output;

/** Colors and styles of texts on a terminal. */
public enum Ansi {
    BOLD(1),
    DIM(2),
    RED(31),
    GREEN(32),
    YELLOW(33),
    BLUE(34),
    MAGENTA(35),
    CYAN(36);

    private final String begin;

    Ansi(int code) {
        begin = "\u001b[" + code + "m";
    }

    /** Returns the text in this style if standard output has colors, otherwise the text itself. */
    public String paint(String text) {
        return Terminal.hasColors() ? begin + text + "\u001b[0m" : text;
    }
}
