// A host enumeration callback that appends every element it is given to a
// vector and goes on.
#ifndef ZENTA_OPS_COLLECT_H
#define ZENTA_OPS_COLLECT_H

#include <vector>

#include <boost/shared_ptr.hpp>

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

#endif
