#!/usr/bin/env bash
# Kills `kelimport --batch` with SIGKILL at seeded random moments of a demo
# import and checks, after each kill, that nothing was lost:
#   - the KEL company file passes PRAGMA integrity_check;
#   - after `kelimport --restore` of the run's safety copy it holds exactly
#     what it held before the run (same `sqlite3 .dump`); a run killed before
#     its copy was made must not have changed it at all;
#   - the staging database passes PRAGMA integrity_check;
#   - the next run, left alone, imports the demo successfully.
#
#   scripts/crash-test.sh [--kills N] [--seed S] [BUILD_BIN]
#
# BUILD_BIN is the build's program folder (build/bin by default: kelimport,
# its formats, Generica/Pasaje.mdb and the demo). The kill moments are spread
# uniformly over the length of one uninterrupted run; the same seed gives the
# same moments. The full check is `--kills 20` (the default); CI runs a few.
set -euo pipefail

kills=20
seed=1
bin=""
while [ $# -gt 0 ]; do
  case "$1" in
    --kills) kills="$2"; shift 2 ;;
    --seed) seed="$2"; shift 2 ;;
    *) bin="$1"; shift ;;
  esac
done
[ -n "$bin" ] || bin="$(cd "$(dirname "$0")/.." && pwd)/build/bin"
bin="$(cd "$bin" && pwd)"
command -v sqlite3 >/dev/null || { echo "Falta el programa sqlite3 (scripts/install-deps.sh)"; exit 2; }

work="$(mktemp -d "${TMPDIR:-/tmp}/kel-crash-XXXXXX")"
trap 'rm -rf "$work"' EXIT

# A program folder of our own, so runs never touch the build's staging files.
prog="$work/prog"
mkdir -p "$prog"
for entry in "$bin"/*; do
  name="$(basename "$entry")"
  case "$name" in
    demo|Empresa) ;;
    kelimport) ln "$entry" "$prog/kelimport" 2>/dev/null || cp "$entry" "$prog/kelimport" ;;
    *) cp -r "$entry" "$prog/$name" ;;
  esac
done
pristine="$bin/demo/Empresa/Datos.mdb"
source_folder="$work/Origen_BD"
company_dir="$work/Empresa"
company="$company_dir/Datos.mdb"
staging="$prog/Empresa/Pasaje.mdb"
before="$work/before.sql"

# A fresh company with a fresh staging database: the staging keeps the
# mappings a run writes (concept and liquidation-type ids of that company's
# KEL file), so the two start together, as a first import does.
fresh_company() {
  rm -f "$staging" "$staging-wal" "$staging-shm"
  # The source database too: a run leaves its own work tables in it.
  rm -rf "$source_folder"
  cp -r "$bin/demo/Origen_BD" "$source_folder"
  rm -rf "$company_dir"
  mkdir -p "$company_dir"
  cp "$pristine" "$company"
}
run_import() { "$prog/kelimport" --batch --yes "$company*$source_folder*1"; }
# A missing file is fine (the run was killed before making it); sqlite3 must
# not be pointed at it, since opening the name leaves an empty file behind.
integrity() {
  if [ -e "$1" ]; then sqlite3 "$1" "PRAGMA integrity_check;" 2>&1 | head -n 1 || true; else echo ok; fi
}

fresh_company
sqlite3 "$company" .dump > "$before"

# One uninterrupted run gives the span the kill moments are drawn from.
start=$(date +%s%N)
run_import > "$work/first.log" || { echo "La primera importación falló:"; cat "$work/first.log"; exit 1; }
grep -q "^INFO: Importación Satisfactoria" "$work/first.log" || { echo "La primera importación no terminó:"; cat "$work/first.log"; exit 1; }
span=$(awk -v ns=$(( $(date +%s%N) - start )) 'BEGIN { printf "%.3f", ns / 1e9 }')
echo "Importación completa: ${span} s; ${kills} interrupciones (semilla ${seed})"

RANDOM=$seed
failures=0
for i in $(seq 1 "$kills"); do
  fresh_company
  delay=$(awk -v s="$span" -v r=$RANDOM 'BEGIN { printf "%.3f", s * r / 32767 }')
  # exec: the background job is kelimport itself, so the kill reaches it.
  (exec "$prog/kelimport" --batch --yes "$company*$source_folder*1" > "$work/run.log" 2>&1) &
  pid=$!
  sleep "$delay"
  kill -KILL "$pid" 2>/dev/null || true
  wait "$pid" 2>/dev/null || true

  problems=()
  kel_check="$(integrity "$company")"
  [ "$kel_check" = "ok" ] || problems+=("la base de KEL no pasa integrity_check: $kel_check")
  staging_check="$(integrity "$staging")"
  [ "$staging_check" = "ok" ] || problems+=("la base auxiliar no pasa integrity_check: $staging_check")
  copy="$(ls -1 "$company".antes-de-importar-* 2>/dev/null | grep -E '\.antes-de-importar-[0-9-]+$' | tail -n 1 || true)"
  if [ -n "$copy" ]; then
    "$prog/kelimport" --restore --yes "$copy" > "$work/restore.log" || problems+=("kelimport --restore falló: $(cat "$work/restore.log")")
    what="copia devuelta"
  else
    what="sin copia todavía"
  fi
  sqlite3 "$company" .dump | cmp -s - "$before" || problems+=("la base de KEL no quedó como antes ($what)")
  run_import > "$work/next.log" 2>&1 || problems+=("la importación siguiente falló: $(grep -m1 '^ERROR' "$work/next.log")")

  if [ ${#problems[@]} -eq 0 ]; then
    echo "  $i: a los ${delay} s: bien ($what)"
  else
    failures=$((failures + 1))
    echo "  $i: a los ${delay} s: MAL ($what)"
    for p in "${problems[@]}"; do echo "     - $p"; done
  fi
done
[ $failures -eq 0 ] && echo "Todas las interrupciones dejaron las bases sanas" || echo "$failures interrupciones con problemas"
[ $failures -eq 0 ]
