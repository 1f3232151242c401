/**
 * Two lists of the same kind: which of their records are the same, how these differ, and how to take over records,
 * order and values from one into the other. Nothing here reads or writes storage.
 *
 * <p>{@link Matching} pairs the records, {@link Comparison} compares the pairs, {@link Merge} brings a rescan into an
 * edited list, and {@link Reorder} takes order, numbers, names and flags from a list or from a {@link ReferenceFile}.
 */
package com.velotra.tv.tavro.tool.matching;
