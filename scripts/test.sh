#!/usr/bin/env bash
# Installs what is needed, builds, and runs the whole test suite.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/install-deps.sh
scripts/check-layers.sh
scripts/check-deps.sh
scripts/build.sh
ctest --test-dir build --output-on-failure --parallel "$(nproc)" --timeout 600
