// A CIM object path: namespace (object and name), class name, key bindings
// and the context with which the path is resolved.
//
// A path names its namespace without owning it (it holds it weakly):
// namespaces are owned by the host, and paths are kept inside them (as
// property values of instances and as defaults of classes), so a path that
// owned its namespace would keep it alive for ever. Once the namespace has
// gone, GetNamespace() answers empty.
//
// The context is shared by the copies of a path and never changed in
// place: copying a path copies no map.
//
// Layout guarantee: the first member is a non-owning shared pointer to the
// object itself and the class has no virtual functions. A pointer to a
// TCIMReference can therefore also be read as a pointer to a
// boost::shared_ptr<TCIMReference> that points back at the same object;
// code that receives a path handle in either form reads a valid reference.
#ifndef ZENTA_HOST_TCIMREFERENCE_H
#define ZENTA_HOST_TCIMREFERENCE_H

#include <string>
#include <vector>

#include <boost/container/small_vector.hpp>
#include <boost/shared_ptr.hpp>
#include <boost/weak_ptr.hpp>

#include "TCIMValue.h"
#include "ZentaTypes.h"

namespace NVURZENTA20 {

class TCIMReference {
public:
    // A context several paths carry; nobody changes it.
    typedef boost::shared_ptr<const TCIMContext> TSharedContext;
    // The key bindings, sorted by name without regard to case. Most paths
    // have one key: it is kept in the path itself.
    typedef boost::container::small_vector<std::pair<std::string, TCIMValue>, 1> TKeyBindings;

    TCIMReference();
    TCIMReference(boost::shared_ptr<ICIMNamespace> ns, TCIMContext context);
    // Copies and moves bind the self pointer to the new object; it is never
    // taken over from the source.
    TCIMReference(const TCIMReference& other);
    TCIMReference(TCIMReference&& other) noexcept;
    TCIMReference& operator=(const TCIMReference& other);
    TCIMReference& operator=(TCIMReference&& other) noexcept;
    ~TCIMReference();

    // Parses object path text: [namespace:]Class[.Key=value{,Key=value}].
    // Unquoted values are TRUE/FALSE (boolean), integers (sint64 with a
    // leading '-', else uint64) and reals (real64; also NaN, INF, -INF).
    // Quoted values are strings with \" and \\ escapes, except that a quoted
    // object path with keys, written as GetPath() writes embedded paths,
    // becomes a reference value. Throws TZENTAException (kInvalidPath) on
    // malformed text. Parse(p.GetPath()).GetPath() == p.GetPath().
    static TCIMReference Parse(const std::string& text);

    // Empties every field (the self pointer stays valid).
    void Clear();

    void SetClassName(const std::string& name);
    std::string GetClassName() const;
    void SetNamespace(boost::shared_ptr<ICIMNamespace> ns);
    boost::shared_ptr<ICIMNamespace> GetNamespace() const;
    void SetNameSpaceName(std::string name);
    std::string GetNameSpaceName() const;
    void SetContext(TCIMContext context);
    // Carries `context` itself: paths made by the thousand with the same
    // context share one map.
    void ShareContext(const TSharedContext& context);
    const TCIMContext& GetContext() const;

    // Adds or replaces the binding of `name` (key names compare
    // case-insensitively, as CIM requires).
    void AddKeyValue(const std::string& name, const TCIMValue& value);
    // Visits the bindings in ascending order of name; stops on `false`.
    void EnumerateKeyBindings(const TKeyBindingCallback& callback) const;
    // The same bindings, read in place.
    const TKeyBindings& GetKeyBindings() const { return fKeys; }
    std::size_t GetKeyCount() const { return fKeys.size(); }
    bool HasKey(const std::string& name) const;
    // The value bound to `name`, or a null value.
    TCIMValue GetKeyValue(const std::string& name) const;

    // Model path text "Class.Key1=\"v\",Key2=42": keys in ascending order
    // of name; strings, char16 and date-times quoted; references quoted as
    // their own path, prefixed by "namespace:" when they name a namespace.
    // Appends one key binding as GetPath() writes it (NAME=value, strings
    // quoted and escaped), so that a writer can build the text of a path
    // from values it holds without making the path.
    static void AppendKeyBinding(std::string& out, const std::string& name, const TCIMValue& value);
    std::string GetPath() const;

    // The class the path names, resolved through the path's own namespace
    // with the path's own context. Empty when there is no namespace.
    boost::shared_ptr<ICIMClass> GetClass() const;

    // A class look-up that reads the context in place. ICIMNamespace takes
    // the context by value, so resolving a path through it copies the
    // path's context map; a provider resolves a path for every instance it
    // makes. A namespace of the host registers its own look-up while it
    // lives (it must answer exactly as its GetClass does), and GetClass
    // uses it for paths that name that namespace.
    typedef boost::shared_ptr<ICIMClass> (*TClassLookup)(ICIMNamespace& ns, const std::string& name,
                                                          const TCIMContext& context);
    static void RegisterClassLookup(const ICIMNamespace* ns, TClassLookup lookup);
    static void UnregisterClassLookup(const ICIMNamespace* ns);
    // With `classOnly` true: the class the path names. With false: the
    // instance the path names when it has keys, else the class.
    boost::shared_ptr<ICIMElement> GetCIMElement(bool classOnly) const;

    // Same class (case-insensitive) and the same key bindings.
    bool operator==(const TCIMReference& other) const;
    bool operator!=(const TCIMReference& other) const { return !(*this == other); }
    // Appends text that paths equal under operator== share (names without
    // case, key values by their text, references by their own such text, a
    // real zero without its sign): a key for hashing paths.
    void AppendEqualityKey(std::string& key) const;

private:
    typedef TKeyBindings TKeyList;

    void BindSelf();
    // The first binding whose name does not sort before `name`.
    TKeyList::iterator LowerBound(const std::string& name);
    TKeyList::const_iterator LowerBound(const std::string& name) const;
    TKeyList::const_iterator FindKey(const std::string& name) const;

    boost::shared_ptr<TCIMReference> fSelf;  // must stay the first member; never owns
    boost::weak_ptr<ICIMNamespace> fNamespace;
    std::string fNamespaceName;
    std::string fClassName;
    TKeyList fKeys;            // sorted by name, ignoring case
    TSharedContext fContext;   // empty for an empty context
};

}  // namespace NVURZENTA20

#endif
