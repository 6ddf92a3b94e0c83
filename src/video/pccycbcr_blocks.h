// RGB and YCbCr 4:4:4: the SSE2 forms of the block formulas B, C, E and F,
// each beside the scalar form it must equal (pccycbcr.h), and the 16-pixel
// steps the block loops are built of.  Everything here has internal linkage,
// so that a unit compiled for a wider instruction set keeps its own copies.
#ifndef LUM_PCCYCBCR_BLOCKS_H
#define LUM_PCCYCBCR_BLOCKS_H

#include "frame/lum_simd.h"
#include "video/pccycbcr.h"

namespace {
namespace ycbcrblocks {

using namespace lum;
using namespace lum::ycbcr;

// B on 8 pixels in 16-bit lanes (scalar: formBChan).  pmaddwd forms
// c0 R + c1 G in 32-bit lanes, shifted by 11 and packed; (c2 B) >> 11 is the
// high half of (32 B) * c2, exact since 32 B and c2 fit 16 bits.  Then the
// shift by 4 and d; the final pack clamps.  rg[0], rg[1]: R and G unpacked
// in pairs (pixels 0-3, 4-7); b32: 32 B.
inline __m128i formBVec(const __m128i rg[2], __m128i b32, FormBRow k) {
  const __m128i kRG = _mm_set1_epi32(static_cast<int>((static_cast<uint32_t>(k.c1) << 16) |
                                                      (static_cast<uint32_t>(k.c0) & 0xffffu)));
  const __m128i s = vPackS32S16(_mm_srai_epi32(_mm_madd_epi16(rg[0], kRG), 11),
                                _mm_srai_epi32(_mm_madd_epi16(rg[1], kRG), 11));
  return _mm_add_epi16(_mm_srai_epi16(_mm_add_epi16(s, vHs(b32, vset16(k.c2))), 4), vset16(k.d));
}
inline void formBx8(__m128i R, __m128i G, __m128i B, __m128i o[3]) {
  const __m128i rg[2] = {_mm_unpacklo_epi16(R, G), _mm_unpackhi_epi16(R, G)};
  const __m128i b32 = _mm_slli_epi16(B, 5);
  o[0] = formBVec(rg, b32, kFormBY);
  o[1] = formBVec(rg, b32, kFormBCb);
  o[2] = formBVec(rg, b32, kFormBCr);
}
inline void formBx16(const __m128i in[3], __m128i out[3]) {
  __m128i lo[3], hi[3];
  formBx8(lo8to16(in[0]), lo8to16(in[1]), lo8to16(in[2]), lo);
  formBx8(hi8to16(in[0]), hi8to16(in[1]), hi8to16(in[2]), hi);
  for (int k = 0; k < 3; ++k) out[k] = vPackS16U8(lo[k], hi[k]);
}

// C on 8 pixels in 16-bit lanes (scalar: formCY, formCChroma).
inline __m128i formCYVec(__m128i R, __m128i G, __m128i B) {
  __m128i s = _mm_adds_epu16(vHu(_mm_slli_epi16(R, 8), vset16(kYR)),
                             vHu(_mm_slli_epi16(G, 8), vset16(kYG)));
  s = _mm_adds_epu16(s, vHu(_mm_slli_epi16(B, 8), vset16(kYB)));
  s = _mm_srli_epi16(_mm_adds_epu16(s, vset16(128)), 8);
  return _mm_add_epi16(s, vset16(16));  // sat8u in the pack
}
inline __m128i formCChromaVec(__m128i R, __m128i G, __m128i B, int c0, int c1, int c2) {
  __m128i s = _mm_adds_epi16(vHs(_mm_slli_epi16(R, 7), vset16(c0)),
                             vHs(_mm_slli_epi16(G, 7), vset16(c1)));
  s = _mm_adds_epi16(s, vHs(_mm_slli_epi16(B, 7), vset16(c2)));
  s = _mm_srai_epi16(_mm_adds_epi16(s, vset16(64)), 7);
  return _mm_adds_epi16(s, vset16(128));  // sat8u in the pack
}
inline __m128i formCCbVec(__m128i R, __m128i G, __m128i B) {
  return formCChromaVec(R, G, B, kCbR, kCbG, kCbB);
}
inline __m128i formCCrVec(__m128i R, __m128i G, __m128i B) {
  return formCChromaVec(R, G, B, kCrR, kCrG, kCrB);
}

// The chroma operands of E and F: 128 (C - 128); the luma operand 128 (Y - 16).
inline __m128i centred(__m128i v, int offset) {
  return _mm_slli_epi16(_mm_sub_epi16(v, vset16(offset)), 7);
}

// E on 8 pixels in 16-bit lanes (scalar: formE); R, G, B before the pack.
inline void formEVec(__m128i Y, __m128i Cb, __m128i Cr, __m128i o[3]) {
  const __m128i y = vHs(centred(Y, 16), vset16(9536));
  const __m128i cb = centred(Cb, 128), cr = centred(Cr, 128);
  o[0] = _mm_srai_epi16(_mm_adds_epi16(y, vHs(cr, vset16(13074))), 4);
  o[1] = _mm_srai_epi16(
      _mm_adds_epi16(_mm_adds_epi16(vHs(cb, vset16(-3203)), y), vHs(cr, vset16(-6660))), 4);
  o[2] = _mm_srai_epi16(_mm_adds_epi16(y, vHs(cb, vset16(16523))), 4);
}

// F on 8 pixels in 16-bit lanes (scalar: formF).
inline void formFVec(__m128i Y, __m128i Cb, __m128i Cr, __m128i o[3]) {
  const __m128i y = vHs(centred(Y, 16), vset16(kyrXXX.y));
  const __m128i cb = centred(Cb, 128), cr = centred(Cr, 128), r8 = vset16(8);
  o[0] = _mm_srai_epi16(_mm_adds_epi16(_mm_adds_epi16(y, vHs(cr, vset16(kyrXXX.crR))), r8), 4);
  o[1] = _mm_srai_epi16(
      _mm_adds_epi16(_mm_adds_epi16(_mm_adds_epi16(y, vHs(cb, vset16(-kyrXXX.cbG))),
                                    vHs(cr, vset16(-kyrXXX.crG))),
                     r8),
      4);
  o[2] = _mm_srai_epi16(_mm_adds_epi16(_mm_adds_epi16(y, vHs(cb, vset16(kyrXXX.cbB))), r8), 4);
}

// An inverse formula on 16 pixels given as bytes.
template <void (*Vec)(__m128i, __m128i, __m128i, __m128i*)>
inline void inverseX16(const __m128i in[3], __m128i out[3]) {
  __m128i lo[3], hi[3];
  Vec(lo8to16(in[0]), lo8to16(in[1]), lo8to16(in[2]), lo);
  Vec(hi8to16(in[0]), hi8to16(in[1]), hi8to16(in[2]), hi);
  for (int k = 0; k < 3; ++k) out[k] = vPackS16U8(lo[k], hi[k]);
}

// ---------------------------------------------------------------------------
// Loads and stores of 16, 8 or 4 pixels: 3-byte pixels (exactly 3n bytes
// read or written) and plane samples.
inline void loadC3(const Lum8u* p, int n, __m128i c[3]) {
  if (n == 16) return deinterleave3x16(p, c);
  if (n == 8) return deinterleave3x8(p, c);
  alignas(16) Lum8u t[24] = {};
  memcpy(t, p, 12);
  deinterleave3x8(t, c);
}
inline void storeC3(const __m128i c[3], Lum8u* p, int n) {
  if (n == 16) return interleave3x16(c, p);
  if (n == 8) return interleave3x8(c, p);
  alignas(16) Lum8u t[24];
  interleave3x8(c, t);
  memcpy(p, t, 12);
}
inline __m128i loadPlane(const Lum8u* p, int n) {
  if (n == 16) return loadu(p);
  if (n == 8) return loadl64(p);
  int32_t v;
  memcpy(&v, p, 4);
  return _mm_cvtsi32_si128(v);
}
inline void storePlane(Lum8u* p, __m128i v, int n) {
  if (n == 16) return storeu(p, v);
  if (n == 8) return storel64(p, v);
  const int32_t s = _mm_cvtsi128_si32(v);
  memcpy(p, &s, 4);
}

// Block loops over [0, end) in rounds of 32 pixels (pixel-order sides),
// then 16, then at most one of 8 and one of 4 (end is a multiple of the
// kernel's block; the formula is per pixel, so only end matters).  Fn is a 16-pixel
// step on byte registers.  Each returns end.
// Rounds of 32 pixels go through the six-register network at full width.
template <class Fn>
inline int blockC3toC3(const Lum8u* s, Lum8u* d, int end, Fn fn) {
  int x = 0;
  for (; x + 32 <= end; x += 32) {
    Planes8x32 p = deinterleave3x32(s + 3 * x), q;
    for (int h = 0; h < 2; ++h) {
      const __m128i in[3] = {p.c[0][h], p.c[1][h], p.c[2][h]};
      __m128i out[3];
      fn(in, out);
      for (int k = 0; k < 3; ++k) q.c[k][h] = out[k];
    }
    interleave3x32(q, d + 3 * x);
  }
  for (int n = 16; n >= 4; n >>= 1)
    for (; x + n <= end; x += n) {
      __m128i in[3], out[3];
      loadC3(s + 3 * x, n, in);
      fn(in, out);
      storeC3(out, d + 3 * x, n);
    }
  return x;
}
template <class Fn>
inline int blockP3toP3(const Lum8u* const s[3], Lum8u* const d[3], int end, Fn fn) {
  int x = 0;
  for (int n = 16; n >= 4; n >>= 1)
    for (; x + n <= end; x += n) {
      const __m128i in[3] = {loadPlane(s[0] + x, n), loadPlane(s[1] + x, n),
                             loadPlane(s[2] + x, n)};
      __m128i out[3];
      fn(in, out);
      for (int k = 0; k < 3; ++k) storePlane(d[k] + x, out[k], n);
    }
  return x;
}
template <class Fn>
inline int blockP3toC3(const Lum8u* const s[3], Lum8u* d, int end, Fn fn) {
  int x = 0;
  for (; x + 32 <= end; x += 32) {
    Planes8x32 q;
    for (int h = 0; h < 2; ++h) {
      const int o = x + 16 * h;
      const __m128i in[3] = {loadu(s[0] + o), loadu(s[1] + o), loadu(s[2] + o)};
      __m128i out[3];
      fn(in, out);
      for (int k = 0; k < 3; ++k) q.c[k][h] = out[k];
    }
    interleave3x32(q, d + 3 * x);
  }
  for (int n = 16; n >= 4; n >>= 1)
    for (; x + n <= end; x += n) {
      const __m128i in[3] = {loadPlane(s[0] + x, n), loadPlane(s[1] + x, n),
                             loadPlane(s[2] + x, n)};
      __m128i out[3];
      fn(in, out);
      storeC3(out, d + 3 * x, n);
    }
  return x;
}

struct StepB {
  void operator()(const __m128i* in, __m128i* out) const { formBx16(in, out); }
};
struct StepE {
  void operator()(const __m128i* in, __m128i* out) const { inverseX16<formEVec>(in, out); }
};
struct StepF {
  void operator()(const __m128i* in, __m128i* out) const { inverseX16<formFVec>(in, out); }
};

}  // namespace ycbcrblocks
}  // namespace

#endif  // LUM_PCCYCBCR_BLOCKS_H
