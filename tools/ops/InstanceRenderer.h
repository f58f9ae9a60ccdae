// Turns host instances into the views answer writers format, without
// keeping anything per instance: what depends only on the class (its key
// names, which properties the request asks for) is worked out once per
// class and request, and the values of one instance live in buffers that
// the next instance reuses.
#ifndef ZENTA_OPS_INSTANCERENDERER_H
#define ZENTA_OPS_INSTANCERENDERER_H

#include <memory>
#include <string>
#include <vector>

#include <boost/shared_ptr.hpp>

#include "Answer.h"
#include "ICIMClass.h"
#include "ICIMInstance.h"

// Which properties an answer shows.
struct TPropertySelection {
    bool hasPropertyList = false;
    std::vector<std::string> propertyList;
    // Without deep inheritance only the properties the requested class
    // itself declares (its own and inherited ones) are shown.
    bool deep = true;
    boost::shared_ptr<NVURZENTA20::ICIMClass> requestedClass;
    bool includeQualifiers = false;
    bool includeClassOrigin = false;
};

class TInstanceRenderer {
public:
    TInstanceRenderer(IAnswerWriter& writer, const TPropertySelection& selection);
    ~TInstanceRenderer();

    void WriteInstance(NVURZENTA20::ICIMInstance& instance);
    void WritePath(NVURZENTA20::ICIMInstance& instance);
    // A host enumeration callback that writes each instance (or, with
    // `pathsOnly`, its path) and goes on.
    NVURZENTA20::TInstanceCallback Writer(bool pathsOnly);

private:
    struct TShape;

    TShape& ShapeOf(NVURZENTA20::ICIMInstance& instance);
    TShape& BuildShape(const boost::shared_ptr<NVURZENTA20::ICIMClass>& cls);
    void ReadValues(NVURZENTA20::ICIMInstance& instance, TShape& shape);
    // In place, from an in-memory instance; false for any other kind.
    bool ReadValuesInPlace(NVURZENTA20::ICIMInstance& instance, TShape& shape);
    void ReadKeys(NVURZENTA20::ICIMInstance& instance, TShape& shape);
    void KeysFromValues(const TShape& shape);
    void BuildPath(const TShape& shape);

    IAnswerWriter& fWriter;
    const bool fWritesPathText;
    TPropertySelection fSelection;
    std::vector<std::unique_ptr<TShape> > fShapes;  // one per class met
    TShape* fLastShape = nullptr;

    // Buffers of the instance being written.
    std::vector<const NVURZENTA20::TCIMValue*> fValues;  // by slot; null: the instance has none
    std::vector<NVURZENTA20::TCIMValue> fCopies;         // the values of instances read through the interface
    TNamedValues fKeys;
    std::string fPathText;
    std::vector<TPropertyView> fProperties;
};

#endif
