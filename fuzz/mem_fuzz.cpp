// Feeds arbitrary bytes to the three MEM readers and checks what must hold
// whatever the input: no crash, a known status, and a document that still
// writes a whole file of 2107 lines.

#include "core/memfile.h"

#include <cstdint>
#include <cstdlib>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    kestra::Settings settings;
    for (int reader = 0; reader < 3; ++reader) {
        kestra::Document doc;
        kestra::MemLoadResult result;
        switch (reader) {
        case 0: result = kestra::readMem(doc, bytes, 1); break;
        case 1: result = kestra::read780(doc, bytes, 1); break;
        default: result = kestra::readSpecial(doc, bytes, 1); break;
        }
        if (result.status != kestra::MemLoadStatus::Loaded && result.message().empty()) std::abort();
        if (doc.easytags.size() > 1000) std::abort();
        const std::string text = kestra::memText(doc, settings);
        std::size_t lines = 0;
        for (std::size_t at = text.find("\r\n"); at != std::string::npos; at = text.find("\r\n", at + 2)) ++lines;
        // A cell read from the input may hold line ends of its own; never fewer lines.
        if (lines < 2107) std::abort();
    }
    return 0;
}
