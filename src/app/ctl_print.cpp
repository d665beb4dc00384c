// kestractl print IN.mem OUT.pdf --report bank|all|memsearch|search|bandplan|ids
//     [--bank N] [--model MODEL] [--date TEXT]

#include "kestractl.h"

#include "core/memfile.h"
#include "core/setupfile.h"
#include "platform/cp1252.h"
#include "platform/qt/qtprinter.h"
#include "platform/qt/qtprofilestore.h"
#include "print/reports.h"

#include <QGuiApplication>

#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <optional>

namespace kestra::ctl {

namespace {

struct ReportName {
    const char* name;
    PrintItem item;
};
constexpr ReportName kReports[] = {
    {"bank", PrintItem::ActiveBank},   {"all", PrintItem::AllBanks},        {"memsearch", PrintItem::MemoryAndSearch},
    {"search", PrintItem::SearchData}, {"bandplan", PrintItem::Bandplan},   {"ids", PrintItem::TrunkIds},
};

} // namespace

int print(const Args& words)
{
    Args args = words;
    std::vector<std::pair<std::string, std::string>> options;
    if (!takeOptions(args, {"--report", "--bank", "--model", "--date"}, {}, options)) return 2;
    if (args.size() != 2) return usage("print takes IN.mem and OUT.pdf");

    std::optional<PrintItem> item;
    int bank = 0;
    bool bankGiven = false;
    std::optional<Model> model;
    ReportJob job;
    job.date = reportDate();
    for (const auto& [name, value] : options) {
        if (name == "--report") {
            for (const ReportName& r : kReports)
                if (value == r.name) item = r.item;
            if (!item) return usage("unknown report " + value);
        } else if (name == "--bank") {
            const std::string digits = value.find_first_not_of("0123456789") == std::string::npos ? value : "";
            bank = digits.empty() || digits.size() > 2 ? 0 : std::atoi(digits.c_str());
            if (bank < 1 || bank > 11) return usage("--bank takes 1 to 10, or 11 for the Dummy bank");
            bankGiven = true;
        } else if (name == "--model") {
            model = modelFromName(value);
            if (!model) return usage("unknown model " + value);
        } else {
            job.date = value;
        }
    }
    if (!item) return usage("print needs --report");
    // The IDs of every bank unless one bank is named.
    if (*item == PrintItem::TrunkIds && !bankGiven) item = PrintItem::AllTrunkIds;
    job.item = *item;
    job.bank = bankGiven ? bank - 1 : 0;
    if (job.item == PrintItem::TrunkIds && job.bank > 9) return usage("--bank takes 1 to 10 for trunk IDs");

    // Fonts and PDF need Qt Gui, not a screen.
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM") && qEnvironmentVariableIsEmpty("DISPLAY")
        && qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    int argc = 1;
    char name[] = "kestractl";
    char* argv[] = {name, nullptr};
    QGuiApplication app(argc, argv);

    Document doc;
    std::string bytes;
    if (!readFileBytes(args[0], bytes)) {
        std::cerr << "kestractl: cannot read " << args[0] << '\n';
        return 1;
    }
    const MemLoadResult loaded = readMem(doc, bytes, 0);
    if (loaded.status != MemLoadStatus::Loaded) {
        std::cerr << "kestractl: " << loaded.message() << '\n';
        return 1;
    }
    if (model) {
        doc.model = ModelSwitches::of(*model);
    } else {
        QtProfileStore profile;
        doc.model = storedModel(profile);
    }
    job.fileName = cp1252FromUtf8(std::filesystem::path(args[0]).filename().string());

    const int error = QtPrinter::writePdf(args[1], [&](Printer& printer) { return printReport(printer, doc, job); });
    if (error) {
        std::cerr << printerFailureMessage(error) << '\n';
        return 1;
    }
    return 0;
}

} // namespace kestra::ctl
