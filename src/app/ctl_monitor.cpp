// kestractl monitor [--port P] [--duration S] [--dir FOLDER] [--log FILE.csv] [--record DIR]
//
// The Virtual Control without a window: the same poll loop and decoder on the
// scanner's port, printing one line per change of the scanner's state: the
// milliseconds since the start, a blank, and the state (see
// vcontrol/statereport.h). Runs until Ctrl+C or the end of the duration;
// exit status 1 when contact is lost for good.
//
// --log: the hit log runs on the loop as in the window with "Log History Data
// to disk:" ticked, writing its lines to FILE.csv (replaced), with the Log
// Setup options of vfo.ini and the tags of lastused.sav in the folder.
//
// --record: the audio recorder runs as in the window with "Audio Recording
// ON", one WAV file per transmission in DIR, in the quality and post busy
// delay of audio.ini; each file saved is named on stderr. Without a capture
// device it says so and the monitor goes on without recording.

#include "kestractl.h"

#include "core/memfile.h"
#include "core/setupfile.h"
#include "core/text.h"
#include "platform/appfolder.h"
#include "platform/fake/scripteddialogs.h"
#include "platform/qt/qtprofilestore.h"
#include "platform/qt/qtrecorder.h"
#include "platform/qt/qtscheduler.h"
#include "platform/qt/qtserialport.h"
#include "sim/programports.h"
#include "vcontrol/audiorecorder.h"
#include "vcontrol/controlloop.h"
#include "vcontrol/hitlog.h"
#include "vcontrol/statereport.h"
#include "vcontrol/vfoini.h"

#include <QCoreApplication>

#include <atomic>
#include <csignal>
#include <iostream>

namespace kestra::ctl {

namespace {

std::atomic<bool> interrupted{false};

void onInterrupt(int) { interrupted = true; }

} // namespace

int monitor(const Args& words)
{
    Args args = words;
    std::vector<std::pair<std::string, std::string>> options;
    if (!takeOptions(args, {"--port", "--duration", "--dir", "--log", "--record"}, {}, options)) return 2;
    if (!args.empty()) return usage("monitor takes no " + args.front());
    std::filesystem::path folder = AppFolder::standard().path();
    std::string portText;
    std::string logFile;
    std::string recordDir;
    double duration = 0;  // 0: until Ctrl+C
    for (const auto& [name, value] : options) {
        if (name == "--dir") folder = value;
        if (name == "--port") portText = value;
        if (name == "--log") logFile = value;
        if (name == "--record") recordDir = value;
        if (name == "--duration") {
            duration = static_cast<double>(IntVal(value));
            if (value.find_first_not_of("0123456789") != std::string::npos || duration <= 0)
                return usage("--duration takes whole seconds above 0");
        }
    }

    int argc = 1;
    char name[] = "kestractl";
    char* argv[] = {name, nullptr};
    QCoreApplication app(argc, argv);

    ScriptedDialogs dialogs;
    dialogs.onMessage = [](const ScriptedDialogs::Shown& shown) { std::cerr << utf8FromCp1252(shown.text) << '\n'; };
    ComSettings com = readCom250(folder);
    Settings settings;
    readSetup(settings, folder, com.usbc);
    QtProfileStore profile;
    ModelSwitches model = storedModel(profile);

    QtScheduler scheduler;
    ProgramPorts ports(scheduler, folder, &QtSerialPort::openDevice);
    std::unique_ptr<SerialPort> port;
    const bool number = !portText.empty() && portText.find_first_not_of("0123456789") == std::string::npos;
    if (portText.empty() || number) {
        com.port = portText.empty() ? com.port : static_cast<int>(IntVal(portText));
        port = ports.port(com.port, model.model());
    } else {
        port = std::make_unique<QtSerialPort>(portText);
    }
    if (!port) {
        std::cerr << "The selected comport is already in use or not available in your system!\n";
        return 1;
    }

    LinkSettings link;
    link.port = com.port;
    link.baud = allowedBaud(com.baud, model);
    link.delay1 = settings.delay1;
    const VfoIni vfo = VfoIni::load(folder);
    link.retryforever = vfo.retryforever();
    link.encrypted = {settings.enc1 == 1, settings.enc2 == 1, settings.enc3 == 1, settings.enc4 == 1};
    ControlLoop loop(scheduler, dialogs, std::move(port), link);

    const std::int64_t start = scheduler.now();
    std::string shown;
    const auto report = [&] {
        const std::string now = stateReport(loop.state(), loop.pollfast());
        if (now == shown) return;
        shown = now;
        std::cout << (scheduler.now() - start) << ' ' << utf8FromCp1252(now) << '\n' << std::flush;
    };
    loop.hooks.displayChanged = report;
    loop.hooks.replyTaken = [&](int, const std::string&) { report(); };

    Document doc;
    if (!logFile.empty() || !recordDir.empty()) {
        std::string bytes;
        if (readFileBytes(folder / "lastused.sav", bytes)) readMem(doc, bytes, 0);
    }
    std::unique_ptr<HitLog> hits;
    if (!logFile.empty()) {
        hits = std::make_unique<HitLog>(doc, [&loop](const std::string& command) { loop.send(command); }, localNow);
        hits->options = HitLogOptions::fromIni(vfo);
        hits->logname = cp1252FromUtf8(logFile);
        if (!hits->setLogging(true)) {
            std::cerr << "Cannot write " << logFile << '\n';
            return 1;
        }
        hits->attach(scheduler, loop);
    }
    QtRecorder capture;
    std::unique_ptr<AudioRecorder> recorder;
    if (!recordDir.empty() && !capture.hasDevice()) {
        std::cerr << AudioRecorder::kNoDevice << '\n';
    } else if (!recordDir.empty()) {
        std::error_code error;
        std::filesystem::create_directories(recordDir, error);
        recorder = std::make_unique<AudioRecorder>(scheduler, dialogs, capture, loop.state(), doc, folder);
        recorder->setAudioPath(cp1252FromUtf8(recordDir));
        std::filesystem::path saved;
        recorder->changed = [&] {
            if (recorder->lastFile().empty() || recorder->lastFile() == saved) return;
            saved = recorder->lastFile();
            std::cerr << "recorded " << saved.string() << '\n';
        };
        recorder->load();
        recorder->startButton();
    }

    std::signal(SIGINT, onInterrupt);
    std::signal(SIGTERM, onInterrupt);
    loop.open(folder, model);
    doc.model = model;
    const std::int64_t end = start + static_cast<std::int64_t>(duration * 1000);
    while (!interrupted && !loop.lost() && (duration <= 0 || scheduler.now() < end)) scheduler.wait(0.05);
    const bool lost = loop.lost();
    if (recorder) {
        recorder->stopButton();  // a transmission still being recorded is saved
        recorder->close();
    }
    loop.close();
    return lost ? 1 : 0;
}

} // namespace kestra::ctl
