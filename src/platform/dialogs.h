#pragma once
// Message boxes, questions and file choosers. Texts are in the program's own
// single-byte form (Windows-1252), like every other text of the system; file
// paths are native file-system paths.

#include <optional>
#include <string>

namespace kestra {

enum class Buttons { Ok, OkCancel, YesNo, YesNoCancel, RetryCancel, AbortRetryIgnore };
enum class Icon { None, Information, Exclamation, Critical, Question };
enum class Answer { Ok, Cancel, Yes, No, Retry, Abort, Ignore };

// The title of every message box that has no title of its own.
inline constexpr const char* kApplicationTitle = "Kestra Console for Uniden BC250/785/296/796/3300";

struct FileChoice {
    std::string title;   // caption of the chooser
    std::string filter;  // "Description|pattern|Description|pattern", e.g. "KESTRA Data Files|*.mem|All Files|*.*"
    std::string folder;  // folder offered first
    std::string name;    // name offered first
};

class Dialogs {
public:
    virtual ~Dialogs() = default;

    // A message box. An empty title means the application title.
    virtual Answer message(const std::string& text, const std::string& title = {},
                           Buttons buttons = Buttons::Ok, Icon icon = Icon::None) = 0;

    virtual void beep() = 0;

    // Choosers return nothing when the user cancels.
    virtual std::optional<std::string> openFile(const FileChoice& choice) = 0;
    virtual std::optional<std::string> saveFile(const FileChoice& choice) = 0;
    virtual std::optional<std::string> chooseFolder(const std::string& prompt, const std::string& start) = 0;
};

} // namespace kestra
