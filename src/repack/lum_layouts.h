// The subsampled luma-chroma layouts of the library: one description that
// every video conversion and every repack cites.
//
// All samples are unsigned 8-bit.  A layout has two independent properties,
// the chroma sampling ratio and the storage form.
//
// Sampling ratios, for an image of W by H pixels (W, H already rounded down
// to whole chroma cells by the caller of a repack):
//
//   ratio  tag    chroma plane   one chroma pair belongs to
//   4:4:4  -      W   x H        1 pixel
//   4:2:2  422    W/2 x H        2 horizontally adjacent pixels (cell 2x1)
//   4:2:0  420    W/2 x H/2      a 2 by 2 block of pixels      (cell 2x2)
//   4:1:1  411    W/4 x H        4 horizontally adjacent pixels (cell 4x1)
//
// Chroma siting: a chroma sample is counted at the top-left pixel of its
// cell (column x & ~(cellW - 1), row y & ~(cellH - 1)).  The repacks never
// interpolate: they copy, drop or replicate samples (see the rules below).
//
// Storage forms:
//   C2  one interleaved plane, 2 bytes a pixel, 4:2:2 only.  Byte order of a
//       pixel pair (Y0 the left pixel, Y1 the right one):
//           YCbCr422 (alias YUY2):  Y0 Cb Y1 Cr
//           YCrCb422             :  Y0 Cr Y1 Cb
//           CbYCr422 (alias UYVY):  Cb Y0 Cr Y1
//       A row of W pixels is 2 W bytes.
//   P3  three planes, an array of 3 plane pointers and an array of 3 row
//       steps.  Plane order follows the name: YCbCr is Y, Cb, Cr; YCrCb is
//       Y, Cr, Cb (alias YV12 for 4:2:0).
//   P2  a Y plane and one interleaved chroma plane Cb0 Cr0 Cb1 Cr1 ... (Cb
//       always first, one byte pair per chroma position), each with its own
//       pointer and step.  A chroma row holds W bytes for 4:2:0 (alias NV12)
//       and W/2 bytes for 4:1:1.
//
// Repack rules (C stands for Cb and for Cr; r a destination chroma row, k a
// destination chroma column).  Y is always copied unchanged.
//   4:2:2 -> 4:2:0   C[r][k] = src C[2r][k]        odd rows dropped
//   4:2:0 -> 4:2:2   C[2r][k] = C[2r+1][k] = src C[r][k]
//   4:2:2 -> 4:1:1   C[r][k] = src C[r][2k]        odd columns dropped
//   4:1:1 -> 4:2:2   C[r][2k] = C[r][2k+1] = src C[r][k]
//   4:2:0 -> 4:1:1   C[2r][k] = src C[r][2k]; C[2r+1][k] = src C[r][2k+1]
//   4:1:1 -> 4:2:0   C[r][2k] = src C[2r][k]; C[r][2k+1] = src C[2r+1][k]
// The last two are permutations and invert each other exactly.  A C2 source
// gives the chroma of its pixel pair at column 2k; to 4:2:0 only the even
// rows give chroma (Y of both rows is taken), to 4:1:1 only the first of
// every two pixel pairs does.
#ifndef LUM_LAYOUTS_H
#define LUM_LAYOUTS_H

namespace lum {
namespace layout {

enum class Ratio { k444, k422, k420, k411 };
enum class Form { C2, P2, P3 };
// Channel order named by a layout: YCbCr, YCrCb (planes or C2 bytes), or
// CbYCr (C2 only).
enum class Order { YCbCr, YCrCb, CbYCr };

// The chroma cell: how many luma columns and rows share one chroma pair.
constexpr int cellWidth(Ratio r) { return r == Ratio::k444 ? 1 : (r == Ratio::k411 ? 4 : 2); }
constexpr int cellHeight(Ratio r) { return r == Ratio::k420 ? 2 : 1; }

// Chroma plane size of a W x H image (W and H whole cells).
constexpr int chromaWidth(Ratio r, int W) { return W / cellWidth(r); }
constexpr int chromaHeight(Ratio r, int H) { return H / cellHeight(r); }

// Bytes of one row of a P2 chroma plane (Cb, Cr pairs) and of a C2 row.
constexpr int p2ChromaRowBytes(Ratio r, int W) { return 2 * chromaWidth(r, W); }
constexpr int c2RowBytes(int W) { return 2 * W; }

// The chroma position that serves pixel (x, y).
constexpr int chromaColumnOf(Ratio r, int x) { return x / cellWidth(r); }
constexpr int chromaRowOf(Ratio r, int y) { return y / cellHeight(r); }

// Byte offsets inside the 4 bytes of one C2 pixel pair.
struct C2Bytes {
  int y0, y1, cb, cr;
};
constexpr C2Bytes kC2YCbCr422{0, 2, 1, 3};  // YUY2
constexpr C2Bytes kC2YCrCb422{0, 2, 3, 1};
constexpr C2Bytes kC2CbYCr422{1, 3, 0, 2};  // UYVY
constexpr C2Bytes c2Bytes(Order o) {
  return o == Order::YCbCr ? kC2YCbCr422 : (o == Order::YCrCb ? kC2YCrCb422 : kC2CbYCr422);
}

// Byte offsets in a row, by pixel or chroma column.
// C2: luma of pixel x, and chroma (cr false: Cb, true: Cr) of pair k.
constexpr int c2LumaByte(Order o, int x) {
  return 4 * (x / 2) + ((x & 1) ? c2Bytes(o).y1 : c2Bytes(o).y0);
}
constexpr int c2ChromaByte(Order o, int k, bool cr) {
  return 4 * k + (cr ? c2Bytes(o).cr : c2Bytes(o).cb);
}
// P2 chroma row: Cb of position k at 2k, Cr at 2k + 1.
constexpr int p2ChromaByte(int k, bool cr) { return 2 * k + (cr ? 1 : 0); }

// Plane indices of Cb and Cr in a P3 array (Y is plane 0).
constexpr int p3PlaneCb(Order o) { return o == Order::YCrCb ? 2 : 1; }
constexpr int p3PlaneCr(Order o) { return o == Order::YCrCb ? 1 : 2; }

// Smallest region a repack accepts, by the ratios on its two sides: 4 wide
// when 4:1:1 stands on a side, else 2; 2 high when 4:2:0 stands on a side.
// Widths and heights are rounded down to whole cells of both sides, with no
// warning; the last column or row then stays unwritten.
constexpr int repackMinWidth(Ratio a, Ratio b) {
  return (a == Ratio::k411 || b == Ratio::k411) ? 4 : 2;
}
constexpr bool repackTestsHeight(Ratio a, Ratio b) { return a == Ratio::k420 || b == Ratio::k420; }
constexpr int repackWidthMask(Ratio a, Ratio b) { return ~(repackMinWidth(a, b) - 1); }

}  // namespace layout
}  // namespace lum

#endif  // LUM_LAYOUTS_H
