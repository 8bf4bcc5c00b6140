# What ./run and ./test share. Sourced with the project's root as the working directory.

started=$SECONDS

# One line for each step.
step() { printf '\033[1m[%3ds]\033[0m %s\n' "$((SECONDS - started))" "$1"; }

fail() {
    printf '\033[1mTavero:\033[0m %s\n' "$@" >&2
    exit 1
}

# quietly LOG COMMAND…: runs it without a word; if it fails, shows the end of what it said.
quietly() {
    local log=build/logs/$1
    shift
    mkdir -p build/logs
    if ! "$@" >"$log" 2>&1 </dev/null; then
        tail -n 60 "$log" >&2
        fail "this step failed; the whole output is in $log"
    fi
}

# The packages that are not installed, of those named.
missing_packages() {
    local package
    for package; do
        [ "$(dpkg-query -W -f='${db:Status-Status}' "$package" 2>/dev/null)" = installed ] ||
            printf '%s ' "$package"
    done
}

# install PACKAGE…: installs those that are missing.
install() {
    command -v apt-get >/dev/null && command -v dpkg-query >/dev/null ||
        fail "this system has no apt-get. Tavero's scripts know Debian 12 and later and its kin;" \
            "elsewhere install what README.md lists and build with: cmake --preset release && cmake --build --preset release"
    local missing
    missing=$(missing_packages "$@")
    [ -n "$missing" ] || return 0
    local as_root=()
    if [ "$(id -u)" -ne 0 ]; then
        command -v sudo >/dev/null ||
            fail "these packages are missing: $missing" "install them as root: apt-get install $missing"
        as_root=(sudo)
    fi
    step "Installing $(wc -w <<<"$missing") packages"
    export DEBIAN_FRONTEND=noninteractive
    quietly apt-update "${as_root[@]}" apt-get update
    # shellcheck disable=SC2086 # a list of words
    quietly apt-install "${as_root[@]}" apt-get install -y --no-install-recommends $missing
    missing=$(missing_packages "$@")
    [ -z "$missing" ] || fail "these packages could not be installed: $missing" \
        "is there a network, and is this Debian 12 or later?"
}

# build PRESET [TARGET…]
build() {
    local preset=$1
    shift
    [ -f "build/$preset/build.ninja" ] || quietly "configure-$preset" cmake --preset "$preset"
    quietly "build-$preset" cmake --build --preset "$preset" ${1:+--target "$@"}
}

# sources PATTERN…: our own files with these names, each ended by a zero byte.
sources() {
    local names=() pattern
    for pattern; do names+=(-o -name "$pattern"); done
    find TaveroKit Tavero Benchmarks -name node_modules -prune -o \( "${names[@]:1}" \) -print0
}

build_packages=(g++ cmake ninja-build libicu-dev libsqlite3-dev nlohmann-json3-dev bootstrap-icons
    qt6-base-dev qt6-declarative-dev libxcb1-dev libsystemd-dev libpipewire-0.3-dev pkg-config
    python3 python3-fonttools fonts-inter
    qml6-module-qtqml qml6-module-qtqml-models qml6-module-qtqml-workerscript
    qml6-module-qtquick qml6-module-qtquick-controls qml6-module-qtquick-templates
    qml6-module-qtquick-layouts qml6-module-qtquick-window)
