// kestractl detect [--dir FOLDER]
//
// The AutoDetect of the Rs232 setup without a window: every bound port of
// FOLDER at every speed, in real time. The built-in virtual scanner answers as
// the model last chosen in the program (the per-user store; UBC3300 when none
// was ever chosen), as it does in the program.

#include "kestractl.h"

#include "core/text.h"
#include "link/portsetup.h"
#include "platform/appfolder.h"
#include "platform/qt/qtprofilestore.h"
#include "platform/qt/qtscheduler.h"
#include "platform/qt/qtserialport.h"
#include "sim/programports.h"

#include <QCoreApplication>

#include <iostream>

namespace kestra::ctl {

int detect(const Args& words)
{
    Args args = words;
    std::vector<std::pair<std::string, std::string>> options;
    if (!takeOptions(args, {"--dir"}, {}, options)) return 2;
    if (!args.empty()) return usage("detect takes no " + args.front());
    std::filesystem::path folder = AppFolder::standard().path();
    for (const auto& option : options) folder = option.second;

    int argc = 1;
    char name[] = "kestractl";
    char* argv[] = {name, nullptr};
    QCoreApplication app(argc, argv);

    QtProfileStore profile;
    ModelSwitches model = storedModel(profile);
    const int baud = allowedBaud(readCom250(folder).baud, model);

    QtScheduler scheduler;
    ProgramPorts ports(scheduler, folder, &QtSerialPort::openDevice);
    const DetectResult r = autodetect(ports.factory(model.model()), scheduler, model, baud);
    if (!r.found) {
        std::cerr << kNotDetected << '\n';
        return 1;
    }
    std::cout << "port " << r.port << ", baud " << r.baud << ", model " << modelName(modelOfOption(r.model)) << '\n';
    return 0;
}

} // namespace kestra::ctl
