// MOF documents (DMTF DSP0004) into the document plan: qualifier
// declarations, classes with their properties, references and methods,
// instances with aliases, and `#pragma include` of further files.
#ifndef ZENTA_HOST_CORE_TMOFREADER_H
#define ZENTA_HOST_CORE_TMOFREADER_H

#include <functional>
#include <string>

#include "TDocumentFile.h"
#include "TDocumentPlan.h"

namespace NVURZENTA20 {

// Reads the file an include names into `text`; false when there is none.
// Throws TZENTAException for a file that is there but cannot be read.
typedef std::function<bool(const std::string& path, std::size_t maxBytes, std::string& text)> TMOFFileLoader;

// Reads `text`, the content of the MOF document `path`; included files are
// found relative to the file that includes them and read through `loader`.
// Throws kInvalidDocument naming file, line and column (of the included
// file where the fault lies in one).
TDocumentPlan ReadMOFPlan(const std::string& path, const std::string& text,
                          const TDocumentLimits& limits = DefaultDocumentLimits(),
                          const TMOFFileLoader& loader = ReadDocumentFile);

}  // namespace NVURZENTA20

#endif
