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
#include "frame/lum_row.h"
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
