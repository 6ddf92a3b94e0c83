// lumconv: binary PNM files: P6 (PPM), P5 (PGM) and P7 (PAM), maxval 255 or
// 65535 (16-bit samples big-endian).  A PGM is one grey image (C1), or the
// three planes of a P3 image one above the other.
#ifndef LUMCONV_PNM_H
#define LUMCONV_PNM_H

#include <memory>

#include "file.h"
#include "io.h"

namespace lumconv {

// `magic` is the digit after the 'P' of the first image, already read.
// pgmPlanes: a PGM holds three planes one above the other (else it is grey).
std::unique_ptr<FrameReader> makePnmReader(std::unique_ptr<InFile> in, int magic, bool pgmPlanes);
std::unique_ptr<FrameWriter> makePnmWriter(const std::string& path, FileFormat format);

}  // namespace lumconv

#endif
