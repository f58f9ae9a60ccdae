#include "cmpiContext.h"

#include "cmpiArgs.h"

namespace {

// A context has the layout of an argument list (hdl, ft) and the same kind
// of handle.
const CMPIArgs* asArgs(const CMPIContext* context)
{
    return reinterpret_cast<const CMPIArgs*>(context);
}

CMPIData contextGetEntry(const CMPIContext* context, const char* name, CMPIStatus* rc)
{
    return cmpiArgsFtab->getArg(asArgs(context), name, rc);
}

CMPIData contextGetEntryAt(const CMPIContext* context, CMPICount index, CMPIString** name, CMPIStatus* rc)
{
    return cmpiArgsFtab->getArgAt(asArgs(context), index, name, rc);
}

CMPICount contextGetEntryCount(const CMPIContext* context, CMPIStatus* rc)
{
    return cmpiArgsFtab->getArgCount(asArgs(context), rc);
}

CMPIStatus contextAddEntry(const CMPIContext* context, const char* name, const CMPIValue* value,
                           const CMPIType type)
{
    return cmpiArgsFtab->addArg(asArgs(context), name, value, type);
}

CMPIContextFT contextFtab = {
    100,
    nullptr,  // release
    nullptr,  // clone
    contextGetEntry,
    contextGetEntryAt,
    contextGetEntryCount,
    contextAddEntry,
};

}  // namespace

CMPIContextFT* cmpiContextFt = &contextFtab;
