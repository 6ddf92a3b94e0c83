// Subsampled layout repacking: the AVX2 rounds of the C2 splits, the C2
// merge and chroma exchange, and the plane interleaves.  Each round works
// on 32-byte registers; the in-lane shuffles and packs leave the two
// 16-byte lanes in the wrong order, which one cross-lane permute puts right.
// Compiled with -mavx2 and entered only when the call's Isa allows; the
// bytes are those of the SSE2 blocks (SplitC2, LumaC2, SwapC2Chroma, PackC2,
// Interleave2, Deinterleave2 in pccrepack.cpp, whose scalar forms `one`
// state them).  Under the StoreStream policy the stores stay 16-byte
// non-temporal stores, as in the SSE2 blocks (the kernel fences).
#include <immintrin.h>

#include "repack/pccrepack.h"

namespace {

using u8 = Lum8u;
using lum::repack::Store;

inline __m256i ldu(const u8* p) {
  return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(p));
}
// 32 bytes of a main source stream: under StoreAligned two aligned 16-byte loads.
template <Store M>
inline __m256i ld(const u8* p) {
  if (M == Store::StoreAligned)
    return _mm256_inserti128_si256(
        _mm256_castsi128_si256(_mm_load_si128(reinterpret_cast<const __m128i*>(p))),
        _mm_load_si128(reinterpret_cast<const __m128i*>(p + 16)), 1);
  return ldu(p);
}
// A 16-byte store of the main destination stream.
template <Store M>
inline void st16(u8* p, __m128i v) {
  if (M == Store::StoreStream)
    _mm_stream_si128(reinterpret_cast<__m128i*>(p), v);
  else if (M == Store::StoreAligned)
    _mm_store_si128(reinterpret_cast<__m128i*>(p), v);
  else
    _mm_storeu_si128(reinterpret_cast<__m128i*>(p), v);
}
inline __m128i lo(__m256i v) { return _mm256_castsi256_si128(v); }
inline __m128i hi(__m256i v) { return _mm256_extracti128_si256(v, 1); }
// 32 bytes of the main destination stream: one store, or two 16-byte ones
// under StoreStream and StoreAligned.
template <Store M>
inline void st(u8* p, __m256i v) {
  if (M == Store::StorePlain) {
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(p), v);
  } else {
    st16<M>(p, lo(v));
    st16<M>(p + 16, hi(v));
  }
}
inline void stu16(u8* p, __m128i v) { _mm_storeu_si128(reinterpret_cast<__m128i*>(p), v); }
// Lanes [x0 | x1] and [y0 | y1] stored as x0 y0 x1 y1 (the lane order of
// the in-lane unpacks).
template <Store M>
inline void stLanes(u8* p, __m256i x, __m256i y) {
  if (M == Store::StorePlain) {
    st<M>(p, _mm256_permute2x128_si256(x, y, 0x20));
    st<M>(p + 32, _mm256_permute2x128_si256(x, y, 0x31));
  } else {
    st16<M>(p, lo(x));
    st16<M>(p + 16, lo(y));
    st16<M>(p + 32, hi(x));
    st16<M>(p + 48, hi(y));
  }
}
// Qwords 0 2 1 3: the lanes of a 256-bit pack back in order.
inline __m256i q0213(__m256i v) { return _mm256_permute4x64_epi64(v, _MM_SHUFFLE(3, 1, 2, 0)); }

// SplitC2, 16 pixel pairs a round: each lane of four pairs sorted to
// Y0..Y7, a0..a3, b0..b3 (a the first chroma byte of a pair, b the second).
template <Store M>
int splitC2(int n, bool yOdd, const u8* s, u8* y, u8* a, u8* b) {
  const __m256i k =
      yOdd ? _mm256_setr_epi8(1, 3, 5, 7, 9, 11, 13, 15, 0, 4, 8, 12, 2, 6, 10, 14, 1, 3, 5, 7, 9,
                              11, 13, 15, 0, 4, 8, 12, 2, 6, 10, 14)
           : _mm256_setr_epi8(0, 2, 4, 6, 8, 10, 12, 14, 1, 5, 9, 13, 3, 7, 11, 15, 0, 2, 4, 6, 8,
                              10, 12, 14, 1, 5, 9, 13, 3, 7, 11, 15);
  // Dwords a0-3 b0-3 a8-11 b8-11 | a4-7 b4-7 a12-15 b12-15 -> a | b.
  const __m256i kc = _mm256_setr_epi32(0, 4, 2, 6, 1, 5, 3, 7);
  int i = 0;
  for (; i + 16 <= n; i += 16) {
    const u8* p = s + 4 * i;
    const __m256i v0 = _mm256_shuffle_epi8(ld<M>(p), k), v1 = _mm256_shuffle_epi8(ld<M>(p + 32), k);
    st<M>(y + 2 * i, q0213(_mm256_unpacklo_epi64(v0, v1)));
    const __m256i c = _mm256_permutevar8x32_epi32(_mm256_unpackhi_epi64(v0, v1), kc);
    stu16(a + i, lo(c));
    stu16(b + i, hi(c));
  }
  return i;
}

// LumaC2, 16 pixel pairs a round: the even (or odd) bytes packed.
template <Store M>
int lumaC2(int n, bool yOdd, const u8* s, u8* y) {
  const __m256i even = _mm256_set1_epi16(0x00ff);
  int i = 0;
  for (; i + 16 <= n; i += 16) {
    const __m256i v0 = ld<M>(s + 4 * i), v1 = ld<M>(s + 4 * i + 32);
    const __m256i p = yOdd ? _mm256_packus_epi16(_mm256_srli_epi16(v0, 8), _mm256_srli_epi16(v1, 8))
                           : _mm256_packus_epi16(_mm256_and_si256(v0, even),
                                                 _mm256_and_si256(v1, even));
    st<M>(y + 2 * i, q0213(p));
  }
  return i;
}

// SwapC2Chroma, 16 groups a round.
template <Store M>
int swapC2Chroma(int n, const u8* s, u8* d) {
  const __m256i k = _mm256_setr_epi8(0, 3, 2, 1, 4, 7, 6, 5, 8, 11, 10, 9, 12, 15, 14, 13, 0, 3, 2,
                                     1, 4, 7, 6, 5, 8, 11, 10, 9, 12, 15, 14, 13);
  int i = 0;
  for (; i + 16 <= n; i += 16) {
    st<M>(d + 4 * i, _mm256_shuffle_epi8(ldu(s + 4 * i), k));
    st<M>(d + 4 * i + 32, _mm256_shuffle_epi8(ldu(s + 4 * i + 32), k));
  }
  return i;
}

// PackC2, 32 pixel pairs a round: the chroma pairs a0 b0 a1 b1 ..., then
// luma and pairs riffled as in the SSE2 block.
template <Store M>
int packC2(int n, const u8* y, const u8* a, const u8* b, u8* d) {
  int i = 0;
  for (; i + 32 <= n; i += 32) {
    const __m256i A = ldu(a + i), B = ldu(b + i);
    const __m256i cl = _mm256_unpacklo_epi8(A, B), ch = _mm256_unpackhi_epi8(A, B);
    const __m256i c0 = _mm256_permute2x128_si256(cl, ch, 0x20);  // pairs 0-15
    const __m256i c1 = _mm256_permute2x128_si256(cl, ch, 0x31);  // pairs 16-31
    const __m256i y0 = ldu(y + 2 * i), y1 = ldu(y + 2 * i + 32);
    stLanes<M>(d + 4 * i, _mm256_unpacklo_epi8(y0, c0), _mm256_unpackhi_epi8(y0, c0));
    stLanes<M>(d + 4 * i + 64, _mm256_unpacklo_epi8(y1, c1), _mm256_unpackhi_epi8(y1, c1));
  }
  return i;
}

// Interleave2, 32 samples of each row a round.
template <Store M>
int interleave2(int n, const u8* a, const u8* b, u8* d) {
  int i = 0;
  for (; i + 32 <= n; i += 32) {
    const __m256i A = ldu(a + i), B = ldu(b + i);
    stLanes<M>(d + 2 * i, _mm256_unpacklo_epi8(A, B), _mm256_unpackhi_epi8(A, B));
  }
  return i;
}

// Deinterleave2, 32 pairs a round: even and odd bytes packed.
template <Store M>
int deinterleave2(int n, const u8* s, u8* a, u8* b) {
  const __m256i even = _mm256_set1_epi16(0x00ff);
  int i = 0;
  for (; i + 32 <= n; i += 32) {
    const __m256i v0 = ldu(s + 2 * i), v1 = ldu(s + 2 * i + 32);
    st<M>(a + i, q0213(_mm256_packus_epi16(_mm256_and_si256(v0, even), _mm256_and_si256(v1, even))));
    st<M>(b + i, q0213(_mm256_packus_epi16(_mm256_srli_epi16(v0, 8), _mm256_srli_epi16(v1, 8))));
  }
  return i;
}

}  // namespace

namespace lum {
namespace repack {

// Each entry: the round loop under the call's store policy.
#define LUM_BY_STORE(fn, ...)                                   \
  switch (m) {                                                  \
    case Store::StoreStream: return fn<Store::StoreStream>(__VA_ARGS__);   \
    case Store::StoreAligned: return fn<Store::StoreAligned>(__VA_ARGS__); \
    default: return fn<Store::StorePlain>(__VA_ARGS__);               \
  }

int splitC2_avx2(int n, bool yOdd, Store m, const Lum8u* s, Lum8u* y, Lum8u* a, Lum8u* b) {
  LUM_BY_STORE(splitC2, n, yOdd, s, y, a, b)
}
int lumaC2_avx2(int n, bool yOdd, Store m, const Lum8u* s, Lum8u* y) {
  LUM_BY_STORE(lumaC2, n, yOdd, s, y)
}
int swapC2Chroma_avx2(int n, Store m, const Lum8u* s, Lum8u* d) {
  LUM_BY_STORE(swapC2Chroma, n, s, d)
}
int packC2_avx2(int n, Store m, const Lum8u* y, const Lum8u* a, const Lum8u* b, Lum8u* d) {
  LUM_BY_STORE(packC2, n, y, a, b, d)
}
int interleave2_avx2(int n, Store m, const Lum8u* a, const Lum8u* b, Lum8u* d) {
  LUM_BY_STORE(interleave2, n, a, b, d)
}
int deinterleave2_avx2(int n, Store m, const Lum8u* s, Lum8u* a, Lum8u* b) {
  LUM_BY_STORE(deinterleave2, n, s, a, b)
}

#undef LUM_BY_STORE

}  // namespace repack
}  // namespace lum
