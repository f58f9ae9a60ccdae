// CIM elements written as MOF text: values, class declarations and
// qualifier declarations, as a user reads them and a MOF compiler reads them
// back.
#ifndef ZENTA_OPS_MOFTEXT_H
#define ZENTA_OPS_MOFTEXT_H

#include <string>
#include <string_view>

#include "Answer.h"
#include "TCIMValue.h"

// A string literal with MOF escapes.
void AppendMofString(std::string& out, std::string_view text);

// A value as MOF writes it: NULL, TRUE/FALSE, numbers, quoted and escaped
// strings (also char16, date-times and reference paths), {a, b} arrays.
void AppendMofValue(std::string& out, const NVURZENTA20::TCIMValue& value);
std::string MofValue(const NVURZENTA20::TCIMValue& value);

// "class Name : Super { ... };" with qualifiers, properties, references
// and methods, as much of it as `view` asks for.
void AppendMofClass(std::string& out, const TClassView& view);

// "Qualifier Name : type = default, Scope(...), Flavor(...);"
void AppendMofQualifierDecl(std::string& out, const NVURZENTA20::ICIMQualifierDecl& decl);

#endif
