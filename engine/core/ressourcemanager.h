#pragma once

#include <map>
#include <string>

namespace Vell {

/// Finds resources that are already loaded by the path they were loaded from.
///
/// It owns nothing and never forgets: an entry outlives its object, so whoever deletes a registered
/// object must see to it that nobody looks the name up again. Names are compared byte by byte; two
/// spellings of one path are two names.
class RessourceManager {
public:
    /// The one instance, made on first use and destroyed at exit.
    static RessourceManager& GetInstance();

    RessourceManager(const RessourceManager&) = delete;
    RessourceManager& operator=(const RessourceManager&) = delete;

    /// Stores `object` under `name`, in place of what stood there. The caller keeps owning it.
    void Register(void* object, const std::string& name);

    bool Exist(const std::string& name) const;

    /// What was registered under `name`, to be cast to the type it was registered as; null when
    /// there is no such name.
    void* Get(const std::string& name) const;

private:
    RessourceManager() = default;
    ~RessourceManager() = default;

    std::map<std::string, void*> ressources; ///< by name, not owned
};

} // namespace Vell
