#!/usr/bin/env bash
# The main job: builds the vok tool and applies every bundled example effect
# to a bundled photo, writing the results under out/.
set -euo pipefail
cd "$(dirname "$0")/.."

bash scripts/setup.sh
cmake --preset release -DVOK_STRICT_SYMBOLS=OFF >/dev/null
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

exit $((failed > 0))
