// The host's CIM value: one of sixteen types, scalar or array, possibly a
// typed null. Conversions that do not fit the stored value throw
// TZENTAException instead of guessing.
//
// Every value takes sixteen bytes: scalars, strings of up to 13 bytes and
// date-times are kept in the value itself; longer strings, references and
// arrays in a payload that copies of the value share and nobody changes
// (writing to an array through its vector first takes a copy of its own).
#ifndef ZENTA_HOST_TCIMVALUE_H
#define ZENTA_HOST_TCIMVALUE_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "TCIMChar16.h"
#include "TCIMDateTime.h"
#include "ZentaTypes.h"

namespace NVURZENTA20 {

class TCIMReference;

class alignas(8) TCIMValue {
public:
    class TCIMType {
    public:
        // Any int may be carried (codes arrive from outside); only these name types.
        enum ECIMType : int {
            kNone = 0,
            kBoolean = 1,
            kUint8 = 2,
            kSint8 = 3,
            kUint16 = 4,
            kSint16 = 5,
            kUint32 = 6,
            kSint32 = 7,
            kUint64 = 8,
            kSint64 = 9,
            kReal32 = 10,
            kReal64 = 11,
            kChar16 = 12,
            kString = 13,
            kDateTime = 14,
            kReference = 15,
            kArrayFlag = 16
        };

        TCIMType(ECIMType type = kNone) : fType(type) {}
        operator ECIMType() const { return fType; }

        // The CIM name of the type ("uint32", "string", "reference", ...);
        // "" for kNone and for codes outside the sixteen types. The array
        // flag is ignored.
        std::string GetName() const;
        // Looks a CIM type name up (case-insensitively); false when it names
        // no type.
        static bool FromName(const std::string& name, ECIMType& type);

        // uint8 to sint64.
        bool IsInteger() const;
        // sint8, sint16, sint32 and sint64.
        bool IsSigned() const;
        // real32 and real64.
        bool IsReal() const;

    private:
        ECIMType fType;
    };

    TCIMValue();
    TCIMValue(bool value);
    TCIMValue(signed char value);
    TCIMValue(unsigned char value);
    TCIMValue(short value);
    TCIMValue(unsigned short value);
    TCIMValue(int value);
    TCIMValue(unsigned int value);
    TCIMValue(long long value);
    TCIMValue(unsigned long long value);
    TCIMValue(float value);
    TCIMValue(double value);
    TCIMValue(const char* value);
    TCIMValue(const std::string& value);
    TCIMValue(std::string&& value);
    TCIMValue(const TCIMChar16& value);
    TCIMValue(const TCIMDateTime& value);
    TCIMValue(const TCIMReference& value);
    TCIMValue(const TCIMValue& other);
    // A moved-from value is left unset.
    TCIMValue(TCIMValue&& other) noexcept;
    TCIMValue& operator=(const TCIMValue& other);
    TCIMValue& operator=(TCIMValue&& other) noexcept;
    ~TCIMValue();

    void Set(bool value);
    void Set(signed char value);
    void Set(unsigned char value);
    void Set(short value);
    void Set(unsigned short value);
    void Set(int value);
    void Set(unsigned int value);
    void Set(long long value);
    void Set(unsigned long long value);
    void Set(float value);
    void Set(double value);
    void Set(const char* value);
    void Set(const std::string& value);
    void Set(std::string&& value);
    void Set(const TCIMChar16& value);
    void Set(const TCIMDateTime& value);
    void Set(TCIMReference& value);
    void Set(const TCIMReference& value);
    // An array of `count` elements of `type`; every element must be of that
    // type (or a null), and `count` must not exceed the vector's size.
    // Throws kTypeMismatch for a foreign element and kInvalidArgument for a
    // count beyond the vector or a type that cannot form an array.
    void Set(TCIMType type, unsigned int count, const std::vector<TCIMValue>& elements);
    void Set(TCIMType type, unsigned int count, std::vector<TCIMValue>&& elements);
    // A null of `type`; a non-zero `count` makes it a null array.
    void SetNullValue(TCIMType::ECIMType type, unsigned int count);

    bool IsNull() const { return Has(kNullBit); }
    bool IsArray() const { return Has(kArrayBit); }
    TCIMType GetType() const { return TCIMType(static_cast<TCIMType::ECIMType>(fType)); }
    // The CIM text form: integers in decimal, reals in their shortest form
    // that reads back equal ("NaN", "INF", "-INF"), booleans TRUE/FALSE,
    // char16 as UTF-8, date-times in CIM form, references as their path,
    // arrays as their elements joined with ",", a null as "". `radix` is
    // accepted for compatibility and must be 10 (kInvalidArgument otherwise).
    std::string ToString(unsigned char radix = 10) const;

    // Conversions that do not fit throw TZENTAException: kNullValue for a
    // null, kTypeMismatch for another type (or an array read as a scalar),
    // kNotAnArray for a scalar read as an array. Booleans and integers read
    // as any integer width by C conversion; integers also read as reals.
    // Any value reads as std::string: its ToString form (an array's
    // elements joined with ",", so a one-element array reads as its
    // element).

    operator bool() const;
    operator signed char() const;
    operator unsigned char() const;
    operator short() const;
    operator unsigned short() const;
    operator int() const;
    operator unsigned int() const;
    operator long long() const;
    operator unsigned long long() const;
    operator float() const;
    operator double() const;
    operator std::string() const;
    operator TCIMChar16() const;
    operator TCIMDateTime() const;
    operator TCIMReference() const;
    operator std::vector<TCIMValue>&();
    operator const std::vector<TCIMValue>&() const;

    // The reference a reference value holds, without copying it; throws as
    // the conversion to TCIMReference does.
    const TCIMReference& GetReference() const;

    // What ToString(10) gives, appended to `out`: for writers that format
    // many values into one text, without a string per value.
    void AppendText(std::string& out) const;
    // The characters of a string scalar, in place (valid while the value
    // lives unchanged); an empty view for any other value.
    std::string_view GetStringView() const;

    // Same type, same array-ness, same nullness and equal contents.
    bool operator==(const TCIMValue& other) const;
    bool operator!=(const TCIMValue& other) const { return !(*this == other); }

private:
    struct TPayload;
    struct TTextPayload;
    struct TReferencePayload;
    struct TArrayPayload;

    // What the sixteen bytes hold besides the type.
    enum EFlag : unsigned char {
        kNullBit = 1,
        kArrayBit = 2,
        kInlineBit = 4,   // text kept in the value itself (short strings, date-times)
        kPayloadBit = 8,  // the first bytes point at a shared, immutable payload
    };
    // Short strings are kept in the value: up to this many bytes, their
    // length in the byte after them.
    static const std::size_t kInlineCapacity = 13;

    template <class TTarget>
    TTarget ReadInteger(const char* target) const;
    template <class TTarget>
    TTarget ReadReal(const char* target) const;
    void Reset(TCIMType::ECIMType type);
    void Release() noexcept;
    void SetInteger(TCIMType::ECIMType type, std::uint64_t bits);
    void SetReal(TCIMType::ECIMType type, double real);
    void SetText(TCIMType::ECIMType type, const char* text, std::size_t length);
    void SetPayload(TCIMType::ECIMType type, TPayload* payload);
    void SetArray(TCIMType type, unsigned int count, std::vector<TCIMValue>& elements);
    void RequireScalar(const char* target) const;
    void RequireType(TCIMType::ECIMType type, const char* target) const;
    [[noreturn]] void ThrowMismatch(const char* target) const;
    std::string Describe() const;
    bool SameContents(const TCIMValue& other) const;
    void Swap(TCIMValue& other) noexcept;

    bool Has(EFlag flag) const { return (fFlags & flag) != 0; }
    std::uint64_t Bits() const;
    double Real() const;
    TPayload* Payload() const;
    const TTextPayload& Text() const;
    const TReferencePayload& Reference() const;
    const TArrayPayload& Array() const;
    std::vector<TCIMValue>& OwnArray();
    const char* TextData() const;
    std::size_t TextLength() const;

    // Scalars, the inline text or the payload pointer, then the type and the
    // flags: sixteen bytes for every value, whatever its type.
    unsigned char fBytes[14];
    unsigned char fType;
    unsigned char fFlags;
};

}  // namespace NVURZENTA20

#endif
