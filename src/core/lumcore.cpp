// liblumcore.so.5.2: the three names the conversion library imports from its
// core library: the team size of every parallel region, and the two accessors
// of the SSE control and status register (MXCSR).
#include "lumcc.h"

#include <unistd.h>
#include <xmmintrin.h>

extern "C" {

// Starts at 1 so that it is usable before the constructor below has run;
// the constructor raises it to the number of online processors.  An
// application assigns to it directly to choose another team size.
LUM_API int threads_omp_of_n_lum = 1;

LUM_API int lum_set_rc_ssx(int mode) {
  const unsigned int old = _mm_getcsr();
  _mm_setcsr((old & ~0x6000u) | ((static_cast<unsigned int>(mode) & 3u) << 13));
  return static_cast<int>(old);
}

LUM_API void lum_set_cw_ssx(int word) { _mm_setcsr(static_cast<unsigned int>(word)); }

}  // extern "C"

namespace {
__attribute__((constructor)) void lumcoreInitTeamSize() {
  long n = sysconf(_SC_NPROCESSORS_ONLN);
  threads_omp_of_n_lum = n >= 1 ? static_cast<int>(n) : 1;
}
}  // namespace
