#include "InstanceRenderer.h"

#include "ClassContent.h"
#include "ICIMProperty.h"
#include "ICIMPropertyDecl.h"
#include "TCIMReference.h"
#include "TInmemInstance.h"
#include "TZENTAException.h"

using namespace NVURZENTA20;

struct TInstanceRenderer::TShape {
    struct TSlot {
        std::string name;
        boost::shared_ptr<ICIMPropertyDecl> decl;
        bool selected;
    };

    boost::shared_ptr<ICIMClass> cls;  // keeps the class, and so the address the shape is found by
    std::string className;
    std::vector<TSlot> slots;         // in declaration order
    std::vector<std::size_t> keySlots;  // in the class's key order
    // How the properties of in-memory instances of the class map to the
    // slots, and the address of their first name, which tells instances of
    // the same layout.
    const std::string* layoutNames = nullptr;
    std::vector<std::size_t> slotOfIndex;

    std::size_t Find(const std::string& name) const {
        for (std::size_t i = 0; i < slots.size(); ++i) {
            if (SameName(slots[i].name, name)) return i;
        }
        return slots.size();
    }
};

TInstanceRenderer::TInstanceRenderer(IAnswerWriter& writer, const TPropertySelection& selection)
    : fWriter(writer), fWritesPathText(writer.ReadsPathText()), fSelection(selection) {}

TInstanceRenderer::~TInstanceRenderer() {}

TInstanceRenderer::TShape& TInstanceRenderer::BuildShape(const boost::shared_ptr<ICIMClass>& cls) {
    std::unique_ptr<TShape> shape(new TShape);
    shape->cls = cls;
    shape->className = cls->GetName(TCIMContext());
    cls->EnumeratePropertyDecls(
        [&](boost::shared_ptr<ICIMPropertyDecl> decl) {
            const std::string name = decl->GetName();
            bool selected = !fSelection.hasPropertyList || ContainsName(fSelection.propertyList, name);
            if (selected && !fSelection.deep && fSelection.requestedClass) {
                selected = static_cast<bool>(fSelection.requestedClass->GetPropertyDecl(name, TCIMContext()));
            }
            shape->slots.push_back(TShape::TSlot{name, decl, selected});
            return true;
        },
        TCIMContext());
    cls->EnumerateKeyNames(
        [&](const std::string* key) {
            if (key == nullptr) return true;
            const std::size_t slot = shape->Find(*key);
            if (slot == shape->slots.size()) {
                throw TZENTAException(TZENTAStatusCode::kInvalidProperty,
                                      "class " + shape->className + " has no key property " + *key);
            }
            shape->keySlots.push_back(slot);
            return true;
        },
        TCIMContext());
    TShape& made = *shape;
    fShapes.push_back(std::move(shape));
    return made;
}

TInstanceRenderer::TShape& TInstanceRenderer::ShapeOf(ICIMInstance& instance) {
    const boost::shared_ptr<ICIMClass> cls = instance.GetClass(TCIMContext());
    if (!cls) throw TZENTAException(TZENTAStatusCode::kInvalidClass, "an instance without a class");
    if (fLastShape != nullptr && fLastShape->cls.get() == cls.get()) return *fLastShape;
    // The CMPI namespace hands out a class object of its own with each
    // instance of an enumeration: shapes are found by the class's name, or
    // there would be one per instance, each searched for the next.
    const std::string name = cls->GetName(TCIMContext());
    if (fLastShape != nullptr && fLastShape->className == name) return *fLastShape;
    for (auto& shape : fShapes) {
        if (shape->className == name) return *(fLastShape = shape.get());
    }
    fLastShape = &BuildShape(cls);
    return *fLastShape;
}

bool TInstanceRenderer::ReadValuesInPlace(ICIMInstance& instance, TShape& shape) {
    const TInmemInstance* inmem = dynamic_cast<const TInmemInstance*>(&instance);
    if (inmem == nullptr) return false;
    const std::size_t count = inmem->GetPropertyCount();
    const std::string* names = count == 0 ? nullptr : &inmem->GetPropertyName(0);
    if (names != shape.layoutNames || shape.slotOfIndex.size() != count) {
        shape.slotOfIndex.resize(count);
        for (std::size_t i = 0; i < count; ++i) shape.slotOfIndex[i] = shape.Find(inmem->GetPropertyName(i));
        shape.layoutNames = names;
    }
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t slot = shape.slotOfIndex[i];
        if (slot < fValues.size()) fValues[slot] = &inmem->GetPropertyValue(i);
    }
    return true;
}

void TInstanceRenderer::ReadValues(ICIMInstance& instance, TShape& shape) {
    const std::size_t count = shape.slots.size();
    fValues.assign(count, nullptr);
    if (ReadValuesInPlace(instance, shape)) return;
    fCopies.resize(count);
    std::size_t next = 0;
    instance.EnumerateProperties(
        [&](boost::shared_ptr<ICIMProperty> property) {
            const std::string name = property->GetName();
            // Instances list their properties in declaration order, so the
            // expected slot almost always matches.
            std::size_t slot = next < count && shape.slots[next].name == name ? next : shape.Find(name);
            if (slot < count) {
                fCopies[slot] = property->GetValue();
                fValues[slot] = &fCopies[slot];
                next = slot + 1;
            }
            return true;
        },
        TCIMContext());
}

void TInstanceRenderer::ReadKeys(ICIMInstance& instance, TShape& shape) {
    fKeys.resize(shape.keySlots.size());
    for (std::size_t i = 0; i < shape.keySlots.size(); ++i) {
        const TShape::TSlot& slot = shape.slots[shape.keySlots[i]];
        fKeys[i].first = slot.name;
        const boost::shared_ptr<ICIMProperty> property = instance.GetProperty(slot.name, TCIMContext());
        fKeys[i].second = property ? property->GetValue() : TCIMValue();
    }
}

void TInstanceRenderer::KeysFromValues(const TShape& shape) {
    fKeys.resize(shape.keySlots.size());
    for (std::size_t i = 0; i < shape.keySlots.size(); ++i) {
        const std::size_t slot = shape.keySlots[i];
        fKeys[i].first = shape.slots[slot].name;
        fKeys[i].second = fValues[slot] != nullptr ? *fValues[slot] : TCIMValue();
    }
}

void TInstanceRenderer::BuildPath(const TShape& shape) {
    if (!fWritesPathText) return;
    fPathText.assign(shape.className);
    for (std::size_t i = 0; i < fKeys.size(); ++i) {
        fPathText += i == 0 ? '.' : ',';
        TCIMReference::AppendKeyBinding(fPathText, fKeys[i].first, fKeys[i].second);
    }
}

void TInstanceRenderer::WriteInstance(ICIMInstance& instance) {
    TShape& shape = ShapeOf(instance);
    ReadValues(instance, shape);
    KeysFromValues(shape);
    BuildPath(shape);
    fProperties.clear();
    for (std::size_t i = 0; i < shape.slots.size(); ++i) {
        if (!shape.slots[i].selected || fValues[i] == nullptr) continue;
        TPropertyView view;
        view.name = &shape.slots[i].name;
        view.value = fValues[i];
        view.decl = shape.slots[i].decl.get();
        fProperties.push_back(view);
    }
    TInstanceView view;
    view.className = &shape.className;
    view.path.className = &shape.className;
    view.path.keys = &fKeys;
    view.path.text = fWritesPathText ? &fPathText : nullptr;
    view.properties = &fProperties;
    view.includeQualifiers = fSelection.includeQualifiers;
    view.includeClassOrigin = fSelection.includeClassOrigin;
    fWriter.Instance(view);
}

void TInstanceRenderer::WritePath(ICIMInstance& instance) {
    TShape& shape = ShapeOf(instance);
    fValues.assign(shape.slots.size(), nullptr);
    if (ReadValuesInPlace(instance, shape)) {
        KeysFromValues(shape);
    } else {
        ReadKeys(instance, shape);
    }
    BuildPath(shape);
    TPathView view;
    view.className = &shape.className;
    view.keys = &fKeys;
    view.text = fWritesPathText ? &fPathText : nullptr;
    fWriter.Path(view);
}

TInstanceCallback TInstanceRenderer::Writer(bool pathsOnly) {
    return [this, pathsOnly](boost::shared_ptr<ICIMInstance> instance) {
        if (pathsOnly) {
            WritePath(*instance);
        } else {
            WriteInstance(*instance);
        }
        return true;
    };
}
