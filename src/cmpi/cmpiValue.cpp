#include "cmpiValue.h"

#include <cstring>

#include <memory>
#include <vector>

#include "TCIMReference.h"
#include "cmpiArray.h"
#include "cmpiDateTime.h"
#include "cmpiInstanceRegistry.h"
#include "cmpiObjectPath.h"
#include "cmpiString.h"

using NVURZENTA20::TCIMChar16;
using NVURZENTA20::TCIMDateTime;
using NVURZENTA20::TCIMReference;
using NVURZENTA20::TCIMValue;

typedef TCIMValue::TCIMType TCIMType;
typedef TCIMValue::TCIMType::ECIMType ECIMType;

namespace {

// Indexed by host type code. Host type 0 deliberately maps to CMPI_uint8.
const CMPIType kCMPITypeOfHostType[16] = {
    CMPI_uint8,  CMPI_boolean, CMPI_uint8,  CMPI_sint8,  CMPI_uint16, CMPI_sint16,   CMPI_uint32, CMPI_sint32,
    CMPI_uint64, CMPI_sint64,  CMPI_real32, CMPI_real64, CMPI_char16, CMPI_string, CMPI_dateTime, CMPI_ref,
};

bool isSignedInteger(CMPIType type)
{
    return (type & CMPI_SINT) == CMPI_SINT;
}

bool isUnsignedInteger(CMPIType type)
{
    return (type & CMPI_SINT) == CMPI_UINT;
}

// The scalar of type T at `bytes`, read with exactly its own width and
// without assuming its alignment.
template <class T>
T readScalar(const void* bytes)
{
    T scalar;
    std::memcpy(&scalar, bytes, sizeof(scalar));
    return scalar;
}

// Integers, reals, booleans, char16 and date-times convert alike as
// scalars and as array elements. `bytes` is where the provider's value
// lies: a variable of the scalar's own type, or a CMPIValue (whose members
// all start at its first byte). False for every other type.
bool setPlainValue(TCIMValue& target, CMPIType type, const void* bytes)
{
    switch (type) {
    case CMPI_boolean: target.Set(readScalar<CMPIBoolean>(bytes) != 0); return true;
    case CMPI_char16: target.Set(TCIMChar16(readScalar<CMPIChar16>(bytes))); return true;
    case CMPI_real32: target.Set(readScalar<CMPIReal32>(bytes)); return true;
    case CMPI_real64: target.Set(readScalar<CMPIReal64>(bytes)); return true;
    case CMPI_uint8: target.Set(readScalar<CMPIUint8>(bytes)); return true;
    case CMPI_uint16: target.Set(readScalar<CMPIUint16>(bytes)); return true;
    case CMPI_uint32: target.Set(readScalar<CMPIUint32>(bytes)); return true;
    case CMPI_uint64: target.Set(static_cast<unsigned long long>(readScalar<CMPIUint64>(bytes))); return true;
    case CMPI_sint8: target.Set(readScalar<CMPISint8>(bytes)); return true;
    case CMPI_sint16: target.Set(readScalar<CMPISint16>(bytes)); return true;
    case CMPI_sint32: target.Set(readScalar<CMPISint32>(bytes)); return true;
    case CMPI_sint64: target.Set(static_cast<long long>(readScalar<CMPISint64>(bytes))); return true;
    case CMPI_dateTime:
        if (const CMPIDateTime* dateTime = readScalar<const CMPIDateTime*>(bytes)) {
            target.Set(dateTimeOfRecord(dateTime));
        } else {
            target.SetNullValue(TCIMType::kDateTime, 0);
        }
        return true;
    default: return false;
    }
}

TCIMValue scalarToHost(const CMPIValue* value, CMPIType type)
{
    TCIMValue result;
    switch (type) {
    case CMPI_chars:
        // CMPI convention: a char* is passed cast to CMPIValue*.
        result.Set(reinterpret_cast<const char*>(value));
        return result;
    case CMPI_charsptr:
        if (value->dataPtr.ptr != nullptr) {
            result.Set(static_cast<const char*>(value->dataPtr.ptr));
        } else {
            result.SetNullValue(TCIMType::kString, 0);
        }
        return result;
    case CMPI_string:
        if (value->string != nullptr && value->string->hdl != nullptr) {
            result.Set(static_cast<const char*>(value->string->hdl));
        } else {
            result.SetNullValue(TCIMType::kString, 0);
        }
        return result;
    case CMPI_ref:
        if (value->ref != nullptr && value->ref->hdl != nullptr) {
            result.Set(*static_cast<const TCIMReference*>(value->ref->hdl));
        } else {
            result.SetNullValue(TCIMType::kReference, 0);
        }
        return result;
    default: {
        // Providers pass pointers to variables of the scalar's own type
        // (a CMPIUint16 on the stack, a field of a packed struct), so only
        // that many bytes are read, without assuming a CMPIValue's alignment.
        setPlainValue(result, type, value);
        return result;
    }
    }
}

// The host type of an array's elements; kNone for element types that are
// not converted (references among them).
ECIMType arrayElementHostType(CMPIType elementType)
{
    if (elementType == CMPI_ref) {
        return TCIMType::kNone;
    }
    return convToTCIMType(elementType);
}

TCIMValue arrayElementToHost(CMPIType elementType, const CMPIValue& value)
{
    switch (elementType) {
    // An element never set (a null record) becomes a null element.
    case CMPI_string:
        return TCIMValue(value.string != nullptr ? static_cast<const char*>(value.string->hdl) : nullptr);
    case CMPI_chars: return TCIMValue(static_cast<const char*>(value.chars));
    default: {
        TCIMValue element;
        setPlainValue(element, elementType, &value);
        return element;
    }
    }
}

// Made from validated text, but the record's handle is the record itself:
// the date is not kept (date-time records only ever answer the default
// date).
CMPIDateTime* newDatelessDateTimeRecord(const std::string& text)
{
    TCIMDateTime validated(text);
    CMPIDateTime* record = newDateTimeRecord(nullptr);
    record->hdl = record;
    return record;
}

// Signed integers are converted without a null test, unsigned ones give 0
// for a null.
void signedToCMPI(const TCIMValue& value, CMPIType type, CMPIValue& out)
{
    switch (type) {
    case CMPI_sint8: out.sint8 = static_cast<signed char>(value); break;
    case CMPI_sint16: out.sint16 = static_cast<short>(value); break;
    case CMPI_sint32: out.sint32 = static_cast<int>(value); break;
    case CMPI_sint64: out.sint64 = static_cast<long long>(value); break;
    default: break;
    }
}

void unsignedToCMPI(const TCIMValue& value, CMPIType type, CMPIValue& out)
{
    const bool null = value.IsNull();
    switch (type) {
    case CMPI_uint8: out.uint8 = null ? 0 : static_cast<unsigned char>(value); break;
    case CMPI_uint16: out.uint16 = null ? 0 : static_cast<unsigned short>(value); break;
    case CMPI_uint32: out.uint32 = null ? 0 : static_cast<unsigned int>(value); break;
    case CMPI_uint64: out.uint64 = null ? 0 : static_cast<unsigned long long>(value); break;
    default: break;
    }
}

CMPIrc scalarToCMPI(const TCIMValue& value, CMPIType type, CMPIValue& out)
{
    if (isSignedInteger(type)) {
        signedToCMPI(value, type, out);
        return CMPI_RC_OK;
    }
    if (isUnsignedInteger(type)) {
        unsignedToCMPI(value, type, out);
        return CMPI_RC_OK;
    }
    switch (type) {
    case CMPI_string:
        out.string = string2CMPIString(value.IsNull() ? std::string() : value.operator std::string());
        return CMPI_RC_OK;
    case CMPI_ref:
        out.ref = newOwningObjectPath(value.GetReference());
        return CMPI_RC_OK;
    case CMPI_dateTime:
        out.dateTime = newDatelessDateTimeRecord(value.IsNull() ? std::string(kDefaultDateTimeText)
                                                                : value.ToString(10));
        return CMPI_RC_OK;
    default:
        return CMPI_RC_ERR_NOT_SUPPORTED;
    }
}

// Array elements: integers without a null test (sint32 is read through its
// unsigned 32 bits), strings as unregistered records of their text form.
bool arrayElementToCMPI(const TCIMValue& element, CMPIType elementType, CMPIValue& out)
{
    switch (elementType) {
    case CMPI_sint8: out.sint8 = static_cast<signed char>(element); return true;
    case CMPI_sint16: out.sint16 = static_cast<short>(element); return true;
    case CMPI_sint32: out.uint32 = static_cast<unsigned int>(element); return true;
    case CMPI_sint64: out.sint64 = static_cast<long long>(element); return true;
    case CMPI_uint8: out.uint8 = static_cast<unsigned char>(element); return true;
    case CMPI_uint16: out.uint16 = static_cast<unsigned short>(element); return true;
    case CMPI_uint32: out.uint32 = static_cast<unsigned int>(element); return true;
    case CMPI_uint64: out.uint64 = static_cast<unsigned long long>(element); return true;
    case CMPI_string: out.string = newStringRecord(element.ToString(10).c_str()); return true;
    default: return false;
    }
}

struct TArrayStoreDeleter {
    void operator()(CMPIData* store) const { deleteArrayStore(store); }
};

CMPIrc arrayToCMPI(const TCIMValue& value, CMPIType type, CMPIData* data)
{
    std::vector<TCIMValue> elements;
    if (!value.IsNull()) {
        elements = value.operator const std::vector<TCIMValue>&();
    }
    const CMPIType elementType = type & ~CMPI_ARRAY;
    std::unique_ptr<CMPIData, TArrayStoreDeleter> store(
        newArrayStore(static_cast<CMPICount>(elements.size()), elementType, CMPI_goodValue));
    for (std::size_t i = 0; i < elements.size(); ++i) {
        if (!arrayElementToCMPI(elements[i], elementType, store.get()[i + 1].value)) {
            return CMPI_RC_ERR_NOT_SUPPORTED;
        }
    }
    data->value.array = newArrayRecord(store.release());
    return CMPI_RC_OK;
}

}  // namespace

TCIMType convToTCIMType(CMPIType type)
{
    switch (type) {
    case CMPI_boolean: return TCIMType::kBoolean;
    case CMPI_char16: return TCIMType::kChar16;
    case CMPI_real32: return TCIMType::kReal32;
    case CMPI_real64: return TCIMType::kReal64;
    case CMPI_uint8: return TCIMType::kUint8;
    case CMPI_uint16: return TCIMType::kUint16;
    case CMPI_uint32: return TCIMType::kUint32;
    case CMPI_uint64: return TCIMType::kUint64;
    case CMPI_sint8: return TCIMType::kSint8;
    case CMPI_sint16: return TCIMType::kSint16;
    case CMPI_sint32: return TCIMType::kSint32;
    case CMPI_sint64: return TCIMType::kSint64;
    case CMPI_ref: return TCIMType::kReference;
    case CMPI_string:
    case CMPI_chars: return TCIMType::kString;
    case CMPI_dateTime: return TCIMType::kDateTime;
    default: return TCIMType::kNone;
    }
}

CMPIType convToCMPIType(TCIMType type, bool isArray)
{
    // Clearing the bits above the table keeps a stray code inside it.
    const CMPIType cmpiType = kCMPITypeOfHostType[static_cast<ECIMType>(type) & 0xF];
    return isArray ? static_cast<CMPIType>(cmpiType | CMPI_ARRAY) : cmpiType;
}

TCIMValue convertCMPIValue(const CMPIValue* value, CMPIType type, CMPIrc* rc)
{
    if (value == nullptr) {
        TCIMValue result;
        result.SetNullValue(TCIMType::kNone, 0);
        return result;
    }
    if (rc != nullptr) {
        *rc = CMPI_RC_OK;
    }
    if (type & CMPI_ARRAY) {
        if (value->array == nullptr) {
            TCIMValue result;
            result.SetNullValue(TCIMType::kNone, 0);
            return result;
        }
        return createTCIMValueArray(value);
    }
    return scalarToHost(value, type);
}

TCIMValue createTCIMValueArray(const CMPIValue* value)
{
    const CMPIData* store = static_cast<const CMPIData*>(value->array->hdl);
    const CMPIType elementType = store[0].type & ~CMPI_ARRAY;
    TCIMValue result;
    const ECIMType hostType = arrayElementHostType(elementType);
    if (hostType == TCIMType::kNone) {
        return result;
    }
    const int count = store[0].value.sint32;
    std::vector<TCIMValue> elements;
    for (int slot = 1; slot <= count; ++slot) {
        elements.push_back(arrayElementToHost(elementType, store[slot].value));
    }
    result.Set(TCIMType(hostType), static_cast<unsigned int>(elements.size()), elements);
    return result;
}

CMPIrc convToCMPIData(const TCIMValue& value, CMPIType type, CMPIData* data)
{
    data->type = type;
    data->state = CMPI_goodValue;
    if (type & CMPI_ARRAY) {
        return arrayToCMPI(value, type, data);
    }
    return scalarToCMPI(value, type, data->value);
}

CMPIString* string2CMPIString(const std::string& text)
{
    CMPIString* string = newStringRecord(text.c_str());
    CMPINSPInstanceRegistry::GetRegistrySingleton()->RegisterString(string);
    return string;
}

CMPIValue readProviderValue(const CMPIValue* value, CMPIType type)
{
    CMPIValue copy;
    std::memset(&copy, 0, sizeof(copy));
    std::size_t size = sizeof(CMPIValue);
    switch (type) {
    case CMPI_boolean: case CMPI_uint8: case CMPI_sint8: size = 1; break;
    case CMPI_char16: case CMPI_uint16: case CMPI_sint16: size = 2; break;
    case CMPI_uint32: case CMPI_sint32: case CMPI_real32: size = 4; break;
    case CMPI_uint64: case CMPI_sint64: case CMPI_real64: size = 8; break;
    case CMPI_chars:
        copy.chars = reinterpret_cast<char*>(const_cast<CMPIValue*>(value));
        return copy;
    default:
        // Encapsulated values and other pointers: one pointer.
        if (type & CMPI_ENC) size = sizeof(void*);
        break;
    }
    std::memcpy(&copy, value, size);
    return copy;
}
