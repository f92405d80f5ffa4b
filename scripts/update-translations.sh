#!/usr/bin/env bash
# Refreshes the German translation source from the program's texts, and the
# English plural forms: new texts are added unfinished, texts no longer in the
# sources are dropped.
#   scripts/update-translations.sh [file.ts]
# With a file, the tree's translation is copied there and that copy is refreshed.
set -euo pipefail
root="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
tree_ts="$root/translations/orvel-dpc-assistant_de.ts"
ts="${1:-$tree_ts}"
[ "$ts" = "$tree_ts" ] || cp "$tree_ts" "$ts"

lupdate=/usr/lib/qt5/bin/lupdate
[ -x "$lupdate" ] || lupdate="$(command -v lupdate || true)"
if [ -z "$lupdate" ]; then
  echo "update-translations.sh: lupdate is missing; install it with: sudo apt-get install qttools5-dev-tools" >&2
  exit 1
fi

# Every source folder of the program; tests, benchmarks and fuzz targets show nothing to users.
sources=()
for dir in "$root"/*/; do
  name="$(basename "$dir")"
  case "$name" in build|build-*|tests|bench|fuzz|translations|scripts|cmake|resources) continue ;; esac
  [ -f "$dir/CMakeLists.txt" ] && sources+=("$dir")
done
"$lupdate" -silent -no-obsolete -locations none -extensions cpp,h,ui "${sources[@]}" -ts "$ts"
# English needs only the plural forms of the texts that count ("%n entries").
if [ "$ts" = "$tree_ts" ]; then
  "$lupdate" -silent -no-obsolete -pluralonly -locations none -extensions cpp,h,ui "${sources[@]}" \
    -ts "$root/translations/orvel-dpc-assistant_en.ts"
fi
