// lumconv: the table of conversions.  Each row is one way of running one
// named conversion: the kind of image it takes, the kind it makes, and the
// library function that does the work.  A family adds rows to the table in
// conversions.cpp; nothing else in the tool needs to change.
#ifndef LUMCONV_CONVERSIONS_H
#define LUMCONV_CONVERSIONS_H

#include <cstddef>
#include <string>

#include "image.h"
#include "lumcc.h"

namespace lumconv {

struct Kind {
  Model model;
  Layout layout;
  Depth depth;
};

// A row's model Unknown means any model, kept as it comes (the copy and the
// repacks).  The row names its library function; the tool calls it through
// the function table's uniform invoker (tools/table/lum_table.h), which
// passes each plane's pointer and step.  A compile-time check holds every row
// to the function table: the function exists and takes and makes the row's
// layouts.
struct Conversion {
  const char* name;         // as typed on the command line
  const char* description;  // one line for --list
  const char* words;        // what it does, in plain words, for --list
  Kind in;
  Kind out;
  const char* functionName;
  // The library has this conversion only from planes: the tool splits the
  // input's pixels (C3) into planes first (a plain copy), then calls it.
  bool split = false;
  // The function's three-plane side holds Y, Cr, Cb (the YV12 order): the
  // tool, which keeps planes as Y, Cb, Cr, passes its chroma planes exchanged.
  bool crCb = false;
  // A function the table has no uniform invoker for (its arguments go
  // beyond planes and steps): the tool's own call, which gets the planes as
  // the invoker would.
  LumStatus (*direct)(const void* const src[3], const int srcSteps[3], Lum8u* dst, int dstStep,
                      LumSize roi) = nullptr;
  // A second function that takes the first's output, laid out as `via`,
  // and makes the row's output (null: the first makes it).
  const char* thenFunction = nullptr;
  Layout via = Layout::C3;
};

// All rows, in --list order.
const Conversion* conversionTable(size_t* count);

// The first row of name, or null if there is no such conversion.
const Conversion* findName(const std::string& name);
// The row of name that takes `in` pixels of `depth` and makes `out`, or null.
const Conversion* findConversion(const std::string& name, Layout in, Layout out, Depth depth);
// "C3" for C3 -> C3, "C3->P3" for C3 -> P3, ...
std::string formName(Layout in, Layout out);
// Whether name has a row taking `in` at depth with any output layout.
bool hasForm(const std::string& name, Layout in, Depth depth);
bool hasDepth(const std::string& name, Depth depth);
// The forms a conversion has, e.g. "8u C3, AC4, C3->P3, P3".
std::string formsOf(const std::string& name);
// The lines --list prints.
std::string listing();

// The model a row makes from src (its own, or src's for the copy).
Model outputModel(const Conversion& row, Model src);

// Sizes dst like src in the row's output kind and runs the row's function.
// An AC4 destination starts as a copy of the source, so its alpha is the
// source's (the library leaves the fourth byte as it finds it).  A negative
// status fails with file's name and the status by name; a warning status is
// returned (LumOk otherwise).
LumStatus convert(const Conversion& row, const Image& src, Image& dst, const std::string& file);

// A name that users may try for a conversion lumconv has under another name
// (rgb2ycbcr420, ycbcr4222rgb, ...): the one-line message naming the one to
// use; empty for any other name.
std::string notYet(const std::string& name, Layout in, Layout out);

// "LumErrSize (-6)".
std::string statusName(LumStatus status);

}  // namespace lumconv

#endif
