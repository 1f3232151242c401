package com.velotra.tv.tavro.services.channellist;

import static org.junit.jupiter.api.Assertions.assertEquals;

import java.io.IOException;
import java.lang.reflect.Method;
import java.nio.file.Path;
import java.util.ArrayList;
import java.util.List;
import java.util.Map;
import java.util.Set;
import java.util.TreeSet;
import java.util.regex.Pattern;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.io.TempDir;

/** The tables in docs/porting.md on bad identifiers, calls before set-up and failing locks are what the natives do. */
class BadInputTest {
    @TempDir
    private Path folder;

    /** One line of {@link BadInputProbe}. */
    private record Outcome(String result, String record, String written, boolean locked, String errors) {
        static Outcome of(String line) {
            String[] fields = line.split("\t", -1);
            return fields.length == 1
                    ? ended(line) : new Outcome(fields[0], fields[1], fields[2], Boolean.parseBoolean(fields[3]), fields[4]);
        }

        static Outcome ended(String how) {
            return new Outcome(how, "", "", false, "");
        }
    }

    /** A row of the second table: how some natives read an identifier that is passed to them in one place. */
    private record Rule(Set<String> natives, Set<String> places, String reading, String list, String refused, boolean locked, String ofNull) {
        private static final List<String> READINGS = List.of("strict", "lenient", "record only");

        static Rule of(List<String> row) {
            return new Rule(
                    BadInputDocument.natives(row.get(0), row.get(1)), Set.of(row.get(2).split(", ")), row.get(3), row.get(4),
                    row.get(5).replaceAll("`|;.*", ""), row.get(5).endsWith("; the list stays locked"), row.get(6).replace("`", ""));
        }

        boolean covers(BadInputCalls.Call call) {
            return natives.contains(BadInputCalls.fullName(call.method())) && places.contains(call.place().text);
        }

        /** What the rule makes of an identifier, given the identifier's row of the first table. */
        String cell(List<String> identifier) {
            boolean isNull = identifier.get(0).equals("`null`");
            String cell = identifier.get(1 + READINGS.indexOf(reading));
            return isNull && !ofNull.equals("refused") ? ofNull : cell.equals("as lenient") ? identifier.get(2) : cell;
        }
    }

    /** What one native does with each identifier of the first table, measured and documented. */
    private static final class Comparison {
        private final BadInputCalls.Call call;
        private final Rule rule;
        private final List<Outcome> found;
        private final Outcome accepted; // with 3,4
        private final Outcome first; // what a list update has done before it comes to a later element

        Comparison(BadInputCalls.Call call, Rule rule, List<Outcome> found) {
            this.call = call;
            this.rule = rule;
            this.found = found;
            accepted = with("3,4");
            boolean isLater = call.place() == BadInputCalls.Place.LATER;
            first = new Outcome("", isLater ? accepted.record.replace(",4", ",2") : "", isLater ? accepted.written : "", false, "");
        }

        private Outcome with(String identifier) {
            return found.get(BadInputDocument.identifiers().indexOf(identifier));
        }

        Outcome documented(List<String> identifier) {
            if (rule.reading.equals("never read")) {
                return accepted;
            }
            String cell = rule.cell(identifier);
            if (cell.startsWith("ends")) {
                return Outcome.ended(cell.replace("`", ""));
            }
            return cell.startsWith("refused") ? refused(String.join(" ", BadInputDocument.quoted(cell))) : read(cell.replace("`", ""));
        }

        private Outcome refused(String errors) {
            return switch (rule.refused) {
                case "ignored" -> new Outcome(accepted.result, accepted.record, accepted.written, false, errors);
                case "not stored" -> new Outcome(accepted.result, accepted.record, with(null).written, false, errors);
                default -> new Outcome(rule.refused, first.record, first.written, rule.locked, errors);
            };
        }

        private Outcome read(String record) {
            if (call.place() == BadInputCalls.Place.REFERENCE) {
                return new Outcome(accepted.result, accepted.record, with(record).written, false, "");
            } else if (rule.refused.equals("ignored")) {
                return accepted;
            }
            String list = rule.list.equals("argument") ? String.valueOf(BadInputCalls.LIST) : record.split(",")[0];
            if (!BadInputProbe.OPEN_LISTS.contains(Integer.parseInt(list))) {
                return new Outcome(failure(call.method()), first.record, first.written, false, "");
            }
            return new Outcome(accepted.result, list + "," + record.substring(record.indexOf(',') + 1), accepted.written, false, accepted.errors);
        }

        private static String failure(Method method) {
            Class<?> type = method.getReturnType();
            return type == int.class ? "-22" : type == String.class ? "\"\"" : "null";
        }
    }

    @Test
    void nativesReadIdentifiersAsDocumented() throws IOException, InterruptedException {
        List<List<String>> identifiers = BadInputDocument.table(BadInputDocument.IDENTIFIERS);
        List<Rule> rules = BadInputDocument.table("How each native reads an identifier").stream().map(Rule::of).toList();
        List<BadInputCalls.Call> calls = BadInputCalls.all();
        List<Outcome> outcomes = ChildProcesses.outcomes(folder, "identifiers", calls.size() * identifiers.size())
                .stream().map(Outcome::of).toList();

        List<String> differences = new ArrayList<>();
        for (int i = 0; i < calls.size(); i++) {
            BadInputCalls.Call call = calls.get(i);
            List<Rule> covering = rules.stream().filter(rule -> rule.covers(call)).toList();
            assertEquals(1, covering.size(), "rows that cover " + call);
            List<Outcome> found = outcomes.subList(i * identifiers.size(), (i + 1) * identifiers.size());
            Comparison comparison = new Comparison(call, covering.get(0), found);
            for (int k = 0; k < identifiers.size(); k++) {
                Outcome documented = comparison.documented(identifiers.get(k));
                if (!documented.equals(found.get(k))) {
                    differences.add("\n" + call + " with " + identifiers.get(k).get(0) + ": documented " + documented + ", found " + found.get(k));
                }
            }
        }
        assertEquals(List.of(), differences);
    }

    @Test
    void theDocumentedNativesEndTheProcessBeforeSetUp() throws IOException, InterruptedException {
        List<String> names = BadInputCalls.nativesButSetup();
        List<String> after = ChildProcesses.outcomes(folder, "natives", names.size());
        List<String> before = ChildProcesses.outcomes(folder, "natives before set-up", names.size());

        Set<String> ending = new TreeSet<>();
        for (int i = 0; i < names.size(); i++) {
            if (before.get(i).startsWith("ends")) {
                ending.add(names.get(i));
            } else {
                assertEquals(after.get(i), before.get(i), names.get(i));
            }
        }
        assertEquals(new TreeSet<>(BadInputDocument.table("Before set-up").stream().map(row -> row.get(0).replace("`", "")).toList()), ending);
    }

    @Test
    void noNativeEndsTheProcessBeforeSetUpWithEmptyPathsAndLists() throws IOException, InterruptedException {
        List<String> outcomes = ChildProcesses.outcomes(
                folder, "natives on nothing before set-up", BadInputCalls.nativesButSetup().size());
        assertEquals(List.of(), outcomes.stream().filter(outcome -> outcome.startsWith("ends")).toList());
    }

    @Test
    void aFailingLockChangesNoResultAndNoCall() throws IOException, InterruptedException {
        List<String> names = BadInputCalls.nativesButSetup();
        assertEquals(
                ChildProcesses.outcomes(folder, "natives", names.size()),
                ChildProcesses.outcomes(folder, "natives with failing locks", names.size()));
    }

    @Test
    void theDocumentedNativesTakeLocks() throws IOException, InterruptedException {
        List<String> names = BadInputCalls.nativesButSetup();
        List<String> outcomes = ChildProcesses.outcomes(folder, "natives", names.size());
        Map<String, Pattern> locks = Map.of(
                "write", Pattern.compile("x_[a-z]+_lock\\("), "read", Pattern.compile("x_[a-z]+_read_lock\\("));
        locks.forEach((lock, call) -> {
            Set<String> locking = new TreeSet<>();
            for (int i = 0; i < names.size(); i++) {
                if (call.matcher(outcomes.get(i)).find()) {
                    locking.add(names.get(i));
                }
            }
            Set<String> documented = new TreeSet<>();
            for (List<String> row : BadInputDocument.table("When a lock fails")) {
                if (row.get(0).equals(lock)) {
                    documented.addAll(BadInputDocument.natives(row.get(1), row.get(2)));
                }
            }
            assertEquals(documented, locking, lock);
        });
    }
}
