#include "core/modelword.h"

namespace kestra {

std::optional<Model> modelInWord(std::string_view word)
{
    for (Model m : {Model::BC250D, Model::BC785D, Model::BC296D, Model::BC796D, Model::UBC3300})
        if (word.find(modelName(m)) != std::string_view::npos) return m;
    return std::nullopt;
}

} // namespace kestra
