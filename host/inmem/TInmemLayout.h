// What every instance of a class has in common: the class's effective
// property declarations in order, their names, types and defaults, and
// which of them are keys. A class builds its layout once and hands the same
// immutable object to all its instances, which keep only their values.
#ifndef ZENTA_HOST_INMEM_TINMEMLAYOUT_H
#define ZENTA_HOST_INMEM_TINMEMLAYOUT_H

#include <cstddef>
#include <string>
#include <vector>

#include <boost/shared_ptr.hpp>

#include "ICIMPropertyDecl.h"
#include "TCIMValue.h"

namespace NVURZENTA20 {

struct TInstanceLayout {
    struct TSlot {
        boost::shared_ptr<ICIMPropertyDecl> decl;
        std::string name;
        TCIMValue::TCIMType type;
        bool isArray;
        TCIMValue defaultValue;
    };

    // Reads each declaration once.
    explicit TInstanceLayout(const std::vector<boost::shared_ptr<ICIMPropertyDecl> >& decls);

    // The slot of the property `name` (ASCII case ignored), or Size().
    std::size_t Find(const std::string& name) const;
    std::size_t Size() const { return slots.size(); }

    std::vector<boost::shared_ptr<ICIMPropertyDecl> > decls;
    std::vector<TSlot> slots;       // one per declaration, in the same order
    std::vector<std::size_t> keys;  // the slots of the key properties, in order
    unsigned long long generation;  // SchemaGeneration() when it was built
};

typedef boost::shared_ptr<const TInstanceLayout> TLayoutPtr;

// How an instance asks its class for the layout. The instance hands this
// function object to the class's EnumeratePropertyDecls, through whatever
// wraps the class: a repository class recognises it and answers with its
// own layout in one step; any other class visits its declarations one by
// one, and they are collected into a layout of the instance's own.
class TLayoutRequest {
public:
    TLayoutRequest(std::vector<boost::shared_ptr<ICIMPropertyDecl> >& collected, TLayoutPtr& answer)
        : fCollected(&collected), fAnswer(&answer) {}

    bool operator()(boost::shared_ptr<ICIMPropertyDecl> decl) const {
        fCollected->push_back(decl);
        return true;
    }
    void Answer(const TLayoutPtr& layout) const { *fAnswer = layout; }

private:
    std::vector<boost::shared_ptr<ICIMPropertyDecl> >* fCollected;
    TLayoutPtr* fAnswer;
};

}  // namespace NVURZENTA20

#endif
