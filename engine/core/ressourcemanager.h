#pragma once

#include <map>
#include <string>

namespace Vell {

/// What a registered object is, so that no picture is taken for a mesh.
enum class RessourceKind {
    Unknown, ///< registered without a kind: taken for whatever it is looked up as
    Image,
    Mesh, ///< an XT3DStatic
    Shader,
    Deleted, ///< the object is gone, its name is not
};

/// Finds resources that are already loaded by the path they were loaded from.
///
/// It owns nothing and never forgets: an entry outlives its object. The loaders of the engine mark
/// their entries when they end, and load a path afresh whose object is gone; whoever deletes an
/// object that he registered himself must do so too, or see to it that nobody looks the name up
/// again. Names are compared byte by byte; two spellings of one path are two names.
class RessourceManager {
public:
    /// The one instance, made on first use and destroyed at exit.
    static RessourceManager& GetInstance();

    RessourceManager(const RessourceManager&) = delete;
    RessourceManager& operator=(const RessourceManager&) = delete;

    /// Stores `object` under `name`, in place of what stood there. The caller keeps owning it.
    void Register(void* object, const std::string& name);
    /// The same, for those who look up by kind.
    void Register(void* object, const std::string& name, RessourceKind kind);

    /// Marks all entries of an object that ends now. Exist() and Get() go on answering as before;
    /// the pointer that Get() gives then leads nowhere. Does nothing once the registry is
    /// destroyed: static objects may end after it.
    static void MarkDeleted(const void* object);

    /// Whether anything was ever registered under exactly this name.
    bool Exist(const std::string& name) const;

    /// Whether an object that is not marked as deleted stands under `name`.
    bool IsTaken(const std::string& name) const;
    /// Whether that object may be used as one of this kind: it is one, or its kind is unknown.
    bool IsTakenBy(RessourceKind kind, const std::string& name) const;

    /// What was registered under `name`, to be cast to the type it was registered as; null when
    /// there is no such name.
    void* Get(const std::string& name) const;

private:
    RessourceManager() = default;
    ~RessourceManager();

    struct Entry {
        void* object = nullptr; ///< not owned
        RessourceKind kind = RessourceKind::Unknown;
    };

    std::map<std::string, Entry> ressources; ///< by name
};

} // namespace Vell
