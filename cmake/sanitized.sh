#!/usr/bin/env bash
# Runs a Java command whose native libraries are built with AddressSanitizer, and fails if they have errors or leaks:
# sanitized.sh PRELOADED REPORTS COMMAND...
#
# PRELOADED: the sanitizer's runtime and the C++ library, with a colon between them. The virtual machine is not built with
# sanitizers, so they are preloaded; without the C++ library, the first C++ exception would abort.
# REPORTS: folder for the reports of the command and of its child processes.
#
# The virtual machine itself leaks, and holds memory that LeakSanitizer cannot see. So a leak counts only if one of our
# libraries allocated it, or got it from a JNI function that wants it released. deliberate-leaks.txt names those that the
# contract demands.
set -euo pipefail
preloaded=$1 reports=$2
shift 2
here=$(dirname "$(readlink -f "$0")")
rm -rf "$reports"
mkdir -p "$reports"

# handle_segv=0 leaves SIGSEGV to the virtual machine, which uses it. The sanitizers exit with 0 because a leak need not be
# ours: the reports decide. Eight frames reach the caller of a function that keeps characters; more would reach compiled Java
# code, for which the symbolizer takes seconds.
options="handle_segv=0:intercept_tls_get_addr=0:log_path=$reports/report:malloc_context_size=8"
options+=":stack_trace_format='    #%n (%m) %f %S'"
status=0
LD_PRELOAD=$preloaded ASAN_OPTIONS="$options:detect_leaks=1" LSAN_OPTIONS=exitcode=0 \
    UBSAN_OPTIONS=halt_on_error=1:print_stacktrace=1 "$@" || status=$?

found=0
for report in "$reports"/*; do
    [ -e "$report" ] || break
    "$here/leaks.awk" -v deliberate="$here/deliberate-leaks.txt" "$report" || found=1
done
[ $found = 0 ] || {
    echo "The sanitizers found something; the whole reports are in $reports."
    exit 99
}
exit $status
