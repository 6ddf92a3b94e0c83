// lumconv: headerless planes (.yuv, .rgbp, .raw): frames of three 8-bit
// planes, each width * height bytes, one frame after the other.  The size
// comes from --raw WxH; a file must hold a whole number of frames.
#ifndef LUMCONV_RAW_H
#define LUMCONV_RAW_H

#include <memory>

#include "file.h"
#include "io.h"

namespace lumconv {

std::unique_ptr<FrameReader> makeRawReader(std::unique_ptr<InFile> in, const RawSize& size,
                                           Model model);
std::unique_ptr<FrameWriter> makeRawWriter(const std::string& path);

}  // namespace lumconv

#endif
