// RGB with YCbCr / YCrCb 4:2:2 and 4:2:0, and CbYCr 4:2:2, against libyuv
// and OpenCV, with the memcpy bound, single-threaded, at 1920x1080 and
// 256x256.
//
// Groups "<function>/<implementation>/<width>x<height>":
//   lum              this library (these families run on the calling thread)
//   memcpy           a copy with the same traffic as the conversion: half of
//                    (bytes read + bytes written) copied from one buffer to
//                    another
//   libyuv_<fn>      libyuv's nearest job (its YUY2 is YCbCr422 C2, its UYVY
//                    is CbYCr422; ARGB is B,G,R,A in memory; its matrix is
//                    BT.601 studio range: the work is of the same size, and
//                    of the same arithmetic only as far as the layouts agree)
//   opencv_t1        cv::cvtColor with one OpenCV thread (its YUY2, YVYU and
//                    UYVY decoders; the I420 forms use one contiguous buffer)
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
using Impl = std::function<Run(const std::string&)>;

size_t pixelsOf(Dims d) { return static_cast<size_t>(d.width) * static_cast<size_t>(d.height); }

// A 4:2:x image as three planes (chroma height h or h / 2), and the same
// sizes as one contiguous buffer (OpenCV's I420).
struct Planar {
  Image y, u, v, packed;
  Planar(Dims d, bool is420, uint32_t seed)
      : y(d.width, d.height, 1, seed), u(d.width / 2, is420 ? d.height / 2 : d.height, 1, seed + 1),
        v(d.width / 2, is420 ? d.height / 2 : d.height, 1, seed + 2),
        packed(d.width, is420 ? d.height * 3 / 2 : d.height * 2, 1, seed + 3) {}
  const Lum8u* src[3] = {y.data(), u.data(), v.data()};
  Lum8u* dst[3] = {y.data(), u.data(), v.data()};
  int steps[3] = {y.step(), u.step(), v.step()};
  size_t bytes() const { return y.bytes() + u.bytes() + v.bytes(); }
};

// One fixture per function: its images, and run(impl).
struct Fixture {
  const char* name;
  std::vector<std::string> impls;
  std::function<std::shared_ptr<Impl>(Dims)> make;
};

std::vector<std::string> with(std::initializer_list<const char*> always,
                              std::initializer_list<const char*> yuv) {
  std::vector<std::string> v(always.begin(), always.end());
#ifdef LUM_HAVE_LIBYUV
  v.insert(v.end(), yuv.begin(), yuv.end());
#else
  (void)yuv;
#endif
  return v;
}

// A pixel-order to pixel-order conversion: source channels, destination
// channels (2 for C2), the call, an OpenCV code (or -1) and a libyuv call.
Fixture packed(const char* name, int sc, int dc,
               std::function<void(Image&, Image&)> lum, int cvCode,
               std::vector<std::string> impls,
               std::function<void(Image&, Image&, Image&)> yuv = nullptr, int yuvSrcCh = 0,
               int yuvDstCh = 0) {
  return {name, impls, [=](Dims d) {
            auto s = std::make_shared<Image>(d.width, d.height, sc, 41);
            auto t = std::make_shared<Image>(d.width, d.height, dc, 42);
            auto ys = std::make_shared<Image>(d.width, d.height, yuvSrcCh ? yuvSrcCh : 1, 43);
            auto yd = std::make_shared<Image>(d.width, d.height, yuvDstCh ? yuvDstCh : 1, 44);
            return std::make_shared<Impl>([=](const std::string& impl) -> Run {
              if (impl == "lum") return {[=] { lum(*s, *t); }, s->bytes(), t->bytes()};
              if (impl == "opencv_t1")
                return {[=] {
                          cv::Mat a = s->mat(), b = t->mat();
                          cv::cvtColor(a, b, cvCode);
                        },
                        s->bytes(), t->bytes()};
              return {[=] { yuv(*ys, *yd, *t); }, ys->bytes(), yd->bytes()};
            });
          }};
}

std::vector<Fixture> fixtures() {
  std::vector<Fixture> f;
  // 4:2:2 forward to C2.
  f.push_back(packed("RGBToYCbCr422_8u_C3C2R", 3, 2,
                     [](Image& s, Image& d) { lumiRGBToYCbCr422_8u_C3C2R(s.data(), s.step(), d.data(), d.step(), s.roi()); },
                     -1, with({"lum"}, {"libyuv_ARGBToYUY2"}),
#ifdef LUM_HAVE_LIBYUV
                     [](Image& s, Image& d, Image&) { libyuv::ARGBToYUY2(s.data(), s.step(), d.data(), d.step(), s.width(), s.height()); },
#else
                     nullptr,
#endif
                     4, 2));
  // 4:2:2 inverse from C2.
  f.push_back(packed("YCbCr422ToRGB_8u_C2C3R", 2, 3,
                     [](Image& s, Image& d) { lumiYCbCr422ToRGB_8u_C2C3R(s.data(), s.step(), d.data(), d.step(), s.roi()); },
                     cv::COLOR_YUV2RGB_YUY2, with({"lum", "opencv_t1"}, {"libyuv_YUY2ToARGB"}),
#ifdef LUM_HAVE_LIBYUV
                     [](Image& s, Image& d, Image&) { libyuv::YUY2ToARGB(s.data(), s.step(), d.data(), d.step(), s.width(), s.height()); },
#else
                     nullptr,
#endif
                     2, 4));
  f.push_back(packed("YCrCb422ToRGB_8u_C2C3R", 2, 3,
                     [](Image& s, Image& d) { lumiYCrCb422ToRGB_8u_C2C3R(s.data(), s.step(), d.data(), d.step(), s.roi()); },
                     cv::COLOR_YUV2RGB_YVYU, {"lum", "opencv_t1"}));
  // CbYCr.
  f.push_back(packed("RGBToCbYCr422_8u_C3C2R", 3, 2,
                     [](Image& s, Image& d) { lumiRGBToCbYCr422_8u_C3C2R(s.data(), s.step(), d.data(), d.step(), s.roi()); },
                     -1, with({"lum"}, {"libyuv_ARGBToUYVY"}),
#ifdef LUM_HAVE_LIBYUV
                     [](Image& s, Image& d, Image&) { libyuv::ARGBToUYVY(s.data(), s.step(), d.data(), d.step(), s.width(), s.height()); },
#else
                     nullptr,
#endif
                     4, 2));
  f.push_back(packed("BGRToCbYCr422_8u_AC4C2R", 4, 2,
                     [](Image& s, Image& d) { lumiBGRToCbYCr422_8u_AC4C2R(s.data(), s.step(), d.data(), d.step(), s.roi()); },
                     -1, with({"lum"}, {"libyuv_ARGBToUYVY"}),
#ifdef LUM_HAVE_LIBYUV
                     [](Image& s, Image& d, Image&) { libyuv::ARGBToUYVY(s.data(), s.step(), d.data(), d.step(), s.width(), s.height()); },
#else
                     nullptr,
#endif
                     4, 2));
  f.push_back(packed("CbYCr422ToRGB_8u_C2C3R", 2, 3,
                     [](Image& s, Image& d) { lumiCbYCr422ToRGB_8u_C2C3R(s.data(), s.step(), d.data(), d.step(), s.roi()); },
                     cv::COLOR_YUV2RGB_UYVY, with({"lum", "opencv_t1"}, {"libyuv_UYVYToARGB"}),
#ifdef LUM_HAVE_LIBYUV
                     [](Image& s, Image& d, Image&) { libyuv::UYVYToARGB(s.data(), s.step(), d.data(), d.step(), s.width(), s.height()); },
#else
                     nullptr,
#endif
                     2, 4));
  f.push_back(packed("CbYCr422ToBGR_8u_C2C4R", 2, 4,
                     [](Image& s, Image& d) { lumiCbYCr422ToBGR_8u_C2C4R(s.data(), s.step(), d.data(), d.step(), s.roi(), 255); },
                     cv::COLOR_YUV2BGRA_UYVY, with({"lum", "opencv_t1"}, {"libyuv_UYVYToARGB"}),
#ifdef LUM_HAVE_LIBYUV
                     [](Image& s, Image& d, Image&) { libyuv::UYVYToARGB(s.data(), s.step(), d.data(), d.step(), s.width(), s.height()); },
#else
                     nullptr,
#endif
                     2, 4));
  // Planes.
  f.push_back({"RGBToYCbCr420_8u_C3P3R", with({"lum", "opencv_t1"}, {"libyuv_RGB24ToI420"}), [](Dims d) {
                 auto s = std::make_shared<Image>(d.width, d.height, 3, 51);
                 auto p = std::make_shared<Planar>(d, true, 52);
                 return std::make_shared<Impl>([=](const std::string& impl) -> Run {
                   if (impl == "lum")
                     return {[=] { lumiRGBToYCbCr420_8u_C3P3R(s->data(), s->step(), p->dst, p->steps, s->roi()); }, s->bytes(), p->bytes()};
                   if (impl == "opencv_t1")
                     return {[=] { cv::Mat a = s->mat(), b = p->packed.mat(); cv::cvtColor(a, b, cv::COLOR_RGB2YUV_I420); },
                             s->bytes(), p->packed.bytes()};
#ifdef LUM_HAVE_LIBYUV
                   return {[=] {
                             libyuv::RGB24ToI420(s->data(), s->step(), p->dst[0], p->steps[0], p->dst[1], p->steps[1],
                                                 p->dst[2], p->steps[2], s->width(), s->height());
                           }, s->bytes(), p->bytes()};
#else
                   return {};
#endif
                 });
               }});
  for (bool is420 : {false, true})
    f.push_back({is420 ? "YCbCr420ToRGB_8u_P3C3R" : "YCbCr422ToRGB_8u_P3C3R",
                 is420 ? with({"lum", "opencv_t1"}, {"libyuv_I420ToRGB24"}) : with({"lum"}, {"libyuv_I422ToRGB24"}),
                 [is420](Dims d) {
                   auto p = std::make_shared<Planar>(d, is420, 61);
                   auto t = std::make_shared<Image>(d.width, d.height, 3, 62);
                   return std::make_shared<Impl>([=](const std::string& impl) -> Run {
                     if (impl == "lum")
                       return {[=] {
                                 if (is420) lumiYCbCr420ToRGB_8u_P3C3R(p->src, p->steps, t->data(), t->step(), t->roi());
                                 else lumiYCbCr422ToRGB_8u_P3C3R(p->src, p->steps, t->data(), t->step(), t->roi());
                               }, p->bytes(), t->bytes()};
                     if (impl == "opencv_t1")
                       return {[=] { cv::Mat a = p->packed.mat(), b = t->mat(); cv::cvtColor(a, b, cv::COLOR_YUV2RGB_I420); },
                               p->packed.bytes(), t->bytes()};
#ifdef LUM_HAVE_LIBYUV
                     return {[=] {
                               auto fn = is420 ? libyuv::I420ToRGB24 : libyuv::I422ToRGB24;
                               fn(p->src[0], p->steps[0], p->src[1], p->steps[1], p->src[2], p->steps[2], t->data(),
                                  t->step(), t->width(), t->height());
                             }, p->bytes(), t->bytes()};
#else
                     return {};
#endif
                   });
                 }});
  return f;
}

void registerFixture(const Fixture& fx) {
  for (const Dims d : standardDims()) {
    const std::string base = std::string(fx.name) + "/", size = "/" + dimsName(d);
    auto make = fx.make;
    for (const std::string& impl : fx.impls) {
      benchmark::RegisterBenchmark((base + impl + size).c_str(), [d, impl, make](benchmark::State& st) {
        setThreads(1);
        auto f = make(d);
        const Run r = (*f)(impl);
        r.fn();
        for (auto _ : st) {
          r.fn();
          benchmark::ClobberMemory();
        }
        setCounters(st, r.bytesRead, r.bytesWritten, pixelsOf(d), 1);
      })->UseRealTime();
    }
    benchmark::RegisterBenchmark((base + "memcpy" + size).c_str(), [d, make](benchmark::State& st) {
      setThreads(1);
      auto f = make(d);
      const Run r = (*f)("lum");
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
  for (const Fixture& f : fixtures()) registerFixture(f);
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
