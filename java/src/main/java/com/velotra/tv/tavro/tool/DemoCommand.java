package com.velotra.tv.tavro.tool;

import com.velotra.tv.tavro.services.channellist.VltTvChannelList;
import com.velotra.tv.tavro.tool.demo.Demo;
import com.velotra.tv.tavro.tool.input.Failure;
import com.velotra.tv.tavro.tool.storage.Storage;
import java.nio.file.Path;
import java.util.concurrent.Callable;
import picocli.CommandLine.Command;
import picocli.CommandLine.Mixin;
import picocli.CommandLine.Parameters;

/** ./tavro demo, with the folders that the script passes. */
@Command(
        name = "demo",
        hidden = true,
        description = "Imports, edits, filters, stores and loads real service lists, and checks every step.",
        footer = {"", "Example: ./tavro demo"})
final class DemoCommand implements Callable<Integer> {
    @Mixin
    private HelpOption help;

    @Parameters(index = "0", description = "Folder with the channels.conf examples.")
    private Path sources;

    @Parameters(index = "1", description = "Folder with sources.conf and diseqc.conf.")
    private Path dishes;

    @Parameters(index = "2", description = "Folder for the files that the demo writes.")
    private Path work;

    @Override
    public Integer call() throws Exception {
        Demo.problem(work).ifPresent(problem -> {
            throw new Failure(problem);
        });
        VltTvChannelList lists = Preconditions.withLibrary(VltTvChannelList::getInstance);
        if (!new Demo(lists, sources, dishes, work, System.out).run()) {
            return ExitCode.FAILED;
        }
        System.out.printf("Look around: TAVRO_HOME=%s %s list %d%n",
                Shell.quoted(Storage.directory().toString()), Shell.command(), Demo.SATELLITE);
        return ExitCode.DONE;
    }
}
