package com.velotra.tv.tavro.tool.listing;

import com.velotra.tv.tavro.tool.listing.Column.Type;
import com.velotra.tv.tavro.tool.listing.Tokens.Token;
import java.util.ArrayList;
import java.util.List;
import java.util.OptionalLong;
import java.util.function.IntPredicate;

/**
 * Expressions that select records, as in {@code freq>11000000 and (pol=H or name~"sport")}.
 *
 * <pre>
 * or         = and { "or" and }
 * and        = not { "and" not }
 * not        = "not" not | "(" or ")" | comparison
 * comparison = COLUMN [ OPERATOR VALUE ]
 * </pre>
 *
 * <p>Operators are = (or ==), !=, &lt;, &lt;=, &gt;, &gt;=, ~ (contains, whatever the case and the accents) and !~.
 * Values are numbers (decimal, or hexadecimal after 0x), names of codes such as H, words, and texts in quotes; and, or
 * and not need quotes. A column alone is fulfilled if its value is neither missing nor 0 nor empty. A missing value
 * fulfils only != and !~.
 */
public final class Where {
    private static final int DEEPEST = 100;

    private final Columns columns;
    private final Tokens tokens;
    private int depth;

    private Where(Columns columns, String expression) {
        this.columns = columns;
        this.tokens = new Tokens(expression);
    }

    /**
     * Returns the condition that an expression states.
     *
     * @throws MalformedExpression if it cannot be understood
     */
    public static Condition parse(Columns columns, String expression) {
        Where where = new Where(columns, expression);
        Condition condition = where.or();
        Token rest = where.tokens.peek();
        if (rest.type() != Tokens.Type.END) {
            throw where.tokens.malformed("expected 'and', 'or' or the end", rest);
        }
        return condition;
    }

    // Long chains become loops, because evaluating nested conditions would need a deep stack.

    private Condition or() {
        List<Condition> any = new ArrayList<>(List.of(and()));
        while (tokens.take("or")) {
            any.add(and());
        }
        return any.size() == 1 ? any.get(0) : (record, references) -> {
            for (Condition condition : any) {
                if (condition.test(record, references)) {
                    return true;
                }
            }
            return false;
        };
    }

    private Condition and() {
        List<Condition> all = new ArrayList<>(List.of(not()));
        while (tokens.take("and")) {
            all.add(not());
        }
        return all.size() == 1 ? all.get(0) : (record, references) -> {
            for (Condition condition : all) {
                if (!condition.test(record, references)) {
                    return false;
                }
            }
            return true;
        };
    }

    private Condition not() {
        if (++depth > DEEPEST) {
            throw tokens.malformed("more than " + DEEPEST + " parentheses and 'not' within each other", tokens.peek());
        }
        Condition condition;
        if (tokens.take("not")) {
            Condition inner = not();
            condition = (record, references) -> !inner.test(record, references);
        } else if (tokens.peek().type() == Tokens.Type.OPEN) {
            tokens.take();
            condition = or();
            Token close = tokens.take();
            if (close.type() != Tokens.Type.CLOSE) {
                throw tokens.malformed("expected ')'", close);
            }
        } else {
            condition = comparison();
        }
        depth--;
        return condition;
    }

    private Condition comparison() {
        Token name = tokens.take();
        if (name.type() != Tokens.Type.WORD || name.is("and") || name.is("or")) {
            throw tokens.malformed("expected a column", name);
        }
        Column column = columns.get(name.text())
                .orElseThrow(() -> tokens.malformed("unknown column '" + name.text() + "'", name));
        if (tokens.peek().type() != Tokens.Type.OPERATOR) {
            return isSet(column);
        }
        String operator = tokens.take().text();
        Token value = tokens.take();
        boolean keyword = value.is("and") || value.is("or") || value.is("not");
        if (keyword || value.type() != Tokens.Type.WORD && value.type() != Tokens.Type.TEXT) {
            throw tokens.malformed("expected a value after '" + operator + "'", value);
        }
        return switch (operator) {
            case "~" -> contains(column, value.text());
            case "!~" -> {
                Condition contains = contains(column, value.text());
                yield (record, references) -> !contains.test(record, references);
            }
            default -> compare(column, operator, value);
        };
    }

    private static Condition isSet(Column column) {
        if (column.hasNumbers()) {
            return (record, references) -> {
                long number = column.number(record, references);
                return number != Column.NONE && number != 0;
            };
        }
        return (record, references) -> {
            String text = column.text(record, references);
            return text != null && !text.isEmpty();
        };
    }

    private static Condition contains(Column column, String part) {
        String folded = Folded.of(part);
        return (record, references) -> {
            String text = column.text(record, references);
            return text != null && Folded.of(text).contains(folded);
        };
    }

    private Condition compare(Column column, String operator, Token value) {
        IntPredicate wanted = wanted(operator);
        boolean ofMissing = operator.equals("!=");
        if (column.hasNumbers()) {
            OptionalLong parsed = column.parse(value.text());
            long right = parsed.orElseThrow(() -> tokens.malformed(
                    "'" + value.text() + "' is not a value of " + column + ": " + values(column.type()), value));
            return (record, references) -> {
                long left = column.number(record, references);
                return left == Column.NONE ? ofMissing : wanted.test(Long.compare(left, right));
            };
        }
        String right = value.text();
        boolean anyCase = column.type() == Type.TERM;
        return (record, references) -> {
            String left = column.text(record, references);
            return left == null ? ofMissing
                    : wanted.test(anyCase ? left.compareToIgnoreCase(right) : left.compareTo(right));
        };
    }

    private static String values(Type type) {
        return switch (type) {
            case FLAG -> "use yes or no";
            case CODE -> "use a number, or a name as the column shows it";
            default -> "use a number";
        };
    }

    /** What the sign of a comparison must be. */
    private static IntPredicate wanted(String operator) {
        return switch (operator) {
            case "=", "==" -> sign -> sign == 0;
            case "!=" -> sign -> sign != 0;
            case "<" -> sign -> sign < 0;
            case "<=" -> sign -> sign <= 0;
            case ">" -> sign -> sign > 0;
            default -> sign -> sign >= 0;
        };
    }
}
