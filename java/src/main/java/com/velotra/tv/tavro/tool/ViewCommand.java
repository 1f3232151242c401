package com.velotra.tv.tavro.tool;

import com.velotra.tv.tavro.tool.input.Failure;
import com.velotra.tv.tavro.tool.input.Text;
import com.velotra.tv.tavro.tool.storage.Access;
import com.velotra.tv.tavro.tool.storage.Storage;
import com.velotra.tv.tavro.tool.view.PageData;
import com.velotra.tv.tavro.tool.view.PageFile;
import java.io.IOException;
import java.nio.file.Path;
import java.util.List;
import java.util.concurrent.Callable;
import picocli.CommandLine.Command;
import picocli.CommandLine.Mixin;
import picocli.CommandLine.Option;
import picocli.CommandLine.Parameters;

/** ./tavro view. */
@Command(
        name = "view",
        description = "Writes one HTML page that shows all lists of a storage directory in a web browser, or the "
                + "differences between two directories. The page needs no other file and no network.",
        footer = {"", "Examples: ./tavro view", "          ./tavro view -o lists.html build/demo/home",
            "          ./tavro view before after"})
final class ViewCommand implements Callable<Integer> {
    @Mixin
    private HelpOption help;

    @Parameters(index = "0", arity = "0..1", paramLabel = "DIR",
            description = "Storage directory to show (default: the one in use).")
    private Path directory;

    @Parameters(index = "1", arity = "0..1", paramLabel = "OTHER_DIR",
            description = "Storage directory to compare with DIR. The page shows this directory, and marks what "
                    + "was added, changed or removed since DIR.")
    private Path other;

    @Option(names = {"-o", "--output"}, paramLabel = "FILE", defaultValue = "tavro-lists.html",
            description = "File to write; - is standard output (default: ${DEFAULT-VALUE}).")
    private String output;

    @Override
    public Integer call() throws IOException {
        Access.readOnly();
        Path shown = directory == null ? Storage.directory() : directory;
        List<Path> directories = other == null ? List.of(shown) : List.of(shown, other);
        PageData data = PageData.read(directories);
        if (output.equals("-")) {
            PageFile.print(data, System.out);
            return ExitCode.DONE;
        }
        if (output.isEmpty()) {
            throw new Failure("the name of the output file is empty; use -o FILE, or -o - for standard output");
        }
        PageFile.write(data, Path.of(output));
        System.out.println(output + ": " + Text.count(data.records(), "record") + " in "
                + Text.count(data.lists(), "list") + "; open it in a web browser");
        return ExitCode.DONE;
    }
}
