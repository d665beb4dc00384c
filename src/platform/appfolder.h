#pragma once
// "The program's folder": where setup.ini, com250.ini, names.dat, the logs and
// every other file of the program live. A per-user data folder, created on
// first use; kestractl and the tests may point it elsewhere.

#include <cstdlib>
#include <filesystem>
#include <fstream>
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

    // The user's documents folder, where file choosers start when there is no
    // document and no folder used before: $XDG_DOCUMENTS_DIR, else the
    // XDG_DOCUMENTS_DIR line of the desktop's user-dirs.dirs, else ~/Documents
    // when it exists, else the home folder.
    static std::filesystem::path documents()
    {
        namespace fs = std::filesystem;
        std::error_code ec;
        const char* homeText = std::getenv("HOME");
        const fs::path home = homeText && *homeText ? fs::path(homeText) : fs::temp_directory_path();
        if (const char* xdg = std::getenv("XDG_DOCUMENTS_DIR"); xdg && *xdg && fs::is_directory(xdg, ec)) return xdg;
        const char* configText = std::getenv("XDG_CONFIG_HOME");
        const fs::path config = configText && *configText ? fs::path(configText) : home / ".config";
        std::ifstream dirs(config / "user-dirs.dirs");
        for (std::string line; std::getline(dirs, line);) {
            const std::string key = "XDG_DOCUMENTS_DIR=\"";
            if (line.rfind(key, 0) != 0) continue;
            std::string value = line.substr(key.size());
            if (const auto end = value.find('"'); end != std::string::npos) value.erase(end);
            if (value.rfind("$HOME", 0) == 0) value = home.string() + value.substr(5);
            if (!value.empty() && fs::is_directory(value, ec)) return value;
        }
        if (fs::is_directory(home / "Documents", ec)) return home / "Documents";
        return home;
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
