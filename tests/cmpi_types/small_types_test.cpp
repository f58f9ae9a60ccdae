// The string, context, date-time and array records and their tables.
#include <cstring>
#include <new>
#include <string>

#include <gtest/gtest.h>

#include "CmpiTypesTestSupport.h"
#include "TCIMDateTime.h"
#include "TCIMReference.h"
#include "TZENTAException.h"
#include "cmpiArgs.h"
#include "cmpiContext.h"
#include "cmpiDateTime.h"
#include "cmpiValue.h"

namespace CmpiTypesTest {
namespace {

using NVURZENTA20::TCIMContext;
using NVURZENTA20::TCIMDateTime;

const char* const kDefaultDate = "20070101100000.000000-000";

// --- strings ---------------------------------------------------------------

class StringTest : public RegistryTest {};

TEST_F(StringTest, TableServesReleaseCloneAndGetCharPtr)
{
    EXPECT_EQ(cmpiStringFt->ftVersion, 100);
    EXPECT_NE(cmpiStringFt->release, nullptr);
    EXPECT_NE(cmpiStringFt->clone, nullptr);
    EXPECT_NE(cmpiStringFt->getCharPtr, nullptr);
}

TEST_F(StringTest, CloneIsAnUnregisteredIndependentCopy)
{
    CMPIString* original = string2CMPIString("original");
    CMPIStatus rc = {CMPI_RC_ERR_FAILED, nullptr};
    CMPIString* clone = original->ft->clone(original, &rc);
    EXPECT_EQ(rc.rc, CMPI_RC_OK);
    EXPECT_EQ(Registered(), 1u);
    EXPECT_NE(clone->hdl, original->hdl);
    EXPECT_EQ(clone->ft, cmpiStringFt);
    static_cast<char*>(original->hdl)[0] = 'O';
    EXPECT_EQ(Text(clone), "original");
    deleteStringRecord(clone);
    // A clone can be taken without a status.
    CMPIString* second = original->ft->clone(original, nullptr);
    EXPECT_EQ(Text(second), "Original");
    deleteStringRecord(second);
}

TEST_F(StringTest, GetCharPtrReturnsTheHandle)
{
    CMPIString* string = string2CMPIString("chars");
    CMPIStatus rc = {CMPI_RC_ERR_FAILED, nullptr};
    EXPECT_EQ(string->ft->getCharPtr(string, &rc), string->hdl);
    EXPECT_EQ(rc.rc, CMPI_RC_OK);
}

TEST_F(StringTest, ReleaseFreesTheCharactersButLeavesTheRecordToTheRegistry)
{
    CMPIString* string = string2CMPIString("released");
    EXPECT_EQ(string->ft->release(string).rc, CMPI_RC_OK);
    EXPECT_EQ(string->ft, cmpiStringFt);
    EXPECT_EQ(Registered(), 1u);
    // Clearing must not free the characters a second time.
    Registry()->ClearInstances();
    EXPECT_EQ(Registered(), 0u);
}

TEST_F(StringTest, ReleaseOfAnUnregisteredCloneLeavesOnlyTheRecord)
{
    CMPIString* original = string2CMPIString("x");
    CMPIString* clone = original->ft->clone(original, nullptr);
    EXPECT_EQ(clone->ft->release(clone).rc, CMPI_RC_OK);
    deleteStringRecord(clone);
}

// --- contexts --------------------------------------------------------------

class ContextTest : public RegistryTest {
protected:
    TCIMContext fEntries;
    CMPIContext fContext = {&fEntries, cmpiContextFt};
};

TEST_F(ContextTest, TableHasNoReleaseOrCloneAndForwardsEntriesToTheArgumentList)
{
    EXPECT_EQ(cmpiContextFt->ftVersion, 100);
    EXPECT_EQ(cmpiContextFt->release, nullptr);
    EXPECT_EQ(cmpiContextFt->clone, nullptr);

    CMPIValue count = {};
    count.uint32 = 42;
    EXPECT_EQ(fContext.ft->addEntry(&fContext, "count", &count, CMPI_uint32).rc, CMPI_RC_OK);
    EXPECT_TRUE(fEntries["count"] == TCIMValue(42u));
    EXPECT_EQ(fContext.ft->getEntryCount(&fContext, nullptr), 1u);

    CMPIStatus rc = {CMPI_RC_ERR_TYPE_MISMATCH, nullptr};
    const CMPIData byName = fContext.ft->getEntry(&fContext, "count", &rc);
    EXPECT_EQ(byName.type, CMPI_uint32);
    EXPECT_EQ(byName.value.uint32, 42u);
    // As for arguments, a successful read leaves the status alone.
    EXPECT_EQ(rc.rc, CMPI_RC_ERR_TYPE_MISMATCH);

    CMPIString* name = nullptr;
    const CMPIData byIndex = fContext.ft->getEntryAt(&fContext, 0, &name, &rc);
    EXPECT_EQ(rc.rc, CMPI_RC_OK);
    EXPECT_EQ(byIndex.value.uint32, 42u);
    EXPECT_EQ(Text(name), "count");

    fContext.ft->getEntry(&fContext, "missing", &rc);
    EXPECT_EQ(rc.rc, CMPI_RC_ERR_NOT_FOUND);
}

// --- date-times ------------------------------------------------------------

class DateTimeTest : public RegistryTest {};

TEST_F(DateTimeTest, TableServesOnlyTheStringFormat)
{
    EXPECT_EQ(cmpiDateTimeFt->ftVersion, 100);
    EXPECT_EQ(cmpiDateTimeFt->release, nullptr);
    EXPECT_EQ(cmpiDateTimeFt->clone, nullptr);
    EXPECT_EQ(cmpiDateTimeFt->getBinaryFormat, nullptr);
    EXPECT_NE(cmpiDateTimeFt->getStringFormat, nullptr);
    EXPECT_EQ(cmpiDateTimeFt->isInterval, nullptr);
}

TEST_F(DateTimeTest, StringFormatIsAlwaysTheDefaultDateAsARegisteredString)
{
    for (const char* text : {"20240229235958.123456+060", "00000001020304.000005:000", kDefaultDate}) {
        SCOPED_TRACE(text);
        CMPIDateTime* record = newDateTimeRecord(newDateTime(text));
        Registry()->RegisterDateTime(record);
        CMPIStatus rc = {CMPI_RC_ERR_FAILED, nullptr};
        CMPIString* format = record->ft->getStringFormat(record, &rc);
        EXPECT_EQ(Text(format), kDefaultDate);
        EXPECT_EQ(rc.rc, CMPI_RC_OK);
        EXPECT_NE(record->ft->getStringFormat(record, nullptr), format);
    }
    EXPECT_EQ(Registered(), 3u * 3u);
}

TEST_F(DateTimeTest, NewDateTimeParsesTheTextAndRefusesOtherText)
{
    TCIMDateTime* date = newDateTime("20240229235958.123456+060");
    EXPECT_EQ(date->ToString(), "20240229235958.123456+060");
    delete date;
    EXPECT_THROW(newDateTime("yesterday"), NVURZENTA20::TZENTAException);
}

// --- arrays ----------------------------------------------------------------

class ArrayTest : public RegistryTest {
protected:
    // A registered array like the broker's: elements typed, state null.
    CMPIArray* NewArray(CMPICount count, CMPIType type)
    {
        CMPIArray* array = newArrayRecord(newArrayStore(count, type));
        Registry()->RegisterArray(array);
        return array;
    }

    static CMPIStatus Set(CMPIArray* array, CMPICount index, CMPIValue value, CMPIType type)
    {
        return array->ft->setElementAt(array, index, &value, type);
    }
};

TEST_F(ArrayTest, TableServesEveryMember)
{
    EXPECT_EQ(cmpiArrayFt->ftVersion, 100);
    EXPECT_NE(cmpiArrayFt->release, nullptr);
    EXPECT_NE(cmpiArrayFt->clone, nullptr);
    EXPECT_NE(cmpiArrayFt->getSize, nullptr);
    EXPECT_NE(cmpiArrayFt->getSimpleType, nullptr);
    EXPECT_NE(cmpiArrayFt->getElementAt, nullptr);
    EXPECT_NE(cmpiArrayFt->setElementAt, nullptr);
}

TEST_F(ArrayTest, StoreIsSizedInCMPIDataSlotsWithANullStateHeader)
{
    CMPIData* store = newArrayStore(3, CMPI_uint16A);
    EXPECT_EQ(store[0].type, CMPI_uint16);
    EXPECT_EQ(store[0].state, CMPI_nullValue);
    EXPECT_EQ(store[0].value.uint32, 3u);
    EXPECT_EQ(arrayStoreCount(store), 3u);
    for (int i = 1; i <= 3; ++i) {
        EXPECT_EQ(store[i].type, CMPI_uint16);
        EXPECT_EQ(store[i].state, CMPI_nullValue);
        EXPECT_EQ(store[i].value.uint64, 0u);
    }
    deleteArrayStore(store);
    // Element states can be chosen (value conversion makes good ones).
    store = newArrayStore(1, CMPI_sint8, CMPI_goodValue);
    EXPECT_EQ(store[1].state, CMPI_goodValue);
    EXPECT_EQ(store[0].state, CMPI_nullValue);
    deleteArrayStore(store);
    // The header slot must not wrap the slot count around.
    EXPECT_THROW(newArrayStore(0xFFFFFFFFu, CMPI_uint8), std::bad_array_new_length);
}

TEST_F(ArrayTest, SizeTypeAndElementsReadTheStore)
{
    CMPIArray* array = NewArray(2, CMPI_uint32);
    CMPIStatus rc = {CMPI_RC_ERR_FAILED, nullptr};
    EXPECT_EQ(array->ft->getSize(array, &rc), 2u);
    EXPECT_EQ(rc.rc, CMPI_RC_OK);
    rc.rc = CMPI_RC_ERR_FAILED;
    EXPECT_EQ(array->ft->getSimpleType(array, &rc), CMPI_uint32);
    EXPECT_EQ(rc.rc, CMPI_RC_OK);

    const CMPIData unset = array->ft->getElementAt(array, 1, &rc);
    EXPECT_EQ(rc.rc, CMPI_RC_OK);
    EXPECT_EQ(unset.type, CMPI_uint32);
    EXPECT_EQ(unset.state, CMPI_nullValue);

    CMPIValue value = {};
    value.uint32 = 77;
    EXPECT_EQ(Set(array, 1, value, CMPI_uint32).rc, CMPI_RC_OK);
    const CMPIData set = array->ft->getElementAt(array, 1, nullptr);
    EXPECT_EQ(set.type, CMPI_uint32);
    EXPECT_EQ(set.state, CMPI_goodValue);
    EXPECT_EQ(set.value.uint32, 77u);
    EXPECT_EQ(array->ft->getElementAt(array, 0, nullptr).state, CMPI_nullValue);
}

TEST_F(ArrayTest, IndexesAtOrPastTheCountAreNotFound)
{
    for (CMPICount count : {0u, 1u, 4u}) {
        SCOPED_TRACE(count);
        CMPIArray* array = NewArray(count, CMPI_sint64);
        for (CMPICount index : {count, count + 1, 0xFFFFFFFFu}) {
            CMPIStatus rc = {CMPI_RC_OK, nullptr};
            const CMPIData data = array->ft->getElementAt(array, index, &rc);
            EXPECT_EQ(rc.rc, CMPI_RC_ERR_NOT_FOUND);
            EXPECT_EQ(data.type, CMPI_null);
            EXPECT_EQ(data.state, CMPI_nullValue);
            EXPECT_EQ(data.value.uint64, 0u);
            CMPIValue value = {};
            EXPECT_EQ(Set(array, index, value, CMPI_sint64).rc, CMPI_RC_ERR_NOT_FOUND);
        }
    }
}

TEST_F(ArrayTest, SetWithAnotherTypeIsAMismatchEvenWithTheArrayFlag)
{
    CMPIArray* array = NewArray(1, CMPI_string);
    CMPIValue value = {};
    for (CMPIType type : {CMPIType(CMPI_stringA), CMPIType(CMPI_chars), CMPIType(CMPI_uint32)}) {
        const CMPIStatus status = Set(array, 0, value, type);
        EXPECT_EQ(status.rc, CMPI_RC_ERR_TYPE_MISMATCH) << type;
        EXPECT_EQ(status.msg, nullptr);
    }
    EXPECT_EQ(array->ft->getElementAt(array, 0, nullptr).state, CMPI_nullValue);
}

TEST_F(ArrayTest, SetStoresEncapsulatedValuesByPointer)
{
    CMPIArray* array = NewArray(1, CMPI_string);
    CMPIString* string = string2CMPIString("shared");
    CMPIValue value = {};
    value.string = string;
    EXPECT_EQ(Set(array, 0, value, CMPI_string).rc, CMPI_RC_OK);
    EXPECT_EQ(array->ft->getElementAt(array, 0, nullptr).value.string, string);
}

TEST_F(ArrayTest, ReleaseFreesTheStoreOnceEvenWhenTheRegistryClearsLater)
{
    CMPIArray* array = NewArray(2, CMPI_uint8);
    EXPECT_EQ(array->ft->release(array).rc, CMPI_RC_OK);
    EXPECT_EQ(array->ft, cmpiArrayFt);
    EXPECT_EQ(Registered(), 1u);
    Registry()->ClearInstances();
    EXPECT_EQ(Registered(), 0u);
}

TEST_F(ArrayTest, CloneCopiesScalarSlotsIncludingTheHeader)
{
    CMPIArray* array = NewArray(3, CMPI_uint16);
    CMPIValue value = {};
    value.uint16 = 512;
    Set(array, 2, value, CMPI_uint16);
    CMPIStatus rc = {CMPI_RC_ERR_FAILED, nullptr};
    CMPIArray* clone = array->ft->clone(array, &rc);
    ASSERT_NE(clone, nullptr);
    EXPECT_EQ(rc.rc, CMPI_RC_OK);
    EXPECT_NE(clone->hdl, array->hdl);
    EXPECT_EQ(clone->ft, cmpiArrayFt);
    EXPECT_EQ(0, std::memcmp(clone->hdl, array->hdl, 4 * sizeof(CMPIData)));
    EXPECT_EQ(Registered(), 1u);
    deleteArrayRecord(clone);
}

TEST_F(ArrayTest, CloneOfAnEmptyArrayIsEmpty)
{
    CMPIArray* array = NewArray(0, CMPI_string);
    CMPIArray* clone = array->ft->clone(array, nullptr);
    ASSERT_NE(clone, nullptr);
    EXPECT_EQ(clone->ft->getSize(clone, nullptr), 0u);
    EXPECT_EQ(clone->ft->getSimpleType(clone, nullptr), CMPI_string);
    deleteArrayRecord(clone);
}

TEST_F(ArrayTest, CloneClonesGoodEncapsulatedElementsAndSkipsNullOnes)
{
    CMPIArray* array = NewArray(3, CMPI_string);
    CMPIValue first = {};
    first.string = string2CMPIString("first");
    CMPIValue third = {};
    third.string = string2CMPIString("third");
    Set(array, 0, first, CMPI_string);
    Set(array, 2, third, CMPI_string);

    CMPIArray* clone = array->ft->clone(array, nullptr);
    ASSERT_NE(clone, nullptr);
    const CMPIData cloned0 = clone->ft->getElementAt(clone, 0, nullptr);
    const CMPIData cloned1 = clone->ft->getElementAt(clone, 1, nullptr);
    const CMPIData cloned2 = clone->ft->getElementAt(clone, 2, nullptr);
    EXPECT_NE(cloned0.value.string, first.string);
    EXPECT_EQ(Text(cloned0.value.string), "first");
    EXPECT_EQ(cloned1.state, CMPI_nullValue);
    EXPECT_EQ(cloned1.value.string, nullptr);
    EXPECT_EQ(Text(cloned2.value.string), "third");
    // The clone and its element clones are the caller's.
    EXPECT_EQ(Registered(), 3u);
    deleteStringRecord(cloned0.value.string);
    deleteStringRecord(cloned2.value.string);
    deleteArrayRecord(clone);
}

TEST_F(ArrayTest, CloneCopiesCStringElementsAsPointers)
{
    // As everywhere in CMPI, a CMPI_chars value is passed as the characters
    // themselves, not as a CMPIValue holding a pointer to them.
    CMPIArray* array = NewArray(1, CMPI_chars);
    char text[] = "plain";
    array->ft->setElementAt(array, 0, reinterpret_cast<CMPIValue*>(text), CMPI_chars);
    CMPIArray* clone = array->ft->clone(array, nullptr);
    ASSERT_NE(clone, nullptr);
    EXPECT_EQ(clone->ft->getElementAt(clone, 0, nullptr).value.chars, text);
    deleteArrayRecord(clone);
}

TEST_F(ArrayTest, SetReadsOnlyTheBytesOfTheElementType)
{
    // A provider passes the address of its own 4-byte variable; reading a
    // whole CMPIValue there would run past it (the sanitizer build notices).
    CMPIArray* array = NewArray(1, CMPI_uint32);
    CMPIUint32* number = new CMPIUint32(77);
    EXPECT_EQ(array->ft->setElementAt(array, 0, reinterpret_cast<CMPIValue*>(number), CMPI_uint32).rc, CMPI_RC_OK);
    delete number;
    CMPIData element = array->ft->getElementAt(array, 0, nullptr);
    EXPECT_EQ(element.value.uint32, 77u);
    EXPECT_EQ(element.state, CMPI_goodValue);
}

TEST_F(ArrayTest, CloneOfPathElementsFailsBecausePathsHaveNoClone)
{
    NVURZENTA20::TCIMReference ref = NVURZENTA20::TCIMReference::Parse("A.k=1");
    CMPIObjectPath* path = ref2CMPIObjectPath(ref);
    CMPIArray* array = NewArray(1, CMPI_ref);
    CMPIValue value = {};
    value.ref = path;
    Set(array, 0, value, CMPI_ref);
    CMPIStatus rc = {CMPI_RC_OK, nullptr};
    EXPECT_EQ(array->ft->clone(array, &rc), nullptr);
    EXPECT_EQ(rc.rc, CMPI_RC_ERR_NOT_SUPPORTED);
    delete path;
}

// An encapsulated element whose clone fails after a number of successes.
int gClonesLeft = 0;
CMPIString gCloneResult = {nullptr, nullptr};

CMPIString* FailingClone(const CMPIString*, CMPIStatus* rc)
{
    if (gClonesLeft-- > 0) {
        rc->rc = CMPI_RC_OK;
        return &gCloneResult;
    }
    rc->rc = CMPI_RC_ERR_ACCESS_DENIED;
    rc->msg = &gCloneResult;
    return nullptr;
}

TEST_F(ArrayTest, FailingElementCloneAbandonsTheCloneAndReportsTheElementStatus)
{
    CMPIStringFT failingTable = {100, nullptr, FailingClone, nullptr};
    CMPIString element = {nullptr, &failingTable};
    CMPIArray* array = NewArray(3, CMPI_string);
    CMPIValue value = {};
    value.string = &element;
    for (CMPICount i = 0; i < 3; ++i) {
        Set(array, i, value, CMPI_string);
    }
    gClonesLeft = 1;
    CMPIStatus rc = {CMPI_RC_OK, nullptr};
    EXPECT_EQ(array->ft->clone(array, &rc), nullptr);
    EXPECT_EQ(rc.rc, CMPI_RC_ERR_ACCESS_DENIED);
    EXPECT_EQ(rc.msg, &gCloneResult);
    EXPECT_EQ(gClonesLeft, -1);
}

}  // namespace
}  // namespace CmpiTypesTest
