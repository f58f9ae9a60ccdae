#include "Operations.h"

#include <strings.h>

#include <algorithm>

#include "Collect.h"
#include "ICIMMethodDecl.h"
#include "ICIMParameterDecl.h"
#include "ICIMPropertyDecl.h"
#include "ICIMQualifier.h"
#include "ICIMQualifierDecl.h"
#include "IProvider.h"
#include "InstanceRenderer.h"
#include "TZENTAException.h"
#include "ToolError.h"
#include "ValueText.h"

using namespace NVURZENTA20;

namespace {

const char kProviderQualifier[] = "PLUGINNAME";

// How the CMPI library reports a downcall that failed: a trace line that
// names the provider (or, for methods, the method), then the status line.
const char kEnumerationFailed[] = "providerDriver::enumInstances failed for ";
const char kGetFailed[] = "providerDriver::getInstance failed for ";
const char kMethodFailed[] = "providerDriver::invokeMethod ";
const int kNotFoundStatus = 6;
const char kStatusLine[] = "providerDriver status ";

bool StartsWith(const std::string& text, const char* prefix, std::string& rest) {
    const std::size_t length = std::char_traits<char>::length(prefix);
    if (text.compare(0, length, prefix) != 0) return false;
    rest = text.substr(length);
    return true;
}

// "providerDriver status <code> from <provider>: <message>"
bool ReadStatusLine(const std::string& text, int& code, std::string& provider, std::string& message) {
    std::string rest;
    if (!StartsWith(text, kStatusLine, rest)) return false;
    const std::size_t from = rest.find(" from ");
    const std::size_t colon = rest.find(": ", from == std::string::npos ? 0 : from);
    if (from == std::string::npos || colon == std::string::npos) return false;
    code = std::atoi(rest.substr(0, from).c_str());
    provider = rest.substr(from + 6, colon - from - 6);
    message = rest.substr(colon + 2);
    return true;
}

bool HasTrueQualifier(const ICIMNamedElement& element, const char* name) {
    boost::shared_ptr<ICIMQualifier> qualifier = element.GetQualifier(name, TCIMContext());
    if (!qualifier) return false;
    const TCIMValue value = qualifier->GetValue();
    return !value.IsNull() && static_cast<bool>(value);
}

std::string Quoted(const std::string& text) { return "\"" + text + "\""; }

// Sorted by name (any case), each name asked for once.
void SortByName(std::vector<boost::shared_ptr<ICIMClass> >& classes) {
    std::vector<std::pair<std::string, boost::shared_ptr<ICIMClass> > > named;
    named.reserve(classes.size());
    for (auto& cls : classes) named.emplace_back(cls->GetName(TCIMContext()), std::move(cls));
    std::sort(named.begin(), named.end(),
              [](const auto& a, const auto& b) { return strcasecmp(a.first.c_str(), b.first.c_str()) < 0; });
    for (std::size_t i = 0; i < named.size(); ++i) classes[i] = std::move(named[i].second);
}

// Namespace names compare as CIM names do, with or without slashes around.
std::string NamespaceKey(std::string name) {
    while (!name.empty() && name.front() == '/') name.erase(0, 1);
    while (!name.empty() && name.back() == '/') name.pop_back();
    for (char& c : name) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return name;
}

TClassSummary SummaryOf(const ICIMClass& cls) {
    TClassSummary summary;
    summary.name = cls.GetName(TCIMContext());
    boost::shared_ptr<ICIMClass> superClass = cls.GetSuperClass(TCIMContext());
    if (superClass) summary.superClass = superClass->GetName(TCIMContext());
    summary.provider = ProviderOf(cls);
    summary.isAbstract = cls.IsAbstract(TCIMContext());
    summary.isAssociation = cls.IsAssociation(TCIMContext());
    return summary;
}

TPropertySelection SelectionOf(const TRequest& request, boost::shared_ptr<ICIMClass> requestedClass) {
    TPropertySelection selection;
    selection.hasPropertyList = request.hasPropertyList;
    selection.propertyList = request.propertyList;
    selection.deep = request.deep;
    selection.requestedClass = requestedClass;
    selection.includeQualifiers = request.includeQualifiers;
    selection.includeClassOrigin = request.includeClassOrigin;
    return selection;
}

}  // namespace

std::string ProviderOf(const ICIMClass& cls) {
    boost::shared_ptr<ICIMQualifier> tag = cls.GetQualifier(kProviderQualifier, TCIMContext());
    if (!tag || tag->GetValue().IsNull()) return std::string();
    return tag->GetValue();
}

TProviderFailure FindProviderFailure(const std::vector<TLogLine>& lines, const std::string& provider,
                                     const std::string& method, EMissingInstances missing) {
    for (std::size_t i = 0; i < lines.size(); ++i) {
        std::string subject;
        const std::string& text = lines[i].text;
        bool isGet = false;
        const bool failed = method.empty()
                                ? (StartsWith(text, kEnumerationFailed, subject) ||
                                   (isGet = StartsWith(text, kGetFailed, subject))) &&
                                      (provider.empty() || subject == provider)
                                : StartsWith(text, kMethodFailed, subject) && subject == method;
        if (!failed) continue;
        TProviderFailure failure;
        failure.found = true;
        failure.provider = method.empty() ? subject : provider;
        int code = 1;
        std::string from;
        std::string message;
        if (i + 1 < lines.size() && ReadStatusLine(lines[i + 1].text, code, from, message) &&
            (provider.empty() || from == provider)) {
            failure.status = code;
            failure.message = message;
        }
        if (isGet && missing == EMissingInstances::kSkipped && failure.status == kNotFoundStatus) continue;
        return failure;
    }
    return TProviderFailure();
}

TOperations::TOperations(THostSession& session, const TProviderIndex& providers, TActivityBoard* board,
                         const std::string& servedNamespace)
    : fSession(session), fProviders(providers), fBoard(board), fServedNamespace(servedNamespace) {}

void TOperations::Run(const TRequest& request, IAnswerWriter& writer) {
    CheckNamespace(request.nameSpace);
    // Whatever earlier steps logged is not this request's business.
    fSession.GetLog().Collect();
    switch (request.verb) {
        case EVerb::kProviders: return Providers(writer);
        case EVerb::kClasses:
        case EVerb::kEnumerateClasses:
        case EVerb::kEnumerateClassNames: return Classes(request, writer);
        case EVerb::kGetClass: return GetClass(request, writer);
        case EVerb::kEnumerateInstances: return EnumerateInstances(request, writer, false);
        case EVerb::kEnumerateInstanceNames: return EnumerateInstances(request, writer, true);
        case EVerb::kGetInstance: return GetInstance(request, writer);
        case EVerb::kInvokeMethod: return InvokeMethod(request, writer);
        case EVerb::kAssociators: return Associators(request, writer, false);
        case EVerb::kAssociatorNames: return Associators(request, writer, true);
        case EVerb::kReferences: return References(request, writer, false);
        case EVerb::kReferenceNames: return References(request, writer, true);
        case EVerb::kEnumerateQualifiers:
        case EVerb::kGetQualifier: return Qualifiers(request, writer);
    }
    throw TToolError("unknown request", ECimStatus::kNotSupported);
}

void TOperations::CheckNamespace(const std::string& nameSpace) const {
    if (nameSpace.empty() || NamespaceKey(nameSpace) == NamespaceKey(fServedNamespace)) return;
    throw TToolError("namespace " + Quoted(nameSpace) + " is not served here (the namespace is " + fServedNamespace + ")",
                     ECimStatus::kInvalidNamespace);
}

std::string TOperations::ModuleFileOf(const std::string& provider) const {
    const TProviderEntry* entry = fProviders.Find(provider);
    return entry == nullptr ? std::string() : entry->module;
}

std::string TOperations::ModuleOf(const std::string& provider) const {
    const std::string module = ModuleFileOf(provider);
    return module.empty() ? module : " (module " + module + ")";
}

void TOperations::CheckProvider(const std::string& subject, const std::string& provider, const std::string& method,
                                EMissingInstances missing) {
    const TProviderFailure failure = FindProviderFailure(fSession.GetLog().Collect(), provider, method, missing);
    if (!failure.found) return;
    std::string message = subject + ": provider " + failure.provider;
    if (!method.empty()) message = subject + ": method " + method + ": provider " + failure.provider;
    message += ": " + CimStatusName(failure.status);
    if (!failure.message.empty()) message += ": " + failure.message;
    // A provider's own code goes to the client; OK is no failure to report.
    const ECimStatus status = failure.status > 0 ? static_cast<ECimStatus>(failure.status) : ECimStatus::kFailed;
    throw TToolError(message, status);
}

void TOperations::CallProvider(const std::string& subject, const std::string& provider,
                               const std::function<void()>& call) {
    TActivityScope activity(fBoard, provider, ModuleFileOf(provider));
    try {
        call();
    } catch (const TZENTAException& failure) {
        throw TToolError(subject + ": provider " + provider + ": " + failure.GetStatusCode().TranslateStatusCode() +
                             ": " + failure.GetMessage(),
                         ECimStatus::kFailed);
    }
}

void TOperations::RequireMiKind(const std::string& className, const std::string& provider, const char* kind,
                                const char* needed) {
    // A provider the survey did not see is not judged.
    if (fProviders.Find(provider) == nullptr || fProviders.Has(provider, kind)) return;
    throw TToolError(className + ": provider " + provider + ModuleOf(provider) + " has no " + kind + " MI for " +
                         needed + ": its module exports neither " + provider + "_Create_" + kind +
                         "MI nor _Generic_Create_" + kind + "MI",
                     ECimStatus::kNotSupported);
}

boost::shared_ptr<ICIMClass> TOperations::RequireClass(const std::string& name) {
    boost::shared_ptr<ICIMClass> cls;
    if (!name.empty()) cls = fSession.GetNamespace()->GetClass(name, TCIMContext());
    if (!cls) throw TToolError("unknown class " + Quoted(name), ECimStatus::kInvalidClass);
    return cls;
}

boost::shared_ptr<ICIMClass> TOperations::RequireServedClass(const std::string& name) {
    boost::shared_ptr<ICIMClass> cls = RequireClass(name);
    if (ProviderOf(*cls).empty()) {
        throw TToolError("class " + cls->GetName(TCIMContext()) + " is served by no provider" +
                             (cls->IsAbstract(TCIMContext()) ? " (it is abstract; ask for its instances with ei)" : ""),
                         ECimStatus::kNotSupported);
    }
    return cls;
}

TOperations::TClasses TOperations::ClassesUnder(const std::string& className, bool deep) {
    TClasses classes;
    if (className.empty()) {
        classes = ClassesOf(*fSession.GetNamespace(), deep);
    } else {
        RequireClass(className)->EnumerateSubClasses(AppendTo(classes), deep, TCIMContext());
    }
    SortByName(classes);
    return classes;
}

TCIMReference TOperations::ReadPath(const std::string& text, bool instancePath) {
    TCIMReference parsed;
    try {
        parsed = TCIMReference::Parse(text);
    } catch (const TZENTAException& failure) {
        throw TToolError("malformed object path " + Quoted(text) + ": " + failure.GetMessage(),
                         ECimStatus::kInvalidParameter);
    }
    const std::string nameSpace = parsed.GetNameSpaceName();
    if (!nameSpace.empty()) CheckNamespace(nameSpace);
    boost::shared_ptr<ICIMClass> cls = RequireClass(parsed.GetClassName());
    const std::string className = cls->GetName(TCIMContext());
    TCIMReference typed(fSession.GetManager(), TCIMContext());
    typed.SetClassName(className);
    const TReferenceReader readReference = [this](const std::string& nested) { return ReadPath(nested, true); };
    parsed.EnumerateKeyBindings([&](std::pair<std::string, TCIMValue> binding) {
        boost::shared_ptr<ICIMPropertyDecl> decl = cls->GetPropertyDecl(binding.first, TCIMContext());
        if (!decl || !decl->IsKey()) {
            throw TToolError("object path " + Quoted(text) + ": " + binding.first + " is not a key of " + className,
                             ECimStatus::kInvalidParameter);
        }
        typed.AddKeyValue(decl->GetName(), ValueFromText(binding.second.ToString(), decl->GetType(), decl->IsArray(),
                                                         readReference, "key " + decl->GetName()));
        return true;
    });
    if (!instancePath && typed.GetKeyCount() == 0) return typed;
    cls->EnumerateKeyNames(
        [&](const std::string* key) {
            if (!typed.HasKey(*key)) {
                throw TToolError("object path " + Quoted(text) + " lacks the key " + *key + " of " + className,
                                 ECimStatus::kInvalidParameter);
            }
            return true;
        },
        TCIMContext());
    if (typed.GetKeyCount() == 0) {
        throw TToolError("object path " + Quoted(text) + " names no instance: " + className + " has no keys",
                         ECimStatus::kInvalidParameter);
    }
    return typed;
}

boost::shared_ptr<ICIMInstance> TOperations::RequireInstance(const TCIMReference& path) {
    boost::shared_ptr<ICIMClass> cls = RequireServedClass(path.GetClassName());
    const std::string className = cls->GetName(TCIMContext());
    const std::string provider = ProviderOf(*cls);
    RequireMiKind(className, provider, "Instance", "gets");
    boost::shared_ptr<ICIMInstance> instance;
    CallProvider(className, provider, [&] { instance = fSession.GetNamespace()->GetInstance(path, TCIMContext()); });
    CheckProvider(className, provider);
    if (!instance) throw TToolError("no instance " + path.GetPath(), ECimStatus::kNotFound);
    return instance;
}

TCIMContext TOperations::ReadArguments(const ICIMMethodDecl& method, const std::vector<TArgument>& arguments) {
    TCIMContext parameters;
    const TReferenceReader readReference = [this](const std::string& text) { return ReadPath(text, true); };
    for (const TArgument& argument : arguments) {
        boost::shared_ptr<ICIMParameterDecl> decl = method.GetParameterDecl(argument.name, TCIMContext());
        if (!decl) {
            throw TToolError("method " + method.GetName() + " has no parameter " + argument.name,
                             ECimStatus::kInvalidParameter);
        }
        if (!HasTrueQualifier(*decl, "IN")) {
            throw TToolError("parameter " + decl->GetName() + " of " + method.GetName() + " is not an input",
                             ECimStatus::kInvalidParameter);
        }
        const std::string subject = "parameter " + decl->GetName();
        TCIMValue value;
        if (argument.isNull) {
            value.SetNullValue(decl->GetType(), decl->IsArray() ? 1 : 0);
        } else if (argument.isList) {
            value = ValueFromItems(argument.items, decl->GetType(), decl->IsArray(), readReference, subject);
        } else {
            value = ValueFromText(argument.text, decl->GetType(), decl->IsArray(), readReference, subject);
        }
        // The library matches parameter names exactly: use the declared one.
        if (!parameters.insert(std::make_pair(decl->GetName(), value)).second) {
            throw TToolError("parameter " + decl->GetName() + " is given twice", ECimStatus::kInvalidParameter);
        }
    }
    return parameters;
}

void TOperations::Providers(IAnswerWriter& writer) {
    std::vector<boost::shared_ptr<IProvider> > providers;
    fSession.GetManager()->EnumerateProviders(AppendTo(providers), TCIMContext());
    writer.Begin(EAnswerKind::kProviders);
    for (const auto& provider : providers) {
        TProviderView view;
        view.name = provider->GetName(TCIMContext());
        view.module = provider->GetModuleName(TCIMContext());
        view.description = provider->GetDescription(TCIMContext());
        TClasses classes;
        provider->EnumerateClassesProvided(AppendTo(classes), TCIMContext());
        for (const auto& cls : classes) view.classes.push_back(cls->GetName(TCIMContext()));
        writer.Provider(view);
    }
    writer.End();
    fSession.GetLog().Collect();
}

void TOperations::Classes(const TRequest& request, IAnswerWriter& writer) {
    const TClasses classes = ClassesUnder(request.className, request.deep);
    switch (request.verb) {
        case EVerb::kEnumerateClassNames:
            writer.Begin(EAnswerKind::kClassNames);
            for (const auto& cls : classes) writer.ClassName(cls->GetName(TCIMContext()));
            break;
        case EVerb::kEnumerateClasses:
            writer.Begin(EAnswerKind::kClasses);
            for (const auto& cls : classes) {
                TClassView view;
                view.cls = cls.get();
                view.localOnly = request.localOnly;
                view.includeQualifiers = request.includeQualifiers;
                view.includeClassOrigin = request.includeClassOrigin;
                writer.Class(view);
            }
            break;
        default:
            writer.Begin(EAnswerKind::kClassSummaries);
            for (const auto& cls : classes) writer.ClassSummary(SummaryOf(*cls));
    }
    writer.End();
}

void TOperations::GetClass(const TRequest& request, IAnswerWriter& writer) {
    const boost::shared_ptr<ICIMClass> cls = RequireClass(request.className);
    TClassView view;
    view.cls = cls.get();
    view.localOnly = request.localOnly;
    view.includeQualifiers = request.includeQualifiers;
    view.includeClassOrigin = request.includeClassOrigin;
    view.hasPropertyList = request.hasPropertyList;
    view.propertyList = &request.propertyList;
    writer.Begin(EAnswerKind::kClass);
    writer.Class(view);
    writer.End();
}

void TOperations::EnumerateInstances(const TRequest& request, IAnswerWriter& writer, bool namesOnly) {
    TClasses classes(1, RequireClass(request.className));
    classes.front()->EnumerateSubClasses(AppendTo(classes), true, TCIMContext());
    const std::string className = classes.front()->GetName(TCIMContext());
    struct TServed {
        boost::shared_ptr<ICIMClass> cls;
        std::string name;
        std::string provider;
    };
    std::vector<TServed> served;
    for (const auto& cls : classes) {
        std::string provider = ProviderOf(*cls);
        if (!provider.empty()) served.push_back(TServed{cls, cls->GetName(TCIMContext()), std::move(provider)});
    }
    if (served.empty()) {
        throw TToolError("class " + className + " is served by no provider, nor is any of its subclasses",
                         ECimStatus::kNotSupported);
    }
    TInstanceRenderer renderer(writer, SelectionOf(request, classes.front()));
    writer.Begin(namesOnly ? EAnswerKind::kInstancePaths : EAnswerKind::kInstances);
    const TInstanceCallback write = renderer.Writer(namesOnly);
    for (const TServed& one : served) {
        RequireMiKind(one.name, one.provider, "Instance", "enumerations");
        // Each served class is asked for its own instances only.
        CallProvider(one.name, one.provider, [&] { one.cls->EnumerateInstances(write, false, TCIMContext()); });
        CheckProvider(one.name, one.provider);
    }
    writer.End();
}

void TOperations::GetInstance(const TRequest& request, IAnswerWriter& writer) {
    const boost::shared_ptr<ICIMInstance> instance = RequireInstance(ReadPath(request.path, true));
    TInstanceRenderer renderer(writer, SelectionOf(request, instance->GetClass(TCIMContext())));
    writer.Begin(EAnswerKind::kInstance);
    renderer.WriteInstance(*instance);
    writer.End();
}

void TOperations::InvokeMethod(const TRequest& request, IAnswerWriter& writer) {
    const TCIMReference path = ReadPath(request.path, false);
    boost::shared_ptr<ICIMClass> cls = RequireServedClass(path.GetClassName());
    const std::string className = cls->GetName(TCIMContext());
    boost::shared_ptr<ICIMMethodDecl> method = cls->GetMethodDecl(request.methodName, TCIMContext());
    if (!method) {
        throw TToolError("unknown method " + request.methodName + " of class " + className,
                         ECimStatus::kMethodNotFound);
    }
    TCIMContext parameters = ReadArguments(*method, request.arguments);
    const std::string provider = ProviderOf(*cls);
    RequireMiKind(className, provider, "Method", "method calls");

    TMethodView view;
    view.path = path.GetPath();
    view.method = method->GetName();
    if (path.GetKeyCount() == 0) {
        // A method reaches only a provider that has started, and providers
        // start on their first enumeration or get; what that enumeration
        // says is not the method's business.
        CallProvider(className, provider, [&] {
            cls->EnumerateInstances([](boost::shared_ptr<ICIMInstance>) { return true; }, false, TCIMContext());
            fSession.GetLog().Collect();
            view.returnValue = cls->InvokeMethod(method->GetName(), parameters, TCIMContext());
        });
    } else {
        boost::shared_ptr<ICIMInstance> instance = RequireInstance(path);
        CallProvider(className, provider,
                     [&] { view.returnValue = instance->InvokeMethod(method->GetName(), parameters, TCIMContext()); });
    }
    CheckProvider(className, provider, method->GetName());
    view.outParameters.assign(parameters.begin(), parameters.end());
    for (const auto& parameter : view.outParameters) {
        view.outDecls.push_back(method->GetParameterDecl(parameter.first, TCIMContext()).get());
    }
    writer.Begin(EAnswerKind::kMethod);
    writer.Method(view);
    writer.End();
}

void TOperations::Associators(const TRequest& request, IAnswerWriter& writer, bool namesOnly) {
    if (!request.filter.assocClass.empty()) RequireClass(request.filter.assocClass);
    if (!request.filter.resultClass.empty()) RequireClass(request.filter.resultClass);
    const boost::shared_ptr<ICIMInstance> source = RequireInstance(ReadPath(request.path, true));
    TInstanceRenderer renderer(writer, SelectionOf(request, boost::shared_ptr<ICIMClass>()));
    writer.Begin(namesOnly ? EAnswerKind::kObjectPaths : EAnswerKind::kInstances);
    source->EnumerateAssociatedInstances(
        renderer.Writer(namesOnly),
        request.filter.assocClass, request.filter.resultClass, request.filter.role, request.filter.resultRole,
        TCIMContext());
    // The walk asks for the far ends one by one; one that has gone since
    // the association was listed (a process that ended) is left out.
    CheckProvider("the associations of " + request.path, "", "", EMissingInstances::kSkipped);
    writer.End();
}

void TOperations::References(const TRequest& request, IAnswerWriter& writer, bool namesOnly) {
    if (!request.filter.resultClass.empty()) RequireClass(request.filter.resultClass);
    const boost::shared_ptr<ICIMInstance> source = RequireInstance(ReadPath(request.path, true));
    TInstanceRenderer renderer(writer, SelectionOf(request, boost::shared_ptr<ICIMClass>()));
    writer.Begin(namesOnly ? EAnswerKind::kObjectPaths : EAnswerKind::kInstances);
    source->EnumerateAssociationInstances(
        renderer.Writer(namesOnly),
        request.filter.resultClass, request.filter.role, TCIMContext());
    CheckProvider("the references of " + request.path, "", "", EMissingInstances::kSkipped);
    writer.End();
}

void TOperations::Qualifiers(const TRequest& request, IAnswerWriter& writer) {
    if (request.verb == EVerb::kGetQualifier) {
        const boost::shared_ptr<ICIMQualifierDecl> decl =
            fSession.GetNamespace()->GetQualifierDecl(request.qualifierName, TCIMContext());
        if (!decl) throw TToolError("unknown qualifier " + Quoted(request.qualifierName), ECimStatus::kNotFound);
        writer.Begin(EAnswerKind::kQualifierDecl);
        writer.QualifierDecl(*decl);
        writer.End();
        return;
    }
    std::vector<boost::shared_ptr<ICIMQualifierDecl> > decls;
    fSession.GetNamespace()->EnumerateQualifierDecls(AppendTo(decls), TCIMContext());
    writer.Begin(EAnswerKind::kQualifierDecls);
    for (const auto& decl : decls) writer.QualifierDecl(*decl);
    writer.End();
}
