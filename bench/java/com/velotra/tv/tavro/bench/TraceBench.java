package com.velotra.tv.tavro.bench;

import com.velotra.tv.tavro.services.channellist.RecordId;
import com.velotra.tv.tavro.services.channellist.VltTvTransportStreamInfoBase;
import com.velotra.tv.tavro.services.channellist.VltTvTransportStreamList;
import java.lang.management.ManagementFactory;
import java.lang.management.ThreadMXBean;
import java.util.Arrays;

/**
 * Times two operations over the stand-ins, for bench/trace.sh: a read of one transport stream (a native that makes one
 * call of the middleware) and of a list of 100 (a native that makes 103 calls). Prints nanoseconds of processor time
 * per operation, one line each: the median of the rounds. Other load on the machine matters little.
 */
public final class TraceBench {
    private static final ThreadMXBean THREADS = ManagementFactory.getThreadMXBean();
    private static final int STREAMS = 100;
    private static final int ROUNDS = 31;

    private TraceBench() {}

    /** Runs the benchmark on list 1, which it deletes afterwards. */
    public static void main(String[] arguments) {
        VltTvTransportStreamList list = VltTvTransportStreamList.getInstance();
        list.open(1);
        for (int i = 0; i < STREAMS; i++) {
            VltTvTransportStreamInfoBase stream = new VltTvTransportStreamInfoBase();
            stream.setTransportStreamId(1000 + i);
            list.add(1, stream);
        }
        RecordId first = new RecordId(1, 1);
        System.out.println("one " + median(() -> list.get(first), 1000));
        System.out.println("all " + median(() -> list.getAll(1), 20));
        list.delete(1);
    }

    private static long median(Runnable operation, int times) {
        long[] rounds = new long[ROUNDS];
        for (int round = 0; round < ROUNDS; round++) {
            long start = THREADS.getCurrentThreadCpuTime();
            for (int i = 0; i < times; i++) {
                operation.run();
            }
            rounds[round] = (THREADS.getCurrentThreadCpuTime() - start) / times;
        }
        Arrays.sort(rounds);
        return rounds[ROUNDS / 2];
    }
}
