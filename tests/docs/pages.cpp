#include "tests/docs/pages.h"

#include "tests/support/scratch.h"

#include <algorithm>
#include <regex>
#include <sstream>

namespace fs = std::filesystem;

namespace Docs {

namespace {

constexpr const char* fence = "```";
constexpr const char* indent = "    ";

/// A command without the comment behind it and without blanks around.
std::string CommandOf(std::string line) {
    static const std::regex comment("(^|\\s)#.*$");
    static const std::regex around("^\\s+|\\s+$");
    line = std::regex_replace(line, comment, "");
    return std::regex_replace(line, around, "");
}

/// Takes a page line by line.
class Reader {
public:
    explicit Reader(Page& taken) : page(taken) {}

    void Take(const std::string& line) {
        ++number;
        if (line.starts_with(fence))
            Fence(line);
        else if (inFence)
            Block(line);
        else if (line.empty())
            End();
        else if (afterBlank && line.starts_with(indent))
            page.blocks.push_back({page.name, number, line});
        else
            Sentence(line);
        if (!line.starts_with(indent)) // one block goes on until something else stands there
            afterBlank = line.empty();
    }

    /// A paragraph has ended: what stands between its backticks and brackets is taken out.
    void End() {
        static const std::regex code("`([^`]+)`");
        static const std::regex link("\\]\\(([^)]+)\\)");
        Find(code, page.code);
        Find(link, page.links);
        sentences.clear();
    }

private:
    void Fence(const std::string& line) {
        End();
        inFence = !inFence;
        shell = inFence && line == std::string(fence) + "sh";
    }

    void Block(const std::string& line) {
        if (!shell)
            page.blocks.push_back({page.name, number, line});
        else if (const std::string command = CommandOf(line); !command.empty())
            page.shell.push_back({page.name, number, command});
    }

    void Sentence(const std::string& line) {
        if (sentences.empty())
            begin = number;
        sentences += line + "\n";
    }

    void Find(const std::regex& pattern, std::vector<Line>& found) const {
        const std::sregex_iterator end;
        for (std::sregex_iterator match(sentences.begin(), sentences.end(), pattern); match != end;
             ++match) {
            std::string text = (*match)[1];
            std::replace(text.begin(), text.end(), '\n', ' ');
            const auto feeds =
                std::count(sentences.begin(), sentences.begin() + match->position(), '\n');
            found.push_back({page.name, begin + static_cast<int>(feeds), text});
        }
    }

    Page& page;
    int number = 0;
    bool inFence = false;
    bool shell = false;
    bool afterBlank = true;
    std::string sentences; ///< of the paragraph
    int begin = 1;         ///< their first line
};

} // namespace

std::string PlaceOf(const Line& line) {
    return line.page + ":" + std::to_string(line.number);
}

Page ReadPage(const std::string& name, const std::string& text) {
    Page page;
    page.name = name;
    page.text = text;
    Reader reader(page);
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);)
        reader.Take(line);
    reader.End();
    return page;
}

std::vector<Page> AllPages(const fs::path& root) {
    std::vector<std::string> names = {"CONTRIBUTING.md", "README.md", "SECURITY.md"};
    for (const fs::directory_entry& entry : fs::directory_iterator(root / "docs"))
        if (entry.path().extension() == ".md")
            names.push_back("docs/" + entry.path().filename().string());
    std::sort(names.begin(), names.end());
    std::vector<Page> pages;
    for (const std::string& name : names)
        pages.push_back(ReadPage(name, ReadFile(root / name)));
    return pages;
}

std::string TargetOf(const Line& link) {
    const std::string path = link.text.substr(0, link.text.find('#'));
    if (path.find("://") != std::string::npos)
        return "";
    if (path.empty()) // a place on the page itself
        return link.page;
    return (fs::path(link.page).parent_path() / path).lexically_normal().string();
}

} // namespace Docs
