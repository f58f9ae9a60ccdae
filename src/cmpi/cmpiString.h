// CMPIString records: hdl is the record's own copy of the characters; a
// short text is kept in the record's block, a longer one is a strdup copy.
#ifndef ZENTA_CMPI_CMPISTRING_H
#define ZENTA_CMPI_CMPISTRING_H

#include <cstddef>

#include "cmpift.h"

extern CMPIStringFT* cmpiStringFt;

// A new, unregistered string record over a copy of `text`.
CMPIString* newStringRecord(const char* text);
// Frees the characters and the record.
void deleteStringRecord(CMPIString* string);
// The memory of freed records kept for the next ones (bounded).
std::size_t keptStringRecordBytes();

#endif
