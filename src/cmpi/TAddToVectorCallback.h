// Visitor for host enumerations that collects every element it is shown.
#ifndef ZENTA_CMPI_TADDTOVECTORCALLBACK_H
#define ZENTA_CMPI_TADDTOVECTORCALLBACK_H

#include <vector>

#include <boost/shared_ptr.hpp>

template <class X>
class TAddToVectorCallback {
public:
    explicit TAddToVectorCallback(std::vector<boost::shared_ptr<X> >& target) : fTarget(&target) {}

    bool operator()(boost::shared_ptr<X> element) const
    {
        fTarget->push_back(element);
        return true;
    }

private:
    std::vector<boost::shared_ptr<X> >* fTarget;
};

#endif
