#!/usr/bin/env bash
# Fails when a file includes a header of a layer above its own.
#
# The layers, bottom to top (a folder may include its own layer and those
# below it, never a sibling or anything above):
#   0 base            values, Basic's Val, months, text helpers
#   1 settings        settings and format files
#   1 db/jet          the Jet-to-SQLite translator and Jet's functions
#   2 db              connections and SQL helpers
#   2 schema          the KEL and staging database scripts
#   3 staging mapping transfer preview demo
#   4 session         the import session (the window's logic, no display)
#   5 ui              the Qt window
#   6 app             the executable
# Tests and benchmarks may include anything.
set -euo pipefail
cd "$(dirname "$0")/.."

rank_of() {
  case "$1" in
    base/*) echo 0 ;;
    settings/*) echo 1 ;;
    db/jet/*) echo 1 ;;
    db/*|schema/*) echo 2 ;;
    staging/*|mapping/*|transfer/*|preview/*|demo/*) echo 3 ;;
    session/*) echo 4 ;;
    ui/*) echo 5 ;;
    app/*) echo 6 ;;
    *) echo "" ;;
  esac
}

# The layer's name: files of one folder (db/jet counts apart from db) may
# include each other.
layer_of() {
  case "$1" in
    db/jet/*) echo db/jet ;;
    *) echo "${1%%/*}" ;;
  esac
}

bad=0
while IFS= read -r file; do
  from_rank=$(rank_of "$file")
  [ -n "$from_rank" ] || continue
  from_layer=$(layer_of "$file")
  while IFS= read -r header; do
    to_rank=$(rank_of "$header")
    [ -n "$to_rank" ] || continue
    [ "$(layer_of "$header")" = "$from_layer" ] && continue
    if [ "$to_rank" -ge "$from_rank" ]; then
      echo "capa: $file incluye $header (de una capa igual o superior)"
      bad=$((bad + 1))
    fi
  done < <(sed -n 's/^[[:space:]]*#[[:space:]]*include[[:space:]]*"\([^"]*\)".*/\1/p' "$file")
done < <(git ls-files '*.h' '*.cpp' | grep -vE '^(tests|bench)/')

if [ "$bad" -gt 0 ]; then
  echo "$bad inclusiones contra el orden de las capas"
  exit 1
fi
echo "capas: ninguna inclusión hacia arriba"
