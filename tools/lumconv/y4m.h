// lumconv: YUV4MPEG2 sequences (.y4m): a header line
// "YUV4MPEG2 W<w> H<h> F<a:b> I<p|t|b|m> A<a:b> C<chroma> [X...]", then
// frames, each a "FRAME" line and the planes Y, Cb, Cr of 8-bit samples.
// C444, C422 and C420 (jpeg, mpeg2, paldv siting or none, all read as
// centred) are read and written.  The model: XLUMCC_MODEL=YUV marks this
// library's YUV; anything else is studio-range YCbCr (XCOLORRANGE=LIMITED or
// no tag; FULL is refused).
#ifndef LUMCONV_Y4M_H
#define LUMCONV_Y4M_H

#include <memory>

#include "file.h"
#include "io.h"

namespace lumconv {

// The "YUV4MPEG2" signature has been read from in.
// model: what to read the samples as (--model), Unknown for the file's own.
std::unique_ptr<FrameReader> makeY4mReader(std::unique_ptr<InFile> in, Model model);
std::unique_ptr<FrameWriter> makeY4mWriter(const std::string& path);

}  // namespace lumconv

#endif
