// RGB and HLS: public functions, row drivers and one-row kernels.
//
// Each kernel runs its main loop over the first (width & ~(block - 1))
// pixels of the row (block 8 for the 8u C3 kernels, 4 for all others) and its
// scalar tail over the rest.  The formulas of both, and where they differ, are
// the scalar forms of pccmskcolor_hls.h; the SSE2 twins stand beside them.
//
// AC4 twins do the arithmetic of their C3 kernel; only loading, storing and
// the round size differ.  The 8u and 16u twins keep the destination's alpha by
// reading the destination and writing back whole words with the old alpha
// masked in (the words lie within the pixels of the row); the 16s twin writes
// 32-bit and 16-bit pieces around the alpha; the 32f twin writes samples one
// by one.
#include "models/pccmskcolor_hls.h"

#include "frame/lum_frame.h"
#include "frame/lum_simd.h"

using namespace lum;
using namespace lum::hls;

namespace {

// Two batches of four 32-bit lanes -> signed 16, then unsigned 8 saturation,
// 8 bytes in the low half.
inline __m128i packTo8(__m128i a, __m128i b) {
  return _mm_packus_epi16(_mm_packs_epi32(a, b), _mm_setzero_si128());
}
// Bytes 4-7 of a register -> 32-bit lanes.
inline __m128i bytes4to32Hi(__m128i v) { return bytes4to32(_mm_srli_si128(v, 4)); }

// One round of the 8u C3 main loops: 8 pixels as bytes (channel k in the
// low 8 bytes of c[k]) in two batches of 4 lanes -> 8 bytes per channel.
inline void rgbToHls8x8(const __m128i c[3], __m128i out[3]) {
  const FwdVec a = rgbToHls8uBlockVec(bytes4to32(c[0]), bytes4to32(c[1]), bytes4to32(c[2]));
  const FwdVec b = rgbToHls8uBlockVec(bytes4to32Hi(c[0]), bytes4to32Hi(c[1]), bytes4to32Hi(c[2]));
  out[0] = packTo8(a.H, b.H);
  out[1] = packTo8(a.L, b.L);
  out[2] = packTo8(a.S, b.S);
}
inline void hlsToRgb8x8(const __m128i c[3], __m128i out[3]) {
  __m128i a[3], b[3];
  hlsToRgb8uBlockVec(bytes4to32(c[0]), bytes4to32(c[1]), bytes4to32(c[2]), a);
  hlsToRgb8uBlockVec(bytes4to32Hi(c[0]), bytes4to32Hi(c[1]), bytes4to32Hi(c[2]), b);
  for (int k = 0; k < 3; ++k) out[k] = packTo8(a[k], b[k]);
}
// Two rounds on 16 pixels (channel k in all 16 bytes of c[k]).
template <void (*Round)(const __m128i*, __m128i*)>
inline void twoRounds(const __m128i c[3], __m128i out[3]) {
  __m128i lo[3], hi[3], ol[3], oh[3];
  for (int k = 0; k < 3; ++k) {
    lo[k] = c[k];
    hi[k] = _mm_srli_si128(c[k], 8);
  }
  Round(lo, ol);
  Round(hi, oh);
  for (int k = 0; k < 3; ++k) out[k] = _mm_unpacklo_epi64(ol[k], oh[k]);
}
inline void rgbToHls8x16(const __m128i c[3], __m128i out[3]) { twoRounds<rgbToHls8x8>(c, out); }
inline void hlsToRgb8x16(const __m128i c[3], __m128i out[3]) { twoRounds<hlsToRgb8x8>(c, out); }

// Read-modify-write of 16 bytes: the bytes under `keep` stay as they were.
inline void mergeStore(void* p, __m128i v, __m128i keep) {
  const __m128i old = loadu(p);
  storeu(p, _mm_or_si128(_mm_and_si128(old, keep), _mm_andnot_si128(keep, v)));
}
// The alpha byte of four 4-byte pixels; the alpha word of two 4-word pixels.
inline __m128i alphaMask8u() { return _mm_set1_epi32(static_cast<int>(0xFF000000u)); }
inline __m128i alphaMask16() {
  return _mm_set_epi32(static_cast<int>(0xFFFF0000u), 0, static_cast<int>(0xFFFF0000u), 0);
}

// Four pixels of 3 words: channel k in 32-bit lanes of c[k] (unsigned).
inline void load3x4w(const Lum16u* p, __m128i c[3]) {
  __m128i w[3];
  deinterleave3x4w(loadu(p), loadl64(p + 8), w);
  for (int k = 0; k < 3; ++k) c[k] = words4to32(w[k]);
}
// Channels as 16-bit words (low 4 of each) -> 12 words written.
inline void store3x4w(Lum16u* p, const __m128i c[3]) {
  __m128i lo, hi;
  interleave3x4w(c, lo, hi);
  storeu(p, lo);
  storel64(p + 8, hi);
}
// Four pixels of 4 words: channel k in 32-bit lanes of c[k] (unsigned).
inline void load4x4w(const Lum16u* p, __m128i c[3]) {
  const __m128i v0 = loadu(p), v1 = loadu(p + 8);
  const __m128i t0 = _mm_unpacklo_epi16(v0, v1);  // px 0 2 interleaved
  const __m128i t1 = _mm_unpackhi_epi16(v0, v1);  // px 1 3
  const __m128i u0 = _mm_unpacklo_epi16(t0, t1);  // ch 0 | ch 1
  const __m128i u1 = _mm_unpackhi_epi16(t0, t1);  // ch 2 | ch 3
  c[0] = words4to32(u0);
  c[1] = _mm_unpackhi_epi16(u0, _mm_setzero_si128());
  c[2] = words4to32(u1);
}
// Three channels as words (c01 = ch 0 in words 0-3, ch 1 in words 4-7; c2 in
// words 0-3) -> two registers of two 4-word pixels, word 3 of each zero.
inline void interleave3to4x4w(__m128i c01, __m128i c2, __m128i px[2]) {
  const __m128i x0 = _mm_unpacklo_epi16(c01, c2);                                  // 0 2 pairs
  const __m128i x1 = _mm_unpacklo_epi16(_mm_srli_si128(c01, 8), _mm_setzero_si128());  // 1 z pairs
  px[0] = _mm_unpacklo_epi16(x0, x1);
  px[1] = _mm_unpackhi_epi16(x0, x1);
}
// Bias of 16s samples: sample + 32768 is the sample with its top bit flipped.
inline __m128i flipTop16(__m128i v) {
  return _mm_xor_si128(v, _mm_set1_epi16(static_cast<short>(0x8000)));
}
inline void load3x4wBiased(const Lum16s* p, __m128i c[3]) {
  const Lum16u* q = reinterpret_cast<const Lum16u*>(p);
  __m128i w[3];
  deinterleave3x4w(flipTop16(loadu(q)), flipTop16(loadl64(q + 8)), w);
  for (int k = 0; k < 3; ++k) c[k] = words4to32(w[k]);
}
inline void load4x4wBiased(const Lum16s* p, __m128i c[3]) {
  const Lum16u* q = reinterpret_cast<const Lum16u*>(p);
  const __m128i v0 = flipTop16(loadu(q)), v1 = flipTop16(loadu(q + 8));
  const __m128i t0 = _mm_unpacklo_epi16(v0, v1);
  const __m128i t1 = _mm_unpackhi_epi16(v0, v1);
  const __m128i u0 = _mm_unpacklo_epi16(t0, t1);
  const __m128i u1 = _mm_unpackhi_epi16(t0, t1);
  c[0] = words4to32(u0);
  c[1] = _mm_unpackhi_epi16(u0, _mm_setzero_si128());
  c[2] = words4to32(u1);
}
// 16s pixels of 4 words written as a 32-bit piece (samples 0, 1) and a
// 16-bit piece (sample 2): the alpha word is neither read nor written.
inline void store16sPieces(Lum16s* d, __m128i px) {
  store32(d, px);
  const uint16_t s2 = static_cast<uint16_t>(_mm_extract_epi16(px, 2));
  memcpy(d + 2, &s2, 2);
  store32(d + 4, _mm_srli_si128(px, 8));
  const uint16_t s6 = static_cast<uint16_t>(_mm_extract_epi16(px, 6));
  memcpy(d + 6, &s6, 2);
}

// Four pixels of 3 floats (12 floats, read exactly) -> three registers, and
// back.
inline void load3x4f(const Lum32f* p, __m128& R, __m128& G, __m128& B) {
  const __m128 v0 = _mm_loadu_ps(p), v1 = _mm_loadu_ps(p + 4), v2 = _mm_loadu_ps(p + 8);
  // v0 = R0 G0 B0 R1, v1 = G1 B1 R2 G2, v2 = B2 R3 G3 B3
  const __m128 rA = _mm_shuffle_ps(v0, v0, _MM_SHUFFLE(3, 0, 3, 0));  // R0 R1
  const __m128 rB = _mm_shuffle_ps(v1, v2, _MM_SHUFFLE(1, 1, 2, 2));  // R2 R2 R3 R3
  R = _mm_shuffle_ps(rA, rB, _MM_SHUFFLE(2, 0, 1, 0));
  const __m128 gA = _mm_shuffle_ps(v0, v1, _MM_SHUFFLE(0, 0, 1, 1));  // G0 G0 G1 G1
  const __m128 gB = _mm_shuffle_ps(v1, v2, _MM_SHUFFLE(2, 2, 3, 3));  // G2 G2 G3 G3
  G = _mm_shuffle_ps(gA, gB, _MM_SHUFFLE(2, 0, 2, 0));
  const __m128 bA = _mm_shuffle_ps(v0, v1, _MM_SHUFFLE(1, 1, 2, 2));  // B0 B0 B1 B1
  const __m128 bB = _mm_shuffle_ps(v2, v2, _MM_SHUFFLE(3, 0, 3, 0));  // B2 B3
  B = _mm_shuffle_ps(bA, bB, _MM_SHUFFLE(1, 0, 2, 0));
}
inline void store3x4f(Lum32f* p, __m128 R, __m128 G, __m128 B) {
  const __m128 v0 = _mm_shuffle_ps(_mm_shuffle_ps(R, G, _MM_SHUFFLE(0, 0, 0, 0)),
                                   _mm_shuffle_ps(B, R, _MM_SHUFFLE(1, 1, 0, 0)),
                                   _MM_SHUFFLE(2, 0, 2, 0));
  const __m128 v1 = _mm_shuffle_ps(_mm_shuffle_ps(G, B, _MM_SHUFFLE(1, 1, 1, 1)),
                                   _mm_shuffle_ps(R, G, _MM_SHUFFLE(2, 2, 2, 2)),
                                   _MM_SHUFFLE(2, 0, 2, 0));
  const __m128 v2 = _mm_shuffle_ps(_mm_shuffle_ps(B, R, _MM_SHUFFLE(3, 3, 2, 2)),
                                   _mm_shuffle_ps(G, B, _MM_SHUFFLE(3, 3, 3, 3)),
                                   _MM_SHUFFLE(2, 0, 2, 0));
  _mm_storeu_ps(p, v0);
  _mm_storeu_ps(p + 4, v1);
  _mm_storeu_ps(p + 8, v2);
}

// Row start in elements.
template <class T>
inline T* elemRow(T* base, int y, int stepElems) {
  return base + static_cast<ptrdiff_t>(y) * static_cast<ptrdiff_t>(stepElems);
}

}  // namespace

// ===========================================================================
// 8u kernels.

// Forward, C3: 8 pixels a round in two batches of 4 lanes, the reciprocal as
// it stands; the tail refines it.
void innerRGBToHLS_8u_C3R(const Lum8u* pSrc, Lum8u* pDst, int width, int nchannels) {
  if (nchannels == 4) {
    inner_RGBToHLS_8u_AC4R(pSrc, pDst, width);
    return;
  }
  const int block = width & ~(kBlock8uC3 - 1);
  int x = 0;
  // Four rounds at once where the main loop has them (one deinterleave
  // network for 32 pixels); the formula is per pixel, so only the end of the
  // main loop matters.
  for (; x + 32 <= block; x += 32) {
    const Planes8x32 p = deinterleave3x32(pSrc + 3 * x);
    Planes8x32 q;
    for (int h = 0; h < 2; ++h) {
      const __m128i c[3] = {p.c[0][h], p.c[1][h], p.c[2][h]};
      __m128i out[3];
      rgbToHls8x16(c, out);
      for (int k = 0; k < 3; ++k) q.c[k][h] = out[k];
    }
    interleave3x32(q, pDst + 3 * x);
  }
  for (; x < block; x += kBlock8uC3) {
    __m128i c[3], out[3];
    deinterleave3x8(pSrc + 3 * x, c);
    rgbToHls8x8(c, out);
    interleave3x8(out, pDst + 3 * x);
  }
  for (; x < width; ++x) {
    const Lum8u* s = pSrc + 3 * x;
    rgbToHls8uTail(s[0], s[1], s[2], pDst + 3 * x);
  }
}

// Forward, AC4 twin: 4 pixels a round, 16 destination bytes read and written
// back with their alpha bytes as they were.
void inner_RGBToHLS_8u_AC4R(const Lum8u* pSrc, Lum8u* pDst, int width) {
  const int block = width & ~(kBlock - 1);
  const __m128i keep = alphaMask8u();
  int x = 0;
  for (; x < block; x += kBlock) {
    __m128i c[4];
    load4x4b(pSrc + 4 * x, c);
    const FwdVec o = rgbToHls8uBlockVec(c[0], c[1], c[2]);
    mergeStore(pDst + 4 * x, pack3to4x4b(o.H, o.L, o.S), keep);
  }
  for (; x < width; ++x) {
    const Lum8u* s = pSrc + 4 * x;
    rgbToHls8uTail(s[0], s[1], s[2], pDst + 4 * x);
  }
}

// Inverse, C3: 8 pixels a round in two batches of 4 lanes.
void innerHLSToRGB_8u_C3R(const Lum8u* pSrc, Lum8u* pDst, int width, int nchannels) {
  if (nchannels == 4) {
    inner_HLSToRGB_8u_AC4R(pSrc, pDst, width);
    return;
  }
  const int block = width & ~(kBlock8uC3 - 1);
  int x = 0;
  for (; x + 32 <= block; x += 32) {
    const Planes8x32 p = deinterleave3x32(pSrc + 3 * x);
    Planes8x32 q;
    for (int h = 0; h < 2; ++h) {
      const __m128i c[3] = {p.c[0][h], p.c[1][h], p.c[2][h]};
      __m128i out[3];
      hlsToRgb8x16(c, out);
      for (int k = 0; k < 3; ++k) q.c[k][h] = out[k];
    }
    interleave3x32(q, pDst + 3 * x);
  }
  for (; x < block; x += kBlock8uC3) {
    __m128i c[3], out[3];
    deinterleave3x8(pSrc + 3 * x, c);
    hlsToRgb8x8(c, out);
    interleave3x8(out, pDst + 3 * x);
  }
  for (; x < width; ++x) {
    const Lum8u* s = pSrc + 3 * x;
    hlsToRgb8uTail(s[0], s[1], s[2], pDst + 3 * x);
  }
}

// Inverse, AC4 twin: 4 pixels a round, alpha merged back as in the forward.
void inner_HLSToRGB_8u_AC4R(const Lum8u* pSrc, Lum8u* pDst, int width) {
  const int block = width & ~(kBlock - 1);
  const __m128i keep = alphaMask8u();
  int x = 0;
  for (; x < block; x += kBlock) {
    __m128i c[4], rgb[3];
    load4x4b(pSrc + 4 * x, c);
    hlsToRgb8uBlockVec(c[0], c[1], c[2], rgb);
    mergeStore(pDst + 4 * x, pack3to4x4b(rgb[0], rgb[1], rgb[2]), keep);
  }
  for (; x < width; ++x) {
    const Lum8u* s = pSrc + 4 * x;
    hlsToRgb8uTail(s[0], s[1], s[2], pDst + 4 * x);
  }
}

// ===========================================================================
// 16u kernels: 4 pixels a round.

void innerRGBToHLS_16u_C3R(const Lum16u* pSrc, Lum16u* pDst, int width, int nchannels) {
  if (nchannels == 4) {
    inner_RGBToHLS_16u_AC4R(pSrc, pDst, width);
    return;
  }
  const int block = width & ~(kBlock - 1);
  int x = 0;
  for (; x < block; x += kBlock) {
    __m128i c[3];
    load3x4w(pSrc + 3 * x, c);
    const FwdVec o = rgbToHls16uBlockVec(c[0], c[1], c[2]);
    const __m128i out[3] = {vPackS32U16(o.H, o.H), vPackS32U16(o.L, o.L), vPackS32U16(o.S, o.S)};
    store3x4w(pDst + 3 * x, out);
  }
  for (; x < width; ++x) {
    const Lum16u* s = pSrc + 3 * x;
    rgbToHls16uTail(s[0], s[1], s[2], pDst + 3 * x);
  }
}

// Each 4-word pixel is one 64-bit word, written back with its alpha word as
// it was.
void inner_RGBToHLS_16u_AC4R(const Lum16u* pSrc, Lum16u* pDst, int width) {
  const int block = width & ~(kBlock - 1);
  const __m128i keep = alphaMask16();
  int x = 0;
  for (; x < block; x += kBlock) {
    __m128i c[3], px[2];
    load4x4w(pSrc + 4 * x, c);
    const FwdVec o = rgbToHls16uBlockVec(c[0], c[1], c[2]);
    interleave3to4x4w(vPackS32U16(o.H, o.L), vPackS32U16(o.S, o.S), px);
    mergeStore(pDst + 4 * x, px[0], keep);
    mergeStore(pDst + 4 * x + 8, px[1], keep);
  }
  for (; x < width; ++x) {
    const Lum16u* s = pSrc + 4 * x;
    rgbToHls16uTail(s[0], s[1], s[2], pDst + 4 * x);
  }
}

void innerHLSToRGB_16u_C3R(const Lum16u* pSrc, Lum16u* pDst, int width, int nchannels) {
  if (nchannels == 4) {
    inner_HLSToRGB_16u_AC4R(pSrc, pDst, width);
    return;
  }
  const int block = width & ~(kBlock - 1);
  int x = 0;
  for (; x < block; x += kBlock) {
    __m128i c[3], rgb[3];
    load3x4w(pSrc + 3 * x, c);
    hlsToRgb16uBlockVec(c[0], c[1], c[2], rgb);
    store3x4w(pDst + 3 * x, rgb);
  }
  for (; x < width; ++x) {
    const Lum16u* s = pSrc + 3 * x;
    hlsToRgb16uTail(s[0], s[1], s[2], pDst + 3 * x);
  }
}

void inner_HLSToRGB_16u_AC4R(const Lum16u* pSrc, Lum16u* pDst, int width) {
  const int block = width & ~(kBlock - 1);
  const __m128i keep = alphaMask16();
  int x = 0;
  for (; x < block; x += kBlock) {
    __m128i c[3], rgb[3], px[2];
    load4x4w(pSrc + 4 * x, c);
    hlsToRgb16uBlockVec(c[0], c[1], c[2], rgb);
    interleave3to4x4w(_mm_unpacklo_epi64(rgb[0], rgb[1]), rgb[2], px);
    mergeStore(pDst + 4 * x, px[0], keep);
    mergeStore(pDst + 4 * x + 8, px[1], keep);
  }
  for (; x < width; ++x) {
    const Lum16u* s = pSrc + 4 * x;
    hlsToRgb16uTail(s[0], s[1], s[2], pDst + 4 * x);
  }
}

// ===========================================================================
// 16s kernels: the samples biased by 32768 on the way in; 4 pixels a round.

namespace {
inline __m128i narrow16sVec(__m128i a, __m128i b) {
  const __m128i bias = _mm_set1_epi32(32768);
  return _mm_packs_epi32(_mm_sub_epi32(a, bias), _mm_sub_epi32(b, bias));
}
}  // namespace

void innerRGBToHLS_16s_C3R(const Lum16s* pSrc, Lum16s* pDst, int width, int nchannels) {
  if (nchannels == 4) {
    inner_RGBToHLS_16s_AC4R(pSrc, pDst, width);
    return;
  }
  const int block = width & ~(kBlock - 1);
  int x = 0;
  for (; x < block; x += kBlock) {
    __m128i c[3];
    load3x4wBiased(pSrc + 3 * x, c);
    const FwdVec o = rgbToHls16sBlockVec(c[0], c[1], c[2]);
    const __m128i out[3] = {narrow16sVec(o.H, o.H), narrow16sVec(o.L, o.L), narrow16sVec(o.S, o.S)};
    store3x4w(reinterpret_cast<Lum16u*>(pDst + 3 * x), out);
  }
  for (; x < width; ++x) {
    const Lum16s* s = pSrc + 3 * x;
    rgbToHls16sTail(s[0], s[1], s[2], pDst + 3 * x);
  }
}

void inner_RGBToHLS_16s_AC4R(const Lum16s* pSrc, Lum16s* pDst, int width) {
  const int block = width & ~(kBlock - 1);
  int x = 0;
  for (; x < block; x += kBlock) {
    __m128i c[3], px[2];
    load4x4wBiased(pSrc + 4 * x, c);
    const FwdVec o = rgbToHls16sBlockVec(c[0], c[1], c[2]);
    interleave3to4x4w(narrow16sVec(o.H, o.L), narrow16sVec(o.S, o.S), px);
    store16sPieces(pDst + 4 * x, px[0]);
    store16sPieces(pDst + 4 * x + 8, px[1]);
  }
  for (; x < width; ++x) {
    const Lum16s* s = pSrc + 4 * x;
    rgbToHls16sTail(s[0], s[1], s[2], pDst + 4 * x);
  }
}

void innerHLSToRGB_16s_C3R(const Lum16s* pSrc, Lum16s* pDst, int width, int nchannels) {
  if (nchannels == 4) {
    inner_HLSToRGB_16s_AC4R(pSrc, pDst, width);
    return;
  }
  const int block = width & ~(kBlock - 1);
  int x = 0;
  for (; x < block; x += kBlock) {
    __m128i c[3], rgb[3];
    load3x4wBiased(pSrc + 3 * x, c);
    hlsToRgb16sBlockVec(c[0], c[1], c[2], rgb);
    const __m128i out[3] = {_mm_packs_epi32(rgb[0], rgb[0]), _mm_packs_epi32(rgb[1], rgb[1]),
                            _mm_packs_epi32(rgb[2], rgb[2])};
    store3x4w(reinterpret_cast<Lum16u*>(pDst + 3 * x), out);
  }
  for (; x < width; ++x) {
    const Lum16s* s = pSrc + 3 * x;
    hlsToRgb16sTail(s[0], s[1], s[2], pDst + 3 * x);
  }
}

void inner_HLSToRGB_16s_AC4R(const Lum16s* pSrc, Lum16s* pDst, int width) {
  const int block = width & ~(kBlock - 1);
  int x = 0;
  for (; x < block; x += kBlock) {
    __m128i c[3], rgb[3], px[2];
    load4x4wBiased(pSrc + 4 * x, c);
    hlsToRgb16sBlockVec(c[0], c[1], c[2], rgb);
    interleave3to4x4w(_mm_packs_epi32(rgb[0], rgb[1]), _mm_packs_epi32(rgb[2], rgb[2]), px);
    store16sPieces(pDst + 4 * x, px[0]);
    store16sPieces(pDst + 4 * x + 8, px[1]);
  }
  for (; x < width; ++x) {
    const Lum16s* s = pSrc + 4 * x;
    hlsToRgb16sTail(s[0], s[1], s[2], pDst + 4 * x);
  }
}

// ===========================================================================
// 32f kernels.

// Forward: purely scalar, one pixel at a time (rgbToHls32f, in its
// branch-free arrangement), nchannels as the pixel stride (an AC4 row keeps
// its fourth sample).
void innerRGBToHLS_32f_C3R(const Lum32f* pSrc, Lum32f* pDst, int width, int nchannels) {
  for (int x = 0; x < width; ++x) {
    const Lum32f* s = pSrc + nchannels * x;
    float out[3];
    rgbToHls32fSelect(s[0], s[1], s[2], out);
    Lum32f* d = pDst + nchannels * x;
    d[0] = out[0];
    d[1] = out[1];
    d[2] = out[2];
  }
}

// Inverse, C3: 4 pixels a round (multiplies by 0.016666668); the tail divides
// by 60.
void innerHLSToRGB_32f_C3R(const Lum32f* pSrc, Lum32f* pDst, int width, int nchannels) {
  if (nchannels == 4) {
    innerHLSToRGB_32f_AC4R(pSrc, pDst, width);
    return;
  }
  const int block = width & ~(kBlock - 1);
  int x = 0;
  for (; x < block; x += kBlock) {
    __m128 H, L, S;
    load3x4f(pSrc + 3 * x, H, L, S);
    const Rgb4 c = hlsToRgb32fBlockVec(H, L, S);
    store3x4f(pDst + 3 * x, c.R, c.G, c.B);
  }
  for (; x < width; ++x) {
    const Lum32f* s = pSrc + 3 * x;
    hlsToRgb32fTail(s[0], s[1], s[2], pDst + 3 * x);
  }
}

// Inverse, AC4 twin: samples written one by one, the fourth left alone.
void innerHLSToRGB_32f_AC4R(const Lum32f* pSrc, Lum32f* pDst, int width) {
  const int block = width & ~(kBlock - 1);
  int x = 0;
  for (; x < block; x += kBlock) {
    const Lum32f* s = pSrc + 4 * x;
    __m128 H = _mm_loadu_ps(s), L = _mm_loadu_ps(s + 4), S = _mm_loadu_ps(s + 8),
           A = _mm_loadu_ps(s + 12);
    _MM_TRANSPOSE4_PS(H, L, S, A);
    const Rgb4 c = hlsToRgb32fBlockVec(H, L, S);
    float r[4], g[4], b[4];
    _mm_storeu_ps(r, c.R);
    _mm_storeu_ps(g, c.G);
    _mm_storeu_ps(b, c.B);
    Lum32f* d = pDst + 4 * x;
    for (int i = 0; i < 4; ++i) {
      d[4 * i] = r[i];
      d[4 * i + 1] = g[i];
      d[4 * i + 2] = b[i];
    }
  }
  for (; x < width; ++x) {
    const Lum32f* s = pSrc + 4 * x;
    hlsToRgb32fTail(s[0], s[1], s[2], pDst + 4 * x);
  }
}

// ===========================================================================
// Row drivers: group 1 of the parallel frame (serial below 4097 pixels).
// Steps in elements: bytes for 8u, halved for 16u and 16s, quartered for 32f.

void myRGBToHLS_8u_C3R(const Lum8u* pSrc, int srcStep, Lum8u* pDst, int dstStep, int width,
                       int height, int nchannels) {
  group1Rows(width, height, [&](int y) {
    innerRGBToHLS_8u_C3R(elemRow(pSrc, y, srcStep), elemRow(pDst, y, dstStep), width, nchannels);
  });
}
void myHLSToRGB_8u_C3R(const Lum8u* pSrc, int srcStep, Lum8u* pDst, int dstStep, int width,
                       int height, int nchannels) {
  group1Rows(width, height, [&](int y) {
    innerHLSToRGB_8u_C3R(elemRow(pSrc, y, srcStep), elemRow(pDst, y, dstStep), width, nchannels);
  });
}
void myRGBToHLS_16u_C3R(const Lum16u* pSrc, int srcStep, Lum16u* pDst, int dstStep, int width,
                        int height, int nchannels) {
  group1Rows(width, height, [&](int y) {
    innerRGBToHLS_16u_C3R(elemRow(pSrc, y, srcStep), elemRow(pDst, y, dstStep), width, nchannels);
  });
}
void myHLSToRGB_16u_C3R(const Lum16u* pSrc, int srcStep, Lum16u* pDst, int dstStep, int width,
                        int height, int nchannels) {
  group1Rows(width, height, [&](int y) {
    innerHLSToRGB_16u_C3R(elemRow(pSrc, y, srcStep), elemRow(pDst, y, dstStep), width, nchannels);
  });
}
void myRGBToHLS_16s_C3R(const Lum16s* pSrc, int srcStep, Lum16s* pDst, int dstStep, int width,
                        int height, int nchannels) {
  group1Rows(width, height, [&](int y) {
    innerRGBToHLS_16s_C3R(elemRow(pSrc, y, srcStep), elemRow(pDst, y, dstStep), width, nchannels);
  });
}
void myHLSToRGB_16s_C3R(const Lum16s* pSrc, int srcStep, Lum16s* pDst, int dstStep, int width,
                        int height, int nchannels) {
  group1Rows(width, height, [&](int y) {
    innerHLSToRGB_16s_C3R(elemRow(pSrc, y, srcStep), elemRow(pDst, y, dstStep), width, nchannels);
  });
}
void myRGBToHLS_32f_C3R(const Lum32f* pSrc, int srcStep, Lum32f* pDst, int dstStep, int width,
                        int height, int nchannels) {
  group1Rows(width, height, [&](int y) {
    innerRGBToHLS_32f_C3R(elemRow(pSrc, y, srcStep), elemRow(pDst, y, dstStep), width, nchannels);
  });
}
void myHLSToRGB_32f_C3R(const Lum32f* pSrc, int srcStep, Lum32f* pDst, int dstStep, int width,
                        int height, int nchannels) {
  group1Rows(width, height, [&](int y) {
    innerHLSToRGB_32f_C3R(elemRow(pSrc, y, srcStep), elemRow(pDst, y, dstStep), width, nchannels);
  });
}

// ===========================================================================
// Public functions: pattern P1 (pointers, then size; steps not checked), then
// the driver with the steps in elements and the pixel stride.

#define LUM_HLS_PUBLIC(name, T, driver, shift, nch)                                          \
  LUM_PUBLIC LumStatus name(const T* pSrc, int srcStep, T* pDst, int dstStep, LumSize roiSize) { \
    const LumStatus st = checkP1({pSrc, pDst}, roiSize);                                     \
    if (st != LumOk) return st;                                                              \
    driver(pSrc, stepToElems(srcStep, shift), pDst, stepToElems(dstStep, shift), roiSize.width, \
           roiSize.height, nch);                                                             \
    return LumOk;                                                                            \
  }

LUM_HLS_PUBLIC(lumiRGBToHLS_8u_C3R, Lum8u, myRGBToHLS_8u_C3R, 0, 3)
LUM_HLS_PUBLIC(lumiRGBToHLS_8u_AC4R, Lum8u, myRGBToHLS_8u_C3R, 0, 4)
LUM_HLS_PUBLIC(lumiHLSToRGB_8u_C3R, Lum8u, myHLSToRGB_8u_C3R, 0, 3)
LUM_HLS_PUBLIC(lumiHLSToRGB_8u_AC4R, Lum8u, myHLSToRGB_8u_C3R, 0, 4)
LUM_HLS_PUBLIC(lumiRGBToHLS_16u_C3R, Lum16u, myRGBToHLS_16u_C3R, 1, 3)
LUM_HLS_PUBLIC(lumiRGBToHLS_16u_AC4R, Lum16u, myRGBToHLS_16u_C3R, 1, 4)
LUM_HLS_PUBLIC(lumiHLSToRGB_16u_C3R, Lum16u, myHLSToRGB_16u_C3R, 1, 3)
LUM_HLS_PUBLIC(lumiHLSToRGB_16u_AC4R, Lum16u, myHLSToRGB_16u_C3R, 1, 4)
LUM_HLS_PUBLIC(lumiRGBToHLS_16s_C3R, Lum16s, myRGBToHLS_16s_C3R, 1, 3)
LUM_HLS_PUBLIC(lumiRGBToHLS_16s_AC4R, Lum16s, myRGBToHLS_16s_C3R, 1, 4)
LUM_HLS_PUBLIC(lumiHLSToRGB_16s_C3R, Lum16s, myHLSToRGB_16s_C3R, 1, 3)
LUM_HLS_PUBLIC(lumiHLSToRGB_16s_AC4R, Lum16s, myHLSToRGB_16s_C3R, 1, 4)
LUM_HLS_PUBLIC(lumiRGBToHLS_32f_C3R, Lum32f, myRGBToHLS_32f_C3R, 2, 3)
LUM_HLS_PUBLIC(lumiRGBToHLS_32f_AC4R, Lum32f, myRGBToHLS_32f_C3R, 2, 4)
LUM_HLS_PUBLIC(lumiHLSToRGB_32f_C3R, Lum32f, myHLSToRGB_32f_C3R, 2, 3)
LUM_HLS_PUBLIC(lumiHLSToRGB_32f_AC4R, Lum32f, myHLSToRGB_32f_C3R, 2, 4)

#undef LUM_HLS_PUBLIC
