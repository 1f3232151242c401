#!/usr/bin/env bash
# Writes docs/threads.md from the recorded calls of all natives (tests/jvm/ledger), which a test compares with what the
# natives do: threads.sh >docs/threads.md
set -euo pipefail
cd "$(dirname "$(readlink -f "$0")")/../.."

# The natives that hold the mutex, as name(signature).
mutex=$(awk '/^j[a-z]+ com_/ { name = $2; sub(/\(.*/, "", name) } /lock_guard.*chListMutex/ { print name }' \
    jni/bridges/channel_list_bridge.cpp | while read -r function; do
    sed -nE "s/.*\{?\"(\w+)\", *\"(\([^)]*\)).*\b$function\b.*/\1\2/p" jni/jni_VltTvList_Init.cpp
done | sed 's,Ljava/lang/String;,S,; s/(I)/(int)/; s/(IS)/(int, String)/')
[ "$(wc -l <<<"$mutex")" = 3 ] || { echo "threads.sh: cannot tell which natives hold chListMutex: $mutex" >&2; exit 1; }

cat <<'END'
# Threads

Made from the recorded calls of all natives (`tests/jvm/ledger`) by `docs/generate/threads.sh`. The classes in `java/`
keep these rules: all methods of a list class hold one lock per kind. A service layer that calls the natives itself must
keep them, too.

Three things decide which natives may run at the same time:

- **List locks** belong to the middleware. They keep other threads and processes away from the records of a list.
- **The mutex** of the library is held by `native_open` and `native_delete` of services, and by no other native, also
  if it opens a list.
- **The handle map** of a kind has the handles of the open lists, and nothing protects it. A native that *opens* adds a
  list to it if the list is not open yet; one that *closes* takes lists out; one that *looks up* changes nothing.

The last column says which natives of the same kind other threads may call during the call:

- **any**: the native does not use the handle map.
- **lookups**: natives that only look up, or that would open a list which is open already.
- **lookups, if the list is open**: the same. If the list is not open yet, **none**. So open all lists first, from one
  thread, and close none while other threads work.
- **none**: the handle map changes.

Then the list locks keep the calls apart. *Reads first* marks what they do not cover: the native reads before it takes
the write lock. If two threads update the same record at a time, one update can be lost. If two threads add to the same
companion list at a time, both can get the same record id, and the second add fails. A native that reads one record
takes no lock; that the record is whole is up to the middleware.

| Native | List lock | Mutex | Handle map | At the same time |
|---|---|---|---|---|
END

awk -v mutex="$mutex" '
BEGIN {
    split("svl service tsl transport-stream nwl network satl satellite", words, " ")
    for (i = 1; i < 9; i += 2) noun[words[i]] = words[i + 1]
    for (kind in noun) gsub("-", " ", noun[kind])
    count = split(mutex, holders, "\n")
    for (i = 1; i <= count; i++) guarded["VltTvChannelList." holders[i]] = 1
}
FNR == 1 {
    end()
    native = $0
    kind = native ~ /ChannelList\./ ? "svl" : native ~ /TransportStreamList\./ ? "tsl" : native ~ /NetworkList\./ ? "nwl" : "satl"
    write = read = path = locks = most = first = temporary = 0
    split("", opens); split("", closes); uses = 0
}
/^== / { path++; locks = 0; reads = 0 }
match($0, / x_(svl|tsl|nwl|satl)_[a-z_]+\(/) {
    call = substr($0, RSTART + 3, RLENGTH - 4)
    of = call; sub(/_.*/, "", of)
    sub(/^[a-z]+_/, "", call)
    if (call == "lock") { write = 1; if (++locks > most) most = locks; if (reads && path == 1) first = 1 }
    if (call == "read_lock") read = 1
    if (call ~ /^(get_rec|qry_rec_id)$/) reads = 1
    if (call ~ /^(close|delete)$/) closes[of] = 1
    if (call ~ /^(open|create)$/) opens[of] = 1
}
/\[openTmp\]/ { temporary = 1 }
/\[getMwdbHandle\]|\[getSatHandle\]/ { uses = 1 }
END { end() }
function end(    lock, map, time, other) {
    if (native == "") return
    # Reads of all services go through a handle of their own.
    if (temporary) { delete opens["svl"]; delete closes["svl"] }
    lock = write ? "write" (most > 1 ? ", for each record" : "") (first ? "; reads first" : "") : read ? "read" : "none"
    map = closes[kind] ? "opens, closes" : opens[kind] ? "opens" : uses || write ? "looks up" : "-"
    time = closes[kind] ? "none" : opens[kind] ? "lookups, if the list is open" : uses || write ? "lookups" : "any"
    for (other in noun) if (other != kind && closes[other]) {
        map = "closes all " noun[other] " lists"
        time = "none of " noun[other] " lists, and not itself; of service lists any other"
    }
    if (native ~ /[oO]pen\(/) time = guarded[native] ? "none, except those with the mutex" : "none"
    if (guarded[native] && closes[kind]) time = "none, except those with the mutex"
    if (native ~ /nativeSetup/) time = "none: call it once, before all others"
    printf "| `%s` | %s | %s | %s | %s |\n", native, lock, guarded[native] ? "yes" : "-", map, time
}
' tests/jvm/ledger/*.txt
