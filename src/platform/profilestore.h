#pragma once
// The per-user store of the program (application key "HalvornKESTRA"):
// values by section and key, each read with a default.

#include <string>

namespace kestra {

inline constexpr const char* kProfileApplication = "HalvornKESTRA";

class ProfileStore {
public:
    virtual ~ProfileStore() = default;
    virtual std::string get(const std::string& section, const std::string& key,
                            const std::string& defaultValue) const = 0;
    virtual void set(const std::string& section, const std::string& key, const std::string& value) = 0;
};

} // namespace kestra
