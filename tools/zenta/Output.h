// How answers are printed: readable MOF-style text, or one JSON document
// with stable field names and typed values for scripts.
#ifndef ZENTA_TOOL_OUTPUT_H
#define ZENTA_TOOL_OUTPUT_H

#include <string>

#include "RequestResult.h"

std::string RenderText(const TRequestResult& result);
std::string RenderJson(const TRequestResult& result);

// A value as MOF writes it: NULL, TRUE/FALSE, numbers, quoted and escaped
// strings (also char16, date-times and reference paths), {a, b} arrays.
std::string MofValue(const NVURZENTA20::TCIMValue& value);

#endif
