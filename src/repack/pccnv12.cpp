// NV12, YV12, YUY2 and UYVY repacks: public functions, row drivers and the
// one-row forms they are built of (aliases and rules: pccnv12.h).
//
// Every row form is a struct with its scalar form `one` (one unit: a pixel
// pair, or a byte of the Y copy) beside its SSE2 form `block` (kBlock
// units: 16 pixel pairs = 32 pixels, or 64 bytes of Y).  A row runs the
// block while a whole block is left, then the scalar form for the rest.  C2
// data is split by a mask of the even bytes and a shift by 8 and packed with
// saturating packs, exact on bytes; so block and scalar form agree.
//
// A block's 16-byte loads and stores of its main streams go through a store
// policy: Plain (unaligned), Stream (non-temporal stores to a 16-byte
// aligned destination, fenced at the end of the driver) or AlignedStream
// (aligned loads as well).
#include "repack/pccnv12.h"

#include <emmintrin.h>
#include <stdint.h>

#include <type_traits>

#include "frame/lum_frame.h"
#include "frame/lum_simd.h"

using lum::rowPtr;
using u8 = Lum8u;

namespace {

// Store policies and the even/odd byte packs: lum_simd.h.
using Plain = lum::StorePlain;
using Stream = lum::StoreStream;
using AlignedStream = lum::StoreAlignedStream;
using lum::packEven;
using lum::packOdd;
using lum::packSel;

// Byte positions inside the 4 bytes of a C2 pixel pair: YUY2 "Y0 Cb Y1 Cr"
// (UYVY false) or UYVY "Cb Y0 Cr Y1" (UYVY true).
template <bool UYVY>
struct C2Pos {
  static constexpr int y0 = UYVY ? 1 : 0, y1 = UYVY ? 3 : 2;
  static constexpr int c0 = UYVY ? 0 : 1, c1 = UYVY ? 2 : 3;
};

// 16 pixels of luma and their 8 chroma pairs (c: first byte, second byte,
// ...) -> 32 bytes of C2.
template <bool UYVY, class M>
inline void storeC2x16(__m128i y, __m128i c, u8* d) {
  M::st(d, UYVY ? _mm_unpacklo_epi8(c, y) : _mm_unpacklo_epi8(y, c));
  M::st(d + 16, UYVY ? _mm_unpackhi_epi8(c, y) : _mm_unpackhi_epi8(y, c));
}

// ---------------------------------------------------------------------------
// Row forms.

// Y row and a row of chroma pairs (P2) -> C2.  Unit: one pixel pair.
template <bool UYVY>
struct P2ToC2 {
  static constexpr int kBlock = 16;
  using P = C2Pos<UYVY>;
  static void one(int i, const u8* y, const u8* c, u8* d) {
    d[4 * i + P::y0] = y[2 * i];
    d[4 * i + P::c0] = c[2 * i];
    d[4 * i + P::y1] = y[2 * i + 1];
    d[4 * i + P::c1] = c[2 * i + 1];
  }
  template <class M>
  static void block(int i, const u8* y, const u8* c, u8* d) {
    storeC2x16<UYVY, M>(M::ld(y + 2 * i), M::ld(c + 2 * i), d + 4 * i);
    storeC2x16<UYVY, M>(M::ld(y + 2 * i + 16), M::ld(c + 2 * i + 16), d + 4 * i + 32);
  }
};

// Y row and two chroma rows (a: the pair's first chroma byte, b: its
// second) -> C2.  Unit: one pixel pair.
template <bool UYVY>
struct P3ToC2 {
  static constexpr int kBlock = 16;
  using P = C2Pos<UYVY>;
  static void one(int i, const u8* y, const u8* a, const u8* b, u8* d) {
    d[4 * i + P::y0] = y[2 * i];
    d[4 * i + P::c0] = a[i];
    d[4 * i + P::y1] = y[2 * i + 1];
    d[4 * i + P::c1] = b[i];
  }
  template <class M>
  static void block(int i, const u8* y, const u8* a, const u8* b, u8* d) {
    const __m128i A = M::ld(a + i), B = M::ld(b + i);
    storeC2x16<UYVY, M>(M::ld(y + 2 * i), _mm_unpacklo_epi8(A, B), d + 4 * i);
    storeC2x16<UYVY, M>(M::ld(y + 2 * i + 16), _mm_unpackhi_epi8(A, B), d + 4 * i + 32);
  }
};

// C2 -> C2 with bytes 0 and 1, 2 and 3 of each group exchanged (YUY2 <->
// UYVY): a rotate of each 16-bit lane by 8.  Unit: one pixel pair.
struct SwapC2 {
  static constexpr int kBlock = 16;
  static void one(int i, const u8* s, u8* d) {
    d[4 * i] = s[4 * i + 1];
    d[4 * i + 1] = s[4 * i];
    d[4 * i + 2] = s[4 * i + 3];
    d[4 * i + 3] = s[4 * i + 2];
  }
  template <class M>
  static void block(int i, const u8* s, u8* d) {
    for (int k = 0; k < 64; k += 16) {
      const __m128i v = M::ld(s + 4 * i + k);
      M::st(d + 4 * i + k, _mm_or_si128(_mm_slli_epi16(v, 8), _mm_srli_epi16(v, 8)));
    }
  }
};

// C2 -> Y row and a row of chroma pairs (P2).  Unit: one pixel pair.
template <bool UYVY>
struct C2ToP2 {
  static constexpr int kBlock = 16;
  using P = C2Pos<UYVY>;
  static void one(int i, const u8* s, u8* y, u8* c) {
    y[2 * i] = s[4 * i + P::y0];
    y[2 * i + 1] = s[4 * i + P::y1];
    c[2 * i] = s[4 * i + P::c0];
    c[2 * i + 1] = s[4 * i + P::c1];
  }
  template <class M>
  static void block(int i, const u8* s, u8* y, u8* c) {
    const u8* p = s + 4 * i;
    const __m128i v0 = M::ld(p), v1 = M::ld(p + 16), v2 = M::ld(p + 32), v3 = M::ld(p + 48);
    M::st(y + 2 * i, packSel<UYVY>(v0, v1));
    M::st(y + 2 * i + 16, packSel<UYVY>(v2, v3));
    M::st(c + 2 * i, packSel<!UYVY>(v0, v1));
    M::st(c + 2 * i + 16, packSel<!UYVY>(v2, v3));
  }
};

// C2 -> Y row and two chroma rows (a: the pair's first chroma byte, b: its
// second).  Unit: one pixel pair.
template <bool UYVY>
struct C2ToP3 {
  static constexpr int kBlock = 16;
  using P = C2Pos<UYVY>;
  static void one(int i, const u8* s, u8* y, u8* a, u8* b) {
    y[2 * i] = s[4 * i + P::y0];
    y[2 * i + 1] = s[4 * i + P::y1];
    a[i] = s[4 * i + P::c0];
    b[i] = s[4 * i + P::c1];
  }
  template <class M>
  static void block(int i, const u8* s, u8* y, u8* a, u8* b) {
    const u8* p = s + 4 * i;
    const __m128i v0 = M::ld(p), v1 = M::ld(p + 16), v2 = M::ld(p + 32), v3 = M::ld(p + 48);
    M::st(y + 2 * i, packSel<UYVY>(v0, v1));
    M::st(y + 2 * i + 16, packSel<UYVY>(v2, v3));
    const __m128i c0 = packSel<!UYVY>(v0, v1), c1 = packSel<!UYVY>(v2, v3);
    M::st(a + i, packEven(c0, c1));
    M::st(b + i, packOdd(c0, c1));
  }
};

// C2 -> Y row only: the odd rows of a 4:2:2 -> 4:2:0 repack.  Unit: one
// pixel pair.
template <bool UYVY>
struct LumaOfC2 {
  static constexpr int kBlock = 16;
  using P = C2Pos<UYVY>;
  static void one(int i, const u8* s, u8* y) {
    y[2 * i] = s[4 * i + P::y0];
    y[2 * i + 1] = s[4 * i + P::y1];
  }
  template <class M>
  static void block(int i, const u8* s, u8* y) {
    const u8* p = s + 4 * i;
    M::st(y + 2 * i, packSel<UYVY>(M::ld(p), M::ld(p + 16)));
    M::st(y + 2 * i + 16, packSel<UYVY>(M::ld(p + 32), M::ld(p + 48)));
  }
};

// A row of chroma pairs -> two rows (a: first bytes, b: second bytes).
// Unit: one pair; 32 pairs a block.
struct SplitPairs {
  static constexpr int kBlock = 32;
  static void one(int i, const u8* s, u8* a, u8* b) {
    a[i] = s[2 * i];
    b[i] = s[2 * i + 1];
  }
  template <class M>
  static void block(int i, const u8* s, u8* a, u8* b) {
    const u8* p = s + 2 * i;
    const __m128i v0 = M::ld(p), v1 = M::ld(p + 16), v2 = M::ld(p + 32), v3 = M::ld(p + 48);
    M::st(a + i, packEven(v0, v1));
    M::st(a + i + 16, packEven(v2, v3));
    M::st(b + i, packOdd(v0, v1));
    M::st(b + i + 16, packOdd(v2, v3));
  }
};

// Two rows -> a row of pairs a0 b0 a1 b1 ...  Unit: one pair; 16 pairs a
// block.
struct MergePairs {
  static constexpr int kBlock = 16;
  static void one(int i, const u8* a, const u8* b, u8* d) {
    d[2 * i] = a[i];
    d[2 * i + 1] = b[i];
  }
  template <class M>
  static void block(int i, const u8* a, const u8* b, u8* d) {
    const __m128i A = M::ld(a + i), B = M::ld(b + i);
    M::st(d + 2 * i, _mm_unpacklo_epi8(A, B));
    M::st(d + 2 * i + 16, _mm_unpackhi_epi8(A, B));
  }
};

// The Y copy: 64 bytes a block.  Unit: one byte.
struct CopyY {
  static constexpr int kBlock = 64;
  static void one(int i, const u8* s, u8* d) { d[i] = s[i]; }
  template <class M>
  static void block(int i, const u8* s, u8* d) {
    for (int k = 0; k < 64; k += 16) M::st(d + i + k, M::ld(s + i + k));
  }
};

// One row from unit i0 (where a faster path stopped): the block while a
// whole block is left, then the scalar form.
template <class F, class M = Plain, class... A>
inline void rowFrom(int i0, int n, A... a) {
  int i = i0;
  for (; i + F::kBlock <= n; i += F::kBlock) F::template block<M>(i, a...);
  for (; i < n; ++i) F::one(i, a...);
}
template <class F, class M = Plain, class... A>
inline void row(int n, A... a) {
  rowFrom<F, M>(0, n, a...);
}
inline bool avx2(lum::Isa isa) { return isa >= lum::kIsaAvx2; }
template <class F, class... A>
inline void rowScalar(int n, A... a) {
  for (int i = 0; i < n; ++i) F::one(i, a...);
}

// Row forms as pointer-array calls, for the tests.
template <class F, int NS, int ND>
struct FormCall {
  template <class... A>
  static void call(bool vec, int n, A... a) {
    if (vec)
      row<F>(n, a...);
    else
      rowScalar<F>(n, a...);
  }
  static void go(bool vec, const u8* const* s, u8* const* d, int n) {
    if constexpr (NS == 1 && ND == 1) call(vec, n, s[0], d[0]);
    else if constexpr (NS == 1 && ND == 2) call(vec, n, s[0], d[0], d[1]);
    else if constexpr (NS == 1 && ND == 3) call(vec, n, s[0], d[0], d[1], d[2]);
    else if constexpr (NS == 2 && ND == 1) call(vec, n, s[0], s[1], d[0]);
    else call(vec, n, s[0], s[1], s[2], d[0]);
  }
  // The SSE2 row (the faster rounds of this family are tested through the
  // public functions at every level).
  static void vec(const u8* const* s, u8* const* d, int n, lum::Isa) { go(true, s, d, n); }
  static void scalar(const u8* const* s, u8* const* d, int n) { go(false, s, d, n); }
};
template <class F, int NS, int ND>
constexpr lum::repack::RowForm form(const char* name, std::initializer_list<int> sb,
                                    std::initializer_list<int> db) {
  lum::repack::RowForm f{name, NS, ND, {0, 0, 0, 0}, {0, 0, 0, 0}, F::kBlock,
                         &FormCall<F, NS, ND>::vec, &FormCall<F, NS, ND>::scalar};
  int k = 0;
  for (int b : sb) f.srcBytes[k++] = b;
  k = 0;
  for (int b : db) f.dstBytes[k++] = b;
  return f;
}

// ---------------------------------------------------------------------------
// Shared pieces of the drivers.
inline bool aligned16(const void* p) { return (reinterpret_cast<uintptr_t>(p) & 15u) == 0; }
inline bool aligned16(int step) { return (step & 15) == 0; }

// The non-temporal test of the C2 destinations: the steps of all images
// summed, as the bytes touched per row, times the height (a 32-bit product)
// above 524288.
constexpr int32_t kNonTemporalBytes = 524288;
inline bool bigFrame(int stepSum, int height) {
  return lum::pixelCount32(stepSum, height) > kNonTemporalBytes;
}

// Rows of a driver with the store policy chosen once per call.
template <class RowFn>
void rowsWithPolicy(bool nonTemporal, int height, RowFn fn) {
  if (nonTemporal) {
    for (int y = 0; y < height; ++y) fn(y, Stream{});
    _mm_sfence();
  } else {
    for (int y = 0; y < height; ++y) fn(y, Plain{});
  }
}

void copyY(const u8* s, int sStep, u8* d, int dStep, int width, int height, lum::Isa isa) {
  for (int y = 0; y < height; ++y) {
    const u8* a = rowPtr(s, y, sStep);
    u8* b = rowPtr(d, y, dStep);
    rowFrom<CopyY>(avx2(isa) ? lum::nv12::copyY_avx2(a, b, width) : 0, width, a, b);
  }
}

template <bool UYVY>
void nv12ToC2(const u8* pSrcY, int srcYStep, const u8* pSrcCbCr, int srcCbCrStep, u8* pDst,
              int dstStep, int width, int height, lum::Isa isa) {
  for (int y = 0; y < height; ++y) {
    const u8* ys = rowPtr(pSrcY, y, srcYStep);
    const u8* c = rowPtr(pSrcCbCr, y / 2, srcCbCrStep);
    u8* d = rowPtr(pDst, y, dstStep);
    rowFrom<P2ToC2<UYVY>>(avx2(isa) ? lum::nv12::p2ToC2_avx2(UYVY, ys, c, d, width / 2) : 0,
                          width / 2, ys, c, d);
  }
}

// YV12 -> C2: the pair's first chroma byte from plane 2 (Cb), the second
// from plane 1 (Cr).  The faster path only with plain stores.
template <bool UYVY, class M>
void yv12ToC2Row(const u8* const pSrc[3], const int srcStep[3], u8* pDst, int dstStep, int width,
                 int y, lum::Isa isa) {
  const u8* ys = rowPtr(pSrc[0], y, srcStep[0]);
  const u8* a = rowPtr(pSrc[2], y / 2, srcStep[2]);
  const u8* b = rowPtr(pSrc[1], y / 2, srcStep[1]);
  u8* d = rowPtr(pDst, y, dstStep);
  const bool fast = std::is_same<M, Plain>::value && avx2(isa);
  rowFrom<P3ToC2<UYVY>, M>(fast ? lum::nv12::p3ToC2_avx2(UYVY, ys, a, b, d, width / 2) : 0,
                           width / 2, ys, a, b, d);
}

// C2 -> YV12: the pair's first chroma byte (Cb) to plane 2, the second (Cr)
// to plane 1; the odd rows give Y only.
template <bool UYVY>
void c2ToYV12(const u8* pSrc, int srcStep, u8* const pDst[3], const int dstStep[3], int width,
              int height) {
  for (int r = 0; r < height / 2; ++r) {
    row<C2ToP3<UYVY>>(width / 2, rowPtr(pSrc, 2 * r, srcStep), rowPtr(pDst[0], 2 * r, dstStep[0]),
                      rowPtr(pDst[2], r, dstStep[2]), rowPtr(pDst[1], r, dstStep[1]));
    row<LumaOfC2<UYVY>>(width / 2, rowPtr(pSrc, 2 * r + 1, srcStep),
                        rowPtr(pDst[0], 2 * r + 1, dstStep[0]));
  }
}

template <bool UYVY>
void c2ToNV12(const u8* pSrc, int srcStep, u8* pDstY, int dstYStep, u8* pDstCbCr,
              int dstCbCrStep, int width, int height) {
  for (int r = 0; r < height / 2; ++r) {
    row<C2ToP2<UYVY>>(width / 2, rowPtr(pSrc, 2 * r, srcStep), rowPtr(pDstY, 2 * r, dstYStep),
                      rowPtr(pDstCbCr, r, dstCbCrStep));
    row<LumaOfC2<UYVY>>(width / 2, rowPtr(pSrc, 2 * r + 1, srcStep),
                        rowPtr(pDstY, 2 * r + 1, dstYStep));
  }
}

}  // namespace

// ===========================================================================
// Row forms and drivers.
namespace lum {
namespace nv12 {

const lum::repack::RowForm* rowForms(int* count) {
  static constexpr lum::repack::RowForm kForms[] = {
      form<P2ToC2<false>, 2, 1>("P2ToC2_YUY2", {2, 2}, {4}),
      form<P2ToC2<true>, 2, 1>("P2ToC2_UYVY", {2, 2}, {4}),
      form<P3ToC2<false>, 3, 1>("P3ToC2_YUY2", {2, 1, 1}, {4}),
      form<P3ToC2<true>, 3, 1>("P3ToC2_UYVY", {2, 1, 1}, {4}),
      form<SwapC2, 1, 1>("SwapC2", {4}, {4}),
      form<C2ToP2<false>, 1, 2>("C2ToP2_YUY2", {4}, {2, 2}),
      form<C2ToP2<true>, 1, 2>("C2ToP2_UYVY", {4}, {2, 2}),
      form<C2ToP3<false>, 1, 3>("C2ToP3_YUY2", {4}, {2, 1, 1}),
      form<C2ToP3<true>, 1, 3>("C2ToP3_UYVY", {4}, {2, 1, 1}),
      form<LumaOfC2<false>, 1, 1>("LumaOfC2_YUY2", {4}, {2}),
      form<LumaOfC2<true>, 1, 1>("LumaOfC2_UYVY", {4}, {2}),
      form<SplitPairs, 1, 2>("SplitPairs", {2}, {1, 1}),
      form<MergePairs, 2, 1>("MergePairs", {1, 1}, {2}),
      form<CopyY, 1, 1>("CopyY", {1}, {1}),
  };
  *count = static_cast<int>(sizeof kForms / sizeof kForms[0]);
  return kForms;
}

void myNV12ToYUY2_8u_P2C2R(const u8* pSrcY, int srcYStep, const u8* pSrcCbCr, int srcCbCrStep,
                           u8* pDst, int dstStep, int width, int height, Isa isa) {
  nv12ToC2<false>(pSrcY, srcYStep, pSrcCbCr, srcCbCrStep, pDst, dstStep, width, height, isa);
}
void myNV12ToUYVY_8u_P2C2R(const u8* pSrcY, int srcYStep, const u8* pSrcCbCr, int srcCbCrStep,
                           u8* pDst, int dstStep, int width, int height, Isa isa) {
  nv12ToC2<true>(pSrcY, srcYStep, pSrcCbCr, srcCbCrStep, pDst, dstStep, width, height, isa);
}

// Cb (the pair's first byte) to plane 1, Cr to plane 2: the YCbCr plane
// order, whatever the name says.
void myNV12ToYV12_8u_P2P3R(const u8* pSrcY, int srcYStep, const u8* pSrcCbCr, int srcCbCrStep,
                           u8* const pDst[3], const int dstStep[3], int width, int height,
                           Isa isa) {
  copyY(pSrcY, srcYStep, pDst[0], dstStep[0], width, height, isa);
  for (int r = 0; r < height / 2; ++r) {
    const u8* c = rowPtr(pSrcCbCr, r, srcCbCrStep);
    u8* a = rowPtr(pDst[1], r, dstStep[1]);
    u8* b = rowPtr(pDst[2], r, dstStep[2]);
    rowFrom<SplitPairs>(avx2(isa) ? splitPairs_avx2(c, a, b, width / 2) : 0, width / 2, c, a, b);
  }
}

// The pair's first byte (Cb) from plane 2, the second from plane 1.
void myYV12ToNV12_8u_P3P2R(const u8* const pSrc[3], const int srcStep[3], u8* pDstY,
                           int dstYStep, u8* pDstCbCr, int dstCbCrStep, int width, int height,
                           Isa isa) {
  copyY(pSrc[0], srcStep[0], pDstY, dstYStep, width, height, isa);
  for (int r = 0; r < height / 2; ++r) {
    const u8* a = rowPtr(pSrc[2], r, srcStep[2]);
    const u8* b = rowPtr(pSrc[1], r, srcStep[1]);
    u8* d = rowPtr(pDstCbCr, r, dstCbCrStep);
    rowFrom<MergePairs>(avx2(isa) ? mergePairs_avx2(a, b, d, width / 2) : 0, width / 2, a, b, d);
  }
}

void myYV12ToYUY2420_8u_P3C2R(const u8* const pSrc[3], const int srcStep[3], u8* pDst,
                              int dstStep, int width, int height, Isa isa) {
  for (int y = 0; y < height; ++y)
    yv12ToC2Row<false, Plain>(pSrc, srcStep, pDst, dstStep, width, y, isa);
}
void alYV12ToYUY2420_8u_P3C2R(const u8* const pSrc[3], const int srcStep[3], u8* pDst,
                              int dstStep, int width, int height) {
  for (int y = 0; y < height; ++y)
    yv12ToC2Row<false, AlignedStream>(pSrc, srcStep, pDst, dstStep, width, y, kIsaSse2);
  _mm_sfence();
}

void myYV12ToUYVY420_8u_P3C2R(const u8* const pSrc[3], const int srcStep[3], u8* pDst,
                              int dstStep, int width, int height, Isa isa) {
  const bool nt = aligned16(pDst) && aligned16(dstStep) &&
                  bigFrame(srcStep[0] + srcStep[1] + srcStep[2] + dstStep, height);
  rowsWithPolicy(nt, height, [&](int y, auto m) {
    yv12ToC2Row<true, decltype(m)>(pSrc, srcStep, pDst, dstStep, width, y, isa);
  });
}

void myYUY2ToUYVY422_8u_C2R(const u8* pSrc, int srcStep, u8* pDst, int dstStep, int width,
                            int height) {
  const bool nt = aligned16(pDst) && aligned16(dstStep) && bigFrame(srcStep + dstStep, height);
  rowsWithPolicy(nt, height, [&](int y, auto m) {
    row<SwapC2, decltype(m)>(width / 2, rowPtr(pSrc, y, srcStep), rowPtr(pDst, y, dstStep));
  });
}
void myUYVYToYUY2422_8u_C2R(const u8* pSrc, int srcStep, u8* pDst, int dstStep, int width,
                            int height) {
  for (int y = 0; y < height; ++y)
    row<SwapC2>(width / 2, rowPtr(pSrc, y, srcStep), rowPtr(pDst, y, dstStep));
}

void myYUY2ToYV12422_8u_C2P3R(const u8* pSrc, int srcStep, u8* const pDst[3],
                              const int dstStep[3], int width, int height) {
  c2ToYV12<false>(pSrc, srcStep, pDst, dstStep, width, height);
}
void myUYVYToYV12422_8u_C2P3R(const u8* pSrc, int srcStep, u8* const pDst[3],
                              const int dstStep[3], int width, int height) {
  c2ToYV12<true>(pSrc, srcStep, pDst, dstStep, width, height);
}
void myYUY2ToNV12_8u_C2P2R(const u8* pSrc, int srcStep, u8* pDstY, int dstYStep, u8* pDstCbCr,
                           int dstCbCrStep, int width, int height) {
  c2ToNV12<false>(pSrc, srcStep, pDstY, dstYStep, pDstCbCr, dstCbCrStep, width, height);
}
void myUYVYToNV12_8u_C2P2R(const u8* pSrc, int srcStep, u8* pDstY, int dstYStep, u8* pDstCbCr,
                           int dstCbCrStep, int width, int height) {
  c2ToNV12<true>(pSrc, srcStep, pDstY, dstYStep, pDstCbCr, dstCbCrStep, width, height);
}

}  // namespace nv12
}  // namespace lum

// ===========================================================================
// Public functions: the checks of each function in its own order, the size
// rounded down (width to even; height to even except in the two C2 -> C2
// functions), one driver call.  Steps are not tested; after the checks the
// status is LumOk.
namespace {
using lum::arr;
inline int even(int v) { return v & ~1; }
}  // namespace

#define LUM_RETURN_IF(st)             \
  do {                                \
    const LumStatus st_ = (st);       \
    if (st_ != LumOk) return st_;     \
  } while (0)

// --- NV12 to C2: the three pointers, then width and height below 2 --------
LUM_PUBLIC LumStatus lumiYCbCr420ToYCbCr422_8u_P2C2R(LUM_P2, LUM_TO_C2, LumSize roiSize) {
  LUM_RETURN_IF(lum::checkP3({pSrcY, pSrcCbCr, pDst}, {}, roiSize, 2, 2));
  lum::nv12::myNV12ToYUY2_8u_P2C2R(pSrcY, srcYStep, pSrcCbCr, srcCbCrStep, pDst, dstStep,
                                   even(roiSize.width), even(roiSize.height), lum::isa());
  return LumOk;
}
LUM_PUBLIC LumStatus lumiYCbCr420ToCbYCr422_8u_P2C2R(LUM_P2, LUM_TO_C2, LumSize roiSize) {
  LUM_RETURN_IF(lum::checkP3({pSrcY, pSrcCbCr, pDst}, {}, roiSize, 2, 2));
  lum::nv12::myNV12ToUYVY_8u_P2C2R(pSrcY, srcYStep, pSrcCbCr, srcCbCrStep, pDst, dstStep,
                                   even(roiSize.width), even(roiSize.height), lum::isa());
  return LumOk;
}

// --- NV12 to YV12: two rounds of checks ------------------------------------
LUM_PUBLIC LumStatus lumiYCbCr420ToYCrCb420_8u_P2P3R(LUM_P2, LUM_TO_P3, LumSize roiSize) {
  LUM_RETURN_IF(lum::checkP7({pSrcY, pSrcCbCr, pDst}, roiSize, {arr(pDst, 3)}));
  lum::nv12::myNV12ToYV12_8u_P2P3R(pSrcY, srcYStep, pSrcCbCr, srcCbCrStep, pDst, dstStep,
                                   even(roiSize.width), even(roiSize.height), lum::isa());
  return LumOk;
}

// --- YV12 sources: the plane entries (not the array itself), then the
// destination pointers, then the size -------------------------------------
LUM_PUBLIC LumStatus lumiYCrCb420ToYCbCr420_8u_P3P2R(LUM_P3, LUM_TO_P2, LumSize roiSize) {
  LUM_RETURN_IF(lum::checkP3({pSrc[0], pSrc[1], pSrc[2], pDstY, pDstCbCr}, {}, roiSize, 2, 2));
  lum::nv12::myYV12ToNV12_8u_P3P2R(pSrc, srcStep, pDstY, dstYStep, pDstCbCr, dstCbCrStep,
                                   even(roiSize.width), even(roiSize.height), lum::isa());
  return LumOk;
}
LUM_PUBLIC LumStatus lumiYCrCb420ToYCbCr422_8u_P3C2R(LUM_P3, LUM_TO_C2, LumSize roiSize) {
  LUM_RETURN_IF(lum::checkP3({pSrc[0], pSrc[1], pSrc[2], pDst}, {}, roiSize, 2, 2));
  const int width = even(roiSize.width), height = even(roiSize.height);
  if (aligned16(pSrc[0]) && aligned16(pSrc[1]) && aligned16(pSrc[2]) && aligned16(pDst) &&
      aligned16(dstStep) && aligned16(srcStep[0]) && aligned16(srcStep[1]) &&
      aligned16(srcStep[2]) &&
      bigFrame(srcStep[0] + srcStep[1] + srcStep[2] + dstStep, roiSize.height))
    lum::nv12::alYV12ToYUY2420_8u_P3C2R(pSrc, srcStep, pDst, dstStep, width, height);
  else
    lum::nv12::myYV12ToYUY2420_8u_P3C2R(pSrc, srcStep, pDst, dstStep, width, height, lum::isa());
  return LumOk;
}
LUM_PUBLIC LumStatus lumiYCrCb420ToCbYCr422_8u_P3C2R(LUM_P3, LUM_TO_C2, LumSize roiSize) {
  LUM_RETURN_IF(lum::checkP3({pSrc[0], pSrc[1], pSrc[2], pDst}, {}, roiSize, 2, 2));
  lum::nv12::myYV12ToUYVY420_8u_P3C2R(pSrc, srcStep, pDst, dstStep, even(roiSize.width),
                                      even(roiSize.height), lum::isa());
  return LumOk;
}

// --- C2 to C2: pSrc, pDst; then height below 1 or width below 2; all rows -
LUM_PUBLIC LumStatus lumiYCbCr422ToCbYCr422_8u_C2R(LUM_C2, LUM_TO_C2, LumSize roiSize) {
  LUM_RETURN_IF(lum::checkP3({pSrc, pDst}, {}, roiSize, 2, 1));
  lum::nv12::myYUY2ToUYVY422_8u_C2R(pSrc, srcStep, pDst, dstStep, even(roiSize.width),
                                    roiSize.height);
  return LumOk;
}
LUM_PUBLIC LumStatus lumiCbYCr422ToYCbCr422_8u_C2R(LUM_C2, LUM_TO_C2, LumSize roiSize) {
  LUM_RETURN_IF(lum::checkP3({pSrc, pDst}, {}, roiSize, 2, 1));
  lum::nv12::myUYVYToYUY2422_8u_C2R(pSrc, srcStep, pDst, dstStep, even(roiSize.width),
                                    roiSize.height);
  return LumOk;
}

// --- C2 to YV12: the entries of pDst (not the array itself), then pSrc ----
LUM_PUBLIC LumStatus lumiYCbCr422ToYCrCb420_8u_C2P3R(LUM_C2, LUM_TO_P3, LumSize roiSize) {
  LUM_RETURN_IF(lum::checkP3({pDst[0], pDst[1], pDst[2], pSrc}, {}, roiSize, 2, 2));
  lum::nv12::myYUY2ToYV12422_8u_C2P3R(pSrc, srcStep, pDst, dstStep, even(roiSize.width),
                                      even(roiSize.height));
  return LumOk;
}
LUM_PUBLIC LumStatus lumiCbYCr422ToYCrCb420_8u_C2P3R(LUM_C2, LUM_TO_P3, LumSize roiSize) {
  LUM_RETURN_IF(lum::checkP3({pDst[0], pDst[1], pDst[2], pSrc}, {}, roiSize, 2, 2));
  lum::nv12::myUYVYToYV12422_8u_C2P3R(pSrc, srcStep, pDst, dstStep, even(roiSize.width),
                                      even(roiSize.height));
  return LumOk;
}

// --- C2 to NV12 ------------------------------------------------------------
LUM_PUBLIC LumStatus lumiYCbCr422ToYCbCr420_8u_C2P2R(LUM_C2, LUM_TO_P2, LumSize roiSize) {
  LUM_RETURN_IF(lum::checkP3({pSrc, pDstY, pDstCbCr}, {}, roiSize, 2, 2));
  lum::nv12::myYUY2ToNV12_8u_C2P2R(pSrc, srcStep, pDstY, dstYStep, pDstCbCr, dstCbCrStep,
                                   even(roiSize.width), even(roiSize.height));
  return LumOk;
}
LUM_PUBLIC LumStatus lumiCbYCr422ToYCbCr420_8u_C2P2R(LUM_C2, LUM_TO_P2, LumSize roiSize) {
  LUM_RETURN_IF(lum::checkP3({pSrc, pDstY, pDstCbCr}, {}, roiSize, 2, 2));
  lum::nv12::myUYVYToNV12_8u_C2P2R(pSrc, srcStep, pDstY, dstYStep, pDstCbCr, dstCbCrStep,
                                   even(roiSize.width), even(roiSize.height));
  return LumOk;
}

#undef LUM_RETURN_IF
#undef LUM_P3
#undef LUM_TO_P3
#undef LUM_C2
#undef LUM_TO_C2
#undef LUM_P2
#undef LUM_TO_P2
