package com.velotra.tv.tavro.tool.listing;

import com.velotra.tv.tavro.services.channellist.Printable;
import com.velotra.tv.tavro.tool.input.Text;

/** An expression that cannot be understood. */
public final class MalformedExpression extends RuntimeException {
    private static final long serialVersionUID = 1L;

    private final String expression;
    private final int position;

    /** {@code position} is the index of the first character that is wrong. */
    MalformedExpression(String message, String expression, int position) {
        super(message);
        this.expression = expression;
        this.position = position;
    }

    /** Returns the expression, and below it a caret under the character that is wrong. */
    public String marked() {
        String before = Printable.of(expression.substring(0, position));
        return "  " + Printable.of(expression) + System.lineSeparator() + "  " + " ".repeat(Text.width(before)) + "^";
    }
}
