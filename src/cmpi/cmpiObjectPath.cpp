#include "cmpiObjectPath.h"

#include <algorithm>

#include "RecordPool.h"
#include "cmpiStatus.h"
#include "cmpiValue.h"

using NVURZENTA20::TCIMContext;
using NVURZENTA20::TCIMReference;
using NVURZENTA20::TCIMValue;

CMPIObjectPath* ref2CMPIObjectPath(const TCIMReference& ref)
{
    CMPIObjectPath* path = new CMPIObjectPath;
    path->hdl = const_cast<TCIMReference*>(&ref);
    path->ft = cmpiObjectPathFt;
    return path;
}

namespace {

// The record is the base of what it is made with, so that a record's
// address converts back by static_cast.
struct TOwningObjectPath : CMPIObjectPath, TPooledRecord<TOwningObjectPath> {
    TOwningObjectPath() : CMPIObjectPath() { Bind(); }
    explicit TOwningObjectPath(const TCIMReference& from) : CMPIObjectPath(), reference(from) { Bind(); }

    void Bind()
    {
        hdl = &reference;
        ft = cmpiObjectPathFt;
    }
    TCIMReference reference;
};

}  // namespace

std::size_t keptObjectPathBytes()
{
    return TOwningObjectPath::KeptBytes();
}

CMPIObjectPath* newOwningObjectPath()
{
    return new TOwningObjectPath;
}

CMPIObjectPath* newOwningObjectPath(const TCIMReference& from)
{
    return new TOwningObjectPath(from);
}

void deleteOwningObjectPath(CMPIObjectPath* path)
{
    TOwningObjectPath* made = static_cast<TOwningObjectPath*>(path);
    made->reference.Clear();
    delete made;
}

namespace {

const TCIMReference* referenceOf(const CMPIObjectPath* path)
{
    return static_cast<const TCIMReference*>(path->hdl);
}

TCIMReference* referenceOf(CMPIObjectPath* path)
{
    return static_cast<TCIMReference*>(path->hdl);
}

typedef TCIMReference::TKeyBindings::value_type TKeyBinding;
typedef boost::container::small_vector<const TKeyBinding*, 8> TKeyOrder;

// The bindings in the byte order of their names, as a map of them would
// hold them. A path binds each name once, so that no name is lost.
TKeyOrder keysInByteOrder(const TCIMReference& ref)
{
    TKeyOrder order;
    for (const TKeyBinding& binding : ref.GetKeyBindings()) {
        order.push_back(&binding);
    }
    std::sort(order.begin(), order.end(),
              [](const TKeyBinding* a, const TKeyBinding* b) { return a->first < b->first; });
    return order;
}

// The binding of exactly `name` (case counts), or null.
const TKeyBinding* keyNamed(const TCIMReference& ref, const char* name)
{
    for (const TKeyBinding& binding : ref.GetKeyBindings()) {
        if (binding.first == name) {
            return &binding;
        }
    }
    return nullptr;
}

// Keys are always converted as scalars; the conversion's own code is not
// looked at (an unsupported key type leaves a typed datum without value).
CMPIData keyData(const TCIMValue& value)
{
    CMPIData data = {};
    convToCMPIData(value, convToCMPIType(value.GetType(), false), &data);
    return data;
}

const CMPIValueState kMissingKeyState = CMPI_nullValue | CMPI_notFound;

// A text of the path as a registered string; a path without a handle has
// none.
template <class TText>
CMPIString* textOfPath(const CMPIObjectPath* path, CMPIStatus* rc, TText text)
{
    const TCIMReference* ref = referenceOf(path);
    if (ref == nullptr) {
        setStatus(rc, CMPI_RC_ERR_INVALID_PARAMETER);
        return nullptr;
    }
    CMPIString* string = string2CMPIString(text(*ref));
    setStatus(rc, CMPI_RC_OK);
    return string;
}

CMPIString* refGetNameSpace(const CMPIObjectPath* path, CMPIStatus* rc)
{
    return textOfPath(path, rc, [](const TCIMReference& ref) { return ref.GetNameSpaceName(); });
}

// Paths of this library carry no host; the path is not consulted.
CMPIString* refGetHostname(const CMPIObjectPath*, CMPIStatus* rc)
{
    CMPIString* host = string2CMPIString("no_host");
    setStatus(rc, CMPI_RC_OK);
    return host;
}

CMPIString* refGetClassName(const CMPIObjectPath* path, CMPIStatus* rc)
{
    return textOfPath(path, rc, [](const TCIMReference& ref) { return ref.GetClassName(); });
}

CMPIString* refToString(const CMPIObjectPath* path, CMPIStatus* rc)
{
    return textOfPath(path, rc,
                      [](const TCIMReference& ref) { return ref.GetNameSpaceName() + ":" + ref.GetPath(); });
}

CMPIStatus refAddKey(CMPIObjectPath* path, const char* name, const CMPIValue* value, const CMPIType type)
{
    TCIMReference* ref = referenceOf(path);
    if (ref == nullptr) {
        return makeStatus(CMPI_RC_ERR_INVALID_PARAMETER);
    }
    CMPIrc conversionRc;
    ref->AddKeyValue(name, convertCMPIValue(value, type, &conversionRc));
    return makeStatus(CMPI_RC_OK);
}

CMPIData refGetKey(const CMPIObjectPath* path, const char* name, CMPIStatus* rc)
{
    const TCIMReference* ref = referenceOf(path);
    if (ref == nullptr) {
        setStatus(rc, CMPI_RC_ERR_INVALID_PARAMETER);
        return makeEmptyData(kMissingKeyState);
    }
    setStatus(rc, CMPI_RC_OK);
    const TKeyBinding* binding = keyNamed(*ref, name);
    if (binding == nullptr) {
        setStatus(rc, CMPI_RC_ERR_NOT_FOUND);
        return makeEmptyData(kMissingKeyState);
    }
    return keyData(binding->second);
}

CMPIData refGetKeyAt(const CMPIObjectPath* path, CMPICount index, CMPIString** name, CMPIStatus* rc)
{
    const TCIMReference* ref = referenceOf(path);
    if (ref == nullptr) {
        setStatus(rc, CMPI_RC_ERR_INVALID_PARAMETER);
        return makeEmptyData(kMissingKeyState);
    }
    const TKeyOrder bindings = keysInByteOrder(*ref);
    setStatus(rc, CMPI_RC_OK);
    if (index >= bindings.size()) {
        setStatus(rc, CMPI_RC_ERR_NOT_FOUND);
        return makeEmptyData(kMissingKeyState);
    }
    const TKeyBinding* binding = bindings[index];
    const CMPIData data = keyData(binding->second);
    if (name != nullptr) {
        *name = string2CMPIString(binding->first);
    }
    return data;
}

CMPICount refGetKeyCount(const CMPIObjectPath* path, CMPIStatus* rc)
{
    const TCIMReference* ref = referenceOf(path);
    if (ref == nullptr) {
        setStatus(rc, CMPI_RC_ERR_INVALID_PARAMETER);
        return 0;
    }
    const CMPICount count = static_cast<CMPICount>(ref->GetKeyCount());
    setStatus(rc, CMPI_RC_OK);
    return count;
}

// The setters below never change the path: paths handed to providers are
// read-only views of host references.
CMPIStatus refSetNameSpace(CMPIObjectPath* path, const char*)
{
    return makeStatus(referenceOf(path) != nullptr ? CMPI_RC_OK : CMPI_RC_ERR_INVALID_PARAMETER);
}

CMPIStatus refSetHostname(CMPIObjectPath*, const char*)
{
    return makeStatus(CMPI_RC_OK);
}

CMPIStatus refSetClassName(CMPIObjectPath*, const char*)
{
    return makeStatus(CMPI_RC_OK);
}

CMPIStatus bothPathsValid(const CMPIObjectPath* path, const CMPIObjectPath* source)
{
    const bool valid = referenceOf(path) != nullptr && referenceOf(source) != nullptr;
    return makeStatus(valid ? CMPI_RC_OK : CMPI_RC_ERR_INVALID_PARAMETER);
}

CMPIStatus refSetNameSpaceFromObjectPath(CMPIObjectPath* path, const CMPIObjectPath* source)
{
    return bothPathsValid(path, source);
}

CMPIStatus refSetHostAndNameSpaceFromObjectPath(CMPIObjectPath* path, const CMPIObjectPath* source)
{
    return bothPathsValid(path, source);
}

CMPIObjectPathFT objectPathFtab = {
    100,
    nullptr,  // release
    nullptr,  // clone
    refSetNameSpace,
    refGetNameSpace,
    refSetHostname,
    refGetHostname,
    refSetClassName,
    refGetClassName,
    refAddKey,
    refGetKey,
    refGetKeyAt,
    refGetKeyCount,
    refSetNameSpaceFromObjectPath,
    refSetHostAndNameSpaceFromObjectPath,
    nullptr,  // getClassQualifier
    nullptr,  // getPropertyQualifier
    nullptr,  // getMethodQualifier
    nullptr,  // getParameterQualifier
    refToString,
};

}  // namespace

CMPIObjectPathFT* cmpiObjectPathFt = &objectPathFtab;
