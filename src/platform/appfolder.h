#pragma once
// "The program's folder": where setup.ini, com250.ini, names.dat, the logs and
// every other file of the program live. A per-user data folder, created on
// first use; kestractl and the tests may point it elsewhere.

#include <cstdlib>
#include <filesystem>
#include <string>

namespace kestra {

class AppFolder {
public:
    explicit AppFolder(std::filesystem::path folder) : folder_(std::move(folder)) {}

    const std::filesystem::path& path() const { return folder_; }
    std::filesystem::path file(const std::string& name) const { return folder_ / name; }

    // The per-user data folder of the program: $XDG_DATA_HOME (or
    // ~/.local/share) and "HalvornKESTRA/kestra", the place the desktop's own
    // standard paths give for this program.
    static AppFolder standard()
    {
        namespace fs = std::filesystem;
        fs::path base;
        if (const char* xdg = std::getenv("XDG_DATA_HOME"); xdg && *xdg)
            base = xdg;
        else if (const char* home = std::getenv("HOME"); home && *home)
            base = fs::path(home) / ".local" / "share";
        else
            base = fs::temp_directory_path();
        return AppFolder(base / "HalvornKESTRA" / "kestra");
    }

    // Creates the folder when it is missing. Returns false when it cannot.
    bool ensure() const
    {
        std::error_code ec;
        std::filesystem::create_directories(folder_, ec);
        return std::filesystem::is_directory(folder_, ec);
    }

private:
    std::filesystem::path folder_;
};

} // namespace kestra
