// Select expressions are not evaluated by this library: every member of
// the table is a stub.
#ifndef ZENTA_CMPI_CMPISELECTEXP_H
#define ZENTA_CMPI_CMPISELECTEXP_H

#include "cmpift.h"

typedef CMPISelectExp CMPI_SelectExp;

extern CMPISelectExpFT* CMPI_SelectExp_Ftab;

// Query-language checks; they accept nothing and report nothing.
int _check_WQL(CMPI_SelectExp* expression, CMPIStatus* rc);
int _check_CQL(CMPI_SelectExp* expression, CMPIStatus* rc);

#endif
