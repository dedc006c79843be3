#!/usr/bin/env bash
# Takes a picture of the main window after it staged the bundled demo: the
# program runs under a virtual X display (xvfb-run, 1366x768), opens the window
# on a fresh copy of the demo's KEL company with the demo's CSV source and
# format 0 on its command line, lets Form_Activate stage it, saves the window
# as a PNG and ends (the hidden option --screenshot). Nothing is imported.
#
#   scripts/screenshot.sh                    writes docs/ventana-principal.png
#   scripts/screenshot.sh /tmp/ventana.png   writes there
#
# Needs a build with the window (scripts/build.sh) and xvfb (install-deps.sh).
set -euo pipefail
cd "$(dirname "$0")/.."
out="$(realpath -m "${1:-docs/ventana-principal.png}")"
program="$(pwd)/build/bin"
demo="$program/demo"
run="$(pwd)/build/screenshot-run"
[ -x "$program/kelimport" ] || { echo "Falta build/bin/kelimport: ejecute scripts/build.sh" >&2; exit 2; }
command -v xvfb-run >/dev/null || { echo "Falta xvfb-run: ejecute scripts/install-deps.sh" >&2; exit 2; }

# A fresh company in a folder of its own name, so that its staging database
# (build/bin/Captura/Pasaje.mdb) is made fresh too and the demo's is untouched.
rm -rf "$run" "$program/Captura"
mkdir -p "$run/Captura"
cp "$demo/Empresa/Datos.mdb" "$run/Captura/Datos.mdb"
source_path="$(cd "$demo/Origen_CSV" && pwd)"
mkdir -p "$(dirname "$out")"

# The fixed font size and style keep the picture alike from machine to machine.
QT_QPA_PLATFORM=xcb QT_STYLE_OVERRIDE=Fusion \
  xvfb-run -a -s "-screen 0 1366x768x24" \
  "$program/kelimport" --screenshot "$out" "$run/Captura/Datos.mdb*$source_path*0"
rm -rf "$run" "$program/Captura"
echo "Captura: $out"
