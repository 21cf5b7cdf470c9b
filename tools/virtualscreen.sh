#!/usr/bin/env bash
# Runs a command on an X display of its own, which goes when the command has ended:
#   tools/virtualscreen.sh COMMAND [ARGUMENT...]
# The command takes the place of this script, so input, output, signals and exit status are its own. The server
# runs in a session of its own: Ctrl-C must reach the command, not end the display under it (as with xvfb-run).
set -euo pipefail

# shellcheck disable=SC2016
server='
    Xvfb -displayfd 1 -noreset -screen 0 1920x1200x24 &
    exec >&2
    tail -s 0.2 -f /dev/null --pid="$0"
    kill %1'
if ! read -r number < <(setsid bash -c "$server" $$ </dev/null 2>/dev/null); then
    echo "Xvfb does not start" >&2
    exit 1
fi
# ZET_VIRTUAL_SCREEN tells the tests that this display is nobody's desktop.
export DISPLAY=:$number ZET_VIRTUAL_SCREEN=:$number
unset WAYLAND_DISPLAY XAUTHORITY
exec "$@"
