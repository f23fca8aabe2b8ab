#!/usr/bin/env bash
# Installs what building and testing needs on Debian 12, and the packages named on the command line, once; says
# what it does and asks nothing.
set -euo pipefail

packages=(
    # the build
    cmake ninja-build ccache g++ g++-mingw-w64-x86-64-posix binutils-mingw-w64-x86-64 googletest
    # the checks
    clang-format clang-tidy clang libclang-rt-14-dev zlib1g-dev libz-mingw-w64-dev unzip
    # running the program on a virtual display; one font has the letters of all languages
    wine wine64 fonts-wqy-microhei libgl1-mesa-dri libglx-mesa0
    xvfb xauth openbox xdotool xclip x11-utils imagemagick
    # the end-to-end tests
    python3 python3-pytest openssl
    "$@"
)

missing=()
for package in "${packages[@]}"; do
    [ "$(dpkg-query -W -f '${db:Status-Status}' "$package" 2>/dev/null)" = installed ] || missing+=("$package")
done
[ ${#missing[@]} -eq 0 ] && exit 0

as_root=()
[ "$(id -u)" -eq 0 ] || as_root=(sudo)
echo "-- installing ${missing[*]}"
export DEBIAN_FRONTEND=noninteractive
"${as_root[@]}" apt-get update -qq
"${as_root[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
