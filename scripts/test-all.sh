#!/bin/bash
# Builds and runs every test: x86-64, i386 (-m32), both again on an emulated
# processor that has SSE2 and nothing more (qemu-user: qemu64 and qemu32, no
# SSSE3, no AVX), and x86-64 under AddressSanitizer + UndefinedBehaviorSanitizer.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/deps.sh
jobs="$(nproc)"
# Build directories: $LUM_BUILD_ROOT/x86-64, ... (default build/x86-64, ...).
root="${LUM_BUILD_ROOT:-build}"
t0=$SECONDS
since() { echo "$((SECONDS - $1))s"; }

# Runs "$@" with its output in $log, printing the build's progress (its last
# percentage) every 30 seconds.
with_progress() {
  local label="$1" log="$2"; shift 2
  local start=$SECONDS
  "$@" > "$log" 2>&1 &
  local pid=$! tick=0
  while kill -0 "$pid" 2>/dev/null; do
    sleep 2
    tick=$((tick + 2))
    if [ $((tick % 30)) -eq 0 ]; then
      pct=$(grep -o '^\[ *[0-9]*%\]' "$log" | tail -n 1 || true)
      echo "  $label ${pct:-...} ($(since "$start"))"
    fi
  done
  wait "$pid"
}

run() {
  name="$1"; shift
  echo "=== $name ==="
  cmake -S . -B "$root/$name" -DCMAKE_BUILD_TYPE=Release -DLUM_BUILD_TESTS=ON \
    -DLUM_BUILD_TOOLS=ON -DLUM_BUILD_BENCH=OFF "$@" >/dev/null
  local start=$SECONDS
  echo "building $name ..."
  if ! with_progress "building $name" "$root/$name.build.log" cmake --build "$root/$name" -j"$jobs"; then
    tail -n 60 "$root/$name.build.log"; echo "FAILED: build of $name"; exit 1
  fi
  echo "built $name in $(since "$start"); testing ..."
  start=$SECONDS
  if ! (cd "$root/$name" && ctest --output-on-failure -j"$jobs" > ctest.log 2>&1); then
    cat "$root/$name/ctest.log"; echo "FAILED: tests of $name"; exit 1
  fi
  grep -E 'tests passed|Total Test time' "$root/$name/ctest.log" | sed 's/^/  /'
  echo "tested $name in $(since "$start") (total $(since "$t0"))"
}

# The members that divide through the processor's approximate reciprocal (the
# forward integer forms of the colour models); the emulator's is exact.
rcp_members='^lumiRGBToHSV_|^lumiRGBToHLS_(8u|16u|16s)_|^lumiBGRToHLS_8u_'

# The test suite of <root>/<name> on an emulated SSE2-only processor:
#   emulated <name> <qemu program> <cpu model>
# The library loads; every test program passes; lumdigest gives the native
# bytes and the same for team sizes 1 and 4; the lumconv cases pass.
emulated() {
  local name="$1" qemu="$2" cpu="$3"
  local dir="$root/$name" out="$root/$name/emulated"
  local start=$SECONDS
  echo "=== $name on an SSE2-only processor ($qemu -cpu $cpu) ==="
  rm -rf "$out"; mkdir -p "$out"
  local emu="$qemu -cpu $cpu"
  if ! $emu "$dir/tests/lum_dlopen" "$dir/liblumccw7.so" > "$out/dlopen.log" 2>&1; then
    cat "$out/dlopen.log"; echo "FAILED: $name: the library does not load on $cpu"; exit 1
  fi
  echo "  library loads"
  # The test programs, $jobs at a time.
  local progs
  progs=$(find "$dir/tests" -maxdepth 1 -type f -name 'test_*' -perm -u+x | sort)
  if ! printf '%s\n' $progs | EMU="$emu" OUT="$out" xargs -n 1 -P "$jobs" sh -c '
      p="$1"; n=$(basename "$p"); s=$(date +%s)
      if $EMU "$p" --gtest_brief=1 > "$OUT/$n.log" 2>&1; then
        echo "  $n: $(grep -E "^\[  PASSED  \]" "$OUT/$n.log" | sed "s/^\[  PASSED  \] //") ($(($(date +%s) - s))s)"
      else
        echo "  $n: FAILED ($(($(date +%s) - s))s)"; exit 1
      fi' sh; then
    for p in $progs; do
      grep -q -E '^\[  PASSED  \]' "$out/$(basename "$p").log" && ! grep -q -E '^\[  FAILED  \]' "$out/$(basename "$p").log" ||
        { echo "--- $(basename "$p") on $cpu:"; tail -n 40 "$out/$(basename "$p").log"; }
    done
    echo "FAILED: $name: test programs on $cpu"; exit 1
  fi
  # Same bytes as the native run, except where a member divides through the
  # processor's approximate reciprocal (rcpps/rcpss): the emulator's is not a
  # processor's.  Those members are compared across the two targets below.
  if ! $emu "$dir/tests/lumdigest" > "$out/digest.txt" 2> "$out/digest.log"; then
    cat "$out/digest.log"; echo "FAILED: $name: lumdigest on $cpu"; exit 1
  fi
  "$dir/tests/lumdigest" > "$out/digest-native.txt"
  if [ "$(wc -l < "$out/digest.txt")" -ne "$(wc -l < "$out/digest-native.txt")" ]; then
    echo "FAILED: $name: lumdigest printed another number of lines on $cpu"; exit 1
  fi
  awk 'NR == FNR { a[FNR] = $0; next } $0 != a[FNR] && $1 != "#" { print $1 }' \
    "$out/digest-native.txt" "$out/digest.txt" | sort -u > "$out/digest-differ.txt"
  if grep -v -E "$rcp_members" "$out/digest-differ.txt" > "$out/digest-bad.txt"; then
    diff "$out/digest-native.txt" "$out/digest.txt" | grep -F -f "$out/digest-bad.txt" | head -n 20
    echo "FAILED: $name: emulated bytes differ from native"; exit 1
  fi
  if ! $emu "$dir/tests/lumdigest" --check-teams > "$out/digest-teams.log" 2>&1; then
    cat "$out/digest-teams.log"; echo "FAILED: $name: team sizes on $cpu"; exit 1
  fi
  echo "  lumdigest: $(wc -l < "$out/digest.txt") digests, team sizes agree; as native but for" \
    "$(wc -l < "$out/digest-differ.txt") members of the approximate reciprocal"
  # The lumconv cases, through a wrapper that runs lumconv on the emulator
  # (the demo case first: others compare with its output).
  if [ -x "$dir/tools/lumconv/lumconv" ]; then
    printf '#!/bin/sh\nexec %s "%s" "$@"\n' "$emu" "$(cd "$dir" && pwd)/tools/lumconv/lumconv" > "$out/lumconv"
    chmod +x "$out/lumconv"
    local cases n=0
    cases=$(cd "$dir" && ctest -N -R '^lumconv_' | sed -n 's/^ *Test *#[0-9]*: lumconv_//p')
    for c in $cases; do
      if ! sh tools/lumconv/cli_tests.sh "$(cd "$out" && pwd)/lumconv" "$(cd "$out" && pwd)/lumconv-work" "$c" > "$out/lumconv.log" 2>&1; then
        cat "$out/lumconv.log"; echo "FAILED: $name: lumconv case $c on $cpu"; exit 1
      fi
      n=$((n + 1))
    done
    echo "  lumconv: $n cases passed"
  fi
  echo "emulated $name: all passed in $(since "$start")"
}

run x86-64 -DLUM_M32=OFF -DLUM_SANITIZE=OFF
run i386 -DLUM_M32=ON -DLUM_SANITIZE=OFF
echo "=== same bytes on x86-64 and i386 ==="
"$root/x86-64/tests/lumdigest" > "$root/digest-x86-64.txt"
"$root/i386/tests/lumdigest" > "$root/digest-i386.txt"
if ! diff "$root/digest-x86-64.txt" "$root/digest-i386.txt"; then
  echo "FAILED: x86-64 and i386 give different bytes"; exit 1
fi
echo "$(wc -l < "$root/digest-i386.txt") digests agree"
emulated x86-64 qemu-x86_64 qemu64
emulated i386 qemu-i386 qemu32
if ! diff "$root/x86-64/emulated/digest.txt" "$root/i386/emulated/digest.txt"; then
  echo "FAILED: x86-64 and i386 give different bytes on the emulated processor"; exit 1
fi
echo "emulated x86-64 and i386: $(wc -l < "$root/i386/emulated/digest.txt") digests agree"
ASAN_OPTIONS=detect_leaks=1 UBSAN_OPTIONS=print_stacktrace=1 run sanitize -DLUM_M32=OFF -DLUM_SANITIZE=ON -DCMAKE_BUILD_TYPE=RelWithDebInfo
echo "all tests passed in $(since "$t0")"
