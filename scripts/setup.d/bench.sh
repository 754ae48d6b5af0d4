# shellcheck shell=bash disable=SC2154 # scripts/setup has set cache, log and scripts
# What the comparisons need: the benchmark library for the target, the headers of the peers. Sourced by
# scripts/setup.

# What the cross-compiler may see of /usr/include: the rest would hide the target's own headers.
readonly peer_headers=(rapidjson nlohmann spdlog fmt CLI cxxopts.hpp)

# Higher numbers make an older library be built again.
readonly bench_version=2

# The distribution has the library for Linux only, so it is built from the distribution's source. The flags that name
# regular expressions answer questions that cmake would ask by running programs.
build_benchmark_library() {
    local work=$1 into=$2
    private_apt "$work/apt" "$(dpkg --print-architecture)" deb-src
    (cd "$work" && limited 600 apt-get -c apt/apt.conf source benchmark) || fail
    limited 120 cmake -G Ninja -S "$(printf '%s\n' "$work"/benchmark-*/)" -B "$work/build" \
        -DCMAKE_TOOLCHAIN_FILE="$scripts/../cmake/i686-w64-mingw32.cmake" -DCMAKE_BUILD_TYPE=Release \
        -DCMAKE_INSTALL_PREFIX="$into" -DCMAKE_INSTALL_LIBDIR=lib -DGIT_VERSION=1.7.1 \
        -DBENCHMARK_ENABLE_TESTING=OFF -DBENCHMARK_ENABLE_GTEST_TESTS=OFF -DBENCHMARK_INSTALL_DOCS=OFF \
        -DHAVE_STD_REGEX=1 -DRUN_HAVE_STD_REGEX=1 -DCOMPILE_HAVE_STD_REGEX=1 -DRUN_HAVE_GNU_POSIX_REGEX=0 \
        -DRUN_HAVE_POSIX_REGEX=0 -DRUN_HAVE_STEADY_CLOCK=1 || fail
    limited 600 cmake --build "$work/build" --target install || fail
}

link_peer_headers() {
    local header
    mkdir -p "$1"
    for header in "${peer_headers[@]}"; do
        [[ -e /usr/include/$header ]] || fail
        ln -s "/usr/include/$header" "$1/"
    done
}

# The default Boost has no JSON yet, and the one that has cannot be installed beside it.
unpack_boost_headers() {
    local work=$1 into=$2
    (cd "$work" && limited 600 apt-get download libboost1.81-dev) || fail
    dpkg-deb --fsys-tarfile "$work"/libboost1.81-dev_*.deb |
        tar -x -C "$into" --strip-components=3 ./usr/include/boost || fail
}

prepare_bench() {
    local version=''
    { read -r version <"$cache/bench/version"; } 2>/dev/null || true
    [[ $version != "$bench_version" ]] || return 0
    begin 'building the benchmark library for the target' 'is the network there? Start again'
    rm -rf "$cache"/bench.{work,new}
    mkdir -p "$cache"/bench.{work,new}
    build_benchmark_library "$cache/bench.work" "$cache/bench.new"
    link_peer_headers "$cache/bench.new/peers"
    unpack_boost_headers "$cache/bench.work" "$cache/bench.new/peers"
    printf '%s\n' "$bench_version" >"$cache/bench.new/version"
    rm -rf "$cache/bench"
    mv "$cache/bench.new" "$cache/bench"
    rm -rf "$cache/bench.work"
}
