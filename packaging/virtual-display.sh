# shellcheck shell=bash
# To be sourced. A display that nobody sees, with a window manager and a notification area, for machines without a
# screen and for tests.

display_pids=()

# Waits up to ten seconds for a command to succeed.
wait_for() {
    for _ in $(seq 100); do
        "$@" >/dev/null 2>&1 && return 0
        sleep 0.1
    done
    return 1
}

has_window_manager() { xprop -root _NET_SUPPORTING_WM_CHECK | grep -q 'window id'; }
has_notification_area() { xwininfo -root -tree | grep -q '"trayer"'; }

# Starts everything on a free display number and sets DISPLAY: [WIDTHxHEIGHT]. stop_display ends it.
start_display() {
    local number_file
    number_file=$(mktemp)
    Xvfb -displayfd 3 -noreset -screen 0 "${1:-1280x900}x24" -nolisten tcp 3>"$number_file" >/dev/null 2>&1 &
    display_pids+=($!)
    wait_for test -s "$number_file" || {
        echo "Xvfb does not start" >&2
        rm -f "$number_file"
        return 1
    }
    DISPLAY=:$(cat "$number_file")
    export DISPLAY
    rm -f "$number_file"
    # Programs on this display have nothing to say to the desktop of the user who started them.
    export NO_AT_BRIDGE=1 DBUS_SESSION_BUS_ADDRESS=disabled: GDK_BACKEND=x11
    unset WAYLAND_DISPLAY

    openbox >/dev/null 2>&1 &
    display_pids+=($!)
    wait_for has_window_manager || echo "openbox does not start" >&2
    trayer --edge bottom --align right --widthtype request --height 26 --SetDockType true \
        --tint 0xdddddd --transparent true --alpha 0 >/dev/null 2>&1 &
    display_pids+=($!)
    wait_for has_notification_area || echo "trayer does not start" >&2
    if command -v xsetroot >/dev/null; then xsetroot -solid '#5b7a99'; fi
}

# Ends what start_display has started, the display last.
stop_display() {
    local index
    for ((index = ${#display_pids[@]} - 1; index >= 0; index--)); do
        kill "${display_pids[index]}" 2>/dev/null
        wait "${display_pids[index]}" 2>/dev/null
    done
    display_pids=()
}
