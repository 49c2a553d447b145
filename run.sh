#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Installs what is missing, builds, and starts the host with the simulated vehicle "pedelec" connected.
# Without a display the same vehicle is read on the command line. Arguments replace those of the program:
#
#   ./run.sh                                   the window, pedelec connected
#   ./run.sh --bus socketcan:can0 --connect    the window on a real bus
set -eu
cd "$(dirname "$0")"

scripts/install-packages run
scripts/build programs

if [ -z "${DISPLAY-}${WAYLAND_DISPLAY-}" ] && [ "${QT_QPA_PLATFORM-}" = "" ]; then
    echo "No display here: reading the simulated vehicle on the command line." >&2
    [ $# -gt 0 ] || set -- --bus simulated:pedelec
    exec build/bin/draxelctl read --export build/pedelec.dxxml "$@"
fi
[ $# -gt 0 ] || set -- --bus simulated:pedelec --connect
exec build/bin/draxel "$@"
