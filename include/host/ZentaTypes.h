// Common declarations of the ZENTA host object model: the context map that
// every host operation takes last, and the visitor callbacks of enumerations.
#ifndef ZENTA_HOST_ZENTATYPES_H
#define ZENTA_HOST_ZENTATYPES_H

#include <map>
#include <string>
#include <utility>

#include <boost/function.hpp>
#include <boost/shared_ptr.hpp>
#include <boost/weak_ptr.hpp>

namespace NVURZENTA20 {

class TCIMValue;
class TCIMReference;
class TCIMDateTime;
class TCIMChar16;
class ICIMElement;
class ICIMNamedElement;
class ICIMClass;
class ICIMInstance;
class ICIMNamespace;
class ICIMProperty;
class ICIMPropertyDecl;
class ICIMMethodDecl;
class ICIMParameterDecl;
class ICIMQualifier;
class ICIMQualifierDecl;
class ICIMIndicationFilter;
class IProvider;
class INamespaceProvider;

// The context map: request-scoped name/value pairs passed along every call.
typedef std::map<std::string, TCIMValue> TCIMContext;

// Visitor callbacks: called once per element, `false` stops the walk.
template <class X>
struct TCallback {
    typedef boost::function<bool(boost::shared_ptr<X>)> type;
};

typedef TCallback<ICIMClass>::type TClassCallback;
typedef TCallback<ICIMInstance>::type TInstanceCallback;
typedef TCallback<ICIMProperty>::type TPropertyCallback;
typedef TCallback<ICIMPropertyDecl>::type TPropertyDeclCallback;
typedef TCallback<ICIMMethodDecl>::type TMethodDeclCallback;
typedef TCallback<ICIMParameterDecl>::type TParameterDeclCallback;
typedef TCallback<ICIMQualifier>::type TQualifierCallback;
typedef TCallback<ICIMQualifierDecl>::type TQualifierDeclCallback;
typedef TCallback<IProvider>::type TProviderCallback;
typedef TCallback<INamespaceProvider>::type TNamespaceProviderCallback;
typedef boost::function<bool(const std::string*)> TKeyNameCallback;
typedef boost::function<bool(std::pair<std::string, TCIMValue>)> TKeyBindingCallback;

}  // namespace NVURZENTA20

#endif
