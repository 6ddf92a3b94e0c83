// Subsampled layout repacking: the SSSE3 rounds of the C2 row forms.  A C2
// register of four pixel pairs is sorted by one byte shuffle (pshufb) into
// its eight luma bytes and the four bytes of each chroma, where the SSE2
// block masks, shifts and packs; the chroma exchange of a C2 row is one
// shuffle where the SSE2 block takes two word shuffles and a blend.
// Compiled with -mssse3 and entered only when the call's Isa allows; the
// bytes are those of the SSE2 blocks (SplitC2, SwapC2Chroma in
// pccrepack.cpp, whose scalar forms `one` state them).
#include <emmintrin.h>
#include <tmmintrin.h>

#include "repack/pccrepack.h"

namespace {

using u8 = Lum8u;
using lum::repack::Store;

// The 16-byte loads and stores of the main streams under a store policy
// (as StorePlain, StoreStream and StoreAligned of pccrepack.cpp).
template <Store M>
inline __m128i ld(const u8* p) {
  return M == Store::StoreAligned ? _mm_load_si128(reinterpret_cast<const __m128i*>(p))
                             : _mm_loadu_si128(reinterpret_cast<const __m128i*>(p));
}
template <Store M>
inline void st(u8* p, __m128i v) {
  if (M == Store::StoreStream)
    _mm_stream_si128(reinterpret_cast<__m128i*>(p), v);
  else if (M == Store::StoreAligned)
    _mm_store_si128(reinterpret_cast<__m128i*>(p), v);
  else
    _mm_storeu_si128(reinterpret_cast<__m128i*>(p), v);
}
inline __m128i ldu(const u8* p) { return _mm_loadu_si128(reinterpret_cast<const __m128i*>(p)); }
inline void stu(u8* p, __m128i v) { _mm_storeu_si128(reinterpret_cast<__m128i*>(p), v); }

// SplitC2, 16 pixel pairs a round: each register of four pairs sorted to
// Y0..Y7, a0..a3, b0..b3 (a the first chroma byte of a pair, b the second).
template <Store M>
int splitC2(int n, bool yOdd, const u8* s, u8* y, u8* a, u8* b) {
  const __m128i k = yOdd ? _mm_setr_epi8(1, 3, 5, 7, 9, 11, 13, 15, 0, 4, 8, 12, 2, 6, 10, 14)
                         : _mm_setr_epi8(0, 2, 4, 6, 8, 10, 12, 14, 1, 5, 9, 13, 3, 7, 11, 15);
  int i = 0;
  for (; i + 16 <= n; i += 16) {
    const u8* p = s + 4 * i;
    const __m128i v0 = _mm_shuffle_epi8(ld<M>(p), k), v1 = _mm_shuffle_epi8(ld<M>(p + 16), k);
    const __m128i v2 = _mm_shuffle_epi8(ld<M>(p + 32), k), v3 = _mm_shuffle_epi8(ld<M>(p + 48), k);
    st<M>(y + 2 * i, _mm_unpacklo_epi64(v0, v1));
    st<M>(y + 2 * i + 16, _mm_unpacklo_epi64(v2, v3));
    // Dwords a0-3 a4-7 b0-3 b4-7, and a8-11 a12-15 b8-11 b12-15.
    const __m128i c01 = _mm_unpackhi_epi32(v0, v1), c23 = _mm_unpackhi_epi32(v2, v3);
    stu(a + i, _mm_unpacklo_epi64(c01, c23));
    stu(b + i, _mm_unpackhi_epi64(c01, c23));
  }
  return i;
}

// SwapC2Chroma, 16 groups a round: bytes 1 and 3 of each group exchanged.
template <Store M>
int swapC2Chroma(int n, const u8* s, u8* d) {
  const __m128i k = _mm_setr_epi8(0, 3, 2, 1, 4, 7, 6, 5, 8, 11, 10, 9, 12, 15, 14, 13);
  int i = 0;
  for (; i + 16 <= n; i += 16)
    for (int j = 0; j < 64; j += 16) st<M>(d + 4 * i + j, _mm_shuffle_epi8(ldu(s + 4 * i + j), k));
  return i;
}

}  // namespace

namespace lum {
namespace repack {

int splitC2_ssse3(int n, bool yOdd, Store m, const Lum8u* s, Lum8u* y, Lum8u* a, Lum8u* b) {
  switch (m) {
    case Store::StoreStream: return splitC2<Store::StoreStream>(n, yOdd, s, y, a, b);
    case Store::StoreAligned: return splitC2<Store::StoreAligned>(n, yOdd, s, y, a, b);
    default: return splitC2<Store::StorePlain>(n, yOdd, s, y, a, b);
  }
}

int swapC2Chroma_ssse3(int n, Store m, const Lum8u* s, Lum8u* d) {
  switch (m) {
    case Store::StoreStream: return swapC2Chroma<Store::StoreStream>(n, s, d);
    case Store::StoreAligned: return swapC2Chroma<Store::StoreAligned>(n, s, d);
    default: return swapC2Chroma<Store::StorePlain>(n, s, d);
  }
}

}  // namespace repack
}  // namespace lum
