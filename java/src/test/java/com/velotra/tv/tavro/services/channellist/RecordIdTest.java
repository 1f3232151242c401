package com.velotra.tv.tavro.services.channellist;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertThrows;

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
        for (String bad : List.of("", "3", "3,", ",17", "3,17,9", "a,1", "3;17", "2147483648,1", "-1,2", "+1,2", "1, 2", "\u0661,2")) {
            IllegalArgumentException refused =
                    assertThrows(IllegalArgumentException.class, () -> RecordId.parse(bad), bad);
            assertEquals("'" + bad + "' is not a record identifier; write list and record as in 3,17", refused.getMessage());
        }
    }

    @Test
    void refusesNegativeNumbers() {
        assertThrows(IllegalArgumentException.class, () -> new RecordId(-1, 17));
        IllegalArgumentException refused = assertThrows(IllegalArgumentException.class, () -> new RecordId(3, -17));
        assertEquals("3,-17 is not a record identifier; its numbers start at 0", refused.getMessage());
    }
}
