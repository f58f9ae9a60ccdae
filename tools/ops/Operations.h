// The operations a host answers — the same for the zenta tool and the WBEM
// server: class, instance, association, method and qualifier requests on
// the CMPI namespace of a host session. Each answer goes to an answer
// writer element by element as it is found; a request that cannot be
// answered throws TToolError saying what and why, with the CIM status a
// WBEM client gets.
#ifndef ZENTA_OPS_OPERATIONS_H
#define ZENTA_OPS_OPERATIONS_H

#include <functional>
#include <string>
#include <vector>

#include <boost/shared_ptr.hpp>

#include "ActivityBoard.h"
#include "Answer.h"
#include "HostSession.h"
#include "ICIMClass.h"
#include "ICIMInstance.h"
#include "LogRelay.h"
#include "ProviderIndex.h"
#include "Request.h"
#include "TCIMReference.h"

// Whether a get that found nothing counts as a failure: not in an
// association walk, where the far ends may change under it.
enum class EMissingInstances { kFailed, kSkipped };

class TOperations {
public:
    // `providers` and `board` may be empty/null: then messages name no
    // module and nothing is recorded for a parent.
    TOperations(THostSession& session, const TProviderIndex& providers, TActivityBoard* board,
                const std::string& servedNamespace);

    void Run(const TRequest& request, IAnswerWriter& writer);

private:
    typedef std::vector<boost::shared_ptr<NVURZENTA20::ICIMClass> > TClasses;
    typedef std::vector<boost::shared_ptr<NVURZENTA20::ICIMInstance> > TInstances;

    void CheckNamespace(const std::string& nameSpace) const;

    void Providers(IAnswerWriter& writer);
    void Classes(const TRequest& request, IAnswerWriter& writer);
    void GetClass(const TRequest& request, IAnswerWriter& writer);
    void EnumerateInstances(const TRequest& request, IAnswerWriter& writer, bool namesOnly);
    void GetInstance(const TRequest& request, IAnswerWriter& writer);
    void InvokeMethod(const TRequest& request, IAnswerWriter& writer);
    void Associators(const TRequest& request, IAnswerWriter& writer, bool namesOnly);
    void References(const TRequest& request, IAnswerWriter& writer, bool namesOnly);
    void Qualifiers(const TRequest& request, IAnswerWriter& writer);

    boost::shared_ptr<NVURZENTA20::ICIMClass> RequireClass(const std::string& name);
    boost::shared_ptr<NVURZENTA20::ICIMClass> RequireServedClass(const std::string& name);
    // The class and, with `deep`, all its subclasses (or the root classes).
    TClasses ClassesUnder(const std::string& className, bool deep);
    // Object path text with its keys read as the class declares them;
    // `instancePath` requires every key, otherwise keys are all or none.
    NVURZENTA20::TCIMReference ReadPath(const std::string& text, bool instancePath);
    boost::shared_ptr<NVURZENTA20::ICIMInstance> RequireInstance(const NVURZENTA20::TCIMReference& path);
    NVURZENTA20::TCIMContext ReadArguments(const NVURZENTA20::ICIMMethodDecl& method,
                                           const std::vector<TArgument>& arguments);
    void RequireMiKind(const std::string& className, const std::string& provider, const char* kind,
                       const char* needed);

    // The file of the provider's module, or "" when the survey did not see it.
    std::string ModuleFileOf(const std::string& provider) const;
    // What to call the provider's module in messages: " (module M)" or "".
    std::string ModuleOf(const std::string& provider) const;
    // Runs `call`, a call into `provider`, marked on the activity board; a
    // host failure on the way (the host refusing a property the provider
    // set, say) becomes the provider's failure.
    void CallProvider(const std::string& subject, const std::string& provider, const std::function<void()>& call);
    // Throws when the log shows that `provider` (or, for a method call,
    // `method`) failed since the last look.
    void CheckProvider(const std::string& subject, const std::string& provider, const std::string& method = "",
                       EMissingInstances missing = EMissingInstances::kFailed);

    THostSession& fSession;
    const TProviderIndex& fProviders;
    TActivityBoard* fBoard;
    std::string fServedNamespace;
};

// The provider a class is served by (its PLUGINNAME), or "".
std::string ProviderOf(const NVURZENTA20::ICIMClass& cls);

// A provider's failure as the library's log tells it: the failure line of
// a downcall and, right after it, the status the provider gave.
struct TProviderFailure {
    bool found = false;
    int status = 1;
    std::string provider;  // the one that failed
    std::string message;
};
// Looks through `lines` for the failure of `provider`'s enumeration or get
// (`method` empty) or of its method `method`.
TProviderFailure FindProviderFailure(const std::vector<TLogLine>& lines, const std::string& provider,
                                     const std::string& method,
                                     EMissingInstances missing = EMissingInstances::kFailed);

#endif
