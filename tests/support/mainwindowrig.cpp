#include "support/mainwindowrig.h"

#include "platform/qt/qtserialport.h"

#include "ui/widgets/gridmodel.h"

#include <QTabBar>
#include <QTest>
#include <QToolBar>

namespace kestra::test {

void MainWindowRig::start(const Options& options)
{
    if (options.quietExit) settings.option4 = 1;
    if (options.beforeTable) options.beforeTable();
    table = std::make_unique<MemTable>(doc, settings, grid,
                                       MemTable::Services{dialogs, profile, scheduler, AppFolder(dir.path())});
    table->readProfile();
    if (options.readSettingsFiles) table->readSettingsFiles();
    if (options.withPorts) ports = std::make_unique<ProgramPorts>(scheduler, dir.path(), &QtSerialPort::openDevice);
    if (options.beforeWindow) options.beforeWindow();
    window = std::make_unique<MainWindow>(*table, AppFolder(dir.path()));
    if (ports) window->setPorts(ports.get());
    window->formLoad();
    window->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(window.get()));
}

void MainWindowRig::startAs(Model model, const std::function<void(Settings&)>& configure)
{
    Options options;
    options.beforeWindow = [&] {
        doc.model = ModelSwitches::of(model);
        if (configure) configure(settings);
    };
    start(options);
}

void MainWindowRig::close()
{
    window.reset();
    ports.reset();
    table.reset();
}

QString MainWindowRig::shown(int row, int col) const
{
    return window->gridModel()->data(window->gridModel()->indexOfCell(row, col)).toString();
}

void MainWindowRig::trigger(const char* name)
{
    QAction* entry = window->action(name);
    ASSERT_NE(entry, nullptr) << name;
    ASSERT_TRUE(entry->isEnabled()) << name;
    entry->trigger();
}

QAction* MainWindowRig::toolbarButton(const char* key) const
{
    for (QToolBar* bar : {window->toolbar1(), window->toolbar2()})
        for (QAction* a : bar->actions())
            if (a->property("key").toString() == key) return a;
    return nullptr;
}

void MainWindowRig::clickTab(int index)
{
    QTabBar* tabs = window->tabbed1();
    QTest::mouseClick(tabs, Qt::LeftButton, {}, tabs->tabRect(index).center());
}

std::vector<std::string> MainWindowRig::messages() const
{
    std::vector<std::string> texts;
    for (const auto& box : dialogs.shown) texts.push_back(box.text);
    return texts;
}

std::vector<std::string> MainWindowRig::fileLines(const char* name) const
{
    return crlfLines(readBytes(dir.path() / name));
}

QTableView* MainWindowRig::view() const { return window->memtabel(); }

int MainWindowRig::column(int storeColumn) const { return gridColumnOfStore(doc.model.bc785d, storeColumn); }

void MainWindowRig::select(int row, int storeColumn)
{
    view()->setCurrentIndex(window->gridModel()->indexOfCell(row, column(storeColumn)));
}

void MainWindowRig::typeInto(int row, int storeColumn, const char* keys)
{
    select(row, storeColumn);
    QTest::keyClicks(view(), keys);
    QTest::keyClick(view(), Qt::Key_Return);
}

} // namespace kestra::test
