package com.velotra.tv.tavro.services.channellist;

import java.util.Optional;
import java.util.OptionalInt;

/**
 * A call to a list failed. The message names what failed with which list or record, the status if there is one, and
 * what to do.
 */
public final class ChannelListException extends RuntimeException {
    private static final long serialVersionUID = 1L;

    private final ListKind kind;
    private final Integer listId;
    private final RecordId recordId;
    private final int status;
    private final String problem;

    private ChannelListException(ListKind kind, Integer listId, RecordId recordId, int status, String problem,
            String remedy) {
        super(Printable.of(problem + "; " + remedy));
        this.kind = kind;
        this.listId = listId;
        this.recordId = recordId;
        this.status = status;
        this.problem = Printable.of(problem);
    }

    /** A failure that concerns one list, or with a null {@code listId} several. */
    static ChannelListException ofList(ListKind kind, Integer listId, int status, String action, String remedy) {
        return new ChannelListException(kind, listId, null, status, problem(action, status), remedy);
    }

    /** A failure that concerns one record. */
    static ChannelListException ofRecord(ListKind kind, RecordId id, int status, String action, String remedy) {
        return new ChannelListException(kind, id.listId(), id, status, problem(action, status), remedy);
    }

    private static String problem(String action, int status) {
        return "cannot " + action + (status == 0 ? "" : " (status " + status + ")");
    }

    /** Returns the kind of the list. */
    public ListKind kind() {
        return kind;
    }

    /** Returns the list; empty when the call concerned records of several lists. */
    public OptionalInt listId() {
        return listId == null ? OptionalInt.empty() : OptionalInt.of(listId);
    }

    /** Returns the record; empty when the call concerned no record or several. */
    public Optional<RecordId> recordId() {
        return Optional.ofNullable(recordId);
    }

    /** Returns the status of the native; 0 when the native returns no status or reported success. */
    public int status() {
        return status;
    }

    /** Returns the message without the advice at its end. */
    public String problem() {
        return problem;
    }
}
