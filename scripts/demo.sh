#!/usr/bin/env bash
# Installs what is needed, builds, and runs the importer on the bundled demo
# company.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/install-deps.sh
scripts/build.sh
exec build/bin/kelimport "$@"
