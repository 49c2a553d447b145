#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Installs what is missing, builds, and starts the host with the simulated vehicle "pedelec" connected. Arguments replace
# those of the program:
#
#   ./run.sh                                   the window, pedelec connected
#   ./run.sh --bus socketcan:can0 --connect    the window on a real bus
#   ./run.sh vehicle.dxxml                     what is saved in a file
#
# Without a display the command line reads the same bus, or shows the same file, and it alone is built.
set -eu
called_from=$PWD
cd "$(dirname "$0")"

# Help and version need no display.
help=
for argument in "$@"; do
    case $argument in
        -h | --help | --help-all | -v | -V | --version)
            help=$argument
            break
            ;;
    esac
done
has_display=${DISPLAY-}${WAYLAND_DISPLAY-}${QT_QPA_PLATFORM-}

scripts/install-packages run
# Without a display the command line is all that is started, so it alone is built.
scripts/build "$([ -n "$help$has_display" ] && echo programs || echo command_line)"
bin=$PWD/build/bin

# The command line takes the arguments that it shares with the window.
run_without_display() { # [ARGUMENT]...
    local bus='' file='' shared=()
    while [ $# -gt 0 ]; do
        case $1 in
            --connect | --verbose | --plugins=*) ;;
            --plugins) [ $# -lt 2 ] || shift ;;
            --bus=*) bus=${1#*=} ;;
            --bus)
                bus=${2-}
                [ $# -lt 2 ] || shift
                ;;
            -*=*) shared+=("$1") ;;
            -*)
                shared+=("$1")
                if [ $# -gt 1 ] && [[ $2 != -* ]]; then
                    shared+=("$2")
                    shift
                fi
                ;;
            *) file=$1 ;;
        esac
        shift
    done
    if [ -n "$file" ]; then
        echo "No display here: showing $file on the command line." >&2
        exec "$bin/draxelctl" show "$file" "${shared[@]}"
    fi
    if [ -z "$bus" ]; then
        echo "No display here: reading the simulated vehicle on the command line." >&2
        exec "$bin/draxelctl" read --bus simulated:pedelec "${shared[@]}"
    fi
    echo "No display here: reading $bus on the command line; --export FILE saves what is read." >&2
    exec "$bin/draxelctl" read --bus "$bus" "${shared[@]}"
}

[ -z "$help" ] || exec "$bin/draxel" "$help"
if [ $# -eq 0 ]; then
    [ -z "$has_display" ] || exec "$bin/draxel" --bus simulated:pedelec --connect
    run_without_display --export "$PWD/build/pedelec.dxxml"
fi
cd "$called_from" # file names are meant from there
[ -z "$has_display" ] || exec "$bin/draxel" "$@"
run_without_display "$@"
