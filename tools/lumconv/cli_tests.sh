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
# "<input> -> <output>: WxH, N frame(s), <function>[ + <function>][, F<rate> A<aspect>]".
ok() {
  run "$@"
  [ "$status" -eq 0 ] || die "lumconv $* exited $status: $(cat err.txt)"
  [ "$(grep -c -v '^[^ ].* -> [^ ].*: [0-9]*x[0-9]*, [0-9]* frames*, lumi[A-Za-z0-9_]*\( + lumi[A-Za-z0-9_]*\)*\(, F[0-9]*:[0-9]* A[0-9]*:[0-9]*\)*$' err.txt)" -eq 0 ] ||
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

# R N FORMAT: FORMAT N times, still a format (an argument of mk); rep
# writes what it means.
R() {
  i=0
  while [ "$i" -lt "$1" ]; do
    printf '%s' "$2"
    i=$((i + 1))
  done
}
rep() { printf "$(R "$1" "$2")"; }
# mk FILE FORMAT...: FILE holds the FORMATs (printf escapes) one after another.
mk() {
  f=$1
  shift
  : >"$f"
  for x in "$@"; do printf "$x" >>"$f"; done
}
# gives FILE FUNCTION FORMAT...: FILE holds the FORMATs, and the summary of the
# last run names FUNCTION (unless empty).
gives() {
  g=$1
  fn=$2
  shift 2
  mk want.bin "$@"
  same "$g" want.bin
  [ -z "$fn" ] || grep -q -F "$fn" err.txt || die "summary lacks $fn: $(cat err.txt)"
}
# header FILE LINE: the first line of FILE is LINE.
header() {
  [ "$(head -n 1 "$1")" = "$2" ] || die "$1 starts '$(head -n 1 "$1")', not '$2'"
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

# maxdiff A B: the largest difference of two files' bytes (same size).
maxdiff() {
  [ "$(wc -c <"$1")" -eq "$(wc -c <"$2")" ] || die "$1 and $2 differ in size"
  cmp -l "$1" "$2" | awk 'function oct(s, n, i) { n = 0; for (i = 1; i <= length(s); i++) n = n * 8 + substr(s, i, 1); return n }
    { d = oct($2) - oct($3); if (d < 0) d = -d; if (d > m) m = d } END { print m + 0 }'
}
# close A B MOST: the files differ by MOST at most.
close() {
  d=$(maxdiff "$1" "$2")
  [ "$d" -le "$3" ] || die "$1 and $2 differ by $d"
}

W3='\377\377\377'                       # white
Y_BLOCK='\376\177\177'                  # white's Y, U, V in a block: 254 127 127
Y_TAIL='\376\200\200'                   # ... in the tail of the C3 and P3 kernels: 254 128 128
YUV_RED='\200\000\000'                  # Y 128, U 0, V 0
P6_1='P6\n1 1\n255\n'
Y4M_2x2='YUV4MPEG2 W2 H2 C444\nFRAME\n'
PAM_A1='P7\nWIDTH 1\nHEIGHT 1\nDEPTH 4\nMAXVAL 255\nTUPLTYPE RGB_ALPHA\nENDHDR\n'

# refused TABLE: each line "CODE|NAME|CONTENT|TEXTS|ARGS" is a failing run
# (see fails) of lumconv ARGS, after NAME was made from CONTENT (printf
# escapes; "-": NAME is not made here); the message holds each of TEXTS
# (separated by "~"); no out.* file is left.
refused() {
  oldifs=$IFS
  while IFS='|' read -r code name content texts args; do
    case $code in '' | '#'*) continue ;; esac
    [ "$content" = - ] || printf "$content" >"$name"
    IFS=' '
    # shellcheck disable=SC2086
    fails "$code" "$name" $args
    IFS='~'
    for t in $texts; do says "$t"; done
    IFS=' '
    absent out.ppm out.pam out.y4m out.yuv out.rgbp out.png out
  done
  IFS=$oldifs
}

# --- Conversions and their bytes ------------------------------------------------

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
  header "$DEMO/chart.y4m" 'YUV4MPEG2 W321 H241 F25:1 Ip A1:1 C444 XLUMCC_MODEL=YUV'
  # Two paths, each with a difference per channel.  Saturated reds and
  # magentas leave V's 8 bits and come back up to 35 levels darker in R;
  # a swapped or misplaced plane would show hundreds.
  [ "$(grep -c 'largest difference R [0-9]*, G [0-9]*, B [0-9]*$' out.txt)" -eq 2 ] ||
    die "demo output: $(cat out.txt)"
  for d in $(sed -n 's/.*largest difference R \([0-9]*\), G \([0-9]*\), B \([0-9]*\)$/\1 \2 \3/p' out.txt); do
    [ "$d" -le 40 ] || die "round trip differs by $d: $(cat out.txt)"
  done
}

# The table of conversions, one a line, then a blank line and the words that
# explain them and which YUV this is.
case_list() {
  ok --list
  for text in 'U = 0.492 (B - Y) + 128' 'V = 0.877 (R - Y) + 128' 'not the YCbCr' \
    'rgb2hsv:' 'rgb2hls:' 'copy:' 'Forms: 8u and 16u'; do
    grep -q -F "$text" out.txt || die "--list lacks '$text'"
  done
  sed '/^$/,$d' out.txt >table.txt
  grep -q '^rgb2yuv  *RGB to YUV.*\[8u C3, AC4, C3->P3, P3\]$' table.txt || die "rgb2yuv: $(cat table.txt)"
  grep -q '^yuv2rgb  *YUV 4:4:4 to RGB.*\[8u C3, AC4, P3->C3, P3\]$' table.txt || die "yuv2rgb: $(cat table.txt)"
  [ "$(grep -c -v '^[a-z0-9-]*  *[A-Z].* \[8u [^]]*\]$' table.txt)" -eq 0 ] || die "odd lines: $(cat table.txt)"
  [ "$(cut -d' ' -f1 table.txt | sort | uniq -d | wc -l)" -eq 0 ] || die "a name listed twice"
}

case_help() {
  ok --help
  grep -q '^usage: lumconv <conversion> <input> <output>' out.txt || die "no usage line"
  grep -q 'demo \[folder\]' out.txt || die "help lacks the demo"
}

# The pixel-order kernel: 16 pixels in a block, the 17th in the tail; a
# single pixel is all tail.
case_rgb2yuv_ppm_tail() {
  mk in.ppm 'P6\n17 1\n255\n' "$(R 17 "$W3")"
  ok rgb2yuv in.ppm out.ppm
  gives out.ppm lumiRGBToYUV_8u_C3R 'P6\n17 1\n255\n' "$(R 16 "$Y_BLOCK")" "$Y_TAIL"
  mk one.ppm "$P6_1" "$W3"
  ok rgb2yuv one.ppm one-out.ppm
  gives one-out.ppm '' "$P6_1" "$Y_TAIL"
}

# Pixels to planes: 8 pixels a block, then the tail, which gives white as 255, 128, 128.
case_rgb2yuv_ppm_to_y4m() {
  mk in.ppm 'P6\n9 1\n255\n' "$(R 9 "$W3")"
  ok rgb2yuv in.ppm out.y4m
  gives out.y4m lumiRGBToYUV_8u_C3P3R 'YUV4MPEG2 W9 H1 F25:1 Ip A1:1 C444 XLUMCC_MODEL=YUV\nFRAME\n' \
    "$(R 8 '\376')\377$(R 8 '\177')\200$(R 8 '\177')\200"
}

# Planes to planes, 16 a block: the 17th pixel through the tail; to raw too.
case_rgb2yuv_raw_to_y4m() {
  mk in.rgbp "$(R 51 '\377')"
  ok --raw 17x1 rgb2yuv in.rgbp out.y4m
  planes="$(R 17 '\376')$(R 16 '\177')\200$(R 16 '\177')\200"
  gives out.y4m lumiRGBToYUV_8u_P3R 'YUV4MPEG2 W17 H1 F25:1 Ip A1:1 C444 XLUMCC_MODEL=YUV\nFRAME\n' "$planes"
  ok rgb2yuv --raw=17x1 in.rgbp out.yuv
  gives out.yuv '' "$planes"
}

# A PGM holds the planes one above the other: the same bytes as the Y4M frame.
case_rgb2yuv_ppm_to_pgm() {
  mk in.ppm 'P6\n9 1\n255\n' "$(R 4 "$W3")" "$(R 5 '\012\200\360')"
  ok rgb2yuv in.ppm out.pgm
  ok rgb2yuv in.ppm out.y4m
  head -c 11 out.pgm >h.txt
  gives h.txt '' 'P5\n9 3\n255\n'
  tail -c 27 out.pgm >a.bin
  tail -c 27 out.y4m >b.bin
  same a.bin b.bin
}

case_yuv2rgb_ppm() {
  mk in.ppm 'P6\n9 1\n255\n' "$(R 9 "$YUV_RED")"
  ok yuv2rgb in.ppm out.ppm
  gives out.ppm lumiYUVToRGB_8u_C3R 'P6\n9 1\n255\n' "$(R 9 '\000\374\000')"
}

# Planes to pixels, 16 a block and the same formula in the tail.
case_yuv2rgb_y4m_to_ppm() {
  mk in.y4m 'YUV4MPEG2 W17 H1 F30000:1001 It A4:3 C444 XCOMMENT\nFRAME\n' \
    "$(R 16 '\200')\310$(R 16 '\000')\200$(R 16 '\000')\200"
  ok yuv2rgb in.y4m out.ppm
  gives out.ppm lumiYUVToRGB_8u_P3C3R 'P6\n17 1\n255\n' "$(R 16 '\000\374\000')" '\310\310\310'
}

# Planes to planes: G is 253 in the 8-pixel block, 252 in the tail.
case_yuv2rgb_y4m_to_raw() {
  mk in.y4m 'YUV4MPEG2 W9 H1 F25:1 Ip A1:1 C444\nFRAME\n' "$(R 9 '\200')$(R 18 '\000')"
  ok yuv2rgb in.y4m out.rgbp
  gives out.rgbp lumiYUVToRGB_8u_P3R "$(R 9 '\000')$(R 8 '\375')\374$(R 9 '\000')"
}

case_yuv2rgb_pgm_to_ppm() {
  mk in.pgm 'P5\n# planes Y, U, V\n2 3\n255\n' '\200\200\000\200\000\200'
  ok --planes yuv2rgb in.pgm out.ppm
  gives out.ppm '' 'P6\n2 1\n255\n' '\000\374\000\200\200\200'
}

# AC4 through PAM: the alpha samples come out as they went in.
case_pam_alpha_kept() {
  mk in.pam 'P7\nWIDTH 9\n# a comment\nHEIGHT 1\nDEPTH 4\nMAXVAL 255\nTUPLTYPE RGB_ALPHA\nENDHDR\n' \
    "$W3\001$W3\002$W3\003$W3\004$W3\005$W3\006$W3\007$W3\010$W3\011"
  ok rgb2yuv in.pam out.pam
  B=$Y_BLOCK
  gives out.pam lumiRGBToYUV_8u_AC4R 'P7\nWIDTH 9\nHEIGHT 1\nDEPTH 4\nMAXVAL 255\nTUPLTYPE YUV_ALPHA\nENDHDR\n' \
    "$B\001$B\002$B\003$B\004$B\005$B\006$B\007$B\010$Y_TAIL\011"
  ok yuv2rgb out.pam back.pam
  mk want.txt 'P7\nWIDTH 9\nHEIGHT 1\nDEPTH 4\nMAXVAL 255\nTUPLTYPE RGB_ALPHA\nENDHDR\n'
  n=$(wc -c <want.txt)
  head -c "$n" back.pam >h.txt
  same h.txt want.txt
  [ "$(samples back.pam "$n" | awk 'NR % 4 == 0' | tr '\n' ' ')" = "1 2 3 4 5 6 7 8 9 " ] ||
    die "alpha changed: $(samples back.pam "$n" | tr '\n' ' ')"
}

# Every frame is converted, and a PNM stream holds them one after the other.
case_multiple_frames() {
  mk in.y4m 'YUV4MPEG2 W3 H2 C444\nFRAME\n' "$(R 6 '\200')$(R 12 '\000')" 'FRAME Ixyz\n' "$(R 6 '\144')$(R 12 '\200')"
  ok yuv2rgb in.y4m out.ppm
  gives out.ppm '2 frames' 'P6\n3 2\n255\n' "$(R 6 '\000\374\000')" 'P6\n3 2\n255\n' "$(R 6 '\144\144\144')"
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
  mk in.ppm 'P6\n5 1\n65535\n' "$(R 5 '\000\001\000\001\001\000')"
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
  mk in.ppm 'P6\n5 1\n255\n' "$(R 3 "$W3")" "$(R 2 '\000\000\000')"
  ok rgb2hsv in.ppm out.ppm
  gives out.ppm lumiRGBToHSV_8u_C3R 'P6\n5 1\n255\n' "$(R 3 '\000\000\377')" "$(R 2 '\000\000\000')"
  ok hsv2rgb out.ppm back.ppm
  same back.ppm in.ppm
}

# 16-bit PAM with alpha through HLS and back: a grey level has H = S = 0 and
# L = the level; the 16-bit alpha stays.
case_rgb2hls_16u_alpha() {
  mk in.pam 'P7\nWIDTH 5\nHEIGHT 1\nDEPTH 4\nMAXVAL 65535\nTUPLTYPE RGB_ALPHA\nENDHDR\n' \
    "$(R 5 '\001\002\001\002\001\002\022\064')"
  ok rgb2hls in.pam out.pam
  gives out.pam lumiRGBToHLS_16u_AC4R 'P7\nWIDTH 5\nHEIGHT 1\nDEPTH 4\nMAXVAL 65535\nTUPLTYPE HLS_ALPHA\nENDHDR\n' \
    "$(R 5 '\000\000\001\002\000\000\022\064')"
  ok hls2rgb out.pam back.pam
  grep -q -F lumiHLSToRGB_16u_AC4R err.txt || die "summary: $(cat err.txt)"
  same back.pam in.pam
}

# --- Input that cannot be read: one line, the right code, no output ----------

case_bad_input() {
  mkdir folder.ppm
  head -c 47 /dev/zero >r.rgbp
  head -c 48 /dev/zero >r.yuv
  refused <<'TABLE'
1|nothing.ppm|-|No such file|rgb2yuv nothing.ppm out.ppm
1|folder.ppm|-||rgb2yuv folder.ppm out.ppm
1|empty.ppm||empty file|rgb2yuv empty.ppm out.ppm
1|empty.y4m|YUV4MPEG2 W2 H2 C444\n|no frames|yuv2rgb empty.y4m out.ppm
# truncated and malformed headers: PNM, PAM, YUV4MPEG2
1|t.ppm|P6\n32 |truncated header|rgb2yuv t.ppm out.ppm
1|t2.ppm|P6\n32 32\n255|truncated header|rgb2yuv t2.ppm out.ppm
1|t3.ppm|P6\n1 1\n# a comment with no end|truncated header|rgb2yuv t3.ppm out.ppm
1|t4.ppm|P|truncated header|rgb2yuv t4.ppm out.ppm
1|t.pam|P7\nWIDTH 2\nHEIGHT 2\nDEPTH 3\nMAXVAL 255\n|truncated header|rgb2yuv t.pam out.pam
1|t.y4m|YUV4MPEG2 W4 H4 C444|truncated header|yuv2rgb t.y4m out.ppm
1|t2.y4m|YUV4M|truncated header|yuv2rgb t2.y4m out.ppm
1|m.ppm|P6\n3x 2\n255\n\377\377\377|malformed header|rgb2yuv m.ppm out.ppm
1|m2.ppm|P6\n3 2\n255x\377\377\377|malformed header|rgb2yuv m2.ppm out.ppm
1|m3.ppm|P6\n0 2\n255\n|malformed header|rgb2yuv m3.ppm out.ppm
1|m4.ppm|GIF89a|not a PNM|rgb2yuv m4.ppm out.ppm
1|m.pam|P7\nWIDTH 2\nHEIGHT 2\nDEPTH 3\nENDHDR\n|no MAXVAL|rgb2yuv m.pam out.pam
1|m2.pam|P7\nWIDTH 2\nHEIGHT two\nDEPTH 3\nMAXVAL 255\nENDHDR\n|HEIGHT|rgb2yuv m2.pam out.pam
1|m3.pam|P7\nWIDTH 2\nWIDTH 2\nHEIGHT 2\nDEPTH 3\nMAXVAL 255\nENDHDR\n|twice|rgb2yuv m3.pam out.pam
1|m4.pam|P7\nSIZE 2\nENDHDR\n|SIZE|rgb2yuv m4.pam out.pam
1|m.y4m|YUV4MPEG2 H2 C444\nFRAME\n\200\200|no W tag|yuv2rgb m.y4m out.ppm
1|m2.y4m|YUV4MPEG2 W2 H-2 C444\nFRAME\n\200\200|height|yuv2rgb m2.y4m out.ppm
1|m3.y4m|YUV4MPEG2 W2 H2 F25 C444\nFRAME\n\200\200|frame rate|yuv2rgb m3.y4m out.ppm
1|m4.y4m|YUV4MPEG2 W2 H1 C444\nFRAMES\n\200\200\200\200\200\200|FRAME|yuv2rgb m4.y4m out.ppm
# numbers and sizes: refused before any allocation
1|n.ppm|P6\n99999999999 1\n255\n|width too large|rgb2yuv n.ppm out.ppm
1|n2.ppm|P6\n1 1\n99999\n\377\377\377\377\377\377|maxval 99999|rgb2yuv n2.ppm out.ppm
1|h.ppm|P6\n2147483647 2147483647\n255\n\377\377\377\377||rgb2yuv h.ppm out.ppm
1|h2.ppm|P6\n100000 100000\n255\n\377\377\377\377||rgb2yuv h2.ppm out.ppm
1|h.y4m|YUV4MPEG2 W65536 H65536 C444\nFRAME\n\200\200\200\200||yuv2rgb h.y4m out.ppm
1|h.rgbp|\200\200\200\200||--raw 2000000000x2000000000 rgb2yuv h.rgbp out.y4m
1|r.rgbp|-|not a whole number|--raw 4x4 rgb2yuv r.rgbp out.y4m
1|e.rgbp|||--raw 4x4 rgb2yuv e.rgbp out.y4m
1|r.yuv|-|--raw WxH|yuv2rgb r.yuv out.ppm
# pixel data that ends early, also after frames were written
1|t.ppm|P6\n4 4\n255\n\001\001\001\001\001\001\001\001\001\001|truncated pixel data|rgb2yuv t.ppm out.ppm
1|t2.ppm|P6\n1 1\n65535\n\001\001\001\001\001|truncated pixel data|rgb2yuv t2.ppm out.ppm
1|t.y4m|YUV4MPEG2 W2 H2 C444\nFRAME\n\200\200\200\200\200|truncated pixel data of frame 1|yuv2rgb t.y4m out.ppm
1|t2.y4m|YUV4MPEG2 W2 H2 C444\nFRAME\n\200\200\200\200\200\200\200\200\200\200\200\200FRAME\n\200|frame 2|yuv2rgb t2.y4m out.ppm
1|t3.y4m|YUV4MPEG2 W2 H2 C444\nFRAME\n\200\200\200\200\200\200\200\200\200\200\200\200FRA|truncated frame header|yuv2rgb t3.y4m out.ppm
1|f.ppm|P6\n1 1\n255\n\377\377\377P6\n2 1\n255\n\377\377\377\377\377\377|frame 2 is 2x1|rgb2yuv f.ppm out.y4m
1|f2.ppm|P6\n1 1\n255\n\377\377\377junk|malformed header|rgb2yuv f2.ppm out.ppm
TABLE
}

# --- Input and output the conversion does not take --------------------------

case_unsupported() {
  mk w.ppm "$P6_1" "$W3"
  mk w16.ppm 'P6\n2 1\n65535\n' "$(R 12 '\001')"
  mk y.y4m 'YUV4MPEG2 W2 H1 C444\nFRAME\n' "$(R 6 '\200')"
  mk y.ppm "$P6_1" "$YUV_RED"
  mk a.pam "$PAM_A1" "$W3" '\200'
  refused <<'TABLE'
1|a.ppm|P3\n1 1\n255\n255 255 255\n|plain (ASCII) P3 is not supported|rgb2yuv a.ppm out.ppm
1|a.pbm|P1\n2 1\n0 1\n|P1|rgb2yuv a.pbm out.ppm
1|b.pbm|P4\n8 1\n\377|P4|rgb2yuv b.pbm out.ppm
1|m.ppm|P6\n2 2\n1023\n\001\001\001\001\001\001\001\001\001\001\001\001\001\001\001\001\001\001\001\001\001\001\001\001|maxval 1023 is not supported|rgb2yuv m.ppm out.ppm
1|w16.ppm|-|rgb2yuv has no 16u C3 form|rgb2yuv w16.ppm out.ppm
1|c.y4m|YUV4MPEG2 W2 H2 F25:1 C420jpeg\nFRAME\n\200\200\200\200\200\200|C420jpeg is not supported by yuv2rgb|yuv2rgb c.y4m out.ppm
1|c2.y4m|YUV4MPEG2 W2 H2\nFRAME\n\200\200\200\200\200\200|no C tag, so 4:2:0|yuv2rgb c2.y4m out.ppm
1|d.pam|P7\nWIDTH 2\nHEIGHT 1\nDEPTH 1\nMAXVAL 255\nTUPLTYPE GRAYSCALE\nENDHDR\n\200\200|depth 1|rgb2yuv d.pam out.pam
1|g.pgm|P5\n2 2\n255\n\200\200\200\200|is not 3 planes|yuv2rgb --planes g.pgm out.ppm
# the wrong colour model, in or out
1|y.y4m|-|holds YUV; rgb2yuv takes RGB|rgb2yuv y.y4m out.ppm
1|r.pam|P7\nWIDTH 1\nHEIGHT 1\nDEPTH 3\nMAXVAL 255\nTUPLTYPE RGB\nENDHDR\n\377\377\377|holds RGB; yuv2rgb takes YUV|yuv2rgb r.pam out.pam
1|out.yuv|-|holds YUV, the conversion makes RGB|yuv2rgb y.y4m out.yuv
1|out.rgbp|-||rgb2yuv w.ppm out.rgbp
1|out.y4m|-|this file holds YUV, the conversion makes HSV|rgb2hsv w16.ppm out.y4m
# forms the library does not have, outputs that cannot hold the result
1|out.ppm|-|no alpha channel|rgb2yuv a.pam out.ppm
1|a.pam|-|YUV4MPEG2 has no alpha channel: write a .pam to keep the alpha~no 8u AC4->P3 form|rgb2yuv a.pam out.y4m
1|y.ppm|-|yuv2rgb has no 8u C3->P3 form~P3->C3~yuv2rgb makes RGB planes (raw planes) only from other input: give it a .y4m~or write a .ppm or .pam|yuv2rgb y.ppm out.rgbp
1|w16.ppm|-|YUV4MPEG2 output is 8-bit~reduce the input to 8 bits first, e.g. pamdepth 255 w16.ppm >w16-8bit.ppm|rgb2yuv w16.ppm out.y4m
1|w16.ppm|-|output is 8-bit: write a .ppm or .pam|copy w16.ppm out.yuv
1|out.png|-|unknown output extension 'png'|rgb2yuv w.ppm out.png
1|out|-||rgb2yuv w.ppm out
TABLE
}

# The output may not be the input, under its name or through a link.
case_same_file() {
  mk w.ppm "$P6_1" "$W3"
  cp w.ppm copy.ppm
  ln -s w.ppm link.ppm
  refused <<'TABLE'
1|w.ppm|-|is the input file|rgb2yuv w.ppm w.ppm
1|link.ppm|-||rgb2yuv w.ppm link.ppm
TABLE
  same w.ppm copy.ppm
}

case_usage_errors() {
  head -c 47 /dev/zero >r.rgbp
  refused <<'TABLE'
2||-|no conversion given|
2||-|unknown conversion 'rgb2hsx'|rgb2hsx a.ppm b.ppm
2||-||rgb2yuv a.ppm
2||-||rgb2yuv a.ppm b.ppm c.ppm
2||-||--frobnicate
2||-||--raw
2||-||demo a b
2||-||--raw 2x2 demo
2||-||--raw 4x0 rgb2yuv r.rgbp out.y4m
2||-||--raw four rgb2yuv r.rgbp out.y4m
TABLE
}

# --- 4:2:2 / 4:2:0, YCbCr and raw layouts ---------------------------------

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
  header out.y4m 'YUV4MPEG2 W8 H4 F25:1 Ip A1:1 C420jpeg XLUMCC_MODEL=YUV'
  [ "$(wc -c <out.y4m)" -eq $(($(head -n 1 out.y4m | wc -c) + 6 + 32 + 2 * 8)) ] || die "out.y4m has the wrong size"
  ok yuv4202rgb out.y4m back.ppm
  # Chroma is the mean of each cell (steps of 10 in R a pixel here); a
  # swapped or shifted plane would show a hundred or more.
  close in.ppm back.ppm 16
  # A 3x3 image: chroma planes of 2x2, the last column and row converted as
  # if repeated.
  { printf 'P6\n3 3\n255\n'; rep 9 '\200\140\100'; } >odd.ppm
  ok rgb2yuv420 odd.ppm odd.y4m
  [ "$(wc -c <odd.y4m)" -eq $(($(head -n 1 odd.y4m | wc -c) + 6 + 9 + 8)) ] || die "odd.y4m size"
  ok yuv4202rgb odd.y4m odd-back.ppm
  close odd.ppm odd-back.ppm 3
  # 4:2:2 as well, to a .y4m and to raw YUY2; both read back the same.
  ok rgb2yuv422 in.ppm out422.y4m
  grep -q -a '^YUV4MPEG2 W8 H4 F25:1 Ip A1:1 C422 XLUMCC_MODEL=YUV$' out422.y4m || die "C422 header"
  ok yuv4222rgb out422.y4m back422.ppm
  close in.ppm back422.ppm 16
}

# Other tools' .y4m is YCbCr: the YUV family reads it with --model yuv (and
# only so: ycbcr_refused); any 4:2:0 siting is accepted.
case_yuv420_model_tags() {
  mk want.ppm 'P6\n2 2\n255\n' "$(R 4 '\200\200\200')"
  for c in C420jpeg C420mpeg2 C420paldv C420; do
    mk $c.y4m "YUV4MPEG2 W2 H2 F25:1 $c\nFRAME\n" "$(R 6 '\200')"
    ok yuv4202rgb --model yuv $c.y4m $c.ppm
    same $c.ppm want.ppm
  done
  # The copy keeps the siting, and says the model it read.
  ok copy C420mpeg2.y4m copy.y4m
  header copy.y4m 'YUV4MPEG2 W2 H2 F25:1 Ip A1:1 C420mpeg2 XCOLORRANGE=LIMITED'
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
  close in.ppm back.ppm 2
  # Pixels too (PAM YCbCr), and an untagged C444 file as other tools write it.
  ok rgb2ycbcr in.ppm out.pam
  grep -q -a 'TUPLTYPE YCbCr' out.pam || die "PAM tuple type"
  { printf 'YUV4MPEG2 W1 H1 C444\nFRAME\n'; printf '\020\200\200'; } >plain.y4m
  ok ycbcr2rgb plain.y4m black.ppm
  { printf 'P6\n1 1\n255\n'; printf '\000\000\000'; } >want.ppm
  same black.ppm want.ppm
}

# Refused: full-range files (4:4:4 and 4:2:0); the 4:2:x names users may
# try (one line naming rgb2ycbcr / ycbcr2rgb); other tools' 4:2:0 (YCbCr)
# read as YUV without --model yuv; YUV read as YCbCr.
case_ycbcr_refused() {
  mk w.ppm 'P6\n2 2\n255\n' "$(R 4 "$W3")"
  mk v.y4m 'YUV4MPEG2 W2 H2 C420jpeg\nFRAME\n' "$(R 6 '\200')"
  refused <<'TABLE'
1|full.y4m|YUV4MPEG2 W1 H1 C444 XCOLORRANGE=FULL\nFRAME\n\020\200\200|XCOLORRANGE=FULL~studio range|ycbcr2rgb full.y4m out.ppm
1|full.y4m|-||yuv2rgb --model yuv full.y4m out.ppm
1|full420.y4m|YUV4MPEG2 W2 H2 C420jpeg XCOLORRANGE=FULL\nFRAME\n\020\020\020\020\200\200|XCOLORRANGE=FULL~studio range|ycbcr2rgb full420.y4m out.ppm
1||-|rgb2ycbcr makes YCbCr 4:2:0~--out-layout I420|rgb2ycbcr420 w.ppm out.y4m
1||-|ycbcr2rgb reads YCbCr 4:2:0 and 4:2:2|ycbcr4222rgb v.y4m out.ppm
1|v.y4m|-|holds YCbCr~--model yuv~use ycbcr2rgb|yuv4202rgb v.y4m out.ppm
1|yuv.y4m|YUV4MPEG2 W1 H1 C444 XLUMCC_MODEL=YUV\nFRAME\n\200\200\200|holds YUV; ycbcr2rgb takes YCbCr|ycbcr2rgb yuv.y4m out.ppm
1|yuv.y4m|-|tagged XLUMCC_MODEL=YUV|ycbcr2rgb --model ycbcr yuv.y4m out.ppm
TABLE
}

# RGB <-> YCbCr 4:2:0 and 4:2:2, studio range.  A 4x2 image, a red cell
# and a white one: red is Y 82, Cb 90, Cr 240 (the cell's sums), white
# 235 128 128.  In pairs (4:2:2) only a pair's first Y is rounded: red's
# second is 81.  C422 .y4m, YUY2 and I422 hold the same samples.  UYVY
# filters chroma 1, 2, 1 (grey stays 128; Y of grey 128 is 126).
case_ycbcr_sub() {
  mk rw.ppm 'P6\n4 2\n255\n' "$(R 2 '\377\000\000\377\000\000\377\377\377\377\377\377')"
  mk grey.ppm 'P6\n4 1\n255\n' "$(R 4 '\200\200\200')"
  H420='YUV4MPEG2 W4 H2 F25:1 Ip A1:1 C420jpeg XCOLORRANGE=LIMITED\nFRAME\n'
  H422='YUV4MPEG2 W4 H2 F25:1 Ip A1:1 C422 XCOLORRANGE=LIMITED\nFRAME\n'
  PAIRS='\122\132\121\360\353\200\353\200'
  converts <<TABLE
rw.ppm|-|rgb2ycbcr rw.ppm out.y4m --out-layout I420|out.y4m|$H420$(R 2 '\122\122\353\353')\132\200\360\200|lumiRGBToYCbCr420_8u_C3P3R
rw.ppm|-|rgb2ycbcr rw.ppm out.yuv --out-layout NV12|out.yuv|$(R 2 '\122\122\353\353')\132\360\200\200|lumiRGBToYCbCr420_8u_C3P3R
rw.ppm|-|rgb2ycbcr rw.ppm out.yuv --out-layout YUY2|out.yuv|$PAIRS$PAIRS|lumiRGBToYCbCr422_8u_C3C2R
rw.ppm|-|rgb2ycbcr rw.ppm out.y4m --out-layout I422|out.y4m|$H422$(R 2 '\122\121\353\353')\132\200\132\200\360\200\360\200|lumiRGBToYCrCb422_8u_C3C2R + lumiYCrCb422ToYCbCr422_8u_C2P3R
grey.ppm|-|rgb2ycbcr grey.ppm out.yuv --out-layout UYVY|out.yuv|$(R 2 '\200\176\200\176')|lumiRGBToCbYCr422_8u_C3C2R
TABLE
  rm out.y4m out.yuv
  # And back: every form reads its samples to the same pixels (a flat cell
  # or pair needs no interpolation), close to the image.
  ok rgb2ycbcr rw.ppm a.y4m --out-layout I420
  ok ycbcr2rgb a.y4m a.ppm
  close rw.ppm a.ppm 2
  for layout in I422 YUY2 NV12; do
    ok rgb2ycbcr rw.ppm b.yuv --out-layout $layout
    ok ycbcr2rgb --raw 4x2 --layout $layout b.yuv b.ppm
    close rw.ppm b.ppm 2
  done
  ok rgb2ycbcr grey.ppm u.yuv --out-layout UYVY
  ok ycbcr2rgb --raw 4x1 --layout UYVY u.yuv u.ppm
  close grey.ppm u.ppm 2
}

# A 4:2:0 .y4m as other tools write it (no tags) -> PPM -> 4:2:0 .y4m, by
# default through YCbCr; odd sizes too.  The samples come back within a
# level or two.
case_ycbcr420_y4m_roundtrip() {
  smooth_ppm >in.ppm
  ok rgb2ycbcr in.ppm made.y4m --out-layout I420
  # The same samples as another tool would write them: header without tags.
  { printf 'YUV4MPEG2 W8 H4 F25:1 C420jpeg\nFRAME\n'; tail -c 48 made.y4m; } >v.y4m
  ok ycbcr2rgb v.y4m mid.ppm
  close in.ppm mid.ppm 12
  ok rgb2ycbcr mid.ppm back.y4m --out-layout I420
  header back.y4m 'YUV4MPEG2 W8 H4 F25:1 Ip A1:1 C420jpeg XCOLORRANGE=LIMITED'
  tail -c 48 back.y4m >b.bin
  tail -c 48 v.y4m >a.bin
  close a.bin b.bin 2
  # 3x3: one full cell and the partial ones, as if the last column and row
  # were repeated.
  { printf 'P6\n3 3\n255\n'; rep 9 '\200\140\100'; } >odd.ppm
  ok rgb2ycbcr odd.ppm odd.y4m --out-layout I420
  [ "$(wc -c <odd.y4m)" -eq $(($(head -n 1 odd.y4m | wc -c) + 6 + 9 + 8)) ] || die "odd.y4m size"
  ok ycbcr2rgb odd.y4m odd-back.ppm
  close odd.ppm odd-back.ppm 3
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
  printf '\001\002\003\004\005\006\007\010\011\012\013\014\015\016\017\020' >i422.yuv
  fails 1 i422.yuv --raw 4x2 --layout I422 repack i422.yuv x.yuv --out-layout YUY2
  says 'P3_422->C2'
  absent x.yuv
}

# converts TABLE: each line "IN|CONTENT|ARGS|OUT|WANT|FUNCTION" is a
# successful run of lumconv ARGS (see ok), after IN was made from CONTENT
# (printf escapes; "-": IN is there already); OUT then holds WANT and the
# summary names FUNCTION.
converts() {
  oldifs=$IFS
  while IFS='|' read -r name content args out want fn; do
    case $name in '' | '#'*) continue ;; esac
    [ "$content" = - ] || printf "$content" >"$name"
    IFS=' '
    # shellcheck disable=SC2086
    ok $args
    gives "$out" "$fn" "$want"
  done
  IFS=$oldifs
}

# NV12, YUY2, UYVY and I420 / YV12 among themselves, byte for byte.  The
# 4x2 frame: Y 1..8, Cb 9 10, Cr 11 12 (YV12: Cr before Cb; NV12: pairs).
# To 4:2:0 the even rows give the chroma (the odd rows' 20..23 vanish); a
# width of 3 repeats the last pair's first Y.
case_repack_video() {
  YUY2='\001\011\002\013\003\012\004\014\005\011\006\013\007\012\010\014'
  UYVY='\011\001\013\002\012\003\014\004\011\005\013\006\012\007\014\010'
  NV12='\001\002\003\004\005\006\007\010\011\013\012\014'
  converts <<TABLE
i420.yuv|\001\002\003\004\005\006\007\010\011\012\013\014|repack --raw 4x2 --layout I420 i420.yuv out.yuv --out-layout YUY2|out.yuv|$YUY2|lumiYCrCb420ToYCbCr422_8u_P3C2R
i420.yuv|-|repack --raw 4x2 --layout I420 i420.yuv out.yuv --out-layout UYVY|out.yuv|$UYVY|lumiYCrCb420ToCbYCr422_8u_P3C2R
yv12.yuv|\001\002\003\004\005\006\007\010\013\014\011\012|repack --raw 4x2 --layout YV12 yv12.yuv out.yuv --out-layout YUY2|out.yuv|$YUY2|lumiYCrCb420ToYCbCr422_8u_P3C2R
yv12.yuv|-|repack --raw 4x2 --layout YV12 yv12.yuv out.yuv --out-layout UYVY|out.yuv|$UYVY|lumiYCrCb420ToCbYCr422_8u_P3C2R
nv12.yuv|$NV12|repack --raw 4x2 --layout NV12 nv12.yuv out.yuv --out-layout YUY2|out.yuv|$YUY2|lumiYCbCr420ToYCbCr422_8u_P2C2R
nv12.yuv|-|repack --raw 4x2 --layout NV12 nv12.yuv out.yuv --out-layout UYVY|out.yuv|$UYVY|lumiYCbCr420ToCbYCr422_8u_P2C2R
yuy2.yuv|$YUY2|repack --raw 4x2 --layout YUY2 yuy2.yuv out.yuv --out-layout UYVY|out.yuv|$UYVY|lumiYCbCr422ToCbYCr422_8u_C2R
uyvy.yuv|$UYVY|repack --raw 4x2 --layout UYVY uyvy.yuv out.yuv --out-layout YUY2|out.yuv|$YUY2|lumiCbYCr422ToYCbCr422_8u_C2R
y2.yuv|\001\011\002\013\003\012\004\014\005\024\006\025\007\026\010\027|repack --raw 4x2 --layout YUY2 y2.yuv out.yuv --out-layout NV12|out.yuv|$NV12|lumiYCbCr422ToYCbCr420_8u_C2P2R
u2.yuv|\011\001\013\002\012\003\014\004\024\005\025\006\026\007\027\010|repack --raw 4x2 --layout UYVY u2.yuv out.yuv --out-layout NV12|out.yuv|$NV12|lumiCbYCr422ToYCbCr420_8u_C2P2R
odd.yuv|\001\002\003\004\005\006\011\012\013\014|repack --raw 3x2 --layout I420 odd.yuv out.yuv --out-layout YUY2|out.yuv|\001\011\002\013\003\012\003\014\004\011\005\013\006\012\006\014|lumiYCrCb420ToYCbCr422_8u_P3C2R
TABLE
  # The round trip NV12 -> YUY2 -> NV12 gives the frame back.
  ok repack --raw 4x2 --layout NV12 nv12.yuv yuy2.yuv --out-layout YUY2
  ok repack --raw 4x2 --layout YUY2 yuy2.yuv back.yuv --out-layout NV12
  same back.yuv nv12.yuv
}

# deinterlace: NV12 stripes 0 / 100 (two fields) blend to 25 50 50 75 (the
# first row 3, 1, the last 1, 3 over 4); the chroma rows (16 48 | 80 112 Cb,
# 32 64 | 96 128 Cr) average to 48 80, 64 96.  The YUY2 form adds one level
# in its first two and last two rows.
case_deinterlace() {
  NV='\000\000\000\000\144\144\144\144\000\000\000\000\144\144\144\144\020\040\060\100\120\140\160\200'
  converts <<TABLE
nv.yuv|$NV|deinterlace --raw 4x4 --layout NV12 nv.yuv out.y4m|out.y4m|YUV4MPEG2 W4 H4 F25:1 Ip A1:1 C420jpeg\nFRAME\n$(R 4 '\031')$(R 8 '\062')$(R 4 '\113')\060\120\060\120\100\140\100\140|lumiYCbCr420ToYCrCb420_Filter_8u_P2P3R
nv.yuv|-|deinterlace --raw 4x4 --layout NV12 nv.yuv out.yuv --out-layout YUY2|out.yuv|$(R 1 '\032\060\032\100\032\120\032\140')$(R 2 '\063\060\063\100\063\120\063\140')$(R 1 '\114\060\114\100\114\120\114\140')|lumiYCbCr420ToYCbCr422_Filter_8u_P2C2R
TABLE
  # An interlaced .y4m (planes) goes through NV12 to the same bytes, and
  # comes out tagged progressive; YUY2 has no deinterlacing form.
  { printf 'YUV4MPEG2 W4 H4 F25:1 It A1:1 C420jpeg\nFRAME\n'
    printf "$(R 2 '\000\000\000\000\144\144\144\144')\020\060\120\160\040\100\140\200"; } >tv.y4m
  ok deinterlace tv.y4m p.y4m
  grep -F -q 'lumiYCbCr420_8u_P3P2R + lumiYCbCr420ToYCrCb420_Filter_8u_P2P3R' err.txt || die "summary: $(cat err.txt)"
  case "$(head -n 1 p.y4m)" in *' Ip '*) ;; *) die "p.y4m: $(head -n 1 p.y4m)" ;; esac
  tail -c 24 p.y4m >a.bin
  tail -c 24 out.y4m >b.bin
  same a.bin b.bin
  rm out.y4m out.yuv
  refused <<'TABLE'
1|yuy2.yuv|\001\002\003\004\005\006\007\010\011\012\013\014\015\016\017\020|deinterlace has no C2 form~P2_420->P3_420|deinterlace --raw 4x2 --layout YUY2 yuy2.yuv out.yuv
TABLE
}

# upsample-filter: 4:2:0 Cb rows 0 10, 20 30, 40 50, 60 70, 80 90 (Cr 200
# down by tens) to 4:2:2: the new rows are (9 (a + b) - c - d + 8) >> 4 with
# the last row standing in beyond the image (row 7: 71 81, row 9: 81 91);
# the height 10 is not a multiple of 8, which the tool handles.  repack
# repeats rows instead.  NV12 and YV12 give the same.
case_upsample_filter() {
  CB='\000\012\024\036\050\062\074\106\120\132'
  CR='\310\276\264\252\240\226\214\202\170\156'
  converts <<TABLE
u.yuv|$(R 40 '\200')$CB$CR|upsample-filter --raw 4x10 --layout I420 u.yuv out.y4m|out.y4m|YUV4MPEG2 W4 H10 F25:1 Ip A1:1 C422\nFRAME\n$(R 40 '\200')\000\012\011\023\024\036\036\050\050\062\062\074\074\106\107\121\120\132\121\133\310\276\277\265\264\252\252\240\240\226\226\214\214\202\201\167\170\156\167\155|lumiYCbCr420ToYCbCr422_Filter_8u_P3R
TABLE
  mv out.y4m i420.y4m
  ok repack --raw 4x10 --layout I420 u.yuv nv.yuv --out-layout NV12
  ok upsample-filter --raw 4x10 --layout NV12 nv.yuv out.y4m
  same out.y4m i420.y4m
  ok copy --raw 4x10 --layout I420 u.yuv yv.yuv --out-layout YV12
  ok upsample-filter --raw 4x10 --layout YV12 yv.yuv out.y4m
  same out.y4m i420.y4m
  ok repack --raw 4x10 --layout I420 u.yuv rep.y4m --out-layout I422
  cmp -s rep.y4m i420.y4m && die "the filter repeated rows"
}

# ycbcr4202rgb-filter: the library writes B, G, R, alpha; the PPM holds
# R, G, B.  Y 16 235 82 128 a row, Cb 90 128, Cr 240 128: pixel 0 is red
# (178 0 0: a missed swap gives 0 0 178), pixel 1 takes the means 109, 184.
# Odd sizes convert as the even size, cut back; full range is refused.
case_ycbcr420_filter_rgb() {
  ROW='\262\000\000\377\330\330\114\114\114\202\202\202'
  converts <<TABLE
f.y4m|YUV4MPEG2 W4 H2 C420jpeg\nFRAME\n\020\353\122\200\020\353\122\200\132\200\360\200|ycbcr4202rgb-filter f.y4m out.ppm|out.ppm|P6\n4 2\n255\n$ROW$ROW|lumiYCrCb420ToBGR_Filter_8u_P3C4R
g.y4m|YUV4MPEG2 W3 H3 C420jpeg\nFRAME\n\020\353\122\020\353\122\020\353\122\132\200\132\200\360\200\360\200|ycbcr4202rgb-filter g.y4m out.ppm|out.ppm|P6\n3 3\n255\n$(R 3 '\262\000\000\377\330\330\114\114\114')|lumiYCrCb420ToBGR_Filter_8u_P3C4R
TABLE
  rm out.ppm
  refused <<'TABLE'
1|full.y4m|YUV4MPEG2 W2 H2 C420jpeg XCOLORRANGE=FULL\nFRAME\n\200\200\200\200\200\200|XCOLORRANGE=FULL|ycbcr4202rgb-filter full.y4m out.ppm
TABLE
}

# --- The output appears only when complete ---------------------------------

# A failed run, also one failing after frames were written, leaves an existing
# output as it was and no temporary file; one that succeeds replaces it,
# with its permissions.  Through a symbolic link the target is replaced in
# its own folder and the link stays a link (a dangling one too).
case_failed_run_keeps_output() {
  mk good.y4m "$Y4M_2x2" "$(R 12 '\200')"
  mk t.y4m "$Y4M_2x2" "$(R 12 '\200')" 'FRAME\n' "$(R 11 '\200')"
  mk want.ppm 'P6\n2 2\n255\n' "$(R 4 '\200\200\200')"
  mkdir sub
  echo precious >keep.ppm
  echo precious >sub/target.ppm
  chmod 640 keep.ppm
  ln -s sub/target.ppm link.ppm
  ln -s sub/new.ppm dangling.ppm
  for out in keep.ppm link.ppm; do
    fails 1 t.y4m yuv2rgb t.y4m $out
    says 'frame 2'
    [ "$(cat keep.ppm sub/target.ppm)" = "$(printf 'precious\nprecious')" ] || die "$out was changed"
    no_temp . sub
  done
  for out in keep.ppm link.ppm dangling.ppm; do
    ok yuv2rgb good.y4m $out
    no_temp . sub
  done
  [ "$(stat -c %a keep.ppm)" = 640 ] || die "keep.ppm's mode is $(stat -c %a keep.ppm)"
  [ -L link.ppm ] && [ -L dangling.ppm ] || die "a link is no longer a link"
  for f in keep.ppm sub/target.ppm sub/new.ppm; do same $f want.ppm; done
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
  header out.txt 'YUV4MPEG2 W5 H1 F25:1 Ip A1:1 C444 XLUMCC_MODEL=YUV'
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
  header out.y4m 'YUV4MPEG2 W2 H1 F30000:1001 It A4:3 C444'
  grep -q -F 'F30000:1001 A4:3' err.txt || die "summary: $(cat err.txt)"
  tail -c 6 out.y4m >a.bin
  tail -c 6 in.y4m >b.bin
  same a.bin b.bin
  ok copy --rate 24000:1001 in.y4m out2.y4m
  header out2.y4m 'YUV4MPEG2 W2 H1 F24000:1001 It A4:3 C444'
  { printf 'P6\n1 1\n255\n'; printf "$W3"; } >w.ppm
  ok rgb2yuv w.ppm --rate=50:1 --aspect 16:15 out3.y4m
  header out3.y4m 'YUV4MPEG2 W1 H1 F50:1 Ip A16:15 C444 XLUMCC_MODEL=YUV'
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
