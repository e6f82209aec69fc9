#include "engine/core/ressourcemanager.h"

namespace Vell {

namespace {

bool destroyed = false; // a plain value, so it can still be read when the registry is

} // namespace

RessourceManager::~RessourceManager() {
    destroyed = true;
}

RessourceManager& RessourceManager::GetInstance() {
    static RessourceManager instance;
    return instance;
}

void RessourceManager::Register(void* object, const std::string& name) {
    Register(object, name, RessourceKind::Unknown);
}

void RessourceManager::Register(void* object, const std::string& name, RessourceKind kind) {
    ressources[name] = {object, kind};
}

void RessourceManager::MarkDeleted(const void* object) {
    if (destroyed)
        return;
    for (auto& [name, entry] : GetInstance().ressources)
        if (entry.object == object)
            entry.kind = RessourceKind::Deleted;
}

bool RessourceManager::Exist(const std::string& name) const {
    return ressources.count(name) != 0;
}

bool RessourceManager::IsTaken(const std::string& name) const {
    const auto entry = ressources.find(name);
    return entry != ressources.end() && entry->second.kind != RessourceKind::Deleted;
}

bool RessourceManager::IsTakenBy(RessourceKind kind, const std::string& name) const {
    const auto entry = ressources.find(name);
    return entry != ressources.end() &&
           (entry->second.kind == kind || entry->second.kind == RessourceKind::Unknown);
}

void* RessourceManager::Get(const std::string& name) const {
    const auto entry = ressources.find(name);
    return entry != ressources.end() ? entry->second.object : nullptr;
}

} // namespace Vell
