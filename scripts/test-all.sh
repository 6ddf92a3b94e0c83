#!/bin/bash
# Builds and runs every test: x86-64, i386 (-m32), and x86-64 under
# AddressSanitizer + UndefinedBehaviorSanitizer.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/deps.sh
jobs="$(nproc)"
run() {
  name="$1"; shift
  echo "=== $name ==="
  cmake -S . -B "build/$name" -DCMAKE_BUILD_TYPE=Release -DLUM_BUILD_TESTS=ON \
    -DLUM_BUILD_TOOLS=ON -DLUM_BUILD_BENCH=OFF "$@" >/dev/null
  if ! cmake --build "build/$name" -j"$jobs" > "build/$name.build.log" 2>&1; then
    tail -n 60 "build/$name.build.log"; echo "FAILED: build of $name"; exit 1
  fi
  if ! (cd "build/$name" && ctest --output-on-failure -j"$jobs" > ctest.log 2>&1); then
    cat "build/$name/ctest.log"; echo "FAILED: tests of $name"; exit 1
  fi
  tail -n 3 "build/$name/ctest.log"
}
run x86-64 -DLUM_M32=OFF -DLUM_SANITIZE=OFF
run i386 -DLUM_M32=ON -DLUM_SANITIZE=OFF
echo "=== same bytes on x86-64 and i386 ==="
build/x86-64/tests/lumdigest > build/digest-x86-64.txt
build/i386/tests/lumdigest > build/digest-i386.txt
if ! diff build/digest-x86-64.txt build/digest-i386.txt; then
  echo "FAILED: x86-64 and i386 give different bytes"; exit 1
fi
echo "$(wc -l < build/digest-i386.txt) digests agree"
ASAN_OPTIONS=detect_leaks=1 UBSAN_OPTIONS=print_stacktrace=1 run sanitize -DLUM_M32=OFF -DLUM_SANITIZE=ON -DCMAKE_BUILD_TYPE=RelWithDebInfo
echo "all tests passed"
