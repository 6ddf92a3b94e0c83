// lumconv: YUV4MPEG2 sequences (.y4m): a header line
// "YUV4MPEG2 W<w> H<h> F<a:b> I<p|t|b|m> A<a:b> C444", then frames, each a
// "FRAME" line and the planes Y, U, V of 8-bit samples.  Only C444 (no
// chroma subsampling) is read and written.
#ifndef LUMCONV_Y4M_H
#define LUMCONV_Y4M_H

#include <memory>

#include "file.h"
#include "io.h"

namespace lumconv {

// The "YUV4MPEG2" signature has been read from in.
std::unique_ptr<FrameReader> makeY4mReader(std::unique_ptr<InFile> in);
std::unique_ptr<FrameWriter> makeY4mWriter(const std::string& path);

}  // namespace lumconv

#endif
