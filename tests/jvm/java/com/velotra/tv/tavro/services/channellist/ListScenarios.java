package com.velotra.tv.tavro.services.channellist;

import static com.velotra.tv.tavro.services.channellist.JniCalls.Failing.first;

import java.util.List;

/** The paths of the natives that work on lists, and of removals. */
final class ListScenarios {
    private static final int NO_FILE = -8;
    private static final int NOT_A_LIST_FILE = -12;
    private static final String PATH = "/data/list.bin";
    private static final String TEXT = "GetStringUTFChars"; // the JNI call that fails without memory

    private final Scenarios table;
    private final ListClass kind;

    ListScenarios(Scenarios table, ListClass kind) {
        this.table = table;
        this.kind = kind;
    }

    void add() {
        table.of(kind, "nativeSetup").path("success");
        open();
        openPath();
        for (String name : List.of("native_clean", "native_close", "native_delete")) {
            oneList(name);
        }
        store();
        copy();
        remove();
        removeByRecordId();
    }

    /** Makes every middleware call of that name fail with a status. */
    private void always(String operation, int status) {
        Script.always(kind.call(operation), status, 0);
    }

    private void open() {
        Scenarios.Paths open = table.of(kind, "native_open", int.class)
                .path("the list is open", 1)
                .path("the list exists", 2)
                .fails("the list does not exist and is created", "open", 2)
                .path("the list can be neither opened nor created", this::doesNotExist, 2)
                .path("the list is opened without a handle", () -> always("open", 0), 2)
                .path("list 0", 0)
                .fails("list 0 does not exist and is created", "open", 0);
        open.path("the list id has more than 16 bits", 0x10002);
    }

    private void doesNotExist() {
        always("open", Scenarios.FAILS);
        always("create", Scenarios.FAILS);
    }

    private void openPath() {
        Scenarios.Paths open = table.of(kind, "native_open", int.class, String.class)
                .path("the list exists and is loaded", 2, PATH)
                .fails("the list does not exist, is created and loaded", "open", 2, PATH)
                .path("the list can be neither opened nor created", this::doesNotExist, 2, PATH)
                .path("the list cannot be created: not a list file", () -> {
                    always("open", Scenarios.FAILS);
                    always("create", NOT_A_LIST_FILE);
                }, 2, PATH)
                .fails("the load fails", "fs_sync", 2, PATH)
                .path("the load fails: no file", () -> always("fs_sync", NO_FILE), 2, PATH)
                .path("the load fails: not a list file", () -> always("fs_sync", NOT_A_LIST_FILE), 2, PATH)
                .path("the load fails: not a list file, which cannot be prepared", () -> {
                    always("fs_sync", NOT_A_LIST_FILE);
                    Script.always("fs_raw_init", Scenarios.FAILS, 0);
                }, 2, PATH)
                .path("the list is opened without a handle", () -> always("open", 0), 2, PATH)
                .path("list 0", 0, PATH)
                .path("the path is null", 2, null)
                .path("the path is empty", 2, "")
                .path("the path is empty and the list is open", 1, "")
                .without("there is no memory for the path", first(TEXT), 2, PATH);
        if (kind != ListClass.SERVICES) {
            open.path("the list is open", 1, PATH);
            return;
        }
        open.path("the list is open and has records", () -> Script.always(COUNT, 0, 3), 1, PATH)
                .path("the list is open and empty", 1, PATH)
                .fails("the list is open and empty: the load fails", "fs_sync", 1, PATH)
                .path("the list is open and empty: not a list file", () -> always("fs_sync", NOT_A_LIST_FILE), 1, PATH)
                .path("the list is open, but the count fails", () -> Script.always(COUNT, Scenarios.FAILS, 3), 1, PATH);
        scanCache(open);
    }

    private static final String COUNT = "x_svl_get_num_rec_by_brdcst_type";

    private void scanCache(Scenarios.Paths open) {
        String cable = "/data/scan_cable.bin";
        open.path("scan cache: cable, no cache", () -> {
            always("fs_sync", NO_FILE);
            Script.always("fs_raw_qry_fpath", Scenarios.FAILS, 0);
        }, 2, cable);
        open.path("scan cache: cable, loaded", () -> Script.answer("x_svl_fs_sync", NO_FILE), 2, cable);
        open.path("scan cache: terrestrial, loaded", () -> Script.answer("x_svl_fs_sync", NO_FILE), 2,
                "/data/scan_t.bin");
        open.path("scan cache: not a list file, loaded from the cache",
                () -> Script.answer("x_svl_fs_sync", NOT_A_LIST_FILE), 2, cable);
        open.path("scan cache: the cache cannot be loaded", () -> always("fs_sync", NO_FILE), 2, cable);
        open.path("scan cache: preparing, copying and deleting fail", () -> {
            Script.answer("x_svl_fs_sync", NO_FILE);
            for (String call : List.of("fs_raw_init", "fs_raw_copy", "x_fm_delete_file")) {
                Script.always(call, Scenarios.FAILS, 0);
            }
        }, 2, cable);
        open.path("scan cache: the list can be neither opened nor created", () -> {
            always("open", Scenarios.FAILS);
            always("create", NO_FILE);
        }, 2, cable);
        open.path("scan cache: not looked for without a scan path", () -> always("fs_sync", NO_FILE), 2, PATH);
        open.path("scan cache: not looked for after another failure", () -> always("fs_sync", Scenarios.FAILS), 2,
                cable);
    }

    private void oneList(String name) {
        String call = name.substring("native_".length());
        Scenarios.Paths paths = table.of(kind, name, int.class)
                .path("success", 1)
                .path("the list is not open", 2)
                .fails("the list cannot be opened", "open", 2)
                .path("the list is opened without a handle", () -> always("open", 0), 2)
                .fails("the middleware fails", call, 1)
                .path("list 0", 0);
        if (call.equals("clean")) {
            paths.path("the lock fails", this::locksFail, 1);
        }
    }

    private void locksFail() {
        always("lock", Scenarios.FAILS);
        always("unlock", Scenarios.FAILS);
    }

    private void store() {
        table.of(kind, "native_store", int.class, String.class)
                .path("success", 1, PATH)
                .path("the list is not open", 2, PATH)
                .fails("the list cannot be opened", "open", 2, PATH)
                .path("the list is opened without a handle", () -> always("open", 0), 2, PATH)
                .fails("the middleware fails", "fs_store", 1, PATH)
                .path("list 0", 0, PATH)
                .path("the lock fails", this::locksFail, 1, PATH)
                .path("the path is null", 1, null)
                .path("the path is empty", 1, "")
                .without("there is no memory for the path", first(TEXT), 1, PATH);
    }

    private void copy() {
        table.of(kind, "native_copy", int.class, int.class)
                .path("the source is open, the destination is not", 1, 2)
                .path("the destination is open, the source is not", 2, 1)
                .path("neither list is open", 2, 3)
                .path("both are the same list", 1, 1)
                .path("the source cannot be opened", () -> always("open", Scenarios.FAILS), 2, 1)
                .path("the destination cannot be opened", () -> always("open", Scenarios.FAILS), 1, 2)
                .path("the source is opened without a handle", () -> always("open", 0), 2, 1)
                .fails("the middleware fails", "copy_date", 2, 1)
                .path("the source is list 0", 0, 1)
                .path("the destination is list 0", 1, 0)
                .path("the lock fails", this::locksFail, 2, 1);
    }

    private void remove() {
        table.of(kind, "nativeRemove", String.class)
                .path("success", "1,5")
                .path("the list is not open", "2,5")
                .fails("the list cannot be opened", "open", "2,5")
                .path("the list is opened without a handle", () -> always("open", 0), "2,5")
                .fails("the middleware fails", "del_rec", "1,5")
                .path("the lock fails", this::locksFail, "1,5")
                .path("list 0", "0,5")
                .path("the identifier has blanks, a sign and more text", " 1, +5x")
                .path("the identifier has a second comma", "1,5,9")
                .path("the record id has more than 16 bits", "1,65541")
                .path("the identifier is null", (Object) null)
                .path("the identifier is empty", "")
                .path("the identifier has no comma", "15")
                .without("there is no memory for the identifier", first(TEXT), "1,5");
    }

    private void removeByRecordId() {
        table.of(kind, "nativeRemoveByRecId", int.class, String.class)
                .path("success", 1, "1,5")
                .path("the identifier names another list", 1, "3,5")
                .path("the identifier has no list id", 1, "none,5")
                .path("the list is not open", 2, "2,5")
                .fails("the list cannot be opened", "open", 2, "2,5")
                .fails("the middleware fails", "del_rec", 1, "1,5")
                .path("the lock fails", this::locksFail, 1, "1,5")
                .path("list 0", 0, "1,5")
                .path("the record id has more than 16 bits", 1, "1,65541")
                .path("the identifier is null", 1, null)
                .path("the identifier is empty", 1, "")
                .path("the identifier has no comma", 1, "15")
                .without("there is no memory for the identifier", first(TEXT), 1, "1,5");
    }
}
