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
/* END SECTION identity-allocation */

/* BEGIN SECTION services (Copy, Set, Max, Sum, Mean, RandUniform) */
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

/* BEGIN SECTION hsv (RGB and HSV) */
/* END SECTION hsv */

/* BEGIN SECTION hls (RGB and HLS) */
/* END SECTION hls */

/* BEGIN SECTION hlsplane (BGR and HLS plane layouts) */
/* END SECTION hlsplane */

#ifdef __cplusplus
}
#endif

#endif /* LUMCC_H */
