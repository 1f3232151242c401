package com.velotra.tv.tavro.tool.listing;

import java.util.ArrayList;
import java.util.List;

/** The words of an expression, one after the other. */
final class Tokens {
    /** What a word is. */
    enum Type { WORD, TEXT, OPERATOR, OPEN, CLOSE, END }

    /**
     * A word of an expression.
     *
     * @param text a text without its quotes
     * @param position the index of its first character in the expression
     */
    record Token(Type type, String text, int position) {
        boolean is(String keyword) {
            return type == Type.WORD && text.equalsIgnoreCase(keyword);
        }
    }

    private static final String OPERATOR_CHARACTERS = "=!<>~";
    private static final List<String> OPERATORS = List.of("=", "==", "!=", "<", "<=", ">", ">=", "~", "!~");

    private final String expression;
    private final List<Token> tokens = new ArrayList<>();
    private int next;

    /** Splits an expression. */
    Tokens(String expression) {
        this.expression = expression;
        int at = 0;
        while (at < expression.length()) {
            at = Character.isWhitespace(expression.charAt(at)) ? at + 1 : add(at);
        }
        tokens.add(new Token(Type.END, "", expression.length()));
    }

    /** Adds the word that begins at {@code start}; returns the index behind it. */
    private int add(int start) {
        char first = expression.charAt(start);
        if (first == '(' || first == ')') {
            tokens.add(new Token(first == '(' ? Type.OPEN : Type.CLOSE, String.valueOf(first), start));
            return start + 1;
        }
        if (first == '"' || first == '\'') {
            return addText(start, first);
        }
        boolean operator = isOperator(first);
        int end = start;
        while (end < expression.length() && (operator ? isOperator(expression.charAt(end)) : inWord(end))) {
            end++;
        }
        String text = expression.substring(start, end);
        if (operator && !OPERATORS.contains(text)) {
            throw new MalformedExpression("unknown operator '" + text + "': use = != < <= > >= ~ or !~", expression,
                    start);
        }
        tokens.add(new Token(operator ? Type.OPERATOR : Type.WORD, text, start));
        return end;
    }

    /** Adds a text in quotes. A backslash before a quote or a backslash makes it part of the text. */
    private int addText(int start, char quote) {
        StringBuilder text = new StringBuilder();
        for (int at = start + 1; at < expression.length(); at++) {
            char character = expression.charAt(at);
            if (character == quote) {
                tokens.add(new Token(Type.TEXT, text.toString(), start));
                return at + 1;
            }
            boolean escaped = character == '\\' && at + 1 < expression.length()
                    && "\\\"'".indexOf(expression.charAt(at + 1)) >= 0;
            at += escaped ? 1 : 0;
            text.append(expression.charAt(at));
        }
        throw new MalformedExpression("a quote is not closed", expression, start);
    }

    private static boolean isOperator(char character) {
        return OPERATOR_CHARACTERS.indexOf(character) >= 0;
    }

    private boolean inWord(int at) {
        char character = expression.charAt(at);
        return !isOperator(character) && !Character.isWhitespace(character) && "()\"'".indexOf(character) < 0;
    }

    /** Returns the next word without taking it. */
    Token peek() {
        return tokens.get(next);
    }

    /** Takes the next word. The end can be taken again and again. */
    Token take() {
        Token token = peek();
        next += token.type() == Type.END ? 0 : 1;
        return token;
    }

    /** Takes the next word if it is that keyword. */
    boolean take(String keyword) {
        boolean there = peek().is(keyword);
        next += there ? 1 : 0;
        return there;
    }

    MalformedExpression malformed(String message, Token at) {
        return new MalformedExpression(message, expression, at.position());
    }
}
