package com.velotra.tv.tavro.tool.shell;

import com.velotra.tv.tavro.services.channellist.Printable;
import java.io.IOException;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.List;
import java.util.Optional;
import org.jline.reader.Candidate;
import org.jline.reader.EndOfFileException;
import org.jline.reader.LineReader;
import org.jline.reader.LineReaderBuilder;
import org.jline.reader.ParsedLine;
import org.jline.reader.UserInterruptException;
import org.jline.terminal.Size;
import org.jline.terminal.Terminal;

/** Reads lines from a terminal, with history and completion, and runs them. */
public final class Prompt {
    private static final int USUAL_COLUMNS = 80;
    private static final int USUAL_ROWS = 24;
    private static final int MOST_LISTED = 100;

    private final Interpreter interpreter;
    private final LineReader reader;

    /** {@code history} is the file that keeps the lines; without one they are forgotten at the end. */
    public Prompt(Terminal terminal, Interpreter interpreter, Optional<Path> history) {
        this.interpreter = interpreter;
        if (terminal.getWidth() <= 0) { // not known, as on some serial lines
            terminal.setSize(new Size(USUAL_COLUMNS, USUAL_ROWS));
        }
        Suggestions suggestions = new Suggestions(interpreter.commands());
        LineReaderBuilder builder = LineReaderBuilder.builder()
                .terminal(terminal)
                .appName("tavro")
                .parser((line, cursor, context) -> new Parsed(line, cursor, Words.before(line, cursor)))
                .completer((line, parsed, candidates) -> suggestions.complete(parsed.words()).stream()
                        .map(Prompt::candidate)
                        .forEach(candidates::add))
                .variable(LineReader.LIST_MAX, MOST_LISTED);
        history.ifPresent(file -> builder.variable(LineReader.HISTORY_FILE, file));
        reader = builder.build();
        reader.setOpt(LineReader.Option.DISABLE_EVENT_EXPANSION); // deliberate: ! is an ordinary character
        reader.unsetOpt(LineReader.Option.AUTO_REMOVE_SLASH);
    }

    /** Returns the history file of this user, in the state directory but not among the lists. Creates its folder. */
    public static Optional<Path> historyFile() {
        String state = System.getenv("XDG_STATE_HOME");
        String home = System.getenv("HOME");
        if (state == null || state.isEmpty()) {
            if (home == null || home.isEmpty()) {
                return Optional.empty();
            }
            state = home + "/.local/state";
        }
        try {
            return Optional.of(Files.createDirectories(Path.of(state, "tavro-shell")).resolve("history"));
        } catch (IOException e) {
            return Optional.empty(); // deliberate: a shell without history is better than none
        }
    }

    /** Runs lines until the user ends the shell. Returns the exit code of the last command. */
    public int run() {
        while (!interpreter.ended()) {
            try {
                interpreter.run(reader.readLine(Interpreter.PROMPT));
            } catch (UserInterruptException e) { // Ctrl-C
                continue;
            } catch (EndOfFileException e) { // Ctrl-D
                break;
            }
        }
        return interpreter.exit();
    }

    private static Candidate candidate(Suggestion suggestion) {
        String shown = Printable.of(suggestion.word());
        String description = suggestion.description().isEmpty() ? null : Printable.of(suggestion.description());
        return new Candidate(quoted(suggestion.word()), shown, null, description, null, null, suggestion.whole());
    }

    private static String quoted(String word) {
        return word.matches("[^\\s'\"\\\\#]*") ? word : word.replaceAll("([\\s'\"\\\\#])", "\\\\$1");
    }

    /** A line with its words up to the cursor. */
    private record Parsed(String line, int cursor, List<String> words) implements ParsedLine {
        @Override
        public String word() {
            return quoted(words.get(words.size() - 1));
        }

        @Override
        public int wordCursor() {
            return word().length();
        }

        @Override
        public int wordIndex() {
            return words.size() - 1;
        }
    }
}
