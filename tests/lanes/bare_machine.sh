#!/usr/bin/env bash
# Runs the README's two commands on a bare Debian machine: bare_machine.sh [root|user]
#
#   root   as root: ./tavro demo, then ./tavro test --quick
#   user   as a user without sudo: each command first fails and prints one line; after root has run that line,
#          the command passes
#
# Without an argument, runs both. Each part gets a new root directory with a minimal Debian of this machine's release, git
# and CA certificates, and a clone of HEAD. The base system and the downloaded packages are cached below
# ${XDG_CACHE_HOME:-~/.cache}/tavro. Exits with 77 (skipped) if not run as root or not on Debian. Every other problem is a
# failure.
set -euo pipefail

skip() {
    printf 'skipped: %s\n' "$*"
    exit 77
}
log=
fail() {
    printf 'FAILED: %s\n' "$*"
    if [ -s "$log" ]; then
        echo "The last lines of output:"
        tail -n 60 "$log" | sed 's/^/    /'
    fi
    exit 1
}

parts=("$@")
[ $# -gt 0 ] || parts=(root user)
for part in "${parts[@]}"; do
    [ "$part" = root ] || [ "$part" = user ] || {
        echo "bare_machine.sh: unknown argument '$part': use root or user" >&2
        exit 2
    }
done

if [ "${TAVRO_BARE_NAMESPACE:-}" != yes ]; then
    [ "$(id -u)" = 0 ] || skip "only root can create a bare machine; this is user '$(id -un)'"
    [ "$(. /etc/os-release && printf '%s' "${ID:-}")" = debian ] || skip "this is not a Debian machine"
    # In its own namespaces, all mounts and processes end with this script, even if it is killed.
    namespace=(unshare --mount --pid --fork --kill-child)
    reason=$("${namespace[@]}" true 2>&1) ||
        fail "cannot create a mount namespace: '${namespace[*]}' failed: $reason; allow it, for example with CAP_SYS_ADMIN"
    export TAVRO_BARE_NAMESPACE=yes
    exec "${namespace[@]}" bash "$0" "$@"
fi

checkout=$(git -C "$(dirname "$(readlink -f "$0")")" rev-parse --show-toplevel)
suite=$(. /etc/os-release && printf '%s' "$VERSION_CODENAME")
recipe=1 # increase when the base changes
cache=${XDG_CACHE_HOME:-$HOME/.cache}/tavro
base=$cache/bare-$suite-$recipe.tar
packages=$cache/bare-packages-$suite
work=$cache/bare-work
log=$work/log
mkdir -p "$cache" "$packages/partial"

# One run at a time, because runs share the folders above.
exec 9>"$cache/bare.lock"
flock -n 9 || {
    echo "Waiting for another run of the bare machine to finish …"
    flock 9
}

clean() {
    mount -t proc proc /proc 2>/dev/null || true # for this namespace's list of mounts
    local point
    awk -v work="$work/" 'index($2, work) == 1 {print $2}' /proc/self/mounts | tac | while read -r point; do
        umount "$point" || umount --lazy "$point"
    done
    ! grep -q " $work/" /proc/self/mounts || { echo "mounts remain below $work" >&2; return 1; }
    rm -rf --one-file-system "$work"
}
trap clean EXIT
trap 'exit 130' INT
trap 'exit 143' TERM
clean
mkdir -p "$work"

# step TEXT COMMAND...: runs a command with its output in the log, and prints how long it took.
step() {
    local text=$1 start=$SECONDS status=0
    shift
    printf '%-66s ' "$text …"
    "$@" >"$log" 2>&1 </dev/null || status=$?
    printf '%4d s%s\n' $((SECONDS - start)) "$([ $status = 0 ] || echo "  exit $status")"
    return $status
}

update_lists() { step "Updating this machine's package lists" apt-get -qq -o DPkg::Lock::Timeout=600 update; }

# Prints this machine's Debian sources as "URI RELEASE COMPONENT", without other vendors' sources.
debian_sources() {
    apt-get indextargets --format '$(ORIGIN) $(REPO_URI) $(RELEASE) $(COMPONENT)' 'Created-By: Packages' |
        awk '$1 == "Debian" {print $2, $3, $4}' | sort -u
}
sources=$(debian_sources)
if [ -z "$sources" ]; then
    update_lists || true # the reachable sources may be enough
    sources=$(debian_sources)
fi
mirror=$(awk -v suite="$suite" '$2 == suite && $3 == "main" {print $1; exit}' <<<"$sources")
[ -n "$mirror" ] || fail "this machine's apt has no source for Debian $suite main; add one to /etc/apt"

install_debootstrap() {
    step "Installing debootstrap" apt-get -qq -y -o DPkg::Lock::Timeout=600 install --no-install-recommends debootstrap
}
make_base() {
    local part=$work/base
    # One chain of &&, because errexit is off in a function whose status is tested.
    debootstrap --variant=minbase --include=ca-certificates,git "$suite" "$part" "$mirror" &&
        rm -rf "$part"/var/cache/apt/archives/*.deb "$part"/var/lib/apt/lists/* &&
        tar -C "$part" --numeric-owner -cf "$base.part" . &&
        mv "$base.part" "$base" &&
        rm -rf --one-file-system "$part"
}

# Creates a bare machine in $root with a clone of HEAD in $home/tavro, owned by OWNER.
fresh_root() { # OWNER
    mkdir -p "$root"
    tar -C "$root" --numeric-owner -xpf "$base"
    sed 's/^/deb /' <<<"$sources" >"$root/etc/apt/sources.list"
    # Use this machine's network settings, such as a proxy.
    apt-config dump | grep -E '^Acquire::(https?|ftp|Retries|Check-|ForceIPv|Languages|AllowInsecure)' \
        >"$root/etc/apt/apt.conf.d/50machine" || true
    cp -L /etc/resolv.conf "$root/etc/resolv.conf"
    if compgen -G '/usr/local/share/ca-certificates/*.crt' >/dev/null; then
        cp /usr/local/share/ca-certificates/*.crt "$root/usr/local/share/ca-certificates/"
        chroot "$root" update-ca-certificates
    fi
    mount -t proc proc "$root/proc"
    mount --bind "$packages" "$root/var/cache/apt/archives"
    [ "$1" = root ] || chroot "$root" useradd --create-home "$1"
    git clone --quiet "$checkout" "$root$home/tavro"
    git -C "$root$home/tavro" checkout --quiet --detach "$commit"
    chroot "$root" chown -R "$1": "$home/tavro"
}
drop_root() {
    umount "$root/var/cache/apt/archives" "$root/proc"
    rm -rf --one-file-system "$root"
}

# there USER COMMAND...: runs a command in the clone on the bare machine, with a clean environment.
there() {
    local user=$1
    shift
    env -i HOME="$home" PATH=/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin LANG=C.UTF-8 TERM=dumb \
        chroot --userspec="$user" "$root" bash -c 'cd ~/tavro && exec "$@"' bash "$@"
}

as_root() {
    root=$work/root home=/root
    step "Unpacking a bare $suite" fresh_root root || fail "cannot unpack the bare machine"
    step "as root: ./tavro demo" there root ./tavro demo || fail "./tavro demo as root"
    grep -q 'All .* checks passed' "$log" || fail "./tavro demo as root ran no checks"
    step "as root: ./tavro test --quick" there root ./tavro test --quick || fail "./tavro test --quick as root"
    grep -q '100% tests passed' "$log" || fail "./tavro test --quick as root ran no tests"
    step "Removing it" drop_root
}

# Runs a command that must fail, print one line for root, and pass after root has run that line.
two_attempts() { # COMMAND...
    local status=0 line
    step "as a user: $*, packages missing" there user "$@" || status=$?
    line=$(grep -E '^ *apt-get update && apt-get install' "$log" || true)
    [ "$status" = 1 ] || fail "$* without packages: exit code $status, not 1"
    [ "$(grep -c . <<<"$line")" = 1 ] || fail "$* without packages did not print exactly one line for root"
    step "as root: the printed line" there root bash -c "$line" || fail "$line"
    step "as a user: $*" there user "$@" || fail "$* as a user, after root has run the line"
}

as_user() {
    root=$work/user home=/home/user
    step "Unpacking a bare $suite" fresh_root user || fail "cannot unpack the bare machine"
    two_attempts ./tavro demo
    grep -q 'All .* checks passed' "$log" || fail "./tavro demo as a user ran no checks"
    two_attempts ./tavro test --quick
    grep -q '100% tests passed' "$log" || fail "./tavro test --quick as a user ran no tests"
    step "Removing it" drop_root
}

commit=$(git -C "$checkout" rev-parse HEAD)
printf 'Bare machine: Debian %s, commit %s\n' "$suite" "$(git -C "$checkout" log -1 --format='%h %s' | cut -c 1-60)"
[ -z "$(git -C "$checkout" status --porcelain)" ] || echo "Uncommitted changes are not tested."
if [ ! -f "$base" ]; then
    if ! command -v debootstrap >/dev/null && ! install_debootstrap; then
        update_lists || true # old lists may name versions that are no longer on the mirror
        install_debootstrap || fail "cannot install debootstrap"
    fi
    step "Creating a bare $suite" make_base || fail "debootstrap failed"
fi
for part in "${parts[@]}"; do
    "as_$part"
done
printf 'The bare machine passed in %d s\n' "$SECONDS"
