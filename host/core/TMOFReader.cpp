#include "TMOFReader.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <memory>
#include <vector>

#include <tao/pegtl.hpp>

#include "CIMNames.h"
#include "TRootObject.h"
#include "TZENTAException.h"
#include "Utf8.h"

namespace NVURZENTA20 {

namespace {

namespace pegtl = tao::pegtl;
typedef ICIMQualifierDecl D;
typedef TCIMValue::TCIMType T;

// --- grammar (DSP0004, as schemas are written) ------------------------------

namespace grammar {

using namespace tao::pegtl;

struct line_comment : seq<two<'/'>, until<eolf>> {};
struct block_comment_end : string<'*', '/'> {};
struct block_comment_rest : until<block_comment_end> {};
struct block_comment : if_must<string<'/', '*'>, block_comment_rest> {};
// Blanks and comments between tokens.
struct sp : star<sor<ascii::space, line_comment, block_comment>> {};

struct ident_first : sor<ascii::alpha, one<'_'>, ascii::range<'\x80', '\xff'>> {};
struct ident_other : sor<ident_first, ascii::digit> {};
struct identifier : seq<ident_first, star<ident_other>> {};

template <class Word>
struct kw : seq<Word, not_at<ident_other>> {};

struct k_class : kw<TAO_PEGTL_ISTRING("class")> {};
struct k_instance : kw<TAO_PEGTL_ISTRING("instance")> {};
struct k_of : kw<TAO_PEGTL_ISTRING("of")> {};
struct k_as : kw<TAO_PEGTL_ISTRING("as")> {};
struct k_ref : kw<TAO_PEGTL_ISTRING("ref")> {};
struct k_qualifier : kw<TAO_PEGTL_ISTRING("qualifier")> {};
struct k_scope : kw<TAO_PEGTL_ISTRING("scope")> {};
struct k_flavor : kw<TAO_PEGTL_ISTRING("flavor")> {};
struct k_pragma : kw<TAO_PEGTL_ISTRING("pragma")> {};
struct k_true : kw<TAO_PEGTL_ISTRING("true")> {};
struct k_false : kw<TAO_PEGTL_ISTRING("false")> {};
struct k_null : kw<TAO_PEGTL_ISTRING("null")> {};

// Literals.
struct sign : opt<one<'+', '-'>> {};
struct number_end : not_at<sor<ident_other, one<'.'>>> {};
struct exponent : seq<one<'e', 'E'>, sign, plus<ascii::digit>> {};
struct real_value : sor<seq<sign, star<ascii::digit>, one<'.'>, plus<ascii::digit>, opt<exponent>>,
                         seq<sign, plus<ascii::digit>, exponent>> {};
struct hex_value : seq<sign, one<'0'>, one<'x', 'X'>, plus<ascii::xdigit>> {};
struct binary_value : seq<sign, plus<one<'0', '1'>>, one<'b', 'B'>> {};
struct octal_value : seq<sign, one<'0'>, plus<ascii::range<'0', '7'>>> {};
struct decimal_value : seq<sign, plus<ascii::digit>> {};
struct integer_value : sor<hex_value, binary_value, octal_value, decimal_value> {};
struct real_number : seq<real_value, number_end> {};
struct integer_number : seq<integer_value, number_end> {};
struct number : sor<real_number, integer_number> {};

struct escape_code : sor<one<'b', 't', 'n', 'f', 'r', '"', '\'', '\\'>,
                         seq<one<'x', 'X'>, rep_min_max<1, 4, ascii::xdigit> > > {};
struct escape : if_must<one<'\\'>, escape_code> {};
struct string_end : one<'"'> {};
struct string_char : sor<escape, not_one<'"', '\\'> > {};
struct string_rest : until<string_end, string_char> {};
struct string_part : if_must<one<'"'>, string_rest> {};
struct string_begin : at<one<'"'> > {};
struct string_value : seq<string_begin, string_part, star<sp, string_part> > {};
struct char_end : one<'\''> {};
struct char_body : sor<escape, utf8::not_one<'\'', '\\'> > {};
struct char_value : if_must<one<'\''>, char_body, char_end> {};
struct true_value : k_true {};
struct false_value : k_false {};
struct null_value : k_null {};
struct alias_value : seq<one<'$'>, identifier> {};
struct constant_value : sor<string_value, char_value, number, true_value, false_value, null_value, alias_value> {};

struct array_open : one<'{'> {};
struct array_close : one<'}'> {};
struct array_value : if_must<array_open, sp, opt<list<seq<constant_value, sp>, seq<one<','>, sp> > >, array_close> {};
struct initializer : sor<array_value, constant_value> {};

// Types.
struct data_type
    : sor<kw<TAO_PEGTL_ISTRING("uint8")>, kw<TAO_PEGTL_ISTRING("sint8")>, kw<TAO_PEGTL_ISTRING("uint16")>,
          kw<TAO_PEGTL_ISTRING("sint16")>, kw<TAO_PEGTL_ISTRING("uint32")>, kw<TAO_PEGTL_ISTRING("sint32")>,
          kw<TAO_PEGTL_ISTRING("uint64")>, kw<TAO_PEGTL_ISTRING("sint64")>, kw<TAO_PEGTL_ISTRING("real32")>,
          kw<TAO_PEGTL_ISTRING("real64")>, kw<TAO_PEGTL_ISTRING("char16")>, kw<TAO_PEGTL_ISTRING("string")>,
          kw<TAO_PEGTL_ISTRING("boolean")>, kw<TAO_PEGTL_ISTRING("datetime")> > {};
struct ref_type : seq<identifier, sp, k_ref> {};
struct array_close_bracket : one<']'> {};
struct array_spec : if_must<one<'['>, sp, opt<plus<ascii::digit> >, sp, array_close_bracket> {};
struct default_value : if_must<one<'='>, sp, initializer> {};

// Qualifiers.
struct f_enable_override : kw<TAO_PEGTL_ISTRING("enableoverride")> {};
struct f_disable_override : kw<TAO_PEGTL_ISTRING("disableoverride")> {};
struct f_restricted : kw<TAO_PEGTL_ISTRING("restricted")> {};
struct f_to_subclass : kw<TAO_PEGTL_ISTRING("tosubclass")> {};
struct f_translatable : kw<TAO_PEGTL_ISTRING("translatable")> {};
struct flavor : sor<f_enable_override, f_disable_override, f_restricted, f_to_subclass, f_translatable> {};
struct flavors : list<seq<flavor, sp>, seq<one<','>, sp> > {};

struct closing_paren : one<')'> {};
struct qualifier_name : identifier {};
struct qualifier_parameter : sor<if_must<one<'('>, sp, initializer, sp, closing_paren>, array_value> {};
struct qualifier_flavors : if_must<one<':'>, sp, flavors> {};
struct qualifier : seq<qualifier_name, sp, opt<qualifier_parameter>, sp, opt<qualifier_flavors> > {};
struct qualifier_list_end : one<']'> {};
struct qualifiers : list<seq<qualifier, sp>, seq<one<','>, sp> > {};
struct qualifier_list : if_must<one<'['>, sp, qualifiers, qualifier_list_end> {};

// Qualifier declarations.
struct s_class : kw<TAO_PEGTL_ISTRING("class")> {};
struct s_association : kw<TAO_PEGTL_ISTRING("association")> {};
struct s_indication : kw<TAO_PEGTL_ISTRING("indication")> {};
struct s_qualifier : kw<TAO_PEGTL_ISTRING("qualifier")> {};
struct s_property : kw<TAO_PEGTL_ISTRING("property")> {};
struct s_reference : kw<TAO_PEGTL_ISTRING("reference")> {};
struct s_method : kw<TAO_PEGTL_ISTRING("method")> {};
struct s_parameter : kw<TAO_PEGTL_ISTRING("parameter")> {};
struct s_any : kw<TAO_PEGTL_ISTRING("any")> {};
struct scope_element
    : sor<s_class, s_association, s_indication, s_qualifier, s_property, s_reference, s_method, s_parameter, s_any> {};
struct scope_open : one<'('> {};
struct scopes : list<seq<scope_element, sp>, seq<one<','>, sp> > {};
struct scope_spec : if_must<k_scope, sp, scope_open, sp, scopes, closing_paren> {};
struct flavor_spec : if_must<k_flavor, sp, scope_open, sp, flavors, closing_paren> {};
struct decl_name : identifier {};
struct decl_type : seq<data_type> {};
struct decl_colon : one<':'> {};
struct statement_end : one<';'> {};
struct qualifier_decl
    : if_must<k_qualifier, sp, decl_name, sp, decl_colon, sp, decl_type, sp, opt<array_spec>, sp, opt<default_value>,
              sp, opt<one<','>, sp, scope_spec>, sp, opt<one<','>, sp, flavor_spec>, sp, statement_end> {};

// Classes.
struct feature_type : sor<ref_type, data_type> {};
struct feature_name : identifier {};
struct property_rest : seq<opt<array_spec>, sp, opt<default_value>, sp, statement_end> {};
struct parameter_type : sor<ref_type, data_type> {};
struct parameter_name : identifier {};
struct parameter : seq<opt<qualifier_list>, sp, parameter_type, sp, parameter_name, sp, opt<array_spec>, sp,
                       opt<default_value> > {};
struct method_open : one<'('> {};
struct parameters : opt<list<seq<parameter, sp>, seq<one<','>, sp> > > {};
struct method_rest : if_must<method_open, sp, parameters, closing_paren, sp, statement_end> {};
struct feature_rest : sor<method_rest, property_rest> {};
struct class_feature : seq<opt<qualifier_list>, sp, feature_type, sp, feature_name, sp, must<feature_rest> > {};
struct class_name : identifier {};
struct super_name : identifier {};
struct alias_name : identifier {};
struct alias_spec : seq<k_as, sp, one<'$'>, alias_name> {};
struct class_open : one<'{'> {};
struct class_close : one<'}'> {};
struct super_spec : if_must<one<':'>, sp, super_name> {};
struct class_decl : if_must<k_class, sp, class_name, sp, opt<alias_spec>, sp, opt<super_spec>, sp, class_open, sp,
                            star<class_feature, sp>, class_close, sp, statement_end> {};

// Instances.
struct value_name : identifier {};
struct value_equals : one<'='> {};
struct value_initializer : seq<opt<qualifier_list>, sp, value_name, sp, must<value_equals>, sp, must<initializer>, sp,
                               must<statement_end> > {};
struct instance_close : one<'}'> {};
struct instance_class : identifier {};
struct instance_decl : if_must<k_instance, sp, k_of, sp, instance_class, sp, opt<alias_spec>, sp, class_open, sp,
                               star<value_initializer, sp>, instance_close, sp, statement_end> {};

// Compiler directives.
struct pragma_name : identifier {};
struct pragma_parameter : sor<string_value, identifier> {};
struct pragma_parameters : opt<list<seq<pragma_parameter, sp>, seq<one<','>, sp> > > {};
struct pragma : if_must<one<'#'>, sp, k_pragma, sp, pragma_name, sp, scope_open, sp, pragma_parameters,
                        closing_paren> {};

struct qualified_declaration : sor<class_decl, instance_decl> {};
struct qualified_production : sor<if_must<at<one<'['> >, qualifier_list, sp, qualified_declaration>, qualified_declaration> {};
struct production : sor<pragma, qualifier_decl, qualified_production> {};
struct document_end : eof {};
struct document : seq<sp, star<production, sp>, must<document_end> > {};

}  // namespace grammar

// --- error texts -----------------------------------------------------------

template <class Rule>
struct TExpected {
    static constexpr const char* text = "syntax error";
};
#define ZENTA_MOF_EXPECTED(rule, message)                 \
    template <>                                           \
    struct TExpected<grammar::rule> {                     \
        static constexpr const char* text = message;      \
    };
ZENTA_MOF_EXPECTED(block_comment_rest, "the comment is not closed")
ZENTA_MOF_EXPECTED(string_rest, "the string is not closed")
ZENTA_MOF_EXPECTED(char_body, "expected a character")
ZENTA_MOF_EXPECTED(char_end, "expected ' to close the char16 literal")
ZENTA_MOF_EXPECTED(array_close, "expected , or } in the array")
ZENTA_MOF_EXPECTED(array_close_bracket, "expected ] after the array size")
ZENTA_MOF_EXPECTED(initializer, "expected a value")
ZENTA_MOF_EXPECTED(closing_paren, "expected )")
ZENTA_MOF_EXPECTED(qualifier_list_end, "expected , or ] in the qualifier list")
ZENTA_MOF_EXPECTED(qualifiers, "expected a qualifier name")
ZENTA_MOF_EXPECTED(feature_rest, "expected (, [, = or ; after the name")
ZENTA_MOF_EXPECTED(instance_close, "expected a property value or }")
ZENTA_MOF_EXPECTED(flavors, "expected a flavor (EnableOverride, DisableOverride, Restricted, ToSubclass, Translatable)")
ZENTA_MOF_EXPECTED(scope_open, "expected (")
ZENTA_MOF_EXPECTED(decl_name, "expected the qualifier's name")
ZENTA_MOF_EXPECTED(decl_colon, "expected : and the qualifier's type")
ZENTA_MOF_EXPECTED(decl_type, "expected a CIM type (uint8 ... datetime)")
ZENTA_MOF_EXPECTED(statement_end, "expected ;")
ZENTA_MOF_EXPECTED(class_name, "expected the class name")
ZENTA_MOF_EXPECTED(super_name, "expected the superclass name")
ZENTA_MOF_EXPECTED(class_open, "expected {")
ZENTA_MOF_EXPECTED(class_close, "expected a property, reference, method or }")
ZENTA_MOF_EXPECTED(parameters, "expected a parameter")
ZENTA_MOF_EXPECTED(instance_class, "expected the class name")
ZENTA_MOF_EXPECTED(k_of, "expected OF after INSTANCE")
ZENTA_MOF_EXPECTED(value_equals, "expected = and a value")
ZENTA_MOF_EXPECTED(pragma_name, "expected the pragma's name")
ZENTA_MOF_EXPECTED(k_pragma, "expected pragma after #")
ZENTA_MOF_EXPECTED(qualified_declaration, "expected CLASS or INSTANCE OF after the qualifiers")
ZENTA_MOF_EXPECTED(document_end, "expected a class, an instance, a qualifier declaration or a #pragma")
ZENTA_MOF_EXPECTED(escape_code, "unknown escape sequence")
ZENTA_MOF_EXPECTED(scopes, "expected a scope (class, association, indication, property, reference, method, "
                                  "parameter, any)")
#undef ZENTA_MOF_EXPECTED

template <class Rule>
struct TControl : pegtl::normal<Rule> {
    template <class Input, class... States>
    [[noreturn]] static void raise(const Input& in, States&&...) {
        throw pegtl::parse_error(TExpected<Rule>::text, in);
    }
};

// --- what the actions build --------------------------------------------------

struct TReadState;

// The files being read, for include resolution and the limits that hold
// over a document with all it includes.
struct TIncludeContext {
    const TDocumentLimits& limits;
    const TMOFFileLoader& loader;
    std::vector<std::string> stack;  // the files being read, outermost first
    std::size_t files = 0;
    std::size_t bytes = 0;
};

void ReadInto(TDocumentPlan& plan, TIncludeContext& includes, const std::string& path, const std::string& text);

struct TReadState {
    TReadState(TDocumentPlan& p, TIncludeContext& i, const std::string& path)
        : plan(p), includes(i), file(std::make_shared<const std::string>(path)) {}

    TDocumentPlan& plan;
    TIncludeContext& includes;
    std::shared_ptr<const std::string> file;

    std::vector<TRawValue> literals;  // values read and not yet taken
    std::vector<std::size_t> arrayMarks;
    std::string stringText;           // the parts of a string read so far

    TQualifierPlans pendingQualifiers;  // for the next element declared
    TQualifierPlan qualifier;
    std::size_t qualifierMark = 0;
    int flavorBits = D::kFlavorNone;
    int scopeBits = D::kScopeNone;
    bool arrayFlag = false;

    TCIMValue::TCIMType type;  // of the feature or declaration being read
    std::string referenceClass;

    TQualifierDeclPlan decl;
    std::size_t declMark = 0;
    TClassPlan cls;
    TFeaturePlan feature;
    std::size_t featureMark = 0;
    TMethodPlan method;
    TFeaturePlan param;
    std::size_t paramMark = 0;
    TInstancePlan instance;
    TPropertyValuePlan value;
    std::size_t valueMark = 0;
    std::string aliasName;
    std::string pragmaName;
    std::vector<std::string> pragmaParameters;
    TSourceLocation pragmaAt;

    template <class Input>
    TSourceLocation At(const Input& in) const {
        TSourceLocation at;
        at.file = file;
        at.line = static_cast<int>(in.iterator().line);
        at.column = static_cast<int>(in.iterator().column);
        return at;
    }

    // The value read since `mark`, or no value when none was.
    TRawValue TakeValue(std::size_t mark) {
        TRawValue value;
        if (literals.size() > mark) value = std::move(literals.back());
        literals.resize(mark);
        return value;
    }

    TQualifierPlans TakeQualifiers() {
        TQualifierPlans taken;
        taken.swap(pendingQualifiers);
        return taken;
    }
};

template <class Input>
void PushLiteral(TReadState& state, const Input& in, TRawValue::EKind kind, std::string text) {
    TRawValue value;
    value.kind = kind;
    value.text = std::move(text);
    value.at = state.At(in);
    state.literals.push_back(std::move(value));
}

// A property or parameter whose name `in` holds: it takes the qualifiers
// read before it, and its default value is what is read after `mark`.
template <class Input>
TFeaturePlan StartFeature(TReadState& state, const Input& in, T type, const std::string& referenceClass,
                          std::size_t& mark) {
    TFeaturePlan feature;
    feature.at = state.At(in);
    feature.name = in.string();
    feature.type = type;
    feature.referenceClass = referenceClass;
    feature.qualifiers = state.TakeQualifiers();
    mark = state.literals.size();
    state.arrayFlag = false;
    return feature;
}

// Appends the characters of [begin, end) (what stands between the quotes
// of a string or char16 literal) to `out`, with their escapes replaced.
// Fails at `at` on the character 0, which no CIM text may hold.
void AppendUnescaped(const char* begin, const char* end, std::string& out, const TSourceLocation& at) {
    const std::size_t start = out.size();
    for (const char* c = begin; c < end; ++c) {
        const char* plain = std::find(c, end, '\\');
        out.append(c, plain);
        if (plain == end) break;
        c = plain + 1;
        switch (*c) {
            case 'b': out += '\b'; break;
            case 't': out += '\t'; break;
            case 'n': out += '\n'; break;
            case 'f': out += '\f'; break;
            case 'r': out += '\r'; break;
            case 'x':
            case 'X': {
                unsigned int code = 0;
                for (int digits = 0; digits < 4 && c + 1 < end && std::isxdigit(static_cast<unsigned char>(c[1]));
                     ++digits) {
                    const char hex = *++c;
                    code = code * 16 + static_cast<unsigned int>(hex <= '9' ? hex - '0' : (hex | 0x20) - 'a' + 10);
                }
                AppendUtf8(out, code);
                break;
            }
            default: out += *c; break;
        }
    }
    if (out.find('\0', start) != std::string::npos) FailAt(at, "a string may not hold the character 0");
}

// Integer literal text as decimal (or 0x-hex) text with its sign: octal
// and binary literals are turned into decimal here.
std::string NormalizeInteger(const std::string& text, const TSourceLocation& at) {
    std::size_t i = 0;
    std::string sign;
    if (text[0] == '+' || text[0] == '-') sign = text.substr(i++, 1);
    std::string body = text.substr(i);
    int base = 10;
    if (body.size() > 1 && (body.back() == 'b' || body.back() == 'B')) {
        base = 2;
        body.pop_back();
    } else if (body.size() > 1 && body[0] == '0' && body[1] != 'x' && body[1] != 'X') {
        base = 8;
    }
    if (base == 10) return sign + body;
    unsigned long long value = 0;
    for (char digit : body) {
        const unsigned long long next = value * static_cast<unsigned long long>(base) + static_cast<unsigned>(digit - '0');
        if (value > (~0ULL) / static_cast<unsigned long long>(base) || next < value) {
            FailAt(at, "the integer " + text + " does not fit in 64 bits");
        }
        value = next;
    }
    return sign + std::to_string(value);
}

T TypeOfName(const std::string& name) {
    T::ECIMType type = T::kNone;
    T::FromName(name, type);
    return type;
}

std::string FirstIdentifier(const std::string& text) {
    std::size_t end = 0;
    while (end < text.size() && !std::isspace(static_cast<unsigned char>(text[end])) && text[end] != '/') ++end;
    return text.substr(0, end);
}

void LogNote(const std::string& text) {
    TRootObject::GetCoreLogger()->Log(ICoreLogger::kNotice, text);
}

// --- actions ---------------------------------------------------------------

using namespace grammar;

template <class Rule>
struct TAction : pegtl::nothing<Rule> {};

#define ZENTA_MOF_ACTION(rule) \
    template <>                \
    struct TAction<rule> {     \
        template <class Input> \
        static void apply(const Input& in, TReadState& state)

ZENTA_MOF_ACTION(string_begin) { (void)in; state.stringText.clear(); }
};
ZENTA_MOF_ACTION(string_part) { AppendUnescaped(in.begin() + 1, in.end() - 1, state.stringText, state.At(in)); }
};
ZENTA_MOF_ACTION(string_value) { PushLiteral(state, in, TRawValue::kString, std::move(state.stringText)); }
};
ZENTA_MOF_ACTION(char_value) {
    std::string character;
    AppendUnescaped(in.begin() + 1, in.end() - 1, character, state.At(in));
    PushLiteral(state, in, TRawValue::kChar, std::move(character));
}
};
ZENTA_MOF_ACTION(real_number) { PushLiteral(state, in, TRawValue::kReal, in.string()); }
};
ZENTA_MOF_ACTION(integer_number) {
    PushLiteral(state, in, TRawValue::kInteger, NormalizeInteger(in.string(), state.At(in)));
}
};
ZENTA_MOF_ACTION(true_value) { PushLiteral(state, in, TRawValue::kBoolean, "TRUE"); }
};
ZENTA_MOF_ACTION(false_value) { PushLiteral(state, in, TRawValue::kBoolean, "FALSE"); }
};
ZENTA_MOF_ACTION(null_value) { PushLiteral(state, in, TRawValue::kNull, std::string()); }
};
ZENTA_MOF_ACTION(alias_value) { PushLiteral(state, in, TRawValue::kAlias, in.string().substr(1)); }
};
ZENTA_MOF_ACTION(array_open) {
    (void)in;
    state.arrayMarks.push_back(state.literals.size());
}
};
ZENTA_MOF_ACTION(array_value) {
    TRawValue array;
    array.kind = TRawValue::kArray;
    array.at = state.At(in);
    const std::size_t mark = state.arrayMarks.back();
    state.arrayMarks.pop_back();
    array.elements.assign(std::make_move_iterator(state.literals.begin() + static_cast<std::ptrdiff_t>(mark)),
                          std::make_move_iterator(state.literals.end()));
    state.literals.resize(mark);
    state.literals.push_back(std::move(array));
}
};

ZENTA_MOF_ACTION(array_spec) {
    (void)in;
    state.arrayFlag = true;
}
};
ZENTA_MOF_ACTION(data_type) {
    state.type = TypeOfName(in.string());
    state.referenceClass.clear();
}
};
ZENTA_MOF_ACTION(ref_type) {
    state.type = T::kReference;
    state.referenceClass = FirstIdentifier(in.string());
}
};

// Flavors and scopes.
#define ZENTA_MOF_BIT(rule, field, bit) \
    ZENTA_MOF_ACTION(rule) {            \
        (void)in;                       \
        state.field |= bit;             \
    }                                   \
    };
ZENTA_MOF_BIT(f_enable_override, flavorBits, D::kEnableOverride)
ZENTA_MOF_BIT(f_disable_override, flavorBits, D::kDisableOverride)
ZENTA_MOF_BIT(f_restricted, flavorBits, D::kRestricted)
ZENTA_MOF_BIT(f_to_subclass, flavorBits, D::kToSubclass)
ZENTA_MOF_BIT(f_translatable, flavorBits, D::kTranslatable)
ZENTA_MOF_BIT(s_class, scopeBits, D::kScopeClass)
ZENTA_MOF_BIT(s_association, scopeBits, D::kScopeAssociation)
ZENTA_MOF_BIT(s_indication, scopeBits, D::kScopeIndication)
ZENTA_MOF_BIT(s_property, scopeBits, D::kScopeProperty)
ZENTA_MOF_BIT(s_reference, scopeBits, D::kScopeReference)
ZENTA_MOF_BIT(s_method, scopeBits, D::kScopeMethod)
ZENTA_MOF_BIT(s_parameter, scopeBits, D::kScopeParameter)
ZENTA_MOF_BIT(s_any, scopeBits, D::kScopeAny)
#undef ZENTA_MOF_BIT

// Qualifiers: each one read goes to the pending list, which the next
// element declared takes.
ZENTA_MOF_ACTION(qualifier_name) {
    state.qualifier = TQualifierPlan();
    state.qualifier.at = state.At(in);
    state.qualifier.name = in.string();
    state.qualifierMark = state.literals.size();
    state.flavorBits = D::kFlavorNone;
}
};
ZENTA_MOF_ACTION(qualifier) {
    (void)in;
    state.qualifier.value = state.TakeValue(state.qualifierMark);
    state.qualifier.flavor = static_cast<D::EFlavor>(state.flavorBits);
    state.pendingQualifiers.push_back(std::move(state.qualifier));
}
};

// Qualifier declarations.
ZENTA_MOF_ACTION(decl_name) {
    state.decl = TQualifierDeclPlan();
    state.decl.at = state.At(in);
    state.decl.name = in.string();
    state.declMark = state.literals.size();
    state.arrayFlag = false;
    state.flavorBits = D::kFlavorNone;
    state.scopeBits = D::kScopeNone;
}
};
ZENTA_MOF_ACTION(qualifier_decl) {
    (void)in;
    state.decl.type = state.type;
    state.decl.isArray = state.arrayFlag;
    state.decl.defaultValue = state.TakeValue(state.declMark);
    if (state.decl.defaultValue.kind == TRawValue::kAbsent) state.decl.defaultValue.at = state.decl.at;
    state.decl.scope = static_cast<D::EScope>(state.scopeBits);
    state.decl.flavor = static_cast<D::EFlavor>(state.flavorBits);
    state.plan.qualifierDecls.push_back(std::move(state.decl));
}
};

// Classes.
ZENTA_MOF_ACTION(class_name) {
    state.cls = TClassPlan();
    state.cls.at = state.At(in);
    state.cls.name = in.string();
    state.cls.qualifiers = state.TakeQualifiers();
}
};
ZENTA_MOF_ACTION(super_name) { state.cls.superClass = in.string(); }
};
ZENTA_MOF_ACTION(class_decl) {
    (void)in;
    state.plan.classes.push_back(std::move(state.cls));
}
};
ZENTA_MOF_ACTION(feature_name) { state.feature = StartFeature(state, in, state.type, state.referenceClass, state.featureMark); }
};
ZENTA_MOF_ACTION(property_rest) {
    (void)in;
    state.feature.isArray = state.arrayFlag;
    state.feature.defaultValue = state.TakeValue(state.featureMark);
    if (state.feature.defaultValue.kind == TRawValue::kAbsent) state.feature.defaultValue.at = state.feature.at;
    state.cls.properties.push_back(std::move(state.feature));
}
};
ZENTA_MOF_ACTION(method_open) {
    (void)in;
    state.method = TMethodPlan();
    state.method.at = state.feature.at;
    state.method.name = state.feature.name;
    state.method.returnType = state.feature.type;
    state.method.qualifiers = std::move(state.feature.qualifiers);
    if (state.feature.type == T::kReference) FailAt(state.feature.at, "a method cannot return a reference");
}
};
ZENTA_MOF_ACTION(method_rest) {
    (void)in;
    state.cls.methods.push_back(std::move(state.method));
}
};
ZENTA_MOF_ACTION(parameter_name) {
    state.param = StartFeature(state, in, state.type, state.referenceClass, state.paramMark);
}
};
ZENTA_MOF_ACTION(parameter) {
    (void)in;
    state.param.isArray = state.arrayFlag;
    // A parameter's default value has no place in the namespace: it is
    // read and dropped.
    state.TakeValue(state.paramMark);
    state.method.parameters.push_back(std::move(state.param));
}
};

// Instances.
ZENTA_MOF_ACTION(instance_class) {
    state.instance = TInstancePlan();
    state.instance.at = state.At(in);
    state.instance.className = in.string();
    state.pendingQualifiers.clear();
    state.aliasName.clear();
}
};
ZENTA_MOF_ACTION(alias_name) { state.aliasName = in.string(); }
};
ZENTA_MOF_ACTION(value_name) {
    state.value = TPropertyValuePlan();
    state.value.at = state.At(in);
    state.value.name = in.string();
    state.pendingQualifiers.clear();
    state.valueMark = state.literals.size();
}
};
ZENTA_MOF_ACTION(value_initializer) {
    (void)in;
    state.value.value = state.TakeValue(state.valueMark);
    state.instance.properties.push_back(std::move(state.value));
}
};
ZENTA_MOF_ACTION(instance_decl) {
    (void)in;
    state.instance.alias = state.aliasName;
    state.plan.instances.push_back(std::move(state.instance));
}
};

// Compiler directives.
ZENTA_MOF_ACTION(pragma_name) {
    state.pragmaAt = state.At(in);
    state.pragmaName = in.string();
    state.pragmaParameters.clear();
    state.stringText.clear();
}
};
ZENTA_MOF_ACTION(pragma_parameter) {
    if (!state.literals.empty() && state.literals.back().kind == TRawValue::kString) {
        state.pragmaParameters.push_back(state.literals.back().text);
        state.literals.pop_back();
    } else {
        state.pragmaParameters.push_back(in.string());
    }
}
};
ZENTA_MOF_ACTION(pragma);
};

#undef ZENTA_MOF_ACTION

// --- includes ----------------------------------------------------------------

namespace fs = std::filesystem;

std::string IncludedPath(const std::string& including, const std::string& name) {
    const fs::path named(name);
    if (named.is_absolute()) return named.lexically_normal().string();
    return (fs::path(including).parent_path() / named).lexically_normal().string();
}

void Include(TReadState& state, const std::string& name) {
    TIncludeContext& includes = state.includes;
    const TDocumentLimits& limits = includes.limits;
    if (name.empty()) FailAt(state.pragmaAt, "#pragma include names no file");
    const std::string path = IncludedPath(*state.file, name);
    if (std::find(includes.stack.begin(), includes.stack.end(), path) != includes.stack.end()) {
        FailAt(state.pragmaAt, "#pragma include (\"" + name + "\") includes " + path + ", which is being read already");
    }
    if (static_cast<int>(includes.stack.size()) > limits.maxIncludeDepth) {
        FailAt(state.pragmaAt, "includes are nested more than " + std::to_string(limits.maxIncludeDepth) + " deep");
    }
    if (++includes.files > limits.maxFiles) {
        FailAt(state.pragmaAt, "the document includes more than " + std::to_string(limits.maxFiles) + " files");
    }
    std::string text;
    const std::size_t budget = limits.maxTotalBytes - std::min(includes.bytes, limits.maxTotalBytes);
    try {
        if (!includes.loader(path, std::min(limits.maxFileBytes, budget), text)) {
            FailAt(state.pragmaAt, "the included file " + path + " does not exist");
        }
    } catch (const TZENTAException& e) {
        if (e.GetStatusCode() != TZENTAStatusCode::kInvalidDocument) throw;
        FailAt(state.pragmaAt, "#pragma include: " + e.GetMessage());
    }
    includes.bytes += text.size();
    ReadInto(state.plan, includes, path, text);
}

template <class Input>
void TAction<pragma>::apply(const Input& in, TReadState& state) {
    (void)in;
    if (SameCIMName(state.pragmaName, "include")) {
        Include(state, state.pragmaParameters.empty() ? std::string() : state.pragmaParameters.front());
        return;
    }
    // Locale, namespace and the pragmas of other compilers change nothing
    // here: every class goes to the one namespace being filled.
    LogNote(state.pragmaAt.ToString() + ": #pragma " + state.pragmaName + " is ignored");
}

void ReadInto(TDocumentPlan& plan, TIncludeContext& includes, const std::string& path, const std::string& text) {
    includes.stack.push_back(path);
    TReadState state(plan, includes, path);
    pegtl::memory_input<pegtl::tracking_mode::eager, pegtl::eol::lf_crlf> in(text.data(), text.size(), path);
    try {
        pegtl::parse<grammar::document, TAction, TControl>(in, state);
    } catch (const pegtl::parse_error& e) {
        const pegtl::position& p = e.positions().front();
        TSourceLocation at;
        at.file = state.file;
        at.line = static_cast<int>(p.line);
        at.column = static_cast<int>(p.column);
        FailAt(at, std::string(e.message()));
    }
    includes.stack.pop_back();
}

}  // namespace

TDocumentPlan ReadMOFPlan(const std::string& path, const std::string& text, const TDocumentLimits& limits,
                          const TMOFFileLoader& loader) {
    TDocumentPlan plan;
    plan.path = path;
    TIncludeContext includes{limits, loader, {}, 0, text.size()};
    ReadInto(plan, includes, path, text);
    return plan;
}

}  // namespace NVURZENTA20
