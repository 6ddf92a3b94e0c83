// The generic suite: every image function of the table, whatever its family,
// against the promises all of them make.  Rows end on an inaccessible page
// (a read past the region faults) and every other byte around the region is
// a guard; widths from the function's smallest to 70 and a wide one; random
// steps and alignments; every instruction-set level gives the bytes of the
// SSE2 level; team sizes and steps do not change the bytes; a failed check
// writes nothing and the checks come in the order of the function's pattern.
// What a family's formulas give is left to the family's tests (worked
// values) and to the committed digests.
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "lum_table.h"
#include "paged_image.h"
#include "test_support.h"

namespace {

using lum::Layout;
using lum::Pattern;
using lum::Shape;
using lumtable::Entry;
using lumtest::PagedImage;

// The images of one call.  A side with one step gives all its planes the
// same padding, and so do planes of one size (the forms that take a step a
// plane for full-size planes use the first); planes of other sizes with a
// step each pad each their own way; a shape without steps gets tight rows
// (the function derives its strides).
struct Call {
  const Entry& e;
  LumSize roi;
  std::vector<std::unique_ptr<PagedImage>> src, dst;
  lumtable::Args args;

  Call(const Entry& entry, int w, int h, std::mt19937& rng) : e(entry), roi{w, h} {
    const int sPad = e.hasSteps() ? e.srcElem * static_cast<int>(rng() % 24) : 0;
    const int dPad = e.hasSteps() ? e.dstElem * static_cast<int>(rng() % 24) : 0;
    for (int p = 0; p < e.srcPlanes(); ++p) {
      const bool own = e.srcStepPerPlane() && e.srcRowBytes(p, w) != e.srcRowBytes(0, w);
      const int pad = own ? e.srcElem * static_cast<int>(rng() % 24) : sPad;
      src.emplace_back(new PagedImage(e.srcRowBytes(p, w), e.srcRows(p, h),
                                      e.srcRowBytes(p, w) + pad,
                                      e.srcElem * static_cast<int>(rng() % 16)));
    }
    for (int p = 0; p < e.dstPlanes(); ++p) {
      const bool own = e.dstStepPerPlane() && e.dstRowBytes(p, w) != e.dstRowBytes(0, w);
      const int pad = own ? e.dstElem * static_cast<int>(rng() % 24) : dPad;
      dst.emplace_back(new PagedImage(e.dstRowBytes(p, w), e.dstRows(p, h),
                                      e.dstRowBytes(p, w) + pad,
                                      e.dstElem * static_cast<int>(rng() % 16)));
    }
    for (auto& s : src) fillSamples(*s, e.srcElem, rng);
    for (auto& d : dst) d->fillRandom(rng);
    args.fill = static_cast<unsigned>(rng());
    resetArgs();
  }
  void resetArgs() {
    lumtable::Args a;
    for (size_t p = 0; p < src.size(); ++p) {
      a.src[p] = src[p]->data();
      a.srcSteps[p] = src[p]->step();
    }
    for (size_t p = 0; p < dst.size(); ++p) {
      a.dst[p] = dst[p]->data();
      a.dstSteps[p] = dst[p]->step();
    }
    a.roi = roi;
    a.fill = args.fill;
    args = a;
  }
  // Float samples mostly in a colour range, some of any bits.
  static void fillSamples(PagedImage& im, int elem, std::mt19937& rng) {
    im.fillRandom(rng);
    if (elem != 4) return;
    for (int y = 0; y < im.height(); ++y) {
      float* r = reinterpret_cast<float*>(im.row(y));
      for (int i = 0; i < im.rowBytes() / 4; ++i)
        if (rng() % 16) r[i] = static_cast<float>(static_cast<int>(rng() % 3000) - 500) / 2000.0f;
    }
  }
  LumStatus run() const { return e.call(args); }
  std::vector<uint8_t> out() const {
    std::vector<uint8_t> all;
    for (auto& d : dst) {
      const std::vector<uint8_t> r = d->regionBytes();
      all.insert(all.end(), r.begin(), r.end());
    }
    return all;
  }
  std::vector<std::vector<uint8_t>> snapshots() const {
    std::vector<std::vector<uint8_t>> s;
    for (auto& d : dst) s.push_back(d->snapshot());
    return s;
  }
  void restore(const std::vector<std::vector<uint8_t>>& s) {
    for (size_t p = 0; p < dst.size(); ++p) dst[p]->restore(s[p]);
  }
  bool guardsIntact() const {
    for (auto& d : dst)
      if (!d->guardsIntact()) return false;
    for (auto& s : src)
      if (!s->guardsIntact()) return false;
    return true;
  }
};

std::vector<const Entry*> imageFunctions() {
  std::vector<const Entry*> v;
  for (const Entry& e : lumtable::table())
    if (e.isImage()) v.push_back(&e);
  return v;
}

class Generic : public ::testing::TestWithParam<const Entry*> {};

std::string where(const Entry& e, int w, int h, lum::Isa level) {
  return std::string(e.name) + " " + std::to_string(w) + "x" + std::to_string(h) + " at " +
         lumtest::isaName(level);
}

// Every width from the smallest to 70 and a wide row, a few rows, random
// steps and alignments: each level's bytes and status are the SSE2 level's,
// nothing around the region changes, alpha of an AC4 destination stays, and
// no read leaves the region (the page after the last row is inaccessible).
TEST_P(Generic, EveryLevelGivesTheSameBytesInsideTheRegionOnly) {
  const Entry& e = *GetParam();
  std::mt19937 rng(0x5eed);
  std::vector<int> widths;
  for (int w = e.minWidth; w <= 70; ++w) widths.push_back(w);
  widths.push_back(1001);
  for (int w : widths) {
    const int h = std::max(e.minHeight, 1 + w % 3);  // at least one row
    Call c(e, w, h, rng);
    const auto before = c.snapshots();
    const std::vector<uint8_t> initial = c.out();
    std::vector<uint8_t> reference;
    LumStatus referenceStatus = LumOk;
    for (lum::Isa level : lumtest::isaLevels()) {
      const lumtest::IsaCap cap(level);
      c.restore(before);
      const LumStatus st = c.run();
      ASSERT_GE(st, 0) << where(e, w, h, level);
      ASSERT_TRUE(c.guardsIntact()) << where(e, w, h, level) << ": a byte outside the region changed";
      const std::vector<uint8_t> got = c.out();
      if (level == lum::kIsaSse2) {
        reference = got;
        referenceStatus = st;
      }
      ASSERT_EQ(st, referenceStatus) << where(e, w, h, level);
      ASSERT_EQ(got, reference) << where(e, w, h, level) << " differs from SSE2";
      if (e.dstLayout == Layout::AC4) {
        const size_t plane0 = c.dst[0]->regionBytes().size();
        for (size_t i = 0; i < plane0; ++i) {
          if ((i / e.dstElem) % 4 != 3) continue;  // the alpha sample's bytes
          ASSERT_EQ(got[i], initial[i]) << where(e, w, h, level) << ": alpha written";
        }
      }
    }
  }
}

// The same pixels under other steps and alignments give the same bytes.
TEST_P(Generic, StepsAndAlignmentDoNotChangeTheBytes) {
  const Entry& e = *GetParam();
  if (!e.hasSteps()) GTEST_SKIP() << "no steps";
  std::mt19937 rng(77);
  for (int w : {std::max(e.minWidth, 5), 33, 70}) {
    const int h = std::max(e.minHeight, 4);
    Call a(e, w, h, rng), b(e, w, h, rng);
    for (size_t p = 0; p < a.src.size(); ++p) b.src[p]->setRegion(a.src[p]->regionBytes());
    for (size_t p = 0; p < a.dst.size(); ++p) b.dst[p]->setRegion(a.dst[p]->regionBytes());
    b.args.fill = a.args.fill;
    ASSERT_GE(a.run(), 0);
    ASSERT_GE(b.run(), 0);
    EXPECT_EQ(a.out(), b.out()) << e.name << " w=" << w;
  }
}

// Above the threading threshold (5330 pixels), team sizes 1, 2 and 4.
TEST_P(Generic, TeamSizesGiveTheSameBytes) {
  const Entry& e = *GetParam();
  std::mt19937 rng(4097);
  Call c(e, 130, 41, rng);
  const auto before = c.snapshots();
  std::vector<uint8_t> one;
  for (int team : {1, 2, 4}) {
    const lumtest::TeamSize scope(team);
    c.restore(before);
    ASSERT_GE(c.run(), 0);
    if (team == 1) one = c.out();
    EXPECT_EQ(c.out(), one) << e.name << " team " << team;
  }
}

// One failing argument set and the status its pattern gives.
struct Fault {
  std::string what;
  LumStatus want;
  void (*apply)(lumtable::Args&, const Entry&);
};

// A null side: the array itself under pattern P2 (which tests the arrays
// before the size and their entries after it); the first entry under the
// others, which test entries with the pointers (and some of which do not
// test the array itself).
void nullSource(lumtable::Args& a, const Entry& en) {
  if (en.srcIsArray() && en.pattern == Pattern::P2) {
    a.srcArrayNull = true;
  } else {
    a.src[0] = nullptr;
  }
}
void nullDestination(lumtable::Args& a, const Entry& en) {
  if (en.dstIsArray() && en.pattern == Pattern::P2) {
    a.dstArrayNull = true;
  } else {
    a.dst[0] = nullptr;
  }
}

// BEGIN P7 faults (two rounds of checks) ------------------------------------
// Arrays null, then size below 1 by 1, then elements null, then size below 2
// by 2: each failure against the one after it.
std::vector<Fault> faultsP7() {
  auto nullDstArray = [](lumtable::Args& a, const Entry&) { a.dstArrayNull = true; };
  return {
      {"null source", LumErrNullPtr, [](lumtable::Args& a, const Entry&) { a.src[0] = nullptr; }},
      {"null chroma source, width 0", LumErrNullPtr,
       [](lumtable::Args& a, const Entry&) {
         a.src[1] = nullptr;
         a.roi.width = 0;
       }},
      {"null destination array", LumErrNullPtr, nullDstArray},
      {"null destination array, height -1", LumErrNullPtr,
       [](lumtable::Args& a, const Entry&) {
         a.dstArrayNull = true;
         a.roi.height = -1;
       }},
      {"width 0", LumErrSize, [](lumtable::Args& a, const Entry&) { a.roi.width = 0; }},
      {"height 0", LumErrSize, [](lumtable::Args& a, const Entry&) { a.roi.height = 0; }},
      {"null destination plane, height 0", LumErrSize,
       [](lumtable::Args& a, const Entry&) {
         a.dst[1] = nullptr;
         a.roi.height = 0;
       }},
      {"null last destination plane, width 1", LumErrNullPtr,
       [](lumtable::Args& a, const Entry&) {
         a.dst[2] = nullptr;
         a.roi.width = 1;
       }},
      {"width 1", LumErrSize, [](lumtable::Args& a, const Entry&) { a.roi.width = 1; }},
      {"height 1", LumErrSize, [](lumtable::Args& a, const Entry&) { a.roi.height = 1; }},
  };
}
// END P7 faults ---------------------------------------------------------------

std::vector<Fault> faultsFor(const Entry& e) {
  const Pattern p = e.pattern;
  if (p == Pattern::P7) return faultsP7();  // P7 block above
  std::vector<Fault> f;
  if (e.hasSource()) {
    f.push_back({"null source", LumErrNullPtr, nullSource});
    f.push_back({"null source, width 0", LumErrNullPtr, [](lumtable::Args& a, const Entry& en) {
                   nullSource(a, en);
                   a.roi.width = 0;
                 }});
  }
  f.push_back({"null destination", LumErrNullPtr, nullDestination});
  f.push_back({"null destination, height -1", LumErrNullPtr, [](lumtable::Args& a, const Entry& en) {
                 nullDestination(a, en);
                 a.roi.height = -1;
               }});
  f.push_back({"width 0", LumErrSize, [](lumtable::Args& a, const Entry&) { a.roi.width = 0; }});
  if (e.minHeight > 0)  // else the height is not tested
    f.push_back({"height 0", LumErrSize, [](lumtable::Args& a, const Entry&) { a.roi.height = 0; }});
  f.push_back({"width -5", LumErrSize, [](lumtable::Args& a, const Entry&) { a.roi.width = -5; }});
  if (e.minWidth > 1)
    f.push_back({"width below the smallest", LumErrSize,
                 [](lumtable::Args& a, const Entry& en) { a.roi.width = en.minWidth - 1; }});
  if (e.minHeight > 1)
    f.push_back({"height below the smallest", LumErrSize,
                 [](lumtable::Args& a, const Entry& en) { a.roi.height = en.minHeight - 1; }});
  // A null plane: after the size in P2, with the pointers in P3 to P5.
  const LumStatus planeThenSize = p == Pattern::P2 ? LumErrSize : LumErrNullPtr;
  if (e.srcPlanes() > 1) {
    f.push_back({"null last source plane", LumErrNullPtr,
                 [](lumtable::Args& a, const Entry& en) { a.src[en.srcPlanes() - 1] = nullptr; }});
    f.push_back({"null source plane, width 0", planeThenSize, [](lumtable::Args& a, const Entry&) {
                   a.src[1] = nullptr;
                   a.roi.width = 0;
                 }});
  }
  if (e.dstPlanes() > 1) {
    f.push_back({"null last destination plane", LumErrNullPtr,
                 [](lumtable::Args& a, const Entry& en) { a.dst[en.dstPlanes() - 1] = nullptr; }});
    f.push_back({"null destination plane 1, width 0", planeThenSize,
                 [](lumtable::Args& a, const Entry&) {
                   a.dst[1] = nullptr;
                   a.roi.width = 0;
                 }});
  }
  if (p == Pattern::P4) {  // the step after the size
    f.push_back({"source step 0", LumErrStep, [](lumtable::Args& a, const Entry&) { a.srcSteps[0] = 0; }});
    f.push_back({"destination step -3", LumErrStep,
                 [](lumtable::Args& a, const Entry&) { a.dstSteps[0] = -3; }});
    f.push_back({"step 0, width 0", LumErrSize, [](lumtable::Args& a, const Entry&) {
                   a.dstSteps[0] = 0;
                   a.roi.width = 0;
                 }});
  }
  if (p == Pattern::P5) {  // the step before the size, after the pointers
    f.push_back({"source step 0", LumErrStep, [](lumtable::Args& a, const Entry&) { a.srcSteps[0] = 0; }});
    f.push_back({"step 0, width 0", LumErrStep, [](lumtable::Args& a, const Entry&) {
                   a.dstSteps[0] = 0;
                   a.roi.width = 0;
                 }});
    f.push_back({"null destination, step 0", LumErrNullPtr, [](lumtable::Args& a, const Entry& en) {
                   nullDestination(a, en);
                   a.srcSteps[0] = 0;
                 }});
  }
  return f;
}

TEST_P(Generic, FailedChecksWriteNothingAndComeInPatternOrder) {
  const Entry& e = *GetParam();
  std::mt19937 rng(9);
  Call c(e, std::max(e.minWidth, 21), std::max(e.minHeight, 3), rng);
  const auto before = c.snapshots();
  for (const Fault& f : faultsFor(e)) {
    c.resetArgs();
    f.apply(c.args, e);
    EXPECT_EQ(c.run(), f.want) << e.name << " (" << lumtable::patternName(e.pattern) << "): " << f.what;
    for (size_t p = 0; p < c.dst.size(); ++p)
      EXPECT_EQ(c.dst[p]->snapshot(), before[p]) << e.name << ": written on " << f.what;
  }
}

INSTANTIATE_TEST_SUITE_P(Table, Generic, ::testing::ValuesIn(imageFunctions()),
                         [](const ::testing::TestParamInfo<const Entry*>& i) {
                           return std::string(i.param->name);
                         });

}  // namespace
