// CIM-XML documents into the document plan.
#ifndef ZENTA_HOST_CORE_TCIMXMLREADER_H
#define ZENTA_HOST_CORE_TCIMXMLREADER_H

#include <string>

#include "TDocumentFile.h"
#include "TDocumentPlan.h"

namespace NVURZENTA20 {

// Reads `text`, the content of the CIM-XML document `path`. Throws
// kInvalidDocument naming file, line and column.
TDocumentPlan ReadCIMXMLPlan(const std::string& path, std::string text,
                             const TDocumentLimits& limits = DefaultDocumentLimits());

}  // namespace NVURZENTA20

#endif
