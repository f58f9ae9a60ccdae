// CMPIContext records: hdl points at a context map, like an argument
// list's; the entry operations are the argument list's.
#ifndef ZENTA_CMPI_CMPICONTEXT_H
#define ZENTA_CMPI_CMPICONTEXT_H

#include "cmpift.h"

extern CMPIContextFT* cmpiContextFt;

#endif
