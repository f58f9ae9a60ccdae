// Pins the binary interface described by include/cmpi: the sizes of the
// CMPI data types, the position of every function-table slot, the numeric
// value of every constant, and the agreement between C and C++ builds.
//
// Provider libraries compiled against any other copy of these headers are
// loaded into our broker as binaries, so none of this may drift. Expected
// offsets are derived from the member order alone (leading int fields, then
// one pointer per slot) rather than from what the compiler happens to do,
// which is what makes a reordered or retyped slot fail here.

#include "cmpidt.h"
#include "cmpift.h"
#include "cmpimacs.h"

#include "layout_members.h"

#include <gtest/gtest.h>

#include <pthread.h>

#include <algorithm>
#include <climits>
#include <cstddef>
#include <cstring>
#include <initializer_list>
#include <string>
#include <type_traits>
#include <utility>

extern "C" {
extern const std::size_t cmpi_layout_c_aliases[];
extern const std::size_t cmpi_layout_c_aliases_count;
extern const std::size_t cmpi_layout_c_plain[];
extern const std::size_t cmpi_layout_c_plain_count;

extern const int version_probe_requested;
extern const int version_probe_current;
extern const int version_probe_flags[6];
extern const unsigned long version_probe_instance_mift_size;
}

namespace {

constexpr std::size_t P = sizeof(void *);

constexpr std::size_t alignUp(std::size_t n, std::size_t a)
{
    return (n + a - 1) / a * a;
}

// Offset of the k-th pointer-sized member following `lead` bytes of int
// fields at the start of a table (ftVersion; ftVersion and miVersion; or
// brokerCapabilities and brokerVersion).
constexpr std::size_t slot(std::size_t lead, std::size_t k)
{
    return alignUp(lead, alignof(void *)) + k * P;
}

// The alignment a type really gets inside a structure. On i386, alignof()
// of 64-bit types reports 8 in some compilers while the ABI uses 4.
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
static_assert(sizeof(void *) * CHAR_BIT == ZENTA_TARGET_BITS,
              "the compiler does not produce code of the width the build targets");
#endif

static_assert(sizeof(void (*)(void)) == P,
              "function pointers and data pointers must have the same size");

struct Member
{
    const char *name;
    std::size_t offset;
};

#define MEMBER(T, m) Member{#m, offsetof(T, m)}

// Checks that the listed members are consecutive pointer slots after
// `lead` bytes of leading int fields, and that nothing follows them.
void expectSlots(const char *table, std::size_t lead,
                 std::initializer_list<Member> members, std::size_t size)
{
    std::size_t k = 0;
    for (const Member &m : members) {
        EXPECT_EQ(m.offset, slot(lead, k))
            << table << "::" << m.name << " should be pointer slot " << k;
        ++k;
    }
    EXPECT_EQ(size, slot(lead, k))
        << table << " is not exactly the " << k << " listed slots";
}

constexpr std::size_t FT = sizeof(int);       // ftVersion
constexpr std::size_t MIFT = 2 * sizeof(int); // ftVersion, miVersion

// -------------------------------------------------------------- data types

TEST(CmpiDataTypes, ScalarSizes)
{
    EXPECT_EQ(sizeof(CMPIBoolean), 1u);
    EXPECT_EQ(sizeof(CMPIChar16), 2u);
    EXPECT_EQ(sizeof(CMPIUint8), 1u);
    EXPECT_EQ(sizeof(CMPIUint16), 2u);
    EXPECT_EQ(sizeof(CMPIUint32), 4u);
    EXPECT_EQ(sizeof(CMPIUint64), 8u);
    EXPECT_EQ(sizeof(CMPISint8), 1u);
    EXPECT_EQ(sizeof(CMPISint16), 2u);
    EXPECT_EQ(sizeof(CMPISint32), 4u);
    EXPECT_EQ(sizeof(CMPISint64), 8u);
    EXPECT_EQ(sizeof(CMPIReal32), 4u);
    EXPECT_EQ(sizeof(CMPIReal64), 8u);
    EXPECT_EQ(sizeof(CMPICount), 4u);
    EXPECT_EQ(sizeof(CMPIType), 2u);
    EXPECT_EQ(sizeof(CMPIValueState), 2u);
    EXPECT_EQ(sizeof(CMPIFlags), 4u);
    EXPECT_EQ(sizeof(CMPIrc), sizeof(int));

    EXPECT_TRUE(std::is_unsigned<CMPIUint64>::value);
    EXPECT_TRUE(std::is_signed<CMPISint8>::value);
    EXPECT_TRUE(std::is_signed<CMPISint64>::value);
    EXPECT_TRUE(std::is_unsigned<CMPIBoolean>::value);
    EXPECT_TRUE(std::is_unsigned<CMPIType>::value);
    EXPECT_TRUE((std::is_same<CMPIUint64, unsigned long long>::value));
    EXPECT_TRUE((std::is_same<CMPISint64, long long>::value));
}

TEST(CmpiDataTypes, ValueAndDataLayoutFollowFromTheMembers)
{
    // CMPIValuePtr: a pointer and a count, padded to pointer alignment.
    EXPECT_EQ(offsetof(CMPIValuePtr, ptr), 0u);
    EXPECT_EQ(offsetof(CMPIValuePtr, length), P);
    EXPECT_EQ(sizeof(CMPIValuePtr),
              alignUp(P + sizeof(CMPICount), fieldAlign<void *>()));

    // CMPIValue: its widest members are the 64-bit scalars and dataPtr.
    const std::size_t valueAlign =
        std::max(fieldAlign<CMPIUint64>(), fieldAlign<void *>());
    EXPECT_EQ(fieldAlign<CMPIValue>(), valueAlign);
    EXPECT_EQ(sizeof(CMPIValue),
              alignUp(std::max<std::size_t>(8, sizeof(CMPIValuePtr)),
                      valueAlign));

    // CMPIData: two shorts, padding up to the union's alignment, the union.
    EXPECT_EQ(offsetof(CMPIData, type), 0u);
    EXPECT_EQ(offsetof(CMPIData, state), sizeof(CMPIType));
    EXPECT_EQ(offsetof(CMPIData, value),
              alignUp(sizeof(CMPIType) + sizeof(CMPIValueState), valueAlign));
    EXPECT_EQ(sizeof(CMPIData),
              alignUp(offsetof(CMPIData, value) + sizeof(CMPIValue),
                      valueAlign));

    // CMPIStatus: the enum, then the message pointer.
    EXPECT_EQ(offsetof(CMPIStatus, rc), 0u);
    EXPECT_EQ(offsetof(CMPIStatus, msg), alignUp(sizeof(CMPIrc), P));
    EXPECT_EQ(sizeof(CMPIStatus), 2 * P);
}

// The numbers every provider binary was built with. CMPIValue holds dataPtr
// (pointer + 32-bit count), which makes it 16 bytes on LP64, and CMPIData
// 24 bytes there; on ILP32 the 64-bit scalars dominate (8) and the union is
// 4-aligned, giving 12.
static_assert(P != 8 || sizeof(CMPIValue) == 16, "LP64 CMPIValue is 16 bytes");
static_assert(P != 8 || sizeof(CMPIData) == 24, "LP64 CMPIData is 24 bytes");
static_assert(P != 8 || offsetof(CMPIData, value) == 8, "LP64 value at 8");
static_assert(P != 4 || sizeof(CMPIValue) == 8, "ILP32 CMPIValue is 8 bytes");
static_assert(P != 4 || sizeof(CMPIData) == 12, "ILP32 CMPIData is 12 bytes");
static_assert(P != 4 || offsetof(CMPIData, value) == 4, "ILP32 value at 4");

TEST(CmpiDataTypes, DataSizeOnThisPlatform)
{
    if (P == 8) {
        EXPECT_EQ(sizeof(CMPIValue), 16u);
        EXPECT_EQ(sizeof(CMPIData), 24u);
    } else {
        ASSERT_EQ(P, 4u) << "only ILP32 and LP64 are expected";
        EXPECT_EQ(sizeof(CMPIValue), 8u);
        EXPECT_EQ(sizeof(CMPIData), 12u);
    }
}

// ------------------------------------------------- types of the data fields
//
// Offsets alone do not catch a field whose type shrinks within its padding
// (an int miVersion turned short still leaves miName at 8), so the types
// of all non-function members are pinned as well. A mismatch fails the
// build.

#define FIELD_TYPE(T, m, type) \
    static_assert(std::is_same<decltype(T::m), type>::value, \
                  #T "::" #m " must be " #type)

FIELD_TYPE(CMPIValuePtr, ptr, void *);
FIELD_TYPE(CMPIValuePtr, length, CMPICount);
FIELD_TYPE(CMPIData, type, CMPIType);
FIELD_TYPE(CMPIData, state, CMPIValueState);
FIELD_TYPE(CMPIData, value, CMPIValue);
FIELD_TYPE(CMPIStatus, rc, CMPIrc);
FIELD_TYPE(CMPIStatus, msg, CMPIString *);

FIELD_TYPE(CMPIBrokerFT, brokerCapabilities, unsigned int);
FIELD_TYPE(CMPIBrokerFT, brokerVersion, unsigned int);
FIELD_TYPE(CMPIBrokerFT, brokerName, const char *);
FIELD_TYPE(CMPIBroker, hdl, void *);
FIELD_TYPE(CMPIBroker, bft, CMPIBrokerFT *);
FIELD_TYPE(CMPIBroker, eft, CMPIBrokerEncFT *);
FIELD_TYPE(CMPIBroker, xft, CMPIBrokerExtFT *);

#define OBJECT_FIELDS(T) \
    FIELD_TYPE(T, hdl, void *); \
    FIELD_TYPE(T, ft, T##FT *); \
    FIELD_TYPE(T##FT, ftVersion, int)
OBJECT_FIELDS(CMPIContext);
OBJECT_FIELDS(CMPIResult);
OBJECT_FIELDS(CMPIInstance);
OBJECT_FIELDS(CMPIObjectPath);
OBJECT_FIELDS(CMPISelectExp);
OBJECT_FIELDS(CMPISelectCond);
OBJECT_FIELDS(CMPISubCond);
OBJECT_FIELDS(CMPIPredicate);
OBJECT_FIELDS(CMPIArgs);
OBJECT_FIELDS(CMPIString);
OBJECT_FIELDS(CMPIArray);
OBJECT_FIELDS(CMPIEnumeration);
OBJECT_FIELDS(CMPIDateTime);
FIELD_TYPE(CMPIBrokerEncFT, ftVersion, int);
FIELD_TYPE(CMPIBrokerExtFT, ftVersion, int);

#define MI_FIELDS(T) \
    OBJECT_FIELDS(T); \
    FIELD_TYPE(T##FT, miVersion, int); \
    FIELD_TYPE(T##FT, miName, const char *)
MI_FIELDS(CMPIInstanceMI);
MI_FIELDS(CMPIAssociationMI);
MI_FIELDS(CMPIMethodMI);
MI_FIELDS(CMPIPropertyMI);
MI_FIELDS(CMPIIndicationMI);

// ----------------------------------------------------------- broker tables

TEST(CmpiFunctionTables, BrokerFT)
{
    EXPECT_EQ(offsetof(CMPIBrokerFT, brokerCapabilities), 0u);
    EXPECT_EQ(offsetof(CMPIBrokerFT, brokerVersion), sizeof(unsigned int));
    expectSlots("CMPIBrokerFT", 2 * sizeof(unsigned int),
                {MEMBER(CMPIBrokerFT, brokerName),
                 MEMBER(CMPIBrokerFT, prepareAttachThread),
                 MEMBER(CMPIBrokerFT, attachThread),
                 MEMBER(CMPIBrokerFT, detachThread),
                 MEMBER(CMPIBrokerFT, deliverIndication),
                 MEMBER(CMPIBrokerFT, enumerateInstanceNames),
                 MEMBER(CMPIBrokerFT, getInstance),
                 MEMBER(CMPIBrokerFT, createInstance),
                 MEMBER(CMPIBrokerFT, modifyInstance),
                 MEMBER(CMPIBrokerFT, deleteInstance),
                 MEMBER(CMPIBrokerFT, execQuery),
                 MEMBER(CMPIBrokerFT, enumerateInstances),
                 MEMBER(CMPIBrokerFT, associators),
                 MEMBER(CMPIBrokerFT, associatorNames),
                 MEMBER(CMPIBrokerFT, references),
                 MEMBER(CMPIBrokerFT, referenceNames),
                 MEMBER(CMPIBrokerFT, invokeMethod),
                 MEMBER(CMPIBrokerFT, setProperty),
                 MEMBER(CMPIBrokerFT, getProperty)},
                sizeof(CMPIBrokerFT));
}

TEST(CmpiFunctionTables, BrokerEncFT)
{
    EXPECT_EQ(offsetof(CMPIBrokerEncFT, ftVersion), 0u);
    expectSlots("CMPIBrokerEncFT", FT,
                {MEMBER(CMPIBrokerEncFT, newInstance),
                 MEMBER(CMPIBrokerEncFT, newObjectPath),
                 MEMBER(CMPIBrokerEncFT, newArgs),
                 MEMBER(CMPIBrokerEncFT, newString),
                 MEMBER(CMPIBrokerEncFT, newArray),
                 MEMBER(CMPIBrokerEncFT, newDateTime),
                 MEMBER(CMPIBrokerEncFT, newDateTimeFromBinary),
                 MEMBER(CMPIBrokerEncFT, newDateTimeFromChars),
                 MEMBER(CMPIBrokerEncFT, newSelectExp),
                 MEMBER(CMPIBrokerEncFT, classPathIsA),
                 MEMBER(CMPIBrokerEncFT, toString),
                 MEMBER(CMPIBrokerEncFT, isOfType),
                 MEMBER(CMPIBrokerEncFT, getType),
                 MEMBER(CMPIBrokerEncFT, getMessage),
                 MEMBER(CMPIBrokerEncFT, logMessage),
                 MEMBER(CMPIBrokerEncFT, trace)},
                sizeof(CMPIBrokerEncFT));
}

TEST(CmpiFunctionTables, BrokerExtFT)
{
    EXPECT_EQ(offsetof(CMPIBrokerExtFT, ftVersion), 0u);
    expectSlots("CMPIBrokerExtFT", FT,
                {MEMBER(CMPIBrokerExtFT, resolveFileName),
                 MEMBER(CMPIBrokerExtFT, newThread),
                 MEMBER(CMPIBrokerExtFT, joinThread),
                 MEMBER(CMPIBrokerExtFT, exitThread),
                 MEMBER(CMPIBrokerExtFT, cancelThread),
                 MEMBER(CMPIBrokerExtFT, threadSleep),
                 MEMBER(CMPIBrokerExtFT, threadOnce),
                 MEMBER(CMPIBrokerExtFT, createThreadKey),
                 MEMBER(CMPIBrokerExtFT, destroyThreadKey),
                 MEMBER(CMPIBrokerExtFT, getThreadSpecific),
                 MEMBER(CMPIBrokerExtFT, setThreadSpecific),
                 MEMBER(CMPIBrokerExtFT, newMutex),
                 MEMBER(CMPIBrokerExtFT, destroyMutex),
                 MEMBER(CMPIBrokerExtFT, lockMutex),
                 MEMBER(CMPIBrokerExtFT, unlockMutex),
                 MEMBER(CMPIBrokerExtFT, newCondition),
                 MEMBER(CMPIBrokerExtFT, destroyCondition),
                 MEMBER(CMPIBrokerExtFT, condWait),
                 MEMBER(CMPIBrokerExtFT, timedCondWait),
                 MEMBER(CMPIBrokerExtFT, signalCondition)},
                sizeof(CMPIBrokerExtFT));

    // The broker hands these straight to pthreads.
    EXPECT_TRUE((std::is_same<CMPI_THREAD_KEY_TYPE, pthread_key_t>::value));
    EXPECT_TRUE((std::is_same<CMPI_THREAD_RETURN, void *>::value));
    EXPECT_TRUE((std::is_same<CMPI_THREAD_TYPE, void *>::value));
    EXPECT_TRUE((std::is_same<CMPI_MUTEX_TYPE, void *>::value));
    EXPECT_TRUE((std::is_same<CMPI_COND_TYPE, void *>::value));
}

TEST(CmpiFunctionTables, BrokerRecord)
{
    expectSlots("CMPIBroker", 0,
                {MEMBER(CMPIBroker, hdl), MEMBER(CMPIBroker, bft),
                 MEMBER(CMPIBroker, eft), MEMBER(CMPIBroker, xft)},
                sizeof(CMPIBroker));
}

// ------------------------------------------------ encapsulated-object tables

TEST(CmpiFunctionTables, ContextFT)
{
    expectSlots("CMPIContextFT", FT,
                {MEMBER(CMPIContextFT, release), MEMBER(CMPIContextFT, clone),
                 MEMBER(CMPIContextFT, getEntry),
                 MEMBER(CMPIContextFT, getEntryAt),
                 MEMBER(CMPIContextFT, getEntryCount),
                 MEMBER(CMPIContextFT, addEntry)},
                sizeof(CMPIContextFT));
}

TEST(CmpiFunctionTables, ResultFT)
{
    expectSlots("CMPIResultFT", FT,
                {MEMBER(CMPIResultFT, release), MEMBER(CMPIResultFT, clone),
                 MEMBER(CMPIResultFT, returnData),
                 MEMBER(CMPIResultFT, returnInstance),
                 MEMBER(CMPIResultFT, returnObjectPath),
                 MEMBER(CMPIResultFT, returnDone)},
                sizeof(CMPIResultFT));
}

TEST(CmpiFunctionTables, InstanceFT)
{
    expectSlots("CMPIInstanceFT", FT,
                {MEMBER(CMPIInstanceFT, release),
                 MEMBER(CMPIInstanceFT, clone),
                 MEMBER(CMPIInstanceFT, getProperty),
                 MEMBER(CMPIInstanceFT, getPropertyAt),
                 MEMBER(CMPIInstanceFT, getPropertyCount),
                 MEMBER(CMPIInstanceFT, setProperty),
                 MEMBER(CMPIInstanceFT, getObjectPath),
                 MEMBER(CMPIInstanceFT, setPropertyFilter),
                 MEMBER(CMPIInstanceFT, setObjectPath)},
                sizeof(CMPIInstanceFT));
}

TEST(CmpiFunctionTables, ObjectPathFT)
{
    expectSlots("CMPIObjectPathFT", FT,
                {MEMBER(CMPIObjectPathFT, release),
                 MEMBER(CMPIObjectPathFT, clone),
                 MEMBER(CMPIObjectPathFT, setNameSpace),
                 MEMBER(CMPIObjectPathFT, getNameSpace),
                 MEMBER(CMPIObjectPathFT, setHostname),
                 MEMBER(CMPIObjectPathFT, getHostname),
                 MEMBER(CMPIObjectPathFT, setClassName),
                 MEMBER(CMPIObjectPathFT, getClassName),
                 MEMBER(CMPIObjectPathFT, addKey),
                 MEMBER(CMPIObjectPathFT, getKey),
                 MEMBER(CMPIObjectPathFT, getKeyAt),
                 MEMBER(CMPIObjectPathFT, getKeyCount),
                 MEMBER(CMPIObjectPathFT, setNameSpaceFromObjectPath),
                 MEMBER(CMPIObjectPathFT, setHostAndNameSpaceFromObjectPath),
                 MEMBER(CMPIObjectPathFT, getClassQualifier),
                 MEMBER(CMPIObjectPathFT, getPropertyQualifier),
                 MEMBER(CMPIObjectPathFT, getMethodQualifier),
                 MEMBER(CMPIObjectPathFT, getParameterQualifier),
                 MEMBER(CMPIObjectPathFT, toString)},
                sizeof(CMPIObjectPathFT));
}

TEST(CmpiFunctionTables, ArgsFT)
{
    expectSlots("CMPIArgsFT", FT,
                {MEMBER(CMPIArgsFT, release), MEMBER(CMPIArgsFT, clone),
                 MEMBER(CMPIArgsFT, addArg), MEMBER(CMPIArgsFT, getArg),
                 MEMBER(CMPIArgsFT, getArgAt),
                 MEMBER(CMPIArgsFT, getArgCount)},
                sizeof(CMPIArgsFT));
}

TEST(CmpiFunctionTables, StringFT)
{
    expectSlots("CMPIStringFT", FT,
                {MEMBER(CMPIStringFT, release), MEMBER(CMPIStringFT, clone),
                 MEMBER(CMPIStringFT, getCharPtr)},
                sizeof(CMPIStringFT));
}

TEST(CmpiFunctionTables, ArrayFT)
{
    expectSlots("CMPIArrayFT", FT,
                {MEMBER(CMPIArrayFT, release), MEMBER(CMPIArrayFT, clone),
                 MEMBER(CMPIArrayFT, getSize),
                 MEMBER(CMPIArrayFT, getSimpleType),
                 MEMBER(CMPIArrayFT, getElementAt),
                 MEMBER(CMPIArrayFT, setElementAt)},
                sizeof(CMPIArrayFT));
}

TEST(CmpiFunctionTables, EnumerationFT)
{
    expectSlots("CMPIEnumerationFT", FT,
                {MEMBER(CMPIEnumerationFT, release),
                 MEMBER(CMPIEnumerationFT, clone),
                 MEMBER(CMPIEnumerationFT, getNext),
                 MEMBER(CMPIEnumerationFT, hasNext),
                 MEMBER(CMPIEnumerationFT, toArray)},
                sizeof(CMPIEnumerationFT));
}

TEST(CmpiFunctionTables, DateTimeFT)
{
    expectSlots("CMPIDateTimeFT", FT,
                {MEMBER(CMPIDateTimeFT, release),
                 MEMBER(CMPIDateTimeFT, clone),
                 MEMBER(CMPIDateTimeFT, getBinaryFormat),
                 MEMBER(CMPIDateTimeFT, getStringFormat),
                 MEMBER(CMPIDateTimeFT, isInterval)},
                sizeof(CMPIDateTimeFT));
}

TEST(CmpiFunctionTables, QueryTables)
{
    expectSlots("CMPISelectExpFT", FT,
                {MEMBER(CMPISelectExpFT, release),
                 MEMBER(CMPISelectExpFT, clone),
                 MEMBER(CMPISelectExpFT, evaluate),
                 MEMBER(CMPISelectExpFT, getString),
                 MEMBER(CMPISelectExpFT, getDOC),
                 MEMBER(CMPISelectExpFT, getCOD),
                 MEMBER(CMPISelectExpFT, evaluateUsingAccessor)},
                sizeof(CMPISelectExpFT));
    expectSlots("CMPISelectCondFT", FT,
                {MEMBER(CMPISelectCondFT, release),
                 MEMBER(CMPISelectCondFT, clone),
                 MEMBER(CMPISelectCondFT, getCountAndType),
                 MEMBER(CMPISelectCondFT, getSubCondAt)},
                sizeof(CMPISelectCondFT));
    expectSlots("CMPISubCondFT", FT,
                {MEMBER(CMPISubCondFT, release), MEMBER(CMPISubCondFT, clone),
                 MEMBER(CMPISubCondFT, getCount),
                 MEMBER(CMPISubCondFT, getPredicateAt),
                 MEMBER(CMPISubCondFT, getPredicate)},
                sizeof(CMPISubCondFT));
    expectSlots("CMPIPredicateFT", FT,
                {MEMBER(CMPIPredicateFT, release),
                 MEMBER(CMPIPredicateFT, clone),
                 MEMBER(CMPIPredicateFT, getData),
                 MEMBER(CMPIPredicateFT, evaluateUsingAccessor)},
                sizeof(CMPIPredicateFT));
}

// Every encapsulated object is {hdl, ft}: brokers and providers reach the
// function table of objects they did not create through this pair.
TEST(CmpiFunctionTables, EncapsulatedRecords)
{
#define RECORD(T) \
    expectSlots(#T, 0, {MEMBER(T, hdl), MEMBER(T, ft)}, sizeof(T))
    RECORD(CMPIContext);
    RECORD(CMPIResult);
    RECORD(CMPIInstance);
    RECORD(CMPIObjectPath);
    RECORD(CMPISelectExp);
    RECORD(CMPISelectCond);
    RECORD(CMPISubCond);
    RECORD(CMPIPredicate);
    RECORD(CMPIArgs);
    RECORD(CMPIString);
    RECORD(CMPIArray);
    RECORD(CMPIEnumeration);
    RECORD(CMPIDateTime);
    RECORD(CMPIInstanceMI);
    RECORD(CMPIAssociationMI);
    RECORD(CMPIMethodMI);
    RECORD(CMPIPropertyMI);
    RECORD(CMPIIndicationMI);
#undef RECORD
}

// ------------------------------------------------------ provider (MI) tables

TEST(CmpiFunctionTables, InstanceMIFT)
{
    EXPECT_EQ(offsetof(CMPIInstanceMIFT, ftVersion), 0u);
    EXPECT_EQ(offsetof(CMPIInstanceMIFT, miVersion), sizeof(int));
    expectSlots("CMPIInstanceMIFT", MIFT,
                {MEMBER(CMPIInstanceMIFT, miName),
                 MEMBER(CMPIInstanceMIFT, cleanup),
                 MEMBER(CMPIInstanceMIFT, enumerateInstanceNames),
                 MEMBER(CMPIInstanceMIFT, enumerateInstances),
                 MEMBER(CMPIInstanceMIFT, getInstance),
                 MEMBER(CMPIInstanceMIFT, createInstance),
                 MEMBER(CMPIInstanceMIFT, modifyInstance),
                 MEMBER(CMPIInstanceMIFT, deleteInstance),
                 MEMBER(CMPIInstanceMIFT, execQuery)},
                sizeof(CMPIInstanceMIFT));
}

TEST(CmpiFunctionTables, AssociationMIFT)
{
    EXPECT_EQ(offsetof(CMPIAssociationMIFT, miVersion), sizeof(int));
    expectSlots("CMPIAssociationMIFT", MIFT,
                {MEMBER(CMPIAssociationMIFT, miName),
                 MEMBER(CMPIAssociationMIFT, cleanup),
                 MEMBER(CMPIAssociationMIFT, associators),
                 MEMBER(CMPIAssociationMIFT, associatorNames),
                 MEMBER(CMPIAssociationMIFT, references),
                 MEMBER(CMPIAssociationMIFT, referenceNames)},
                sizeof(CMPIAssociationMIFT));
}

TEST(CmpiFunctionTables, MethodMIFT)
{
    EXPECT_EQ(offsetof(CMPIMethodMIFT, miVersion), sizeof(int));
    expectSlots("CMPIMethodMIFT", MIFT,
                {MEMBER(CMPIMethodMIFT, miName),
                 MEMBER(CMPIMethodMIFT, cleanup),
                 MEMBER(CMPIMethodMIFT, invokeMethod)},
                sizeof(CMPIMethodMIFT));
}

TEST(CmpiFunctionTables, PropertyMIFT)
{
    EXPECT_EQ(offsetof(CMPIPropertyMIFT, miVersion), sizeof(int));
    expectSlots("CMPIPropertyMIFT", MIFT,
                {MEMBER(CMPIPropertyMIFT, miName),
                 MEMBER(CMPIPropertyMIFT, cleanup),
                 MEMBER(CMPIPropertyMIFT, setProperty),
                 MEMBER(CMPIPropertyMIFT, getProperty)},
                sizeof(CMPIPropertyMIFT));
}

TEST(CmpiFunctionTables, IndicationMIFT)
{
    EXPECT_EQ(offsetof(CMPIIndicationMIFT, miVersion), sizeof(int));
    expectSlots("CMPIIndicationMIFT", MIFT,
                {MEMBER(CMPIIndicationMIFT, miName),
                 MEMBER(CMPIIndicationMIFT, cleanup),
                 MEMBER(CMPIIndicationMIFT, authorizeFilter),
                 MEMBER(CMPIIndicationMIFT, mustPoll),
                 MEMBER(CMPIIndicationMIFT, activateFilter),
                 MEMBER(CMPIIndicationMIFT, deActivateFilter),
                 MEMBER(CMPIIndicationMIFT, enableIndications),
                 MEMBER(CMPIIndicationMIFT, disableIndications)},
                sizeof(CMPIIndicationMIFT));
}

// Struct return values travel differently from scalars (hidden pointer on
// i386), so the return types of the slots are as much part of the interface
// as their positions. These are the ones easy to get wrong.
template <typename Fn> struct Returns;
template <typename R, typename... A> struct Returns<R (*)(A...)>
{
    using type = R;
};
template <typename R, typename... A> struct Returns<R (*)(A..., ...)>
{
    using type = R;
};
#define RETURN_OF(T, m) typename Returns<decltype(T::m)>::type

template <typename = void> constexpr bool returnTypesArePinned()
{
    static_assert(std::is_same<RETURN_OF(CMPIIndicationMIFT, enableIndications),
                               CMPIStatus>::value,
                  "enableIndications returns CMPIStatus");
    static_assert(std::is_same<RETURN_OF(CMPIIndicationMIFT, disableIndications),
                               CMPIStatus>::value,
                  "disableIndications returns CMPIStatus");
    static_assert(std::is_same<RETURN_OF(CMPIBrokerFT, invokeMethod),
                               CMPIData>::value,
                  "broker invokeMethod returns CMPIData");
    static_assert(std::is_same<RETURN_OF(CMPIBrokerFT, getProperty),
                               CMPIData>::value,
                  "broker getProperty returns CMPIData");
    static_assert(std::is_same<RETURN_OF(CMPIBrokerFT, modifyInstance),
                               CMPIStatus>::value,
                  "broker modifyInstance returns CMPIStatus");
    static_assert(std::is_same<RETURN_OF(CMPIBrokerEncFT, logMessage),
                               CMPIStatus>::value,
                  "logMessage returns CMPIStatus");
    static_assert(std::is_same<RETURN_OF(CMPIBrokerEncFT, getMessage),
                               CMPIString *>::value,
                  "getMessage returns CMPIString *");
    static_assert(std::is_same<RETURN_OF(CMPIArrayFT, getSimpleType),
                               CMPIType>::value,
                  "getSimpleType returns CMPIType");
    static_assert(std::is_same<RETURN_OF(CMPIDateTimeFT, getBinaryFormat),
                               CMPIUint64>::value,
                  "getBinaryFormat returns CMPIUint64");
    static_assert(std::is_same<RETURN_OF(CMPIEnumerationFT, hasNext),
                               CMPIBoolean>::value,
                  "hasNext returns CMPIBoolean");
    static_assert(std::is_same<RETURN_OF(CMPIPropertyMIFT, setProperty),
                               CMPIStatus>::value,
                  "property MI setProperty returns CMPIStatus");
    static_assert(std::is_same<decltype(CMPIPropertyMIFT::setProperty),
                               CMPIStatus (*)(CMPIPropertyMI *,
                                              const CMPIContext *,
                                              const CMPIResult *,
                                              const CMPIObjectPath *,
                                              const char *,
                                              const CMPIData)>::value,
                  "property MI setProperty takes the CMPIData by value");
    return true;
}

TEST(CmpiFunctionTables, StructReturnsArePinned)
{
    EXPECT_TRUE(returnTypesArePinned());
}

// ------------------------------------------------------------ alias names

TEST(CmpiMemberAliases, AlternativeSpellingsShareOneSlot)
{
    EXPECT_EQ(offsetof(CMPIBrokerFT, enumInstanceNames),
              offsetof(CMPIBrokerFT, enumerateInstanceNames));
    EXPECT_EQ(offsetof(CMPIBrokerFT, enumInstances),
              offsetof(CMPIBrokerFT, enumerateInstances));
    EXPECT_EQ(offsetof(CMPIInstanceMIFT, enumInstanceNames),
              offsetof(CMPIInstanceMIFT, enumerateInstanceNames));
    EXPECT_EQ(offsetof(CMPIInstanceMIFT, enumInstances),
              offsetof(CMPIInstanceMIFT, enumerateInstances));
    EXPECT_EQ(offsetof(CMPIBrokerEncFT, newDateTimeFromString),
              offsetof(CMPIBrokerEncFT, newDateTimeFromChars));

    EXPECT_TRUE((std::is_same<decltype(CMPIBrokerFT::enumInstanceNames),
                              decltype(CMPIBrokerFT::enumerateInstanceNames)>::value));
    EXPECT_TRUE((std::is_same<decltype(CMPIBrokerFT::enumInstances),
                              decltype(CMPIBrokerFT::enumerateInstances)>::value));
    EXPECT_TRUE((std::is_same<decltype(CMPIInstanceMIFT::enumInstanceNames),
                              decltype(CMPIInstanceMIFT::enumerateInstanceNames)>::value));
    EXPECT_TRUE((std::is_same<decltype(CMPIInstanceMIFT::enumInstances),
                              decltype(CMPIInstanceMIFT::enumerateInstances)>::value));
    EXPECT_TRUE((std::is_same<decltype(CMPIBrokerEncFT::newDateTimeFromString),
                              decltype(CMPIBrokerEncFT::newDateTimeFromChars)>::value));
}

CMPIStatus aliasEnumNames(CMPIInstanceMI *, const CMPIContext *,
                          const CMPIResult *, const CMPIObjectPath *)
{
    return CMPIStatus{CMPI_RC_ERR_NOT_FOUND, nullptr};
}

CMPIDateTime *aliasNewDateTime(const CMPIBroker *, const char *, CMPIStatus *)
{
    return nullptr;
}

TEST(CmpiMemberAliases, WritingOneSpellingIsSeenThroughTheOther)
{
    CMPIInstanceMIFT mift;
    std::memset(&mift, 0, sizeof mift);
    mift.enumInstanceNames = aliasEnumNames;
    EXPECT_EQ(mift.enumerateInstanceNames, &aliasEnumNames);
    EXPECT_EQ(mift.enumerateInstanceNames(nullptr, nullptr, nullptr, nullptr).rc,
              CMPI_RC_ERR_NOT_FOUND);
    EXPECT_EQ(mift.enumerateInstances, nullptr) << "neighbouring slot touched";

    CMPIBrokerEncFT eft;
    std::memset(&eft, 0, sizeof eft);
    eft.newDateTimeFromChars = aliasNewDateTime;
    EXPECT_EQ(eft.newDateTimeFromString, &aliasNewDateTime);
    EXPECT_EQ(eft.newSelectExp, nullptr) << "neighbouring slot touched";
}

// ----------------------------------------------------- C and C++ agreement

#define LAYOUT_NAME_OF_TYPE(T) "sizeof(" #T ")",
#define LAYOUT_NAME_OF_MEMBER(T, m) "offsetof(" #T ", " #m ")",
#define LAYOUT_SIZE(T) sizeof(T),
#define LAYOUT_OFFSET(T, m) offsetof(T, m),

const char *const layoutNames[] = {CMPI_LAYOUT_TYPES(LAYOUT_NAME_OF_TYPE)
                                       CMPI_LAYOUT_MEMBERS(LAYOUT_NAME_OF_MEMBER)};
const std::size_t layoutCxx[] = {CMPI_LAYOUT_TYPES(LAYOUT_SIZE)
                                     CMPI_LAYOUT_MEMBERS(LAYOUT_OFFSET)};
constexpr std::size_t layoutCount = sizeof(layoutCxx) / sizeof(layoutCxx[0]);

void expectSameLayout(const char *what, const std::size_t *c, std::size_t count)
{
    ASSERT_EQ(count, layoutCount) << what << " probe lists other members";
    for (std::size_t i = 0; i < layoutCount; ++i) {
        EXPECT_EQ(c[i], layoutCxx[i]) << layoutNames[i] << " differs in " << what;
    }
}

TEST(CmpiLanguageAgreement, C89BuildWithAliasesMatchesCxx)
{
    expectSameLayout("C89 with member aliases", cmpi_layout_c_aliases,
                     cmpi_layout_c_aliases_count);
}

TEST(CmpiLanguageAgreement, C89BuildWithoutAliasesMatchesCxx)
{
    expectSameLayout("C89 without member aliases", cmpi_layout_c_plain,
                     cmpi_layout_c_plain_count);
}

// --------------------------------------------------------------- constants

TEST(CmpiConstants, TypeCodes)
{
    EXPECT_EQ(CMPI_null, 0);
    EXPECT_EQ(CMPI_SIMPLE, 2);
    EXPECT_EQ(CMPI_boolean, 2);
    EXPECT_EQ(CMPI_char16, 3);
    EXPECT_EQ(CMPI_REAL, 8);
    EXPECT_EQ(CMPI_real32, 8);
    EXPECT_EQ(CMPI_real64, 12);
    EXPECT_EQ(CMPI_UINT, 128);
    EXPECT_EQ(CMPI_uint8, 128);
    EXPECT_EQ(CMPI_uint16, 144);
    EXPECT_EQ(CMPI_uint32, 160);
    EXPECT_EQ(CMPI_uint64, 176);
    EXPECT_EQ(CMPI_SINT, 192);
    EXPECT_EQ(CMPI_sint8, 192);
    EXPECT_EQ(CMPI_sint16, 208);
    EXPECT_EQ(CMPI_sint32, 224);
    EXPECT_EQ(CMPI_sint64, 240);
    EXPECT_EQ(CMPI_INTEGER, 192);
    EXPECT_EQ(CMPI_ENC, 4096);
    EXPECT_EQ(CMPI_instance, 4096);
    EXPECT_EQ(CMPI_ref, 4352);
    EXPECT_EQ(CMPI_args, 4608);
    EXPECT_EQ(CMPI_class, 4864);
    EXPECT_EQ(CMPI_filter, 5120);
    EXPECT_EQ(CMPI_enumeration, 5376);
    EXPECT_EQ(CMPI_string, 5632);
    EXPECT_EQ(CMPI_chars, 5888);
    EXPECT_EQ(CMPI_dateTime, 6144);
    EXPECT_EQ(CMPI_ptr, 6400);
    EXPECT_EQ(CMPI_charsptr, 6656);
}

TEST(CmpiConstants, ArrayTypeCodes)
{
    EXPECT_EQ(CMPI_ARRAY, 0x2000);
    EXPECT_EQ(CMPI_SIMPLEA, 0x2002);
    EXPECT_EQ(CMPI_booleanA, 0x2002);
    EXPECT_EQ(CMPI_char16A, 0x2003);
    EXPECT_EQ(CMPI_REALA, 0x2008);
    EXPECT_EQ(CMPI_real32A, 0x2008);
    EXPECT_EQ(CMPI_real64A, 0x200C);
    EXPECT_EQ(CMPI_UINTA, 0x2080);
    EXPECT_EQ(CMPI_uint8A, 0x2080);
    EXPECT_EQ(CMPI_uint16A, 0x2090);
    EXPECT_EQ(CMPI_uint32A, 0x20A0);
    EXPECT_EQ(CMPI_uint64A, 0x20B0);
    EXPECT_EQ(CMPI_SINTA, 0x20C0);
    EXPECT_EQ(CMPI_sint8A, 0x20C0);
    EXPECT_EQ(CMPI_sint16A, 0x20D0);
    EXPECT_EQ(CMPI_sint32A, 0x20E0);
    EXPECT_EQ(CMPI_sint64A, 0x20F0);
    EXPECT_EQ(CMPI_INTEGERA, 0x20C0);
    EXPECT_EQ(CMPI_ENCA, 0x3000);
    EXPECT_EQ(CMPI_stringA, 0x3600);
    EXPECT_EQ(CMPI_charsA, 0x3700);
    EXPECT_EQ(CMPI_dateTimeA, 0x3800);
    EXPECT_EQ(CMPI_instanceA, 0x3000);
    EXPECT_EQ(CMPI_refA, 0x3100);
    EXPECT_EQ(CMPI_charsptrA, 0x3A00);
}

TEST(CmpiConstants, KeyPredicateAndSynonymTypeCodes)
{
    EXPECT_EQ(CMPI_keyInteger, 240);
    EXPECT_EQ(CMPI_keyString, 5632);
    EXPECT_EQ(CMPI_keyBoolean, 2);
    EXPECT_EQ(CMPI_keyRef, 4352);

    EXPECT_EQ(CMPI_charString, 0x1600);
    EXPECT_EQ(CMPI_integerString, 0x16F0);
    EXPECT_EQ(CMPI_realString, 0x160C);
    EXPECT_EQ(CMPI_numericString, 0x16FC);
    EXPECT_EQ(CMPI_booleanString, 0x1602);
    EXPECT_EQ(CMPI_dateTimeString, 0x1E00);
    EXPECT_EQ(CMPI_classNameString, 0x1700);
    EXPECT_EQ(CMPI_nameString, 0x1E00);

    EXPECT_EQ(CMPI_Byte, CMPI_sint8);
    EXPECT_EQ(CMPI_Short, CMPI_sint16);
    EXPECT_EQ(CMPI_Int, CMPI_sint32);
    EXPECT_EQ(CMPI_Long, CMPI_sint64);
    EXPECT_EQ(CMPI_Float, CMPI_real32);
    EXPECT_EQ(CMPI_Double, CMPI_real64);
    EXPECT_EQ(CMPI_ByteA, 0x20C0);
    EXPECT_EQ(CMPI_ShortA, 0x20D0);
    EXPECT_EQ(CMPI_IntA, 0x20E0);
    EXPECT_EQ(CMPI_LongA, 0x20F0);
    EXPECT_EQ(CMPI_FloatA, 0x2008);
    EXPECT_EQ(CMPI_DoubleA, 0x200C);
}

TEST(CmpiConstants, ValueStates)
{
    EXPECT_EQ(CMPI_goodValue, 0);
    EXPECT_EQ(CMPI_nullValue, 0x0100);
    EXPECT_EQ(CMPI_keyValue, 0x0200);
    EXPECT_EQ(CMPI_notFound, 0x0400);
    EXPECT_EQ(CMPI_badValue, 0x8000);
}

TEST(CmpiConstants, ReturnCodes)
{
    EXPECT_EQ(CMPI_RC_OK, 0);
    EXPECT_EQ(CMPI_RC_ERR_FAILED, 1);
    EXPECT_EQ(CMPI_RC_ERR_ACCESS_DENIED, 2);
    EXPECT_EQ(CMPI_RC_ERR_INVALID_NAMESPACE, 3);
    EXPECT_EQ(CMPI_RC_ERR_INVALID_PARAMETER, 4);
    EXPECT_EQ(CMPI_RC_ERR_INVALID_CLASS, 5);
    EXPECT_EQ(CMPI_RC_ERR_NOT_FOUND, 6);
    EXPECT_EQ(CMPI_RC_ERR_NOT_SUPPORTED, 7);
    EXPECT_EQ(CMPI_RC_ERR_CLASS_HAS_CHILDREN, 8);
    EXPECT_EQ(CMPI_RC_ERR_CLASS_HAS_INSTANCES, 9);
    EXPECT_EQ(CMPI_RC_ERR_INVALID_SUPERCLASS, 10);
    EXPECT_EQ(CMPI_RC_ERR_ALREADY_EXISTS, 11);
    EXPECT_EQ(CMPI_RC_ERR_NO_SUCH_PROPERTY, 12);
    EXPECT_EQ(CMPI_RC_ERR_TYPE_MISMATCH, 13);
    EXPECT_EQ(CMPI_RC_ERR_QUERY_LANGUAGE_NOT_SUPPORTED, 14);
    EXPECT_EQ(CMPI_RC_ERR_INVALID_QUERY, 15);
    EXPECT_EQ(CMPI_RC_ERR_METHOD_NOT_AVAILABLE, 16);
    EXPECT_EQ(CMPI_RC_ERR_METHOD_NOT_FOUND, 17);
    EXPECT_EQ(CMPI_RC_NO_MORE_ELEMENTS, 18);
    EXPECT_EQ(CMPI_RC_DO_NOT_UNLOAD, 50);
    EXPECT_EQ(CMPI_RC_NEVER_UNLOAD, 51);
    EXPECT_EQ(CMPI_RC_ERR_INVALID_HANDLE, 60);
    EXPECT_EQ(CMPI_RC_ERR_INVALID_DATA_TYPE, 61);
    EXPECT_EQ(CMPI_RC_ERROR_SYSTEM, 100);
    EXPECT_EQ(CMPI_RC_ERROR, 200);
}

TEST(CmpiConstants, SeveritiesLevelsAndConditions)
{
    EXPECT_EQ(CMPI_SEV_ERROR, 1);
    EXPECT_EQ(CMPI_SEV_INFO, 2);
    EXPECT_EQ(CMPI_SEV_WARNING, 3);
    EXPECT_EQ(CMPI_DEV_DEBUG, 4);

    EXPECT_EQ(CMPI_LEV_INFO, 1);
    EXPECT_EQ(CMPI_LEV_WARNING, 2);
    EXPECT_EQ(CMPI_LEV_VERBOSE, 3);

    EXPECT_EQ(CMPI_COND_DOC, 0);
    EXPECT_EQ(CMPI_COND_COD, 1);

    EXPECT_EQ(CMPI_PredOp_Equals, 1);
    EXPECT_EQ(CMPI_PredOp_NotEquals, 2);
    EXPECT_EQ(CMPI_PredOp_LessThan, 3);
    EXPECT_EQ(CMPI_PredOp_GreaterThanOrEquals, 4);
    EXPECT_EQ(CMPI_PredOp_GreaterThan, 5);
    EXPECT_EQ(CMPI_PredOp_LessThanOrEquals, 6);
    EXPECT_EQ(CMPI_PredOp_Isa, 7);
    EXPECT_EQ(CMPI_PredOp_NotIsa, 8);
    EXPECT_EQ(CMPI_PredOp_Like, 9);
    EXPECT_EQ(CMPI_PredOp_NotLike, 10);
}

TEST(CmpiConstants, FlagsContextNamesAndCapabilities)
{
    EXPECT_EQ(CMPI_FLAG_LocalOnly, 1);
    EXPECT_EQ(CMPI_FLAG_DeepInheritance, 2);
    EXPECT_EQ(CMPI_FLAG_IncludeQualifiers, 4);
    EXPECT_EQ(CMPI_FLAG_IncludeClassOrigin, 8);

    EXPECT_STREQ(CMPIPrincipal, "CMPIPrincipal");
    EXPECT_STREQ(CMPIInvocationFlags, "CMPIInvocationFlags");
    EXPECT_STREQ(CMPIInitNameSpace, "CMPIInitNameSpace");
    EXPECT_STREQ(CMPIRole, "CMPIRole");
    EXPECT_STREQ(CMPIAcceptLanguage, "CMPIAcceptLanguage");
    EXPECT_STREQ(CMPIContentLanguage, "CMPIContentLanguage");

    EXPECT_EQ(CMPI_MB_Class_0, 0x1);
    EXPECT_EQ(CMPI_MB_Class_1, 0x3);
    EXPECT_EQ(CMPI_MB_Class_2, 0x7);
    EXPECT_EQ(CMPI_MB_Supports_PropertyMI, 0x100);
    EXPECT_EQ(CMPI_MB_Supports_IndicationMI, 0x200);
    EXPECT_EQ(CMPI_MB_Supports_IndicationPolling, 0x400);
    EXPECT_EQ(CMPI_MB_Supports_QueryNormalization, 0x800);
    EXPECT_EQ(CMPI_MB_Supports_Qualifier, 0x1000);
    EXPECT_EQ(CMPI_MB_Supports_Schema, 0x3000);
    EXPECT_EQ(CMPI_MB_BasicRead, 0x1);
    EXPECT_EQ(CMPI_MB_BasicWrite, 0x3);
    EXPECT_EQ(CMPI_MB_InstanceManipulation, 0x7);
    EXPECT_EQ(CMPI_MB_AssociationTraversal, 0x9);
    EXPECT_EQ(CMPI_MB_QueryExecution, 0x11);
    EXPECT_EQ(CMPI_MB_QueryNormalization, 0x31);
    EXPECT_EQ(CMPI_MB_Indications, 0x81);
    EXPECT_EQ(CMPI_MB_BasicQualifierSupport, 0x47);
    EXPECT_EQ(CMPI_MB_OSEncapsulationSupport, 0x100);
}

// ---------------------------------------------------------------- versions

TEST(CmpiVersions, VersionNumbers)
{
    EXPECT_EQ(CMPIVersion051, 51);
    EXPECT_EQ(CMPIVersion060, 60);
    EXPECT_EQ(CMPIVersion070, 70);
    EXPECT_EQ(CMPIVersion080, 80);
    EXPECT_EQ(CMPIVersion085, 85);
    EXPECT_EQ(CMPIVersion086, 86);
    EXPECT_EQ(CMPIVersion087, 87);
    EXPECT_EQ(CMPIVersion090, 90);
    EXPECT_EQ(CMPIVersion100, 100);
    EXPECT_EQ(CMPIVersion200, 200);
}

TEST(CmpiVersions, DefaultLevelIsOnePointZero)
{
#ifdef CMPI_VERSION
    FAIL() << "this file must be built without CMPI_VERSION";
#endif
    EXPECT_EQ(CMPICurrentVersion, 100);
    bool all = true;
#if !defined(CMPI_VER_100) || !defined(CMPI_VER_90) || !defined(CMPI_VER_87) || \
    !defined(CMPI_VER_86) || !defined(CMPI_VER_85) || !defined(CMPI_VER_80)
    all = false;
#endif
    EXPECT_TRUE(all) << "the default level must switch on every older level";
}

TEST(CmpiVersions, ExplicitOlderLevelIsHonoured)
{
    ASSERT_EQ(version_probe_requested, 86);
    EXPECT_EQ(version_probe_current, 86);
    // CMPI_VER_80, 85, 86 on; 87, 90, 100 off.
    EXPECT_EQ(version_probe_flags[0], 1);
    EXPECT_EQ(version_probe_flags[1], 1);
    EXPECT_EQ(version_probe_flags[2], 1);
    EXPECT_EQ(version_probe_flags[3], 0);
    EXPECT_EQ(version_probe_flags[4], 0);
    EXPECT_EQ(version_probe_flags[5], 0);
    // The tables the broker hands out do not change with the level.
    EXPECT_EQ(version_probe_instance_mift_size, sizeof(CMPIInstanceMIFT));
}

// ------------------------------------------------------------ value macros

TEST(CmpiValueMacros, StateAndTypeTests)
{
    CMPIData d;
    std::memset(&d, 0, sizeof d);
    d.type = CMPI_uint32A;
    d.state = CMPI_keyValue;
    EXPECT_TRUE(CMIsArray(d));
    EXPECT_TRUE(CMIsKeyValue(d));
    EXPECT_FALSE(CMIsNullValue(d));

    d.type = CMPI_uint32;
    d.state = CMPI_nullValue | CMPI_keyValue;
    EXPECT_FALSE(CMIsArray(d));
    EXPECT_TRUE(CMIsNullValue(d));
    EXPECT_TRUE(CMIsKeyValue(d));

    CMPIString nullHdl = {nullptr, nullptr};
    char text[] = "x";
    CMPIString withHdl = {text, nullptr};
    const CMPIString *none = nullptr;
    EXPECT_TRUE(CMIsNullObject(none));
    EXPECT_TRUE(CMIsNullObject(&nullHdl));
    EXPECT_FALSE(CMIsNullObject(&withHdl));
    EXPECT_EQ(CMGetCharPtr(&withHdl), text);
}

} // namespace
