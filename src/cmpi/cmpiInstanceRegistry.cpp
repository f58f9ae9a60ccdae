#include "cmpiInstanceRegistry.h"

#include <cctype>

#include "cmpiArray.h"
#include "cmpiDateTime.h"
#include "cmpiInstance.h"
#include "cmpiObjectPath.h"
#include "cmpiResult.h"
#include "cmpiString.h"

namespace {

// Frees every entry with `dispose` and empties the list.
template <class Record, class Dispose>
void disposeAll(std::vector<Record*>& records, Dispose dispose)
{
    for (Record* record : records) {
        dispose(record);
    }
    records.clear();
}

// The map belongs to whoever made the argument list.
void deleteArgsRecord(CMPIArgs* args)
{
    delete args;
}

}  // namespace

CMPINSPInstanceRegistry* CMPINSPInstanceRegistry::GetRegistrySingleton()
{
    static CMPINSPInstanceRegistry* const registry = new CMPINSPInstanceRegistry;
    return registry;
}

void CMPINSPInstanceRegistry::RegisterInstance(CMPIInstance* instance)
{
    fInstances.push_back(instance);
}

void CMPINSPInstanceRegistry::RegisterObjectPath(CMPIObjectPath* path)
{
    fObjectPaths.push_back(path);
}

void CMPINSPInstanceRegistry::RegisterResult(CMPIResult* result)
{
    fResults.push_back(result);
}

void CMPINSPInstanceRegistry::RegisterString(CMPIString* string)
{
    fStrings.push_back(string);
}

void CMPINSPInstanceRegistry::RegisterArgs(CMPIArgs* args)
{
    fArgs.push_back(args);
}

void CMPINSPInstanceRegistry::RegisterArray(CMPIArray* array)
{
    fArrays.push_back(array);
}

void CMPINSPInstanceRegistry::RegisterEnumeration(CMPIInstEnumeration* enumeration)
{
    fEnumerations.push_back(enumeration);
}

void CMPINSPInstanceRegistry::RegisterEnumeration(CMPIObjectPathEnumeration* enumeration)
{
    fEnumerations.push_back(enumeration);
}

void CMPINSPInstanceRegistry::RegisterDateTime(CMPIDateTime* dateTime)
{
    fDateTimes.push_back(dateTime);
}

std::size_t CMPINSPInstanceRegistry::GetRecordCount() const
{
    return fInstances.size() + fObjectPaths.size() + fResults.size() + fStrings.size() + fArgs.size() +
           fArrays.size() + fEnumerations.size() + fDateTimes.size();
}

std::size_t CMPINSPInstanceRegistry::GetKeptRecordBytes()
{
    return keptInstanceRecordBytes() + keptObjectPathBytes() + keptStringRecordBytes();
}

// The order is fixed. Results go last and free only their own cells: the
// instance holders their cells point at were freed with the instances.
void CMPINSPInstanceRegistry::ClearInstances()
{
    disposeAll(fDateTimes, deleteDateTimeRecord);
    disposeAll(fArrays, deleteArrayRecord);
    disposeAll(fEnumerations, deleteEnumeration);
    disposeAll(fArgs, deleteArgsRecord);
    disposeAll(fStrings, deleteStringRecord);
    disposeAll(fInstances, deleteInstanceRecord);
    disposeAll(fObjectPaths, deleteOwningObjectPath);
    disposeAll(fResults, deleteResultRecord);
}

std::string CMPINSPInstanceRegistry::NormalizeClassName(std::string name)
{
    for (char& c : name) {
        c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    }
    return name;
}

void CMPINSPInstanceRegistry::RemoveInstance(std::string)
{
}
