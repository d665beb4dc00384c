// kestractl read OUT.mem [--port P] [--banks all|N|A-B] [--data LIST] [--merge] [--no-verify] [--base IN.mem] [--dir FOLDER]
// kestractl send IN.mem  [--port P] [--banks all|N|A-B] [--data LIST] [--dir FOLDER]
//
// Read Data and Send Data without a window: the same engine and pipelines,
// the confirmations answered with yes, progress on stderr when it is a terminal.

#include "kestractl.h"
#include "ctl_line.h"

#include "sim/virtualscanner.h"

#include "core/memfile.h"
#include "core/setupfile.h"
#include "core/text.h"
#include "editor/freqrules.h"
#include "link/exchange.h"
#include "link/portsetup.h"
#include "link/readpipeline.h"
#include "link/sendpipeline.h"
#include "platform/appfolder.h"
#include "platform/fake/scripteddialogs.h"
#include "platform/fake/virtualscheduler.h"
#include "platform/qt/qtprofilestore.h"
#include "platform/qt/qtscheduler.h"
#include "platform/qt/qtserialport.h"
#include "sim/programports.h"

#include <QCoreApplication>

#include <iostream>

namespace kestra::ctl {

namespace {

struct Transfer {
    bool read = true;
    std::string file;
    std::string port;
    std::string banks = "all";
    std::string base;
    std::string folder = AppFolder::standard().path().string();
    bool merge = false;
    bool noVerify = false;  // take every reply as it comes
    std::string data = "channels";
};

// --data: "all" or a list of channels, ids, trunk, search; the window's four
// ticks. False for a word that is none of them.
bool takeKinds(const std::string& list, ReadPipeline::Options& o)
{
    o.frequencies = o.trunkIds = o.trunkSettings = o.searchEvents = false;
    if (list == "all") {
        o.frequencies = o.trunkIds = o.trunkSettings = o.searchEvents = true;
        return true;
    }
    std::size_t from = 0;
    while (from <= list.size()) {
        const std::size_t comma = std::min(list.find(',', from), list.size());
        const std::string word = list.substr(from, comma - from);
        if (word == "channels") o.frequencies = true;
        else if (word == "ids") o.trunkIds = true;
        else if (word == "trunk") o.trunkSettings = true;
        else if (word == "search") o.searchEvents = true;
        else return false;
        from = comma + 1;
    }
    return true;
}

// --banks: "all", a bank 1..10, or a channel range "A-B".
std::optional<ReadPipeline::Options> scopeOf(const std::string& banks)
{
    ReadPipeline::Options o;
    if (banks == "all") {
        o.scope = ReadPipeline::Scope::AllBanks;
        return o;
    }
    const auto dash = banks.find('-');
    if (dash != std::string::npos && dash > 0 && dash + 1 < banks.size()) {
        o.scope = ReadPipeline::Scope::ChannelRange;
        o.rangeStart = banks.substr(0, dash);
        o.rangeEnd = banks.substr(dash + 1);
        return o;
    }
    const long long n = IntVal(banks);
    if (banks.find_first_not_of("0123456789") != std::string::npos || n < 1 || n > 10) return std::nullopt;
    o.scope = ReadPipeline::Scope::SingleBank;
    o.bank = static_cast<int>(n - 1);
    return o;
}

int run(const Transfer& t)
{
    int argc = 1;
    char name[] = "kestractl";
    char* argv[] = {name, nullptr};
    QCoreApplication app(argc, argv);

    ScriptedDialogs dialogs;  // every question answered yes
    std::string failure;
    dialogs.onMessage = [&failure](const ScriptedDialogs::Shown& shown) {
        std::cerr << utf8FromCp1252(shown.text) << '\n';
        if (shown.buttons == Buttons::Ok) failure = shown.text;
    };
    const std::filesystem::path folder = t.folder;
    Settings settings;
    readSetup(settings, folder, readCom250(folder).usbc);
    settings.expert = 0;
    if (t.noVerify) settings.verifyread = 0;
    ComSettings com = readCom250(folder);

    Document doc;
    doc.clearstores();
    QtProfileStore profile;
    ModelSwitches model = storedModel(profile);
    doc.model = model;

    const std::string source = t.read ? t.base : t.file;
    if (!source.empty()) {
        std::string bytes;
        MemLoadResult loaded{MemLoadStatus::Invalid, 0, 0, 0, 53};
        if (readFileBytes(source, bytes)) loaded = readMem(doc, bytes, 0);
        if (loaded.status != MemLoadStatus::Loaded) {
            std::cerr << loaded.message() << '\n';
            return 1;
        }
    }

    // The port: a number of the binding, a device path, or sim:MODEL.
    std::string problem;
    ScannerLine line = openScannerLine(t.port, folder, model, problem);
    if (!problem.empty()) return usage(problem);
    if (!line.port) return 1;
    com.port = line.com.port;
    com.baud = line.com.baud;
    Scheduler* scheduler = line.scheduler.get();
    SerialPort* port = line.port.get();
    ProgramPorts* ports = line.ports.get();

    ExchangeEngine engine(*port, *scheduler, dialogs, settings, com.port, com.baud,
                          t.read ? ExchangeEngine::Caption::ReadData : ExchangeEngine::Caption::SendData);
    auto options = scopeOf(t.banks);
    if (!options) return usage("--banks takes all, a bank 1 to 10, or a range A-B");
    options->merge = t.merge;
    if (!takeKinds(t.data, *options)) return usage("--data takes all, or channels, ids, trunk and search joined by commas");

    ProgressBar bar;
    auto progress = [&] { bar.show(engine.status.progress, engine.status.text4); };
    const double day = 24 * 3600;
    bool finished = false;
    std::vector<std::string> troubles;  // what a finished run could not do right
    if (t.read) {
        ReadPipeline pipeline(engine, doc, dialogs, *scheduler, folder);
        engine.openForm(doc.model.bc785d);
        if (!engine.portOpened) return 1;
        pipeline.open();
        runUntil(*scheduler, [&] { return engine.commstate == 0; }, 60);
        if (!pipeline.readData(*options)) return 1;
        finished = runUntil(*scheduler, [&] { progress(); return pipeline.finished || engine.stopflag == 1; }, day) &&
                   pipeline.finished;
        if (settings.synctagsr == 1) pipeline.applyTags(doc);
        troubles = pipeline.troubles;
        if (!pipeline.tagsread) troubles.push_back("The bank tags were not read.");
        if (!pipeline.typesread) troubles.push_back("The trunk types were not read.");
    } else {
        SendPipeline pipeline(engine, doc, settings, dialogs, *scheduler, folder);
        engine.openForm(doc.model.bc785d);
        if (!engine.portOpened) return 1;
        pipeline.open();
        runUntil(*scheduler, [&] { return engine.commstate == 0; }, 60);
        if (!pipeline.sendData(*options)) return 1;
        finished = runUntil(*scheduler, [&] { progress(); return pipeline.finished || engine.stopflag == 1; }, day) &&
                   pipeline.finished;
        troubles = pipeline.troubles;
        if (engine.refusals > 0) troubles.push_back(engine.refusalsLine());
    }
    bar.finish();
    port->close();
    if (ports) ports->saveVirtualScanner();
    if (!finished) {
        if (failure.empty()) std::cerr << "The transfer did not finish.\n";
        return 1;
    }
    for (const std::string& trouble : troubles) std::cerr << trouble << '\n';
    if (t.read) {
        checktable(doc, settings);
        std::string out = t.file;
        if (!contains(out, ".MEM") && !contains(out, ".mem")) out += ".mem";
        if (const std::string error = writeFileAtomic(memSavePath(out), memText(doc, settings)); !error.empty()) {
            std::cerr << "The file " << out << " could not be written (" << error << ").\n";
            return 1;
        }
    }
    // The last line: what was done, and how often the line had to be asked again.
    if (!quiet) std::cerr << engine.finishedLine() << '\n';
    return troubles.empty() ? 0 : 1;
}

int transfer(const Args& words, bool read)
{
    Args args = words;
    std::vector<std::pair<std::string, std::string>> options;
    const std::vector<std::string> valued = read ? std::vector<std::string>{"--port", "--banks", "--data", "--base", "--dir"}
                                                 : std::vector<std::string>{"--port", "--banks", "--data", "--dir"};
    const std::vector<std::string> flags = read ? std::vector<std::string>{"--merge", "--no-verify"} : std::vector<std::string>{};
    if (!takeOptions(args, valued, flags, options)) return 2;
    if (args.size() != 1) return usage(read ? "read takes OUT.mem" : "send takes IN.mem");
    Transfer t;
    t.read = read;
    t.file = args[0];
    for (const auto& [name, value] : options) {
        if (name == "--port") t.port = value;
        if (name == "--banks") t.banks = value;
        if (name == "--data") t.data = value;
        if (name == "--base") t.base = value;
        if (name == "--dir") t.folder = value;
        if (name == "--merge") t.merge = true;
        if (name == "--no-verify") t.noVerify = true;
    }
    return run(t);
}

} // namespace

int read(const Args& args) { return transfer(args, true); }
int send(const Args& args) { return transfer(args, false); }

} // namespace kestra::ctl
