#pragma once

#include "tests/recording/recorder.h"

#include "engine/math/vec3.h"
#include "engine/scene/mesh.h"

#include <string>

/// A mesh of side 2 about the origin that only says when it is drawn.
class NotedMesh : public Vell::Mesh {
public:
    explicit NotedMesh(const std::string& meshName) : name(meshName) {
        bbox.Set(Vell::vec3(-1, -1, -1), Vell::vec3(1, 1, 1));
    }
    void Draw() override { Note("Draw"); }
    void DrawShadow() override { Note("DrawShadow"); }

private:
    void Note(const std::string& pass) const {
        const std::string arguments[] = {name};
        gl.Note(pass, arguments);
    }

    std::string name;
};
