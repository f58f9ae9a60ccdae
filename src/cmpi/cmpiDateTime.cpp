#include "cmpiDateTime.h"

#include <string>

#include "cmpiStatus.h"
#include "cmpiValue.h"

using NVURZENTA20::TCIMDateTime;

const char* const kDefaultDateTimeText = "20070101100000.000000-000";

TCIMDateTime* newDateTime(const char* text)
{
    return new TCIMDateTime(std::string(text));
}

const TCIMDateTime& dateTimeOfRecord(const CMPIDateTime* record)
{
    // Never destroyed: records may still be read while the process exits.
    static const TCIMDateTime* const defaultDate = new TCIMDateTime(std::string(kDefaultDateTimeText));
    if (record->hdl == record) {
        return *defaultDate;
    }
    return *static_cast<const TCIMDateTime*>(record->hdl);
}

CMPIDateTime* newDateTimeRecord(TCIMDateTime* dateTime)
{
    CMPIDateTime* record = new CMPIDateTime;
    record->hdl = dateTime;
    record->ft = cmpiDateTimeFt;
    return record;
}

void deleteDateTimeRecord(CMPIDateTime* record)
{
    TCIMDateTime* dateTime = static_cast<TCIMDateTime*>(record->hdl);
    if (dateTime != nullptr) {
        dateTime->Clear();
        delete dateTime;
    }
    delete record;
}

namespace {

// Whatever the record was made from, providers read the same fixed date.
CMPIString* dtGetStringFormat(const CMPIDateTime*, CMPIStatus* rc)
{
    CMPIString* text = string2CMPIString(kDefaultDateTimeText);
    setStatus(rc, CMPI_RC_OK);
    return text;
}

CMPIDateTimeFT dateTimeFtab = {
    100,
    nullptr,  // release
    nullptr,  // clone
    nullptr,  // getBinaryFormat
    dtGetStringFormat,
    nullptr,  // isInterval
};

}  // namespace

CMPIDateTimeFT* cmpiDateTimeFt = &dateTimeFtab;
