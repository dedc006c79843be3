#!/usr/bin/env bash
# Installs what is needed, builds, and imports the bundled demo company into a
# fresh copy of the demo's KEL company with a fresh staging database (so the
# demo can be run again and again).
#
# With a display (DISPLAY or WAYLAND_DISPLAY set) the program opens its main
# window on the demo: the source and the format are on its command line, so
# the window stages the source as it opens; the user reviews, maps and presses
# Importar. Without a display, or with --batch, it runs the batch import: the
# five groups are transferred at once, answering Yes to every question.
#
#   scripts/demo.sh                 the window (or the batch import without a display)
#   scripts/demo.sh --batch         the batch import in any case
#   scripts/demo.sh --groups 1,2    a batch import; extra options go to `kelimport --batch`
#
# The demo's source is its folder of CSV interchange files (format 0) when the
# build made one, otherwise its source database file (format 1).
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/install-deps.sh
scripts/build.sh

program="$(pwd)/build/bin"
demo="$program/demo"
run="$(pwd)/build/demo-run"

# A fresh KEL company each time; its staging database is
# $program/Empresa/Pasaje.mdb, named after the company's folder.
rm -rf "$run"
mkdir -p "$run"
cp -r "$demo/Empresa" "$run/Empresa"
company="$run/Empresa/Datos.mdb"
# The staging database keeps the mappings a run writes (RelacConc, RelacTLiq);
# a fresh demo starts without them.
rm -f "$program/Empresa/Pasaje.mdb" "$program/Empresa/Pasaje.mdb-wal" "$program/Empresa/Pasaje.mdb-shm"

csv_folder="$(find "$demo" -name Empresa.csv -printf '%h\n' 2>/dev/null | head -n 1)"
if [ -n "$csv_folder" ]; then
  source_path="$(cd "$csv_folder" && pwd)"
  format=0
  form="archivos CSV de intercambio"
else
  source_folder="$demo/Origen_BD"
  [ -d "$source_folder" ] || source_folder="$demo"
  source_path="$(cd "$source_folder" && pwd)"
  format=1
  form="base de datos del sistema de origen"
fi

window=0
if [ "${1:-}" = "--batch" ]; then
  shift
elif [ $# -eq 0 ] && { [ -n "${DISPLAY:-}" ] || [ -n "${WAYLAND_DISPLAY:-}" ]; }; then
  window=1
fi

echo "== Demostración de kelimport"
echo "   Empresa KEL (copia nueva): $company"
echo "   Origen ($form): $source_path"
echo
if [ "$window" -eq 1 ]; then
  echo "   Se abre la ventana: la carga del origen empieza sola; revise, relacione y pulse Importar."
  status=0
  "$program/kelimport" "$company*$source_path*$format" || status=$?
  echo "   Empresa KEL: $company"
  exit $status
fi
status=0
"$program/kelimport" --batch --yes "$@" "$company*$source_path*$format" || status=$?
echo
echo "== Resumen"
case $status in
  0) echo "   Importación terminada." ;;
  1) echo "   Una respuesta detuvo la importación." ;;
  2) echo "   Un error detuvo la importación; el detalle está en $program/Empresa/kelimport-errores.txt" ;;
  *) echo "   Argumentos incorrectos (código $status)." ;;
esac
echo "   Base auxiliar: $program/Empresa/Pasaje.mdb (las filas cargadas son las líneas CARGA de arriba)"
echo "   Empresa KEL: $company (lo transferido son las líneas TRANSFERIDO de arriba)"
if [ "$status" -eq 0 ]; then
  echo
  echo "== Empresa KEL después de la importación (filas por tabla)"
  for table in Empresa Planillas Cargos Sectores Personas Contrato Declaraciones Legajo Conceptos \
               TiposLiquidacion Encabezados Datos_Liquidacion Calendario_liq Cotizacion; do
    rows="$("$program/kelimport" --sql "$company" "Select Count(*) From $table" | tail -n 1)"
    printf '   %-20s %s\n' "$table" "$rows"
  done
fi
exit $status
