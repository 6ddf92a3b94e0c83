// CbYCr 4:2:2: every public function against a model built from the scalar
// forms and the rules for where each formula holds (the 1-2-1 chroma filter
// with its row edges, block parts counted from each row's start, odd last
// pixels, width 1), at every width from 1 to 70 and a wide one, at every
// instruction-set level; the aligned
// paths against the general ones; the block lane forms against their scalar
// forms; the gamma table against its curve; the worked values.  Guards,
// statuses, check order: test_generic.
#include <gtest/gtest.h>

#include <math.h>

#include <functional>
#include <random>
#include <string>
#include <vector>

#include "lumcc.h"
#include "test_support.h"
#include "video/pcccbycr.h"

using namespace lum;
using namespace lum::cbycr;

namespace {

// An image with a lead of 16 bytes before its first row and padding after
// each row, compared whole; `align` puts the first row on a 16-byte
// boundary (with a step that is a multiple of 16) or one byte past it.
struct Img {
  int rowBytes, rows, step;
  std::vector<uint8_t> raw;
  uint8_t* base;
  Img(int rb, int h, bool aligned, std::mt19937& rng)
      : rowBytes(rb), rows(h), step(aligned ? (rb + 15) / 16 * 16 + 16 : rb + 5),
        raw(64 + static_cast<size_t>(step) * h + 32) {
    for (auto& b : raw) b = static_cast<uint8_t>(rng() >> 24);
    const uintptr_t a = (reinterpret_cast<uintptr_t>(raw.data()) + 16 + 15) & ~uintptr_t{15};
    base = reinterpret_cast<uint8_t*>(a) + (aligned ? 0 : 1);
  }
  Img(const Img& o) : rowBytes(o.rowBytes), rows(o.rows), step(o.step), raw(o.raw), base(raw.data() + (o.base - o.raw.data())) {}
  uint8_t* row(int y) { return base + y * step; }
};

// ---------------------------------------------------------------------------
// Models of one row.
void modelToCbYCr(const ChannelTable& t, const uint8_t* s, uint8_t* d, int w) {
  auto px = [&](int x, int v[3]) { for (int k = 0; k < 3; ++k) v[k] = t.v[s[3 * x + k]]; };
  for (int x = 0; x < w; x += 2) {
    int c[3];
    px(x, c);
    if (x + 1 == w) {
      d[2 * x] = lastFilteredCb(c);
      d[2 * x + 1] = filterY(c[0], c[1], c[2]);
      break;
    }
    int l[3], r[3];
    if (x > 0) px(x - 1, l);
    px(x + 1, r);
    d[2 * x] = pairFiltered(x > 0 ? l : nullptr, c, r, kFilterCb);
    d[2 * x + 1] = filterY(c[0], c[1], c[2]);
    d[2 * x + 2] = pairFiltered(x > 0 ? l : nullptr, c, r, kFilterCr);
    d[2 * x + 3] = filterY(r[0], r[1], r[2]);
  }
}
void modelToRGB(const uint8_t* s, int w, const std::function<void(int, const uint8_t*)>& put) {
  for (int x = 0; x < w; ++x) {
    const int p = 2 * (x & ~1);
    const int cb = s[p], cr = (!(x & 1) && x + 1 == w) ? s[p - 2] : s[p + 2];
    uint8_t rgb[3];
    if (x < (w & ~7)) ycbcr::formF(s[2 * x + 1], cb, cr, rgb);
    else tailToRGB(s[2 * x + 1], cb, cr, rgb);
    put(x, rgb);
  }
}
void modelFromBGRA(const uint8_t* s, uint8_t* d, int w) {
  int x = 0;
  for (; x + 1 < w; x += 2) {
    const uint8_t *p = s + 4 * x, *q = p + 4;
    const int SR = p[2] + q[2], SG = p[1] + q[1], SB = p[0] + q[0];
    if (x < (w & ~7)) {
      d[2 * x] = static_cast<uint8_t>(blockFromBGRCb(SR, SG, SB));
      d[2 * x + 1] = static_cast<uint8_t>(blockFromBGRY(p[2], p[1], p[0]));
      d[2 * x + 2] = static_cast<uint8_t>(blockFromBGRCr(SR, SG, SB));
      d[2 * x + 3] = static_cast<uint8_t>(blockFromBGRY(q[2], q[1], q[0]));
    } else {
      d[2 * x] = ycbcrsub::pairCb(SR, SG, SB);
      d[2 * x + 1] = ycbcr::formAY(p[2], p[1], p[0]);
      d[2 * x + 2] = ycbcrsub::pairCr(SR, SG, SB);
      d[2 * x + 3] = ycbcr::formAY(q[2], q[1], q[0]);
    }
  }
  if (x < w) {
    const uint8_t* p = s + 4 * x;
    d[2 * x] = ycbcr::formACb(p[0], p[1], p[2]);
    d[2 * x + 1] = ycbcr::formAY(p[0], p[1], p[2]);
  }
}

struct Case {
  const char* name;
  int srcPix, dstPix;  // bytes a pixel (C2: 2, the row rounded up to pairs)
  std::function<LumStatus(Img&, Img&, LumSize)> call;
  std::function<void(Img&, Img&, int y, int w)> model;
};
int rowBytes(int pix, int w) { return pix == 2 ? 4 * ((w + 1) / 2) : pix * w; }
constexpr Lum8u kAlpha = 0x3C;

std::vector<Case> cases() {
  return {
      {"RGBToCbYCr422", 3, 2,
       [](Img& s, Img& d, LumSize r) { return lumiRGBToCbYCr422_8u_C3C2R(s.row(0), s.step, d.row(0), d.step, r); },
       [](Img& s, Img& d, int y, int w) { modelToCbYCr(kPlainTable, s.row(y), d.row(y), w); }},
      {"RGBToCbYCr422Gamma", 3, 2,
       [](Img& s, Img& d, LumSize r) { return lumiRGBToCbYCr422Gamma_8u_C3C2R(s.row(0), s.step, d.row(0), d.step, r); },
       [](Img& s, Img& d, int y, int w) { modelToCbYCr(kGammaTable, s.row(y), d.row(y), w); }},
      {"CbYCr422ToRGB", 2, 3,
       [](Img& s, Img& d, LumSize r) { return lumiCbYCr422ToRGB_8u_C2C3R(s.row(0), s.step, d.row(0), d.step, r); },
       [](Img& s, Img& d, int y, int w) {
         modelToRGB(s.row(y), w, [&](int x, const uint8_t* rgb) { memcpy(d.row(y) + 3 * x, rgb, 3); });
       }},
      {"CbYCr422ToBGR", 2, 4,
       [](Img& s, Img& d, LumSize r) { return lumiCbYCr422ToBGR_8u_C2C4R(s.row(0), s.step, d.row(0), d.step, r, kAlpha); },
       [](Img& s, Img& d, int y, int w) {
         modelToRGB(s.row(y), w, [&](int x, const uint8_t* rgb) {
           uint8_t* q = d.row(y) + 4 * x;
           q[0] = rgb[2], q[1] = rgb[1], q[2] = rgb[0], q[3] = kAlpha;
         });
       }},
      {"BGRToCbYCr422", 4, 2,
       [](Img& s, Img& d, LumSize r) { return lumiBGRToCbYCr422_8u_AC4C2R(s.row(0), s.step, d.row(0), d.step, r); },
       [](Img& s, Img& d, int y, int w) { modelFromBGRA(s.row(y), d.row(y), w); }},
  };
}

class Model : public ::testing::TestWithParam<int> {};

// Both alignments: with every pointer and step a multiple of 16 the BGR
// forms take their aligned paths, which must give the same bytes.
TEST_P(Model, EveryWidthBothAlignmentsAsTheFormulasSay) {
  const Case c = cases()[GetParam()];
  std::mt19937 rng(91 + GetParam());
  std::vector<int> widths;
  for (int w = 1; w <= 70; ++w) widths.push_back(w);
  widths.push_back(1001);
  for (lum::Isa level : lumtest::isaLevels())
  for (int extremes : {0, 1})
    for (bool aligned : {false, true})
      for (int w : widths) {
        const lumtest::IsaCap cap(level);
        const int h = 1 + w % 3;
        Img s(rowBytes(c.srcPix, w), h, aligned, rng), d(rowBytes(c.dstPix, w), h, aligned, rng);
        if (extremes)
          for (int y = 0; y < h; ++y)
            for (int i = 0; i < s.rowBytes; ++i) s.row(y)[i] = (rng() >> 9) & 1 ? 255 : 0;
        Img want = d;
        for (int y = 0; y < h; ++y) c.model(s, want, y, w);
        ASSERT_EQ(c.call(s, d, {w, h}), LumOk);
        ASSERT_EQ(d.raw, want.raw) << c.name << " " << w << "x" << h << (aligned ? " aligned" : "")
                                   << " at " << lumtest::isaName(level);
      }
}
INSTANTIATE_TEST_SUITE_P(CbYCr, Model, ::testing::Range(0, 5),
                         [](const ::testing::TestParamInfo<int>& i) { return std::string(cases()[i.param].name); });

// ---------------------------------------------------------------------------
// Block lane forms against their scalar forms.
// A luma lane form (8 lanes out, as bytes) against its scalar form over every
// R, G, B.
template <class Lanes, class Scalar>
void everyPixel(Lanes lanes, Scalar scalar) {
  for (int R = 0; R < 256; ++R)
    for (int G = 0; G < 256; ++G)
      for (int B0 = 0; B0 < 256; B0 += 8) {
        const I16x8 B{_mm_setr_epi16(B0, B0 + 1, B0 + 2, B0 + 3, B0 + 4, B0 + 5, B0 + 6, B0 + 7)};
        alignas(16) uint8_t o[16];
        _mm_store_si128(reinterpret_cast<__m128i*>(o), lanes(broadcast16<I16x8>(R), broadcast16<I16x8>(G), B));
        for (int i = 0; i < 8; ++i) ASSERT_EQ(o[i], scalar(R, G, B0 + i)) << R << " " << G << " " << B0 + i;
      }
}
TEST(CbYCrLanes, LumaFormsOverEveryPixel) {
  everyPixel([](I16x8 r, I16x8 g, I16x8 b) { const I16x8 y = blockFromBGRYLanes(r, g, b); return _mm_packus_epi16(y.v, y.v); },
             blockFromBGRY);
  everyPixel([](I16x8 r, I16x8 g, I16x8 b) {
               I32x4 y[2];
               filterYLanes(r, g, b, y);
               const __m128i w = _mm_packs_epi32(y[0].v, y[1].v);
               return _mm_packus_epi16(w, w);
             },
             filterY);
}
TEST(CbYCrLanes, BGRPairChromaOverPairSums) {  // sums 0 .. 510, every 2nd red and green
  for (int SR = 0; SR <= 510; SR += 2)
    for (int SG = 0; SG <= 510; SG += 2)
      for (int S0 = 0; S0 <= 510; S0 += 8) {
        alignas(16) int16_t b[8];
        for (int i = 0; i < 8; ++i) b[i] = static_cast<int16_t>(std::min(S0 + i, 510));
        const I16x8 SB{_mm_load_si128(reinterpret_cast<const __m128i*>(b))};
        for (int which = 0; which < 2; ++which) {
          const I16x8 c = which ? blockFromBGRChromaLanes(broadcast16<I16x8>(SR), broadcast16<I16x8>(SG), SB,
                                                          ycbcr::kCrR, ycbcr::kCrG, ycbcr::kCrB)
                                : blockFromBGRChromaLanes(broadcast16<I16x8>(SR), broadcast16<I16x8>(SG), SB,
                                                          ycbcr::kCbR, ycbcr::kCbG, ycbcr::kCbB);
          alignas(16) uint8_t o[16];
          _mm_store_si128(reinterpret_cast<__m128i*>(o), _mm_packus_epi16(c.v, c.v));
          for (int i = 0; i < 8; ++i)
            ASSERT_EQ(o[i], which ? blockFromBGRCr(SR, SG, b[i]) : blockFromBGRCb(SR, SG, b[i]));
        }
      }
}

TEST(CbYCrLanes, FilterChromaOverRandomNeighbourhoods) {
  std::mt19937 rng(5);
  for (int n = 0; n < 200000; ++n) {
    int c[3], l[3], r[3];
    for (int k = 0; k < 3; ++k) c[k] = rng() & 255, l[k] = rng() & 255, r[k] = rng() & 255;
    if (n % 4 == 0) l[0] = l[1] = l[2] = 0;  // the row's start
    I16x8 A[3];
    for (int k = 0; k < 3; ++k) A[k] = I16x8{_mm_set1_epi32(c[k] | ((l[k] + r[k]) << 16))};
    for (const FilterSet* k : {&kFilterCb, &kFilterCr}) {
      const I32x4 v = pairFilteredLanes<I16x8, I32x4>(A[0], A[1], A[2], *k);
      const __m128i w = _mm_packs_epi32(v.v, v.v);
      ASSERT_EQ(_mm_cvtsi128_si32(_mm_packus_epi16(w, w)) & 255, pairFiltered(l, c, r, *k));
    }
  }
}

// ---------------------------------------------------------------------------
// The gamma table and the worked values.
TEST(CbYCr, GammaTableIsTheRoundedTransferCurve) {
  for (int i = 0; i < 256; ++i) {
    const double x = i / 255.0;
    const double f = x < 0.018 ? 4.5 * x : 1.099 * pow(x, 0.45) - 0.099;
    EXPECT_EQ(kGammaTable.v[i], static_cast<int32_t>(round(255.0 * f))) << i;
    EXPECT_EQ(kPlainTable.v[i], i);
  }
  EXPECT_EQ(kGammaTable.v[1], 5);  // 4.5, half away from zero
}
TEST(CbYCr, WidthOneForwardIsCbAtDoubleWeightAndY) {
  const uint8_t blue[3] = {0, 0, 255};
  uint8_t d[4] = {0xEE, 0xEE, 0xEE, 0xEE};
  ASSERT_EQ(lumiRGBToCbYCr422_8u_C3C2R(blue, 3, d, 4, {1, 1}), LumOk);
  EXPECT_EQ(d[0], 240);  // ((2 * 7193 * 255 + 16383) >> 15) + 128
  EXPECT_EQ(d[1], 41);   // ((3212 * 255 + 16384) >> 15) + 16
  EXPECT_EQ(d[2], 0xEE);
  EXPECT_EQ(d[3], 0xEE);
}
TEST(CbYCr, FirstChromaOfARowLiesCloserToNeutral) {
  std::vector<uint8_t> src(3 * 4), d(8);
  for (int x = 0; x < 4; ++x) src[3 * x + 2] = 255;  // blue row
  ASSERT_EQ(lumiRGBToCbYCr422_8u_C3C2R(src.data(), 12, d.data(), 8, {4, 1}), LumOk);
  EXPECT_LT(d[0], d[4]);  // pair 0 lacks its left neighbour
  EXPECT_GT(d[0], 128);
}
TEST(CbYCr, GammaChecksStepsThePlainFormDoesNot) {
  uint8_t s[3] = {1, 2, 3}, d[4] = {};
  EXPECT_EQ(lumiRGBToCbYCr422Gamma_8u_C3C2R(s, 0, d, 4, {1, 1}), LumErrStep);
  EXPECT_EQ(lumiRGBToCbYCr422Gamma_8u_C3C2R(s, 3, d, 0, {1, 1}), LumErrStep);
  EXPECT_EQ(lumiRGBToCbYCr422Gamma_8u_C3C2R(s, 0, d, 0, {0, 1}), LumErrSize);
  EXPECT_EQ(lumiRGBToCbYCr422_8u_C3C2R(s, 0, d, 0, {1, 1}), LumOk);
}
TEST(CbYCr, WidthOneBGRExchangesRedAndBlue) {
  const uint8_t pix[4] = {255, 0, 0, 9};  // blue in B,G,R,A
  uint8_t d[4] = {0xEE, 0xEE, 0xEE, 0xEE};
  ASSERT_EQ(lumiBGRToCbYCr422_8u_AC4C2R(pix, 4, d, 4, {1, 1}), LumOk);
  EXPECT_EQ(d[0], 90);  // the Cb of red
  EXPECT_EQ(d[1], 82);  // the Y of red
  EXPECT_EQ(d[2], 0xEE);
}
TEST(CbYCr, WidthOneInverseTakesCrFromTheTwoBytesBeforeTheRow) {
  const uint8_t buf[6] = {0, 0, 240, 0, 128, 235};  // row at buf + 4: Cb 128, Y 235
  uint8_t rgb[3], bgra[4];
  ASSERT_EQ(lumiCbYCr422ToRGB_8u_C2C3R(buf + 4, 4, rgb, 3, {1, 1}), LumOk);
  ASSERT_EQ(lumiCbYCr422ToBGR_8u_C2C4R(buf + 4, 4, bgra, 4, {1, 1}, 77), LumOk);
  uint8_t want[3];
  tailToRGB(235, 128, 240, want);
  EXPECT_EQ(0, memcmp(rgb, want, 3));
  EXPECT_EQ(rgb[0], 255);
  EXPECT_EQ(bgra[0], want[2]);
  EXPECT_EQ(bgra[2], want[0]);
  EXPECT_EQ(bgra[3], 77);
}

}  // namespace
