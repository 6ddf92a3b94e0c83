// The function table (src/frame/lum_functions.def) as a program sees it: one
// entry per public function with its shape, element sizes, layouts, check
// pattern, threading, smallest region and a uniform way to call it.  Used by
// the generic test suite, lumdigest and the benchmarks; it needs only the
// public header, so it works against the shared library too.
#ifndef LUM_TABLE_H
#define LUM_TABLE_H

#include <stddef.h>

#include <vector>

#include "frame/lum_shapes.h"
#include "lumcc.h"

namespace lumtable {

// The arguments of one call of an image shape.  src[p] / dst[p] are the
// planes (or the one image), srcSteps[p] / dstSteps[p] their steps; a shape
// with one step a side passes element 0, a shape without steps none.  With
// srcArrayNull / dstArrayNull a null array is passed where the shape takes
// an array.  fill is the value of shape N.
struct Args {
  const void* src[4] = {};
  void* dst[4] = {};
  int srcSteps[4] = {};
  int dstSteps[4] = {};
  bool srcArrayNull = false, dstArrayNull = false;
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
  int minWidth, minHeight;  // the smallest region the function converts
  Invoke call;              // nullptr for the service shapes

  bool isImage() const { return call != nullptr; }
  bool hasSource() const { return shape != lum::Shape::N; }
  int srcPlanes() const { return hasSource() ? lum::planeCount(srcLayout) : 0; }
  int dstPlanes() const { return lum::planeCount(dstLayout); }
  // Bytes of one row of plane p for a region of width w; rows for height h.
  int srcRowBytes(int p, int w) const { return lum::planeRowSamples(srcLayout, p, w) * srcElem; }
  int dstRowBytes(int p, int w) const { return lum::planeRowSamples(dstLayout, p, w) * dstElem; }
  int srcRows(int p, int h) const { return lum::planeRows(srcLayout, p, h); }
  int dstRows(int p, int h) const { return lum::planeRows(dstLayout, p, h); }
  // Whether a side is passed as an array of plane pointers.
  bool srcIsArray() const;
  bool dstIsArray() const;
  // Steps: none (shape J), one a side, or one a plane.
  bool hasSteps() const { return shape != lum::Shape::J; }
  bool srcStepPerPlane() const;
  bool dstStepPerPlane() const;
};

// Every public function of the table, in the table's order.
const std::vector<Entry>& table();
const Entry* find(const char* name);

const char* shapeName(lum::Shape s);
const char* patternName(lum::Pattern p);

}  // namespace lumtable

#endif  // LUM_TABLE_H
