#pragma once

#include "tests/recording/calls.h"

#include "engine/render/xt3dstatic.h"

#include <memory>
#include <string>
#include <vector>

/// What a mesh file holds: one triangle a sub-mesh, from (0, 0, 0) to (2, 2, 2).
struct Contents {
    std::vector<std::string> textures; ///< three names a sub-mesh, as "a.png NULL NULL"
    bool lightmap;
};

class MeshCalls : public Calls {
protected:
    void SetUp() override {
        Calls::SetUp();
        // The registry knows every path for good, so each test has a folder of its own.
        static int count = 0;
        folder = "mesh" + std::to_string(++count) + "/";
        WritePng(folder + "a.png", 1, 1, 3, {1, 2, 3});
        WritePng(folder + "b.png", 1, 1, 3, {1, 2, 3});
        WriteJpeg(folder + "lightmap.jpg", 1, 1, {1, 2, 3});
    }

    /// A mesh of the file. Textures are labelled in the order in which they are loaded.
    std::unique_ptr<Vell::XT3DStatic> Load(const Contents& contents,
                                           const std::vector<std::string>& labels) {
        gl.Name("texture", labels);
        for (std::size_t i = 0; i < contents.textures.size(); ++i) {
            const std::string n = contents.textures.size() == 1 ? "" : i == 0 ? " 0" : " 1";
            const std::string names[] = {"positions" + n, "texcoords" + n, "lightmap texcoords" + n,
                                         "normals" + n};
            gl.Name("buffer", names);
        }
        WriteFile(folder + "mesh.xt3dstatic", Text(contents));
        auto mesh = std::make_unique<Vell::XT3DStatic>();
        mesh->Load(folder + "mesh.xt3dstatic");
        return mesh;
    }

    /// Likewise, with the calls of loading forgotten.
    std::unique_ptr<Vell::XT3DStatic> Loaded(const Contents& contents,
                                             const std::vector<std::string>& labels) {
        auto mesh = Load(contents, labels);
        Forget();
        return mesh;
    }

    /// Gives the mesh a material; its calls stay.
    void SetMaterial(Vell::XT3DStatic& mesh) {
        gl.NameProgram("material");
        WriteFile(folder + "material.vert", "void main() { one of more than forty characters }");
        WriteFile(folder + "material.frag", "void main() { one of more than forty characters }");
        mesh.SetMaterialShader(folder + "material.vert", folder + "material.frag");
    }

    static std::string LoadTexture(const std::string& label) {
        return "glGetIntegerv(GL_MAX_TEXTURE_SIZE)\n"
               "glGenTextures(1, " +
               label + ")\n" + BindTexture(label) + BindTexture(label) + R"(
               glTexParameteri(GL_TEXTURE_2D, GL_GENERATE_MIPMAP, 1)
               glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR_MIPMAP_LINEAR)
               glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR)
               glPixelStorei(GL_UNPACK_ALIGNMENT, 1)
               glTexImage2D(GL_TEXTURE_2D, 0, GL_RGB, 1, 1, 0, GL_RGB, GL_UNSIGNED_BYTE, memory)
               glPixelStorei(GL_UNPACK_ALIGNMENT, 4)
               )";
    }

    static constexpr const char* beginArrays = R"(
        -- alpha test
        glAlphaFunc(GL_GREATER, 0.5)
        glEnable(GL_ALPHA_TEST)
        -- arrays on
        glEnableClientState(GL_VERTEX_ARRAY)
        glEnableClientState(GL_NORMAL_ARRAY)
        glEnableClientState(GL_TEXTURE_COORD_ARRAY)
        )";

    static constexpr const char* buffers = R"(
        -- arrays from the buffers
        glGetString(GL_EXTENSIONS)
        glBindBuffer(GL_ARRAY_BUFFER, positions); glVertexPointer(3, GL_FLOAT, 0, 0)
        glBindBuffer(GL_ARRAY_BUFFER, normals); glNormalPointer(GL_FLOAT, 0, 0)
        glClientActiveTexture(GL_TEXTURE0); glEnableClientState(GL_TEXTURE_COORD_ARRAY)
        glBindBuffer(GL_ARRAY_BUFFER, texcoords); glTexCoordPointer(2, GL_FLOAT, 0, 0)
        )";

    static constexpr const char* lightmapBuffer = R"(
        glClientActiveTexture(GL_TEXTURE1); glEnableClientState(GL_TEXTURE_COORD_ARRAY)
        glBindBuffer(GL_ARRAY_BUFFER, lightmap texcoords); glTexCoordPointer(2, GL_FLOAT, 0, 0)
        )";

    static constexpr const char* triangles = "glDrawArrays(GL_TRIANGLES, 0, 3)\n";

    // Whether there is a buffer to unbind is asked first.
    static constexpr const char* unbindBuffer = R"(
        -- arrays off
        glGetString(GL_EXTENSIONS); glBindBuffer(GL_ARRAY_BUFFER, 0)
        )";

    static constexpr const char* endArrays = R"(
        glDisableClientState(GL_VERTEX_ARRAY)
        glDisableClientState(GL_NORMAL_ARRAY)
        glClientActiveTexture(GL_TEXTURE1); glDisableClientState(GL_TEXTURE_COORD_ARRAY)
        glClientActiveTexture(GL_TEXTURE0); glDisableClientState(GL_TEXTURE_COORD_ARRAY)
        -- textures and alpha test off
        glDisable(GL_ALPHA_TEST)
        glActiveTexture(GL_TEXTURE6); glDisable(GL_TEXTURE_2D)
        glActiveTexture(GL_TEXTURE2); glDisable(GL_TEXTURE_2D)
        glActiveTexture(GL_TEXTURE1); glDisable(GL_TEXTURE_2D)
        glActiveTexture(GL_TEXTURE0); glDisable(GL_TEXTURE_2D)
        )";

    static constexpr const char* noTextures = R"(
        -- no textures
        glActiveTexture(GL_TEXTURE0); glBindTexture(GL_TEXTURE_2D, 0); glDisable(GL_TEXTURE_2D)
        glActiveTexture(GL_TEXTURE1); glBindTexture(GL_TEXTURE_2D, 0); glDisable(GL_TEXTURE_2D)
        glActiveTexture(GL_TEXTURE2); glBindTexture(GL_TEXTURE_2D, 0); glDisable(GL_TEXTURE_2D)
        )";

    static std::string Plain() {
        return std::string(beginArrays) + noTextures + buffers + triangles + unbindBuffer +
               endArrays;
    }

    std::string folder;

private:
    std::string Text(const Contents& contents) const {
        std::string text = "XT3DSTATIC " + std::to_string(contents.textures.size()) + " " + folder +
                           (contents.lightmap ? " 1" : " 0");
        const char* corners[] = {"0 0 0  0 1 0  0.25 0.5", "2 0 0  0 1 0  0.75 0.5",
                                 "0 2 2  0 1 0  0.25 1"};
        for (const std::string& textures : contents.textures) {
            text += "\n" + textures + " 3";
            for (const char* corner : corners)
                text += std::string("\n") + corner + (contents.lightmap ? " 0.125 0.375" : "");
        }
        return text;
    }
};

inline const Contents plain = {{"NULL NULL NULL"}, false};
inline const Contents lit = {{"a.png NULL b.png"}, true};
inline const std::vector<std::string> litTextures = {"light map", "a", "b"};
