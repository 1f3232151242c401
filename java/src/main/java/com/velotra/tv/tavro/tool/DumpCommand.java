package com.velotra.tv.tavro.tool;

import com.velotra.tv.tavro.services.channellist.Printable;
import com.velotra.tv.tavro.services.channellist.RecordId;
import com.velotra.tv.tavro.tool.decoding.DecodedRecord;
import com.velotra.tv.tavro.tool.decoding.Dump;
import com.velotra.tv.tavro.tool.decoding.RawRecords;
import com.velotra.tv.tavro.tool.decoding.RecordJson;
import com.velotra.tv.tavro.tool.input.Text;
import com.velotra.tv.tavro.tool.output.JsonOutput;
import com.velotra.tv.tavro.tool.records.Kind;
import com.velotra.tv.tavro.tool.records.Record;
import com.velotra.tv.tavro.tool.records.RecordList;
import com.velotra.tv.tavro.tool.storage.Access;
import com.velotra.tv.tavro.tool.storage.ListFile;
import com.velotra.tv.tavro.tool.storage.Snapshot;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.List;
import java.util.Optional;
import java.util.concurrent.Callable;
import picocli.CommandLine.Command;
import picocli.CommandLine.Mixin;
import picocli.CommandLine.Model.CommandSpec;
import picocli.CommandLine.Option;
import picocli.CommandLine.ParameterException;
import picocli.CommandLine.Parameters;
import picocli.CommandLine.Spec;
import picocli.CommandLine.TypeConversionException;

/** ./tavro dump. */
@Command(
        name = "dump",
        description = {
            "Prints the bytes of records in hexadecimal, each run of bytes with its offset, field and value. "
                + "Offsets are decimal. Runs of zeros are folded.",
            "",
            "To dump a file with a name such as 1,17, write ./1,17."},
        footer = {"", "Examples: ./tavro dump 1,17",
            "          ./tavro dump record.bin --kind satellites",
            "          ./tavro dump services.list --first 1"})
final class DumpCommand implements Callable<Integer> {
    private static final String STANDARD_INPUT = "-";

    @Spec
    private CommandSpec spec;

    @Mixin
    private HelpOption help;

    @Parameters(paramLabel = "SOURCE",
            description = "A stored record, as LIST,RECORD; a list file; a file of records one after the other; or - "
                    + "for such records from standard input.")
    private String source;

    @Option(names = {"-k", "--kind"}, paramLabel = "KIND", converter = Converters.KindName.class,
            description = "Kind of record: services, streams, networks or satellites. The default is services "
                    + "for a stored record; a list file has its own kind; for other input, the size decides.")
    private Kind kind;

    @Option(names = "--first", paramLabel = "N", converter = Converters.Count.class,
            description = "Print at most N records.")
    private int first = Integer.MAX_VALUE;

    @Option(names = "--json", description = "Print JSON, with all fields and bytes of each record.")
    private boolean json;

    @Override
    public Integer call() {
        Access.readOnly();
        if (source.matches("\\d+,\\d+")) {
            stored(recordId());
            return ExitCode.DONE;
        }
        if (source.equals(STANDARD_INPUT)) {
            print("standard input", RawRecords.readStandardInput(Optional.ofNullable(kind)));
            return ExitCode.DONE;
        }
        Path file = Path.of(source);
        if (Files.isRegularFile(file) && ListFile.isOne(file)) {
            RecordList list = ListFile.read(file);
            print("list file " + file + ": " + list.kind().noun() + " list " + list.listId() + ", stored as \""
                    + list.name() + '"', list);
        } else {
            print("file " + file, RawRecords.read(file, Optional.ofNullable(kind)));
        }
        return ExitCode.DONE;
    }

    private RecordId recordId() {
        try {
            return new Converters.Record().convert(source);
        } catch (TypeConversionException e) {
            throw new ParameterException(spec.commandLine(), e.getMessage(), e);
        }
    }

    private void stored(RecordId id) {
        Record record = StoredRecord.read(kind == null ? Kind.SERVICES : kind, id);
        try (Snapshot lists = StoredRecord.snapshot()) {
            DecodedRecord decoded = StoredRecord.decoded(record, lists);
            if (json) {
                JsonOutput.print(RecordJson.of(decoded, true, true));
            } else {
                System.out.println(heading(record) + " of list " + id.listId());
                System.out.print(Dump.of(decoded));
            }
        }
    }

    private void print(String title, RecordList records) {
        List<Record> some = records.subList(0, Math.min(first, records.size()));
        if (json) {
            JsonOutput.printEach(some.stream().map(record -> RecordJson.of(DecodedRecord.of(record), true, true)));
            return;
        }
        System.out.println(Printable.of(title) + ", " + Text.count(records.size(), records.kind().noun()) + " of "
                + records.kind().recordBytes() + " bytes");
        for (Record record : some) {
            System.out.println();
            System.out.println(heading(record));
            System.out.print(Dump.of(DecodedRecord.of(record)));
        }
    }

    private static String heading(Record record) {
        return record.kind().noun() + " " + record.id();
    }
}
