// The process-wide registry of CMPI records handed to providers. Providers
// never free what the broker gives them; the records stay valid until the
// host clears the registry and are then freed in bulk.
//
// Not synchronised: registration and clearing run on the host's request
// thread only.
#ifndef ZENTA_CMPI_CMPIINSTANCEREGISTRY_H
#define ZENTA_CMPI_CMPIINSTANCEREGISTRY_H

#include <cstddef>
#include <string>
#include <vector>

#include "cmpidt.h"
#include "cmpiEnumeration.h"

class CMPINSPInstanceRegistry {
public:
    // Created on first use and never destroyed.
    static CMPINSPInstanceRegistry* GetRegistrySingleton();

    void RegisterInstance(CMPIInstance* instance);
    void RegisterObjectPath(CMPIObjectPath* path);
    void RegisterResult(CMPIResult* result);
    void RegisterString(CMPIString* string);
    void RegisterArgs(CMPIArgs* args);
    void RegisterArray(CMPIArray* array);
    void RegisterEnumeration(CMPIInstEnumeration* enumeration);
    // Object-path enumerations share the enumeration list.
    void RegisterEnumeration(CMPIObjectPathEnumeration* enumeration);
    void RegisterDateTime(CMPIDateTime* dateTime);

    // How many records are registered, over all lists.
    std::size_t GetRecordCount() const;
    // The memory of freed instance, object-path and string records kept
    // for reuse by the next request: held by the process, not by any record.
    static std::size_t GetKeptRecordBytes();

    // Frees every registered record and what it owns, and empties the
    // lists; every pointer a provider kept is dangling afterwards.
    void ClearInstances();

    // `name` in upper case.
    static std::string NormalizeClassName(std::string name);
    // Kept as an empty operation: records are only released in bulk.
    void RemoveInstance(std::string name);

private:
    CMPINSPInstanceRegistry() {}
    CMPINSPInstanceRegistry(const CMPINSPInstanceRegistry&) = delete;
    CMPINSPInstanceRegistry& operator=(const CMPINSPInstanceRegistry&) = delete;

    std::vector<CMPIInstance*> fInstances;
    std::vector<CMPIObjectPath*> fObjectPaths;
    std::vector<CMPIResult*> fResults;
    std::vector<CMPIString*> fStrings;
    std::vector<CMPIArgs*> fArgs;
    std::vector<CMPIArray*> fArrays;
    std::vector<CMPIEnumeration*> fEnumerations;
    std::vector<CMPIDateTime*> fDateTimes;
};

#endif
