#pragma once
// The per-user store held in memory, for the tests and for kestractl.

#include "platform/profilestore.h"

#include <map>
#include <string>
#include <utility>

namespace kestra {

class MemoryProfileStore : public ProfileStore {
public:
    using Values = std::map<std::pair<std::string, std::string>, std::string>;

    std::string get(const std::string& section, const std::string& key,
                    const std::string& defaultValue) const override;
    void set(const std::string& section, const std::string& key, const std::string& value) override;

    // Everything stored, by section and key.
    const Values& values() const { return values_; }

private:
    Values values_;
};

} // namespace kestra
