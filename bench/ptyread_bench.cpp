// Read Data of bank 1 of a full BC785D through a pseudo-terminal, at delay1 25,
// against the protocol floor.
//
// The wall run is what `kestractl read --banks 1` does on a real port: the
// QSerialPort port on the terminal of `kestractl sim`, the Qt scheduler, the
// engine at 19200 baud and the read pipeline. The floor is the very same run
// on the in-process scanner in virtual time with no reply latency: there a run
// takes exactly the delays of its exchanges plus their characters on the wire,
// ten bits each at 19200 baud, both ways. The ratio of the two is what the
// real port, the terminal and the event loop add.
//
// Run by hand: build/bench/kestra_ptyread_bench [--keep]
// It prints one line of figures and the channels read wrongly; the exit status
// is 1 when a run did not finish or a channel came back wrong. With --keep the
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
#include "link/exchange.h"
#include "link/readpipeline.h"
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
// As long as kestractl read waits for the opening reads.
constexpr double kOpeningSeconds = 60;
// The whole wall run, opening included.
constexpr auto kWallLimit = std::chrono::minutes(5);

// Bank 1 full: a frequency on the 12.5 kHz raster, a tag of all 16
// characters and the channel settings, different from one channel to the next.
Document fullBank1()
{
    Document doc;
    doc.clearstores();
    doc.model = ModelSwitches::of(Model::BC785D);
    doc.banktags[0] = "Bench bank 1";
    for (int r = 1; r <= 100; ++r) {
        auto& line = doc.memdata[0][r];
        const int tenthsKhz = 1'510'000 + r * 125;  // 151.0000 MHz + r * 12.5 kHz
        char freq[16], tag[32];
        std::snprintf(freq, sizeof freq, "%04d.%04d", tenthsKhz / 10'000, tenthsKhz % 10'000);
        std::snprintf(tag, sizeof tag, "Chan %03d Tac %03d", r, (r * 7) % 1000);
        line[col::freq] = freq;
        line[col::tag] = tag;
        for (int c : {col::trunk, col::record, col::recordHidden, col::beep, col::lockout, col::atten}) line[c] = "0";
        line[col::delay] = std::to_string(r % 4);
        line[col::tone] = std::to_string(1 + (r - 1) % 38);
        line[col::mode] = "0";
        line[col::step] = "3";
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

// The steps of `kestractl read --banks 1` from opening the window to the end
// of the run, on any port and scheduler; `clock` gives seconds.
Run readBank1(SerialPort& port, Scheduler& scheduler, const RunUntil& runUntil, const std::function<double()>& clock,
              Document& doc, const fs::path& folder)
{
    Run run;
    ScriptedDialogs dialogs;  // every question answered yes
    dialogs.onMessage = [&run](const ScriptedDialogs::Shown& shown) { run.messages.push_back(shown.text); };
    Settings settings;
    settings.expert = 0;
    settings.delay1 = kDelay1;
    ExchangeEngine engine(port, scheduler, dialogs, settings, 1, kBaud, ExchangeEngine::Caption::ReadData);
    ReadPipeline pipeline(engine, doc, dialogs, scheduler, folder);
    ReadPipeline::Options options;
    options.scope = ReadPipeline::Scope::SingleBank;
    options.bank = 0;

    const double start = clock();
    engine.openForm(doc.model.bc785d);
    pipeline.open();
    runUntil([&] { return engine.commstate == 0; }, kOpeningSeconds);
    run.openingSeconds = clock() - start;
    if (pipeline.readData(options))
        run.finished = runUntil([&] { return pipeline.finished || engine.stopflag == 1; },
                                std::chrono::duration<double>(kWallLimit).count()) &&
                       pipeline.finished;
    run.seconds = clock() - start;
    port.close();
    return run;
}

Document emptyBc785d()
{
    Document doc;
    doc.clearstores();
    doc.model = ModelSwitches::of(Model::BC785D);
    return doc;
}

// Channels of bank 1 whose frequency or tag did not come back as made.
int channelsDiffering(const Document& made, const Document& read, const char* which)
{
    int differ = 0;
    for (int r = 1; r <= 100; ++r) {
        const auto& m = made.memdata[0][r];
        const auto& g = read.memdata[0][r];
        if (g[col::freq] == m[col::freq] && g[col::tag] == m[col::tag]) continue;
        if (++differ <= 5)
            std::cout << which << " channel " << r << ": read " << g[col::freq] << " \"" << g[col::tag] << "\", made "
                      << m[col::freq] << " \"" << m[col::tag] << "\"\n";
    }
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

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);

    char folderName[] = "/tmp/kestra-ptyread-XXXXXX";
    if (!::mkdtemp(folderName)) {
        std::cerr << "cannot make a temporary folder\n";
        return 1;
    }
    const fs::path folder = folderName;
    const bool keep = argc > 1 && std::string(argv[1]) == "--keep";
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

    const Document made = fullBank1();
    const std::string mem = memText(made, Settings{});
    const fs::path memFile = folder / "bank1.mem";
    if (const std::string error = writeFileAtomic(memFile, mem); !error.empty()) {
        std::cerr << "cannot write " << memFile << ": " << error << '\n';
        return 1;
    }

    // ---- the floor: virtual time, no reply latency ----
    sim::VirtualScanner scanner(Model::BC785D, kBaud);
    sim::FillReport report;
    if (sim::loadMemFile(scanner.memory(), mem, &report).status != MemLoadStatus::Loaded ||
        !report.refusedChannels.empty()) {
        std::cerr << "the scanner did not take the MEM file whole\n";
        return 1;
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
    Document virtualDoc = emptyBc785d();
    Run floor;
    {
        VirtualPort port(virtualTime, device);
        floor = readBank1(
            port, virtualTime,
            [&](const std::function<bool()>& done, double seconds) {
                return virtualTime.runUntil(done, static_cast<std::int64_t>(seconds * 1000));
            },
            [&] { return virtualTime.now() / 1000.0; }, virtualDoc, folder);
    }
    printMessages("floor", floor);

    // ---- the wall run: QSerialPort on the terminal of kestractl sim ----
    const fs::path simLog = folder / "sim.log";
    test::SimProcess sim({"--model", "BC785D", "--load", memFile.string(), "--log", simLog.string()},
                         (folder / "sim.err").string());
    if (sim.device().empty()) {
        std::ifstream err(folder / "sim.err");
        std::cerr << "kestractl sim did not start: " << std::string(std::istreambuf_iterator<char>(err), {}) << '\n';
        return 1;
    }
    Document wallDoc = emptyBc785d();
    Run wall;
    {
        QtScheduler scheduler;
        QtSerialPort port(sim.device());
        const auto deadline = Clock::now() + kWallLimit;
        wall = readBank1(
            port, scheduler,
            [&](const std::function<bool()>& done, double seconds) {
                const auto until = std::min(deadline, Clock::now() + std::chrono::duration_cast<Clock::duration>(
                                                                         std::chrono::duration<double>(seconds)));
                while (!done() && Clock::now() < until) scheduler.wait(0.01);
                return done();
            },
            [] { return std::chrono::duration<double>(Clock::now().time_since_epoch()).count(); }, wallDoc, folder);
    }
    sim.stop();
    printMessages("wall", wall);
    const int wallCommands = commandsInLog(simLog);

    const int floorDiffer = channelsDiffering(made, virtualDoc, "floor");
    const int wallDiffer = channelsDiffering(made, wallDoc, "wall");
    std::printf("exchanges: %d commands in the virtual run, %d in the log of kestractl sim\n", virtualCommands,
                wallCommands);
    // Both charge the commands' wire time: kestractl sim hears a command when
    // its last character would be through a cable at the scanner's speed.
    std::printf("of the floor, %.2f s is the commands' own wire time (%zu characters)\n", commandBytes * 10.0 / kBaud,
                commandBytes);
    std::printf("opening reads: wall %.2f s, floor %.2f s\n", wall.openingSeconds, floor.openingSeconds);
    if (!floor.finished) std::printf("the virtual run did not finish\n");
    if (!wall.finished) std::printf("the run through the terminal did not finish\n");
    std::printf("bank 1 of a full BC785D at delay1 %d: wall %.2f s, floor %.2f s, ratio %.2f (target 1.10 at most)\n",
                kDelay1, wall.seconds, floor.seconds, floor.seconds > 0 ? wall.seconds / floor.seconds : 0.0);
    std::printf("channels differing: wall %d, floor %d\n", wallDiffer, floorDiffer);
    return floor.finished && wall.finished && wallDiffer == 0 && floorDiffer == 0 ? 0 : 1;
}
