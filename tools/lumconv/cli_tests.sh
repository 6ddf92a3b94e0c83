#!/bin/sh
# Command-line tests of lumconv, one case a run:
#   cli_tests.sh <lumconv> <work folder> <case> [<cmake> <build folder>]
# (the install case needs the last two: it installs the build to a
# temporary prefix).
# A case makes its input files with printf in <work folder>/<case>, runs
# lumconv and checks the exit status, the messages and the bytes written.
# A failing run must exit 1 (2 for wrong usage) with exactly one line on
# stderr, "lumconv: <file>: <what>", and leave no output file behind: a
# crash, a sanitizer report or a stray message fails the case.
set -u
LUMCONV=$1
WORK=$2
CASE=$3
CMAKE=${4:-}
BUILD=${5:-}
# Absolute paths: each case runs in a folder of its own.
abs() { case $1 in /*) echo "$1" ;; *) echo "$(pwd)/$1" ;; esac; }
LUMCONV=$(abs "$LUMCONV")
WORK=$(abs "$WORK")
[ -z "$BUILD" ] || BUILD=$(abs "$BUILD")
DEMO="$WORK/demo-out"

DIR="$WORK/$CASE"
rm -rf "$DIR"
mkdir -p "$DIR" && cd "$DIR" || exit 1

die() {
  echo "FAIL ($CASE): $*" >&2
  exit 1
}

run() {
  "$LUMCONV" "$@" >out.txt 2>err.txt
  status=$?
}

# ok ARGS...: exit 0, and nothing on stderr but the summary of a conversion,
# "<input> -> <output>: WxH, N frame(s), <function>[, F<rate> A<aspect>]".
ok() {
  run "$@"
  [ "$status" -eq 0 ] || die "lumconv $* exited $status: $(cat err.txt)"
  [ "$(grep -c -v '^[^ ].* -> [^ ].*: [0-9]*x[0-9]*, [0-9]* frames*, lumi[A-Za-z0-9_]*\(, F[0-9]*:[0-9]* A[0-9]*:[0-9]*\)*$' err.txt)" -eq 0 ] ||
    die "lumconv $* wrote to stderr: $(cat err.txt)"
}

# fails CODE FILE ARGS...: exit CODE and one line "lumconv: FILE: ..." on
# stderr ("lumconv: ..." when FILE is empty).
fails() {
  code=$1
  file=$2
  shift 2
  run "$@"
  [ "$status" -eq "$code" ] || die "lumconv $* exited $status, not $code: $(cat err.txt)"
  [ "$(wc -l <err.txt)" -eq 1 ] || die "lumconv $*: not one line on stderr: $(cat err.txt)"
  if [ -n "$file" ]; then prefix="lumconv: $file: "; else prefix="lumconv: "; fi
  case "$(cat err.txt)" in
    "$prefix"?*) ;;
    *) die "lumconv $*: stderr does not start with '$prefix': $(cat err.txt)" ;;
  esac
}

# says TEXT: the message of the last run contains TEXT.
says() {
  grep -q -F -- "$1" err.txt || die "message lacks '$1': $(cat err.txt)"
}

absent() {
  for f in "$@"; do [ ! -e "$f" ] || die "$f was left behind"; done
}

same() {
  cmp "$1" "$2" >/dev/null || die "$1 differs from $2: $(od -An -tu1 "$1" | head -c 400)"
}

# rep N FORMAT: FORMAT (printf escapes) N times.
rep() {
  i=0
  while [ "$i" -lt "$1" ]; do
    printf "$2"
    i=$((i + 1))
  done
}

# No temporary file of lumconv's in the folders given (default .).
no_temp() {
  [ $# -gt 0 ] || set -- .
  for d in "$@"; do
    left=$(ls -A "$d" | grep 'lumconv-' || true)
    [ -z "$left" ] || die "temporary file left in $d: $left"
  done
}

# wait_for_temp: waits until a temporary output file appears in . (5 s at most).
wait_for_temp() {
  i=0
  while [ -z "$(ls -A | grep 'lumconv-' || true)" ]; do
    i=$((i + 1))
    [ "$i" -le 100 ] || die "no temporary output appeared"
    sleep 0.05
  done
}

# Bytes of the samples, in decimal, one per line.
samples() { od -An -v -tu1 -j "$2" "$1" | tr -s ' ' '\n' | sed '/^$/d'; }

W3='\377\377\377'                       # white
Y_BLOCK='\376\177\177'                  # white's Y, U, V in a block: 254 127 127
Y_TAIL='\376\200\200'                   # ... in the tail of the C3 and P3 kernels: 254 128 128
YUV_RED='\200\000\000'                  # Y 128, U 0, V 0

# --- 4:2:2 / 4:2:0, YCbCr and raw layouts ---------------------------------

# maxdiff A B: the largest difference of two files' bytes (same size).
maxdiff() {
  [ "$(wc -c <"$1")" -eq "$(wc -c <"$2")" ] || die "$1 and $2 differ in size"
  cmp -l "$1" "$2" | awk 'function oct(s, n, i) { n = 0; for (i = 1; i <= length(s); i++) n = n * 8 + substr(s, i, 1); return n }
    { d = oct($2) - oct($3); if (d < 0) d = -d; if (d > m) m = d } END { print m + 0 }'
}

# An 8x4 PPM of smooth colours (no two neighbours far apart).
smooth_ppm() {
  printf 'P6\n8 4\n255\n'
  for y in 0 1 2 3; do
    for x in 0 1 2 3 4 5 6 7; do
      printf "\\$(printf %o $((60 + 10 * x)))\\$(printf %o $((90 + 12 * y)))\\$(printf %o $((150 - 6 * x - 5 * y)))"
    done
  done
}

# RGB -> this library's YUV 4:2:0 .y4m -> RGB, by name; odd sizes too.
case_yuv420_y4m_roundtrip() {
  smooth_ppm >in.ppm
  ok rgb2yuv420 in.ppm out.y4m
  head -n 1 out.y4m >h.txt
  printf 'YUV4MPEG2 W8 H4 F25:1 Ip A1:1 C420jpeg XLUMCC_MODEL=YUV\n' >want.txt
  same h.txt want.txt
  [ "$(wc -c <out.y4m)" -eq $(($(wc -c <h.txt) + 6 + 32 + 2 * 8)) ] || die "out.y4m has the wrong size"
  ok yuv4202rgb out.y4m back.ppm
  d=$(maxdiff in.ppm back.ppm)
  # Chroma is the mean of each cell (steps of 10 in R a pixel here); a
  # swapped or shifted plane would show a hundred or more.
  [ "$d" -le 16 ] || die "4:2:0 round trip differs by $d"
  # A 3x3 image: chroma planes of 2x2, the last column and row converted as
  # if repeated.
  { printf 'P6\n3 3\n255\n'; rep 9 '\200\140\100'; } >odd.ppm
  ok rgb2yuv420 odd.ppm odd.y4m
  [ "$(wc -c <odd.y4m)" -eq $(($(head -n 1 odd.y4m | wc -c) + 6 + 9 + 8)) ] || die "odd.y4m size"
  ok yuv4202rgb odd.y4m odd-back.ppm
  d=$(maxdiff odd.ppm odd-back.ppm)
  [ "$d" -le 3 ] || die "odd 4:2:0 round trip differs by $d"
  # 4:2:2 as well, to a .y4m and to raw YUY2; both read back the same.
  ok rgb2yuv422 in.ppm out422.y4m
  grep -q -a '^YUV4MPEG2 W8 H4 F25:1 Ip A1:1 C422 XLUMCC_MODEL=YUV$' out422.y4m || die "C422 header"
  ok yuv4222rgb out422.y4m back422.ppm
  d=$(maxdiff in.ppm back422.ppm)
  [ "$d" -le 16 ] || die "4:2:2 round trip differs by $d"
}

# Other tools' .y4m is YCbCr: the YUV family reads it only with --model yuv,
# and never reads YCbCr as YUV by itself; any 4:2:0 siting is accepted.
case_yuv420_model_tags() {
  for c in C420jpeg C420mpeg2 C420paldv C420; do
    { printf "YUV4MPEG2 W2 H2 F25:1 $c\nFRAME\n"; rep 4 '\200'; rep 2 '\200'; } >$c.y4m
    fails 1 $c.y4m yuv4202rgb $c.y4m out.ppm
    says 'holds YCbCr'
    says '--model yuv'
    ok yuv4202rgb --model yuv $c.y4m $c.ppm
    { printf 'P6\n2 2\n255\n'; rep 4 '\200\200\200'; } >want.ppm
    same $c.ppm want.ppm
  done
  # The copy keeps the siting, and says the model it read.
  ok copy C420mpeg2.y4m copy.y4m
  head -n 1 copy.y4m >h.txt
  printf 'YUV4MPEG2 W2 H2 F25:1 Ip A1:1 C420mpeg2 XCOLORRANGE=LIMITED\n' >want.txt
  same h.txt want.txt
  # A YUV-tagged file is not YCbCr.
  { printf 'YUV4MPEG2 W1 H1 C444 XLUMCC_MODEL=YUV\nFRAME\n'; rep 3 '\200'; } >yuv.y4m
  fails 1 yuv.y4m ycbcr2rgb yuv.y4m out.ppm
  says 'holds YUV; ycbcr2rgb takes YCbCr'
  fails 1 yuv.y4m ycbcr2rgb --model ycbcr yuv.y4m out.ppm
  says 'tagged XLUMCC_MODEL=YUV'
  absent out.ppm
}

# RGB <-> C444 .y4m goes through YCbCr, studio range, tagged LIMITED.
case_ycbcr444_y4m() {
  { printf 'P6\n3 1\n255\n'; printf '\000\000\000'; printf "$W3"; printf '\377\000\000'; } >in.ppm
  ok rgb2ycbcr in.ppm out.y4m
  # black 16 128 128, white 235 128 128, red 82 90 240
  { printf 'YUV4MPEG2 W3 H1 F25:1 Ip A1:1 C444 XCOLORRANGE=LIMITED\nFRAME\n'
    printf '\020\353\122\200\200\132\200\200\360'; } >want.y4m
  same out.y4m want.y4m
  ok ycbcr2rgb out.y4m back.ppm
  d=$(maxdiff in.ppm back.ppm)
  [ "$d" -le 2 ] || die "YCbCr round trip differs by $d"
  # Pixels too (PAM YCbCr), and an untagged C444 file as other tools write it.
  ok rgb2ycbcr in.ppm out.pam
  grep -q -a 'TUPLTYPE YCbCr' out.pam || die "PAM tuple type"
  { printf 'YUV4MPEG2 W1 H1 C444\nFRAME\n'; printf '\020\200\200'; } >plain.y4m
  ok ycbcr2rgb plain.y4m black.ppm
  { printf 'P6\n1 1\n255\n'; printf '\000\000\000'; } >want.ppm
  same black.ppm want.ppm
}

case_full_range_refused() {
  { printf 'YUV4MPEG2 W1 H1 C444 XCOLORRANGE=FULL\nFRAME\n'; printf '\020\200\200'; } >full.y4m
  fails 1 full.y4m ycbcr2rgb full.y4m out.ppm
  says 'XCOLORRANGE=FULL'
  says 'studio range'
  fails 1 full.y4m yuv2rgb --model yuv full.y4m out.ppm
  absent out.ppm
}

# YCbCr 4:2:x with RGB is not in the library yet: one line naming the YUV
# family as the (different) alternative.
case_ycbcr420_not_yet() {
  { printf 'YUV4MPEG2 W2 H2 C420jpeg\nFRAME\n'; rep 6 '\200'; } >v.y4m
  fails 1 v.y4m ycbcr2rgb v.y4m out.ppm
  says 'YCbCr 4:2:0 to RGB is not in liblumcc yet'
  says 'lumconv yuv4202rgb --model yuv'
  says 'different colour model'
  { printf 'P6\n2 2\n255\n'; rep 4 "$W3"; } >w.ppm
  fails 1 w.ppm rgb2ycbcr w.ppm out.y4m --out-layout I420
  says 'RGB to YCbCr 4:2:0 is not in liblumcc yet'
  says 'rgb2yuv420'
  fails 1 '' rgb2ycbcr420 w.ppm out.y4m
  fails 1 '' ycbcr4222rgb v.y4m out.ppm
  says 'YCbCr 4:2:2 to RGB'
  absent out.ppm out.y4m
}

# Raw video layouts in and out: I420, YV12, NV12, YUY2, UYVY.
case_raw_layouts() {
  # I420 4x2: Y 1..8, Cb 9 10, Cr 11 12; as YV12 the chroma planes swap.
  printf '\001\002\003\004\005\006\007\010\011\012\013\014' >in.yuv
  ok copy --raw 4x2 --layout I420 in.yuv out.yuv --out-layout YV12
  printf '\001\002\003\004\005\006\007\010\013\014\011\012' >want.yuv
  same out.yuv want.yuv
  ok copy --raw 4x2 --layout yv12 out.yuv back.y4m
  tail -c 12 back.y4m >b.bin
  same b.bin in.yuv
  # NV12 and UYVY go through unchanged; sizes are checked per layout.
  ok copy --raw 4x2 --layout NV12 in.yuv nv12.raw --out-layout NV12
  same nv12.raw in.yuv
  rep 16 '\200' >uyvy.raw
  ok copy --raw 4x2 --layout UYVY uyvy.raw uyvy2.raw --out-layout UYVY
  same uyvy2.raw uyvy.raw
  fails 1 uyvy.raw --raw 4x2 --layout I420 copy uyvy.raw x.raw --out-layout I420
  says 'P3_420'
  # RGB -> YUY2 and back matches the planar 4:2:2 path (width 16: one block).
  { printf 'P6\n16 1\n255\n'; rep 16 '\310\144\062'; } >in.ppm
  ok rgb2yuv422 in.ppm yuy2.yuv --out-layout YUY2
  [ "$(wc -c <yuy2.yuv)" -eq 32 ] || die "yuy2.yuv size"
  ok yuv4222rgb --raw 16x1 --layout YUY2 yuy2.yuv a.ppm
  ok rgb2yuv422 in.ppm p.y4m
  ok yuv4222rgb p.y4m b.ppm
  same a.ppm b.ppm
  # Usage: --layout wants --raw, and a name it knows; a .y4m holds planes.
  fails 2 '' --layout NV12 copy in.yuv x.yuv
  fails 2 '' --raw 4x2 --layout NV21 copy in.yuv x.yuv
  says 'not a layout'
  fails 1 x.y4m --raw 4x2 --layout NV12 copy in.yuv x.y4m
  says 'YUV4MPEG2 holds planes'
  fails 2 '' --raw 4x2 --layout I420 repack in.yuv x.yuv
  absent x.yuv x.y4m x.raw
}

case_repack() {
  # I420 4x2: Y 1..8, Cb 9 10, Cr 11 12 <-> NV12: Y, then Cb Cr pairs.
  printf '\001\002\003\004\005\006\007\010\011\012\013\014' >i420.yuv
  ok repack --raw 4x2 --layout I420 i420.yuv nv12.yuv --out-layout NV12
  printf '\001\002\003\004\005\006\007\010\011\013\012\014' >want.yuv
  same nv12.yuv want.yuv
  ok repack --raw 4x2 --layout NV12 nv12.yuv back.yuv --out-layout I420
  same back.yuv i420.yuv
  # YUY2 and UYVY to I420: the luma moves as it is; 4:2:0 holds a quarter
  # of the chroma.
  printf '\001\144\002\156\003\145\004\157\005\146\006\160\007\147\010\161' >yuy2.yuv
  ok repack --raw 4x2 --layout YUY2 yuy2.yuv a.yuv --out-layout I420
  [ "$(wc -c <a.yuv)" -eq 12 ] || die "a.yuv size"
  head -c 8 a.yuv >y.bin
  printf '\001\002\003\004\005\006\007\010' >want.bin
  same y.bin want.bin
  printf '\144\001\156\002\145\003\157\004\146\005\160\006\147\007\161\010' >uyvy.yuv
  ok repack --raw 4x2 --layout UYVY uyvy.yuv b.yuv --out-layout I420
  same b.yuv a.yuv
  # 4:2:0 -> 4:2:2 -> 4:2:0 gives the frame back.
  ok repack --raw 4x2 --layout I420 i420.yuv i422.yuv --out-layout I422
  ok repack --raw 4x2 --layout I422 i422.yuv again.yuv --out-layout I420
  same again.yuv i420.yuv
  # A repack that the library does not have says so.
  fails 1 i420.yuv --raw 4x2 --layout I420 repack i420.yuv x.yuv --out-layout UYVY
  absent x.yuv
}

case_demo() {
  rm -rf "$DEMO"
  ok demo "$DEMO"
  for f in chart.ppm chart.y4m roundtrip.ppm; do
    [ -s "$DEMO/$f" ] || die "demo did not write $f"
    grep -q -F "wrote $DEMO/$f" out.txt || die "demo does not name $f: $(cat out.txt)"
  done
  head -c 15 "$DEMO/chart.ppm" >h.txt
  printf 'P6\n321 241\n255\n' >want.txt
  same h.txt want.txt
  [ "$(wc -c <"$DEMO/chart.ppm")" -eq $((15 + 321 * 241 * 3)) ] || die "chart.ppm has the wrong size"
  head -c 59 "$DEMO/chart.y4m" >h.txt
  printf 'YUV4MPEG2 W321 H241 F25:1 Ip A1:1 C444 XLUMCC_MODEL=YUV\nFRA' >want.txt
  same h.txt want.txt
  # Two paths, each with a difference per channel.  Saturated reds and
  # magentas leave V's 8 bits and come back up to 35 levels darker in R;
  # a swapped or misplaced plane would show hundreds.
  [ "$(grep -c 'largest difference R [0-9]*, G [0-9]*, B [0-9]*$' out.txt)" -eq 2 ] ||
    die "demo output: $(cat out.txt)"
  for d in $(sed -n 's/.*largest difference R \([0-9]*\), G \([0-9]*\), B \([0-9]*\)$/\1 \2 \3/p' out.txt); do
    [ "$d" -le 40 ] || die "round trip differs by $d: $(cat out.txt)"
  done
}

case_list() {
  ok --list
  # The table of conversions, one a line, then a blank line and the words.
  sed '/^$/,$d' out.txt >table.txt
  mv out.txt all.txt
  mv table.txt out.txt
  grep -q '^rgb2yuv  *RGB to YUV' out.txt || die "no rgb2yuv line: $(cat out.txt)"
  grep -q '^yuv2rgb  *YUV 4:4:4 to RGB' out.txt || die "no yuv2rgb line: $(cat out.txt)"
  grep -q '^rgb2yuv .*\[8u C3, AC4, C3->P3, P3\]$' out.txt || die "rgb2yuv forms: $(cat out.txt)"
  grep -q '^yuv2rgb .*\[8u C3, AC4, P3->C3, P3\]$' out.txt || die "yuv2rgb forms: $(cat out.txt)"
  [ "$(grep -c -v '^[a-z0-9]*  *[A-Z].* \[8u [^]]*\]$' out.txt)" -eq 0 ] || die "odd lines: $(cat out.txt)"
  # One line a conversion.
  [ "$(cut -d' ' -f1 out.txt | sort | uniq -d | wc -l)" -eq 0 ] || die "a name listed twice"
}

case_help() {
  ok --help
  grep -q '^usage: lumconv <conversion> <input> <output>' out.txt || die "no usage line"
  grep -q 'demo \[folder\]' out.txt || die "help lacks the demo"
}

# The pixel-order kernel: 16 pixels in a block, the 17th in the tail.
case_rgb2yuv_ppm_tail() {
  { printf 'P6\n17 1\n255\n'; rep 17 "$W3"; } >in.ppm
  ok rgb2yuv in.ppm out.ppm
  { printf 'P6\n17 1\n255\n'; rep 16 "$Y_BLOCK"; printf "$Y_TAIL"; } >want.ppm
  same out.ppm want.ppm
  grep -q -F 'lumiRGBToYUV_8u_C3R' err.txt || die "summary: $(cat err.txt)"
  # A single pixel is all tail.
  { printf 'P6\n1 1\n255\n'; printf "$W3"; } >one.ppm
  ok rgb2yuv one.ppm one-out.ppm
  { printf 'P6\n1 1\n255\n'; printf "$Y_TAIL"; } >want1.ppm
  same one-out.ppm want1.ppm
}

# Pixels to planes: 8 pixels a block, then the tail, which gives white as 255, 128, 128.
case_rgb2yuv_ppm_to_y4m() {
  { printf 'P6\n9 1\n255\n'; rep 9 "$W3"; } >in.ppm
  ok rgb2yuv in.ppm out.y4m
  { printf 'YUV4MPEG2 W9 H1 F25:1 Ip A1:1 C444 XLUMCC_MODEL=YUV\nFRAME\n'
    rep 8 '\376'; printf '\377'; rep 8 '\177'; printf '\200'; rep 8 '\177'; printf '\200'; } >want.y4m
  same out.y4m want.y4m
  grep -q -F 'lumiRGBToYUV_8u_C3P3R' err.txt || die "summary: $(cat err.txt)"
}

# Planes to planes, 16 a block: the 17th pixel through the tail.
case_rgb2yuv_raw_to_y4m() {
  { rep 17 '\377'; rep 17 '\377'; rep 17 '\377'; } >in.rgbp
  ok --raw 17x1 rgb2yuv in.rgbp out.y4m
  { printf 'YUV4MPEG2 W17 H1 F25:1 Ip A1:1 C444 XLUMCC_MODEL=YUV\nFRAME\n'
    rep 17 '\376'; rep 16 '\177'; printf '\200'; rep 16 '\177'; printf '\200'; } >want.y4m
  same out.y4m want.y4m
  grep -q -F 'lumiRGBToYUV_8u_P3R' err.txt || die "summary: $(cat err.txt)"
  ok rgb2yuv --raw=17x1 in.rgbp out.yuv
  tail -c 51 want.y4m >want.yuv
  same out.yuv want.yuv
}

# A PGM holds the planes one above the other: the same bytes as the Y4M frame.
case_rgb2yuv_ppm_to_pgm() {
  { printf 'P6\n9 1\n255\n'; rep 4 "$W3"; rep 5 '\012\200\360'; } >in.ppm
  ok rgb2yuv in.ppm out.pgm
  ok rgb2yuv in.ppm out.y4m
  head -c 11 out.pgm >h.txt
  printf 'P5\n9 3\n255\n' >want.txt
  same h.txt want.txt
  tail -c 27 out.pgm >a.bin
  tail -c 27 out.y4m >b.bin
  same a.bin b.bin
}

case_yuv2rgb_ppm() {
  { printf 'P6\n9 1\n255\n'; rep 9 "$YUV_RED"; } >in.ppm
  ok yuv2rgb in.ppm out.ppm
  { printf 'P6\n9 1\n255\n'; rep 9 '\000\374\000'; } >want.ppm
  same out.ppm want.ppm
}

# Planes to pixels, 16 a block and the same formula in the tail.
case_yuv2rgb_y4m_to_ppm() {
  { printf 'YUV4MPEG2 W17 H1 F30000:1001 It A4:3 C444 XCOMMENT\nFRAME\n'
    rep 16 '\200'; printf '\310'; rep 16 '\000'; printf '\200'; rep 16 '\000'; printf '\200'; } >in.y4m
  ok yuv2rgb in.y4m out.ppm
  { printf 'P6\n17 1\n255\n'; rep 16 '\000\374\000'; printf '\310\310\310'; } >want.ppm
  same out.ppm want.ppm
  grep -q -F 'lumiYUVToRGB_8u_P3C3R' err.txt || die "summary: $(cat err.txt)"
}

# Planes to planes: G is 253 in the 8-pixel block, 252 in the tail.
case_yuv2rgb_y4m_to_raw() {
  { printf 'YUV4MPEG2 W9 H1 F25:1 Ip A1:1 C444\nFRAME\n'
    rep 9 '\200'; rep 9 '\000'; rep 9 '\000'; } >in.y4m
  ok yuv2rgb in.y4m out.rgbp
  { rep 9 '\000'; rep 8 '\375'; printf '\374'; rep 9 '\000'; } >want.rgbp
  same out.rgbp want.rgbp
  grep -q -F 'lumiYUVToRGB_8u_P3R' err.txt || die "summary: $(cat err.txt)"
}

case_yuv2rgb_pgm_to_ppm() {
  { printf 'P5\n# planes Y, U, V\n2 3\n255\n'; printf '\200\200\000\200\000\200'; } >in.pgm
  ok --planes yuv2rgb in.pgm out.ppm
  { printf 'P6\n2 1\n255\n'; printf '\000\374\000\200\200\200'; } >want.ppm
  same out.ppm want.ppm
}

# AC4 through PAM: the alpha samples come out as they went in.
case_pam_alpha_kept() {
  { printf 'P7\nWIDTH 9\n# a comment\nHEIGHT 1\nDEPTH 4\nMAXVAL 255\nTUPLTYPE RGB_ALPHA\nENDHDR\n'
    for a in '\001' '\002' '\003' '\004' '\005' '\006' '\007' '\010' '\011'; do printf "$W3$a"; done; } >in.pam
  ok rgb2yuv in.pam out.pam
  { printf 'P7\nWIDTH 9\nHEIGHT 1\nDEPTH 4\nMAXVAL 255\nTUPLTYPE YUV_ALPHA\nENDHDR\n'
    for a in '\001' '\002' '\003' '\004' '\005' '\006' '\007' '\010'; do printf "$Y_BLOCK$a"; done
    printf "$Y_TAIL"'\011'; } >want.pam
  same out.pam want.pam
  grep -q -F 'lumiRGBToYUV_8u_AC4R' err.txt || die "summary: $(cat err.txt)"
  ok yuv2rgb out.pam back.pam
  printf 'P7\nWIDTH 9\nHEIGHT 1\nDEPTH 4\nMAXVAL 255\nTUPLTYPE RGB_ALPHA\nENDHDR\n' >want.txt
  n=$(wc -c <want.txt)
  head -c "$n" back.pam >h.txt
  same h.txt want.txt
  [ "$(samples back.pam "$n" | awk 'NR % 4 == 0' | tr '\n' ' ')" = "1 2 3 4 5 6 7 8 9 " ] ||
    die "alpha changed: $(samples back.pam "$n" | tr '\n' ' ')"
}

# Every frame is converted, and a PNM stream holds them one after the other.
case_multiple_frames() {
  { printf 'YUV4MPEG2 W3 H2 C444\n'
    printf 'FRAME\n'; rep 6 '\200'; rep 6 '\000'; rep 6 '\000'
    printf 'FRAME Ixyz\n'; rep 6 '\144'; rep 6 '\200'; rep 6 '\200'; } >in.y4m
  ok yuv2rgb in.y4m out.ppm
  { printf 'P6\n3 2\n255\n'; rep 6 '\000\374\000'; printf 'P6\n3 2\n255\n'; rep 6 '\144\144\144'; } >want.ppm
  same out.ppm want.ppm
  grep -q -F '2 frames' err.txt || die "summary: $(cat err.txt)"
  ok rgb2yuv out.ppm back.y4m
  n=$(printf 'YUV4MPEG2 W3 H2 F25:1 Ip A1:1 C444 XLUMCC_MODEL=YUV\n' | wc -c)
  [ "$(wc -c <back.y4m)" -eq $((n + 2 * (6 + 18))) ] || die "back.y4m does not hold 2 frames"
  ok yuv2rgb in.y4m out.rgbp
  [ "$(wc -c <out.rgbp)" -eq 36 ] || die "out.rgbp holds $(wc -c <out.rgbp) bytes"
  ok --raw 3x2 rgb2yuv out.rgbp back.yuv
  [ "$(wc -c <back.yuv)" -eq 36 ] || die "back.yuv holds $(wc -c <back.yuv) bytes"
}

# The tool gives the bytes the demo gives, through the same functions.
case_chart_through_cli() {
  [ -s "$DEMO/chart.ppm" ] || die "the demo's files are missing"
  ok rgb2yuv "$DEMO/chart.ppm" chart.y4m
  same chart.y4m "$DEMO/chart.y4m"
  ok yuv2rgb chart.y4m roundtrip.ppm
  same roundtrip.ppm "$DEMO/roundtrip.ppm"
  ok rgb2yuv "$DEMO/chart.ppm" chart.ppm
  ok yuv2rgb chart.ppm back.ppm
  [ "$(wc -c <back.ppm)" -eq "$(wc -c <"$DEMO/chart.ppm")" ] || die "back.ppm has the wrong size"
}

# 16-bit samples are big-endian in the file: (1, 1, 256) has its maximum in
# blue, so V = 256 (bytes 1, 0) and H = 2/3 of 65535 = 43690 (170, 170), in
# the 4-pixel loop and in the tail alike.  Read or written the other way
# round, V would be 1.
case_rgb2hsv_16u() {
  { printf 'P6\n5 1\n65535\n'; rep 5 '\000\001\000\001\001\000'; } >in.ppm
  ok rgb2hsv in.ppm out.ppm
  grep -q -F 'lumiRGBToHSV_16u_C3R' err.txt || die "summary: $(cat err.txt)"
  [ "$(samples out.ppm 13 | awk 'NR % 6 == 1 || NR % 6 == 2 || NR % 6 == 5 || NR % 6 == 0' | tr '\n' ' ')" = \
    "170 170 1 0 170 170 1 0 170 170 1 0 170 170 1 0 170 170 1 0 " ] ||
    die "H, V: $(samples out.ppm 13 | tr '\n' ' ')"
  ok hsv2rgb out.ppm back.ppm
  [ "$(wc -c <back.ppm)" -eq $((13 + 30)) ] || die "back.ppm has the wrong size"
}

# 8-bit HSV: grey and black have H = S = 0 and V = the level.
case_rgb2hsv_8u() {
  { printf 'P6\n5 1\n255\n'; rep 3 "$W3"; rep 2 '\000\000\000'; } >in.ppm
  ok rgb2hsv in.ppm out.ppm
  { printf 'P6\n5 1\n255\n'; rep 3 '\000\000\377'; rep 2 '\000\000\000'; } >want.ppm
  same out.ppm want.ppm
  ok hsv2rgb out.ppm back.ppm
  same back.ppm in.ppm
}

# 16-bit PAM with alpha through HLS and back: a grey level has H = S = 0 and
# L = the level; the 16-bit alpha stays.
case_rgb2hls_16u_alpha() {
  { printf 'P7\nWIDTH 5\nHEIGHT 1\nDEPTH 4\nMAXVAL 65535\nTUPLTYPE RGB_ALPHA\nENDHDR\n'
    rep 5 '\001\002\001\002\001\002\022\064'; } >in.pam
  ok rgb2hls in.pam out.pam
  { printf 'P7\nWIDTH 5\nHEIGHT 1\nDEPTH 4\nMAXVAL 65535\nTUPLTYPE HLS_ALPHA\nENDHDR\n'
    rep 5 '\000\000\001\002\000\000\022\064'; } >want.pam
  same out.pam want.pam
  grep -q -F 'lumiRGBToHLS_16u_AC4R' err.txt || die "summary: $(cat err.txt)"
  ok hls2rgb out.pam back.pam
  grep -q -F 'lumiHLSToRGB_16u_AC4R' err.txt || die "summary: $(cat err.txt)"
  same back.pam in.pam
}

case_missing_file() {
  fails 1 nothing.ppm rgb2yuv nothing.ppm out.ppm
  says 'No such file'
  absent out.ppm
  mkdir folder.ppm
  fails 1 folder.ppm rgb2yuv folder.ppm out.ppm
  absent out.ppm
}

case_empty_file() {
  : >empty.ppm
  fails 1 empty.ppm rgb2yuv empty.ppm out.ppm
  says 'empty file'
  printf 'YUV4MPEG2 W2 H2 C444\n' >empty.y4m
  fails 1 empty.y4m yuv2rgb empty.y4m out.ppm
  says 'no frames'
  absent out.ppm
}

case_truncated_header() {
  printf 'P6\n32 ' >t.ppm
  fails 1 t.ppm rgb2yuv t.ppm out.ppm
  says 'truncated header'
  printf 'P6\n32 32\n255' >t2.ppm
  fails 1 t2.ppm rgb2yuv t2.ppm out.ppm
  says 'truncated header'
  printf 'P6\n1 1\n# a comment with no end' >t3.ppm
  fails 1 t3.ppm rgb2yuv t3.ppm out.ppm
  says 'truncated header'
  printf 'P' >t4.ppm
  fails 1 t4.ppm rgb2yuv t4.ppm out.ppm
  says 'truncated header'
  absent out.ppm
}

case_truncated_header_pam() {
  printf 'P7\nWIDTH 2\nHEIGHT 2\nDEPTH 3\nMAXVAL 255\n' >t.pam
  fails 1 t.pam rgb2yuv t.pam out.pam
  says 'truncated header'
  absent out.pam
}

case_truncated_header_y4m() {
  printf 'YUV4MPEG2 W4 H4 C444' >t.y4m
  fails 1 t.y4m yuv2rgb t.y4m out.ppm
  says 'truncated header'
  printf 'YUV4M' >t2.y4m
  fails 1 t2.y4m yuv2rgb t2.y4m out.ppm
  says 'truncated header'
  absent out.ppm
}

case_malformed_header() {
  { printf 'P6\n3x 2\n255\n'; rep 6 "$W3"; } >m.ppm
  fails 1 m.ppm rgb2yuv m.ppm out.ppm
  says 'malformed header'
  { printf 'P6\n3 2\n255x'; rep 6 "$W3"; } >m2.ppm
  fails 1 m2.ppm rgb2yuv m2.ppm out.ppm
  says 'malformed header'
  { printf 'P6\n0 2\n255\n'; } >m3.ppm
  fails 1 m3.ppm rgb2yuv m3.ppm out.ppm
  says 'malformed header'
  printf 'GIF89a' >m4.ppm
  fails 1 m4.ppm rgb2yuv m4.ppm out.ppm
  says 'not a PNM'
  absent out.ppm
}

case_malformed_header_pam() {
  printf 'P7\nWIDTH 2\nHEIGHT 2\nDEPTH 3\nENDHDR\n' >m.pam
  fails 1 m.pam rgb2yuv m.pam out.pam
  says 'no MAXVAL'
  printf 'P7\nWIDTH 2\nHEIGHT two\nDEPTH 3\nMAXVAL 255\nENDHDR\n' >m2.pam
  fails 1 m2.pam rgb2yuv m2.pam out.pam
  says 'HEIGHT'
  printf 'P7\nWIDTH 2\nWIDTH 2\nHEIGHT 2\nDEPTH 3\nMAXVAL 255\nENDHDR\n' >m3.pam
  fails 1 m3.pam rgb2yuv m3.pam out.pam
  says 'twice'
  printf 'P7\nSIZE 2\nENDHDR\n' >m4.pam
  fails 1 m4.pam rgb2yuv m4.pam out.pam
  says 'SIZE'
  absent out.pam
}

case_malformed_header_y4m() {
  { printf 'YUV4MPEG2 H2 C444\nFRAME\n'; rep 12 '\200'; } >m.y4m
  fails 1 m.y4m yuv2rgb m.y4m out.ppm
  says 'no W tag'
  { printf 'YUV4MPEG2 W2 H-2 C444\nFRAME\n'; rep 12 '\200'; } >m2.y4m
  fails 1 m2.y4m yuv2rgb m2.y4m out.ppm
  says 'height'
  { printf 'YUV4MPEG2 W2 H2 F25 C444\nFRAME\n'; rep 12 '\200'; } >m3.y4m
  fails 1 m3.y4m yuv2rgb m3.y4m out.ppm
  says 'frame rate'
  { printf 'YUV4MPEG2 W2 H1 C444\nFRAMES\n'; rep 6 '\200'; } >m4.y4m
  fails 1 m4.y4m yuv2rgb m4.y4m out.ppm
  says 'FRAME'
  absent out.ppm
}

case_number_too_large() {
  printf 'P6\n99999999999 1\n255\n' >n.ppm
  fails 1 n.ppm rgb2yuv n.ppm out.ppm
  says 'width too large'
  printf 'P6\n1 1\n99999\n\377\377\377\377\377\377' >n2.ppm
  fails 1 n2.ppm rgb2yuv n2.ppm out.ppm
  says 'maxval 99999'
  absent out.ppm
}

# A header announcing gigabytes over a few bytes is refused before any allocation.
case_huge_image() {
  { printf 'P6\n2147483647 2147483647\n255\n'; rep 4 "$W3"; } >h.ppm
  fails 1 h.ppm rgb2yuv h.ppm out.ppm
  { printf 'P6\n100000 100000\n255\n'; rep 4 "$W3"; } >h2.ppm
  fails 1 h2.ppm rgb2yuv h2.ppm out.ppm
  { printf 'YUV4MPEG2 W65536 H65536 C444\nFRAME\n'; rep 4 '\200'; } >h.y4m
  fails 1 h.y4m yuv2rgb h.y4m out.ppm
  rep 4 '\200' >h.rgbp
  fails 1 h.rgbp --raw 2000000000x2000000000 rgb2yuv h.rgbp out.y4m
  absent out.ppm out.y4m
}

case_unsupported_ascii() {
  printf 'P3\n1 1\n255\n255 255 255\n' >a.ppm
  fails 1 a.ppm rgb2yuv a.ppm out.ppm
  says 'plain (ASCII) P3 is not supported'
  printf 'P1\n2 1\n0 1\n' >a.pbm
  fails 1 a.pbm rgb2yuv a.pbm out.ppm
  says 'P1'
  absent out.ppm
}

case_unsupported_bitmap() {
  printf 'P4\n8 1\n\377' >b.pbm
  fails 1 b.pbm rgb2yuv b.pbm out.ppm
  says 'P4'
  absent out.ppm
}

case_unsupported_maxval() {
  { printf 'P6\n2 2\n1023\n'; rep 24 '\001'; } >m.ppm
  fails 1 m.ppm rgb2yuv m.ppm out.ppm
  says 'maxval 1023 is not supported'
  absent out.ppm
}

# The 4:4:4 conversions are 8-bit only.
case_unsupported_16bit() {
  { printf 'P6\n2 1\n65535\n'; rep 12 '\001'; } >w.ppm
  fails 1 w.ppm rgb2yuv w.ppm out.ppm
  says 'rgb2yuv has no 16u C3 form'
  absent out.ppm
}

case_unsupported_y4m_chroma() {
  { printf 'YUV4MPEG2 W2 H2 F25:1 C420jpeg\nFRAME\n'; rep 6 '\200'; } >c.y4m
  fails 1 c.y4m yuv2rgb c.y4m out.ppm
  says 'C420jpeg is not supported by yuv2rgb'
  { printf 'YUV4MPEG2 W2 H2\nFRAME\n'; rep 6 '\200'; } >c2.y4m
  fails 1 c2.y4m yuv2rgb c2.y4m out.ppm
  says 'no C tag, so 4:2:0'
  absent out.ppm
}

case_unsupported_pam_depth() {
  { printf 'P7\nWIDTH 2\nHEIGHT 1\nDEPTH 1\nMAXVAL 255\nTUPLTYPE GRAYSCALE\nENDHDR\n'; rep 2 '\200'; } >d.pam
  fails 1 d.pam rgb2yuv d.pam out.pam
  says 'depth 1'
  absent out.pam
}

case_unsupported_pgm_height() {
  { printf 'P5\n2 2\n255\n'; rep 4 '\200'; } >g.pgm
  fails 1 g.pgm yuv2rgb --planes g.pgm out.ppm
  says 'is not 3 planes'
  absent out.ppm
}

case_raw_size_mismatch() {
  rep 47 '\200' >r.rgbp
  fails 1 r.rgbp --raw 4x4 rgb2yuv r.rgbp out.y4m
  says 'not a whole number'
  : >e.rgbp
  fails 1 e.rgbp --raw 4x4 rgb2yuv e.rgbp out.y4m
  fails 2 '' --raw 4x0 rgb2yuv r.rgbp out.y4m
  fails 2 '' --raw four rgb2yuv r.rgbp out.y4m
  absent out.y4m
}

case_raw_without_size() {
  rep 48 '\200' >r.yuv
  fails 1 r.yuv yuv2rgb r.yuv out.ppm
  says '--raw WxH'
  absent out.ppm
}

case_truncated_pixels() {
  { printf 'P6\n4 4\n255\n'; rep 10 '\001'; } >t.ppm
  fails 1 t.ppm rgb2yuv t.ppm out.ppm
  says 'truncated pixel data'
  { printf 'P6\n1 1\n65535\n'; rep 5 '\001'; } >t2.ppm
  fails 1 t2.ppm rgb2yuv t2.ppm out.ppm
  says 'truncated pixel data'
  # An output that was there stays as it was.
  printf 'keep' >kept.ppm
  fails 1 t.ppm rgb2yuv t.ppm kept.ppm
  [ "$(cat kept.ppm)" = keep ] || die "kept.ppm was overwritten"
  absent out.ppm
}

case_truncated_y4m_frame() {
  { printf 'YUV4MPEG2 W2 H2 C444\nFRAME\n'; rep 5 '\200'; } >t.y4m
  fails 1 t.y4m yuv2rgb t.y4m out.ppm
  says 'truncated pixel data of frame 1'
  absent out.ppm
}

# A failure after some frames were written removes the output.
case_truncated_second_frame() {
  { printf 'YUV4MPEG2 W2 H2 C444\nFRAME\n'; rep 12 '\200'; printf 'FRAME\n'; rep 11 '\200'; } >t.y4m
  fails 1 t.y4m yuv2rgb t.y4m out.ppm
  says 'frame 2'
  { printf 'YUV4MPEG2 W2 H2 C444\nFRAME\n'; rep 12 '\200'; printf 'FRA'; } >t2.y4m
  fails 1 t2.y4m yuv2rgb t2.y4m out.ppm
  says 'truncated frame header'
  absent out.ppm
}

case_frames_differ() {
  { printf 'P6\n1 1\n255\n'; printf "$W3"; printf 'P6\n2 1\n255\n'; rep 2 "$W3"; } >f.ppm
  fails 1 f.ppm rgb2yuv f.ppm out.y4m
  says 'frame 2 is 2x1'
  { printf 'P6\n1 1\n255\n'; printf "$W3"; printf 'junk'; } >f2.ppm
  fails 1 f2.ppm rgb2yuv f2.ppm out.ppm
  says 'malformed header'
  absent out.y4m out.ppm
}

case_wrong_model() {
  { printf 'YUV4MPEG2 W2 H1 C444\nFRAME\n'; rep 6 '\200'; } >y.y4m
  fails 1 y.y4m rgb2yuv y.y4m out.ppm
  says 'holds YUV; rgb2yuv takes RGB'
  { printf 'P7\nWIDTH 1\nHEIGHT 1\nDEPTH 3\nMAXVAL 255\nTUPLTYPE RGB\nENDHDR\n'; printf "$W3"; } >r.pam
  fails 1 r.pam yuv2rgb r.pam out.pam
  says 'holds RGB; yuv2rgb takes YUV'
  absent out.ppm out.pam
}

case_alpha_to_ppm() {
  { printf 'P7\nWIDTH 1\nHEIGHT 1\nDEPTH 4\nMAXVAL 255\nTUPLTYPE RGB_ALPHA\nENDHDR\n'; printf "$W3"'\200'; } >a.pam
  fails 1 out.ppm rgb2yuv a.pam out.ppm
  says 'no alpha channel'
  fails 1 a.pam rgb2yuv a.pam out.y4m
  says 'no 8u AC4->P3 form'
  absent out.ppm out.y4m
}

# YUV pixels to RGB planes: the library has no such function.
case_no_such_form() {
  { printf 'P6\n1 1\n255\n'; printf "$YUV_RED"; } >y.ppm
  fails 1 y.ppm yuv2rgb y.ppm out.rgbp
  says 'yuv2rgb has no 8u C3->P3 form'
  says 'P3->C3'
  absent out.rgbp
}

case_output_model() {
  { printf 'YUV4MPEG2 W2 H1 C444\nFRAME\n'; rep 6 '\200'; } >y.y4m
  fails 1 out.yuv yuv2rgb y.y4m out.yuv
  says 'holds YUV, the conversion makes RGB'
  { printf 'P6\n1 1\n255\n'; printf "$W3"; } >w.ppm
  fails 1 out.rgbp rgb2yuv w.ppm out.rgbp
  absent out.yuv out.rgbp
}

case_unknown_extension() {
  { printf 'P6\n1 1\n255\n'; printf "$W3"; } >w.ppm
  fails 1 out.png rgb2yuv w.ppm out.png
  says "unknown output extension 'png'"
  fails 1 out rgb2yuv w.ppm out
  absent out.png out
}

case_same_file() {
  { printf 'P6\n1 1\n255\n'; printf "$W3"; } >w.ppm
  cp w.ppm copy.ppm
  fails 1 w.ppm rgb2yuv w.ppm w.ppm
  says 'is the input file'
  ln -s w.ppm link.ppm
  fails 1 link.ppm rgb2yuv w.ppm link.ppm
  same w.ppm copy.ppm
}

case_usage_errors() {
  fails 2 ''
  says 'no conversion given'
  fails 2 '' rgb2hsx a.ppm b.ppm
  says "unknown conversion 'rgb2hsx'"
  fails 2 '' rgb2yuv a.ppm
  fails 2 '' rgb2yuv a.ppm b.ppm c.ppm
  fails 2 '' --frobnicate
  fails 2 '' --raw
  fails 2 '' demo a b
  fails 2 '' --raw 2x2 demo
}

# --- The output appears only when complete ---------------------------------

# A failed run leaves an existing output as it was, also when the failure
# comes after frames were written, and leaves no temporary file.
case_failed_run_keeps_output() {
  { printf 'YUV4MPEG2 W2 H2 C444\nFRAME\n'; rep 12 '\200'; printf 'FRAME\n'; rep 11 '\200'; } >t.y4m
  echo precious >keep.ppm
  chmod 640 keep.ppm
  fails 1 t.y4m yuv2rgb t.y4m keep.ppm
  says 'frame 2'
  [ "$(cat keep.ppm)" = precious ] || die "keep.ppm was changed: $(od -c keep.ppm | head -3)"
  no_temp
  # A run that succeeds replaces it, with its permissions.
  { printf 'YUV4MPEG2 W2 H2 C444\nFRAME\n'; rep 12 '\200'; } >good.y4m
  ok yuv2rgb good.y4m keep.ppm
  { printf 'P6\n2 2\n255\n'; rep 4 '\200\200\200'; } >want.ppm
  same keep.ppm want.ppm
  [ "$(stat -c %a keep.ppm)" = 640 ] || die "keep.ppm's mode is $(stat -c %a keep.ppm)"
  no_temp
}

# Through a symbolic link the target is replaced in its own folder (the link
# stays a link); a failed run leaves the target whole.
case_symlink_target() {
  mkdir -p sub
  echo precious >sub/target.ppm
  ln -s sub/target.ppm link.ppm
  { printf 'YUV4MPEG2 W2 H2 C444\nFRAME\n'; rep 12 '\200'; printf 'FRAME\n'; rep 5 '\200'; } >t.y4m
  fails 1 t.y4m yuv2rgb t.y4m link.ppm
  [ "$(cat sub/target.ppm)" = precious ] || die "the link's target was changed"
  [ -L link.ppm ] || die "link.ppm is no longer a link"
  no_temp . sub
  { printf 'YUV4MPEG2 W2 H2 C444\nFRAME\n'; rep 12 '\200'; } >good.y4m
  ok yuv2rgb good.y4m link.ppm
  [ -L link.ppm ] || die "link.ppm is no longer a link"
  { printf 'P6\n2 2\n255\n'; rep 4 '\200\200\200'; } >want.ppm
  same sub/target.ppm want.ppm
  no_temp . sub
  # A link to a file not there yet: the file appears where the link leads.
  ln -s sub/new.ppm dangling.ppm
  ok yuv2rgb good.y4m dangling.ppm
  same sub/new.ppm want.ppm
  [ -L dangling.ppm ] || die "dangling.ppm is no longer a link"
}

# A run stopped by SIGTERM or SIGINT leaves the existing output and no
# temporary file.  lumconv runs in the foreground (a background command of
# sh ignores SIGINT); its input is a named pipe that a helper fills with one
# frame, and the helper sends the signal once the temporary output is there.
case_signal_removes_partial() {
  signals=TERM
  # SIGINT ignored by this script already is ignored by lumconv too.
  ign=$(sed -n 's/^SigIgn:[[:space:]]*//p' /proc/$$/status 2>/dev/null || echo 0)
  if [ $(( 0x${ign:-0} & 2 )) -eq 0 ]; then signals="TERM INT"; else echo "SIGINT is ignored here; not tried"; fi
  for sig in $signals; do
    rm -f in.fifo pid
    mkfifo in.fifo || die "mkfifo"
    echo precious >keep.ppm
    (
      exec 3<>in.fifo
      { printf 'YUV4MPEG2 W2 H2 C444\nFRAME\n'; rep 12 '\200'; } >&3
      wait_for_temp
      kill -"$sig" "$(cat pid)"
      # Should lumconv live on, the end of its input lets it finish.
      i=0
      while kill -0 "$(cat pid)" 2>/dev/null && [ "$i" -lt 40 ]; do sleep 0.05; i=$((i + 1)); done
    ) &
    helper=$!
    sh -c 'echo $$ >pid; exec "$0" yuv2rgb in.fifo keep.ppm' "$LUMCONV" >out.txt 2>err.txt
    status=$?
    wait "$helper"
    [ "$status" -gt 128 ] || die "lumconv was not ended by SIG$sig (status $status): $(cat err.txt)"
    [ "$(cat keep.ppm)" = precious ] || die "keep.ppm was changed by SIG$sig"
    no_temp
  done
}

# --- The installed tool starts ----------------------------------------------

# Installed to a temporary prefix, the tool runs with no environment at all
# (no LD_LIBRARY_PATH), and still after the prefix is moved.
case_install_prefix() {
  # Run by CTest it has both; a runner that gives only the first three
  # arguments (lumconv through an emulator, say) has nothing to install.
  if [ -z "$CMAKE" ] || [ -z "$BUILD" ]; then
    echo "no <cmake> <build folder> given; not tried"
    return
  fi
  "$CMAKE" --install "$BUILD" --prefix "$DIR/prefix" >install.log 2>&1 || die "install failed: $(cat install.log)"
  [ -x prefix/bin/lumconv ] || die "no prefix/bin/lumconv"
  env -i "$DIR/prefix/bin/lumconv" --version >out.txt 2>err.txt || die "installed lumconv: $(cat err.txt)"
  grep -q 'liblumccw7.so.5.2' out.txt || die "--version: $(cat out.txt)"
  mv prefix moved
  { printf 'P6\n17 1\n255\n'; rep 17 "$W3"; } >in.ppm
  env -i "$DIR/moved/bin/lumconv" rgb2yuv in.ppm out.ppm >out.txt 2>err.txt ||
    die "moved lumconv: $(cat err.txt)"
  { printf 'P6\n17 1\n255\n'; rep 16 "$Y_BLOCK"; printf "$Y_TAIL"; } >want.ppm
  same out.ppm want.ppm
}

# --- Pipes --------------------------------------------------------------------

case_pipes() {
  { printf 'P6\n5 1\n255\n'; rep 3 "$W3"; rep 2 '\000\000\000'; } >in.ppm
  { printf 'P6\n5 1\n255\n'; rep 3 '\000\000\377'; rep 2 '\000\000\000'; } >want.ppm
  cat in.ppm | "$LUMCONV" rgb2hsv - - --to ppm 2>e1.txt | "$LUMCONV" hsv2rgb - - --to ppm 2>e2.txt >back.ppm
  same back.ppm in.ppm
  grep -q '^standard input -> standard output: 5x1, 1 frame, lumiRGBToHSV_8u_C3R$' e1.txt ||
    die "summary: $(cat e1.txt)"
  grep -q '^standard input -> standard output: 5x1, 1 frame, lumiHSVToRGB_8u_C3R$' e2.txt ||
    die "summary: $(cat e2.txt)"
  # Standard output holds the image and nothing else; the summary is on stderr.
  ok rgb2hsv in.ppm - --to ppm
  same out.txt want.ppm
  grep -q -F 'in.ppm -> standard output: 5x1, 1 frame' err.txt || die "summary: $(cat err.txt)"
  ok rgb2hsv in.ppm out.ppm
  [ ! -s out.txt ] || die "stdout not empty: $(cat out.txt)"
  # -q: nothing on stderr.
  run -q rgb2hsv in.ppm quiet.ppm
  [ "$status" -eq 0 ] && [ ! -s err.txt ] || die "-q: status $status, $(cat err.txt)"
  same quiet.ppm want.ppm
  # --to for a file too, and to planes: the output's format from --to.
  ok rgb2yuv in.ppm - --to=y4m
  head -n 1 out.txt >h.txt
  printf 'YUV4MPEG2 W5 H1 F25:1 Ip A1:1 C444 XLUMCC_MODEL=YUV\n' >want.txt
  same h.txt want.txt
  # Headerless planes from a pipe.
  { rep 17 '\377'; rep 17 '\377'; rep 17 '\377'; } >in.rgbp
  cat in.rgbp | "$LUMCONV" --raw 17x1 rgb2yuv - out.yuv 2>err.txt || die "raw from a pipe: $(cat err.txt)"
  [ "$(wc -c <out.yuv)" -eq 51 ] || die "out.yuv holds $(wc -c <out.yuv) bytes"
  # Errors name standard input and output.
  fails 2 '' rgb2hsv in.ppm -
  says 'needs --to FORMAT'
  fails 2 '' rgb2hsv in.ppm - --to png
  says "--to 'png'"
  : >empty.ppm
  fails 1 'standard input' rgb2hsv - out2.ppm <empty.ppm
  says 'empty input'
  printf 'P6\n2 2\n255\n\377' >short.ppm
  fails 1 'standard input' rgb2hsv - out2.ppm <short.ppm
  says 'truncated pixel data'
  absent out2.ppm
}

# --- A PGM is one grey image unless --planes --------------------------------

case_grey_pgm() {
  { printf 'P5\n4 3\n255\n'; rep 12 '\100'; } >g.pgm
  ok copy g.pgm out.pgm
  same out.pgm g.pgm
  grep -q -F 'g.pgm -> out.pgm: 4x3, 1 frame' err.txt || die "summary: $(cat err.txt)"
  # A height that is no multiple of 3 is fine for a grey image.
  { printf 'P5\n4 2\n255\n'; rep 8 '\100'; } >g2.pgm
  ok copy g2.pgm out2.pgm
  same out2.pgm g2.pgm
  # The colour conversions need three channels and say what to do.
  fails 1 g.pgm rgb2yuv g.pgm out.y4m
  says 'rgb2yuv needs three channels'
  says 'give --planes'
  fails 1 g.pgm rgb2hsv g.pgm out.ppm
  says 'needs three channels'
  # With --planes the PGM is planes of a third of its height.
  ok --planes rgb2yuv g.pgm out.y4m
  grep -q -F 'g.pgm -> out.y4m: 4x1, 1 frame' err.txt || die "summary: $(cat err.txt)"
  # Grey pixels go to a .pgm only.
  fails 1 g.pgm copy g.pgm out.ppm
  says 'write a .pgm'
  absent out.ppm
}

# --- Words a user understands ---------------------------------------------------

case_plain_words() {
  { printf 'P6\n2 1\n65535\n'; rep 12 '\001'; } >w.ppm
  fails 1 w.ppm rgb2yuv w.ppm out.y4m
  says 'YUV4MPEG2 output is 8-bit'
  says 'reduce the input to 8 bits first, e.g. pamdepth 255 w.ppm >w-8bit.ppm'
  fails 1 out.y4m rgb2hsv w.ppm out.y4m
  says 'this file holds YUV, the conversion makes HSV'
  fails 1 w.ppm copy w.ppm out.yuv
  says 'output is 8-bit: write a .ppm or .pam'
  { printf 'P6\n1 1\n255\n'; printf '\200\000\000'; } >y.ppm
  fails 1 y.ppm yuv2rgb y.ppm out.rgbp
  says 'yuv2rgb makes RGB planes (raw planes) only from other input: give it a .y4m'
  says 'or write a .ppm or .pam'
  { printf 'P7\nWIDTH 1\nHEIGHT 1\nDEPTH 4\nMAXVAL 255\nTUPLTYPE RGB_ALPHA\nENDHDR\n'; printf "$W3"'\200'; } >a.pam
  fails 1 a.pam rgb2yuv a.pam out.y4m
  says 'YUV4MPEG2 has no alpha channel: write a .pam to keep the alpha'
  absent out.y4m out.yuv out.rgbp
  # --list explains the conversions and which YUV this is.
  ok --list
  for text in 'U = 0.492 (B - Y) + 128' 'V = 0.877 (R - Y) + 128' 'not the YCbCr' \
    'rgb2hsv:' 'rgb2hls:' 'copy:' 'Forms: 8u and 16u'; do
    grep -q -F "$text" out.txt || die "--list lacks '$text'"
  done
}

case_version() {
  ok --version
  head -n 1 out.txt | grep -q '^lumconv [0-9][0-9.]*$' || die "--version: $(cat out.txt)"
  # The library's version record, field by field.
  for text in 'liblumccw7.so.5.2' 'version 5.2 (5.2.108.321)' 'w7 build' 'Jul 11 2007'; do
    grep -q -F "$text" out.txt || die "--version lacks '$text': $(cat out.txt)"
  done
}

# --- Hostile headers ----------------------------------------------------------

# From a pipe the bytes to come are not known: a header announcing more than
# the frame limit fails at once with a clear error, without the allocation.
case_hostile_pipe() {
  { printf 'P6\n100000 100000\n255\n'; rep 4 "$W3"; } >h.ppm
  cat h.ppm | "$LUMCONV" rgb2hsv - out.ppm >out.txt 2>err.txt && die "a huge header from a pipe passed"
  [ "$(wc -l <err.txt)" -eq 1 ] || die "not one line: $(cat err.txt)"
  says 'lumconv: standard input: the header announces 30000000000 bytes of pixel data'
  says 'save it to a file'
  { printf 'YUV4MPEG2 W65536 H65536 C444\nFRAME\n'; rep 4 '\200'; } >h.y4m
  cat h.y4m | "$LUMCONV" yuv2rgb - out.ppm >out.txt 2>err.txt && die "a huge Y4M header from a pipe passed"
  says 'the header announces 12884901888 bytes of pixel data of frame 1'
  rep 4 '\200' | "$LUMCONV" --raw 30000x30000 rgb2yuv - out.y4m >out.txt 2>err.txt && die "a huge raw frame from a pipe passed"
  says 'announces 2700000000 bytes'
  # Below the limit, a short pipe is a truncated image.
  { printf 'P6\n1000 1000\n255\n'; rep 4 "$W3"; } | "$LUMCONV" rgb2hsv - out.ppm >out.txt 2>err.txt &&
    die "a short pipe passed"
  says 'truncated pixel data'
  # From a file the limit is the file's size.
  fails 1 h.ppm rgb2hsv h.ppm out.ppm
  says 'truncated pixel data (30000000000 bytes needed, 12 left)'
  absent out.ppm out.y4m
}

# --- Long runs ------------------------------------------------------------------

case_progress() {
  { printf 'YUV4MPEG2 W2 H1 F30000:1001 It A4:3 C444\n'
    for f in 1 2 3; do printf 'FRAME\n'; rep 6 '\200'; done; } >in.y4m
  # stderr is no terminal here: no progress unless asked for.
  ok copy in.y4m out.y4m
  grep -q 'frame 1' err.txt && die "progress on a file: $(cat err.txt)"
  run --progress copy in.y4m out.y4m
  [ "$status" -eq 0 ] || die "--progress: $(cat err.txt)"
  grep -q 'lumconv: out.y4m: frame 3 of 3' err.txt || die "progress: $(od -c err.txt | head)"
  grep -q -F 'in.y4m -> out.y4m: 2x1, 3 frames' err.txt || die "summary after progress: $(cat err.txt)"
  # From a pipe the count of frames is not known.
  cat in.y4m | "$LUMCONV" --progress copy - out2.y4m 2>err.txt || die "$(cat err.txt)"
  grep -q 'frame 3 *$' err.txt || die "progress from a pipe: $(od -c err.txt | head)"
  grep -q 'frame 3 of' err.txt && die "a count of frames from a pipe: $(cat err.txt)"
  run -q --progress copy in.y4m out.y4m
  [ ! -s err.txt ] || die "-q shows progress: $(cat err.txt)"
  # A PNM stream: every image counts alike, the first too.
  rep 10 'P6\n1 1\n255\n\377\377\377' >many.ppm
  run --progress copy many.ppm many-out.ppm
  grep -q 'frame 1 of 10' err.txt && grep -q 'frame 10 of 10' err.txt ||
    die "progress of a PNM stream: $(od -c err.txt | head)"
  same many-out.ppm many.ppm
  # On a terminal it shows by itself (where script(1) can make one).
  if command -v script >/dev/null 2>&1 && script -q -e -c true /dev/null >/dev/null 2>&1; then
    script -q -e -c "'$LUMCONV' copy in.y4m tty.y4m" /dev/null >tty.txt 2>&1 </dev/null ||
      die "under script: $(cat tty.txt)"
    grep -q 'frame 3 of 3' tty.txt || die "no progress on a terminal: $(od -c tty.txt | head)"
  fi
}

# A .y4m output keeps the frame rate, interlacing and aspect of a .y4m input;
# --rate and --aspect set them (an input without them gives 25:1 and 1:1).
case_y4m_rate_kept() {
  { printf 'YUV4MPEG2 W2 H1 F30000:1001 It A4:3 C444 XCOMMENT\n'
    printf 'FRAME\n'; rep 6 '\200'; } >in.y4m
  ok copy in.y4m out.y4m
  head -n 1 out.y4m >h.txt
  printf 'YUV4MPEG2 W2 H1 F30000:1001 It A4:3 C444\n' >want.txt
  same h.txt want.txt
  grep -q -F 'F30000:1001 A4:3' err.txt || die "summary: $(cat err.txt)"
  tail -c 6 out.y4m >a.bin
  tail -c 6 in.y4m >b.bin
  same a.bin b.bin
  ok copy --rate 24000:1001 in.y4m out2.y4m
  head -n 1 out2.y4m >h.txt
  printf 'YUV4MPEG2 W2 H1 F24000:1001 It A4:3 C444\n' >want.txt
  same h.txt want.txt
  { printf 'P6\n1 1\n255\n'; printf "$W3"; } >w.ppm
  ok rgb2yuv w.ppm --rate=50:1 --aspect 16:15 out3.y4m
  head -n 1 out3.y4m >h.txt
  printf 'YUV4MPEG2 W1 H1 F50:1 Ip A16:15 C444 XLUMCC_MODEL=YUV\n' >want.txt
  same h.txt want.txt
  fails 2 '' rgb2yuv --rate 25 w.ppm out4.y4m
  says "--rate '25' is not a ratio"
  fails 2 '' rgb2yuv --aspect w.ppm
  absent out4.y4m
}

# A named pipe or a device as the output is written directly (nothing to
# replace), and stays what it is.
case_fifo_output() {
  { printf 'P6\n5 1\n255\n'; rep 3 "$W3"; rep 2 '\000\000\000'; } >in.ppm
  { printf 'P6\n5 1\n255\n'; rep 3 '\000\000\377'; rep 2 '\000\000\000'; } >want.ppm
  mkfifo out.fifo || die "mkfifo"
  cat out.fifo >got.ppm &
  reader=$!
  run rgb2hsv in.ppm out.fifo --to ppm
  # Should lumconv fail before it opens the pipe, an open here ends the reader.
  [ "$status" -eq 0 ] || { : >out.fifo; wait "$reader"; die "status $status: $(cat err.txt)"; }
  wait "$reader"
  same got.ppm want.ppm
  [ -p out.fifo ] || die "out.fifo is no longer a named pipe"
  no_temp
}

# Binary data is not sent to a terminal, nor read from one (where script(1)
# can make a terminal).
case_terminal_refused() {
  { printf 'P6\n1 1\n255\n'; printf "$W3"; } >in.ppm
  if ! command -v script >/dev/null 2>&1 || ! script -q -e -c true /dev/null >/dev/null 2>&1 </dev/null; then
    echo "no script(1) here; not tried"
    return
  fi
  script -q -e -c "'$LUMCONV' rgb2hsv in.ppm - --to ppm" /dev/null >tty.txt 2>&1 </dev/null &&
    die "wrote to a terminal: $(od -c tty.txt | head -3)"
  grep -q 'lumconv: standard output: is a terminal' tty.txt || die "$(cat tty.txt)"
  script -q -e -c "'$LUMCONV' rgb2hsv - out.ppm" /dev/null >tty.txt 2>&1 </dev/null &&
    die "read a terminal"
  grep -q 'lumconv: standard input: is a terminal' tty.txt || die "$(cat tty.txt)"
  absent out.ppm
}

command -v "case_$CASE" >/dev/null 2>&1 || die "no such case"
"case_$CASE"
echo "ok ($CASE)"
