// RGB and YUV 4:2:2 and 4:2:0: the SSE2 forms of the formulas, each beside
// the scalar form in pccyuv02.h that it must equal, and the 16-pixel steps
// the block loops are made of.  Internal linkage throughout, so that a unit
// built for a wider instruction set keeps its own copies.
#ifndef LUM_PCCYUV02_BLOCKS_H
#define LUM_PCCYUV02_BLOCKS_H

#include "frame/lum_simd.h"
#include "video/pccyuv02.h"

namespace {
namespace yuvsubblocks {

using namespace lum;
using namespace lum::yuvsub;

// Sums of adjacent 16-bit lanes, 2k and 2k + 1, as four 32-bit lanes.
inline __m128i pairSum32(__m128i w) { return _mm_madd_epi16(w, vset16(1)); }

// w10 of 8 bytes (the low or the high half of a register) in 16-bit lanes:
// the byte unpacked with itself is 257 x, then a shift by 6.
inline __m128i w10Lo(__m128i b) { return _mm_srli_epi16(_mm_unpacklo_epi8(b, b), 6); }
inline __m128i w10Hi(__m128i b) { return _mm_srli_epi16(_mm_unpackhi_epi8(b, b), 6); }

// T1 on 8 pixels (scalar: t1): pmaddwd forms 9798 R + 19235 G in 32-bit
// lanes, shifted by 14; (3736 B) >> 14 is the high half of (4 B) * 3736,
// exact since 4 B and 3736 fit 16 bits.
inline __m128i t1Vec(__m128i R, __m128i G, __m128i B) {
  const __m128i kRG = _mm_set1_epi32((19235 << 16) | 9798);
  const __m128i rg = vPackS32S16(_mm_srai_epi32(_mm_madd_epi16(_mm_unpacklo_epi16(R, G), kRG), 14),
                                 _mm_srai_epi32(_mm_madd_epi16(_mm_unpackhi_epi16(R, G), kRG), 14));
  return _mm_add_epi16(rg, vHs(_mm_slli_epi16(B, 2), vset16(3736)));
}
// T3 on 8 pixels of 10-bit values (scalar: t3).
inline __m128i t3Vec(__m128i wR, __m128i wG, __m128i wB) {
  return _mm_adds_epi16(_mm_adds_epi16(vHs(wR, vset16(9798)), vHs(wG, vset16(19235))),
                        vHs(wB, vset16(3736)));
}
// sat8u(H(d, factor) + 128) before the pack (scalar: chromaOf).
inline __m128i chromaVec(__m128i d, int factor) {
  return _mm_adds_epi16(vHs(d, vset16(factor)), vset16(128));
}

// Result of a forward step on 16 pixels (or 8 cells): luma bytes, and the
// chroma of 8 pairs or cells in the low 8 bytes of u and v.
struct Fwd16 {
  __m128i y, u, v;
};

// 4:2:2 by T1 on 16 pixels given as bytes (scalar: pairT1).
inline Fwd16 fwd422T1x16(__m128i R, __m128i G, __m128i B) {
  __m128i T[2], dB[2], dR[2];
  for (int h = 0; h < 2; ++h) {
    const __m128i Rw = h ? hi8to16(R) : lo8to16(R), Gw = h ? hi8to16(G) : lo8to16(G);
    const __m128i Bw = h ? hi8to16(B) : lo8to16(B);
    T[h] = t1Vec(Rw, Gw, Bw);
    const __m128i S = _mm_srai_epi32(pairSum32(T[h]), 1);
    dB[h] = _mm_sub_epi32(pairSum32(Bw), S);
    dR[h] = _mm_sub_epi32(pairSum32(Rw), S);
  }
  const __m128i u = chromaVec(_mm_packs_epi32(dB[0], dB[1]), kUFactor);
  const __m128i v = chromaVec(_mm_packs_epi32(dR[0], dR[1]), kVFactor);
  return {vPackS16U8(_mm_srai_epi16(T[0], 1), _mm_srai_epi16(T[1], 1)), vPackS16U8(u, u),
          vPackS16U8(v, v)};
}

// 4:2:2 by T3 on 16 pixels given as bytes (scalar: pairT3).
inline Fwd16 fwd422T3x16(__m128i R, __m128i G, __m128i B) {
  __m128i T[2], dB[2], dR[2];
  for (int h = 0; h < 2; ++h) {
    const __m128i wR = h ? w10Hi(R) : w10Lo(R), wG = h ? w10Hi(G) : w10Lo(G);
    const __m128i wB = h ? w10Hi(B) : w10Lo(B);
    T[h] = t3Vec(wR, wG, wB);
    const __m128i s = pairSum32(T[h]);
    dB[h] = _mm_sub_epi32(_mm_srai_epi32(pairSum32(wB), 1), s);
    dR[h] = _mm_sub_epi32(_mm_srai_epi32(pairSum32(wR), 1), s);
  }
  auto chroma = [](__m128i d, int factor) {
    return _mm_adds_epi16(_mm_srai_epi16(vHs(d, vset16(factor)), 1), vset16(128));
  };
  const __m128i u = chroma(_mm_packs_epi32(dB[0], dB[1]), kUFactor);
  const __m128i v = chroma(_mm_packs_epi32(dR[0], dR[1]), kVFactor);
  return {vPackS16U8(_mm_srai_epi16(T[0], 1), _mm_srai_epi16(T[1], 1)), vPackS16U8(u, u),
          vPackS16U8(v, v)};
}

// 4:2:0 on 8 cells: the two rows' R, G, B as bytes (16 pixels each).  Policy
// T1 (pixel-order kernel): A = sum B >> 1, C = sum R >> 1; policy T3 (plane
// kernel): the sums of w10 values >> 3.  S = sum T >> 2 in both
// (scalar: t1 or t3 and cellChroma).
struct Cells420T1 {
  static __m128i widen(__m128i b, int h) { return h ? hi8to16(b) : lo8to16(b); }
  static __m128i T(__m128i R, __m128i G, __m128i B) { return t1Vec(R, G, B); }
  static constexpr int kSumShift = 1;
};
struct Cells420T3 {
  static __m128i widen(__m128i b, int h) { return h ? w10Hi(b) : w10Lo(b); }
  static __m128i T(__m128i R, __m128i G, __m128i B) { return t3Vec(R, G, B); }
  static constexpr int kSumShift = 3;
};
struct Fwd420 {
  __m128i y0, y1, u, v;
};
template <class Policy>
inline Fwd420 fwd420x8(const __m128i R[2], const __m128i G[2], const __m128i B[2]) {
  __m128i T[2][2], dB[2], dR[2];
  for (int h = 0; h < 2; ++h) {
    // Column sums of the two rows fit 16 bits (at most 2 * 1023); the pair
    // sums of those are the cell sums.
    __m128i colT = _mm_setzero_si128(), colB = colT, colR = colT;
    for (int row = 0; row < 2; ++row) {
      const __m128i Rw = Policy::widen(R[row], h), Gw = Policy::widen(G[row], h);
      const __m128i Bw = Policy::widen(B[row], h);
      T[row][h] = Policy::T(Rw, Gw, Bw);
      colT = _mm_add_epi16(colT, T[row][h]);
      colB = _mm_add_epi16(colB, Bw);
      colR = _mm_add_epi16(colR, Rw);
    }
    const __m128i sumT = pairSum32(colT), sumB = pairSum32(colB), sumR = pairSum32(colR);
    const __m128i S = _mm_srai_epi32(sumT, 2);
    dB[h] = _mm_sub_epi32(_mm_srai_epi32(sumB, Policy::kSumShift), S);
    dR[h] = _mm_sub_epi32(_mm_srai_epi32(sumR, Policy::kSumShift), S);
  }
  const __m128i u = chromaVec(_mm_packs_epi32(dB[0], dB[1]), kUFactor);
  const __m128i v = chromaVec(_mm_packs_epi32(dR[0], dR[1]), kVFactor);
  return {vPackS16U8(_mm_srai_epi16(T[0][0], 1), _mm_srai_epi16(T[0][1], 1)),
          vPackS16U8(_mm_srai_epi16(T[1][0], 1), _mm_srai_epi16(T[1][1], 1)), vPackS16U8(u, u),
          vPackS16U8(v, v)};
}

// ---------------------------------------------------------------------------
// Inverse formulas on 8 pixels in 16-bit lanes; R, G, B before the pack.

// I1 (scalar: i1), in two steps: the chroma terms H(v, 9338), H(u, -3227),
// H(v, -4759), H(u, 16645) of 8 pairs or cells, then, for each pixel, those
// of its pair or cell added to T = 2 Y in the formula's order.  The terms
// are computed once per pair or cell and spread to its pixels: the same
// lanes as computing them per pixel from replicated U and V.
struct I1Terms {
  __m128i r, gu, gv, b;
};
inline I1Terms i1Terms(__m128i U, __m128i V) {
  const __m128i u = _mm_slli_epi16(_mm_sub_epi16(U, vset16(128)), 4);
  const __m128i v = _mm_slli_epi16(_mm_sub_epi16(V, vset16(128)), 4);
  return {vHs(v, vset16(9338)), vHs(u, vset16(-3227)), vHs(v, vset16(-4759)),
          vHs(u, vset16(16645))};
}
inline void i1Apply(__m128i Y, const I1Terms& t, __m128i o[3]) {
  const __m128i T = _mm_slli_epi16(Y, 1);
  o[0] = _mm_srai_epi16(_mm_adds_epi16(T, t.r), 1);
  o[1] = _mm_srai_epi16(_mm_adds_epi16(_mm_adds_epi16(T, t.gu), t.gv), 1);
  o[2] = _mm_srai_epi16(_mm_adds_epi16(T, t.b), 1);
}
// The terms of pairs 0-3 (lo) or 4-7 (hi) spread to their 8 pixels.
inline I1Terms spreadLo(const I1Terms& t) {
  return {_mm_unpacklo_epi16(t.r, t.r), _mm_unpacklo_epi16(t.gu, t.gu),
          _mm_unpacklo_epi16(t.gv, t.gv), _mm_unpacklo_epi16(t.b, t.b)};
}
inline I1Terms spreadHi(const I1Terms& t) {
  return {_mm_unpackhi_epi16(t.r, t.r), _mm_unpackhi_epi16(t.gu, t.gu),
          _mm_unpackhi_epi16(t.gv, t.gv), _mm_unpackhi_epi16(t.b, t.b)};
}
// I1 on 16 pixels: Y bytes, the terms of their 8 pairs or cells; out bytes.
inline void i1x16(__m128i Y, const I1Terms& t, __m128i out[3]) {
  __m128i lo[3], hi[3];
  i1Apply(lo8to16(Y), spreadLo(t), lo);
  i1Apply(hi8to16(Y), spreadHi(t), hi);
  for (int k = 0; k < 3; ++k) out[k] = vPackS16U8(lo[k], hi[k]);
}
// The terms of 8 pairs or cells from chroma bytes (the low 8 of u and v), or
// of 16 from all 16 (lo: the first 8, hi: the last 8).
inline I1Terms i1TermsLo(__m128i u, __m128i v) { return i1Terms(lo8to16(u), lo8to16(v)); }
inline I1Terms i1TermsHi(__m128i u, __m128i v) { return i1Terms(hi8to16(u), hi8to16(v)); }

// I2 (scalar: i2).  y - (..) cannot leave the 16-bit range, so saturating
// it before the rounding 8 is the same as saturating once after.
inline void i2Vec(__m128i Y, __m128i U, __m128i V, __m128i o[3]) {
  const __m128i y = _mm_slli_epi16(Y, 4), r8 = vset16(8);
  const __m128i u = _mm_slli_epi16(_mm_sub_epi16(U, vset16(128)), 7);
  const __m128i v = _mm_slli_epi16(_mm_sub_epi16(V, vset16(128)), 7);
  o[0] = _mm_srai_epi16(_mm_adds_epi16(_mm_adds_epi16(y, vHs(v, vset16(9338))), r8), 4);
  const __m128i g = _mm_adds_epi16(vHs(u, vset16(3227)), vHs(v, vset16(4759)));
  o[1] = _mm_srai_epi16(_mm_adds_epi16(_mm_subs_epi16(y, g), r8), 4);
  o[2] = _mm_srai_epi16(_mm_adds_epi16(_mm_adds_epi16(y, vHs(u, vset16(16646))), r8), 4);
}

// The chroma of 8 pairs (low 8 bytes) replicated to 16 pixels.
inline __m128i replicate8(__m128i c) { return _mm_unpacklo_epi8(c, c); }

// 4:2:2 pixel-order C2 bytes (Y0 U Y1 V) of 16 pixels (32 bytes) -> the Y
// bytes of pixels 0-7 and 8-15 in 16-bit lanes, and U and V of the 8 pairs
// in 16-bit lanes.
inline void splitC2x16(const Lum8u* p, __m128i Y[2], __m128i& U, __m128i& V) {
  const __m128i a = loadu(p), b = loadu(p + 16), lo = vset16(0x00ff);
  Y[0] = _mm_and_si128(a, lo);
  Y[1] = _mm_and_si128(b, lo);
  const __m128i ca = _mm_srli_epi16(a, 8), cb = _mm_srli_epi16(b, 8);  // U0 V0 U1 V1 ...
  const __m128i even = _mm_set1_epi32(0xffff);
  U = _mm_packs_epi32(_mm_and_si128(ca, even), _mm_and_si128(cb, even));
  V = _mm_packs_epi32(_mm_srli_epi32(ca, 16), _mm_srli_epi32(cb, 16));
}

// I2 on 8 pixels from bytes (low 8 bytes of each register), packed and
// interleaved with a zero alpha: two registers of 4 four-byte pixels.
inline void i2x8ToAC4(__m128i Y, __m128i U, __m128i V, __m128i px[2]) {
  __m128i o[3];
  i2Vec(lo8to16(Y), lo8to16(U), lo8to16(V), o);
  const __m128i c[4] = {vPackS16U8(o[0], o[0]), vPackS16U8(o[1], o[1]), vPackS16U8(o[2], o[2]),
                        _mm_setzero_si128()};
  interleave4x8(c, px);
}

// Loads of 4 or 2 bytes into the low lanes of a register.
inline __m128i load32(const void* p) {
  int32_t v;
  memcpy(&v, p, 4);
  return _mm_cvtsi32_si128(v);
}
inline __m128i load16(const void* p) {
  uint16_t v;
  memcpy(&v, p, 2);
  return _mm_cvtsi32_si128(v);
}

}  // namespace yuvsubblocks
}  // namespace

#endif  // LUM_PCCYUV02_BLOCKS_H
