// Uniform pseudo-random generator: a linear congruential generator added to a
// lagged subtract-with-borrow one, scaled in 80-bit extended precision.  Its
// sequence is part of the results of the dither noise, so every step is
// reproduced as it stands.
#include "frame/lum_frame.h"
#include "frame/pccsupport.h"

using namespace lum;
using namespace lum::svc;

namespace {

// Fields common to both records: seed words, scale, offset, tag.
template <class State>
void initWords(State* s, uint32_t seed) {
  s->lcg = kLcgStart;
  s->carry = -1;
  s->s1 = seed;
  s->s2 = seed * kLcgMul + kLcgAdd;
  s->s3 = s->s2 * kLcgMul + kLcgAdd;
}

// Draws len elements; store(i, x) keeps the extended value x as element i.
// The state is read once and written back after the last element.
template <class State, class Store>
void drawAll(State* st, int len, Store store) {
  uint32_t lcg = st->lcg, s1 = st->s1, s2 = st->s2, s3 = st->s3;
  int32_t carry = st->carry;
  const double scale = st->scale, offset = st->offset;
  for (int i = 0; i < len; ++i) {
    const int32_t r = randStep(lcg, s1, s2, s3, carry);
    store(i, randScaleExt(r, scale, offset));
  }
  st->lcg = lcg;
  st->s1 = s1;
  st->s2 = s2;
  st->s3 = s3;
  st->carry = carry;
}

}  // namespace

namespace {
// InitAlloc of both generators: the block from lumsMalloc_*, the bounds as
// given, scale and offset from the difference and the sum in the extended
// format (products rounded to it, then to double), the seed words.
template <class State, class Bound>
LumStatus initAlloc(State** ppState, State* s, int32_t tag, Bound low, Bound high, unsigned seed,
                    long double diff, long double sum) {
  if (s == nullptr) return LumErrMemAlloc;
  s->tag = tag;
  s->seed = seed;
  s->low = low;
  s->high = high;
  const long double scale = diff * static_cast<long double>(randScaleK());
  const long double offset = sum * 0.5L;
  s->scale = static_cast<double>(scale);
  s->offset = static_cast<double>(offset);
  initWords(s, seed);
  *ppState = s;
  return LumOk;
}
}  // namespace

LUM_PUBLIC LumStatus lumsRandUniformInitAlloc_16s(LumRandState16s** ppState, Lum16s low,
                                                  Lum16s high, unsigned int seed) {
  if (ppState == nullptr) return LumErrNullPtr;
  // The difference and the sum are exact 32-bit integers.
  return initAlloc(ppState, reinterpret_cast<LumRandState16s*>(lumsMalloc_16s(kRandAllocCount16s)),
                   kTagRand16s, low, high, seed,
                   static_cast<long double>(static_cast<int32_t>(high) - static_cast<int32_t>(low)),
                   static_cast<long double>(static_cast<int32_t>(low) + static_cast<int32_t>(high)));
}

LUM_PUBLIC LumStatus lumsRandUniformInitAlloc_32f(LumRandState32f** ppState, Lum32f low,
                                                  Lum32f high, unsigned int seed) {
  if (ppState == nullptr) return LumErrNullPtr;
  // The difference and the sum in the extended format.
  return initAlloc(ppState, reinterpret_cast<LumRandState32f*>(lumsMalloc_32f(kRandAllocCount32f)),
                   kTagRand32f, low, high, seed,
                   static_cast<long double>(high) - static_cast<long double>(low),
                   static_cast<long double>(low) + static_cast<long double>(high));
}

LUM_PUBLIC LumStatus lumsRandUniform_16s(Lum16s* pDst, int len, LumRandState16s* pState) {
  if (pDst == nullptr || pState == nullptr) return LumErrNullPtr;
  if (len < 1) return LumErrSize;
  if (pState->tag != kTagRand16s) return LumErrContext;
  // Truncated toward zero to 32 bits; the low 16 bits are kept.
  drawAll(pState, len, [pDst](int i, long double x) {
    const int32_t v = static_cast<int32_t>(x);
    pDst[i] = static_cast<Lum16s>(static_cast<uint16_t>(static_cast<uint32_t>(v)));
  });
  return LumOk;
}

LUM_PUBLIC LumStatus lumsRandUniform_32f(Lum32f* pDst, int len, LumRandState32f* pState) {
  if (pDst == nullptr || pState == nullptr) return LumErrNullPtr;
  if (len < 1) return LumErrSize;
  if (pState->tag != kTagRand32f) return LumErrContext;
  // Rounded to float in the current rounding mode.
  drawAll(pState, len, [pDst](int i, long double x) { pDst[i] = static_cast<Lum32f>(x); });
  return LumOk;
}

LUM_PUBLIC LumStatus lumsRandUniformFree_16s(LumRandState16s* pState) {
  if (pState == nullptr) return LumErrNullPtr;
  if (pState->tag != kTagRand16s) return LumErrContext;
  lumsFree(pState);
  return LumOk;
}

LUM_PUBLIC LumStatus lumsRandUniformFree_32f(LumRandState32f* pState) {
  if (pState == nullptr) return LumErrNullPtr;
  if (pState->tag != kTagRand32f) return LumErrContext;
  lumsFree(pState);
  return LumOk;
}
