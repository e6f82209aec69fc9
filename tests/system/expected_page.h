#pragma once

// "Vell_log.html" as it has to be, made of rows that a test writes down.

#include "tests/support/log_page.h"

#include <algorithm>
#include <fstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

inline const std::string header = R"(<html>
<head>
    <meta http-equiv="Content-Type" content="text/html; charset=UTF-8"  />
    <title>Vell Engine</title>
</head>


<body bgcolor="#000000">
    <center><b><font color="#FFFFFF" size="+1">Vell Engine - Logger </font></b></center><br>
    <table border bgcolor="#666666" cellspacing="0" cellpadding="2">
    <tr align=LEFT valign=TOP>
    <th><font color="#FFFFFF">Section</font></th>
    <th><font color="#FFFFFF">Status</font></th>
    <th><font color="#FFFFFF">File</font></th>
    </tr>
)";

inline const std::string footer = R"(    </table>
</body>
</html>
)";

/// Rows of the table; one without a section is text that stands between two rows.
using Rows = std::vector<LogRow>;

inline std::string StatusColour(const std::string& status) {
    return status == "ERROR" ? "#660000" : "#006600"; // no other word is left: LOADED, FREE, OK
}

inline const std::string rowTemplate = R"(    <tr>
    <td bgcolor="GREY" width ="15%">SECTION</td>
    <td bgcolor="GREY" width ="5%"><font color="COLOUR">STATUS</font></td>
    <td bgcolor="GREY" width ="80%">FILE</td>
    </tr>

)";

inline void Replace(std::string& text, const std::string& word, const std::string& by) {
    for (std::size_t at = text.find(word); at != std::string::npos; at = text.find(word))
        text.replace(at, word.size(), by);
}

inline std::string RowText(const LogRow& row, const std::string& grey) {
    std::string text = rowTemplate;
    Replace(text, "GREY", grey);
    Replace(text, "COLOUR", StatusColour(row.status));
    Replace(text, "SECTION", row.section);
    Replace(text, "STATUS", row.status);
    Replace(text, "FILE", row.file);
    return text;
}

/// The header and the rows, whose greys alternate; text between them does not count.
inline std::string OpenPage(const Rows& rows) {
    std::string page = header;
    bool dark = false;
    for (const LogRow& row : rows)
        if (row.section.empty()) {
            page += row.file;
        } else {
            page += RowText(row, dark ? "#999999" : "#CCCCC");
            dark = !dark;
        }
    return page;
}

/// The line of `text` that byte `at` belongs to; empty behind the end.
inline std::string LineAround(const std::string& text, std::size_t at) {
    const std::size_t begin = text.substr(0, at).rfind('\n') + 1; // 0 when it is the first line
    return text.substr(begin, text.find('\n', begin) - begin);
}

/// Whether two pages are the same byte for byte; if not, the first line that differs.
inline ::testing::AssertionResult Same(const std::string& page, const std::string& wanted) {
    if (page == wanted)
        return ::testing::AssertionSuccess();
    const auto place = std::mismatch(page.begin(), page.end(), wanted.begin(), wanted.end()).first;
    const std::size_t at = static_cast<std::size_t>(place - page.begin());
    return ::testing::AssertionFailure()
           << "line " << 1 + std::count(page.begin(), place, '\n') << ": expected \""
           << LineAround(wanted, at) << "\", found \"" << LineAround(page, at) << "\"; "
           << wanted.size() << " bytes expected, " << page.size() << " found";
}

inline Rows operator+(Rows a, const Rows& b) {
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

/// What a mesh file names.
struct MeshFile {
    bool lightmap = false;
    std::vector<std::string> pictures; ///< the light map and every texture, in order, as paths
};

inline MeshFile ReadMeshFile(const std::string& path) {
    MeshFile mesh;
    std::ifstream file(path);
    std::string word;
    std::string folder;
    int subMeshes = 0;
    file >> word >> subMeshes >> folder >> mesh.lightmap;
    if (mesh.lightmap)
        mesh.pictures.push_back(folder + "lightmap.jpg");
    for (int i = 0; i < subMeshes; ++i) {
        for (int texture = 0; texture < 3; ++texture)
            if (file >> word && word != "NULL")
                mesh.pictures.push_back(folder + word);
        int vertices = 0;
        file >> vertices;
        for (int number = vertices * (mesh.lightmap ? 10 : 8); number > 0; --number)
            file >> word;
    }
    EXPECT_TRUE(file) << path;
    return mesh;
}
