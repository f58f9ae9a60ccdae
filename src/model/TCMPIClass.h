// A CIM class of the CMPI namespace: wraps the repository's class and
// routes instance requests and class methods to the provider that serves it.
#ifndef ZENTA_CMPI_TCMPICLASS_H
#define ZENTA_CMPI_TCMPICLASS_H

#include <stack>
#include <string>

#include <boost/enable_shared_from_this.hpp>
#include <boost/shared_ptr.hpp>
#include <boost/weak_ptr.hpp>

#include "ICIMClass.h"
#include "ICIMInstance.h"
#include "TCIMReference.h"

class TCMPINamespace;
class TCMPIProvider;

class TCMPIClass : public NVURZENTA20::ICIMClass, public boost::enable_shared_from_this<TCMPIClass> {
public:
    TCMPIClass(boost::shared_ptr<TCMPINamespace> ns, boost::shared_ptr<NVURZENTA20::ICIMClass> cls);
    ~TCMPIClass() override;

    // ICIMElement
    bool Validate(NVURZENTA20::TCIMContext context) const override;
    // ICIMClass
    bool AddToNamespace(NVURZENTA20::TCIMContext context) override;
    void RemoveFromNamespace(NVURZENTA20::TCIMContext context) override;
    void ModifyClass(boost::shared_ptr<NVURZENTA20::ICIMClass> modified, NVURZENTA20::TCIMContext context) override;
    std::string GetName(NVURZENTA20::TCIMContext context) const override;
    boost::shared_ptr<NVURZENTA20::ICIMNamespace> GetNamespace(NVURZENTA20::TCIMContext context) const override;
    bool IsAssociation(NVURZENTA20::TCIMContext context) const override;
    bool IsAbstract(NVURZENTA20::TCIMContext context) const override;
    bool IsRootClass(NVURZENTA20::TCIMContext context) const override;
    boost::shared_ptr<NVURZENTA20::ICIMClass> GetSuperClass(NVURZENTA20::TCIMContext context) const override;
    void EnumerateSubClasses(const NVURZENTA20::TClassCallback& callback, bool deep,
                             NVURZENTA20::TCIMContext context) override;
    bool IsSubclassOf(boost::shared_ptr<const NVURZENTA20::ICIMClass> other,
                      NVURZENTA20::TCIMContext context) const override;
    void EnumerateAssociatedClasses(const NVURZENTA20::TClassCallback& callback, const std::string& assocClass,
                                    const std::string& resultClass, const std::string& role,
                                    const std::string& resultRole, NVURZENTA20::TCIMContext context) override;
    void EnumerateAssociationClasses(const NVURZENTA20::TClassCallback& callback, const std::string& resultClass,
                                     const std::string& role, NVURZENTA20::TCIMContext context) override;
    void EnumerateKeyNames(const NVURZENTA20::TKeyNameCallback& callback,
                           NVURZENTA20::TCIMContext context) const override;
    boost::shared_ptr<NVURZENTA20::ICIMPropertyDecl> AllocatePropertyDecl(const std::string& name,
                                                                          const NVURZENTA20::TCIMValue& value,
                                                                          NVURZENTA20::TCIMContext context) override;
    boost::shared_ptr<NVURZENTA20::ICIMPropertyDecl> GetPropertyDecl(const std::string& name,
                                                                     NVURZENTA20::TCIMContext context) const override;
    void EnumeratePropertyDecls(const NVURZENTA20::TPropertyDeclCallback& callback,
                                NVURZENTA20::TCIMContext context) const override;
    boost::shared_ptr<NVURZENTA20::ICIMProperty> GetProperty(const std::string& name,
                                                             NVURZENTA20::TCIMContext context) override;
    void SetPropertyValue(const std::string& name, const NVURZENTA20::TCIMValue& value,
                          NVURZENTA20::TCIMContext context) override;
    void EnumerateStaticProperties(const NVURZENTA20::TPropertyCallback& callback,
                                   NVURZENTA20::TCIMContext context) override;
    boost::shared_ptr<NVURZENTA20::ICIMInstance> AllocateInstance(NVURZENTA20::TCIMContext context) override;
    void EnumerateInstances(const NVURZENTA20::TInstanceCallback& callback, bool deep,
                            NVURZENTA20::TCIMContext context) override;
    boost::shared_ptr<NVURZENTA20::ICIMMethodDecl> AllocateMethodDecl(const std::string& name,
                                                                      NVURZENTA20::TCIMValue::TCIMType returnType,
                                                                      NVURZENTA20::TCIMContext context) override;
    boost::shared_ptr<NVURZENTA20::ICIMMethodDecl> GetMethodDecl(const std::string& name,
                                                                 NVURZENTA20::TCIMContext context) const override;
    void EnumerateMethodDecls(const NVURZENTA20::TMethodDeclCallback& callback,
                              NVURZENTA20::TCIMContext context) const override;
    NVURZENTA20::TCIMValue InvokeMethod(const std::string& name, NVURZENTA20::TCIMContext& parameters,
                                        NVURZENTA20::TCIMContext context) override;
    bool operator==(NVURZENTA20::ICIMClass& other) const override;
    bool operator<(NVURZENTA20::ICIMClass& other) const override;
    NVURZENTA20::ICIMClass& operator=(const NVURZENTA20::ICIMClass& other) override;
    void AddChildClass(boost::shared_ptr<NVURZENTA20::ICIMClass> child) override;
    void RemoveChildClass(boost::shared_ptr<NVURZENTA20::ICIMClass> child) override;
    bool AddInstance(boost::shared_ptr<NVURZENTA20::ICIMInstance> instance) override;
    void RemoveInstance(boost::shared_ptr<NVURZENTA20::ICIMInstance> instance) override;
    void AddAssociationClass(boost::shared_ptr<NVURZENTA20::ICIMClass> association) override;
    void RemoveAssociationClass(boost::shared_ptr<NVURZENTA20::ICIMClass> association) override;
    void AddPropertyDecl(boost::shared_ptr<NVURZENTA20::ICIMPropertyDecl> decl) override;
    void RemovePropertyDecl(boost::shared_ptr<NVURZENTA20::ICIMPropertyDecl> decl) override;
    void AddMethodDecl(boost::shared_ptr<NVURZENTA20::ICIMMethodDecl> decl) override;
    void RemoveMethodDecl(boost::shared_ptr<NVURZENTA20::ICIMMethodDecl> decl) override;
    // ICIMNamedElement
    void AddQualifier(boost::shared_ptr<NVURZENTA20::ICIMQualifier> qualifier,
                      NVURZENTA20::TCIMContext context) override;
    boost::shared_ptr<NVURZENTA20::ICIMQualifier> AllocateQualifier(
        boost::shared_ptr<const NVURZENTA20::ICIMQualifierDecl> decl, const NVURZENTA20::TCIMValue& value,
        NVURZENTA20::TCIMContext context) const override;
    boost::shared_ptr<NVURZENTA20::ICIMQualifier> AllocateQualifier(
        boost::shared_ptr<const NVURZENTA20::ICIMQualifierDecl> decl, const NVURZENTA20::TCIMValue& value,
        NVURZENTA20::ICIMQualifierDecl::EFlavor flavor, NVURZENTA20::TCIMContext context) const override;
    boost::shared_ptr<NVURZENTA20::ICIMQualifier> GetQualifier(const std::string& name,
                                                               NVURZENTA20::TCIMContext context) const override;
    void EnumerateQualifiers(const NVURZENTA20::TQualifierCallback& callback,
                             NVURZENTA20::TCIMContext context) const override;
    boost::shared_ptr<NVURZENTA20::ICIMQualifier> GetQualifier(const std::string& name, bool& propagated,
                                                               NVURZENTA20::TCIMContext context) const override;
    // Own
    virtual void ClearInstances();

    void EnumerateInstancesImpl(const NVURZENTA20::TInstanceCallback& callback, bool deep,
                                NVURZENTA20::TCIMContext context) const;
    boost::shared_ptr<NVURZENTA20::ICIMInstance> GetInstance(const NVURZENTA20::TCIMReference& path,
                                                             NVURZENTA20::TCIMContext context);
    boost::shared_ptr<NVURZENTA20::ICIMClass> GetWrappedClass() const { return fClass; }
    boost::shared_ptr<TCMPINamespace> GetCMPINamespace() const;

private:
    class TEnumerationFrame;

    std::string GetPluginName() const;
    boost::shared_ptr<TCMPIProvider> FindProvider(const std::string& pluginName) const;
    void StartProviderIfNeeded(const boost::shared_ptr<TCMPIProvider>& provider,
                               const std::string& pluginName) const;

    static std::stack<const NVURZENTA20::TInstanceCallback*>& fgEnumerateInstancesCallback();
    static std::stack<bool>& fgEnumerateInstancesContinue();
    static std::stack<boost::shared_ptr<const NVURZENTA20::ICIMClass> >& fgEnumerateInstancesClass();

    boost::weak_ptr<TCMPINamespace> fNamespace;
    boost::shared_ptr<NVURZENTA20::ICIMClass> fClass;
};

#endif
