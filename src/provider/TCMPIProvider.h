// The host-visible record of one registered CMPI provider.
#ifndef ZENTA_CMPI_TCMPIPROVIDER_H
#define ZENTA_CMPI_TCMPIPROVIDER_H

#include <string>
#include <vector>

#include <boost/shared_ptr.hpp>

#include "ICIMClass.h"
#include "IProvider.h"
#include "cmpift.h"
#include "providerInit.h"

class TCMPIProvider : public NVURZENTA20::IProvider {
public:
    typedef std::vector<boost::shared_ptr<NVURZENTA20::ICIMClass> > TClassList;

    explicit TCMPIProvider(_ProviderInfo* info);
    ~TCMPIProvider() override;

    std::string GetName(NVURZENTA20::TCIMContext context) const override;
    // Whether GetName answers `name`, without copying it: every request
    // looks its provider up by name.
    bool HasName(const std::string& name) const {
        return fNameAndDescriptionSet ? fName == name : NameFromPath() == name;
    }
    std::string GetModuleName(NVURZENTA20::TCIMContext context) const override;
    std::string GetDescription(NVURZENTA20::TCIMContext context) const override;
    boost::shared_ptr<NVURZENTA20::ICIMNamespace> GetNamespace(NVURZENTA20::TCIMContext context) const override;
    void EnumerateClassesProvided(const NVURZENTA20::TClassCallback& callback,
                                  NVURZENTA20::TCIMContext context) override;
    NVURZENTA20::IProvider& operator=(const NVURZENTA20::IProvider& other) override;

    boost::shared_ptr<_ProviderInfo> GetProviderInfo() const { return fProviderInfo; }
    bool IsInitialized() const { return fInitialized; }

    std::string GetNameSpaceName(NVURZENTA20::TCIMContext context) const;
    const std::string& GetPath() const { return fPath; }
    void SetName(const std::string& name) { fName = name; }
    void SetModuleName(const std::string& name) { fModuleName = name; }
    void SetNameSpaceName(const std::string& name) { fNamespaceName = name; }
    void SetPath(const std::string& path) { fPath = path; }
    void SetDescription(const std::string& description) { fDescription = description; }

    std::string GetRegistrationPath() const;
    std::string GetSpecificationPath() const;

    void SetCollectedClasses(const TClassList& classes) { fCollectedClasses = classes; }
    const TClassList& GetCollectedClasses() const { return fCollectedClasses; }
    bool IsClassesProvided(const std::string& className) const;

    void LoadSpecificationDocument();
    void AddPluginToClass();
    void Initialize(boost::shared_ptr<CMPIBroker> broker);

private:
    std::string NameFromPath() const;

    boost::shared_ptr<_ProviderInfo> fProviderInfo;
    TClassList fCollectedClasses;
    std::string fModuleName;
    std::string fNamespaceName;
    std::string fPath;
    bool fInitialized;
    std::string fName;
    std::string fDescription;
    bool fNameAndDescriptionSet;
};

#endif
