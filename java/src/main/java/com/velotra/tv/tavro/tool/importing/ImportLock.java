package com.velotra.tv.tavro.tool.importing;

import java.io.IOException;
import java.nio.channels.FileChannel;
import java.nio.channels.FileLock;
import java.nio.channels.OverlappingFileLockException;
import java.nio.file.Files;
import java.nio.file.Path;
import java.nio.file.StandardOpenOption;

/**
 * Keeps other imports, in this and other processes, out of a storage directory. It is released when the process ends.
 */
final class ImportLock {
    private final FileChannel file;

    private ImportLock(FileChannel file) {
        this.file = file;
    }

    /**
     * Waits for other imports to finish; calls {@code waiting} once before it waits. Goes on without a lock if the lock
     * file cannot be created: nothing can be stored in that directory either, and storing reports the reason.
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
            // Continues without the lock, see above.
        }
        return new ImportLock(file);
    }

    /** Lets the next import continue. */
    void release() {
        try {
            if (file != null) {
                file.close();
            }
        } catch (IOException e) {
            // The lock is released when the process ends.
        }
    }
}
