// Shared fixtures of the in-memory repository tests: repositories with the
// standard qualifiers, class and instance builders, collectors, and a fake
// provider namespace that serves classes from a store of its own.
#ifndef ZENTA_TESTS_INMEM_INMEMTESTSUPPORT_H
#define ZENTA_TESTS_INMEM_INMEMTESTSUPPORT_H

#include <algorithm>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

#include <boost/shared_ptr.hpp>

#include "ICIMNamespace.h"
#include "IProvider.h"
#include "TCIMReference.h"
#include "TInmemNamespace.h"
#include "TStandardDocuments.h"

namespace inmemtest {

using namespace NVURZENTA20;

inline TCIMContext NoContext() { return TCIMContext(); }

inline TCIMContext OriginContext(const char* origin) {
    TCIMContext context;
    context["nspID"] = TCIMValue(origin);
    return context;
}

inline std::string DataFile(const std::string& name) { return std::string(ZENTA_TEST_DATA_DIR) + "/" + name; }

// A repository holding the standard qualifier declarations and classes.
inline boost::shared_ptr<TInmemNamespace> StandardRepository() {
    boost::shared_ptr<TInmemNamespace> ns = TInmemNamespace::Create();
    LoadStandardDocuments(ns);
    return ns;
}

inline TCIMValue NullString() {
    TCIMValue value;
    value.SetNullValue(TCIMValue::TCIMType::kString, 0);
    return value;
}

inline TCIMValue NullReference() {
    TCIMValue value;
    value.SetNullValue(TCIMValue::TCIMType::kReference, 0);
    return value;
}

// Attaches a qualifier of the namespace's declaration `name`.
inline void Qualify(ICIMNamespace& ns, ICIMNamedElement& element, const std::string& name, const TCIMValue& value) {
    boost::shared_ptr<ICIMQualifierDecl> decl = ns.GetQualifierDecl(name, NoContext());
    if (!decl) throw std::runtime_error("no qualifier declaration " + name);
    element.AddQualifier(element.AllocateQualifier(decl, value, NoContext()), NoContext());
}

inline bool IsTrueQualifier(const ICIMNamedElement& element, const std::string& name) {
    boost::shared_ptr<ICIMQualifier> qualifier = element.GetQualifier(name, NoContext());
    return qualifier && !qualifier->GetValue().IsNull() && static_cast<bool>(qualifier->GetValue());
}

inline boost::shared_ptr<ICIMPropertyDecl> AddKey(ICIMNamespace& ns, ICIMClass& cls, const std::string& name,
                                                  const TCIMValue& type = NullString()) {
    boost::shared_ptr<ICIMPropertyDecl> decl = cls.AllocatePropertyDecl(name, type, NoContext());
    Qualify(ns, *decl, "Key", TCIMValue(true));
    return decl;
}

// An association class with the given reference properties (each a key).
inline boost::shared_ptr<ICIMClass> AddAssociation(ICIMNamespace& ns, const std::string& name,
                                                   const std::vector<std::pair<std::string, std::string> >& ends,
                                                   boost::shared_ptr<ICIMClass> superClass = {}) {
    boost::shared_ptr<ICIMClass> association = ns.AllocateClass(name, superClass, NoContext());
    Qualify(ns, *association, "Association", TCIMValue(true));
    for (const auto& end : ends) {
        boost::shared_ptr<ICIMPropertyDecl> decl = AddKey(ns, *association, end.first, NullReference());
        decl->SetReferenceClassName(end.second);
    }
    return association;
}

// Makes, fills and files a repository instance.
inline boost::shared_ptr<ICIMInstance> AddInstance(ICIMClass& cls,
                                                   const std::vector<std::pair<std::string, TCIMValue> >& values) {
    boost::shared_ptr<ICIMInstance> instance = cls.AllocateInstance(NoContext());
    for (const auto& value : values) instance->SetPropertyValue(value.first, value.second, NoContext());
    if (!instance->AddToNamespace(NoContext())) throw std::runtime_error("instance not filed");
    return instance;
}

inline TCIMValue PathOf(const boost::shared_ptr<ICIMInstance>& instance) {
    return TCIMValue(instance->GetReference(NoContext()));
}

inline std::vector<std::string> ClassNames(const std::vector<boost::shared_ptr<ICIMClass> >& classes) {
    std::vector<std::string> names;
    for (const auto& cls : classes) names.push_back(cls->GetName(NoContext()));
    return names;
}

template <class X>
struct TCollector {
    std::vector<boost::shared_ptr<X> > items;
    typename TCallback<X>::type Callback() {
        return [this](boost::shared_ptr<X> item) {
            items.push_back(item);
            return true;
        };
    }
};

inline std::vector<std::string> SubClassNames(ICIMClass& cls, bool deep) {
    TCollector<ICIMClass> collected;
    cls.EnumerateSubClasses(collected.Callback(), deep, NoContext());
    return ClassNames(collected.items);
}

// The value of `property` of each instance, as text.
inline std::vector<std::string> PropertyTexts(const std::vector<boost::shared_ptr<ICIMInstance> >& instances,
                                              const std::string& property) {
    std::vector<std::string> texts;
    for (const auto& instance : instances) {
        texts.push_back(instance->GetProperty(property, NoContext())->GetValue().ToString());
    }
    return texts;
}

class TFakeProvider : public IProvider {
public:
    explicit TFakeProvider(const std::string& name) : fName(name) {}
    std::string GetName(TCIMContext) const override { return fName; }
    std::string GetModuleName(TCIMContext) const override { return "lib" + fName; }
    std::string GetDescription(TCIMContext) const override { return "fake provider " + fName; }
    boost::shared_ptr<ICIMNamespace> GetNamespace(TCIMContext) const override { return {}; }
    void EnumerateClassesProvided(const TClassCallback&, TCIMContext) override {}
    IProvider& operator=(const IProvider&) override { return *this; }

private:
    std::string fName;
};

// A provider namespace that serves its classes from a store of its own
// and counts the class look-ups it gets.
class TFakeProviderNamespace : public ICIMNamespace {
public:
    explicit TFakeProviderNamespace(const std::vector<std::string>& providers)
        : fStore(TInmemNamespace::Create()) {
        for (const auto& name : providers) fProviders.push_back(boost::shared_ptr<IProvider>(new TFakeProvider(name)));
    }

    boost::shared_ptr<TInmemNamespace> Store() const { return fStore; }
    int ClassLookups() const { return fClassLookups; }
    bool SawOrigin() const { return fSawOrigin; }

    boost::shared_ptr<INamespaceProvider> GetNamespaceProvider(TCIMContext) const override { return {}; }
    void SetUpcallNamespace(boost::shared_ptr<ICIMNamespace>, TCIMContext) override {}
    void AddUnderlyingNamespace(boost::shared_ptr<ICIMNamespace>, TCIMContext) override {}
    boost::shared_ptr<ICIMClass> AllocateClass(const std::string& name, boost::shared_ptr<ICIMClass> superClass,
                                               TCIMContext context) override {
        return fStore->AllocateClass(name, superClass, context);
    }
    boost::shared_ptr<ICIMClass> GetClass(const std::string& name, TCIMContext context) override {
        ++fClassLookups;
        fSawOrigin = fSawOrigin || context.count("nspID") != 0;
        return fStore->GetClass(name, context);
    }
    void EnumerateRootClasses(const TClassCallback& callback, TCIMContext context) override {
        fStore->EnumerateRootClasses(callback, context);
    }
    void EnumerateProviders(const TProviderCallback& callback, TCIMContext) override {
        for (const auto& provider : fProviders) {
            if (!callback(provider)) return;
        }
    }
    boost::shared_ptr<ICIMQualifierDecl> AllocateQualifierDecl(const std::string& name, const TCIMValue& value,
                                                               ICIMQualifierDecl::EScope scope,
                                                               ICIMQualifierDecl::EFlavor flavor,
                                                               TCIMContext context) override {
        return fStore->AllocateQualifierDecl(name, value, scope, flavor, context);
    }
    boost::shared_ptr<ICIMQualifierDecl> GetQualifierDecl(const std::string& name,
                                                          TCIMContext context) const override {
        return fStore->GetQualifierDecl(name, context);
    }
    void EnumerateQualifierDecls(const TQualifierDeclCallback& callback, TCIMContext context) const override {
        fStore->EnumerateQualifierDecls(callback, context);
    }
    void Subscribe(boost::shared_ptr<ICIMIndicationFilter>, const TInstanceCallback&, TCIMContext) override {}
    boost::shared_ptr<ICIMInstance> GetInstance(const TCIMReference& path, TCIMContext context) const override {
        return fStore->GetInstance(path, context);
    }
    void DeleteInstance(const TCIMReference& path, TCIMContext context) override { fStore->DeleteInstance(path, context); }
    void ModifyInstance(const TCIMReference& path, TCIMContext values, TCIMContext context) override {
        fStore->ModifyInstance(path, values, context);
    }
    void ExecuteQuery(const TInstanceCallback&, std::string&, std::string&, TCIMContext) override {}
    void ClearInstances() override {}
    ICIMNamespace& operator=(ICIMNamespace&) override { return *this; }

private:
    boost::shared_ptr<TInmemNamespace> fStore;
    std::vector<boost::shared_ptr<IProvider> > fProviders;
    int fClassLookups = 0;
    bool fSawOrigin = false;
};

}  // namespace inmemtest

#endif
