// lumdigest: prints a digest of what every public function writes for fixed
// inputs, through the public API only.  Two builds (x86-64 and i386) must
// print the same lines; --check-teams also compares team sizes 1 and 4
// within one build and exits non-zero on a difference.
#include <stdint.h>
#include <stdio.h>
#include <string.h>

#include <string>
#include <vector>

#include "lumcc.h"

namespace {

// Deterministic bytes (a 32-bit LCG), independent of the platform.
struct Lcg {
  uint32_t s;
  uint32_t next() { return s = s * 1664525u + 1013904223u; }
};

uint64_t fnv1a(const void* p, size_t n, uint64_t h = 1469598103934665603ull) {
  const uint8_t* b = static_cast<const uint8_t*>(p);
  for (size_t i = 0; i < n; ++i) h = (h ^ b[i]) * 1099511628211ull;
  return h;
}

template <class T>
T sample(Lcg& g) {
  return static_cast<T>(g.next() >> 16);
}
template <>
float sample<float>(Lcg& g) {
  // Mostly 0..1, a few outside, some exact greys come from repeats below.
  return static_cast<float>(static_cast<int32_t>(g.next() >> 8) % 12000 - 1000) / 10000.0f;
}

// One image: rows of `rowElems` elements with 7 spare elements a row.
template <class T>
struct Img {
  int rowElems, height, stepBytes;
  std::vector<T> buf;
  Img(int rowElems_, int height_, Lcg& g, bool random)
      : rowElems(rowElems_), height(height_), stepBytes((rowElems_ + 7) * static_cast<int>(sizeof(T))),
        buf(static_cast<size_t>(rowElems_ + 7) * height_ + 1) {
    for (size_t i = 0; i < buf.size(); ++i) buf[i] = random ? sample<T>(g) : static_cast<T>(0x5A);
    if (random && rowElems >= 6)  // a grey pixel and a repeated pixel in each row
      for (int y = 0; y < height; ++y) {
        T* r = row(y);
        r[1] = r[0];
        r[2] = r[0];
      }
  }
  T* row(int y) { return buf.data() + static_cast<size_t>(y) * (rowElems + 7); }
  uint64_t hash() const { return fnv1a(buf.data(), buf.size() * sizeof(T)); }
};

const LumSize kSizes[] = {{1, 1}, {3, 2}, {7, 3}, {16, 2}, {37, 5}, {70, 3}, {130, 41}};

std::vector<std::string> gLines;

void emit(const std::string& name, LumSize sz, int status, uint64_t h) {
  char line[256];
  snprintf(line, sizeof line, "%-28s %4dx%-4d %4d %016llx", name.c_str(), sz.width, sz.height,
           status, static_cast<unsigned long long>(h));
  gLines.push_back(line);
}

// Interleaved to interleaved.
template <class T>
void run(const char* name, LumStatus (*f)(const T*, int, T*, int, LumSize), int sch, int dch) {
  for (LumSize sz : kSizes) {
    Lcg g{static_cast<uint32_t>(sz.width * 131 + sz.height)};
    Img<T> s(sz.width * sch, sz.height, g, true), d(sz.width * dch, sz.height, g, false);
    const int st = f(s.buf.data(), s.stepBytes, d.buf.data(), d.stepBytes, sz);
    emit(name, sz, st, d.hash());
  }
}

// Planes (one step per side) and interleaved sides, 8u.
struct Side {
  std::vector<Img<Lum8u>> planes;
  Side(int n, int rowElems, int h, Lcg& g, bool random) {
    for (int i = 0; i < n; ++i) planes.emplace_back(rowElems, h, g, random);
  }
  uint64_t hash() const {
    uint64_t h = 1469598103934665603ull;
    for (const auto& p : planes) h = fnv1a(p.buf.data(), p.buf.size(), h);
    return h;
  }
};
void runPP(const char* name, LumStatus (*f)(const Lum8u* const*, int, Lum8u* const*, int, LumSize),
           int sp, int dp) {
  for (LumSize sz : kSizes) {
    Lcg g{static_cast<uint32_t>(sz.width * 17 + sz.height)};
    Side s(sp, sz.width, sz.height, g, true), d(dp, sz.width, sz.height, g, false);
    const Lum8u* sa[4];
    Lum8u* da[4];
    for (int i = 0; i < sp; ++i) sa[i] = s.planes[i].buf.data();
    for (int i = 0; i < dp; ++i) da[i] = d.planes[i].buf.data();
    emit(name, sz, f(sa, s.planes[0].stepBytes, da, d.planes[0].stepBytes, sz), d.hash());
  }
}
void runPC(const char* name, LumStatus (*f)(const Lum8u* const*, int, Lum8u*, int, LumSize), int sp,
           int dch) {
  for (LumSize sz : kSizes) {
    Lcg g{static_cast<uint32_t>(sz.width * 19 + sz.height)};
    Side s(sp, sz.width, sz.height, g, true);
    Img<Lum8u> d(sz.width * dch, sz.height, g, false);
    const Lum8u* sa[4];
    for (int i = 0; i < sp; ++i) sa[i] = s.planes[i].buf.data();
    emit(name, sz, f(sa, s.planes[0].stepBytes, d.buf.data(), d.stepBytes, sz), d.hash());
  }
}
void runCP(const char* name, LumStatus (*f)(const Lum8u*, int, Lum8u* const*, int, LumSize), int sch,
           int dp) {
  for (LumSize sz : kSizes) {
    Lcg g{static_cast<uint32_t>(sz.width * 23 + sz.height)};
    Img<Lum8u> s(sz.width * sch, sz.height, g, true);
    Side d(dp, sz.width, sz.height, g, false);
    Lum8u* da[4];
    for (int i = 0; i < dp; ++i) da[i] = d.planes[i].buf.data();
    emit(name, sz, f(s.buf.data(), s.stepBytes, da, d.planes[0].stepBytes, sz), d.hash());
  }
}

void services() {
  for (LumSize sz : kSizes) {
    Lcg g{static_cast<uint32_t>(sz.width * 29 + sz.height)};
    Img<Lum8u> s(sz.width, sz.height, g, true), d(sz.width, sz.height, g, false);
    emit("lumiCopy_8u_C1R", sz, lumiCopy_8u_C1R(s.buf.data(), s.stepBytes, d.buf.data(), d.stepBytes, sz), d.hash());
    emit("lumiSet_8u_C1R", sz, lumiSet_8u_C1R(0xC3, d.buf.data(), d.stepBytes, sz), d.hash());
    Img<Lum32f> f(sz.width, sz.height, g, true);
    Lum32f mx = 0;
    emit("lumiMax_32f_C1R", sz, lumiMax_32f_C1R(f.buf.data(), f.stepBytes, sz, &mx), fnv1a(&mx, sizeof mx));
    for (int hint : {0, 2}) {
      Lum64f sum = 0, mean = 0;
      const std::string n = hint == 2 ? "_hint2" : "_fast";
      emit("lumiSum_32f_C1R" + n, sz, lumiSum_32f_C1R(f.buf.data(), f.stepBytes, sz, &sum, hint), fnv1a(&sum, sizeof sum));
      emit("lumiMean_32f_C1R" + n, sz, lumiMean_32f_C1R(f.buf.data(), f.stepBytes, sz, &mean, hint), fnv1a(&mean, sizeof mean));
    }
  }
  LumRandState16s* s16 = nullptr;
  LumRandState32f* s32 = nullptr;
  std::vector<Lum16s> r16(1000);
  std::vector<Lum32f> r32(1000);
  for (unsigned seed : {0u, 1u, 12345u, 0xFFFFFFFFu}) {
    lumsRandUniformInitAlloc_16s(&s16, -32768, 32767, seed);
    lumsRandUniformInitAlloc_32f(&s32, -1.5f, 2.0f, seed);
    const LumSize n{1000, static_cast<int>(seed & 0xFFFF)};
    emit("lumsRandUniform_16s", n, lumsRandUniform_16s(r16.data(), 1000, s16), fnv1a(r16.data(), 2000));
    emit("lumsRandUniform_32f", n, lumsRandUniform_32f(r32.data(), 1000, s32), fnv1a(r32.data(), 4000));
    lumsRandUniformFree_16s(s16);
    lumsRandUniformFree_32f(s32);
  }
}


// BEGIN SECTION repack-layouts (subsampled layout repacking)
// Every plane of a repack image is 2 * width bytes a row (room for any
// layout); each plane has its own step.  All destination planes are hashed.
struct RepackSide {
  std::vector<Img<Lum8u>> planes;
  const Lum8u* c[3] = {nullptr, nullptr, nullptr};
  Lum8u* m[3] = {nullptr, nullptr, nullptr};
  int steps[3] = {0, 0, 0};
  RepackSide(int n, LumSize sz, Lcg& g, bool random) {
    for (int i = 0; i < n; ++i) planes.emplace_back(2 * sz.width + i, sz.height, g, random);
    for (int i = 0; i < n; ++i) {
      c[i] = m[i] = planes[static_cast<size_t>(i)].buf.data();
      steps[i] = planes[static_cast<size_t>(i)].stepBytes;
    }
  }
  uint64_t hash() const {
    uint64_t h = 1469598103934665603ull;
    for (const auto& p : planes) h = fnv1a(p.buf.data(), p.buf.size(), h);
    return h;
  }
};
template <class Call>
void runRepack(const char* name, int nSrc, int nDst, Call call) {
  for (LumSize sz : kSizes) {
    Lcg g{static_cast<uint32_t>(sz.width * 37 + sz.height)};
    RepackSide s(nSrc, sz, g, true), d(nDst, sz, g, false);
    emit(name, sz, call(s, d, sz), d.hash());
  }
}
void repackLayouts() {
  runRepack("lumiYCbCr422ToYCbCr420_8u_P3R", 3, 3, [](RepackSide& s, RepackSide& d, LumSize r) {
    const auto f = lumiYCbCr422ToYCbCr420_8u_P3R;
    return f(s.c, s.steps, d.m, d.steps, r);
  });
  runRepack("lumiYCbCr420ToYCbCr422_8u_P3R", 3, 3, [](RepackSide& s, RepackSide& d, LumSize r) {
    const auto f = lumiYCbCr420ToYCbCr422_8u_P3R;
    return f(s.c, s.steps, d.m, d.steps, r);
  });
  runRepack("lumiYCrCb420ToYCbCr422_8u_P3R", 3, 3, [](RepackSide& s, RepackSide& d, LumSize r) {
    const auto f = lumiYCrCb420ToYCbCr422_8u_P3R;
    return f(s.c, s.steps, d.m, d.steps, r);
  });
  runRepack("lumiYCrCb422ToYCbCr422_8u_C2P3R", 1, 3, [](RepackSide& s, RepackSide& d, LumSize r) {
    const auto f = lumiYCrCb422ToYCbCr422_8u_C2P3R;
    return f(s.c[0], s.steps[0], d.m, d.steps, r);
  });
  runRepack("lumiCbYCr422ToYCbCr422_8u_C2P3R", 1, 3, [](RepackSide& s, RepackSide& d, LumSize r) {
    const auto f = lumiCbYCr422ToYCbCr422_8u_C2P3R;
    return f(s.c[0], s.steps[0], d.m, d.steps, r);
  });
  runRepack("lumiYCbCr422ToYCbCr420_8u_C2P3R", 1, 3, [](RepackSide& s, RepackSide& d, LumSize r) {
    const auto f = lumiYCbCr422ToYCbCr420_8u_C2P3R;
    return f(s.c[0], s.steps[0], d.m, d.steps, r);
  });
  runRepack("lumiYCrCb422ToYCbCr420_8u_C2P3R", 1, 3, [](RepackSide& s, RepackSide& d, LumSize r) {
    const auto f = lumiYCrCb422ToYCbCr420_8u_C2P3R;
    return f(s.c[0], s.steps[0], d.m, d.steps, r);
  });
  runRepack("lumiCbYCr422ToYCbCr420_8u_C2P3R", 1, 3, [](RepackSide& s, RepackSide& d, LumSize r) {
    const auto f = lumiCbYCr422ToYCbCr420_8u_C2P3R;
    return f(s.c[0], s.steps[0], d.m, d.steps, r);
  });
  runRepack("lumiYCbCr422ToYCbCr411_8u_C2P3R", 1, 3, [](RepackSide& s, RepackSide& d, LumSize r) {
    const auto f = lumiYCbCr422ToYCbCr411_8u_C2P3R;
    return f(s.c[0], s.steps[0], d.m, d.steps, r);
  });
  runRepack("lumiYCrCb422ToYCbCr411_8u_C2P3R", 1, 3, [](RepackSide& s, RepackSide& d, LumSize r) {
    const auto f = lumiYCrCb422ToYCbCr411_8u_C2P3R;
    return f(s.c[0], s.steps[0], d.m, d.steps, r);
  });
  runRepack("lumiCbYCr422ToYCbCr411_8u_C2P3R", 1, 3, [](RepackSide& s, RepackSide& d, LumSize r) {
    const auto f = lumiCbYCr422ToYCbCr411_8u_C2P3R;
    return f(s.c[0], s.steps[0], d.m, d.steps, r);
  });
  runRepack("lumiYCbCr422ToYCbCr420_8u_P3P2R", 3, 2, [](RepackSide& s, RepackSide& d, LumSize r) {
    const auto f = lumiYCbCr422ToYCbCr420_8u_P3P2R;
    return f(s.c, s.steps, d.m[0], d.steps[0], d.m[1], d.steps[1], r);
  });
  runRepack("lumiYCbCr420ToYCbCr422_8u_P2P3R", 2, 3, [](RepackSide& s, RepackSide& d, LumSize r) {
    const auto f = lumiYCbCr420ToYCbCr422_8u_P2P3R;
    return f(s.c[0], s.steps[0], s.c[1], s.steps[1], d.m, d.steps, r);
  });
  runRepack("lumiYCbCr420_8u_P3P2R", 3, 2, [](RepackSide& s, RepackSide& d, LumSize r) {
    const auto f = lumiYCbCr420_8u_P3P2R;
    return f(s.c, s.steps, d.m[0], d.steps[0], d.m[1], d.steps[1], r);
  });
  runRepack("lumiYCbCr420_8u_P2P3R", 2, 3, [](RepackSide& s, RepackSide& d, LumSize r) {
    const auto f = lumiYCbCr420_8u_P2P3R;
    return f(s.c[0], s.steps[0], s.c[1], s.steps[1], d.m, d.steps, r);
  });
  runRepack("lumiYCbCr422ToYCbCr411_8u_P3P2R", 3, 2, [](RepackSide& s, RepackSide& d, LumSize r) {
    const auto f = lumiYCbCr422ToYCbCr411_8u_P3P2R;
    return f(s.c, s.steps, d.m[0], d.steps[0], d.m[1], d.steps[1], r);
  });
  runRepack("lumiYCbCr420ToYCbCr411_8u_P3P2R", 3, 2, [](RepackSide& s, RepackSide& d, LumSize r) {
    const auto f = lumiYCbCr420ToYCbCr411_8u_P3P2R;
    return f(s.c, s.steps, d.m[0], d.steps[0], d.m[1], d.steps[1], r);
  });
  runRepack("lumiYCrCb420ToYCbCr411_8u_P3P2R", 3, 2, [](RepackSide& s, RepackSide& d, LumSize r) {
    const auto f = lumiYCrCb420ToYCbCr411_8u_P3P2R;
    return f(s.c, s.steps, d.m[0], d.steps[0], d.m[1], d.steps[1], r);
  });
  runRepack("lumiYCbCr420ToYCbCr411_8u_P2P3R", 2, 3, [](RepackSide& s, RepackSide& d, LumSize r) {
    const auto f = lumiYCbCr420ToYCbCr411_8u_P2P3R;
    return f(s.c[0], s.steps[0], s.c[1], s.steps[1], d.m, d.steps, r);
  });
  runRepack("lumiYCbCr411ToYCbCr422_8u_P3C2R", 3, 1, [](RepackSide& s, RepackSide& d, LumSize r) {
    const auto f = lumiYCbCr411ToYCbCr422_8u_P3C2R;
    return f(s.c, s.steps, d.m[0], d.steps[0], r);
  });
  runRepack("lumiYCbCr411ToYCrCb422_8u_P3C2R", 3, 1, [](RepackSide& s, RepackSide& d, LumSize r) {
    const auto f = lumiYCbCr411ToYCrCb422_8u_P3C2R;
    return f(s.c, s.steps, d.m[0], d.steps[0], r);
  });
  runRepack("lumiYCbCr411ToYCbCr422_8u_P3R", 3, 3, [](RepackSide& s, RepackSide& d, LumSize r) {
    const auto f = lumiYCbCr411ToYCbCr422_8u_P3R;
    return f(s.c, s.steps, d.m, d.steps, r);
  });
  runRepack("lumiYCbCr411ToYCrCb422_8u_P3R", 3, 3, [](RepackSide& s, RepackSide& d, LumSize r) {
    const auto f = lumiYCbCr411ToYCrCb422_8u_P3R;
    return f(s.c, s.steps, d.m, d.steps, r);
  });
  runRepack("lumiYCbCr411ToYCbCr420_8u_P3R", 3, 3, [](RepackSide& s, RepackSide& d, LumSize r) {
    const auto f = lumiYCbCr411ToYCbCr420_8u_P3R;
    return f(s.c, s.steps, d.m, d.steps, r);
  });
  runRepack("lumiYCbCr411ToYCbCr420_8u_P3P2R", 3, 2, [](RepackSide& s, RepackSide& d, LumSize r) {
    const auto f = lumiYCbCr411ToYCbCr420_8u_P3P2R;
    return f(s.c, s.steps, d.m[0], d.steps[0], d.m[1], d.steps[1], r);
  });
  runRepack("lumiYCbCr411_8u_P3P2R", 3, 2, [](RepackSide& s, RepackSide& d, LumSize r) {
    const auto f = lumiYCbCr411_8u_P3P2R;
    return f(s.c, s.steps, d.m[0], d.steps[0], d.m[1], d.steps[1], r);
  });
  runRepack("lumiYCbCr411ToYCbCr422_8u_P2C2R", 2, 1, [](RepackSide& s, RepackSide& d, LumSize r) {
    const auto f = lumiYCbCr411ToYCbCr422_8u_P2C2R;
    return f(s.c[0], s.steps[0], s.c[1], s.steps[1], d.m[0], d.steps[0], r);
  });
  runRepack("lumiYCbCr411ToYCbCr422_8u_P2P3R", 2, 3, [](RepackSide& s, RepackSide& d, LumSize r) {
    const auto f = lumiYCbCr411ToYCbCr422_8u_P2P3R;
    return f(s.c[0], s.steps[0], s.c[1], s.steps[1], d.m, d.steps, r);
  });
  runRepack("lumiYCbCr411ToYCbCr420_8u_P2P3R", 2, 3, [](RepackSide& s, RepackSide& d, LumSize r) {
    const auto f = lumiYCbCr411ToYCbCr420_8u_P2P3R;
    return f(s.c[0], s.steps[0], s.c[1], s.steps[1], d.m, d.steps, r);
  });
  runRepack("lumiYCbCr411ToYCrCb420_8u_P2P3R", 2, 3, [](RepackSide& s, RepackSide& d, LumSize r) {
    const auto f = lumiYCbCr411ToYCrCb420_8u_P2P3R;
    return f(s.c[0], s.steps[0], s.c[1], s.steps[1], d.m, d.steps, r);
  });
  runRepack("lumiYCbCr411_8u_P2P3R", 2, 3, [](RepackSide& s, RepackSide& d, LumSize r) {
    const auto f = lumiYCbCr411_8u_P2P3R;
    return f(s.c[0], s.steps[0], s.c[1], s.steps[1], d.m, d.steps, r);
  });
  runRepack("lumiYCbCr422ToYCbCr411_8u_C2P2R", 1, 2, [](RepackSide& s, RepackSide& d, LumSize r) {
    const auto f = lumiYCbCr422ToYCbCr411_8u_C2P2R;
    return f(s.c[0], s.steps[0], d.m[0], d.steps[0], d.m[1], d.steps[1], r);
  });
  runRepack("lumiYCbCr422ToYCrCb422_8u_C2R", 1, 1, [](RepackSide& s, RepackSide& d, LumSize r) {
    const auto f = lumiYCbCr422ToYCrCb422_8u_C2R;
    return f(s.c[0], s.steps[0], d.m[0], d.steps[0], r);
  });
  runRepack("lumiYCbCr422ToYCbCr411_8u_P3R", 3, 3, [](RepackSide& s, RepackSide& d, LumSize r) {
    const auto f = lumiYCbCr422ToYCbCr411_8u_P3R;
    return f(s.c, s.steps, d.m, d.steps, r);
  });
  runRepack("lumiYCbCr422ToYCrCb422_8u_P3C2R", 3, 1, [](RepackSide& s, RepackSide& d, LumSize r) {
    const auto f = lumiYCbCr422ToYCrCb422_8u_P3C2R;
    return f(s.c, s.steps, d.m[0], d.steps[0], r);
  });
}
// END SECTION repack-layouts

void all() {
  gLines.clear();
  // RGB and YUV 4:4:4.
  run<Lum8u>("lumiRGBToYUV_8u_C3R", lumiRGBToYUV_8u_C3R, 3, 3);
  run<Lum8u>("lumiRGBToYUV_8u_AC4R", lumiRGBToYUV_8u_AC4R, 4, 4);
  runPP("lumiRGBToYUV_8u_P3R", lumiRGBToYUV_8u_P3R, 3, 3);
  runCP("lumiRGBToYUV_8u_C3P3R", lumiRGBToYUV_8u_C3P3R, 3, 3);
  run<Lum8u>("lumiYUVToRGB_8u_C3R", lumiYUVToRGB_8u_C3R, 3, 3);
  run<Lum8u>("lumiYUVToRGB_8u_AC4R", lumiYUVToRGB_8u_AC4R, 4, 4);
  runPP("lumiYUVToRGB_8u_P3R", lumiYUVToRGB_8u_P3R, 3, 3);
  runPC("lumiYUVToRGB_8u_P3C3R", lumiYUVToRGB_8u_P3C3R, 3, 3);
  // HSV.
  run<Lum8u>("lumiRGBToHSV_8u_C3R", lumiRGBToHSV_8u_C3R, 3, 3);
  run<Lum8u>("lumiHSVToRGB_8u_C3R", lumiHSVToRGB_8u_C3R, 3, 3);
  run<Lum8u>("lumiRGBToHSV_8u_AC4R", lumiRGBToHSV_8u_AC4R, 4, 4);
  run<Lum8u>("lumiHSVToRGB_8u_AC4R", lumiHSVToRGB_8u_AC4R, 4, 4);
  run<Lum16u>("lumiRGBToHSV_16u_C3R", lumiRGBToHSV_16u_C3R, 3, 3);
  run<Lum16u>("lumiHSVToRGB_16u_C3R", lumiHSVToRGB_16u_C3R, 3, 3);
  run<Lum16u>("lumiRGBToHSV_16u_AC4R", lumiRGBToHSV_16u_AC4R, 4, 4);
  run<Lum16u>("lumiHSVToRGB_16u_AC4R", lumiHSVToRGB_16u_AC4R, 4, 4);
  // HLS.
  run<Lum8u>("lumiRGBToHLS_8u_C3R", lumiRGBToHLS_8u_C3R, 3, 3);
  run<Lum8u>("lumiRGBToHLS_8u_AC4R", lumiRGBToHLS_8u_AC4R, 4, 4);
  run<Lum8u>("lumiHLSToRGB_8u_C3R", lumiHLSToRGB_8u_C3R, 3, 3);
  run<Lum8u>("lumiHLSToRGB_8u_AC4R", lumiHLSToRGB_8u_AC4R, 4, 4);
  run<Lum16u>("lumiRGBToHLS_16u_C3R", lumiRGBToHLS_16u_C3R, 3, 3);
  run<Lum16u>("lumiRGBToHLS_16u_AC4R", lumiRGBToHLS_16u_AC4R, 4, 4);
  run<Lum16u>("lumiHLSToRGB_16u_C3R", lumiHLSToRGB_16u_C3R, 3, 3);
  run<Lum16u>("lumiHLSToRGB_16u_AC4R", lumiHLSToRGB_16u_AC4R, 4, 4);
  run<Lum16s>("lumiRGBToHLS_16s_C3R", lumiRGBToHLS_16s_C3R, 3, 3);
  run<Lum16s>("lumiRGBToHLS_16s_AC4R", lumiRGBToHLS_16s_AC4R, 4, 4);
  run<Lum16s>("lumiHLSToRGB_16s_C3R", lumiHLSToRGB_16s_C3R, 3, 3);
  run<Lum16s>("lumiHLSToRGB_16s_AC4R", lumiHLSToRGB_16s_AC4R, 4, 4);
  run<Lum32f>("lumiRGBToHLS_32f_C3R", lumiRGBToHLS_32f_C3R, 3, 3);
  run<Lum32f>("lumiRGBToHLS_32f_AC4R", lumiRGBToHLS_32f_AC4R, 4, 4);
  run<Lum32f>("lumiHLSToRGB_32f_C3R", lumiHLSToRGB_32f_C3R, 3, 3);
  run<Lum32f>("lumiHLSToRGB_32f_AC4R", lumiHLSToRGB_32f_AC4R, 4, 4);
  // BGR and HLS plane layouts.
  run<Lum8u>("lumiBGRToHLS_8u_AC4R", lumiBGRToHLS_8u_AC4R, 4, 4);
  runPP("lumiBGRToHLS_8u_AP4R", lumiBGRToHLS_8u_AP4R, 4, 4);
  runPC("lumiBGRToHLS_8u_AP4C4R", lumiBGRToHLS_8u_AP4C4R, 4, 4);
  runCP("lumiBGRToHLS_8u_AC4P4R", lumiBGRToHLS_8u_AC4P4R, 4, 4);
  runPP("lumiBGRToHLS_8u_P3R", lumiBGRToHLS_8u_P3R, 3, 3);
  runPC("lumiBGRToHLS_8u_P3C3R", lumiBGRToHLS_8u_P3C3R, 3, 3);
  runCP("lumiBGRToHLS_8u_C3P3R", lumiBGRToHLS_8u_C3P3R, 3, 3);
  runPP("lumiHLSToBGR_8u_AP4R", lumiHLSToBGR_8u_AP4R, 4, 4);
  runPC("lumiHLSToBGR_8u_AP4C4R", lumiHLSToBGR_8u_AP4C4R, 4, 4);
  runCP("lumiHLSToBGR_8u_AC4P4R", lumiHLSToBGR_8u_AC4P4R, 4, 4);
  runPP("lumiHLSToBGR_8u_P3R", lumiHLSToBGR_8u_P3R, 3, 3);
  runPC("lumiHLSToBGR_8u_P3C3R", lumiHLSToBGR_8u_P3C3R, 3, 3);
  runCP("lumiHLSToBGR_8u_C3P3R", lumiHLSToBGR_8u_C3P3R, 3, 3);
  services();
  repackLayouts();  // repack-layouts
}

}  // namespace

int main(int argc, char** argv) {
  const bool checkTeams = argc > 1 && strcmp(argv[1], "--check-teams") == 0;
  threads_omp_of_n_lum = 1;
  all();
  const std::vector<std::string> one = gLines;
  if (checkTeams) {
    threads_omp_of_n_lum = 4;
    all();
    if (gLines != one) {
      fprintf(stderr, "lumdigest: team sizes 1 and 4 give different bytes\n");
      for (size_t i = 0; i < one.size() && i < gLines.size(); ++i)
        if (one[i] != gLines[i]) fprintf(stderr, "  1: %s\n  4: %s\n", one[i].c_str(), gLines[i].c_str());
      return 1;
    }
    printf("lumdigest: %zu digests, team sizes 1 and 4 agree\n", one.size());
    return 0;
  }
  for (const std::string& l : one) printf("%s\n", l.c_str());
  return 0;
}
