# shellcheck shell=bash disable=SC2154 # scripts/setup has set cache, log and scripts
# The packages of the system, and ways to fetch others beside it. Sourced by scripts/setup.
missing_packages() {
    local installed package
    installed=$(dpkg-query --show --showformat='${db:Status-Status} ${Package}\n' "$@" 2>/dev/null || true)
    for package; do
        grep -qxF "installed $package" <<<"$installed" || printf '%s\n' "$package"
    done
}

install_packages() {
    local missing sudo=()
    mapfile -t missing < <(missing_packages "$@")
    ((${#missing[@]})) || return 0
    if ((EUID != 0)); then
        begin 'asking for the right to install packages' "as root: apt-get install ${missing[*]}"
        # Asked for here, where it may prompt; not in the background, where a time limit puts it.
        sudo -v || fail
        sudo=(sudo)
    fi
    local apt_get=("${sudo[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -o DPkg::Lock::Timeout=300)
    begin 'fetching the lists of packages' ''
    # Some lists may fail: what counts is whether the packages can be had.
    limited 600 "${apt_get[@]}" update || say 'not all of them came; going on with what is there'
    begin "installing ${missing[*]}" "try it by hand, as root: apt-get install ${missing[*]}"
    limited 1800 "${apt_get[@]}" install -y --no-install-recommends "${missing[@]}" || fail
}

# private_apt FOLDER ARCHITECTURE TYPE: an apt.conf that keeps the user's sources and proxies but writes to FOLDER
# alone. TYPE is deb or deb-src.
private_apt() {
    local folder=$1 architecture=$2 type=$3 file
    mkdir -p "$folder"/{state/lists/partial,cache/archives/partial,sources,empty}
    : >"$folder/status"
    for file in /etc/apt/sources.list /etc/apt/sources.list.d/*.{list,sources}; do
        [[ -s $file ]] && sed -E "s/^(Types:[[:space:]]*).*/\1$type/; s/^deb(-src)?([[:space:]])/$type\2/" \
            "$file" >"$folder/sources/${file##*/}"
    done
    cat >"$folder/apt.conf" <<CONF
#clear APT::Update::Post-Invoke;
#clear APT::Update::Post-Invoke-Success;
#clear APT::Architectures;
APT::Architecture "$architecture";
APT::Architectures { "$architecture"; };
APT::Sandbox::User "";
Acquire::Languages "none";
Acquire::Retries "3";
Dir::State "$folder/state";
Dir::State::status "$folder/status";
Dir::Cache "$folder/cache";
Dir::Etc::sourcelist "/dev/null";
Dir::Etc::sourceparts "$folder/sources";
Dir::Etc::preferences "/dev/null";
Dir::Etc::preferencesparts "$folder/empty";
CONF
    # As above; the security archive's list for i386, for one, is not always there.
    limited 600 apt-get -c "$folder/apt.conf" update || true
}
