#!/usr/bin/env bash
# Starts the editor on a virtual display, paints a cell of the level view with
# a real mouse click, waits for the title's unsaved mark, then sends the
# signal and writes the editor's exit status to STATUS. With LEVELs (the
# first being L1MA1) each opens in a tab, and Ctrl+Tab goes to each next one
# to paint a cell there too.
#   paintThenTerminate.sh EDITOR STATUS [SIGNAL [LEVEL...]]
set -euo pipefail
[ $# -ge 2 ] || { echo "usage: paintThenTerminate.sh EDITOR STATUS [SIGNAL]" >&2; exit 2; }
for tool in xvfb-run xdotool; do
  command -v "$tool" >/dev/null || { echo "paintThenTerminate.sh: $tool is missing (scripts/install-deps)" >&2; exit 2; }
done

xvfb-run -a -s "-screen 0 1280x900x24" bash -c '
  editor=$1 status=$2 signal=$3
  shift 3
  # The tests run offscreen; this one needs the virtual display. The X
  # libraries keep allocations for the life of the process, which a leak
  # check would count against the exit status this test is about; the
  # offscreen tests check our own code for leaks.
  QT_QPA_PLATFORM=xcb ASAN_OPTIONS="${ASAN_OPTIONS:+$ASAN_OPTIONS:}detect_leaks=0" "$editor" "$@" &
  pid=$!
  window=$(timeout 60 xdotool search --sync --onlyvisible --name "^Marvek - L1MA1") || {
    echo "the editor showed no level window" >&2; kill -KILL $pid; exit 3; }
  window=$(echo "$window" | head -n 1)
  # Inside the level view, below the menu bar.
  paint() {
    xdotool mousemove --window "$window" 150 150 click 1
    for _ in $(seq 200); do
      case $(xdotool getwindowname "$window") in *"*") break ;; esac
      sleep 0.05
    done
  }
  paint
  for _ in $(seq 2 $#); do
    xdotool windowfocus "$window" key ctrl+Tab
    for _ in $(seq 200); do
      case $(xdotool getwindowname "$window") in *"*") sleep 0.05 ;; *) break ;; esac
    done
    paint
  done
  kill -"$signal" $pid
  wait $pid
  echo $? >"$status"
' _ "$1" "$2" "${3:-TERM}" "${@:4}"
