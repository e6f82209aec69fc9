#pragma once

#include "tools/explain/framerecord.h"

#include <map>
#include <string>
#include <vector>

namespace Explain {

/// The pictures of a page: each stands in the style sheet once, and wherever it is shown is an
/// element of its class.
class Shots {
public:
    /// Makes those of the frame: what each pass left, and the files that were read.
    explicit Shots(const FrameRecord& record);

    /// The finished picture, pixel by pixel.
    std::string Final() const;

    /// What a pass left, with captions.
    std::string PassFigures(std::size_t pass) const;

    /// What a pass left, as high as a line of a table.
    std::string SmallPass(std::size_t pass) const;

    /// What an input holds, likewise; nothing for a texture that was not read back.
    std::string SmallInput(const Passes::Input& input) const;

    /// The rules of the style sheet that hold the pictures.
    std::string Style() const { return style; }

private:
    struct Shot {
        std::string kind; ///< class
        int width = 0;    ///< pixels on the page
        int height = 0;
    };

    Shot Add(const Picture& picture);
    std::string Show(const Shot& shot, const std::string& words) const;
    std::string ShowSmall(const Shot& shot, const std::string& words) const;
    std::string Figure(const Shot& shot, const std::string& caption) const;
    std::string DepthFigure(std::size_t pass) const;

    const FrameRecord& record;
    std::map<std::string, std::string> kinds; ///< class by picture
    std::string style;
    std::vector<Shot> colours; ///< by pass
    std::vector<Shot> depths;  ///< likewise; without a class where there is none
    std::map<GLuint, Shot> textures;
    Shot final;
};

} // namespace Explain
