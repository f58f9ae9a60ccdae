// The broker function table: the upcalls providers make into the host.
#ifndef ZENTA_CMPI_CMPIBROKER_H
#define ZENTA_CMPI_CMPIBROKER_H

#include "cmpift.h"

extern CMPIBrokerFT* cmpiBrokerFt;

#endif
