// Service primitives against the obvious alternatives: Copy against memcpy of
// the same bytes, cv::Mat::copyTo and a plain loop; Set against memset,
// cv::Mat::setTo and a plain loop; Sum and Max against plain loops and
// OpenCV.  Sizes: 1920x1080, and sizes above the non-temporal thresholds
// (copy 2048x1024, fill 2048x1536; 1024x1024 is the largest copy with
// ordinary stores, 1920x1080 already streams).  Single-threaded (these primitives have
// no parallel region).
#include <benchmark/benchmark.h>
#include <stdlib.h>
#include <string.h>

#include <opencv2/core.hpp>
#include <vector>

#include "lumcc.h"

namespace {

struct Buffers {
  uint8_t* src;
  uint8_t* dst;
  size_t n;
  explicit Buffers(size_t bytes) : n(bytes) {
    src = static_cast<uint8_t*>(aligned_alloc(64, (bytes + 63) & ~size_t{63}));
    dst = static_cast<uint8_t*>(aligned_alloc(64, (bytes + 63) & ~size_t{63}));
    for (size_t i = 0; i < bytes; ++i) src[i] = static_cast<uint8_t>(i * 31 + 7);
    memset(dst, 0, bytes);
  }
  ~Buffers() {
    free(src);
    free(dst);
  }
};

// A plain byte loop as written, kept a loop (no library call substituted).
__attribute__((optimize("no-tree-loop-distribute-patterns"))) void plainCopy(const uint8_t* s,
                                                                              uint8_t* d, size_t n) {
  for (size_t i = 0; i < n; ++i) d[i] = s[i];
}
__attribute__((optimize("no-tree-loop-distribute-patterns"))) void plainSet(uint8_t v, uint8_t* d,
                                                                             size_t n) {
  for (size_t i = 0; i < n; ++i) d[i] = v;
}

void setup() {
  threads_omp_of_n_lum = 1;
  cv::setNumThreads(1);
}

// ---------------------------------------------------------------------------
void BM_Copy_lum(benchmark::State& st) {
  setup();
  const int w = static_cast<int>(st.range(0)), h = static_cast<int>(st.range(1));
  Buffers b(static_cast<size_t>(w) * h);
  for (auto _ : st) {
    lumiCopy_8u_C1R(b.src, w, b.dst, w, {w, h});
    benchmark::DoNotOptimize(b.dst);
    benchmark::ClobberMemory();
  }
  st.SetBytesProcessed(st.iterations() * static_cast<int64_t>(b.n));
}
void BM_Copy_memcpy(benchmark::State& st) {
  const size_t n = static_cast<size_t>(st.range(0)) * st.range(1);
  Buffers b(n);
  for (auto _ : st) {
    memcpy(b.dst, b.src, n);
    benchmark::DoNotOptimize(b.dst);
    benchmark::ClobberMemory();
  }
  st.SetBytesProcessed(st.iterations() * static_cast<int64_t>(n));
}
void BM_Copy_opencv(benchmark::State& st) {
  setup();
  const int w = static_cast<int>(st.range(0)), h = static_cast<int>(st.range(1));
  Buffers b(static_cast<size_t>(w) * h);
  cv::Mat s(h, w, CV_8UC1, b.src), d(h, w, CV_8UC1, b.dst);
  for (auto _ : st) {
    s.copyTo(d);
    benchmark::ClobberMemory();
  }
  st.SetBytesProcessed(st.iterations() * static_cast<int64_t>(b.n));
}
void BM_Copy_loop(benchmark::State& st) {
  const size_t n = static_cast<size_t>(st.range(0)) * st.range(1);
  Buffers b(n);
  for (auto _ : st) {
    plainCopy(b.src, b.dst, n);
    benchmark::ClobberMemory();
  }
  st.SetBytesProcessed(st.iterations() * static_cast<int64_t>(n));
}

void BM_Set_lum(benchmark::State& st) {
  setup();
  const int w = static_cast<int>(st.range(0)), h = static_cast<int>(st.range(1));
  Buffers b(static_cast<size_t>(w) * h);
  for (auto _ : st) {
    lumiSet_8u_C1R(0x5A, b.dst, w, {w, h});
    benchmark::ClobberMemory();
  }
  st.SetBytesProcessed(st.iterations() * static_cast<int64_t>(b.n));
}
void BM_Set_memset(benchmark::State& st) {
  const size_t n = static_cast<size_t>(st.range(0)) * st.range(1);
  Buffers b(n);
  for (auto _ : st) {
    memset(b.dst, 0x5A, n);
    benchmark::ClobberMemory();
  }
  st.SetBytesProcessed(st.iterations() * static_cast<int64_t>(n));
}
void BM_Set_opencv(benchmark::State& st) {
  setup();
  const int w = static_cast<int>(st.range(0)), h = static_cast<int>(st.range(1));
  Buffers b(static_cast<size_t>(w) * h);
  cv::Mat d(h, w, CV_8UC1, b.dst);
  for (auto _ : st) {
    d.setTo(cv::Scalar(0x5A));
    benchmark::ClobberMemory();
  }
  st.SetBytesProcessed(st.iterations() * static_cast<int64_t>(b.n));
}
void BM_Set_loop(benchmark::State& st) {
  const size_t n = static_cast<size_t>(st.range(0)) * st.range(1);
  Buffers b(n);
  for (auto _ : st) {
    plainSet(0x5A, b.dst, n);
    benchmark::ClobberMemory();
  }
  st.SetBytesProcessed(st.iterations() * static_cast<int64_t>(n));
}

// ---------------------------------------------------------------------------
struct FloatImage {
  std::vector<float> v;
  int w, h;
  FloatImage(int w_, int h_) : v(static_cast<size_t>(w_) * h_), w(w_), h(h_) {
    for (size_t i = 0; i < v.size(); ++i) v[i] = static_cast<float>((i * 2654435761u) % 1000) * 0.001f;
  }
};

void BM_Sum_lum(benchmark::State& st) {
  const FloatImage im(static_cast<int>(st.range(0)), static_cast<int>(st.range(1)));
  const int hint = static_cast<int>(st.range(2));
  double s = 0;
  for (auto _ : st) {
    lumiSum_32f_C1R(im.v.data(), im.w * 4, {im.w, im.h}, &s, hint);
    benchmark::DoNotOptimize(s);
  }
  st.SetBytesProcessed(st.iterations() * static_cast<int64_t>(im.v.size() * 4));
}
void BM_Sum_loop(benchmark::State& st) {
  const FloatImage im(static_cast<int>(st.range(0)), static_cast<int>(st.range(1)));
  for (auto _ : st) {
    double s = 0;
    for (float x : im.v) s += x;
    benchmark::DoNotOptimize(s);
  }
  st.SetBytesProcessed(st.iterations() * static_cast<int64_t>(im.v.size() * 4));
}
void BM_Sum_opencv(benchmark::State& st) {
  setup();
  FloatImage im(static_cast<int>(st.range(0)), static_cast<int>(st.range(1)));
  cv::Mat m(im.h, im.w, CV_32FC1, im.v.data());
  for (auto _ : st) {
    cv::Scalar s = cv::sum(m);
    benchmark::DoNotOptimize(s);
  }
  st.SetBytesProcessed(st.iterations() * static_cast<int64_t>(im.v.size() * 4));
}
void BM_Max_lum(benchmark::State& st) {
  const FloatImage im(static_cast<int>(st.range(0)), static_cast<int>(st.range(1)));
  float m = 0;
  for (auto _ : st) {
    lumiMax_32f_C1R(im.v.data(), im.w * 4, {im.w, im.h}, &m);
    benchmark::DoNotOptimize(m);
  }
  st.SetBytesProcessed(st.iterations() * static_cast<int64_t>(im.v.size() * 4));
}
void BM_Max_loop(benchmark::State& st) {
  const FloatImage im(static_cast<int>(st.range(0)), static_cast<int>(st.range(1)));
  for (auto _ : st) {
    float m = -3.4028235e38f;
    for (float x : im.v) m = m > x ? m : x;
    benchmark::DoNotOptimize(m);
  }
  st.SetBytesProcessed(st.iterations() * static_cast<int64_t>(im.v.size() * 4));
}

}  // namespace

#define COPY_SIZES Args({1920, 1080})->Args({1024, 1024})->Args({2048, 1024})->Args({256, 256})
#define SET_SIZES Args({1920, 1080})->Args({2048, 1536})->Args({256, 256})
BENCHMARK(BM_Copy_lum)->COPY_SIZES;
BENCHMARK(BM_Copy_memcpy)->COPY_SIZES;
BENCHMARK(BM_Copy_opencv)->COPY_SIZES;
BENCHMARK(BM_Copy_loop)->COPY_SIZES;
BENCHMARK(BM_Set_lum)->SET_SIZES;
BENCHMARK(BM_Set_memset)->SET_SIZES;
BENCHMARK(BM_Set_opencv)->SET_SIZES;
BENCHMARK(BM_Set_loop)->SET_SIZES;
BENCHMARK(BM_Sum_lum)->Args({1920, 1080, 0})->Args({1920, 1080, 2});
BENCHMARK(BM_Sum_loop)->Args({1920, 1080});
BENCHMARK(BM_Sum_opencv)->Args({1920, 1080});
BENCHMARK(BM_Max_lum)->Args({1920, 1080});
BENCHMARK(BM_Max_loop)->Args({1920, 1080});

BENCHMARK_MAIN();
