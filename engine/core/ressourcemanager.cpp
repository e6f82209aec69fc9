#include "engine/core/ressourcemanager.h"

namespace Vell {

RessourceManager& RessourceManager::GetInstance() {
    static RessourceManager instance;
    return instance;
}

void RessourceManager::Register(void* object, const std::string& name) {
    ressources[name] = object;
}

bool RessourceManager::Exist(const std::string& name) const {
    return ressources.count(name) != 0;
}

void* RessourceManager::Get(const std::string& name) const {
    const auto entry = ressources.find(name);
    return entry != ressources.end() ? entry->second : nullptr;
}

} // namespace Vell
