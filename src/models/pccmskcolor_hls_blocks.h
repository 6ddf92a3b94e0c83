// RGB and HLS: the main loop of the 8u C3 kernels, shared by the SSE2 unit
// and the SSSE3 unit and parameterised by the (de)interleave of the 3-byte
// pixels; and the source prefetch of every block loop (SSE2, SSSE3 and AVX2
// units).  Everything here has internal linkage, so that each unit keeps its
// own instructions.
#ifndef LUM_PCCMSKCOLOR_HLS_BLOCKS_H
#define LUM_PCCMSKCOLOR_HLS_BLOCKS_H

#include <stdint.h>
#include <xmmintrin.h>

#include "frame/lum_simd.h"
#include "lumcc.h"
#include "models/pccmskcolor_hls.h"

namespace {
namespace hlsblocks {

using namespace lum;
using namespace lum::hls;

// The block loops ask for the source some way ahead of where they read: a
// row is a long stream, and between two loads there is so much arithmetic
// that the processor alone doesn't fetch it early enough.  A prefetch never
// faults, so it may look past the row.  The loops call it at least once
// every 64 bytes of source, so that no cache line is skipped.
constexpr uintptr_t kPrefetchAhead = 2048;
inline void prefetchAhead(const void* p) {
  _mm_prefetch(reinterpret_cast<const char*>(reinterpret_cast<uintptr_t>(p) + kPrefetchAhead),
               _MM_HINT_T0);
}

// One batch of the 8u block formula: four pixels, channel k of the source in
// the 32-bit lanes of in[k] -> channel k of the result in out[k], truncated
// and not yet narrowed (the network narrows by signed 16-bit, then unsigned
// 8-bit saturation: packssdw, packuswb).
struct FwdStep {
  void operator()(const __m128i in[3], __m128i out[3]) const {
    const FwdVec o = rgbToHls8uBlockVec(in[0], in[1], in[2]);
    out[0] = o.H;
    out[1] = o.L;
    out[2] = o.S;
  }
};
struct InvStep {
  void operator()(const __m128i in[3], __m128i out[3]) const {
    hlsToRgb8uBlockVec(in[0], in[1], in[2], out);
  }
};

// The main loop over pixels [0, end), end a multiple of 8: rounds of
// Net::kRound pixels (Net::round), then of 8 (Net::round8).  Returns end.
// The formula is per pixel, so the size of the rounds is free: only where
// the main loop ends (the tail begins) shows in the bytes.
template <class Net, class Step>
inline int block8uC3(const Lum8u* s, Lum8u* d, int end, Step step) {
  int x = 0;
  for (; x + Net::kRound <= end; x += Net::kRound) {
    for (int b = 0; b < 3 * Net::kRound; b += 48) prefetchAhead(s + 3 * x + b);
    Net::round(s + 3 * x, d + 3 * x, step);
  }
  for (; x < end; x += 8) Net::round8(s + 3 * x, d + 3 * x, step);
  return x;
}

}  // namespace hlsblocks
}  // namespace

#endif  // LUM_PCCMSKCOLOR_HLS_BLOCKS_H
