// gmock stand-ins for the host's namespace, class, instance and property
// interfaces. Operators cannot be mocked by name; they answer trivially.
#ifndef ZENTA_TESTS_HOST_MOCKHOSTOBJECTS_H
#define ZENTA_TESTS_HOST_MOCKHOSTOBJECTS_H

#include <string>

#include <boost/shared_ptr.hpp>
#include <gmock/gmock.h>

#include "ICIMClass.h"
#include "ICIMInstance.h"
#include "ICIMNamespace.h"
#include "ICIMProperty.h"

namespace NVURZENTA20 {

class MockNamespace : public ICIMNamespace {
public:
    MOCK_METHOD(boost::shared_ptr<INamespaceProvider>, GetNamespaceProvider, (TCIMContext), (const, override));
    MOCK_METHOD(void, SetUpcallNamespace, (boost::shared_ptr<ICIMNamespace>, TCIMContext), (override));
    MOCK_METHOD(void, AddUnderlyingNamespace, (boost::shared_ptr<ICIMNamespace>, TCIMContext), (override));
    MOCK_METHOD(boost::shared_ptr<ICIMClass>, AllocateClass,
                (const std::string&, boost::shared_ptr<ICIMClass>, TCIMContext), (override));
    MOCK_METHOD(boost::shared_ptr<ICIMClass>, GetClass, (const std::string&, TCIMContext), (override));
    MOCK_METHOD(void, EnumerateRootClasses, (const TClassCallback&, TCIMContext), (override));
    MOCK_METHOD(void, EnumerateProviders, (const TProviderCallback&, TCIMContext), (override));
    MOCK_METHOD(boost::shared_ptr<ICIMQualifierDecl>, AllocateQualifierDecl,
                (const std::string&, const TCIMValue&, ICIMQualifierDecl::EScope, ICIMQualifierDecl::EFlavor,
                 TCIMContext),
                (override));
    MOCK_METHOD(boost::shared_ptr<ICIMQualifierDecl>, GetQualifierDecl, (const std::string&, TCIMContext),
                (const, override));
    MOCK_METHOD(void, EnumerateQualifierDecls, (const TQualifierDeclCallback&, TCIMContext), (const, override));
    MOCK_METHOD(void, Subscribe, (boost::shared_ptr<ICIMIndicationFilter>, const TInstanceCallback&, TCIMContext),
                (override));
    MOCK_METHOD(boost::shared_ptr<ICIMInstance>, GetInstance, (const TCIMReference&, TCIMContext),
                (const, override));
    MOCK_METHOD(void, DeleteInstance, (const TCIMReference&, TCIMContext), (override));
    MOCK_METHOD(void, ModifyInstance, (const TCIMReference&, TCIMContext, TCIMContext), (override));
    MOCK_METHOD(void, ExecuteQuery, (const TInstanceCallback&, std::string&, std::string&, TCIMContext),
                (override));
    MOCK_METHOD(void, ClearInstances, (), (override));
    ICIMNamespace& operator=(ICIMNamespace&) override { return *this; }
};

class MockClass : public ICIMClass {
public:
    MOCK_METHOD(bool, Validate, (TCIMContext), (const, override));
    MOCK_METHOD(void, AddQualifier, (boost::shared_ptr<ICIMQualifier>, TCIMContext), (override));
    MOCK_METHOD(boost::shared_ptr<ICIMQualifier>, AllocateQualifier,
                (boost::shared_ptr<const ICIMQualifierDecl>, const TCIMValue&, TCIMContext), (const, override));
    MOCK_METHOD(boost::shared_ptr<ICIMQualifier>, AllocateQualifier,
                (boost::shared_ptr<const ICIMQualifierDecl>, const TCIMValue&, ICIMQualifierDecl::EFlavor,
                 TCIMContext),
                (const, override));
    MOCK_METHOD(boost::shared_ptr<ICIMQualifier>, GetQualifier, (const std::string&, TCIMContext),
                (const, override));
    MOCK_METHOD(void, EnumerateQualifiers, (const TQualifierCallback&, TCIMContext), (const, override));
    MOCK_METHOD(boost::shared_ptr<ICIMQualifier>, GetQualifier, (const std::string&, bool&, TCIMContext),
                (const, override));
    MOCK_METHOD(bool, AddToNamespace, (TCIMContext), (override));
    MOCK_METHOD(void, RemoveFromNamespace, (TCIMContext), (override));
    MOCK_METHOD(void, ModifyClass, (boost::shared_ptr<ICIMClass>, TCIMContext), (override));
    MOCK_METHOD(std::string, GetName, (TCIMContext), (const, override));
    MOCK_METHOD(boost::shared_ptr<ICIMNamespace>, GetNamespace, (TCIMContext), (const, override));
    MOCK_METHOD(bool, IsAssociation, (TCIMContext), (const, override));
    MOCK_METHOD(bool, IsAbstract, (TCIMContext), (const, override));
    MOCK_METHOD(bool, IsRootClass, (TCIMContext), (const, override));
    MOCK_METHOD(boost::shared_ptr<ICIMClass>, GetSuperClass, (TCIMContext), (const, override));
    MOCK_METHOD(void, EnumerateSubClasses, (const TClassCallback&, bool, TCIMContext), (override));
    MOCK_METHOD(bool, IsSubclassOf, (boost::shared_ptr<const ICIMClass>, TCIMContext), (const, override));
    MOCK_METHOD(void, EnumerateAssociatedClasses,
                (const TClassCallback&, const std::string&, const std::string&, const std::string&,
                 const std::string&, TCIMContext),
                (override));
    MOCK_METHOD(void, EnumerateAssociationClasses,
                (const TClassCallback&, const std::string&, const std::string&, TCIMContext), (override));
    MOCK_METHOD(void, EnumerateKeyNames, (const TKeyNameCallback&, TCIMContext), (const, override));
    MOCK_METHOD(boost::shared_ptr<ICIMPropertyDecl>, AllocatePropertyDecl,
                (const std::string&, const TCIMValue&, TCIMContext), (override));
    MOCK_METHOD(boost::shared_ptr<ICIMPropertyDecl>, GetPropertyDecl, (const std::string&, TCIMContext),
                (const, override));
    MOCK_METHOD(void, EnumeratePropertyDecls, (const TPropertyDeclCallback&, TCIMContext), (const, override));
    MOCK_METHOD(boost::shared_ptr<ICIMProperty>, GetProperty, (const std::string&, TCIMContext), (override));
    MOCK_METHOD(void, SetPropertyValue, (const std::string&, const TCIMValue&, TCIMContext), (override));
    MOCK_METHOD(void, EnumerateStaticProperties, (const TPropertyCallback&, TCIMContext), (override));
    MOCK_METHOD(boost::shared_ptr<ICIMInstance>, AllocateInstance, (TCIMContext), (override));
    MOCK_METHOD(void, EnumerateInstances, (const TInstanceCallback&, bool, TCIMContext), (override));
    MOCK_METHOD(boost::shared_ptr<ICIMMethodDecl>, AllocateMethodDecl,
                (const std::string&, TCIMValue::TCIMType, TCIMContext), (override));
    MOCK_METHOD(boost::shared_ptr<ICIMMethodDecl>, GetMethodDecl, (const std::string&, TCIMContext),
                (const, override));
    MOCK_METHOD(void, EnumerateMethodDecls, (const TMethodDeclCallback&, TCIMContext), (const, override));
    MOCK_METHOD(TCIMValue, InvokeMethod, (const std::string&, TCIMContext&, TCIMContext), (override));
    MOCK_METHOD(void, AddChildClass, (boost::shared_ptr<ICIMClass>), (override));
    MOCK_METHOD(void, RemoveChildClass, (boost::shared_ptr<ICIMClass>), (override));
    MOCK_METHOD(bool, AddInstance, (boost::shared_ptr<ICIMInstance>), (override));
    MOCK_METHOD(void, RemoveInstance, (boost::shared_ptr<ICIMInstance>), (override));
    MOCK_METHOD(void, AddAssociationClass, (boost::shared_ptr<ICIMClass>), (override));
    MOCK_METHOD(void, RemoveAssociationClass, (boost::shared_ptr<ICIMClass>), (override));
    MOCK_METHOD(void, AddPropertyDecl, (boost::shared_ptr<ICIMPropertyDecl>), (override));
    MOCK_METHOD(void, RemovePropertyDecl, (boost::shared_ptr<ICIMPropertyDecl>), (override));
    MOCK_METHOD(void, AddMethodDecl, (boost::shared_ptr<ICIMMethodDecl>), (override));
    MOCK_METHOD(void, RemoveMethodDecl, (boost::shared_ptr<ICIMMethodDecl>), (override));
    bool operator==(ICIMClass& other) const override { return this == &other; }
    bool operator<(ICIMClass& other) const override { return this < &other; }
    ICIMClass& operator=(const ICIMClass&) override { return *this; }
};

class MockInstance : public ICIMInstance {
public:
    MOCK_METHOD(bool, Validate, (TCIMContext), (const, override));
    MOCK_METHOD(bool, AddToNamespace, (TCIMContext), (override));
    MOCK_METHOD(void, ModifyInstance, (boost::shared_ptr<ICIMInstance>, TCIMContext), (override));
    MOCK_METHOD(void, Delete, (TCIMContext), (override));
    MOCK_METHOD(TCIMReference, GetReference, (TCIMContext), (const, override));
    MOCK_METHOD(boost::shared_ptr<ICIMClass>, GetClass, (TCIMContext), (const, override));
    MOCK_METHOD(void, EnumerateAssociatedInstances,
                (const TInstanceCallback&, const std::string&, const std::string&, const std::string&,
                 const std::string&, TCIMContext),
                (override));
    MOCK_METHOD(void, EnumerateAssociationInstances,
                (const TInstanceCallback&, const std::string&, const std::string&, TCIMContext), (override));
    MOCK_METHOD(boost::shared_ptr<ICIMProperty>, GetProperty, (const std::string&, TCIMContext), (const, override));
    MOCK_METHOD(void, SetPropertyValue, (const std::string&, const TCIMValue&, TCIMContext), (override));
    MOCK_METHOD(void, EnumerateProperties, (const TPropertyCallback&, TCIMContext), (override));
    MOCK_METHOD(TCIMValue, InvokeMethod, (const std::string&, TCIMContext&, TCIMContext), (override));
    bool operator==(ICIMInstance& other) const override { return this == &other; }
    bool operator<(ICIMInstance& other) const override { return this < &other; }
    ICIMInstance& operator=(const ICIMInstance&) override { return *this; }
};

class MockProperty : public ICIMProperty {
public:
    MOCK_METHOD(std::string, GetName, (), (const, override));
    MOCK_METHOD(TCIMValue, GetValue, (), (const, override));
    MOCK_METHOD(void, SetValue, (const TCIMValue&), (override));
    MOCK_METHOD(boost::shared_ptr<ICIMPropertyDecl>, GetDecl, (), (const, override));
};

}  // namespace NVURZENTA20

#endif
