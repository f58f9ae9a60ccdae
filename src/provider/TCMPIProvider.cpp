#include "TCMPIProvider.h"

#include "TCMPIClass.h"
#include "TCMPINamespace.h"
#include "TCMPINamespaceProvider.h"
#include "TOSSpecific.h"
#include "TRootObject.h"
#include "TZENTAException.h"

using namespace NVURZENTA20;

namespace {

const std::string kFileSeparator("/");
const std::string kPluginExtension(".cmpi.so");
const char kPluginKind[] = "cmpi";

void Log(int level, const std::string& text) { TRootObject::GetCoreLogger()->Log(level, text); }

// A "DONTCOLLECT" qualifier that reads true hides a class from the host.
bool IsHiddenFromCollection(const boost::shared_ptr<ICIMClass>& cls) {
    boost::shared_ptr<ICIMQualifier> dontCollect = cls->GetQualifier("DONTCOLLECT", TCIMContext());
    if (!dontCollect) return false;
    TCIMValue value = dontCollect->GetValue();
    return !value.IsNull() && static_cast<bool>(value);
}

}  // namespace

// The shared pointer takes `info` over as it is made: if making its count
// fails, it deletes `info` itself and lets the exception pass, so nothing
// is left to free here.
TCMPIProvider::TCMPIProvider(_ProviderInfo* info)
    : fProviderInfo(info), fInitialized(false), fNameAndDescriptionSet(true) {}

TCMPIProvider::~TCMPIProvider() {}

std::string TCMPIProvider::GetName(TCIMContext) const { return fNameAndDescriptionSet ? fName : NameFromPath(); }

// The module's file name without directory and extension: /a/Foo.cmpi.so
// gives Foo.
std::string TCMPIProvider::NameFromPath() const {
    std::string::size_type extension = fPath.rfind(kPluginExtension);
    std::string::size_type separator = fPath.rfind(kFileSeparator, extension);
    std::string::size_type start = separator == std::string::npos ? 0 : separator + 1;
    return fPath.substr(start, extension - start);
}

std::string TCMPIProvider::GetModuleName(TCIMContext) const { return fModuleName; }

std::string TCMPIProvider::GetDescription(TCIMContext) const {
    return fNameAndDescriptionSet ? fDescription : "Default Description";
}

boost::shared_ptr<ICIMNamespace> TCMPIProvider::GetNamespace(TCIMContext) const {
    throw TZENTAException(TZENTAStatusCode::kUnsupportedOperation, "TCMPIProvider::GetNamespace is not supported");
}

IProvider& TCMPIProvider::operator=(const IProvider&) { return *this; }

std::string TCMPIProvider::GetNameSpaceName(TCIMContext) const { return fNamespaceName; }

std::string TCMPIProvider::GetRegistrationPath() const {
    return TOSSpecific::BuildRegistrationPath(fPath, kPluginKind);
}

std::string TCMPIProvider::GetSpecificationPath() const {
    return TOSSpecific::BuildSpecificationPath(fPath, kPluginKind);
}

bool TCMPIProvider::IsClassesProvided(const std::string& className) const {
    for (std::size_t i = 0; i < fCollectedClasses.size(); ++i) {
        if (fCollectedClasses[i]->GetName(TCIMContext()) == className) return true;
    }
    return false;
}

void TCMPIProvider::LoadSpecificationDocument() {
    fCollectedClasses = TCMPINamespaceProvider::GetNamespace()->PopulateContainerFromFile(GetSpecificationPath());
    AddPluginToClass();
}

void TCMPIProvider::AddPluginToClass() {
    try {
        boost::shared_ptr<ICIMQualifierDecl> decl =
            TCMPINamespaceProvider::GetNamespace()->GetQualifierDecl("PLUGINNAME", TCIMContext());
        for (std::size_t i = 0; i < fCollectedClasses.size(); ++i) {
            const boost::shared_ptr<ICIMClass>& cls = fCollectedClasses[i];
            TCIMValue name(GetName(TCIMContext()));
            cls->AddQualifier(cls->AllocateQualifier(decl, name, TCIMContext()), TCIMContext());
        }
    } catch (const TZENTAException& failure) {
        Log(0, "Couldn't find PLUGINNAME qualifier decl");
        throw TZENTAException(failure.GetStatusCode(), failure.what());
    }
}

void TCMPIProvider::Initialize(boost::shared_ptr<CMPIBroker> broker) {
    if (initProvider(fProviderInfo.get(), broker.get()) == 0) {
        fInitialized = true;
        return;
    }
    fInitialized = false;
    Log(0, "Provider: " + GetName(TCIMContext()) + "failed to initialize");
}

void TCMPIProvider::EnumerateClassesProvided(const TClassCallback& callback, TCIMContext) {
    for (std::size_t i = 0; i < fCollectedClasses.size(); ++i) {
        const boost::shared_ptr<ICIMClass>& cls = fCollectedClasses[i];
        if (cls->IsAbstract(TCIMContext())) continue;
        if (IsHiddenFromCollection(cls)) continue;
        Log(3, "Asking plugin " + GetName(TCIMContext()) + " for " + cls->GetName(TCIMContext()));
        boost::shared_ptr<ICIMClass> wrapper(new TCMPIClass(TCMPINamespaceProvider::GetNamespace(), cls));
        if (!callback(wrapper)) return;
    }
}
