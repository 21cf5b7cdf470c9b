#!/usr/bin/env bash
# Installs what is missing of the Debian packages that the project needs: tools/packages.sh [ci|bench]
# If none is missing it takes a few milliseconds and says nothing. `ci` adds the checkers of style, `bench` what ./bench
# compares with and draws with.
set -euo pipefail

packages=(
    # Compiler and build
    g++ cmake ninja-build pkg-config dpkg-dev file
    # The module: EGL, GLES, label text, timestamps
    libegl-dev libgles-dev libxcb1-dev libfreetype-dev libavfilter-dev libavutil-dev fonts-dejavu-core
    # A driver for EGL: Mesa, also on machines without a graphics card
    libegl1 libegl-mesa0 libgles2 libgl1-mesa-dri
    # zetplay
    libsdl2-dev libx11-dev libxext-dev libavformat-dev libavcodec-dev libswscale-dev libpng-dev libcli11-dev nlohmann-json3-dev
    # Tests and benchmarks
    weston libwayland-dev libgtest-dev libgmock-dev libbenchmark-dev ffmpeg xdotool
    # An X display for the tests, and how to ask for one
    xvfb x11-utils
)
[ "${1-}" = ci ] && packages+=(qtbase5-dev clang libclang-rt-14-dev clang-format clang-tidy shellcheck doxygen lintian git)
[ "${1-}" = bench ] && packages+=(mpv gnuplot-nox git)

if ! command -v dpkg-query >/dev/null; then
    echo "tools/packages.sh: this is no Debian; taking it that these are there: ${packages[*]}" >&2
    exit 0
fi

installed=$(dpkg-query -W -f '${Package} ${db:Status-Status}\n' "${packages[@]}" 2>/dev/null || true)
missing=()
for package in "${packages[@]}"; do
    grep -qxF "$package installed" <<<"$installed" || missing+=("$package")
done
[ ${#missing[@]} -eq 0 ] && exit 0

asroot=()
if [ "$(id -u)" -ne 0 ]; then
    if ! command -v sudo >/dev/null; then
        echo "tools/packages.sh: neither root nor sudo; these packages are missing: ${missing[*]}" >&2
        exit 1
    fi
    asroot=(sudo)
fi

echo "Installing ${missing[*]}" >&2
log=$(mktemp)
trap 'rm -f "$log"' EXIT
# Another apt may be at work: wait for its lock.
aptget() {
    "${asroot[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -y -q -o DPkg::Lock::Timeout=300 "$@" >"$log" 2>&1 </dev/null
}
if ! { aptget update && aptget install --no-install-recommends "${missing[@]}"; }; then
    cat "$log" >&2
    exit 1
fi
