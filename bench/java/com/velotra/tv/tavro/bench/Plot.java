package com.velotra.tv.tavro.bench;

import java.util.ArrayList;
import java.util.LinkedHashMap;
import java.util.List;
import java.util.Locale;
import java.util.Map;
import java.util.TreeMap;
import java.util.TreeSet;

/** An SVG plot of time against number of records, with logarithmic axes and a line for each series. */
final class Plot {
    private static final String[] COLORS = {"#1b6ca8", "#d1495b", "#3b8c4a", "#8d5fb0", "#b8860b", "#444444"};
    private static final int WIDTH = 720;
    private static final int HEIGHT = 400;
    private static final int LEFT = 80;
    private static final int RIGHT = 190;
    private static final int TOP = 44;
    private static final int BOTTOM = 56;

    private final String title;
    private final String yLabel;
    private final Map<String, TreeMap<Double, Double>> series = new LinkedHashMap<>();

    Plot(String title, String yLabel) {
        this.title = title;
        this.yLabel = yLabel;
    }

    /** Adds a point to a series. */
    void add(String name, double records, double nanoseconds) {
        series.computeIfAbsent(name, key -> new TreeMap<>()).put(records, nanoseconds);
    }

    /** Returns the number of distinct list sizes. */
    long sizes() {
        return series.values().stream().flatMap(points -> points.keySet().stream()).distinct().count();
    }

    /** Returns the plot as SVG. */
    String svg() {
        Axis x = new Axis(series.values().stream().flatMap(points -> points.keySet().stream()).toList(), LEFT,
                WIDTH - RIGHT, 1);
        Axis y = new Axis(series.values().stream().flatMap(points -> points.values().stream()).toList(),
                HEIGHT - BOTTOM, TOP, 1, 2, 5);
        List<String> lines = new ArrayList<>();
        lines.add(format("<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"0 0 %d %d\" width=\"%d\" height=\"%d\""
                + " role=\"img\" font-family=\"sans-serif\" font-size=\"12\">", WIDTH, HEIGHT, WIDTH, HEIGHT));
        lines.add("<title>" + escaped(title) + "</title>");
        lines.add("<rect width=\"100%\" height=\"100%\" fill=\"white\"/>");
        lines.add(format("<text x=\"%d\" y=\"24\" font-size=\"15\">%s</text>", LEFT, escaped(title)));
        for (double tick : x.ticks()) {
            double at = x.place(tick);
            lines.add(line(at, TOP, at, HEIGHT - BOTTOM));
            lines.add(text(at, HEIGHT - BOTTOM + 18, "middle", format("%,.0f", tick)));
        }
        for (double tick : y.ticks()) {
            double at = y.place(tick);
            lines.add(line(LEFT, at, WIDTH - RIGHT, at));
            lines.add(text(LEFT - 8, at + 4, "end", Times.text(tick).replaceAll("\\.0+ ", " ")));
        }
        lines.add(text((LEFT + WIDTH - RIGHT) / 2.0, HEIGHT - 14, "middle", "records in the list"));
        lines.add(format("<text x=\"18\" y=\"%d\" text-anchor=\"middle\" transform=\"rotate(-90 18 %d)\">%s</text>",
                (TOP + HEIGHT - BOTTOM) / 2, (TOP + HEIGHT - BOTTOM) / 2, escaped(yLabel)));
        int number = 0;
        for (Map.Entry<String, TreeMap<Double, Double>> one : series.entrySet()) {
            String color = COLORS[number % COLORS.length];
            StringBuilder points = new StringBuilder();
            List<String> dots = new ArrayList<>();
            one.getValue().forEach((records, time) -> {
                points.append(points.isEmpty() ? "" : " ").append(format("%.1f,%.1f", x.place(records), y.place(time)));
                dots.add(format("<circle cx=\"%.1f\" cy=\"%.1f\" r=\"3\" fill=\"%s\">"
                                + "<title>%s, %,.0f records: %s</title></circle>",
                        x.place(records), y.place(time), color, escaped(one.getKey()), records, Times.text(time)));
            });
            lines.add(format("<polyline fill=\"none\" stroke=\"%s\" stroke-width=\"2\" points=\"%s\"/>", color,
                    points));
            lines.addAll(dots);
            int legend = TOP + 12 + 22 * number++;
            lines.add(format("<line x1=\"%d\" y1=\"%d\" x2=\"%d\" y2=\"%d\" stroke=\"%s\" stroke-width=\"2\"/>",
                    WIDTH - RIGHT + 12, legend - 4, WIDTH - RIGHT + 32, legend - 4, color));
            lines.add(text(WIDTH - RIGHT + 38, legend, "start", one.getKey()));
        }
        lines.add("</svg>");
        return String.join("\n", lines) + '\n';
    }

    private static String line(double x1, double y1, double x2, double y2) {
        return format("<line x1=\"%.1f\" y1=\"%.1f\" x2=\"%.1f\" y2=\"%.1f\" stroke=\"#dddddd\"/>", x1, y1, x2, y2);
    }

    private static String text(double x, double y, String anchor, String text) {
        return format("<text x=\"%.1f\" y=\"%.1f\" text-anchor=\"%s\">%s</text>", x, y, anchor, escaped(text));
    }

    private static String escaped(String text) {
        return text.replace("&", "&amp;").replace("<", "&lt;").replace(">", "&gt;");
    }

    private static String format(String format, Object... values) {
        return String.format(Locale.ROOT, format, values);
    }

    /** A logarithmic axis between two coordinates. It begins and ends with a tick. */
    private static final class Axis {
        private final TreeSet<Double> ticks = new TreeSet<>();
        private final double from;
        private final double to;

        /** @param steps the ticks within each decade, as multiples of its power of ten */
        Axis(List<Double> values, double from, double to, int... steps) {
            double least = values.stream().min(Double::compare).orElseThrow();
            double most = values.stream().max(Double::compare).orElseThrow();
            for (int power = (int) Math.floor(Math.log10(least)); power <= Math.log10(most) + 1; power++) {
                for (int step : steps) {
                    ticks.add(step * Math.pow(10, power));
                }
            }
            double first = ticks.floor(least);
            double last = Math.max(ticks.ceiling(most), ticks.higher(first));
            ticks.removeIf(tick -> tick < first || tick > last);
            this.from = from;
            this.to = to;
        }

        double place(double value) {
            return from + (to - from) * Math.log(value / ticks.first()) / Math.log(ticks.last() / ticks.first());
        }

        Iterable<Double> ticks() {
            return ticks;
        }
    }
}
