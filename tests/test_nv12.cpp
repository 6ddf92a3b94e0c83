// NV12, YV12, YUY2 and UYVY repacks: every public function against a model
// of the four arrangements written from their description (odd and even
// sizes, aligned and unaligned frames, the non-temporal and aligned paths);
// each row form's SSE2 block against its scalar form across the block
// boundaries; the aligned twin against the plain driver; the round trips.
// Checks, guards of the generic kind and "nothing written on an error" are
// in test_generic.
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "lumcc.h"
#include "repack/pccnv12.h"
#include "test_support.h"

using lumtest::GuardedImage;

namespace {

// ---------------------------------------------------------------------------
// Row forms: block + remainder against the scalar form, guards around.
TEST(Nv12Rows, BlockEqualsScalarFormAcrossBlockBoundaries) {
  int count = 0;
  const lum::repack::RowForm* forms = lum::nv12::rowForms(&count);
  ASSERT_EQ(count, 14);
  std::mt19937 rng(12);
  std::vector<int> ns = lumtest::widthsUpTo(70);
  for (int n : {95, 96, 97, 127, 128, 129, 1000}) ns.push_back(n);
  for (int f = 0; f < count; ++f) {
    const auto& F = forms[f];
    for (int n : ns) {
      std::vector<std::unique_ptr<GuardedImage>> src, dv, ds;
      const Lum8u* s[4];
      Lum8u *a[4], *b[4];
      for (int i = 0; i < F.nSrc; ++i) {
        src.emplace_back(new GuardedImage(n * F.srcBytes[i], 1, 5, 3 + i));
        src.back()->fillRandom(rng);
        s[i] = src.back()->data();
      }
      for (int i = 0; i < F.nDst; ++i) {
        dv.emplace_back(new GuardedImage(n * F.dstBytes[i], 1, 5, 7 + i));
        ds.emplace_back(new GuardedImage(n * F.dstBytes[i], 1, 5, 7 + i));
        dv.back()->fill(0x3C);
        ds.back()->fill(0xC3);
        a[i] = dv.back()->data();
        b[i] = ds.back()->data();
      }
      F.vec(s, a, n, lum::kIsaSse2);
      F.scalar(s, b, n);
      for (int i = 0; i < F.nDst; ++i) {
        ASSERT_EQ(dv[i]->regionBytes(), ds[i]->regionBytes()) << F.name << " n=" << n;
        ASSERT_TRUE(dv[i]->guardsIntact() && ds[i]->guardsIntact()) << F.name << " n=" << n;
      }
    }
  }
}

// ---------------------------------------------------------------------------
// The model.  An arrangement: YUY2, UYVY (C2, 4:2:2), NV12 (P2, 4:2:0), YV12
// (P3 4:2:0, planes Y Cr Cb) and I420 (P3 4:2:0, planes Y Cb Cr: what the
// NV12 -> YV12 function writes).
enum class Arr { YUY2, UYVY, NV12, YV12, I420 };
bool is422(Arr a) { return a == Arr::YUY2 || a == Arr::UYVY; }

struct Frame {
  Arr a;
  int W, H;
  std::vector<std::unique_ptr<GuardedImage>> p;
  const Lum8u* cs[3] = {};
  Lum8u* ms[3] = {};
  int steps[3] = {};
  Frame(Arr a_, int W_, int H_, bool aligned, int seed) : a(a_), W(W_), H(H_) {
    const int cw = (W + 1) / 2, ch = (H + 1) / 2;
    std::vector<std::pair<int, int>> dims;
    if (is422(a)) dims = {{4 * cw, H}};
    else if (a == Arr::NV12) dims = {{W, H}, {2 * cw, ch}};
    else dims = {{W, H}, {cw, ch}, {cw, ch}};
    for (size_t i = 0; i < dims.size(); ++i) {
      const int rb = dims[i].first;
      // Aligned: steps and rows on 16 bytes; else odd paddings and offsets.
      const int pad = aligned ? 16 + (16 - rb % 16) % 16 : 3 + 4 * static_cast<int>(i) + seed % 5;
      p.emplace_back(new GuardedImage(rb, dims[i].second, pad,
                                      aligned ? 0 : 1 + (seed + static_cast<int>(i)) % 15));
      cs[i] = ms[i] = p.back()->data();
      steps[i] = p.back()->step();
    }
  }
  // Byte of luma (y, x) and of chroma c (0 Cb, 1 Cr) at (r, k), as plane and
  // offset in that plane's region bytes.
  std::pair<int, int> luma(int y, int x) const {
    if (is422(a)) return {0, y * p[0]->rowBytes() + 4 * (x / 2) + (a == Arr::UYVY) + 2 * (x & 1)};
    return {0, y * p[0]->rowBytes() + x};
  }
  std::pair<int, int> chroma(int c, int r, int k) const {
    if (is422(a)) return {0, r * p[0]->rowBytes() + 4 * k + (a == Arr::YUY2) + 2 * c};
    if (a == Arr::NV12) return {1, r * p[1]->rowBytes() + 2 * k + c};
    const int plane = (a == Arr::YV12) ? 2 - c : 1 + c;
    return {plane, r * p[plane]->rowBytes() + k};
  }
};

// The destination bytes expected after a repack of the Wm x Hm region: the
// bytes before the call with Y copied and chroma repeated or dropped.
std::vector<std::vector<uint8_t>> expected(const Frame& s, const Frame& d, int Wm, int Hm) {
  std::vector<std::vector<uint8_t>> in, out;
  for (const auto& q : s.p) in.push_back(q->regionBytes());
  for (const auto& q : d.p) out.push_back(q->regionBytes());
  auto at = [&](std::pair<int, int> q) { return in[q.first][q.second]; };
  for (int y = 0; y < Hm; ++y)
    for (int x = 0; x < Wm; ++x) {
      const auto q = d.luma(y, x);
      out[q.first][q.second] = at(s.luma(y, x));
    }
  const int rows = is422(d.a) ? Hm : Hm / 2;
  for (int c = 0; c < 2; ++c)
    for (int r = 0; r < rows; ++r)
      for (int k = 0; k < Wm / 2; ++k) {
        // 4:2:0 -> 4:2:2 repeats row r / 2; 4:2:2 -> 4:2:0 takes row 2r.
        const int sr = is422(s.a) == is422(d.a) ? r : (is422(d.a) ? r / 2 : 2 * r);
        const auto q = d.chroma(c, r, k);
        out[q.first][q.second] = at(s.chroma(c, sr, k));
      }
  return out;
}

using Call = std::function<LumStatus(Frame&, Frame&, LumSize)>;
struct Fn {
  const char* name;
  Arr in, out;
  Call f;
};
#define P2C2(fn) [](Frame& s, Frame& d, LumSize r) { return fn(s.cs[0], s.steps[0], s.cs[1], s.steps[1], d.ms[0], d.steps[0], r); }
#define P2P3(fn) [](Frame& s, Frame& d, LumSize r) { return fn(s.cs[0], s.steps[0], s.cs[1], s.steps[1], d.ms, d.steps, r); }
#define P3P2(fn) [](Frame& s, Frame& d, LumSize r) { return fn(s.cs, s.steps, d.ms[0], d.steps[0], d.ms[1], d.steps[1], r); }
#define P3C2(fn) [](Frame& s, Frame& d, LumSize r) { return fn(s.cs, s.steps, d.ms[0], d.steps[0], r); }
#define C2C2(fn) [](Frame& s, Frame& d, LumSize r) { return fn(s.cs[0], s.steps[0], d.ms[0], d.steps[0], r); }
#define C2P3(fn) [](Frame& s, Frame& d, LumSize r) { return fn(s.cs[0], s.steps[0], d.ms, d.steps, r); }
#define C2P2(fn) [](Frame& s, Frame& d, LumSize r) { return fn(s.cs[0], s.steps[0], d.ms[0], d.steps[0], d.ms[1], d.steps[1], r); }
const std::vector<Fn>& fns() {
  static const std::vector<Fn> v = {
      {"NV12->YUY2", Arr::NV12, Arr::YUY2, P2C2(lumiYCbCr420ToYCbCr422_8u_P2C2R)},
      {"NV12->UYVY", Arr::NV12, Arr::UYVY, P2C2(lumiYCbCr420ToCbYCr422_8u_P2C2R)},
      {"NV12->YV12 (Cb to plane 1)", Arr::NV12, Arr::I420, P2P3(lumiYCbCr420ToYCrCb420_8u_P2P3R)},
      {"YV12->NV12", Arr::YV12, Arr::NV12, P3P2(lumiYCrCb420ToYCbCr420_8u_P3P2R)},
      {"YV12->YUY2", Arr::YV12, Arr::YUY2, P3C2(lumiYCrCb420ToYCbCr422_8u_P3C2R)},
      {"YV12->UYVY", Arr::YV12, Arr::UYVY, P3C2(lumiYCrCb420ToCbYCr422_8u_P3C2R)},
      {"YUY2->UYVY", Arr::YUY2, Arr::UYVY, C2C2(lumiYCbCr422ToCbYCr422_8u_C2R)},
      {"UYVY->YUY2", Arr::UYVY, Arr::YUY2, C2C2(lumiCbYCr422ToYCbCr422_8u_C2R)},
      {"YUY2->YV12", Arr::YUY2, Arr::YV12, C2P3(lumiYCbCr422ToYCrCb420_8u_C2P3R)},
      {"UYVY->YV12", Arr::UYVY, Arr::YV12, C2P3(lumiCbYCr422ToYCrCb420_8u_C2P3R)},
      {"YUY2->NV12", Arr::YUY2, Arr::NV12, C2P2(lumiYCbCr422ToYCbCr420_8u_C2P2R)},
      {"UYVY->NV12", Arr::UYVY, Arr::NV12, C2P2(lumiCbYCr422ToYCbCr420_8u_C2P2R)},
  };
  return v;
}

void checkOne(const Fn& f, int W, int H, bool aligned, int seed) {
  std::mt19937 rng(static_cast<unsigned>(seed * 7919 + W * 31 + H));
  Frame s(f.in, W, H, aligned, seed), d(f.out, W, H, aligned, seed + 1);
  for (auto& q : s.p) q->fillRandom(rng);
  for (auto& q : d.p) q->fillRandom(rng);
  // The two C2 -> C2 functions keep an odd height; the others round it down.
  const int Hm = (is422(f.in) && is422(f.out)) ? H : H & ~1;
  const auto want = expected(s, d, W & ~1, Hm);
  ASSERT_EQ(f.f(s, d, LumSize{W, H}), LumOk) << f.name << " " << W << "x" << H;
  for (size_t i = 0; i < d.p.size(); ++i) {
    ASSERT_TRUE(d.p[i]->guardsIntact()) << f.name << " " << W << "x" << H;
    ASSERT_EQ(d.p[i]->regionBytes(), want[i]) << f.name << " " << W << "x" << H << " plane " << i
                                               << (aligned ? " aligned" : "");
  }
}

// At every instruction-set level (the AVX2 rows take 64 pixels a round).
TEST(Nv12, EveryFunctionMatchesTheModelOverOddAndEvenSizes) {
  for (lum::Isa level : lumtest::isaLevels()) {
    const lumtest::IsaCap cap(level);
    for (const Fn& f : fns())
      for (int W : {2, 3, 5, 30, 31, 32, 33, 34, 63, 64, 65, 66, 97, 127, 128, 130, 194})
        for (int H : {2, 3, 5, 6})
          for (bool aligned : {false, true}) checkOne(f, W, H, aligned, W + H);
  }
}

// Frames above the non-temporal threshold ((sum of steps) * height >
// 524288), aligned: the streaming and aligned paths give the model's bytes.
TEST(Nv12, LargeAlignedFramesTakeTheStreamingPathsWithTheSameBytes) {
  for (const Fn& f : fns()) checkOne(f, 1282, 302, true, 3);
  for (const Fn& f : fns()) checkOne(f, 1281, 301, false, 4);
}

// The aligned twin of YV12 -> YUY2 against the plain driver, directly, with
// widths that leave a scalar remainder.
TEST(Nv12, AlignedTwinGivesThePlainDriversBytes) {
  for (int W : {2, 30, 32, 34, 64, 96, 98, 126}) {
    std::mt19937 rng(static_cast<unsigned>(W));
    Frame s(Arr::YV12, W, 6, true, 1), a(Arr::YUY2, W, 6, true, 2), b(Arr::YUY2, W, 6, true, 3);
    for (auto& q : s.p) q->fillRandom(rng);
    a.p[0]->fill(0);
    b.p[0]->fill(0);
    lum::nv12::alYV12ToYUY2420_8u_P3C2R(s.cs, s.steps, a.ms[0], a.steps[0], W, 6);
    lum::nv12::myYV12ToYUY2420_8u_P3C2R(s.cs, s.steps, b.ms[0], b.steps[0], W, 6, lum::kIsaSse2);
    EXPECT_EQ(a.p[0]->regionBytes(), b.p[0]->regionBytes()) << "W=" << W;
    EXPECT_TRUE(a.p[0]->guardsIntact());
  }
}

// The round trips the arrangements promise.
TEST(Nv12, RoundTrips) {
  const int W = 70, H = 10;
  std::mt19937 rng(5);
  Frame nv(Arr::NV12, W, H, false, 1), c2(Arr::YUY2, W, H, false, 2), back(Arr::NV12, W, H, false, 3);
  for (auto& q : nv.p) q->fillRandom(rng);
  // NV12 -> YUY2 -> NV12 gives the image back bit for bit.
  ASSERT_EQ(lumiYCbCr420ToYCbCr422_8u_P2C2R(nv.cs[0], nv.steps[0], nv.cs[1], nv.steps[1], c2.ms[0],
                                            c2.steps[0], {W, H}), LumOk);
  ASSERT_EQ(lumiYCbCr422ToYCbCr420_8u_C2P2R(c2.cs[0], c2.steps[0], back.ms[0], back.steps[0],
                                            back.ms[1], back.steps[1], {W, H}), LumOk);
  EXPECT_EQ(back.p[0]->regionBytes(), nv.p[0]->regionBytes());
  EXPECT_EQ(back.p[1]->regionBytes(), nv.p[1]->regionBytes());
  // UYVY -> YUY2 -> UYVY gives the image back.
  Frame u(Arr::UYVY, W, H, false, 4), y2(Arr::YUY2, W, H, false, 5), u2(Arr::UYVY, W, H, false, 6);
  u.p[0]->fillRandom(rng);
  lumiCbYCr422ToYCbCr422_8u_C2R(u.cs[0], u.steps[0], y2.ms[0], y2.steps[0], {W, H});
  lumiYCbCr422ToCbYCr422_8u_C2R(y2.cs[0], y2.steps[0], u2.ms[0], u2.steps[0], {W, H});
  EXPECT_EQ(u2.p[0]->regionBytes(), u.p[0]->regionBytes());
  // NV12 -> "YV12" -> NV12 exchanges the bytes of each chroma pair.
  Frame p3(Arr::YV12, W, H, false, 7), nv2(Arr::NV12, W, H, false, 8);
  lumiYCbCr420ToYCrCb420_8u_P2P3R(nv.cs[0], nv.steps[0], nv.cs[1], nv.steps[1], p3.ms, p3.steps,
                                  {W, H});
  lumiYCrCb420ToYCbCr420_8u_P3P2R(p3.cs, p3.steps, nv2.ms[0], nv2.steps[0], nv2.ms[1],
                                  nv2.steps[1], {W, H});
  EXPECT_EQ(nv2.p[0]->regionBytes(), nv.p[0]->regionBytes());
  for (int r = 0; r < H / 2; ++r)
    for (int k = 0; k < W / 2; ++k) {
      EXPECT_EQ(nv2.p[1]->row(r)[2 * k], nv.p[1]->row(r)[2 * k + 1]);
      EXPECT_EQ(nv2.p[1]->row(r)[2 * k + 1], nv.p[1]->row(r)[2 * k]);
    }
}

}  // namespace
