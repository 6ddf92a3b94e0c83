// The function table's entries, each with an invoker for its shape.  Taking
// the address of a public function as a template argument of the exact type
// of its shape holds every table line to the prototype in lumcc.h: a line
// whose shape or types disagree with the header does not compile.
#include "lum_table.h"

#include <string.h>

#include <type_traits>

namespace lumtable {

using lum::Shape;

bool Entry::srcIsArray() const {
  switch (shape) {
    case Shape::C: case Shape::D: case Shape::F: case Shape::G: case Shape::H: case Shape::I:
      return true;
    case Shape::J: case Shape::M:
      return lum::isPlanar(srcLayout);
    default:
      return false;
  }
}
bool Entry::dstIsArray() const {
  switch (shape) {
    case Shape::B: case Shape::D: case Shape::E: case Shape::G: case Shape::H: case Shape::I:
      return true;
    case Shape::J: case Shape::L: case Shape::Lx:
      return lum::isPlanar(dstLayout);
    default:
      return false;
  }
}

bool Entry::srcStepPerPlane() const {
  return shape == Shape::F || shape == Shape::H || shape == Shape::I || shape == Shape::L ||
         shape == Shape::Lx ||
         (shape == Shape::M && lum::isPlanar(srcLayout));
}
bool Entry::dstStepPerPlane() const {
  return shape == Shape::E || shape == Shape::G || shape == Shape::I || shape == Shape::M ||
         ((shape == Shape::L || shape == Shape::Lx) && lum::isPlanar(dstLayout));
}

namespace {

// The argument pieces of each side.
template <class T>
struct In {
  const T* p[4];
  const T* const* arr;  // what an array parameter receives
  explicit In(const Args& a) {
    for (int i = 0; i < 4; ++i) p[i] = static_cast<const T*>(a.src[i]);
    arr = a.srcArrayNull ? nullptr : p;
  }
};
template <class T>
struct Out {
  T* p[4];
  T* const* arr;
  explicit Out(const Args& a) {
    for (int i = 0; i < 4; ++i) p[i] = static_cast<T*>(a.dst[i]);
    arr = a.dstArrayNull ? nullptr : p;
  }
};

template <class S, class D>
struct Sig {
  using A = LumStatus (*)(const S*, int, D*, int, LumSize);
  using B = LumStatus (*)(const S*, int, D* const*, int, LumSize);
  using C = LumStatus (*)(const S* const*, int, D*, int, LumSize);
  using D_ = LumStatus (*)(const S* const*, int, D* const*, int, LumSize);
  using E = LumStatus (*)(const S*, int, D* const*, const int*, LumSize);
  using F = LumStatus (*)(const S* const*, const int*, D*, int, LumSize);
  using G = LumStatus (*)(const S* const*, int, D* const*, const int*, LumSize);
  using H = LumStatus (*)(const S* const*, const int*, D* const*, int, LumSize);
  using I = LumStatus (*)(const S* const*, const int*, D* const*, const int*, LumSize);
  using JCP = LumStatus (*)(const S*, D* const*, LumSize);
  using JPC = LumStatus (*)(const S* const*, D*, LumSize);
  using JPP = LumStatus (*)(const S* const*, D* const*, LumSize);
  using LC = LumStatus (*)(const S*, int, const S*, int, D*, int, LumSize);
  using LP = LumStatus (*)(const S*, int, const S*, int, D* const*, const int*, LumSize);
  using MC = LumStatus (*)(const S*, int, D*, int, D*, int, LumSize);
  using MP = LumStatus (*)(const S* const*, const int*, D*, int, D*, int, LumSize);
  using N = LumStatus (*)(D, D*, int, LumSize);
  using Stat = LumStatus (*)(const S*, int, LumSize, D*);
  using StatHint = LumStatus (*)(const S*, int, LumSize, D*, int);
  // BEGIN cbycr
  using AAlpha = LumStatus (*)(const S*, int, D*, int, LumSize, D);
  // END cbycr
};

template <class S, class D, typename Sig<S, D>::A f>
LumStatus callA(const Args& a) {
  return f(In<S>(a).p[0], a.srcSteps[0], Out<D>(a).p[0], a.dstSteps[0], a.roi);
}
template <class S, class D, typename Sig<S, D>::B f>
LumStatus callB(const Args& a) {
  const Out<D> d(a);
  return f(In<S>(a).p[0], a.srcSteps[0], d.arr, a.dstSteps[0], a.roi);
}
template <class S, class D, typename Sig<S, D>::C f>
LumStatus callC(const Args& a) {
  const In<S> s(a);
  return f(s.arr, a.srcSteps[0], Out<D>(a).p[0], a.dstSteps[0], a.roi);
}
template <class S, class D, typename Sig<S, D>::D_ f>
LumStatus callD(const Args& a) {
  const In<S> s(a);
  const Out<D> d(a);
  return f(s.arr, a.srcSteps[0], d.arr, a.dstSteps[0], a.roi);
}
template <class S, class D, typename Sig<S, D>::E f>
LumStatus callE(const Args& a) {
  const Out<D> d(a);
  return f(In<S>(a).p[0], a.srcSteps[0], d.arr, a.dstSteps, a.roi);
}
template <class S, class D, typename Sig<S, D>::F f>
LumStatus callF(const Args& a) {
  const In<S> s(a);
  return f(s.arr, a.srcSteps, Out<D>(a).p[0], a.dstSteps[0], a.roi);
}
template <class S, class D, typename Sig<S, D>::G f>
LumStatus callG(const Args& a) {
  const In<S> s(a);
  const Out<D> d(a);
  return f(s.arr, a.srcSteps[0], d.arr, a.dstSteps, a.roi);
}
template <class S, class D, typename Sig<S, D>::H f>
LumStatus callH(const Args& a) {
  const In<S> s(a);
  const Out<D> d(a);
  return f(s.arr, a.srcSteps, d.arr, a.dstSteps[0], a.roi);
}
template <class S, class D, typename Sig<S, D>::I f>
LumStatus callI(const Args& a) {
  const In<S> s(a);
  const Out<D> d(a);
  return f(s.arr, a.srcSteps, d.arr, a.dstSteps, a.roi);
}
// J: which sides are planar decides the signature.
template <class S, class D, bool sp, bool dp>
struct JSig {
  using type = std::conditional_t<sp, std::conditional_t<dp, typename Sig<S, D>::JPP, typename Sig<S, D>::JPC>,
                                  typename Sig<S, D>::JCP>;
};
template <class S, class D, bool sp, bool dp, typename JSig<S, D, sp, dp>::type f>
LumStatus callJ(const Args& a) {
  const In<S> s(a);
  const Out<D> d(a);
  if constexpr (sp && dp) return f(s.arr, d.arr, a.roi);
  else if constexpr (sp) return f(s.arr, d.p[0], a.roi);
  else return f(s.p[0], d.arr, a.roi);
}
template <class S, class D, bool dp>
struct LSig {
  using type = std::conditional_t<dp, typename Sig<S, D>::LP, typename Sig<S, D>::LC>;
};
template <class S, class D, bool dp, typename LSig<S, D, dp>::type f>
LumStatus callL(const Args& a) {
  const In<S> s(a);
  const Out<D> d(a);
  if constexpr (dp) return f(s.p[0], a.srcSteps[0], s.p[1], a.srcSteps[1], d.arr, a.dstSteps, a.roi);
  else return f(s.p[0], a.srcSteps[0], s.p[1], a.srcSteps[1], d.p[0], a.dstSteps[0], a.roi);
}
// BEGIN shape Lx: L with a trailing selector, called with the whole frame (21).
template <class S, class D, bool dp>
struct LxSig {
  using type = std::conditional_t<
      dp, LumStatus (*)(const S*, int, const S*, int, D* const*, const int*, LumSize, int),
      LumStatus (*)(const S*, int, const S*, int, D*, int, LumSize, int)>;
};
template <class S, class D, bool dp, typename LxSig<S, D, dp>::type f>
LumStatus callLx(const Args& a) {
  const In<S> s(a);
  const Out<D> d(a);
  if constexpr (dp) return f(s.p[0], a.srcSteps[0], s.p[1], a.srcSteps[1], d.arr, a.dstSteps, a.roi, 21);
  else return f(s.p[0], a.srcSteps[0], s.p[1], a.srcSteps[1], d.p[0], a.dstSteps[0], a.roi, 21);
}
// END shape Lx
template <class S, class D, bool sp>
struct MSig {
  using type = std::conditional_t<sp, typename Sig<S, D>::MP, typename Sig<S, D>::MC>;
};
template <class S, class D, bool sp, typename MSig<S, D, sp>::type f>
LumStatus callM(const Args& a) {
  const In<S> s(a);
  const Out<D> d(a);
  if constexpr (sp) return f(s.arr, a.srcSteps, d.p[0], a.dstSteps[0], d.p[1], a.dstSteps[1], a.roi);
  else return f(s.p[0], a.srcSteps[0], d.p[0], a.dstSteps[0], d.p[1], a.dstSteps[1], a.roi);
}
template <class S, class D, typename Sig<S, D>::N f>
LumStatus callN(const Args& a) {
  return f(static_cast<D>(a.fill), Out<D>(a).p[0], a.dstSteps[0], a.roi);
}

// BEGIN cbycr: shape A with an alphaValue, taken from the fill.
template <class S, class D, typename Sig<S, D>::AAlpha f>
LumStatus callAAlpha(const Args& a) {
  return f(In<S>(a).p[0], a.srcSteps[0], Out<D>(a).p[0], a.dstSteps[0], a.roi,
           static_cast<D>(a.fill));
}
// END cbycr

// The service shapes are only checked against the header.
template <class S, class D, typename Sig<S, D>::Stat>
constexpr Invoke callStat() { return nullptr; }
template <class S, class D, typename Sig<S, D>::StatHint>
constexpr Invoke callStatHint() { return nullptr; }

#define LUM_INVOKER_A(name, S, D, sl, dl) &callA<S, D, name>
#define LUM_INVOKER_B(name, S, D, sl, dl) &callB<S, D, name>
#define LUM_INVOKER_C(name, S, D, sl, dl) &callC<S, D, name>
#define LUM_INVOKER_D(name, S, D, sl, dl) &callD<S, D, name>
#define LUM_INVOKER_E(name, S, D, sl, dl) &callE<S, D, name>
#define LUM_INVOKER_F(name, S, D, sl, dl) &callF<S, D, name>
#define LUM_INVOKER_G(name, S, D, sl, dl) &callG<S, D, name>
#define LUM_INVOKER_H(name, S, D, sl, dl) &callH<S, D, name>
#define LUM_INVOKER_I(name, S, D, sl, dl) &callI<S, D, name>
#define LUM_INVOKER_J(name, S, D, sl, dl) \
  &callJ<S, D, lum::isPlanar(lum::Layout::sl), lum::isPlanar(lum::Layout::dl), name>
#define LUM_INVOKER_L(name, S, D, sl, dl) &callL<S, D, lum::isPlanar(lum::Layout::dl), name>
#define LUM_INVOKER_Lx(name, S, D, sl, dl) &callLx<S, D, lum::isPlanar(lum::Layout::dl), name>
#define LUM_INVOKER_M(name, S, D, sl, dl) &callM<S, D, lum::isPlanar(lum::Layout::sl), name>
#define LUM_INVOKER_N(name, S, D, sl, dl) &callN<S, D, name>
#define LUM_INVOKER_AAlpha(name, S, D, sl, dl) &callAAlpha<S, D, name>  // cbycr
#define LUM_INVOKER_Other(name, S, D, sl, dl) (static_cast<void>(&name), Invoke{nullptr})
#define LUM_INVOKER_Stat(name, S, D, sl, dl) callStat<S, D, name>()
#define LUM_INVOKER_StatHint(name, S, D, sl, dl) callStatHint<S, D, name>()

}  // namespace

// Built on first use, so that other programs' static initialisers may use it.
const std::vector<Entry>& table() {
  static const std::vector<Entry> kTable = {
#define LUM_FN(name, shape, S, D, sl, dl, pat, thr, fam, minW, minH)                         \
  Entry{#name, #fam, lum::Shape::shape, static_cast<int>(sizeof(S)),                       \
        static_cast<int>(sizeof(D)), std::is_floating_point<S>::value, lum::Layout::sl,    \
        lum::Layout::dl, lum::Pattern::pat, lum::Threading::thr, minW, minH,               \
        LUM_INVOKER_##shape(name, S, D, sl, dl)},
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
  static const char* const kNames[] = {"A", "B",    "C",     "D",        "E",     "F",
                                       "G", "H",    "I",     "J",        "L",     "M",
                                       "N", "Stat", "StatHint", "Other", "Lx", "AAlpha"};
  return kNames[static_cast<int>(s)];
}
const char* patternName(lum::Pattern p) {
  static const char* const kNames[] = {"P1", "P2", "P3", "P4", "P5", "P6", "P7"};
  return kNames[static_cast<int>(p)];
}

}  // namespace lumtable
