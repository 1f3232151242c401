#!/usr/bin/env bash
# Runs a Java benchmark: java.sh BUILD CLASS ARGUMENT...
#
# The heap size is fixed, and the garbage collector is the tool's. LD_LIBRARY_PATH is used instead of java.library.path,
# so that the default path remains, where sqlite-jdbc's native library is.
set -euo pipefail
lib=$1/lib
shift
export LD_LIBRARY_PATH=$lib${LD_LIBRARY_PATH:+:$LD_LIBRARY_PATH}
exec java -Xms1g -Xmx1g -XX:+UseSerialGC \
    -cp "$lib/tavro-bench.jar:$lib/tavro.jar:/usr/share/java/gson.jar:/usr/share/java/sqlite-jdbc.jar" \
    com.velotra.tv.tavro.bench."$@"
