# shellcheck shell=bash disable=SC2154 # scripts/setup has set cache, log and scripts
# Wine in the cache folder, each with a prefix of the project's own: the 32-bit one, and one for both word sizes, which
# lies over a copy of the first. Sourced by scripts/setup. BITS is 32 or 64.

# Higher numbers make older prefixes be built again.
readonly prefix_version=2

# What each word size is called by the distribution, by its libraries' folders, and by the cross-compiler.
readonly -A debian_architecture=([32]=i386 [64]=amd64)
readonly -A multiarch=([32]=i386-linux-gnu [64]=x86_64-linux-gnu)
readonly -A target=([32]=i686-w64-mingw32 [64]=x86_64-w64-mingw32)
# What is made for it in the cache folder, and the program that runs it.
readonly -A runtime=([32]=$cache/wine [64]=$cache/wine64)
readonly -A prefix_name=([32]=prefix [64]=prefix64)
readonly -A environment_name=([32]=wine.env [64]=wine64.env)
# The loader of the programs' own word size: another starts them as children, which a kill of the loader leaves behind.
readonly -A loader=([32]=wine [64]=wine64)
readonly -A wrapper=([32]=$scripts/wine [64]=$scripts/wine64)

# zlib_for BITS: user32.dll needs this library.
zlib_for() { printf '/usr/%s/lib/zlib1.dll\n' "${target[$1]}"; }

# download_wine BITS
download_wine() {
    local apt=$cache/apt-${debian_architecture[$1]}
    begin "fetching $1-bit Wine (140 MB)" 'is the network there? Start again: what has arrived is kept'
    private_apt "$apt" "${debian_architecture[$1]}" deb
    limited 3000 apt-get -c "$apt/apt.conf" install -y --download-only --no-install-recommends "wine$1" libwine || fail
}

# unpack_wine BITS FOLDER: the archives that were fetched. The C library stays out: the loader is the system's own (for
# 32 bits that of libc6-i386), and the two must be of one build.
unpack_wine() {
    local bits=$1 root=$2 apt=$cache/apt-${debian_architecture[$1]}
    begin "unpacking it (730 MB)" "is there room in $cache?"
    find "$apt/cache/archives" -maxdepth 1 -name '*.deb' ! -name 'libc6_*' -print0 >"$apt/archives"
    # shellcheck disable=SC2016 # the inner shell's own parameters
    limited 900 xargs -0 -n 1 -a "$apt/archives" sh -c 'exec dpkg-deb -x "$1" "$0"' "$root" || fail
    # The script of this name looks for the server under /usr only.
    mv -f "$root/usr/lib/wine/wineserver$bits" "$root/usr/lib/wine/wineserver" || fail
    # user32.dll looks for it here.
    cp "$(zlib_for "$bits")" "$root/usr/lib/${multiarch[$bits]}/wine/${multiarch[$bits]/-linux-gnu/-windows}/" || fail
}

# make_runtime BITS: the 64-bit one lies over a copy of the 32-bit one, which costs no room, as they share no file.
make_runtime() {
    local bits=$1 root=${runtime[$1]}
    [[ ! -x $root/usr/lib/wine/wine ]] || return 0
    download_wine "$bits"
    rm -rf "$root.new"
    if ((bits == 64)); then
        make_runtime 32
        cp -al "${runtime[32]}" "$root.new"
    else
        mkdir "$root.new"
    fi
    unpack_wine "$bits" "$root.new"
    rm -rf "$root"
    mv "$root.new" "$root"
    rm -rf "$cache/apt-${debian_architecture[$bits]}"
}

# describe WINE WINESERVER [LIBRARIES]: the lines that scripts/wine reads.
describe() {
    printf 'wine=%q\nwineserver=%q\n' "$1" "$2"
    [[ -z ${3:-} ]] || printf 'export LD_LIBRARY_PATH=%q\n' "$3"
}

# describe_runtime BITS
describe_runtime() {
    local bits=$1 root=${runtime[$1]} libraries=''
    for ((; bits >= 32; bits -= 32)); do
        libraries+=${libraries:+:}$root/usr/lib/${multiarch[$bits]}:$root/lib/${multiarch[$bits]}
    done
    describe "$root/usr/lib/wine/${loader[$1]}" "$root/usr/lib/wine/wineserver" "$libraries"
}

# staged COMMAND...: with the cache folder that new things are made in.
staged() { XDG_CACHE_HOME=$cache/stage "$@"; }

# runs_programs BITS PREFIX_BITS: an exit status that only a program with windows, run to its end, can give.
runs_programs() {
    local probe=$cache/stage/probe.exe status=0
    "${target[$1]}-g++-posix" -x c++ -static -o "$probe" - <<<'
        #include <windows.h>
        int main() { return GetSystemMetrics(SM_CXSCREEN) > 0 ? 42 : 1; }' || return
    staged limited 60 "${wrapper[$2]}" "$probe" || status=$?
    ((status == 42))
}

# A program may write into "Documents" and the like: not into the user's own.
cut_links_to_home() {
    local link
    find "$1/drive_c/users" -type l -print0 | while IFS= read -r -d '' link; do
        rm "$link"
        mkdir "$link"
    done
}

# keep_status_of_crashes BITS: the debugger as it comes ends a crashed program with status 0, which any caller takes for
# success.
keep_status_of_crashes() {
    local key='HKLM\Software\Microsoft\Windows NT\CurrentVersion\AeDebug' view views=(32)
    (($1 == 32)) || views=(32 64)
    for view in "${views[@]}"; do
        staged limited 60 "${wrapper[$1]}" reg add "$key" /v Debugger /d 'winedbg --command detach %ld %ld' /f \
            "/reg:$view" || return
    done
}

# place_zlib BITS WINDOWS_FOLDER: the first start needs user32.dll already; without this library it hangs.
place_zlib() {
    mkdir -p "$2/system32"
    cp "$(zlib_for "$1")" "$2/system32/"
    (($1 == 64)) || return 0
    mkdir "$2/syswow64"
    cp "$(zlib_for 32)" "$2/syswow64/"
}

# make_prefix BITS DESCRIPTION: a prefix for that Wine; fails where the Wine does not run its programs.
make_prefix() {
    local bits=$1 new=$cache/stage/quillet-native-util
    staged timeout 60 "${wrapper[$bits]}" --stop >/dev/null 2>&1 || true
    rm -rf "$cache/stage"
    mkdir -p "$new"
    printf '%s\n' "$2" >"$new/${environment_name[$bits]}"
    local prefix=$new/${prefix_name[$bits]}
    place_zlib "$bits" "$prefix/drive_c/windows"
    staged limited 240 "${wrapper[$bits]}" --start && keep_status_of_crashes "$bits" || return
    runs_programs 32 "$bits" || return
    ((bits == 32)) || runs_programs 64 "$bits" || return
    staged limited 90 "${wrapper[$bits]}" --stop || return
    cut_links_to_home "$prefix"
    printf '%s\n' "$prefix_version" >"$prefix/version"
}

# install_prefix BITS
install_prefix() {
    local prefix=$cache/${prefix_name[$1]} environment=$cache/${environment_name[$1]}
    [[ ! -e $prefix ]] || timeout 60 "${wrapper[$1]}" --stop >/dev/null 2>&1 || true
    rm -rf "$prefix" "$environment"
    mv "$cache/stage/quillet-native-util/${prefix_name[$1]}" "$prefix"
    # Last: it is what says that all is there.
    mv "$cache/stage/quillet-native-util/${environment_name[$1]}" "$environment"
    rm -rf "$cache/stage"
}

# wine_is_ready BITS
wine_is_ready() (
    wine=''
    # shellcheck source=/dev/null # what describe wrote
    source "$cache/${environment_name[$1]}" 2>/dev/null && [[ -x $wine ]] &&
        read -r version <"$cache/${prefix_name[$1]}/version" && ((version == prefix_version))
) 2>/dev/null

# try_installed_wine BITS
try_installed_wine() {
    command -v "${loader[$1]}" >/dev/null && command -v wineserver >/dev/null || return
    begin "trying the Wine that is installed for $1-bit programs" ''
    make_prefix "$1" "$(describe "$(command -v "${loader[$1]}")" "$(command -v wineserver)")" && return
    say 'it does not run them; making one that does'
    return 1
}

# prepare_wine BITS
prepare_wine() {
    wine_is_ready "$1" && return
    if ! try_installed_wine "$1"; then
        make_runtime "$1"
        begin "making the prefix of $1-bit Wine (590 MB)" "remove $cache and start again"
        make_prefix "$1" "$(describe_runtime "$1")" || fail
    fi
    install_prefix "$1"
}
