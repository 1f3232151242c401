package com.velotra.tv.tavro.tool.matching;

import com.velotra.tv.tavro.tool.records.RecordList;

/**
 * One of the two lists to match.
 *
 * @param list its records
 * @param companions the lists to which they refer
 */
public record Side(RecordList list, Companions companions) {}
