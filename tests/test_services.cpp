// Service primitives and aligned allocation: the version record, the
// allocator table as a replaced allocator sees it, the copy and fill row
// kernels at every alignment with and without streaming stores, the
// non-temporal thresholds, maximum with NaN and infinities, the two sums and
// the generator against fixed values of this library (the same bits on both
// targets), the mean.  Guard bytes, statuses and check order of the image
// functions: the generic suite.
#include <gtest/gtest.h>
#include <float.h>
#include <math.h>
#include <stdint.h>
#include <string.h>

#include <algorithm>
#include <initializer_list>
#include <random>
#include <vector>

#include "frame/pccsupport.h"
#include "lumcc.h"
#include "test_support.h"

using lumtest::GuardedImage;

namespace {

template <class To, class From>
To bits(From f) {
  static_assert(sizeof(To) == sizeof(From), "same size");
  To t;
  memcpy(&t, &f, sizeof t);
  return t;
}

// The hidden word below each block is a pointer: 4 bytes on i386, 8 on x86-64.
constexpr bool k64 = sizeof(void*) == 8;
constexpr unsigned kExtra = k64 ? 40u : 36u;
constexpr uintptr_t kLift = k64 ? 39u : 35u;

// ===========================================================================
// A replacement allocator: hands out blocks from an arena at a chosen offset
// from a 64-byte boundary and records what it was asked.
struct FakeHeap {
  alignas(64) static uint8_t arena[1 << 16];
  static int mallocCalls, freeCalls;
  static size_t lastSize;
  static void* lastFreed;
  static int offset;
  static bool fail;
  static void* fakeMalloc(size_t n) {
    ++mallocCalls;
    lastSize = n;
    if (fail) return nullptr;
    return arena + offset;
  }
  static void fakeFree(void* p) {
    ++freeCalls;
    lastFreed = p;
  }
};
alignas(64) uint8_t FakeHeap::arena[1 << 16];
int FakeHeap::mallocCalls, FakeHeap::freeCalls;
size_t FakeHeap::lastSize;
void* FakeHeap::lastFreed;
int FakeHeap::offset;
bool FakeHeap::fail;

// Installs the fake heap for the life of the object.
class HeapScope {
 public:
  explicit HeapScope(int offset = 0, bool fail = false) : m_(i_malloc), f_(i_free) {
    FakeHeap::mallocCalls = FakeHeap::freeCalls = 0;
    FakeHeap::lastSize = 0;
    FakeHeap::lastFreed = nullptr;
    FakeHeap::offset = offset;
    FakeHeap::fail = fail;
    i_malloc = FakeHeap::fakeMalloc;
    i_free = FakeHeap::fakeFree;
  }
  ~HeapScope() {
    i_malloc = m_;
    i_free = f_;
  }

 private:
  void* (*m_)(size_t);
  void (*f_)(void*);
};

TEST(Version, RecordOfThisBuild) {
  const LumLibraryVersion* v = lumccGetLibVersion();
  ASSERT_NE(v, nullptr);
  EXPECT_EQ(v, lumccGetLibVersion());
  EXPECT_EQ(v->versionMajor, 5);
  EXPECT_EQ(v->versionMinor, 2);
  EXPECT_EQ(v->buildMajor, 108);
  EXPECT_EQ(v->buildMinor, 321);
  EXPECT_EQ(memcmp(v->cpuTag, "w7\0\0", 4), 0);
  EXPECT_STREQ(v->fileName, "liblumccw7.so.5.2");
  EXPECT_STREQ(v->versionText, "5.2");
  EXPECT_STREQ(v->buildDate, "Jul 11 2007");
  EXPECT_EQ(i_version, 1);
  EXPECT_EQ(i_min_version, 0);
}

TEST(Alloc, ReplacedMallocSeesRequestPlusAlignmentAndHiddenWord) {
  for (int count : {1, 7, 100, 4097}) {
    for (int which = 0; which < 3; ++which) {
      HeapScope heap(0);
      void* p = which == 0 ? static_cast<void*>(lumsMalloc_16s(count))
                : which == 1 ? static_cast<void*>(lumsMalloc_16u(count))
                             : static_cast<void*>(lumsMalloc_32f(count));
      const unsigned elem = which == 2 ? 4u : 2u;
      ASSERT_NE(p, nullptr);
      EXPECT_EQ(FakeHeap::mallocCalls, 1);
      EXPECT_EQ(FakeHeap::lastSize, count * elem + kExtra) << "count " << count << " form " << which;
    }
  }
}

TEST(Alloc, ByteCountWrapsIn32Bits) {
  HeapScope heap(0);
  // 0x40000000 floats: 2^32 bytes, which wraps to 0 before the extra is added.
  void* p = lumsMalloc_32f(0x40000000);
  EXPECT_EQ(FakeHeap::lastSize, static_cast<size_t>(kExtra));
  EXPECT_NE(p, nullptr);
  lumsMalloc_16s(0x7FFFFFFF);  // 2^32 - 2 + extra wraps too
  EXPECT_EQ(FakeHeap::lastSize, static_cast<size_t>(kExtra - 2));
}

TEST(Alloc, EveryRawOffsetGivesA32ByteAlignedBlockWithRawBelowIt) {
  for (int off = 0; off < 64; ++off) {
    HeapScope heap(off);
    const int count = 10;
    Lum32f* p = lumsMalloc_32f(count);
    ASSERT_NE(p, nullptr);
    const uintptr_t raw = reinterpret_cast<uintptr_t>(FakeHeap::arena + off);
    const uintptr_t got = reinterpret_cast<uintptr_t>(p);
    EXPECT_EQ(got % 32, 0u) << off;
    EXPECT_EQ(got, (raw + kLift) & ~uintptr_t{31}) << off;
    EXPECT_GE(got, raw + sizeof(void*)) << off;
    EXPECT_LE(got + count * 4, raw + FakeHeap::lastSize) << off;
    lumsFree(p);
    EXPECT_EQ(FakeHeap::freeCalls, 1);
    EXPECT_EQ(FakeHeap::lastFreed, FakeHeap::arena + off) << off;
  }
}

TEST(Alloc, CountsBelowOneAndFailuresGiveNull) {
  {
    HeapScope heap;
    EXPECT_EQ(lumsMalloc_32f(0), nullptr);
    EXPECT_EQ(lumsMalloc_32f(-1), nullptr);
    EXPECT_EQ(lumsMalloc_16s(0), nullptr);
    EXPECT_EQ(lumsMalloc_16u(INT32_MIN), nullptr);
    EXPECT_EQ(FakeHeap::mallocCalls, 0);
    lumsFree(nullptr);
    EXPECT_EQ(FakeHeap::freeCalls, 0);
  }
  {
    HeapScope heap(0, /*fail=*/true);
    EXPECT_EQ(lumsMalloc_16u(5), nullptr);
    EXPECT_EQ(FakeHeap::mallocCalls, 1);
  }
}

// ===========================================================================
// Copy and fill.

// Row kernels straight: every length to 130 and a few longer ones, at every
// source and destination alignment, with and without streaming stores, in a
// buffer whose bytes around the row must stay as they were.
TEST(CopySetKernels, EveryLengthAndAlignmentWritesExactlyTheRow) {
  std::mt19937 rng(7);
  std::vector<int> lengths;
  for (int n = 0; n <= 130; ++n) lengths.push_back(n);
  for (int n : {191, 192, 193, 255, 256, 257, 1000, 4099}) lengths.push_back(n);
  std::vector<uint8_t> src(4099 + 64), buf(4099 + 96);
  for (auto& b : src) b = static_cast<uint8_t>(rng());
  uint8_t pattern[16];
  memset(pattern, 0xC3, 16);
  using Kernel = void (*)(const Lum8u*, Lum8u*, int, int);
  const Kernel kernels[] = {lum::svc::owniCopy_8u_C1_W7, lum::svc::ownccCopy_8u_C1_W7};
  for (int n : lengths)
    for (int sm = 0; sm < 16; ++sm)
      for (int dm = 0; dm < 16; ++dm)
        for (int nt = 0; nt < 2; ++nt) {
          uint8_t* base = buf.data() + (32 - reinterpret_cast<uintptr_t>(buf.data()) % 16);
          uint8_t* d = base + dm;
          const uint8_t* s = src.data() + (16 - reinterpret_cast<uintptr_t>(src.data()) % 16) + sm;
          // The window checked: from the buffer's start to 48 bytes past the row.
          const size_t window = static_cast<size_t>(d - buf.data()) + n + 48;
          for (int k = 0; k < 3; ++k) {
            memset(buf.data(), 0xEE, window);
            if (k < 2)
              kernels[k](s, d, n, nt);
            else
              lum::svc::owniSet_8u_C1_W7(pattern, d, n, nt);
            bool ok = true;
            for (size_t i = 0; i < window && ok; ++i) {
              const ptrdiff_t j = buf.data() + i - d;
              const uint8_t want = (j < 0 || j >= n) ? 0xEE : (k < 2 ? s[j] : 0xC3);
              ok = buf[i] == want;
            }
            ASSERT_TRUE(ok) << "kernel " << k << " n=" << n << " sm=" << sm << " dm=" << dm << " nt=" << nt;
          }
        }
}

// Steps equal to the width: one run of width * height bytes whose row
// boundaries fall inside the kernel's blocks.  Steps that differ must not be
// collapsed.
TEST(CopySet, ContiguousImagesAreOneRun) {
  std::mt19937 rng(3);
  for (int w : {1, 7, 33, 63, 100}) {
    const int h = 97;
    std::vector<uint8_t> s(w * h + 1), d(w * h + 17, 0x11), d2(w * h + 17, 0x11);
    for (auto& b : s) b = static_cast<uint8_t>(rng());
    ASSERT_EQ(lumiCopy_8u_C1R(s.data() + 1, w, d.data() + 3, w, {w, h}), LumOk);
    EXPECT_EQ(memcmp(d.data() + 3, s.data() + 1, w * h), 0) << w;
    EXPECT_EQ(d[2], 0x11);
    EXPECT_EQ(d[3 + w * h], 0x11);
    ASSERT_EQ(lumiSet_8u_C1R(0x9D, d2.data() + 5, w, {w, h}), LumOk);
    EXPECT_EQ(std::count(d2.begin(), d2.end(), 0x9D), w * h);
    EXPECT_EQ(d2[4], 0x11);
    // Source contiguous, destination padded: rows stay rows.
    GuardedImage dst(w, h, 1, 4);
    ASSERT_EQ(lumiCopy_8u_C1R(s.data(), w, dst.data(), dst.step(), {w, h}), LumOk);
    EXPECT_EQ(dst.regionBytes(), std::vector<uint8_t>(s.begin(), s.begin() + w * h));
    EXPECT_TRUE(dst.guardsIntact());
  }
}

TEST(CopySet, NonTemporalThresholds) {
  using lum::svc::copyNonTemporal;
  using lum::svc::setNonTemporal;
  EXPECT_FALSE(copyNonTemporal(1024, 1024));     // 1048576
  EXPECT_TRUE(copyNonTemporal(1048577, 1));
  EXPECT_TRUE(copyNonTemporal(1, 1048577));
  EXPECT_FALSE(setNonTemporal(1448, 1448));      // 2096704
  EXPECT_FALSE(setNonTemporal(2048, 1024));      // 2097152: the test is strict
  EXPECT_TRUE(setNonTemporal(2097153, 1));
  EXPECT_FALSE(copyNonTemporal(65536, 65536));   // the 32-bit product wraps to 0
}

// Steps are not checked: a step of 0 writes the first row height times.
TEST(CopySet, StepsAreNotChecked) {
  GuardedImage dst(8, 2);
  dst.fill(0);
  ASSERT_EQ(lumiSet_8u_C1R(9, dst.data(), 0, {8, 2}), LumOk);
  for (int x = 0; x < 8; ++x) {
    EXPECT_EQ(dst.row(0)[x], 9);
    EXPECT_EQ(dst.row(1)[x], 0);
  }
}

// ===========================================================================
// Float images.

void fillFloats(GuardedImage& img, int w, const std::vector<float>& v) {
  for (int y = 0; y < img.height(); ++y)
    for (int x = 0; x < w; ++x) memcpy(img.row(y) + 4 * x, &v[y * w + x], 4);
}

std::vector<float> randomFloats(std::mt19937& rng, size_t n) {
  std::uniform_real_distribution<float> mant(-1.f, 1.f);
  std::uniform_int_distribution<int> ex(-10, 30);
  std::vector<float> v(n);
  for (auto& x : v) x = ldexpf(mant(rng), ex(rng));
  return v;
}

float maxOf(const GuardedImage& img, int w, int h, int step) {
  float m;
  EXPECT_EQ(lumiMax_32f_C1R(reinterpret_cast<const Lum32f*>(img.data()), step, {w, h}, &m), LumOk);
  return m;
}

TEST(Max, EqualsTheMaximumAtEveryWidthAndAlignment) {
  std::mt19937 rng(21);
  for (int w = 1; w <= 70; ++w)
    for (int mis : {0, 4, 8, 12, 2})
      for (int h : {1, 4}) {
        GuardedImage img(4 * w, h, 4 + mis % 4, mis);
        const auto v = randomFloats(rng, static_cast<size_t>(w) * h);
        fillFloats(img, w, v);
        EXPECT_EQ(bits<uint32_t>(maxOf(img, w, h, img.step())),
                  bits<uint32_t>(*std::max_element(v.begin(), v.end())))
            << "w=" << w << " h=" << h << " mis=" << mis;
      }
}

TEST(Max, MinusInfinitiesGiveMinusFltMax) {
  for (int w : {1, 3, 4, 9}) {
    GuardedImage img(4 * w, 2, 4, 0);
    fillFloats(img, w, std::vector<float>(2 * w, -INFINITY));
    EXPECT_EQ(bits<uint32_t>(maxOf(img, w, 2, img.step())), 0xFF7FFFFFu) << w;
  }
}

// A NaN replaces its running value only until the next element of that
// value: element 4k + j of a row goes to value j, the last (width & 3) to
// value 0, and at the end (0 meets 2, 1 meets 3, then the two results) a NaN
// survives only as value 3.
TEST(Max, NaNReplacesTheRunningValueAtThatMomentOnly) {
  const float n = NAN;
  struct Case {
    std::vector<float> row;
    bool wantNaN;
    float want;
  };
  const Case cases[] = {
      {{n, 1, 2, 3, 5, 0, 0, 0}, false, 5},   // value 0: NaN, then 5
      {{1, 2, 3, n}, true, 0},                // value 3 ends as NaN
      {{1, 2, n, 0}, false, 2},               // value 2 NaN: lost when 0 meets 2
      {{1, n, 3, 0}, false, 3},               // value 1 NaN: lost when 1 meets 3
      {{1, 2, 3, n, 0, 0, 0, -7}, false, 3},  // value 3 NaN followed by -7
      {{4, 5, 6, 7, n}, false, 7},            // tail NaN on value 0, lost
      {{n}, false, -FLT_MAX},                 // a lone NaN leaves -FLT_MAX
  };
  for (const Case& c : cases) {
    const int w = static_cast<int>(c.row.size());
    GuardedImage img(4 * w, 1, 4, 8);
    fillFloats(img, w, c.row);
    const float m = maxOf(img, w, 1, img.step());
    if (c.wantNaN)
      EXPECT_TRUE(isnan(m)) << w;
    else
      EXPECT_EQ(m, c.want) << "width " << w;
  }
}

// ---------------------------------------------------------------------------
// Sums.

double sumOf(const GuardedImage& img, int w, int h, int hint) {
  double s = -1;
  EXPECT_EQ(lumiSum_32f_C1R(reinterpret_cast<const Lum32f*>(img.data()), img.step(), {w, h}, &s, hint), LumOk);
  return s;
}

uint64_t fnv1a(uint64_t h, const void* p, size_t n) {
  const uint8_t* b = static_cast<const uint8_t*>(p);
  for (size_t i = 0; i < n; ++i) h = (h ^ b[i]) * 0x100000001b3ull;
  return h;
}
constexpr uint64_t kFnvBasis = 0xcbf29ce484222325ull;

// Floats of exponents -10 to 30 from a plain congruential sequence: exact
// arithmetic, so the same samples on every target.
void fillGrid(GuardedImage& img, int w, int h, uint32_t& st) {
  for (int y = 0; y < h; ++y)
    for (int x = 0; x < w; ++x) {
      st = st * 1664525u + 1013904223u;
      const int m = static_cast<int>(st >> 8) - (1 << 23);
      st = st * 1664525u + 1013904223u;
      const float v = ldexpf(static_cast<float>(m) / 8388608.0f, static_cast<int>((st >> 16) % 41) - 10);
      memcpy(img.row(y) + 4 * x, &v, 4);
    }
}

// Widths 1 to 70, rows at every word alignment off a 16-byte boundary and
// at addresses that are no multiple of 4, pads that make the rows of one
// image start at different alignments, both paths: the bits of every sum of
// the grid (hashed) and of a few (as they stand) are those of this library.
TEST(Sum, FixedBitsOverWidthsAlignmentsAndPads) {
  struct Known {
    int w, mis, hint;
    uint64_t bits;
  };
  const Known known[] = {
      {7, 0, 0, 0x41a46b014844aca0ull},  {7, 0, 2, 0x41a46b014645c73bull},
      {7, 4, 0, 0x41a59869e42d65c0ull},  {7, 4, 2, 0x41a59869d48b3962ull},
      {7, 1, 0, 0xc1be4ae79b130840ull},  {7, 1, 2, 0xc1be4ae79c376264ull},
      {21, 4, 0, 0x41cee759dcbe3b00ull}, {21, 4, 2, 0x41cee759da0a9626ull},
      {21, 8, 0, 0x41a0c442d1b00000ull}, {21, 8, 2, 0x41a0c44224c49388ull},
      {70, 12, 0, 0x41d5ef2dd4000000ull}, {70, 12, 2, 0x41d5ef2dd6e14c6cull},
      {70, 2, 0, 0x41d4a32dec000000ull}, {70, 2, 2, 0x41d4a32df9c73f00ull},
  };
  uint64_t hash = kFnvBasis;
  uint32_t st = 1;
  for (int w = 1; w <= 70; ++w)
    for (int mis : {0, 4, 8, 12, 1, 2})
      for (int pad : {4, 6, 16}) {
        GuardedImage img(4 * w, 5, pad, mis);
        fillGrid(img, w, 5, st);
        for (int hint : {0, 1, 2}) {
          const uint64_t got = bits<uint64_t>(sumOf(img, w, 5, hint));
          hash = fnv1a(hash, &got, 8);
          for (const Known& k : known) {
            if (k.w == w && k.mis == mis && k.hint == hint && pad == 6) {
              EXPECT_EQ(got, k.bits) << "w=" << w << " mis=" << mis << " hint=" << hint;
            }
          }
        }
      }
  EXPECT_EQ(hash, 0xa958ab50bd63652bull);
}

// Worked values: {1, 1, 1, 2^24} sums to 2^24 + 2 at a 16-byte boundary
// (lanes 1 and 3 meet in single precision) and to 2^24 + 3 at 4 past one
// (three head elements, the last one alone), and exactly with hint 2.  The
// lanes 2 and 3 are added onto lanes 0 and 1, not moved there.
TEST(Sum, WorkedValuesDependOnTheRowAddress) {
  const std::vector<float> row = {1, 1, 1, 16777216.f};
  GuardedImage at0(16, 1, 0, 0), at4(16, 1, 0, 4);
  fillFloats(at0, 4, row);
  fillFloats(at4, 4, row);
  EXPECT_EQ(sumOf(at0, 4, 1, 0), 16777218.0);
  EXPECT_EQ(sumOf(at4, 4, 1, 0), 16777219.0);
  EXPECT_EQ(sumOf(at0, 4, 1, 2), 16777219.0);
  // {2^24, 2^24, 1, 1}: each 1 is lost in single precision on the fast path.
  fillFloats(at0, 4, {16777216.f, 16777216.f, 1, 1});
  EXPECT_EQ(sumOf(at0, 4, 1, 0), 33554432.0);
  EXPECT_EQ(sumOf(at0, 4, 1, 2), 33554434.0);
}

TEST(Sum, AccurateSinglePixelIsExact) {
  for (float v : {0.1f, -3.3333333f, 1e-30f, 3.0e38f}) {
    double s = 0;
    ASSERT_EQ(lumiSum_32f_C1R(&v, 4, {1, 1}, &s, 2), LumOk);
    EXPECT_EQ(bits<uint64_t>(s), bits<uint64_t>(static_cast<double>(v)));
  }
}

// The fast total is 80-bit: 2^53 + 1 is kept until the final rounding.
TEST(Sum, FastTotalIsExtendedThenRoundedOnce) {
  const float rows[3] = {9007199254740992.f, 1.f, 1.f};  // 2^53, 1, 1
  double s = 0;
  ASSERT_EQ(lumiSum_32f_C1R(rows, 4, {1, 3}, &s, 0), LumOk);
  EXPECT_EQ(s, 9007199254740994.0);  // a double total would stay at 2^53
}

// The mean divides the double sum by the 32-bit pixel count in double: rows
// 2^53, 1, 0 sum to 2^53 + 1 in 80 bits, which rounds to 2^53 before the
// division, so the mean is 2^53 / 3 rounded, not the exact 3002399751580331.
TEST(Mean, DividesTheRoundedSumInDouble) {
  const float rows[3] = {9007199254740992.f, 1.f, 0.f};
  double m = 0;
  ASSERT_EQ(lumiMean_32f_C1R(rows, 4, {1, 3}, &m, 0), LumOk);
  volatile double twoTo53 = 9007199254740992.0, three = 3.0;
  EXPECT_EQ(m, twoTo53 / three);
  EXPECT_NE(m, 3002399751580331.0);
  std::mt19937 rng(41);
  for (int w : {1, 5, 17, 64}) {
    GuardedImage img(4 * w, 3, 4, 4);
    fillFloats(img, w, randomFloats(rng, 3 * w));
    for (int hint : {0, 2}) {
      double mean = 0;
      ASSERT_EQ(lumiMean_32f_C1R(reinterpret_cast<const Lum32f*>(img.data()), img.step(), {w, 3}, &mean, hint), LumOk);
      volatile double sum = sumOf(img, w, 3, hint), n = 3.0 * w;
      EXPECT_EQ(bits<uint64_t>(mean), bits<uint64_t>(sum / n));
    }
  }
}

// ===========================================================================
// Generator.

TEST(Rand, StateAfterInit) {
  LumRandState16s* s = nullptr;
  ASSERT_EQ(lumsRandUniformInitAlloc_16s(&s, -100, 3000, 0xDEADBEEFu), LumOk);
  ASSERT_NE(s, nullptr);
  EXPECT_EQ(reinterpret_cast<uintptr_t>(s) % 32, 0u);
  EXPECT_EQ(s->tag, 36);
  EXPECT_EQ(s->seed, 0xDEADBEEFu);
  EXPECT_EQ(s->low, -100);
  EXPECT_EQ(s->high, 3000);
  EXPECT_EQ(bits<uint64_t>(s->scale), 0x3ea838000000000bull);  // 3100 * K
  EXPECT_EQ(s->offset, 1450.0);
  EXPECT_EQ(s->lcg, 1131199209u);
  EXPECT_EQ(s->carry, -1);
  EXPECT_EQ(s->s1, 0xDEADBEEFu);
  EXPECT_EQ(s->s2, 0x1f31fbd6u);
  EXPECT_EQ(s->s3, 0xbd157bd1u);
  EXPECT_EQ(lumsRandUniformFree_16s(s), LumOk);
  LumRandState32f* f = nullptr;
  ASSERT_EQ(lumsRandUniformInitAlloc_32f(&f, 2.f, -1.5f, 1u), LumOk);
  EXPECT_EQ(f->tag, 37);
  EXPECT_EQ(f->low, 2.f);
  EXPECT_EQ(bits<uint64_t>(f->scale), 0xbe0c00000000000cull);  // bounds are not compared
  EXPECT_EQ(f->offset, 0.25);
  EXPECT_EQ(lumsRandUniformFree_32f(f), LumOk);
}

// Draws of one state in calls of the given lengths, one after the other.
std::vector<Lum16s> draws16(int lo, int hi, uint32_t seed, std::initializer_list<int> calls) {
  LumRandState16s* s = nullptr;
  EXPECT_EQ(lumsRandUniformInitAlloc_16s(&s, static_cast<Lum16s>(lo), static_cast<Lum16s>(hi), seed), LumOk);
  std::vector<Lum16s> v;
  for (int n : calls) {
    v.resize(v.size() + n);
    EXPECT_EQ(lumsRandUniform_16s(v.data() + v.size() - n, n, s), LumOk);
  }
  lumsRandUniformFree_16s(s);
  return v;
}
std::vector<uint32_t> draws32(float lo, float hi, uint32_t seed, std::initializer_list<int> calls) {
  LumRandState32f* s = nullptr;
  EXPECT_EQ(lumsRandUniformInitAlloc_32f(&s, lo, hi, seed), LumOk);
  std::vector<uint32_t> v;
  for (int n : calls) {
    std::vector<Lum32f> f(n);
    EXPECT_EQ(lumsRandUniform_32f(f.data(), n, s), LumOk);
    for (float x : f) v.push_back(bits<uint32_t>(x));
  }
  lumsRandUniformFree_32f(s);
  return v;
}

// The first draws of a few seeds and bounds as they stand, and a hash of
// 300 draws of every seed and bound of the grids.
TEST(Rand, FixedDraws) {
  const struct {
    uint32_t seed;
    int lo, hi;
    std::vector<Lum16s> first;
  } k16[] = {
      {0u, 0, 255, {0, 33, 53, 102, 90, 188, 210, 60}},
      {1u, -32768, 32767, {25574, -24239, -26149, 908, -16891, 30296, 6761, 4498}},
      {12345u, -5, 5, {-1, 4, 0, 4, 3, 4, 3, 4}},
      {0xFFFFFFFFu, 100, -100, {77, 73, 35, 41, 7, -3, 90, -80}},
  };
  for (const auto& k : k16) EXPECT_EQ(draws16(k.lo, k.hi, k.seed, {8}), k.first) << "seed " << k.seed;
  uint64_t hash = kFnvBasis;
  for (uint32_t seed : {0u, 1u, 12345u, 0xFFFFFFFFu})
    for (const auto& k : k16) {
      const std::vector<Lum16s> got = draws16(k.lo, k.hi, seed, {300});
      hash = fnv1a(hash, got.data(), 600);
    }
  EXPECT_EQ(hash, 0x3835c673883db003ull);
  const struct {
    uint32_t seed;
    float lo, hi;
    std::vector<uint32_t> first;
  } k32[] = {
      {0u, 0.f, 1.f, {0x3a7aabc0u, 0x3e05487du, 0x3e58c987u, 0x3ece6d16u, 0x3eb4b56fu, 0x3f3daba9u, 0x3f53171du, 0x3e723d0bu}},
      {7u, -1.f, 1.f, {0xbf0c4a5fu, 0xbf3d6a82u, 0xbe018bc7u, 0xbf24d9f6u, 0x3e1ff1edu, 0xbed65009u, 0xbee6875au, 0x3dfac112u}},
      {0x80000000u, -1e6f, 3.5f, {0xc973e83cu, 0xc9545d03u, 0xc88cc468u, 0xc911b569u, 0xc80f9a93u, 0xc93953a9u, 0xc924e637u, 0xc93a62e3u}},
      {0u, 1.f, 0.f, {0x3f7fc155u, 0x3f5eade1u, 0x3f49cd9eu, 0x3f18c975u, 0x3f25a548u, 0x3e84a8aeu, 0x3e33a38au, 0x3f4370bdu}},
  };
  hash = kFnvBasis;
  for (uint32_t seed : {0u, 7u, 0x80000000u})
    for (const auto& k : k32) {
      const std::vector<uint32_t> got = draws32(k.lo, k.hi, seed, {300});
      hash = fnv1a(hash, got.data(), 1200);
    }
  EXPECT_EQ(hash, 0x03f80a4447ef79bbull);
  for (const auto& k : k32) EXPECT_EQ(draws32(k.lo, k.hi, k.seed, {8}), k.first) << "seed " << k.seed;
  // Calls continue one sequence.
  EXPECT_EQ(draws32(-2.f, 9.f, 99u, {4, 4}), draws32(-2.f, 9.f, 99u, {8}));
  EXPECT_EQ(draws16(-300, 300, 5u, {4, 3, 1}), draws16(-300, 300, 5u, {8}));
}

// The scaling is 80-bit: with bounds 16383 and 32767 (scale 2^-18 (1 + 7 *
// 2^-52), offset 24575) the 140734th draw of seed 9 has r = -264765440 =
// -1010 * 2^18, which lands a hair below the integer 23565.  Extended
// precision keeps the hair and truncates to 23564; a double computation
// would round it away and give 23565.
TEST(Rand, ScalingIsExtendedPrecision) {
  EXPECT_EQ(draws16(16383, 32767, 9u, {140734}).back(), 23564);
}

// Null, then length, then tag; a failed call changes neither destination
// nor state.
TEST(Rand, CheckOrderAndFailedCallsChangeNothing) {
  LumRandState16s* s16 = nullptr;
  LumRandState32f* s32 = nullptr;
  ASSERT_EQ(lumsRandUniformInitAlloc_16s(&s16, 0, 10, 3u), LumOk);
  ASSERT_EQ(lumsRandUniformInitAlloc_32f(&s32, 0, 10, 3u), LumOk);
  std::vector<uint8_t> before16(sizeof(LumRandState16s_)), before32(sizeof(LumRandState32f_));
  memcpy(before16.data(), s16, before16.size());
  memcpy(before32.data(), s32, before32.size());
  Lum16s d16[4] = {7, 7, 7, 7};
  Lum32f d32[4] = {7, 7, 7, 7};
  auto* s32as16 = reinterpret_cast<LumRandState16s*>(s32);
  auto* s16as32 = reinterpret_cast<LumRandState32f*>(s16);
  EXPECT_EQ(lumsRandUniform_16s(nullptr, 0, s32as16), LumErrNullPtr);
  EXPECT_EQ(lumsRandUniform_16s(d16, 4, nullptr), LumErrNullPtr);
  EXPECT_EQ(lumsRandUniform_16s(d16, 0, s16), LumErrSize);
  EXPECT_EQ(lumsRandUniform_16s(d16, -1, s32as16), LumErrSize);
  EXPECT_EQ(lumsRandUniform_16s(d16, 4, s32as16), LumErrContext);
  EXPECT_EQ(lumsRandUniform_32f(nullptr, 4, s32), LumErrNullPtr);
  EXPECT_EQ(lumsRandUniform_32f(d32, 0, s16as32), LumErrSize);
  EXPECT_EQ(lumsRandUniform_32f(d32, 4, s16as32), LumErrContext);
  EXPECT_EQ(memcmp(before16.data(), s16, before16.size()), 0);
  EXPECT_EQ(memcmp(before32.data(), s32, before32.size()), 0);
  for (int i = 0; i < 4; ++i) {
    EXPECT_EQ(d16[i], 7);
    EXPECT_EQ(d32[i], 7.f);
  }
  EXPECT_EQ(lumsRandUniformInitAlloc_16s(nullptr, 0, 1, 0), LumErrNullPtr);
  EXPECT_EQ(lumsRandUniformInitAlloc_32f(nullptr, 0, 1, 0), LumErrNullPtr);
  EXPECT_EQ(lumsRandUniformFree_16s(s16), LumOk);
  EXPECT_EQ(lumsRandUniformFree_32f(s32), LumOk);
}

// InitAlloc asks for 48 and 52 elements whatever the records' sizes; Free
// with a state of the other type keeps the memory; a failed allocation is
// LumErrMemAlloc and leaves *ppState alone.
TEST(Rand, AllocationAndFreeThroughTheTable) {
  {
    HeapScope heap(0);
    LumRandState16s* s = nullptr;
    ASSERT_EQ(lumsRandUniformInitAlloc_16s(&s, 0, 1, 0), LumOk);
    EXPECT_EQ(FakeHeap::lastSize, 48u * 2 + kExtra);
    EXPECT_EQ(lumsRandUniformFree_32f(reinterpret_cast<LumRandState32f*>(s)), LumErrContext);
    EXPECT_EQ(FakeHeap::freeCalls, 0);
    EXPECT_EQ(lumsRandUniformFree_16s(s), LumOk);
    EXPECT_EQ(FakeHeap::freeCalls, 1);
    EXPECT_EQ(FakeHeap::lastFreed, FakeHeap::arena);
  }
  {
    HeapScope heap(5);
    LumRandState32f* s = nullptr;
    ASSERT_EQ(lumsRandUniformInitAlloc_32f(&s, 0, 1, 0), LumOk);
    EXPECT_EQ(FakeHeap::lastSize, 52u * 4 + kExtra);
    EXPECT_EQ(lumsRandUniformFree_16s(reinterpret_cast<LumRandState16s*>(s)), LumErrContext);
    EXPECT_EQ(FakeHeap::freeCalls, 0);
    EXPECT_EQ(lumsRandUniformFree_32f(s), LumOk);
    EXPECT_EQ(FakeHeap::lastFreed, FakeHeap::arena + 5);
  }
  {
    HeapScope heap(0, /*fail=*/true);
    auto* keep = reinterpret_cast<LumRandState16s*>(0x1000);
    LumRandState16s* s = keep;
    EXPECT_EQ(lumsRandUniformInitAlloc_16s(&s, 0, 1, 0), LumErrMemAlloc);
    EXPECT_EQ(s, keep);
    LumRandState32f* f = nullptr;
    EXPECT_EQ(lumsRandUniformInitAlloc_32f(&f, 0, 1, 0), LumErrMemAlloc);
    EXPECT_EQ(f, nullptr);
  }
  EXPECT_EQ(lumsRandUniformFree_16s(nullptr), LumErrNullPtr);
  EXPECT_EQ(lumsRandUniformFree_32f(nullptr), LumErrNullPtr);
}

}  // namespace
