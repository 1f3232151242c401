package com.velotra.tv.tavro.tool.comparing;

import com.velotra.tv.tavro.services.channellist.RecordId;
import com.velotra.tv.tavro.tool.comparing.Operand.Records;
import com.velotra.tv.tavro.tool.decoding.RawRecords;
import com.velotra.tv.tavro.tool.input.Failure;
import com.velotra.tv.tavro.tool.matching.Companions;
import com.velotra.tv.tavro.tool.matching.Side;
import com.velotra.tv.tavro.tool.records.Kind;
import com.velotra.tv.tavro.tool.records.Record;
import com.velotra.tv.tavro.tool.records.RecordList;
import com.velotra.tv.tavro.tool.storage.ListFile;
import com.velotra.tv.tavro.tool.storage.Snapshot;
import com.velotra.tv.tavro.tool.storage.Storage;
import com.velotra.tv.tavro.tool.storage.StoredLists;
import java.io.IOException;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.HashMap;
import java.util.List;
import java.util.Map;
import java.util.Optional;
import java.util.regex.Matcher;
import java.util.regex.Pattern;

/**
 * Reads what a command is to compare. The user names it in one of these forms:
 *
 * <ul>
 *   <li>{@code ID} or {@code LIST,RECORD}: a list or a record of the storage directory in use
 *   <li>{@code DIR:ID} or {@code DIR:LIST,RECORD}: a list or a record of another storage directory
 *   <li>the path of a list file, of a file of raw records or of a storage directory
 * </ul>
 */
public final class OperandReader {
    /** The forms, for messages. */
    public static final String FORMS = "a list id, LIST,RECORD, either after DIR:, a list file, a file of raw records "
            + "or a storage directory";

    private static final Pattern STORED = Pattern.compile("(?:(.*):)?([0-9]{1,5})(?:,([0-9]{1,5}))?", Pattern.DOTALL);

    private final Optional<Kind> kind;
    private final Map<Path, Companions> companions = new HashMap<>();

    /** Reads records of {@code kind}; if it is empty, services, or what a file has. */
    public OperandReader(Optional<Kind> kind) {
        this.kind = kind;
    }

    /**
     * Reads an operand.
     *
     * @throws Failure if it does not exist or cannot be read
     */
    public Operand read(String text) {
        Matcher stored = STORED.matcher(text);
        boolean inForm = stored.matches();
        Path path = Path.of(text);
        if (inForm && stored.group(1) == null) {
            return stored(Storage.directory(), true, stored);
        }
        if (Files.isDirectory(path)) {
            if (!Storage.hasLists(path)) {
                throw new Failure("no lists in " + text + ": it has no list database; is it a storage directory?");
            }
            return new Operand.Directory(path);
        }
        if (Files.exists(path)) {
            return file(path);
        }
        if (inForm && Files.isDirectory(Path.of(stored.group(1)))) {
            return stored(Path.of(stored.group(1)), false, stored);
        }
        throw new Failure("no such file, directory or list: '" + text + "'; name " + FORMS);
    }

    /**
     * Reads the records of a list or of a list file.
     *
     * @throws Failure if it is anything else, or cannot be read
     */
    public Records readList(String text) {
        if (read(text) instanceof Records records && !records.single()) {
            return records;
        }
        throw new Failure("'" + text + "' is not a list; name a list id, DIR:ID or a list file");
    }

    /** Returns whether the user named a text file, or standard input. */
    public static boolean isText(String text) {
        Path path = Path.of(text);
        boolean stored = STORED.matcher(text).matches() && !Files.exists(path) || text.matches("[0-9,]+");
        return !stored && !Files.isDirectory(path) && !isListFile(path);
    }

    /** Returns a list of the storage directory in use, and the lists to which it refers. */
    public Side inUse(RecordList list) {
        return new Side(list, companions(Storage.directory()));
    }

    private Records stored(Path directory, boolean inUse, Matcher text) {
        int listId = Integer.parseInt(text.group(2));
        Kind of = kind.orElse(Kind.SERVICES);
        RecordList list = inUse ? StoredLists.read(of, listId) : snapshot(directory, of, listId);
        String where = inUse ? "" : " in " + directory;
        Companions references = companions(directory);
        if (text.group(3) == null) {
            return new Records(of.noun() + " list " + listId + where, new Side(list, references), false);
        }
        int recordId = Integer.parseInt(text.group(3));
        Record record = list.byId(recordId).orElseThrow(() ->
                new Failure(of.noun() + " list " + listId + where + " has no record " + recordId));
        RecordList one = RecordList.of(of, listId, list.name(), List.of(record));
        return new Records(of.noun() + " " + new RecordId(listId, recordId) + where, new Side(one, references), true);
    }

    private static RecordList snapshot(Path directory, Kind kind, int listId) {
        try (Snapshot snapshot = Snapshot.open(directory)) {
            return snapshot.list(kind, listId)
                    .orElseThrow(() -> StoredLists.missing(kind, listId, directory, snapshot.lists()));
        }
    }

    /** Returns the lists of a directory, for references. */
    Companions companions(Path directory) {
        return companions.computeIfAbsent(real(directory), from -> new Companions((of, listId) -> {
            if (!Storage.hasLists(from)) {
                return Optional.empty();
            }
            try (Snapshot snapshot = Snapshot.open(from)) {
                return snapshot.list(of, listId);
            }
        }));
    }

    /** One path for each directory, so that the same one has the same companions. */
    private static Path real(Path directory) {
        try {
            return directory.toRealPath();
        } catch (IOException e) {
            return directory.toAbsolutePath();
        }
    }

    /** A list file or raw records. They refer to lists of the storage directory in use. */
    private Records file(Path path) {
        RecordList list = isListFile(path) ? listFile(path) : RawRecords.read(path, kind);
        String of = list.listId() == 0
                ? "file " + path
                : "list file " + path + " (" + list.kind().noun() + " list " + list.listId() + ")";
        return new Records(of, new Side(list, companions(Storage.directory())), list.listId() == 0 && list.size() == 1);
    }

    private static boolean isListFile(Path path) {
        return Files.isRegularFile(path) && ListFile.isOne(path); // a pipe can be read only once
    }

    private RecordList listFile(Path path) {
        return kind.isPresent() ? ListFile.read(path, kind.get()) : ListFile.read(path);
    }
}
