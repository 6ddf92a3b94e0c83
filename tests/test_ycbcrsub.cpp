// RGB with YCbCr and YCrCb 4:2:2 and 4:2:0: every public function against a
// model built from the scalar forms and the rules for where each formula
// holds (block parts counted from each row's start, remaining pairs and
// cells, odd last pixels, width 1), at every width from 1 to 70 and a wide
// one, odd heights, at every instruction-set level (the lane forms meet
// their scalar forms there, on random and on extreme content); the worked
// values.
// Guards, statuses, check order: test_generic.
#include <gtest/gtest.h>

#include <functional>
#include <random>
#include <string>
#include <vector>

#include "lum_table.h"
#include "lumcc.h"
#include "test_support.h"
#include "video/pccycbcr02.h"

using namespace lum;
using namespace lum::ycbcrsub;

namespace {

using Img = lumtest::GuardedImage;  // compared whole, guards included

// ---------------------------------------------------------------------------
// Models of one row (4:2:2) or row pair (4:2:0).
using GetPix = std::function<void(int, int[3])>;

void model422Fwd(Order o, const GetPix& get, uint8_t* d, int w) {
  const bool cbFirst = o == Order::CbCr;
  int x = 0;
  for (; x + 1 < w; x += 2) {
    int a[3], b[3];
    get(x, a), get(x + 1, b);
    const int SR = a[0] + b[0], SG = a[1] + b[1], SB = a[2] + b[2];
    const bool block = x < (w & ~7);
    d[2 * x] = block ? fwd422BlockY(a[0], a[1], a[2]) : fwd422TailY0(a[0], a[1], a[2]);
    d[2 * x + 2] = block ? fwd422BlockY(b[0], b[1], b[2]) : fwd422TailY1(b[0], b[1], b[2]);
    d[2 * x + 1] = cbFirst ? pairCb(SR, SG, SB) : pairCr(SR, SG, SB);
    d[2 * x + 3] = cbFirst ? pairCr(SR, SG, SB) : pairCb(SR, SG, SB);
  }
  if (x < w) {
    int a[3];
    get(x, a);
    d[2 * x] = ycbcr::formAY(a[0], a[1], a[2]);
    d[2 * x + 1] = cbFirst ? ycbcr::formACb(a[0], a[1], a[2]) : ycbcr::formACr(a[0], a[1], a[2]);
  }
}

// C2 to RGB: put(x, rgb).
void model422Inv(Order o, const uint8_t* s, int w, const std::function<void(int, const uint8_t*)>& put) {
  for (int x = 0; x < w; ++x) {
    uint8_t rgb[3];
    if (w == 1) {
      unrealPixel(s[0], s[1], rgb);
    } else {
      const int p = 2 * (x & ~1);
      int first = s[p + 1], second = s[p + 3];
      if (!(x & 1) && x + 1 == w) first = s[2 * x + 1], second = s[2 * x - 1];
      const int cb = o == Order::CbCr ? first : second, cr = o == Order::CbCr ? second : first;
      if (x < (w & ~3)) ycbcr::formE(s[2 * x], cb, cr, rgb);
      else ycbcr::formD(s[2 * x], cb, cr, rgb);
    }
    put(x, rgb);
  }
}

// ---------------------------------------------------------------------------
// One case: the function (called through the table, images sized by it) and
// its model over a whole image.
using Imgs = std::vector<Img>;
struct Case {
  std::string name;
  std::function<void(Imgs&, Imgs&, LumSize)> model;
  bool odd420;
};
GetPix fromC3(Img& s, int y) {
  return [&s, y](int x, int v[3]) { for (int k = 0; k < 3; ++k) v[k] = s.row(y)[3 * x + k]; };
}
GetPix fromP3(Imgs& s, int y) {
  return [&s, y](int x, int v[3]) { for (int k = 0; k < 3; ++k) v[k] = s[k].row(y)[x]; };
}
Case fwd(const char* n, Order o, bool planes) {
  return {n, [o, planes](Imgs& s, Imgs& d, LumSize r) {
            for (int y = 0; y < r.height; ++y) model422Fwd(o, planes ? fromP3(s, y) : fromC3(s[0], y), d[0].row(y), r.width);
          }, false};
}
Case inv(const char* n, Order o, bool planes) {
  return {n, [o, planes](Imgs& s, Imgs& d, LumSize r) {
            for (int y = 0; y < r.height; ++y)
              model422Inv(o, s[0].row(y), r.width, [&](int x, const uint8_t* rgb) {
                for (int k = 0; k < 3; ++k) (planes ? d[k].row(y)[x] : d[0].row(y)[3 * x + k]) = rgb[k];
              });
          }, false};
}

std::vector<Case> cases() {
  std::vector<Case> v = {
      fwd("lumiRGBToYCbCr422_8u_C3C2R", Order::CbCr, false), fwd("lumiRGBToYCrCb422_8u_C3C2R", Order::CrCb, false),
      fwd("lumiRGBToYCbCr422_8u_P3C2R", Order::CbCr, true),  fwd("lumiRGBToYCrCb422_8u_P3C2R", Order::CrCb, true),
      inv("lumiYCbCr422ToRGB_8u_C2C3R", Order::CbCr, false), inv("lumiYCrCb422ToRGB_8u_C2C3R", Order::CrCb, false),
      inv("lumiYCbCr422ToRGB_8u_C2P3R", Order::CbCr, true),  inv("lumiYCrCb422ToRGB_8u_C2P3R", Order::CrCb, true),
  };
  v.push_back({"lumiYCbCr422ToRGB_8u_P3C3R",
               [](Imgs& s, Imgs& d, LumSize r) {
                 for (int y = 0; y < r.height; ++y)
                   for (int x = 0; x < r.width; ++x) {
                     const int Y = s[0].row(y)[x], cb = s[1].row(y)[x >> 1], cr = s[2].row(y)[x >> 1];
                     if (x < (r.width & ~7)) ycbcr::formF(Y, cb, cr, d[0].row(y) + 3 * x);
                     else ycbcr::formG(Y, cb, cr, d[0].row(y) + 3 * x);
                   }
               }, false});
  v.push_back({"lumiRGBToYCbCr420_8u_C3P3R",
               [](Imgs& s, Imgs& d, LumSize r) {
                 const int cells = r.width >> 1;
                 for (int j = 0; j < r.height >> 1; ++j)
                   for (int c = 0; c < cells; ++c) {
                     int S[3] = {0, 0, 0};
                     const bool block = c < (cells & ~3);
                     for (int i = 0; i < 4; ++i) {
                       const int y = 2 * j + i / 2, x = 2 * c + i % 2;
                       const uint8_t* q = s[0].row(y) + 3 * x;
                       d[0].row(y)[x] = static_cast<uint8_t>(block ? fwd420BlockY(q[0], q[1], q[2]) : ycbcr::formAY(q[0], q[1], q[2]));
                       for (int k = 0; k < 3; ++k) S[k] += q[k];
                     }
                     d[1].row(j)[c] = static_cast<uint8_t>(block ? fwd420BlockCb(S[0], S[1], S[2]) : cellCb(S[0], S[1], S[2]));
                     d[2].row(j)[c] = static_cast<uint8_t>(block ? fwd420BlockCr(S[0], S[1], S[2]) : cellCr(S[0], S[1], S[2]));
                   }
               }, true});
  v.push_back({"lumiYCbCr420ToRGB_8u_P3C3R",
               [](Imgs& s, Imgs& d, LumSize r) {
                 const int cells = r.width >> 1;
                 for (int y = 0; y < (r.height & ~1); ++y)
                   for (int x = 0; x < 2 * cells; ++x) {
                     const int Y = s[0].row(y)[x], cb = s[1].row(y / 2)[x / 2], cr = s[2].row(y / 2)[x / 2];
                     if (x / 2 < (cells & ~3)) inv420Block(Y, cb, cr, d[0].row(y) + 3 * x);
                     else ycbcr::formD(Y, cb, cr, d[0].row(y) + 3 * x);
                   }
               }, true});
  return v;
}

class Model : public ::testing::TestWithParam<int> {};

// Random and extreme (0 and 255 only) content; a whole image compared, so a
// write outside the region shows.
TEST_P(Model, EveryWidthAndHeightAsTheFormulasSay) {
  const Case c = cases()[GetParam()];
  const lumtable::Entry& e = *lumtable::find(c.name.c_str());
  std::mt19937 rng(77 + GetParam());
  std::vector<int> widths = lumtest::widthsUpTo(70);
  widths.push_back(1001);
  for (lum::Isa level : lumtest::isaLevels())
    for (int mode : {0, 1})
      for (int w : widths)
        for (int h : {1, 2, 3}) {
          const lumtest::IsaCap cap(level);
          Imgs s, d;
          std::vector<lumtest::Plane> sp, dp;
          for (int p = 0; p < e.srcPlanes(); ++p) {
            s.emplace_back(e.srcRowBytes(p, w), e.srcRows(p, h), 5, p);
            mode ? s.back().fillExtremes(rng) : s.back().fillRandom(rng);
          }
          for (int p = 0; p < e.dstPlanes(); ++p) d.emplace_back(e.dstRowBytes(p, w), e.dstRows(p, h), 5, 3 + p);
          for (Img& i : s) sp.push_back({i.data(), i.step()});
          for (Img& i : d) dp.push_back({i.data(), i.step()});
          Imgs want = d;
          c.model(s, want, {w, h});
          EXPECT_EQ(lumtest::callTable(c.name, sp, dp, {w, h}), c.odd420 && ((w | h) & 1) ? LumWarnOddSize : LumOk)
              << c.name << " " << w << "x" << h;
          for (size_t p = 0; p < d.size(); ++p)
            ASSERT_EQ(d[p].snapshot(), want[p].snapshot()) << c.name << " " << w << "x" << h << " plane " << p << " mode " << mode
                                             << " at " << lumtest::isaName(level);
        }
}
INSTANTIATE_TEST_SUITE_P(YCbCrSub, Model, ::testing::Range(0, 11),
                         [](const ::testing::TestParamInfo<int>& i) { return cases()[i.param].name; });

// ---------------------------------------------------------------------------
// Worked values.
TEST(YCbCrSub, FlatGreyRowShowsTheBlockAndTheTwoTailLumas) {
  std::vector<uint8_t> src(30, 128), dst(20, 0);
  ASSERT_EQ(lumiRGBToYCbCr422_8u_C3C2R(src.data(), 30, dst.data(), 20, {10, 1}), LumOk);
  for (int x = 0; x < 8; ++x) EXPECT_EQ(dst[2 * x], 125) << x;  // block: no rounding
  EXPECT_EQ(dst[16], 126);  // pixel 8: rounded
  EXPECT_EQ(dst[18], 125);  // pixel 9: not rounded
  for (int i = 1; i < 20; i += 2) EXPECT_EQ(dst[i], 128) << i;
}
TEST(YCbCrSub, OddLastPixelWritesYAndTheFirstChromaByte) {
  const uint8_t red[9] = {0, 0, 0, 0, 0, 0, 255, 0, 0};
  for (int order = 0; order < 2; ++order) {
    std::vector<uint8_t> dst(8, 0xEE);
    auto f = order ? lumiRGBToYCrCb422_8u_C3C2R : lumiRGBToYCbCr422_8u_C3C2R;
    ASSERT_EQ(f(red, 9, dst.data(), 8, {3, 1}), LumOk);
    EXPECT_EQ(dst[4], 82);
    EXPECT_EQ(dst[5], order ? 240 : 90);  // Cr of red first in YCrCb, Cb in YCbCr
    EXPECT_EQ(dst[6], 0xEE);
    EXPECT_EQ(dst[7], 0xEE);
  }
}
TEST(YCbCrSub, WidthOneUsesItsOneChromaByteForBoth) {
  const uint8_t src[2] = {100, 200};
  uint8_t a[3], b[3];
  ASSERT_EQ(lumiYCbCr422ToRGB_8u_C2C3R(src, 2, a, 3, {1, 1}), LumOk);
  ASSERT_EQ(lumiYCrCb422ToRGB_8u_C2C3R(src, 2, b, 3, {1, 1}), LumOk);
  // (76284 * 100 + 104595 * 200 - 14608761) >> 16 = 212, and so on.
  EXPECT_EQ(a[0], 212);
  EXPECT_EQ(a[1], 11);
  EXPECT_EQ(a[2], 242);
  EXPECT_EQ(0, memcmp(a, b, 3));
}
}  // namespace
