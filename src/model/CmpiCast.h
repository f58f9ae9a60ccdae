// Casts of host objects to the library's own classes (TCMPIInstance,
// TCMPIClass), which nothing derives from. An object of exactly that class
// is told by its type alone, without the search of a dynamic cast: every
// instance a provider makes is cast several times on its way. Anything
// else gets the dynamic cast's answer, an empty pointer included.
#ifndef ZENTA_MODEL_CMPICAST_H
#define ZENTA_MODEL_CMPICAST_H

#include <typeinfo>

#include <boost/pointer_cast.hpp>
#include <boost/shared_ptr.hpp>

template <class TTarget, class TSource>
boost::shared_ptr<TTarget> cmpiCast(const boost::shared_ptr<TSource>& object) {
    if (object && typeid(*object) == typeid(TTarget)) return boost::static_pointer_cast<TTarget>(object);
    return boost::dynamic_pointer_cast<TTarget>(object);
}

#endif
