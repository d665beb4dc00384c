#pragma once
// The model a scanner names in its reply to VR and SI: the SI reply carries
// the model's name ("SI UBC3300,0000000000,100").

#include "core/cellcodes.h"

#include <optional>
#include <string_view>

namespace kestra {

// The model named in the word, if any.
std::optional<Model> modelInWord(std::string_view word);

} // namespace kestra
