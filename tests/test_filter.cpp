// Filtered chroma upsampling: the worked values (flat planes, the clamped
// step edge, heights 8, 15 and 7, the exchanged planes of the YCrCb form);
// the four-tap filter against its formula over random planes and widths
// crossing the 16-sample blocks (the SSE2 rows and their scalar tails); the
// filtered BGR conversion's pairs, last pair, odd sizes, width 1, checks.
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <random>
#include <vector>

#include "lumcc.h"
#include "repack/pccfilter.h"
#include "test_support.h"

using lumtest::GuardedImage;

namespace {

int clamp8(int v) { return v < 0 ? 0 : (v > 255 ? 255 : v); }

// A 4:2:0 source (planes Y, P1, P2) and a 4:2:2 destination, guarded.
struct Job {
  int W, H;
  std::unique_ptr<GuardedImage> s[3], d[3];
  const Lum8u* sp[3];
  Lum8u* dp[3];
  int ss[3], ds[3];
  Job(int W_, int H_, unsigned seed) : W(W_), H(H_) {
    std::mt19937 rng(seed);
    const int cw = (W + 1) / 2;
    for (int p = 0; p < 3; ++p) {
      s[p].reset(new GuardedImage(p ? cw : W, p ? (H + 1) / 2 : H, 5 + p, 1 + p));
      d[p].reset(new GuardedImage(p ? cw : W, H, 7 + p, 3 + p));
      s[p]->fillRandom(rng);
      d[p]->fill(0xEE);
      sp[p] = s[p]->data();
      dp[p] = d[p]->data();
      ss[p] = s[p]->step();
      ds[p] = d[p]->step();
    }
  }
  // The filtered column of source plane p, as the text gives it, at
  // destination row y (H8 the height used).
  int want(int p, int y, int k, int H8) const {
    const int n = H8 / 2;
    auto c = [&](int r) { return s[p]->row(std::min(std::max(r, 0), n - 1))[k]; };
    const int r = y / 2;
    if (y % 2 == 0) return c(r);
    return clamp8((9 * (c(r) + c(r + 1)) - c(r - 1) - c(r + 2) + 8) >> 4);
  }
};

void expectFiltered(const Job& j, int swap) {
  const int W2 = j.W & ~1, H8 = j.H & ~7;
  for (int y = 0; y < j.H; ++y) {
    for (int x = 0; x < j.W; ++x)
      ASSERT_EQ(j.d[0]->row(y)[x], (y < H8 && x < W2) ? j.s[0]->row(y)[x] : 0xEE) << y << "," << x;
    for (int p = 1; p <= 2; ++p)
      for (int k = 0; k < (j.W + 1) / 2; ++k)
        ASSERT_EQ(j.d[p]->row(y)[k], (y < H8 && k < W2 / 2) ? j.want(swap ? 3 - p : p, y, k, H8) : 0xEE)
            << "plane " << p << " row " << y << " col " << k << " " << j.W << "x" << j.H;
  }
  for (int p = 0; p < 3; ++p) ASSERT_TRUE(j.d[p]->guardsIntact());
}

TEST(Filter, FourTapFilterOverWidthsAndHeights) {
  for (int W : {2, 3, 8, 30, 31, 32, 33, 34, 64, 66, 97})
    for (int H : {8, 9, 15, 16, 24, 40})
      for (int swap : {0, 1}) {
        Job j(W, H, static_cast<unsigned>(W * 64 + H));
        auto f = swap ? lumiYCrCb420ToYCbCr422_Filter_8u_P3R : lumiYCbCr420ToYCbCr422_Filter_8u_P3R;
        ASSERT_EQ(f(j.sp, j.ss, j.dp, j.ds, {W, H}), LumOk);
        expectFiltered(j, swap);
      }
}

// The NV12 form gives the planar form's bytes after the pairs are split.
TEST(Filter, Nv12FormEqualsThePlanarForm) {
  for (int W : {2, 32, 34, 98}) {
    const int H = 16;
    Job j(W, H, 5);
    std::vector<uint8_t> pairs((W & ~1) * (H / 2));
    for (int r = 0; r < H / 2; ++r)
      for (int k = 0; k < W / 2; ++k) {
        pairs[r * (W & ~1) + 2 * k] = j.s[1]->row(r)[k];
        pairs[r * (W & ~1) + 2 * k + 1] = j.s[2]->row(r)[k];
      }
    ASSERT_EQ(lumiYCbCr420ToYCbCr422_Filter_8u_P2P3R(j.sp[0], j.ss[0], pairs.data(), W & ~1, j.dp,
                                                     j.ds, {W, H}),
              LumOk);
    expectFiltered(j, 0);
  }
}

TEST(Filter, WorkedValues) {
  // A flat plane of v stays v: (16v + 8) >> 4.  A step edge 0 | 255
  // overshoots to the clamps.
  Job j(4, 8, 1);
  for (int r = 0; r < 4; ++r) {
    std::fill(j.s[1]->row(r), j.s[1]->row(r) + 2, static_cast<uint8_t>(77));
    std::fill(j.s[2]->row(r), j.s[2]->row(r) + 2, static_cast<uint8_t>(r < 2 ? 0 : 255));
  }
  ASSERT_EQ(lumiYCbCr420ToYCbCr422_Filter_8u_P3R(j.sp, j.ss, j.dp, j.ds, {4, 8}), LumOk);
  for (int y = 0; y < 8; ++y) EXPECT_EQ(j.d[1]->row(y)[0], 77);
  // Rows 0 0 | 255 255: d[1] = (9 * 0 - 0 - 255 + 8) >> 4 < 0 -> 0,
  // d[3] = (9 * 255 - 0 - 255 + 8) >> 4 = 128, d[5] = (9 * 510 - 0 - 255 +
  // 8) >> 4 = 271 -> 255, d[7] = (18 * 255 - 510 + 8) >> 4 = 255.
  const int want[8] = {0, 0, 0, 128, 255, 255, 255, 255};
  for (int y = 0; y < 8; ++y) EXPECT_EQ(j.d[2]->row(y)[0], want[y]) << y;
  // Heights: 7 and a width of 1 are refused; 15 is cut to 8.
  Job k(4, 15, 2);
  EXPECT_EQ(lumiYCbCr420ToYCbCr422_Filter_8u_P3R(k.sp, k.ss, k.dp, k.ds, {4, 7}), LumErrSize);
  EXPECT_EQ(lumiYCbCr420ToYCbCr422_Filter_8u_P3R(k.sp, k.ss, k.dp, k.ds, {1, 8}), LumErrSize);
  EXPECT_EQ(lumiYCbCr420ToYCbCr422_Filter_8u_P3R(k.sp, k.ss, k.dp, k.ds, {4, 15}), LumOk);
  EXPECT_EQ(k.d[0]->row(8)[0], 0xEE);
  EXPECT_EQ(k.d[1]->row(8)[0], 0xEE);
}

// ---------------------------------------------------------------------------
// Filtered BGR.
std::vector<int> bgrOf(int Y, int Cr, int Cb) {
  const int cr = Cr - 128, cb = Cb - 128;
  return {clamp8((76309 * Y + 132201 * cb - 1220944) >> 16),
          clamp8((76309 * Y - 53279 * cr - 25675 * cb - 1220944) >> 16),
          clamp8((76309 * Y + 104597 * cr - 1220944) >> 16)};
}

TEST(FilterBgr, PairsLastPairOddSizesAndAlpha) {
  for (int W : {1, 2, 3, 7, 8, 33})
    for (int H : {1, 2, 3, 6}) {
      std::mt19937 rng(static_cast<unsigned>(W * 10 + H));
      const int cw = std::max(1, W / 2), Wp = std::max(W, 2);
      GuardedImage y(Wp, H, 3, 1), cr(cw, (H + 1) / 2, 5, 2), cb(cw, (H + 1) / 2, 6, 3);
      GuardedImage d(4 * Wp, H, 9, 5);  // a width of 1 writes two pixels
      for (GuardedImage* im : {&y, &cr, &cb}) im->fillRandom(rng);
      d.fill(0xEE);
      const Lum8u* s[3] = {y.data(), cr.data(), cb.data()};
      const int st[3] = {y.step(), cr.step(), cb.step()};
      const LumStatus want = ((W | H) & 1) ? LumWarnOddSize : LumOk;
      ASSERT_EQ(lumiYCrCb420ToBGR_Filter_8u_P3C4R(s, st, d.data(), d.step(), {W, H}, 0x5A), want);
      ASSERT_TRUE(d.guardsIntact());
      const int pairs = W / 2, written = 2 * std::max(pairs, 1);
      for (int row = 0; row < H; ++row)
        for (int x = 0; x < Wp; ++x) {
          const uint8_t* px = d.row(row) + 4 * x;
          if (row >= (H & ~1) || x >= written) {
            EXPECT_EQ(px[0], 0xEE) << W << "x" << H << " " << row << "," << x;
            continue;
          }
          const int k = x / 2, j = row / 2;
          const bool avgd = (x & 1) && k < pairs - 1;
          const int Cr = avgd ? (cr.row(j)[k] + cr.row(j)[k + 1] + 1) >> 1 : cr.row(j)[k];
          const int Cb = avgd ? (cb.row(j)[k] + cb.row(j)[k + 1] + 1) >> 1 : cb.row(j)[k];
          const auto bgr = bgrOf(y.row(row)[x], Cr, Cb);
          for (int c = 0; c < 3; ++c) EXPECT_EQ(px[c], bgr[c]) << W << "x" << H << " " << row << "," << x;
          EXPECT_EQ(px[3], 0x5A);
        }
    }
}

TEST(FilterBgr, WorkedValuesAndChecks) {
  // Black and white of the studio range: Y 16 -> 0; Y 235 -> 254 (no
  // rounding term); Y 255 clamps.
  EXPECT_EQ(bgrOf(16, 128, 128), (std::vector<int>{0, 0, 0}));
  EXPECT_EQ(bgrOf(235, 128, 128), (std::vector<int>{254, 254, 254}));
  Lum8u y[4] = {16, 235, 255, 0}, c[2] = {128, 128}, out[16] = {};
  const Lum8u* s[3] = {y, c, c};
  const int st[3] = {2, 1, 1};
  ASSERT_EQ(lumiYCrCb420ToBGR_Filter_8u_P3C4R(s, st, out, 8, {2, 2}, 9), LumOk);
  const int want[16] = {0, 0, 0, 9, 254, 254, 254, 9, 255, 255, 255, 9, 0, 0, 0, 9};
  for (int i = 0; i < 16; ++i) EXPECT_EQ(out[i], want[i]) << i;
  // Checks: arrays, then the size, then the plane entries.
  const Lum8u* bad[3] = {y, nullptr, c};
  EXPECT_EQ(lumiYCrCb420ToBGR_Filter_8u_P3C4R(nullptr, st, out, 8, {0, 2}, 0), LumErrNullPtr);
  EXPECT_EQ(lumiYCrCb420ToBGR_Filter_8u_P3C4R(s, st, nullptr, 8, {2, -1}, 0), LumErrNullPtr);
  EXPECT_EQ(lumiYCrCb420ToBGR_Filter_8u_P3C4R(bad, st, out, 8, {0, 2}, 0), LumErrSize);
  EXPECT_EQ(lumiYCrCb420ToBGR_Filter_8u_P3C4R(bad, st, out, 8, {2, 2}, 0), LumErrNullPtr);
  EXPECT_EQ(lumiYCrCb420ToBGR_Filter_8u_P3C4R(s, st, out, 8, {2, 0}, 0), LumErrSize);
  for (int i = 0; i < 16; ++i) EXPECT_EQ(out[i], want[i]) << "written on an error";
}

}  // namespace
