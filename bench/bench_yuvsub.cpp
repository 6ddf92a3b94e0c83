// RGB <-> YUV 4:2:0, RGB <-> YUV 4:2:2 (planes) and RGB <-> YCbCr 4:4:4
// against libyuv and OpenCV, with the memcpy bound, single-threaded, at
// 1920x1080 and 256x256.
//
// Groups "<function>/<implementation>/<width>x<height>":
//   lum              this library (these families run on the calling thread)
//   memcpy           a copy with the same traffic as the conversion: half of
//                    (bytes read + bytes written) copied from one buffer to
//                    another, so that as many bytes are read and written as
//                    the conversion reads and writes in total
//   libyuv_<fn>      libyuv's nearest job (its RGB24 is B,G,R in memory and
//                    its matrix is BT.601 studio range: the work is of the
//                    same size, not the same arithmetic)
//   opencv_t1        cv::cvtColor with one OpenCV thread; the I420 forms use
//                    one contiguous Y,U,V buffer, as OpenCV requires
// Counters: bytes_per_second (read + written), items_per_second (pixels).
#include "bench_common.h"

#include <opencv2/imgproc.hpp>

#ifdef LUM_HAVE_LIBYUV
#include <libyuv.h>
#endif

#include <functional>

using namespace lumbench;

namespace {

struct Run {
  std::function<void()> fn;
  size_t bytesRead, bytesWritten;
};

// A 4:2:0 image as three separate planes (this library, libyuv), and the
// same sizes as one contiguous buffer of height * 3 / 2 rows (OpenCV).
struct I420 {
  Image y, u, v, packed;
  I420(Dims d, uint32_t seed)
      : y(d.width, d.height, 1, seed), u(d.width / 2, d.height / 2, 1, seed + 1),
        v(d.width / 2, d.height / 2, 1, seed + 2), packed(d.width, d.height * 3 / 2, 1, seed + 3) {}
  const Lum8u* src[3] = {y.data(), u.data(), v.data()};
  Lum8u* dst[3] = {y.data(), u.data(), v.data()};
  int steps[3] = {y.step(), u.step(), v.step()};
  size_t bytes() const { return y.bytes() + u.bytes() + v.bytes(); }
};

// ---------------------------------------------------------------------------
// Fixtures: each gives run(impl) for the names in impls().

struct RGBToYUV420_C3P3 {
  static constexpr const char* kName = "RGBToYUV420_8u_C3P3R";
  Image rgb, argb;
  I420 yuv;
  explicit RGBToYUV420_C3P3(Dims d) : rgb(d.width, d.height, 3, 1), argb(d.width, d.height, 4, 2), yuv(d, 3) {}
  static std::vector<std::string> impls() {
    return {"lum", "opencv_t1"
#ifdef LUM_HAVE_LIBYUV
            , "libyuv_RGB24ToI420", "libyuv_ARGBToI420"
#endif
    };
  }
  Run run(const std::string& impl) {
    if (impl == "lum")
      return {[this] { lumiRGBToYUV420_8u_C3P3R(rgb.data(), rgb.step(), yuv.dst, yuv.steps, rgb.roi()); },
              rgb.bytes(), yuv.bytes()};
    if (impl == "opencv_t1")
      return {[this] {
                cv::Mat s = rgb.mat(), d = yuv.packed.mat();
                cv::cvtColor(s, d, cv::COLOR_RGB2YUV_I420);
              },
              rgb.bytes(), yuv.packed.bytes()};
#ifdef LUM_HAVE_LIBYUV
    if (impl == "libyuv_RGB24ToI420")
      return {[this] {
                libyuv::RGB24ToI420(rgb.data(), rgb.step(), yuv.dst[0], yuv.steps[0], yuv.dst[1],
                                    yuv.steps[1], yuv.dst[2], yuv.steps[2], rgb.width(), rgb.height());
              },
              rgb.bytes(), yuv.bytes()};
    if (impl == "libyuv_ARGBToI420")
      return {[this] {
                libyuv::ARGBToI420(argb.data(), argb.step(), yuv.dst[0], yuv.steps[0], yuv.dst[1],
                                   yuv.steps[1], yuv.dst[2], yuv.steps[2], argb.width(), argb.height());
              },
              argb.bytes(), yuv.bytes()};
#endif
    return {};
  }
};

// Planes to pixel order, three or four bytes a pixel.
template <bool kAC4>
struct YUV420ToRGB {
  static constexpr const char* kName = kAC4 ? "YUV420ToRGB_8u_P3AC4R" : "YUV420ToRGB_8u_P3C3R";
  I420 yuv;
  Image out;
  explicit YUV420ToRGB(Dims d) : yuv(d, 11), out(d.width, d.height, kAC4 ? 4 : 3, 12) {}
  static std::vector<std::string> impls() {
    return {"lum", "opencv_t1"
#ifdef LUM_HAVE_LIBYUV
            , kAC4 ? "libyuv_I420ToARGB" : "libyuv_I420ToRGB24"
#endif
    };
  }
  Run run(const std::string& impl) {
    if (impl == "lum")
      return {[this] {
                if (kAC4) lumiYUV420ToRGB_8u_P3AC4R(yuv.src, yuv.steps, out.data(), out.step(), out.roi());
                else lumiYUV420ToRGB_8u_P3C3R(yuv.src, yuv.steps, out.data(), out.step(), out.roi());
              },
              yuv.bytes(), out.bytes()};
    if (impl == "opencv_t1")
      return {[this] {
                cv::Mat s = yuv.packed.mat(), d = out.mat();
                cv::cvtColor(s, d, kAC4 ? cv::COLOR_YUV2RGBA_I420 : cv::COLOR_YUV2RGB_I420);
              },
              yuv.packed.bytes(), out.bytes()};
#ifdef LUM_HAVE_LIBYUV
    return {[this] {
              if (kAC4)
                libyuv::I420ToARGB(yuv.src[0], yuv.steps[0], yuv.src[1], yuv.steps[1], yuv.src[2],
                                   yuv.steps[2], out.data(), out.step(), out.width(), out.height());
              else
                libyuv::I420ToRGB24(yuv.src[0], yuv.steps[0], yuv.src[1], yuv.steps[1], yuv.src[2],
                                    yuv.steps[2], out.data(), out.step(), out.width(), out.height());
            },
            yuv.bytes(), out.bytes()};
#else
    return {};
#endif
  }
};

// 4:2:2 planes, chroma at half width and full height.
struct I422 {
  Image y, u, v;
  I422(Dims d, uint32_t seed)
      : y(d.width, d.height, 1, seed), u(d.width / 2, d.height, 1, seed + 1),
        v(d.width / 2, d.height, 1, seed + 2) {}
  const Lum8u* src[3] = {y.data(), u.data(), v.data()};
  Lum8u* dst[3] = {y.data(), u.data(), v.data()};
  int steps[3] = {y.step(), u.step(), v.step()};
  size_t bytes() const { return y.bytes() + u.bytes() + v.bytes(); }
};

// RGB to 4:2:2 planes; libyuv has no 3-byte source for 4:2:2 and is given
// its 4-byte one (ARGBToI422), a lighter job.
struct RGBToYUV422_C3P3 {
  static constexpr const char* kName = "RGBToYUV422_8u_C3P3R";
  Image rgb, argb;
  I422 yuv;
  explicit RGBToYUV422_C3P3(Dims d) : rgb(d.width, d.height, 3, 41), argb(d.width, d.height, 4, 42), yuv(d, 43) {}
  static std::vector<std::string> impls() {
    return {"lum"
#ifdef LUM_HAVE_LIBYUV
            , "libyuv_ARGBToI422"
#endif
    };
  }
  Run run(const std::string& impl) {
    if (impl == "lum")
      return {[this] { lumiRGBToYUV422_8u_C3P3R(rgb.data(), rgb.step(), yuv.dst, yuv.steps, rgb.roi()); },
              rgb.bytes(), yuv.bytes()};
#ifdef LUM_HAVE_LIBYUV
    return {[this] {
              libyuv::ARGBToI422(argb.data(), argb.step(), yuv.dst[0], yuv.steps[0], yuv.dst[1],
                                 yuv.steps[1], yuv.dst[2], yuv.steps[2], argb.width(), argb.height());
            },
            argb.bytes(), yuv.bytes()};
#else
    return {};
#endif
  }
};

// 4:2:2 planes to pixel order.
struct YUV422ToRGB_P3C3 {
  static constexpr const char* kName = "YUV422ToRGB_8u_P3C3R";
  I422 yuv;
  Image out;
  explicit YUV422ToRGB_P3C3(Dims d) : yuv(d, 51), out(d.width, d.height, 3, 52) {}
  static std::vector<std::string> impls() {
    return {"lum"
#ifdef LUM_HAVE_LIBYUV
            , "libyuv_I422ToRGB24"
#endif
    };
  }
  Run run(const std::string& impl) {
    if (impl == "lum")
      return {[this] { lumiYUV422ToRGB_8u_P3C3R(yuv.src, yuv.steps, out.data(), out.step(), out.roi()); },
              yuv.bytes(), out.bytes()};
#ifdef LUM_HAVE_LIBYUV
    return {[this] {
              libyuv::I422ToRGB24(yuv.src[0], yuv.steps[0], yuv.src[1], yuv.steps[1], yuv.src[2],
                                  yuv.steps[2], out.data(), out.step(), out.width(), out.height());
            },
            yuv.bytes(), out.bytes()};
#else
    return {};
#endif
  }
};

// YCbCr 4:4:4 in pixel order, both ways; OpenCV's YCrCb holds the same
// numbers with the chroma bytes exchanged.
template <bool kForward>
struct YCbCr_C3 {
  static constexpr const char* kName = kForward ? "RGBToYCbCr_8u_C3R" : "YCbCrToRGB_8u_C3R";
  Image src, dst;
  explicit YCbCr_C3(Dims d) : src(d.width, d.height, 3, 21), dst(d.width, d.height, 3, 22) {}
  static std::vector<std::string> impls() { return {"lum", "opencv_t1"}; }
  Run run(const std::string& impl) {
    if (impl == "lum")
      return {[this] {
                if (kForward) lumiRGBToYCbCr_8u_C3R(src.data(), src.step(), dst.data(), dst.step(), src.roi());
                else lumiYCbCrToRGB_8u_C3R(src.data(), src.step(), dst.data(), dst.step(), src.roi());
              },
              src.bytes(), dst.bytes()};
    return {[this] {
              cv::Mat s = src.mat(), d = dst.mat();
              cv::cvtColor(s, d, kForward ? cv::COLOR_RGB2YCrCb : cv::COLOR_YCrCb2RGB);
            },
            src.bytes(), dst.bytes()};
  }
};

size_t pixelsOf(Dims d) { return static_cast<size_t>(d.width) * static_cast<size_t>(d.height); }

template <class F>
void registerGroup() {
  for (const Dims d : standardDims()) {
    const std::string base = std::string(F::kName) + "/", size = "/" + dimsName(d);
    for (const std::string& impl : F::impls()) {
      benchmark::RegisterBenchmark((base + impl + size).c_str(), [d, impl](benchmark::State& st) {
        setThreads(1);
        F f(d);
        const Run r = f.run(impl);
        r.fn();  // warm the pages and the reference's dispatch
        for (auto _ : st) {
          r.fn();
          benchmark::ClobberMemory();
        }
        setCounters(st, r.bytesRead, r.bytesWritten, pixelsOf(d), 1);
      })->UseRealTime();
    }
    benchmark::RegisterBenchmark((base + "memcpy" + size).c_str(), [d](benchmark::State& st) {
      setThreads(1);
      F f(d);
      const Run r = f.run("lum");
      const size_t half = (r.bytesRead + r.bytesWritten) / 2;
      Image a(static_cast<int>(half), 1, 1, 31), b(static_cast<int>(half), 1, 1, 32);
      std::memcpy(b.data(), a.data(), half);
      for (auto _ : st) {
        std::memcpy(b.data(), a.data(), half);
        benchmark::ClobberMemory();
      }
      setCounters(st, half, half, pixelsOf(d), 1);
    })->UseRealTime();
  }
}

}  // namespace

int main(int argc, char** argv) {
  registerGroup<RGBToYUV420_C3P3>();
  registerGroup<YUV420ToRGB<false>>();
  registerGroup<YUV420ToRGB<true>>();
  registerGroup<RGBToYUV422_C3P3>();
  registerGroup<YUV422ToRGB_P3C3>();
  registerGroup<YCbCr_C3<true>>();
  registerGroup<YCbCr_C3<false>>();
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
