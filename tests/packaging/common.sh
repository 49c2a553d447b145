# SPDX-License-Identifier: MIT
# shellcheck shell=bash
# What the scripts of this folder share; sourced by them.
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)

fail() { # SENTENCE
    echo "FAILED: $1" >&2
    exit 1
}

need_commands() { # COMMAND...
    local command
    for command in "$@"; do
        command -v "$command" >/dev/null || fail "$command is missing: scripts/install-packages test"
    done
}

# A temporary folder, readable for everybody, in $work; it goes when the script ends.
make_work_folder() {
    work=$(mktemp -d)
    trap 'rm -rf -- "$work"' EXIT
    chmod 755 "$work"
}

# Every file below the folder, as installed-files lists them.
list_files() { # FOLDER
    find "$1" ! -type d \( -type l -printf 'link %P -> %l\n' -o -printf '%m %P\n' \) | LC_ALL=C sort -k 2
}

# Exactly the expected files with their permissions, and folders that everybody can enter.
check_files() { # PREFIX
    diff -u --label expected --label installed "$here/installed-files" <(list_files "$1") >&2 ||
        fail "other files are installed than tests/packaging/installed-files lists"
    local closed
    closed=$(find "$1" -type d ! -perm 755)
    [ -z "$closed" ] || fail "folders with other permissions than 755: $closed"
}

# The binaries name no folder of the machine on which they were built.
check_binaries() { # PREFIX BUILD_FOLDER
    local binary dynamic
    for binary in draxel draxelctl plugins/pl_overview.so canbus/simulatedcanbus.so canbus/tracecanbus.so; do
        dynamic=$(readelf -d "$1/lib/draxel/$binary")
        [[ $dynamic == *"(NEEDED)"*"libQt5Core.so.5"* ]] || fail "readelf does not understand $binary"
        [[ $dynamic != *"(RPATH)"* && $dynamic != *"(RUNPATH)"* ]] || fail "$binary has an RPATH"
        [[ $(readelf -S "$1/lib/draxel/$binary") != *.debug_info* ]] || fail "$binary is not stripped"
    done
    local naming
    naming=$(grep -rlF -e "$2" -- "$1" || true)
    [ -z "$naming" ] || fail "the build folder is named in: $naming"
}
