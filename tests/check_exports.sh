#!/bin/sh
# Every dynamic symbol that the conversion library defines must be a public
# lumi/lums/lumcc name or one of the allocator table's globals; the core
# library defines exactly its three names.
set -e
lib="$1"; core="$2"
# (A sanitizer build adds its own instrumentation symbols; they are not ours.)
bad=$(nm -D --defined-only "$lib" | awk '{print $3}' | grep -v -E '^__(odr_)?asan|^__ubsan' | grep -v -E '^(lumi|lums|lumcc)[A-Za-z0-9_]+$|^i_(malloc|calloc|realloc|free|version|min_version)$' || true)
if [ -n "$bad" ]; then
  echo "unexpected exports in $lib:"; echo "$bad"; exit 1
fi
n=$(nm -D --defined-only "$lib" | grep -c ' lumi' || true)
[ "$n" -ge 8 ] || { echo "too few lumi exports in $lib: $n"; exit 1; }
core_syms=$(nm -D --defined-only "$core" | awk '{print $3}' | grep -v -E '^__(odr_)?asan|^__ubsan' | sort | tr '\n' ' ')
[ "$core_syms" = "lum_set_cw_ssx lum_set_rc_ssx threads_omp_of_n_lum " ] || {
  echo "unexpected exports in $core: $core_syms"; exit 1; }
echo "exports ok"
