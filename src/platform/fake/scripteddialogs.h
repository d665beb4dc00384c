#pragma once
// Dialogs that nobody sees: every message is recorded, questions take their
// answers from a script, file choosers take their names from another. Used by
// the tests and by kestractl, where there is no screen.

#include "platform/dialogs.h"

#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace kestra {

class ScriptedDialogs : public Dialogs {
public:
    struct Shown {
        std::string text;
        std::string title;  // as shown: the application title when none was given
        Buttons buttons = Buttons::Ok;
        Icon icon = Icon::None;
        Answer answer = Answer::Ok;  // what the box returned
    };

    enum class ChooserKind { Open, Save, Folder };
    struct Asked {
        ChooserKind kind = ChooserKind::Open;
        FileChoice choice;  // for a folder: title is the prompt, folder the start
    };

    // Every message box, in order.
    std::vector<Shown> shown;
    // Answers for boxes with more than one button, taken from the front.
    std::deque<Answer> answers;
    // Names for the choosers, taken from the front; nothing (or an empty
    // script) means the user cancelled.
    std::deque<std::optional<std::string>> files;
    // Every chooser opened, in order.
    std::vector<Asked> asked;
    int beeps = 0;
    // Called for every message box once its answer is known, e.g. to print it.
    std::function<void(const Shown&)> onMessage;

    // The answer of a question when the script has run out. A fallback that the
    // box does not offer gives the box's affirmative answer instead.
    void setFallback(std::optional<Answer> answer) { fallback_ = answer; }

    Answer message(const std::string& text, const std::string& title = {}, Buttons buttons = Buttons::Ok,
                   Icon icon = Icon::None) override;
    void beep() override { ++beeps; }
    std::optional<std::string> openFile(const FileChoice& choice) override;
    std::optional<std::string> saveFile(const FileChoice& choice) override;
    std::optional<std::string> chooseFolder(const std::string& prompt, const std::string& start) override;

    // The answer a box gives when the user accepts: Ok, Yes or Retry.
    static Answer affirmative(Buttons buttons);
    static bool offers(Buttons buttons, Answer answer);

private:
    std::optional<std::string> nextFile(ChooserKind kind, FileChoice choice);

    std::optional<Answer> fallback_;
};

} // namespace kestra
