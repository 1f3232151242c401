package com.velotra.tv.tavro.tool.records;

import java.util.ArrayList;
import java.util.List;
import java.util.OptionalLong;
import java.util.StringJoiner;

/** The names of a field's numbers: of its codes, or of the bits of a flag word. */
final class Names {
    private static final int MOST_NAMED = 12; // names in a message

    private final List<Field.Code> codes;
    private final List<Field.Flag> flags;

    Names(List<Field.Code> codes, List<Field.Flag> flags) {
        this.codes = codes;
        this.flags = flags;
    }

    /** Returns the name of a code, or the flags that are set, with unknown bits as a number; empty without any. */
    String of(long number) {
        if (flags.isEmpty()) {
            for (Field.Code code : codes) {
                if (code.number() == number) {
                    return code.name();
                }
            }
            return "";
        }
        StringJoiner set = new StringJoiner(", ");
        long unknown = number;
        for (Field.Flag flag : flags) {
            if ((number & flag.mask()) != 0) {
                set.add(flag.key());
                unknown &= ~flag.mask();
            }
        }
        return (unknown == 0 ? set : set.add("0x" + Long.toHexString(unknown))).toString();
    }

    /** Returns the number of the only code with that name; else of the only one whose name begins like that. */
    OptionalLong number(String name) {
        List<Field.Code> begin = new ArrayList<>();
        List<Field.Code> equal = new ArrayList<>();
        for (Field.Code code : codes) {
            if (code.name().regionMatches(true, 0, name, 0, name.length()) && !name.isEmpty()) {
                begin.add(code);
                if (code.name().length() == name.length()) {
                    equal.add(code);
                }
            }
        }
        List<Field.Code> found = equal.isEmpty() ? begin : equal;
        return found.size() == 1 ? OptionalLong.of(found.get(0).number()) : OptionalLong.empty();
    }

    /** Returns whether a text is a list of flags to set or clear. */
    boolean isFlags(String text) {
        return !flags.isEmpty() && text.length() > 1 && "+-".indexOf(text.charAt(0)) >= 0
                && Character.isLetter(text.charAt(1));
    }

    /**
     * Returns a flag word after setting and clearing flags, as in {@code +VnetVisible -VnetEpg}.
     *
     * @throws IllegalArgumentException with a message for the user if the flag does not exist
     */
    long changed(String text, long word) {
        long changed = word;
        for (String item : text.split("[ ,]+")) {
            Field.Flag flag = flags.stream()
                    .filter(known -> item.matches("[+-].*") && known.key().equalsIgnoreCase(item.substring(1)))
                    .findFirst()
                    .orElseThrow(() -> new IllegalArgumentException(
                            "'" + item + "' is not a flag with + or - before it" + hint()));
            changed = item.startsWith("+") ? changed | flag.mask() : changed & ~flag.mask();
        }
        return changed;
    }

    /** Returns which names may be written; empty if there are none. */
    String hint() {
        List<String> names = flags.isEmpty()
                ? codes.stream().map(Field.Code::name).distinct().toList()
                : flags.stream().map(Field.Flag::key).toList();
        if (names.isEmpty()) {
            return "";
        }
        String some = String.join(", ", names.subList(0, Math.min(MOST_NAMED, names.size())))
                + (names.size() > MOST_NAMED ? ", …" : "");
        return (flags.isEmpty() ? ", or one of: " : "; the flags are ") + some;
    }
}
