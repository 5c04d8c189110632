#!/bin/bash
# with_wine.sh COMMAND...: runs the command with a fresh Wine server for WINEPREFIX, on the X server of the caller.
set -euo pipefail

# Wine maps a page at a fixed address into every program. Where the system places things at random, something else lies
# there once in some hundred starts, and the program ends with code 1 before its first instruction.
if [[ -z ${KELVANE_FIXED_ADDRESSES:-} ]] && setarch --addr-no-randomize true 2>/dev/null; then
    KELVANE_FIXED_ADDRESSES=1 exec setarch --addr-no-randomize "$0" "$@"
fi

# By the locale Wine decides which file names there are: without UTF-8 it has none for most of the world's letters.
export LC_ALL=C.UTF-8

# A server that is still there from an earlier call would go on with that call's X server, or with none.
end_server() {
    wineserver -k || true # fails when there is none
    wineserver -w
}

mkdir -p "$WINEPREFIX"
end_server
trap end_server EXIT

# The first start fills the prefix, which takes longer than some tests have. It asks for nothing: no browser engine, no
# run-time system of another language, no entries in the desktop's menus.
WINEDLLOVERRIDES="mscoree,mshtml,winemenubuilder.exe=" wine wineboot --init

# There is no window manager: unless told so, Wine waits two seconds for its word on each window. Programs that run
# already would not see the setting.
wine reg add 'HKCU\Software\Wine\X11 Driver' /v Managed /d N /f >/dev/null
end_server

# Wine's own processes stay for some seconds and keep the output of the program that starts them open: this one's is
# nobody's.
wine wineboot </dev/null >/dev/null 2>&1

"$@"
