// Instances, object paths, results and enumerations, and the registry that frees them.
#include <cstdio>
#include <fstream>
#include <functional>
#include <iterator>
#include <string>
#include <vector>

#include <boost/make_shared.hpp>

#include <gtest/gtest.h>

#include "CmpiTypesTestSupport.h"
#include "TAssertionFailure.h"
#include "TCIMReference.h"
#include "TRootObject.h"
#include "TZENTAException.h"
#include "cmpiArgs.h"
#include "cmpiDateTime.h"
#include "cmpiEnumeration.h"
#include "cmpiResult.h"
#include "cmpiValue.h"

namespace CmpiTypesTest {
namespace {

using NVURZENTA20::ICIMInstance;
using NVURZENTA20::TCIMReference;

using NVURZENTA20::TZENTAException;

struct TNotFoundInstance : TCMPIInstance {
    using TCMPIInstance::TCMPIInstance;
    void SetPropertyValue(const std::string&, const TCIMValue&, TCIMContext) override
    {
        throw TZENTAException(NVURZENTA20::TZENTAStatusCode::kNotFound, "refused");
    }
};

class InstanceTest : public RegistryTest {
protected:
    void SetUp() override
    {
        RegistryTest::SetUp();
        fInstance = fRepository.NewInstance("w1", 5);
        fRecord = RegisteredRecord(fInstance);
    }
    CMPIData Get(const char* name, CMPIrc expectedRc = CMPI_RC_OK)
    {
        CMPIStatus rc = {CMPI_RC_ERR_TYPE_MISMATCH, nullptr};
        const CMPIData data = fRecord->ft->getProperty(fRecord, name, &rc);
        EXPECT_EQ(rc.rc, expectedRc) << name;
        return data;
    }
    TCIMValue HostValue(const char* name) const { return fInstance->GetProperty(name, TCIMContext())->GetValue(); }

    TTestRepository fRepository;
    boost::shared_ptr<TCMPIInstance> fInstance;
    CMPIInstance* fRecord = nullptr;
};

TEST_F(InstanceTest, ReadsOfNullUnsupportedAndMissingProperties)
{
    // A null signed property is a typed null instead of a throw; a boolean is typed and good, without value.
    EXPECT_EQ(Get("Level").state, CMPI_nullValue);
    EXPECT_EQ(Get("Flag").type, CMPI_boolean);
    EXPECT_EQ(Get("Flag").state, CMPI_goodValue);
    // A null array reads as an empty array record that the caller owns.
    const CMPIData tags = Get("Tags");
    EXPECT_EQ(tags.value.array->ft->getSize(tags.value.array, nullptr), 0u);
    FreeUnregisteredData(tags);
    EXPECT_EQ(Get("Colour", CMPI_RC_ERR_NO_SUCH_PROPERTY).type, CMPI_null);
}

TEST_F(InstanceTest, IndexedReadsUseTheListOfTheLastCountedInstance)
{
    CMPIStatus rc = {CMPI_RC_ERR_FAILED, nullptr};
    ASSERT_EQ(fRecord->ft->getPropertyCount(fRecord, &rc), 6u);
    CMPIString* name = nullptr;
    EXPECT_EQ(fRecord->ft->getPropertyAt(fRecord, 1, &name, &rc).value.uint32, 5u);
    EXPECT_EQ(Text(name), "Id");
    fRecord->ft->getPropertyAt(fRecord, 6, nullptr, &rc);
    EXPECT_EQ(rc.rc, CMPI_RC_ERR_NO_SUCH_PROPERTY);

    boost::shared_ptr<NVURZENTA20::ICIMClass> gadget = fRepository.fNamespace->AllocateClass("Test_Gadget", {}, TCIMContext());
    gadget->AllocatePropertyDecl("Label", TCIMValue("gadget"), TCIMContext());
    CMPIInstance* other = RegisteredRecord(boost::shared_ptr<ICIMInstance>(new TCMPIInstance(gadget, TCIMContext())));
    // Records of other instance types trip the assertion handler.
    CMPIInstance* plain = RegisteredRecord(boost::shared_ptr<ICIMInstance>(new NVURZENTA20::TInmemInstance(gadget, 1)));
    EXPECT_THROW(plain->ft->getPropertyCount(plain, nullptr), NVURZENTA20::TAssertionFailure);
    EXPECT_EQ(other->ft->getPropertyCount(other, nullptr), 1u);
    EXPECT_EQ(Text(fRecord->ft->getPropertyAt(fRecord, 0, &name, nullptr).value.string), "gadget");
    EXPECT_EQ(Text(name), "Label");
}

TEST_F(InstanceTest, WritesOfNullsChangeNothingAndOnlyNotFoundRefusalsArePassedOver)
{
    CMPIValue unused = {};
    EXPECT_EQ(fRecord->ft->setProperty(fRecord, "Count", &unused, CMPI_instance).rc, CMPI_RC_OK);
    EXPECT_EQ(fRecord->ft->setProperty(fRecord, "Name", &unused, CMPI_string).rc, CMPI_RC_OK);
    EXPECT_EQ(fRecord->ft->setProperty(fRecord, "Colour", nullptr, CMPI_uint32).rc, CMPI_RC_OK);
    EXPECT_TRUE(HostValue("Count") == TCIMValue(7u));
    EXPECT_TRUE(HostValue("Name") == TCIMValue("w1"));

    CMPIInstance* notFound = RegisteredRecord(boost::shared_ptr<ICIMInstance>(
        new TNotFoundInstance(fRepository.fClass, TCIMContext())));
    EXPECT_EQ(notFound->ft->setProperty(notFound, "Count", &unused, CMPI_uint32).rc, CMPI_RC_OK);
    const std::string log = ::testing::TempDir() + "records_test.log";
    std::remove(log.c_str());
    NVURZENTA20::TRootObject::GetCoreLogger()->SetLogFile(log);
    NVURZENTA20::TRootObject::GetCoreLogger()->SetThreshold(4);
    try {
        fRecord->ft->setProperty(fRecord, "Colour", &unused, CMPI_uint32);
        ADD_FAILURE() << "a write of an unknown property was not refused";
    } catch (const TZENTAException& failure) {
        EXPECT_EQ(failure.GetStatusCode().GetCode(), NVURZENTA20::TZENTAStatusCode::kInvalidProperty);
    }
    NVURZENTA20::TRootObject::GetCoreLogger()->SetLogFile("");
    NVURZENTA20::TRootObject::GetCoreLogger()->SetThreshold(1);
    std::ifstream written(log.c_str());
    const std::string text((std::istreambuf_iterator<char>(written)), std::istreambuf_iterator<char>());
    EXPECT_NE(text.find("cmpiInstance::instSetProperty failed for: Test_Widget : Colour"), std::string::npos) << text;
}

TEST_F(InstanceTest, PathIsARegisteredCopyAndFilterAndPathSettersAreRefused)
{
    CMPIObjectPath* path = fRecord->ft->getObjectPath(fRecord, nullptr);
    EXPECT_EQ(Registered(), 2u);
    fInstance->SetPropertyValue("Id", TCIMValue(6u), TCIMContext());
    EXPECT_EQ(path->ft->getKey(path, "Id", nullptr).value.uint32, 5u);

    const char* properties[] = {"Count", nullptr};
    EXPECT_EQ(fRecord->ft->setPropertyFilter(fRecord, properties, nullptr).rc, CMPI_RC_ERR_NOT_SUPPORTED);
    EXPECT_EQ(fRecord->ft->setObjectPath(fRecord, path).rc, CMPI_RC_ERR_NOT_SUPPORTED);
}

TEST_F(InstanceTest, ClonesShareTheHolderAndReleaseLeavesTheRecordUsable)
{
    CMPIInstance* clone = fRecord->ft->clone(fRecord, nullptr);
    EXPECT_EQ(clone->hdl, fRecord->hdl);
    EXPECT_EQ(Registered(), 1u);
    delete clone;
    EXPECT_EQ(fRecord->ft->release(fRecord).rc, CMPI_RC_OK);
    EXPECT_EQ(Get("Count").value.uint32, 7u);
}

class ObjectPathTest : public RegistryTest {
protected:
    TCIMReference fRef = TCIMReference::Parse("root/cimv2:Test_Widget.Name=\"w1\",Id=7");
    CMPIObjectPath fPath = {&fRef, cmpiObjectPathFt};
    CMPIObjectPath fNullPath = {nullptr, cmpiObjectPathFt};
};

TEST_F(ObjectPathTest, SettersNeverChangeThePathAndTheHostIsAlwaysNoHost)
{
    EXPECT_EQ(fPath.ft->setClassName(&fPath, "Other").rc, CMPI_RC_OK);
    EXPECT_EQ(fPath.ft->setNameSpace(&fPath, "root/other").rc, CMPI_RC_OK);
    const std::string unchanged = "root/cimv2:" + TCIMReference::Parse("Test_Widget.Name=\"w1\",Id=7").GetPath();
    EXPECT_EQ(Text(fPath.ft->toString(&fPath, nullptr)), unchanged);
    EXPECT_EQ(Text(fNullPath.ft->getHostname(&fNullPath, nullptr)), "no_host");
}

TEST_F(ObjectPathTest, HandleUsingOperationsRefuseANullHandle)
{
    CMPIObjectPath* p = &fNullPath;
    CMPIStatus rc = {};
    EXPECT_EQ(p->ft->getKeyAt(p, 0, nullptr, &rc).state, CMPI_nullValue | CMPI_notFound);
    EXPECT_EQ(rc.rc, CMPI_RC_ERR_INVALID_PARAMETER);
    CMPIValue v = {};
    EXPECT_EQ(p->ft->addKey(p, "Id", &v, CMPI_uint32).rc, CMPI_RC_ERR_INVALID_PARAMETER);
    EXPECT_EQ(p->ft->setNameSpaceFromObjectPath(&fPath, p).rc, CMPI_RC_ERR_INVALID_PARAMETER);
    EXPECT_EQ(p->ft->setHostAndNameSpaceFromObjectPath(p, &fPath).rc, CMPI_RC_ERR_INVALID_PARAMETER);
    // The two setters that check nothing.
    EXPECT_EQ(p->ft->setHostname(p, "h").rc, CMPI_RC_OK);
    EXPECT_EQ(p->ft->setClassName(p, "C").rc, CMPI_RC_OK);
}

TEST_F(ObjectPathTest, KeysAreReadInByteOrderAndMatchedExactly)
{
    fRef.AddKeyValue("Flag", TCIMValue(true));
    CMPIValue code = {};
    EXPECT_EQ(fPath.ft->addKey(&fPath, "code", &code, CMPI_uint32).rc, CMPI_RC_OK);
    ASSERT_EQ(fPath.ft->getKeyCount(&fPath, nullptr), 4u);
    CMPIString* name = nullptr;
    EXPECT_EQ(fPath.ft->getKeyAt(&fPath, 3, &name, nullptr).type, CMPI_uint32);
    EXPECT_EQ(Text(name), "code");
    // A key of an unsupported type comes back typed, without value.
    EXPECT_EQ(fPath.ft->getKey(&fPath, "Flag", nullptr).type, CMPI_boolean);
    CMPIStatus rc = {CMPI_RC_OK, nullptr};
    EXPECT_EQ(fPath.ft->getKeyAt(&fPath, 4, nullptr, &rc).state, CMPI_nullValue | CMPI_notFound);
    EXPECT_EQ(rc.rc, CMPI_RC_ERR_NOT_FOUND);
    EXPECT_EQ(fPath.ft->getKey(&fPath, "name", &rc).state, CMPI_nullValue | CMPI_notFound);
    EXPECT_EQ(rc.rc, CMPI_RC_ERR_NOT_FOUND);
}

class RegistryClearTest : public RegistryTest {
protected:
    // A shared pointer to `object` whose last release is logged as `tag`.
    template <class T>
    boost::shared_ptr<T> Logged(const boost::shared_ptr<T>& object, const std::string& tag)
    {
        std::vector<std::string>* log = &fReleases;
        return boost::shared_ptr<T>(object.get(), [object, log, tag](T*) { log->push_back(tag); });
    }

    TTestRepository fRepository;
    TCIMContext fParams;
    std::vector<std::string> fReleases;
};

TEST_F(RegistryClearTest, EveryKindIsFreedOnceAndTheRegistryIsUsableAgain)
{
    for (int round = 0; round < 2; ++round) {
        Registry()->RegisterDateTime(newDateTimeRecord(newDateTime("20240101000000.000000+000")));
        Registry()->RegisterArray(newArrayRecord(newArrayStore(2, CMPI_uint8)));
        Registry()->RegisterEnumeration(new CMPIInstEnumeration(new TInstanceVector(1, fRepository.NewInstance("e", 2))));
        Registry()->RegisterEnumeration(new CMPIObjectPathEnumeration(new TReferenceVector(1, boost::make_shared<TCIMReference>(TCIMReference::Parse("A.k=1")))));
        params2CMPIArgs(&fParams);
        string2CMPIString("s");
        CMPIResult* result = newResultRecord();
        result->ft->returnInstance(result, RegisteredRecord(fRepository.NewInstance("one", 1)));
        Registry()->RegisterResult(result);
        CMPIObjectPath* path = newOwningObjectPath();
        *static_cast<TCIMReference*>(path->hdl) = TCIMReference::Parse("A.k=1");
        Registry()->RegisterObjectPath(path);
        EXPECT_EQ(Registered(), 9u);
        Registry()->ClearInstances();
        Registry()->ClearInstances();
        EXPECT_EQ(Registered(), 0u);
    }
    // Kept as a no-op: records are only released in bulk.
    string2CMPIString("stays");
    Registry()->RemoveInstance("stays");
    EXPECT_EQ(Registered(), 1u);
}

// The memory of freed instance and path records is kept for the next
// request, but only up to a bound: a huge request must not pin its records'
// memory for good. A record made from a kept block starts as a fresh one.
TEST_F(RegistryClearTest, FreedRecordsAreKeptForReuseUpToABoundAndStartFresh)
{
    const boost::shared_ptr<TCMPIInstance> instance = fRepository.NewInstance("kept", 1);
    const auto makeRequest = [&](std::size_t records) {
        for (std::size_t i = 0; i < records; ++i) {
            CMPIObjectPath* path = newOwningObjectPath();
            *static_cast<TCIMReference*>(path->hdl) = TCIMReference::Parse("Old.k=\"" + std::to_string(i) + "\"");
            Registry()->RegisterObjectPath(path);
            RegisteredRecord(instance);
        }
        Registry()->ClearInstances();
    };
    makeRequest(100000);
    const std::size_t keptLarge = Registry()->GetKeptRecordBytes();
    // Well under what 100,000 paths and records take (over 20 MB).
    EXPECT_LT(keptLarge, 2u * 1024 * 1024);
    // Nothing is kept when the process runs under AddressSanitizer.
    if (keptLarge > 0) {
        CMPIObjectPath* path = newOwningObjectPath();
        Registry()->RegisterObjectPath(path);
        EXPECT_LT(Registry()->GetKeptRecordBytes(), keptLarge);
        const TCIMReference& fresh = *static_cast<const TCIMReference*>(path->hdl);
        EXPECT_EQ(fresh.GetClassName(), "");
        EXPECT_TRUE(fresh.GetKeyBindings().empty());
        EXPECT_EQ(path->ft, cmpiObjectPathFt);
    }
    Registry()->ClearInstances();
    EXPECT_EQ(instance.use_count(), 1);
}

TEST_F(RegistryClearTest, HostObjectsAreDroppedInTheFixedOrderAndResultsLast)
{
    // Registered in the reverse of the clearing order. A path names its
    // namespace without holding it, so freeing it lets go of no host object
    // to watch (the leak checker sees that it is freed).
    CMPIObjectPath* path = newOwningObjectPath();
    static_cast<TCIMReference*>(path->hdl)->SetNamespace(fRepository.fNamespace);
    Registry()->RegisterObjectPath(path);
    CMPIInstance* record = newInstanceRecord(Logged<ICIMInstance>(fRepository.NewInstance("i", 1), "instance"));
    Registry()->RegisterInstance(record);
    Registry()->RegisterEnumeration(new CMPIInstEnumeration(
        new TInstanceVector(1, Logged<ICIMInstance>(fRepository.NewInstance("e", 2), "enumeration"))));
    // A result that points at the instance holder is cleared after it.
    CMPIResult* result = newResultRecord();
    Registry()->RegisterResult(result);
    result->ft->returnInstance(result, record);

    Registry()->ClearInstances();
    EXPECT_EQ(fReleases, (std::vector<std::string>{"enumeration", "instance"}));
}

TEST_F(RegistryClearTest, ExhaustedEnumerationsFailTypedAndCloneAndToArrayGiveNull)
{
    TInstanceVector instances;
    CMPIInstEnumeration instanceEnumeration(&instances);
    TReferenceVector references;
    CMPIObjectPathEnumeration pathEnumeration(&references);
    // Clone and toArray leave the status alone.
    const std::pair<CMPIEnumeration*, CMPIType> cases[] = {{&instanceEnumeration, CMPI_instance},
                                                           {&pathEnumeration, CMPI_ref}};
    for (const auto& c : cases) {
        CMPIStatus rc = {CMPI_RC_ERR_ACCESS_DENIED, nullptr};
        EXPECT_EQ(c.first->ft->clone(c.first, &rc), nullptr);
        EXPECT_EQ(c.first->ft->toArray(c.first, &rc), nullptr);
        EXPECT_EQ(rc.rc, CMPI_RC_ERR_ACCESS_DENIED);
        EXPECT_FALSE(c.first->ft->hasNext(c.first, nullptr));
        const CMPIData past = c.first->ft->getNext(c.first, &rc);
        EXPECT_EQ(rc.rc, CMPI_RC_ERR_FAILED);
        EXPECT_EQ(past.type, c.second);
        EXPECT_EQ(past.value.inst, nullptr);
    }
    EXPECT_EQ(instanceEnumeration.cursor, 0u);
}

}  // namespace
}  // namespace CmpiTypesTest
