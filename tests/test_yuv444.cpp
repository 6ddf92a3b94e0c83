// RGB and YUV 4:4:4: worked values, SSE2 block loops against their scalar
// forms across every block boundary, guard bytes, alpha, statuses.
#include <gtest/gtest.h>

#include <array>
#include <functional>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "lumcc.h"
#include "test_support.h"
#include "video/pccyuv01.h"

using namespace lum::yuv444;
using lumtest::GuardedImage;

namespace {

enum class Layout { C3, AC4, P3 };
using Pix = std::array<int, 3>;
using PixFn = std::function<Pix(int, int, int)>;

Pix F1(int r, int g, int b) { return {f1Y(r, g, b), f1U(r, g, b), f1V(r, g, b)}; }
Pix F2(int r, int g, int b) { return {f2Y(r, g, b), f2U(r, g, b), f2V(r, g, b)}; }
Pix F3(int r, int g, int b) {
  uint8_t o[3];
  f3(r, g, b, o);
  return {o[0], o[1], o[2]};
}
Pix F4(int r, int g, int b) { return {f4Y(r, g, b), f4U(r, g, b), f4V(r, g, b)}; }
Pix F5(int r, int g, int b) {
  uint8_t y, u, v;
  f5(r, g, b, &y, &u, &v);
  return {y, u, v};
}
Pix G1(int y, int u, int v) {
  uint8_t o[3];
  g1(y, u, v, o);
  return {o[0], o[1], o[2]};
}
Pix G2(int y, int u, int v) { return {g2R(y, u, v), g2G(y, u, v), g2B(y, u, v)}; }
Pix G3(int y, int u, int v) { return {g3R(y, u, v), g3G(y, u, v), g3B(y, u, v)}; }
Pix G4(int y, int u, int v) {
  uint8_t o[3];
  g4(y, u, v, o);
  return {o[0], o[1], o[2]};
}

// One public function as the tests see it: its layouts, its block size, the
// formulas of its block loop and tail, and how to call it.
struct Images {
  // Pixel-order images use img[0]; plane forms use img[0..2].
  std::vector<GuardedImage*> src, dst;
};
struct Fn {
  std::string name;
  Layout in, out;
  int block;
  PixFn blockFn, tailFn;
  std::function<LumStatus(Images&, LumSize)> call;
};

const Lum8u* cp(GuardedImage* g) { return g->data(); }
Lum8u* mp(GuardedImage* g) { return g->data(); }

std::vector<Fn> allFunctions() {
  auto c2c = [](LumStatus (*f)(const Lum8u*, int, Lum8u*, int, LumSize)) {
    return [f](Images& im, LumSize r) {
      return f(cp(im.src[0]), im.src[0]->step(), mp(im.dst[0]), im.dst[0]->step(), r);
    };
  };
  auto p2p = [](LumStatus (*f)(const Lum8u* const*, int, Lum8u* const*, int, LumSize)) {
    return [f](Images& im, LumSize r) {
      const Lum8u* s[3] = {cp(im.src[0]), cp(im.src[1]), cp(im.src[2])};
      Lum8u* d[3] = {mp(im.dst[0]), mp(im.dst[1]), mp(im.dst[2])};
      return f(s, im.src[0]->step(), d, im.dst[0]->step(), r);
    };
  };
  return {
      {"RGBToYUV_C3R", Layout::C3, Layout::C3, 16, F1, F3, c2c(lumiRGBToYUV_8u_C3R)},
      {"RGBToYUV_AC4R", Layout::AC4, Layout::AC4, 8, F2, F3, c2c(lumiRGBToYUV_8u_AC4R)},
      {"RGBToYUV_P3R", Layout::P3, Layout::P3, 16, F1, F4, p2p(lumiRGBToYUV_8u_P3R)},
      {"RGBToYUV_C3P3R", Layout::C3, Layout::P3, 8, F1, F5,
       [](Images& im, LumSize r) {
         Lum8u* d[3] = {mp(im.dst[0]), mp(im.dst[1]), mp(im.dst[2])};
         return lumiRGBToYUV_8u_C3P3R(cp(im.src[0]), im.src[0]->step(), d, im.dst[0]->step(), r);
       }},
      {"YUVToRGB_C3R", Layout::C3, Layout::C3, 8, G1, G1, c2c(lumiYUVToRGB_8u_C3R)},
      {"YUVToRGB_AC4R", Layout::AC4, Layout::AC4, 8, G1, G1, c2c(lumiYUVToRGB_8u_AC4R)},
      {"YUVToRGB_P3R", Layout::P3, Layout::P3, 8, G2, G3, p2p(lumiYUVToRGB_8u_P3R)},
      {"YUVToRGB_P3C3R", Layout::P3, Layout::C3, 16, G4, G4,
       [](Images& im, LumSize r) {
         const Lum8u* s[3] = {cp(im.src[0]), cp(im.src[1]), cp(im.src[2])};
         return lumiYUVToRGB_8u_P3C3R(s, im.src[0]->step(), mp(im.dst[0]), im.dst[0]->step(), r);
       }},
  };
}

void PrintTo(const Fn& f, std::ostream* os) { *os << f.name; }

int channelsOf(Layout l) { return l == Layout::AC4 ? 4 : 3; }

// Images for one call, with guard bytes, padded and unaligned rows.
struct CallImages {
  std::vector<std::unique_ptr<GuardedImage>> own;
  Images im;
  Layout in, out;
  CallImages(const Fn& f, int w, int h, int misalign, int pad) : in(f.in), out(f.out) {
    auto make = [&](Layout l, std::vector<GuardedImage*>& v, int mis) {
      const int planes = l == Layout::P3 ? 3 : 1;
      const int bpp = l == Layout::P3 ? 1 : channelsOf(l);
      for (int p = 0; p < planes; ++p) {
        own.push_back(std::make_unique<GuardedImage>(w * bpp, h, pad, (mis + 5 * p) & 15));
        v.push_back(own.back().get());
      }
    };
    make(f.in, im.src, misalign);
    make(f.out, im.dst, misalign + 7);
  }
  // Sample c of pixel (x, y) of a side.
  static uint8_t& at(std::vector<GuardedImage*>& v, Layout l, int x, int y, int c) {
    if (l == Layout::P3) return v[c]->row(y)[x];
    return v[0]->row(y)[channelsOf(l) * x + c];
  }
};

// The bytes a call must give, from the scalar forms: block formula over the
// first (width & ~(block - 1)) pixels of each row, tail formula after.
void expectMatchesScalarForms(const Fn& f, CallImages& s, int w, int h) {
  const int blockEnd = w & ~(f.block - 1);
  for (int y = 0; y < h; ++y)
    for (int x = 0; x < w; ++x) {
      const int a = CallImages::at(s.im.src, s.in, x, y, 0);
      const int b = CallImages::at(s.im.src, s.in, x, y, 1);
      const int c = CallImages::at(s.im.src, s.in, x, y, 2);
      const Pix want = x < blockEnd ? f.blockFn(a, b, c) : f.tailFn(a, b, c);
      for (int k = 0; k < 3; ++k)
        ASSERT_EQ(CallImages::at(s.im.dst, s.out, x, y, k), want[k])
            << f.name << " w=" << w << " " << lumtest::where(x, y, k) << " in=" << a << ","
            << b << "," << c;
    }
}

class Yuv444 : public ::testing::TestWithParam<Fn> {};

// Random rows of every width from 1 to 70 (and some wide ones), at several
// alignments and every instruction-set level: block loops against the scalar
// forms, guard bytes intact, alpha bytes of AC4 destinations untouched.
TEST_P(Yuv444, KernelsMatchScalarFormsAtEveryWidth) {
  const Fn& f = GetParam();
  std::mt19937 rng(1234);
  std::vector<int> widths = lumtest::widthsUpTo(70);
  for (int w : {95, 96, 97, 127, 128, 129, 255, 1001}) widths.push_back(w);
  for (lum::Isa level : lumtest::isaLevels())
  for (int w : widths) {
    SCOPED_TRACE(lumtest::isaName(level));
    const lumtest::IsaCap cap(level);
    const int h = 1 + (w % 3);
    CallImages s(f, w, h, w % 16, (w * 7) % 19);
    for (auto* g : s.im.src) g->fillRandom(rng);
    for (auto* g : s.im.dst) g->fillRandom(rng);
    const std::vector<uint8_t> before = s.im.dst[0]->regionBytes();
    ASSERT_EQ(f.call(s.im, LumSize{w, h}), LumOk);
    expectMatchesScalarForms(f, s, w, h);
    for (auto* g : s.im.dst) ASSERT_TRUE(g->guardsIntact()) << f.name << " w=" << w;
    if (f.out == Layout::AC4) {
      const std::vector<uint8_t> after = s.im.dst[0]->regionBytes();
      for (size_t i = 3; i < after.size(); i += 4)
        ASSERT_EQ(after[i], before[i]) << f.name << " alpha changed, w=" << w;
    }
  }
}

// A sweep over the colour cube in one long row: every colour meets the block
// formula at one width and the tail formula at another.
TEST_P(Yuv444, ColourCubeSweepInBlockAndTail) {
  const Fn& f = GetParam();
  std::vector<Pix> colours;
  for (int a = 0; a < 256; a += 5)
    for (int b = 0; b < 256; b += 3)
      for (int c = 0; c < 256; c += 7) colours.push_back({a, b, c});
  colours.push_back({255, 255, 255});
  const int n = static_cast<int>(colours.size());
  // The whole row as one block-multiple row, then each colour alone (tail).
  const int wBlock = n & ~(f.block - 1);
  CallImages s(f, wBlock, 1, 3, 0);
  for (int x = 0; x < wBlock; ++x)
    for (int k = 0; k < 3; ++k) CallImages::at(s.im.src, s.in, x, 0, k) = static_cast<uint8_t>(colours[x][k]);
  ASSERT_EQ(f.call(s.im, LumSize{wBlock, 1}), LumOk);
  expectMatchesScalarForms(f, s, wBlock, 1);
  // The tail formula: a row of block - 1 pixels never enters the block loop.
  const int wTail = f.block - 1;
  CallImages t(f, wTail, 1, 9, 3);
  for (int base = 0; base + wTail <= n; base += wTail * 37) {
    for (int x = 0; x < wTail; ++x)
      for (int k = 0; k < 3; ++k)
        CallImages::at(t.im.src, t.in, x, 0, k) = static_cast<uint8_t>(colours[base + x][k]);
    ASSERT_EQ(f.call(t.im, LumSize{wTail, 1}), LumOk);
    expectMatchesScalarForms(f, t, wTail, 1);
  }
}

// Nothing is written when a check fails; the order of the checks.
TEST_P(Yuv444, StatusesAndNothingWrittenOnError) {
  const Fn& f = GetParam();
  CallImages s(f, 20, 3, 1, 5);
  std::mt19937 rng(7);
  for (auto* g : s.im.src) g->fillRandom(rng);
  std::vector<std::vector<uint8_t>> snaps;
  for (auto* g : s.im.dst) snaps.push_back(g->snapshot());
  for (LumSize bad : {LumSize{0, 3}, LumSize{20, 0}, LumSize{-1, 3}, LumSize{20, -5}})
    EXPECT_EQ(f.call(s.im, bad), LumErrSize) << f.name;
  for (size_t i = 0; i < snaps.size(); ++i) EXPECT_TRUE(s.im.dst[i]->equals(snaps[i])) << f.name;
}

INSTANTIATE_TEST_SUITE_P(AllEight, Yuv444, ::testing::ValuesIn(allFunctions()),
                         [](const ::testing::TestParamInfo<Fn>& i) { return i.param.name; });

// Worked values: one pixel placed in the block loop (position 0 of a row of
// one block) or in the tail (a row of one pixel).
struct Worked {
  const char* fn;
  bool inBlock;
  Pix in, out;
};
void PrintTo(const Worked& w, std::ostream* os) {
  *os << w.fn << (w.inBlock ? " block " : " tail ") << w.in[0] << "," << w.in[1] << "," << w.in[2];
}
class Yuv444Worked : public ::testing::TestWithParam<Worked> {};

TEST_P(Yuv444Worked, StatedValues) {
  const Worked& w = GetParam();
  for (const Fn& f : allFunctions()) {
    if (f.name != w.fn) continue;
    const int width = w.inBlock ? f.block : 1;
    CallImages s(f, width, 1, 0, 0);
    for (int x = 0; x < width; ++x)
      for (int k = 0; k < 3; ++k) CallImages::at(s.im.src, s.in, x, 0, k) = static_cast<uint8_t>(w.in[k]);
    ASSERT_EQ(f.call(s.im, LumSize{width, 1}), LumOk);
    for (int k = 0; k < 3; ++k) EXPECT_EQ(CallImages::at(s.im.dst, s.out, 0, 0, k), w.out[k]) << w.fn << " c=" << k;
    return;
  }
  FAIL() << "no function " << w.fn;
}

std::vector<Worked> workedValues() {
  std::vector<Worked> v = {
      {"RGBToYUV_C3R", false, {255, 255, 255}, {254, 128, 128}},
      {"RGBToYUV_C3R", true, {255, 255, 255}, {254, 127, 127}},
      {"RGBToYUV_C3P3R", false, {255, 255, 255}, {255, 128, 128}},
      {"RGBToYUV_C3P3R", true, {255, 255, 255}, {254, 127, 127}},
      {"RGBToYUV_P3R", true, {128, 128, 128}, {127, 127, 128}},
      {"YUVToRGB_C3R", true, {128, 0, 0}, {0, 252, 0}},
      {"YUVToRGB_C3R", false, {128, 0, 0}, {0, 252, 0}},
      {"YUVToRGB_P3R", true, {128, 0, 0}, {0, 253, 0}},
      {"YUVToRGB_P3R", false, {128, 0, 0}, {0, 252, 0}},
  };
  // Black and the primaries through every forward path.
  for (const char* fn : {"RGBToYUV_C3R", "RGBToYUV_AC4R", "RGBToYUV_P3R", "RGBToYUV_C3P3R"})
    for (bool blk : {true, false}) {
      v.push_back({fn, blk, {0, 0, 0}, {0, 128, 128}});
      v.push_back({fn, blk, {255, 0, 0}, {76, 90, 255}});
      v.push_back({fn, blk, {0, 255, 0}, {149, 54, 0}});
      v.push_back({fn, blk, {0, 0, 255}, {29, 239, 102}});
    }
  return v;
}
INSTANTIATE_TEST_SUITE_P(Stated, Yuv444Worked, ::testing::ValuesIn(workedValues()));

// U = V = 128 gives R = G = B = Y in every inverse path, for every Y.
TEST(Yuv444Inverse, NeutralChromaGivesGrey) {
  for (PixFn fn : {PixFn(G1), PixFn(G2), PixFn(G3), PixFn(G4)})
    for (int y = 0; y < 256; ++y) {
      const Pix p = fn(y, 128, 128);
      ASSERT_EQ(p[0], y);
      ASSERT_EQ(p[1], y);
      ASSERT_EQ(p[2], y);
    }
}

// Block and tail formulas of one kernel differ by at most the stated levels,
// over the whole colour cube.
TEST(Yuv444Formulas, BlockAndTailDifferByAtMostTheStatedLevels) {
  struct Pair {
    PixFn block, tail;
    Pix most;
  };
  const Pair pairs[] = {{F1, F3, {1, 1, 1}}, {F2, F3, {1, 2, 2}}, {F1, F4, {1, 1, 1}},
                        {F1, F5, {1, 1, 1}}, {G2, G3, {0, 2, 0}}};
  for (const Pair& p : pairs) {
    Pix seen{0, 0, 0};
    for (int a = 0; a < 256; a += 1)
      for (int b = 0; b < 256; b += 3)
        for (int c = 0; c < 256; c += 2) {
          const Pix x = p.block(a, b, c), y = p.tail(a, b, c);
          for (int k = 0; k < 3; ++k) seen[k] = std::max(seen[k], std::abs(x[k] - y[k]));
        }
    EXPECT_EQ(seen, p.most);
  }
}

// Pattern P2: a null plane with a bad size is a size error, with a good size
// a null-pointer error; the arrays themselves are tested first.
TEST(Yuv444Checks, PlanePointerOrder) {
  uint8_t buf[64] = {};
  const Lum8u* s[3] = {buf, nullptr, buf};
  Lum8u* d[3] = {buf + 16, buf + 32, buf + 48};
  EXPECT_EQ(lumiRGBToYUV_8u_P3R(s, 4, d, 4, LumSize{0, 1}), LumErrSize);
  EXPECT_EQ(lumiRGBToYUV_8u_P3R(s, 4, d, 4, LumSize{1, 1}), LumErrNullPtr);
  EXPECT_EQ(lumiRGBToYUV_8u_P3R(nullptr, 4, d, 4, LumSize{0, 1}), LumErrNullPtr);
  EXPECT_EQ(lumiYUVToRGB_8u_P3R(s, 4, d, 4, LumSize{1, 0}), LumErrSize);
  EXPECT_EQ(lumiYUVToRGB_8u_P3C3R(s, 4, buf, 4, LumSize{1, 1}), LumErrNullPtr);
  EXPECT_EQ(lumiYUVToRGB_8u_P3C3R(s, 4, nullptr, 4, LumSize{0, 1}), LumErrNullPtr);
  Lum8u* dn[3] = {buf, buf, nullptr};
  EXPECT_EQ(lumiRGBToYUV_8u_C3P3R(buf, 4, dn, 4, LumSize{-3, 1}), LumErrSize);
  EXPECT_EQ(lumiRGBToYUV_8u_C3P3R(buf, 4, dn, 4, LumSize{1, 1}), LumErrNullPtr);
  EXPECT_EQ(lumiRGBToYUV_8u_C3R(nullptr, 3, buf, 3, LumSize{0, 0}), LumErrNullPtr);
  EXPECT_EQ(lumiYUVToRGB_8u_AC4R(buf, 4, nullptr, 4, LumSize{1, 1}), LumErrNullPtr);
}

// The pixel-order kernels give the bytes of the scalar forms, row by row, at
// every width and every instruction-set level (SSE2 network, SSSE3 shuffles).
TEST(Yuv444Paths, EveryLevelGivesTheScalarForms) {
  std::mt19937 rng(99);
  for (int w = 1; w <= 200; ++w) {
    std::vector<uint8_t> src(3 * w), p0(w), p1(w), p2(w);
    for (auto& b : src) b = static_cast<uint8_t>(rng() >> 24);
    for (int i = 0; i < w; ++i) {
      p0[i] = src[3 * i];
      p1[i] = src[3 * i + 1];
      p2[i] = src[3 * i + 2];
    }
    for (lum::Isa level : lumtest::isaLevels()) {
      const lumtest::IsaCap cap(level);
      const char* ssse3 = lumtest::isaName(level);
      const LumSize row{w, 1};
      std::vector<uint8_t> c3(3 * w + 1, 0xCD), y(w + 1, 0xCD), u(w + 1, 0xCD), v(w + 1, 0xCD);
      auto check = [&](const std::vector<uint8_t>& got, int stride, PixFn blockFn, PixFn tailFn,
                       int block, const char* what, bool planar) {
        const int end = w & ~(block - 1);
        for (int x = 0; x < w; ++x) {
          const Pix want = x < end ? blockFn(src[3 * x], src[3 * x + 1], src[3 * x + 2])
                                   : tailFn(src[3 * x], src[3 * x + 1], src[3 * x + 2]);
          for (int k = 0; k < 3; ++k) {
            const int g = planar ? (k == 0 ? y : k == 1 ? u : v)[x] : got[stride * x + k];
            ASSERT_EQ(g, want[k]) << what << " ssse3=" << ssse3 << " w=" << w << " x=" << x;
          }
        }
      };
      ASSERT_EQ(lumiRGBToYUV_8u_C3R(src.data(), 3 * w, c3.data(), 3 * w, row), LumOk);
      check(c3, 3, F1, F3, 16, "RGBToYUV_C3R", false);
      ASSERT_EQ(c3[3 * w], 0xCD);
      ASSERT_EQ(lumiYUVToRGB_8u_C3R(src.data(), 3 * w, c3.data(), 3 * w, row), LumOk);
      check(c3, 3, G1, G1, 8, "YUVToRGB_C3R", false);
      Lum8u* const planes[3] = {y.data(), u.data(), v.data()};
      ASSERT_EQ(lumiRGBToYUV_8u_C3P3R(src.data(), 3 * w, planes, w, row), LumOk);
      check(c3, 3, F1, F5, 8, "RGBToYUV_C3P3R", true);
      ASSERT_EQ(y[w], 0xCD);
      ASSERT_EQ(u[w], 0xCD);
      ASSERT_EQ(v[w], 0xCD);
      const Lum8u* const srcPlanes[3] = {p0.data(), p1.data(), p2.data()};
      ASSERT_EQ(lumiYUVToRGB_8u_P3C3R(srcPlanes, w, c3.data(), 3 * w, row), LumOk);
      for (int x = 0; x < w; ++x) {
        const Pix want = G4(p0[x], p1[x], p2[x]);
        for (int k = 0; k < 3; ++k) ASSERT_EQ(c3[3 * x + k], want[k]) << "P3C3R w=" << w;
      }
      ASSERT_EQ(c3[3 * w], 0xCD);
    }
  }
}

// The AC4 kernels' two stores (16-bit + 8-bit a pixel, or AVX-512 byte
// masks) give the same bytes, and neither touches alpha nor the bytes after
// the row.
TEST(Yuv444Paths, Ac4StoresAgreeAndKeepAlpha) {
  std::mt19937 rng(5);
  for (int w = 1; w <= 100; ++w) {
    std::vector<uint8_t> src(4 * w);
    for (auto& b : src) b = static_cast<uint8_t>(rng() >> 24);
    for (lum::Isa level : lumtest::isaLevels()) {
      const lumtest::IsaCap cap(level);
      const char* masked = lumtest::isaName(level);
      for (int fwd = 0; fwd < 2; ++fwd) {
        std::vector<uint8_t> dst(4 * w + 16);
        for (size_t i = 0; i < dst.size(); ++i) dst[i] = static_cast<uint8_t>(i * 37 + 11);
        const std::vector<uint8_t> before = dst;
        const LumSize row{w, 1};
        if (fwd) ASSERT_EQ(lumiRGBToYUV_8u_AC4R(src.data(), 4 * w, dst.data(), 4 * w, row), LumOk);
        else ASSERT_EQ(lumiYUVToRGB_8u_AC4R(src.data(), 4 * w, dst.data(), 4 * w, row), LumOk);
        const int end = w & ~7;
        for (int x = 0; x < w; ++x) {
          const int a = src[4 * x], b = src[4 * x + 1], c = src[4 * x + 2];
          const Pix want = fwd ? (x < end ? F2(a, b, c) : F3(a, b, c)) : G1(a, b, c);
          for (int k = 0; k < 3; ++k)
            ASSERT_EQ(dst[4 * x + k], want[k]) << "fwd=" << fwd << " masked=" << masked << " w=" << w << " x=" << x;
          ASSERT_EQ(dst[4 * x + 3], before[4 * x + 3]) << "alpha, w=" << w;
        }
        for (size_t i = 4 * w; i < dst.size(); ++i) ASSERT_EQ(dst[i], before[i]) << "past the row, w=" << w;
      }
    }
  }
}

// A step of 0 is accepted: every row lies on the first.
TEST(Yuv444Steps, ZeroStepWritesTheFirstRowOnly) {
  uint8_t src[3 * 20], dst[3 * 20 + 16];
  for (int i = 0; i < 60; ++i) src[i] = static_cast<uint8_t>(i * 11);
  memset(dst, 0xAB, sizeof dst);
  ASSERT_EQ(lumiRGBToYUV_8u_C3R(src, 0, dst, 0, LumSize{20, 5}), LumOk);
  uint8_t ref[60];
  ASSERT_EQ(lumiRGBToYUV_8u_C3R(src, 60, ref, 60, LumSize{20, 1}), LumOk);
  EXPECT_EQ(0, memcmp(dst, ref, 60));
  EXPECT_EQ(dst[60], 0xAB);
}

}  // namespace
