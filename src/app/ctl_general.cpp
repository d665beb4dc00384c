// kestractl general read FILE.mem [--port P] [--dir FOLDER]
// kestractl general send FILE.mem [--port P] [--dir FOLDER] [--set "LABEL=CHOICE" ...]
//
// The general parameters window without a window. read: the nine system
// options are printed, one "Label: choice" a line ("Key Beep: off"; "-" when
// the scanner showed none of the choices), and the FIPS codes go into
// FILE.mem (made when missing, else only its codes change). send: the FIPS
// codes of FILE.mem, and each option given with --set ("Key Beep=off"; the
// label without its colon, the choice as the window lists it, either in any
// case); options not given are left as the scanner has them.

#include "kestractl.h"
#include "ctl_line.h"

#include "core/memfile.h"
#include "core/setupfile.h"
#include "core/text.h"
#include "link/exchange.h"
#include "link/generalparams.h"
#include "platform/appfolder.h"
#include "platform/fake/scripteddialogs.h"
#include "platform/qt/qtprofilestore.h"

#include <QCoreApplication>

#include <iostream>

namespace kestra::ctl {

namespace {

std::string lower(std::string text)
{
    for (char& c : text) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return text;
}

// "Key Beep=off" into the option's place and the choice's index.
bool takeSetting(const std::string& text, std::array<int, kGeneralOptions>& values, std::string& problem)
{
    const auto equals = text.find('=');
    const std::string label = lower(trim(text.substr(0, equals))) + ":";
    const std::string choice = equals == std::string::npos ? "" : lower(trim(text.substr(equals + 1)));
    const auto& options = generalOptions();
    for (int i = 0; i < kGeneralOptions; ++i) {
        if (lower(options[i].label) != label) continue;
        for (std::size_t c = 0; c < options[i].choices.size(); ++c)
            if (lower(options[i].choices[c]) == choice) {
                values[i] = static_cast<int>(c);
                return true;
            }
        problem = std::string(options[i].label) + " takes";
        for (const char* c : options[i].choices) problem += std::string(" \"") + c + "\"";
        return false;
    }
    problem = "no option \"" + text.substr(0, equals) + "\" (e.g. \"Key Beep=off\")";
    return false;
}

} // namespace

int general(const Args& words)
{
    Args args = words;
    std::vector<std::pair<std::string, std::string>> options;
    if (!takeOptions(args, {"--port", "--dir", "--set"}, {}, options)) return 2;
    if (args.size() != 2 || (args[0] != "read" && args[0] != "send")) return usage("general takes read or send, and FILE.mem");
    const bool read = args[0] == "read";
    const std::string file = args[1];
    std::string portText;
    std::filesystem::path folder = AppFolder::standard().path();
    std::array<int, kGeneralOptions> wanted;
    wanted.fill(-1);
    for (const auto& [name, value] : options) {
        if (name == "--port") portText = value;
        if (name == "--dir") folder = value;
        if (name == "--set") {
            if (read) return usage("--set goes with general send");
            std::string problem;
            if (!takeSetting(value, wanted, problem)) return usage(problem);
        }
    }

    int argc = 1;
    char name[] = "kestractl";
    char* argv[] = {name, nullptr};
    QCoreApplication app(argc, argv);
    ScriptedDialogs dialogs;
    dialogs.onMessage = [](const ScriptedDialogs::Shown& shown) { std::cerr << utf8FromCp1252(shown.text) << '\n'; };
    Settings settings;
    readSetup(settings, folder, readCom250(folder).usbc);
    QtProfileStore profile;
    const ModelSwitches model = storedModel(profile);

    Document doc;
    doc.clearstores();
    doc.model = model;
    std::string bytes;
    const bool haveFile = readFileBytes(file, bytes);
    if (haveFile || !read) {
        const MemLoadResult loaded = haveFile ? readMem(doc, bytes, 0) : MemLoadResult{MemLoadStatus::Invalid, 0, 0, 0, 53};
        if (loaded.status != MemLoadStatus::Loaded) {
            std::cerr << loaded.message() << '\n';
            return 1;
        }
    }

    std::string problem;
    ScannerLine line = openScannerLine(portText, folder, model, problem);
    if (!problem.empty()) return usage(problem);
    if (!line.port) return 1;
    ExchangeEngine engine(*line.port, *line.scheduler, dialogs, settings, line.com.port, line.com.baud,
                          ExchangeEngine::Caption::ReadData);
    engine.openForm(model.bc785d);
    if (!engine.portOpened) return 1;
    GeneralParams params(engine, model.bc785d);

    // Every step waits on the line's clock, virtual time for the built-in scanner.
    bool ok = false;
    if (read) {
        ok = params.read([](int step) { std::cerr << "\rstep " << step << " of 11" << std::flush; });
        std::cerr << '\n';
    } else {
        params.values = wanted;
        ok = params.send(doc.fipscodes);
    }
    line.port->close();
    if (line.ports) line.ports->saveVirtualScanner();
    if (!ok) {
        std::cerr << "The scanner did not answer to the end.\n";
        return 1;
    }
    if (!read) return 0;

    const auto& all = generalOptions();
    for (int i = 0; i < kGeneralOptions; ++i)
        std::cout << all[i].label << ' ' << (params.values[i] < 0 ? "-" : all[i].choices[params.values[i]]) << '\n';
    for (int n = 1; n <= kFipsBoxes; ++n)
        doc.fipscodes[static_cast<std::size_t>(n)] = params.fips[n - 1].empty() ? "000000" : params.fips[n - 1];
    std::string out = file;
    if (!contains(out, ".MEM") && !contains(out, ".mem")) out += ".mem";
    if (const std::string error = writeFileAtomic(memSavePath(out), memText(doc, settings)); !error.empty()) {
        std::cerr << "The file " << out << " could not be written (" << error << ").\n";
        return 1;
    }
    return 0;
}

} // namespace kestra::ctl
