// The host's in-memory instance: property values that start from the class
// defaults, a path built from the key properties, and association walks
// through the namespace. An instance keeps only its values; the class's
// layout (declarations, names, defaults) is shared by all its instances, and
// the property objects that GetProperty hands out are made on first use.
#ifndef ZENTA_HOST_TINMEMINSTANCE_H
#define ZENTA_HOST_TINMEMINSTANCE_H

#include <atomic>
#include <memory>
#include <string>

#include <boost/enable_shared_from_this.hpp>
#include <boost/shared_ptr.hpp>

#include "ICIMInstance.h"
#include "ZentaTypes.h"

namespace NVURZENTA20 {

struct TInstanceLayout;

class TInmemInstance : public ICIMInstance, public boost::enable_shared_from_this<TInmemInstance> {
public:
    // What an instance stands for, and so where AddToNamespace files it.
    enum EInstanceKind {
        kRepositoryInstance = 0,    // stored in its class in the repository
        kTransientInstance = 1,     // built for one answer, never filed
        kRegistrationInstance = 2,  // read from a registration document
        kProviderInstance = 3       // served by a plug-in provider
    };

    TInmemInstance(boost::shared_ptr<ICIMClass> cls, int kind);
    ~TInmemInstance() override;

    int GetKind() const { return fKind; }

    // The properties in declaration order, read in place: for hosts that
    // read every property of many instances. Names and values stay valid
    // while the instance lives unchanged; instances of one class (as it is
    // now) share their names, so equal name addresses mean the same order.
    std::size_t GetPropertyCount() const;
    const std::string& GetPropertyName(std::size_t index) const;
    const TCIMValue& GetPropertyValue(std::size_t index) const;

    bool Validate(TCIMContext context) const override;
    bool AddToNamespace(TCIMContext context) override;
    void ModifyInstance(boost::shared_ptr<ICIMInstance> modified, TCIMContext context) override;
    void Delete(TCIMContext context) override;
    TCIMReference GetReference(TCIMContext context) const override;
    boost::shared_ptr<ICIMClass> GetClass(TCIMContext context) const override;
    void EnumerateAssociatedInstances(const TInstanceCallback& callback, const std::string& assocClass,
                                      const std::string& resultClass, const std::string& role,
                                      const std::string& resultRole, TCIMContext context) override;
    void EnumerateAssociationInstances(const TInstanceCallback& callback, const std::string& resultClass,
                                       const std::string& role, TCIMContext context) override;
    boost::shared_ptr<ICIMProperty> GetProperty(const std::string& name, TCIMContext context) const override;
    void SetPropertyValue(const std::string& name, const TCIMValue& value, TCIMContext context) override;
    void EnumerateProperties(const TPropertyCallback& callback, TCIMContext context) override;
    TCIMValue InvokeMethod(const std::string& name, TCIMContext& parameters, TCIMContext context) override;
    bool operator==(ICIMInstance& other) const override;
    bool operator<(ICIMInstance& other) const override;
    ICIMInstance& operator=(const ICIMInstance& other) override;

private:
    class TProperty;

    // The slot of property `name`, or fLayout's size.
    std::size_t SlotOf(const std::string& name) const;
    // Writes are checked against the declaration.
    void SetSlot(std::size_t slot, const TCIMValue& value);
    // The property objects of the slots, made on first use.
    TProperty* Properties() const;
    // A property object that keeps this instance alive while it is held.
    boost::shared_ptr<ICIMProperty> PropertyAt(std::size_t slot) const;
    // Sets this instance's properties from the properties of the same names
    // in `other`, all or none.
    void CopyValuesFrom(const ICIMInstance& other);

    boost::shared_ptr<ICIMClass> fClass;
    int fKind;
    // What every instance of the class shares: the declarations, their
    // names and defaults.
    boost::shared_ptr<const TInstanceLayout> fLayout;
    std::unique_ptr<TCIMValue[]> fValues;  // one per slot of the layout
    mutable std::atomic<TProperty*> fProperties;
};

}  // namespace NVURZENTA20

#endif
