// Every threaded function of the table under each of the four SSE rounding
// modes: the bytes do not depend on the team size (every thread of a region
// computes under the caller's mode), the caller's control bits are the same
// on return, and the workers are left in their own mode.
#include <gtest/gtest.h>
#include <omp.h>
#include <xmmintrin.h>

#include <memory>
#include <random>
#include <string>
#include <vector>

#include "lum_table.h"
#include "test_support.h"

using lumtable::Entry;
using lumtest::GuardedImage;

namespace {

// The images of one call, each plane with guard bytes; float sources in [0, 1].
struct Call {
  const Entry& e;
  std::vector<std::unique_ptr<GuardedImage>> src, dst;
  lumtable::Args args;
  Call(const Entry& en, LumSize roi, std::mt19937& rng) : e(en) {
    for (int p = 0; p < e.srcPlanes(); ++p) {
      src.emplace_back(new GuardedImage(e.srcRowBytes(p, roi.width), e.srcRows(p, roi.height),
                                        4 * e.srcElem, e.srcElem));
      src.back()->fillRandom(rng);
      if (e.srcFloat) {
        std::uniform_real_distribution<float> unit(0.0f, 1.0f);
        for (int y = 0; y < src.back()->height(); ++y)
          for (int x = 0; x < src.back()->rowBytes() / 4; ++x) src.back()->rowAs<float>(y)[x] = unit(rng);
      }
      args.src[p] = src.back()->data();
      args.srcSteps[p] = src.back()->step();
    }
    for (int p = 0; p < e.dstPlanes(); ++p) {
      dst.emplace_back(new GuardedImage(e.dstRowBytes(p, roi.width), e.dstRows(p, roi.height),
                                        4 * e.dstElem, e.dstElem));
      dst.back()->fill(0x5A);  // AC4 alpha is kept: the same in every call
      args.dst[p] = dst.back()->data();
      args.dstSteps[p] = dst.back()->step();
    }
    args.roi = roi;
  }
  std::vector<uint8_t> bytes() const {
    std::vector<uint8_t> all;
    for (const auto& d : dst) {
      const std::vector<uint8_t> b = d->regionBytes();
      all.insert(all.end(), b.begin(), b.end());
    }
    return all;
  }
  bool guardsIntact() const {
    for (const auto& d : dst)
      if (!d->guardsIntact()) return false;
    return true;
  }
};

struct Mode {
  const char* name;
  unsigned bits;
};
constexpr Mode kModes[] = {{"nearest", _MM_ROUND_NEAREST},
                           {"down", _MM_ROUND_DOWN},
                           {"up", _MM_ROUND_UP},
                           {"toward-zero", _MM_ROUND_TOWARD_ZERO}};
// Above the 4097-pixel threshold, rows split over every team size, odd widths
// so that every row has a tail after its blocks.
constexpr LumSize kSizes[] = {{101, 100}, {67, 62}, {4099, 3}};
constexpr unsigned kControlBits = ~0x3Fu;  // MXCSR without the exception flags

// Sets the mode of the workers of a team of n (a thread of the pool keeps its
// control register from one region to the next of the same size).
void setWorkersMode(int n, unsigned mode) {
#pragma omp parallel num_threads(n)
  if (omp_get_thread_num() != 0) _MM_SET_ROUNDING_MODE(mode);
}

std::vector<const Entry*> threaded() {
  std::vector<const Entry*> v;
  for (const Entry& e : lumtable::table())
    if (e.isImage() && e.threading != lum::Threading::Serial) v.push_back(&e);
  return v;
}

class RoundingTeams : public ::testing::TestWithParam<const Entry*> {};

TEST_P(RoundingTeams, SameBytesForTeamSizesInEveryModeAndModeKept) {
  const Entry& e = *GetParam();
  const unsigned saved = _mm_getcsr();
  for (LumSize roi : kSizes) {
    std::mt19937 rng(static_cast<unsigned>(roi.width * 7 + roi.height));
    for (const Mode& mode : kModes) {
      std::vector<uint8_t> team1;
      for (int team : {1, 2, 4}) {
        std::mt19937 same = rng;  // the same source for every team
        Call c(e, roi, same);
        lumtest::TeamSize scope(team);
        // The workers start in another mode than the caller's.
        setWorkersMode(team, mode.bits == _MM_ROUND_NEAREST ? _MM_ROUND_UP : _MM_ROUND_NEAREST);
        _MM_SET_ROUNDING_MODE(mode.bits);
        const unsigned before = _mm_getcsr();
        const LumStatus st = e.call(c.args);
        const unsigned after = _mm_getcsr();
        _mm_setcsr(saved);
        const std::string at = std::string(e.name) + " " + std::to_string(roi.width) + "x" +
                               std::to_string(roi.height) + " round " + mode.name + " team " +
                               std::to_string(team);
        ASSERT_EQ(st, LumOk) << at;
        ASSERT_EQ(after & kControlBits, before & kControlBits) << at << ": caller's MXCSR changed";
        ASSERT_TRUE(c.guardsIntact()) << at;
        if (team == 1)
          team1 = c.bytes();
        else
          EXPECT_TRUE(c.bytes() == team1) << at << ": bytes differ from team 1";
      }
    }
  }
  setWorkersMode(4, _MM_ROUND_NEAREST);
}

// A worker keeps its own mode: with the workers of a team of 4 in round-up, a
// call in round-down leaves them in round-up (the caller's mode is taken for
// the region only).
TEST_P(RoundingTeams, WorkersKeepTheirOwnMode) {
  const Entry& e = *GetParam();
  std::mt19937 rng(3);
  Call c(e, LumSize{101, 100}, rng);
  lumtest::TeamSize scope(4);
  const unsigned saved = _mm_getcsr();
  setWorkersMode(4, _MM_ROUND_UP);
  _MM_SET_ROUNDING_MODE(_MM_ROUND_DOWN);
  const LumStatus st = e.call(c.args);
  _mm_setcsr(saved);
  int notUp = 0;
#pragma omp parallel num_threads(4) reduction(+ : notUp)
  notUp += omp_get_thread_num() != 0 && _MM_GET_ROUNDING_MODE() != _MM_ROUND_UP;
  setWorkersMode(4, _MM_ROUND_NEAREST);
  ASSERT_EQ(st, LumOk);
  EXPECT_EQ(notUp, 0) << e.name << ": workers left in another mode";
}

INSTANTIATE_TEST_SUITE_P(Threaded, RoundingTeams, ::testing::ValuesIn(threaded()),
                         [](const ::testing::TestParamInfo<const Entry*>& info) {
                           return std::string(info.param->name);
                         });

}  // namespace
