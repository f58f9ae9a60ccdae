// CIM values written on the command line, read by the type they are
// declared with: method arguments and the keys of object paths.
#ifndef ZENTA_OPS_VALUETEXT_H
#define ZENTA_OPS_VALUETEXT_H

#include <functional>
#include <string>
#include <vector>

#include "TCIMReference.h"
#include "TCIMValue.h"

// Reads the text of a reference value into a path.
typedef std::function<NVURZENTA20::TCIMReference(const std::string&)> TReferenceReader;

// The value `text` stands for as a `type` (an array: elements separated by
// commas, no element may contain one; empty text is an empty array).
// Booleans are true/false in any case, integers decimal and range-checked,
// reals as C reads them (also NaN and INF), char16 one character, and
// date-times CIM date-time text. `subject` names what is read for the
// message of the TToolError thrown on text that does not fit.
NVURZENTA20::TCIMValue ValueFromText(const std::string& text, NVURZENTA20::TCIMValue::TCIMType type, bool isArray,
                                     const TReferenceReader& readReference, const std::string& subject);

// The same for a value given element by element (as WBEM clients send
// arrays); a scalar takes exactly one element.
NVURZENTA20::TCIMValue ValueFromItems(const std::vector<std::string>& items, NVURZENTA20::TCIMValue::TCIMType type,
                                      bool isArray, const TReferenceReader& readReference, const std::string& subject);

#endif
