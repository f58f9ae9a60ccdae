/* The four properties besides the key that the benchmark providers set on
 * each instance they make (Bench_Item, Bench_Spoke): a uint32 and a uint64
 * from the instance's index, a fixed string and the request's date-time. */
#ifndef ZENTA_BENCH_BENCHITEMS_H
#define ZENTA_BENCH_BENCHITEMS_H

#include "cmpidt.h"
#include "cmpift.h"
#include "cmpimacs.h"

static inline CMPIInstance* setBenchProperties(CMPIInstance* inst, unsigned int index, CMPIDateTime* stamp) {
    CMPIUint32 count = index;
    CMPIUint64 total = (CMPIUint64)index * 1000u;
    if (inst == NULL) return NULL;
    CMSetProperty(inst, "Count", &count, CMPI_uint32);
    CMSetProperty(inst, "Total", &total, CMPI_uint64);
    CMSetProperty(inst, "Label", "bench", CMPI_chars);
    CMSetProperty(inst, "Stamp", &stamp, CMPI_dateTime);
    return inst;
}

#endif
