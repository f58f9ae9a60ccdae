// Shared fixtures of the CMPI type tests: a registry that is empty at the
// start and end of every test, a repository class whose instances are
// TCMPIInstance objects, and the freeing of records nobody registered.
#ifndef ZENTA_TESTS_CMPI_TYPES_CMPITYPESTESTSUPPORT_H
#define ZENTA_TESTS_CMPI_TYPES_CMPITYPESTESTSUPPORT_H

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "InmemTestSupport.h"
#include "TCMPIInstance.h"
#include "TInmemInstance.h"
#include "cmpiArray.h"
#include "cmpiInstance.h"
#include "cmpiInstanceRegistry.h"
#include "cmpiObjectPath.h"
#include "cmpiString.h"

namespace CmpiTypesTest {

using NVURZENTA20::TCIMContext;
using NVURZENTA20::TCIMValue;
typedef TCIMValue::TCIMType TCIMType;

inline CMPINSPInstanceRegistry* Registry() { return CMPINSPInstanceRegistry::GetRegistrySingleton(); }

class RegistryTest : public testing::Test {
protected:
    void SetUp() override { Registry()->ClearInstances(); }
    void TearDown() override { Registry()->ClearInstances(); }
    std::size_t Registered() const { return Registry()->GetRecordCount(); }
};

inline TCIMValue NullOf(TCIMType::ECIMType type, bool array = false)
{
    TCIMValue value;
    value.SetNullValue(type, array ? 1 : 0);
    return value;
}

inline TCIMValue ArrayOf(TCIMType::ECIMType type, const std::vector<TCIMValue>& elements)
{
    TCIMValue value;
    value.Set(TCIMType(type), static_cast<unsigned int>(elements.size()), elements);
    return value;
}

inline std::string Text(const CMPIString* string) { return string->ft->getCharPtr(string, nullptr); }

// Frees what convToCMPIData made without registering it.
inline void FreeUnregisteredData(const CMPIData& data)
{
    if (data.type & CMPI_ARRAY) {
        const CMPIData* store = static_cast<const CMPIData*>(data.value.array->hdl);
        for (CMPICount i = 1; (data.type & ~CMPI_ARRAY) == CMPI_string && i <= arrayStoreCount(store); ++i) {
            deleteStringRecord(store[i].value.string);
        }
        deleteArrayRecord(data.value.array);
    } else if (data.type == CMPI_ref) {
        deleteOwningObjectPath(data.value.ref);
    } else if (data.type == CMPI_dateTime) {
        delete data.value.dateTime;  // its handle is the record itself
    }
}

// The class Test_Widget: Name (string, key), Id (uint32, key),
// Count (uint32, default 7), Level (sint32), Flag (boolean), Tags (string[]).
struct TTestRepository {
    boost::shared_ptr<NVURZENTA20::TInmemNamespace> fNamespace = inmemtest::StandardRepository();
    boost::shared_ptr<NVURZENTA20::ICIMClass> fClass = fNamespace->AllocateClass("Test_Widget", {}, TCIMContext());

    TTestRepository()
    {
        inmemtest::AddKey(*fNamespace, *fClass, "Name");
        inmemtest::AddKey(*fNamespace, *fClass, "Id", NullOf(TCIMType::kUint32));
        fClass->AllocatePropertyDecl("Count", TCIMValue(7u), TCIMContext());
        fClass->AllocatePropertyDecl("Level", NullOf(TCIMType::kSint32), TCIMContext());
        fClass->AllocatePropertyDecl("Flag", NullOf(TCIMType::kBoolean), TCIMContext());
        fClass->AllocatePropertyDecl("Tags", NullOf(TCIMType::kString, true), TCIMContext());
    }
    boost::shared_ptr<TCMPIInstance> NewInstance(const std::string& name, unsigned int id) const
    {
        boost::shared_ptr<TCMPIInstance> instance(new TCMPIInstance(fClass, TCIMContext()));
        instance->SetPropertyValue("Name", TCIMValue(name), TCIMContext());
        instance->SetPropertyValue("Id", TCIMValue(id), TCIMContext());
        return instance;
    }
};

inline CMPIInstance* RegisteredRecord(boost::shared_ptr<NVURZENTA20::ICIMInstance> instance)
{
    CMPIInstance* record = newInstanceRecord(instance);
    Registry()->RegisterInstance(record);
    return record;
}

}  // namespace CmpiTypesTest

#endif
