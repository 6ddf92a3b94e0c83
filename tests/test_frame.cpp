// The primitive frame: the check patterns no public function uses yet (the
// generic suite holds every used one to its order), the group-1 row
// driver's threshold and team, the rounding-control bracket, the
// reciprocal's Newton step.
#include <gtest/gtest.h>
#include <omp.h>

#include <atomic>
#include <vector>

#include "frame/lum_frame.h"
#include "frame/lum_simd.h"
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
