// Pins the binary interface of include/cmpi: sizes of the data types, the
// position of every function-table slot, the constants, and agreement
// between C and C++ builds. Provider binaries built against any other copy
// of these headers are loaded into our broker, so none of this may drift.

#include "probes.h"

#include <gtest/gtest.h>

#include <pthread.h>

#include <algorithm>
#include <climits>
#include <cstddef>
#include <cstring>
#include <iterator>
#include <string_view>
#include <type_traits>

namespace {

constexpr std::size_t P = sizeof(void *);

constexpr std::size_t alignUp(std::size_t n, std::size_t a)
{
    return (n + a - 1) / a * a;
}

// The alignment a type really gets inside a structure (on i386 alignof()
// of 64-bit types says 8 where the ABI uses 4).
template <typename T> struct AlignProbe
{
    char c;
    T t;
};
template <typename T> constexpr std::size_t fieldAlign()
{
    return offsetof(AlignProbe<T>, t);
}

#ifdef ZENTA_TARGET_BITS
static_assert(P * CHAR_BIT == ZENTA_TARGET_BITS,
              "the compiler does not produce code of the width the build targets");
#endif
static_assert(sizeof(void (*)(void)) == P, "function and data pointers differ");

// ------------------------------------------------------------ value types

#define SIZE(T, n) static_assert(sizeof(T) == n, #T)
SIZE(CMPIBoolean, 1); SIZE(CMPIChar16, 2); SIZE(CMPIUint8, 1); SIZE(CMPIUint16, 2);
SIZE(CMPIUint32, 4); SIZE(CMPIUint64, 8); SIZE(CMPISint8, 1); SIZE(CMPISint16, 2);
SIZE(CMPISint32, 4); SIZE(CMPISint64, 8); SIZE(CMPIReal32, 4); SIZE(CMPIReal64, 8);
SIZE(CMPICount, 4); SIZE(CMPIType, 2); SIZE(CMPIValueState, 2); SIZE(CMPIFlags, 4);
SIZE(CMPIrc, sizeof(int));
static_assert(std::is_same<CMPIUint64, unsigned long long>::value, "");
static_assert(std::is_same<CMPISint64, long long>::value, "");
static_assert(std::is_signed<CMPISint8>::value, "");
static_assert(std::is_unsigned<CMPIBoolean>::value && std::is_unsigned<CMPIType>::value, "");

TEST(CmpiDataTypes, ValueAndDataLayoutFollowFromTheMembers)
{
    EXPECT_EQ(offsetof(CMPIValuePtr, length), P);
    EXPECT_EQ(sizeof(CMPIValuePtr), alignUp(P + sizeof(CMPICount), fieldAlign<void *>()));

    // CMPIValue: the widest members are the 64-bit scalars and dataPtr.
    const std::size_t valueAlign =
        std::max(fieldAlign<CMPIUint64>(), fieldAlign<void *>());
    EXPECT_EQ(fieldAlign<CMPIValue>(), valueAlign);
    EXPECT_EQ(sizeof(CMPIValue),
              alignUp(std::max<std::size_t>(8, sizeof(CMPIValuePtr)), valueAlign));

    // CMPIData: two shorts, padding up to the union's alignment, the union.
    EXPECT_EQ(offsetof(CMPIData, state), sizeof(CMPIType));
    EXPECT_EQ(offsetof(CMPIData, value),
              alignUp(sizeof(CMPIType) + sizeof(CMPIValueState), valueAlign));
    EXPECT_EQ(sizeof(CMPIData),
              alignUp(offsetof(CMPIData, value) + sizeof(CMPIValue), valueAlign));

    EXPECT_EQ(offsetof(CMPIStatus, msg), alignUp(sizeof(CMPIrc), P));
    EXPECT_EQ(sizeof(CMPIStatus), 2 * P);
}

// The numbers every provider binary was built with: dataPtr makes CMPIValue
// 16 bytes on LP64; on ILP32 the 64-bit scalars dominate and are 4-aligned.
static_assert(P != 8 || (sizeof(CMPIValue) == 16 && sizeof(CMPIData) == 24 &&
                         offsetof(CMPIData, value) == 8), "LP64 CMPIData");
static_assert(P != 4 || (sizeof(CMPIValue) == 8 && sizeof(CMPIData) == 12 &&
                         offsetof(CMPIData, value) == 4), "ILP32 CMPIData");
static_assert(P == 4 || P == 8, "only ILP32 and LP64 are expected");

// ----------------------------------------------------------------- tables

enum Kind { IntField, FunctionSlot, DataPointer };

struct Member
{
    const char *table;
    const char *name;
    std::size_t offset;
    std::size_t tableSize;
    Kind kind;
};

// Offsets alone miss a field whose type shrinks within its padding, so the
// kind of every member is pinned at compile time as well.
template <typename F> constexpr bool isFunctionPointer()
{
    return std::is_pointer<F>::value &&
           std::is_function<std::remove_pointer_t<F>>::value;
}
#define INT_KIND(T, m)                                                         \
    static_assert(std::is_integral<decltype(T::m)>::value &&                  \
                      sizeof(T::m) == sizeof(int), #T "::" #m);
#define FUNCTION_KIND(T, m) static_assert(isFunctionPointer<decltype(T::m)>(), #T "::" #m);
#define DATA_KIND(T, m)                                                        \
    static_assert(std::is_pointer<decltype(T::m)>::value &&                   \
                      !isFunctionPointer<decltype(T::m)>(), #T "::" #m);
#define TABLE_KINDS(T, members) members(INT_KIND, FUNCTION_KIND, DATA_KIND, T)
CMPI_LAYOUT(TABLE_KINDS)

#define ROW(T, m, kind) Member{#T, #m, offsetof(T, m), sizeof(T), kind},
#define INT_ROW(T, m) ROW(T, m, IntField)
#define FUNCTION_ROW(T, m) ROW(T, m, FunctionSlot)
#define DATA_ROW(T, m) ROW(T, m, DataPointer)
#define TABLE_ROWS(T, members) members(INT_ROW, FUNCTION_ROW, DATA_ROW, T)
const Member members[] = {CMPI_LAYOUT(TABLE_ROWS)};

// Leading int fields, then one pointer per member, and nothing else.
TEST(CmpiFunctionTables, EveryMemberSitsWhereTheMemberOrderPutsIt)
{
    for (std::size_t i = 0; i < std::size(members);) {
        const char *table = members[i].table;
        std::size_t end = 0;
        for (; i < std::size(members) && std::strcmp(members[i].table, table) == 0; ++i) {
            const bool isInt = members[i].kind == IntField;
            end = alignUp(end, isInt ? alignof(int) : fieldAlign<void *>());
            EXPECT_EQ(members[i].offset, end) << table << "::" << members[i].name;
            end += isInt ? sizeof(int) : P;
        }
        EXPECT_EQ(members[i - 1].tableSize, alignUp(end, fieldAlign<void *>()))
            << table << " is not exactly its listed members";
    }
}

// Struct return values travel differently from scalars (a hidden pointer on
// i386), so these return types are as much part of the interface as the
// slot positions.
template <typename Fn> struct Returns;
template <typename R, typename... A> struct Returns<R (*)(A...)>
{
    using type = R;
};
template <typename R, typename... A> struct Returns<R (*)(A..., ...)>
{
    using type = R;
};
#define RETURNS(T, m, R) \
    static_assert(std::is_same<Returns<decltype(T::m)>::type, R>::value, #T "::" #m)
RETURNS(CMPIIndicationMIFT, enableIndications, CMPIStatus);
RETURNS(CMPIIndicationMIFT, disableIndications, CMPIStatus);
RETURNS(CMPIBrokerFT, invokeMethod, CMPIData);
RETURNS(CMPIBrokerFT, getProperty, CMPIData);
RETURNS(CMPIBrokerFT, modifyInstance, CMPIStatus);
RETURNS(CMPIBrokerEncFT, logMessage, CMPIStatus);
RETURNS(CMPIBrokerEncFT, getMessage, CMPIString *);
RETURNS(CMPIArrayFT, getSimpleType, CMPIType);
RETURNS(CMPIDateTimeFT, getBinaryFormat, CMPIUint64);
RETURNS(CMPIEnumerationFT, hasNext, CMPIBoolean);
static_assert(std::is_same<decltype(CMPIPropertyMIFT::setProperty),
                           CMPIStatus (*)(CMPIPropertyMI *, const CMPIContext *,
                                          const CMPIResult *, const CMPIObjectPath *,
                                          const char *, const CMPIData)>::value,
              "property MI setProperty takes the CMPIData by value");

// The broker hands these straight to pthreads.
static_assert(std::is_same<CMPI_THREAD_KEY_TYPE, pthread_key_t>::value, "");
static_assert(std::is_same<CMPI_THREAD_TYPE, void *>::value &&
                  std::is_same<CMPI_MUTEX_TYPE, void *>::value &&
                  std::is_same<CMPI_COND_TYPE, void *>::value &&
                  std::is_same<CMPI_THREAD_RETURN, void *>::value, "");

// Both spellings of a slot name one slot.

#define SAME_SLOT(T, a, b) \
    static_assert(offsetof(T, a) == offsetof(T, b) && \
                  std::is_same<decltype(T::a), decltype(T::b)>::value, #T "::" #a)
SAME_SLOT(CMPIBrokerFT, enumInstanceNames, enumerateInstanceNames);
SAME_SLOT(CMPIBrokerFT, enumInstances, enumerateInstances);
SAME_SLOT(CMPIInstanceMIFT, enumInstanceNames, enumerateInstanceNames);
SAME_SLOT(CMPIInstanceMIFT, enumInstances, enumerateInstances);
SAME_SLOT(CMPIBrokerEncFT, newDateTimeFromString, newDateTimeFromChars);

// -------------------------------------------------- C and C++ agreement

#define PAIR_NAME(T, m) #T "::" #m,
#define PAIR_NAMES(T, members) members(PAIR_NAME, PAIR_NAME, PAIR_NAME, T)
#define PAIR(T, m) offsetof(T, m), sizeof(T),
#define PAIRS(T, members) members(PAIR, PAIR, PAIR, T)

const char *const layoutNames[] = {CMPI_LAYOUT(PAIR_NAMES) CMPI_LAYOUT_VALUES(PAIR_NAME)};
const std::size_t layoutCxx[] = {CMPI_LAYOUT(PAIRS) CMPI_LAYOUT_VALUES(PAIR) 0};

TEST(CmpiLanguageAgreement, C89BuildsMatchCxxWithAndWithoutAliases)
{
    for (const std::size_t *c : {cmpi_layout_c_aliases, cmpi_layout_c_plain}) {
        for (std::size_t i = 0; i < std::size(layoutCxx); ++i) {
            EXPECT_EQ(c[i], layoutCxx[i])
                << (i % 2 ? "size of " : "offset of ") << layoutNames[i / 2]
                << (c == cmpi_layout_c_plain ? " without" : " with") << " aliases";
        }
    }
}

// -------------------------------------------------------------- constants

struct Constant
{
    const char *name;
    long long value;
    long long expected;
};
#define K(name, expected) Constant{#name, static_cast<long long>(name), expected}

const Constant constants[] = {
    // Type codes.
    K(CMPI_null, 0), K(CMPI_SIMPLE, 2), K(CMPI_boolean, 2), K(CMPI_char16, 3),
    K(CMPI_REAL, 8), K(CMPI_real32, 8), K(CMPI_real64, 12), K(CMPI_UINT, 128),
    K(CMPI_uint8, 128), K(CMPI_uint16, 144), K(CMPI_uint32, 160), K(CMPI_uint64, 176),
    K(CMPI_SINT, 192), K(CMPI_sint8, 192), K(CMPI_sint16, 208), K(CMPI_sint32, 224),
    K(CMPI_sint64, 240), K(CMPI_INTEGER, 192), K(CMPI_ENC, 4096), K(CMPI_instance, 4096),
    K(CMPI_ref, 4352), K(CMPI_args, 4608), K(CMPI_class, 4864), K(CMPI_filter, 5120),
    K(CMPI_enumeration, 5376), K(CMPI_string, 5632), K(CMPI_chars, 5888),
    K(CMPI_dateTime, 6144), K(CMPI_ptr, 6400), K(CMPI_charsptr, 6656),
    // Array type codes.
    K(CMPI_ARRAY, 0x2000), K(CMPI_SIMPLEA, 0x2002), K(CMPI_booleanA, 0x2002),
    K(CMPI_char16A, 0x2003), K(CMPI_REALA, 0x2008), K(CMPI_real32A, 0x2008),
    K(CMPI_real64A, 0x200C), K(CMPI_UINTA, 0x2080), K(CMPI_uint8A, 0x2080),
    K(CMPI_uint16A, 0x2090), K(CMPI_uint32A, 0x20A0), K(CMPI_uint64A, 0x20B0),
    K(CMPI_SINTA, 0x20C0), K(CMPI_sint8A, 0x20C0), K(CMPI_sint16A, 0x20D0),
    K(CMPI_sint32A, 0x20E0), K(CMPI_sint64A, 0x20F0), K(CMPI_INTEGERA, 0x20C0),
    K(CMPI_ENCA, 0x3000), K(CMPI_stringA, 0x3600), K(CMPI_charsA, 0x3700),
    K(CMPI_dateTimeA, 0x3800), K(CMPI_instanceA, 0x3000), K(CMPI_refA, 0x3100),
    K(CMPI_charsptrA, 0x3A00),
    // Key, predicate and synonym type codes.
    K(CMPI_keyInteger, 240), K(CMPI_keyString, 5632), K(CMPI_keyBoolean, 2),
    K(CMPI_keyRef, 4352), K(CMPI_charString, 0x1600), K(CMPI_integerString, 0x16F0),
    K(CMPI_realString, 0x160C), K(CMPI_numericString, 0x16FC),
    K(CMPI_booleanString, 0x1602), K(CMPI_dateTimeString, 0x1E00),
    K(CMPI_classNameString, 0x1700), K(CMPI_nameString, 0x1E00), K(CMPI_Byte, 192),
    K(CMPI_Short, 208), K(CMPI_Int, 224), K(CMPI_Long, 240), K(CMPI_Float, 8),
    K(CMPI_Double, 12), K(CMPI_ByteA, 0x20C0), K(CMPI_ShortA, 0x20D0), K(CMPI_IntA, 0x20E0),
    K(CMPI_LongA, 0x20F0), K(CMPI_FloatA, 0x2008), K(CMPI_DoubleA, 0x200C),
    // Value states.
    K(CMPI_goodValue, 0), K(CMPI_nullValue, 0x0100), K(CMPI_keyValue, 0x0200),
    K(CMPI_notFound, 0x0400), K(CMPI_badValue, 0x8000),
    // Return codes.
    K(CMPI_RC_OK, 0), K(CMPI_RC_ERR_FAILED, 1), K(CMPI_RC_ERR_ACCESS_DENIED, 2),
    K(CMPI_RC_ERR_INVALID_NAMESPACE, 3), K(CMPI_RC_ERR_INVALID_PARAMETER, 4),
    K(CMPI_RC_ERR_INVALID_CLASS, 5), K(CMPI_RC_ERR_NOT_FOUND, 6),
    K(CMPI_RC_ERR_NOT_SUPPORTED, 7), K(CMPI_RC_ERR_CLASS_HAS_CHILDREN, 8),
    K(CMPI_RC_ERR_CLASS_HAS_INSTANCES, 9), K(CMPI_RC_ERR_INVALID_SUPERCLASS, 10),
    K(CMPI_RC_ERR_ALREADY_EXISTS, 11), K(CMPI_RC_ERR_NO_SUCH_PROPERTY, 12),
    K(CMPI_RC_ERR_TYPE_MISMATCH, 13), K(CMPI_RC_ERR_QUERY_LANGUAGE_NOT_SUPPORTED, 14),
    K(CMPI_RC_ERR_INVALID_QUERY, 15), K(CMPI_RC_ERR_METHOD_NOT_AVAILABLE, 16),
    K(CMPI_RC_ERR_METHOD_NOT_FOUND, 17), K(CMPI_RC_NO_MORE_ELEMENTS, 18),
    K(CMPI_RC_DO_NOT_UNLOAD, 50), K(CMPI_RC_NEVER_UNLOAD, 51),
    K(CMPI_RC_ERR_INVALID_HANDLE, 60), K(CMPI_RC_ERR_INVALID_DATA_TYPE, 61),
    K(CMPI_RC_ERROR_SYSTEM, 100), K(CMPI_RC_ERROR, 200),
    // Severities, trace levels, conditions, predicate operators.
    K(CMPI_SEV_ERROR, 1), K(CMPI_SEV_INFO, 2), K(CMPI_SEV_WARNING, 3), K(CMPI_DEV_DEBUG, 4),
    K(CMPI_LEV_INFO, 1), K(CMPI_LEV_WARNING, 2), K(CMPI_LEV_VERBOSE, 3),
    K(CMPI_COND_DOC, 0), K(CMPI_COND_COD, 1), K(CMPI_PredOp_Equals, 1),
    K(CMPI_PredOp_NotEquals, 2), K(CMPI_PredOp_LessThan, 3),
    K(CMPI_PredOp_GreaterThanOrEquals, 4), K(CMPI_PredOp_GreaterThan, 5),
    K(CMPI_PredOp_LessThanOrEquals, 6), K(CMPI_PredOp_Isa, 7), K(CMPI_PredOp_NotIsa, 8),
    K(CMPI_PredOp_Like, 9), K(CMPI_PredOp_NotLike, 10),
    // Invocation flags and broker capabilities.
    K(CMPI_FLAG_LocalOnly, 1), K(CMPI_FLAG_DeepInheritance, 2),
    K(CMPI_FLAG_IncludeQualifiers, 4), K(CMPI_FLAG_IncludeClassOrigin, 8),
    K(CMPI_MB_Class_0, 0x1), K(CMPI_MB_Class_1, 0x3), K(CMPI_MB_Class_2, 0x7),
    K(CMPI_MB_Supports_PropertyMI, 0x100), K(CMPI_MB_Supports_IndicationMI, 0x200),
    K(CMPI_MB_Supports_IndicationPolling, 0x400),
    K(CMPI_MB_Supports_QueryNormalization, 0x800), K(CMPI_MB_Supports_Qualifier, 0x1000),
    K(CMPI_MB_Supports_Schema, 0x3000), K(CMPI_MB_BasicRead, 0x1),
    K(CMPI_MB_BasicWrite, 0x3), K(CMPI_MB_InstanceManipulation, 0x7),
    K(CMPI_MB_AssociationTraversal, 0x9), K(CMPI_MB_QueryExecution, 0x11),
    K(CMPI_MB_QueryNormalization, 0x31), K(CMPI_MB_Indications, 0x81),
    K(CMPI_MB_BasicQualifierSupport, 0x47), K(CMPI_MB_OSEncapsulationSupport, 0x100),
    // Interface levels.
    K(CMPIVersion051, 51), K(CMPIVersion060, 60), K(CMPIVersion070, 70),
    K(CMPIVersion080, 80), K(CMPIVersion085, 85), K(CMPIVersion086, 86),
    K(CMPIVersion087, 87), K(CMPIVersion090, 90), K(CMPIVersion100, 100),
    K(CMPIVersion200, 200)};

TEST(CmpiConstants, NumericValues)
{
    for (const Constant &c : constants) {
        EXPECT_EQ(c.value, c.expected) << c.name;
    }
}

// Context entries are looked up by these names, each spelled as itself.
#define NAMED_AS_ITSELF(n) static_assert(std::string_view(n) == #n, #n)
NAMED_AS_ITSELF(CMPIPrincipal); NAMED_AS_ITSELF(CMPIInvocationFlags);
NAMED_AS_ITSELF(CMPIInitNameSpace); NAMED_AS_ITSELF(CMPIRole);
NAMED_AS_ITSELF(CMPIAcceptLanguage); NAMED_AS_ITSELF(CMPIContentLanguage);

// --------------------------------------------------------------- levels

// Without CMPI_VERSION a provider gets 1.0 with every older level.
static_assert(CMPICurrentVersion == 100, "default level");
#if !defined(CMPI_VER_100) || !defined(CMPI_VER_90) || !defined(CMPI_VER_87) || \
    !defined(CMPI_VER_86) || !defined(CMPI_VER_85) || !defined(CMPI_VER_80)
#error "the default level must switch on every older level"
#endif

TEST(CmpiVersions, ExplicitOlderLevelIsHonoured)
{
    EXPECT_EQ(version_probe_current, 86);
    EXPECT_EQ(version_probe_instance_mift_size, sizeof(CMPIInstanceMIFT))
        << "the tables keep their 1.0 layout";
}

} // namespace
