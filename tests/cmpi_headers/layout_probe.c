/*
 * The CMPI layout as a C compiler sees it.
 *
 * Compiled twice, as strict C89 with -pedantic: once with the member
 * aliases (anonymous unions) and once with ZENTA_CMPI_NO_MEMBER_ALIASES.
 * LAYOUT_PROBE_NAME names the exported table in each build; layout_test.cpp
 * compares both tables with the layout the C++ compiler computes.
 *
 * The function at the end expands a selection of macros whose bodies are
 * statements, so that -pedantic also sees what they turn into.
 */

#include <stddef.h>

#include "cmpidt.h"
#include "cmpift.h"
#include "cmpimacs.h"

#include "layout_members.h"

#ifndef LAYOUT_PROBE_NAME
#error "define LAYOUT_PROBE_NAME to the name of the table to export"
#endif

#define PROBE_JOIN2(a, b) a##b
#define PROBE_JOIN(a, b) PROBE_JOIN2(a, b)

#define PROBE_SIZE(T) sizeof(T),
#define PROBE_OFFSET(T, m) offsetof(T, m),

const size_t LAYOUT_PROBE_NAME[] = {
    CMPI_LAYOUT_TYPES(PROBE_SIZE)
    CMPI_LAYOUT_MEMBERS(PROBE_OFFSET)
    0
};

const size_t PROBE_JOIN(LAYOUT_PROBE_NAME, _count) =
    sizeof(LAYOUT_PROBE_NAME) / sizeof(LAYOUT_PROBE_NAME[0]) - 1;

CMPIStatus PROBE_JOIN(LAYOUT_PROBE_NAME, _macros)(const CMPIBroker *b,
                                                  CMPIStatus *st,
                                                  CMPIrc rc);

CMPIStatus PROBE_JOIN(LAYOUT_PROBE_NAME, _macros)(const CMPIBroker *b,
                                                  CMPIStatus *st,
                                                  CMPIrc rc)
{
    CMSetStatus(st, rc);
    CMSetStatusWithChars(b, st, rc, "text");
    CMSetStatusWithString(st, rc, CMNewString(b, "text", NULL));
    if (rc == CMPI_RC_ERR_FAILED) {
        CMReturnWithChars(b, rc, "failed");
    }
    if (rc == CMPI_RC_ERR_NOT_FOUND) {
        CMReturnWithString(rc, CMNewString(b, "missing", NULL));
    }
    CMReturn(rc);
}
