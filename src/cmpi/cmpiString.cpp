#include "cmpiString.h"

#include <cstdlib>
#include <cstring>

#include "RecordPool.h"
#include "cmpiStatus.h"

namespace {

// A provider is handed a string record for every class name, namespace and
// string key it reads; most of those texts are short. They are copied into
// the record's own block, which is kept for reuse like the instance
// records: one allocation at most instead of two, none in the steady
// state. Longer texts get a heap copy of their own. The block takes what a
// record and a copy of up to 24 characters took before (64 bytes), so
// records that are never freed (the element strings of arrays) cost no
// more than they did.
struct TStringRecord : CMPIString, TPooledRecord<TStringRecord> {
    static constexpr std::size_t kInlineBytes = 40;
    char inlineText[kInlineBytes];
};

bool ownsHeapText(const CMPIString* string)
{
    return string->hdl != nullptr && string->hdl != static_cast<const TStringRecord*>(string)->inlineText;
}

void freeText(CMPIString* string)
{
    if (ownsHeapText(string)) {
        std::free(string->hdl);
    }
    string->hdl = nullptr;
}

}  // namespace

std::size_t keptStringRecordBytes()
{
    return TStringRecord::KeptBytes();
}

CMPIString* newStringRecord(const char* text)
{
    TStringRecord* string = new TStringRecord;
    const std::size_t length = std::strlen(text);
    if (length < TStringRecord::kInlineBytes) {
        std::memcpy(string->inlineText, text, length + 1);
        string->hdl = string->inlineText;
    } else {
        string->hdl = strdup(text);
    }
    string->ft = cmpiStringFt;
    return string;
}

void deleteStringRecord(CMPIString* string)
{
    freeText(string);
    delete static_cast<TStringRecord*>(string);
}

namespace {

// The record stays (a registered one is freed with the registry); the
// handle is cleared so that the registry does not free the characters a
// second time.
CMPIStatus stringRelease(CMPIString* string)
{
    freeText(string);
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
