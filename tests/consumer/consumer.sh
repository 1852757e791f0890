#!/usr/bin/env bash
# usage: consumer.sh BUILD_DIR LIBDIR CXX
#
# Installs the build into a scratch prefix, moves it elsewhere, and there builds and runs a project that knows
# nothing of this tree: with find_package, and with pkg-config.
set -euo pipefail

build=$1 libdir=$2 cxx=$3
project=$(cd "$(dirname "$0")" && pwd)/project
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

cmake --install "$build" --prefix "$scratch/installed" >"$scratch/log" || { cat "$scratch/log"; exit 1; }
prefix=$scratch/moved
mv "$scratch/installed" "$prefix"

components=(platform aggregator)

echo "with find_package:"
{
    cmake -S "$project" -B "$scratch/build" -G Ninja -DCMAKE_CXX_COMPILER="$cxx" -DCMAKE_PREFIX_PATH="$prefix" \
        -DCOMPONENTS="$(IFS=';'; echo "${components[*]}")" &&
    cmake --build "$scratch/build"
} >"$scratch/log" || { cat "$scratch/log"; exit 1; }
for component in "${components[@]}"; do
    "$scratch/build/uses-$component"
done
"$scratch/build/goes-by-name"

echo "with pkg-config:"
export PKG_CONFIG_PATH=$prefix/$libdir/pkgconfig
for component in "${components[@]}"; do
    read -ra flags <<<"$(pkg-config --cflags --libs "network-topology-$component")"
    "$cxx" -std=c++20 "$project/$component.cpp" -o "$scratch/$component" "${flags[@]}"
    LD_LIBRARY_PATH=$prefix/$libdir "$scratch/$component"
done
"$cxx" -std=c++20 "$project/by-name.cpp" -o "$scratch/by-name" -Wl,--no-as-needed "${flags[@]}"
LD_LIBRARY_PATH=$prefix/$libdir "$scratch/by-name"

for component in "${components[@]}"; do
    library=$prefix/$libdir/libnetwork-topology-$component.so
    if [[ -e $library ]]; then
        (cd "$prefix/$libdir" && LD_LIBRARY_PATH=. "$scratch/build/unloads" "$(basename "$library")")
    fi
done

if [[ -e $prefix/bin/topology-sync ]]; then
    "$prefix/bin/topology-sync" --help >/dev/null
    echo "bin/topology-sync starts where it was moved to"
fi
