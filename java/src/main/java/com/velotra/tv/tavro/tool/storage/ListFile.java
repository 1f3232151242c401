package com.velotra.tv.tavro.tool.storage;

import com.velotra.tv.tavro.tool.input.Failure;
import com.velotra.tv.tavro.tool.records.Kind;
import com.velotra.tv.tavro.tool.records.RecordList;
import java.nio.charset.StandardCharsets;
import java.nio.file.Path;

/** List files, as the natives of the channel list library store and load them. */
public final class ListFile {
    private ListFile() {}

    /**
     * Returns whether a file looks like a list file: a SQLite database with the application id of list files. It may be
     * damaged.
     *
     * @throws Failure if it cannot be read
     */
    public static boolean isOne(Path file) {
        return ToolLibrary.isListFile(ToolLibrary.bytes(file));
    }

    /**
     * Reads a list file. The list id and the name are those of the list that was stored.
     *
     * @throws Failure if it cannot be read, is not a list file or is damaged
     */
    public static RecordList read(Path file) {
        return Snapshot.recordList(ToolLibrary.readFile(ToolLibrary.bytes(file)));
    }

    /**
     * Reads a list file of one kind.
     *
     * @throws Failure also if it has a list of another kind
     */
    public static RecordList read(Path file, Kind kind) {
        RecordList list = read(file);
        if (list.kind() != kind) {
            throw new Failure("cannot read list file " + file + ": it has a " + list.kind().noun() + " list, not a "
                    + kind.noun() + " list; use --kind " + list.kind());
        }
        return list;
    }

    /**
     * Reads the content of a list file, for example from standard input.
     *
     * @param name what messages call it
     * @throws Failure if it is not the content of a list file or is damaged
     */
    public static RecordList readBytes(byte[] content, String name) {
        ToolLibrary.load();
        return Snapshot.recordList(ToolLibrary.parseFile(content, name.getBytes(StandardCharsets.UTF_8)));
    }

    /**
     * Writes a list file. It replaces an old file at once, or not at all.
     *
     * @throws Failure if it cannot be written, or if two records have the same id or one has the id 65535
     */
    public static void write(Path file, RecordList list) {
        ToolLibrary.writeFile(ToolLibrary.bytes(file), list.kind().number(), list.listId(),
                list.name().getBytes(StandardCharsets.UTF_8), list.bytes());
    }
}
