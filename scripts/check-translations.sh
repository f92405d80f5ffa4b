#!/usr/bin/env bash
# Fails, listing them, when a text of the sources as they are has no finished
# German translation. The tree's translation file is not touched.
set -euo pipefail
root="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
scratch="$(mktemp -d)"
trap 'rm -rf "$scratch"' EXIT
"$root/scripts/update-translations.sh" "$scratch/de.ts"
python3 - "$scratch/de.ts" <<'PY'
import sys
import xml.etree.ElementTree as ET
missing = []
for context in ET.parse(sys.argv[1]).getroot().iter("context"):
    for message in context.iter("message"):
        translation = message.find("translation")
        if translation.get("type") == "unfinished" or not "".join(translation.itertext()).strip():
            missing.append("%s: %r" % (context.findtext("name"), message.findtext("source")))
for line in missing:
    print("untranslated:", line)
print("%d unfinished German translations" % len(missing))
sys.exit(1 if missing else 0)
PY
