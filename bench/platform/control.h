// Control of the memory platform: the third set of the platform's libraries, whose calls cost almost nothing.
//
// The libraries carry the platform's file names and stand in lib/memory of the build folder; a program that is
// linked against them there loads the channel list library over them. Lists are plain arrays in memory. There are
// no locks, no files and no log: log lines are counted, and the log level is the one variable below. A program
// uses them from one thread.
#pragma once

#include <cstdint>

extern "C" {
// First letter of the log level property's value; 0 when the property is not set.
extern char tavro_memory_log_level;

// Log lines so far.
extern std::uint64_t tavro_memory_lines;

// Is called with a text for every platform call, when it is not null: the arguments, the bytes of the records that
// are handed in, and the formatted text of log lines.
extern void (*tavro_memory_journal)(const char* text);

// Makes list `list_id` (below 256) of a kind (1 svl, 2 tsl, 3 nwl, 4 satl) hold `count` copies of `record`, with
// the record ids 1 to `count`.
void tavro_memory_fill(int kind, int list_id, int count, const void* record);

// The record at a position, for changes that keep its id and place.
void* tavro_memory_record(int kind, int list_id, int position);

// Removes all records after the first `count`.
void tavro_memory_truncate(int kind, int list_id, int count);

// How many records the list holds.
int tavro_memory_count(int kind, int list_id);
}
