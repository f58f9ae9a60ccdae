// The object registry: its singleton, clearing (order, ownership, reuse)
// and the select-expression stubs.
#include <functional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "CmpiTypesTestSupport.h"
#include "TCIMDateTime.h"
#include "TCIMReference.h"
#include "cmpiArgs.h"
#include "cmpiDateTime.h"
#include "cmpiEnumeration.h"
#include "cmpiInstance.h"
#include "cmpiResult.h"
#include "cmpiSelectExp.h"
#include "cmpiValue.h"

namespace CmpiTypesTest {
namespace {

using NVURZENTA20::ICIMInstance;
using NVURZENTA20::ICIMNamespace;
using NVURZENTA20::TCIMContext;
using NVURZENTA20::TCIMDateTime;
using NVURZENTA20::TCIMReference;

class RegistryClearTest : public RegistryTest {
protected:
    // A shared pointer to `object` whose last release is logged as `tag`.
    template <class T>
    boost::shared_ptr<T> Logged(const boost::shared_ptr<T>& object, const std::string& tag)
    {
        std::vector<std::string>* log = &fReleases;
        boost::shared_ptr<T> held = object;
        return boost::shared_ptr<T>(object.get(), [held, log, tag](T*) mutable {
            log->push_back(tag);
            held.reset();
        });
    }

    // One record of every kind.
    void RegisterOneOfEach()
    {
        Registry()->RegisterDateTime(newDateTimeRecord(newDateTime("20240101000000.000000+000")));
        Registry()->RegisterArray(newArrayRecord(newArrayStore(2, CMPI_uint8)));
        Registry()->RegisterEnumeration(new CMPIInstEnumeration(new TInstanceVector));
        params2CMPIArgs(&fParams);
        string2CMPIString("s");
        CMPIInstance* instance = newInstanceRecord(fRepository.NewInstance("one", 1));
        Registry()->RegisterInstance(instance);
        Registry()->RegisterObjectPath(ref2CMPIObjectPath(*new TCIMReference(TCIMReference::Parse("A.k=1"))));
        CMPIResult* result = newResultRecord();
        result->ft->returnInstance(result, instance);
        Registry()->RegisterResult(result);
    }

    TTestRepository fRepository;
    TCIMContext fParams;
    std::vector<std::string> fReleases;
};

TEST_F(RegistryClearTest, SingletonIsCreatedOnceAndStartsEmpty)
{
    EXPECT_EQ(CMPINSPInstanceRegistry::GetRegistrySingleton(), CMPINSPInstanceRegistry::GetRegistrySingleton());
    EXPECT_EQ(Registered(), 0u);
}

TEST_F(RegistryClearTest, ClearingAnEmptyRegistryAndClearingTwiceDoNothing)
{
    Registry()->ClearInstances();
    EXPECT_EQ(Registered(), 0u);
    RegisterOneOfEach();
    EXPECT_EQ(Registered(), 8u);
    Registry()->ClearInstances();
    EXPECT_EQ(Registered(), 0u);
    Registry()->ClearInstances();
    EXPECT_EQ(Registered(), 0u);
}

TEST_F(RegistryClearTest, RegistryIsUsableAgainAfterClearing)
{
    for (int round = 0; round < 3; ++round) {
        RegisterOneOfEach();
        EXPECT_EQ(Registered(), 8u);
        Registry()->ClearInstances();
        EXPECT_EQ(Registered(), 0u);
    }
    // The caller's parameter map survives every round.
    fParams["kept"] = TCIMValue(1u);
    EXPECT_EQ(fParams.size(), 1u);
}

TEST_F(RegistryClearTest, DuplicatesAreNotChecked)
{
    CMPIString* string = string2CMPIString("once");
    EXPECT_EQ(Registered(), 1u);
    string2CMPIString("twice");
    EXPECT_EQ(Registered(), 2u);
    EXPECT_EQ(Text(string), "once");
}

TEST_F(RegistryClearTest, ClearingDropsHostObjectsInTheFixedOrder)
{
    // Registered in the reverse of the clearing order.
    TCIMReference* ref = new TCIMReference(TCIMReference::Parse("A.k=1"));
    ref->SetNamespace(Logged<ICIMNamespace>(fRepository.Namespace(), "object path"));
    Registry()->RegisterObjectPath(ref2CMPIObjectPath(*ref));
    Registry()->RegisterInstance(newInstanceRecord(Logged<ICIMInstance>(fRepository.NewInstance("i", 1), "instance")));
    Registry()->RegisterEnumeration(new CMPIInstEnumeration(
        new TInstanceVector(1, Logged<ICIMInstance>(fRepository.NewInstance("e", 2), "enumeration"))));

    Registry()->ClearInstances();
    EXPECT_EQ(fReleases, (std::vector<std::string>{"enumeration", "instance", "object path"}));
}

TEST_F(RegistryClearTest, ResultsAreClearedAfterTheInstancesTheyPointAt)
{
    boost::weak_ptr<ICIMInstance> watch;
    {
        boost::shared_ptr<ICIMInstance> instance = fRepository.NewInstance("r", 1);
        watch = instance;
        CMPIInstance* record = newInstanceRecord(instance);
        Registry()->RegisterInstance(record);
        CMPIResult* result = newResultRecord();
        Registry()->RegisterResult(result);
        result->ft->returnInstance(result, record);
    }
    Registry()->ClearInstances();
    EXPECT_TRUE(watch.expired());
}

TEST_F(RegistryClearTest, NormalizeClassNameUpperCases)
{
    EXPECT_EQ(CMPINSPInstanceRegistry::NormalizeClassName("Test_Widget9"), "TEST_WIDGET9");
    EXPECT_EQ(Registry()->NormalizeClassName(""), "");
}

TEST_F(RegistryClearTest, RemoveInstanceDoesNothing)
{
    string2CMPIString("stays");
    Registry()->RemoveInstance("stays");
    EXPECT_EQ(Registered(), 1u);
}

// --- select expressions ----------------------------------------------------

TEST(SelectExpTest, TableIsAllStubs)
{
    const CMPISelectExpFT* ft = CMPI_SelectExp_Ftab;
    EXPECT_EQ(ft->ftVersion, 100);
    CMPISelectExp expression = {nullptr, CMPI_SelectExp_Ftab};
    const CMPIStatus released = ft->release(&expression);
    EXPECT_EQ(released.rc, CMPI_RC_ERR_NOT_SUPPORTED);
    EXPECT_EQ(released.msg, nullptr);

    const struct {
        const char* name;
        std::function<void*(CMPIStatus*)> call;
    } nullStubs[] = {
        {"clone", [&](CMPIStatus* rc) -> void* { return ft->clone(&expression, rc); }},
        {"getString", [&](CMPIStatus* rc) -> void* { return ft->getString(&expression, rc); }},
        {"getDOC", [&](CMPIStatus* rc) -> void* { return ft->getDOC(&expression, rc); }},
        {"getCOD", [&](CMPIStatus* rc) -> void* { return ft->getCOD(&expression, rc); }},
    };
    for (const auto& stub : nullStubs) {
        CMPIStatus rc = {CMPI_RC_OK, nullptr};
        EXPECT_EQ(stub.call(&rc), nullptr) << stub.name;
        EXPECT_EQ(rc.rc, CMPI_RC_ERR_NOT_SUPPORTED) << stub.name;
    }

    CMPIStatus rc = {CMPI_RC_ERR_ACCESS_DENIED, nullptr};
    EXPECT_EQ(ft->evaluate(&expression, nullptr, &rc), 0);
    EXPECT_EQ(ft->evaluateUsingAccessor(&expression, nullptr, nullptr, &rc), 0);
    EXPECT_EQ(rc.rc, CMPI_RC_ERR_ACCESS_DENIED);
}

TEST(SelectExpTest, QueryLanguageChecksAcceptNothingAndWriteNothing)
{
    CMPISelectExp expression = {nullptr, CMPI_SelectExp_Ftab};
    CMPIStatus rc = {CMPI_RC_ERR_ACCESS_DENIED, nullptr};
    EXPECT_EQ(_check_WQL(&expression, &rc), 0);
    EXPECT_EQ(_check_CQL(&expression, &rc), 0);
    EXPECT_EQ(rc.rc, CMPI_RC_ERR_ACCESS_DENIED);
}

}  // namespace
}  // namespace CmpiTypesTest
