// Result records handed to providers' MI functions.
//
// Ordinary results (cmpiResultFt): hdl points at a heap cell that receives
// the handle of the instance record the provider returns last, i.e. a
// pointer to that record's holder. The cell does not own the holder (the
// instance record does).
//
// Instance-enumeration results (cmpiEnumInstanceResultFt): hdl is not
// read; every returned instance is filed with the host at once.
#ifndef ZENTA_CMPI_CMPIRESULT_H
#define ZENTA_CMPI_CMPIRESULT_H

#include <boost/shared_ptr.hpp>

#include "ICIMInstance.h"
#include "cmpift.h"

extern CMPIResultFT* cmpiResultFt;
extern CMPIResultFT* cmpiEnumInstanceResultFt;

// What an ordinary result's handle points at: the handle (void*) of the
// instance record returned last, or null.
typedef void* TResultCell;

// A new, unregistered ordinary result with an empty cell.
CMPIResult* newResultRecord();
// Frees the cell and the record, not the holder the cell points at.
void deleteResultRecord(CMPIResult* result);
// The instance last returned on an ordinary result; empty when none was.
boost::shared_ptr<NVURZENTA20::ICIMInstance> resultInstance(const CMPIResult* result);

#endif
