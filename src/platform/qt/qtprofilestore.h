#pragma once
// The per-user store of the desktop program: an ini file kept by QSettings
// under the application key, with a group for each section.

#include "platform/profilestore.h"

#include <QSettings>

#include <memory>
#include <string>

namespace kestra {

class QtProfileStore : public ProfileStore {
public:
    // The user's own store.
    QtProfileStore();
    // A store in the given ini file (tests, or a store kept beside other files).
    explicit QtProfileStore(const std::string& iniPath);
    ~QtProfileStore() override;

    std::string get(const std::string& section, const std::string& key,
                    const std::string& defaultValue) const override;
    // Written through to the file at once.
    void set(const std::string& section, const std::string& key, const std::string& value) override;

    // Where the store lives.
    std::string fileName() const;

private:
    std::unique_ptr<QSettings> settings_;
};

} // namespace kestra
