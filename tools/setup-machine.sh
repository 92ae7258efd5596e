#!/usr/bin/env bash
# Installs the Debian packages a fresh machine lacks for building and testing Tolvane2.
# Run as root it installs them with apt-get; otherwise it names what is missing and stops.
set -euo pipefail

packages=(
  cmake ninja-build g++ make pkg-config
  libgtest-dev libbenchmark-dev
  clang libclang-rt-14-dev
  libx11-dev libxtst-dev libxres-dev libcairo2-dev libfontconfig-dev fonts-liberation
  xvfb
  g++-mingw-w64-i686 g++-mingw-w64-x86-64 wine64 xdotool imagemagick
  lv2-dev liblilv-dev lilv-utils serdi
  ardour  # tools/host-trial/ardour-session.sh: a session saved and reopened in a real host
)

missing=()
for p in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done

if [ ${#missing[@]} -eq 0 ]; then
  exit 0
fi

if [ "$(id -u)" -ne 0 ]; then
  echo "Missing packages: ${missing[*]}" >&2
  echo "Run as root (or: sudo apt-get install ${missing[*]})" >&2
  exit 1
fi

echo "Installing: ${missing[*]}"
export DEBIAN_FRONTEND=noninteractive
apt-get update -q
apt-get install -y -q --no-install-recommends "${missing[@]}"
