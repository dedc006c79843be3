#!/usr/bin/env bash
# Installs every Debian 12 package the importer needs to build, test and run.
# Runs as root (or through sudo). Safe to run again: apt skips what is there.
set -euo pipefail
packages=(
  build-essential cmake ninja-build pkg-config
  libsqlite3-dev sqlite3
  unixodbc-dev odbcinst libsqliteodbc
  postgresql odbc-postgresql
  mdbtools mdbtools-dev
  libgtest-dev libgmock-dev googletest libbenchmark-dev
  qt6-base-dev qt6-qpa-plugins libqt6test6 qt6-translations-l10n xvfb xauth
)
missing=()
for p in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done
if [ ${#missing[@]} -gt 0 ]; then
  SUDO=""
  [ "$(id -u)" -ne 0 ] && SUDO="sudo"
  $SUDO apt-get update -qq
  DEBIAN_FRONTEND=noninteractive $SUDO apt-get install -y -qq "${missing[@]}"
fi
