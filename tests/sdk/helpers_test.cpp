// The helper header that provider writers include (zentaProvider.h), as C++
// compiles it here and as C89 compiles it in helpers_c89.c: both builds
// must read keys and namespaces alike, at the edges too.
#include "zentaProvider.h"

#include <gtest/gtest.h>

#include "helpers_c89.h"

namespace {

const CMPIUint64 kUntouched = 4242;

CMPIData Data(CMPIType type, CMPIValue value, CMPIValueState state = CMPI_goodValue) {
    CMPIData data;
    data.type = type;
    data.state = state;
    data.value = value;
    return data;
}

// A string record as the library hands them out: the text is the handle.
struct TText {
    explicit TText(const char* text) {
        record.hdl = const_cast<char*>(text);
        record.ft = nullptr;
    }
    CMPIData AsData(CMPIValueState state = CMPI_goodValue) {
        CMPIValue value;
        value.string = &record;
        return Data(CMPI_string, value, state);
    }
    CMPIString record;
};

template <typename T>
CMPIData Number(CMPIType type, T number) {
    CMPIValue value;
    switch (type) {
        case CMPI_uint8: value.uint8 = static_cast<CMPIUint8>(number); break;
        case CMPI_sint8: value.sint8 = static_cast<CMPISint8>(number); break;
        case CMPI_sint16: value.sint16 = static_cast<CMPISint16>(number); break;
        case CMPI_sint32: value.sint32 = static_cast<CMPISint32>(number); break;
        case CMPI_sint64: value.sint64 = static_cast<CMPISint64>(number); break;
        case CMPI_uint64: value.uint64 = static_cast<CMPIUint64>(number); break;
        case CMPI_real64: value.real64 = static_cast<CMPIReal64>(number); break;
        default: ADD_FAILURE() << "no such case"; value.uint64 = 0;
    }
    return Data(type, value);
}

// Checks one input through both builds: the same status, the number only
// on success, and nothing written on failure.
void ExpectUnsigned(CMPIData data, bool accepted, CMPIUint64 expected, const char* what) {
    CMPIUint64 asCxx = kUntouched;
    CMPIUint64 asC89 = kUntouched;
    EXPECT_EQ(zentaUnsignedOf(data, &asCxx), accepted ? 0 : -1) << what;
    EXPECT_EQ(c89UnsignedOf(data, &asC89), accepted ? 0 : -1) << what << " (C89)";
    EXPECT_EQ(asCxx, accepted ? expected : kUntouched) << what;
    EXPECT_EQ(asC89, accepted ? expected : kUntouched) << what << " (C89)";
}

void ExpectText(const char* text, bool accepted, CMPIUint64 expected) {
    TText record(text);
    ExpectUnsigned(record.AsData(), accepted, expected, text);
}

TEST(ProviderHelpers, UnsignedTextTakesDecimalDigitsUpToTheLargestUint64) {
    ExpectText("0", true, 0);
    ExpectText("007", true, 7);
    ExpectText("4294967296", true, 4294967296ULL);
    ExpectText("18446744073709551615", true, 18446744073709551615ULL);
    ExpectText("18446744073709551616", false, 0);
    ExpectText("99999999999999999999", false, 0);
    ExpectText("184467440737095516150", false, 0);
    for (const char* refused : {"", "-1", "+1", " 1", "1 ", "12a", "0x10", "1e3"}) ExpectText(refused, false, 0);
}

TEST(ProviderHelpers, UnsignedTakesEveryIntegerTypeButNoNegativeNullOrOtherType) {
    ExpectUnsigned(Number(CMPI_uint8, 255), true, 255, "uint8 255");
    ExpectUnsigned(Number(CMPI_uint64, ~0ULL), true, ~0ULL, "uint64 max");
    ExpectUnsigned(Number(CMPI_sint8, 127), true, 127, "sint8 127");
    ExpectUnsigned(Number(CMPI_sint8, -1), false, 0, "sint8 -1");
    ExpectUnsigned(Number(CMPI_sint16, -32768), false, 0, "sint16 min");
    ExpectUnsigned(Number(CMPI_sint32, 2147483647), true, 2147483647, "sint32 max");
    ExpectUnsigned(Number(CMPI_sint64, 9223372036854775807LL), true, 9223372036854775807ULL, "sint64 max");
    ExpectUnsigned(Number(CMPI_sint64, -1), false, 0, "sint64 -1");
    ExpectUnsigned(Number(CMPI_real64, 3.0), false, 0, "real64");

    CMPIData null = Number(CMPI_uint64, 5);
    null.state = CMPI_nullValue;
    ExpectUnsigned(null, false, 0, "null uint64");
    TText text("5");
    ExpectUnsigned(text.AsData(CMPI_nullValue), false, 0, "null string");
}

TEST(ProviderHelpers, StringOfAnswersOnlyAGoodStringWithAText) {
    TText text("abc");
    EXPECT_STREQ(zentaStringOf(text.AsData()), "abc");
    EXPECT_STREQ(c89StringOf(text.AsData()), "abc");
    CMPIValue none;
    none.string = nullptr;
    for (CMPIData refused : {text.AsData(CMPI_nullValue), Data(CMPI_string, none), Number(CMPI_uint8, 1)}) {
        EXPECT_EQ(zentaStringOf(refused), nullptr);
        EXPECT_EQ(c89StringOf(refused), nullptr);
    }
}

// An object path whose namespace is the string record in its handle.
CMPIString* NamespaceInHandle(const CMPIObjectPath* path, CMPIStatus* rc) {
    if (rc != nullptr) rc->rc = CMPI_RC_OK;
    return static_cast<CMPIString*>(path->hdl);
}

TEST(ProviderHelpers, NamespaceOfFallsBackWhenThePathCarriesNoneOrAnEmptyOne) {
    CMPIObjectPathFT table = {};
    table.getNameSpace = &NamespaceInHandle;
    CMPIObjectPath path = {nullptr, &table};
    TText given("root/given");
    TText empty("");
    TText missing(nullptr);
    struct {
        CMPIString* ns;
        const char* expected;
    } cases[] = {{&given.record, "root/given"}, {&empty.record, "root/fallback"},
                 {&missing.record, "root/fallback"}, {nullptr, "root/fallback"}};
    for (const auto& one : cases) {
        path.hdl = one.ns;
        EXPECT_STREQ(zentaNamespaceOf(&path, "root/fallback"), one.expected);
        EXPECT_STREQ(c89NamespaceOf(&path, "root/fallback"), one.expected);
    }
}

// A read-only provider answers what the host may ask and refuses the rest.
TEST(ProviderHelpers, ReadOnlyInstanceMIRefusesEveryChangeAndQuery) {
    CMPIInstanceMI* mi = c89ReadOnlyInstanceMI();
    ASSERT_NE(mi, nullptr);
    const CMPIInstanceMIFT* ft = mi->ft;
    EXPECT_EQ(ft->cleanup(mi, nullptr, 0).rc, CMPI_RC_OK);
    EXPECT_EQ(ft->enumerateInstances(mi, nullptr, nullptr, nullptr, nullptr).rc, CMPI_RC_OK);
    EXPECT_EQ(ft->getInstance(mi, nullptr, nullptr, nullptr, nullptr).rc, CMPI_RC_ERR_NOT_FOUND);
    EXPECT_EQ(ft->enumerateInstanceNames(mi, nullptr, nullptr, nullptr).rc, CMPI_RC_ERR_NOT_SUPPORTED);
    EXPECT_EQ(ft->createInstance(mi, nullptr, nullptr, nullptr, nullptr).rc, CMPI_RC_ERR_NOT_SUPPORTED);
    EXPECT_EQ(ft->modifyInstance(mi, nullptr, nullptr, nullptr, nullptr, nullptr).rc, CMPI_RC_ERR_NOT_SUPPORTED);
    EXPECT_EQ(ft->deleteInstance(mi, nullptr, nullptr, nullptr).rc, CMPI_RC_ERR_NOT_SUPPORTED);
    EXPECT_EQ(ft->execQuery(mi, nullptr, nullptr, nullptr, nullptr, nullptr).rc, CMPI_RC_ERR_NOT_SUPPORTED);
}

}  // namespace
