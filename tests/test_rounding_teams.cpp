// Every threaded colour-model function under each of the four SSE rounding
// modes: the bytes do not depend on the team size (every thread of a region
// computes under the caller's mode), the caller's control bits are the same
// on return, and the workers are left in their own mode.
#include <gtest/gtest.h>
#include <omp.h>
#include <xmmintrin.h>

#include <functional>
#include <memory>
#include <ostream>
#include <random>
#include <string>
#include <vector>

#include "lumcc.h"
#include "test_support.h"

using lumtest::GuardedImage;

namespace {

// A side of a call: one interleaved image of `channels` samples a pixel, or
// `planes` planes of one sample a pixel sharing one step.
struct Side {
  int planes;
  int channels;
};
constexpr Side C3{1, 3}, AC4{1, 4}, P3{3, 1}, P4{4, 1};

using Call = std::function<LumStatus(void* const* src, int srcStep, void* const* dst,
                                     int dstStep, LumSize roi)>;

template <class T>
Call adapt(LumStatus (*f)(const T*, int, T*, int, LumSize)) {
  return [f](void* const* s, int ss, void* const* d, int ds, LumSize r) {
    return f(static_cast<const T*>(s[0]), ss, static_cast<T*>(d[0]), ds, r);
  };
}
Call adapt(LumStatus (*f)(const Lum8u* const*, int, Lum8u*, int, LumSize)) {
  return [f](void* const* s, int ss, void* const* d, int ds, LumSize r) {
    const Lum8u* planes[4] = {static_cast<const Lum8u*>(s[0]), static_cast<const Lum8u*>(s[1]),
                              static_cast<const Lum8u*>(s[2]), static_cast<const Lum8u*>(s[3])};
    return f(planes, ss, static_cast<Lum8u*>(d[0]), ds, r);
  };
}
Call adapt(LumStatus (*f)(const Lum8u*, int, Lum8u* const*, int, LumSize)) {
  return [f](void* const* s, int ss, void* const* d, int ds, LumSize r) {
    Lum8u* planes[4] = {static_cast<Lum8u*>(d[0]), static_cast<Lum8u*>(d[1]),
                        static_cast<Lum8u*>(d[2]), static_cast<Lum8u*>(d[3])};
    return f(static_cast<const Lum8u*>(s[0]), ss, planes, ds, r);
  };
}

struct Fn {
  const char* name;
  int es;        // bytes a sample
  bool isFloat;  // 32f: sources in [0, 1]
  Side src, dst;
  Call call;
};

#define FN(f, es, isFloat, src, dst) Fn{#f, es, isFloat, src, dst, adapt(f)}
const std::vector<Fn>& functions() {
  static const std::vector<Fn> fns = {
      FN(lumiRGBToHSV_8u_C3R, 1, false, C3, C3),
      FN(lumiHSVToRGB_8u_C3R, 1, false, C3, C3),
      FN(lumiRGBToHSV_8u_AC4R, 1, false, AC4, AC4),
      FN(lumiHSVToRGB_8u_AC4R, 1, false, AC4, AC4),
      FN(lumiRGBToHSV_16u_C3R, 2, false, C3, C3),
      FN(lumiHSVToRGB_16u_C3R, 2, false, C3, C3),
      FN(lumiRGBToHSV_16u_AC4R, 2, false, AC4, AC4),
      FN(lumiHSVToRGB_16u_AC4R, 2, false, AC4, AC4),
      FN(lumiRGBToHLS_8u_C3R, 1, false, C3, C3),
      FN(lumiRGBToHLS_8u_AC4R, 1, false, AC4, AC4),
      FN(lumiHLSToRGB_8u_C3R, 1, false, C3, C3),
      FN(lumiHLSToRGB_8u_AC4R, 1, false, AC4, AC4),
      FN(lumiRGBToHLS_16u_C3R, 2, false, C3, C3),
      FN(lumiRGBToHLS_16u_AC4R, 2, false, AC4, AC4),
      FN(lumiHLSToRGB_16u_C3R, 2, false, C3, C3),
      FN(lumiHLSToRGB_16u_AC4R, 2, false, AC4, AC4),
      FN(lumiRGBToHLS_16s_C3R, 2, false, C3, C3),
      FN(lumiRGBToHLS_16s_AC4R, 2, false, AC4, AC4),
      FN(lumiHLSToRGB_16s_C3R, 2, false, C3, C3),
      FN(lumiHLSToRGB_16s_AC4R, 2, false, AC4, AC4),
      FN(lumiRGBToHLS_32f_C3R, 4, true, C3, C3),
      FN(lumiRGBToHLS_32f_AC4R, 4, true, AC4, AC4),
      FN(lumiHLSToRGB_32f_C3R, 4, true, C3, C3),
      FN(lumiHLSToRGB_32f_AC4R, 4, true, AC4, AC4),
      FN(lumiBGRToHLS_8u_AC4R, 1, false, AC4, AC4),
      FN(lumiBGRToHLS_8u_AP4C4R, 1, false, P4, AC4),
      FN(lumiBGRToHLS_8u_AC4P4R, 1, false, AC4, P4),
      FN(lumiBGRToHLS_8u_P3C3R, 1, false, P3, C3),
      FN(lumiBGRToHLS_8u_C3P3R, 1, false, C3, P3),
      FN(lumiHLSToBGR_8u_AC4P4R, 1, false, AC4, P4),
      FN(lumiHLSToBGR_8u_P3C3R, 1, false, P3, C3),
      FN(lumiHLSToBGR_8u_C3P3R, 1, false, C3, P3),
  };
  return fns;
}
#undef FN

void PrintTo(const Fn& f, std::ostream* os) { *os << f.name; }

// The planes of one side, each with guard bytes; samples aligned to their size.
struct Images {
  std::vector<std::unique_ptr<GuardedImage>> planes;
  void* ptrs[4] = {nullptr, nullptr, nullptr, nullptr};
  Images(const Fn& f, Side side, int w, int h) {
    for (int p = 0; p < side.planes; ++p) {
      planes.push_back(std::make_unique<GuardedImage>(w * side.channels * f.es, h, 4 * f.es, f.es));
      ptrs[p] = planes.back()->data();
    }
  }
  int step() const { return planes[0]->step(); }
  void fill(const Fn& f, std::mt19937& rng) {
    for (auto& img : planes) {
      if (!f.isFloat) {
        img->fillRandom(rng);
        continue;
      }
      std::uniform_real_distribution<float> unit(0.0f, 1.0f);
      for (int y = 0; y < img->height(); ++y)
        for (int x = 0; x < img->rowBytes() / 4; ++x) img->rowAs<float>(y)[x] = unit(rng);
    }
  }
  std::vector<uint8_t> bytes() const {
    std::vector<uint8_t> all;
    for (const auto& img : planes) {
      const std::vector<uint8_t> b = img->regionBytes();
      all.insert(all.end(), b.begin(), b.end());
    }
    return all;
  }
  bool guardsIntact() const {
    for (const auto& img : planes)
      if (!img->guardsIntact()) return false;
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

class RoundingTeams : public ::testing::TestWithParam<Fn> {};

TEST_P(RoundingTeams, SameBytesForTeamSizesInEveryModeAndModeKept) {
  const Fn& f = GetParam();
  const unsigned saved = _mm_getcsr();
  for (LumSize roi : kSizes) {
    Images src(f, f.src, roi.width, roi.height);
    std::mt19937 rng(static_cast<unsigned>(roi.width * 7 + roi.height));
    src.fill(f, rng);
    for (const Mode& mode : kModes) {
      std::vector<uint8_t> team1;
      for (int team : {1, 2, 4}) {
        Images dst(f, f.dst, roi.width, roi.height);
        lumtest::TeamSize scope(team);
        // The workers start in another mode than the caller's.
        setWorkersMode(team, mode.bits == _MM_ROUND_NEAREST ? _MM_ROUND_UP : _MM_ROUND_NEAREST);
        _MM_SET_ROUNDING_MODE(mode.bits);
        const unsigned before = _mm_getcsr();
        const LumStatus st = f.call(src.ptrs, src.step(), dst.ptrs, dst.step(), roi);
        const unsigned after = _mm_getcsr();
        _mm_setcsr(saved);
        const std::string at = std::string(f.name) + " " + std::to_string(roi.width) + "x" +
                               std::to_string(roi.height) + " round " + mode.name + " team " +
                               std::to_string(team);
        ASSERT_EQ(st, LumOk) << at;
        ASSERT_EQ(after & kControlBits, before & kControlBits) << at << ": caller's MXCSR changed";
        ASSERT_TRUE(dst.guardsIntact()) << at;
        if (team == 1)
          team1 = dst.bytes();
        else
          EXPECT_TRUE(dst.bytes() == team1) << at << ": bytes differ from team 1";
      }
    }
  }
  setWorkersMode(4, _MM_ROUND_NEAREST);
}

// A worker keeps its own mode: with the workers of a team of 4 in round-up, a
// call in round-down leaves them in round-up (the caller's mode is taken for
// the region only).
TEST_P(RoundingTeams, WorkersKeepTheirOwnMode) {
  const Fn& f = GetParam();
  const LumSize roi{101, 100};
  Images src(f, f.src, roi.width, roi.height), dst(f, f.dst, roi.width, roi.height);
  std::mt19937 rng(3);
  src.fill(f, rng);
  lumtest::TeamSize scope(4);
  const unsigned saved = _mm_getcsr();
  setWorkersMode(4, _MM_ROUND_UP);
  _MM_SET_ROUNDING_MODE(_MM_ROUND_DOWN);
  const LumStatus st = f.call(src.ptrs, src.step(), dst.ptrs, dst.step(), roi);
  _mm_setcsr(saved);
  int notUp = 0;
#pragma omp parallel num_threads(4) reduction(+ : notUp)
  notUp += omp_get_thread_num() != 0 && _MM_GET_ROUNDING_MODE() != _MM_ROUND_UP;
  setWorkersMode(4, _MM_ROUND_NEAREST);
  ASSERT_EQ(st, LumOk);
  EXPECT_EQ(notUp, 0) << f.name << ": workers left in another mode";
}

INSTANTIATE_TEST_SUITE_P(Threaded, RoundingTeams, ::testing::ValuesIn(functions()),
                         [](const ::testing::TestParamInfo<Fn>& info) {
                           return std::string(info.param.name);
                         });

}  // namespace
