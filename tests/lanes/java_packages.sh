#!/bin/bash
# Checks imports between Java packages: a class may import from its own package and from packages that come before it in
# the order below. A package that is missing from the order is an error, too.
#
# Usage: java_packages.sh SOURCE_ROOT
set -euo pipefail
base=com.velotra.tv.tavro
order="services.channellist scripted tool.help tool.input tool.output tool.records tool.matching tool.storage tool.changes
    tool.tables tool.listing tool.decoding tool.comparing tool.satellites tool.transponders tool.services tool.exchange
    tool.importing tool.editing tool.call tool.view tool.demo tool.device tool.shell tool"

find "$1" -name '*.java' -print0 | xargs -0 awk -v base="$base." -v order="$order" '
BEGIN {
    count = split(order, packages)
    for (i = 1; i <= count; i++) rank[packages[i]] = i
}
/^package / {
    package = substr($2, length(base) + 1, length($2) - length(base) - 1)
    if (!(package in rank)) error("package " package " is not in the order in tests/lanes/java_packages.sh")
}
# The package is the name up to the first part that begins with a capital letter.
/^import / && index($0, base) {
    name = $NF
    sub(/\.[A-Z].*/, "", name)
    name = substr(name, length(base) + 1)
    imports++
    if (!(name in rank) || rank[name] > rank[package]) error(package " must not import from " name)
}
function error(text) {
    print FILENAME ":" FNR ": " text
    errors++
}
END {
    if (!imports) print "no imports found; check SOURCE_ROOT"
    exit errors > 0 || !imports
}' || exit 1
