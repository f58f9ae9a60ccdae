// A minimal in-memory broker for driving CMPI providers in tests.
//
// It implements just enough of the encapsulated objects (strings, arrays,
// date-times, object paths, instances, args, enumerations, results,
// contexts) for the sample providers, and records every broker up-call
// (CMPIBrokerFT) and log call with its arguments, so that a test can see
// exactly which slot a macro reached and in which order it passed things.
//
// Objects live until the FakeBroker is destroyed; release() only counts.

#ifndef CMPI_HEADERS_TEST_FAKE_BROKER_HPP
#define CMPI_HEADERS_TEST_FAKE_BROKER_HPP

#include "cmpidt.h"
#include "cmpift.h"

#include <deque>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace fake {

using Fields = std::vector<std::pair<std::string, CMPIData>>;

struct FString
{
    CMPIString cmpi;
    std::string text;
    int releases = 0;
};

struct FDateTime
{
    CMPIDateTime cmpi;
    std::string text;
    CMPIUint64 micros = 0;
    bool interval = false;
};

struct FArray
{
    CMPIArray cmpi;
    CMPIType type = CMPI_null;
    std::vector<CMPIData> elements;
};

struct FObjectPath
{
    CMPIObjectPath cmpi;
    std::string ns, cls, host;
    Fields keys;
    int releases = 0;
};

struct FInstance
{
    CMPIInstance cmpi;
    FObjectPath *path = nullptr;
    Fields props;
};

struct FArgs
{
    CMPIArgs cmpi;
    Fields args;
};

struct FEnumeration
{
    CMPIEnumeration cmpi;
    std::vector<CMPIData> items;
    std::size_t next = 0;
    int releases = 0;
};

struct FResult
{
    CMPIResult cmpi;
    std::vector<CMPIData> items;
    int doneCalls = 0;
};

struct FContext
{
    CMPIContext cmpi;
    Fields entries;
};

class FakeBroker
{
public:
    FakeBroker();
    ~FakeBroker();
    FakeBroker(const FakeBroker &) = delete;
    FakeBroker &operator=(const FakeBroker &) = delete;

    const CMPIBroker *broker() const { return &broker_; }

    // Factories for the test side; the provider side uses the function
    // tables, which end up in the same places.
    CMPIString *string(const std::string &text);
    CMPIObjectPath *path(const std::string &ns, const std::string &cls);
    CMPIInstance *instance(CMPIObjectPath *path);
    CMPIArgs *args();
    CMPIArray *array(CMPIType type, std::size_t size);
    CMPIEnumeration *enumeration(std::vector<CMPIData> items);
    FResult *result();
    CMPIContext *context(const std::string &initNamespace);

    // Every up-call and log call the provider made, in order.
    std::vector<std::string> calls;

    // The instances passed to deliverIndication().
    std::vector<const CMPIInstance *> indications;

    std::deque<FString> strings;
    std::deque<FDateTime> dateTimes;
    std::deque<FArray> arrays;
    std::deque<FObjectPath> paths;
    std::deque<FInstance> instances;
    std::deque<FArgs> argLists;
    std::deque<FEnumeration> enumerations;
    std::deque<FResult> results;
    std::deque<FContext> contexts;

    // Stores a value passed through a CMPIValue pointer the way brokers do:
    // CMPI_chars becomes a CMPI_string object, anything else is copied.
    CMPIData store(const CMPIValue *value, CMPIType type);

    static FakeBroker &current();
    static std::string text(const CMPIString *s);
    static std::string render(const CMPIObjectPath *op);

private:
    CMPIBroker broker_;
};

// Helpers for reading what providers returned.
FObjectPath *asPath(const CMPIObjectPath *op);
FInstance *asInstance(const CMPIInstance *inst);
FArgs *asArgs(const CMPIArgs *args);
FArray *asArray(const CMPIArray *array);
FDateTime *asDateTime(const CMPIDateTime *dt);
const CMPIData *find(const Fields &fields, const std::string &name);

} // namespace fake

#endif
