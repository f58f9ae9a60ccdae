/*
 * The CMPI layout as a C compiler sees it: built as strict C89 with
 * -pedantic, with and without member aliases. LAYOUT_PROBE_NAME names the
 * exported table, one (offset, size of the structure) pair per member.
 */

#include "probes.h"

#define PROBE_MEMBER(T, m) offsetof(T, m), sizeof(T),
#define PROBE_TABLE(T, members) members(PROBE_MEMBER, PROBE_MEMBER, PROBE_MEMBER, T)

const size_t LAYOUT_PROBE_NAME[] = {
    CMPI_LAYOUT(PROBE_TABLE)
    CMPI_LAYOUT_VALUES(PROBE_MEMBER)
    0
};
