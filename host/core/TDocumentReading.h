// One document into a plan, whatever its format: the step that the
// populator, the benchmarks and the fuzz targets share.
#ifndef ZENTA_HOST_CORE_TDOCUMENTREADING_H
#define ZENTA_HOST_CORE_TDOCUMENTREADING_H

#include <exception>
#include <new>
#include <string>

#include "TDocumentFile.h"
#include "TDocumentPlan.h"
#include "TMOFReader.h"
#include "TZENTAException.h"

namespace NVURZENTA20 {

// True for a name that ends in ".mof" in any case.
bool IsMOFDocument(const std::string& path);

// Reads `text` as the document `path` in the format its name says.
TDocumentPlan ReadDocumentPlan(const std::string& path, std::string text,
                               const TDocumentLimits& limits = DefaultDocumentLimits(),
                               const TMOFFileLoader& loader = ReadDocumentFile);

// Runs `read`; anything it throws other than TZENTAException (a failed
// assertion, memory exhausted by a huge document, a parser's own
// exception) leaves as TZENTAException naming `path`: callers that load
// many documents catch that type alone.
template <class TRead>
auto GuardDocumentReading(const std::string& path, const TRead& read) -> decltype(read()) {
    try {
        return read();
    } catch (const TZENTAException&) {
        throw;
    } catch (const std::bad_alloc&) {
        throw TZENTAException(TZENTAStatusCode::kOutOfMemory, path + ": the document needs more memory than there is");
    } catch (const std::exception& e) {
        throw TZENTAException(TZENTAStatusCode::kInvalidDocument, path + ": " + e.what());
    } catch (...) {
        throw TZENTAException(TZENTAStatusCode::kInvalidDocument, path + ": the document cannot be read");
    }
}

}  // namespace NVURZENTA20

#endif
