package com.velotra.tv.tavro.services.channellist;

import static com.velotra.tv.tavro.services.channellist.JniCalls.Failing.first;
import static com.velotra.tv.tavro.services.channellist.JniCalls.Failing.nth;
import static com.velotra.tv.tavro.services.channellist.Scenarios.FAILS;

import java.util.Arrays;
import java.util.List;

/** The paths of the natives that update and add records. */
final class WriteScenarios {
    private static final String TEXT = "GetStringUTFChars"; // the JNI call that fails without memory
    private static final int RECORD_EXISTS = -11;
    private static final int EMPTY = -6;
    private static final int NO_RECORD_ID = 65535;

    private final Scenarios table;
    private final ListClass kind;

    WriteScenarios(Scenarios table, ListClass kind) {
        this.table = table;
        this.kind = kind;
    }

    void add() {
        update();
        updateByRecordId();
        updateList();
        addObject();
        addByRecordId();
    }

    /** The arguments of an update: satellites name their list in their identifier. */
    private Object[] to(int list, Object object) {
        return kind == ListClass.SATELLITES ? new Object[] {object} : new Object[] {list, object};
    }

    private Scenarios.Paths updates(String name, Class<?> type) {
        return kind == ListClass.SATELLITES ? table.of(kind, name, type) : table.of(kind, name, int.class, type);
    }

    private void always(String operation, int status) {
        Script.always(kind.call(operation), status, 0);
    }

    private void stored() {
        Script.always(kind.call("get_rec"), kind.record(5));
    }

    private void locksFail() {
        stored();
        always("lock", FAILS);
        always("unlock", FAILS);
    }

    private void update() {
        Scenarios.Paths paths = updates("native_updateInfo", kind.object().getClass())
                .path("no values", this::stored, to(1, kind.named("1,5")))
                .path("the object is null", to(1, null))
                .path("the list is not open", this::stored, to(2, kind.named("2,5")))
                .fails("the list cannot be opened", "open", to(2, kind.named("2,5")))
                .path("list 0", this::stored, to(0, kind.named("0,5")))
                .fails("the record does not exist", "get_rec", to(1, kind.named("1,5")))
                .fails("the write fails", "update_rec", to(1, kind.named("1,5")))
                .path("the lock fails", this::locksFail, to(1, kind.named("1,5")))
                .path("the object has no identifier", this::stored, to(1, kind.object()))
                .path("the identifier is null", this::stored, to(1, kind.named(null)))
                .path("the identifier is empty", to(1, kind.named("")))
                .path("the identifier has no comma", to(1, kind.named("15")))
                .path("the identifier has other characters than digits", to(1, kind.named("1,a")))
                .path("the identifier names another list", this::stored, to(1, kind.named("3,5")))
                .without("the method isContainsKey is missing", first("isContainsKey"), to(1, kind.named("1,5")))
                .without("the identifier's field is missing", first("GetFieldID"), to(1, kind.named("1,5")))
                .without("there is no memory for the identifier's characters", first(TEXT), to(1, kind.named("1,5")))
                .without("there is no memory for the first key", first("NewStringUTF"), to(1, kind.named("1,5")));
        Filled.of(kind).forEach(filled -> paths.path(filled.path(), filled.stored(), to(1, filled.named("1,5"))));
        Filled.Failure failure = Filled.failure(kind);
        paths.without("a field is missing", first(failure.field()), failure.stored(), to(1, failure.object("1,5")))
                .without("there is no memory for a text", nth(2, TEXT), failure.stored(), to(1, failure.object("1,5")));
        if (kind == ListClass.SATELLITES) {
            paths.without("the base class is missing", first("FindClass"), to(1, kind.named("1,5")));
        }
    }

    private void updateByRecordId() {
        Scenarios.Paths paths = table.of(kind, "native_updateInfo", int.class, String.class)
                .path("success", this::stored, 1, "1,5")
                .path("the record comes from another list", this::stored, 1, "3,5")
                .path("the target is not open", this::stored, 2, "1,5")
                .fails("the source cannot be opened", "open", 1, "3,5")
                .path("the target cannot be opened", () -> always("open", FAILS), 2, "1,5")
                .path("the target is list 0", this::stored, 0, "1,5")
                .fails("the record does not exist", "get_rec", 1, "1,5")
                .fails("the write fails", "update_rec", 1, "1,5")
                .path("the lock fails", this::locksFail, 1, "1,5")
                .path("the identifier is null", 1, null)
                .path("the identifier is empty", 1, "")
                .path("the identifier has no comma", 1, "15")
                .path("the identifier has a second comma", this::stored, 1, "1,5,9")
                .without("there is no memory for the identifier", first(TEXT), 1, "1,5");
        if (kind == ListClass.STREAMS) {
            paths.without("there is no memory for the identifier the second time", nth(2, TEXT), 1, "1,5");
        }
    }

    private void updateList() {
        Class<?> type = List.class;
        Scenarios.Paths paths = updates("native_updateInfoList", type)
                .path("two records", this::stored, to(1, List.of(kind.named("1,5"), kind.named("1,6"))))
                .path("no record", to(1, List.of()))
                .path("the list is null", to(1, null))
                .path("the list is not open", this::stored, to(2, List.of(kind.named("2,5"))))
                .fails("the list cannot be opened", "open", to(2, List.of(kind.named("2,5"))))
                .path("list 0", this::stored, to(0, List.of(kind.named("0,5"))))
                .path("the first element is null", this::stored, to(1, Arrays.asList(null, kind.named("1,5"))))
                .path("the second element is null", this::stored, to(1, Arrays.asList(kind.named("1,5"), null)))
                .path("the second record does not exist", () -> {
                    Script.answer(kind.call("get_rec"), kind.record(5));
                    always("get_rec", FAILS);
                }, to(1, List.of(kind.named("1,5"), kind.named("1,6"), kind.named("1,7"))))
                .path("the second write fails", () -> {
                    stored();
                    Script.answer(kind.call("update_rec"), 0);
                    always("update_rec", FAILS);
                }, to(1, List.of(kind.named("1,5"), kind.named("1,6"), kind.named("1,7"))))
                .path("the lock fails", this::locksFail, to(1, List.of(kind.named("1,5"))))
                .path("an element has no identifier", this::stored, to(1, List.of(kind.object())))
                .path("the first identifier cannot be parsed", this::stored,
                        to(1, List.of(kind.named("1,a"), kind.named("1,6"))))
                .path("the second identifier cannot be parsed", this::stored,
                        to(1, List.of(kind.named("1,5"), kind.named("1,a"), kind.named("1,7"))))
                .path("an identifier is null", this::stored, to(1, List.of(kind.named(null))))
                .without("the list's get method is missing", first("\"get\""), to(1, List.of(kind.named("1,5"))))
                .without("the list's size method is missing", first("\"size\""), to(1, List.of(kind.named("1,5"))))
                .without("the method isContainsKey is missing", first("isContainsKey"),
                        to(1, List.of(kind.named("1,5"))))
                .without("the identifier's field is missing", first("GetFieldID"), to(1, List.of(kind.named("1,5"))))
                .without("there is no memory for an identifier", first(TEXT), to(1, List.of(kind.named("1,5"))));
        if (kind == ListClass.SATELLITES || kind == ListClass.STREAMS) {
            paths.without("the base class is missing", first("FindClass"), to(1, List.of(kind.named("1,5"))));
        }
        Filled filled = Filled.of(kind).get(0);
        paths.path(filled.path(), filled.stored(), to(1, List.of(filled.named("1,5"))));
    }

    private void addObject() {
        Scenarios.Paths paths = table.of(kind, "nativeAdd", int.class, kind.object().getClass());
        adds(paths, kind.object());
        paths.path("the object is null", 1, null)
                .path("an identifier", 1, kind.named("1,5"))
                .path("an identifier that cannot be parsed", 1, kind.named("1,a"))
                .without("the method isContainsKey is missing", first("isContainsKey"), 1, kind.object())
                .without("there is no memory for the empty string", first("NewStringUTF"), 1, kind.object())
                .without("there is no memory for a key", nth(2, "NewStringUTF"), 1, kind.object())
                .without("there is no memory for the identifier's string", first("NewStringUTF(\"1,"), 1,
                        kind.object());
        Filled.of(kind).forEach(filled -> paths.path(filled.path(), 1, filled.object()));
        Filled.Failure failure = Filled.failure(kind);
        paths.without("a field is missing", first(failure.field()), 1, failure.object())
                .without("there is no memory for a text", first(TEXT), 1, failure.object());
        if (kind == ListClass.SATELLITES || kind == ListClass.STREAMS) {
            paths.without("the base class is missing", first("FindClass"), 1, kind.object());
        }
    }

    /** Paths that all adds have. */
    private void adds(Scenarios.Paths paths, Object record) {
        paths.path("success", this::stored, 1, record)
                .path("the list is not open", this::stored, 2, record)
                .path("the list cannot be opened", () -> {
                    stored();
                    always("open", FAILS);
                }, 2, record)
                .path("list 0", this::stored, 0, record)
                .fails("the add fails", "add_rec", 1, record)
                .path("the lock fails", this::locksFail, 1, record);
        if (record instanceof KeyedValues) {
            paths.fails("the query of the record id fails", "qry_rec_id", 1, record)
                    .path("no record id is free", () -> Script.always(kind.call("qry_rec_id"), 0, NO_RECORD_ID), 1,
                            record)
                    .path("the list is empty", () -> Script.always(kind.call("qry_rec_id"), EMPTY, 0), 1, record)
                    .path("the list is empty, but there is a record id",
                            () -> Script.always(kind.call("qry_rec_id"), EMPTY, 3), 1, record);
        }
    }

    private void addByRecordId() {
        Scenarios.Paths paths = table.of(kind, "nativeAdd", int.class, String.class);
        adds(paths, "1,5");
        paths.path("the record comes from another list", this::stored, 1, "3,5")
                .fails("the source cannot be opened", "open", 1, "3,5")
                .fails("the record does not exist", "get_rec", 1, "1,5")
                .path("the list has a record with the id", () -> {
                    stored();
                    always("add_rec", RECORD_EXISTS);
                }, 1, "1,5")
                .path("the list has a record with the id, which cannot be replaced", () -> {
                    stored();
                    always("add_rec", RECORD_EXISTS);
                    always("update_rec", FAILS);
                }, 1, "1,5")
                .path("the identifier is null", 1, null)
                .path("the identifier is empty", 1, "")
                .path("the identifier has no comma", 1, "15")
                .without("there is no memory for the empty string", first("NewStringUTF"), 1, "1,5")
                .without("there is no memory for the identifier", first(TEXT), 1, "1,5")
                .without("there is no memory for the new identifier", first("NewStringUTF(\"1,"), this::stored, 1,
                        "1,5");
        if (kind != ListClass.SATELLITES) { // elsewhere this ends the process
            paths.path("the identifier has other characters than digits", 1, "1,a");
        }
    }
}
