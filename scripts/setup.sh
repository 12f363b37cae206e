#!/usr/bin/env bash
# Installs every Debian package that the build, the tests and the benchmarks
# need. Idempotent: it installs only what is missing, and skips apt entirely
# when everything is there.
set -euo pipefail

packages=(
  g++ make cmake ninja-build
  qt6-base-dev qt6-base-dev-tools qt6-image-formats-plugins qt6-svg-dev libgl-dev
  fontconfig fonts-dejavu-core fonts-noto-core
  xvfb xauth xdotool xclip x11-utils
  pgn-extract
)

missing=()
for p in "${packages[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed'; then
    missing+=("$p")
  fi
done

if [ ${#missing[@]} -gt 0 ]; then
  echo "setup: installing ${missing[*]}"
  sudo_cmd=""
  [ "$(id -u)" -ne 0 ] && sudo_cmd="sudo"
  export DEBIAN_FRONTEND=noninteractive
  $sudo_cmd apt-get update -qq
  $sudo_cmd apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
fi
