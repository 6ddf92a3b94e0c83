// CbYCr 4:2:2: every public function against a model built from the scalar
// forms and the rules for where each formula holds (the 1-2-1 chroma filter
// with its row edges, block parts counted from each row's start, odd last
// pixels, width 1), at every width from 1 to 70 and a wide one, at every
// instruction-set level; the aligned paths against the general ones; the
// gamma table against its curve; the worked values.  Guards,
// statuses, check order: test_generic.
#include <gtest/gtest.h>

#include <math.h>

#include <functional>
#include <random>
#include <string>
#include <vector>

#include "lum_table.h"
#include "lumcc.h"
#include "test_support.h"
#include "video/pcccbycr.h"

using namespace lum;
using namespace lum::cbycr;

namespace {

// Images compared whole, guards included; aligned: the first row on a
// 16-byte boundary and a step that is a multiple of 16; else one byte past.
using Img = lumtest::GuardedImage;
Img image(int rb, int h, bool aligned) { return Img(rb, h, aligned ? (16 - rb % 16) % 16 + 16 : 5, aligned ? 0 : 1); }

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

// The five functions (called through the table, images sized by it) and
// their row models.
struct Case {
  const char* name;
  std::function<void(Img&, Img&, int y, int w)> model;
};
constexpr Lum8u kAlpha = 0x3C;

std::vector<Case> cases() {
  auto toRGB = [](int bgr) {
    return [bgr](Img& s, Img& d, int y, int w) {
      modelToRGB(s.row(y), w, [&](int x, const uint8_t* rgb) {
        uint8_t* q = d.row(y) + (bgr ? 4 : 3) * x;
        for (int k = 0; k < 3; ++k) q[bgr ? 2 - k : k] = rgb[k];
        if (bgr) q[3] = kAlpha;
      });
    };
  };
  return {
      {"lumiRGBToCbYCr422_8u_C3C2R", [](Img& s, Img& d, int y, int w) { modelToCbYCr(kPlainTable, s.row(y), d.row(y), w); }},
      {"lumiRGBToCbYCr422Gamma_8u_C3C2R", [](Img& s, Img& d, int y, int w) { modelToCbYCr(kGammaTable, s.row(y), d.row(y), w); }},
      {"lumiCbYCr422ToRGB_8u_C2C3R", toRGB(0)},
      {"lumiCbYCr422ToBGR_8u_C2C4R", toRGB(1)},
      {"lumiBGRToCbYCr422_8u_AC4C2R", [](Img& s, Img& d, int y, int w) { modelFromBGRA(s.row(y), d.row(y), w); }},
  };
}

class Model : public ::testing::TestWithParam<int> {};

// Random and extreme (0 and 255 only) content, both alignments: with every
// pointer and step a multiple of 16 the BGR forms take their aligned paths,
// which must give the same bytes.  Every level (the lane forms meet their
// scalar forms there).
TEST_P(Model, EveryWidthBothAlignmentsAsTheFormulasSay) {
  const Case c = cases()[GetParam()];
  const lumtable::Entry& e = *lumtable::find(c.name);
  std::mt19937 rng(91 + GetParam());
  std::vector<int> widths = lumtest::widthsUpTo(70);
  widths.push_back(1001);
  for (lum::Isa level : lumtest::isaLevels())
    for (int extremes : {0, 1})
      for (bool aligned : {false, true})
        for (int w : widths) {
          const lumtest::IsaCap cap(level);
          const int h = 1 + w % 3;
          Img s = image(e.srcRowBytes(0, w), h, aligned), d = image(e.dstRowBytes(0, w), h, aligned);
          extremes ? s.fillExtremes(rng) : s.fillRandom(rng);
          Img want = d;
          for (int y = 0; y < h; ++y) c.model(s, want, y, w);
          ASSERT_EQ(lumtest::callTable(c.name, {&s}, {&d}, {w, h}, kAlpha), LumOk);
          ASSERT_EQ(d.snapshot(), want.snapshot()) << c.name << " " << w << "x" << h << (aligned ? " aligned" : "")
                                     << (extremes ? " extremes" : "") << " at " << lumtest::isaName(level);
        }
}
INSTANTIATE_TEST_SUITE_P(CbYCr, Model, ::testing::Range(0, 5),
                         [](const ::testing::TestParamInfo<int>& i) { return std::string(cases()[i.param].name); });

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
TEST(CbYCr, WidthOneBGRExchangesRedAndBlue) {
  const uint8_t pix[4] = {255, 0, 0, 9};  // blue in B,G,R,A
  uint8_t d[4] = {0xEE, 0xEE, 0xEE, 0xEE};
  ASSERT_EQ(lumiBGRToCbYCr422_8u_AC4C2R(pix, 4, d, 4, {1, 1}), LumOk);
  EXPECT_EQ(d[0], 90);  // the Cb of red
  EXPECT_EQ(d[1], 82);  // the Y of red
  EXPECT_EQ(d[2], 0xEE);
}
}  // namespace
