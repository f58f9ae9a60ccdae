// The requests the tool answers, on the CMPI namespace of a host session.
// Each returns what it found or throws TToolError saying what failed and
// why.
#ifndef ZENTA_TOOL_REQUESTS_H
#define ZENTA_TOOL_REQUESTS_H

#include <string>
#include <vector>

#include <boost/shared_ptr.hpp>

#include "HostSession.h"
#include "ICIMClass.h"
#include "ICIMInstance.h"
#include "RequestResult.h"
#include "TCIMReference.h"

struct TAssociationFilter {
    std::string assocClass;   // associators only
    std::string resultClass;
    std::string role;
    std::string resultRole;   // associators only
};

class TRequests {
public:
    explicit TRequests(THostSession& session) : fSession(session) {}

    TRequestResult Providers();
    // Without a class: the root classes (all classes with `deep`); with
    // one: its subclasses (all levels with `deep`). Sorted by name.
    TRequestResult Classes(const std::string& className, bool deep);
    // Instances of the class and of all its subclasses.
    TRequestResult EnumerateInstances(const std::string& className);
    TRequestResult EnumerateInstanceNames(const std::string& className);
    TRequestResult GetInstance(const std::string& pathText);
    // A path without keys calls a class method, one with keys an instance
    // method. `arguments` are NAME=VALUE texts of input parameters.
    TRequestResult InvokeMethod(const std::string& pathText, const std::string& methodName,
                                const std::vector<std::string>& arguments);
    TRequestResult Associators(const std::string& pathText, const TAssociationFilter& filter);
    TRequestResult References(const std::string& pathText, const TAssociationFilter& filter);

private:
    typedef std::vector<boost::shared_ptr<NVURZENTA20::ICIMInstance> > TInstances;

    boost::shared_ptr<NVURZENTA20::ICIMClass> RequireClass(const std::string& name);
    boost::shared_ptr<NVURZENTA20::ICIMClass> RequireServedClass(const std::string& name);
    TInstances CollectInstances(const std::string& className);
    // Object path text with its keys read as the class declares them;
    // `instancePath` requires every key, otherwise keys are all or none.
    NVURZENTA20::TCIMReference ReadPath(const std::string& text, bool instancePath);
    boost::shared_ptr<NVURZENTA20::ICIMInstance> RequireInstance(const NVURZENTA20::TCIMReference& path);
    NVURZENTA20::TCIMContext ReadArguments(const NVURZENTA20::ICIMMethodDecl& method,
                                           const std::vector<std::string>& arguments);
    // Fails the request when the log shows that a provider failed.
    void CheckProviders(const std::string& request);

    THostSession& fSession;
};

// The provider a class is served by (its PLUGINNAME), or "".
std::string ProviderOf(const NVURZENTA20::ICIMClass& cls);
// The class name, path and properties of an instance.
TInstanceRecord RecordOf(NVURZENTA20::ICIMInstance& instance);

#endif
