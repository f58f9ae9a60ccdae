// CMPIObjectPath records: hdl points at a host TCIMReference. Because a
// TCIMReference starts with a shared pointer to itself, the handle can
// also be read as a boost::shared_ptr<TCIMReference>*; every record must
// therefore point at a real TCIMReference, never at a holder.
#ifndef ZENTA_CMPI_CMPIOBJECTPATH_H
#define ZENTA_CMPI_CMPIOBJECTPATH_H

#include <cstddef>

#include "TCIMReference.h"
#include "TCIMValue.h"
#include "cmpift.h"

extern CMPIObjectPathFT* cmpiObjectPathFt;

// A new, unregistered record over `ref` itself (no copy): the caller owns
// the record and keeps `ref` alive while it is used.
CMPIObjectPath* ref2CMPIObjectPath(const NVURZENTA20::TCIMReference& ref);

// A new, unregistered record that owns an empty reference of its own, made
// in one allocation with it (the factory makes one for every path a
// provider asks for).
CMPIObjectPath* newOwningObjectPath();
// The same holding a copy of `from`.
CMPIObjectPath* newOwningObjectPath(const NVURZENTA20::TCIMReference& from);

// Frees a record made by newOwningObjectPath: clears its reference and
// frees both.
void deleteOwningObjectPath(CMPIObjectPath* path);
// The memory of freed records kept for the next ones (bounded).
std::size_t keptObjectPathBytes();

#endif
