package com.velotra.tv.tavro.tool;

import com.velotra.tv.tavro.services.channellist.HexDump;
import com.velotra.tv.tavro.services.channellist.RecordId;
import com.velotra.tv.tavro.tool.decoding.DecodedRecord;
import com.velotra.tv.tavro.tool.decoding.RecordJson;
import com.velotra.tv.tavro.tool.decoding.RecordPage;
import com.velotra.tv.tavro.tool.output.JsonOutput;
import com.velotra.tv.tavro.tool.output.Terminal;
import com.velotra.tv.tavro.tool.records.Record;
import com.velotra.tv.tavro.tool.storage.Access;
import com.velotra.tv.tavro.tool.storage.Snapshot;
import java.util.LinkedHashMap;
import java.util.Map;
import java.util.concurrent.Callable;
import picocli.CommandLine.Command;
import picocli.CommandLine.Mixin;
import picocli.CommandLine.Option;
import picocli.CommandLine.Parameters;

/** ./tavro show. */
@Command(
        name = "show",
        description = {
            "Prints one service, transport stream, network or satellite, field by field: numbers with their "
                + "names and units, flag words with the keys of the flags that are set, references with the name "
                + "of the record that they refer to.",
            "",
            "Units and names are as for ./tavro import; docs/record-layouts.md lists them all."},
        footer = {"",
            "Examples: ./tavro show 1,17 --bytes", "          ./tavro show 1,3 --kind streams --hex"})
final class ShowCommand implements Callable<Integer> {
    @Mixin
    private HelpOption help;

    @Parameters(paramLabel = "LIST,RECORD", converter = Converters.Record.class,
            description = "Record to show, as LIST,RECORD (for example 3,17).")
    private RecordId id;

    @Mixin
    private KindOption of;

    @Option(names = "--bytes",
            description = "Also print the offset and size of each field, its name in the C++ header, its Java "
                    + "keys, and each flag on its own line.")
    private boolean bytes;

    @Option(names = "--hex", description = "Also print the record's bytes in hexadecimal.")
    private boolean hex;

    @Option(names = "--json", description = "Print JSON.")
    private boolean json;

    @Override
    public Integer call() {
        Access.readOnly();
        Record record = StoredRecord.read(of.kind(), id);
        try (Snapshot lists = StoredRecord.snapshot()) {
            DecodedRecord decoded = StoredRecord.decoded(record, lists);
            if (json) {
                JsonOutput.print(object(RecordJson.of(decoded, bytes, hex)));
            } else {
                System.out.print(bytes ? RecordPage.withBytes(decoded, Terminal.columns()) : RecordPage.of(decoded));
                System.out.print(hex ? hex(record) : "");
            }
        }
        return ExitCode.DONE;
    }

    private Map<String, Object> object(Map<String, Object> record) {
        Map<String, Object> object = new LinkedHashMap<>();
        object.put("list", id.listId());
        object.putAll(record);
        return object;
    }

    private static String hex(Record record) {
        StringBuilder out = new StringBuilder();
        HexDump.append(out, record.bytes());
        return out.toString();
    }
}
