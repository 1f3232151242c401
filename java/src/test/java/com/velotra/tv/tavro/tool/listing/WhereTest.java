package com.velotra.tv.tavro.tool.listing;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertThrows;
import static org.junit.jupiter.api.Assertions.assertTrue;

import com.velotra.tv.tavro.tool.records.Kind;
import com.velotra.tv.tavro.tool.records.Record;
import com.velotra.tv.tavro.tool.records.RecordList;
import java.util.List;
import java.util.Map;
import java.util.Optional;
import java.util.Random;
import java.util.stream.Collectors;
import org.junit.jupiter.api.Test;

/** The expressions of --where, over services that refer to two transport streams and a satellite. */
class WhereTest {
    private static final String NAME = "use a number, or a name as the column shows it";
    private static final References REFERENCES = References.in(WhereTest::list);

    private static final RecordList SERVICES = RecordList.of(Kind.SERVICES, 1, "services", List.of(
            record(Kind.SERVICES, "record_id=1", "name=Zwölf \"Töne\"", "service_id=101", "service_type=1", "lcn=7",
                    "network_mask=0x0808", "tsl_id=1", "tsl_record_id=1"),
            record(Kind.SERVICES, "record_id=2", "name=Sport 24", "service_id=102", "service_type=2",
                    "network_mask=0x0008", "tsl_id=1", "tsl_record_id=2"),
            record(Kind.SERVICES, "record_id=3", "name=", "service_id=0", "service_type=9", "lcn=700")));

    private static Record record(Kind kind, String... values) {
        return Records.of(kind, values);
    }

    private static Optional<RecordList> list(Kind kind, int listId) {
        return Optional.ofNullable(Map.of(
                Kind.STREAMS, RecordList.of(Kind.STREAMS, 1, "streams", List.of(
                        record(Kind.STREAMS, "record_id=1", "medium=3", "frequency=12187000", "sat_polarization=0",
                                "sat_symbol_rate=27500000", "sat_fec_inner=4", "sat_mode=2", "transport_stream_id=1089",
                                "satl_id=1", "satl_record_id=5"),
                        record(Kind.STREAMS, "record_id=2", "medium=2", "frequency=330000", "cab_symbol_rate=6900000",
                                "cab_mode=1"))),
                Kind.SATELLITES, RecordList.of(Kind.SATELLITES, 1, "satellites", List.of(
                        record(Kind.SATELLITES, "record_id=5", "name=Astra", "orbital_position=192"))))
                .get(listId == 1 ? kind : Kind.NETWORKS));
    }

    /** The record ids that an expression selects. */
    private static String selected(String expression) {
        Condition condition = Where.parse(Columns.of(Kind.SERVICES), expression);
        return SERVICES.stream().filter(record -> condition.test(record, REFERENCES))
                .map(record -> Integer.toString(record.id())).collect(Collectors.joining(" "));
    }

    private static void assertSelected(String[][] cases) {
        for (String[] one : cases) {
            assertEquals(one[1], selected(one[0]), one[0]);
        }
    }

    @Test
    void numbersAreCompared() {
        assertSelected(new String[][] {
            {"sid=101", "1"}, {"service_id == 101", "1"}, {"SERVICE-ID=0x65", "1"}, {"sid=0X66", "2"},
            {"sid!=101", "2 3"}, {"sid<101", "3"}, {"sid<=101", "1 3"}, {"sid>101", "2"}, {"sid>=101", "1 2"},
            {"record>1", "2 3"}, {"freq>330000", "1"}, {"sr=6900000", "2"}});
    }

    @Test
    void namesOfCodesAreComparedInAnyCase() {
        assertSelected(new String[][] {
            {"pol=H", "1"}, {"pol=h", "1"}, {"pol=horizontal", "1"}, {"pol=0", "1"}, {"fec=3/4", "1"}, {"fec=4", "1"},
            {"position=19.2E", "1"}, {"pos=s19.2e", "1"}, {"pos=192", "1"}, {"pos>5W", "1"}, {"pos<5W", ""},
            {"type=tv", "1"}, {"type=RADIO", "2"}, {"standard='dvb-s2'", "1"},
            {"scrambled=yes", "1"}, {"scrambled=no", "2 3"}, {"shown=true", "1 2"},
            {"vnetscrambled=yes", "1"}, {"broadcast_type=dvb", "1 2 3"}, {"service_type=1", "1"}});
    }

    @Test
    void textsAreComparedExactlyOrSearched() {
        assertSelected(new String[][] {
            {"name=\"Sport 24\"", "2"}, {"name='sport 24'", ""}, {"name~SPORT", "2"}, {"name~zwolf", "1"},
            {"name~\"ZWÖLF \\\"t\"", "1"}, {"name!~zwolf", "2 3"}, {"name=''", "3"}, {"name>='Z'", "1"},
            {"satellite=Astra", "1"}, {"sat~ASTRA", "1"}, {"stream_record='1,2'", "2"}, {"stream_record=1,2", "2"},
            {"name~'\\\\'", ""}, {"name~'\\x'", ""}});
    }

    @Test
    void aMissingValueFulfilsOnlyItsNegation() {
        assertSelected(new String[][] {
            {"pol!=H", "2 3"}, {"pol=V", ""}, {"freq<1", ""}, {"freq>=0", "1 2"}, {"lcn>0", "1 3"},
            {"sat!=Astra", "2 3"}, {"sat!~astra", "2 3"}, {"sat<Z", "1"}});
    }

    @Test
    void aColumnAloneIsFulfilledByAnyValueButNothing() {
        assertSelected(new String[][] {
            {"scrambled", "1"}, {"not shown", "3"}, {"name", "1 2"}, {"sid", "1 2"}, {"satellite", "1"},
            {"polarization", ""}, {"frequency", "1 2"}});
    }

    @Test
    void andBindsMoreThanOrAndNotMoreThanBoth() {
        assertSelected(new String[][] {
            {"sid=101 or sid=102 and pol=H", "1"}, {"(sid=101 or sid=102) and pol=H", "1"},
            {"sid=102 or sid=101 and pol=H", "1 2"}, {"(sid=102 or sid=101) and not pol=H", "2"},
            {"not sid=101 and not sid=102", "3"}, {"not (sid=101 and pol=H)", "2 3"}, {"not not sid=101", "1"},
            {"NOT sid=101 AND sid>0 OR sid=101", "1 2"}, {" ( ( sid = 101 ) ) ", "1"}});
    }

    @Test
    void whatIsWrongIsMarked() {
        String[][] cases = {
            {"", "expected a column", "^"},
            {"freq>", "expected a value after '>'", "     ^"},
            {"freq> and pol=H", "expected a value after '>'", "      ^"},
            {"and", "expected a column", "^"},
            {"not", "expected a column", "   ^"},
            {"fre=1", "unknown column 'fre'", "^"},
            {"name~ü and fre", "unknown column 'fre'", "           ^"},
            {"sid=abc", "'abc' is not a value of service_id: use a number", "    ^"},
            {"sid=99999999999999999999", "'99999999999999999999' is not a value of service_id: use a number", "    ^"},
            {"pol=X", "'X' is not a value of polarization: " + NAME, "    ^"},
            {"type=1 or service_type=audio", "'audio' is not a value of service_type: " + NAME, " ".repeat(23) + "^"},
            {"scrambled=maybe", "'maybe' is not a value of scrambled: use yes or no", "          ^"},
            {"sid=<1", "unknown operator '=<': use = != < <= > >= ~ or !~", "   ^"},
            {"name~\"x", "a quote is not closed", "     ^"},
            {"(sid=1", "expected ')'", "      ^"},
            {"sid=1)", "expected 'and', 'or' or the end", "     ^"},
            {"sid=1 sid=2", "expected 'and', 'or' or the end", "      ^"},
            {"sid=1 and", "expected a column", "         ^"},
            {"=1", "expected a column", "^"},
            {"朝日=1", "unknown column '朝日'", "^"},
            {"name='朝日' x", "expected 'and', 'or' or the end", "            ^"}};
        for (String[] one : cases) {
            MalformedExpression wrong = assertThrows(MalformedExpression.class, () -> selected(one[0]), one[0]);
            assertEquals(one[1], wrong.getMessage(), one[0]);
            assertEquals("  " + one[0] + "\n  " + one[2], wrong.marked(), one[0]);
        }
    }

    @Test
    void controlCharactersDoNotReachTheTerminal() {
        MalformedExpression wrong = assertThrows(MalformedExpression.class, () -> selected("name~'\u001b' \n or"));
        assertEquals("  name~'·' · or\n               ^", wrong.marked());
    }

    @Test
    void deepNestingIsRefused() {
        assertEquals("1", selected("sid=9 or ".repeat(100_000) + "sid=101"));
        assertEquals("1", selected("sid=101 and ".repeat(100_000) + "sid=101"));
        assertEquals("1", selected("(".repeat(99) + "sid=101" + ")".repeat(99)));
        assertEquals("more than 100 parentheses and 'not' within each other",
                assertThrows(MalformedExpression.class, () -> selected("not ".repeat(100_000) + "sid")).getMessage());
    }

    @Test
    void anyWordsAreAnExpressionOrMarked() {
        String[] words = {"sid", "name", "pol", "x", "101", "0x65", "H", "=", "!=", "~", "<", "(", ")", "'a'", "\"",
            "and", "or", "not", " ", "ü", "-", "\\"};
        Random random = new Random(1);
        int understood = 0;
        for (int i = 0; i < 3_000; i++) {
            StringBuilder expression = new StringBuilder();
            for (int word = random.nextInt(8); word >= 0; word--) {
                expression.append(words[random.nextInt(words.length)]).append(random.nextBoolean() ? " " : "");
            }
            try {
                selected(expression.toString());
                understood++;
            } catch (MalformedExpression e) {
                assertTrue(e.marked().startsWith("  " + expression + "\n  "), expression.toString());
            }
        }
        assertTrue(understood > 40, understood + " of 3000");
    }
}
