#!/usr/bin/env bash
# Installs what is missing, builds the release tree and starts the assistant with
# the simulated cameras. Without a display it runs on a virtual one.
set -euo pipefail
root="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
build="$root/build/app"

"$root/scripts/install-deps.sh"

cmake -S "$root" -B "$build" -DCMAKE_BUILD_TYPE=Release -DDPC_BUILD_TESTS=OFF -DDPC_BUILD_BENCHMARKS=OFF
cmake --build "$build" -j2

# The camera SDK reads this when it starts; the assistant itself reads no environment.
export ZEB_SIM_CAMERAS=default

# Sample dark and bright series of the simulated cameras, made once, in the
# images folder where the assistant's file dialog opens.
documents="$(xdg-user-dir DOCUMENTS 2>/dev/null || true)"
[ -n "$documents" ] && [ "$documents" != "$HOME" ] || documents="$HOME/Documents"
images="$documents/UxTools/images"
for camera in kvd123MXGE pmq5CCX ryn1300MGE; do
  if [ ! -d "$images/$camera" ]; then
    echo "Writing sample series of the simulated camera $camera to $images/$camera"
    "$build/tools/zeb-sim-capture" --camera "$camera" --dark 8 --bright 8 --out "$images/$camera" >/dev/null
  fi
done
assistant="$build/app/orvel-dpc-assistant"
if [ -z "${DISPLAY:-}" ] && [ -z "${WAYLAND_DISPLAY:-}" ]; then
  echo "No display (DISPLAY and WAYLAND_DISPLAY are empty): running the assistant on a virtual X display (xvfb-run)."
  exec xvfb-run -a "$assistant" "$@"
fi
exec "$assistant" "$@"
