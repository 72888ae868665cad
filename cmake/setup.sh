# Sourced by run, test and .ci/run from the project's root: installs what the build needs and this machine lacks.
# With everything in place it only looks, and needs no network.

say() { printf '==> %s\n' "$*"; }

as_root() {
    if [ "$(id -u)" -eq 0 ]; then "$@"; else sudo "$@"; fi
}

# install_packages PACKAGE…: those that are missing, by apt-get on Debian and by Homebrew on a Mac.
install_packages() {
    local missing=() package
    for package in "$@"; do
        if [ "$(uname)" = Darwin ]; then
            brew list --versions "$package" >/dev/null 2>&1 || missing+=("$package")
        else
            dpkg-query -W -f '${db:Status-Status}' "$package" 2>/dev/null | grep -qx installed || missing+=("$package")
        fi
    done
    [ ${#missing[@]} -eq 0 ] && return
    say "Installing ${missing[*]}"
    if [ "$(uname)" = Darwin ]; then
        brew install --quiet "${missing[@]}"
    else
        as_root apt-get update -qq
        as_root env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
    fi
}

# ccache, where it is installed, keeps what was compiled with precompiled headers only if their times don't count.
export CCACHE_SLOPPINESS=${CCACHE_SLOPPINESS:-pch_defines,time_macros,include_file_mtime,include_file_ctime}

install_build_packages() {
    if [ "$(uname)" = Darwin ]; then
        # Homebrew has no QCoro: cmake/QCoro.cmake fetches it.
        install_packages cmake ninja pkgconf qtbase qtsvg nlohmann-json libheif libplist
    else
        # fonts-inter: a bare system has no font at all, and text would be painted blank.
        # bootstrap-icons: what the symbols are drawn from; a Mac has symbols of its own, and Qt's SVG in its package.
        install_packages g++ cmake ninja-build pkg-config qt6-base-dev qt6-svg-dev qcoro-qt6-dev nlohmann-json3-dev libheif-dev \
            libplist-dev bootstrap-icons fonts-inter lld
    fi
}

install_test_packages() {
    if [ "$(uname)" = Darwin ]; then
        install_packages googletest font-inter shellcheck
    else
        # A display without a screen, a window manager and a status area on it, and hands for mouse and keys.
        # qt6-base-private-dev: a test says to Qt that a screen reader runs.
        # procps: a test looks for the children of a program. The last three: the Mac's packaging is read.
        install_packages libgtest-dev libgmock-dev xvfb openbox trayer xdotool qt6-base-private-dev procps file python3 python3-yaml shellcheck
    fi
}

# tell_cases_apart: on a Mac, whose disk takes "a" and "A" for one name, temporary files go to an image that doesn't, as the simulated
# Mac needs. The path is short, because those of sockets may have 103 bytes.
tell_cases_apart() {
    local probe place
    [ "$(uname)" = Darwin ] || return 0
    place=/private/tmp/quorvane-tests-$(id -u)
    probe=$(mktemp -d "${TMPDIR:-/tmp}/case.XXXXXX")
    touch "$probe/a"
    if [ -e "$probe/A" ]; then
        if ! mount | grep -qF " on $place "; then
            say "Making a volume that tells cases apart, at $place"
            hdiutil create -quiet -ov -size 8g -type SPARSE -fs 'Case-sensitive APFS' -volname quorvane-tests "$place.sparseimage"
            mkdir -p "$place"
            hdiutil attach -quiet -nobrowse -mountpoint "$place" "$place.sparseimage"
        fi
        export TMPDIR=$place
    fi
    rm -rf "$probe"
}

install_benchmark_packages() {
    if [ "$(uname)" = Darwin ]; then
        install_packages google-benchmark
    else
        # The window is measured on a display of its own, and its rest is traced.
        install_packages libbenchmark-dev xvfb xauth strace
    fi
}

# build PRESET [TARGET…]: configures once and builds what has changed; the output is shown when it fails.
build() {
    local preset=$1 folder=build/$1 log=build/$1.log
    shift
    mkdir -p build
    say "Building ($preset, log in $log)"
    if ! { { [ -f "$folder/build.ninja" ] || cmake --preset "$preset"; } &&
        cmake --build --preset "$preset" ${1:+--target "$@"}; } >"$log" 2>&1; then
        tail -n 60 "$log"
        exit 1
    fi
}
