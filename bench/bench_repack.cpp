// Subsampled layout repacking against libyuv's planar copies on the same job
// and memcpy of the same bytes.
//
// Groups "<function>/<implementation>/<width>x<height>":
//   lum           this library (the repacks run on the calling thread)
//   memcpy        one memcpy of as many bytes as the repack writes, from a
//                 separate buffer of that size: the bound for a job that
//                 reads and writes that many bytes once
//   libyuv_<fn>   libyuv's routine for the same layouts.  Where libyuv
//                 averages chroma (YUY2ToI420, UYVYToI420, I422ToI420 scale
//                 the chroma rows) and this library drops rows, the job is
//                 named as the nearest, not the same.
// Counters: bytes_per_second counts bytes read + bytes written by the call;
// items_per_second counts pixels; both over wall time.
#include "bench_common.h"

#ifdef LUM_HAVE_LIBYUV
#include <libyuv.h>
#endif

#include <functional>

using namespace lumbench;

namespace {

// A frame of up to three planes of given sizes.
struct Frame {
  std::vector<std::unique_ptr<Image>> p;
  const Lum8u* c[3] = {nullptr, nullptr, nullptr};
  Lum8u* m[3] = {nullptr, nullptr, nullptr};
  int s[3] = {0, 0, 0};
  Frame(const std::vector<std::pair<int, int>>& dims, uint32_t seed) {
    int i = 0;
    for (auto d : dims) {
      p.emplace_back(new Image(d.first, d.second, 1, seed + static_cast<uint32_t>(i)));
      c[i] = m[i] = p.back()->data();
      s[i] = p.back()->step();
      ++i;
    }
  }
  size_t bytes() const {
    size_t n = 0;
    for (const auto& x : p) n += x->bytes();
    return n;
  }
};

struct Job {
  std::string name;
  std::function<std::pair<size_t, size_t>(Dims)> bytes;  // read, written
  std::function<std::function<LumStatus()>(Dims)> lum;
  std::string libyuvName;
  std::function<std::function<void()>(Dims)> libyuv;
};

// Plane dimension lists.
using DL = std::vector<std::pair<int, int>>;
std::pair<int, int> y(Dims d) { return {d.width, d.height}; }
std::pair<int, int> c422(Dims d) { return {d.width / 2, d.height}; }
std::pair<int, int> c420(Dims d) { return {d.width / 2, d.height / 2}; }
std::pair<int, int> c411(Dims d) { return {d.width / 4, d.height}; }
std::pair<int, int> nv12(Dims d) { return {d.width, d.height / 2}; }
std::pair<int, int> p2411(Dims d) { return {d.width / 2, d.height}; }
std::pair<int, int> c2(Dims d) { return {2 * d.width, d.height}; }
size_t area(std::pair<int, int> a) { return static_cast<size_t>(a.first) * a.second; }

template <class F>
std::function<std::function<LumStatus()>(Dims)> lumJob(DL (*src)(Dims), DL (*dst)(Dims), F f) {
  return [=](Dims d) {
    auto s = std::make_shared<Frame>(src(d), 1);
    auto t = std::make_shared<Frame>(dst(d), 7);
    return std::function<LumStatus()>([s, t, f, d] { return f(*s, *t, LumSize{d.width, d.height}); });
  };
}

// Plane lists of the layouts.
DL i420(Dims d) { return {y(d), c420(d), c420(d)}; }
DL i422(Dims d) { return {y(d), c422(d), c422(d)}; }
DL i411(Dims d) { return {y(d), c411(d), c411(d)}; }
DL nv(Dims d) { return {y(d), nv12(d)}; }
DL nv411(Dims d) { return {y(d), p2411(d)}; }
DL packed(Dims d) { return {c2(d)}; }

size_t sumOf(const DL& l) {
  size_t n = 0;
  for (auto a : l) n += area(a);
  return n;
}

std::vector<Job> jobs() {
  std::vector<Job> v;
  auto add = [&](const char* name, DL (*src)(Dims), DL (*dst)(Dims), size_t readNum, size_t readDen,
                 auto f) {
    Job j;
    j.name = name;
    // Bytes read: the source, or the part of it the job reads (readNum /
    // readDen of the chroma where rows are dropped, counted by the caller).
    j.bytes = [=](Dims d) {
      return std::make_pair(sumOf(src(d)) * readNum / readDen, sumOf(dst(d)));
    };
    j.lum = lumJob(src, dst, f);
    v.push_back(j);
    return &v.back();
  };
  auto P3P3 = [](auto fn) {
    return [fn](Frame& s, Frame& t, LumSize r) { return fn(s.c, s.s, t.m, t.s, r); };
  };
  auto C2P3 = [](auto fn) {
    return [fn](Frame& s, Frame& t, LumSize r) { return fn(s.c[0], s.s[0], t.m, t.s, r); };
  };
  auto P3P2 = [](auto fn) {
    return [fn](Frame& s, Frame& t, LumSize r) {
      return fn(s.c, s.s, t.m[0], t.s[0], t.m[1], t.s[1], r);
    };
  };
  auto P2P3 = [](auto fn) {
    return [fn](Frame& s, Frame& t, LumSize r) {
      return fn(s.c[0], s.s[0], s.c[1], s.s[1], t.m, t.s, r);
    };
  };
  auto P3C2 = [](auto fn) {
    return [fn](Frame& s, Frame& t, LumSize r) { return fn(s.c, s.s, t.m[0], t.s[0], r); };
  };

  Job* j;
  j = add("YCbCr420_8u_P3P2R", i420, nv, 1, 1, P3P2(lumiYCbCr420_8u_P3P2R));
#ifdef LUM_HAVE_LIBYUV
  j->libyuvName = "libyuv_I420ToNV12";
  j->libyuv = [](Dims d) {
    auto s = std::make_shared<Frame>(i420(d), 1);
    auto t = std::make_shared<Frame>(nv(d), 7);
    return std::function<void()>([s, t, d] {
      libyuv::I420ToNV12(s->c[0], s->s[0], s->c[1], s->s[1], s->c[2], s->s[2], t->m[0], t->s[0],
                         t->m[1], t->s[1], d.width, d.height);
    });
  };
#endif
  j = add("YCbCr420_8u_P2P3R", nv, i420, 1, 1, P2P3(lumiYCbCr420_8u_P2P3R));
#ifdef LUM_HAVE_LIBYUV
  j->libyuvName = "libyuv_NV12ToI420";
  j->libyuv = [](Dims d) {
    auto s = std::make_shared<Frame>(nv(d), 1);
    auto t = std::make_shared<Frame>(i420(d), 7);
    return std::function<void()>([s, t, d] {
      libyuv::NV12ToI420(s->c[0], s->s[0], s->c[1], s->s[1], t->m[0], t->s[0], t->m[1], t->s[1],
                         t->m[2], t->s[2], d.width, d.height);
    });
  };
#endif
  // Planes given as Y, Cr, Cb: the C2 result is Y0 Cb Y1 Cr (YUY2).
  j = add("YCbCr422ToYCrCb422_8u_P3C2R", i422, packed, 1, 1, P3C2(lumiYCbCr422ToYCrCb422_8u_P3C2R));
#ifdef LUM_HAVE_LIBYUV
  j->libyuvName = "libyuv_I422ToYUY2";
  j->libyuv = [](Dims d) {
    auto s = std::make_shared<Frame>(i422(d), 1);
    auto t = std::make_shared<Frame>(packed(d), 7);
    return std::function<void()>([s, t, d] {
      libyuv::I422ToYUY2(s->c[0], s->s[0], s->c[1], s->s[1], s->c[2], s->s[2], t->m[0], t->s[0],
                         d.width, d.height);
    });
  };
#endif
  j = add("CbYCr422ToYCbCr422_8u_C2P3R", packed, i422, 1, 1, C2P3(lumiCbYCr422ToYCbCr422_8u_C2P3R));
#ifdef LUM_HAVE_LIBYUV
  j->libyuvName = "libyuv_UYVYToI422";
  j->libyuv = [](Dims d) {
    auto s = std::make_shared<Frame>(packed(d), 1);
    auto t = std::make_shared<Frame>(i422(d), 7);
    return std::function<void()>([s, t, d] {
      libyuv::UYVYToI422(s->c[0], s->s[0], t->m[0], t->s[0], t->m[1], t->s[1], t->m[2], t->s[2],
                         d.width, d.height);
    });
  };
#endif
  // Aligned 64-byte rows of a width that is a multiple of 16: the aligned
  // kernel.
  j = add("YCrCb422ToYCbCr422_8u_C2P3R", packed, i422, 1, 1, C2P3(lumiYCrCb422ToYCbCr422_8u_C2P3R));
#ifdef LUM_HAVE_LIBYUV
  j->libyuvName = "libyuv_YUY2ToI422";
  j->libyuv = [](Dims d) {
    auto s = std::make_shared<Frame>(packed(d), 1);
    auto t = std::make_shared<Frame>(i422(d), 7);
    return std::function<void()>([s, t, d] {
      libyuv::YUY2ToI422(s->c[0], s->s[0], t->m[0], t->s[0], t->m[1], t->s[1], t->m[2], t->s[2],
                         d.width, d.height);
    });
  };
#endif
  j = add("YCbCr422ToYCbCr420_8u_C2P3R", packed, i420, 1, 1, C2P3(lumiYCbCr422ToYCbCr420_8u_C2P3R));
#ifdef LUM_HAVE_LIBYUV
  j->libyuvName = "libyuv_YUY2ToI420";
  j->libyuv = [](Dims d) {
    auto s = std::make_shared<Frame>(packed(d), 1);
    auto t = std::make_shared<Frame>(i420(d), 7);
    return std::function<void()>([s, t, d] {
      libyuv::YUY2ToI420(s->c[0], s->s[0], t->m[0], t->s[0], t->m[1], t->s[1], t->m[2], t->s[2],
                         d.width, d.height);
    });
  };
#endif
  j = add("CbYCr422ToYCbCr420_8u_C2P3R", packed, i420, 1, 1, C2P3(lumiCbYCr422ToYCbCr420_8u_C2P3R));
#ifdef LUM_HAVE_LIBYUV
  j->libyuvName = "libyuv_UYVYToI420";
  j->libyuv = [](Dims d) {
    auto s = std::make_shared<Frame>(packed(d), 1);
    auto t = std::make_shared<Frame>(i420(d), 7);
    return std::function<void()>([s, t, d] {
      libyuv::UYVYToI420(s->c[0], s->s[0], t->m[0], t->s[0], t->m[1], t->s[1], t->m[2], t->s[2],
                         d.width, d.height);
    });
  };
#endif
  // Reads Y and the even chroma rows: 3/4 of the 4:2:2 source... counted as
  // (2 WH - WH/2) / 2 WH.
  j = add("YCbCr422ToYCbCr420_8u_P3R", i422, i420, 3, 4, P3P3(lumiYCbCr422ToYCbCr420_8u_P3R));
#ifdef LUM_HAVE_LIBYUV
  j->libyuvName = "libyuv_I422ToI420";
  j->libyuv = [](Dims d) {
    auto s = std::make_shared<Frame>(i422(d), 1);
    auto t = std::make_shared<Frame>(i420(d), 7);
    return std::function<void()>([s, t, d] {
      libyuv::I422ToI420(s->c[0], s->s[0], s->c[1], s->s[1], s->c[2], s->s[2], t->m[0], t->s[0],
                         t->m[1], t->s[1], t->m[2], t->s[2], d.width, d.height);
    });
  };
#endif
  j = add("YCbCr420ToYCbCr422_8u_P3R", i420, i422, 1, 1, P3P3(lumiYCbCr420ToYCbCr422_8u_P3R));
#ifdef LUM_HAVE_LIBYUV
  j->libyuvName = "libyuv_I420ToI422";
  j->libyuv = [](Dims d) {
    auto s = std::make_shared<Frame>(i420(d), 1);
    auto t = std::make_shared<Frame>(i422(d), 7);
    return std::function<void()>([s, t, d] {
      libyuv::I420ToI422(s->c[0], s->s[0], s->c[1], s->s[1], s->c[2], s->s[2], t->m[0], t->s[0],
                         t->m[1], t->s[1], t->m[2], t->s[2], d.width, d.height);
    });
  };
#endif
  // The members with no libyuv counterpart: memcpy only.
  add("YCbCr422ToYCrCb422_8u_C2R", packed, packed, 1, 1,
      [](Frame& s, Frame& t, LumSize r) {
        return lumiYCbCr422ToYCrCb422_8u_C2R(s.c[0], s.s[0], t.m[0], t.s[0], r);
      });
  add("YCbCr411ToYCbCr422_8u_P3C2R", i411, packed, 1, 1, P3C2(lumiYCbCr411ToYCbCr422_8u_P3C2R));
  add("YCbCr420ToYCbCr411_8u_P3P2R", i420, nv411, 1, 1, P3P2(lumiYCbCr420ToYCbCr411_8u_P3P2R));
  add("YCbCr411ToYCbCr420_8u_P2P3R", nv411, i420, 1, 1, P2P3(lumiYCbCr411ToYCbCr420_8u_P2P3R));
  add("YCbCr422ToYCbCr411_8u_C2P2R", packed, nv411, 1, 1,
      [](Frame& s, Frame& t, LumSize r) {
        return lumiYCbCr422ToYCbCr411_8u_C2P2R(s.c[0], s.s[0], t.m[0], t.s[0], t.m[1], t.s[1], r);
      });
  add("YCbCr422ToYCbCr420_8u_P3P2R", i422, nv, 3, 4, P3P2(lumiYCbCr422ToYCbCr420_8u_P3P2R));
  return v;
}

size_t pixelsOf(Dims d) { return static_cast<size_t>(d.width) * static_cast<size_t>(d.height); }

// The two standard sizes, and 7680x4320, whose frames (50 to 66 MB a side)
// do not stay in a last-level cache between calls: the size for which the
// streaming stores of the large-frame paths are meant.
std::vector<Dims> dims() {
  std::vector<Dims> v = standardDims();
  v.push_back(Dims{7680, 4320});
  return v;
}

void registerAll() {
  for (const Job& j : jobs()) {
    for (const Dims d : dims()) {
      const std::string base = j.name + "/", size = "/" + dimsName(d);
      benchmark::RegisterBenchmark((base + "lum" + size).c_str(), [j, d](benchmark::State& st) {
        setThreads(1);
        auto f = j.lum(d);
        if (f() != LumOk) {
          st.SkipWithError("status not LumOk");
          return;
        }
        for (auto _ : st) {
          benchmark::DoNotOptimize(f());
          benchmark::ClobberMemory();
        }
        const auto b = j.bytes(d);
        setCounters(st, b.first, b.second, pixelsOf(d), 1);
      })->UseRealTime();
      benchmark::RegisterBenchmark((base + "memcpy" + size).c_str(), [j, d](benchmark::State& st) {
        const size_t n = j.bytes(d).second;
        Image a(static_cast<int>(n), 1, 1, 3), b(static_cast<int>(n), 1, 1, 4);
        std::memcpy(b.data(), a.data(), n);
        for (auto _ : st) {
          std::memcpy(b.data(), a.data(), n);
          benchmark::ClobberMemory();
        }
        setCounters(st, n, n, pixelsOf(d), 1);
      })->UseRealTime();
      if (j.libyuv) {
        benchmark::RegisterBenchmark((base + j.libyuvName + size).c_str(),
                                     [j, d](benchmark::State& st) {
                                       auto f = j.libyuv(d);
                                       f();
                                       for (auto _ : st) {
                                         f();
                                         benchmark::ClobberMemory();
                                       }
                                       const auto b = j.bytes(d);
                                       setCounters(st, b.first, b.second, pixelsOf(d), 1);
                                     })
            ->UseRealTime();
      }
    }
  }
}

}  // namespace

int main(int argc, char** argv) {
  registerAll();
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
