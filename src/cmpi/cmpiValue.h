// Conversion between CMPI values (CMPIType, CMPIValue, CMPIData) and host
// values (TCIMValue). This is the library's one definition of the type
// correspondence.
#ifndef ZENTA_CMPI_CMPIVALUE_H
#define ZENTA_CMPI_CMPIVALUE_H

#include <string>

#include "TCIMValue.h"
#include "cmpift.h"

// Array codes and codes without a host counterpart give host type 0.
NVURZENTA20::TCIMValue::TCIMType convToTCIMType(CMPIType type);

// Host type 0 maps to CMPI_uint8, not CMPI_null: callers rely on it. With
// `isArray` the array flag (16) is ignored and CMPI_ARRAY is added. Codes
// above 15 (after the flag is cleared) must not be passed.
CMPIType convToCMPIType(NVURZENTA20::TCIMValue::TCIMType type, bool isArray);

// A null `value` gives a null of host type 0 and leaves `rc` alone;
// otherwise `rc` (if given) is CMPI_RC_OK, also for types that cannot be
// converted (they give a default TCIMValue). For CMPI_chars the value
// pointer itself is the C string. Null string, reference and date-time
// records give nulls of their type.
NVURZENTA20::TCIMValue convertCMPIValue(const CMPIValue* value, CMPIType type, CMPIrc* rc);

// `value->array` must be an array record of this library. Arrays of
// references (and of other unconvertible types) give a default, untyped
// value.
NVURZENTA20::TCIMValue createTCIMValueArray(const CMPIValue* value);

// Writes `type` and state CMPI_goodValue (never a null state), then the
// value. Booleans, char16, reals and other unsupported scalar or element
// types give CMPI_RC_ERR_NOT_SUPPORTED. Strings are registered; reference,
// date-time and array records (and the element strings of string arrays)
// are not, and belong to whoever receives them.
CMPIrc convToCMPIData(const NVURZENTA20::TCIMValue& value, CMPIType type, CMPIData* data);

// A registered string record holding a copy of `text`.
CMPIString* string2CMPIString(const std::string& text);

// A copy of the value a provider passed for `type`. Providers pass the
// address of a variable of the type's own size (and, for CMPI_chars, the
// characters themselves), never a whole CMPIValue: only that much is read.
CMPIValue readProviderValue(const CMPIValue* value, CMPIType type);

#endif
