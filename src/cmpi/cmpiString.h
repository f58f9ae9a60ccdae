// CMPIString records: hdl is a heap C string made by strdup.
#ifndef ZENTA_CMPI_CMPISTRING_H
#define ZENTA_CMPI_CMPISTRING_H

#include "cmpift.h"

extern CMPIStringFT* cmpiStringFt;

// A new, unregistered string record over a strdup copy of `text`.
CMPIString* newStringRecord(const char* text);
// Frees the characters (with free) and the record.
void deleteStringRecord(CMPIString* string);

#endif
