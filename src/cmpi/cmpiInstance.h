// CMPIInstance records: hdl points at a heap boost::shared_ptr holding the
// host instance (a TCMPIInstance).
#ifndef ZENTA_CMPI_CMPIINSTANCE_H
#define ZENTA_CMPI_CMPIINSTANCE_H

#include <cstddef>
#include <vector>

#include <boost/shared_ptr.hpp>

#include "ICIMInstance.h"
#include "ICIMProperty.h"
#include "cmpift.h"

extern CMPIInstanceFT* cmpiInstanceFt;

typedef boost::shared_ptr<NVURZENTA20::ICIMInstance> TInstanceHolder;

// The property list of the instance whose properties were counted last;
// shared by every record, read by index.
extern std::vector<boost::shared_ptr<NVURZENTA20::ICIMProperty> > allProps;

// A new, unregistered record with a heap holder of its own.
CMPIInstance* newInstanceRecord(const boost::shared_ptr<NVURZENTA20::ICIMInstance>& instance);
// Drops the record's reference to the instance and frees the holder and
// the record.
void deleteInstanceRecord(CMPIInstance* record);
// The memory of freed records kept for the next ones (bounded).
std::size_t keptInstanceRecordBytes();
// The host instance behind a record.
const boost::shared_ptr<NVURZENTA20::ICIMInstance>& instanceOfRecord(const CMPIInstance* record);

#endif
