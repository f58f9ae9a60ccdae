// CMPIDateTime records: hdl is a heap TCIMDateTime (or, for the records
// that value conversion makes, the record itself); no operation reads it.
#ifndef ZENTA_CMPI_CMPIDATETIME_H
#define ZENTA_CMPI_CMPIDATETIME_H

#include "TCIMDateTime.h"
#include "cmpift.h"

extern CMPIDateTimeFT* cmpiDateTimeFt;

// The one date-time providers ever read from this library.
extern const char* const kDefaultDateTimeText;

// A heap TCIMDateTime parsed from `text`; throws TZENTAException on text
// that is no CIM date-time.
NVURZENTA20::TCIMDateTime* newDateTime(const char* text);

// The date a record stands for, read in place: every date-time property a
// provider sets passes here. Records made by value conversion carry no date
// (their handle is the record itself) and stand for the default one.
const NVURZENTA20::TCIMDateTime& dateTimeOfRecord(const CMPIDateTime* record);

// A new, unregistered record that owns `dateTime`.
CMPIDateTime* newDateTimeRecord(NVURZENTA20::TCIMDateTime* dateTime);
// Clears and frees the owned TCIMDateTime and frees the record.
void deleteDateTimeRecord(CMPIDateTime* record);

#endif
