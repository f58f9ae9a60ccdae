// Results (ordinary and instance-enumeration) and the two enumeration
// kinds.
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "CmpiTypesTestSupport.h"
#include "TCIMReference.h"
#include "cmpiEnumeration.h"
#include "cmpiInstance.h"
#include "cmpiResult.h"

namespace CmpiTypesTest {
namespace {

using NVURZENTA20::ICIMInstance;
using NVURZENTA20::TCIMContext;
using NVURZENTA20::TCIMReference;

// An instance that records being filed instead of filing itself.
class TFilingRecorder : public NVURZENTA20::TInmemInstance {
public:
    TFilingRecorder(boost::shared_ptr<NVURZENTA20::ICIMClass> cls, std::vector<TCIMContext>* filed)
        : TInmemInstance(cls, kTransientInstance), fFiled(filed)
    {
    }
    bool AddToNamespace(TCIMContext context) override
    {
        fFiled->push_back(context);
        return true;
    }

private:
    std::vector<TCIMContext>* fFiled;
};

class ResultTest : public RegistryTest {
protected:
    CMPIInstance* RegisteredInstance(const std::string& name)
    {
        CMPIInstance* record = newInstanceRecord(fRepository.NewInstance(name, 1));
        Registry()->RegisterInstance(record);
        return record;
    }

    TTestRepository fRepository;
};

TEST_F(ResultTest, TablesDifferOnlyInHowInstancesAreReturned)
{
    for (const CMPIResultFT* ft : {cmpiResultFt, cmpiEnumInstanceResultFt}) {
        EXPECT_EQ(ft->ftVersion, 100);
        EXPECT_EQ(ft->release, nullptr);
        EXPECT_EQ(ft->clone, nullptr);
        EXPECT_NE(ft->returnInstance, nullptr);
    }
    EXPECT_EQ(cmpiResultFt->returnData, cmpiEnumInstanceResultFt->returnData);
    EXPECT_EQ(cmpiResultFt->returnObjectPath, cmpiEnumInstanceResultFt->returnObjectPath);
    EXPECT_EQ(cmpiResultFt->returnDone, cmpiEnumInstanceResultFt->returnDone);
    EXPECT_NE(cmpiResultFt->returnInstance, cmpiEnumInstanceResultFt->returnInstance);
}

TEST_F(ResultTest, DataPathsAndDoneAreAcceptedAndDropped)
{
    CMPIResult* result = newResultRecord();
    Registry()->RegisterResult(result);
    CMPIResult enumResult = {nullptr, cmpiEnumInstanceResultFt};
    TCIMReference ref = TCIMReference::Parse("Test_Widget.Id=1,Name=\"a\"");
    CMPIObjectPath* path = ref2CMPIObjectPath(ref);
    CMPIValue value = {};
    value.uint32 = 3;
    for (CMPIResult* r : {result, &enumResult}) {
        const CMPIStatus data = r->ft->returnData(r, &value, CMPI_uint32);
        EXPECT_EQ(data.rc, CMPI_RC_OK);
        EXPECT_EQ(data.msg, nullptr);
        EXPECT_EQ(r->ft->returnObjectPath(r, path).rc, CMPI_RC_OK);
        EXPECT_EQ(r->ft->returnDone(r).rc, CMPI_RC_OK);
    }
    EXPECT_EQ(*static_cast<TResultCell*>(result->hdl), nullptr);
    EXPECT_FALSE(resultInstance(result));
    delete path;
}

TEST_F(ResultTest, OrdinaryResultKeepsTheLastReturnedInstance)
{
    CMPIResult* result = newResultRecord();
    Registry()->RegisterResult(result);
    CMPIInstance* first = RegisteredInstance("first");
    CMPIInstance* second = RegisteredInstance("second");
    EXPECT_EQ(result->ft->returnInstance(result, first).rc, CMPI_RC_OK);
    EXPECT_EQ(*static_cast<TResultCell*>(result->hdl), first->hdl);
    EXPECT_EQ(resultInstance(result), instanceOfRecord(first));
    EXPECT_EQ(result->ft->returnInstance(result, second).rc, CMPI_RC_OK);
    EXPECT_EQ(*static_cast<TResultCell*>(result->hdl), second->hdl);
    EXPECT_EQ(resultInstance(result), instanceOfRecord(second));
    // Clearing frees the instance holders and then only the result's cell.
    Registry()->ClearInstances();
    EXPECT_EQ(Registered(), 0u);
}

TEST_F(ResultTest, EnumerationResultFilesEveryInstanceWithAnEmptyContext)
{
    std::vector<TCIMContext> filed;
    CMPIInstance* record = newInstanceRecord(
        boost::shared_ptr<ICIMInstance>(new TFilingRecorder(fRepository.Class(), &filed)));
    Registry()->RegisterInstance(record);
    CMPIResult result = {nullptr, cmpiEnumInstanceResultFt};
    EXPECT_EQ(result.ft->returnInstance(&result, record).rc, CMPI_RC_OK);
    EXPECT_EQ(result.ft->returnInstance(&result, record).rc, CMPI_RC_OK);
    ASSERT_EQ(filed.size(), 2u);
    EXPECT_TRUE(filed[0].empty());
}

TEST_F(ResultTest, DeleteResultRecordLeavesTheReturnedInstanceAlone)
{
    CMPIResult* result = newResultRecord();
    CMPIInstance* record = RegisteredInstance("kept");
    result->ft->returnInstance(result, record);
    deleteResultRecord(result);
    EXPECT_EQ(Text(record->ft->getProperty(record, "Name", nullptr).value.string), "kept");
}

// --- enumerations ----------------------------------------------------------

class EnumerationTest : public RegistryTest {
protected:
    TTestRepository fRepository;
};

TEST_F(EnumerationTest, TablesShareEveryFunction)
{
    const CMPIEnumerationFT* instances = cmpiInstEnumerationFt;
    const CMPIEnumerationFT* paths = CMPIObjectPathEnumeration_Ftab;
    EXPECT_NE(instances, paths);
    EXPECT_EQ(instances->ftVersion, 100);
    EXPECT_EQ(paths->ftVersion, 100);
    EXPECT_EQ(instances->release, paths->release);
    EXPECT_EQ(instances->clone, paths->clone);
    EXPECT_EQ(instances->getNext, paths->getNext);
    EXPECT_EQ(instances->hasNext, paths->hasNext);
    EXPECT_EQ(instances->toArray, paths->toArray);
}

TEST_F(EnumerationTest, EmptyEnumerationHasNoNextAndGetNextFailsTypedAndNull)
{
    TInstanceVector noInstances;
    CMPIInstEnumeration instances(&noInstances);
    TReferenceVector noPaths;
    CMPIObjectPathEnumeration paths(&noPaths);
    const struct {
        CMPIEnumeration* enumeration;
        CMPIType type;
    } cases[] = {{&instances, CMPI_instance}, {&paths, CMPI_ref}};
    for (const auto& c : cases) {
        CMPIStatus rc = {CMPI_RC_ERR_FAILED, nullptr};
        EXPECT_FALSE(c.enumeration->ft->hasNext(c.enumeration, &rc));
        EXPECT_EQ(rc.rc, CMPI_RC_OK);
        for (int attempt = 0; attempt < 3; ++attempt) {
            rc.rc = CMPI_RC_OK;
            const CMPIData data = c.enumeration->ft->getNext(c.enumeration, &rc);
            EXPECT_EQ(rc.rc, CMPI_RC_ERR_FAILED);
            EXPECT_EQ(data.type, c.type);
            EXPECT_EQ(data.state, CMPI_goodValue);
            EXPECT_EQ(data.value.inst, nullptr);
        }
    }
    EXPECT_EQ(instances.cursor, 0u);
    EXPECT_EQ(paths.cursor, 0u);
}

TEST_F(EnumerationTest, InstanceEnumerationYieldsNewUnregisteredRecordsInOrder)
{
    TInstanceVector elements;
    elements.push_back(fRepository.NewInstance("a", 1));
    elements.push_back(fRepository.NewInstance("b", 2));
    CMPIInstEnumeration enumeration(&elements);
    EXPECT_EQ(enumeration.hdl, &elements);
    EXPECT_EQ(enumeration.ft, cmpiInstEnumerationFt);

    std::vector<CMPIInstance*> records;
    while (enumeration.ft->hasNext(&enumeration, nullptr)) {
        CMPIStatus rc = {CMPI_RC_ERR_FAILED, nullptr};
        const CMPIData data = enumeration.ft->getNext(&enumeration, &rc);
        EXPECT_EQ(rc.rc, CMPI_RC_OK);
        EXPECT_EQ(data.type, CMPI_instance);
        EXPECT_EQ(data.value.inst->ft, cmpiInstanceFt);
        records.push_back(data.value.inst);
    }
    ASSERT_EQ(records.size(), 2u);
    EXPECT_EQ(enumeration.cursor, 2u);
    EXPECT_EQ(instanceOfRecord(records[0]), elements[0]);
    EXPECT_EQ(instanceOfRecord(records[1]), elements[1]);
    EXPECT_EQ(Registered(), 0u);
    CMPIStatus rc = {CMPI_RC_OK, nullptr};
    enumeration.ft->getNext(&enumeration, &rc);
    EXPECT_EQ(rc.rc, CMPI_RC_ERR_FAILED);
    EXPECT_EQ(enumeration.cursor, 2u);

    // A second walk is not possible, but each record has a holder of its own.
    EXPECT_NE(records[0]->hdl, records[1]->hdl);
    for (CMPIInstance* record : records) {
        deleteInstanceRecord(record);
    }
    EXPECT_EQ(elements[0].use_count(), 1);
}

TEST_F(EnumerationTest, PathEnumerationRecordsPointAtTheElementReferences)
{
    TReferenceVector elements;
    elements.push_back(boost::shared_ptr<TCIMReference>(new TCIMReference(TCIMReference::Parse("A.k=1"))));
    elements.push_back(boost::shared_ptr<TCIMReference>(new TCIMReference(TCIMReference::Parse("B.k=2"))));
    CMPIObjectPathEnumeration enumeration(&elements);
    EXPECT_EQ(enumeration.ft, CMPIObjectPathEnumeration_Ftab);
    for (std::size_t i = 0; i < elements.size(); ++i) {
        ASSERT_TRUE(enumeration.ft->hasNext(&enumeration, nullptr));
        const CMPIData data = enumeration.ft->getNext(&enumeration, nullptr);
        EXPECT_EQ(data.type, CMPI_ref);
        CMPIObjectPath* path = data.value.ref;
        EXPECT_EQ(path->hdl, elements[i].get());
        EXPECT_EQ(path->ft, cmpiObjectPathFt);
        EXPECT_EQ(static_cast<boost::shared_ptr<TCIMReference>*>(path->hdl)->get(), elements[i].get());
        delete path;
    }
    EXPECT_FALSE(enumeration.ft->hasNext(&enumeration, nullptr));
    EXPECT_EQ(Registered(), 0u);
}

TEST_F(EnumerationTest, CloneAndToArrayGiveNullAndLeaveTheStatusAlone)
{
    TInstanceVector instances;
    CMPIInstEnumeration enumeration(&instances);
    TReferenceVector references;
    CMPIObjectPathEnumeration paths(&references);
    for (CMPIEnumeration* e : {static_cast<CMPIEnumeration*>(&enumeration), static_cast<CMPIEnumeration*>(&paths)}) {
        CMPIStatus rc = {CMPI_RC_ERR_ACCESS_DENIED, nullptr};
        EXPECT_EQ(e->ft->clone(e, &rc), nullptr);
        EXPECT_EQ(e->ft->toArray(e, &rc), nullptr);
        EXPECT_EQ(rc.rc, CMPI_RC_ERR_ACCESS_DENIED);
        EXPECT_EQ(e->ft->release(e).rc, CMPI_RC_OK);
    }
}

TEST_F(EnumerationTest, RegisteredEnumerationsOfBothKindsAreFreedWithTheirVectors)
{
    TInstanceVector* instances = new TInstanceVector(1, fRepository.NewInstance("e", 1));
    boost::weak_ptr<ICIMInstance> watch = instances->front();
    Registry()->RegisterEnumeration(new CMPIInstEnumeration(instances));
    TReferenceVector* references =
        new TReferenceVector(1, boost::shared_ptr<TCIMReference>(new TCIMReference(TCIMReference::Parse("A.k=1"))));
    Registry()->RegisterEnumeration(new CMPIObjectPathEnumeration(references));
    EXPECT_EQ(Registered(), 2u);
    Registry()->ClearInstances();
    EXPECT_TRUE(watch.expired());
}

}  // namespace
}  // namespace CmpiTypesTest
