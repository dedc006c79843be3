#!/usr/bin/env bash
# tests/fuzz/run_fuzz.sh — builds the fuzz targets with clang and the
# sanitizers (in build-fuzz/ beside the sources) and runs each for a while,
# seeded with every statement the program ships. Any crash, hang or sanitizer
# report fails the script and leaves the input in build-fuzz/findings/.
#   tests/fuzz/run_fuzz.sh [seconds per target, default 60]
# Needs the Debian packages clang and libclang-rt-14-dev.
set -euo pipefail
seconds="${1:-60}"
src="$(cd "$(dirname "$0")/../.." && pwd)"
build="$src/build-fuzz"
command -v clang++ >/dev/null || { echo "Falta clang (apt-get install clang libclang-rt-14-dev)"; exit 2; }
cmake -S "$src" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo \
  -DCMAKE_C_COMPILER=clang -DCMAKE_CXX_COMPILER=clang++ -DKEL_FUZZ=ON \
  -DKEL_BUILD_TESTS=OFF -DKEL_BUILD_BENCH=OFF >/dev/null
cmake --build "$build" -j2 --target fuzz_translate fuzz_run fuzz_functions
python3 "$src/tests/fuzz/make_seeds.py" "$src" "$build/seeds"
mkdir -p "$build/findings"
status=0
for target in fuzz_translate fuzz_run fuzz_functions; do
  corpus="$build/corpus/$target"
  mkdir -p "$corpus"
  echo "== $target ($seconds s)"
  "$build/tests/fuzz/$target" "$corpus" "$build/seeds" -max_total_time="$seconds" \
    -timeout=10 -rss_limit_mb=2048 -max_len=65536 -print_final_stats=1 \
    -artifact_prefix="$build/findings/$target-" || status=1
done
exit $status
