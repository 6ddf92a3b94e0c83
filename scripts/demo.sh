#!/bin/sh
# Builds the library and lumconv (no tests), and runs the built-in demo: a
# colour chart converted RGB -> YUV -> RGB through the library, written to
# ./lumconv-demo (or the folder given).
set -eu
cd "$(dirname "$0")/.."

# Only what this build needs: cmake, make and a C++ compiler (OpenMP comes
# with g++).  The tests' needs (GoogleTest, multilib) are scripts/test-all.sh's.
missing=""
for tool in cmake make g++; do
  command -v "$tool" >/dev/null 2>&1 || missing="$missing $tool"
done
if [ -n "$missing" ]; then
  if ! command -v apt-get >/dev/null 2>&1; then
    echo "demo.sh: please install:$missing" >&2
    exit 1
  fi
  echo "installing:$missing"
  if [ "$(id -u)" = 0 ]; then SUDO=""; else SUDO="sudo"; fi
  export DEBIAN_FRONTEND=noninteractive
  $SUDO apt-get update -qq
  # shellcheck disable=SC2086
  $SUDO apt-get install -y -qq $missing
fi

echo "building the library and lumconv in build/demo ..."
mkdir -p build
cmake -S . -B build/demo -DCMAKE_BUILD_TYPE=Release -DLUM_BUILD_TESTS=OFF -DLUM_BUILD_TOOLS=ON \
  -DLUM_BUILD_BENCH=OFF >build/demo.log 2>&1 || { cat build/demo.log; exit 1; }
cmake --build build/demo -j"$(nproc)" >>build/demo.log 2>&1 || { tail -n 40 build/demo.log; exit 1; }
build/demo/tools/lumconv/lumconv demo "${1:-lumconv-demo}"
echo "lumconv is build/demo/tools/lumconv/lumconv (lumconv --help, lumconv --list)"
