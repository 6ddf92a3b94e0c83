// Subsampled layout repacking: every public repack against a model of the
// layouts and chroma rules written from their description, over every width
// to 70 (across every row form's blocks) and odd and even sizes, several
// steps, aligned and unaligned frames (non-temporal and aligned paths
// included), guard bytes around every plane; the worked cases.  Checks,
// their order and "nothing written on an error": the generic suite.
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "lum_table.h"
#include "lumcc.h"
#include "repack/lum_layouts.h"
#include "test_support.h"

using lumtest::GuardedImage;
using namespace lum::layout;

namespace {

// ---------------------------------------------------------------------------
// The model.
struct Fmt {
  Ratio r;
  Form f;
  Order o;
};

// One image in a layout: its planes (1 for C2, 2 for P2, 3 for P3), each a
// guarded image sized for the whole region (chroma rounded up, so that a
// column or row that the repack must leave alone is inside the region).
struct Frame {
  Fmt fmt;
  int W, H;
  std::vector<std::unique_ptr<GuardedImage>> p;
  Frame(Fmt f, int W_, int H_, bool aligned, int seed) : fmt(f), W(W_), H(H_) {
    const int cw = (W + cellWidth(f.r) - 1) / cellWidth(f.r);
    const int ch = (H + cellHeight(f.r) - 1) / cellHeight(f.r);
    std::vector<std::pair<int, int>> dims;
    if (f.f == Form::C2) dims = {{2 * W, H}};
    if (f.f == Form::P2) dims = {{W, H}, {2 * cw, ch}};
    if (f.f == Form::P3) dims = {{W, H}, {cw, ch}, {cw, ch}};
    for (size_t i = 0; i < dims.size(); ++i) {
      const int rb = dims[i].first;
      const int pad = aligned ? 16 + ((16 - rb % 16) % 16) : 3 + 4 * static_cast<int>(i) + seed % 5;
      p.emplace_back(new GuardedImage(rb, dims[i].second, pad, aligned ? 0 : 1 + (seed + static_cast<int>(i)) % 15));
    }
  }
  const Lum8u* cs[3];
  Lum8u* ms[3];
  int steps[3];
  void arrays() {
    for (size_t i = 0; i < p.size(); ++i) {
      cs[i] = p[i]->data();
      ms[i] = p[i]->data();
      steps[i] = p[i]->step();
    }
  }
};

// Samples of an image at its own ratio: Y[y][x], C[c][r][k] (c 0 Cb, 1 Cr)
// for the region Wm x Hm.
struct Samples {
  int W, H, cw, ch;
  std::vector<int> y, c[2];
  int& Y(int yy, int x) { return y[yy * W + x]; }
  int& C(int cc, int r, int k) { return c[cc][r * cw + k]; }
};

// Where sample (r, k) of a destination ratio comes from in the source ratio.
void sourceOf(Ratio from, Ratio to, int r, int k, int& sr, int& sk) {
  sr = r;
  sk = k;
  if (from == to) return;
  if (from == Ratio::k422 && to == Ratio::k420) sr = 2 * r;
  if (from == Ratio::k420 && to == Ratio::k422) sr = r / 2;
  if (from == Ratio::k422 && to == Ratio::k411) sk = 2 * k;
  if (from == Ratio::k411 && to == Ratio::k422) sk = k / 2;
  if (from == Ratio::k420 && to == Ratio::k411) {
    sr = r / 2;
    sk = 2 * k + (r & 1);
  }
  if (from == Ratio::k411 && to == Ratio::k420) {
    sr = 2 * r + (k & 1);
    sk = k / 2;
  }
}

// Byte position of a sample in a frame: plane index and offset in that
// plane's region bytes (rows of rowBytes).
struct Pos {
  int plane, offset;
};
Pos lumaPos(const Frame& f, int y, int x) {
  if (f.fmt.f == Form::C2) return {0, y * c2RowBytes(f.W) + c2LumaByte(f.fmt.o, x)};
  return {0, y * f.p[0]->rowBytes() + x};
}
Pos chromaPos(const Frame& f, int c, int r, int k) {  // c: 0 Cb, 1 Cr
  if (f.fmt.f == Form::C2) return {0, r * c2RowBytes(f.W) + c2ChromaByte(f.fmt.o, k, c == 1)};
  if (f.fmt.f == Form::P2) return {1, r * f.p[1]->rowBytes() + p2ChromaByte(k, c == 1)};
  const int plane = c == 0 ? p3PlaneCb(f.fmt.o) : p3PlaneCr(f.fmt.o);
  return {plane, r * f.p[plane]->rowBytes() + k};
}

Samples decode(const Frame& f, int Wm, int Hm) {
  Samples s;
  s.W = Wm;
  s.H = Hm;
  s.cw = chromaWidth(f.fmt.r, Wm);
  s.ch = chromaHeight(f.fmt.r, Hm);
  std::vector<std::vector<uint8_t>> reg;
  for (const auto& p : f.p) reg.push_back(p->regionBytes());
  s.y.resize(static_cast<size_t>(Wm) * Hm);
  for (int y = 0; y < Hm; ++y)
    for (int x = 0; x < Wm; ++x) {
      const Pos q = lumaPos(f, y, x);
      s.Y(y, x) = reg[q.plane][q.offset];
    }
  for (int c = 0; c < 2; ++c) {
    s.c[c].resize(static_cast<size_t>(s.cw) * s.ch);
    for (int r = 0; r < s.ch; ++r)
      for (int k = 0; k < s.cw; ++k) {
        const Pos q = chromaPos(f, c, r, k);
        s.C(c, r, k) = reg[q.plane][q.offset];
      }
  }
  return s;
}

// The expected region bytes of every destination plane: the bytes before the
// call with the converted samples written over them.
std::vector<std::vector<uint8_t>> expected(const Frame& src, const Frame& dst, int Wm, int Hm,
                                           bool swapChroma) {
  std::vector<std::vector<uint8_t>> out;
  for (const auto& p : dst.p) out.push_back(p->regionBytes());
  if (Hm <= 0) return out;
  Samples s = decode(src, Wm, Hm);
  for (int y = 0; y < Hm; ++y)
    for (int x = 0; x < Wm; ++x) {
      const Pos q = lumaPos(dst, y, x);
      out[q.plane][q.offset] = static_cast<uint8_t>(s.Y(y, x));
    }
  const int cw = chromaWidth(dst.fmt.r, Wm), ch = chromaHeight(dst.fmt.r, Hm);
  for (int c = 0; c < 2; ++c)
    for (int r = 0; r < ch; ++r)
      for (int k = 0; k < cw; ++k) {
        int sr, sk;
        sourceOf(src.fmt.r, dst.fmt.r, r, k, sr, sk);
        const Pos q = chromaPos(dst, swapChroma ? 1 - c : c, r, k);
        out[q.plane][q.offset] = static_cast<uint8_t>(s.C(c, sr, sk));
      }
  return out;
}

// ---------------------------------------------------------------------------
// The 35 functions: the layouts the model reads and writes; the smallest
// region and the call from the function table.
struct Fn {
  std::string name;
  Fmt in, out;
  int minW, minH;  // minH 0: height not tested
  const lumtable::Entry* e;
  bool alignedUnswapped;  // aligned frames take the unswapped kernel
  LumStatus f(Frame& s, Frame& d, LumSize r) const {
    lumtable::Args a;
    for (size_t i = 0; i < s.p.size(); ++i) a.src[i] = s.cs[i], a.srcSteps[i] = s.steps[i];
    for (size_t i = 0; i < d.p.size(); ++i) a.dst[i] = d.ms[i], a.dstSteps[i] = d.steps[i];
    a.roi = r;
    return e->call(a);
  }
};
Fn fnOf(const char* name, Fmt in, Fmt out) {
  const lumtable::Entry* e = lumtable::find(name);
  return Fn{name, in, out, e->minWidth, e->minHeight, e,
            std::string(name) == "lumiYCrCb422ToYCbCr422_8u_C2P3R"};
}

constexpr Ratio R422 = Ratio::k422, R420 = Ratio::k420, R411 = Ratio::k411;
constexpr Form C2 = Form::C2, P2 = Form::P2, P3 = Form::P3;
constexpr Order YCbCr = Order::YCbCr, YCrCb = Order::YCrCb, CbYCr = Order::CbYCr;

#define FN(name, in, out) fnOf(#name, in, out)
std::vector<Fn> allFns() {
  return {
      FN(lumiYCbCr422ToYCbCr420_8u_P3R, (Fmt{R422, P3, YCbCr}), (Fmt{R420, P3, YCbCr})),
      FN(lumiYCbCr420ToYCbCr422_8u_P3R, (Fmt{R420, P3, YCbCr}), (Fmt{R422, P3, YCbCr})),
      FN(lumiYCrCb420ToYCbCr422_8u_P3R, (Fmt{R420, P3, YCrCb}), (Fmt{R422, P3, YCbCr})),
      FN(lumiYCrCb422ToYCbCr422_8u_C2P3R, (Fmt{R422, C2, YCrCb}), (Fmt{R422, P3, YCbCr})),
      FN(lumiCbYCr422ToYCbCr422_8u_C2P3R, (Fmt{R422, C2, CbYCr}), (Fmt{R422, P3, YCbCr})),
      FN(lumiYCbCr422ToYCbCr420_8u_C2P3R, (Fmt{R422, C2, YCbCr}), (Fmt{R420, P3, YCbCr})),
      FN(lumiYCrCb422ToYCbCr420_8u_C2P3R, (Fmt{R422, C2, YCrCb}), (Fmt{R420, P3, YCbCr})),
      FN(lumiCbYCr422ToYCbCr420_8u_C2P3R, (Fmt{R422, C2, CbYCr}), (Fmt{R420, P3, YCbCr})),
      FN(lumiYCbCr422ToYCbCr411_8u_C2P3R, (Fmt{R422, C2, YCbCr}), (Fmt{R411, P3, YCbCr})),
      FN(lumiYCrCb422ToYCbCr411_8u_C2P3R, (Fmt{R422, C2, YCrCb}), (Fmt{R411, P3, YCbCr})),
      FN(lumiCbYCr422ToYCbCr411_8u_C2P3R, (Fmt{R422, C2, CbYCr}), (Fmt{R411, P3, YCbCr})),
      FN(lumiYCbCr422ToYCbCr420_8u_P3P2R, (Fmt{R422, P3, YCbCr}), (Fmt{R420, P2, YCbCr})),
      FN(lumiYCbCr420ToYCbCr422_8u_P2P3R, (Fmt{R420, P2, YCbCr}), (Fmt{R422, P3, YCbCr})),
      FN(lumiYCbCr420_8u_P3P2R, (Fmt{R420, P3, YCbCr}), (Fmt{R420, P2, YCbCr})),
      FN(lumiYCbCr420_8u_P2P3R, (Fmt{R420, P2, YCbCr}), (Fmt{R420, P3, YCbCr})),
      FN(lumiYCbCr422ToYCbCr411_8u_P3P2R, (Fmt{R422, P3, YCbCr}), (Fmt{R411, P2, YCbCr})),
      FN(lumiYCbCr420ToYCbCr411_8u_P3P2R, (Fmt{R420, P3, YCbCr}), (Fmt{R411, P2, YCbCr})),
      FN(lumiYCrCb420ToYCbCr411_8u_P3P2R, (Fmt{R420, P3, YCrCb}), (Fmt{R411, P2, YCbCr})),
      FN(lumiYCbCr420ToYCbCr411_8u_P2P3R, (Fmt{R420, P2, YCbCr}), (Fmt{R411, P3, YCbCr})),
      FN(lumiYCbCr411ToYCbCr422_8u_P3C2R, (Fmt{R411, P3, YCbCr}), (Fmt{R422, C2, YCbCr})),
      FN(lumiYCbCr411ToYCrCb422_8u_P3C2R, (Fmt{R411, P3, YCbCr}), (Fmt{R422, C2, YCrCb})),
      FN(lumiYCbCr411ToYCbCr422_8u_P3R, (Fmt{R411, P3, YCbCr}), (Fmt{R422, P3, YCbCr})),
      FN(lumiYCbCr411ToYCrCb422_8u_P3R, (Fmt{R411, P3, YCbCr}), (Fmt{R422, P3, YCrCb})),
      FN(lumiYCbCr411ToYCbCr420_8u_P3R, (Fmt{R411, P3, YCbCr}), (Fmt{R420, P3, YCbCr})),
      FN(lumiYCbCr411ToYCbCr420_8u_P3P2R, (Fmt{R411, P3, YCbCr}), (Fmt{R420, P2, YCbCr})),
      FN(lumiYCbCr411_8u_P3P2R, (Fmt{R411, P3, YCbCr}), (Fmt{R411, P2, YCbCr})),
      FN(lumiYCbCr411ToYCbCr422_8u_P2C2R, (Fmt{R411, P2, YCbCr}), (Fmt{R422, C2, YCbCr})),
      FN(lumiYCbCr411ToYCbCr422_8u_P2P3R, (Fmt{R411, P2, YCbCr}), (Fmt{R422, P3, YCbCr})),
      FN(lumiYCbCr411ToYCbCr420_8u_P2P3R, (Fmt{R411, P2, YCbCr}), (Fmt{R420, P3, YCbCr})),
      FN(lumiYCbCr411ToYCrCb420_8u_P2P3R, (Fmt{R411, P2, YCbCr}), (Fmt{R420, P3, YCrCb})),
      FN(lumiYCbCr411_8u_P2P3R, (Fmt{R411, P2, YCbCr}), (Fmt{R411, P3, YCbCr})),
      FN(lumiYCbCr422ToYCbCr411_8u_C2P2R, (Fmt{R422, C2, YCbCr}), (Fmt{R411, P2, YCbCr})),
      FN(lumiYCbCr422ToYCrCb422_8u_C2R, (Fmt{R422, C2, YCbCr}), (Fmt{R422, C2, YCrCb})),
      FN(lumiYCbCr422ToYCbCr411_8u_P3R, (Fmt{R422, P3, YCbCr}), (Fmt{R411, P3, YCbCr})),
      FN(lumiYCbCr422ToYCrCb422_8u_P3C2R, (Fmt{R422, P3, YCbCr}), (Fmt{R422, C2, YCrCb})),
  };
}
#undef FN

int maskW(const Fn& f, int W) { return W & ~(f.minW - 1); }
int maskH(const Fn& f, int H) { return f.minH ? (H & ~1) : H; }

// Runs f at W x H and checks every destination byte and guard.
void checkOne(const Fn& f, int W, int H, bool aligned, int seed) {
  std::mt19937 rng(static_cast<unsigned>(seed * 7919 + W * 31 + H));
  Frame s(f.in, W, H, aligned, seed), d(f.out, W, H, aligned, seed + 1);
  for (auto& p : s.p) p->fillRandom(rng);
  for (auto& p : d.p) p->fillRandom(rng);
  s.arrays();
  d.arrays();
  const int Wm = maskW(f, W), Hm = maskH(f, H);
  bool unswap = false;
  if (f.alignedUnswapped) {
    auto a16 = [](uintptr_t v) { return (v & 15u) == 0; };
    unswap = a16(reinterpret_cast<uintptr_t>(s.cs[0])) && a16(static_cast<uintptr_t>(s.steps[0])) &&
             a16(reinterpret_cast<uintptr_t>(d.ms[0])) && a16(static_cast<uintptr_t>(d.steps[0])) &&
             (Wm & 14) == 0;
  }
  const auto want = expected(s, d, Wm, Hm, unswap);
  ASSERT_EQ(f.f(s, d, LumSize{W, H}), LumOk) << f.name << " " << W << "x" << H;
  for (size_t i = 0; i < d.p.size(); ++i) {
    ASSERT_TRUE(d.p[i]->guardsIntact()) << f.name << " " << W << "x" << H << " plane " << i;
    const auto got = d.p[i]->regionBytes();
    ASSERT_EQ(got.size(), want[i].size());
    for (size_t j = 0; j < got.size(); ++j)
      ASSERT_EQ(got[j], want[i][j]) << f.name << " " << W << "x" << H << (aligned ? " aligned" : "")
                                    << " plane " << i << " byte " << j << " (row "
                                    << j / d.p[i]->rowBytes() << ")";
  }
}

class RepackFn : public ::testing::TestWithParam<int> {
 protected:
  Fn f() const { return allFns()[static_cast<size_t>(GetParam())]; }
};

// At every instruction-set level: the faster rounds (SSSE3, AVX2), the SSE2
// block loop and the tail all meet the model, across their round lengths.
TEST_P(RepackFn, MatchesTheLayoutModelForEveryWidthAndOddSizes) {
  const Fn fn = f();
  for (lum::Isa level : lumtest::isaLevels()) {
    SCOPED_TRACE(lumtest::isaName(level));
    lumtest::IsaCap cap(level);
    int seed = 1;
    for (int W = fn.minW; W <= 70; ++W)
      for (int H : {fn.minH ? fn.minH : 1, 3, 4})
        checkOne(fn, W, H, false, seed++);
    for (LumSize sz : {LumSize{129, 5}, LumSize{1000, 3}, LumSize{1027, 2}, LumSize{255, 7}})
      checkOne(fn, sz.width, sz.height, false, seed++);
  }
}

TEST_P(RepackFn, AlignedAndUnalignedFramesGiveTheirStatedBytes) {
  // Aligned rows and steps, small and large: the large frames take the
  // non-temporal loops and copies where a kernel has them.
  const Fn fn = f();
  for (lum::Isa level : lumtest::isaLevels()) {
    SCOPED_TRACE(lumtest::isaName(level));
    lumtest::IsaCap cap(level);
    for (LumSize sz : {LumSize{64, 4}, LumSize{96, 6}, LumSize{72, 2}, LumSize{1024, 540},
                       LumSize{1016, 540}}) {
      checkOne(fn, sz.width, sz.height, true, 3);
      checkOne(fn, sz.width, sz.height, false, 4);
    }
  }
}

TEST_P(RepackFn, HeightZeroOrNegative) {
  const Fn fn = f();
  for (int H : {0, -1, -100}) {
    Frame s(fn.in, 8, 2, false, 1), d(fn.out, 8, 2, false, 2);
    std::mt19937 rng(5);
    for (auto& p : d.p) p->fillRandom(rng);
    s.arrays();
    d.arrays();
    std::vector<std::vector<uint8_t>> before;
    for (auto& p : d.p) before.push_back(p->snapshot());
    const LumStatus st = fn.f(s, d, LumSize{8, H});
    EXPECT_EQ(st, fn.minH ? LumErrSize : LumOk) << fn.name << " H=" << H;
    for (size_t i = 0; i < d.p.size(); ++i) EXPECT_TRUE(d.p[i]->equals(before[i])) << fn.name;
  }
}

std::string fnName(const ::testing::TestParamInfo<int>& info) {
  return allFns()[static_cast<size_t>(info.param)].name;
}
INSTANTIATE_TEST_SUITE_P(All, RepackFn, ::testing::Range(0, 35), fnName);

// ---------------------------------------------------------------------------
// Worked cases.

// A 3 by 3 image: the 2 by 2 part converts, the last row and column stay.
TEST(Repack, ThreeByThree422To420) {
  Lum8u y[9], cb[6], cr[6], oy[9], ocb[4], ocr[4];
  for (int i = 0; i < 9; ++i) y[i] = static_cast<Lum8u>(10 + i);
  for (int i = 0; i < 6; ++i) cb[i] = static_cast<Lum8u>(100 + i), cr[i] = static_cast<Lum8u>(200 + i);
  memset(oy, 0xEE, 9);
  memset(ocb, 0xEE, 4);
  memset(ocr, 0xEE, 4);
  const Lum8u* s[3] = {y, cb, cr};
  Lum8u* d[3] = {oy, ocb, ocr};
  const int ss[3] = {3, 2, 2}, ds[3] = {3, 2, 2};
  ASSERT_EQ(lumiYCbCr422ToYCbCr420_8u_P3R(s, ss, d, ds, LumSize{3, 3}), LumOk);
  const Lum8u wy[9] = {10, 11, 0xEE, 13, 14, 0xEE, 0xEE, 0xEE, 0xEE};
  EXPECT_EQ(0, memcmp(oy, wy, 9));
  EXPECT_EQ(ocb[0], 100);  // row 0 of the source chroma
  EXPECT_EQ(ocr[0], 200);
  EXPECT_EQ(ocb[1], 0xEE);
  EXPECT_EQ(ocb[2], 0xEE);  // no second chroma row
}

// 4:2:0 -> 4:1:1 -> 4:2:0 gives the chroma back bit for bit.
TEST(Repack, FourTwoZeroToFourOneOneRoundTrips) {
  const int W = 36, H = 6;
  std::mt19937 rng(9);
  std::vector<Lum8u> y(W * H), cb(W / 2 * H / 2), cr(W / 2 * H / 2), cc(W / 2 * H);
  std::vector<Lum8u> y2(W * H), cb2(cb.size()), cr2(cr.size()), y1(W * H), c1(W / 4 * H), c2(W / 4 * H);
  for (auto* v : {&y, &cb, &cr})
    for (auto& b : *v) b = static_cast<Lum8u>(rng());
  const Lum8u* s[3] = {y.data(), cb.data(), cr.data()};
  const int ss[3] = {W, W / 2, W / 2};
  // P3 -> P2 411 -> P3 420, and P3 420 -> P3 411 (by the P2 form) -> P3 420.
  ASSERT_EQ(lumiYCbCr420ToYCbCr411_8u_P3P2R(s, ss, y1.data(), W, cc.data(), W / 2, LumSize{W, H}), LumOk);
  Lum8u* d[3] = {y2.data(), cb2.data(), cr2.data()};
  ASSERT_EQ(lumiYCbCr411ToYCbCr420_8u_P2P3R(y1.data(), W, cc.data(), W / 2, d, ss, LumSize{W, H}), LumOk);
  EXPECT_EQ(y2, y);
  EXPECT_EQ(cb2, cb);
  EXPECT_EQ(cr2, cr);
  Lum8u* d411[3] = {y1.data(), c1.data(), c2.data()};
  const int s411[3] = {W, W / 4, W / 4};
  std::vector<Lum8u> nv(W * H / 2);
  ASSERT_EQ(lumiYCbCr420_8u_P3P2R(s, ss, y2.data(), W, nv.data(), W, LumSize{W, H}), LumOk);
  ASSERT_EQ(lumiYCbCr420ToYCbCr411_8u_P2P3R(y2.data(), W, nv.data(), W, d411, s411, LumSize{W, H}), LumOk);
  std::fill(cb2.begin(), cb2.end(), 0);
  std::fill(cr2.begin(), cr2.end(), 0);
  const Lum8u* s411c[3] = {y1.data(), c1.data(), c2.data()};
  ASSERT_EQ(lumiYCbCr411ToYCbCr420_8u_P3R(s411c, s411, d, ss, LumSize{W, H}), LumOk);
  EXPECT_EQ(cb2, cb);
  EXPECT_EQ(cr2, cr);
}

// The aligned path of lumiYCrCb422ToYCbCr422_8u_C2P3R does not swap.
TEST(Repack, AlignedYCrCb422ToYCbCr422KeepsByteOneInPlaneOne) {
  alignas(16) Lum8u src[64 * 2];
  alignas(16) Lum8u y[32 * 2];
  Lum8u p1[16 * 2], p2[16 * 2];
  for (int i = 0; i < 128; ++i) src[i] = static_cast<Lum8u>(i);
  Lum8u* d[3] = {y, p1, p2};
  const int ds[3] = {32, 16, 16};
  ASSERT_EQ(lumiYCrCb422ToYCbCr422_8u_C2P3R(src, 64, d, ds, LumSize{32, 2}), LumOk);
  EXPECT_EQ(p1[0], 1);
  EXPECT_EQ(p2[0], 3);
  EXPECT_EQ(p1[16 + 5], 64 + 21);
  // One byte off the boundary: the general path swaps.
  alignas(16) Lum8u src2[1 + 64 * 2];
  memcpy(src2 + 1, src, 128);
  ASSERT_EQ(lumiYCrCb422ToYCbCr422_8u_C2P3R(src2 + 1, 64, d, ds, LumSize{32, 2}), LumOk);
  EXPECT_EQ(p1[0], 3);
  EXPECT_EQ(p2[0], 1);
  // Width 24 (not a multiple of 16) swaps too, aligned or not.
  ASSERT_EQ(lumiYCrCb422ToYCbCr422_8u_C2P3R(src, 64, d, ds, LumSize{24, 2}), LumOk);
  EXPECT_EQ(p1[0], 3);
}

// The two 4:2:0 P3 -> 4:1:1 P2 forms agree when planes 1 and 2 trade places.
TEST(Repack, YCbCrAndYCrCb420To411AgreeWithPlanesExchanged) {
  const int W = 40, H = 4;
  std::mt19937 rng(12);
  std::vector<Lum8u> y(W * H), a(W / 2 * H / 2), b(a.size());
  for (auto* v : {&y, &a, &b})
    for (auto& x : *v) x = static_cast<Lum8u>(rng());
  std::vector<Lum8u> oy1(W * H), oc1(W / 2 * H), oy2(W * H), oc2(W / 2 * H);
  const int ss[3] = {W, W / 2, W / 2};
  const Lum8u* s1[3] = {y.data(), a.data(), b.data()};
  const Lum8u* s2[3] = {y.data(), b.data(), a.data()};
  ASSERT_EQ(lumiYCbCr420ToYCbCr411_8u_P3P2R(s1, ss, oy1.data(), W, oc1.data(), W / 2, LumSize{W, H}), LumOk);
  ASSERT_EQ(lumiYCrCb420ToYCbCr411_8u_P3P2R(s2, ss, oy2.data(), W, oc2.data(), W / 2, LumSize{W, H}), LumOk);
  EXPECT_EQ(oc1, oc2);
  EXPECT_EQ(oy1, oy2);
  EXPECT_EQ(oc1[0], a[0]);
  EXPECT_EQ(oc1[1], b[0]);
  EXPECT_EQ(oc1[W / 2], a[1]);  // odd destination row: the odd columns
}

// Width 7 in a 4:1:1 member is width 4: the last 3 pixels stay unwritten.
TEST(Repack, WidthSevenIsFourIn411) {
  Lum8u src[14];
  for (int i = 0; i < 14; ++i) src[i] = static_cast<Lum8u>(i + 1);
  Lum8u y[7], cb[2], cr[2];
  memset(y, 0, 7);
  memset(cb, 0, 2);
  memset(cr, 0, 2);
  Lum8u* d[3] = {y, cb, cr};
  const int ds[3] = {7, 2, 2};
  ASSERT_EQ(lumiYCbCr422ToYCbCr411_8u_C2P3R(src, 14, d, ds, LumSize{7, 1}), LumOk);
  const Lum8u wy[7] = {1, 3, 5, 7, 0, 0, 0};
  EXPECT_EQ(0, memcmp(y, wy, 7));
  EXPECT_EQ(cb[0], 2);
  EXPECT_EQ(cr[0], 4);
  EXPECT_EQ(cb[1], 0);
}

// The C2 swap exchanges bytes 1 and 3 and keeps the rows of an odd height.
TEST(Repack, SwapOfC2) {
  const Lum8u src[8] = {1, 2, 3, 4, 5, 6, 7, 8};
  Lum8u dst[8] = {0};
  ASSERT_EQ(lumiYCbCr422ToYCrCb422_8u_C2R(src, 8, dst, 8, LumSize{4, 1}), LumOk);
  const Lum8u want[8] = {1, 4, 3, 2, 5, 8, 7, 6};
  EXPECT_EQ(0, memcmp(dst, want, 8));
}

}  // namespace

namespace {
// The shared layout description, by its worked values.
TEST(RepackLayouts, DescriptionValues) {
  EXPECT_EQ(chromaWidth(Ratio::k422, 1920), 960);
  EXPECT_EQ(chromaHeight(Ratio::k422, 1080), 1080);
  EXPECT_EQ(chromaWidth(Ratio::k420, 1920), 960);
  EXPECT_EQ(chromaHeight(Ratio::k420, 1080), 540);
  EXPECT_EQ(chromaWidth(Ratio::k411, 1920), 480);
  EXPECT_EQ(chromaHeight(Ratio::k411, 1080), 1080);
  EXPECT_EQ(p2ChromaRowBytes(Ratio::k420, 64), 64);
  EXPECT_EQ(p2ChromaRowBytes(Ratio::k411, 64), 32);
  // "Y0 Cb Y1 Cr", "Y0 Cr Y1 Cb", "Cb Y0 Cr Y1" for pair 1 (bytes 4..7).
  EXPECT_EQ(c2LumaByte(Order::YCbCr, 2), 4);
  EXPECT_EQ(c2LumaByte(Order::YCbCr, 3), 6);
  EXPECT_EQ(c2ChromaByte(Order::YCbCr, 1, false), 5);
  EXPECT_EQ(c2ChromaByte(Order::YCrCb, 1, false), 7);
  EXPECT_EQ(c2ChromaByte(Order::YCrCb, 1, true), 5);
  EXPECT_EQ(c2LumaByte(Order::CbYCr, 2), 5);
  EXPECT_EQ(c2ChromaByte(Order::CbYCr, 1, false), 4);
  EXPECT_EQ(c2ChromaByte(Order::CbYCr, 1, true), 6);
  EXPECT_EQ(p3PlaneCb(Order::YCrCb), 2);
  EXPECT_EQ(p3PlaneCr(Order::YCbCr), 2);
  EXPECT_EQ(chromaColumnOf(Ratio::k411, 7), 1);
  EXPECT_EQ(chromaRowOf(Ratio::k420, 3), 1);
  EXPECT_EQ(repackMinWidth(Ratio::k420, Ratio::k411), 4);
  EXPECT_TRUE(repackTestsHeight(Ratio::k422, Ratio::k420));
  EXPECT_FALSE(repackTestsHeight(Ratio::k422, Ratio::k411));
}
}  // namespace

namespace {
// Steps are not checked: a negative step walks the image upward, so a
// bottom-up frame converts to the rows of the top-down one in reverse order.
TEST(Repack, NegativeStepsWalkUpward) {
  const int W = 40, H = 6;
  std::mt19937 rng(21);
  std::vector<Lum8u> y(W * H), cc(W * H / 2);
  for (auto* v : {&y, &cc})
    for (auto& b : *v) b = static_cast<Lum8u>(rng());
  std::vector<Lum8u> oy(W * H), ocb(W / 2 * H / 2), ocr(ocb.size());
  Lum8u* d[3] = {oy.data(), ocb.data(), ocr.data()};
  const int ds[3] = {W, W / 2, W / 2};
  ASSERT_EQ(lumiYCbCr420_8u_P2P3R(y.data(), W, cc.data(), W, d, ds, LumSize{W, H}), LumOk);
  std::vector<Lum8u> ry(W * H), rcb(ocb.size()), rcr(ocr.size());
  Lum8u* rd[3] = {ry.data() + W * (H - 1), rcb.data() + W / 2 * (H / 2 - 1),
                  rcr.data() + W / 2 * (H / 2 - 1)};
  const int rs[3] = {-W, -W / 2, -W / 2};
  ASSERT_EQ(lumiYCbCr420_8u_P2P3R(y.data(), W, cc.data(), W, rd, rs, LumSize{W, H}), LumOk);
  for (int r = 0; r < H; ++r)
    EXPECT_EQ(0, memcmp(&ry[(H - 1 - r) * W], &oy[r * W], W)) << r;
  for (int r = 0; r < H / 2; ++r) {
    EXPECT_EQ(0, memcmp(&rcb[(H / 2 - 1 - r) * W / 2], &ocb[r * W / 2], W / 2)) << r;
    EXPECT_EQ(0, memcmp(&rcr[(H / 2 - 1 - r) * W / 2], &ocr[r * W / 2], W / 2)) << r;
  }
}
}  // namespace
