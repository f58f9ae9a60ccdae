#include "TDocumentPlan.h"

#include "CIMNames.h"
#include "TZENTAException.h"

namespace NVURZENTA20 {

std::string TSourceLocation::ToString() const {
    std::string text = file ? *file : std::string("(unknown document)");
    text += ":" + std::to_string(line);
    if (column > 0) text += ":" + std::to_string(column);
    return text;
}

void FailAt(const TSourceLocation& at, const std::string& reason) {
    throw TZENTAException(TZENTAStatusCode::kInvalidDocument, at.ToString() + ": " + reason);
}

std::string NameKey(std::string name) {
    for (char& c : name) c = LowerAscii(c);
    return name;
}

}  // namespace NVURZENTA20
