// RGB and HLS: the main loops of the 8u C3 kernels with the 3-byte pixels
// (de)interleaved by SSSE3 byte shuffles.  Compiled with -mssse3 and entered
// only when the processor has SSSE3.  The arithmetic is the SSE2 block
// formula of pccmskcolor_hls.h and the narrowing the same packssdw and
// packuswb, so the bytes are those of the SSE2 network.
//
// 16 pixels a round (48 bytes, three loads): each group of 4 pixels is moved
// to the front of a register (palignr), and one pshufb a channel spreads its
// bytes into 32-bit lanes.  The results pack to three registers: X holds
// channels 0 and 1 of pixels 0-7, Y the same of pixels 8-15, Z channel 2 of
// all 16; each output register is an OR of pshufb of those.
#include <tmmintrin.h>

#include "models/pccmskcolor_hls.h"
#include "models/pccmskcolor_hls_blocks.h"

namespace {

using namespace hlsblocks;

// Gather: m[o][k] takes channel k of the 4 pixels that start at byte 4 * o
// of a register into 32-bit lanes (zero-extended).
struct GatherMasks {
  alignas(16) uint8_t m[2][3][16];
};
constexpr GatherMasks makeGather() {
  GatherMasks g{};
  for (int o = 0; o < 2; ++o)
    for (int k = 0; k < 3; ++k)
      for (int pos = 0; pos < 16; ++pos)
        g.m[o][k][pos] = pos % 4 == 0 ? static_cast<uint8_t>(4 * o + 3 * (pos / 4) + k) : 0x80;
  return g;
}
// Scatter: m[r][j] puts the samples of source register j (X, Y, Z) that
// belong in bytes 16r..16r+15 of the 48 output bytes in place.
struct ScatterMasks {
  alignas(16) uint8_t m[3][3][16];
};
constexpr ScatterMasks makeScatter() {
  ScatterMasks s{};
  for (int r = 0; r < 3; ++r)
    for (int pos = 0; pos < 16; ++pos) {
      const int p = (16 * r + pos) / 3, k = (16 * r + pos) % 3;
      const int j = k == 2 ? 2 : p / 8;
      const int byte = k == 2 ? p : (p % 8) / 4 * 8 + 4 * k + p % 4;
      for (int i = 0; i < 3; ++i) s.m[r][i][pos] = i == j ? static_cast<uint8_t>(byte) : 0x80;
    }
  return s;
}
constexpr GatherMasks kGather = makeGather();
constexpr ScatterMasks kScatter = makeScatter();

inline __m128i mask(const uint8_t* m) {
  return _mm_load_si128(reinterpret_cast<const __m128i*>(m));
}
inline __m128i shuf(__m128i v, const uint8_t* m) { return _mm_shuffle_epi8(v, mask(m)); }

struct NetSsse3 {
  static constexpr int kRound = 16;
  // The 4 pixels at byte 4 * o of v -> channel k in the 32-bit lanes of c[k].
  static void batch(__m128i v, int o, __m128i c[3]) {
    for (int k = 0; k < 3; ++k) c[k] = shuf(v, kGather.m[o][k]);
  }
  // Channels 0 and 1 of two batches -> bytes c0 x4, c1 x4, c0 x4, c1 x4.
  static __m128i pack01(const __m128i a[3], const __m128i b[3]) {
    return _mm_packus_epi16(_mm_packs_epi32(a[0], a[1]), _mm_packs_epi32(b[0], b[1]));
  }
  template <class Step>
  static void round(const Lum8u* s, Lum8u* d, Step step) {
    const __m128i v0 = loadu(s), v1 = loadu(s + 16), v2 = loadu(s + 32);
    __m128i in[4][3], o[4][3];
    batch(v0, 0, in[0]);
    batch(_mm_alignr_epi8(v1, v0, 12), 0, in[1]);
    batch(_mm_alignr_epi8(v2, v1, 8), 0, in[2]);
    batch(v2, 1, in[3]);
    for (int j = 0; j < 4; ++j) step(in[j], o[j]);
    const __m128i X = pack01(o[0], o[1]), Y = pack01(o[2], o[3]);
    const __m128i Z = _mm_packus_epi16(_mm_packs_epi32(o[0][2], o[1][2]),
                                       _mm_packs_epi32(o[2][2], o[3][2]));
    storeu(d, _mm_or_si128(shuf(X, kScatter.m[0][0]), shuf(Z, kScatter.m[0][2])));
    storeu(d + 16, _mm_or_si128(_mm_or_si128(shuf(X, kScatter.m[1][0]), shuf(Y, kScatter.m[1][1])),
                                shuf(Z, kScatter.m[1][2])));
    storeu(d + 32, _mm_or_si128(shuf(Y, kScatter.m[2][1]), shuf(Z, kScatter.m[2][2])));
  }
  // 8 pixels (24 bytes, read and written exactly): the first 24 bytes of a
  // round of 16.
  template <class Step>
  static void round8(const Lum8u* s, Lum8u* d, Step step) {
    const __m128i v0 = loadu(s), v1 = loadl64(s + 16);
    __m128i in[2][3], o[2][3];
    batch(v0, 0, in[0]);
    batch(_mm_alignr_epi8(v1, v0, 12), 0, in[1]);
    for (int j = 0; j < 2; ++j) step(in[j], o[j]);
    const __m128i X = pack01(o[0], o[1]);
    const __m128i Z = _mm_packus_epi16(_mm_packs_epi32(o[0][2], o[1][2]), _mm_setzero_si128());
    storeu(d, _mm_or_si128(shuf(X, kScatter.m[0][0]), shuf(Z, kScatter.m[0][2])));
    storel64(d + 16, _mm_or_si128(shuf(X, kScatter.m[1][0]), shuf(Z, kScatter.m[1][2])));
  }
};

}  // namespace

namespace lum {
namespace hls {

int blockRGBToHLS_8u_C3_ssse3(const Lum8u* pSrc, Lum8u* pDst, int end) {
  return block8uC3<NetSsse3>(pSrc, pDst, end, FwdStep{});
}
int blockHLSToRGB_8u_C3_ssse3(const Lum8u* pSrc, Lum8u* pDst, int end) {
  return block8uC3<NetSsse3>(pSrc, pDst, end, InvStep{});
}

}  // namespace hls
}  // namespace lum
