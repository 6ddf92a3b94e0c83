// RGB and YUV 4:4:4: the SSE2 forms of the block formulas, and the block
// loops over 3-byte pixels parameterised by the (de)interleave network.
// Included by the SSE2 unit and by the faster-path units; everything here has
// internal linkage so that each unit keeps its own instructions, and nothing
// here is an object with an initialiser (constants are built where used).
#ifndef LUM_PCCYUV01_BLOCKS_H
#define LUM_PCCYUV01_BLOCKS_H

#include <string.h>

#include "frame/lum_row.h"
#include "frame/lum_simd.h"
#include "lumcc.h"

namespace {
namespace yuv444blocks {

using namespace lum;

using namespace lum::yuv444;

// ---------------------------------------------------------------------------
// The block formulas of pccyuv01.h on 8 pixels in 16-bit lanes (SSE2).
inline __m128i f1YVec(__m128i R, __m128i G, __m128i B) { return f1YLanes(I16x8{R}, I16x8{G}, I16x8{B}).v; }
inline __m128i f1UVec(__m128i R, __m128i G, __m128i B) { return f1ULanes(I16x8{R}, I16x8{G}, I16x8{B}).v; }
inline __m128i f1VVec(__m128i R, __m128i G, __m128i B) { return f1VLanes(I16x8{R}, I16x8{G}, I16x8{B}).v; }

// F1 on 16 pixels given as bytes: in[3] = R, G, B; out[3] = Y, U, V.
inline void f1x16(const __m128i in[3], __m128i out[3]) {
  const __m128i Rl = lo8to16(in[0]), Gl = lo8to16(in[1]), Bl = lo8to16(in[2]);
  const __m128i Rh = hi8to16(in[0]), Gh = hi8to16(in[1]), Bh = hi8to16(in[2]);
  out[0] = vPackS16U8(f1YVec(Rl, Gl, Bl), f1YVec(Rh, Gh, Bh));
  out[1] = vPackS16U8(f1UVec(Rl, Gl, Bl), f1UVec(Rh, Gh, Bh));
  out[2] = vPackS16U8(f1VVec(Rl, Gl, Bl), f1VVec(Rh, Gh, Bh));
}

// F2 in SSE2 for one channel of 8 pixels in 16-bit lanes: pmaddwd forms
// c0 R + c1 G in one 32-bit lane, c2 B in another; each is shifted by 15.
inline __m128i f2ChanVec(__m128i R, __m128i G, __m128i B, int c0, int c1, int c2, int d) {
  const __m128i kRG = _mm_set1_epi32(static_cast<int>((static_cast<uint32_t>(c1) << 16) |
                                                      (static_cast<uint32_t>(c0) & 0xffffu)));
  const __m128i kB = _mm_set1_epi32(c2 & 0xffff);
  const __m128i vd = _mm_set1_epi32(d);
  const __m128i lo = _mm_add_epi32(
      _mm_add_epi32(_mm_srai_epi32(_mm_madd_epi16(_mm_unpacklo_epi16(R, G), kRG), 15),
                    _mm_srai_epi32(_mm_madd_epi16(_mm_unpacklo_epi16(B, _mm_setzero_si128()), kB), 15)),
      vd);
  const __m128i hi = _mm_add_epi32(
      _mm_add_epi32(_mm_srai_epi32(_mm_madd_epi16(_mm_unpackhi_epi16(R, G), kRG), 15),
                    _mm_srai_epi32(_mm_madd_epi16(_mm_unpackhi_epi16(B, _mm_setzero_si128()), kB), 15)),
      vd);
  return vPackS32S16(lo, hi);
}

inline void g1Vec(__m128i Y, __m128i U, __m128i V, __m128i& R, __m128i& G, __m128i& B) {
  I16x8 r, g, b;
  g1Lanes(I16x8{Y}, I16x8{U}, I16x8{V}, r, g, b);
  R = r.v;
  G = g.v;
  B = b.v;
}
inline void g1x16(const __m128i in[3], __m128i out[3]) {
  __m128i Rl, Gl, Bl, Rh, Gh, Bh;
  g1Vec(lo8to16(in[0]), lo8to16(in[1]), lo8to16(in[2]), Rl, Gl, Bl);
  g1Vec(hi8to16(in[0]), hi8to16(in[1]), hi8to16(in[2]), Rh, Gh, Bh);
  out[0] = vPackS16U8(Rl, Rh);
  out[1] = vPackS16U8(Gl, Gh);
  out[2] = vPackS16U8(Bl, Bh);
}

inline __m128i g2RVec(__m128i Y, __m128i U, __m128i V) { return g2RLanes(I16x8{Y}, I16x8{U}, I16x8{V}).v; }
inline __m128i g2GVec(__m128i Y, __m128i U, __m128i V) { return g2GLanes(I16x8{Y}, I16x8{U}, I16x8{V}).v; }
inline __m128i g2BVec(__m128i Y, __m128i U, __m128i V) { return g2BLanes(I16x8{Y}, I16x8{U}, I16x8{V}).v; }
inline void g4Vec(__m128i Y, __m128i U, __m128i V, __m128i& R, __m128i& G, __m128i& B) {
  I16x8 r, g, b;
  g4Lanes(I16x8{Y}, I16x8{U}, I16x8{V}, r, g, b);
  R = r.v;
  G = g.v;
  B = b.v;
}
inline void g4x16(const __m128i in[3], __m128i out[3]) {
  __m128i Rl, Gl, Bl, Rh, Gh, Bh;
  g4Vec(lo8to16(in[0]), lo8to16(in[1]), lo8to16(in[2]), Rl, Gl, Bl);
  g4Vec(hi8to16(in[0]), hi8to16(in[1]), hi8to16(in[2]), Rh, Gh, Bh);
  out[0] = vPackS16U8(Rl, Rh);
  out[1] = vPackS16U8(Gl, Gh);
  out[2] = vPackS16U8(Bl, Bh);
}

// The block loops over 3-byte pixels and planes (blockC3toC3, blockC3toP3,
// blockP3toC3) and the networks are the shared ones of lum_row.h and
// lum_simd.h.

// The 16-pixel steps of the four pixel-order kernels.
struct StepF1 {
  void operator()(const __m128i* in, __m128i* out) const { f1x16(in, out); }
};
struct StepG1 {
  void operator()(const __m128i* in, __m128i* out) const { g1x16(in, out); }
};
struct StepG4 {
  void operator()(const __m128i* in, __m128i* out) const { g4x16(in, out); }
};

// AC4 block formulas on 8 pixels in 16-bit lanes: F2 forward, G1 inverse.
struct StepF2 {
  void operator()(__m128i R, __m128i G, __m128i B, __m128i* o) const {
    o[0] = f2ChanVec(R, G, B, 9798, 19235, 3736, 0);
    o[1] = f2ChanVec(R, G, B, -4817, -9470, 14287, 128);
    o[2] = f2ChanVec(R, G, B, 20152, -16876, -3277, 128);
  }
};
struct StepG1AC4 {
  void operator()(__m128i Y, __m128i U, __m128i V, __m128i* o) const { g1Vec(Y, U, V, o[0], o[1], o[2]); }
};

// Stores of the three colour bytes of 4 pixels: a 16-bit and an 8-bit store
// a pixel.  Alpha is neither read nor written.
struct StoreSplit {
  static void store4(Lum8u* d, __m128i v) {
    for (int i = 0; i < 4; ++i, v = _mm_srli_si128(v, 4)) {
      const uint32_t px = static_cast<uint32_t>(_mm_cvtsi128_si32(v));
      const uint16_t lo = static_cast<uint16_t>(px);
      memcpy(d + 4 * i, &lo, 2);
      d[4 * i + 2] = static_cast<Lum8u>(px >> 16);
    }
  }
};

// The AC4 block loop over [0, end), 8 pixels a round: vecFn takes three
// 16-bit channel registers and gives three; Store writes the colour bytes.
template <class Store, class Vec8>
inline int blockAC4(const Lum8u* pSrc, Lum8u* pDst, int end, Vec8 vecFn) {
  int x = 0;
  for (; x < end; x += 8) {
    __m128i c[4], o[3];
    deinterleave4x8(pSrc + 4 * x, c);
    vecFn(lo8to16(c[0]), lo8to16(c[1]), lo8to16(c[2]), o);
    const __m128i outc[4] = {vPackS16U8(o[0], o[0]), vPackS16U8(o[1], o[1]),
                             vPackS16U8(o[2], o[2]), _mm_setzero_si128()};
    __m128i px[2];
    interleave4x8(outc, px);
    Store::store4(pDst + 4 * x, px[0]);
    Store::store4(pDst + 4 * x + 16, px[1]);
  }
  return x;
}

}  // namespace yuv444blocks
}  // namespace

#endif  // LUM_PCCYUV01_BLOCKS_H
