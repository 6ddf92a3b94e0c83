// RGB with YCbCr and YCrCb 4:2:2 and 4:2:0: every public function against a
// model built from the scalar forms and the rules for where each formula
// holds (block parts counted from each row's start, remaining pairs and
// cells, odd last pixels, width 1), at every width from 1 to 70 and a wide
// one, odd heights, at every instruction-set level; each lane form against
// its scalar form over every input or a large sample; the worked values.
// Guards, statuses, check order: test_generic.
#include <gtest/gtest.h>

#include <functional>
#include <random>
#include <string>
#include <vector>

#include "lumcc.h"
#include "test_support.h"
#include "video/pccycbcr02.h"

using namespace lum;
using namespace lum::ycbcrsub;

namespace {

// An image with a lead before its first row and padding after each row;
// compared whole, so a write outside the region shows.
struct Img {
  int rowBytes, rows, step;
  std::vector<uint8_t> buf;
  Img(int rb, int h, std::mt19937& rng) : rowBytes(rb), rows(h), step(rb + 5), buf(16 + step * h + 16) {
    for (auto& b : buf) b = static_cast<uint8_t>(rng() >> 24);
  }
  uint8_t* row(int y) { return buf.data() + 16 + y * step; }
};

int g_mode = 0;  // 0 random, 1 extremes (0 and 255 only)
void fill(Img& im, std::mt19937& rng) {
  for (int y = 0; y < im.rows; ++y)
    for (int x = 0; x < im.rowBytes; ++x)
      im.row(y)[x] = g_mode ? ((rng() >> 7) & 1 ? 255 : 0) : static_cast<uint8_t>(rng() >> 24);
}

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
// One case: source images, destination images, the call, and the model.
struct Case {
  std::string name;
  std::function<std::vector<int>(int)> srcRowBytes, dstRowBytes;  // per plane
  std::function<std::vector<int>(int)> srcRows, dstRows;           // of height
  std::function<LumStatus(std::vector<Img>&, std::vector<Img>&, LumSize)> call;
  std::function<void(std::vector<Img>&, std::vector<Img>&, LumSize)> model;
  bool odd420;
};

std::vector<int> c3(int w) { return {3 * w}; }
std::vector<int> c2(int w) { return {4 * ((w + 1) / 2)}; }
std::vector<int> p3(int w) { return {w, w, w}; }
std::vector<int> p422(int w) { return {w, (w + 1) / 2, (w + 1) / 2}; }
std::vector<int> p420(int w) { return {w, (w + 1) / 2, (w + 1) / 2}; }
std::vector<int> one(int h) { return {h}; }
std::vector<int> three(int h) { return {h, h, h}; }
std::vector<int> half(int h) { return {h, (h + 1) / 2, (h + 1) / 2}; }

GetPix fromC3(Img& s, int y) {
  return [&s, y](int x, int v[3]) { for (int k = 0; k < 3; ++k) v[k] = s.row(y)[3 * x + k]; };
}
GetPix fromP3(std::vector<Img>& s, int y) {
  return [&s, y](int x, int v[3]) { for (int k = 0; k < 3; ++k) v[k] = s[k].row(y)[x]; };
}

Case fwdC3(const char* n, Order o, LumStatus (*f)(const Lum8u*, int, Lum8u*, int, LumSize)) {
  return {n, c3, c2, one, one,
          [f](std::vector<Img>& s, std::vector<Img>& d, LumSize r) { return f(s[0].row(0), s[0].step, d[0].row(0), d[0].step, r); },
          [o](std::vector<Img>& s, std::vector<Img>& d, LumSize r) {
            for (int y = 0; y < r.height; ++y) model422Fwd(o, fromC3(s[0], y), d[0].row(y), r.width);
          }, false};
}
Case fwdP3(const char* n, Order o, LumStatus (*f)(const Lum8u* const*, int, Lum8u*, int, LumSize)) {
  return {n, p3, c2, three, one,
          [f](std::vector<Img>& s, std::vector<Img>& d, LumSize r) {
            const Lum8u* p[3] = {s[0].row(0), s[1].row(0), s[2].row(0)};
            return f(p, s[0].step, d[0].row(0), d[0].step, r);
          },
          [o](std::vector<Img>& s, std::vector<Img>& d, LumSize r) {
            for (int y = 0; y < r.height; ++y) model422Fwd(o, fromP3(s, y), d[0].row(y), r.width);
          }, false};
}
Case invC3(const char* n, Order o, LumStatus (*f)(const Lum8u*, int, Lum8u*, int, LumSize)) {
  return {n, c2, c3, one, one,
          [f](std::vector<Img>& s, std::vector<Img>& d, LumSize r) { return f(s[0].row(0), s[0].step, d[0].row(0), d[0].step, r); },
          [o](std::vector<Img>& s, std::vector<Img>& d, LumSize r) {
            for (int y = 0; y < r.height; ++y)
              model422Inv(o, s[0].row(y), r.width, [&](int x, const uint8_t* rgb) { memcpy(d[0].row(y) + 3 * x, rgb, 3); });
          }, false};
}
Case invP3(const char* n, Order o, LumStatus (*f)(const Lum8u*, int, Lum8u* const*, int, LumSize)) {
  return {n, c2, p3, one, three,
          [f](std::vector<Img>& s, std::vector<Img>& d, LumSize r) {
            Lum8u* p[3] = {d[0].row(0), d[1].row(0), d[2].row(0)};
            // the three planes share the first plane's step
            return f(s[0].row(0), s[0].step, p, d[0].step, r);
          },
          [o](std::vector<Img>& s, std::vector<Img>& d, LumSize r) {
            for (int y = 0; y < r.height; ++y)
              model422Inv(o, s[0].row(y), r.width, [&](int x, const uint8_t* rgb) {
                for (int k = 0; k < 3; ++k) d[k].row(y)[x] = rgb[k];
              });
          }, false};
}

std::vector<Case> cases() {
  std::vector<Case> v = {
      fwdC3("RGBToYCbCr422_C3C2", Order::CbCr, lumiRGBToYCbCr422_8u_C3C2R),
      fwdC3("RGBToYCrCb422_C3C2", Order::CrCb, lumiRGBToYCrCb422_8u_C3C2R),
      fwdP3("RGBToYCbCr422_P3C2", Order::CbCr, lumiRGBToYCbCr422_8u_P3C2R),
      fwdP3("RGBToYCrCb422_P3C2", Order::CrCb, lumiRGBToYCrCb422_8u_P3C2R),
      invC3("YCbCr422ToRGB_C2C3", Order::CbCr, lumiYCbCr422ToRGB_8u_C2C3R),
      invC3("YCrCb422ToRGB_C2C3", Order::CrCb, lumiYCrCb422ToRGB_8u_C2C3R),
      invP3("YCbCr422ToRGB_C2P3", Order::CbCr, lumiYCbCr422ToRGB_8u_C2P3R),
      invP3("YCrCb422ToRGB_C2P3", Order::CrCb, lumiYCrCb422ToRGB_8u_C2P3R),
  };
  v.push_back({"YCbCr422ToRGB_P3C3", p422, c3, three, one,
               [](std::vector<Img>& s, std::vector<Img>& d, LumSize r) {
                 const Lum8u* p[3] = {s[0].row(0), s[1].row(0), s[2].row(0)};
                 const int st[3] = {s[0].step, s[1].step, s[2].step};
                 return lumiYCbCr422ToRGB_8u_P3C3R(p, st, d[0].row(0), d[0].step, r);
               },
               [](std::vector<Img>& s, std::vector<Img>& d, LumSize r) {
                 for (int y = 0; y < r.height; ++y)
                   for (int x = 0; x < r.width; ++x) {
                     const int Y = s[0].row(y)[x], cb = s[1].row(y)[x >> 1], cr = s[2].row(y)[x >> 1];
                     if (x < (r.width & ~7)) ycbcr::formF(Y, cb, cr, d[0].row(y) + 3 * x);
                     else ycbcr::formG(Y, cb, cr, d[0].row(y) + 3 * x);
                   }
               }, false});
  v.push_back({"RGBToYCbCr420_C3P3", c3, p420, one, half,
               [](std::vector<Img>& s, std::vector<Img>& d, LumSize r) {
                 Lum8u* p[3] = {d[0].row(0), d[1].row(0), d[2].row(0)};
                 const int st[3] = {d[0].step, d[1].step, d[2].step};
                 return lumiRGBToYCbCr420_8u_C3P3R(s[0].row(0), s[0].step, p, st, r);
               },
               [](std::vector<Img>& s, std::vector<Img>& d, LumSize r) {
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
  v.push_back({"YCbCr420ToRGB_P3C3", p420, c3, half, one,
               [](std::vector<Img>& s, std::vector<Img>& d, LumSize r) {
                 const Lum8u* p[3] = {s[0].row(0), s[1].row(0), s[2].row(0)};
                 const int st[3] = {s[0].step, s[1].step, s[2].step};
                 return lumiYCbCr420ToRGB_8u_P3C3R(p, st, d[0].row(0), d[0].step, r);
               },
               [](std::vector<Img>& s, std::vector<Img>& d, LumSize r) {
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

TEST_P(Model, EveryWidthAndHeightAsTheFormulasSay) {
  const Case c = cases()[GetParam()];
  std::mt19937 rng(77 + GetParam());
  std::vector<int> widths;
  for (int w = 1; w <= 70; ++w) widths.push_back(w);
  widths.push_back(1001);
  for (lum::Isa level : lumtest::isaLevels())
  for (int mode : {0, 1})
    for (int w : widths)
      for (int h : {1, 2, 3}) {
        const lumtest::IsaCap cap(level);
        g_mode = mode;
        const LumSize r{w, h};
        std::vector<Img> s, d;
        for (size_t p = 0; p < c.srcRowBytes(w).size(); ++p) {
          s.emplace_back(c.srcRowBytes(w)[p], c.srcRows(h)[p], rng);
          fill(s.back(), rng);
        }
        for (size_t p = 0; p < c.dstRowBytes(w).size(); ++p) d.emplace_back(c.dstRowBytes(w)[p], c.dstRows(h)[p], rng);
        std::vector<Img> want = d;
        c.model(s, want, r);
        const LumStatus st = c.call(s, d, r);
        EXPECT_EQ(st, c.odd420 && ((w | h) & 1) ? LumWarnOddSize : LumOk) << c.name << " " << w << "x" << h;
        for (size_t p = 0; p < d.size(); ++p)
          ASSERT_EQ(d[p].buf, want[p].buf) << c.name << " " << w << "x" << h << " plane " << p << " mode " << mode
                                           << " at " << lumtest::isaName(level);
      }
}
INSTANTIATE_TEST_SUITE_P(YCbCrSub, Model, ::testing::Range(0, 11),
                         [](const ::testing::TestParamInfo<int>& i) { return cases()[i.param].name; });

// ---------------------------------------------------------------------------
// Lane forms against scalar forms: every R, G, B for the luma forms and the
// 4:2:0 inverse, a large sample of sums for the chroma forms.
template <class Lanes, class Scalar>
void everyTriple(Lanes lanes, Scalar scalar, int range0 = 256, int range1 = 256, int range2 = 256) {
  for (int a = 0; a < range0; ++a)
    for (int b = 0; b < range1; ++b)
      for (int c0 = 0; c0 < range2; c0 += 8) {
        alignas(16) int16_t A[8], B[8], C[8], out[8];
        for (int i = 0; i < 8; ++i) A[i] = static_cast<int16_t>(a), B[i] = static_cast<int16_t>(b), C[i] = static_cast<int16_t>(std::min(c0 + i, range2 - 1));
        const I16x8 o = lanes(I16x8{_mm_load_si128(reinterpret_cast<const __m128i*>(A))},
                              I16x8{_mm_load_si128(reinterpret_cast<const __m128i*>(B))},
                              I16x8{_mm_load_si128(reinterpret_cast<const __m128i*>(C))});
        _mm_store_si128(reinterpret_cast<__m128i*>(out), _mm_packus_epi16(o.v, o.v));
        const uint8_t* ob = reinterpret_cast<const uint8_t*>(out);
        for (int i = 0; i < 8; ++i)
          if (ob[i] != scalar(A[i], B[i], C[i])) FAIL() << a << " " << b << " " << C[i];
      }
}

TEST(YCbCrSubLanes, LumaForms) {
  everyTriple([](I16x8 r, I16x8 g, I16x8 b) { return fwd422BlockYLanes(r, g, b); }, fwd422BlockY);
  everyTriple([](I16x8 r, I16x8 g, I16x8 b) { return fwd420BlockYLanes(r, g, b); }, fwd420BlockY);
}
TEST(YCbCrSubLanes, CellChromaForms) {  // sums of four pixels, 0 .. 1020, every 3rd
  const ycbcr::Forward420Set& k = ycbcr::kry420;
  for (int which = 0; which < 2; ++which) {
    const int c0 = which ? k.crR : k.cbR, c1 = which ? k.crG : k.cbG, c2 = which ? k.crB : k.cbB;
    for (int a = 0; a <= 1020; a += 3)
      for (int b = 0; b <= 1020; b += 3)
        for (int c = 0; c <= 1020; c += 8) {
          alignas(16) int16_t C[8];
          for (int i = 0; i < 8; ++i) C[i] = static_cast<int16_t>(std::min(c + i, 1020));
          const I16x8 o = fwd420BlockChromaLanes(broadcast16<I16x8>(a), broadcast16<I16x8>(b),
                                                 I16x8{_mm_load_si128(reinterpret_cast<const __m128i*>(C))}, c0, c1, c2);
          alignas(16) uint8_t ob[16];
          _mm_store_si128(reinterpret_cast<__m128i*>(ob), _mm_packus_epi16(o.v, o.v));
          for (int i = 0; i < 8; ++i)
            ASSERT_EQ(ob[i], fwd420BlockChroma(a, b, C[i], c0, c1, c2)) << a << " " << b << " " << C[i];
        }
  }
}
TEST(YCbCrSubLanes, Inverse420Form) {
  for (int k = 0; k < 3; ++k)
    everyTriple([k](I16x8 y, I16x8 cb, I16x8 cr) { I16x8 o[3]; inv420BlockLanes(y, cb, cr, o); return o[k]; },
                [k](int y, int cb, int cr) { uint8_t rgb[3]; inv420Block(y, cb, cr, rgb); return rgb[k]; });
}

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
TEST(YCbCrSub, WidthThreeTakesCrFromThePairBefore) {
  // Pixel 2 has its own Cb (byte 5) and the Cr of pixels 0 and 1 (byte 3).
  const uint8_t src[8] = {16, 128, 16, 240, 235, 128, 0, 0};
  uint8_t dst[9];
  ASSERT_EQ(lumiYCbCr422ToRGB_8u_C2C3R(src, 8, dst, 9, {3, 1}), LumOk);
  uint8_t want[3];
  ycbcr::formD(235, 128, 240, want);
  EXPECT_EQ(0, memcmp(dst + 6, want, 3));
  EXPECT_EQ(dst[6], 255);  // red-shifted by the pair's Cr
}
TEST(YCbCrSub, ThreeByThree420ConvertsOneCellAndWarns) {
  std::vector<uint8_t> src(27, 0), y(9, 7), cb(2, 7), cr(2, 7);
  Lum8u* d[3] = {y.data(), cb.data(), cr.data()};
  const int st[3] = {3, 2, 2};
  ASSERT_EQ(lumiRGBToYCbCr420_8u_C3P3R(src.data(), 9, d, st, {3, 3}), LumWarnOddSize);
  EXPECT_EQ(y, (std::vector<uint8_t>{16, 16, 7, 16, 16, 7, 7, 7, 7}));
  EXPECT_EQ(cb[0], 128);
  EXPECT_EQ(cb[1], 7);
  EXPECT_EQ(cr[0], 128);
}

}  // namespace
