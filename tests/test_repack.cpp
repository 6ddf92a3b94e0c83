// Subsampled layout repacking and the NV12/YV12/YUY2/UYVY family: every
// public repack against a model of the layouts and chroma rules written from
// their description, over every width to 70 (across every row form's blocks
// and rounds) and odd and even sizes, at every instruction-set level, aligned
// and unaligned frames (non-temporal and aligned paths included), guard bytes
// around every plane; the worked cases.  Checks, their order and "nothing
// written on an error": the generic suite.
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
  std::vector<GuardedImage*> planes() const {
    std::vector<GuardedImage*> v;
    for (auto& q : p) v.push_back(q.get());
    return v;
  }
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

// The expected region bytes of every destination plane: the bytes before the
// call with the converted samples written over them.
std::vector<std::vector<uint8_t>> expected(const Frame& src, const Frame& dst, int Wm, int Hm,
                                           bool swapChroma) {
  std::vector<std::vector<uint8_t>> in, out;
  for (const auto& p : src.p) in.push_back(p->regionBytes());
  for (const auto& p : dst.p) out.push_back(p->regionBytes());
  auto put = [&](Pos to, Pos from) { out[to.plane][to.offset] = in[from.plane][from.offset]; };
  for (int y = 0; y < Hm; ++y)
    for (int x = 0; x < Wm; ++x) put(lumaPos(dst, y, x), lumaPos(src, y, x));
  const int cw = chromaWidth(dst.fmt.r, Wm), ch = chromaHeight(dst.fmt.r, Hm);
  for (int c = 0; c < 2; ++c)
    for (int r = 0; r < ch; ++r)
      for (int k = 0; k < cw; ++k) {
        int sr, sk;
        sourceOf(src.fmt.r, dst.fmt.r, r, k, sr, sk);
        put(chromaPos(dst, swapChroma ? 1 - c : c, r, k), chromaPos(src, c, sr, sk));
      }
  return out;
}

// ---------------------------------------------------------------------------
// The 47 functions: the layouts the model reads and writes; the smallest
// region and the call from the function table.
struct Fn {
  std::string name;
  Fmt in, out;
  int minW, minH;  // minH 0: height not tested
  const lumtable::Entry* e;
  bool alignedUnswapped;  // aligned frames take the unswapped kernel
  LumStatus f(Frame& s, Frame& d, LumSize r) const { return lumtest::callTable(name, s.planes(), d.planes(), r); }
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
      // NV12 (P2 4:2:0), YV12 (P3 4:2:0, planes Y Cr Cb), YUY2 and UYVY; the
      // NV12 -> YV12 form writes Cb to plane 1.  Odd sizes round down, but
      // the two C2 -> C2 forms keep an odd height.
      FN(lumiYCbCr420ToYCbCr422_8u_P2C2R, (Fmt{R420, P2, YCbCr}), (Fmt{R422, C2, YCbCr})),
      FN(lumiYCbCr420ToCbYCr422_8u_P2C2R, (Fmt{R420, P2, YCbCr}), (Fmt{R422, C2, CbYCr})),
      FN(lumiYCbCr420ToYCrCb420_8u_P2P3R, (Fmt{R420, P2, YCbCr}), (Fmt{R420, P3, YCbCr})),
      FN(lumiYCrCb420ToYCbCr420_8u_P3P2R, (Fmt{R420, P3, YCrCb}), (Fmt{R420, P2, YCbCr})),
      FN(lumiYCrCb420ToYCbCr422_8u_P3C2R, (Fmt{R420, P3, YCrCb}), (Fmt{R422, C2, YCbCr})),
      FN(lumiYCrCb420ToCbYCr422_8u_P3C2R, (Fmt{R420, P3, YCrCb}), (Fmt{R422, C2, CbYCr})),
      FN(lumiYCbCr422ToCbYCr422_8u_C2R, (Fmt{R422, C2, YCbCr}), (Fmt{R422, C2, CbYCr})),
      FN(lumiCbYCr422ToYCbCr422_8u_C2R, (Fmt{R422, C2, CbYCr}), (Fmt{R422, C2, YCbCr})),
      FN(lumiYCbCr422ToYCrCb420_8u_C2P3R, (Fmt{R422, C2, YCbCr}), (Fmt{R420, P3, YCrCb})),
      FN(lumiCbYCr422ToYCrCb420_8u_C2P3R, (Fmt{R422, C2, CbYCr}), (Fmt{R420, P3, YCrCb})),
      FN(lumiYCbCr422ToYCbCr420_8u_C2P2R, (Fmt{R422, C2, YCbCr}), (Fmt{R420, P2, YCbCr})),
      FN(lumiCbYCr422ToYCbCr420_8u_C2P2R, (Fmt{R422, C2, CbYCr}), (Fmt{R420, P2, YCbCr})),
  };
}
#undef FN

int maskW(const Fn& f, int W) { return W & ~(f.minW - 1); }
int maskH(const Fn& f, int H) { return f.minH ? (H & ~(f.minH - 1)) : H; }

// Runs f at W x H and checks every destination byte and guard.
void checkOne(const Fn& f, int W, int H, bool aligned, int seed) {
  std::mt19937 rng(static_cast<unsigned>(seed * 7919 + W * 31 + H));
  Frame s(f.in, W, H, aligned, seed), d(f.out, W, H, aligned, seed + 1);
  for (auto& p : s.p) p->fillRandom(rng);
  for (auto& p : d.p) p->fillRandom(rng);
  const int Wm = maskW(f, W), Hm = maskH(f, H);
  bool unswap = false;
  if (f.alignedUnswapped) {
    auto a16 = [](uintptr_t v) { return (v & 15u) == 0; };
    unswap = a16(reinterpret_cast<uintptr_t>(s.p[0]->data())) && a16(static_cast<uintptr_t>(s.p[0]->step())) &&
             a16(reinterpret_cast<uintptr_t>(d.p[0]->data())) && a16(static_cast<uintptr_t>(d.p[0]->step())) &&
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
INSTANTIATE_TEST_SUITE_P(All, RepackFn, ::testing::Range(0, 47), fnName);

}  // namespace

namespace {
// The shared layout description, by its worked values.
TEST(RepackLayouts, DescriptionValues) {
  // Chroma sizes of 1920 x 1080; P2 chroma rows of width 64; "Y0 Cb Y1 Cr",
  // "Y0 Cr Y1 Cb", "Cb Y0 Cr Y1" for pair 1 (bytes 4..7); plane indices;
  // the 4:1:1 column of pixel 7 and 4:2:0 row of row 3.
  const int got[] = {chromaWidth(Ratio::k422, 1920), chromaHeight(Ratio::k422, 1080),
                     chromaWidth(Ratio::k420, 1920), chromaHeight(Ratio::k420, 1080),
                     chromaWidth(Ratio::k411, 1920), chromaHeight(Ratio::k411, 1080),
                     p2ChromaRowBytes(Ratio::k420, 64), p2ChromaRowBytes(Ratio::k411, 64),
                     c2LumaByte(Order::YCbCr, 2), c2LumaByte(Order::YCbCr, 3),
                     c2ChromaByte(Order::YCbCr, 1, false), c2ChromaByte(Order::YCrCb, 1, false),
                     c2ChromaByte(Order::YCrCb, 1, true), c2LumaByte(Order::CbYCr, 2),
                     c2ChromaByte(Order::CbYCr, 1, false), c2ChromaByte(Order::CbYCr, 1, true),
                     p3PlaneCb(Order::YCrCb), p3PlaneCr(Order::YCbCr), chromaColumnOf(Ratio::k411, 7),
                     chromaRowOf(Ratio::k420, 3), repackMinWidth(Ratio::k420, Ratio::k411),
                     repackTestsHeight(Ratio::k422, Ratio::k420), repackTestsHeight(Ratio::k422, Ratio::k411)};
  const int want[] = {960, 1080, 960, 540, 480, 1080, 64, 32, 4, 6, 5, 7, 5, 5, 4, 6, 2, 2, 1, 1, 4, 1, 0};
  for (size_t i = 0; i < sizeof want / sizeof want[0]; ++i) EXPECT_EQ(got[i], want[i]) << "value " << i;
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
