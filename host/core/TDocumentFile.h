// Reading a document's bytes without trusting the file: only regular files
// are read (a FIFO or a device named as a document must neither block the
// host nor feed it without end), and only up to a size limit.
#ifndef ZENTA_HOST_CORE_TDOCUMENTFILE_H
#define ZENTA_HOST_CORE_TDOCUMENTFILE_H

#include <cstddef>
#include <string>

namespace NVURZENTA20 {

// Bounds on what one document may make the host do. A document read
// together with what it includes counts as one.
struct TDocumentLimits {
    std::size_t maxFileBytes = 64u << 20;    // one file
    std::size_t maxTotalBytes = 256u << 20;  // a document and everything it includes
    std::size_t maxFiles = 20000;            // files a document includes, at any depth
    int maxIncludeDepth = 32;                // includes within includes
    int maxNesting = 64;                     // elements and references within each other
};

const TDocumentLimits& DefaultDocumentLimits();

// Reads the file at `path` into `text`. False when there is no file there
// (a dangling link counts as none); throws TZENTAException
// (kInvalidDocument) naming the file when it is not a regular file, is
// larger than `maxBytes` or cannot be read.
bool ReadDocumentFile(const std::string& path, std::size_t maxBytes, std::string& text);

}  // namespace NVURZENTA20

#endif
