// Checks a document plan against a namespace and defines it there: the
// qualifier declarations and classes of a class document, or the
// instances of a registration document. Whatever the document's format,
// the same rules hold: values fit their declared types, qualifiers are
// declared and may stand where they stand, members are declared once,
// superclasses and reference classes exist, and a class already in the
// namespace may be defined again only identically (and never by another
// module). A document that breaks a rule changes nothing.
#ifndef ZENTA_HOST_CORE_TDOCUMENTDEFINER_H
#define ZENTA_HOST_CORE_TDOCUMENTDEFINER_H

#include <vector>

#include <boost/shared_ptr.hpp>

#include "TDocumentMemory.h"
#include "TDocumentPlan.h"
#include "ZentaTypes.h"

namespace NVURZENTA20 {

// Defines the document's qualifier declarations and classes in `ns` and
// returns its classes in document order (a class defined again
// identically is the one already there).
std::vector<boost::shared_ptr<ICIMClass> > DefineClasses(const boost::shared_ptr<ICIMNamespace>& ns,
                                                         const TDocumentPlan& plan, EDocumentRole role);

// Makes the document's instances (of classes `ns` knows) in document
// order, without filing them anywhere.
std::vector<boost::shared_ptr<ICIMInstance> > MakeInstances(const boost::shared_ptr<ICIMNamespace>& ns,
                                                            const TDocumentPlan& plan);

}  // namespace NVURZENTA20

#endif
