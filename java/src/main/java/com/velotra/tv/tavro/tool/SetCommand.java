package com.velotra.tv.tavro.tool;

import com.velotra.tv.tavro.tool.changes.CalledCommand;
import com.velotra.tv.tavro.tool.editing.Assignment;
import com.velotra.tv.tavro.tool.editing.RecordEdits;
import com.velotra.tv.tavro.tool.editing.RecordEdits.Edited;
import com.velotra.tv.tavro.tool.editing.RecordRange;
import com.velotra.tv.tavro.tool.input.Text;
import com.velotra.tv.tavro.tool.output.JsonOutput;
import com.velotra.tv.tavro.tool.records.Field;
import java.util.LinkedHashMap;
import java.util.List;
import java.util.Map;
import java.util.concurrent.Callable;
import picocli.CommandLine.Command;
import picocli.CommandLine.Mixin;
import picocli.CommandLine.Model.CommandSpec;
import picocli.CommandLine.Option;
import picocli.CommandLine.Parameters;
import picocli.CommandLine.Spec;

/** ./tavro set. */
@Command(
        name = "set",
        description = {
            "Sets values of one or more records, and prints the fields that changed. All other values stay. "
                + "KEY is a Java key, such as ServiceName, or a field name, such as service_id; ./tavro show "
                + "--bytes prints both. VALUE is a number (decimal, or hexadecimal with 0x), a text, the name of a "
                + "code, yes or no for a flag, or LIST,RECORD for a reference. If the library does not accept a "
                + "value, nothing is changed."},
        footer = {"", "Examples: ./tavro set 1,17 'name=RTL 2' lcn=5", "          ./tavro set 1,20-25 VnetVisible=no",
            "          ./tavro set 2,4 --kind streams sat_polarization=2"})
final class SetCommand implements Callable<Integer> {
    @Spec
    private CommandSpec spec;

    @Mixin
    private HelpOption help;

    @Parameters(index = "0", paramLabel = "LIST,RECORD", converter = Converters.Records.class,
            description = "A record, such as 1,17, or records, such as 1,17-20.")
    private RecordRange records;

    @Parameters(index = "1..*", arity = "1..*", paramLabel = "KEY=VALUE", converter = Converters.KeyAndValue.class,
            description = "A value to set.")
    private List<Assignment> values;

    @Mixin
    private KindOption of;

    @Option(names = "--json", description = "Print the changes as JSON.")
    private boolean json;

    @Override
    public Integer call() {
        Preconditions.needList(of.kind(), records.listId());
        List<Edited> edited = RecordEdits.set(of.kind(), List.of(records), values, CalledCommand.of(spec));
        if (json) {
            JsonOutput.printEach(edited.stream().map(SetCommand::object));
        } else {
            edited.forEach(this::print);
            long changed = edited.stream().filter(one -> !one.fields().isEmpty()).count();
            if (edited.size() > 1) {
                System.out.println(Text.count((int) changed, of.kind().noun()) + " changed");
            }
        }
        return ExitCode.DONE;
    }

    private void print(Edited one) {
        List<Field> fields = one.fields();
        System.out.println(of.kind().noun() + " " + one.id() + (fields.isEmpty() ? ": unchanged" : ""));
        for (Field field : fields) {
            System.out.println("  " + field.label() + ": "
                    + (field.in(one.before()) ? field.describe(one.before()) : "none") + " -> "
                    + field.describe(one.after()));
        }
    }

    private static Map<String, Object> object(Edited one) {
        Map<String, Object> fields = new LinkedHashMap<>();
        for (Field field : one.fields()) {
            Map<String, Object> change = new LinkedHashMap<>();
            change.put("before", field.in(one.before()) ? field.format(one.before()) : null);
            change.put("after", field.format(one.after()));
            fields.put(field.name(), change);
        }
        Map<String, Object> object = new LinkedHashMap<>();
        object.put("record", one.id().toString());
        object.put("changes", fields);
        return object;
    }
}
