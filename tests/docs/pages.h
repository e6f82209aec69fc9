#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace Docs {

/// Something that stands on a page.
struct Line {
    std::string page; ///< "docs/movie.md"
    int number = 0;   ///< 1 is the page's first line
    std::string text;
};

/// "docs/movie.md:12", for messages.
std::string PlaceOf(const Line& line);

/// What of a page can be tested. Markdown as this tree uses it: fences of three backticks, blocks
/// indented by four blanks, code between single backticks, links in round brackets.
struct Page {
    std::string name;         ///< from the tree's root: "docs/movie.md"
    std::string text;         ///< all of it
    std::vector<Line> shell;  ///< commands of the fences that say "sh", without their comments
    std::vector<Line> blocks; ///< lines of all other blocks
    std::vector<Line> code;   ///< code within sentences, a line feed in it as a blank
    std::vector<Line> links;  ///< where links and pictures lead: "frames/rise.html#pass-3"
};

/// Takes a page apart.
Page ReadPage(const std::string& name, const std::string& text);

/// README.md, CONTRIBUTING.md, SECURITY.md and every page of docs/ of the tree with this root, in
/// the order of their names.
std::vector<Page> AllPages(const std::filesystem::path& root);

/// Where a link of the page leads, from the tree's root and without its "#..."; empty when it leads
/// out of the tree.
std::string TargetOf(const Line& link);

} // namespace Docs
