// The function table (src/frame/lum_functions.def) as a program sees it: one
// entry per public function with its shape, element sizes, layouts, check
// pattern, threading and a uniform way to call it.  Used by the generic test
// suite, lumdigest and the benchmarks; it needs only the public header, so
// it works against the shared library too.
#ifndef LUM_TABLE_H
#define LUM_TABLE_H

#include <stddef.h>

#include <vector>

#include "frame/lum_shapes.h"
#include "lumcc.h"

namespace lumtable {

// The arguments of one call of an image shape (A, B, C, D, N).  For pixel
// order sides src[0] / dst[0] is the image; for planes src / dst hold the
// plane pointers, and srcArray / dstArray is the array passed (nullptr
// passes a null array).  fill is the value of shape N.
struct Args {
  const void* src[4] = {};
  void* dst[4] = {};
  bool srcArrayNull = false, dstArrayNull = false;
  int srcStep = 0, dstStep = 0;
  LumSize roi{0, 0};
  unsigned fill = 0;
};

using Invoke = LumStatus (*)(const Args&);

struct Entry {
  const char* name;
  const char* family;
  lum::Shape shape;
  int srcElem, dstElem;  // bytes a sample
  bool srcFloat;         // samples of the source are floats
  lum::Layout srcLayout, dstLayout;
  lum::Pattern pattern;
  lum::Threading threading;
  Invoke call;  // nullptr for the service shapes

  bool isImage() const { return call != nullptr; }
  // Bytes of one row of `width` pixels in one plane of a side.
  int srcRowBytes(int width) const { return width * lum::layoutInfo(srcLayout).samples * srcElem; }
  int dstRowBytes(int width) const { return width * lum::layoutInfo(dstLayout).samples * dstElem; }
  int srcPlanes() const { return lum::layoutInfo(srcLayout).planes; }
  int dstPlanes() const { return lum::layoutInfo(dstLayout).planes; }
};

// Every public function of the table, in the table's order.
const std::vector<Entry>& table();
const Entry* find(const char* name);

const char* shapeName(lum::Shape s);
const char* patternName(lum::Pattern p);

}  // namespace lumtable

#endif  // LUM_TABLE_H
