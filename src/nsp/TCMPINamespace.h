// The CMPI namespace: stands between the host's repository and upcall
// namespaces, owns the loaded providers and the broker handed to them.
#ifndef ZENTA_CMPI_TCMPINAMESPACE_H
#define ZENTA_CMPI_TCMPINAMESPACE_H

#include <string>
#include <vector>

#include <boost/enable_shared_from_this.hpp>
#include <boost/shared_ptr.hpp>
#include <boost/weak_ptr.hpp>

#include "ICIMNamespace.h"
#include "TClassProvider.h"
#include "TCMPIProvider.h"
#include "cmpift.h"

class TCMPINamespace : public NVURZENTA20::ICIMNamespace, public boost::enable_shared_from_this<TCMPINamespace> {
public:
    typedef std::vector<boost::shared_ptr<TCMPIProvider> > TProviderList;
    typedef std::vector<boost::shared_ptr<TClassProvider> > TClassProviderList;

    explicit TCMPINamespace(NVURZENTA20::TCIMContext context);
    ~TCMPINamespace() override;

    boost::shared_ptr<NVURZENTA20::INamespaceProvider> GetNamespaceProvider(
        NVURZENTA20::TCIMContext context) const override;
    void SetUpcallNamespace(boost::shared_ptr<NVURZENTA20::ICIMNamespace> upcall,
                            NVURZENTA20::TCIMContext context) override;
    void AddUnderlyingNamespace(boost::shared_ptr<NVURZENTA20::ICIMNamespace> underlying,
                                NVURZENTA20::TCIMContext context) override;
    boost::shared_ptr<NVURZENTA20::ICIMClass> AllocateClass(const std::string& name,
                                                            boost::shared_ptr<NVURZENTA20::ICIMClass> superClass,
                                                            NVURZENTA20::TCIMContext context) override;
    boost::shared_ptr<NVURZENTA20::ICIMClass> GetClass(const std::string& name,
                                                       NVURZENTA20::TCIMContext context) override;
    void EnumerateRootClasses(const NVURZENTA20::TClassCallback& callback,
                              NVURZENTA20::TCIMContext context) override;
    void EnumerateProviders(const NVURZENTA20::TProviderCallback& callback,
                            NVURZENTA20::TCIMContext context) override;
    boost::shared_ptr<NVURZENTA20::ICIMQualifierDecl> AllocateQualifierDecl(
        const std::string& name, const NVURZENTA20::TCIMValue& value,
        NVURZENTA20::ICIMQualifierDecl::EScope scope, NVURZENTA20::ICIMQualifierDecl::EFlavor flavor,
        NVURZENTA20::TCIMContext context) override;
    boost::shared_ptr<NVURZENTA20::ICIMQualifierDecl> GetQualifierDecl(
        const std::string& name, NVURZENTA20::TCIMContext context) const override;
    void EnumerateQualifierDecls(const NVURZENTA20::TQualifierDeclCallback& callback,
                                 NVURZENTA20::TCIMContext context) const override;
    void Subscribe(boost::shared_ptr<NVURZENTA20::ICIMIndicationFilter> filter,
                   const NVURZENTA20::TInstanceCallback& callback, NVURZENTA20::TCIMContext context) override;
    boost::shared_ptr<NVURZENTA20::ICIMInstance> GetInstance(const NVURZENTA20::TCIMReference& path,
                                                             NVURZENTA20::TCIMContext context) const override;
    void DeleteInstance(const NVURZENTA20::TCIMReference& path, NVURZENTA20::TCIMContext context) override;
    void ModifyInstance(const NVURZENTA20::TCIMReference& path, NVURZENTA20::TCIMContext values,
                        NVURZENTA20::TCIMContext context) override;
    void ExecuteQuery(const NVURZENTA20::TInstanceCallback& callback, std::string& query, std::string& language,
                      NVURZENTA20::TCIMContext context) override;
    void ClearInstances() override;
    NVURZENTA20::ICIMNamespace& operator=(NVURZENTA20::ICIMNamespace& other) override;

    TProviderList& GetProvidersContainer() { return fProviders; }
    boost::shared_ptr<CMPIBroker> GetBroker() const { return fBroker; }
    boost::shared_ptr<NVURZENTA20::ICIMNamespace> GetUpcallNamespace() const;
    boost::shared_ptr<NVURZENTA20::ICIMNamespace> GetRepository() const { return fRepository; }

    void FindAndLoadProviders();
    void LoadPlugin(std::string name);
    boost::shared_ptr<TCMPIProvider> SearchForPluginByName(std::string name);
    void InitializeProvider(boost::shared_ptr<TCMPIProvider> provider);
    std::vector<boost::shared_ptr<NVURZENTA20::ICIMClass> > PopulateContainerFromFile(const std::string& path);
    std::vector<boost::shared_ptr<NVURZENTA20::ICIMInstance> > PopulateContainerFromRegFile(
        const std::string& path);
    void AddClassProvider(std::string name, std::string description, std::string file);

private:
    boost::shared_ptr<NVURZENTA20::ICIMNamespace> fRepository;
    TProviderList fProviders;
    TClassProviderList fClassProviders;
    boost::shared_ptr<CMPIBroker> fBroker;
    boost::weak_ptr<NVURZENTA20::ICIMNamespace> fUpcallNamespace;
};

// Wraps each class an enumeration yields in a TCMPIClass before handing it
// to the caller's callback.
class TCreateWrappedCmpiClass {
public:
    TCreateWrappedCmpiClass(boost::shared_ptr<TCMPINamespace> ns, const NVURZENTA20::TClassCallback& callback)
        : fNamespace(ns), fCallback(callback) {}
    bool operator()(boost::shared_ptr<NVURZENTA20::ICIMClass> cls) const;

private:
    boost::shared_ptr<TCMPINamespace> fNamespace;
    const NVURZENTA20::TClassCallback& fCallback;
};

#endif
