#include "TInmemLayout.h"

#include "TInmemSupport.h"

namespace NVURZENTA20 {

TInstanceLayout::TInstanceLayout(const std::vector<boost::shared_ptr<ICIMPropertyDecl> >& declarations)
    : decls(declarations), generation(SchemaGeneration()) {
    slots.reserve(decls.size());
    for (const auto& decl : decls) {
        TSlot slot = {decl, decl->GetName(), decl->GetType(), decl->IsArray(), decl->GetDefaultValue()};
        if (decl->IsKey()) keys.push_back(slots.size());
        slots.push_back(std::move(slot));
    }
}

// Callers mostly spell names as they were declared: those are found by a
// plain comparison before any case is folded.
std::size_t TInstanceLayout::Find(const std::string& name) const {
    const std::size_t length = name.size();
    for (std::size_t i = 0; i < slots.size(); ++i) {
        const std::string& slot = slots[i].name;
        if (slot.size() == length && (length == 0 || slot[0] == name[0]) && slot == name) return i;
    }
    for (std::size_t i = 0; i < slots.size(); ++i) {
        if (SameName(slots[i].name, name)) return i;
    }
    return slots.size();
}

}  // namespace NVURZENTA20
