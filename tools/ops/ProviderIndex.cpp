#include "ProviderIndex.h"

#include <nlohmann/json.hpp>

const char* const kMiKinds[] = {"Instance", "Association", "Method", "Indication", "Property"};

const TProviderEntry* TProviderIndex::Find(const std::string& provider) const {
    const auto found = fEntries.find(provider);
    return found == fEntries.end() ? nullptr : &found->second;
}

bool TProviderIndex::Has(const std::string& provider, const char* kind) const {
    const TProviderEntry* entry = Find(provider);
    // What could not be read is not held against a provider.
    return entry != nullptr && (!entry->kindsKnown || entry->kinds.count(kind) != 0);
}

std::string TProviderIndex::Serialize() const {
    nlohmann::json object = nlohmann::json::object();
    for (const auto& entry : fEntries) {
        object[entry.first] = {
            {"module", entry.second.module}, {"kinds", entry.second.kinds}, {"kindsKnown", entry.second.kindsKnown}};
    }
    return object.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

TProviderIndex TProviderIndex::Deserialize(const std::string& text) {
    TProviderIndex index;
    const nlohmann::json object = nlohmann::json::parse(text);
    for (auto entry = object.begin(); entry != object.end(); ++entry) {
        TProviderEntry provider;
        provider.module = entry.value().at("module").get<std::string>();
        provider.kinds = entry.value().at("kinds").get<std::set<std::string> >();
        provider.kindsKnown = entry.value().at("kindsKnown").get<bool>();
        index.Add(entry.key(), provider);
    }
    return index;
}
