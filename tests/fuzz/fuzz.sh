#!/usr/bin/env bash
# Runs one fuzz target: fuzz.sh TARGET CORPUS [OPTION...]. New inputs go to the folder CORPUS. The options are
# libFuzzer's; the target "importers", in Java, takes the same ones. If files are among them, only these are run.
set -euo pipefail
root=$(dirname "$(readlink -f "$0")")/../..
root=$(readlink -f "$root")
target=$1 corpus=$2
shift 2

# Inputs are not longer than what a target reads.
case $target in
identifier) longest=64 ;;
list_file) longest=2000 ;;
natives | natives_scripted | to_java) longest=700 ;;
to_record) longest=1500 ;;
*) longest=3000 ;;
esac
crashes=$root/build/fuzz/crashes
mkdir -p "$corpus" "$crashes"
# Storage directories and files of the targets are in memory.
scratch=$(mktemp -d /dev/shm/fuzz-XXXXXX 2>/dev/null || mktemp -d)
trap 'rm -rf "$scratch"' EXIT
export TMPDIR=$scratch TAVRO_LOG_FILE=/dev/null TAVRO_HOME=$scratch/home
unset TAVRO_PROPERTIES "${!TAVRO_PROP_@}"

if [ "$target" = importers ]; then
    lib=$root/build/host/lib
    program=(java -Xmx256m -XX:+UseSerialGC "-Djava.library.path=$lib"
        -cp "$lib/tavro-tests.jar:$lib/tavro.jar" com.velotra.tv.tavro.tool.importing.ImportFuzzer)
else
    # Deliberate: small limits of memory and time. No input may need more.
    program=("$root/build/fuzz/bin/fuzz_$target" -rss_limit_mb=1024 -malloc_limit_mb=256 -timeout=20
        -print_final_stats=1 -verbosity=1)
fi

places=("$corpus" "$root/tests/fuzz/corpus/$target")
for option in "$@"; do
    [[ $option = -* ]] || places=()
done
[ -d "$root/tests/fuzz/corpus/$target" ] || places=("${places[@]:0:1}")
status=0
setpriv --pdeathsig TERM "${program[@]}" "-max_len=$longest" "-artifact_prefix=$crashes/$target-" "$@" "${places[@]}" 2>&1 |
    tee "$scratch/output" || status=$?
if [ $status != 0 ]; then
    input=$(sed -n 's/^.*Test unit written to //p' "$scratch/output" | tail -n 1)
    echo
    echo "The target $target failed.${input:+ To run the input that it failed on again:}"
    [ -z "$input" ] || echo "    ./tavro fuzz $target -- $(realpath --relative-to="$root" "$input")"
    exit 1
fi
