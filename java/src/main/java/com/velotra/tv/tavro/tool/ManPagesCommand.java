package com.velotra.tv.tavro.tool;

import com.velotra.tv.tavro.tool.help.HelpTexts;
import java.io.IOException;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.Map;
import java.util.concurrent.Callable;
import picocli.CommandLine.Command;
import picocli.CommandLine.Parameters;

/** Writes the man pages, for the build. */
@Command(name = "man-pages", hidden = true, description = "Writes the man pages into a folder.")
final class ManPagesCommand implements Callable<Integer> {
    @Parameters(paramLabel = "DIR", description = "Folder for the pages.")
    private Path folder;

    @Override
    public Integer call() throws IOException {
        Files.createDirectories(folder);
        String version = new Main.Version().getVersion()[0].replaceFirst("^tavro ", "");
        for (Map.Entry<String, String> page : HelpTexts.manPages(version).entrySet()) {
            Files.writeString(folder.resolve(page.getKey()), page.getValue());
        }
        return ExitCode.DONE;
    }
}
