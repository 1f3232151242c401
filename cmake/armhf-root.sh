#!/usr/bin/env bash
# Prepares a folder with the 32-bit ARM Debian packages that the ARM build needs: a Java virtual machine, the C and C++
# libraries, and SQLite. Prints the folder to standard output and progress to standard error. Exits with 3 if it cannot
# get the packages.
#
# A private apt, with its own settings, lists and cache, downloads the packages once from the mirror of this machine's
# apt. They are only unpacked: nothing is installed, and the machine's apt configuration does not change. The folder is
# below ${XDG_CACHE_HOME:-~/.cache}/tavro and can be removed at any time.
set -euo pipefail

packages=(openjdk-17-jre-headless libc6 libgcc-s1 libsqlite3-dev libstdc++6)
recipe=2 # increase when the prepared content changes

say() { printf 'armhf: %s\n' "$*" >&2; }
cannot() {
    say "$*"
    exit 3
}

here=$(dirname "$(readlink -f "$0")")
compiler=arm-linux-gnueabihf-gcc
command -v "$compiler" >/dev/null || cannot "$compiler not found; install g++-arm-linux-gnueabihf"

suite=$(. /etc/os-release && printf '%s' "${VERSION_CODENAME:-}")
cache=${XDG_CACHE_HOME:-$HOME/.cache}/tavro
root=$cache/armhf-$suite-$recipe
jvm=usr/lib/jvm/java-17-openjdk-armhf

mkdir -p "$cache"
exec 9>"$cache/armhf.lock"
flock -n 9 || { say "waiting for another process that prepares the packages …"; flock 9; }
if [ -d "$root" ]; then
    printf '%s\n' "$root"
    exit 0
fi

mirror=$(apt-get indextargets --no-release-info --format '$(RELEASE) $(COMPONENT) $(REPO_URI)' 'Created-By: Packages' |
    awk -v suite="$suite" '$1 == suite && $2 == "main" {print $3; exit}')
[ -n "$mirror" ] || cannot "this machine's apt has no source for ${suite:-its release} main; add one to /etc/apt"
keys=/usr/share/keyrings/debian-archive-keyring.gpg
[ -r "$keys" ] || cannot "$keys not found; install debian-archive-keyring"

part=$root.part
rm -rf "$part"
mkdir -p "$part"/apt/{etc/sources.d,etc/apt.conf.d,etc/preferences.d,lists/partial,cache/archives/partial} "$part/root"
: >"$part/apt/status"
printf 'deb [signed-by=%s] %s %s main\n' "$keys" "$mirror" "$suite" >"$part/apt/etc/sources.list"
# Use this machine's network settings, such as a proxy.
apt-config dump | grep -E '^Acquire::https?::' >"$part/apt/apt.conf" || true
cat >>"$part/apt/apt.conf" <<SETTINGS
APT::Architecture "armhf";
APT::Architectures { "armhf"; };
APT::Install-Recommends "false";
APT::Update::Error-Mode "any";
APT::Sandbox::User "$(id -un)";
Acquire::Languages "none";
Acquire::Retries "3";
Dir::Etc::main "$part/apt/apt.conf";
Dir::Etc::parts "$part/apt/etc/apt.conf.d";
Dir::Etc::sourcelist "$part/apt/etc/sources.list";
Dir::Etc::sourceparts "$part/apt/etc/sources.d";
Dir::Etc::preferences "$part/apt/etc/preferences";
Dir::Etc::preferencesparts "$part/apt/etc/preferences.d";
Dir::State "$part/apt";
Dir::State::status "$part/apt/status";
Dir::State::lists "$part/apt/lists";
Dir::Cache "$part/apt/cache";
SETTINGS

private_apt() { APT_CONFIG=$part/apt/apt.conf apt-get -qq "$@"; }
fetched=
for try in 1 2 3; do
    say "downloading ${packages[*]} for 32-bit ARM (about 60 MB, once; attempt $try of 3) …"
    # Update the lists each time: old lists may name versions that are no longer on the mirror.
    if private_apt update >"$part/log" 2>&1 &&
        private_apt -y --download-only install "${packages[@]}" >>"$part/log" 2>&1; then
        fetched=yes
        break
    fi
done
if [ -z "$fetched" ]; then
    tail -n 5 "$part/log" >&2
    cannot "cannot download the packages; the full log is $part/log"
fi

archives=("$part"/apt/cache/archives/*.deb)
say "unpacking ${#archives[@]} packages ($(du -shc "${archives[@]}" | awk 'END {print $1}')) …"
for archive in "${archives[@]}"; do
    dpkg-deb -x "$archive" "$part/root"
done

# "java" becomes a script that starts the virtual machine under the emulator, also for child processes of Java. The
# memory settings keep it within a 32-bit address space. VFORK avoids jspawnhelper, an ARM program that the kernel cannot
# start. Most runs are short and finish sooner without the JIT compiler under an emulator; long ones pass -Xmixed.
mv "$part/root/$jvm/bin/java" "$part/root/$jvm/bin/java.armhf"
cat >"$part/root/$jvm/bin/java" <<'SCRIPT'
#!/bin/sh
bin=$(dirname "$(readlink -f "$0")")
exec qemu-arm -L "${bin%/usr/lib/jvm/*}" "$bin/java.armhf" -Xmx128m -Xss512k -XX:+UseSerialGC -XX:-UsePerfData \
    -Xint -Djdk.lang.Process.launchMechanism=VFORK "$@"
SCRIPT
chmod +x "$part/root/$jvm/bin/java"

"$compiler" -O2 -fno-strict-aliasing -D_GNU_SOURCE -Wall -Wextra -Werror -shared -fPIC \
    -o "$part/root/usr/lib/tavro_readdir.so" "$here/armhf_readdir.c"
echo /usr/lib/tavro_readdir.so >"$part/root/etc/ld.so.preload"

mv "$part/root" "$root"
rm -rf "$part"
say "prepared $root ($(du -sh "$root" | cut -f1))"
printf '%s\n' "$root"
