// kestractl export IN.mem OUT.csv [--format bank|ids|search|bandplan|chirp] [--bank N] [--dir FOLDER]

#include "kestractl.h"

#include "core/memfile.h"
#include "core/text.h"
#include "importexport/chirp.h"
#include "importexport/convert.h"
#include "importexport/csvexport.h"
#include "platform/fake/scripteddialogs.h"
#include "platform/qt/qtprofilestore.h"

#include <iostream>

namespace kestra::ctl {

int exportCsv(const Args& words)
{
    Args args = words;
    std::vector<std::pair<std::string, std::string>> options;
    if (!takeOptions(args, {"--format", "--bank", "--dir"}, {}, options)) return 2;
    if (args.size() != 2) return usage("export takes IN.mem and OUT.csv");
    std::string format = "bank", folder = AppFolder::standard().path().string();
    int bank = -1;
    for (const auto& [name, value] : options) {
        if (name == "--format") {
            format = value;
        } else if (name == "--dir") {
            folder = value;
        } else {
            const long long n = IntVal(value);
            if (value == "D" || value == "d") bank = kDummyBank;
            else if (n >= 1 && n <= 10 && numText(n) == value) bank = static_cast<int>(n - 1);
            else return usage("--bank takes 1 to 10 or D");
        }
    }
    ScriptedDialogs dialogs;
    dialogs.onMessage = [](const ScriptedDialogs::Shown& shown) { std::cerr << utf8FromCp1252(shown.text) << '\n'; };
    QtProfileStore profile;
    HeadlessTable h(folder, dialogs, profile);
    if (!h.table.loadmem(args[0])) return 1;
    h.table.createbank();

    std::string text;
    if (format == "bank") {
        text = csvExportText(h.doc, bank < 0 ? CsvExportKind::AllBanks : CsvExportKind::CurrentBank, bank);
    } else if (format == "ids") {
        if (bank == kDummyBank) return usage("the Dummy bank has no ID list");
        text = csvExportText(h.doc, bank < 0 ? CsvExportKind::IdsAllBanks : CsvExportKind::IdsCurrentBank, bank);
    } else if (format == "search") {
        text = csvExportText(h.doc, CsvExportKind::Search, 0);
    } else if (format == "bandplan") {
        text = csvExportText(h.doc, CsvExportKind::Bandplan, 0);
    } else if (format == "chirp") {
        text = chirpExportText(h.doc, bank);
    } else {
        return usage("unknown export format " + format);
    }
    if (const std::string problem = writeFileAtomic(args[1], text); !problem.empty()) {
        std::cerr << problem << '\n';
        return 1;
    }
    return 0;
}

} // namespace kestra::ctl
