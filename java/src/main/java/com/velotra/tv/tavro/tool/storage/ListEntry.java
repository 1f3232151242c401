package com.velotra.tv.tavro.tool.storage;

import com.velotra.tv.tavro.tool.records.Kind;
import java.time.Instant;
import java.util.Optional;

/**
 * A list of a storage directory.
 *
 * @param kind its kind
 * @param listId its id
 * @param name the name under which the storage has it
 * @param records the number of its records
 * @param version increases with every change
 * @param changed when it was last changed; empty if that is not known
 */
public record ListEntry(Kind kind, int listId, String name, int records, long version, Optional<Instant> changed) {}
