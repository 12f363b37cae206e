#!/usr/bin/env bash
# Builds the editor and starts it; arguments go to the program (a book to open).
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/setup.sh
cmake -S . -B build -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
cmake --build build --target marlith
exec build/bin/marlith "$@"
