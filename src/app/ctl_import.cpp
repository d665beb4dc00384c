// kestractl import IN OUT.mem [--format csv|text|html|icf|mem|chirp] [--bank N] [--base IN.mem] [--dir FOLDER]

#include "kestractl.h"

#include "core/memfile.h"
#include "core/text.h"
#include "importexport/chirp.h"
#include "importexport/convert.h"
#include "importexport/harvest.h"
#include "importexport/icf.h"
#include "importexport/memimport.h"
#include "platform/fake/scripteddialogs.h"
#include "platform/qt/qtprofilestore.h"

#include <iostream>

namespace kestra::ctl {

namespace {

// "1".."10" or "D" as a bank index; -1 for anything else.
int bankIndex(const std::string& text)
{
    if (text == "D" || text == "d") return kDummyBank;
    const long long n = IntVal(text);
    return n >= 1 && n <= 10 && numText(n) == text ? static_cast<int>(n - 1) : -1;
}

std::string formatOf(const std::string& path, std::string_view bytes)
{
    const std::string lower = asciiLower(path);
    auto endsWith = [&](const char* ext) { return lower.size() >= std::string_view(ext).size() && lower.ends_with(ext); };
    if (endsWith(".icf")) return "icf";
    if (endsWith(".mem")) return "mem";
    if (endsWith(".htm") || endsWith(".html")) return "html";
    if (endsWith(".csv")) {
        const std::string first(bytes.substr(0, bytes.find('\n')));
        return contains(first, "Location") && contains(first, "Frequency") ? "chirp" : "csv";
    }
    return "text";
}

} // namespace

int import(const Args& words)
{
    Args args = words;
    std::vector<std::pair<std::string, std::string>> options;
    if (!takeOptions(args, {"--format", "--bank", "--base", "--dir"}, {}, options)) return 2;
    if (args.size() != 2) return usage("import takes IN and OUT.mem");
    std::string format, base, folder = AppFolder::standard().path().string();
    int bank = 0;
    bool hasBank = false;
    for (const auto& [name, value] : options) {
        if (name == "--format") format = value;
        else if (name == "--base") base = value;
        else if (name == "--dir") folder = value;
        else if ((bank = bankIndex(value)) < 0) return usage("--bank takes 1 to 10 or D");
        else hasBank = true;
    }
    std::string bytes;
    if (!readFileBytes(args[0], bytes)) {
        std::cerr << "cannot read " << args[0] << '\n';
        return 1;
    }
    if (format.empty()) format = formatOf(args[0], bytes);

    ScriptedDialogs dialogs;
    dialogs.onMessage = [](const ScriptedDialogs::Shown& shown) { std::cerr << utf8FromCp1252(shown.text) << '\n'; };
    QtProfileStore profile;
    HeadlessTable h(folder, dialogs, profile);
    if (!base.empty() && !h.table.loadmem(base)) return 1;
    h.table.createbank();

    if (format == "csv" || format == "text" || format == "html") {
        FrequencyHarvest harvest;
        harvest.scanfile(args[0]);
        const int written = exportToTable(h.doc, harvest.items(), bank, 1);
        std::cout << harvest.items().size() << " frequencies found, " << written << " written to bank "
                  << (bank == kDummyBank ? std::string("D") : numText(bank + 1)) << '\n';
    } else if (format == "chirp") {
        const ChirpImport result = chirpImport(h.table, bytes, bank);
        std::cout << utf8FromCp1252(result.report()) << '\n';
        if (!result.readable) return 1;
    } else if (format == "icf") {
        IcfData data;
        if (!decodeIcf(bytes, h.settings.khz9, data)) {
            std::cerr << "Not a valid file!\n";
            return 1;
        }
        // Import All banks: ICF banks A to H into banks 1 to 8.
        for (int b = 0; b < kIcfBanks; ++b) applyIcfBank(h.doc, data, b, b);
        std::cout << "ICF banks A to H written to banks 1 to 8\n";
    } else if (format == "mem") {
        const MemSource source = readMemSource(args[0], bytes);
        if (!source.ok()) {
            std::cerr << utf8FromCp1252(source.problem) << '\n';
            return 1;
        }
        // Import All banks of both windows, or the one bank given, to the same bank.
        const bool one = hasBank;
        for (int b = 0; b < kChannelBanks; ++b) {
            if (one && b != bank) continue;
            applyMemBank(h.doc, source.doc, MemImportKind::Frequencies, b, b);
            applyMemBank(h.doc, source.doc, MemImportKind::TrunkIds, b, b);
        }
        std::cout << (one ? "bank " + numText(bank + 1) : std::string("banks 1 to 10"))
                  << ": channels and trunk IDs taken from " << args[0] << '\n';
    } else {
        return usage("unknown import format " + format);
    }
    h.table.fillgrid();
    std::string out = args[1];
    if (!contains(out, ".MEM") && !contains(out, ".mem")) out += ".mem";
    return h.table.savemem(out) ? 0 : 1;
}

} // namespace kestra::ctl
