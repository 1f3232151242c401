#!/usr/bin/env bash
# Writes the library's log tags and the formats of its log lines, from its sources. ./tavro device log finds the lines
# with it: log-lines.sh >java/src/main/resources/com/velotra/tv/tavro/tool/device/log-lines.txt
set -euo pipefail
cd "$(dirname "$(readlink -f "$0")")/../.."
text='"([^"\\]|\\.)*"'

# On one line, with adjacent literals joined.
code=$(cat jni/*.cpp jni/*/*.{cpp,h} channellist/*.{cpp,h} | sed 's, *//.*,,' | tr '\n' ' ' | sed -E 's/([^\\]") +"/\1"/g; s/""//g')

# formats START: the first literal of each call that begins so, without blanks and line feeds at its end.
formats() { grep -oE "$1$text" <<<"$code" | sed -E 's,^[^"]*"(.*)"$,\1,; s,( |\\n)+$,,' | sort -u; }

grep -oE "k(Load)?Tag\[\] = $text" <<<"$code" | sed -E 's/.*"(.*)"/tag \1/' | sort -u
{
    formats 'TAVRO_LOG_(DEBUG|ERROR)\((kLoad|\w+::k|k)Tag, '
    formats '__android_log_print\(kErrorPriority, kLoadTag, '
} | sort -u | sed 's/^/tagged /'
prefix=$(sed -nE 's/^#define TAVRO_JNI_PREFIX "(.*)"$/\1/p' jni/env/jni_log.h)
{
    formats 'TAVRO_LOG_(DEBUG|ERROR)\((tavro::)?kNoTag, ' | grep -vx '%s'
    formats 'TAVRO_LOG_JNI\(' | while IFS= read -r format; do printf '%s%s\n' "$prefix" "$format"; done
    grep -oE '"Failed to register [^"]*"' <<<"$code" | tr -d '"' # the one line whose format is "%s"
} | sort -u | sed 's/^/untagged /'
