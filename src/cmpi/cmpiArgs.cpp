#include "cmpiArgs.h"

#include <cctype>
#include <iterator>
#include <string>

#include "TCIMValue.h"
#include "cmpiInstanceRegistry.h"
#include "cmpiStatus.h"
#include "cmpiValue.h"

using NVURZENTA20::TCIMContext;
using NVURZENTA20::TCIMValue;

CMPIArgs* params2CMPIArgs(TCIMContext* params)
{
    CMPIArgs* args = new CMPIArgs;
    args->hdl = params;
    args->ft = cmpiArgsFtab;
    CMPINSPInstanceRegistry::GetRegistrySingleton()->RegisterArgs(args);
    return args;
}

namespace {

TCIMContext& paramsOf(const CMPIArgs* args)
{
    return *static_cast<TCIMContext*>(args->hdl);
}

// A null (or absent) value reads as "not found".
CMPIData argumentData(const TCIMValue& value)
{
    if (value.IsNull()) {
        return makeEmptyData(CMPI_nullValue);
    }
    CMPIData data = {};
    convToCMPIData(value, convToCMPIType(value.GetType(), value.IsArray()), &data);
    return data;
}

std::string lowerCase(const char* text)
{
    std::string lower(text);
    for (char& c : lower) {
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    }
    return lower;
}

// The map is the caller's; the record is freed with the registry.
CMPIStatus argsRelease(CMPIArgs*)
{
    return makeStatus(CMPI_RC_OK);
}

// The first entry whose name contains the lower-cased new name is
// replaced. An entry spelled exactly like a name with capitals is not
// matched, and the insert then keeps its old value.
CMPIStatus addArg(const CMPIArgs* args, const char* name, const CMPIValue* value, const CMPIType type)
{
    CMPIrc conversionRc;
    const TCIMValue converted = convertCMPIValue(value, type, &conversionRc);
    const std::string lower = lowerCase(name);
    TCIMContext& params = paramsOf(args);
    for (TCIMContext::iterator entry = params.begin(); entry != params.end(); ++entry) {
        if (entry->first.find(lower) != std::string::npos) {
            params.erase(entry);
            break;
        }
    }
    params.insert(TCIMContext::value_type(name, converted));
    return makeStatus(CMPI_RC_OK);
}

// On success the status is left as the caller had it.
CMPIData getArg(const CMPIArgs* args, const char* name, CMPIStatus* rc)
{
    const TCIMContext& params = paramsOf(args);
    const TCIMContext::const_iterator entry = params.find(name);
    const TCIMValue value = entry != params.end() ? entry->second : TCIMValue();
    if (value.IsNull()) {
        setStatus(rc, CMPI_RC_ERR_NOT_FOUND);
    }
    return argumentData(value);
}

// An index at or past the count reads as "not found".
CMPIData getArgAt(const CMPIArgs* args, CMPICount index, CMPIString** name, CMPIStatus* rc)
{
    const TCIMContext& params = paramsOf(args);
    if (index >= params.size()) {
        setStatus(rc, CMPI_RC_ERR_NOT_FOUND);
        return makeEmptyData(CMPI_nullValue);
    }
    const TCIMContext::const_iterator entry = std::next(params.begin(), index);
    if (entry->second.IsNull()) {
        setStatus(rc, CMPI_RC_ERR_NOT_FOUND);
        return makeEmptyData(CMPI_nullValue);
    }
    const CMPIData data = argumentData(entry->second);
    if (name != nullptr) {
        *name = string2CMPIString(entry->first);
    }
    setStatus(rc, CMPI_RC_OK);
    return data;
}

CMPICount getArgCount(const CMPIArgs* args, CMPIStatus* rc)
{
    setStatus(rc, CMPI_RC_OK);
    return static_cast<CMPICount>(paramsOf(args).size());
}

CMPIArgsFT argsFtab = {
    100,
    argsRelease,
    nullptr,  // clone
    addArg,
    getArg,
    getArgAt,
    getArgCount,
};

}  // namespace

CMPIArgsFT* cmpiArgsFtab = &argsFtab;
