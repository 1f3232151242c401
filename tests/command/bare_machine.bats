# The bare-machine lane: when it is skipped, when it fails, and how it gets debootstrap. All programs that would mount or
# install something are fakes.
load support

# bare STATUS WORD...: runs the lane in its own repository.
bare() {
    local expected=$1
    shift
    run --separate-stderr env XDG_CACHE_HOME="$area/cache" bash "$clone/tests/lanes/bare_machine.sh" "$@"
    [ "$status" = "$expected" ] || show "exit code $status, not $expected: bare_machine.sh $*"
}

# Simulates a Debian machine on which debootstrap fails, so that the lane stops there.
machine() {
    grep -qx 'ID=debian' /etc/os-release || skip "this is not a Debian machine"
    cp "$top/tests/lanes/bare_machine.sh" "$clone/tests/lanes"
    git -C "$clone" init --quiet
    git -C "$clone" -c user.name=test -c user.email=test@localhost commit --quiet --allow-empty -m nothing
    fake unshare <<<'while [[ $1 = --* ]]; do shift; done; exec "$@"'
    for program in mount umount chroot useradd; do fake $program <<<'exit 0'; done
    fake debootstrap <<<'mkdir -p "$4"; echo "E: broken base"; exit 1'
    echo "Debian http://localhost/debian $(. /etc/os-release && echo "$VERSION_CODENAME") main" >"$area/source"
    fake_apt
}
fake_apt() {
    fake apt-get <<'END_OF_APT'
case " $* " in
*" indextargets "*) cat "${FAKE_CALLS%/*}/source" ;;
*" install "*)
    grep -q '^apt-get .*update' "$FAKE_CALLS" || { echo 'E: Unable to locate package debootstrap'; exit 100; }
    mv "${FAKE_CALLS%/*}/debootstrap" "${FAKE_CALLS%/*}/bin" 2>/dev/null || exit 100
    ;;
esac
END_OF_APT
}

@test "an argument other than root and user is wrong usage" {
    machine
    bare 2 nonsense
    says "bare_machine.sh: unknown argument 'nonsense': use root or user"
    bare 2 root nonsense
    nothing_ran
}
nothing_ran() { not_called '^(unshare|apt-get|mount|chroot|debootstrap)'; }

@test "without root the lane is skipped" {
    machine
    as_user
    bare 77
    prints "skipped: only root can create a bare machine; this is user 'user'"
    nothing_ran
}

@test "without a mount namespace the lane fails" {
    machine
    fake unshare <<<'echo "unshare failed: Operation not permitted" >&2; exit 1'
    bare 1
    prints "FAILED: cannot create a mount namespace"
    prints "unshare failed: Operation not permitted"
    not_called '^apt-get'
}

@test "without a Debian source the lane updates the package lists, and then fails" {
    machine
    : >"$area/source"
    bare 1
    called '^apt-get .*update'
    prints "FAILED: this machine's apt has no source for Debian"
    not_called 'install'
}

@test "empty package lists are updated" {
    machine
    fake apt-get <<'END_OF_APT'
case " $* " in
*" update "*) : >"${FAKE_CALLS%/*}/updated" ;;
*" indextargets "*) [ ! -e "${FAKE_CALLS%/*}/updated" ] || cat "${FAKE_CALLS%/*}/source" ;;
esac
END_OF_APT
    bare 1
    prints "Creating a bare "
}

@test "debootstrap is installed after an update if old package lists lack it" {
    machine
    mv "$bin/debootstrap" "$area/debootstrap"
    bare 1 root
    [ "$(sed -n 's/^apt-get .*\(update\|install\).*/\1/p' "$FAKE_CALLS" | tr '\n' ' ')" = "install update install " ] ||
        show "not install, update, install"
    prints "Creating a bare "
}

@test "the lane fails if debootstrap cannot be installed" {
    machine
    rm "$bin/debootstrap"
    bare 1
    [ "$(grep -c '^apt-get .*install' "$FAKE_CALLS")" = 2 ] || show "not two attempts"
    prints "FAILED: cannot install debootstrap"
}

@test "a failed debootstrap leaves no base" {
    machine
    bare 1
    prints "FAILED: debootstrap failed"
    prints "E: broken base"
    [ -z "$(find "$area/cache" -name '*.tar*')" ] || show "a base was kept"
    not_called '^chroot'
}
