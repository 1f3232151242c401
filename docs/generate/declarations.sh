#!/usr/bin/env bash
# Checks that the document and the Java classes declare the same natives, with the same parameter names:
# declarations.sh DOCUMENT FOLDER
set -euo pipefail
documented=$(sed -n 's/^| `\([^`]* native[^`]*([^`]*)\)` |.*/\1/p' "$1" | sort)
declared=$(sed -n 's/^ *\(public \|private \|protected \)\?\(static \)\?\(final \)\?native \(.*\);$/\4/p' "$2"/VltTv*List.java |
    sed 's/<[^<>]*>//g' | sort)
count=$(grep -c . <<<"$declared" || true)
if [ "$count" != 72 ]; then
    echo "$count natives found in $2, not 72: is that the folder of the list classes?"
    exit 1
fi
diff <(echo "$documented") <(echo "$declared") || {
    echo "$1 (<) and the classes in $2 (>) declare different natives; the names come from docs/generate/natives.h"
    exit 1
}
echo "$count natives are declared alike"
