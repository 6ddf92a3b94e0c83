#!/bin/sh
# Builds and runs every test: x86-64, i386 (-m32), and x86-64 under
# AddressSanitizer + UndefinedBehaviorSanitizer.
set -eu
cd "$(dirname "$0")/.."
scripts/deps.sh
jobs="$(nproc)"
run() {
  name="$1"; shift
  echo "=== $name ==="
  cmake -S . -B "build/$name" -DCMAKE_BUILD_TYPE=Release "$@" >/dev/null
  cmake --build "build/$name" -j"$jobs" >/dev/null
  (cd "build/$name" && ctest --output-on-failure -j"$jobs" | tail -n 4)
}
run x86-64
run i386 -DLUM_M32=ON
ASAN_OPTIONS=detect_leaks=1 UBSAN_OPTIONS=print_stacktrace=1 run sanitize -DLUM_SANITIZE=ON -DCMAKE_BUILD_TYPE=RelWithDebInfo
echo "all tests passed"
