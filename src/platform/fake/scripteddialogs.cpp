#include "platform/fake/scripteddialogs.h"

#include <utility>

namespace kestra {

Answer ScriptedDialogs::affirmative(Buttons buttons)
{
    switch (buttons) {
    case Buttons::Ok:
    case Buttons::OkCancel:
        return Answer::Ok;
    case Buttons::YesNo:
    case Buttons::YesNoCancel:
        return Answer::Yes;
    case Buttons::RetryCancel:
    case Buttons::AbortRetryIgnore:
        return Answer::Retry;
    }
    return Answer::Ok;
}

bool ScriptedDialogs::offers(Buttons buttons, Answer answer)
{
    switch (buttons) {
    case Buttons::Ok:
        return answer == Answer::Ok;
    case Buttons::OkCancel:
        return answer == Answer::Ok || answer == Answer::Cancel;
    case Buttons::YesNo:
        return answer == Answer::Yes || answer == Answer::No;
    case Buttons::YesNoCancel:
        return answer == Answer::Yes || answer == Answer::No || answer == Answer::Cancel;
    case Buttons::RetryCancel:
        return answer == Answer::Retry || answer == Answer::Cancel;
    case Buttons::AbortRetryIgnore:
        return answer == Answer::Abort || answer == Answer::Retry || answer == Answer::Ignore;
    }
    return false;
}

Answer ScriptedDialogs::message(const std::string& text, const std::string& title, Buttons buttons, Icon icon)
{
    Answer answer = Answer::Ok;
    if (buttons != Buttons::Ok) {
        if (!answers.empty()) {
            answer = answers.front();
            answers.pop_front();
        } else if (fallback_ && offers(buttons, *fallback_)) {
            answer = *fallback_;
        } else {
            answer = affirmative(buttons);
        }
    }
    shown.push_back({text, title.empty() ? std::string(kApplicationTitle) : title, buttons, icon, answer});
    if (onMessage) onMessage(shown.back());
    return answer;
}

std::optional<std::string> ScriptedDialogs::nextFile(ChooserKind kind, FileChoice choice)
{
    asked.push_back({kind, std::move(choice)});
    if (files.empty()) return std::nullopt;
    std::optional<std::string> name = std::move(files.front());
    files.pop_front();
    return name;
}

std::optional<std::string> ScriptedDialogs::openFile(const FileChoice& choice)
{
    return nextFile(ChooserKind::Open, choice);
}

std::optional<std::string> ScriptedDialogs::saveFile(const FileChoice& choice)
{
    return nextFile(ChooserKind::Save, choice);
}

std::optional<std::string> ScriptedDialogs::chooseFolder(const std::string& prompt, const std::string& start)
{
    FileChoice choice;
    choice.title = prompt;
    choice.folder = start;
    return nextFile(ChooserKind::Folder, std::move(choice));
}

} // namespace kestra
