// Shared fixtures of the CMPI type tests: a registry that starts and ends
// every test empty, a small in-memory repository with one class whose
// instances are TCMPIInstance objects, and the freeing of records that the
// library leaves to whoever received them.
#ifndef ZENTA_TESTS_CMPI_TYPES_CMPITYPESTESTSUPPORT_H
#define ZENTA_TESTS_CMPI_TYPES_CMPITYPESTESTSUPPORT_H

#include <cstdio>
#include <cstring>
#include <fstream>
#include <string>
#include <unistd.h>
#include <vector>

#include <boost/shared_ptr.hpp>
#include <gtest/gtest.h>

#include "ICIMClass.h"
#include "ICIMNamespace.h"
#include "ICIMPropertyDecl.h"
#include "INamespaceProvider.h"
#include "TCIMValue.h"
#include "TCMPIInstance.h"
#include "TInmemInstance.h"
#include "TRootObject.h"
#include "cmpiArray.h"
#include "cmpiInstanceRegistry.h"
#include "cmpiObjectPath.h"
#include "cmpiString.h"
#include "cmpidt.h"
#include "cmpift.h"

namespace CmpiTypesTest {

using NVURZENTA20::TCIMValue;
typedef TCIMValue::TCIMType TCIMType;

inline CMPINSPInstanceRegistry* Registry()
{
    return CMPINSPInstanceRegistry::GetRegistrySingleton();
}

// Every test starts and ends with an empty registry, so that what a test
// registers is counted and freed on its own.
class RegistryTest : public testing::Test {
protected:
    void SetUp() override { Registry()->ClearInstances(); }
    void TearDown() override { Registry()->ClearInstances(); }

    std::size_t Registered() const { return Registry()->GetRecordCount(); }
};

inline TCIMValue NullOf(TCIMType::ECIMType type)
{
    TCIMValue value;
    value.SetNullValue(type, 0);
    return value;
}

inline TCIMValue ArrayOf(TCIMType::ECIMType type, const std::vector<TCIMValue>& elements)
{
    TCIMValue value;
    value.Set(TCIMType(type), static_cast<unsigned int>(elements.size()), elements);
    return value;
}

inline std::string Text(const CMPIString* string)
{
    return string->ft->getCharPtr(string, nullptr);
}

// Frees what convToCMPIData made and did not register: references,
// date-times, arrays and the element strings of string arrays.
inline void FreeUnregisteredData(const CMPIData& data)
{
    if (data.type & CMPI_ARRAY) {
        CMPIArray* array = data.value.array;
        const CMPIData* store = static_cast<const CMPIData*>(array->hdl);
        if ((data.type & ~CMPI_ARRAY) == CMPI_string) {
            for (CMPICount i = 1; i <= arrayStoreCount(store); ++i) {
                deleteStringRecord(store[i].value.string);
            }
        }
        deleteArrayRecord(array);
    } else if (data.type == CMPI_ref) {
        deleteOwningObjectPath(data.value.ref);
    } else if (data.type == CMPI_dateTime) {
        // Its handle is the record itself.
        delete data.value.dateTime;
    }
}

// Sends the core logger's output to a scratch file for one scope, with
// every level written.
class TLogCapture {
public:
    TLogCapture() : fLogger(NVURZENTA20::TRootObject::GetCoreLogger()), fThreshold(fLogger->GetThreshold())
    {
        fPath = testing::TempDir() + "cmpi-types-log-" + std::to_string(getpid()) + ".txt";
        std::remove(fPath.c_str());
        fLogger->SetLogFile(fPath);
        fLogger->SetThreshold(NVURZENTA20::ICoreLogger::kInformation);
    }
    ~TLogCapture()
    {
        fLogger->SetLogFile("");
        fLogger->SetThreshold(fThreshold);
        std::remove(fPath.c_str());
    }
    TLogCapture(const TLogCapture&) = delete;
    TLogCapture& operator=(const TLogCapture&) = delete;

    std::vector<std::string> Lines() const
    {
        std::vector<std::string> lines;
        std::ifstream in(fPath);
        for (std::string line; std::getline(in, line);) {
            lines.push_back(line);
        }
        return lines;
    }

private:
    boost::shared_ptr<NVURZENTA20::ICoreLogger> fLogger;
    int fThreshold;
    std::string fPath;
};

// A repository namespace with the class Test_Widget:
//   Name (string, key), Id (uint32, key), Count (uint32, default 7),
//   Level (sint32), Flag (boolean), Ratio (real64), Tags (string[]).
class TTestRepository {
public:
    TTestRepository()
    {
        NVURZENTA20::TCIMContext none;
        fNamespace = NVURZENTA20::TRootObject::GetNamespaceProviderManager()
                         ->GetNamespaceProvider("inmem")
                         ->AllocateNamespace(none, false);
        fKey = fNamespace->AllocateQualifierDecl(
            "Key", TCIMValue(false), NVURZENTA20::ICIMQualifierDecl::kScopeProperty,
            NVURZENTA20::ICIMQualifierDecl::EFlavor(NVURZENTA20::ICIMQualifierDecl::kDisableOverride |
                                                    NVURZENTA20::ICIMQualifierDecl::kToSubclass),
            none);
        fClass = fNamespace->AllocateClass("Test_Widget", boost::shared_ptr<NVURZENTA20::ICIMClass>(), none);
        AddKey("Name", NullOf(TCIMType::kString));
        AddKey("Id", NullOf(TCIMType::kUint32));
        fClass->AllocatePropertyDecl("Count", TCIMValue(7u), none);
        fClass->AllocatePropertyDecl("Level", NullOf(TCIMType::kSint32), none);
        fClass->AllocatePropertyDecl("Flag", NullOf(TCIMType::kBoolean), none);
        fClass->AllocatePropertyDecl("Ratio", NullOf(TCIMType::kReal64), none);
        TCIMValue tags;
        tags.SetNullValue(TCIMType::kString, 1);
        fClass->AllocatePropertyDecl("Tags", tags, none);
    }

    boost::shared_ptr<NVURZENTA20::ICIMNamespace> Namespace() const { return fNamespace; }
    boost::shared_ptr<NVURZENTA20::ICIMClass> Class() const { return fClass; }

    // An instance with the keys Name=`name`, Id=`id`.
    boost::shared_ptr<TCMPIInstance> NewInstance(const std::string& name, unsigned int id) const
    {
        boost::shared_ptr<TCMPIInstance> instance(new TCMPIInstance(fClass, NVURZENTA20::TCIMContext()));
        instance->SetPropertyValue("Name", TCIMValue(name), NVURZENTA20::TCIMContext());
        instance->SetPropertyValue("Id", TCIMValue(id), NVURZENTA20::TCIMContext());
        return instance;
    }

private:
    void AddKey(const std::string& name, const TCIMValue& value)
    {
        NVURZENTA20::TCIMContext none;
        boost::shared_ptr<NVURZENTA20::ICIMPropertyDecl> decl = fClass->AllocatePropertyDecl(name, value, none);
        decl->AddQualifier(decl->AllocateQualifier(fKey, TCIMValue(true), none), none);
    }

    boost::shared_ptr<NVURZENTA20::ICIMNamespace> fNamespace;
    boost::shared_ptr<NVURZENTA20::ICIMQualifierDecl> fKey;
    boost::shared_ptr<NVURZENTA20::ICIMClass> fClass;
};

}  // namespace CmpiTypesTest

#endif
