// A transfer through a pseudo-terminal against the protocol floor, in one
// of two runs:
//   read      Read Data of bank 1 of a full BC785D, at delay1 25;
//   send-all  Send Data with every kind ticked (channels, trunk ID lists,
//             trunk bank settings, search ranges) of a full BC796D, at
//             delay1 25.
//
// The wall run is what `kestractl read` / `send` does on a real port: the
// QSerialPort port on the terminal of `kestractl sim`, the Qt scheduler, the
// engine at 19200 baud and the pipeline. The floor is the very same run on
// the in-process scanner in virtual time with no reply latency: there a run
// takes exactly the delays of its exchanges plus their characters on the
// wire, ten bits each at 19200 baud, both ways. The ratio of the two is what
// the real port, the terminal and the event loop add.
//
// Run by hand: build/bench/kestra_pty_bench read|send-all [--keep]
// It prints one line of figures and what came out wrong; the exit status is
// 1 when a run did not finish or the result is wrong. With --keep the
// temporary folder stays, with the log of kestractl sim (sim.log) and the
// commands of the virtual run at their virtual times (floor.log) side by side.

// The scanner's headers come before Qt's, which takes "slots" for a word of its own.
#include "sim/documentmapping.h"
#include "sim/virtualport.h"
#include "sim/virtualscanner.h"

#include "core/cellcodes.h"
#include "core/document.h"
#include "core/memfile.h"
#include "core/settings.h"
#include "core/text.h"
#include "trunk/trunkids.h"
#include "link/exchange.h"
#include "link/readpipeline.h"
#include "link/sendpipeline.h"
#include "platform/fake/scripteddialogs.h"
#include "platform/fake/virtualscheduler.h"
#include "platform/qt/qtscheduler.h"
#include "platform/qt/qtserialport.h"
#include "sim/simprocess.h"

#include <QCoreApplication>

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iostream>
#include <string>
#include <vector>

#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace kestra;
namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

namespace {

constexpr int kBaud = 19200;
constexpr int kDelay1 = 25;
// As long as kestractl waits for the opening reads.
constexpr double kOpeningSeconds = 60;

enum class Mode { Read, SendAll };

// A frequency on the 12.5 kHz raster from 151.0000 MHz, n steps up.
std::string rasterFreq(int base, int n)
{
    const int tenthsKhz = base + n * 125;
    char freq[16];
    std::snprintf(freq, sizeof freq, "%04d.%04d", tenthsKhz / 10'000, tenthsKhz % 10'000);
    return freq;
}

// A full bank: a frequency on the raster, a tag of all 16 characters and the
// channel settings, different from one channel to the next.
void fillBank(Document& doc, int bank)
{
    for (int r = 1; r <= 100; ++r) {
        auto& line = doc.memdata[bank][r];
        char tag[32];
        std::snprintf(tag, sizeof tag, "Bank%02d Ch%03d %02d", bank + 1, r, (r * 7) % 100);
        line[col::freq] = rasterFreq(1'510'000 + bank * 20'000, r);
        line[col::tag] = tag;
        for (int c : {col::trunk, col::record, col::recordHidden, col::beep, col::lockout, col::atten}) line[c] = "0";
        line[col::delay] = std::to_string(r % 4);
        line[col::tone] = std::to_string(1 + (r - 1) % 38);
        line[col::mode] = "0";
        line[col::step] = "3";
    }
}

Document fullBank1()
{
    Document doc;
    doc.clearstores();
    doc.model = ModelSwitches::of(Model::BC785D);
    doc.banktags[0] = "Bench bank 1";
    fillBank(doc, 0);
    return doc;
}

// Everything a BC796D holds, full: 1000 channels, a trunk system in nine
// banks (every type), each with its settings and (but EDACS SCT) ten full ID
// lists with tags and flags, and ten search ranges.
Document fullBc796d()
{
    Document doc;
    doc.clearstores();
    doc.model = ModelSwitches::of(Model::BC796D);
    for (int b = 0; b < 10; ++b) {
        doc.banktags[b] = "Bench bank " + std::to_string(b + 1);
        fillBank(doc, b);
        const int type = b < 9 ? b + 1 : 0;
        TrunkSystem& sys = doc.trunkset[b];
        sys.trunktype = std::to_string(type);
        sys.trunkfields.fill("0");
        if (type == 0) continue;
        for (int f : {1, 2, 6, 8}) sys.trunkfields[f] = "1";
        sys.trunkfields[4] = "1";
        sys.trunkfields[5] = std::to_string(1 + b % 7);
        if (type == 4 || type == 5)
            for (int s = 0; s < 3; ++s) {
                sys.trunkblocks[s][0] = rasterFreq(type == 4 ? 4'060'000 : 1'360'000, s * 80);
                sys.trunkblocks[s][1] = "012.5";
                sys.trunkblocks[s][2] = std::to_string(380 + s);
            }
        if (type == 9) continue;
        for (int l = 0; l < 10; ++l) doc.trunklisttags[b][l] = "List " + std::to_string(l + 1);
        for (int n = 0; n < 100; ++n) {
            auto& row = doc.trunkids[b][n];
            row[0] = normaliseId(type, type == 2 ? std::to_string(100 + n) + "-01" : std::to_string(16 + n * 16));
            row[1] = "Talkgroup " + std::to_string(b * 100 + n);
            row[2] = "0";
            row[3] = n % 2 ? "1" : "0";
        }
    }
    for (int r = 0; r < 10; ++r) {
        doc.srcdata[r][0] = rasterFreq(1'500'000 + r * 100'000, 0);
        doc.srcdata[r][1] = rasterFreq(1'550'000 + r * 100'000, 0);
        doc.srcdata[r][2] = std::to_string(1 + r % 5);
        doc.srcdata[r][3] = std::to_string(1 + r % 9);
        doc.srcdata[r][4] = "Range " + std::to_string(r + 1);
    }
    return doc;
}

using RunUntil = std::function<bool(const std::function<bool()>& done, double seconds)>;

struct Run {
    bool finished = false;
    double openingSeconds = 0;  // from openForm to the end of the opening reads
    double seconds = 0;         // from openForm to the end of the run
    std::vector<std::string> messages;
};

// The steps of `kestractl read --banks 1` or `kestractl send --data all`
// from opening the window to the end of the run, on any port and scheduler;
// `clock` gives seconds.
Run transfer(Mode mode, SerialPort& port, Scheduler& scheduler, const RunUntil& runUntil,
             const std::function<double()>& clock, Document& doc, const fs::path& folder, double limit)
{
    Run run;
    ScriptedDialogs dialogs;  // every question answered yes
    dialogs.onMessage = [&run](const ScriptedDialogs::Shown& shown) { run.messages.push_back(shown.text); };
    Settings settings;
    settings.expert = 0;
    settings.delay1 = kDelay1;
    const bool read = mode == Mode::Read;
    ExchangeEngine engine(port, scheduler, dialogs, settings, 1, kBaud,
                          read ? ExchangeEngine::Caption::ReadData : ExchangeEngine::Caption::SendData);
    ReadPipeline::Options options;
    if (read) {
        options.scope = ReadPipeline::Scope::SingleBank;
        options.bank = 0;
    } else {
        options.scope = ReadPipeline::Scope::AllBanks;
        options.trunkIds = options.trunkSettings = options.searchEvents = true;
    }
    const double start = clock();
    engine.openForm(doc.model.bc785d);
    const auto finishedRun = [&](auto& pipeline, auto begin) {
        pipeline.open();
        runUntil([&] { return engine.commstate == 0; }, kOpeningSeconds);
        run.openingSeconds = clock() - start;
        if (begin())
            run.finished = runUntil([&] { return pipeline.finished || engine.stopflag == 1; }, limit) && pipeline.finished;
    };
    if (read) {
        ReadPipeline pipeline(engine, doc, dialogs, scheduler, folder);
        finishedRun(pipeline, [&] { return pipeline.readData(options); });
    } else {
        SendPipeline pipeline(engine, doc, settings, dialogs, scheduler, folder);
        finishedRun(pipeline, [&] { return pipeline.sendData(options); });
    }
    run.seconds = clock() - start;
    port.close();
    return run;
}

// What came out wrong: channels of the banks, and for a whole send the IDs,
// trunk types and search limits; the first few are printed.
int differing(const Document& made, const Document& got, Mode mode, const char* which)
{
    int differ = 0;
    const auto report = [&](bool same, const std::string& what) {
        if (same) return;
        if (++differ <= 5) std::cout << which << ": " << what << " differs\n";
    };
    const int banks = mode == Mode::Read ? 1 : 10;
    for (int b = 0; b < banks; ++b) {
        for (int r = 1; r <= 100; ++r) {
            const auto& m = made.memdata[b][r];
            const auto& g = got.memdata[b][r];
            report(g[col::freq] == m[col::freq] && g[col::tag] == m[col::tag], "channel " + std::to_string(b * 100 + r));
        }
        if (mode == Mode::Read) continue;
        report(IntVal(made.trunkset[b].trunktype) == IntVal(got.trunkset[b].trunktype), "trunk type of bank " + std::to_string(b + 1));
        for (int n = 0; n < 100; ++n)
            report(trim(made.trunkids[b][n][0]) == trim(got.trunkids[b][n][0]) &&
                       trim(made.trunkids[b][n][1]) == trim(got.trunkids[b][n][1]),
                   "ID " + std::to_string(n) + " of bank " + std::to_string(b + 1));
    }
    for (int r = 0; r < 10 && mode == Mode::SendAll; ++r)
        report(Val(made.srcdata[r][0]) == Val(got.srcdata[r][0]) && Val(made.srcdata[r][1]) == Val(got.srcdata[r][1]),
               "search range " + std::to_string(r + 1));
    return differ;
}

// Command lines the scanner heard, in the log of `kestractl sim`.
int commandsInLog(const fs::path& log)
{
    std::ifstream in(log, std::ios::binary);
    int commands = 0;
    for (std::string line; std::getline(in, line);)
        if (const auto sp = line.find(' '); sp != std::string::npos && line.compare(sp, 3, " < ") == 0) ++commands;
    return commands;
}

void printMessages(const char* which, const Run& run)
{
    for (const std::string& m : run.messages) std::cout << which << " message: " << m << '\n';
}

Document emptyOf(Model model)
{
    Document doc;
    doc.clearstores();
    doc.model = ModelSwitches::of(model);
    return doc;
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    const std::string modeWord = argc > 1 ? argv[1] : "";
    if (modeWord != "read" && modeWord != "send-all") {
        std::cerr << "usage: kestra_pty_bench read|send-all [--keep]\n";
        return 2;
    }
    const Mode mode = modeWord == "read" ? Mode::Read : Mode::SendAll;
    const Model model = mode == Mode::Read ? Model::BC785D : Model::BC796D;
    const char* modelName = mode == Mode::Read ? "BC785D" : "BC796D";
    const double limit = mode == Mode::Read ? 300 : 4 * 3600;

    char folderName[] = "/tmp/kestra-ptybench-XXXXXX";
    if (!::mkdtemp(folderName)) {
        std::cerr << "cannot make a temporary folder\n";
        return 1;
    }
    const fs::path folder = folderName;
    const bool keep = argc > 2 && std::string(argv[2]) == "--keep";
    struct RemoveFolder {
        fs::path path;
        bool keep;
        ~RemoveFolder()
        {
            std::error_code ec;
            if (keep)
                std::printf("kept %s\n", path.c_str());
            else
                fs::remove_all(path, ec);
        }
    } removeFolder{folder, keep};

    const Document made = mode == Mode::Read ? fullBank1() : fullBc796d();
    const std::string mem = memText(made, Settings{});
    const fs::path memFile = folder / "made.mem";
    if (const std::string error = writeFileAtomic(memFile, mem); !error.empty()) {
        std::cerr << "cannot write " << memFile << ": " << error << '\n';
        return 1;
    }

    // ---- the floor: virtual time, no reply latency ----
    // A read finds the document in the scanner; a send an empty scanner.
    sim::VirtualScanner scanner(model, kBaud);
    if (mode == Mode::Read) {
        sim::FillReport report;
        if (sim::loadMemFile(scanner.memory(), mem, &report).status != MemLoadStatus::Loaded ||
            !report.refusedChannels.empty()) {
            std::cerr << "the scanner did not take the MEM file whole\n";
            return 1;
        }
    }
    VirtualScheduler virtualTime;
    int virtualCommands = 0;
    std::size_t commandBytes = 0;
    std::ofstream floorLog(folder / "floor.log", std::ios::binary);
    auto device = std::make_shared<VirtualDevice>();
    device->latencyMs = 0;
    device->respond = [&](std::string_view bytes) {
        std::string heard;
        for (char c : bytes)
            if (c != '\r' && c != '\n') heard += c;
        for (char c : bytes) virtualCommands += c == '\r';
        commandBytes += bytes.size();
        floorLog << virtualTime.now() << " < " << heard << '\n';
        return scanner.receive(bytes);
    };
    device->baud = [&] { return scanner.baudRate(); };
    Document virtualDoc = mode == Mode::Read ? emptyOf(model) : made;
    Run floor;
    {
        VirtualPort port(virtualTime, device);
        floor = transfer(
            mode, port, virtualTime,
            [&](const std::function<bool()>& done, double seconds) {
                return virtualTime.runUntil(done, static_cast<std::int64_t>(seconds * 1000));
            },
            [&] { return virtualTime.now() / 1000.0; }, virtualDoc, folder, limit);
    }
    printMessages("floor", floor);
    const Document floorResult = mode == Mode::Read ? virtualDoc : sim::documentOf(scanner.memory());

    // ---- the wall run: QSerialPort on the terminal of kestractl sim ----
    const fs::path simLog = folder / "sim.log";
    const fs::path dump = folder / "dump.mem";
    std::vector<std::string> words = {"--model", modelName, "--log", simLog.string()};
    if (mode == Mode::Read) words.insert(words.end(), {"--load", memFile.string()});
    else words.insert(words.end(), {"--dump", dump.string()});
    Document wallDoc = mode == Mode::Read ? emptyOf(model) : made;
    Run wall;
    {
        test::SimProcess sim(words, (folder / "sim.err").string());
        if (sim.device().empty()) {
            std::ifstream err(folder / "sim.err");
            std::cerr << "kestractl sim did not start: " << std::string(std::istreambuf_iterator<char>(err), {}) << '\n';
            return 1;
        }
        QtScheduler scheduler;
        QtSerialPort port(sim.device());
        const auto deadline = Clock::now() + std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(limit));
        wall = transfer(
            mode, port, scheduler,
            [&](const std::function<bool()>& done, double seconds) {
                const auto until = std::min(deadline, Clock::now() + std::chrono::duration_cast<Clock::duration>(
                                                                         std::chrono::duration<double>(seconds)));
                while (!done() && Clock::now() < until) scheduler.wait(0.01);
                return done();
            },
            [] { return std::chrono::duration<double>(Clock::now().time_since_epoch()).count(); }, wallDoc, folder,
            limit);
        sim.stop();
    }
    printMessages("wall", wall);
    const int wallCommands = commandsInLog(simLog);
    Document wallResult = wallDoc;
    if (mode == Mode::SendAll) {
        wallResult = emptyOf(model);
        std::ifstream in(dump, std::ios::binary);
        const std::string bytes{std::istreambuf_iterator<char>(in), {}};
        if (readMem(wallResult, bytes, 0).status != MemLoadStatus::Loaded) std::printf("the scanner's dump cannot be read\n");
    }

    const int floorDiffer = differing(made, floorResult, mode, "floor");
    const int wallDiffer = differing(made, wallResult, mode, "wall");
    std::printf("exchanges: %d commands in the virtual run, %d in the log of kestractl sim\n", virtualCommands,
                wallCommands);
    // Both charge the commands' wire time: kestractl sim hears a command when
    // its last character would be through a cable at the scanner's speed.
    std::printf("of the floor, %.2f s is the commands' own wire time (%zu characters)\n", commandBytes * 10.0 / kBaud,
                commandBytes);
    std::printf("opening reads: wall %.2f s, floor %.2f s\n", wall.openingSeconds, floor.openingSeconds);
    if (!floor.finished) std::printf("the virtual run did not finish\n");
    if (!wall.finished) std::printf("the run through the terminal did not finish\n");
    std::printf("%s of a full %s at delay1 %d: wall %.2f s, floor %.2f s, ratio %.3f (target 1.10 at most)\n",
                mode == Mode::Read ? "bank 1" : "send --data all", modelName, kDelay1, wall.seconds, floor.seconds,
                floor.seconds > 0 ? wall.seconds / floor.seconds : 0.0);
    std::printf("differing: wall %d, floor %d\n", wallDiffer, floorDiffer);
    return floor.finished && wall.finished && wallDiffer == 0 && floorDiffer == 0 ? 0 : 1;
}
