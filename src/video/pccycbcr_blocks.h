// RGB and YCbCr 4:4:4: the block loops at 8 lanes, built of the lane forms
// of B, C, E and F (pccycbcr.h) on I16x8, and parameterised by the
// (de)interleave of 3-byte pixels: the SSE2 riffle network (rounds of 32
// pixels, then 16) or the SSSE3 byte shuffles (16).  Included by the SSE2
// unit and the SSSE3 unit; everything here has internal linkage, so that a
// unit compiled for a wider instruction set keeps its own copies.
#ifndef LUM_PCCYCBCR_BLOCKS_H
#define LUM_PCCYCBCR_BLOCKS_H

#include <string.h>

#include "frame/lum_lanes.h"
#include "frame/lum_simd.h"
#include "video/pccycbcr.h"

namespace {
namespace ycbcrblocks {

using namespace lum;
using namespace lum::ycbcr;

// A formula of three lane registers to three on 16 pixels given as bytes:
// widened to two halves of 8 lanes, and packed back (the pack clamps).
template <void (*Lanes)(I16x8, I16x8, I16x8, I16x8*)>
inline void x16(const __m128i in[3], __m128i out[3]) {
  I16x8 lo[3], hi[3];
  Lanes(I16x8{lo8to16(in[0])}, I16x8{lo8to16(in[1])}, I16x8{lo8to16(in[2])}, lo);
  Lanes(I16x8{hi8to16(in[0])}, I16x8{hi8to16(in[1])}, I16x8{hi8to16(in[2])}, hi);
  for (int k = 0; k < 3; ++k) out[k] = vPackS16U8(lo[k].v, hi[k].v);
}
struct StepB {
  void operator()(const __m128i* in, __m128i* out) const { x16<formBLanes<I16x8>>(in, out); }
};
struct StepE {
  void operator()(const __m128i* in, __m128i* out) const { x16<formELanes<I16x8>>(in, out); }
};
struct StepF {
  void operator()(const __m128i* in, __m128i* out) const { x16<formFLanes<I16x8>>(in, out); }
};

// ---------------------------------------------------------------------------
// The (de)interleave of 3-byte pixels: SSE2 rounds of 32 through the
// six-register network, then 16.
struct NetSse2 {
  static constexpr bool kRound32 = true;
  static void load16(const Lum8u* p, __m128i c[3]) { deinterleave3x16(p, c); }
  static void store16(const __m128i c[3], Lum8u* p) { interleave3x16(c, p); }
};

// Loads and stores of 16, 8 or 4 pixels: 3-byte pixels (exactly 3n bytes
// read or written) and plane samples.
template <class Net>
inline void loadC3(const Lum8u* p, int n, __m128i c[3]) {
  if (n == 16) return Net::load16(p, c);
  if (n == 8) return deinterleave3x8(p, c);
  alignas(16) Lum8u t[24] = {};
  memcpy(t, p, 12);
  deinterleave3x8(t, c);
}
template <class Net>
inline void storeC3(const __m128i c[3], Lum8u* p, int n) {
  if (n == 16) return Net::store16(c, p);
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

// Block loops from x to end in rounds of 32 pixels (SSE2, pixel-order
// sides), then 16, then at most one of 8 and one of 4 (end is a multiple of
// the kernel's block; the formula is per pixel, so only end matters).  Fn is
// a 16-pixel step on byte registers.  Each returns end.
template <class Net, class Fn>
inline int blockC3toC3(const Lum8u* s, Lum8u* d, int x, int end, Fn fn) {
  if constexpr (Net::kRound32) {
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
  }
  for (int n = 16; n >= 4; n >>= 1)
    for (; x + n <= end; x += n) {
      __m128i in[3], out[3];
      loadC3<Net>(s + 3 * x, n, in);
      fn(in, out);
      storeC3<Net>(out, d + 3 * x, n);
    }
  return x;
}
template <class Fn>
inline int blockP3toP3(const Lum8u* const s[3], Lum8u* const d[3], int x, int end, Fn fn) {
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
template <class Net, class Fn>
inline int blockP3toC3(const Lum8u* const s[3], Lum8u* d, int x, int end, Fn fn) {
  if constexpr (Net::kRound32) {
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
  }
  for (int n = 16; n >= 4; n >>= 1)
    for (; x + n <= end; x += n) {
      const __m128i in[3] = {loadPlane(s[0] + x, n), loadPlane(s[1] + x, n),
                             loadPlane(s[2] + x, n)};
      __m128i out[3];
      fn(in, out);
      storeC3<Net>(out, d + 3 * x, n);
    }
  return x;
}

// One plane pass of formula C, 16 pixels a round.
template <I16x8 (*Lanes)(I16x8, I16x8, I16x8)>
inline int passC(const Lum8u* pR, const Lum8u* pG, const Lum8u* pB, Lum8u* pOut, int x, int end) {
  for (; x + 16 <= end; x += 16) {
    const __m128i r = loadu(pR + x), g = loadu(pG + x), b = loadu(pB + x);
    const I16x8 lo = Lanes(I16x8{lo8to16(r)}, I16x8{lo8to16(g)}, I16x8{lo8to16(b)});
    const I16x8 hi = Lanes(I16x8{hi8to16(r)}, I16x8{hi8to16(g)}, I16x8{hi8to16(b)});
    storeu(pOut + x, vPackS16U8(lo.v, hi.v));
  }
  return x;
}

}  // namespace ycbcrblocks
}  // namespace

#endif  // LUM_PCCYCBCR_BLOCKS_H
