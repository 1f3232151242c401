package com.velotra.tv.tavro.tool.demo;

import com.velotra.tv.tavro.services.channellist.OrbitalPosition;
import com.velotra.tv.tavro.services.channellist.RecordId;
import com.velotra.tv.tavro.services.channellist.ServiceRecord;
import com.velotra.tv.tavro.services.channellist.TransportStreamField;
import com.velotra.tv.tavro.services.channellist.TransportStreamRecord;
import com.velotra.tv.tavro.services.channellist.VltTvNetworkList;
import com.velotra.tv.tavro.services.channellist.VltTvSatelliteInfo;
import com.velotra.tv.tavro.services.channellist.VltTvSatelliteList;
import com.velotra.tv.tavro.services.channellist.VltTvTransportStreamList;
import com.velotra.tv.tavro.tool.services.Service;
import com.velotra.tv.tavro.tool.services.ServiceImport;
import java.io.IOException;
import java.nio.charset.StandardCharsets;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.List;
import java.util.Map;
import java.util.Optional;
import java.util.Set;
import java.util.function.Function;

/**
 * Compares stored services with the channels.conf that they come from. It parses the file independently of the
 * importer.
 */
final class SourceComparison {
    // Stored codes of tuning parameters, by the letter and number of channels.conf.
    private static final Map<String, Integer> POLARIZATION = Map.of("H", 0, "V", 1, "L", 2, "R", 3);
    private static final Map<String, Integer> MODULATION =
            Map.of("M2", 1, "M5", 2, "M16", 3, "M32", 4, "M64", 5, "M128", 6, "M256", 7);
    private static final Map<String, Integer> FEC = Map.of(
            "C12", 2, "C23", 3, "C34", 4, "C56", 6, "C78", 7, "C89", 8, "C35", 9, "C45", 10, "C910", 11);
    private static final Map<String, Integer> BANDWIDTH = Map.of("B6", 1, "B7", 2, "B8", 3);

    private final List<String> lines;
    private final Set<Integer> positions;

    /** @param positions of the satellites that services can refer to, in tenths of a degree */
    SourceComparison(Path file, Set<Integer> positions) throws IOException {
        lines = Files.readAllLines(file, StandardCharsets.ISO_8859_1);
        this.positions = positions;
    }

    /**
     * Returns the number of services in the file: lines that are not headings or comments. Lines with the same network,
     * stream and service id count once; if those ids are 0, so do lines with the same frequency and service id.
     */
    long distinctServices() {
        return lines.stream()
                .filter(line -> !line.isBlank() && !line.startsWith(":") && !line.startsWith("#"))
                .map(line -> line.split(":"))
                .map(fields -> fields.length < 12 ? String.join(":", fields)
                        : String.join(":", fields[9], fields[10], fields[11],
                                (fields[10] + fields[11]).equals("00") ? fields[1].replaceFirst("(\\d{6})000$", "$1")
                                        : ""))
                .distinct()
                .count();
    }

    /** Returns whether a service record and its transport stream record have the values of the file. */
    boolean agrees(ServiceRecord stored, Service source, RecordId stream) {
        return stored.name().equals(ServiceImport.name(source))
                && stored.shortName().equals(ServiceImport.shortName(source))
                && stored.transportStream().equals(stream)
                && satelliteAgrees(stored.satellite(), source)
                && networkId(stored.network()) == source.networkId()
                && stored.serviceId() == source.serviceId()
                && stored.serviceType() == (source.hasVideo() ? 1 : 2)
                && stored.scrambled() == source.scrambled()
                && stored.caSystemId() == (source.scrambled() ? source.caIds().get(0) : 0)
                && stored.logicalChannelNumber() == source.number()
                && tuningAgrees(lines.get(source.place().line() - 1), stream);
    }

    /** Returns the record that a reference points to; nothing if it points to none. */
    static <T> Optional<T> record(RecordId reference, Function<RecordId, Optional<T>> reader) {
        return Optional.of(reference).filter(RecordId::namesRecord).flatMap(reader);
    }

    /** Returns whether a service refers to the satellite at its position, or to none if there is none. */
    private boolean satelliteAgrees(RecordId satellite, Service source) {
        Optional<Integer> stored = record(satellite,
                id -> VltTvSatelliteList.getInstance().get(id, List.of("OrbitPosition")))
                .map(VltTvSatelliteInfo::getOrbitPosition);
        String position = source.transponder().position();
        Optional<Integer> expected = position.isEmpty() ? Optional.empty()
                : Optional.of(OrbitalPosition.parse(position).tenths()).filter(positions::contains);
        return stored.equals(expected);
    }

    /** Returns the network id of a network record; 0 if there is none. */
    private static int networkId(RecordId network) {
        return record(network, id -> VltTvNetworkList.getInstance().get(id))
                .map(info -> info.getNwlNetworkId())
                .orElse(0);
    }

    private static boolean tuningAgrees(String line, RecordId id) {
        List<String> parameters = List.of(line.split(":")[2].split("(?=[A-Z])"));
        TransportStreamRecord stream = VltTvTransportStreamList.getInstance().get(id).orElseThrow();
        return switch (stream.medium()) {
            case TransportStreamRecord.SATELLITE -> agrees(
                    stream, TransportStreamField.SAT_POLARIZATION, parameters, POLARIZATION)
                    && agrees(stream, TransportStreamField.SAT_MODULATION, parameters, MODULATION)
                    && agrees(stream, TransportStreamField.SAT_FEC_INNER, parameters, FEC);
            case TransportStreamRecord.CABLE -> agrees(stream, TransportStreamField.CAB_MODULATION, parameters,
                    MODULATION);
            default -> agrees(stream, TransportStreamField.TER_MODULATION, parameters, MODULATION)
                    && agrees(stream, TransportStreamField.TER_BANDWIDTH, parameters, BANDWIDTH);
        };
    }

    private static boolean agrees(
            TransportStreamRecord stream, TransportStreamField field, List<String> parameters,
            Map<String, Integer> codes) {
        return parameters.stream().filter(codes::containsKey)
                .allMatch(parameter -> stream.value(field) == codes.get(parameter));
    }
}
