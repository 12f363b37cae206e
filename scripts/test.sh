#!/usr/bin/env bash
# Builds everything and runs every test twice: in a plain build, and in a
# build under AddressSanitizer and UndefinedBehaviorSanitizer. Any failure or
# sanitizer report fails the run.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/setup.sh

jobs=$(nproc)
export QT_QPA_PLATFORM=offscreen

echo "== plain build"
cmake -S . -B build -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
cmake --build build -j "$jobs"
ctest --test-dir build --output-on-failure -j "$jobs" --timeout 300

echo "== AddressSanitizer and UndefinedBehaviorSanitizer build"
cmake -S . -B build-asan -G Ninja -DCMAKE_BUILD_TYPE=Debug -DMARLITH_SANITIZE=ON >/dev/null
cmake --build build-asan -j "$jobs"
export ASAN_OPTIONS="halt_on_error=1:abort_on_error=0:detect_leaks=1:exitcode=23"
export LSAN_OPTIONS="suppressions=$PWD/scripts/lsan.supp:print_suppressions=0"
export UBSAN_OPTIONS="halt_on_error=1:print_stacktrace=1"
ctest --test-dir build-asan --output-on-failure -j "$jobs" --timeout 300
