// RGB <-> YUV 4:4:4 (the eight 8u functions in pixel-order, four-channel and
// plane layouts) against OpenCV's cvtColor, libyuv's I444 paths where it has
// one, and memcpy of the same bytes.
//
// Every conversion is registered as a group "<function>/<implementation>/
// <width>x<height>":
//   lum            this library, team size 1 (these functions hold no
//                  parallel region, so the team size does not change them)
//   memcpy         the source bytes copied onto the destination buffers
//                  (source and destination hold the same number of bytes in
//                  all eight functions)
//   opencv_t1/_t2  cv::cvtColor(COLOR_RGB2YUV / COLOR_YUV2RGB) on pixel-order
//                  images of the same size, 1 and 2 OpenCV threads; see each
//                  fixture for the layout it uses where ours has none
//   opencv_planes_t1  plane forms only: what OpenCV needs to reach the same
//                  layout (cv::merge and/or cv::split around cvtColor)
//   libyuv_<fn>    libyuv's nearest 4:4:4 path (BT.601 studio range, B,G,R
//                  byte order, so the work differs slightly)
// Counters: bytes_per_second counts bytes read + bytes written by the call,
// items_per_second counts pixels; both over wall time.
#include "bench_common.h"

#include <opencv2/imgproc.hpp>

#ifdef LUM_HAVE_LIBYUV
#include <libyuv.h>
#endif

#include <functional>

using namespace lumbench;

namespace {

// A runnable implementation with its byte counts per call.
struct Run {
  std::function<void()> fn;
  size_t bytesRead, bytesWritten;
};

// ---------------------------------------------------------------------------
// Fixtures: the buffers of one function at one size, and how each
// implementation converts them.  Every fixture gives
//   lum(), spansSrc()/spansDst() (for memcpy), opencv() and, where they
//   exist, opencvPlanes() and libyuv() (with libyuvName).

struct RGBToYUV_C3 {
  static constexpr const char* kName = "RGBToYUV_8u_C3R";
  Image src, dst;
  explicit RGBToYUV_C3(Dims d) : src(d.width, d.height, 3, 11), dst(d.width, d.height, 3, 12) {}
  LumStatus lum() {
    return lumiRGBToYUV_8u_C3R(src.data(), src.step(), dst.data(), dst.step(), src.roi());
  }
  std::vector<Span> spansSrc() { return {span(src)}; }
  std::vector<Span> spansDst() { return {span(dst)}; }
  Run opencv() {
    return {[this] {
              cv::Mat s = src.mat(), d = dst.mat();
              cv::cvtColor(s, d, cv::COLOR_RGB2YUV);
            },
            src.bytes(), dst.bytes()};
  }
};

// OpenCV has no four-channel YUV: COLOR_RGB2YUV reads the RGBA source
// (alpha skipped) and writes three-channel YUV.  libyuv's ARGBToI444 reads
// the same four-byte pixels and writes planes.
struct RGBToYUV_AC4 {
  static constexpr const char* kName = "RGBToYUV_8u_AC4R";
  Image src, dst, cvDst;
  Planes3 yuvPlanes;
  explicit RGBToYUV_AC4(Dims d)
      : src(d.width, d.height, 4, 21), dst(d.width, d.height, 4, 22),
        cvDst(d.width, d.height, 3, 23), yuvPlanes(d.width, d.height, 24) {}
  LumStatus lum() {
    return lumiRGBToYUV_8u_AC4R(src.data(), src.step(), dst.data(), dst.step(), src.roi());
  }
  std::vector<Span> spansSrc() { return {span(src)}; }
  std::vector<Span> spansDst() { return {span(dst)}; }
  Run opencv() {
    return {[this] {
              cv::Mat s = src.mat(), d = cvDst.mat();
              cv::cvtColor(s, d, cv::COLOR_RGB2YUV);
            },
            src.bytes(), cvDst.bytes()};
  }
#ifdef LUM_HAVE_LIBYUV
  static constexpr const char* libyuvName = "libyuv_ARGBToI444";
  Run libyuv() {
    return {[this] {
              libyuv::ARGBToI444(src.data(), src.step(), yuvPlanes.dst[0], yuvPlanes.step(),
                                 yuvPlanes.dst[1], yuvPlanes.step(), yuvPlanes.dst[2],
                                 yuvPlanes.step(), src.width(), src.height());
            },
            src.bytes(), yuvPlanes.bytes()};
  }
#endif
};

// Plane to plane.  The OpenCV reference converts pixel-order images of the
// same size; opencvPlanes() merges the planes, converts, and splits.
struct RGBToYUV_P3 {
  static constexpr const char* kName = "RGBToYUV_8u_P3R";
  Planes3 src, dst;
  Image cvSrc, cvDst, tmpA, tmpB;
  explicit RGBToYUV_P3(Dims d)
      : src(d.width, d.height, 31), dst(d.width, d.height, 34), cvSrc(d.width, d.height, 3, 37),
        cvDst(d.width, d.height, 3, 38), tmpA(d.width, d.height, 3, 39),
        tmpB(d.width, d.height, 3, 40) {}
  LumStatus lum() {
    return lumiRGBToYUV_8u_P3R(src.src, src.step(), dst.dst, dst.step(), src.p[0].roi());
  }
  std::vector<Span> spansSrc() { return {span(src.p[0]), span(src.p[1]), span(src.p[2])}; }
  std::vector<Span> spansDst() { return {span(dst.p[0]), span(dst.p[1]), span(dst.p[2])}; }
  Run opencv() {
    return {[this] {
              cv::Mat s = cvSrc.mat(), d = cvDst.mat();
              cv::cvtColor(s, d, cv::COLOR_RGB2YUV);
            },
            cvSrc.bytes(), cvDst.bytes()};
  }
  Run opencvPlanes() {
    return {[this] {
              std::vector<cv::Mat> in = src.mats(), out = dst.mats();
              cv::Mat a = tmpA.mat(), b = tmpB.mat();
              cv::merge(in.data(), 3, a);
              cv::cvtColor(a, b, cv::COLOR_RGB2YUV);
              cv::split(b, out.data());
            },
            src.bytes(), dst.bytes()};
  }
};

// Pixel order to planes.  OpenCV: cvtColor alone (pixel order to pixel
// order), and cvtColor + split.  libyuv: ARGBToI444 from four-byte pixels.
struct RGBToYUV_C3P3 {
  static constexpr const char* kName = "RGBToYUV_8u_C3P3R";
  Image src;
  Planes3 dst;
  Image cvDst, argb;
  explicit RGBToYUV_C3P3(Dims d)
      : src(d.width, d.height, 3, 41), dst(d.width, d.height, 42),
        cvDst(d.width, d.height, 3, 45), argb(d.width, d.height, 4, 46) {}
  LumStatus lum() {
    return lumiRGBToYUV_8u_C3P3R(src.data(), src.step(), dst.dst, dst.step(), src.roi());
  }
  std::vector<Span> spansSrc() { return {span(src)}; }
  std::vector<Span> spansDst() { return {span(dst.p[0]), span(dst.p[1]), span(dst.p[2])}; }
  Run opencv() {
    return {[this] {
              cv::Mat s = src.mat(), d = cvDst.mat();
              cv::cvtColor(s, d, cv::COLOR_RGB2YUV);
            },
            src.bytes(), cvDst.bytes()};
  }
  Run opencvPlanes() {
    return {[this] {
              std::vector<cv::Mat> out = dst.mats();
              cv::Mat s = src.mat(), t = cvDst.mat();
              cv::cvtColor(s, t, cv::COLOR_RGB2YUV);
              cv::split(t, out.data());
            },
            src.bytes(), dst.bytes()};
  }
#ifdef LUM_HAVE_LIBYUV
  static constexpr const char* libyuvName = "libyuv_ARGBToI444";
  Run libyuv() {
    return {[this] {
              libyuv::ARGBToI444(argb.data(), argb.step(), dst.dst[0], dst.step(), dst.dst[1],
                                 dst.step(), dst.dst[2], dst.step(), argb.width(), argb.height());
            },
            argb.bytes(), dst.bytes()};
  }
#endif
};

struct YUVToRGB_C3 {
  static constexpr const char* kName = "YUVToRGB_8u_C3R";
  Image src, dst;
  explicit YUVToRGB_C3(Dims d) : src(d.width, d.height, 3, 51), dst(d.width, d.height, 3, 52) {}
  LumStatus lum() {
    return lumiYUVToRGB_8u_C3R(src.data(), src.step(), dst.data(), dst.step(), src.roi());
  }
  std::vector<Span> spansSrc() { return {span(src)}; }
  std::vector<Span> spansDst() { return {span(dst)}; }
  Run opencv() {
    return {[this] {
              cv::Mat s = src.mat(), d = dst.mat();
              cv::cvtColor(s, d, cv::COLOR_YUV2RGB);
            },
            src.bytes(), dst.bytes()};
  }
};

// OpenCV reads only three-channel YUV: COLOR_YUV2RGB with four destination
// channels (alpha written as 255).  libyuv's I444ToARGB reads planes and
// writes four-byte pixels (alpha 255).
struct YUVToRGB_AC4 {
  static constexpr const char* kName = "YUVToRGB_8u_AC4R";
  Image src, dst, cvSrc;
  Planes3 yuvPlanes;
  explicit YUVToRGB_AC4(Dims d)
      : src(d.width, d.height, 4, 61), dst(d.width, d.height, 4, 62),
        cvSrc(d.width, d.height, 3, 63), yuvPlanes(d.width, d.height, 64) {}
  LumStatus lum() {
    return lumiYUVToRGB_8u_AC4R(src.data(), src.step(), dst.data(), dst.step(), src.roi());
  }
  std::vector<Span> spansSrc() { return {span(src)}; }
  std::vector<Span> spansDst() { return {span(dst)}; }
  Run opencv() {
    return {[this] {
              cv::Mat s = cvSrc.mat(), d = dst.mat();
              cv::cvtColor(s, d, cv::COLOR_YUV2RGB, 4);
            },
            cvSrc.bytes(), dst.bytes()};
  }
#ifdef LUM_HAVE_LIBYUV
  static constexpr const char* libyuvName = "libyuv_I444ToARGB";
  Run libyuv() {
    return {[this] {
              libyuv::I444ToARGB(yuvPlanes.src[0], yuvPlanes.step(), yuvPlanes.src[1],
                                 yuvPlanes.step(), yuvPlanes.src[2], yuvPlanes.step(), dst.data(),
                                 dst.step(), dst.width(), dst.height());
            },
            yuvPlanes.bytes(), dst.bytes()};
  }
#endif
};

struct YUVToRGB_P3 {
  static constexpr const char* kName = "YUVToRGB_8u_P3R";
  Planes3 src, dst;
  Image cvSrc, cvDst, tmpA, tmpB;
  explicit YUVToRGB_P3(Dims d)
      : src(d.width, d.height, 71), dst(d.width, d.height, 74), cvSrc(d.width, d.height, 3, 77),
        cvDst(d.width, d.height, 3, 78), tmpA(d.width, d.height, 3, 79),
        tmpB(d.width, d.height, 3, 80) {}
  LumStatus lum() {
    return lumiYUVToRGB_8u_P3R(src.src, src.step(), dst.dst, dst.step(), src.p[0].roi());
  }
  std::vector<Span> spansSrc() { return {span(src.p[0]), span(src.p[1]), span(src.p[2])}; }
  std::vector<Span> spansDst() { return {span(dst.p[0]), span(dst.p[1]), span(dst.p[2])}; }
  Run opencv() {
    return {[this] {
              cv::Mat s = cvSrc.mat(), d = cvDst.mat();
              cv::cvtColor(s, d, cv::COLOR_YUV2RGB);
            },
            cvSrc.bytes(), cvDst.bytes()};
  }
  Run opencvPlanes() {
    return {[this] {
              std::vector<cv::Mat> in = src.mats(), out = dst.mats();
              cv::Mat a = tmpA.mat(), b = tmpB.mat();
              cv::merge(in.data(), 3, a);
              cv::cvtColor(a, b, cv::COLOR_YUV2RGB);
              cv::split(b, out.data());
            },
            src.bytes(), dst.bytes()};
  }
};

// Planes to pixel order: the one function with an exact layout twin in
// libyuv (I444ToRGB24).
struct YUVToRGB_P3C3 {
  static constexpr const char* kName = "YUVToRGB_8u_P3C3R";
  Planes3 src;
  Image dst, cvSrc, tmp;
  explicit YUVToRGB_P3C3(Dims d)
      : src(d.width, d.height, 81), dst(d.width, d.height, 3, 84),
        cvSrc(d.width, d.height, 3, 85), tmp(d.width, d.height, 3, 86) {}
  LumStatus lum() {
    return lumiYUVToRGB_8u_P3C3R(src.src, src.step(), dst.data(), dst.step(), dst.roi());
  }
  std::vector<Span> spansSrc() { return {span(src.p[0]), span(src.p[1]), span(src.p[2])}; }
  std::vector<Span> spansDst() { return {span(dst)}; }
  Run opencv() {
    return {[this] {
              cv::Mat s = cvSrc.mat(), d = dst.mat();
              cv::cvtColor(s, d, cv::COLOR_YUV2RGB);
            },
            cvSrc.bytes(), dst.bytes()};
  }
  Run opencvPlanes() {
    return {[this] {
              std::vector<cv::Mat> in = src.mats();
              cv::Mat t = tmp.mat(), d = dst.mat();
              cv::merge(in.data(), 3, t);
              cv::cvtColor(t, d, cv::COLOR_YUV2RGB);
            },
            src.bytes(), dst.bytes()};
  }
#ifdef LUM_HAVE_LIBYUV
  static constexpr const char* libyuvName = "libyuv_I444ToRGB24";
  Run libyuv() {
    return {[this] {
              libyuv::I444ToRGB24(src.src[0], src.step(), src.src[1], src.step(), src.src[2],
                                  src.step(), dst.data(), dst.step(), dst.width(), dst.height());
            },
            src.bytes(), dst.bytes()};
  }
#endif
};

// ---------------------------------------------------------------------------
// Which optional references a fixture has.
template <class F, class = void>
struct HasPlanes : std::false_type {};
template <class F>
struct HasPlanes<F, std::void_t<decltype(&F::opencvPlanes)>> : std::true_type {};
template <class F, class = void>
struct HasLibyuv : std::false_type {};
template <class F>
struct HasLibyuv<F, std::void_t<decltype(&F::libyuv)>> : std::true_type {};

size_t pixelsOf(Dims d) { return static_cast<size_t>(d.width) * static_cast<size_t>(d.height); }

// Times one Run at a team size.
template <class F, class GetRun>
void timeRun(benchmark::State& st, Dims d, int threads, GetRun get) {
  setThreads(threads);
  F f(d);
  const Run r = get(f);
  r.fn();  // warm the pages and the reference's dispatch
  for (auto _ : st) {
    r.fn();
    benchmark::ClobberMemory();
  }
  setCounters(st, r.bytesRead, r.bytesWritten, pixelsOf(d), threads);
}

template <class F>
void registerGroup() {
  for (const Dims d : standardDims()) {
    const std::string base = std::string(F::kName) + "/";
    const std::string size = "/" + dimsName(d);

    benchmark::RegisterBenchmark((base + "lum" + size).c_str(), [d](benchmark::State& st) {
      setThreads(1);
      F f(d);
      if (f.lum() != LumOk) {
        st.SkipWithError("status not LumOk");
        return;
      }
      for (auto _ : st) {
        benchmark::DoNotOptimize(f.lum());
        benchmark::ClobberMemory();
      }
      setCounters(st, totalBytes(f.spansSrc()), totalBytes(f.spansDst()), pixelsOf(d), 1);
    })->UseRealTime();

    benchmark::RegisterBenchmark((base + "memcpy" + size).c_str(), [d](benchmark::State& st) {
      setThreads(1);
      F f(d);
      const std::vector<Span> s = f.spansSrc(), t = f.spansDst();
      if (totalBytes(s) != totalBytes(t)) {
        st.SkipWithError("source and destination sizes differ");
        return;
      }
      copySpans(s, t);
      for (auto _ : st) {
        copySpans(s, t);
        benchmark::ClobberMemory();
      }
      setCounters(st, totalBytes(s), totalBytes(t), pixelsOf(d), 1);
    })->UseRealTime();

    for (int threads : {1, 2}) {
      benchmark::RegisterBenchmark((base + "opencv_t" + std::to_string(threads) + size).c_str(),
                                   [d, threads](benchmark::State& st) {
                                     timeRun<F>(st, d, threads, [](F& f) { return f.opencv(); });
                                   })
          ->UseRealTime();
    }

    if constexpr (HasPlanes<F>::value) {
      benchmark::RegisterBenchmark((base + "opencv_planes_t1" + size).c_str(),
                                   [d](benchmark::State& st) {
                                     timeRun<F>(st, d, 1, [](F& f) { return f.opencvPlanes(); });
                                   })
          ->UseRealTime();
    }

    if constexpr (HasLibyuv<F>::value) {
      benchmark::RegisterBenchmark((base + F::libyuvName + size).c_str(),
                                   [d](benchmark::State& st) {
                                     timeRun<F>(st, d, 1, [](F& f) { return f.libyuv(); });
                                   })
          ->UseRealTime();
    }
  }
}

}  // namespace

int main(int argc, char** argv) {
  registerGroup<RGBToYUV_C3>();
  registerGroup<RGBToYUV_AC4>();
  registerGroup<RGBToYUV_P3>();
  registerGroup<RGBToYUV_C3P3>();
  registerGroup<YUVToRGB_C3>();
  registerGroup<YUVToRGB_AC4>();
  registerGroup<YUVToRGB_P3>();
  registerGroup<YUVToRGB_P3C3>();
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
