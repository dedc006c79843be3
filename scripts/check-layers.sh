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
#   2 lookup          the code/description lookup model (no display)
#   3 staging mapping transfer demo
#   4 preview         the staged-data preview (fills the mapping lookups)
#   5 session         the import session (the window's logic, no display)
#   6 ui              the Qt window
#   7 app             the executable
# Tests and benchmarks may include anything. scripts/layer-exceptions.txt
# lists the edges still waiting to be moved, each with its reason; an edge
# not listed there fails the check.
set -euo pipefail
cd "$(dirname "$0")/.."

rank_of() {
  case "$1" in
    base/*) echo 0 ;;
    settings/*) echo 1 ;;
    db/jet/*) echo 1 ;;
    db/*|schema/*|lookup/*) echo 2 ;;
    staging/*|mapping/*|transfer/*|demo/*) echo 3 ;;
    preview/*) echo 4 ;;
    session/*) echo 5 ;;
    ui/*) echo 6 ;;
    app/*) echo 7 ;;
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
    if [ "$to_rank" -ge "$from_rank" ] && ! grep -qxF "$file $header" <(grep -v '^#' scripts/layer-exceptions.txt); then
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
