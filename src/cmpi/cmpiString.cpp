#include "cmpiString.h"

#include <cstdlib>
#include <cstring>

#include "cmpiStatus.h"

CMPIString* newStringRecord(const char* text)
{
    CMPIString* string = new CMPIString;
    string->hdl = strdup(text);
    string->ft = cmpiStringFt;
    return string;
}

void deleteStringRecord(CMPIString* string)
{
    std::free(string->hdl);
    delete string;
}

namespace {

// The record stays (a registered one is freed with the registry); the
// handle is cleared so that the registry does not free the characters a
// second time.
CMPIStatus stringRelease(CMPIString* string)
{
    std::free(string->hdl);
    string->hdl = nullptr;
    return makeStatus(CMPI_RC_OK);
}

// The clone belongs to the provider that asked for it: not registered.
CMPIString* stringClone(const CMPIString* string, CMPIStatus* rc)
{
    CMPIString* clone = newStringRecord(static_cast<const char*>(string->hdl));
    setStatus(rc, CMPI_RC_OK);
    return clone;
}

const char* stringGetCharPtr(const CMPIString* string, CMPIStatus* rc)
{
    setStatus(rc, CMPI_RC_OK);
    return static_cast<const char*>(string->hdl);
}

CMPIStringFT stringFtab = {
    100,
    stringRelease,
    stringClone,
    stringGetCharPtr,
};

}  // namespace

CMPIStringFT* cmpiStringFt = &stringFtab;
