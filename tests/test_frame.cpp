// The primitive frame: check patterns, the group-1 row driver's threshold and
// team, the rounding-control bracket, the (de)interleave networks.
#include <gtest/gtest.h>
#include <omp.h>

#include <atomic>
#include <vector>

#include "frame/lum_frame.h"
#include "frame/lum_simd.h"
#include "test_support.h"

using namespace lum;

TEST(CheckPatterns, OrderOfChecks) {
  int a = 0, b = 0;
  const void* ok3[3] = {&a, &a, &a};
  const void* null3[3] = {&a, nullptr, &a};
  const LumSize good{4, 4}, bad{0, 4};
  EXPECT_EQ(checkP1({&a, &b}, good), LumOk);
  EXPECT_EQ(checkP1({&a, nullptr}, bad), LumErrNullPtr);
  EXPECT_EQ(checkP1({&a, &b}, bad), LumErrSize);
  EXPECT_EQ(checkP1({&a, &b}, LumSize{1, 1}, 2, 1), LumErrSize);
  // P2: a null plane with a bad size is a size error; with a good size, null.
  EXPECT_EQ(checkP2({ok3, null3}, bad, {arr(ok3, 3), arr(null3, 3)}), LumErrSize);
  EXPECT_EQ(checkP2({ok3, null3}, good, {arr(ok3, 3), arr(null3, 3)}), LumErrNullPtr);
  EXPECT_EQ(checkP2({nullptr, ok3}, bad, {}), LumErrNullPtr);
  // P3: a null plane wins over a bad size.
  EXPECT_EQ(checkP3({ok3}, {arr(null3, 3)}, bad), LumErrNullPtr);
  EXPECT_EQ(checkP3({ok3}, {arr(ok3, 3)}, bad), LumErrSize);
  // P4: size before step; P5: step before size.
  EXPECT_EQ(checkP4({&a}, {}, bad, {0}), LumErrSize);
  EXPECT_EQ(checkP4({&a}, {}, good, {0}), LumErrStep);
  EXPECT_EQ(checkP5({&a}, {}, {0}, bad), LumErrStep);
  EXPECT_EQ(checkP5({&a}, {}, {1}, bad), LumErrSize);
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

TEST(TeamSizeVariable, AtLeastOne) { EXPECT_GE(threads_omp_of_n_lum, 1); }

// The (de)interleave networks against plain index arithmetic.
TEST(Interleave, ThreeByteAndFourBytePixels) {
  uint8_t src[96], back[96];
  for (int i = 0; i < 96; ++i) src[i] = static_cast<uint8_t>(i * 7 + 3);
  Planes8x32 p = deinterleave3x32(src);
  for (int k = 0; k < 3; ++k)
    for (int h = 0; h < 2; ++h) {
      uint8_t b[16];
      storeu(b, p.c[k][h]);
      for (int i = 0; i < 16; ++i) ASSERT_EQ(b[i], src[3 * (16 * h + i) + k]);
    }
  interleave3x32(p, back);
  EXPECT_EQ(0, memcmp(src, back, 96));

  __m128i c[3];
  deinterleave3x16(src, c);
  uint8_t out48[48 + 8];
  memset(out48, 0xEE, sizeof out48);
  interleave3x16(c, out48);
  EXPECT_EQ(0, memcmp(src, out48, 48));
  EXPECT_EQ(out48[48], 0xEE);

  deinterleave3x8(src, c);
  for (int k = 0; k < 3; ++k) {
    uint8_t b[16];
    storeu(b, c[k]);
    for (int i = 0; i < 8; ++i) ASSERT_EQ(b[i], src[3 * i + k]);
  }
  memset(out48, 0xEE, sizeof out48);
  interleave3x8(c, out48);
  EXPECT_EQ(0, memcmp(src, out48, 24));
  EXPECT_EQ(out48[24], 0xEE);

  __m128i c4[4], px[2];
  deinterleave4x8(src, c4);
  for (int k = 0; k < 4; ++k) {
    uint8_t b[16];
    storeu(b, c4[k]);
    for (int i = 0; i < 8; ++i) ASSERT_EQ(b[i], src[4 * i + k]);
  }
  interleave4x8(c4, px);
  storeu(back, px[0]);
  storeu(back + 16, px[1]);
  EXPECT_EQ(0, memcmp(src, back, 32));

  uint16_t w[24], wb[24];
  for (int i = 0; i < 24; ++i) w[i] = static_cast<uint16_t>(i * 2741 + 11);
  deinterleave3x8w(w, c);
  for (int k = 0; k < 3; ++k) {
    uint16_t b[8];
    storeu(b, c[k]);
    for (int i = 0; i < 8; ++i) ASSERT_EQ(b[i], w[3 * i + k]);
  }
  interleave3x8w(c, wb);
  EXPECT_EQ(0, memcmp(w, wb, sizeof w));
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
