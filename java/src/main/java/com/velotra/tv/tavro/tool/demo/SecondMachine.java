package com.velotra.tv.tavro.tool.demo;

import com.velotra.tv.tavro.services.channellist.ChannelListException;
import com.velotra.tv.tavro.services.channellist.VltTvChannelList;
import java.io.IOException;
import java.nio.file.Files;
import java.nio.file.Path;

/**
 * The demo's second virtual machine: loads a service list from a file and writes the bytes of its records to another.
 */
final class SecondMachine {
    private SecondMachine() {}

    /** @param arguments list id, list file, and the file that receives the bytes */
    public static void main(String[] arguments) {
        int listId = Integer.parseInt(arguments[0]);
        try {
            VltTvChannelList lists = VltTvChannelList.getInstance();
            lists.load(listId, arguments[1]);
            Files.write(Path.of(arguments[2]), lists.getAllBytes(listId));
        } catch (ChannelListException e) {
            System.err.println("tavro: " + e.getMessage());
            System.exit(1);
        } catch (IOException e) {
            System.err.println("tavro: cannot write " + arguments[2] + ": " + e.getMessage());
            System.exit(1);
        }
    }
}
