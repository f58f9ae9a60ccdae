// Value conversion at its edges, strings, arrays and argument lists.
#include <cstring>
#include <functional>
#include <new>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "CmpiTypesTestSupport.h"
#include "TCIMDateTime.h"
#include "TCIMReference.h"
#include "TZENTAException.h"
#include "cmpiArgs.h"
#include "cmpiDateTime.h"
#include "cmpiValue.h"

namespace CmpiTypesTest {
namespace {

using NVURZENTA20::TCIMDateTime;
using NVURZENTA20::TCIMReference;

const char* const kDefaultDate = "20070101100000.000000-000";

TEST(TypeMappingTest, OddCorners)
{
    EXPECT_EQ(convToTCIMType(CMPI_chars), TCIMType::kString);
    EXPECT_EQ(convToTCIMType(CMPI_uint32A), TCIMType::kNone);
    // No type maps to uint8, not to CMPI_null.
    EXPECT_EQ(convToCMPIType(TCIMType(TCIMType::kNone), false), 128);
    EXPECT_EQ(convToCMPIType(TCIMType(TCIMType::ECIMType(TCIMType::kReference | TCIMType::kArrayFlag)), true), CMPI_refA);
}

void ExpectSame(const TCIMValue& converted, const TCIMValue& expected)
{
    EXPECT_TRUE(converted == expected) << converted.ToString();
    EXPECT_EQ(converted.GetType(), expected.GetType());
    EXPECT_EQ(converted.IsNull(), expected.IsNull());
}

TCIMValue Convert(const CMPIValue* value, CMPIType type)
{
    CMPIrc rc = CMPI_RC_ERR_TYPE_MISMATCH;
    TCIMValue result = convertCMPIValue(value, type, &rc);
    EXPECT_EQ(rc, CMPI_RC_OK) << "type " << type;
    return result;
}

TEST_F(RegistryTest, NullsAndTypesWithoutHostForm)
{
    CMPIString empty = {nullptr, cmpiStringFt};
    const struct { const char* name; CMPIType type; std::function<void(CMPIValue&)> fill; TCIMValue expected; } cases[] = {
        {"boolean 2", CMPI_boolean, [](CMPIValue& v) { v.boolean = 2; }, TCIMValue(true)},
        {"null string record", CMPI_string, [](CMPIValue& v) { v.string = nullptr; }, NullOf(TCIMType::kString)},
        {"null string handle", CMPI_string, [&](CMPIValue& v) { v.string = &empty; }, NullOf(TCIMType::kString)},
        {"null path record", CMPI_ref, [](CMPIValue& v) { v.ref = nullptr; }, NullOf(TCIMType::kReference)},
        {"null date-time record", CMPI_dateTime, [](CMPIValue& v) { v.dateTime = nullptr; }, NullOf(TCIMType::kDateTime)},
        {"array without record", CMPI_uint32A, [](CMPIValue&) {}, TCIMValue()},
        {"instance", CMPI_instance, [](CMPIValue&) {}, TCIMValue()},
    };
    for (const auto& c : cases) {
        CMPIValue value = {};
        c.fill(value);
        SCOPED_TRACE(c.name);
        ExpectSame(Convert(&value, c.type), c.expected);
    }
    // No value at all: an untyped null, and the status is left alone.
    CMPIrc rc = CMPI_RC_ERR_TYPE_MISMATCH;
    ExpectSame(convertCMPIValue(nullptr, CMPI_uint32, &rc), TCIMValue());
    EXPECT_EQ(rc, CMPI_RC_ERR_TYPE_MISMATCH);
    // CMPI_chars values are the characters themselves.
    ExpectSame(Convert(reinterpret_cast<const CMPIValue*>("abc"), CMPI_chars), TCIMValue("abc"));
}

TEST_F(RegistryTest, ArraysTakeTheElementTypeFromTheHeader)
{
    CMPIValue chars = {}, uint8 = {}, string = {};
    chars.chars = const_cast<char*>("c1");
    uint8.uint8 = 255;
    string.string = newStringRecord("two");
    const struct { const char* name; CMPIType elementType; std::vector<CMPIValue> elements; TCIMValue expected; } cases[] = {
        {"uint8", CMPI_uint8, {uint8}, ArrayOf(TCIMType::kUint8, {TCIMValue(static_cast<unsigned char>(255))})},
        {"chars", CMPI_chars, {chars}, ArrayOf(TCIMType::kString, {TCIMValue("c1")})},
        {"null string element", CMPI_string, {CMPIValue{}, string},
         ArrayOf(TCIMType::kString, {NullOf(TCIMType::kString), TCIMValue("two")})},
        {"references stay untyped", CMPI_ref, {CMPIValue{}}, TCIMValue()},
    };
    for (const auto& c : cases) {
        CMPIArray* array = newArrayRecord(newArrayStore(static_cast<CMPICount>(c.elements.size()), c.elementType));
        CMPIData* store = static_cast<CMPIData*>(array->hdl);
        for (std::size_t i = 0; i < c.elements.size(); ++i) store[i + 1].value = c.elements[i];
        CMPIValue value = {};
        value.array = array;
        SCOPED_TRACE(c.name);
        ExpectSame(Convert(&value, c.elementType | CMPI_ARRAY), c.expected);
        deleteArrayRecord(array);
    }
    deleteStringRecord(string.string);
}

// A provider passes a pointer to a variable of the scalar's own type,
// which may sit anywhere (a field of a packed struct): each is read at its
// own width from an odd address at the very end of its block, where a
// wider or aligned read would run past it (the sanitizers tell).
TEST_F(RegistryTest, ScalarsAreReadAtTheirOwnWidthWhereverTheyLie)
{
    const auto readFromBlockEnd = [](const auto scalar, CMPIType type) {
        std::vector<unsigned char> block(sizeof(scalar) + 1);
        std::memcpy(block.data() + 1, &scalar, sizeof(scalar));
        return Convert(reinterpret_cast<const CMPIValue*>(block.data() + 1), type);
    };
    ExpectSame(readFromBlockEnd(CMPIBoolean(1), CMPI_boolean), TCIMValue(true));
    ExpectSame(readFromBlockEnd(CMPIChar16(0x263A), CMPI_char16), TCIMValue(NVURZENTA20::TCIMChar16(0x263A)));
    ExpectSame(readFromBlockEnd(CMPIUint8(200), CMPI_uint8), TCIMValue(static_cast<unsigned char>(200)));
    ExpectSame(readFromBlockEnd(CMPISint8(-100), CMPI_sint8), TCIMValue(static_cast<signed char>(-100)));
    ExpectSame(readFromBlockEnd(CMPIUint16(65000), CMPI_uint16), TCIMValue(static_cast<unsigned short>(65000)));
    ExpectSame(readFromBlockEnd(CMPISint16(-32000), CMPI_sint16), TCIMValue(static_cast<short>(-32000)));
    ExpectSame(readFromBlockEnd(CMPIUint32(4000000000u), CMPI_uint32), TCIMValue(4000000000u));
    ExpectSame(readFromBlockEnd(CMPISint32(-2000000000), CMPI_sint32), TCIMValue(-2000000000));
    ExpectSame(readFromBlockEnd(CMPIUint64(18000000000000000000ull), CMPI_uint64),
               TCIMValue(18000000000000000000ull));
    ExpectSame(readFromBlockEnd(CMPISint64(-9000000000000000000ll), CMPI_sint64),
               TCIMValue(-9000000000000000000ll));
    ExpectSame(readFromBlockEnd(CMPIReal32(1.5f), CMPI_real32), TCIMValue(1.5f));
    ExpectSame(readFromBlockEnd(CMPIReal64(-2.25), CMPI_real64), TCIMValue(-2.25));
}

class ConvToCMPIDataTest : public RegistryTest {
protected:
    // Untouched value words read as 0xA5 bytes.
    static CMPIData Convert(const TCIMValue& value, CMPIType type, CMPIrc expectedRc = CMPI_RC_OK)
    {
        CMPIData data;
        std::memset(&data, 0xA5, sizeof data);
        EXPECT_EQ(convToCMPIData(value, type, &data), expectedRc) << "type " << type;
        EXPECT_EQ(data.type, type);
        EXPECT_EQ(data.state, CMPI_goodValue);
        return data;
    }
    // Through CMPI and back, the CMPI side read at its own width.
    static TCIMValue RoundTrip(const TCIMValue& value, CMPIType type)
    {
        const CMPIData data = Convert(value, type);
        TCIMValue back = (type & CMPI_ARRAY) ? createTCIMValueArray(&data.value) : convertCMPIValue(&data.value, type, nullptr);
        FreeUnregisteredData(data);
        return back;
    }
};

TEST_F(ConvToCMPIDataTest, IntegersKeepTheirWidthAndUnsignedNullsAreZero)
{
    const std::pair<TCIMValue, CMPIType> same[] = {
        {TCIMValue(~0ull), CMPI_uint64},
        {ArrayOf(TCIMType::kUint16, {TCIMValue(static_cast<unsigned short>(999))}), CMPI_uint16A},
        {ArrayOf(TCIMType::kUint64, {TCIMValue(1ull << 60), TCIMValue(1ull)}), CMPI_uint64A},
        {ArrayOf(TCIMType::kSint8, {TCIMValue(static_cast<signed char>(-9))}), CMPI_sint8A},
    };
    for (const auto& c : same) ExpectSame(RoundTrip(c.first, c.second), c.first);
    const struct { TCIMValue null; CMPIType type; TCIMValue zero; } nulls[] = {
        {NullOf(TCIMType::kUint8), CMPI_uint8, TCIMValue(static_cast<unsigned char>(0))},
        {NullOf(TCIMType::kUint64), CMPI_uint64, TCIMValue(0ull)},
        {NullOf(TCIMType::kUint32, true), CMPI_uint32A, ArrayOf(TCIMType::kUint32, {})},
    };
    for (const auto& c : nulls) ExpectSame(RoundTrip(c.null, c.type), c.zero);
    EXPECT_EQ(Registered(), 0u);
    // Signed nulls are not guarded: the host's failure surfaces.
    CMPIData data = {};
    EXPECT_THROW(convToCMPIData(NullOf(TCIMType::kSint32), CMPI_sint32, &data), NVURZENTA20::TZENTAException);
}

TEST_F(ConvToCMPIDataTest, ArrayStoresHaveAHeaderSlotAndUnregisteredElementStrings)
{
    const CMPIData data = Convert(ArrayOf(TCIMType::kSint32, {TCIMValue(-1), TCIMValue(-3)}), CMPI_sint32A);
    const CMPIData* store = static_cast<const CMPIData*>(data.value.array->hdl);
    EXPECT_EQ(store[0].type, CMPI_sint32);
    EXPECT_EQ(store[0].value.uint32, 2u);
    EXPECT_EQ(store[0].state, CMPI_nullValue);
    EXPECT_EQ(store[2].state, CMPI_goodValue);
    EXPECT_EQ(store[2].value.sint32, -3);
    FreeUnregisteredData(data);

    const CMPIData strings = Convert(ArrayOf(TCIMType::kString, {TCIMValue("x"), TCIMValue("yz")}), CMPI_stringA);
    store = static_cast<const CMPIData*>(strings.value.array->hdl);
    EXPECT_EQ(Text(store[1].value.string), "x");
    EXPECT_EQ(Text(store[2].value.string), "yz");
    EXPECT_EQ(Registered(), 0u) << "element strings belong to the array's receiver";
    FreeUnregisteredData(strings);
}

TEST_F(ConvToCMPIDataTest, UnsupportedTypesAnswerNotSupportedAfterTyping)
{
    const std::pair<TCIMValue, CMPIType> cases[] = {
        {TCIMValue(true), CMPI_boolean}, {TCIMValue(1.5f), CMPI_real32}, {TCIMValue("abc"), CMPI_chars},
        {TCIMValue(), CMPI_instance},    {ArrayOf(TCIMType::kReal64, {TCIMValue(1.0)}), CMPI_real64A},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(Convert(c.first, c.second, CMPI_RC_ERR_NOT_SUPPORTED).value.uint64, 0xA5A5A5A5A5A5A5A5ull) << c.second;
    }
    // Without elements nothing is refused.
    const CMPIData empty = Convert(ArrayOf(TCIMType::kReal64, {}), CMPI_real64A);
    EXPECT_EQ(empty.value.array->ft->getSimpleType(empty.value.array, nullptr), CMPI_real64);
    FreeUnregisteredData(empty);
    EXPECT_EQ(Registered(), 0u);
}

TEST_F(ConvToCMPIDataTest, StringsAreRegisteredOtherRecordsAreNot)
{
    EXPECT_EQ(Text(Convert(NullOf(TCIMType::kString), CMPI_string).value.string), "");
    const TCIMReference ref = TCIMReference::Parse("Test_Widget.Id=1,Name=\"a\"");
    const CMPIData path = Convert(TCIMValue(ref), CMPI_ref);
    EXPECT_NE(path.value.ref->hdl, &ref);
    EXPECT_TRUE(*static_cast<const TCIMReference*>(path.value.ref->hdl) == ref);
    FreeUnregisteredData(path);
    EXPECT_EQ(Registered(), 1u);

    // The date is not kept: the record is its own handle and reads the default date.
    for (const TCIMValue& value : {TCIMValue(TCIMDateTime("20240229235958.123456+060")), NullOf(TCIMType::kDateTime)}) {
        const CMPIData data = Convert(value, CMPI_dateTime);
        EXPECT_EQ(data.value.dateTime->hdl, data.value.dateTime);
        EXPECT_EQ(Text(data.value.dateTime->ft->getStringFormat(data.value.dateTime, nullptr)), kDefaultDate);
        EXPECT_TRUE(convertCMPIValue(&data.value, CMPI_dateTime, nullptr) == TCIMValue(TCIMDateTime(kDefaultDate)));
        FreeUnregisteredData(data);
    }
}

TEST_F(RegistryTest, StringClonesAreTheCallersAndReleaseLeavesTheRecordToTheRegistry)
{
    CMPIString* original = string2CMPIString("original");
    CMPIStatus rc = {CMPI_RC_ERR_FAILED, nullptr};
    CMPIString* clone = original->ft->clone(original, &rc);
    EXPECT_EQ(rc.rc, CMPI_RC_OK);
    EXPECT_EQ(Registered(), 1u);
    static_cast<char*>(original->hdl)[0] = 'O';
    EXPECT_EQ(Text(clone), "original");
    EXPECT_EQ(clone->ft->release(clone).rc, CMPI_RC_OK);
    deleteStringRecord(clone);
    // Released characters must not be freed a second time by clearing.
    EXPECT_EQ(original->ft->release(original).rc, CMPI_RC_OK);
    Registry()->ClearInstances();
    EXPECT_EQ(Registered(), 0u);
}

// Short texts live in the record's block, longer ones beside it: every
// length either side of the boundary reads back whole, and releasing and
// clearing free each text once, whichever way a record holds it.
TEST_F(RegistryTest, StringsOfEveryLengthReadBackAndAreFreedOnce)
{
    for (const std::size_t length : {0u, 1u, 38u, 39u, 40u, 41u, 4096u}) {
        const std::string text(length, 'x');
        CMPIString* released = string2CMPIString(text);
        CMPIString* kept = string2CMPIString(text + "y");
        EXPECT_EQ(Text(released), text) << length;
        EXPECT_EQ(Text(kept), text + "y") << length;
        CMPIString* clone = kept->ft->clone(kept, nullptr);
        EXPECT_EQ(Text(clone), text + "y") << length;
        EXPECT_NE(clone->hdl, kept->hdl) << length;
        EXPECT_EQ(released->ft->release(released).rc, CMPI_RC_OK);
        EXPECT_EQ(released->hdl, nullptr) << length;
        deleteStringRecord(clone);
    }
    EXPECT_EQ(Registered(), 14u);
    Registry()->ClearInstances();
    EXPECT_EQ(Registered(), 0u);
}

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
    static CMPIData At(CMPIArray* array, CMPICount index) { return array->ft->getElementAt(array, index, nullptr); }
};

TEST_F(ArrayTest, IndexesAtOrPastTheCountAreNotFound)
{
    CMPIArray* array = NewArray(2, CMPI_sint64);
    for (CMPICount index : {2u, 0xFFFFFFFFu}) {
        CMPIStatus rc = {CMPI_RC_OK, nullptr};
        EXPECT_EQ(array->ft->getElementAt(array, index, &rc).type, CMPI_null);
        EXPECT_EQ(rc.rc, CMPI_RC_ERR_NOT_FOUND) << index;
        EXPECT_EQ(Set(array, index, CMPIValue{}, CMPI_sint64).rc, CMPI_RC_ERR_NOT_FOUND) << index;
    }
    // The header slot must not wrap the slot count around.
    EXPECT_THROW(newArrayStore(0xFFFFFFFFu, CMPI_uint8), std::bad_array_new_length);
}

TEST_F(ArrayTest, SetChecksTheTypeAndReadsOnlyTheBytesOfIt)
{
    CMPIArray* strings = NewArray(1, CMPI_string);
    for (CMPIType type : {CMPIType(CMPI_stringA), CMPIType(CMPI_chars), CMPIType(CMPI_uint32)}) {
        EXPECT_EQ(Set(strings, 0, CMPIValue{}, type).rc, CMPI_RC_ERR_TYPE_MISMATCH) << type;
    }
    EXPECT_EQ(At(strings, 0).state, CMPI_nullValue);
    // A provider passes the address of its own 4-byte variable; reading a
    // whole CMPIValue there would run past it (the sanitizer build notices).
    CMPIArray* numbers = NewArray(1, CMPI_uint32);
    CMPIUint32* number = new CMPIUint32(77);
    EXPECT_EQ(numbers->ft->setElementAt(numbers, 0, reinterpret_cast<CMPIValue*>(number), CMPI_uint32).rc, CMPI_RC_OK);
    delete number;
    EXPECT_EQ(At(numbers, 0).value.uint32, 77u);
    EXPECT_EQ(At(numbers, 0).state, CMPI_goodValue);
    // Released arrays are freed once, by the registry.
    EXPECT_EQ(numbers->ft->release(numbers).rc, CMPI_RC_OK);
    Registry()->ClearInstances();
}

TEST_F(ArrayTest, ClonesCopySlotsAndCloneOnlyGoodEncapsulatedElements)
{
    CMPIArray* numbers = NewArray(3, CMPI_uint16);
    Set(numbers, 2, CMPIValue{}, CMPI_uint16);
    CMPIStatus rc = {CMPI_RC_ERR_FAILED, nullptr};
    CMPIArray* clone = numbers->ft->clone(numbers, &rc);
    EXPECT_EQ(rc.rc, CMPI_RC_OK);
    EXPECT_EQ(0, std::memcmp(clone->hdl, numbers->hdl, 4 * sizeof(CMPIData))) << "header included";
    deleteArrayRecord(clone);

    // CMPI_chars values are the characters themselves, copied as pointers.
    CMPIArray* chars = NewArray(1, CMPI_chars);
    char text[] = "plain";
    chars->ft->setElementAt(chars, 0, reinterpret_cast<CMPIValue*>(text), CMPI_chars);
    clone = chars->ft->clone(chars, nullptr);
    EXPECT_EQ(At(clone, 0).value.chars, text);
    deleteArrayRecord(clone);

    CMPIArray* strings = NewArray(2, CMPI_string);
    CMPIValue first = {};
    first.string = string2CMPIString("first");
    Set(strings, 0, first, CMPI_string);
    clone = strings->ft->clone(strings, nullptr);
    EXPECT_NE(At(clone, 0).value.string, first.string);
    EXPECT_EQ(Text(At(clone, 0).value.string), "first");
    EXPECT_EQ(At(clone, 1).value.string, nullptr);
    EXPECT_EQ(Registered(), 4u) << "the clone and its element clones are the caller's";
    deleteStringRecord(At(clone, 0).value.string);
    deleteArrayRecord(clone);
}

// An element whose clone fails after a number of successes.
int gClonesLeft = 0;
CMPIString gCloneResult = {nullptr, nullptr};
CMPIString* FailingClone(const CMPIString*, CMPIStatus* rc)
{
    rc->rc = gClonesLeft-- > 0 ? CMPI_RC_OK : CMPI_RC_ERR_ACCESS_DENIED;
    return rc->rc == CMPI_RC_OK ? &gCloneResult : nullptr;
}

TEST_F(ArrayTest, AFailingElementCloneAbandonsTheCloneWithTheElementsStatus)
{
    CMPIStringFT failingTable = {100, nullptr, FailingClone, nullptr};
    CMPIString element = {nullptr, &failingTable};
    CMPIArray* array = NewArray(3, CMPI_string);
    CMPIValue value = {};
    value.string = &element;
    for (CMPICount i = 0; i < 3; ++i) Set(array, i, value, CMPI_string);
    gClonesLeft = 1;
    CMPIStatus rc = {CMPI_RC_OK, nullptr};
    EXPECT_EQ(array->ft->clone(array, &rc), nullptr);
    EXPECT_EQ(rc.rc, CMPI_RC_ERR_ACCESS_DENIED);
    EXPECT_EQ(gClonesLeft, -1);

    // Paths have no clone at all.
    TCIMReference ref = TCIMReference::Parse("A.k=1");
    CMPIObjectPath path = {&ref, cmpiObjectPathFt};
    CMPIArray* paths = NewArray(1, CMPI_ref);
    value.ref = &path;
    Set(paths, 0, value, CMPI_ref);
    EXPECT_EQ(paths->ft->clone(paths, &rc), nullptr);
    EXPECT_EQ(rc.rc, CMPI_RC_ERR_NOT_SUPPORTED);
}

class ArgsTest : public RegistryTest {
protected:
    void SetUp() override
    {
        RegistryTest::SetUp();
        fArgs = params2CMPIArgs(&fParams);
    }
    CMPIStatus AddUint32(const char* name, unsigned int value)
    {
        CMPIValue v = {};
        v.uint32 = value;
        return fArgs->ft->addArg(fArgs, name, &v, CMPI_uint32);
    }
    TCIMContext fParams;
    CMPIArgs* fArgs = nullptr;
};

TEST_F(ArgsTest, ReadsLeaveTheStatusAloneOnSuccessAndMissNullsAndOtherCases)
{
    fParams["Limit"] = TCIMValue(25u);
    fParams["b"] = NullOf(TCIMType::kString);
    CMPIStatus rc = {CMPI_RC_ERR_ACCESS_DENIED, nullptr};
    EXPECT_EQ(fArgs->ft->getArg(fArgs, "Limit", &rc).value.uint32, 25u);
    EXPECT_EQ(rc.rc, CMPI_RC_ERR_ACCESS_DENIED);
    for (const char* name : {"Missing", "b", "limit"}) {
        fArgs->ft->getArg(fArgs, name, &rc);
        EXPECT_EQ(rc.rc, CMPI_RC_ERR_NOT_FOUND) << name;
    }
    Registry()->ClearInstances();
    EXPECT_EQ(fParams.size(), 2u) << "clearing frees the record, never the caller's map";
}

TEST_F(ArgsTest, AddReplacesTheFirstEntryContainingTheLowerCasedName)
{
    fParams["aq1"] = TCIMValue(1u);
    fParams["bq1"] = TCIMValue(2u);
    AddUint32("q1", 9);
    EXPECT_EQ(fParams.count("aq1"), 0u);
    EXPECT_EQ(fParams.count("bq1"), 1u);
    EXPECT_TRUE(fParams["q1"] == TCIMValue(9u));
    // So a capitalised name added twice keeps its first value.
    AddUint32("Limit", 1);
    AddUint32("Limit", 2);
    EXPECT_TRUE(fParams["Limit"] == TCIMValue(1u));
}

}  // namespace
}  // namespace CmpiTypesTest
