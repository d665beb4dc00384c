// kestractl convert IN OUT [--model MODEL] [--dir FOLDER]

#include "kestractl.h"

#include "core/text.h"
#include "importexport/convert.h"
#include "platform/appfolder.h"
#include "platform/fake/scripteddialogs.h"
#include "platform/qt/qtprofilestore.h"

#include <iostream>

namespace kestra::ctl {

int convert(const Args& words)
{
    Args args = words;
    std::vector<std::pair<std::string, std::string>> options;
    if (!takeOptions(args, {"--model", "--dir"}, {}, options)) return 2;
    ConvertRequest request;
    request.folder = AppFolder::standard().path().string();
    for (const auto& [name, value] : options) {
        if (name == "--dir") {
            request.folder = value;
        } else {
            request.model = modelFromName(value);
            if (!request.model) return usage("unknown model " + value);
        }
    }
    if (args.size() != 2) return usage("convert takes IN and OUT");
    request.in = args[0];
    request.out = args[1];

    ScriptedDialogs dialogs;
    dialogs.onMessage = [](const ScriptedDialogs::Shown& shown) { std::cerr << utf8FromCp1252(shown.text) << '\n'; };
    QtProfileStore profile;
    return convertMem(request, dialogs, profile) ? 0 : 1;
}

} // namespace kestra::ctl
