// The instance table over TCMPIInstance objects: property reads, the
// shared property list, writes and their failures, paths and clones.
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "CmpiTypesTestSupport.h"
#include "TAssertionFailure.h"
#include "TZENTAException.h"
#include "cmpiInstance.h"
#include "cmpiValue.h"

namespace CmpiTypesTest {
namespace {

using NVURZENTA20::ICIMInstance;
using NVURZENTA20::TCIMContext;
using NVURZENTA20::TCIMReference;
using NVURZENTA20::TZENTAException;
using NVURZENTA20::TZENTAStatusCode;

// A provider instance whose every property write is refused with a given
// host status.
class TRefusingInstance : public TCMPIInstance {
public:
    TRefusingInstance(boost::shared_ptr<NVURZENTA20::ICIMClass> cls, int status)
        : TCMPIInstance(cls, TCIMContext()), fStatus(status)
    {
    }
    void SetPropertyValue(const std::string&, const TCIMValue&, TCIMContext) override
    {
        throw TZENTAException(fStatus, "refused");
    }

private:
    int fStatus;
};

class InstanceTest : public RegistryTest {
protected:
    void SetUp() override
    {
        RegistryTest::SetUp();
        fInstance = fRepository.NewInstance("w1", 5);
        fRecord = newInstanceRecord(fInstance);
        Registry()->RegisterInstance(fRecord);
    }

    CMPIData Get(const char* name, CMPIrc expectedRc = CMPI_RC_OK)
    {
        CMPIStatus rc = {CMPI_RC_ERR_TYPE_MISMATCH, nullptr};
        const CMPIData data = fRecord->ft->getProperty(fRecord, name, &rc);
        EXPECT_EQ(rc.rc, expectedRc) << name;
        return data;
    }

    TCIMValue HostValue(const char* name) const
    {
        return fInstance->GetProperty(name, TCIMContext())->GetValue();
    }

    TTestRepository fRepository;
    boost::shared_ptr<TCMPIInstance> fInstance;
    CMPIInstance* fRecord = nullptr;
};

TEST_F(InstanceTest, TableServesEveryMember)
{
    const CMPIInstanceFT* ft = cmpiInstanceFt;
    EXPECT_EQ(ft->ftVersion, 100);
    EXPECT_NE(ft->release, nullptr);
    EXPECT_NE(ft->clone, nullptr);
    EXPECT_NE(ft->getProperty, nullptr);
    EXPECT_NE(ft->getPropertyAt, nullptr);
    EXPECT_NE(ft->getPropertyCount, nullptr);
    EXPECT_NE(ft->setProperty, nullptr);
    EXPECT_NE(ft->getObjectPath, nullptr);
    EXPECT_NE(ft->setPropertyFilter, nullptr);
    EXPECT_NE(ft->setObjectPath, nullptr);
}

TEST_F(InstanceTest, PropertiesReadThroughTheValueConversion)
{
    const CMPIData name = Get("Name");
    EXPECT_EQ(name.type, CMPI_string);
    EXPECT_EQ(Text(name.value.string), "w1");
    const CMPIData count = Get("Count");
    EXPECT_EQ(count.type, CMPI_uint32);
    EXPECT_EQ(count.state, CMPI_goodValue);
    EXPECT_EQ(count.value.uint32, 7u);
    // Booleans and reals cannot be converted: typed, good, no value.
    const CMPIData flag = Get("Flag");
    EXPECT_EQ(flag.type, CMPI_boolean);
    EXPECT_EQ(flag.state, CMPI_goodValue);
    const CMPIData ratio = Get("Ratio");
    EXPECT_EQ(ratio.type, CMPI_real64);
    // A null array reads as an empty array record that the caller owns.
    const CMPIData tags = Get("Tags");
    EXPECT_EQ(tags.type, CMPI_stringA);
    EXPECT_EQ(tags.value.array->ft->getSize(tags.value.array, nullptr), 0u);
    FreeUnregisteredData(tags);
}

TEST_F(InstanceTest, NullSignedPropertyReadsAsATypedNullInsteadOfThrowing)
{
    const CMPIData level = Get("Level");
    EXPECT_EQ(level.type, CMPI_sint32);
    EXPECT_EQ(level.state, CMPI_nullValue);
    fInstance->SetPropertyValue("Level", TCIMValue(-4), TCIMContext());
    const CMPIData set = Get("Level");
    EXPECT_EQ(set.state, CMPI_goodValue);
    EXPECT_EQ(set.value.sint32, -4);
}

TEST_F(InstanceTest, MissingPropertyIsNoSuchPropertyWithEmptyData)
{
    const CMPIData missing = Get("Colour", CMPI_RC_ERR_NO_SUCH_PROPERTY);
    EXPECT_EQ(missing.type, CMPI_null);
    EXPECT_EQ(missing.state, CMPI_nullValue);
    EXPECT_EQ(missing.value.uint64, 0u);
}

TEST_F(InstanceTest, PropertiesAreCountedAndReadByIndexWithTheirNames)
{
    CMPIStatus rc = {CMPI_RC_ERR_FAILED, nullptr};
    ASSERT_EQ(fRecord->ft->getPropertyCount(fRecord, &rc), 7u);
    EXPECT_EQ(rc.rc, CMPI_RC_OK);
    EXPECT_EQ(allProps.size(), 7u);
    const std::vector<std::string> names = {"Name", "Id", "Count", "Level", "Flag", "Ratio", "Tags"};
    for (CMPICount i = 0; i < names.size(); ++i) {
        CMPIString* name = nullptr;
        const CMPIData data = fRecord->ft->getPropertyAt(fRecord, i, &name, nullptr);
        EXPECT_EQ(Text(name), names[i]);
        if (data.type & CMPI_ARRAY) {
            FreeUnregisteredData(data);
        }
    }
    const CMPIData id = fRecord->ft->getPropertyAt(fRecord, 1, nullptr, &rc);
    EXPECT_EQ(rc.rc, CMPI_RC_OK);
    EXPECT_EQ(id.value.uint32, 5u);

    CMPIString* untouched = nullptr;
    const CMPIData past = fRecord->ft->getPropertyAt(fRecord, 7, &untouched, &rc);
    EXPECT_EQ(rc.rc, CMPI_RC_ERR_NO_SUCH_PROPERTY);
    EXPECT_EQ(past.type, CMPI_null);
    EXPECT_EQ(untouched, nullptr);
}

TEST_F(InstanceTest, IndexedReadsUseTheListOfTheLastCountedInstance)
{
    TCIMContext none;
    boost::shared_ptr<NVURZENTA20::ICIMClass> gadget =
        fRepository.Namespace()->AllocateClass("Test_Gadget", boost::shared_ptr<NVURZENTA20::ICIMClass>(), none);
    gadget->AllocatePropertyDecl("Label", TCIMValue("gadget"), none);
    CMPIInstance* other = newInstanceRecord(boost::shared_ptr<ICIMInstance>(new TCMPIInstance(gadget, none)));
    Registry()->RegisterInstance(other);

    fRecord->ft->getPropertyCount(fRecord, nullptr);
    EXPECT_EQ(other->ft->getPropertyCount(other, nullptr), 1u);
    CMPIString* name = nullptr;
    const CMPIData label = fRecord->ft->getPropertyAt(fRecord, 0, &name, nullptr);
    EXPECT_EQ(Text(name), "Label");
    EXPECT_EQ(Text(label.value.string), "gadget");
    CMPIStatus rc = {CMPI_RC_OK, nullptr};
    fRecord->ft->getPropertyAt(fRecord, 1, nullptr, &rc);
    EXPECT_EQ(rc.rc, CMPI_RC_ERR_NO_SUCH_PROPERTY);
}

TEST_F(InstanceTest, SetPropertyWritesConvertedValues)
{
    CMPIValue count = {};
    count.uint32 = 12;
    EXPECT_EQ(fRecord->ft->setProperty(fRecord, "Count", &count, CMPI_uint32).rc, CMPI_RC_OK);
    EXPECT_TRUE(HostValue("Count") == TCIMValue(12u));
    const char name[] = "renamed";
    EXPECT_EQ(fRecord->ft->setProperty(fRecord, "Name", reinterpret_cast<const CMPIValue*>(name), CMPI_chars).rc,
              CMPI_RC_OK);
    EXPECT_TRUE(HostValue("Name") == TCIMValue("renamed"));
    EXPECT_EQ(Text(Get("Name").value.string), "renamed");
}

TEST_F(InstanceTest, SetPropertyWithAValueThatConvertsToNullChangesNothing)
{
    CMPIValue unused = {};
    EXPECT_EQ(fRecord->ft->setProperty(fRecord, "Count", nullptr, CMPI_uint32).rc, CMPI_RC_OK);
    EXPECT_EQ(fRecord->ft->setProperty(fRecord, "Count", &unused, CMPI_instance).rc, CMPI_RC_OK);
    unused.string = nullptr;
    EXPECT_EQ(fRecord->ft->setProperty(fRecord, "Name", &unused, CMPI_string).rc, CMPI_RC_OK);
    EXPECT_TRUE(HostValue("Count") == TCIMValue(7u));
    EXPECT_TRUE(HostValue("Name") == TCIMValue("w1"));
    // Even an unknown property is not touched when there is nothing to write.
    EXPECT_EQ(fRecord->ft->setProperty(fRecord, "Colour", nullptr, CMPI_uint32).rc, CMPI_RC_OK);
}

TEST_F(InstanceTest, RefusedWritesAreLoggedAndOnlyNotFoundIsPassedOver)
{
    TLogCapture log;
    CMPIValue count = {};
    count.uint32 = 1;

    CMPIInstance* notFound = newInstanceRecord(boost::shared_ptr<ICIMInstance>(
        new TRefusingInstance(fRepository.Class(), TZENTAStatusCode::kNotFound)));
    Registry()->RegisterInstance(notFound);
    EXPECT_EQ(notFound->ft->setProperty(notFound, "Count", &count, CMPI_uint32).rc, CMPI_RC_OK);

    try {
        fRecord->ft->setProperty(fRecord, "Colour", &count, CMPI_uint32);
        ADD_FAILURE() << "a write of an unknown property was not refused";
    } catch (const TZENTAException& failure) {
        EXPECT_EQ(failure.GetStatusCode().GetCode(), TZENTAStatusCode::kInvalidProperty);
    }

    const std::vector<std::string> lines = log.Lines();
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_NE(lines[0].find("cmpiInstance::instSetProperty failed for: Test_Widget : Count"), std::string::npos)
        << lines[0];
    EXPECT_NE(lines[1].find("cmpiInstance::instSetProperty failed for: Test_Widget : Colour"), std::string::npos)
        << lines[1];
}

TEST_F(InstanceTest, ObjectPathIsARegisteredCopyOfTheInstancesReference)
{
    CMPIStatus rc = {CMPI_RC_ERR_FAILED, nullptr};
    CMPIObjectPath* path = fRecord->ft->getObjectPath(fRecord, &rc);
    ASSERT_NE(path, nullptr);
    EXPECT_EQ(rc.rc, CMPI_RC_OK);
    EXPECT_EQ(path->ft, cmpiObjectPathFt);
    EXPECT_EQ(Registered(), 2u);
    const TCIMReference* ref = static_cast<const TCIMReference*>(path->hdl);
    EXPECT_TRUE(*ref == fInstance->GetReference(TCIMContext()));
    EXPECT_EQ(static_cast<boost::shared_ptr<TCIMReference>*>(path->hdl)->get(), ref);
    EXPECT_EQ(Text(path->ft->getClassName(path, nullptr)), "Test_Widget");
    EXPECT_EQ(path->ft->getKey(path, "Id", nullptr).value.uint32, 5u);
    // Later changes of the instance do not reach the copy.
    fInstance->SetPropertyValue("Id", TCIMValue(6u), TCIMContext());
    EXPECT_EQ(path->ft->getKey(path, "Id", nullptr).value.uint32, 5u);
}

TEST_F(InstanceTest, FilterAndPathSettersAreNotSupportedAndChangeNothing)
{
    const char* properties[] = {"Count", nullptr};
    EXPECT_EQ(fRecord->ft->setPropertyFilter(fRecord, properties, nullptr).rc, CMPI_RC_ERR_NOT_SUPPORTED);
    TCIMReference other = TCIMReference::Parse("Test_Widget.Id=1,Name=\"x\"");
    CMPIObjectPath* otherPath = ref2CMPIObjectPath(other);
    EXPECT_EQ(fRecord->ft->setObjectPath(fRecord, otherPath).rc, CMPI_RC_ERR_NOT_SUPPORTED);
    delete otherPath;
    EXPECT_EQ(fRecord->ft->getPropertyCount(fRecord, nullptr), 7u);
    EXPECT_TRUE(HostValue("Id") == TCIMValue(5u));
}

TEST_F(InstanceTest, CloneSharesTheHolderAndIsNotRegistered)
{
    CMPIStatus rc = {CMPI_RC_ERR_FAILED, nullptr};
    CMPIInstance* clone = fRecord->ft->clone(fRecord, &rc);
    EXPECT_EQ(rc.rc, CMPI_RC_OK);
    EXPECT_EQ(clone->hdl, fRecord->hdl);
    EXPECT_EQ(clone->ft, fRecord->ft);
    EXPECT_EQ(Registered(), 1u);
    CMPIValue count = {};
    count.uint32 = 31;
    clone->ft->setProperty(clone, "Count", &count, CMPI_uint32);
    EXPECT_EQ(Get("Count").value.uint32, 31u);
    delete clone;
}

TEST_F(InstanceTest, ReleaseLeavesTheRecordUsable)
{
    EXPECT_EQ(fRecord->ft->release(fRecord).rc, CMPI_RC_OK);
    EXPECT_EQ(Get("Count").value.uint32, 7u);
    EXPECT_EQ(Registered(), 1u);
}

TEST_F(InstanceTest, RecordsOfOtherInstanceTypesTripTheAssertionHandler)
{
    boost::shared_ptr<ICIMInstance> plain(new NVURZENTA20::TInmemInstance(fRepository.Class(), 1));
    CMPIInstance* record = newInstanceRecord(plain);
    Registry()->RegisterInstance(record);
    EXPECT_THROW(record->ft->getPropertyCount(record, nullptr), NVURZENTA20::TAssertionFailure);
    EXPECT_THROW(record->ft->getProperty(record, "Count", nullptr), NVURZENTA20::TAssertionFailure);
}

TEST_F(InstanceTest, InstanceRecordHelpersHoldAndDropOneReference)
{
    boost::shared_ptr<ICIMInstance> instance = fRepository.NewInstance("w2", 2);
    boost::weak_ptr<ICIMInstance> watch = instance;
    CMPIInstance* record = newInstanceRecord(instance);
    EXPECT_EQ(record->ft, cmpiInstanceFt);
    EXPECT_EQ(instanceOfRecord(record), instance);
    instance.reset();
    EXPECT_FALSE(watch.expired());
    deleteInstanceRecord(record);
    EXPECT_TRUE(watch.expired());
}

}  // namespace
}  // namespace CmpiTypesTest
