package com.velotra.tv.tavro.tool.editing;

import com.velotra.tv.tavro.services.channellist.ChannelListException;
import com.velotra.tv.tavro.services.channellist.Printable;
import com.velotra.tv.tavro.services.channellist.TvList;
import com.velotra.tv.tavro.tool.changes.Change;
import com.velotra.tv.tavro.tool.input.Failure;
import com.velotra.tv.tavro.tool.input.Text;
import com.velotra.tv.tavro.tool.records.Kind;
import com.velotra.tv.tavro.tool.records.RecordList;
import com.velotra.tv.tavro.tool.storage.ListFile;
import com.velotra.tv.tavro.tool.storage.StoredLists;
import java.nio.file.Files;
import java.nio.file.Path;

/** Changes of whole lists. Each method returns the summary for the user, and changes nothing in a dry run. */
public final class WholeLists {
    private WholeLists() {}

    /**
     * Stores a list in a list file and returns the number of its records.
     *
     * @throws Failure if the file exists and is not a list file
     */
    public static int store(Kind kind, int listId, Path file, boolean dryRun) {
        if (Files.isRegularFile(file) && !ListFile.isOne(file)) {
            throw new Failure(Printable.of(file.toString()) + " exists and is not a list file; choose another name or "
                    + "remove it first");
        }
        needWritable(file);
        int records = StoredLists.read(kind, listId).size();
        if (!dryRun) {
            kind.lists().store(listId, pathForNative(file));
            kind.lists().close(listId);
        }
        return records;
    }

    /** The native only reports a status. */
    private static void needWritable(Path file) {
        Path folder = file.toAbsolutePath().getParent();
        String problem = Files.isDirectory(file) ? "it is a directory"
                : folder != null && !Files.isDirectory(folder) ? "no such directory: " + folder
                : Files.exists(file) && !Files.isRegularFile(file) ? "it is not a regular file"
                : null;
        if (problem != null) {
            throw new Failure("cannot write " + Printable.of(file.toString()) + ": " + Printable.of(problem));
        }
    }

    /**
     * Returns a path for a native. The platform takes absolute paths below some directories, such as /data, for paths
     * of a TV and redirects them; the user means files of this machine.
     */
    static String pathForNative(Path file) {
        return file.isAbsolute() ? Path.of("").toAbsolutePath().relativize(file.normalize()).toString()
                : file.toString();
    }

    /**
     * Loads a list from a list file.
     *
     * @throws Failure if the file cannot be read, is damaged or of another kind; the list then stays as it is
     */
    public static String load(Kind kind, int listId, Path file, String command, boolean dryRun) {
        RecordList content = ListFile.read(file);
        if (content.kind() != kind) {
            throw new Failure(Printable.of(file.toString()) + " contains a " + content.kind().noun()
                    + " list; load it with --kind " + content.kind());
        }
        RecordList list = RecordList.of(kind, listId, content.name(), content.bytes());
        if (!dryRun) {
            Change.make(command, change -> {
                change.replace(list);
                return null;
            });
        }
        return of(kind, listId) + ": " + Text.count(list.size(), kind.noun()) + " loaded from "
                + Printable.of(file.toString());
    }

    /** Replaces the records of list {@code to} by those of list {@code from}. */
    public static String copy(Kind kind, int from, int to, String command, boolean dryRun) {
        if (from == to) {
            throw new Failure("cannot copy " + of(kind, from) + " to itself");
        }
        if (!dryRun) {
            change(command, kind, to, lists -> {
                lists.open(to);
                lists.copy(from, to);
            });
        }
        return of(kind, to) + ": " + Text.count(StoredLists.read(kind, from).size(), kind.noun()) + " copied from list "
                + from;
    }

    /** Removes all records of a list. */
    public static String clean(Kind kind, int listId, String command, boolean dryRun) {
        int records = StoredLists.read(kind, listId).size();
        if (!dryRun && records > 0) {
            change(command, kind, listId, lists -> lists.clean(listId));
        }
        return of(kind, listId) + ": " + Text.count(records, kind.noun()) + " removed";
    }

    /** Deletes a list. */
    public static String delete(Kind kind, int listId, String command, boolean dryRun) {
        int records = StoredLists.read(kind, listId).size();
        if (!dryRun) {
            change(command, kind, listId, lists -> lists.delete(listId));
        }
        return of(kind, listId) + " deleted, with " + Text.count(records, kind.noun())
                + (dryRun ? "" : "; ./tavro undo restores it");
    }

    private interface NativeChange {
        void make(TvList lists) throws ChannelListException;
    }

    /** Makes a change of one list through a native, and closes the list. */
    private static void change(String command, Kind kind, int listId, NativeChange body) {
        Change.make(command, change -> {
            change.save(kind, listId);
            body.make(kind.lists());
            kind.lists().exists(listId); // closes it
            return null;
        });
    }

    static String of(Kind kind, int listId) {
        return kind.noun() + " list " + listId;
    }
}
