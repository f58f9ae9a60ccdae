#include "cmpiArray.h"
#include "cmpiValue.h"

#include <cstring>
#include <limits>
#include <new>

#include "cmpiStatus.h"

namespace {

// Room for the header and `count` elements; a count whose slot total does
// not fit is refused like any other impossible allocation.
CMPIData* allocateSlots(CMPICount count)
{
    if (count == std::numeric_limits<CMPICount>::max()) {
        throw std::bad_array_new_length();
    }
    return new CMPIData[std::size_t(count) + 1]();
}

}  // namespace

CMPIData* newArrayStore(CMPICount count, CMPIType elementType, CMPIValueState elementState)
{
    CMPIData* store = allocateSlots(count);
    const CMPIType type = elementType & ~CMPI_ARRAY;
    store[0].type = type;
    store[0].state = CMPI_nullValue;
    store[0].value.uint32 = count;
    for (CMPICount i = 1; i <= count; ++i) {
        store[i].type = type;
        store[i].state = elementState;
    }
    return store;
}

void deleteArrayStore(CMPIData* store)
{
    delete[] store;
}

CMPICount arrayStoreCount(const CMPIData* store)
{
    return store[0].value.uint32;
}

CMPIArray* newArrayRecord(CMPIData* store)
{
    CMPIArray* array = new CMPIArray;
    array->hdl = store;
    array->ft = cmpiArrayFt;
    return array;
}

void deleteArrayRecord(CMPIArray* array)
{
    deleteArrayStore(static_cast<CMPIData*>(array->hdl));
    delete array;
}

namespace {

CMPIData* storeOf(const CMPIArray* array)
{
    return static_cast<CMPIData*>(array->hdl);
}

// The record stays (a registered one is freed with the registry); the
// handle is cleared so that the registry does not free the store again.
CMPIStatus arrayRelease(CMPIArray* array)
{
    deleteArrayStore(storeOf(array));
    array->hdl = nullptr;
    return makeStatus(CMPI_RC_OK);
}

// Clones one element record through the record's own table. A table
// without clone cannot copy the element.
template <class Record>
CMPIStatus cloneRecord(Record*& target, const Record* source)
{
    if (source == nullptr) {
        return makeStatus(CMPI_RC_OK);
    }
    if (source->ft->clone == nullptr) {
        return makeStatus(CMPI_RC_ERR_NOT_SUPPORTED);
    }
    CMPIStatus status = makeStatus(CMPI_RC_OK);
    target = source->ft->clone(source, &status);
    return status;
}

// Elements of the encapsulated types are objects of their own and are
// cloned; C strings and raw pointers (which share the type bit) are copied.
CMPIStatus cloneElement(CMPIType elementType, CMPIValue& target, const CMPIValue& source)
{
    switch (elementType) {
    case CMPI_string: return cloneRecord(target.string, source.string);
    case CMPI_instance: return cloneRecord(target.inst, source.inst);
    case CMPI_ref: return cloneRecord(target.ref, source.ref);
    case CMPI_dateTime: return cloneRecord(target.dateTime, source.dateTime);
    case CMPI_args: return cloneRecord(target.args, source.args);
    case CMPI_enumeration: return cloneRecord(target.Enum, source.Enum);
    case CMPI_filter: return cloneRecord(target.filter, source.filter);
    default: return makeStatus(CMPI_RC_OK);
    }
}

// Elements in good state of an encapsulated type are cloned. The walk
// starts at the header slot, whose state (CMPI_nullValue) keeps its count
// from being taken for an object.
CMPIArray* arrayClone(const CMPIArray* array, CMPIStatus* rc)
{
    const CMPIData* source = storeOf(array);
    const CMPICount count = arrayStoreCount(source);
    CMPIData* copy = allocateSlots(count);
    CMPIArray* clone = newArrayRecord(copy);
    const CMPIType elementType = source[0].type;
    const bool encapsulated = (elementType & CMPI_ENC) != 0;
    for (CMPICount slot = 0; slot <= count; ++slot) {
        std::memcpy(&copy[slot], &source[slot], sizeof(CMPIData));
        if (!encapsulated || source[slot].state != CMPI_goodValue) {
            continue;
        }
        const CMPIStatus elementRc = cloneElement(elementType, copy[slot].value, source[slot].value);
        if (elementRc.rc != CMPI_RC_OK) {
            // Element clones made so far belong to their own tables and
            // stay; the half-built array goes.
            deleteArrayRecord(clone);
            if (rc != nullptr) {
                *rc = elementRc;
            }
            return nullptr;
        }
    }
    setStatus(rc, CMPI_RC_OK);
    return clone;
}

CMPICount arrayGetSize(const CMPIArray* array, CMPIStatus* rc)
{
    setStatus(rc, CMPI_RC_OK);
    return arrayStoreCount(storeOf(array));
}

CMPIType arrayGetType(const CMPIArray* array, CMPIStatus* rc)
{
    setStatus(rc, CMPI_RC_OK);
    return storeOf(array)[0].type;
}

CMPIData arrayGetElementAt(const CMPIArray* array, CMPICount index, CMPIStatus* rc)
{
    setStatus(rc, CMPI_RC_OK);
    const CMPIData* store = storeOf(array);
    if (index >= arrayStoreCount(store)) {
        setStatus(rc, CMPI_RC_ERR_NOT_FOUND);
        return makeEmptyData(CMPI_nullValue);
    }
    return store[index + 1];
}

// Encapsulated values are stored by pointer, not cloned.
CMPIStatus arraySetElementAt(CMPIArray* array, CMPICount index, const CMPIValue* value, CMPIType type)
{
    CMPIData* store = storeOf(array);
    if (index >= arrayStoreCount(store)) {
        return makeStatus(CMPI_RC_ERR_NOT_FOUND);
    }
    if (type != (store[0].type & ~CMPI_ARRAY)) {
        return makeStatus(CMPI_RC_ERR_TYPE_MISMATCH);
    }
    store[index + 1].state = CMPI_goodValue;
    store[index + 1].value = readProviderValue(value, type);
    return makeStatus(CMPI_RC_OK);
}

CMPIArrayFT arrayFtab = {
    100,
    arrayRelease,
    arrayClone,
    arrayGetSize,
    arrayGetType,
    arrayGetElementAt,
    arraySetElementAt,
};

}  // namespace

CMPIArrayFT* cmpiArrayFt = &arrayFtab;
