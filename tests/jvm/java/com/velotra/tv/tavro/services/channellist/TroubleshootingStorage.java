package com.velotra.tv.tavro.services.channellist;

import com.velotra.tv.tavro.tool.storage.Access;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.ArrayList;
import java.util.LinkedHashMap;
import java.util.List;
import java.util.Map;

/** Program: uses lists in ways that the workstation's platform refuses. */
final class TroubleshootingStorage {
    private TroubleshootingStorage() {}

    /** Writes what was seen to the folder {@code arguments[0]}. */
    public static void main(String[] arguments) throws Exception {
        Path work = Path.of(arguments[0]);
        Map<String, Observation> seen = new LinkedHashMap<>();
        VltTvChannelList lists = VltTvChannelList.getInstance();
        lists.open(1);
        lists.add(1, new VltTvChannelInfoBase().setServiceName("News"));
        TroubleshootingChild.newLines(work);

        Path other = Files.writeString(work.resolve("other"), "text");
        seen.put("A list file is refused", see(work, () -> message(() -> lists.load(2, other.toString()))));

        lists.native_updateInfoList(1, List.of(new TroubleshootingCalls.Unnamed())); // keeps the lock
        TroubleshootingChild.newLines(work);
        List<String> result = new ArrayList<>();
        Thread waiting = new Thread(() -> result.add("nativeAdd returns \""
                + lists.nativeAdd(1, new VltTvChannelInfoBase().setServiceName("Late")) + '"'));
        waiting.start();
        waiting.join();
        seen.put("A lock is not released in time", new Observation(result.get(0), TroubleshootingChild.newLines(work)));
        lists.close(1);

        Access.readOnly();
        seen.put("The process only reads", see(work, () -> "native_clean returns " + lists.native_clean(1)));
        TroubleshootingChild.pass(work, seen);
    }

    private interface Use {
        String make() throws Exception;
    }

    private static Observation see(Path work, Use use) throws Exception {
        String symptom = use.make();
        return new Observation(symptom, TroubleshootingChild.newLines(work));
    }

    private static String message(Runnable call) {
        try {
            call.run();
            return "done";
        } catch (ChannelListException e) {
            return e.toString();
        }
    }
}
