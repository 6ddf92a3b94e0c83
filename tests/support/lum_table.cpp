// The function table's entries, each with an invoker per shape.  Taking the
// address of a public function as a template argument of the exact type of
// its shape holds every table line to the prototype in lumcc.h: a line whose
// shape or types disagree with the header does not compile.
#include "lum_table.h"

#include <string.h>

#include <type_traits>

namespace lumtable {
namespace {

using lum::Shape;

template <class S, class D>
struct Sig {
  using A = LumStatus (*)(const S*, int, D*, int, LumSize);
  using B = LumStatus (*)(const S*, int, D* const*, int, LumSize);
  using C = LumStatus (*)(const S* const*, int, D*, int, LumSize);
  using D_ = LumStatus (*)(const S* const*, int, D* const*, int, LumSize);
  using N = LumStatus (*)(D, D*, int, LumSize);
  using Stat = LumStatus (*)(const S*, int, LumSize, D*);
  using StatHint = LumStatus (*)(const S*, int, LumSize, D*, int);
};

template <class T>
void planes(const Args& a, const T* out[4]) {
  for (int i = 0; i < 4; ++i) out[i] = static_cast<const T*>(a.src[i]);
}
template <class T>
void planes(const Args& a, T* out[4]) {
  for (int i = 0; i < 4; ++i) out[i] = static_cast<T*>(a.dst[i]);
}

template <class S, class D, typename Sig<S, D>::A f>
LumStatus callA(const Args& a) {
  return f(static_cast<const S*>(a.src[0]), a.srcStep, static_cast<D*>(a.dst[0]), a.dstStep, a.roi);
}
template <class S, class D, typename Sig<S, D>::B f>
LumStatus callB(const Args& a) {
  D* d[4];
  planes(a, d);
  return f(static_cast<const S*>(a.src[0]), a.srcStep, a.dstArrayNull ? nullptr : d, a.dstStep,
           a.roi);
}
template <class S, class D, typename Sig<S, D>::C f>
LumStatus callC(const Args& a) {
  const S* s[4];
  planes(a, s);
  return f(a.srcArrayNull ? nullptr : s, a.srcStep, static_cast<D*>(a.dst[0]), a.dstStep, a.roi);
}
template <class S, class D, typename Sig<S, D>::D_ f>
LumStatus callD(const Args& a) {
  const S* s[4];
  D* d[4];
  planes(a, s);
  planes(a, d);
  return f(a.srcArrayNull ? nullptr : s, a.srcStep, a.dstArrayNull ? nullptr : d, a.dstStep,
           a.roi);
}
template <class S, class D, typename Sig<S, D>::N f>
LumStatus callN(const Args& a) {
  return f(static_cast<D>(a.fill), static_cast<D*>(a.dst[0]), a.dstStep, a.roi);
}

// The service shapes are only checked against the header.
template <class S, class D, typename Sig<S, D>::Stat>
constexpr Invoke callStat() { return nullptr; }
template <class S, class D, typename Sig<S, D>::StatHint>
constexpr Invoke callStatHint() { return nullptr; }

#define LUM_INVOKER_A(name, S, D) &callA<S, D, name>
#define LUM_INVOKER_B(name, S, D) &callB<S, D, name>
#define LUM_INVOKER_C(name, S, D) &callC<S, D, name>
#define LUM_INVOKER_D(name, S, D) &callD<S, D, name>
#define LUM_INVOKER_N(name, S, D) &callN<S, D, name>
#define LUM_INVOKER_Stat(name, S, D) callStat<S, D, name>()
#define LUM_INVOKER_StatHint(name, S, D) callStatHint<S, D, name>()


}  // namespace

// Built on first use, so that other programs' static initialisers may use it.
const std::vector<Entry>& table() {
  static const std::vector<Entry> kTable = {
#define LUM_FN(name, shape, S, D, sl, dl, pat, thr, fam)                                    \
  Entry{#name, #fam, lum::Shape::shape, static_cast<int>(sizeof(S)),                       \
        static_cast<int>(sizeof(D)), std::is_floating_point<S>::value, lum::Layout::sl, lum::Layout::dl, lum::Pattern::pat, \
        lum::Threading::thr, LUM_INVOKER_##shape(name, S, D)},
#include "frame/lum_functions.def"
};
  return kTable;
}

const Entry* find(const char* name) {
  for (const Entry& e : table())
    if (strcmp(e.name, name) == 0) return &e;
  return nullptr;
}

const char* shapeName(lum::Shape s) {
  static const char* const kNames[] = {"A", "B", "C", "D", "N", "Stat", "StatHint", "Other"};
  return kNames[static_cast<int>(s)];
}
const char* patternName(lum::Pattern p) {
  static const char* const kNames[] = {"P1", "P2", "P3", "P4", "P5", "P6", "P7"};
  return kNames[static_cast<int>(p)];
}

}  // namespace lumtable
