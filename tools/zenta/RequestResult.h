// What a request answers, copied out of the host objects so that it stays
// valid after the CMPI records behind them have been released.
#ifndef ZENTA_TOOL_REQUESTRESULT_H
#define ZENTA_TOOL_REQUESTRESULT_H

#include <string>
#include <utility>
#include <vector>

#include "TCIMValue.h"

typedef std::vector<std::pair<std::string, NVURZENTA20::TCIMValue> > TNamedValues;

struct TProviderRecord {
    std::string name;
    std::string module;
    std::string description;
    std::vector<std::string> classes;  // the classes it offers (not abstract, not hidden)
};

struct TClassRecord {
    std::string name;
    std::string superClass;  // empty for a root class
    std::string provider;    // empty when no provider serves it
    bool isAbstract = false;
    bool isAssociation = false;
};

struct TInstanceRecord {
    std::string className;
    std::string path;
    TNamedValues properties;  // in declaration order
};

struct TMethodRecord {
    std::string path;
    std::string method;
    NVURZENTA20::TCIMValue returnValue;
    TNamedValues outParameters;  // by name
};

struct TRequestResult {
    enum EKind { kProviders, kClasses, kInstances, kInstance, kPaths, kMethod };

    EKind kind = kInstances;
    std::vector<TProviderRecord> providers;
    std::vector<TClassRecord> classes;
    std::vector<TInstanceRecord> instances;  // kInstance: exactly one
    std::vector<std::string> paths;
    TMethodRecord method;
};

#endif
