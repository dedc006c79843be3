#!/bin/sh
# bench/staging_vs_import.sh — the staging load against `sqlite3 .import` of
# the same CSV files, side by side.
#
#   bench/staging_vs_import.sh            (from the worktree, after building
#                                          bench_staging_load and kel_demo)
#   SIZES="1000" RUNS=3 BUILD=build DATA=.benchdata bench/staging_vs_import.sh
#   BEFORE=/ruta/bench_staging_load_anterior bench/staging_vs_import.sh
#
# For each source size (employees x 10 years) it generates the demo source in
# the CSV interchange form once into $DATA/e<N>x10/csv (gitignored; reused by
# later runs), then runs, alternately, RUNS times each:
#   - the program's staging load of that folder into a fresh staging database
#     (bench_staging_load --once: matching and CargarDatos with the shipped
#     CSV format, as the refresh button does);
#   - the sqlite3 shell importing the same files into a fresh database
#     (`.import`, untyped text columns, no keys);
# each under /usr/bin/time -v, and prints both medians, their ratio (load /
# import), each one's peak memory (largest of the runs) and CPU seconds (user
# + system, median); each round's line ends with the machine's load average
# (/proc/loadavg), since on a shared machine the wall times follow it. Runs
# alternate so that a machine shared with other work slows both alike. With BEFORE set to another build of bench_staging_load
# (an earlier version of the load), it runs as a third contender in each
# round, for a before/after table.
set -eu

ROOT=$(cd "$(dirname "$0")/.." && pwd)
BUILD=${BUILD:-$ROOT/build}
DATA=${DATA:-$ROOT/.benchdata}
SIZES=${SIZES:-"1000 5000"}
RUNS=${RUNS:-3}
YEARS=${YEARS:-10}
BENCH=${BENCH:-$BUILD/bench/bench_staging_load}
DEMO=${DEMO:-$BUILD/demo/kel_demo}
TIME=/usr/bin/time

for tool in "$TIME" sqlite3 "$BENCH"; do
  command -v "$tool" >/dev/null 2>&1 || { echo "Falta $tool (scripts/install-deps.sh, o compile bench_staging_load)" >&2; exit 2; }
done

# Wall seconds, peak KiB and CPU seconds of one `time -v` report: "S K C".
measure() {
  awk -F': ' '/Elapsed \(wall clock\)/ { n = split($2, p, ":"); s = 0; for (i = 1; i <= n; i++) s = s * 60 + p[i] }
              /Maximum resident set size/ { k = $2 }
              /User time|System time/ { c += $2 }
              END { printf "%.2f %d %.2f\n", s, k, c }' "$1"
}

# One timed load with bench binary $1 into a fresh staging database; appends
# to $2.
timed_load() {
  rm -rf "$work"
  $TIME -v "$1" --source "$csv" --keep "$work" --once 1 >"$dir/load.out" 2>"$dir/load.time" ||
    { cat "$dir/load.out" "$dir/load.time" >&2; exit 1; }
  measure "$dir/load.time" >>"$2"
}

# Median wall, peak memory and median CPU of a times file, printed as a row.
row() {
  w=$(cut -d' ' -f1 "$2" | median)
  k=$(cut -d' ' -f2 "$2" | sort -n | tail -1)
  c=$(cut -d' ' -f3 "$2" | median)
  awk -v n="$1" -v w="$w" -v k="$k" -v c="$c" 'BEGIN { printf "  %-24s %7.1f s  %6.0f MB pico  %6.1f s CPU\n", n, w, k / 1024, c }'
}

median() { sort -n | awk '{ v[NR] = $1 } END { print v[int((NR + 1) / 2)] }'; }

for n in $SIZES; do
  dir=$DATA/e${n}x$YEARS
  csv=$dir/csv
  if [ ! -f "$csv/Datos_Liquidacion.csv" ]; then
    echo "Generando el origen de $n empleados x $YEARS años en $csv ..."
    mkdir -p "$dir"
    "$DEMO" --employees "$n" --years "$YEARS" --seed 1 --source "$dir/origen.mdb" --kel "$dir/Empresa/Datos.mdb" \
      --schema-dir "$ROOT/schema" --csv "$csv" >"$dir/gen.log"
    rm -f "$dir/origen.mdb"
  fi
  work=$dir/run
  script=$dir/import.sql
  {
    echo ".bail on"
    echo ".mode csv"
    echo ".separator ;"
    for f in "$csv"/*.csv; do
      t=$(basename "$f" .csv)
      echo ".import '$f' \"$t\""
    done
  } >"$script"
  : >"$dir/load.times"
  : >"$dir/import.times"
  : >"$dir/before.times"
  i=1
  while [ "$i" -le "$RUNS" ]; do
    if [ -n "${BEFORE:-}" ]; then
      timed_load "$BEFORE" "$dir/before.times"
      echo "  $n x $YEARS, ronda $i: carga anterior $(cut -d' ' -f1 "$dir/before.times" | tail -1) s ($(cut -d' ' -f3 "$dir/before.times" | tail -1) s CPU)"
    fi
    timed_load "$BENCH" "$dir/load.times"
    rm -rf "$work"
    mkdir -p "$work"
    $TIME -v sqlite3 "$work/import.db" <"$script" >"$dir/import.out" 2>"$dir/import.time" ||
      { cat "$dir/import.out" "$dir/import.time" >&2; exit 1; }
    measure "$dir/import.time" >>"$dir/import.times"
    echo "  $n x $YEARS, ronda $i: carga $(cut -d' ' -f1 "$dir/load.times" | tail -1) s ($(cut -d' ' -f3 "$dir/load.times" | tail -1) s CPU), .import $(cut -d' ' -f1 "$dir/import.times" | tail -1) s ($(cut -d' ' -f3 "$dir/import.times" | tail -1) s CPU); carga media de la máquina $(cut -d' ' -f1-3 /proc/loadavg)"
    i=$((i + 1))
  done
  rm -rf "$work"
  size=$(du -sm "$csv" | cut -f1)
  echo "$n empleados x $YEARS años ($size MB de CSV), mediana de $RUNS rondas alternadas:"
  if [ -n "${BEFORE:-}" ]; then row "carga auxiliar anterior" "$dir/before.times"; fi
  row "carga auxiliar" "$dir/load.times"
  row "sqlite3 .import" "$dir/import.times"
  load=$(cut -d' ' -f1 "$dir/load.times" | median)
  import=$(cut -d' ' -f1 "$dir/import.times" | median)
  awk -v l="$load" -v i="$import" 'BEGIN { printf "  razón carga/.import: %.2f\n", (i > 0 ? l / i : 0) }'
  if [ -n "${BEFORE:-}" ]; then
    before=$(cut -d' ' -f1 "$dir/before.times" | median)
    awk -v b="$before" -v i="$import" 'BEGIN { printf "  razón anterior/.import: %.2f\n", (i > 0 ? b / i : 0) }'
  fi
done
