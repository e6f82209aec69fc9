#pragma once

#include <functional>
#include <unordered_map>
#include <utility>
#include <vector>

#include <GL/gl.h>

namespace WebGL {

/// Display lists: calls kept to be made again.
class Lists {
public:
    /// Names in a row that no list has; 0 for none.
    GLuint Generate(GLsizei count);
    void Delete(GLuint first, GLsizei count);
    bool Exists(GLuint name) const { return all.contains(name); }

    /// False where a list is already being made.
    bool Begin(GLuint name, GLenum mode);
    bool End();
    void Call(GLuint name);

    /// Makes the call now, keeps it for the list that is being made, or both.
    template <class Action>
    void Do(Action action) {
        if (open == 0) {
            action();
            return;
        }
        recorded.emplace_back(action);
        if (openMode == GL_COMPILE_AND_EXECUTE)
            action();
    }

    GLuint Open() const { return open; }

private:
    using Calls = std::vector<std::function<void()>>;
    std::unordered_map<GLuint, Calls> all;
    Calls recorded;
    GLuint open = 0;
    GLenum openMode = GL_COMPILE;
    GLuint lastName = 0;
};

} // namespace WebGL
