package com.velotra.tv.tavro.tool.changes;

import com.velotra.tv.tavro.tool.input.Failure;
import com.velotra.tv.tavro.tool.input.Source;
import java.io.IOException;
import java.nio.channels.FileChannel;
import java.nio.file.Files;
import java.nio.file.Path;
import java.nio.file.StandardOpenOption;
import java.util.concurrent.locks.ReentrantLock;

/**
 * Keeps other commands that change lists, in this and other processes, out of a storage directory. A thread that holds
 * it may take it again. It is released when the process ends.
 */
public final class ChangeLock {
    private static final ReentrantLock THREAD = new ReentrantLock();

    private final FileChannel file; // null if this thread had the lock before

    private ChangeLock(FileChannel file) {
        this.file = file;
    }

    /**
     * Waits for other commands to finish; calls {@code waiting} once before it waits for another process. Creates the
     * storage directory if there is none.
     *
     * @throws Failure if the lock file cannot be created or locked: nothing can be changed in that directory either
     */
    public static ChangeLock take(Path directory, Runnable waiting) {
        THREAD.lock();
        if (THREAD.getHoldCount() > 1) {
            return new ChangeLock(null);
        }
        FileChannel file = null;
        try {
            Files.createDirectories(directory);
            file = FileChannel.open(directory.resolve("changes.lock"), StandardOpenOption.CREATE,
                    StandardOpenOption.WRITE);
            if (file.tryLock() == null) {
                waiting.run();
                file.lock();
            }
            return new ChangeLock(file);
        } catch (IOException e) {
            new ChangeLock(file).release();
            throw new Failure("cannot change lists in " + directory + ": " + Source.reason(e)
                    + "; change its owner or permissions, or set TAVRO_HOME to another directory");
        }
    }

    /** Lets the next command continue. */
    public void release() {
        try {
            if (file != null) {
                file.close();
            }
        } catch (IOException e) {
            // The lock is released when the process ends.
        } finally {
            THREAD.unlock();
        }
    }
}
