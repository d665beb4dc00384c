#include "platform/fake/memoryprofilestore.h"

namespace kestra {

std::string MemoryProfileStore::get(const std::string& section, const std::string& key,
                                    const std::string& defaultValue) const
{
    const auto found = values_.find({section, key});
    return found == values_.end() ? defaultValue : found->second;
}

void MemoryProfileStore::set(const std::string& section, const std::string& key, const std::string& value)
{
    values_[{section, key}] = value;
}

} // namespace kestra
