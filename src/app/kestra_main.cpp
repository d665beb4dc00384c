// kestra: the desktop program. Start-up runs in this order: the per-user
// values and the settings files, the splash window info, and when info has
// finished, the Form Load of the main window memtab. The process ends when the
// event loop does, after memtab has unloaded.

#include "core/document.h"
#include "core/grid.h"
#include "core/memtable.h"
#include "core/settings.h"
#include "core/setupfile.h"
#include "editor/freqrules.h"
#include "link/portsetup.h"
#include "platform/qt/qtserialport.h"
#include "sim/programports.h"
#include "ui/mainwindow.h"
#include "ui/splashwindow.h"
#include "ui/widgets/toolbaricons.h"

#include "platform/qt/qtappfolder.h"
#include "platform/qt/qtdialogs.h"
#include "platform/qt/qtprofilestore.h"
#include "platform/qt/qtscheduler.h"

#include <QApplication>

int main(int argc, char* argv[])
{
    QApplication app(argc, argv);
    QApplication::setApplicationName("kestra");
    QApplication::setOrganizationName(kestra::kProfileApplication);
    // No display name: the desktop would add it to every caption, and the
    // captions name the program already ("Kestra Console for Uniden ...").
    QApplication::setDesktopFileName("kestra");
    QApplication::setWindowIcon(kestra::programIcon());

    kestra::AppFolder folder = kestra::defaultAppFolder();
    folder.ensure();
    kestra::QtProfileStore profile;
    kestra::QtDialogs dialogs;
    kestra::QtScheduler scheduler;

    kestra::Settings settings;
    kestra::Document doc;
    kestra::Grid grid;
    kestra::MemTable table(doc, settings, grid, {dialogs, profile, scheduler, folder});
    kestra::installTableCheck(table);

    // The per-user folders and model switches, com250.ini and setup.ini (with
    // the delays of a USB converter), then the check of the port number.
    table.readProfile();
    table.readSettingsFiles();
    // A port number out of 1..19 is told, and the program goes on: the Rs232
    // setup is where the user puts it right.
    if (const std::string message = kestra::comportMessage(table.com.port); !message.empty()) dialogs.message(message);

    // The port numbers and what they are bound to; it outlives the window,
    // which opens its ports through it.
    kestra::ProgramPorts ports(scheduler, folder.path(), &kestra::QtSerialPort::openDevice);
    kestra::MainWindow memtab(table, folder);
    memtab.setPorts(&ports);
    dialogs.setParentWidget(&memtab);
    kestra::SplashWindow info(doc, [&memtab] {
        memtab.formLoad();
        memtab.show();
    });
    info.centerOnScreen();
    info.show();

    return app.exec();
}
