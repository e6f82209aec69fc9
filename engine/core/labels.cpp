#include "engine/core/labels.h"

#include <map>
#include <utility>

namespace Vell {

namespace {

using Labels = std::map<std::pair<ObjectKind, GLuint>, std::string>;

// Never destroyed: an object that outlives main() takes its label away after all statics are gone.
Labels& AllLabels() {
    static Labels& labels = *new Labels;
    return labels;
}

} // namespace

void Label(ObjectKind kind, GLuint name, const std::string& text) {
    if (name != 0)
        AllLabels()[{kind, name}] = text;
}

const std::string& LabelOf(ObjectKind kind, GLuint name) {
    static const std::string none;
    const auto found = AllLabels().find({kind, name});
    return found != AllLabels().end() ? found->second : none;
}

void Unlabel(ObjectKind kind, GLuint name) {
    AllLabels().erase({kind, name});
}

} // namespace Vell
