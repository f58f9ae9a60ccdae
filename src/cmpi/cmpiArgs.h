// CMPIArgs records: hdl points at a context map (parameter name -> value)
// that belongs to the caller; providers' additions land in that map.
#ifndef ZENTA_CMPI_CMPIARGS_H
#define ZENTA_CMPI_CMPIARGS_H

#include "ZentaTypes.h"
#include "cmpift.h"

extern CMPIArgsFT* cmpiArgsFtab;

// A registered record over `params` itself (no copy).
CMPIArgs* params2CMPIArgs(NVURZENTA20::TCIMContext* params);

#endif
