package com.velotra.tv.tavro.tool.call;

import com.velotra.tv.tavro.services.channellist.KeyedValues;
import com.velotra.tv.tavro.services.channellist.Printable;
import com.velotra.tv.tavro.services.channellist.TvList;
import com.velotra.tv.tavro.tool.decoding.DecodedRecord;
import com.velotra.tv.tavro.tool.decoding.RecordPage;
import com.velotra.tv.tavro.tool.input.Text;
import com.velotra.tv.tavro.tool.listing.Titles;
import com.velotra.tv.tavro.tool.records.Kind;
import com.velotra.tv.tavro.tool.records.Record;
import com.velotra.tv.tavro.tool.records.RecordList;
import java.io.PrintStream;
import java.lang.reflect.InvocationTargetException;
import java.util.ArrayList;
import java.util.Arrays;
import java.util.List;
import java.util.Locale;
import java.util.Map;
import java.util.stream.Collectors;

/** A call of a native, which can be made once or several times. */
public final class NativeCall {
    private static final int FAILED = -22;
    private static final int NO_COMMA = -1;

    private final Native called;
    private final Object[] arguments;

    private NativeCall(Native called, Object[] arguments) {
        this.called = called;
        this.arguments = arguments;
    }

    /**
     * Returns the calls that a user has written: CLASS.NATIVE ARGUMENT..., and again after each word + or comma.
     *
     * @throws WrongCall if a call cannot be made of the words
     */
    public static List<NativeCall> read(List<String> words) {
        List<NativeCall> calls = new ArrayList<>();
        int start = 0;
        for (int i = 0; i <= words.size(); i++) {
            if (i == words.size() || words.get(i).equals("+") || words.get(i).equals(",")) {
                calls.add(one(words.subList(start, i)));
                start = i + 1;
            }
        }
        return calls;
    }

    private static NativeCall one(List<String> words) {
        if (words.isEmpty()) {
            throw new WrongCall("CLASS.NATIVE is missing, at the start or next to a + or a comma");
        }
        Map.Entry<Native, Object[]> call =
                new ArgumentReader(Natives.find(words.get(0)), words.subList(1, words.size())).read();
        return new NativeCall(call.getKey(), call.getValue());
    }

    /** Returns the kind of the list class. */
    public Kind kind() {
        return called.kind();
    }

    /**
     * Makes the call and prints it with its result, or with the exception that it ended with. The library must be
     * loaded, and the manager of the kind made. What is printed is flushed before the call, which may end the process.
     *
     * @return whether the native returned
     */
    public boolean run(PrintStream out) {
        TvList lists = called.kind().lists();
        out.println(called.className() + "." + called.name() + Arrays.stream(arguments).map(Values::show)
                .collect(Collectors.joining(", ", "(", ")")));
        out.flush();
        called.method().setAccessible(true);
        long start = System.nanoTime();
        try {
            Object result = called.method().invoke(lists, arguments);
            String time = time(start);
            out.print("= " + summary(result) + time + details(result));
            return true;
        } catch (InvocationTargetException e) {
            String time = time(start);
            out.print("threw " + Printable.of(String.valueOf(e.getCause())) + time);
            return false;
        } catch (IllegalAccessException e) {
            throw new IllegalStateException(called.name(), e);
        }
    }

    private static String time(long start) {
        return String.format(Locale.ROOT, " (%.3f ms)%n", (System.nanoTime() - start) / 1e6);
    }

    /** Returns type and value of a result, and what they mean, on one line. */
    private String summary(Object result) {
        if (result instanceof Integer status) {
            return "int " + status + meaning(status);
        }
        if (result instanceof byte[] bytes) {
            return "byte[" + bytes.length + "]" + (bytes.length % kind().recordBytes() == 0
                    ? ", " + Text.count(bytes.length / kind().recordBytes(), kind().noun()) : "");
        }
        if (result instanceof List<?> list) {
            return list.getClass().getSimpleName() + " of " + Text.count(list.size(), "object");
        }
        if (result instanceof KeyedValues object) {
            return object.getClass().getSimpleName() + " with " + Text.count(object.keys().size(), "value");
        }
        return result instanceof String text ? "String " + Values.show(text) + (text.isEmpty() ? ": failed" : "")
                : String.valueOf(result);
    }

    private String meaning(int status) {
        if (called.name().equals("nativeSetup")) {
            return ": address of the manager's slot, cut to an int";
        }
        return switch (status) {
            case 0 -> ": done";
            case FAILED -> ": failed";
            case NO_COMMA -> ": the identifier has no comma";
            default -> "";
        };
    }

    /** Returns the content of a result, on lines of their own: a single record in full, others on one line each. */
    private String details(Object result) {
        List<String> lines = new ArrayList<>();
        if (result instanceof byte[] bytes && bytes.length % kind().recordBytes() == 0) {
            RecordList records = RecordList.of(kind(), 0, "", bytes);
            if (records.size() == 1) {
                RecordPage.of(DecodedRecord.of(records.get(0))).lines().forEach(lines::add);
            } else {
                records.forEach(record -> lines.add(line(record)));
            }
        } else if (result instanceof List<?> list) {
            list.forEach(each -> lines.add(Values.show(each)));
        } else if (result instanceof KeyedValues object) {
            RecordObjects.values(object).forEach((key, value) -> lines.add(String.format("%-24s %s", key, value)));
        }
        return lines.stream().map(line -> "  " + line + System.lineSeparator()).collect(Collectors.joining());
    }

    private static String line(Record record) {
        return "record " + record.id() + "  " + Printable.of(Titles.of(record));
    }
}
