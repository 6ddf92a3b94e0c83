/*
 * liblumcc: image colour-conversion primitives (liblumccw7.so.5.2).
 *
 * Every function takes caller-owned pixel memory, converts a rectangular
 * region of interest and returns a LumStatus: 0 on success, a positive
 * warning when the work was done with a remark, a negative error when
 * nothing was done.  A function checks all its arguments before it touches
 * a pixel and writes nothing on an error.  No pointer is retained.
 *
 * Conventions (apply to every prototype below unless its comment says
 * otherwise):
 *   - A step is the signed distance in bytes from one row to the next, for
 *     every element type.  Row y of an image starts at (char*)p + y * step.
 *   - roiSize is the region in pixels of the full-resolution grid.
 *   - C3 is three interleaved samples a pixel, AC4 four of which the fourth
 *     (alpha) is not colour, P3 three planes given as an array of pointers.
 *   - Results are bit-exact and part of the contract, including the places
 *     where a row's block loop and its tail compute differently: the first
 *     (width & ~(block - 1)) pixels of each row go through the block formula,
 *     the rest through the tail formula.
 *
 * Team size: the families documented as threaded run an OpenMP team of
 * threads_omp_of_n_lum threads (a variable of liblumcore.so.5, initialised
 * to the number of online processors when that library is loaded).  An
 * application changes it by assigning to it before a call:
 *     threads_omp_of_n_lum = 2;
 * It must stay at least 1.  Results do not depend on it.
 *
 * Usable from C99 and C++.  Link with -llumccw7 (which brings -llumcore).
 */
#ifndef LUMCC_H
#define LUMCC_H

#include <stddef.h>
#include <stdint.h>

#if defined(LUM_BUILDING_LIBRARY) || defined(LUM_BUILDING_CORE)
#define LUM_API __attribute__((visibility("default")))
#else
#define LUM_API
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* ------------------------------------------------------------------------ */
/* Element types                                                             */
/* ------------------------------------------------------------------------ */
typedef uint8_t Lum8u;
typedef int8_t Lum8s;
typedef uint16_t Lum16u;
typedef int16_t Lum16s;
typedef int32_t Lum32s;
typedef uint32_t Lum32u;
typedef float Lum32f;
typedef double Lum64f;

/* ------------------------------------------------------------------------ */
/* Status                                                                    */
/* ------------------------------------------------------------------------ */
typedef enum LumStatus_ {
  LumErrNoise = -55,      /* noise outside 0 to 100 */
  LumErrLevels = -54,     /* levels outside the family's range */
  LumErrValueRange = -49, /* vMax - vMin not greater than 0 */
  LumErrContext = -17,    /* a context's tag is not that of the function */
  LumErrStep = -14,       /* a step below 1, where steps are checked */
  LumErrMemAlloc = -9,    /* a working table or context could not be allocated */
  LumErrNullPtr = -8,     /* a pointer, or an element of a pointer array, is null */
  LumErrSize = -6,        /* width or height below the minimum, or not a required multiple */
  LumErrEnum = -5,        /* a selector outside its set */
  LumOk = 0,              /* success */
  LumWarnNoOp = 1,        /* the computed scale is unusable; destination left as it was */
  LumWarnOddSize = 35     /* not a whole number of chroma cells; whole cells converted */
} LumStatus;

/* Region of interest in pixels of the luma grid, passed by value. */
typedef struct LumSize_ {
  int32_t width;
  int32_t height;
} LumSize;

typedef struct LumRect_ {
  int32_t x;
  int32_t y;
  int32_t width;
  int32_t height;
} LumRect;

/* Dither selector of lumiReduceBits_*. */
typedef enum LumDither_ {
  LumDitherNone = 0,
  LumDitherFloydSteinberg = 1,
  LumDitherJarvisJudiceNinke = 2,
  LumDitherStucki = 3,
  LumDitherBayer = 4
} LumDither;

/* Bayer phase of the whole image's top-left 2x2 cell, read row by row. */
typedef enum LumCfaGrid_ {
  lumBayerBGGR = 0,
  lumBayerRGGB = 1,
  lumBayerGBRG = 2,
  lumBayerGRBG = 3
} LumCfaGrid;

/* ------------------------------------------------------------------------ */
/* liblumcore.so.5: team size and the SSE control register                  */
/* ------------------------------------------------------------------------ */
/* Team size that every parallel region of the library asks for (>= 1). */
extern LUM_API int threads_omp_of_n_lum;
/* Set the rounding-control field (bits 13-14) of MXCSR to mode (0 nearest,
 * 1 down, 2 up, 3 toward zero); returns the register's previous contents. */
LUM_API int lum_set_rc_ssx(int mode);
/* Write word to MXCSR. */
LUM_API void lum_set_cw_ssx(int word);

/* BEGIN SECTION identity-allocation (identity, aligned allocation) */
/*
 * Library identity: a constant record that lives in the library; the caller
 * must neither free nor change it.  This build: 5, 2, 108, 321, "w7",
 * "liblumccw7.so.5.2", "5.2", "Jul 11 2007".
 */
typedef struct LumLibraryVersion_ {
  int32_t versionMajor; /* 5 */
  int32_t versionMinor; /* 2 */
  int32_t buildMajor;   /* 108 */
  int32_t buildMinor;   /* 321 */
  char cpuTag[4];       /* "w7" and two zero bytes: the SSE2 build */
  const char* fileName; /* "liblumccw7.so.5.2" */
  const char* versionText; /* "5.2" */
  const char* buildDate;   /* "Jul 11 2007" */
} LumLibraryVersion;

LUM_API const LumLibraryVersion* lumccGetLibVersion(void);

/*
 * Allocator table.  Every allocation of the library goes through i_malloc and
 * every release through i_free; they start as the system's malloc and free.
 * An application that replaces i_malloc replaces i_free too, before the
 * first allocation and before any concurrent use (the table is read without
 * a lock).  i_calloc and i_realloc are not used by the library; i_version
 * (1) and i_min_version (0) are never read by it either.
 */
extern LUM_API void* (*i_malloc)(size_t size);
extern LUM_API void* (*i_calloc)(size_t count, size_t size);
extern LUM_API void* (*i_realloc)(void* ptr, size_t size);
extern LUM_API void (*i_free)(void* ptr);
extern LUM_API int i_version;
extern LUM_API int i_min_version;

/*
 * Aligned allocation of count elements: null when count is below 1 (i_malloc
 * is then not called) or when i_malloc returns null.  The memory is not
 * cleared and every result is a multiple of 32.  The request to i_malloc is
 * count * elementSize plus 32 bytes of alignment room plus one hidden
 * pointer word, computed in 32 bits without an overflow test:
 *   i386:   count * size + 36; result (raw + 35) & ~31; raw in the 4 bytes
 *           before the result.
 *   x86-64: count * size + 40; result (raw + 39) & ~31; raw in the 8 bytes
 *           before the result.
 * lumsFree(p) hands that hidden raw pointer to i_free; lumsFree(NULL) does
 * nothing.  A pointer not from lumsMalloc_* is not detected.
 */
LUM_API Lum16s* lumsMalloc_16s(int count);
LUM_API Lum16u* lumsMalloc_16u(int count);
LUM_API Lum32f* lumsMalloc_32f(int count);
LUM_API void lumsFree(void* pMem);
/* END SECTION identity-allocation */

/* BEGIN SECTION services (Copy, Set, Max, Sum, Mean, RandUniform) */
/*
 * Copy and fill of 8-bit one-channel images.  Checks: a null pointer ->
 * LumErrNullPtr, then width or height below 1 -> LumErrSize; steps are not
 * checked and overlapping images are not provided for.  An image whose steps
 * equal its width (both steps, for the copy) is taken as one run of
 * width * height bytes.  Large images are written with non-temporal stores:
 * the copy from width * height >= 1048577, the fill only above 2097152; the
 * bytes are the same either way.  No byte outside the region is written.
 */
LUM_API LumStatus lumiCopy_8u_C1R(const Lum8u* pSrc, int srcStep, Lum8u* pDst, int dstStep,
                                  LumSize roiSize);
LUM_API LumStatus lumiSet_8u_C1R(Lum8u value, Lum8u* pDst, int dstStep, LumSize roiSize);

/*
 * Maximum of a float image.  pSrc or pMax null -> LumErrNullPtr; size below
 * 1 -> LumErrSize.  The running value starts at -FLT_MAX (0xFF7FFFFF) and
 * for each element x becomes x unless it is greater than x, so an image of
 * minus infinities gives -FLT_MAX, and a NaN replaces the running value at
 * that moment only.  Four running values: in each row, element 4k + j goes
 * to value j and the last (width & 3) elements to value 0; at the end the
 * rule combines value 0 with 2 and 1 with 3, then the first result with the
 * second.  So a NaN reaches *pMax only when it is the last element of value
 * 3's share of the image.
 */
LUM_API LumStatus lumiMax_32f_C1R(const Lum32f* pSrc, int srcStep, LumSize roiSize, Lum32f* pMax);

/*
 * Sum of a float image.  pSrc or pSum null -> LumErrNullPtr; size below 1 ->
 * LumErrSize.
 * hint 2 (accurate): two doubles A, B; in each row the elements 0, 2, 4, ...
 * go to A and 1, 3, 5, ... to B; an odd last element goes to A; *pSum = B + A.
 * Any other hint (fast): each row is summed in single precision by four
 * 4-lane accumulators, in an order that depends on the row's address (a row
 * whose address is a multiple of 4 first brings itself to a 16-byte
 * boundary), and the two lanes that remain of each row are added to an
 * 80-bit accumulator, which is rounded to double at the end.  The last bits
 * of a fast sum may change when the same data stands at another address.
 * Steps are bytes; a row address need not be a multiple of 4.
 */
LUM_API LumStatus lumiSum_32f_C1R(const Lum32f* pSrc, int srcStep, LumSize roiSize, Lum64f* pSum,
                                  int hint);
/*
 * Mean: pMean null -> LumErrNullPtr first; then the status of lumiSum_32f_C1R
 * with the same arguments and hint; *pMean = sum / (width * height), the
 * double sum divided in double precision by the 32-bit product.
 */
LUM_API LumStatus lumiMean_32f_C1R(const Lum32f* pSrc, int srcStep, LumSize roiSize,
                                   Lum64f* pMean, int hint);

/*
 * Uniform pseudo-random generator: a linear congruential generator added to
 * a lagged subtract-with-borrow one, scaled to [low, high] in 80-bit
 * precision.  The state is owned by the caller from InitAlloc to Free and is
 * used by one thread at a time; consecutive calls continue one sequence.
 * InitAlloc: ppState null -> LumErrNullPtr; no memory -> LumErrMemAlloc.
 *   Bounds are not compared (low above high gives a reversed scale).
 * RandUniform: pDst or pState null -> LumErrNullPtr; len below 1 ->
 *   LumErrSize; a state of the other type -> LumErrContext.  The 16s form
 *   truncates toward zero and keeps the low 16 bits; the 32f form rounds in
 *   the current rounding mode.  A failed call changes neither pDst nor the
 *   state.
 * Free: null -> LumErrNullPtr; a state of the other type -> LumErrContext
 *   (the memory then stays allocated).
 */
typedef struct LumRandState16s_ LumRandState16s;
typedef struct LumRandState32f_ LumRandState32f;

LUM_API LumStatus lumsRandUniformInitAlloc_16s(LumRandState16s** ppState, Lum16s low, Lum16s high,
                                               unsigned int seed);
LUM_API LumStatus lumsRandUniformInitAlloc_32f(LumRandState32f** ppState, Lum32f low, Lum32f high,
                                               unsigned int seed);
LUM_API LumStatus lumsRandUniform_16s(Lum16s* pDst, int len, LumRandState16s* pState);
LUM_API LumStatus lumsRandUniform_32f(Lum32f* pDst, int len, LumRandState32f* pState);
LUM_API LumStatus lumsRandUniformFree_16s(LumRandState16s* pState);
LUM_API LumStatus lumsRandUniformFree_32f(LumRandState32f* pState);
/* END SECTION services */

/* BEGIN SECTION yuv444 (RGB and YUV 4:4:4) */
/*
 * RGB and YUV 4:4:4, 8u.  Y = 0.299 R + 0.587 G + 0.114 B,
 * U = 0.492 (B - Y) + 128, V = 0.877 (R - Y) + 128, in fixed point.
 * Each kernel has its own arithmetic; within a row the block loop and the
 * tail may differ by a level or two (block sizes: RGBToYUV C3 16, AC4 8,
 * P3 16, C3P3 8; YUVToRGB C3 8, AC4 8, P3 8, P3C3 16).  Examples: white
 * gives Y,U,V = 254,127,127 in a block and 254,128,128 in the C3 tail.
 * C3/AC4 forms (shape A): pSrc null or pDst null -> LumErrNullPtr; width or
 * height below 1 -> LumErrSize.  AC4 forms leave the destination's fourth
 * byte untouched (neither read nor written).
 * P3 forms (shapes B, C, D): the arrays null -> LumErrNullPtr; then size ->
 * LumErrSize; then each plane pointer, source first -> LumErrNullPtr.  The
 * planes of one image share one step.  Steps are not checked.
 * All run on the calling thread.
 */
LUM_API LumStatus lumiRGBToYUV_8u_C3R(const Lum8u* pSrc, int srcStep, Lum8u* pDst, int dstStep,
                                      LumSize roiSize);
LUM_API LumStatus lumiRGBToYUV_8u_AC4R(const Lum8u* pSrc, int srcStep, Lum8u* pDst, int dstStep,
                                       LumSize roiSize);
LUM_API LumStatus lumiRGBToYUV_8u_P3R(const Lum8u* const pSrc[3], int srcStep,
                                      Lum8u* const pDst[3], int dstStep, LumSize roiSize);
LUM_API LumStatus lumiRGBToYUV_8u_C3P3R(const Lum8u* pSrc, int srcStep, Lum8u* const pDst[3],
                                        int dstStep, LumSize roiSize);
LUM_API LumStatus lumiYUVToRGB_8u_C3R(const Lum8u* pSrc, int srcStep, Lum8u* pDst, int dstStep,
                                      LumSize roiSize);
LUM_API LumStatus lumiYUVToRGB_8u_AC4R(const Lum8u* pSrc, int srcStep, Lum8u* pDst, int dstStep,
                                       LumSize roiSize);
LUM_API LumStatus lumiYUVToRGB_8u_P3R(const Lum8u* const pSrc[3], int srcStep,
                                      Lum8u* const pDst[3], int dstStep, LumSize roiSize);
LUM_API LumStatus lumiYUVToRGB_8u_P3C3R(const Lum8u* const pSrc[3], int srcStep, Lum8u* pDst,
                                        int dstStep, LumSize roiSize);
/* END SECTION yuv444 */

/* BEGIN SECTION ycbcr444 (RGB and YCbCr 4:4:4) */
/*
 * RGB and YCbCr 4:4:4, 8u, BT.601 studio range: Y 16..235, Cb and Cr
 * 16..240 around 128.  Pixel order R,G,B and Y,Cb,Cr; plane arrays in the
 * same order.  Each kernel has its own fixed-point arithmetic: the first
 * pixels of each row (the block part) and the rest (the tail) may differ by
 * one level.  Block parts: RGBToYCbCr C3 width & ~7, P3 width & ~15;
 * YCbCrToRGB C3 and P3 width & ~3, P3C3 width & ~7; the AC4 forms have none.
 * Examples: white gives Y,Cb,Cr = 234,127,127 in the C3 block part and
 * 235,128,128 elsewhere; black gives 16,128,128 everywhere; Y 235 with
 * neutral chroma gives 254,254,254 (255,255,255 in the P3C3 block part).
 * C3/AC4 forms (shape A): pSrc or pDst null -> LumErrNullPtr; width or
 * height below 1 -> LumErrSize.  The AC4 forms write the three colour
 * bytes of each pixel and leave the fourth byte as it was (not read from
 * the source, not written).
 * P3 forms: the arrays null -> LumErrNullPtr; then size -> LumErrSize;
 * then each plane pointer, source first -> LumErrNullPtr.  The planes of
 * one image share one step.  Steps are not checked.  Calling thread only.
 */
LUM_API LumStatus lumiRGBToYCbCr_8u_C3R(const Lum8u* pSrc, int srcStep, Lum8u* pDst, int dstStep,
                                        LumSize roiSize);
LUM_API LumStatus lumiRGBToYCbCr_8u_AC4R(const Lum8u* pSrc, int srcStep, Lum8u* pDst,
                                         int dstStep, LumSize roiSize);
LUM_API LumStatus lumiRGBToYCbCr_8u_P3R(const Lum8u* const pSrc[3], int srcStep,
                                        Lum8u* const pDst[3], int dstStep, LumSize roiSize);
LUM_API LumStatus lumiYCbCrToRGB_8u_C3R(const Lum8u* pSrc, int srcStep, Lum8u* pDst, int dstStep,
                                        LumSize roiSize);
LUM_API LumStatus lumiYCbCrToRGB_8u_AC4R(const Lum8u* pSrc, int srcStep, Lum8u* pDst,
                                         int dstStep, LumSize roiSize);
LUM_API LumStatus lumiYCbCrToRGB_8u_P3R(const Lum8u* const pSrc[3], int srcStep,
                                        Lum8u* const pDst[3], int dstStep, LumSize roiSize);
LUM_API LumStatus lumiYCbCrToRGB_8u_P3C3R(const Lum8u* const pSrc[3], int srcStep, Lum8u* pDst,
                                          int dstStep, LumSize roiSize);
/* END SECTION ycbcr444 */

/* BEGIN SECTION yuvsub (RGB and YUV 4:2:2 and 4:2:0) */
/*
 * RGB and YUV 4:2:2 and 4:2:0, 8u, with the coefficients of the 4:4:4 YUV
 * functions.  4:2:2 shares one U,V pair between pixels 2k and 2k+1 of a
 * row; 4:2:0 between the 2x2 cell of pixels 2k, 2k+1 of rows 2j, 2j+1.
 * Forward: chroma is the mean difference of the pair or cell (B - Y for U,
 * R - Y for V), taken once on sums.  Inverse: every pixel of a pair or cell
 * uses the same U and V (no interpolation).
 * Layouts: C3 is R,G,B per pixel; C2 (4:2:2 only) is Y0,U,Y1,V per pair;
 * AC4 destinations get R,G,B and a fourth byte written as 0.  Plane arrays
 * are Y,U,V or R,G,B; a 4:2:2 chroma plane holds one sample per pair,
 * a 4:2:0 chroma plane one per cell.
 * Odd widths in 4:2:2: the last pixel is converted on its own (its own U
 * and V; in C2 output only Y and U are written, as the row ends there; in
 * C2 input it takes its own U and the V of the pair before; a C2 row of
 * width 1 uses its one chroma byte as U and V).  4:2:0: only whole cells
 * are converted (floor(width/2) by floor(height/2)); the last row and
 * column of an odd size are left as they were, and LumWarnOddSize is
 * returned after the work when width or height is odd.
 * Shapes: the forms ending in R take steps in bytes; an array of steps
 * gives one step per plane.  In lumiRGBToYUV420_8u_P3R and
 * lumiYUV420ToRGB_8u_P3R the three RGB planes share the step of element 0
 * of their step array.  The forms without R take no steps: the image is
 * packed, with strides width*3 (pixel order), width (Y and RGB planes),
 * and (width+1)/2 (4:2:2 chroma) or width/2 (4:2:0 chroma); a 4:2:2 image
 * of at least 256 pixels and even width is converted as one long row.
 * Rounding differs between the first pixels of a row and the rest in some
 * inverse forms (by a level): YUV422ToRGB P3C3R past width & ~15, P3AC4R
 * past width & ~3, YUV420ToRGB P3AC4R past 2*(cells & ~7) pixels; in
 * RGBToYUV420 C3P3R past 2*(cells & ~7) pixels.
 * Checks: C3C2R and C2C3R: pSrc or pDst null -> LumErrNullPtr; width or
 * height below 1 -> LumErrSize.  The others: pSrc, pDst and the step
 * arrays null -> LumErrNullPtr; then size -> LumErrSize; then each plane
 * pointer, source first -> LumErrNullPtr.  Steps are not checked.  Nothing
 * is written on an error.  Calling thread only.
 */
LUM_API LumStatus lumiRGBToYUV422_8u_C3C2R(const Lum8u* pSrc, int srcStep, Lum8u* pDst,
                                           int dstStep, LumSize roiSize);
LUM_API LumStatus lumiRGBToYUV422_8u_C3P3R(const Lum8u* pSrc, int srcStep, Lum8u* const pDst[3],
                                           const int dstStep[3], LumSize roiSize);
LUM_API LumStatus lumiRGBToYUV422_8u_P3R(const Lum8u* const pSrc[3], int srcStep,
                                         Lum8u* const pDst[3], const int dstStep[3],
                                         LumSize roiSize);
LUM_API LumStatus lumiRGBToYUV422_8u_C3P3(const Lum8u* pSrc, Lum8u* const pDst[3],
                                          LumSize roiSize);
LUM_API LumStatus lumiRGBToYUV422_8u_P3(const Lum8u* const pSrc[3], Lum8u* const pDst[3],
                                        LumSize roiSize);
LUM_API LumStatus lumiYUV422ToRGB_8u_C2C3R(const Lum8u* pSrc, int srcStep, Lum8u* pDst,
                                           int dstStep, LumSize roiSize);
LUM_API LumStatus lumiYUV422ToRGB_8u_P3C3R(const Lum8u* const pSrc[3], const int srcStep[3],
                                           Lum8u* pDst, int dstStep, LumSize roiSize);
LUM_API LumStatus lumiYUV422ToRGB_8u_P3R(const Lum8u* const pSrc[3], const int srcStep[3],
                                         Lum8u* const pDst[3], int dstStep, LumSize roiSize);
LUM_API LumStatus lumiYUV422ToRGB_8u_P3AC4R(const Lum8u* const pSrc[3], const int srcStep[3],
                                            Lum8u* pDst, int dstStep, LumSize roiSize);
LUM_API LumStatus lumiYUV422ToRGB_8u_P3C3(const Lum8u* const pSrc[3], Lum8u* pDst,
                                          LumSize roiSize);
LUM_API LumStatus lumiYUV422ToRGB_8u_P3(const Lum8u* const pSrc[3], Lum8u* const pDst[3],
                                        LumSize roiSize);
LUM_API LumStatus lumiRGBToYUV420_8u_C3P3R(const Lum8u* pSrc, int srcStep, Lum8u* const pDst[3],
                                           const int dstStep[3], LumSize roiSize);
LUM_API LumStatus lumiRGBToYUV420_8u_P3R(const Lum8u* const pSrc[3], const int srcStep[3],
                                         Lum8u* const pDst[3], const int dstStep[3],
                                         LumSize roiSize);
LUM_API LumStatus lumiRGBToYUV420_8u_C3P3(const Lum8u* pSrc, Lum8u* const pDst[3],
                                          LumSize roiSize);
LUM_API LumStatus lumiRGBToYUV420_8u_P3(const Lum8u* const pSrc[3], Lum8u* const pDst[3],
                                        LumSize roiSize);
LUM_API LumStatus lumiYUV420ToRGB_8u_P3C3R(const Lum8u* const pSrc[3], const int srcStep[3],
                                           Lum8u* pDst, int dstStep, LumSize roiSize);
LUM_API LumStatus lumiYUV420ToRGB_8u_P3R(const Lum8u* const pSrc[3], const int srcStep[3],
                                         Lum8u* const pDst[3], const int dstStep[3],
                                         LumSize roiSize);
LUM_API LumStatus lumiYUV420ToRGB_8u_P3AC4R(const Lum8u* const pSrc[3], const int srcStep[3],
                                            Lum8u* pDst, int dstStep, LumSize roiSize);
LUM_API LumStatus lumiYUV420ToRGB_8u_P3C3(const Lum8u* const pSrc[3], Lum8u* pDst,
                                          LumSize roiSize);
LUM_API LumStatus lumiYUV420ToRGB_8u_P3(const Lum8u* const pSrc[3], Lum8u* const pDst[3],
                                        LumSize roiSize);
/* END SECTION yuvsub */

/* BEGIN SECTION hsv (RGB and HSV) */
/*
 * RGB and HSV, 8u and 16u, pixel order R,G,B (C3) or R,G,B,A (AC4); an HSV
 * pixel is H,S,V in the same places.  H: one full circle = 255 (65535)
 * steps, so H = 255 (65535) is the same hue as 0; S = K (max - min) / max;
 * V = max, K = 255 (65535).  Black and grey give H = S = 0.
 * Single-precision arithmetic through the processor's approximate
 * reciprocal (16u: with one Newton step), so the last unit of a result
 * follows the processor.  The first (width & ~3) pixels of a row and the
 * rest (the tail) are computed differently on purpose: 8u forward and
 * inverse truncate in the former and round in the latter; a tie between
 * two maximal channels is broken differently (same hue but for the
 * reciprocal's error).  Rounding follows the SSE rounding mode in force.
 * Inverse: S = 0 gives R = G = B = V whatever H.
 * Checks: pSrc or pDst null -> LumErrNullPtr; width or height below 1 ->
 * LumErrSize; nothing else (steps of any value are accepted).  The 16u
 * members shift each byte step right by one (arithmetic shift).
 * AC4 forms never write the destination's fourth sample.
 * Threaded: width * height of at least 4097 runs on threads_omp_of_n_lum
 * threads, by rows; results do not depend on the team size.
 */
LUM_API LumStatus lumiRGBToHSV_8u_C3R(const Lum8u* pSrc, int srcStep, Lum8u* pDst, int dstStep,
                                      LumSize roiSize);
LUM_API LumStatus lumiHSVToRGB_8u_C3R(const Lum8u* pSrc, int srcStep, Lum8u* pDst, int dstStep,
                                      LumSize roiSize);
LUM_API LumStatus lumiRGBToHSV_8u_AC4R(const Lum8u* pSrc, int srcStep, Lum8u* pDst, int dstStep,
                                       LumSize roiSize);
LUM_API LumStatus lumiHSVToRGB_8u_AC4R(const Lum8u* pSrc, int srcStep, Lum8u* pDst, int dstStep,
                                       LumSize roiSize);
LUM_API LumStatus lumiRGBToHSV_16u_C3R(const Lum16u* pSrc, int srcStep, Lum16u* pDst,
                                       int dstStep, LumSize roiSize);
LUM_API LumStatus lumiHSVToRGB_16u_C3R(const Lum16u* pSrc, int srcStep, Lum16u* pDst,
                                       int dstStep, LumSize roiSize);
LUM_API LumStatus lumiRGBToHSV_16u_AC4R(const Lum16u* pSrc, int srcStep, Lum16u* pDst,
                                        int dstStep, LumSize roiSize);
LUM_API LumStatus lumiHSVToRGB_16u_AC4R(const Lum16u* pSrc, int srcStep, Lum16u* pDst,
                                        int dstStep, LumSize roiSize);
/* END SECTION hsv */

/* BEGIN SECTION hls (RGB and HLS) */
/*
 * RGB and HLS, 8u, 16u, 16s and 32f (shape A).  A pixel is R, G, B (C3) or
 * R, G, B, A (AC4); an HLS pixel is H, L, S in the same places (L in the
 * middle).  Full scale of every channel: 255 (8u), 65535 (16u), 65535 on the
 * biased value sample + 32768 (16s), 1.0 (32f; H = 1.0 is a full circle).
 * An unsigned hue has 255 (65535) steps a circle: H = full scale acts as 0.
 * A grey pixel gives H = S = 0 (16s: -32768) and L = the grey level.
 *
 * Arithmetic is single precision.  The integer forward forms divide through
 * the processor's approximate reciprocal (rcpps/rcpss) with one Newton step,
 * except the 8u main loop, which uses it as it stands; results truncate.
 * Each row runs a main loop over its first (width & ~(block - 1)) pixels
 * (block 8 for the 8u C3 forms, 4 for all others; 32f forward is scalar) and
 * a scalar tail over the rest, and the two differ on purpose:
 *   - 8u forward: the main loop's bare reciprocal may give S or H one below
 *     the tail's for the same pixel.
 *   - 16u inverse: outputs are 2 * sat16(trunc(c * 32767.5)), always even
 *     (at most 65534), except that the tail copies L for S = 0 (which may be
 *     odd or 65535).
 *   - 16s inverse: the main loop truncates, the tail rounds (adds 0.49998999)
 *     and divides where the main loop multiplies by reciprocals.
 *   - 32f inverse: the main loop multiplies by 0.016666668 where the tail
 *     divides by 60.  32f forward: samples closer than 1.1920929e-7 count as
 *     grey; no value is clamped.
 * Checks: pSrc or pDst null -> LumErrNullPtr; width or height below 1 ->
 * LumErrSize.  Steps are not checked (0 and negative steps are accepted);
 * 16u and 16s members use step >> 1 elements, 32f members step >> 2 (an
 * arithmetic shift: the low bits of a step that is no multiple of the
 * element size are lost).  AC4 forms leave the destination's fourth sample
 * as it was (the 8u and 16u forms read it and write it back unchanged).
 * Threads: a team of threads_omp_of_n_lum shares the rows when
 * width * height (a 32-bit product) is at least 4097.
 */
LUM_API LumStatus lumiRGBToHLS_8u_C3R(const Lum8u* pSrc, int srcStep, Lum8u* pDst, int dstStep,
                                      LumSize roiSize);
LUM_API LumStatus lumiRGBToHLS_8u_AC4R(const Lum8u* pSrc, int srcStep, Lum8u* pDst, int dstStep,
                                       LumSize roiSize);
LUM_API LumStatus lumiHLSToRGB_8u_C3R(const Lum8u* pSrc, int srcStep, Lum8u* pDst, int dstStep,
                                      LumSize roiSize);
LUM_API LumStatus lumiHLSToRGB_8u_AC4R(const Lum8u* pSrc, int srcStep, Lum8u* pDst, int dstStep,
                                       LumSize roiSize);
LUM_API LumStatus lumiRGBToHLS_16u_C3R(const Lum16u* pSrc, int srcStep, Lum16u* pDst,
                                       int dstStep, LumSize roiSize);
LUM_API LumStatus lumiRGBToHLS_16u_AC4R(const Lum16u* pSrc, int srcStep, Lum16u* pDst,
                                        int dstStep, LumSize roiSize);
LUM_API LumStatus lumiHLSToRGB_16u_C3R(const Lum16u* pSrc, int srcStep, Lum16u* pDst,
                                       int dstStep, LumSize roiSize);
LUM_API LumStatus lumiHLSToRGB_16u_AC4R(const Lum16u* pSrc, int srcStep, Lum16u* pDst,
                                        int dstStep, LumSize roiSize);
LUM_API LumStatus lumiRGBToHLS_16s_C3R(const Lum16s* pSrc, int srcStep, Lum16s* pDst,
                                       int dstStep, LumSize roiSize);
LUM_API LumStatus lumiRGBToHLS_16s_AC4R(const Lum16s* pSrc, int srcStep, Lum16s* pDst,
                                        int dstStep, LumSize roiSize);
LUM_API LumStatus lumiHLSToRGB_16s_C3R(const Lum16s* pSrc, int srcStep, Lum16s* pDst,
                                       int dstStep, LumSize roiSize);
LUM_API LumStatus lumiHLSToRGB_16s_AC4R(const Lum16s* pSrc, int srcStep, Lum16s* pDst,
                                        int dstStep, LumSize roiSize);
LUM_API LumStatus lumiRGBToHLS_32f_C3R(const Lum32f* pSrc, int srcStep, Lum32f* pDst,
                                       int dstStep, LumSize roiSize);
LUM_API LumStatus lumiRGBToHLS_32f_AC4R(const Lum32f* pSrc, int srcStep, Lum32f* pDst,
                                        int dstStep, LumSize roiSize);
LUM_API LumStatus lumiHLSToRGB_32f_C3R(const Lum32f* pSrc, int srcStep, Lum32f* pDst,
                                       int dstStep, LumSize roiSize);
LUM_API LumStatus lumiHLSToRGB_32f_AC4R(const Lum32f* pSrc, int srcStep, Lum32f* pDst,
                                        int dstStep, LumSize roiSize);
/* END SECTION hls */

/* BEGIN SECTION hlsplane (BGR and HLS plane layouts) */
/*
 * BGR and HLS, 8u, over planar and pixel-order layouts: the 8u arithmetic of
 * lumiRGBToHLS_8u_C3R / lumiHLSToRGB_8u_C3R (same constants, same difference
 * between the main loop's bare reciprocal and the tail's refined one) with
 * the colour samples in the order B, G, R (plane or sample 0, 1, 2) and
 * H, L, S likewise; plane or sample 3 is alpha.  Every row runs a main loop
 * of 4 pixels a round and a scalar tail over the remaining (width & 3)
 * pixels, so a pixel may differ by one in S or H from the same pixel in
 * lumiRGBToHLS_8u_C3R, whose rounds are of 8 pixels.
 * Planar sides are arrays of 3 (P3) or 4 (AP4) plane pointers sharing one
 * step; interleaved sides have 3 (C3) or 4 (C4, AC4) samples a pixel.
 * Alpha: AP4R copies plane 3; AP4C4R copies plane 3 to sample 3; AC4P4R
 * copies sample 3 to plane 3; lumiBGRToHLS_8u_AC4R leaves the destination's
 * sample 3 as it was.
 * Checks: a null pointer or plane pointer -> LumErrNullPtr.  Then
 *   lumiBGRToHLS_8u_AC4R: width or height below 1 -> LumErrSize, then a step
 *   below 1 -> LumErrStep;
 *   all others: a step below 1 -> LumErrStep, then width or height below 1
 *   -> LumErrSize.
 * Threads: lumiBGRToHLS_8u_AC4R, _AP4C4R, _AC4P4R, _P3C3R, _C3P3R and
 * lumiHLSToBGR_8u_AC4P4R, _P3C3R, _C3P3R share their rows in a team of
 * threads_omp_of_n_lum at any size; the other five run on the calling
 * thread.
 */
LUM_API LumStatus lumiBGRToHLS_8u_AC4R(const Lum8u* pSrc, int srcStep, Lum8u* pDst, int dstStep,
                                       LumSize roiSize);
LUM_API LumStatus lumiBGRToHLS_8u_AP4R(const Lum8u* const pSrc[4], int srcStep,
                                       Lum8u* const pDst[4], int dstStep, LumSize roiSize);
LUM_API LumStatus lumiBGRToHLS_8u_AP4C4R(const Lum8u* const pSrc[4], int srcStep, Lum8u* pDst,
                                         int dstStep, LumSize roiSize);
LUM_API LumStatus lumiBGRToHLS_8u_AC4P4R(const Lum8u* pSrc, int srcStep, Lum8u* const pDst[4],
                                         int dstStep, LumSize roiSize);
LUM_API LumStatus lumiBGRToHLS_8u_P3R(const Lum8u* const pSrc[3], int srcStep,
                                      Lum8u* const pDst[3], int dstStep, LumSize roiSize);
LUM_API LumStatus lumiBGRToHLS_8u_P3C3R(const Lum8u* const pSrc[3], int srcStep, Lum8u* pDst,
                                        int dstStep, LumSize roiSize);
LUM_API LumStatus lumiBGRToHLS_8u_C3P3R(const Lum8u* pSrc, int srcStep, Lum8u* const pDst[3],
                                        int dstStep, LumSize roiSize);
LUM_API LumStatus lumiHLSToBGR_8u_AP4R(const Lum8u* const pSrc[4], int srcStep,
                                       Lum8u* const pDst[4], int dstStep, LumSize roiSize);
LUM_API LumStatus lumiHLSToBGR_8u_AP4C4R(const Lum8u* const pSrc[4], int srcStep, Lum8u* pDst,
                                         int dstStep, LumSize roiSize);
LUM_API LumStatus lumiHLSToBGR_8u_AC4P4R(const Lum8u* pSrc, int srcStep, Lum8u* const pDst[4],
                                         int dstStep, LumSize roiSize);
LUM_API LumStatus lumiHLSToBGR_8u_P3R(const Lum8u* const pSrc[3], int srcStep,
                                      Lum8u* const pDst[3], int dstStep, LumSize roiSize);
LUM_API LumStatus lumiHLSToBGR_8u_P3C3R(const Lum8u* const pSrc[3], int srcStep, Lum8u* pDst,
                                        int dstStep, LumSize roiSize);
LUM_API LumStatus lumiHLSToBGR_8u_C3P3R(const Lum8u* pSrc, int srcStep, Lum8u* const pDst[3],
                                        int dstStep, LumSize roiSize);
/* END SECTION hlsplane */

/* BEGIN SECTION repack-layouts (subsampled layout repacking) */
/*
 * Repacks among the subsampled layouts with no change of colour model and no
 * arithmetic on a sample: Y is copied unchanged, chroma is copied, dropped or
 * repeated, never averaged.  All samples 8u.
 *
 * Sampling (image of W x H pixels):  4:2:2 chroma W/2 x H (one pair per 2
 * horizontally adjacent pixels), 4:2:0 chroma W/2 x H/2 (one pair per 2x2
 * block), 4:1:1 chroma W/4 x H (one pair per 4 horizontally adjacent pixels).
 * Storage:
 *   C2  one interleaved plane, 4:2:2 only, 4 bytes per pixel pair:
 *       YCbCr422 "Y0 Cb Y1 Cr", YCrCb422 "Y0 Cr Y1 Cb", CbYCr422 "Cb Y0 Cr Y1".
 *   P3  pSrc/pDst: arrays of 3 plane pointers, srcStep/dstStep: arrays of 3
 *       steps; planes Y, Cb, Cr for YCbCr names, Y, Cr, Cb for YCrCb names.
 *   P2  a Y plane and one chroma plane of pairs Cb0 Cr0 Cb1 Cr1 ... (Cb
 *       first), each with its own pointer and step; a chroma row holds W
 *       bytes for 4:2:0, W/2 bytes for 4:1:1.
 * Chroma rules (C = Cb or Cr, r a destination chroma row, k a column):
 *   4:2:2 -> 4:2:0  C[r][k] = src C[2r][k]             (odd rows dropped)
 *   4:2:0 -> 4:2:2  C[2r][k] = C[2r+1][k] = src C[r][k] (rows repeated)
 *   4:2:2 -> 4:1:1  C[r][k] = src C[r][2k]             (odd columns dropped)
 *   4:1:1 -> 4:2:2  C[r][2k] = C[r][2k+1] = src C[r][k] (samples repeated)
 *   4:2:0 -> 4:1:1  C[2r][k] = src C[r][2k], C[2r+1][k] = src C[r][2k+1]
 *   4:1:1 -> 4:2:0  C[r][2k] = src C[2r][k], C[r][2k+1] = src C[2r+1][k]
 * The last two are permutations: 4:2:0 -> 4:1:1 -> 4:2:0 gives the chroma
 * back bit for bit.  A C2 source gives its chroma only from even rows (to
 * 4:2:0) or from the first of every two pixel pairs (to 4:1:1).
 *
 * Checks, the first failure deciding: a null pointer -> LumErrNullPtr,
 * source first, a plane array before its 3 entries (step arrays are not
 * tested; lumiYCbCr420_8u_P3P2R and lumiYCrCb420ToYCbCr411_8u_P3P2R test
 * only the entries of pSrc, so pSrc itself must not be null there); then
 * width, then height below the minimum -> LumErrSize.  Minimum 2 wide
 * (4 wide when 4:1:1 stands on a side), 2 high when 4:2:0 stands on a side;
 * otherwise the height is not tested, and a height of 0 or below converts
 * nothing and returns LumOk.  The width is then rounded down to even (to a
 * multiple of 4 with 4:1:1), the height to even with 4:2:0; the columns and
 * rows left over stay unwritten and the status stays LumOk.  Steps are not
 * tested.  Everything runs on the calling thread.
 *
 * Large frames: some members store their destination with non-temporal
 * stores when it is 16-byte aligned and the frame is large; the bytes are
 * the same either way.
 */
/* 4:2:2 P3 -> 4:2:0 P3. */
LUM_API LumStatus lumiYCbCr422ToYCbCr420_8u_P3R(const Lum8u* const pSrc[3], const int srcStep[3],
                                                Lum8u* const pDst[3], const int dstStep[3],
                                                LumSize roiSize);
/* 4:2:0 P3 -> 4:2:2 P3. */
LUM_API LumStatus lumiYCbCr420ToYCbCr422_8u_P3R(const Lum8u* const pSrc[3], const int srcStep[3],
                                                Lum8u* const pDst[3], const int dstStep[3],
                                                LumSize roiSize);
/* 4:2:0 P3 in the order Y, Cr, Cb -> 4:2:2 P3 Y, Cb, Cr. */
LUM_API LumStatus lumiYCrCb420ToYCbCr422_8u_P3R(const Lum8u* const pSrc[3], const int srcStep[3],
                                                Lum8u* const pDst[3], const int dstStep[3],
                                                LumSize roiSize);
/* YCrCb422 C2 -> 4:2:2 P3.  When pSrc, srcStep, pDst[0] and dstStep[0] are
 * all multiples of 16 and the even width is a multiple of 16, byte 1 (Cr)
 * goes to plane 1 and byte 3 (Cb) to plane 2; otherwise byte 1 goes to plane
 * 2 and byte 3 to plane 1.  This difference between the two cases is kept. */
LUM_API LumStatus lumiYCrCb422ToYCbCr422_8u_C2P3R(const Lum8u* pSrc, int srcStep,
                                                  Lum8u* const pDst[3], const int dstStep[3],
                                                  LumSize roiSize);
/* CbYCr422 C2 -> 4:2:2 P3. */
LUM_API LumStatus lumiCbYCr422ToYCbCr422_8u_C2P3R(const Lum8u* pSrc, int srcStep,
                                                  Lum8u* const pDst[3], const int dstStep[3],
                                                  LumSize roiSize);
/* YCbCr422 / YCrCb422 / CbYCr422 C2 -> 4:2:0 P3 (chroma of the even rows). */
LUM_API LumStatus lumiYCbCr422ToYCbCr420_8u_C2P3R(const Lum8u* pSrc, int srcStep,
                                                  Lum8u* const pDst[3], const int dstStep[3],
                                                  LumSize roiSize);
LUM_API LumStatus lumiYCrCb422ToYCbCr420_8u_C2P3R(const Lum8u* pSrc, int srcStep,
                                                  Lum8u* const pDst[3], const int dstStep[3],
                                                  LumSize roiSize);
LUM_API LumStatus lumiCbYCr422ToYCbCr420_8u_C2P3R(const Lum8u* pSrc, int srcStep,
                                                  Lum8u* const pDst[3], const int dstStep[3],
                                                  LumSize roiSize);
/* YCbCr422 / YCrCb422 / CbYCr422 C2 -> 4:1:1 P3 (chroma of the first of
 * every two pixel pairs). */
LUM_API LumStatus lumiYCbCr422ToYCbCr411_8u_C2P3R(const Lum8u* pSrc, int srcStep,
                                                  Lum8u* const pDst[3], const int dstStep[3],
                                                  LumSize roiSize);
LUM_API LumStatus lumiYCrCb422ToYCbCr411_8u_C2P3R(const Lum8u* pSrc, int srcStep,
                                                  Lum8u* const pDst[3], const int dstStep[3],
                                                  LumSize roiSize);
LUM_API LumStatus lumiCbYCr422ToYCbCr411_8u_C2P3R(const Lum8u* pSrc, int srcStep,
                                                  Lum8u* const pDst[3], const int dstStep[3],
                                                  LumSize roiSize);
/* 4:2:2 P3 -> 4:2:0 P2. */
LUM_API LumStatus lumiYCbCr422ToYCbCr420_8u_P3P2R(const Lum8u* const pSrc[3], const int srcStep[3],
                                                  Lum8u* pDstY, int dstYStep, Lum8u* pDstCbCr,
                                                  int dstCbCrStep, LumSize roiSize);
/* 4:2:0 P2 -> 4:2:2 P3. */
LUM_API LumStatus lumiYCbCr420ToYCbCr422_8u_P2P3R(const Lum8u* pSrcY, int srcYStep,
                                                  const Lum8u* pSrcCbCr, int srcCbCrStep,
                                                  Lum8u* const pDst[3], const int dstStep[3],
                                                  LumSize roiSize);
/* 4:2:0 P3 -> 4:2:0 P2 (pSrc itself is not tested for null). */
LUM_API LumStatus lumiYCbCr420_8u_P3P2R(const Lum8u* const pSrc[3], const int srcStep[3],
                                        Lum8u* pDstY, int dstYStep, Lum8u* pDstCbCr,
                                        int dstCbCrStep, LumSize roiSize);
/* 4:2:0 P2 -> 4:2:0 P3. */
LUM_API LumStatus lumiYCbCr420_8u_P2P3R(const Lum8u* pSrcY, int srcYStep, const Lum8u* pSrcCbCr,
                                        int srcCbCrStep, Lum8u* const pDst[3],
                                        const int dstStep[3], LumSize roiSize);
/* 4:2:2 P3 -> 4:1:1 P2. */
LUM_API LumStatus lumiYCbCr422ToYCbCr411_8u_P3P2R(const Lum8u* const pSrc[3], const int srcStep[3],
                                                  Lum8u* pDstY, int dstYStep, Lum8u* pDstCbCr,
                                                  int dstCbCrStep, LumSize roiSize);
/* 4:2:0 P3 (Y, Cb, Cr) -> 4:1:1 P2. */
LUM_API LumStatus lumiYCbCr420ToYCbCr411_8u_P3P2R(const Lum8u* const pSrc[3], const int srcStep[3],
                                                  Lum8u* pDstY, int dstYStep, Lum8u* pDstCbCr,
                                                  int dstCbCrStep, LumSize roiSize);
/* 4:2:0 P3 (Y, Cr, Cb) -> 4:1:1 P2 (pSrc itself is not tested for null). */
LUM_API LumStatus lumiYCrCb420ToYCbCr411_8u_P3P2R(const Lum8u* const pSrc[3], const int srcStep[3],
                                                  Lum8u* pDstY, int dstYStep, Lum8u* pDstCbCr,
                                                  int dstCbCrStep, LumSize roiSize);
/* 4:2:0 P2 -> 4:1:1 P3. */
LUM_API LumStatus lumiYCbCr420ToYCbCr411_8u_P2P3R(const Lum8u* pSrcY, int srcYStep,
                                                  const Lum8u* pSrcCbCr, int srcCbCrStep,
                                                  Lum8u* const pDst[3], const int dstStep[3],
                                                  LumSize roiSize);
/* 4:1:1 P3 -> YCbCr422 / YCrCb422 C2. */
LUM_API LumStatus lumiYCbCr411ToYCbCr422_8u_P3C2R(const Lum8u* const pSrc[3], const int srcStep[3],
                                                  Lum8u* pDst, int dstStep, LumSize roiSize);
LUM_API LumStatus lumiYCbCr411ToYCrCb422_8u_P3C2R(const Lum8u* const pSrc[3], const int srcStep[3],
                                                  Lum8u* pDst, int dstStep, LumSize roiSize);
/* 4:1:1 P3 -> 4:2:2 P3 in the order Y, Cb, Cr / Y, Cr, Cb. */
LUM_API LumStatus lumiYCbCr411ToYCbCr422_8u_P3R(const Lum8u* const pSrc[3], const int srcStep[3],
                                                Lum8u* const pDst[3], const int dstStep[3],
                                                LumSize roiSize);
LUM_API LumStatus lumiYCbCr411ToYCrCb422_8u_P3R(const Lum8u* const pSrc[3], const int srcStep[3],
                                                Lum8u* const pDst[3], const int dstStep[3],
                                                LumSize roiSize);
/* 4:1:1 P3 -> 4:2:0 P3 and P2. */
LUM_API LumStatus lumiYCbCr411ToYCbCr420_8u_P3R(const Lum8u* const pSrc[3], const int srcStep[3],
                                                Lum8u* const pDst[3], const int dstStep[3],
                                                LumSize roiSize);
LUM_API LumStatus lumiYCbCr411ToYCbCr420_8u_P3P2R(const Lum8u* const pSrc[3], const int srcStep[3],
                                                  Lum8u* pDstY, int dstYStep, Lum8u* pDstCbCr,
                                                  int dstCbCrStep, LumSize roiSize);
/* 4:1:1 P3 -> 4:1:1 P2. */
LUM_API LumStatus lumiYCbCr411_8u_P3P2R(const Lum8u* const pSrc[3], const int srcStep[3],
                                        Lum8u* pDstY, int dstYStep, Lum8u* pDstCbCr,
                                        int dstCbCrStep, LumSize roiSize);
/* 4:1:1 P2 -> YCbCr422 C2. */
LUM_API LumStatus lumiYCbCr411ToYCbCr422_8u_P2C2R(const Lum8u* pSrcY, int srcYStep,
                                                  const Lum8u* pSrcCbCr, int srcCbCrStep,
                                                  Lum8u* pDst, int dstStep, LumSize roiSize);
/* 4:1:1 P2 -> 4:2:2 P3. */
LUM_API LumStatus lumiYCbCr411ToYCbCr422_8u_P2P3R(const Lum8u* pSrcY, int srcYStep,
                                                  const Lum8u* pSrcCbCr, int srcCbCrStep,
                                                  Lum8u* const pDst[3], const int dstStep[3],
                                                  LumSize roiSize);
/* 4:1:1 P2 -> 4:2:0 P3 in the order Y, Cb, Cr / Y, Cr, Cb. */
LUM_API LumStatus lumiYCbCr411ToYCbCr420_8u_P2P3R(const Lum8u* pSrcY, int srcYStep,
                                                  const Lum8u* pSrcCbCr, int srcCbCrStep,
                                                  Lum8u* const pDst[3], const int dstStep[3],
                                                  LumSize roiSize);
LUM_API LumStatus lumiYCbCr411ToYCrCb420_8u_P2P3R(const Lum8u* pSrcY, int srcYStep,
                                                  const Lum8u* pSrcCbCr, int srcCbCrStep,
                                                  Lum8u* const pDst[3], const int dstStep[3],
                                                  LumSize roiSize);
/* 4:1:1 P2 -> 4:1:1 P3. */
LUM_API LumStatus lumiYCbCr411_8u_P2P3R(const Lum8u* pSrcY, int srcYStep, const Lum8u* pSrcCbCr,
                                        int srcCbCrStep, Lum8u* const pDst[3],
                                        const int dstStep[3], LumSize roiSize);
/* YCbCr422 C2 -> 4:1:1 P2. */
LUM_API LumStatus lumiYCbCr422ToYCbCr411_8u_C2P2R(const Lum8u* pSrc, int srcStep, Lum8u* pDstY,
                                                  int dstYStep, Lum8u* pDstCbCr, int dstCbCrStep,
                                                  LumSize roiSize);
/* YCbCr422 C2 -> YCrCb422 C2: bytes 1 and 3 of each pixel pair exchanged. */
LUM_API LumStatus lumiYCbCr422ToYCrCb422_8u_C2R(const Lum8u* pSrc, int srcStep, Lum8u* pDst,
                                                int dstStep, LumSize roiSize);
/* 4:2:2 P3 -> 4:1:1 P3. */
LUM_API LumStatus lumiYCbCr422ToYCbCr411_8u_P3R(const Lum8u* const pSrc[3], const int srcStep[3],
                                                Lum8u* const pDst[3], const int dstStep[3],
                                                LumSize roiSize);
/* 4:2:2 P3 -> C2 "Y0 P2 Y1 P1": plane 2 at byte 1, plane 1 at byte 3, so a
 * Y, Cb, Cr source gives YCrCb422 and a Y, Cr, Cb source gives YCbCr422. */
LUM_API LumStatus lumiYCbCr422ToYCrCb422_8u_P3C2R(const Lum8u* const pSrc[3], const int srcStep[3],
                                                  Lum8u* pDst, int dstStep, LumSize roiSize);
/* END SECTION repack-layouts */

/* BEGIN SECTION repack-nv12 (NV12, YV12, YUY2 and UYVY conversions) */
/*
 * Repacks among the four arrangements video hardware and codecs use most,
 * with no arithmetic on a sample: Y is copied unchanged and in order, chroma
 * rows are repeated (4:2:0 -> 4:2:2: chroma row r serves image rows 2r and
 * 2r + 1) or the odd rows' chroma dropped (4:2:2 -> 4:2:0: only the even
 * rows give chroma, the odd rows give Y).  All samples 8u.
 *   YUY2  YCbCr422 in C2 form, "Y0 Cb Y1 Cr" per pixel pair
 *   UYVY  CbYCr422 in C2 form, "Cb Y0 Cr Y1"
 *   NV12  4:2:0 P2: a Y plane and a plane of pairs Cb Cr (W bytes a row)
 *   YV12  4:2:0 P3 with the planes Y, Cr, Cb (pSrc/pDst arrays of 3 plane
 *         pointers, srcStep/dstStep arrays of 3 steps)
 * Width and height are rounded down to even (the two C2 -> C2 functions keep
 * the height); the column and row left over stay unwritten, with no warning.
 * Steps are not tested.  After the checks the status is LumOk.  Everything
 * runs on the calling thread.
 *
 * Exception: lumiYCbCr420ToYCrCb420_8u_P2P3R writes Cb to pDst[1] and Cr to
 * pDst[2] (the YCbCr plane order, not the YCrCb of its name), while
 * lumiYCrCb420ToYCbCr420_8u_P3P2R does read pSrc[2] as Cb: a round trip of
 * the two exchanges the chroma planes.
 *
 * Large frames: lumiYCrCb420ToYCbCr422_8u_P3C2R (every pointer and step
 * 16-byte aligned), lumiYCrCb420ToCbYCr422_8u_P3C2R and
 * lumiYCbCr422ToCbYCr422_8u_C2R (pDst, dstStep 16-byte aligned) store with
 * non-temporal stores when (sum of all steps) * height exceeds 524288; the
 * bytes are the same.
 */
/* NV12 -> YUY2.  Checks: pSrcY, pSrcCbCr, pDst null -> LumErrNullPtr; width
 * or height below 2 -> LumErrSize. */
LUM_API LumStatus lumiYCbCr420ToYCbCr422_8u_P2C2R(const Lum8u* pSrcY, int srcYStep,
                                                  const Lum8u* pSrcCbCr, int srcCbCrStep,
                                                  Lum8u* pDst, int dstStep, LumSize roiSize);
/* NV12 -> UYVY.  Checks as lumiYCbCr420ToYCbCr422_8u_P2C2R. */
LUM_API LumStatus lumiYCbCr420ToCbYCr422_8u_P2C2R(const Lum8u* pSrcY, int srcYStep,
                                                  const Lum8u* pSrcCbCr, int srcCbCrStep,
                                                  Lum8u* pDst, int dstStep, LumSize roiSize);
/* NV12 -> three planes Y, Cb, Cr (see the exception above).  Checks in two
 * rounds: pSrcY, pSrcCbCr, pDst (the array) null -> LumErrNullPtr; width or
 * height below 1 -> LumErrSize; a plane pointer of pDst null ->
 * LumErrNullPtr; width or height below 2 -> LumErrSize. */
LUM_API LumStatus lumiYCbCr420ToYCrCb420_8u_P2P3R(const Lum8u* pSrcY, int srcYStep,
                                                  const Lum8u* pSrcCbCr, int srcCbCrStep,
                                                  Lum8u* const pDst[3], const int dstStep[3],
                                                  LumSize roiSize);
/* YV12 -> NV12: the pair's first byte from pSrc[2], the second from pSrc[1].
 * Checks: the entries of pSrc (pSrc itself is not tested and must not be
 * null), then pDstY, pDstCbCr null -> LumErrNullPtr; width or height below
 * 2 -> LumErrSize. */
LUM_API LumStatus lumiYCrCb420ToYCbCr420_8u_P3P2R(const Lum8u* const pSrc[3], const int srcStep[3],
                                                  Lum8u* pDstY, int dstYStep, Lum8u* pDstCbCr,
                                                  int dstCbCrStep, LumSize roiSize);
/* YV12 -> YUY2: byte 1 from pSrc[2], byte 3 from pSrc[1], each chroma row
 * serving two image rows.  Checks as lumiYCrCb420ToYCbCr420_8u_P3P2R (pDst
 * after the entries of pSrc). */
LUM_API LumStatus lumiYCrCb420ToYCbCr422_8u_P3C2R(const Lum8u* const pSrc[3], const int srcStep[3],
                                                  Lum8u* pDst, int dstStep, LumSize roiSize);
/* YV12 -> UYVY: byte 0 from pSrc[2], byte 2 from pSrc[1].  Checks as
 * lumiYCrCb420ToYCbCr422_8u_P3C2R. */
LUM_API LumStatus lumiYCrCb420ToCbYCr422_8u_P3C2R(const Lum8u* const pSrc[3], const int srcStep[3],
                                                  Lum8u* pDst, int dstStep, LumSize roiSize);
/* YUY2 -> UYVY: bytes 0 and 1, 2 and 3 of each group exchanged.  Checks:
 * pSrc, pDst null -> LumErrNullPtr; height below 1 or width below 2 ->
 * LumErrSize.  All rows are converted (the height is not rounded). */
LUM_API LumStatus lumiYCbCr422ToCbYCr422_8u_C2R(const Lum8u* pSrc, int srcStep, Lum8u* pDst,
                                                int dstStep, LumSize roiSize);
/* UYVY -> YUY2.  As lumiYCbCr422ToCbYCr422_8u_C2R. */
LUM_API LumStatus lumiCbYCr422ToYCbCr422_8u_C2R(const Lum8u* pSrc, int srcStep, Lum8u* pDst,
                                                int dstStep, LumSize roiSize);
/* YUY2 -> YV12: even rows give chroma, byte 1 to pDst[2] and byte 3 to
 * pDst[1].  Checks: the entries of pDst (pDst itself is not tested and must
 * not be null), then pSrc null -> LumErrNullPtr; width or height below 2 ->
 * LumErrSize. */
LUM_API LumStatus lumiYCbCr422ToYCrCb420_8u_C2P3R(const Lum8u* pSrc, int srcStep,
                                                  Lum8u* const pDst[3], const int dstStep[3],
                                                  LumSize roiSize);
/* UYVY -> YV12: byte 0 to pDst[2], byte 2 to pDst[1].  Checks as
 * lumiYCbCr422ToYCrCb420_8u_C2P3R. */
LUM_API LumStatus lumiCbYCr422ToYCrCb420_8u_C2P3R(const Lum8u* pSrc, int srcStep,
                                                  Lum8u* const pDst[3], const int dstStep[3],
                                                  LumSize roiSize);
/* YUY2 -> NV12: bytes 1 and 3 of the even rows become the pair.  Checks:
 * pSrc, pDstY, pDstCbCr null -> LumErrNullPtr; width or height below 2 ->
 * LumErrSize. */
LUM_API LumStatus lumiYCbCr422ToYCbCr420_8u_C2P2R(const Lum8u* pSrc, int srcStep, Lum8u* pDstY,
                                                  int dstYStep, Lum8u* pDstCbCr, int dstCbCrStep,
                                                  LumSize roiSize);
/* UYVY -> NV12: bytes 0 and 2 of the even rows become the pair.  Checks as
 * lumiYCbCr422ToYCbCr420_8u_C2P2R. */
LUM_API LumStatus lumiCbYCr422ToYCbCr420_8u_C2P2R(const Lum8u* pSrc, int srcStep, Lum8u* pDstY,
                                                  int dstYStep, Lum8u* pDstCbCr, int dstCbCrStep,
                                                  LumSize roiSize);
/* END SECTION repack-nv12 */

/* BEGIN SECTION repack-deinterlace (deinterlacing conversions of NV12) */
/*
 * NV12 (a Y plane and a plane of Cb Cr pairs, 4:2:0) to YUY2 or to three
 * planes, smoothing each luma row with its two vertical neighbours (1, 2, 1
 * over 4; the first row of the frame 3, 1 over 4, the last 1, 3 over 4),
 * which blends the two fields of an interlaced frame, and averaging
 * neighbouring chroma rows: output chroma row r takes source rows r and
 * r + 1, the last one rows n - 1 and n - 2 (n = height / 2).  Cb mixes only
 * with Cb.  The YUY2 form gives a row pair's two rows the pair's chroma.
 *
 * The block loops average with (a + b + 1) >> 1, nested; the scalar loops
 * add and shift down; which part of a row goes to which is fixed, so the
 * results differ from a plain (a + 2b + c) >> 2 by one level in places,
 * and the whole-frame YUY2 form adds 4 before its scalar shifts (a flat
 * area of value v comes out v + 1 in its first two and last two rows and
 * in the scalar columns of the others, clamped at 255).
 *
 * layout: lumSliceFirst (1), lumSliceMiddle (4), lumSliceLast (16) select
 * a horizontal slice of a frame; lumSliceAll (21), or any other value with
 * the bits 1, 4 and 16 all set, the whole frame; any other value converts
 * nothing and returns LumOk.  Slices must be run in order from the top;
 * pointers and roiSize describe the slice.  With h the slice height (rounded
 * down to even), the rows written are, in slice coordinates:
 *   first   luma 0 .. h-3, chroma rows (or YUY2 row pairs) 0 .. n-2
 *   middle  luma -2 .. h-3, chroma -1 .. n-2
 *   last    luma -2 .. h-1, chroma -1 .. n-1
 *   all     luma 0 .. h-1, chroma 0 .. n-1
 * so the two rows above a middle or last slice's destination pointer are
 * written, and the three luma rows and one chroma row above its source
 * pointers are read.  Exception: the YUY2 form's first slice always writes
 * rows 0 and 1 and reads luma row 2 and chroma row 1, so a first slice of
 * height 2 reads past its end; the planar form's first slice of height 2
 * writes nothing.  The planar form writes the first byte of each pair (Cb)
 * to pDst[1] and the second (Cr) to pDst[2].  When the even width is a
 * multiple of 64, the even height of 16, srcYStep of 16, srcCbCrStep and
 * the three dstStep of 32, and every pointer 16-byte aligned, the planar
 * form takes its aligned form, whose first and last slices nest the block
 * averages differently: it can differ by one level in those slices.
 *
 * Width and height are rounded down to even, with no warning.  The status
 * after the checks is LumOk.  Runs on the calling thread.
 */
#define lumSliceFirst 1
#define lumSliceMiddle 4
#define lumSliceLast 16
#define lumSliceAll 21
/* NV12 -> YUY2, deinterlaced.  Checks: pSrcY, pSrcCbCr, pDst null ->
 * LumErrNullPtr; width or height below 2 -> LumErrSize. */
LUM_API LumStatus lumiYCbCr420ToYCbCr422_Filter_8u_P2C2R(const Lum8u* pSrcY, int srcYStep,
                                                         const Lum8u* pSrcCbCr, int srcCbCrStep,
                                                         Lum8u* pDst, int dstStep,
                                                         LumSize roiSize, int layout);
/* NV12 -> three planes Y, Cb, Cr (see above), deinterlaced.  Checks in two
 * rounds: pSrcY, pSrcCbCr, pDst (the array) null -> LumErrNullPtr; width or
 * height below 1 -> LumErrSize; a plane pointer of pDst null ->
 * LumErrNullPtr; width or height below 2 -> LumErrSize. */
LUM_API LumStatus lumiYCbCr420ToYCrCb420_Filter_8u_P2P3R(const Lum8u* pSrcY, int srcYStep,
                                                         const Lum8u* pSrcCbCr, int srcCbCrStep,
                                                         Lum8u* const pDst[3],
                                                         const int dstStep[3], LumSize roiSize,
                                                         int layout);
/* END SECTION repack-deinterlace */

/* BEGIN SECTION repack-filter (filtered chroma upsampling) */
/*
 * 4:2:0 -> 4:2:2 with filtered chroma rows.  Y is copied; source chroma row
 * r becomes destination row 2r unchanged; each odd row 2r + 1 is computed
 * from the even rows with the taps -1, 9, 9, -1 over 16 and a rounding 8:
 *   d[2r+1] = clamp((9 * (c[r] + c[r+1]) - c[r-1] - c[r+2] + 8) >> 4)
 * where a row above the image is replaced by the first (c[-1] = c[0]) and
 * a row below by the last (c[n] = c[n+1] = c[n-1]); the shift is arithmetic,
 * the clamp to 0..255.  Columns are not filtered.  A flat plane stays flat;
 * a step edge overshoots and clamps.
 * Checks: a null plane array or plane pointer -> LumErrNullPtr; width below
 * 2 or height below 8 -> LumErrSize.  The width is rounded down to even, the
 * height to a multiple of 8 (not 2): the rows beyond stay unwritten, with no
 * warning.  Steps are not tested.  Runs on the calling thread.
 */
/* Planes Y, Cb, Cr 4:2:0 -> Y, Cb, Cr 4:2:2. */
LUM_API LumStatus lumiYCbCr420ToYCbCr422_Filter_8u_P3R(const Lum8u* const pSrc[3],
                                                       const int srcStep[3], Lum8u* const pDst[3],
                                                       const int dstStep[3], LumSize roiSize);
/* Planes Y, Cr, Cb 4:2:0 -> Y, Cb, Cr 4:2:2 (pDst[1] is the filtered
 * pSrc[2]). */
LUM_API LumStatus lumiYCrCb420ToYCbCr422_Filter_8u_P3R(const Lum8u* const pSrc[3],
                                                       const int srcStep[3], Lum8u* const pDst[3],
                                                       const int dstStep[3], LumSize roiSize);
/* NV12 (Y plane, plane of Cb Cr pairs) -> Y, Cb, Cr 4:2:2. */
LUM_API LumStatus lumiYCbCr420ToYCbCr422_Filter_8u_P2P3R(const Lum8u* pSrcY, int srcYStep,
                                                         const Lum8u* pSrcCbCr, int srcCbCrStep,
                                                         Lum8u* const pDst[3],
                                                         const int dstStep[3], LumSize roiSize);
/* Planes Y, Cr, Cb 4:2:0 -> BGR with alpha: bytes B, G, R, alphaValue a
 * pixel.  Rows 2j and 2j + 1 take chroma row j; along a row pixel 2k takes
 * Cr[k], Cb[k] and pixel 2k + 1 the averages (Cr[k] + Cr[k+1] + 1) >> 1,
 * (Cb[k] + Cb[k+1] + 1) >> 1, except in the last pair, whose pixels both
 * take Cr[k], Cb[k].  With cr = Cr - 128, cb = Cb - 128:
 *   R = clamp((76309 Y + 104597 cr - 1220944) >> 16)
 *   G = clamp((76309 Y - 53279 cr - 25675 cb - 1220944) >> 16)
 *   B = clamp((76309 Y + 132201 cb - 1220944) >> 16)
 * (arithmetic shift, no rounding term, clamp to 0..255).
 * Checks: pSrc or pDst null -> LumErrNullPtr; width or height below 1 ->
 * LumErrSize; a plane pointer of pSrc null -> LumErrNullPtr.  Whole pairs of
 * columns and rows are converted; an odd width leaves the last column, an
 * odd height the last row unwritten, and the result is then LumWarnOddSize,
 * else LumOk.  A height of 1 converts nothing.  A width of 1 still writes
 * two pixels a row (8 bytes) and reads two luma samples a row: the images
 * must provide for that. */
LUM_API LumStatus lumiYCrCb420ToBGR_Filter_8u_P3C4R(const Lum8u* const pSrc[3],
                                                    const int srcStep[3], Lum8u* pDst,
                                                    int dstStep, LumSize roiSize,
                                                    Lum8u alphaValue);
/* END SECTION repack-filter */
/* BEGIN SECTION ycbcrsub (RGB with YCbCr and YCrCb 4:2:2 and 4:2:0) */
/*
 * RGB and subsampled YCbCr / YCrCb, 8u, with the studio-range coefficients
 * of the 4:4:4 YCbCr functions.  4:2:2 shares one chroma pair between
 * pixels 2k and 2k+1 of a row; 4:2:0 between the 2x2 cell of pixels 2k,
 * 2k+1 of rows 2j, 2j+1.  Forward: chroma is computed once per pair or cell
 * from the summed channels.  Inverse: every pixel of a pair or cell uses the
 * same chroma (no interpolation).
 * Layouts: C3 is R,G,B per pixel.  C2 (4:2:2) is Y0,Cb,Y1,Cr per pair for
 * YCbCr and Y0,Cr,Y1,Cb for YCrCb.  Plane arrays are R,G,B or Y,Cb,Cr; a
 * 4:2:2 chroma plane holds one sample per pair, a 4:2:0 chroma plane one per
 * cell, and each plane has its own step where an array of steps is passed.
 * Each kernel has its own fixed-point arithmetic, and the first pixels of
 * each row (the block part) and the rest (the tail) may differ by one level:
 * RGB to 4:2:2 luma, block part width & ~7; in the tail only the first pixel
 * of a pair is rounded, so a flat row can show two luma values there.
 * RGB to 4:2:0, block part floor(width/2) & ~3 cells.  C2 to RGB, block part
 * width & ~3; P3 4:2:2 to RGB, width & ~7; 4:2:0 to RGB, floor(width/2) & ~3
 * cells.
 * Odd widths in 4:2:2: RGB to C2 converts the last pixel on its own and
 * writes only its Y and the first chroma byte of the pair (Cb for YCbCr, Cr
 * for YCrCb), two bytes, as the row ends there.  C2 to RGB gives the last
 * pixel the chroma byte after it and the other chroma byte of the pair
 * before; a C2 row of width 1 uses its one chroma byte as Cb and Cr.
 * lumiYCbCr422ToRGB_8u_P3C3R gives pixel x chroma column x >> 1.
 * 4:2:0: only whole cells are converted (floor(width/2) by floor(height/2));
 * the last row and column of an odd size are left as they were, and
 * LumWarnOddSize is returned after the work when width or height is odd.
 * Checks: the C3C2 and C2C3 forms: pSrc or pDst null -> LumErrNullPtr,
 * width or height below 1 -> LumErrSize.  The forms with a plane array: the
 * arrays and the single pointer null -> LumErrNullPtr, then the size ->
 * LumErrSize, then each plane pointer, source first -> LumErrNullPtr.  Steps
 * are not checked.  Nothing is written on an error.  Calling thread only.
 */
LUM_API LumStatus lumiRGBToYCbCr422_8u_C3C2R(const Lum8u* pSrc, int srcStep, Lum8u* pDst,
                                             int dstStep, LumSize roiSize);
LUM_API LumStatus lumiRGBToYCbCr422_8u_P3C2R(const Lum8u* const pSrc[3], int srcStep, Lum8u* pDst,
                                             int dstStep, LumSize roiSize);
LUM_API LumStatus lumiRGBToYCrCb422_8u_C3C2R(const Lum8u* pSrc, int srcStep, Lum8u* pDst,
                                             int dstStep, LumSize roiSize);
LUM_API LumStatus lumiRGBToYCrCb422_8u_P3C2R(const Lum8u* const pSrc[3], int srcStep, Lum8u* pDst,
                                             int dstStep, LumSize roiSize);
/* pDst: Y, Cb, Cr planes (4:2:0), a step each. */
LUM_API LumStatus lumiRGBToYCbCr420_8u_C3P3R(const Lum8u* pSrc, int srcStep, Lum8u* const pDst[3],
                                             const int dstStep[3], LumSize roiSize);
LUM_API LumStatus lumiYCbCr422ToRGB_8u_C2C3R(const Lum8u* pSrc, int srcStep, Lum8u* pDst,
                                             int dstStep, LumSize roiSize);
/* pDst: R, G, B planes sharing dstStep. */
LUM_API LumStatus lumiYCbCr422ToRGB_8u_C2P3R(const Lum8u* pSrc, int srcStep, Lum8u* const pDst[3],
                                             int dstStep, LumSize roiSize);
/* pSrc: Y, Cb, Cr planes (4:2:2), a step each. */
LUM_API LumStatus lumiYCbCr422ToRGB_8u_P3C3R(const Lum8u* const pSrc[3], const int srcStep[3],
                                             Lum8u* pDst, int dstStep, LumSize roiSize);
/* pSrc: Y, Cb, Cr planes (4:2:0), a step each. */
LUM_API LumStatus lumiYCbCr420ToRGB_8u_P3C3R(const Lum8u* const pSrc[3], const int srcStep[3],
                                             Lum8u* pDst, int dstStep, LumSize roiSize);
LUM_API LumStatus lumiYCrCb422ToRGB_8u_C2C3R(const Lum8u* pSrc, int srcStep, Lum8u* pDst,
                                             int dstStep, LumSize roiSize);
LUM_API LumStatus lumiYCrCb422ToRGB_8u_C2P3R(const Lum8u* pSrc, int srcStep, Lum8u* const pDst[3],
                                             int dstStep, LumSize roiSize);
/* END SECTION ycbcrsub */

/* BEGIN SECTION cbycr (CbYCr 4:2:2) */
/*
 * RGB or BGR and CbYCr 4:2:2, 8u: C2 rows of Cb,Y0,Cr,Y1 per pixel pair,
 * studio range.  C3 is R,G,B; AC4 and C4 are B,G,R,A.
 * lumiRGBToCbYCr422_8u_C3C2R filters chroma: the chroma of the pair at
 * pixel i (even) is taken from pixels i-1, i, i+1 with weights 1, 2, 1; a
 * neighbour outside the row adds nothing (neutral chroma), so the first Cb
 * of a row lies closer to 128 than the pixel's own.  An odd last pixel gets
 * Cb from itself at double weight and Y, two bytes; its Cr is not written.
 * lumiRGBToCbYCr422Gamma_8u_C3C2R does the same after passing each channel
 * through the BT.601 transfer curve, round(255 * f(i / 255)) with
 * f(x) = 4.5 x below 0.018 and 1.099 x^0.45 - 0.099 above; it also returns
 * LumErrStep when a step is below 1, after the size check.
 * lumiBGRToCbYCr422_8u_AC4C2R takes the plain mean chroma of each pair (no
 * filter; the source alpha is not read); the first width & ~7 pixels of a
 * row and the rest may differ by one level.  An odd last pixel writes Cb and
 * Y, two bytes, computed with its first byte taken as red and its third as
 * blue (red and blue exchanged at this one pixel).
 * lumiCbYCr422ToRGB_8u_C2C3R and lumiCbYCr422ToBGR_8u_C2C4R replicate a
 * pair's chroma; the first width & ~7 pixels of a row and the rest may
 * differ by one level.  An odd last pixel takes the Cb before its Y and the
 * Cr of the pair before: a region of width 1 therefore reads the two bytes
 * before the start of each of its rows (they must be readable).  The C4
 * form writes B,G,R and alphaValue.
 * The two BGR forms take an aligned path when pSrc, pDst, srcStep and
 * dstStep are all multiples of 16; it gives the same bytes.
 * Checks: pSrc or pDst null -> LumErrNullPtr; width or height below 1 ->
 * LumErrSize.  Nothing is written on an error.  Calling thread only.
 */
LUM_API LumStatus lumiRGBToCbYCr422_8u_C3C2R(const Lum8u* pSrc, int srcStep, Lum8u* pDst,
                                             int dstStep, LumSize roiSize);
LUM_API LumStatus lumiRGBToCbYCr422Gamma_8u_C3C2R(const Lum8u* pSrc, int srcStep, Lum8u* pDst,
                                                  int dstStep, LumSize roiSize);
LUM_API LumStatus lumiCbYCr422ToRGB_8u_C2C3R(const Lum8u* pSrc, int srcStep, Lum8u* pDst,
                                             int dstStep, LumSize roiSize);
LUM_API LumStatus lumiBGRToCbYCr422_8u_AC4C2R(const Lum8u* pSrc, int srcStep, Lum8u* pDst,
                                              int dstStep, LumSize roiSize);
LUM_API LumStatus lumiCbYCr422ToBGR_8u_C2C4R(const Lum8u* pSrc, int srcStep, Lum8u* pDst,
                                             int dstStep, LumSize roiSize, Lum8u alphaValue);
/* END SECTION cbycr */

#ifdef __cplusplus
}
#endif

#endif /* LUMCC_H */
