#!/usr/bin/env bash
# Fuzzes the effect-description road for SECONDS (default 300) with libFuzzer,
# starting from the bundled looks and the saved findings, with the dictionary
# of processor names and keywords. New inputs collect in build/fuzz/corpus; a
# crash leaves its input in build/fuzz/ (save it under tests/fuzz/regressions).
#   bash scripts/fuzz.sh [SECONDS]
set -euo pipefail
cd "$(dirname "$0")/.."

bash scripts/setup.sh
cmake --preset fuzz >/dev/null
cmake --build --preset fuzz -j "$(nproc)"
mkdir -p build/fuzz/corpus
cp -n examples/effects/*.json tests/fuzz/regressions/*.json build/fuzz/corpus/
cd build/fuzz
exec tests/fuzz/vok_fuzz_effect -max_total_time="${1:-300}" -dict=tests/fuzz/effects.dict \
  -print_final_stats=1 corpus
