// Value text as documents write it, read as a declared type.
#ifndef ZENTA_HOST_CORE_TVALUETEXT_H
#define ZENTA_HOST_CORE_TVALUETEXT_H

#include <string>

#include "TCIMValue.h"

namespace NVURZENTA20 {

// Parses value text as a scalar of `type` (not a reference): booleans
// TRUE/FALSE in any case, integers in decimal or 0x-hex within the width of
// the type, reals, one char16 character, CIM date-times and strings as
// they are. False, with `reason` set, when the text does not fit.
bool ParseValueText(TCIMValue::TCIMType type, const std::string& text, TCIMValue& value, std::string& reason);

// A null of `type`, scalar or array.
TCIMValue NullOf(TCIMValue::TCIMType type, bool isArray);

}  // namespace NVURZENTA20

#endif
