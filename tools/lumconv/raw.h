// lumconv: headerless frames (.yuv, .rgbp, .raw), one after the other: three
// 8-bit planes, each width * height bytes, or with --layout a video layout
// (I420, YV12, NV12, YUY2, UYVY, I422).  The size comes from --raw WxH; a file
// must hold a whole number of frames.
#ifndef LUMCONV_RAW_H
#define LUMCONV_RAW_H

#include <memory>

#include "file.h"
#include "io.h"

namespace lumconv {

std::unique_ptr<FrameReader> makeRawReader(std::unique_ptr<InFile> in, const RawSize& size,
                                           Model model, Layout layout, bool swapChroma,
                                           bool modelGiven);
std::unique_ptr<FrameWriter> makeRawWriter(const std::string& path, bool swapChroma);

}  // namespace lumconv

#endif
