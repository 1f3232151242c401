package com.velotra.tv.tavro.tool;

import com.velotra.tv.tavro.tool.input.Text;
import com.velotra.tv.tavro.tool.listing.Column;
import com.velotra.tv.tavro.tool.listing.Columns;
import com.velotra.tv.tavro.tool.listing.Condition;
import com.velotra.tv.tavro.tool.listing.Listing;
import com.velotra.tv.tavro.tool.listing.MalformedExpression;
import com.velotra.tv.tavro.tool.listing.Order;
import com.velotra.tv.tavro.tool.listing.References;
import com.velotra.tv.tavro.tool.listing.Where;
import com.velotra.tv.tavro.tool.output.JsonOutput;
import com.velotra.tv.tavro.tool.output.Table;
import com.velotra.tv.tavro.tool.output.Terminal;
import com.velotra.tv.tavro.tool.records.Kind;
import com.velotra.tv.tavro.tool.records.Record;
import com.velotra.tv.tavro.tool.storage.Access;
import java.util.ArrayList;
import java.util.List;
import java.util.Locale;
import java.util.concurrent.Callable;
import picocli.CommandLine.Command;
import picocli.CommandLine.Mixin;
import picocli.CommandLine.Model.CommandSpec;
import picocli.CommandLine.Option;
import picocli.CommandLine.ParameterException;
import picocli.CommandLine.Parameters;
import picocli.CommandLine.Spec;

/** ./tavro list. */
@Command(
        name = "list",
        description = {
            "Prints the services, transport streams, networks or satellites of a list as a table.",
            "",
            "EXPR compares columns with values by = != < <= > >= or ~ (contains). Comparisons are joined by "
                + "and, or, not and parentheses."},
        footer = {"",
            "Examples: ./tavro list 1",
            "          ./tavro list 1 --kind streams --where 'freq>11000000 and pol=H'",
            "          ./tavro list 1 --columns lcn,name,freq --sort lcn,-name",
            "          ./tavro list 1 --columns help"})
final class ListCommand implements Callable<Integer> {
    @Spec
    private CommandSpec spec;

    @Mixin
    private HelpOption help;

    @Parameters(paramLabel = "ID", converter = Converters.ListId.class, description = "List id, 1 to 65535.")
    private int listId;

    @Mixin
    private KindOption of;

    @Option(names = "--columns", paramLabel = "NAMES",
            description = "Columns to print, separated by commas; --columns help prints all names.")
    private String columnNames;

    @Option(names = "--where", paramLabel = "EXPR", description = "Print only the records that match EXPR.")
    private String expression;

    @Option(names = "--sort", paramLabel = "NAMES",
            description = "Sort by columns, separated by commas; - before a name reverses, as in --sort=-freq.")
    private String sortNames;

    @Mixin
    private FilterOptions filters;

    @Option(names = "--first", paramLabel = "N", converter = Converters.Count.class,
            description = "Print at most N records.")
    private int first = Integer.MAX_VALUE;

    @Option(names = "--json", description = "Print JSON.")
    private boolean json;

    @Override
    public Integer call() {
        if ("help".equals(columnNames)) {
            printColumns();
            return ExitCode.DONE;
        }
        List<Column> chosen = columnNames == null ? null : columns(columnNames);
        List<Order.Key> keys = sortNames == null ? List.of() : keys();
        Condition condition = expression == null ? null : condition();
        Access.readOnly();
        filters.check(of.kind(), spec);
        try (References references = References.inStorage()) {
            Preconditions.needList(of.kind(), listId);
            List<Record> records = filters.read(of.kind(), listId, references);
            if (records.isEmpty() && !filters.given()) {
                Preconditions.needEmpty(of.kind(), listId);
            }
            if (condition != null) {
                records = records.stream().filter(record -> condition.test(record, references)).toList();
            }
            print(Order.sort(records, keys, references), chosen, references);
        }
        return ExitCode.DONE;
    }

    private void print(List<Record> records, List<Column> chosen, References references) {
        List<Record> shown = records.subList(0, Math.min(first, records.size()));
        if (json) {
            List<Column> columns = chosen == null ? Columns.of(of.kind()).usual() : chosen;
            JsonOutput.printEach(shown.stream().map(record -> Listing.object(columns, record, references)));
            return;
        }
        List<Column> columns = chosen == null
                ? Listing.columns(Columns.of(of.kind()), shown, references) : chosen;
        System.out.print(Listing.table(columns, shown, references).toString(Terminal.columns()));
        System.out.print(Table.more(records.size() - shown.size()));
        System.out.println(Text.count(records.size(), of.kind().noun()));
    }

    private List<Column> columns(String names) {
        List<Column> columns = new ArrayList<>();
        for (String name : names.split(",", -1)) {
            columns.add(Columns.of(of.kind()).get(name.strip()).orElseThrow(() -> wrong(
                    "unknown column '" + name.strip() + "' of " + of.kind() + ": --columns help lists all", null)));
        }
        return columns;
    }

    private List<Order.Key> keys() {
        List<Order.Key> keys = new ArrayList<>();
        for (String name : sortNames.split(",", -1)) {
            boolean falling = name.strip().startsWith("-");
            keys.add(new Order.Key(columns(falling ? name.strip().substring(1) : name).get(0), falling));
        }
        return keys;
    }

    private Condition condition() {
        try {
            return Where.parse(Columns.of(of.kind()), expression);
        } catch (MalformedExpression e) {
            throw wrong(e.getMessage(), e);
        }
    }

    private ParameterException wrong(String message, MalformedExpression cause) {
        return new ParameterException(spec.commandLine(), message, cause);
    }

    private void printColumns() {
        Kind kind = of.kind();
        Table table = new Table("column", "short", "values", "unit", "meaning");
        for (Column column : Columns.of(kind).all()) {
            table.add(column.name(), String.join(" ", Columns.of(kind).shortNames(column)),
                    column.type().toString().toLowerCase(Locale.ROOT), column.unit(), column.heading());
        }
        System.out.print(table.toString(Terminal.columns()));
    }
}
