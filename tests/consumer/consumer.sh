#!/usr/bin/env bash
# usage: consumer.sh BUILD_DIR LIBDIR CXX
#
# Installs the build into a scratch prefix, moves it elsewhere, and there builds and runs a project that knows
# nothing of this tree: with find_package and with pkg-config, against the shared libraries and the archives.
# Each program that goes by names must find the same types.
set -euo pipefail

build=$1 libdir=$2 cxx=$3
project=$(cd "$(dirname "$0")" && pwd)/project
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

quietly() {
    "$@" >"$scratch/log" 2>&1 || { cat "$scratch/log"; exit 1; }
}

# goes_by_name PROGRAM
goes_by_name() {
    "$1" | sort >"$scratch/types"
    if [[ ! -e $scratch/all-types ]]; then mv "$scratch/types" "$scratch/all-types"; return; fi
    diff "$scratch/all-types" "$scratch/types" || { echo "$1: other types than the first program"; exit 1; }
}

quietly cmake --install "$build" --prefix "$scratch/installed"
prefix=$scratch/moved
mv "$scratch/installed" "$prefix"
libraries=$prefix/$libdir

kinds=()
if [[ -e $libraries/libnetwork-topology-platform.so ]]; then kinds+=(shared); fi
if [[ -e $libraries/libnetwork-topology-platform.a ]]; then kinds+=(static); fi

for kind in "${kinds[@]}"; do
    echo "with find_package, $kind:"
    programs=$scratch/$kind
    static=OFF
    if [[ $kind == static ]]; then static=ON; fi
    quietly cmake -S "$project" -B "$programs" -G Ninja -DCMAKE_CXX_COMPILER="$cxx" \
        -DCMAKE_PREFIX_PATH="$prefix" -DNetworkTopologyAggregator_STATIC=$static
    quietly cmake --build "$programs"
    "$programs/uses-platform"
    "$programs/uses-aggregator"
    goes_by_name "$programs/goes-by-name"
    goes_by_name "$programs/goes-by-name-through-another"
done

export PKG_CONFIG_PATH=$libraries/pkgconfig
for source in platform aggregator by-name; do
    read -ra flags <<<"$(pkg-config --cflags network-topology-aggregator)"
    "$cxx" -std=c++20 -c "$project/$source.cpp" -o "$scratch/$source.o" "${flags[@]}"
done
# link PACKAGE SOURCE [OPTION...]
link() {
    local package=network-topology-$1 source=$2 flags
    shift 2
    read -ra flags <<<"$(pkg-config --libs "$package")"
    "$cxx" "$scratch/$source.o" -o "$scratch/$source" -Wl,--as-needed "$@" "${flags[@]}"
}
for kind in "${kinds[@]}"; do
    echo "with pkg-config, $kind:"
    options=()
    if [[ $kind == static ]]; then options=(-static); fi
    link platform platform "${options[@]}"
    link aggregator aggregator "${options[@]}"
    link aggregator by-name "${options[@]}"
    export LD_LIBRARY_PATH=$libraries
    "$scratch/platform"
    "$scratch/aggregator"
    goes_by_name "$scratch/by-name"
    unset LD_LIBRARY_PATH
done
echo "by names alone: $(wc -l <"$scratch/all-types") types, the same in each program"

for library in platform aggregator; do
    library=libnetwork-topology-$library.so
    if [[ -e $libraries/$library ]]; then
        (cd "$libraries" && LD_LIBRARY_PATH=. "$scratch/shared/unloads" "$library")
    fi
done

if [[ -e $prefix/bin/topology-sync ]]; then
    "$prefix/bin/topology-sync" --help >/dev/null
    echo "bin/topology-sync starts where it was moved to"
fi
