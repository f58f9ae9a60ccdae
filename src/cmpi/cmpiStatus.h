// Status helpers shared by the function tables: messages are always null.
#ifndef ZENTA_CMPI_CMPISTATUS_H
#define ZENTA_CMPI_CMPISTATUS_H

#include "cmpidt.h"

inline CMPIStatus makeStatus(CMPIrc code)
{
    CMPIStatus status;
    status.rc = code;
    status.msg = nullptr;
    return status;
}

// Providers may pass a null status pointer.
inline void setStatus(CMPIStatus* rc, CMPIrc code)
{
    if (rc != nullptr) {
        *rc = makeStatus(code);
    }
}

// A datum that carries no value: type CMPI_null with the given state.
inline CMPIData makeEmptyData(CMPIValueState state)
{
    CMPIData data = {};
    data.type = CMPI_null;
    data.state = state;
    return data;
}

#endif
