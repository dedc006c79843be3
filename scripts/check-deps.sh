#!/usr/bin/env bash
# Fails when a library's CMake DEPS do not name exactly the libraries its
# files include: a missing one links by luck (through another library), an
# extra one hides a layer that is not used. Each folder with a
# kel_add_library call is one library; db/jet is a library apart from db.
# Only project headers count (#include "folder/file.h").
set -euo pipefail
cd "$(dirname "$0")/.."

# folder -> library name, from the kel_add_library calls.
declare -A lib_of
while IFS= read -r cmake; do
  dir=$(dirname "$cmake")
  name=$(sed -n 's/^[[:space:]]*kel_add_library(\([A-Za-z0-9_]*\).*/\1/p' "$cmake" | head -1)
  [ -n "$name" ] && lib_of[$dir]=$name
done < <(git ls-files '*/CMakeLists.txt' | grep -vE '^(tests|bench)/')

# The library of a header path: its folder, or the folder above (db/x -> db).
library_of_header() {
  local dir
  dir=$(dirname "$1")
  while [ "$dir" != "." ]; do
    if [ -n "${lib_of[$dir]:-}" ]; then echo "${lib_of[$dir]}"; return; fi
    dir=$(dirname "$dir")
  done
}

bad=0
for dir in "${!lib_of[@]}"; do
  name=${lib_of[$dir]}
  # A library whose code is not written yet has nothing to check.
  git ls-files "$dir/*.h" "$dir/*.cpp" | grep -qE "^$dir/[^/]+$" || continue
  declared=$(sed -n 's/^[[:space:]]*kel_add_library(\(.*\))/\1/p' "$dir/CMakeLists.txt" | head -1 |
             sed 's/ EXTERNAL .*//' | tr ' ' '\n' | sed -n '/^DEPS$/,$p' | grep -v '^DEPS$' | sort -u || true)
  used=$(for f in $(git ls-files "$dir/*.h" "$dir/*.cpp" | grep -E "^$dir/[^/]+$"); do
           [ -f "$f" ] && sed -n 's/^[[:space:]]*#[[:space:]]*include[[:space:]]*"\([^"]*\)".*/\1/p' "$f"
         done | while IFS= read -r header; do library_of_header "$header"; done | grep -vx "$name" | sort -u || true)
  missing=$(comm -13 <(echo "$declared") <(echo "$used") | grep . || true)
  extra=$(comm -23 <(echo "$declared") <(echo "$used") | grep . || true)
  for m in $missing; do echo "deps: $dir incluye $m y no lo declara en DEPS"; bad=$((bad + 1)); done
  for e in $extra; do echo "deps: $dir declara $e en DEPS y no lo incluye"; bad=$((bad + 1)); done
done

if [ "$bad" -gt 0 ]; then
  echo "$bad diferencias entre DEPS e inclusiones"
  exit 1
fi
echo "deps: cada biblioteca declara exactamente lo que incluye"
