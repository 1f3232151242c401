package com.velotra.tv.tavro.tool.matching;

import com.velotra.tv.tavro.tool.records.Record;
import com.velotra.tv.tavro.tool.records.RecordList;
import java.util.function.BiFunction;

/**
 * Finds the records of two lists that stand for the same service, transport stream, network or satellite.
 *
 * <p>Services have the same original network id, transport stream id and service id; transport streams the same
 * medium, frequency, polarization and orbital position; networks the same network id; satellites the same orbital
 * position. The ids of a service are in the record of its transport stream. If that cannot be found on one of the
 * sides, the service id and the place or the reference of the transport stream decide. The rest is matched by name.
 *
 * <p>Of several records with the same identity, those that have more in common are paired first, and then in list
 * order.
 */
public final class Matching {
    private final RecordList from;
    private final RecordList to;
    private final Identity fromIdentity;
    private final Identity toIdentity;
    private final Pairing pairing;

    private interface Key extends BiFunction<Identity, Record, Object> {}

    private Matching(Side from, Side to) {
        this.from = from.list();
        this.to = to.list();
        fromIdentity = new Identity(from);
        toIdentity = new Identity(to);
        pairing = new Pairing(this.from.size(), this.to.size());
    }

    /** Pairs the records of two lists of the same kind. */
    public static Pairing of(Side from, Side to) {
        return new Matching(from, to).run();
    }

    private Pairing run() {
        switch (from.kind()) {
            case SERVICES -> services();
            case STREAMS -> streams();
            case NETWORKS -> byNameAmongEqual(Identity::network);
            case SATELLITES -> byNameAmongEqual(Identity::satellite);
        }
        byKey((identity, record) -> Identity.name(record));
        return pairing;
    }

    private void services() {
        byKey((identity, service) -> Identity.both(identity.service(service), identity.serviceByPlace(service)));
        byKey(Identity::service);
        ifUnknown(Identity::service, Identity::serviceByPlace);
        ifUnknown(Identity::anyOfService, Identity::serviceByReference);
    }

    private void streams() {
        byKey((identity, stream) -> Identity.both(identity.stream(stream), identity.streamIds(stream)));
        byKey(Identity::stream);
        ifUnknown(Identity::stream, Identity::streamByReference);
    }

    private void byNameAmongEqual(Key key) {
        byKey((identity, record) -> Identity.both(key.apply(identity, record), Identity.name(record)));
        byKey(key);
    }

    private void byKey(Key key) {
        byKeys(key, key);
    }

    /** Pairs by {@code key} the records of which at least one has no {@code better} key. */
    private void ifUnknown(Key better, Key key) {
        Key without = (identity, record) -> better.apply(identity, record) == null ? key.apply(identity, record) : null;
        byKeys(without, key);
        byKeys(key, without);
    }

    private void byKeys(Key fromKey, Key toKey) {
        pairing.pair(index -> fromKey.apply(fromIdentity, from.get(index)),
                index -> toKey.apply(toIdentity, to.get(index)));
    }
}
