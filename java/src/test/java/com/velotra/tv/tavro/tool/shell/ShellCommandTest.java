package com.velotra.tv.tavro.tool.shell;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertTrue;

import com.velotra.tv.tavro.services.channellist.VltTvChannelInfoBase;
import com.velotra.tv.tavro.services.channellist.VltTvChannelList;
import com.velotra.tv.tavro.tool.ToolProcess;
import com.velotra.tv.tavro.tool.ToolProcess.Result;
import java.io.ByteArrayInputStream;
import java.io.InputStream;
import java.nio.charset.StandardCharsets;
import org.junit.jupiter.api.BeforeAll;
import org.junit.jupiter.api.Test;

/** ./tavro shell with commands from a pipe. */
class ShellCommandTest {
    @BeforeAll
    static void addServices() {
        VltTvChannelList lists = VltTvChannelList.getInstance();
        lists.open(1);
        lists.clean(1);
        lists.add(1, new VltTvChannelInfoBase().setBroadcastType(2).setServiceName("Zwölf Töne"));
    }

    private static Result shell(String... lines) {
        InputStream in = System.in;
        System.setIn(new ByteArrayInputStream(String.join("\n", lines).getBytes(StandardCharsets.UTF_8)));
        try {
            return ToolProcess.runHere("shell");
        } finally {
            System.setIn(in);
        }
    }

    @Test
    void commandsFromAPipePrintWhatTheyPrintAlone() {
        String list = ToolProcess.runHere("list", "1").out();
        String show = ToolProcess.runHere("show", "1,1").out();
        assertTrue(list.contains("Zwölf Töne") && show.contains("Zwölf Töne"));
        assertEquals(new Result(0, list + show + list, ""),
                shell("# a comment", "", "list 1", "  ./tavro 'show' \"1,1\"", "list 1 --kind=services\n"));
    }

    @Test
    void theFirstFailureEndsCommandsFromAPipe() {
        assertEquals(new Result(1, "", "tavro: service list 1 has no record 9\n"
                + "tavro: shell: stopped at line 2, exit code 1\n"), shell("", "show 1,9", "list 1"));
        assertEquals(new Result(2, "", """
                tavro: list: '0' is not a list id: it must be from 1 to 65535
                See: ./tavro list --help
                tavro: shell: stopped at line 1, exit code 2
                """), shell("list 0", "list 1"));
    }

    @Test
    void wrongLinesAreRefusedWithTheReason() {
        refused("unknown command 'lsit'; did you mean 'list'?", "lsit 1");
        refused("unknown command 'frobnicate'", "frobnicate");
        refused("the quote \" is not closed", "show \"1,1");
        refused("build does not run in the shell; use ./tavro build", "build arm");
        refused("the shell is already running", "shell");
        refused("exit: unexpected argument '3'", "exit 3");
        refused("unknown command 'lsit'; did you mean 'list'?", "help lsit");
        refused("list: unexpected argument 'me'", "help list me");
        refused("unknown command '·[2J'", "\u001b[2J");
    }

    private static void refused(String reason, String line) {
        assertEquals(new Result(2, "", "tavro: shell: " + reason + "\n"
                + "tavro: shell: stopped at line 1, exit code 2\n"), shell(line));
    }

    @Test
    void exitEndsWithTheLastExitCode() {
        assertEquals(new Result(0, "", ""), shell("exit", "list 0"));
        assertEquals(new Result(0, "", ""), shell("quit"));
        assertEquals(new Result(0, "", ""), shell(""));
    }

    @Test
    void helpPrintsTheCommandsOfTheShell() {
        String overview = shell("help").out();
        assertTrue(overview.startsWith("Look at lists\n"), overview);
        assertTrue(overview.contains("\n  list ID ") && overview.contains("\n  exit "), overview);
        assertTrue(!overview.contains("  build ") && !overview.contains("  shell "), overview);
        assertEquals(ToolProcess.runHere("list", "--help"), shell("help list"));
    }
}
