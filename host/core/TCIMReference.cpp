#include "TCIMReference.h"

#include <algorithm>
#include <atomic>
#include <charconv>
#include <limits>
#include <utility>

#include <boost/core/null_deleter.hpp>
#include <boost/make_shared.hpp>

#include "CIMNames.h"
#include "ICIMNamespace.h"
#include "TZENTAException.h"

namespace NVURZENTA20 {

namespace {

typedef TCIMValue::TCIMType TType;

// Every path's self pointer shares this one control block, whose deleter does
// nothing: binding a path to itself costs no allocation, and a strong
// reference taken through the self pointer never frees anything. The owner is
// never destroyed, so paths in static storage stay valid to the very end.
const boost::shared_ptr<void>& SelfOwner() {
    static const boost::shared_ptr<void>* const owner =
        new boost::shared_ptr<void>(static_cast<void*>(nullptr), boost::null_deleter());
    return *owner;
}

// --- writing ---------------------------------------------------------------

void AppendQuoted(std::string& out, std::string_view text) {
    out += '"';
    // Runs without a character to escape are copied whole.
    std::size_t start = 0;
    for (std::size_t at = text.find_first_of("\"\\"); at != std::string_view::npos;
         at = text.find_first_of("\"\\", at + 1)) {
        out.append(text.data() + start, at - start);
        out += '\\';
        start = at;
    }
    out.append(text.data() + start, text.size() - start);
    out += '"';
}

// A key of a path written inside another path: it keeps its namespace.
std::string EmbeddedPath(const TCIMReference& path) {
    const std::string ns = path.GetNameSpaceName();
    return ns.empty() ? path.GetPath() : ns + ":" + path.GetPath();
}

// Reals always show a '.' or an exponent, so that they read back as reals.
void AppendRealKey(std::string& out, const std::string& text) {
    out += text;
    if (text.find_first_not_of("+-0123456789") == std::string::npos) out += ".0";
}

void AppendKeyValue(std::string& out, const TCIMValue& value) {
    const TType type = value.GetType();
    if (value.IsNull() || value.IsArray()) {
        AppendQuoted(out, value.ToString(10));
    } else if (type == TType::kBoolean || type.IsInteger()) {
        value.AppendText(out);
    } else if (type.IsReal()) {
        AppendRealKey(out, value.ToString(10));
    } else if (type == TType::kReference) {
        AppendQuoted(out, EmbeddedPath(value.GetReference()));
    } else if (type == TType::kString) {
        AppendQuoted(out, value.GetStringView());
    } else {
        AppendQuoted(out, value.ToString(10));
    }
}

// --- reading ---------------------------------------------------------------

bool IsNameStart(char c) {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_' || static_cast<unsigned char>(c) >= 0x80;
}

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

bool IsNameCharacter(char c) { return IsNameStart(c) || IsDigit(c); }

// Skips a run of digits from `position`; true when there was at least one.
bool SkipDigits(const std::string& text, std::size_t& position) {
    const std::size_t start = position;
    while (position < text.size() && IsDigit(text[position])) ++position;
    return position != start;
}

std::size_t SignLength(const std::string& text) { return !text.empty() && (text[0] == '+' || text[0] == '-'); }

bool IsIntegerText(const std::string& text) {
    std::size_t position = SignLength(text);
    return SkipDigits(text, position) && position == text.size();
}

// [sign] digits ['.' digits] [e [sign] digits], with a '.' or an exponent.
bool IsRealText(const std::string& text) {
    std::size_t position = SignLength(text);
    bool mantissa = SkipDigits(text, position);
    const bool hasPoint = position < text.size() && text[position] == '.';
    if (hasPoint) {
        ++position;
        mantissa = SkipDigits(text, position) || mantissa;
    }
    if (!mantissa) return false;
    const bool hasExponent = position < text.size() && (text[position] == 'e' || text[position] == 'E');
    if (hasExponent) {
        ++position;
        if (position < text.size() && (text[position] == '+' || text[position] == '-')) ++position;
        if (!SkipDigits(text, position)) return false;
    }
    return (hasPoint || hasExponent) && position == text.size();
}

// from_chars takes no leading '+'.
template <class TNumber>
bool ReadNumber(const std::string& text, TNumber& number) {
    const char* first = text.data() + (!text.empty() && text[0] == '+' ? 1 : 0);
    const char* last = text.data() + text.size();
    const std::from_chars_result read = std::from_chars(first, last, number);
    return read.ec == std::errc() && read.ptr == last;
}

// Reads object path text into a reference; reports the first problem with
// its offset instead of throwing, so that quoted values can be tried as
// embedded paths cheaply.
class TPathParser {
public:
    explicit TPathParser(const std::string& text) : fText(text), fPosition(0), fProblemPosition(0) {}

    bool Read(TCIMReference& path);
    std::string Problem() const { return fProblem + " at offset " + std::to_string(fProblemPosition); }

private:
    bool AtEnd() const { return fPosition >= fText.size(); }
    bool Fail(const std::string& problem) { return Fail(problem, fPosition); }
    bool Fail(const std::string& problem, std::size_t position);
    bool ReadNamespace(TCIMReference& path);
    bool ReadName(std::string& name);
    bool ReadKeyBinding(TCIMReference& path);
    bool ReadValue(const std::string& key, TCIMValue& value);
    bool ReadQuoted(std::string& text);
    bool ReadUnquoted(const std::string& key, TCIMValue& value);

    const std::string& fText;
    std::size_t fPosition;
    std::string fProblem;
    std::size_t fProblemPosition;
};

bool TPathParser::Fail(const std::string& problem, std::size_t position) {
    fProblem = problem;
    fProblemPosition = position;
    return false;
}

bool TPathParser::Read(TCIMReference& path) {
    if (fText.empty()) return Fail("the text is empty");
    if (!ReadNamespace(path)) return false;
    std::string className;
    if (!ReadName(className)) return Fail("a class name is missing");
    path.SetClassName(className);
    if (AtEnd()) return true;
    if (fText[fPosition] != '.') return Fail(std::string("'") + fText[fPosition] + "' follows the class name");
    do {
        ++fPosition;
        if (!ReadKeyBinding(path)) return false;
    } while (!AtEnd() && fText[fPosition] == ',');
    return AtEnd() || Fail(std::string("'") + fText[fPosition] + "' follows a key value");
}

// Namespace names hold no ':', and nothing before the first quote but a
// namespace prefix does.
bool TPathParser::ReadNamespace(TCIMReference& path) {
    const std::size_t colon = fText.find_first_of(":\"");
    if (colon == std::string::npos || fText[colon] != ':') return true;
    if (colon == 0) return Fail("the namespace name before ':' is empty");
    path.SetNameSpaceName(fText.substr(0, colon));
    fPosition = colon + 1;
    return true;
}

bool TPathParser::ReadName(std::string& name) {
    const std::size_t start = fPosition;
    if (AtEnd() || !IsNameStart(fText[fPosition])) return false;
    while (!AtEnd() && IsNameCharacter(fText[fPosition])) ++fPosition;
    name.assign(fText, start, fPosition - start);
    return true;
}

bool TPathParser::ReadKeyBinding(TCIMReference& path) {
    const std::size_t start = fPosition;
    std::string name;
    if (!ReadName(name)) return Fail("a key name is missing");
    if (AtEnd() || fText[fPosition] != '=') return Fail("'=' is missing after key " + name);
    ++fPosition;
    TCIMValue value;
    if (!ReadValue(name, value)) return false;
    if (path.HasKey(name)) return Fail("key " + name + " is bound twice", start);
    path.AddKeyValue(name, value);
    return true;
}

bool TPathParser::ReadValue(const std::string& key, TCIMValue& value) {
    if (AtEnd() || fText[fPosition] != '"') return ReadUnquoted(key, value);
    std::string text;
    if (!ReadQuoted(text)) return false;
    TCIMReference embedded;
    // Only the exact text GetPath writes becomes a reference, so that any
    // string reads back as the same text.
    if (text.find('=') != std::string::npos && TPathParser(text).Read(embedded) && embedded.GetKeyCount() != 0 &&
        EmbeddedPath(embedded) == text) {
        value.Set(embedded);
    } else {
        value.Set(std::move(text));
    }
    return true;
}

bool TPathParser::ReadQuoted(std::string& text) {
    const std::size_t start = fPosition++;
    while (!AtEnd()) {
        const char c = fText[fPosition++];
        if (c == '"') return true;
        if (c == '\\') {
            if (AtEnd()) break;
            text += fText[fPosition++];
        } else {
            text += c;
        }
    }
    return Fail("the quoted value is not terminated", start);
}

bool TPathParser::ReadUnquoted(const std::string& key, TCIMValue& value) {
    const std::size_t start = fPosition;
    fPosition = std::min(fText.find(',', start), fText.size());
    const std::string token = fText.substr(start, fPosition - start);
    if (token.empty()) return Fail("the value of key " + key + " is missing", start);
    if (SameCIMName(token, "TRUE") || SameCIMName(token, "FALSE")) {
        value.Set(SameCIMName(token, "TRUE"));
    } else if (token == "NaN") {
        value.Set(std::numeric_limits<double>::quiet_NaN());
    } else if (token == "INF" || token == "-INF") {
        value.Set(token[0] == '-' ? -std::numeric_limits<double>::infinity()
                                  : std::numeric_limits<double>::infinity());
    } else if (IsIntegerText(token) && token[0] == '-') {
        long long number = 0;
        if (!ReadNumber(token, number)) return Fail("the integer " + token + " is out of range", start);
        value.Set(number);
    } else if (IsIntegerText(token)) {
        unsigned long long number = 0;
        if (!ReadNumber(token, number)) return Fail("the integer " + token + " is out of range", start);
        value.Set(number);
    } else if (IsRealText(token)) {
        double number = 0;
        if (!ReadNumber(token, number)) return Fail("the real " + token + " is out of range", start);
        value.Set(number);
    } else {
        return Fail("the value " + token + " of key " + key + " is neither quoted nor a boolean or number", start);
    }
    return true;
}

}  // namespace

// --- construction ----------------------------------------------------------

TCIMReference::TCIMReference() { BindSelf(); }

TCIMReference::TCIMReference(boost::shared_ptr<ICIMNamespace> ns, TCIMContext context) : fNamespace(ns) {
    BindSelf();
    SetContext(std::move(context));
}

TCIMReference::TCIMReference(const TCIMReference& other)
    : fNamespace(other.fNamespace),
      fNamespaceName(other.fNamespaceName),
      fClassName(other.fClassName),
      fKeys(other.fKeys),
      fContext(other.fContext) {
    BindSelf();
}

TCIMReference::TCIMReference(TCIMReference&& other) noexcept
    : fNamespace(std::move(other.fNamespace)),
      fNamespaceName(std::move(other.fNamespaceName)),
      fClassName(std::move(other.fClassName)),
      fKeys(std::move(other.fKeys)),
      fContext(std::move(other.fContext)) {
    BindSelf();
}

// Assignments keep this object's own self pointer.
TCIMReference& TCIMReference::operator=(const TCIMReference& other) {
    if (this != &other) {
        fNamespace = other.fNamespace;
        fNamespaceName = other.fNamespaceName;
        fClassName = other.fClassName;
        fKeys = other.fKeys;
        fContext = other.fContext;
    }
    return *this;
}

TCIMReference& TCIMReference::operator=(TCIMReference&& other) noexcept {
    if (this != &other) {
        fNamespace = std::move(other.fNamespace);
        fNamespaceName = std::move(other.fNamespaceName);
        fClassName = std::move(other.fClassName);
        fKeys = std::move(other.fKeys);
        fContext = std::move(other.fContext);
    }
    return *this;
}

TCIMReference::~TCIMReference() {}

void TCIMReference::BindSelf() { fSelf = boost::shared_ptr<TCIMReference>(SelfOwner(), this); }

TCIMReference TCIMReference::Parse(const std::string& text) {
    TCIMReference path;
    TPathParser parser(text);
    if (!parser.Read(path)) {
        throw TZENTAException(TZENTAStatusCode::kInvalidPath,
                              "invalid object path \"" + text + "\": " + parser.Problem());
    }
    return path;
}

void TCIMReference::Clear() {
    fNamespace.reset();
    fNamespaceName.clear();
    fClassName.clear();
    fKeys.clear();
    fContext.reset();
}

// --- fields ----------------------------------------------------------------

void TCIMReference::SetClassName(const std::string& name) { fClassName = name; }
std::string TCIMReference::GetClassName() const { return fClassName; }
void TCIMReference::SetNamespace(boost::shared_ptr<ICIMNamespace> ns) { fNamespace = ns; }
boost::shared_ptr<ICIMNamespace> TCIMReference::GetNamespace() const { return fNamespace.lock(); }
void TCIMReference::SetNameSpaceName(std::string name) { fNamespaceName = std::move(name); }
std::string TCIMReference::GetNameSpaceName() const { return fNamespaceName; }
void TCIMReference::SetContext(TCIMContext context) {
    if (context.empty()) {
        fContext.reset();
    } else {
        fContext = boost::make_shared<const TCIMContext>(std::move(context));
    }
}

void TCIMReference::ShareContext(const TSharedContext& context) { fContext = context; }

const TCIMContext& TCIMReference::GetContext() const {
    static const TCIMContext* const kEmpty = new TCIMContext;
    return fContext ? *fContext : *kEmpty;
}

// --- key bindings ----------------------------------------------------------

namespace {

bool NameSortsBefore(const std::pair<std::string, TCIMValue>& binding, const std::string& name) {
    return CompareCIMNames(binding.first, name) < 0;
}

}  // namespace

TCIMReference::TKeyList::iterator TCIMReference::LowerBound(const std::string& name) {
    return std::lower_bound(fKeys.begin(), fKeys.end(), name, NameSortsBefore);
}

TCIMReference::TKeyList::const_iterator TCIMReference::LowerBound(const std::string& name) const {
    return std::lower_bound(fKeys.begin(), fKeys.end(), name, NameSortsBefore);
}

TCIMReference::TKeyList::const_iterator TCIMReference::FindKey(const std::string& name) const {
    const TKeyList::const_iterator found = LowerBound(name);
    return found != fKeys.end() && SameCIMName(found->first, name) ? found : fKeys.end();
}

// A binding that sorts last (a provider's first and usually only key) is
// appended: an insertion in the middle moves what follows.
void TCIMReference::AddKeyValue(const std::string& name, const TCIMValue& value) {
    if (fKeys.empty() || NameSortsBefore(fKeys.back(), name)) {
        fKeys.emplace_back(name, value);
        return;
    }
    const TKeyList::iterator position = LowerBound(name);
    if (SameCIMName(position->first, name)) {
        position->first = name;
        position->second = value;
    } else {
        fKeys.emplace(position, name, value);
    }
}

void TCIMReference::EnumerateKeyBindings(const TKeyBindingCallback& callback) const {
    if (!callback) return;
    for (const std::pair<std::string, TCIMValue>& binding : fKeys) {
        if (!callback(binding)) break;
    }
}

bool TCIMReference::HasKey(const std::string& name) const { return FindKey(name) != fKeys.end(); }

TCIMValue TCIMReference::GetKeyValue(const std::string& name) const {
    const TKeyList::const_iterator found = FindKey(name);
    return found != fKeys.end() ? found->second : TCIMValue();
}

std::string TCIMReference::GetPath() const {
    std::string path(fClassName);
    for (std::size_t i = 0; i < fKeys.size(); ++i) {
        path += i == 0 ? '.' : ',';
        AppendKeyBinding(path, fKeys[i].first, fKeys[i].second);
    }
    return path;
}

void TCIMReference::AppendKeyBinding(std::string& out, const std::string& name, const TCIMValue& value) {
    out += name;
    out += '=';
    AppendKeyValue(out, value);
}

// --- resolution ------------------------------------------------------------

namespace {

// The namespaces with a look-up of their own. A reader holds the namespace
// it asks about, so that namespace cannot unregister (it does so as it is
// destroyed) while its look-up is read; slots are only scanned up to the
// highest one ever used.
struct TClassLookupSlot {
    std::atomic<const ICIMNamespace*> ns;
    std::atomic<TCIMReference::TClassLookup> lookup;
};
const std::size_t kClassLookupSlots = 16;
TClassLookupSlot gClassLookups[kClassLookupSlots];
std::atomic<std::size_t> gClassLookupsUsed(0);

TCIMReference::TClassLookup ClassLookupOf(const ICIMNamespace* ns) {
    const std::size_t used = gClassLookupsUsed.load(std::memory_order_acquire);
    for (std::size_t i = 0; i < used; ++i) {
        if (gClassLookups[i].ns.load(std::memory_order_acquire) == ns) {
            return gClassLookups[i].lookup.load(std::memory_order_acquire);
        }
    }
    return nullptr;
}

}  // namespace

// With every slot taken, a namespace simply goes without: its GetClass
// answers the same, at the cost of the copy.
void TCIMReference::RegisterClassLookup(const ICIMNamespace* ns, TClassLookup lookup) {
    for (std::size_t i = 0; i < kClassLookupSlots; ++i) {
        const ICIMNamespace* empty = nullptr;
        if (!gClassLookups[i].ns.compare_exchange_strong(empty, ns, std::memory_order_acq_rel)) continue;
        gClassLookups[i].lookup.store(lookup, std::memory_order_release);
        std::size_t used = gClassLookupsUsed.load(std::memory_order_acquire);
        while (used < i + 1 && !gClassLookupsUsed.compare_exchange_weak(used, i + 1, std::memory_order_acq_rel)) {
        }
        return;
    }
}

void TCIMReference::UnregisterClassLookup(const ICIMNamespace* ns) {
    for (std::size_t i = 0; i < kClassLookupSlots; ++i) {
        if (gClassLookups[i].ns.load(std::memory_order_acquire) != ns) continue;
        gClassLookups[i].lookup.store(nullptr, std::memory_order_release);
        gClassLookups[i].ns.store(nullptr, std::memory_order_release);
    }
}

boost::shared_ptr<ICIMClass> TCIMReference::GetClass() const {
    const boost::shared_ptr<ICIMNamespace> ns = fNamespace.lock();
    if (!ns) return boost::shared_ptr<ICIMClass>();
    if (const TClassLookup lookup = ClassLookupOf(ns.get())) return lookup(*ns, fClassName, GetContext());
    return ns->GetClass(fClassName, GetContext());
}

boost::shared_ptr<ICIMElement> TCIMReference::GetCIMElement(bool classOnly) const {
    if (classOnly || fKeys.empty()) return GetClass();
    const boost::shared_ptr<ICIMNamespace> ns = fNamespace.lock();
    if (!ns) return GetClass();
    return ns->GetInstance(*this, GetContext());
}

namespace {

// Key values match when they are equal, or when they are scalars of
// different types with the same text: a path typed on a command line reads
// every integer as 64-bit, while the instance's key may be a uint32.
bool SameKeyValue(const TCIMValue& a, const TCIMValue& b) {
    if (a == b) return true;
    if (a.GetType() == b.GetType() || a.IsArray() || b.IsArray() || a.IsNull() || b.IsNull()) return false;
    return a.ToString(10) == b.ToString(10);
}

// The text SameKeyValue's matches share.
void AppendKeyValueKey(std::string& key, const TCIMValue& value) {
    const TCIMValue::TCIMType type = value.GetType();
    if (!value.IsNull() && !value.IsArray() && type == TCIMValue::TCIMType::kReference) {
        value.GetReference().AppendEqualityKey(key);
    } else if (!value.IsNull() && !value.IsArray() && type.IsReal() && static_cast<double>(value) == 0) {
        key += '0';
    } else {
        key += value.ToString(10);
    }
}

void AppendLowerCase(std::string& key, const std::string& name) {
    for (const char c : name) key += LowerAscii(c);
}

}  // namespace

void TCIMReference::AppendEqualityKey(std::string& key) const {
    AppendLowerCase(key, fClassName);
    for (const auto& binding : fKeys) {
        key += '\0';
        AppendLowerCase(key, binding.first);
        key += '=';
        AppendKeyValueKey(key, binding.second);
    }
    key += '\1';
}

bool TCIMReference::operator==(const TCIMReference& other) const {
    if (!SameCIMName(fClassName, other.fClassName) || fKeys.size() != other.fKeys.size()) return false;
    for (std::size_t i = 0; i < fKeys.size(); ++i) {
        if (!SameCIMName(fKeys[i].first, other.fKeys[i].first) || !SameKeyValue(fKeys[i].second, other.fKeys[i].second)) {
            return false;
        }
    }
    return true;
}

}  // namespace NVURZENTA20
