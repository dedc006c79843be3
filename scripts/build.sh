#!/usr/bin/env bash
# Configures and builds kelimport into ./build (Release with debug info).
set -euo pipefail
cd "$(dirname "$0")/.."
generator=()
command -v ninja >/dev/null && generator=(-G Ninja)
if [ ! -f build/CMakeCache.txt ]; then
  cmake -S . -B build "${generator[@]}" -DCMAKE_BUILD_TYPE=RelWithDebInfo
fi
cmake --build build --parallel "$(nproc)"
