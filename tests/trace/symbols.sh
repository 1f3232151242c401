#!/usr/bin/env bash
# Checks that the tracer defines the platform's functions, the agent's, and no others: symbols.sh TRACER LIST. LIST names
# the platform's functions, one per line.
set -euo pipefail
diff <({ cat "$2"; printf '%s\n' Agent_OnAttach Agent_OnLoad; } | LC_ALL=C sort) \
    <(nm -D --defined-only "$1" | awk '{ print $3 }' | LC_ALL=C sort)
