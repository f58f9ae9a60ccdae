// A host enumeration callback that appends every element it is given to a
// vector and goes on.
#ifndef ZENTA_OPS_COLLECT_H
#define ZENTA_OPS_COLLECT_H

#include <vector>

#include <boost/shared_ptr.hpp>

#include "ICIMClass.h"
#include "ICIMNamespace.h"

template <class X>
struct TAppend {
    std::vector<boost::shared_ptr<X> >* target;
    bool operator()(boost::shared_ptr<X> element) const {
        target->push_back(element);
        return true;
    }
};

template <class X>
TAppend<X> AppendTo(std::vector<boost::shared_ptr<X> >& target) {
    return TAppend<X>{&target};
}

// The root classes of `ns`, then (with `deep`) every class below them.
inline std::vector<boost::shared_ptr<NVURZENTA20::ICIMClass> > ClassesOf(NVURZENTA20::ICIMNamespace& ns, bool deep) {
    std::vector<boost::shared_ptr<NVURZENTA20::ICIMClass> > classes;
    ns.EnumerateRootClasses(AppendTo(classes), NVURZENTA20::TCIMContext());
    const std::size_t roots = classes.size();
    for (std::size_t i = 0; deep && i < roots; ++i) {
        classes[i]->EnumerateSubClasses(AppendTo(classes), true, NVURZENTA20::TCIMContext());
    }
    return classes;
}

#endif
