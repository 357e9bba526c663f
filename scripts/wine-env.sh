# To be sourced: the environment in which this project runs Windows programs, and the life of its Wine server.

PATH="$PATH:/usr/lib/wine"
export PATH
export WINEDEBUG=-all
# Without a debugger a crash ends the program with an error; winedbg would end it with success.
export WINEDLLOVERRIDES='mscoree=;mshtml=;winemenubuilder.exe=;winedbg.exe=d'
WINEPREFIX="${VSMSGBUS_WINEPREFIX:-$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)/build/wineprefix}"
export WINEPREFIX

# Makes the prefix once, whoever comes first; the others wait for it.
EnsureWinePrefix() {
    [ -e "$WINEPREFIX/.ready" ] && return 0
    mkdir -p "$(dirname "$WINEPREFIX")"
    (
        flock 9
        [ -e "$WINEPREFIX/.ready" ] && exit 0
        rm -rf "$WINEPREFIX"
        wine64 wineboot -i >/dev/null 2>&1
        wineserver -w
        touch "$WINEPREFIX/.ready"
    ) 9>"$WINEPREFIX.lock"
}

# One server for a whole run: a program then starts in some 50 ms instead of seconds. The last of several runs side by
# side ends it, when its shell ends.
KeepWineServer() {
    EnsureWinePrefix
    exec 8>"$WINEPREFIX.users"
    flock --shared 8
    wineserver -p >/dev/null 2>&1 || true
    # The first program starts the system's own ones, which hold its output open for as long as they run.
    wine64 cmd /c exit </dev/null >/dev/null 2>&1 || true
    trap EndWineServer EXIT
}

# Ends the server if this run is the last one that has it.
EndWineServer() {
    flock --exclusive --nonblock 8 && wineserver -k >/dev/null 2>&1 || true
}
