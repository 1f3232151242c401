package com.velotra.tv.tavro.tool.importing;

import java.io.IOException;
import java.nio.channels.FileChannel;
import java.nio.channels.FileLock;
import java.nio.channels.OverlappingFileLockException;
import java.nio.file.Files;
import java.nio.file.Path;
import java.nio.file.StandardOpenOption;

/**
 * Keeps other imports out of a storage directory, those of other processes too. The end of the process gives it back.
 */
final class ImportLock {
    private final FileChannel file;

    private ImportLock(FileChannel file) {
        this.file = file;
    }

    /**
     * Waits for other imports to finish, and calls {@code waiting} once before. A directory in which no lock file can
     * be made is not locked: nothing can be stored there either, and the storage says why.
     */
    static ImportLock take(Path directory, Runnable waiting) {
        FileChannel file = null;
        try {
            Files.createDirectories(directory);
            file = FileChannel.open(directory.resolve("import.lock"), StandardOpenOption.CREATE,
                    StandardOpenOption.WRITE);
            FileLock lock = file.tryLock();
            if (lock == null) {
                waiting.run();
                file.lock();
            }
        } catch (IOException | OverlappingFileLockException e) {
            // Goes on without the lock.
        }
        return new ImportLock(file);
    }

    /** Lets the next import go on. */
    void release() {
        try {
            if (file != null) {
                file.close();
            }
        } catch (IOException e) {
            // The end of the process gives the lock back.
        }
    }
}
