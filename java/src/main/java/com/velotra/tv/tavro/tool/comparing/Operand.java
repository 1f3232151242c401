package com.velotra.tv.tavro.tool.comparing;

import com.velotra.tv.tavro.tool.matching.Side;
import java.nio.file.Path;

/** Something to compare, or to take records from: a storage directory, a list, or records. */
public interface Operand {
    /** Returns what it is, for people, such as "service list 1". */
    String description();

    /**
     * All lists of a storage directory.
     *
     * @param directory the directory
     */
    record Directory(Path directory) implements Operand {
        @Override
        public String description() {
            return "storage directory " + directory;
        }
    }

    /**
     * Records of one kind.
     *
     * @param description what they are
     * @param side the records, and the lists to which they refer
     * @param single whether the user named a single record, or a file without anything else
     */
    record Records(String description, Side side, boolean single) implements Operand {}
}
