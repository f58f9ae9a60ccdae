/*
 * What the headers make of an explicit, older level: built with
 * -DCMPI_VERSION=86 as a provider written for that level would be.
 */

#include "probes.h"

#ifndef CMPI_VERSION
#error "build this file with -DCMPI_VERSION=<level>"
#endif

#if !defined(CMPI_VER_80) || !defined(CMPI_VER_85) || !defined(CMPI_VER_86) || \
    defined(CMPI_VER_87) || defined(CMPI_VER_90) || defined(CMPI_VER_100)
#error "level 86 must switch on exactly the levels 80, 85 and 86"
#endif

const int version_probe_current = CMPICurrentVersion;
const size_t version_probe_instance_mift_size = sizeof(CMPIInstanceMIFT);
