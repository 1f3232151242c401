package com.velotra.tv.tavro.services.channellist;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertFalse;
import static org.junit.jupiter.api.Assertions.assertThrows;
import static org.junit.jupiter.api.Assertions.assertTrue;

import java.util.List;
import org.junit.jupiter.api.Test;

class RecordIdTest {
    @Test
    void isWrittenAndReadAsListCommaRecord() {
        assertEquals("3,17", new RecordId(3, 17).toString());
        assertEquals(new RecordId(3, 17), RecordId.parse("3,17"));
        assertEquals(new RecordId(0, 65535), RecordId.parse("0,65535"));
    }

    @Test
    void refusesOtherTextNamingIt() {
        for (String bad : List.of("", "3", "3,", ",17", "3,17,9", "a,1", "3;17", "2147483648,1", "-1,2", "+1,2", "1, 2",
                "\u0661,2")) {
            IllegalArgumentException refused =
                    assertThrows(IllegalArgumentException.class, () -> RecordId.parse(bad), bad);
            assertEquals("'" + bad + "' is not a record identifier; write list and record as in 3,17",
                    refused.getMessage());
        }
    }

    @Test
    void holdsWhatRecordsHoldThoughNoListHasIt() {
        assertEquals("0,0", new RecordId(0, 0).toString());
        assertEquals("65535,65535", new RecordId(65535, 65535).toString());
        assertEquals(new RecordId(70000, 65541), RecordId.parse("70000,65541"));
    }

    @Test
    void saysWhetherItNamesARecord() {
        for (String named : List.of("1,0", "1,1", "65535,65534")) {
            assertTrue(RecordId.parse(named).namesRecord(), named);
        }
        for (String none : List.of("0,0", "0,1", "65536,1", "1,65535", "1,65541", "70000,1")) {
            assertFalse(RecordId.parse(none).namesRecord(), none);
        }
    }

    @Test
    void showsDotsForControlCharactersInTextThatItRefuses() {
        IllegalArgumentException refused = assertThrows(IllegalArgumentException.class,
                () -> RecordId.parse("1,\u001b[2J\n"));
        assertEquals("'1,·[2J·' is not a record identifier; write list and record as in 3,17", refused.getMessage());
    }

    @Test
    void refusesNegativeNumbers() {
        assertThrows(IllegalArgumentException.class, () -> new RecordId(-1, 17));
        IllegalArgumentException refused = assertThrows(IllegalArgumentException.class, () -> new RecordId(3, -17));
        assertEquals("3,-17 is not a record identifier; its numbers start at 0", refused.getMessage());
    }
}
