# The Debian packages that ./tavro needs, which sources this file.

missing_packages() {
    local installed
    installed=$(dpkg-query -W -f='${db:Status-Status} ${Package}\n' "$@" 2>/dev/null | sed -n 's/^installed //p') || true
    printf '%s\n' "$@" | sort -u | grep -vxF -f <(printf '%s\n' "${installed:-none}") || true
}

# Sets "as_root" to the prefix that runs a command as root. Returns 1 if there is none.
find_root() { # PURPOSE
    as_root=()
    [ "$(id -u)" != 0 ] || return 0
    command -v sudo >/dev/null || return 1
    as_root=(sudo -n)
    if sudo -n true 2>/dev/null; then return 0; fi
    [ -t 0 ] && [ -t 2 ] || return 1
    say "sudo may ask for your password to $1"
    as_root=(sudo)
    sudo -v
}

read_apt() {
    case $1 in
    *" newly installed"*)
        [[ $1 =~ ([0-9]+)\ newly ]] && total=${BASH_REMATCH[1]}
        ;;
    Get:*) [ -z "${total:-}" ] || progress="downloaded $((downloaded += 1)) of $total packages" ;;
    "Unpacking "*) progress="unpacked $((unpacked += 1)) of ${total:-?} packages" ;;
    "Setting up "*) progress="set up $((ready += 1)) of ${total:-?} packages" ;;
    "Waiting for cache lock"*)
        [ -n "${waiting:-}" ] || say "Waiting for another apt or dpkg to finish (${1#*: }) …"
        waiting=yes
        ;;
    esac
}
apt() {
    local total='' downloaded=0 unpacked=0 ready=0 waiting=''
    follow read_apt "$log" "${as_root[@]}" env LC_ALL=C.UTF-8 DEBIAN_FRONTEND=noninteractive apt-get -q \
        -o DPkg::Lock::Timeout=600 "$@"
}

# apt-get itself waits for dpkg's locks, but not for the lock of the package lists.
update_lists() {
    local end=$((SECONDS + 600)) reported=no busy
    : >"$log"
    until apt update; do
        busy=$(sed -n 's/^E: \(Could not get lock .*\)/\1/p' "$log")
        [ -n "$busy" ] && [ $SECONDS -lt $end ] || return 1
        [ $reported = yes ] || say "Waiting for another apt to finish ($busy) …"
        reported=yes
        sleep 2
        : >"$log"
    done
}

install_packages() {
    local log=$folder/setup.log try
    say "Installing Debian packages: $*"
    for try in 1 2 3; do
        # Package lists may be missing or name old versions. Go on if the update fails: the source that cannot be
        # reached may not be needed.
        update_lists || true
        ! apt -y install --no-install-recommends "$@" || return 0
        if [ $try != 3 ]; then
            say "apt failed (attempt $try of 3); trying again in $((try * 5)) s …"
            sleep $((try * 5))
        fi
    done
    tail -n 20 "$log" >&2
    return 1
}

# Installs a command's missing Debian packages. Fails without the REQUIRED ones, but not without the OPTIONAL ones.
need() { # REQUIRED [OPTIONAL] (names of arrays)
    local -n required=$1 optional=${2:-no_packages}
    local no_packages=() missing useful all as_root
    command -v apt-get >/dev/null && command -v dpkg-query >/dev/null ||
        fail "apt-get not found; ./tavro supports only Debian"
    mapfile -t missing < <(missing_packages "${required[@]}")
    mapfile -t useful < <([ ${#optional[@]} = 0 ] || missing_packages "${optional[@]}")
    all=("${missing[@]}" "${useful[@]}")
    [ ${#all[@]} -gt 0 ] || return 0
    if ! find_root "install these Debian packages: ${all[*]}"; then
        say "tavro: missing Debian packages; install them as root:"
        say "    apt-get update && apt-get install -y --no-install-recommends ${all[*]}"
        [ ${#missing[@]} = 0 ] || exit 1
        say "Tests that need them will be skipped."
        return 0
    fi
    if install_packages "${all[@]}"; then return 0; fi
    if [ ${#useful[@]} -gt 0 ]; then
        say "Installing again without the packages that only some tests need …"
        if [ ${#missing[@]} = 0 ] || install_packages "${missing[@]}"; then
            say "Tests that need ${useful[*]} will be skipped."
            return 0
        fi
    fi
    fail "could not install the packages; the log is $folder/setup.log"
}

# Downloads a Debian package and unpacks it below the build folder, for its data. Does not install it.
fetch() { # PACKAGE
    local package=$1 target=$folder/sources/$1 log=$folder/fetch.log try
    [ ! -d "$target" ] || return 0
    say "Downloading the data in Debian's $package package …"
    rm -rf "$target.part"
    mkdir -p "$target.part"
    : >"$log"
    for try in 1 2 3; do
        if (cd "$target.part" && LC_ALL=C.UTF-8 apt-get -q download "$package" </dev/null >>"$log" 2>&1); then
            if dpkg-deb -x "$target.part/$package"_*.deb "$target.part/unpacked" >>"$log" 2>&1; then
                mv "$target.part" "$target"
                return 0
            fi
            fetch_failed "could not unpack the Debian package $package. Check that the file system of $folder has" \
                "free space, and run the command again to download the package again"
        fi
        [ $try = 3 ] && break
        local as_root
        if [ $try = 1 ] && find_root "update the package lists"; then update_lists || true; else sleep $((try * 2)); fi
    done
    fetch_failed "could not download the Debian package $package. Check the network. If the package lists are out of" \
        "date, run 'apt-get update' as root"
}
fetch_failed() {
    rm -rf "$target.part"
    tail -n 20 "$log" >&2
    fail "$*. The log is $log"
}

# Prepares the 32-bit ARM packages that the ARM build uses besides this machine's own.
prepare_arm() { child "$root/cmake/armhf-root.sh" >/dev/null; }
