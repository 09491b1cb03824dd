#!/bin/sh
# Runs every benchmark and prints its figures. Benchmarks that need a
# display run under Xvfb.
set -u
BUILD="${1:-build}"
export DBUS_SESSION_BUS_ADDRESS=disabled:
for bench in "$BUILD"/bench/*; do
    [ -x "$bench" ] && [ -f "$bench" ] || continue
    case "$(basename "$bench")" in
        bare_window|floor_program) continue ;;
    esac
    echo "== $(basename "$bench")"
    case "$(basename "$bench")" in
        startup_bench|running_bench) xvfb-run -a -s "-screen 0 1280x800x24" "$bench" ;;
        mediaview_bench) LIBGL_ALWAYS_SOFTWARE=1 xvfb-run -a -s "-screen 0 1280x800x24" "$bench" ;;
        *) QT_QPA_PLATFORM=offscreen "$bench" ;;
    esac
done
