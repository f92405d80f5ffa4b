#!/usr/bin/env bash
# Starts an assistant program with the simulated cameras on a virtual X display,
# waits for its main window and leaves a screenshot of the display.
#   scripts/check-window.sh <assistant> <screenshot.png>
set -euo pipefail
assistant="$1"
screenshot="$2"
home="$(mktemp -d)"
trap 'rm -rf "$home"' EXIT
export HOME="$home" ZEB_SIM_CAMERAS=default LANG=C.UTF-8
unset ZEB_GEV_ADDRESSES
xvfb-run -a -s "-screen 0 1280x900x24" bash -c '
  "$1" & pid=$!
  for _ in $(seq 60); do
    if xwininfo -root -tree | grep -q "Orvel Defect Pixel Correction Assistant"; then
      sleep 2
      import -window root "$2" 2>/dev/null || true
      kill "$pid"; wait "$pid" 2>/dev/null || true
      echo "The installed assistant shows its window."
      exit 0
    fi
    kill -0 "$pid" 2>/dev/null || { echo "check-window.sh: the assistant ended before its window appeared" >&2; exit 1; }
    sleep 1
  done
  kill "$pid"
  echo "check-window.sh: no assistant window within 60 s" >&2
  exit 1' check-window "$assistant" "$screenshot"
