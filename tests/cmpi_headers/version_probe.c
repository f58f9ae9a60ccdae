/*
 * What the headers make of an explicit, older CMPI_VERSION.
 *
 * Built with -DCMPI_VERSION=86, as a provider written for that level would
 * be. layout_test.cpp checks the exported values: the level ends up in
 * CMPICurrentVersion (and so in the miVersion of stub-generated tables),
 * exactly the feature switches up to that level are on, and the tables
 * keep their 1.0 layout.
 */

#include "cmpidt.h"
#include "cmpift.h"
#include "cmpimacs.h"

#ifndef CMPI_VERSION
#error "build this file with -DCMPI_VERSION=<level>"
#endif

const int version_probe_requested = CMPI_VERSION;
const int version_probe_current = CMPICurrentVersion;

const int version_probe_flags[] = {
#ifdef CMPI_VER_80
    1,
#else
    0,
#endif
#ifdef CMPI_VER_85
    1,
#else
    0,
#endif
#ifdef CMPI_VER_86
    1,
#else
    0,
#endif
#ifdef CMPI_VER_87
    1,
#else
    0,
#endif
#ifdef CMPI_VER_90
    1,
#else
    0,
#endif
#ifdef CMPI_VER_100
    1
#else
    0
#endif
};

const unsigned long version_probe_instance_mift_size =
    (unsigned long)sizeof(CMPIInstanceMIFT);
