package com.velotra.tv.tavro.services.channellist;

import static org.junit.jupiter.api.Assertions.assertEquals;

import java.io.IOException;
import java.lang.reflect.Method;
import java.nio.file.Path;
import java.util.ArrayList;
import java.util.HashMap;
import java.util.Iterator;
import java.util.List;
import java.util.Map;
import java.util.Set;
import java.util.TreeSet;
import java.util.regex.Pattern;
import java.util.stream.Collectors;
import java.util.stream.Stream;
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
                    ? ended(line)
                    : new Outcome(fields[0], fields[1], fields[2], Boolean.parseBoolean(fields[3]), fields[4]);
        }

        static Outcome ended(String how) {
            return new Outcome(how, "", "", false, "");
        }

        Outcome withRecord(String other) {
            return new Outcome(result, other, written, locked, errors);
        }

        Outcome withWritten(String other) {
            return new Outcome(result, record, other, locked, errors);
        }

        Outcome withErrors(String other) {
            return new Outcome(result, record, written, locked, other);
        }
    }

    /** A row of the second table: how some natives read an identifier that is passed to them in one of some places. */
    private record Rule(
            Set<String> natives, Set<String> places, String reading, String list, String refused, boolean locked,
            String ofNull) {
        private static final List<String> READINGS = List.of("strict", "lenient", "record only");
        private static final String LOCKED = "; the list stays locked";

        static Rule of(List<String> row) {
            return new Rule(
                    BadInputDocument.natives(row.get(0), row.get(1)), Set.of(row.get(2).split(", ")), row.get(3),
                    row.get(4),
                    plain(row.get(5).replace(LOCKED, "")), row.get(5).endsWith(LOCKED), plain(row.get(6)));
        }

        boolean covers(BadInputCalls.Call call) {
            return natives.contains(BadInputCalls.fullName(call.method())) && places.contains(call.place().text);
        }

        /** What the rule makes of an identifier, given the identifier's row of the first table. */
        String cell(List<String> row) {
            if (row.get(0).equals("`null`") && !ofNull.equals("refused")) {
                return ofNull;
            }
            String cell = row.get(1 + READINGS.indexOf(reading));
            return cell.equals("as lenient") ? row.get(1 + READINGS.indexOf("lenient")) : cell;
        }
    }

    private static String plain(String cell) {
        return cell.replace("`", "");
    }

    /** What one call does with each identifier, found and documented. */
    private static final class Comparison {
        private final BadInputCalls.Call call;
        private final Rule rule;
        private final Map<String, Outcome> found;
        private final Outcome accepted;

        Comparison(BadInputCalls.Call call, Rule rule, Map<String, Outcome> found) {
            this.call = call;
            this.rule = rule;
            this.found = found;
            accepted = found.get("3,4");
            if (call.place() == BadInputCalls.Place.REFERENCE) {
                long different = Stream.of("3,4", "0,4", "9,4", null).map(found::get).map(Outcome::written).distinct()
                        .count();
                assertEquals(4, different, call + ": the records that are written show the reference");
            }
        }

        Outcome documented(List<String> row) {
            if (rule.reading.equals("never read")) {
                return accepted;
            }
            String cell = rule.cell(row);
            if (cell.startsWith("refused")) {
                return refused(String.join(" ", BadInputDocument.quoted(cell)));
            }
            return cell.startsWith("ends") ? Outcome.ended(plain(cell)) : read(plain(cell));
        }

        private Outcome refused(String errors) {
            return switch (rule.refused) {
                case "ignored" -> accepted.withErrors(errors);
                case "not stored" -> accepted.withWritten(found.get(null).written).withErrors(errors);
                default -> done(rule.refused, rule.locked, errors);
            };
        }

        private Outcome read(String record) {
            if (call.place() == BadInputCalls.Place.REFERENCE) {
                return accepted.withWritten(found.get(record).written);
            } else if (rule.refused.equals("ignored")) {
                return accepted;
            }
            String list = rule.list.equals("argument") ? String.valueOf(BadInputCalls.LIST) : record.split(",")[0];
            return BadInputProbe.OPEN_LISTS.contains(Integer.parseInt(list))
                    ? accepted.withRecord(list + "," + record.substring(record.indexOf(',') + 1))
                    : done(failure(call.method()), false, "");
        }

        /** Nothing is read or written, but what a list update has done before it comes to a later element. */
        private Outcome done(String result, boolean locked, String errors) {
            boolean isLater = call.place() == BadInputCalls.Place.LATER;
            String first = isLater ? accepted.record.replace(",4", ",2") : "";
            return new Outcome(result, first, isLater ? accepted.written : "", locked, errors);
        }

        private static String failure(Method method) {
            Class<?> type = method.getReturnType();
            return type == int.class ? "-22" : type == String.class ? "\"\"" : "null";
        }
    }

    @Test
    void nativesReadIdentifiersAsDocumented() throws IOException, InterruptedException {
        List<List<String>> rows = BadInputDocument.table(BadInputDocument.IDENTIFIERS);
        List<String> identifiers = BadInputDocument.identifiers();
        List<Rule> rules = BadInputDocument.table("How each native reads an identifier").stream().map(Rule::of)
                .toList();
        List<BadInputCalls.Call> calls = BadInputCalls.all();
        Iterator<String> outcomes = ChildProcesses.outcomes(folder, "identifiers", calls.size() * rows.size())
                .iterator();

        List<String> differences = new ArrayList<>();
        for (BadInputCalls.Call call : calls) {
            List<Rule> covering = rules.stream().filter(rule -> rule.covers(call)).toList();
            assertEquals(1, covering.size(), "rows that cover " + call);
            Map<String, Outcome> found = new HashMap<>();
            identifiers.forEach(identifier -> found.put(identifier, Outcome.of(outcomes.next())));
            Comparison comparison = new Comparison(call, covering.get(0), found);
            for (int i = 0; i < rows.size(); i++) {
                Outcome documented = comparison.documented(rows.get(i));
                Outcome actual = found.get(identifiers.get(i));
                if (!documented.equals(actual)) {
                    differences.add(
                            "\n" + call + " with " + rows.get(i).get(0) + ": documented " + documented + ", found "
                            + actual);
                }
            }
        }
        assertEquals(List.of(), differences);
    }

    @Test
    void nativesTreatElementsOfAnotherClassAsDocumented() throws IOException, InterruptedException {
        Map<String, String> documented = new HashMap<>();
        for (List<String> row : BadInputDocument.table("Elements of another class")) {
            String outcome = row.get(2).startsWith("undefined") ? "ends: signal 6" : "throws " + plain(row.get(2));
            BadInputDocument.natives(row.get(0), row.get(1)).forEach(name -> documented.put(name, outcome));
        }
        List<BadInputCalls.ForeignElement> calls = BadInputCalls.foreignElements();
        List<String> outcomes = ChildProcesses.outcomes(
                folder, "elements of another class", calls.size(), "-Xcheck:jni");
        List<String> differences = new ArrayList<>();
        for (int i = 0; i < calls.size(); i++) {
            String name = BadInputCalls.fullName(calls.get(i).method());
            if (!outcomes.get(i).equals(documented.get(name))) {
                differences.add("\n" + name + " with " + calls.get(i).element().getClass() + ": documented "
                        + documented.get(name) + ", found " + outcomes.get(i));
            }
        }
        assertEquals(List.of(), differences);
        assertEquals(
                documented.keySet(),
                calls.stream().map(call -> BadInputCalls.fullName(call.method())).collect(Collectors.toSet()));
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
        Set<String> documented = new TreeSet<>();
        BadInputDocument.table("Before set-up").forEach(row -> documented.add(plain(row.get(0))));
        assertEquals(documented, ending);
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
