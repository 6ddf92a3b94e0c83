#!/bin/sh
# Builds the library and lumconv, and runs the built-in demo: a colour chart
# converted RGB -> YUV -> RGB through the library, written to ./lumconv-demo.
set -eu
cd "$(dirname "$0")/.."
scripts/deps.sh
cmake -S . -B build/demo -DCMAKE_BUILD_TYPE=Release -DLUM_BUILD_TESTS=OFF >/dev/null
cmake --build build/demo -j"$(nproc)" >/dev/null
build/demo/tools/lumconv/lumconv demo "${1:-lumconv-demo}"
