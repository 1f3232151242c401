#!/usr/bin/env bash
# Runs a benchmark in Java: java.sh BUILD CLASS ARGUMENT...
#
# The heap is of a fixed size, and the collector the one that the tool runs with. The library path is the machine's own
# with the build's in front, because sqlite-jdbc's native library is in it.
set -euo pipefail
lib=$1/lib
shift
export LD_LIBRARY_PATH=$lib${LD_LIBRARY_PATH:+:$LD_LIBRARY_PATH}
exec java -Xms1g -Xmx1g -XX:+UseSerialGC \
    -cp "$lib/tavro-bench.jar:$lib/tavro.jar:/usr/share/java/gson.jar:/usr/share/java/sqlite-jdbc.jar" \
    com.velotra.tv.tavro.bench."$@"
