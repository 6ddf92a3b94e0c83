// RGB and YUV 4:4:4: the block loops of the pixel-order kernels with the
// 3-byte pixels (de)interleaved by SSSE3 byte shuffles.  Compiled with
// -mssse3 and entered only when the processor has SSSE3; the formulas are
// the SSE2 ones of pccyuv01_blocks.h, so the bytes are the same.
#include <tmmintrin.h>

#include "video/pccyuv01.h"
#include "video/pccyuv01_blocks.h"

namespace {

using namespace yuv444blocks;

// Shuffle masks.  Gather: mask[k][j] takes the bytes of channel k that lie
// in source register j to their pixel positions.  Scatter: mask[j][k] puts
// the pixels of channel k that belong in output register j in place.
struct Masks3 {
  alignas(16) uint8_t m[3][3][16];
};
constexpr Masks3 makeGather() {
  Masks3 s{};
  for (int k = 0; k < 3; ++k)
    for (int j = 0; j < 3; ++j)
      for (int pos = 0; pos < 16; ++pos) {
        const int byte = 3 * pos + k;
        s.m[k][j][pos] = byte / 16 == j ? static_cast<uint8_t>(byte % 16) : 0x80;
      }
  return s;
}
constexpr Masks3 makeScatter() {
  Masks3 s{};
  for (int j = 0; j < 3; ++j)
    for (int k = 0; k < 3; ++k)
      for (int pos = 0; pos < 16; ++pos) {
        const int byte = 16 * j + pos;
        s.m[j][k][pos] = byte % 3 == k ? static_cast<uint8_t>(byte / 3) : 0x80;
      }
  return s;
}
constexpr Masks3 kGather = makeGather();
constexpr Masks3 kScatter = makeScatter();

inline __m128i mask(const uint8_t* m) { return _mm_load_si128(reinterpret_cast<const __m128i*>(m)); }

struct NetSsse3 {
  static constexpr bool kRound32 = false;
  static void load16(const Lum8u* p, __m128i c[3]) {
    const __m128i v[3] = {loadu(p), loadu(p + 16), loadu(p + 32)};
    for (int k = 0; k < 3; ++k)
      c[k] = _mm_or_si128(_mm_or_si128(_mm_shuffle_epi8(v[0], mask(kGather.m[k][0])),
                                       _mm_shuffle_epi8(v[1], mask(kGather.m[k][1]))),
                          _mm_shuffle_epi8(v[2], mask(kGather.m[k][2])));
  }
  static void store16(const __m128i c[3], Lum8u* p) {
    for (int j = 0; j < 3; ++j)
      storeu(p + 16 * j,
             _mm_or_si128(_mm_or_si128(_mm_shuffle_epi8(c[0], mask(kScatter.m[j][0])),
                                       _mm_shuffle_epi8(c[1], mask(kScatter.m[j][1]))),
                          _mm_shuffle_epi8(c[2], mask(kScatter.m[j][2]))));
  }
};

}  // namespace

int blockRGBToYUV_C3_ssse3(const Lum8u* pSrc, Lum8u* pDst, int end) {
  return blockC3toC3<NetSsse3>(pSrc, pDst, end, StepF1{});
}
int blockRGBToYUV_C3P3_ssse3(const Lum8u* pSrc, Lum8u* pY, Lum8u* pU, Lum8u* pV, int end) {
  return blockC3toP3<NetSsse3>(pSrc, pY, pU, pV, end, StepF1{});
}
int blockYUVToRGB_C3_ssse3(const Lum8u* pSrc, Lum8u* pDst, int end) {
  return blockC3toC3<NetSsse3>(pSrc, pDst, end, StepG1{});
}
int blockYUVToRGB_P3C3_ssse3(const Lum8u* pY, const Lum8u* pU, const Lum8u* pV, Lum8u* pDst,
                             int end) {
  return blockP3toC3<NetSsse3>(pY, pU, pV, pDst, end, StepG4{});
}
