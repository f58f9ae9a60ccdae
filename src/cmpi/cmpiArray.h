// CMPIArray records. The handle is an array store: count + 1 slots of the
// CMPIData shape. Slot 0 is a header whose type is the element type
// (without CMPI_ARRAY), whose value.uint32 is the count and whose state is
// CMPI_nullValue (so that a clone never takes the count for an object);
// slots 1..count are the elements.
#ifndef ZENTA_CMPI_CMPIARRAY_H
#define ZENTA_CMPI_CMPIARRAY_H

#include "cmpift.h"

extern CMPIArrayFT* cmpiArrayFt;

// A zero-filled store for `count` elements of `elementType` (CMPI_ARRAY is
// dropped), each element typed and in the given state.
CMPIData* newArrayStore(CMPICount count, CMPIType elementType, CMPIValueState elementState = CMPI_nullValue);
void deleteArrayStore(CMPIData* store);
CMPICount arrayStoreCount(const CMPIData* store);

// A new, unregistered array record over `store`.
CMPIArray* newArrayRecord(CMPIData* store);
// Frees the store (not the elements' objects) and the record.
void deleteArrayRecord(CMPIArray* array);

#endif
