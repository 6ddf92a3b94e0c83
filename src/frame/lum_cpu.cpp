// The processor test and the cap of the per-call instruction-set choice.
// Baseline code: nothing here is compiled for more than SSE2, and nothing
// runs when the library is loaded (the answer is computed on first use).
#include "frame/lum_cpu.h"

#include <cpuid.h>
#include <stdint.h>

#include <atomic>

namespace lum {
namespace {

// Both words are constant-initialised: no code runs at load.  kUnknown marks
// a processor not yet tested; racing first calls compute the same answer.
constexpr int kUnknown = -1;
std::atomic<int> g_processorIsa{kUnknown};
std::atomic<int> g_isaCap{kIsaAvx512};

// XCR0 by xgetbv (encoded as bytes: the baseline compiler flags don't know
// the mnemonic).  Called only when cpuid reports OSXSAVE.
uint64_t readXcr0() {
  uint32_t lo, hi;
  __asm__ volatile(".byte 0x0f, 0x01, 0xd0" : "=a"(lo), "=d"(hi) : "c"(0));
  return (static_cast<uint64_t>(hi) << 32) | lo;
}

int testProcessor() {
  unsigned a, b, c, d;
  if (!__get_cpuid(1, &a, &b, &c, &d)) return kIsaSse2;
  const bool ssse3 = (c & bit_SSSE3) != 0;
  const bool osxsave = (c & bit_OSXSAVE) != 0;
  const bool avx = (c & bit_AVX) != 0;
  if (!ssse3) return kIsaSse2;
  if (!osxsave || !avx) return kIsaSsse3;
  const uint64_t xcr0 = readXcr0();
  if ((xcr0 & 0x6) != 0x6) return kIsaSsse3;  // XMM and YMM state
  if (__get_cpuid_max(0, nullptr) < 7) return kIsaSsse3;
  __cpuid_count(7, 0, a, b, c, d);
  if ((b & bit_AVX2) == 0) return kIsaSsse3;
  const bool avx512 = (b & bit_AVX512F) && (b & bit_AVX512BW) && (b & bit_AVX512VL) &&
                      (xcr0 & 0xe6) == 0xe6;  // opmask, ZMM_Hi256, Hi16_ZMM state too
  return avx512 ? kIsaAvx512 : kIsaAvx2;
}

}  // namespace

Isa processorIsa() {
  int v = g_processorIsa.load(std::memory_order_relaxed);
  if (v == kUnknown) {
    v = testProcessor();
    g_processorIsa.store(v, std::memory_order_relaxed);
  }
  return static_cast<Isa>(v);
}

Isa isaCap() { return static_cast<Isa>(g_isaCap.load(std::memory_order_relaxed)); }

Isa setIsaCap(Isa cap) {
  return static_cast<Isa>(g_isaCap.exchange(cap, std::memory_order_relaxed));
}

Isa isa() {
  const Isa p = processorIsa(), c = isaCap();
  return p < c ? p : c;
}

}  // namespace lum
