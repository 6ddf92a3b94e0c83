// NV12, YV12, YUY2 and UYVY repacks: the AVX2 blocks of the plainly stored
// rows, 64 bytes of Y (32 pixel pairs) a round.  Compiled with -mavx2 and
// entered only when the call's level is AVX2; each returns how far it went
// and the SSE2 row goes on from there.  Bytes are only moved, so the result
// is the SSE2 one.
//
// Lane order: the 256-bit unpacks and packs work within each 128-bit half;
// a permute of the halves (or of the 64-bit quarters) puts the bytes back
// in row order.
#include <immintrin.h>

#include "repack/pccnv12.h"

namespace {

using u8 = Lum8u;
inline __m256i ld(const u8* p) { return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(p)); }
inline void st(u8* p, __m256i v) { _mm256_storeu_si256(reinterpret_cast<__m256i*>(p), v); }

// 32 bytes of a and of b -> 64 bytes a0 b0 a1 b1 ... in order.
inline void interleave(__m256i a, __m256i b, u8* d) {
  const __m256i lo = _mm256_unpacklo_epi8(a, b), hi = _mm256_unpackhi_epi8(a, b);
  st(d, _mm256_permute2x128_si256(lo, hi, 0x20));
  st(d + 32, _mm256_permute2x128_si256(lo, hi, 0x31));
}

}  // namespace

namespace lum {
namespace nv12 {

int copyY_avx2(const u8* s, u8* d, int n) {
  int i = 0;
  for (; i + 64 <= n; i += 64) {
    st(d + i, ld(s + i));
    st(d + i + 32, ld(s + i + 32));
  }
  return i;
}

int splitPairs_avx2(const u8* s, u8* a, u8* b, int pairs) {
  const __m256i even = _mm256_set1_epi16(0x00ff);
  int k = 0;
  for (; k + 32 <= pairs; k += 32) {
    const __m256i v0 = ld(s + 2 * k), v1 = ld(s + 2 * k + 32);
    const __m256i e = _mm256_packus_epi16(_mm256_and_si256(v0, even), _mm256_and_si256(v1, even));
    const __m256i o = _mm256_packus_epi16(_mm256_srli_epi16(v0, 8), _mm256_srli_epi16(v1, 8));
    st(a + k, _mm256_permute4x64_epi64(e, 0xD8));
    st(b + k, _mm256_permute4x64_epi64(o, 0xD8));
  }
  return k;
}

int mergePairs_avx2(const u8* a, const u8* b, u8* d, int pairs) {
  int k = 0;
  for (; k + 32 <= pairs; k += 32) interleave(ld(a + k), ld(b + k), d + 2 * k);
  return k;
}

// Y row and chroma pairs (c: 64 bytes for 32 pairs) -> 128 bytes of C2.
static inline void c2x64(bool uyvy, const u8* y, __m256i c0, __m256i c1, u8* d) {
  const __m256i y0 = ld(y), y1 = ld(y + 32);
  if (uyvy) {
    interleave(c0, y0, d);
    interleave(c1, y1, d + 64);
  } else {
    interleave(y0, c0, d);
    interleave(y1, c1, d + 64);
  }
}

int p2ToC2_avx2(bool uyvy, const u8* y, const u8* c, u8* d, int pairs) {
  int k = 0;
  for (; k + 32 <= pairs; k += 32) c2x64(uyvy, y + 2 * k, ld(c + 2 * k), ld(c + 2 * k + 32), d + 4 * k);
  return k;
}

int p3ToC2_avx2(bool uyvy, const u8* y, const u8* a, const u8* b, u8* d, int pairs) {
  int k = 0;
  for (; k + 32 <= pairs; k += 32) {
    const __m256i A = ld(a + k), B = ld(b + k);
    const __m256i lo = _mm256_unpacklo_epi8(A, B), hi = _mm256_unpackhi_epi8(A, B);
    c2x64(uyvy, y + 2 * k, _mm256_permute2x128_si256(lo, hi, 0x20),
          _mm256_permute2x128_si256(lo, hi, 0x31), d + 4 * k);
  }
  return k;
}

}  // namespace nv12
}  // namespace lum
