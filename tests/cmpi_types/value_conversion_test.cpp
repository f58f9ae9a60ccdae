// Value and type conversion between CMPI and host form, both directions,
// with nulls, arrays and the deliberately unsupported cases.
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "CmpiTypesTestSupport.h"
#include "TCIMDateTime.h"
#include "TCIMReference.h"
#include "TZENTAException.h"
#include "cmpiDateTime.h"
#include "cmpiValue.h"

namespace CmpiTypesTest {
namespace {

using NVURZENTA20::TCIMChar16;
using NVURZENTA20::TCIMDateTime;
using NVURZENTA20::TCIMReference;

const char* const kDefaultDate = "20070101100000.000000-000";
const char* const kSomeDate = "20240229235958.123456+060";

TEST(TypeMappingTest, ConvToTCIMTypeCoversTheCorrespondenceAndGivesZeroForEverythingElse)
{
    const struct {
        CMPIType cmpi;
        int host;
    } cases[] = {
        {CMPI_null, 0},      {CMPI_boolean, 1},      {CMPI_char16, 12},   {CMPI_real32, 10},
        {CMPI_real64, 11},   {CMPI_uint8, 2},        {CMPI_uint16, 4},    {CMPI_uint32, 6},
        {CMPI_uint64, 8},    {CMPI_sint8, 3},        {CMPI_sint16, 5},    {CMPI_sint32, 7},
        {CMPI_sint64, 9},    {CMPI_ref, 15},         {CMPI_string, 13},   {CMPI_chars, 13},
        {CMPI_dateTime, 14}, {CMPI_instance, 0},     {CMPI_args, 0},      {CMPI_charsptr, 0},
        {CMPI_ptr, 0},       {CMPI_uint32A, 0},      {CMPI_stringA, 0},   {CMPI_refA, 0},
        {0x7777, 0},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(static_cast<int>(convToTCIMType(c.cmpi)), c.host) << "CMPI type " << c.cmpi;
    }
}

TEST(TypeMappingTest, ConvToCMPITypeLooksUpTheTableAndMapsNoTypeToUint8)
{
    const CMPIType expected[16] = {
        CMPI_uint8,  CMPI_boolean, CMPI_uint8,  CMPI_sint8,  CMPI_uint16, CMPI_sint16,   CMPI_uint32, CMPI_sint32,
        CMPI_uint64, CMPI_sint64,  CMPI_real32, CMPI_real64, CMPI_char16, CMPI_string, CMPI_dateTime, CMPI_ref,
    };
    for (int host = 0; host < 16; ++host) {
        const TCIMType type(static_cast<TCIMType::ECIMType>(host));
        EXPECT_EQ(convToCMPIType(type, false), expected[host]) << "host type " << host;
        EXPECT_EQ(convToCMPIType(type, true), expected[host] | CMPI_ARRAY) << "host type " << host;
        const TCIMType flagged(static_cast<TCIMType::ECIMType>(host | TCIMType::kArrayFlag));
        EXPECT_EQ(convToCMPIType(flagged, true), expected[host] | CMPI_ARRAY) << "host type " << host;
    }
    EXPECT_EQ(convToCMPIType(TCIMType(TCIMType::kNone), false), 128);
    EXPECT_EQ(convToCMPIType(TCIMType(TCIMType::kString), true), 0x3600);
}

// --- CMPI to host ----------------------------------------------------------

class ConvertCMPIValueTest : public RegistryTest {
protected:
    TCIMValue Convert(const CMPIValue* value, CMPIType type)
    {
        CMPIrc rc = CMPI_RC_ERR_TYPE_MISMATCH;
        TCIMValue result = convertCMPIValue(value, type, &rc);
        EXPECT_EQ(rc, CMPI_RC_OK) << "type " << type;
        return result;
    }
};

struct TScalarCase {
    const char* name;
    CMPIType type;
    std::function<void(CMPIValue&)> fill;
    TCIMValue expected;
};

TEST_F(ConvertCMPIValueTest, ScalarsBecomeHostValuesOfTheMatchingType)
{
    const TScalarCase cases[] = {
        {"boolean true", CMPI_boolean, [](CMPIValue& v) { v.boolean = 1; }, TCIMValue(true)},
        {"boolean 2", CMPI_boolean, [](CMPIValue& v) { v.boolean = 2; }, TCIMValue(true)},
        {"boolean false", CMPI_boolean, [](CMPIValue& v) { v.boolean = 0; }, TCIMValue(false)},
        {"char16", CMPI_char16, [](CMPIValue& v) { v.char16 = 0x263A; }, TCIMValue(TCIMChar16(0x263A))},
        {"real32", CMPI_real32, [](CMPIValue& v) { v.real32 = 1.5f; }, TCIMValue(1.5f)},
        {"real64", CMPI_real64, [](CMPIValue& v) { v.real64 = -2.25; }, TCIMValue(-2.25)},
        {"uint8", CMPI_uint8, [](CMPIValue& v) { v.uint8 = 200; }, TCIMValue(static_cast<unsigned char>(200))},
        {"uint16", CMPI_uint16, [](CMPIValue& v) { v.uint16 = 60000; },
         TCIMValue(static_cast<unsigned short>(60000))},
        {"uint32", CMPI_uint32, [](CMPIValue& v) { v.uint32 = 4000000000u; }, TCIMValue(4000000000u)},
        {"uint64", CMPI_uint64, [](CMPIValue& v) { v.uint64 = 0x8000000000000005ull; },
         TCIMValue(0x8000000000000005ull)},
        {"sint8", CMPI_sint8, [](CMPIValue& v) { v.sint8 = -5; }, TCIMValue(static_cast<signed char>(-5))},
        {"sint16", CMPI_sint16, [](CMPIValue& v) { v.sint16 = -30000; }, TCIMValue(static_cast<short>(-30000))},
        {"sint32", CMPI_sint32, [](CMPIValue& v) { v.sint32 = -2000000000; }, TCIMValue(-2000000000)},
        {"sint64", CMPI_sint64, [](CMPIValue& v) { v.sint64 = -(1ll << 40); }, TCIMValue(-(1ll << 40))},
        {"charsptr", CMPI_charsptr, [](CMPIValue& v) { v.dataPtr.ptr = const_cast<char*>("xyz"); },
         TCIMValue("xyz")},
        {"null charsptr", CMPI_charsptr, [](CMPIValue& v) { v.dataPtr.ptr = nullptr; }, NullOf(TCIMType::kString)},
        {"null string record", CMPI_string, [](CMPIValue& v) { v.string = nullptr; }, NullOf(TCIMType::kString)},
        {"null path record", CMPI_ref, [](CMPIValue& v) { v.ref = nullptr; }, NullOf(TCIMType::kReference)},
        {"null date-time record", CMPI_dateTime, [](CMPIValue& v) { v.dateTime = nullptr; },
         NullOf(TCIMType::kDateTime)},
        {"instance", CMPI_instance, [](CMPIValue&) {}, TCIMValue()},
        {"args", CMPI_args, [](CMPIValue&) {}, TCIMValue()},
        {"null type", CMPI_null, [](CMPIValue&) {}, TCIMValue()},
        {"ptr", CMPI_ptr, [](CMPIValue&) {}, TCIMValue()},
        {"unknown code", 0x7777, [](CMPIValue&) {}, TCIMValue()},
    };
    for (const TScalarCase& c : cases) {
        SCOPED_TRACE(c.name);
        CMPIValue value = {};
        c.fill(value);
        const TCIMValue converted = Convert(&value, c.type);
        EXPECT_TRUE(converted == c.expected) << converted.ToString();
        EXPECT_EQ(converted.GetType(), c.expected.GetType());
        EXPECT_EQ(converted.IsNull(), c.expected.IsNull());
    }
}

TEST_F(ConvertCMPIValueTest, NullValuePointerGivesAnUntypedNullAndLeavesTheStatusAlone)
{
    CMPIrc rc = CMPI_RC_ERR_TYPE_MISMATCH;
    const TCIMValue converted = convertCMPIValue(nullptr, CMPI_uint32, &rc);
    EXPECT_TRUE(converted.IsNull());
    EXPECT_EQ(converted.GetType(), TCIMType::kNone);
    EXPECT_EQ(rc, CMPI_RC_ERR_TYPE_MISMATCH);
    EXPECT_TRUE(convertCMPIValue(nullptr, CMPI_string, nullptr).IsNull());
}

TEST_F(ConvertCMPIValueTest, CharsTakeTheValuePointerItselfAsTheCString)
{
    const char text[] = "abc";
    const TCIMValue converted = Convert(reinterpret_cast<const CMPIValue*>(text), CMPI_chars);
    EXPECT_TRUE(converted == TCIMValue("abc"));
}

TEST_F(ConvertCMPIValueTest, StringsReadTheHandleAndANullHandleGivesANullString)
{
    CMPIString* string = newStringRecord("hello");
    CMPIValue value = {};
    value.string = string;
    EXPECT_TRUE(Convert(&value, CMPI_string) == TCIMValue("hello"));

    CMPIString empty = {nullptr, string->ft};
    value.string = &empty;
    const TCIMValue converted = Convert(&value, CMPI_string);
    EXPECT_TRUE(converted.IsNull());
    EXPECT_EQ(converted.GetType(), TCIMType::kString);
    deleteStringRecord(string);
}

TEST_F(ConvertCMPIValueTest, ReferencesAndDateTimesAreReadThroughTheirHandles)
{
    TCIMReference ref = TCIMReference::Parse("root/test:Test_Widget.Id=4,Name=\"w\"");
    CMPIObjectPath* path = ref2CMPIObjectPath(ref);
    CMPIValue value = {};
    value.ref = path;
    const TCIMValue convertedRef = Convert(&value, CMPI_ref);
    EXPECT_EQ(convertedRef.GetType(), TCIMType::kReference);
    EXPECT_TRUE(static_cast<TCIMReference>(convertedRef) == ref);
    delete path;

    TCIMDateTime date(kSomeDate);
    CMPIDateTime record = {&date, nullptr};
    value.dateTime = &record;
    EXPECT_TRUE(Convert(&value, CMPI_dateTime) == TCIMValue(date));
}

TEST_F(ConvertCMPIValueTest, ArrayWithoutRecordGivesAnUntypedNull)
{
    CMPIValue value = {};
    const TCIMValue converted = Convert(&value, CMPI_uint32A);
    EXPECT_TRUE(converted.IsNull());
    EXPECT_EQ(converted.GetType(), TCIMType::kNone);
}

// An array record of this library with the given elements.
class TArrayFixture {
public:
    TArrayFixture(CMPIType elementType, const std::vector<CMPIValue>& elements)
        : fArray(newArrayRecord(newArrayStore(static_cast<CMPICount>(elements.size()), elementType)))
    {
        CMPIData* store = static_cast<CMPIData*>(fArray->hdl);
        for (std::size_t i = 0; i < elements.size(); ++i) {
            store[i + 1].value = elements[i];
        }
    }
    ~TArrayFixture() { deleteArrayRecord(fArray); }
    TArrayFixture(const TArrayFixture&) = delete;
    TArrayFixture& operator=(const TArrayFixture&) = delete;

    CMPIValue Value() const
    {
        CMPIValue value = {};
        value.array = fArray;
        return value;
    }
    CMPIData* Store() const { return static_cast<CMPIData*>(fArray->hdl); }

private:
    CMPIArray* fArray;
};

CMPIValue Uint(unsigned long long bits)
{
    CMPIValue value = {};
    value.uint64 = bits;
    return value;
}

struct TArrayCase {
    const char* name;
    CMPIType elementType;
    std::vector<CMPIValue> elements;
    TCIMValue expected;
};

TEST_F(ConvertCMPIValueTest, ArraysConvertElementByElement)
{
    CMPIValue minusTwo = {};
    minusTwo.sint16 = -2;
    CMPIValue minusThree = {};
    minusThree.sint64 = -3;
    CMPIValue real = {};
    real.real64 = 0.5;
    CMPIValue chars = {};
    chars.chars = const_cast<char*>("c1");
    const TArrayCase cases[] = {
        {"uint8", CMPI_uint8, {Uint(1), Uint(255)},
         ArrayOf(TCIMType::kUint8, {TCIMValue(static_cast<unsigned char>(1)), TCIMValue(static_cast<unsigned char>(255))})},
        {"empty uint8", CMPI_uint8, {}, ArrayOf(TCIMType::kUint8, {})},
        {"uint32", CMPI_uint32, {Uint(7)}, ArrayOf(TCIMType::kUint32, {TCIMValue(7u)})},
        {"uint64", CMPI_uint64, {Uint(1ull << 40)}, ArrayOf(TCIMType::kUint64, {TCIMValue(1ull << 40)})},
        {"sint16", CMPI_sint16, {minusTwo}, ArrayOf(TCIMType::kSint16, {TCIMValue(static_cast<short>(-2))})},
        {"sint64", CMPI_sint64, {minusThree}, ArrayOf(TCIMType::kSint64, {TCIMValue(-3ll)})},
        {"boolean", CMPI_boolean, {Uint(0), Uint(3)}, ArrayOf(TCIMType::kBoolean, {TCIMValue(false), TCIMValue(true)})},
        {"char16", CMPI_char16, {Uint(0x41)}, ArrayOf(TCIMType::kChar16, {TCIMValue(TCIMChar16(0x41))})},
        {"real64", CMPI_real64, {real}, ArrayOf(TCIMType::kReal64, {TCIMValue(0.5)})},
        {"chars", CMPI_chars, {chars}, ArrayOf(TCIMType::kString, {TCIMValue("c1")})},
        {"references stay untyped", CMPI_ref, {Uint(0)}, TCIMValue()},
        {"instances stay untyped", CMPI_instance, {Uint(0)}, TCIMValue()},
    };
    for (const TArrayCase& c : cases) {
        SCOPED_TRACE(c.name);
        TArrayFixture array(c.elementType, c.elements);
        const CMPIValue value = array.Value();
        const TCIMValue converted = Convert(&value, c.elementType | CMPI_ARRAY);
        EXPECT_TRUE(converted == c.expected) << converted.ToString();
        // The element type comes from the header, whatever type is asked.
        EXPECT_TRUE(createTCIMValueArray(&value) == c.expected);
    }
}

TEST_F(ConvertCMPIValueTest, StringAndDateTimeArraysReadTheirElementHandles)
{
    CMPIString* first = newStringRecord("one");
    CMPIString* second = newStringRecord("two");
    CMPIValue a = {};
    a.string = first;
    CMPIValue b = {};
    b.string = second;
    TArrayFixture strings(CMPI_string, {a, b});
    const CMPIValue stringsValue = strings.Value();
    EXPECT_TRUE(createTCIMValueArray(&stringsValue) ==
                ArrayOf(TCIMType::kString, {TCIMValue("one"), TCIMValue("two")}));
    // An element that was never set is a null element.
    strings.Store()[1].value.string = nullptr;
    TCIMValue withNull = createTCIMValueArray(&stringsValue);
    EXPECT_TRUE(withNull == ArrayOf(TCIMType::kString, {NullOf(TCIMType::kString), TCIMValue("two")}));
    deleteStringRecord(first);
    deleteStringRecord(second);

    TCIMDateTime date(kSomeDate);
    CMPIDateTime record = {&date, nullptr};
    CMPIValue d = {};
    d.dateTime = &record;
    TArrayFixture dates(CMPI_dateTime, {d});
    const CMPIValue datesValue = dates.Value();
    EXPECT_TRUE(createTCIMValueArray(&datesValue) == ArrayOf(TCIMType::kDateTime, {TCIMValue(date)}));
}

TEST_F(ConvertCMPIValueTest, NegativeHeaderCountGivesAnEmptyArray)
{
    TArrayFixture array(CMPI_uint16, {});
    array.Store()[0].value.sint32 = -1;
    const CMPIValue value = array.Value();
    EXPECT_TRUE(createTCIMValueArray(&value) == ArrayOf(TCIMType::kUint16, {}));
}

// --- host to CMPI ----------------------------------------------------------

class ConvToCMPIDataTest : public RegistryTest {
protected:
    CMPIData Convert(const TCIMValue& value, CMPIType type, CMPIrc expectedRc = CMPI_RC_OK)
    {
        CMPIData data;
        std::memset(&data, 0xA5, sizeof data);
        EXPECT_EQ(convToCMPIData(value, type, &data), expectedRc) << "type " << type;
        EXPECT_EQ(data.type, type);
        EXPECT_EQ(data.state, CMPI_goodValue);
        return data;
    }
};

struct TIntegerCase {
    const char* name;
    TCIMValue value;
    CMPIType type;
    std::function<bool(const CMPIValue&)> check;
};

TEST_F(ConvToCMPIDataTest, IntegersFillTheirWidthAndUnsignedNullsReadZero)
{
    const TIntegerCase cases[] = {
        {"uint8", TCIMValue(static_cast<unsigned char>(250)), CMPI_uint8, [](const CMPIValue& v) { return v.uint8 == 250; }},
        {"uint16", TCIMValue(static_cast<unsigned short>(65000)), CMPI_uint16, [](const CMPIValue& v) { return v.uint16 == 65000; }},
        {"uint32", TCIMValue(4000000000u), CMPI_uint32, [](const CMPIValue& v) { return v.uint32 == 4000000000u; }},
        {"uint64", TCIMValue(~0ull), CMPI_uint64, [](const CMPIValue& v) { return v.uint64 == ~0ull; }},
        {"sint8", TCIMValue(static_cast<signed char>(-100)), CMPI_sint8, [](const CMPIValue& v) { return v.sint8 == -100; }},
        {"sint16", TCIMValue(static_cast<short>(-32000)), CMPI_sint16, [](const CMPIValue& v) { return v.sint16 == -32000; }},
        {"sint32", TCIMValue(-7), CMPI_sint32, [](const CMPIValue& v) { return v.sint32 == -7; }},
        {"sint64", TCIMValue(-(1ll << 50)), CMPI_sint64, [](const CMPIValue& v) { return v.sint64 == -(1ll << 50); }},
        {"null uint8", NullOf(TCIMType::kUint8), CMPI_uint8, [](const CMPIValue& v) { return v.uint8 == 0; }},
        {"null uint16", NullOf(TCIMType::kUint16), CMPI_uint16, [](const CMPIValue& v) { return v.uint16 == 0; }},
        {"null uint32", NullOf(TCIMType::kUint32), CMPI_uint32, [](const CMPIValue& v) { return v.uint32 == 0; }},
        {"null uint64", NullOf(TCIMType::kUint64), CMPI_uint64, [](const CMPIValue& v) { return v.uint64 == 0; }},
    };
    for (const TIntegerCase& c : cases) {
        SCOPED_TRACE(c.name);
        const CMPIData data = Convert(c.value, c.type);
        EXPECT_TRUE(c.check(data.value));
    }
}

TEST_F(ConvToCMPIDataTest, SignedNullsAreNotGuardedAndSurfaceTheHostFailure)
{
    CMPIData data = {};
    EXPECT_THROW(convToCMPIData(NullOf(TCIMType::kSint32), CMPI_sint32, &data), NVURZENTA20::TZENTAException);
}

TEST_F(ConvToCMPIDataTest, StringsAreRegisteredAndANullStringIsEmpty)
{
    const CMPIData text = Convert(TCIMValue("text"), CMPI_string);
    EXPECT_EQ(Text(text.value.string), "text");
    const CMPIData null = Convert(NullOf(TCIMType::kString), CMPI_string);
    ASSERT_NE(null.value.string, nullptr);
    EXPECT_EQ(Text(null.value.string), "");
    EXPECT_EQ(Registered(), 2u);
}

TEST_F(ConvToCMPIDataTest, UnsupportedScalarTypesAnswerNotSupportedAfterTyping)
{
    const struct {
        TCIMValue value;
        CMPIType type;
    } cases[] = {
        {TCIMValue(true), CMPI_boolean},      {TCIMValue(TCIMChar16(0x41)), CMPI_char16},
        {TCIMValue(1.5f), CMPI_real32},       {TCIMValue(2.5), CMPI_real64},
        {TCIMValue("abc"), CMPI_chars},       {TCIMValue(), CMPI_null},
        {TCIMValue(), CMPI_instance},         {TCIMValue(), CMPI_args},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.type);
        const CMPIData data = Convert(c.value, c.type, CMPI_RC_ERR_NOT_SUPPORTED);
        EXPECT_EQ(data.value.uint64, 0xA5A5A5A5A5A5A5A5ull);
    }
    EXPECT_EQ(Registered(), 0u);
}

TEST_F(ConvToCMPIDataTest, ReferencesBecomeUnregisteredPathsOverAHeapCopy)
{
    const TCIMReference ref = TCIMReference::Parse("Test_Widget.Id=1,Name=\"a\"");
    const CMPIData data = Convert(TCIMValue(ref), CMPI_ref);
    ASSERT_NE(data.value.ref, nullptr);
    const TCIMReference* held = static_cast<const TCIMReference*>(data.value.ref->hdl);
    EXPECT_TRUE(*held == ref);
    EXPECT_EQ(Registered(), 0u);
    FreeUnregisteredData(data);
}

TEST_F(ConvToCMPIDataTest, DateTimesBecomeDatelessRecordsThatAnswerTheDefaultDate)
{
    for (const TCIMValue& value : {TCIMValue(TCIMDateTime(kSomeDate)), NullOf(TCIMType::kDateTime)}) {
        const CMPIData data = Convert(value, CMPI_dateTime);
        CMPIDateTime* record = data.value.dateTime;
        EXPECT_EQ(record->hdl, record);
        EXPECT_EQ(record->ft, cmpiDateTimeFt);
        CMPIStatus rc = {CMPI_RC_ERR_FAILED, nullptr};
        EXPECT_EQ(Text(record->ft->getStringFormat(record, &rc)), kDefaultDate);
        EXPECT_EQ(rc.rc, CMPI_RC_OK);
        // Handed back to the host it stands for the same default date.
        CMPIValue back = {};
        back.dateTime = record;
        EXPECT_TRUE(convertCMPIValue(&back, CMPI_dateTime, nullptr) == TCIMValue(TCIMDateTime(kDefaultDate)));
        FreeUnregisteredData(data);
    }
}

TEST_F(ConvToCMPIDataTest, IntegerArraysFillAStoreWithAHeaderSlot)
{
    const TCIMValue value = ArrayOf(TCIMType::kSint32, {TCIMValue(-1), TCIMValue(2), TCIMValue(-3)});
    const CMPIData data = Convert(value, CMPI_sint32A);
    const CMPIData* store = static_cast<const CMPIData*>(data.value.array->hdl);
    EXPECT_EQ(data.value.array->ft, cmpiArrayFt);
    EXPECT_EQ(store[0].type, CMPI_sint32);
    EXPECT_EQ(store[0].value.uint32, 3u);
    EXPECT_EQ(store[0].state, CMPI_nullValue);
    const int expected[] = {-1, 2, -3};
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(store[i + 1].type, CMPI_sint32);
        EXPECT_EQ(store[i + 1].state, CMPI_goodValue);
        EXPECT_EQ(store[i + 1].value.sint32, expected[i]);
    }
    // And back again.
    CMPIValue back = {};
    back.array = data.value.array;
    EXPECT_TRUE(createTCIMValueArray(&back) == value);
    EXPECT_EQ(Registered(), 0u);
    FreeUnregisteredData(data);
}

TEST_F(ConvToCMPIDataTest, UnsignedArraysOfEveryWidthRoundTrip)
{
    const struct {
        TCIMValue value;
        CMPIType type;
    } cases[] = {
        {ArrayOf(TCIMType::kUint8, {TCIMValue(static_cast<unsigned char>(9))}), CMPI_uint8A},
        {ArrayOf(TCIMType::kUint16, {TCIMValue(static_cast<unsigned short>(999))}), CMPI_uint16A},
        {ArrayOf(TCIMType::kUint32, {TCIMValue(99999u), TCIMValue(1u)}), CMPI_uint32A},
        {ArrayOf(TCIMType::kUint64, {TCIMValue(1ull << 60)}), CMPI_uint64A},
        {ArrayOf(TCIMType::kSint8, {TCIMValue(static_cast<signed char>(-9))}), CMPI_sint8A},
        {ArrayOf(TCIMType::kSint16, {TCIMValue(static_cast<short>(-999))}), CMPI_sint16A},
        {ArrayOf(TCIMType::kSint64, {TCIMValue(-(1ll << 60))}), CMPI_sint64A},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.type);
        const CMPIData data = Convert(c.value, c.type);
        CMPIValue back = {};
        back.array = data.value.array;
        EXPECT_TRUE(createTCIMValueArray(&back) == c.value);
        FreeUnregisteredData(data);
    }
}

TEST_F(ConvToCMPIDataTest, StringArraysGetUnregisteredElementStringsOfTheTextForm)
{
    const TCIMValue value = ArrayOf(TCIMType::kString, {TCIMValue("x"), TCIMValue("yz")});
    const CMPIData data = Convert(value, CMPI_stringA);
    const CMPIData* store = static_cast<const CMPIData*>(data.value.array->hdl);
    EXPECT_EQ(Text(store[1].value.string), "x");
    EXPECT_EQ(Text(store[2].value.string), "yz");
    EXPECT_EQ(store[1].value.string->ft, cmpiStringFt);
    EXPECT_EQ(Registered(), 0u);
    FreeUnregisteredData(data);
}

TEST_F(ConvToCMPIDataTest, NullArraysGiveEmptyArrays)
{
    TCIMValue null;
    null.SetNullValue(TCIMType::kUint32, 1);
    const CMPIData data = Convert(null, CMPI_uint32A);
    EXPECT_EQ(data.value.array->ft->getSize(data.value.array, nullptr), 0u);
    FreeUnregisteredData(data);
}

TEST_F(ConvToCMPIDataTest, ArraysOfUnsupportedElementsAnswerNotSupportedAndKeepTheValue)
{
    const CMPIData reals = Convert(ArrayOf(TCIMType::kReal64, {TCIMValue(1.0)}), CMPI_real64A,
                                   CMPI_RC_ERR_NOT_SUPPORTED);
    EXPECT_EQ(reals.value.uint64, 0xA5A5A5A5A5A5A5A5ull);
    const CMPIData booleans = Convert(ArrayOf(TCIMType::kBoolean, {TCIMValue(true)}), CMPI_booleanA,
                                      CMPI_RC_ERR_NOT_SUPPORTED);
    EXPECT_EQ(booleans.value.uint64, 0xA5A5A5A5A5A5A5A5ull);
    // Without elements nothing is refused: an empty array comes back.
    const CMPIData empty = Convert(ArrayOf(TCIMType::kReal64, {}), CMPI_real64A);
    EXPECT_EQ(empty.value.array->ft->getSize(empty.value.array, nullptr), 0u);
    EXPECT_EQ(empty.value.array->ft->getSimpleType(empty.value.array, nullptr), CMPI_real64);
    FreeUnregisteredData(empty);
}

TEST_F(ConvToCMPIDataTest, String2CMPIStringRegistersACopy)
{
    std::string text = "copied";
    CMPIString* string = string2CMPIString(text);
    text[0] = 'X';
    EXPECT_EQ(Text(string), "copied");
    EXPECT_EQ(string->ft, cmpiStringFt);
    EXPECT_EQ(Registered(), 1u);
}

}  // namespace
}  // namespace CmpiTypesTest
