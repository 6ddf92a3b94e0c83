// Every image function of the function table at the standard sizes, single
// threaded and at the machine's team size, beside the memcpy of the same
// bytes (its source planes copied onto its destination planes' sizes).  The
// family programs compare with OpenCV and libyuv; this one shows every
// function, including those no other library has.
#include <algorithm>
#include <string>
#include <vector>

#include "bench_common.h"
#include "lum_table.h"

namespace {

using lumbench::Dims;
using lumbench::Image;

struct Sides {
  std::vector<Image> src, dst;
  lumtable::Args args;
  // Tight rows: bytes of a plane row as its width, one channel of bytes.
  Sides(const lumtable::Entry& e, Dims d) {
    src.reserve(4);
    dst.reserve(4);
    for (int p = 0; p < e.srcPlanes(); ++p)
      src.emplace_back(e.srcRowBytes(p, d.width), e.srcRows(p, d.height), 1, 7u + p);
    for (int p = 0; p < e.dstPlanes(); ++p)
      dst.emplace_back(e.dstRowBytes(p, d.width), e.dstRows(p, d.height), 1, 11u + p);
    for (size_t p = 0; p < src.size(); ++p) {
      args.src[p] = src[p].data();
      args.srcSteps[p] = src[p].step();
    }
    for (size_t p = 0; p < dst.size(); ++p) {
      args.dst[p] = dst[p].data();
      args.dstSteps[p] = dst[p].step();
    }
    args.roi = LumSize{d.width, d.height};
    args.fill = 0x5A;
  }
  size_t srcBytes() const {
    size_t n = 0;
    for (const Image& i : src) n += i.bytes();
    return n;
  }
  size_t dstBytes() const {
    size_t n = 0;
    for (const Image& i : dst) n += i.bytes();
    return n;
  }
};

void runFunction(benchmark::State& st, const lumtable::Entry* e, Dims d, int threads) {
  lumbench::setThreads(threads);
  Sides s(*e, d);
  for (auto _ : st) {
    if (e->call(s.args) < 0) st.SkipWithError("call failed");
    benchmark::ClobberMemory();
  }
  lumbench::setCounters(st, s.srcBytes(), s.dstBytes(),
                        static_cast<size_t>(d.width) * static_cast<size_t>(d.height), threads);
}

// The memcpy bound: the source planes copied onto the destination planes
// (registered where both sides hold the same bytes), or the destination
// filled by memset for a fill.
void runMemcpy(benchmark::State& st, const lumtable::Entry* e, Dims d) {
  Sides s(*e, d);
  std::vector<lumbench::Span> from, to;
  for (Image& i : s.src) from.push_back(lumbench::span(i));
  for (Image& i : s.dst) to.push_back(lumbench::span(i));
  for (auto _ : st) {
    if (from.empty()) {
      for (auto& t : to) std::memset(t.p, 0x5A, t.n);
    } else {
      lumbench::copySpans(from, to);
    }
    benchmark::ClobberMemory();
  }
  lumbench::setCounters(st, s.srcBytes(), s.dstBytes(),
                        static_cast<size_t>(d.width) * static_cast<size_t>(d.height), 1);
}

int registerAll() {
  for (const lumtable::Entry& e : lumtable::table()) {
    if (!e.isImage()) continue;
    for (Dims d : lumbench::standardDims()) {
      const std::string base = std::string(e.name) + "/" + lumbench::dimsName(d);
      benchmark::RegisterBenchmark((base + "/t1").c_str(), runFunction, &e, d, 1)->UseRealTime();
      if (e.threading != lum::Threading::Serial)
        benchmark::RegisterBenchmark((base + "/team").c_str(), runFunction, &e, d,
                                     std::max(1, threads_omp_of_n_lum))
            ->UseRealTime();
      Sides probe(e, d);
      if (probe.srcBytes() == probe.dstBytes() || probe.src.empty())
        benchmark::RegisterBenchmark((base + "/memcpy").c_str(), runMemcpy, &e, d)->UseRealTime();
    }
  }
  return 0;
}
const int kRegistered = registerAll();

}  // namespace

BENCHMARK_MAIN();
