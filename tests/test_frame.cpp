// The primitive frame: the check patterns no public function uses yet (the
// generic suite holds every used one to its order), steps as the pixel-order
// functions take them, the group-1 row driver's threshold and team, the
// rounding-control bracket, the reciprocal's Newton step.
#include <gtest/gtest.h>
#include <omp.h>

#include <algorithm>
#include <atomic>
#include <random>
#include <vector>

#include "frame/lum_frame.h"
#include "frame/lum_simd.h"
#include "lum_table.h"
#include "test_support.h"

using namespace lum;

TEST(CheckPatterns, OrderOfChecks) {
  int a = 0;
  const void* ok3[3] = {&a, &a, &a};
  const void* null3[3] = {&a, nullptr, &a};
  const LumSize bad{0, 4};
  // P3: a null plane wins over a bad size.
  EXPECT_EQ(checkP3({ok3}, {arr(null3, 3)}, bad), LumErrNullPtr);
  EXPECT_EQ(checkP3({ok3}, {arr(ok3, 3)}, bad), LumErrSize);
  // P6: no size check at all.
  EXPECT_EQ(checkP6({&a}, {arr(ok3, 3)}), LumOk);
  EXPECT_EQ(checkP6({&a}, {arr(null3, 3)}), LumErrNullPtr);
  // P7: two rounds.
  EXPECT_EQ(checkP7({ok3}, LumSize{1, 1}, {arr(null3, 3)}), LumErrNullPtr);
  EXPECT_EQ(checkP7({ok3}, LumSize{0, 1}, {arr(null3, 3)}), LumErrSize);
  EXPECT_EQ(checkP7({ok3}, LumSize{1, 1}, {arr(ok3, 3)}), LumErrSize);
  EXPECT_EQ(checkP7({ok3}, LumSize{2, 2}, {arr(ok3, 3)}), LumOk);
}

TEST(StepShift, ArithmeticShiftOfOddAndNegativeSteps) {
  EXPECT_EQ(stepToElems(7, 1), 3);
  EXPECT_EQ(stepToElems(-7, 1), -4);  // toward minus infinity
  EXPECT_EQ(stepToElems(-8, 2), -2);
  EXPECT_EQ(stepToElems(13, 2), 3);
}

// Steps are not checked by the pixel-order functions of pattern P1: a source
// step of 0 reads the first row for every row, a negative destination step
// writes upward.  Samples wider than a byte take a step in bytes shifted
// right arithmetically: +1 is lost, and row 1 of a step of -(rowBytes + 1)
// starts one element more than a row before row 0 (a shift toward zero
// would start it exactly a row before).
TEST(StepShift, EveryPixelOrderFunctionTakesItsStepsAsStated) {
  std::mt19937 rng(11);
  for (const lumtable::Entry& e : lumtable::table()) {
    if (!e.isImage() || e.shape != lum::Shape::A || e.pattern != lum::Pattern::P1) continue;
    const int w = 7, es = e.srcElem, sRow = e.srcRowBytes(0, w), dRow = e.dstRowBytes(0, w);
    std::vector<uint8_t> src(8 * sRow), dst(8 * dRow, 0xEE), want(4 * dRow, 0xEE);
    for (auto& b : src) b = static_cast<uint8_t>(rng());
    uint8_t* s0 = &src[4 * sRow];
    uint8_t* d0 = &dst[4 * dRow];
    auto run = [&](const uint8_t* s, int ss, uint8_t* d, int ds, int h) {
      lumtable::Args a;
      a.src[0] = s;
      a.dst[0] = d;
      a.srcSteps[0] = ss;
      a.dstSteps[0] = ds;
      a.roi = LumSize{w, h};
      return e.call(a);
    };
    ASSERT_EQ(run(s0, sRow, want.data(), dRow, 1), LumOk) << e.name;
    ASSERT_EQ(run(s0, 0, d0 + 2 * dRow, -dRow, 3), LumOk) << e.name;
    for (int y = 0; y < 3; ++y) EXPECT_EQ(memcmp(d0 + y * dRow, want.data(), dRow), 0) << e.name << " y=" << y;
    if (es == 1 || e.dstElem != es) continue;
    // Odd steps: one row at sRow + 1 is one at sRow; two rows at -(sRow + 1).
    std::fill(dst.begin(), dst.end(), 0xEE);
    ASSERT_EQ(run(s0, sRow + 1, d0, dRow + 1, 2), LumOk) << e.name;
    ASSERT_EQ(run(s0, sRow, want.data(), dRow, 2), LumOk) << e.name;
    EXPECT_EQ(memcmp(d0, want.data(), 2 * dRow), 0) << e.name << ": odd step";
    ASSERT_EQ(run(s0, -sRow - 1, d0, -dRow - 1, 2), LumOk) << e.name;
    ASSERT_EQ(run(s0 - sRow - es, sRow, want.data(), dRow, 1), LumOk) << e.name;
    EXPECT_EQ(memcmp(d0 - dRow - es, want.data(), dRow), 0) << e.name << ": negative odd step";
    for (int i = 0; i < es; ++i) EXPECT_EQ(d0[-es + i], 0xEE) << e.name;
  }
}

namespace {
struct RowLog {
  std::vector<int> thread;
  std::vector<int> inParallel;
  std::atomic<int> teamSeen{0};
};
void runGroup1(int w, int h, RowLog& log) {
  log.thread.assign(h, -1);
  log.inParallel.assign(h, -1);
  group1Rows(w, h, [&](int y) {
    log.thread[y] = omp_get_thread_num();
    log.inParallel[y] = omp_in_parallel();
    log.teamSeen = omp_get_num_threads();
  });
}
}  // namespace

TEST(Group1Driver, ThresholdAndStaticSchedule) {
  lumtest::TeamSize team(4);
  omp_set_dynamic(0);
  RowLog log;
  runGroup1(64, 64, log);  // 4096 pixels: calling thread
  for (int y = 0; y < 64; ++y) EXPECT_EQ(log.inParallel[y], 0);
  runGroup1(4097, 1, log);  // enters the region; one row, one busy thread
  EXPECT_EQ(log.inParallel[0], 1);
  EXPECT_EQ(log.thread[0], 0);
  EXPECT_EQ(log.teamSeen.load(), 4);
  runGroup1(100, 41, log);  // static, no chunk: contiguous ascending blocks
  EXPECT_EQ(log.teamSeen.load(), 4);
  for (int y = 1; y < 41; ++y) EXPECT_LE(log.thread[y - 1], log.thread[y]);
  EXPECT_EQ(log.thread[0], 0);
  EXPECT_EQ(log.thread[40], 3);
  // A product that wraps to a negative 32-bit value takes the serial path.
  EXPECT_LT(pixelCount32(65536, 32768), 0);
  EXPECT_EQ(pixelCount32(4097, 1), 4097);
}

TEST(Group1Driver, TeamSizeReadAtEachRegion) {
  omp_set_dynamic(0);
  RowLog log;
  {
    lumtest::TeamSize team(2);
    runGroup1(5000, 4, log);
    EXPECT_EQ(log.teamSeen.load(), 2);
  }
  {
    lumtest::TeamSize team(3);
    runGroup1(5000, 4, log);
    EXPECT_EQ(log.teamSeen.load(), 3);
  }
}

TEST(RoundingBracket, RestoresOnlyOtherModes) {
  const unsigned int saved = _mm_getcsr();
  // Caller in round-down: nearest inside, round-down restored after.
  _mm_setcsr((saved & ~0x6000u) | 0x2000u);
  {
    RoundNearestBracket b;
    EXPECT_EQ(_mm_getcsr() & 0x6000u, 0u);
    EXPECT_EQ(cvtRound(2.5f), 2);
    EXPECT_EQ(cvtRound(-1.5f), -2);
  }
  EXPECT_EQ(_mm_getcsr() & 0x6000u, 0x2000u);
  // lum_set_rc_ssx returns the previous contents.
  const int prev = lum_set_rc_ssx(3);
  EXPECT_EQ(static_cast<unsigned>(prev) & 0x6000u, 0x2000u);
  EXPECT_EQ(_mm_getcsr() & 0x6000u, 0x6000u);
  EXPECT_EQ(cvtRound(2.7f), 2);
  lum_set_cw_ssx(static_cast<int>(saved));
  EXPECT_EQ(_mm_getcsr(), saved);
  // Caller already in nearest: the register is left as the bracket set it.
  {
    RoundNearestBracket b;
    EXPECT_EQ(b.kept() & 0x6000, 0);
  }
  EXPECT_EQ(_mm_getcsr(), saved);
}

TEST(Reciprocal, NewtonStepOrder) {
  for (float x : {1.0f, 3.0f, 255.0f, 65535.0f, 0.37f}) {
    const float r = rcpS(x);
    EXPECT_NEAR(r * x, 1.0f, 1.5f / 4096.0f * 1.01f);
    const float n = rcpNewtonS(x);
    EXPECT_EQ(n, (r + r) - (x * r) * r);
    float lanes[4];
    _mm_storeu_ps(lanes, vRcpNewton(_mm_set1_ps(x)));
    EXPECT_EQ(lanes[0], n);
    _mm_storeu_ps(lanes, vRcp(_mm_set1_ps(x)));
    EXPECT_EQ(lanes[3], r);
  }
}
