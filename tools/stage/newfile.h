#pragma once

#include <filesystem>
#include <string>

namespace Stage {

/// A file that is made under another name: it takes its own, in the place of any older one, when it
/// is complete, and goes if it never is.
class NewFile {
public:
    /// "film.mp4" is made as "film.part.mp4": ffmpeg knows the kind of file by its end.
    explicit NewFile(const std::string& finalPath);
    ~NewFile();
    NewFile(const NewFile&) = delete;
    NewFile& operator=(const NewFile&) = delete;

    std::string Path() const { return unfinished; } ///< where it is made
    void Complete() const; ///< throws std::filesystem::filesystem_error when it cannot be renamed

private:
    std::filesystem::path path;
    std::filesystem::path unfinished;
};

} // namespace Stage
