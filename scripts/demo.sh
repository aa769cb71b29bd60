#!/usr/bin/env bash
# The main job: builds the vok tool and applies every bundled example effect
# to a bundled photo, writing the results under out/.
set -euo pipefail
cd "$(dirname "$0")/.."

bash scripts/setup.sh
cmake --preset release >/dev/null
cmake --build --preset release -j "$(nproc)" --target vok

vok=build/release/cli/vok
photo=examples/images/coffee.png
mkdir -p out

shopt -s nullglob
effects=(examples/effects/*.json)
failed=0
for effect in "${effects[@]}"; do
  name=$(basename "$effect" .json)
  if "$vok" apply "$effect" "$photo" "out/$name.jpg"; then
    echo "demo: out/$name.jpg"
  else
    echo "demo: $effect FAILED" >&2
    failed=$((failed + 1))
  fi
done
echo "demo: ${#effects[@]} effects applied to $photo, $failed failed"

# ---- Contact sheet of every effect (vok gallery) -----------------------------
# Thumbnails of every look with their names in out/gallery.png, and
# out/index.html beside it linking the full-size results.
if "$vok" gallery --input "$photo" --out out; then
  echo "demo: open out/index.html (contact sheet: out/gallery.png)"
else
  echo "demo: the gallery reported failed looks" >&2
  failed=$((failed + 1))
fi

exit $((failed > 0))
