#!/bin/sh
# The baseline is SSE2: the library must load and run on a processor with
# nothing more.  Code for more (SSSE3, AVX2, AVX-512) lives only in the
# faster-path units, *_ssse3.cpp, *_avx2.cpp and *_avx512.cpp, and is entered
# only after the processor test.  This check scans the built library:
#
#  (a) every global or weak function a faster-path object defines is an entry
#      point named for the unit's instruction set (..._avx2) or sits in the
#      unit's inline namespace (lum::isa_avx2::...).  Anything else is an
#      inline or template copy that the linker may keep for baseline callers;
#  (b) in the linked library, no function other than those of the faster-path
#      units uses an instruction beyond SSE2 (VEX/EVEX, mask registers, SSE3,
#      SSSE3, SSE4.1/4.2, BMI, LZCNT, MOVBE, ...), except xgetbv in the
#      processor test;
#  (c) loading the library runs none of its own code: no object has an
#      .init_array, .ctors or .preinit_array section, and the library's
#      .init_array holds only the C runtime's frame_dummy.  (Skipped with
#      --sanitized: the sanitizers register each object with a constructor.)
#
# Usage: check_isa.sh [--sanitized] <liblumccw7.so> <directory of the library's objects>
# Needs only sh, awk and binutils (nm, objdump, readelf, c++filt).
set -u
sanitized=0
if [ "${1:-}" = "--sanitized" ]; then sanitized=1; shift; fi
[ $# -eq 2 ] || { echo "usage: $0 [--sanitized] <library> <object directory>" >&2; exit 2; }
lib=$1
objdir=$2
[ -f "$lib" ] || { echo "no library $lib" >&2; exit 2; }
objs=$(find "$objdir" -name '*.o' | sort)
[ -n "$objs" ] || { echo "no objects under $objdir" >&2; exit 2; }

# The instruction set of a faster-path object, from its source name; empty
# for a baseline object.
isa_of() {
  case "$1" in
    *_ssse3.cpp.o | *_ssse3.o) echo ssse3 ;;
    *_avx2.cpp.o | *_avx2.o) echo avx2 ;;
    *_avx512.cpp.o | *_avx512.o) echo avx512 ;;
    *) echo "" ;;
  esac
}

# The processor test may run xgetbv (after cpuid has reported OSXSAVE).
# Demangled names, matched at the start (lum::isa() when the test is inlined there).
allow_xgetbv='^lum::(isa|processorIsa)\(\)|^lum::\(anonymous namespace\)::(testProcessor|readXcr0)\('

tmp=$(mktemp -d)
trap 'rm -rf "$tmp"' EXIT
status=0
nfast=0

# ---------------------------------------------------------------------------
# (a) global and weak functions of the faster-path objects.
: > "$tmp/fast_global"  # mangled names of functions defined by faster-path objects
: > "$tmp/base_global"  # ... by baseline objects
: > "$tmp/bad_a"
for o in $objs; do
  isa=$(isa_of "$o")
  # Compiler-generated helpers (the i386 program-counter thunks) are no code
  # of ours and use no instruction set.
  nm --defined-only -P "$o" | awk '$2 ~ /^[TWi]$/ && $1 !~ /^__x86\.get_pc_thunk\./ {print $1}' > "$tmp/syms"
  if [ -z "$isa" ]; then
    cat "$tmp/syms" >> "$tmp/base_global"
    continue
  fi
  nfast=$((nfast + 1))
  cat "$tmp/syms" >> "$tmp/fast_global"
  # An entry point is named ..._<isa>; a shared inline or template function
  # carries isa_<isa> (the inline namespace) in its mangled name.
  grep -v -F "_${isa}" "$tmp/syms" | while read -r s; do
    echo "  $(basename "$o"): $(echo "$s" | c++filt) [$s]"
  done >> "$tmp/bad_a"
done
if [ "$nfast" -eq 0 ]; then
  echo "no faster-path objects (*_ssse3, *_avx2, *_avx512) under $objdir" >&2; exit 2
fi
if [ -s "$tmp/bad_a" ]; then
  echo "FAIL (a): faster-path objects define functions outside their instruction set's"
  echo "  inline namespace and not named as entry points (the linker may keep such a copy"
  echo "  for the baseline callers):"
  cat "$tmp/bad_a"
  status=1
fi

# ---------------------------------------------------------------------------
# (b) instructions beyond SSE2 in the linked library.
#
# Which addresses hold faster-path code: a local function belongs to the
# object whose FILE symbol precedes it in the symbol table; a global one
# (hidden globals become local symbols after an empty FILE symbol) is
# faster-path code when only faster-path objects define its name.
sort -u "$tmp/fast_global" > "$tmp/fast_sorted"
sort -u "$tmp/base_global" > "$tmp/base_sorted"
comm -23 "$tmp/fast_sorted" "$tmp/base_sorted" > "$tmp/fast_only"
readelf -sW "$lib" | awk -v fastonly="$tmp/fast_only" '
  BEGIN { while ((getline s < fastonly) > 0) fast[s] = 1 }
  /^Symbol table / { in_symtab = ($0 ~ /\.symtab/); next }
  !in_symtab || NF < 8 { next }
  $4 == "FILE" { file = $8; next }
  $4 != "FUNC" || $7 == "UND" { next }
  {
    addr = $2; sub(/^0+/, "", addr); if (addr == "") addr = "0"
    name = $8; sub(/@.*/, "", name)
    isfast = 0
    if ($5 == "LOCAL" && file ~ /_(ssse3|avx2|avx512)\.cpp$/) isfast = 1
    else if (name in fast) isfast = 1
    # An address is faster-path code only when every symbol there is.
    if (!(addr in kind)) kind[addr] = isfast
    else if (!isfast) kind[addr] = 0
  }
  END { for (a in kind) if (kind[a]) print a }' > "$tmp/fast_addrs"
[ -s "$tmp/fast_addrs" ] || { echo "FAIL (b): no faster-path functions found in $lib"; status=1; }

# Intel syntax: mnemonics without size suffixes.
objdump -d -w --no-show-raw-insn -M intel "$lib" | awk -v fastaddrs="$tmp/fast_addrs" '
  BEGIN {
    while ((getline a < fastaddrs) > 0) fast[a] = 1
    split("addsubps addsubpd haddps haddpd hsubps hsubpd movddup movshdup movsldup lddqu fisttp " \
          "pshufb palignr phaddw phaddd phaddsw phsubw phsubd phsubsw pmaddubsw pmulhrsw " \
          "psignb psignw psignd pabsb pabsw pabsd " \
          "blendps blendpd blendvps blendvpd pblendw pblendvb pminsb pminsd pminud pminuw " \
          "pmaxsb pmaxsd pmaxud pmaxuw roundps roundpd roundss roundsd dpps dppd insertps " \
          "extractps pinsrb pinsrd pinsrq pextrb pextrd pextrq ptest pmuldq pmulld packusdw " \
          "pcmpeqq pcmpgtq movntdqa mpsadbw phminposuw pcmpestri pcmpestrm pcmpistri pcmpistrm " \
          "crc32 popcnt andn bextr blsi blsmsk blsr bzhi pdep pext rorx sarx shlx shrx lzcnt " \
          "tzcnt movbe xgetbv extrq insertq movntss movntsd pclmulqdq aesenc aesenclast aesdec " \
          "aesdeclast aesimc aeskeygenassist sha1rnds4 sha1nexte sha1msg1 sha1msg2 sha256rnds2 " \
          "sha256msg1 sha256msg2 adcx adox rdrand rdseed", list, " ")
    for (i in list) beyond[list[i]] = 1
  }
  /^[0-9a-f]+ <.*>:$/ {
    addr = $1; sub(/^0+/, "", addr); if (addr == "") addr = "0"
    name = $0; sub(/^[0-9a-f]+ </, "", name); sub(/>:$/, "", name)
    isfast = (addr in fast)
    next
  }
  isfast || !/^ *[0-9a-f]+:\t/ { next }
  {
    ins = $0; sub(/^ *[0-9a-f]+:\t/, "", ins)
    n = split(ins, w, /[ \t]+/)
    # Skip prefixes and pseudo-prefixes.
    for (i = 1; i <= n; ++i)
      if (w[i] !~ /^(rep|repz|repe|repnz|repne|lock|notrack|bnd|data16|addr32|cs|ds|es|ss|fs|gs|\{vex\}|\{vex3\}|\{evex\}|\{disp32\})$/) break
    m = w[i]
    bad = (m in beyond) || m ~ /^v[a-z]/ && m !~ /^(verr|verw)$/ ||
          m ~ /^k(mov|and|andn|or|xor|xnor|not|ortest|test|shiftl|shiftr|unpck|add)[bwdq]+$/ ||
          m ~ /^(pmovsx|pmovzx)/
    if (!bad) next
    key = name SUBSEP m
    if (!(key in seen)) { seen[key] = 1; print name "\t" m "\t" $1 }
  }' > "$tmp/hits_b"
# xgetbv in the processor test is allowed; one line a function.
while IFS="	" read -r fn m at; do
  dm=$(echo "$fn" | c++filt)
  if [ "$m" = xgetbv ] && echo "$dm" | grep -q -E "$allow_xgetbv"; then continue; fi
  printf '%s\t%s\t%s\n' "$dm" "$m" "${at%:}"
done < "$tmp/hits_b" | awk -F '\t' '
  !($1 in first) { first[$1] = $3; order[++n] = $1 }
  { ms[$1] = ms[$1] " " $2 }
  END { for (i = 1; i <= n; ++i) print "  " order[i] ":" ms[order[i]] " (first at 0x" first[order[i]] ")" }' > "$tmp/bad_b"
if [ -s "$tmp/bad_b" ]; then
  echo "FAIL (b): code outside the faster-path units uses instructions beyond SSE2:"
  head -n 40 "$tmp/bad_b"
  n=$(wc -l < "$tmp/bad_b")
  [ "$n" -le 40 ] || echo "  ... and $((n - 40)) more functions"
  status=1
fi

# ---------------------------------------------------------------------------
# (c) no code at load.
if [ "$sanitized" -eq 0 ]; then
  : > "$tmp/bad_c"
  for o in $objs; do
    secs=$(objdump -h "$o" | awk '$2 ~ /^\.(init_array|ctors|preinit_array)(\.|$)/ {print $2}' | sort -u | tr '\n' ' ')
    [ -z "$secs" ] || echo "  $(basename "$o"): $secs" >> "$tmp/bad_c"
  done
  if [ -s "$tmp/bad_c" ]; then
    echo "FAIL (c): objects with load-time initialisers (a namespace-scope object with a"
    echo "  dynamic initialiser, e.g. 'const __m128i k = _mm_set...()', or a constructor):"
    cat "$tmp/bad_c"
    status=1
  fi
  # The library's .init_array: addresses, little-endian words of the ELF class.
  width=8
  readelf -hW "$lib" | grep -q 'Class:.*ELF32' && width=4
  readelf -x .init_array "$lib" 2>/dev/null | awk -v w="$width" '
    /^ *0x[0-9a-f]+ / { for (i = 2; i <= 5 && i <= NF; ++i) if ($i ~ /^[0-9a-f]+$/) hex = hex $i }
    END {
      for (p = 1; p + 2 * w - 1 <= length(hex); p += 2 * w) {
        v = ""
        for (b = w - 1; b >= 0; --b) v = v substr(hex, p + 2 * b, 2)
        sub(/^0+/, "", v); print (v == "" ? "0" : v)
      }
    }' > "$tmp/init_entries"
  readelf -sW "$lib" | awk '/^Symbol table / { in_symtab = ($0 ~ /\.symtab/); next }
    in_symtab && $4 == "FUNC" && $7 != "UND" { a = $2; sub(/^0+/, "", a); print a "\t" $8 }' > "$tmp/funcs"
  while read -r a; do
    fn=$(awk -v a="$a" -F '\t' '$1 == a { print $2; exit }' "$tmp/funcs")
    case "$fn" in
      frame_dummy) ;;
      "") echo "FAIL (c): $lib runs code at 0x$a when loaded (no symbol)"; status=1 ;;
      *) echo "FAIL (c): $lib runs $(echo "$fn" | c++filt) when loaded"; status=1 ;;
    esac
  done < "$tmp/init_entries"
  for s in .ctors .preinit_array; do
    if readelf -SW "$lib" | grep -q " \\$s "; then echo "FAIL (c): $lib has a $s section"; status=1; fi
  done
fi

if [ "$status" -eq 0 ]; then
  echo "isa ok: $nfast faster-path objects, $(wc -l < "$tmp/fast_addrs") faster-path functions," \
    "the rest SSE2 only$([ "$sanitized" -eq 1 ] && echo " (load-time check skipped: sanitized build)")"
fi
exit "$status"
