# Sourced by the scripts of this folder.

# Installs the given Debian packages if they are missing. If it cannot, lists the missing ones and
# ends the script. On other systems, CMake detects what is missing.
need_packages() {
    command -v dpkg-query >/dev/null || return 0
    local package missing=()
    for package in "$@"; do
        [[ $(dpkg-query -W -f='${db:Status-Status}' "$package" 2>/dev/null) == installed ]] ||
            missing+=("$package")
    done
    ((${#missing[@]})) || return 0

    local become=()
    if ((EUID != 0)); then
        if ! command -v sudo >/dev/null; then
            echo "${0##*/}: please install these packages as root, then run this again:" >&2
            echo "  apt-get install ${missing[*]}" >&2
            exit 1
        fi
        become=(sudo)
    fi
    echo "Installing ${missing[*]}"
    local log
    log=$(mktemp)
    {
        "${become[@]}" apt-get update -qq &&
            "${become[@]}" env DEBIAN_FRONTEND=noninteractive \
                apt-get install -y -qq --no-install-recommends "${missing[@]}"
    } >"$log" 2>&1 || {
        cat "$log" >&2
        echo "${0##*/}: these packages could not be installed: ${missing[*]}" >&2
        exit 1
    }
    rm -f "$log"
}

BUILD_PACKAGES=(cmake g++ ninja-build protobuf-compiler libprotobuf-dev nlohmann-json3-dev)
