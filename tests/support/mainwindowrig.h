#pragma once
// The main window memtab built as the program builds it, in a temporary
// folder with dialogs answered by script and time that runs when a test says
// so: the rig the widget tests share, and the ways they reach into it (a grid
// cell as the model shows it, a modal window answered while its loop runs).

#include "core/cellcodes.h"
#include "core/memtable.h"
#include "sim/programports.h"
#include "ui/mainwindow.h"

#include "platform/fake/memoryprofilestore.h"
#include "platform/fake/scripteddialogs.h"
#include "platform/fake/virtualscheduler.h"

#include "support/testfiles.h"

#include <QTableView>
#include <QAction>
#include <QApplication>
#include <QTimer>
#include <QWidget>

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace kestra::test {

// How the rig starts.
struct RigOptions {
    // The window closes without asking first (option4).
    bool quietExit = false;
    // setup.ini, com250.ini and the other files of the folder are read
    // before the window loads.
    bool readSettingsFiles = false;
    // The window gets the program's ports (the virtual scanner on com1).
    bool withPorts = false;
    // Runs before the profile is read: files and profile entries of the start.
    std::function<void()> beforeTable;
    // Runs once the table (and the ports) are made, before Form Load.
    std::function<void()> beforeWindow;

    // The program as a user starts it to talk to a scanner: its files read,
    // the ports attached, no question at exit.
    static RigOptions connected()
    {
        RigOptions options;
        options.quietExit = true;
        options.readSettingsFiles = true;
        options.withPorts = true;
        return options;
    }
};

struct MainWindowRig {
    using Options = RigOptions;

    MainWindowRig() = default;
    MainWindowRig(const MainWindowRig&) = delete;
    MainWindowRig& operator=(const MainWindowRig&) = delete;
    ~MainWindowRig() { close(); }

    // Builds the table, the ports if asked for and the window; loads and shows
    // it. A window that does not come up is a fatal failure.
    void start(const Options& options = {});
    // start() with the document on model; configure, if given, changes the
    // settings before Form Load.
    void startAs(Model model, const std::function<void(Settings&)>& configure = {});
    // Drops the window, the ports and the table, in that order.
    void close();

    // A grid cell as the model shows it.
    QString shown(int row, int col) const;

    // The grid addressed by store column, as a user of the layout sees it.
    QTableView* view() const;
    int column(int storeColumn) const;
    // A grid cell by store column, as the model shows it.
    QString cell(int row, int storeColumn) const { return shown(row, column(storeColumn)); }
    void select(int row, int storeColumn);
    // Triggers a menu entry, which must be there and usable.
    void trigger(const char* name);
    // Types the keys into the grid on a cell, then Enter.
    void typeInto(int row, int storeColumn, const char* keys);
    // The toolbar button for a menu entry (the first toolbar searched first), or null.
    QAction* toolbarButton(const char* key) const;
    // A mouse click on a bank tab.
    void clickTab(int index);
    // The texts of the message boxes shown so far.
    std::vector<std::string> messages() const;
    // The CR LF lines of a file in the folder.
    std::vector<std::string> fileLines(const char* name) const;

    // Runs open, which shows a modal window of type W, and acts on that window
    // while its loop runs. A window that act leaves open is cancelled, so that
    // a failing check never hangs the run; no such window is a failure.
    template <class W>
    void whileOpen(const std::function<void()>& open, const std::function<void(W*)>& act)
    {
        bool ran = false;
        QTimer::singleShot(0, window.get(), [&] {
            ran = true;
            W* dialog = qobject_cast<W*>(QApplication::activeModalWidget());
            if (!dialog) {
                ADD_FAILURE() << "the expected modal window is not open";
                if (QWidget* other = QApplication::activeModalWidget()) other->close();
                return;
            }
            EXPECT_EQ(dialog->parent(), window.get());
            act(dialog);
            if (dialog->isVisible()) {
                ADD_FAILURE() << "the window was left open";
                dialog->reject();
            }
        });
        open();
        EXPECT_TRUE(ran);
        EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
    }
    template <class W>
    void whileOpen(const char* entryName, const std::function<void(W*)>& act)
    {
        whileOpen<W>([this, entryName] { window->action(entryName)->trigger(); }, act);
    }

    // Triggers the menu entry and runs body on the modal window of type W it
    // opens, once that window is up; what body leaves open is closed. False
    // when no such window opened (a guard may stop the entry before).
    template <class W>
    bool ifOpened(const char* entryName, const std::function<void(W*)>& body)
    {
        bool opened = false;
        QTimer timer;
        timer.setSingleShot(true);
        QObject::connect(&timer, &QTimer::timeout, [&] {
            auto* dialog = qobject_cast<W*>(QApplication::activeModalWidget());
            if (!dialog) return;
            opened = true;
            body(dialog);
            if (dialog->isVisible()) dialog->reject();
        });
        timer.start(0);
        window->action(entryName)->trigger();
        timer.stop();
        return opened;
    }

    TempDir dir;
    VirtualScheduler scheduler;
    ScriptedDialogs dialogs;
    MemoryProfileStore profile;
    Settings settings;
    Document doc;
    Grid grid;
    std::unique_ptr<MemTable> table;
    std::unique_ptr<ProgramPorts> ports;
    std::unique_ptr<MainWindow> window;
};

// A channel in the store: a frequency and a tag, every code cell "0".
inline void putChannel(Document& doc, int bank, int row, const char* freq, const char* tag)
{
    auto& line = doc.memdata[bank][row];
    line[col::freq] = freq;
    line[col::tag] = tag;
    for (int c : {col::trunk, col::record, col::delay, col::recordHidden, col::beep, col::lockout, col::atten,
                  col::mode, col::step, col::tone})
        line[c] = "0";
}

// A test fixture on the rig, started with the document on model M.
template <Model M>
struct ModelWindowTest : ::testing::Test, MainWindowRig {
    void SetUp() override { startAs(M); }
};

} // namespace kestra::test
