// The instruction set a call may use, chosen once per call.
//
// isa() is the smaller of what the processor has and a cap that the tests
// lower to run every path through the public functions (the cap starts at
// the widest level, so a program never sees it).  A public function asks
// once and passes the answer down to its kernels; no kernel asks again.
//
// The levels are ordered: a processor with AVX-512 BW/VL has AVX2, and one
// with AVX2 has SSSE3.  SSE2 is the baseline every processor of the target
// has, and its bytes define the results: every wider path gives the same.
#ifndef LUM_CPU_H
#define LUM_CPU_H

namespace lum {

enum Isa : int {
  kIsaSse2 = 0,    // the baseline: SSE2 block loops, the riffle networks
  kIsaSsse3 = 1,   // pshufb (de)interleave of 3-byte pixels
  kIsaAvx2 = 2,    // 8-lane float and 16-lane 16-bit paths
  kIsaAvx512 = 3,  // AVX-512 BW/VL byte-masked stores on 128-bit registers
};

// What the processor (and its operating system, for the AVX register state)
// offers.  Runs cpuid once per process and keeps the answer.
Isa processorIsa();

// The level a call uses: min(processorIsa(), isaCap()).
Isa isa();

// The cap (internal: the tests' hook; not exported).  setIsaCap returns the
// previous cap.
Isa isaCap();
Isa setIsaCap(Isa cap);

}  // namespace lum

#endif  // LUM_CPU_H
