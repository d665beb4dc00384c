// kestractl: the program's work without a window, for scripts and tests.

#include "core/convert.h"
#include "core/text.h"

#include "platform/appfolder.h"
#include "platform/fake/scripteddialogs.h"
#include "platform/qt/qtprofilestore.h"

#include <cstring>
#include <iostream>
#include <string>
#include <vector>

namespace {

const char* kUsage =
    "usage: kestractl COMMAND [OPTIONS]\n"
    "\n"
    "commands:\n"
    "  convert IN OUT [--model MODEL] [--dir FOLDER]\n"
    "      open IN as the main window opens it (a KESTRA MEM file, a LORVEN MEM file,\n"
    "      or the CSV layout of Open Special) and save it as OUT.\n"
    "      MODEL is BC250D, BC296D, BC785D, BC796D or UBC3300 (default: the model\n"
    "      last chosen in the program). FOLDER holds setup.ini and the other files\n"
    "      of the program (default: the program's own folder).\n";

int usage(const std::string& problem)
{
    if (!problem.empty()) std::cerr << "kestractl: " << problem << "\n\n";
    std::cerr << kUsage;
    return 2;
}

int runConvert(const std::vector<std::string>& args)
{
    kestra::ConvertRequest request;
    request.folder = kestra::AppFolder::standard().path().string();
    std::vector<std::string> positional;
    for (std::size_t i = 0; i < args.size(); ++i) {
        const std::string& a = args[i];
        if (a == "--model" || a == "--dir") {
            if (i + 1 >= args.size()) return usage(a + " needs a value");
            const std::string& value = args[++i];
            if (a == "--dir") {
                request.folder = value;
            } else {
                request.model = kestra::modelFromName(value);
                if (!request.model) return usage("unknown model " + value);
            }
        } else if (a.rfind("--", 0) == 0) {
            return usage("unknown option " + a);
        } else {
            positional.push_back(a);
        }
    }
    if (positional.size() != 2) return usage("convert takes IN and OUT");
    request.in = positional[0];
    request.out = positional[1];

    kestra::ScriptedDialogs dialogs;
    dialogs.onMessage = [](const kestra::ScriptedDialogs::Shown& shown) {
        std::cerr << kestra::utf8FromCp1252(shown.text) << '\n';
    };
    kestra::QtProfileStore profile;
    return kestra::convertMem(request, dialogs, profile) ? 0 : 1;
}

} // namespace

int main(int argc, char** argv)
{
    std::vector<std::string> args(argv + 1, argv + argc);
    if (args.empty() || args[0] == "--help" || args[0] == "-h") return usage(args.empty() ? "no command" : "");
    const std::string command = args[0];
    args.erase(args.begin());
    if (command == "convert") return runConvert(args);
    return usage("unknown command " + command);
}
