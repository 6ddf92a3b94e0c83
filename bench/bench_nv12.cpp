// NV12, YV12, YUY2 and UYVY repacks (and the deinterlacing and filtered
// forms) against libyuv on the same job and memcpy of the same bytes;
// single-threaded, 1920x1080 and 256x256.
//
// Groups "<function>/<implementation>/<width>x<height>":
//   lum           this library
//   memcpy        one memcpy of as many bytes as the call writes: the bound
//                 for a job that reads and writes that many bytes once
//   libyuv_<fn>   libyuv's routine for the same layouts.  YUY2ToI420,
//                 UYVYToI420, YUY2ToNV12 and UYVYToNV12 average the chroma
//                 of two rows where this library keeps the even row: the
//                 nearest job, not the same.
// Counters: bytes_per_second counts bytes read + written; items_per_second
// pixels; both over wall time.
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
  const Lum8u* c[3] = {};
  Lum8u* m[3] = {};
  int s[3] = {};
  explicit Frame(const std::vector<std::pair<int, int>>& dims, uint32_t seed) {
    int i = 0;
    for (auto d : dims) {
      p.emplace_back(new Image(d.first, d.second, 1, seed + static_cast<uint32_t>(i)));
      c[i] = m[i] = p.back()->data();
      s[i] = p.back()->step();
      ++i;
    }
  }
};
using DL = std::vector<std::pair<int, int>>;
DL yv12(Dims d) { return {{d.width, d.height}, {d.width / 2, d.height / 2}, {d.width / 2, d.height / 2}}; }
DL nv12(Dims d) { return {{d.width, d.height}, {d.width, d.height / 2}}; }
DL c2(Dims d) { return {{2 * d.width, d.height}}; }
DL i422(Dims d) { return {{d.width, d.height}, {d.width / 2, d.height}, {d.width / 2, d.height}}; }
size_t sumOf(const DL& l) {
  size_t n = 0;
  for (auto a : l) n += static_cast<size_t>(a.first) * a.second;
  return n;
}

using Run = std::function<void(Frame&, Frame&, Dims)>;
struct Job {
  std::string name;
  DL (*src)(Dims);
  DL (*dst)(Dims);
  Run lum;
  std::string peerName;
  Run peer;
};

LumSize roi(Dims d) { return LumSize{d.width, d.height}; }

std::vector<Job> jobs() {
  std::vector<Job> v;
  auto add = [&](const char* name, DL (*s)(Dims), DL (*t)(Dims), Run lum, const char* peerName = "",
                 Run peer = nullptr) { v.push_back(Job{name, s, t, lum, peerName, peer}); };
#ifdef LUM_HAVE_LIBYUV
#define PEER(name, ...) "libyuv_" #name, [](Frame& s, Frame& t, Dims d) { libyuv::name(__VA_ARGS__); }
#else
#define PEER(name, ...) "", nullptr
#endif
  add("YCbCr420ToYCrCb420_8u_P2P3R", nv12, yv12,
      [](Frame& s, Frame& t, Dims d) {
        lumiYCbCr420ToYCrCb420_8u_P2P3R(s.c[0], s.s[0], s.c[1], s.s[1], t.m, t.s, roi(d));
      },
      PEER(NV12ToI420, s.c[0], s.s[0], s.c[1], s.s[1], t.m[0], t.s[0], t.m[1], t.s[1], t.m[2],
           t.s[2], d.width, d.height));
  add("YCrCb420ToYCbCr420_8u_P3P2R", yv12, nv12,
      [](Frame& s, Frame& t, Dims d) {
        lumiYCrCb420ToYCbCr420_8u_P3P2R(s.c, s.s, t.m[0], t.s[0], t.m[1], t.s[1], roi(d));
      },
      PEER(I420ToNV12, s.c[0], s.s[0], s.c[2], s.s[2], s.c[1], s.s[1], t.m[0], t.s[0], t.m[1],
           t.s[1], d.width, d.height));
  add("YCrCb420ToYCbCr422_8u_P3C2R", yv12, c2,
      [](Frame& s, Frame& t, Dims d) {
        lumiYCrCb420ToYCbCr422_8u_P3C2R(s.c, s.s, t.m[0], t.s[0], roi(d));
      },
      PEER(I420ToYUY2, s.c[0], s.s[0], s.c[2], s.s[2], s.c[1], s.s[1], t.m[0], t.s[0], d.width,
           d.height));
  add("YCrCb420ToCbYCr422_8u_P3C2R", yv12, c2,
      [](Frame& s, Frame& t, Dims d) {
        lumiYCrCb420ToCbYCr422_8u_P3C2R(s.c, s.s, t.m[0], t.s[0], roi(d));
      },
      PEER(I420ToUYVY, s.c[0], s.s[0], s.c[2], s.s[2], s.c[1], s.s[1], t.m[0], t.s[0], d.width,
           d.height));
  add("YCbCr422ToYCrCb420_8u_C2P3R", c2, yv12,
      [](Frame& s, Frame& t, Dims d) {
        lumiYCbCr422ToYCrCb420_8u_C2P3R(s.c[0], s.s[0], t.m, t.s, roi(d));
      },
      PEER(YUY2ToI420, s.c[0], s.s[0], t.m[0], t.s[0], t.m[2], t.s[2], t.m[1], t.s[1], d.width,
           d.height));
  add("CbYCr422ToYCrCb420_8u_C2P3R", c2, yv12,
      [](Frame& s, Frame& t, Dims d) {
        lumiCbYCr422ToYCrCb420_8u_C2P3R(s.c[0], s.s[0], t.m, t.s, roi(d));
      },
      PEER(UYVYToI420, s.c[0], s.s[0], t.m[0], t.s[0], t.m[2], t.s[2], t.m[1], t.s[1], d.width,
           d.height));
  add("YCbCr422ToYCbCr420_8u_C2P2R", c2, nv12,
      [](Frame& s, Frame& t, Dims d) {
        lumiYCbCr422ToYCbCr420_8u_C2P2R(s.c[0], s.s[0], t.m[0], t.s[0], t.m[1], t.s[1], roi(d));
      },
      PEER(YUY2ToNV12, s.c[0], s.s[0], t.m[0], t.s[0], t.m[1], t.s[1], d.width, d.height));
  add("CbYCr422ToYCbCr420_8u_C2P2R", c2, nv12,
      [](Frame& s, Frame& t, Dims d) {
        lumiCbYCr422ToYCbCr420_8u_C2P2R(s.c[0], s.s[0], t.m[0], t.s[0], t.m[1], t.s[1], roi(d));
      },
      PEER(UYVYToNV12, s.c[0], s.s[0], t.m[0], t.s[0], t.m[1], t.s[1], d.width, d.height));
#undef PEER
  // No libyuv counterpart: memcpy only.
  add("YCbCr420ToYCbCr422_8u_P2C2R", nv12, c2, [](Frame& s, Frame& t, Dims d) {
    lumiYCbCr420ToYCbCr422_8u_P2C2R(s.c[0], s.s[0], s.c[1], s.s[1], t.m[0], t.s[0], roi(d));
  });
  add("YCbCr420ToCbYCr422_8u_P2C2R", nv12, c2, [](Frame& s, Frame& t, Dims d) {
    lumiYCbCr420ToCbYCr422_8u_P2C2R(s.c[0], s.s[0], s.c[1], s.s[1], t.m[0], t.s[0], roi(d));
  });
  add("YCbCr422ToCbYCr422_8u_C2R", c2, c2, [](Frame& s, Frame& t, Dims d) {
    lumiYCbCr422ToCbYCr422_8u_C2R(s.c[0], s.s[0], t.m[0], t.s[0], roi(d));
  });
  add("CbYCr422ToYCbCr422_8u_C2R", c2, c2, [](Frame& s, Frame& t, Dims d) {
    lumiCbYCr422ToYCbCr422_8u_C2R(s.c[0], s.s[0], t.m[0], t.s[0], roi(d));
  });
  add("YCbCr420ToYCbCr422_Filter_8u_P2C2R_all", nv12, c2, [](Frame& s, Frame& t, Dims d) {
    lumiYCbCr420ToYCbCr422_Filter_8u_P2C2R(s.c[0], s.s[0], s.c[1], s.s[1], t.m[0], t.s[0], roi(d),
                                           lumSliceAll);
  });
  add("YCbCr420ToYCrCb420_Filter_8u_P2P3R_all", nv12, yv12, [](Frame& s, Frame& t, Dims d) {
    lumiYCbCr420ToYCrCb420_Filter_8u_P2P3R(s.c[0], s.s[0], s.c[1], s.s[1], t.m, t.s, roi(d),
                                           lumSliceAll);
  });
  add("YCbCr420ToYCbCr422_Filter_8u_P2P3R", nv12, i422, [](Frame& s, Frame& t, Dims d) {
    lumiYCbCr420ToYCbCr422_Filter_8u_P2P3R(s.c[0], s.s[0], s.c[1], s.s[1], t.m, t.s, roi(d));
  });
  return v;
}

size_t pixelsOf(Dims d) { return static_cast<size_t>(d.width) * static_cast<size_t>(d.height); }

void timed(benchmark::State& st, const Job& j, Dims d, const Run& run) {
  setThreads(1);
  Frame s(j.src(d), 1), t(j.dst(d), 7);
  run(s, t, d);
  for (auto _ : st) {
    run(s, t, d);
    benchmark::ClobberMemory();
  }
  setCounters(st, sumOf(j.src(d)), sumOf(j.dst(d)), pixelsOf(d), 1);
}

void registerAll() {
  for (const Job& j : jobs())
    for (const Dims d : standardDims()) {
      const std::string base = j.name + "/", size = "/" + dimsName(d);
      benchmark::RegisterBenchmark((base + "lum" + size).c_str(),
                                   [j, d](benchmark::State& st) { timed(st, j, d, j.lum); })
          ->UseRealTime();
      benchmark::RegisterBenchmark((base + "memcpy" + size).c_str(), [j, d](benchmark::State& st) {
        const size_t n = sumOf(j.dst(d));
        Image a(static_cast<int>(n), 1, 1, 3), b(static_cast<int>(n), 1, 1, 4);
        for (auto _ : st) {
          std::memcpy(b.data(), a.data(), n);
          benchmark::ClobberMemory();
        }
        setCounters(st, n, n, pixelsOf(d), 1);
      })->UseRealTime();
      if (j.peer)
        benchmark::RegisterBenchmark((base + j.peerName + size).c_str(),
                                     [j, d](benchmark::State& st) { timed(st, j, d, j.peer); })
            ->UseRealTime();
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
