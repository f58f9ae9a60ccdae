// Shared fixtures of the in-memory repository tests: builders, a collector and a fake provider namespace.
#ifndef ZENTA_TESTS_INMEM_INMEMTESTSUPPORT_H
#define ZENTA_TESTS_INMEM_INMEMTESTSUPPORT_H

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
#include "TZENTAException.h"

namespace inmemtest {

using namespace NVURZENTA20;

inline TCIMContext NoContext() { return TCIMContext(); }

inline TCIMContext OriginContext(const char* origin) { return TCIMContext{{"nspID", TCIMValue(origin)}}; }

inline std::string DataFile(const std::string& name) { return std::string(ZENTA_TEST_DATA_DIR) + "/" + name; }

inline boost::shared_ptr<TInmemNamespace> StandardRepository() {
    boost::shared_ptr<TInmemNamespace> ns = TInmemNamespace::Create();
    LoadStandardDocuments(ns);
    return ns;
}

inline TCIMValue NullOf(TCIMValue::TCIMType::ECIMType type) {
    TCIMValue value;
    value.SetNullValue(type, 0);
    return value;
}

// The status (and message) of the TZENTAException `action` throws, 0 when it throws none.
inline int StatusOf(const std::function<void()>& action, std::string* message = nullptr) {
    try {
        action();
    } catch (const TZENTAException& e) {
        if (message) *message = e.what();
        return e.GetStatusCode().GetCode();
    }
    return 0;
}

inline void Qualify(ICIMNamespace& ns, ICIMNamedElement& element, const std::string& name, const TCIMValue& value) {
    boost::shared_ptr<ICIMQualifierDecl> decl = ns.GetQualifierDecl(name, NoContext());
    if (!decl) throw std::runtime_error("no qualifier declaration " + name);
    element.AddQualifier(element.AllocateQualifier(decl, value, NoContext()), NoContext());
}

inline boost::shared_ptr<ICIMPropertyDecl> AddKey(ICIMNamespace& ns, ICIMClass& cls, const std::string& name,
                                                  const TCIMValue& type = NullOf(TCIMValue::TCIMType::kString)) {
    boost::shared_ptr<ICIMPropertyDecl> decl = cls.AllocatePropertyDecl(name, type, NoContext());
    Qualify(ns, *decl, "Key", TCIMValue(true));
    return decl;
}

inline boost::shared_ptr<ICIMClass> AddAssociation(ICIMNamespace& ns, const std::string& name,
                                                   const std::vector<std::pair<std::string, std::string> >& ends) {
    boost::shared_ptr<ICIMClass> association = ns.AllocateClass(name, {}, NoContext());
    Qualify(ns, *association, "Association", TCIMValue(true));
    for (const auto& end : ends) {
        AddKey(ns, *association, end.first, NullOf(TCIMValue::TCIMType::kReference))->SetReferenceClassName(end.second);
    }
    return association;
}

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

inline std::vector<std::string> ClassNames(const std::vector<boost::shared_ptr<ICIMClass> >& classes) {
    std::vector<std::string> names;
    for (const auto& cls : classes) names.push_back(cls->GetName(NoContext()));
    return names;
}

inline std::vector<std::string> SubClassNames(ICIMClass& cls, bool deep) {
    TCollector<ICIMClass> collected;
    cls.EnumerateSubClasses(collected.Callback(), deep, NoContext());
    return ClassNames(collected.items);
}

struct TFakeProvider : IProvider {
    explicit TFakeProvider(const std::string& name) : fName(name) {}
    std::string GetName(TCIMContext) const override { return fName; }
    std::string GetModuleName(TCIMContext) const override { return "lib" + fName; }
    std::string GetDescription(TCIMContext) const override { return fName; }
    boost::shared_ptr<ICIMNamespace> GetNamespace(TCIMContext) const override { return {}; }
    void EnumerateClassesProvided(const TClassCallback&, TCIMContext) override {}
    IProvider& operator=(const IProvider&) override { return *this; }
    std::string fName;
};

// A provider namespace with the given providers that serves the classes and instances of a store of its
// own and counts the class and instance look-ups it gets; nothing else reaches a provider namespace through
// the manager. It may refuse single instances, as providers that only enumerate do.
class TFakeProviderNamespace : public ICIMNamespace {
public:
    typedef boost::shared_ptr<ICIMQualifierDecl> TDecl;
    typedef boost::shared_ptr<ICIMClass> TClassPtr;
    explicit TFakeProviderNamespace(const std::vector<std::string>& providers) : fStore(TInmemNamespace::Create()) {
        for (const auto& name : providers) fProviders.push_back(boost::shared_ptr<IProvider>(new TFakeProvider(name)));
    }
    boost::shared_ptr<TInmemNamespace> Store() const { return fStore; }
    int ClassLookups() const { return fClassLookups; }
    int InstanceLookups() const { return fInstanceLookups; }
    void AnswerSingleInstances(bool answer) { fAnswersSingleInstances = answer; }

    TClassPtr GetClass(const std::string& name, TCIMContext context) override {
        ++fClassLookups;
        return fStore->GetClass(name, context);
    }
    boost::shared_ptr<ICIMInstance> GetInstance(const TCIMReference& path, TCIMContext context) const override {
        ++fInstanceLookups;
        return fAnswersSingleInstances ? fStore->GetInstance(path, context) : boost::shared_ptr<ICIMInstance>();
    }
    void EnumerateProviders(const TProviderCallback& callback, TCIMContext) override {
        for (std::size_t i = 0; i < fProviders.size() && callback(fProviders[i]); ++i) continue;
    }
    boost::shared_ptr<INamespaceProvider> GetNamespaceProvider(TCIMContext) const override { return {}; }
    void SetUpcallNamespace(boost::shared_ptr<ICIMNamespace>, TCIMContext) override {}
    void AddUnderlyingNamespace(boost::shared_ptr<ICIMNamespace>, TCIMContext) override {}
    TClassPtr AllocateClass(const std::string&, TClassPtr, TCIMContext) override { return {}; }
    void EnumerateRootClasses(const TClassCallback&, TCIMContext) override {}
    TDecl AllocateQualifierDecl(const std::string&, const TCIMValue&, ICIMQualifierDecl::EScope,
                                ICIMQualifierDecl::EFlavor, TCIMContext) override { return {}; }
    TDecl GetQualifierDecl(const std::string&, TCIMContext) const override { return {}; }
    void EnumerateQualifierDecls(const TQualifierDeclCallback&, TCIMContext) const override {}
    void Subscribe(boost::shared_ptr<ICIMIndicationFilter>, const TInstanceCallback&, TCIMContext) override {}
    void DeleteInstance(const TCIMReference&, TCIMContext) override {}
    void ModifyInstance(const TCIMReference&, TCIMContext, TCIMContext) override {}
    void ExecuteQuery(const TInstanceCallback&, std::string&, std::string&, TCIMContext) override {}
    void ClearInstances() override {}
    ICIMNamespace& operator=(ICIMNamespace&) override { return *this; }

private:
    boost::shared_ptr<TInmemNamespace> fStore;
    std::vector<boost::shared_ptr<IProvider> > fProviders;
    int fClassLookups = 0;
    mutable int fInstanceLookups = 0;
    bool fAnswersSingleInstances = true;
};

}  // namespace inmemtest

#endif
