// The settings windows softset (Software Options) and defdata (Default data per
// channel) on a real main window: opened from their menu entries, answered
// while their modal loop runs, and followed to setup.ini and defdata.ini when
// the main window unloads.

#include "ui/defaultdatawindow.h"
#include "ui/widgets/gridmodel.h"
#include "ui/optionswindow.h"

#include "support/mainwindowrig.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSlider>
#include <QTabWidget>
#include <QTableView>
#include <QTest>
#include <QToolBar>

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <tuple>

namespace kestra {
namespace {

// The keys whose values differ between two settings.
std::vector<std::string> changedKeys(const Settings& before, const Settings& after)
{
    std::vector<std::string> keys;
    for (const SettingKey& k : settingKeys())
        if (before.*k.member != after.*k.member) keys.push_back(k.name);
    return keys;
}

class SettingsWindowsTest : public ::testing::Test, protected test::MainWindowRig {
protected:
    void SetUp() override
    {
        settings.option4 = 1;   // exit without the question
        start();
    }

    void exitProgram() { ASSERT_TRUE(window->close()); }

    bool setupHas(const std::string& line) const
    {
        const auto lines = fileLines("setup.ini");
        return std::find(lines.begin(), lines.end(), line) != lines.end();
    }
};

TEST_F(SettingsWindowsTest, OkTakesATickedBoxIntoTheSettingsAndSetupIniAtExit)
{
    doc.cell(0, 4, 1) = "0146.5200";
    table->fillgrid();
    ASSERT_EQ(shown(4, 1), "0146.5200");

    whileOpen<OptionsWindow>("soft_options", [](OptionsWindow* dialog) {
        EXPECT_EQ(dialog->windowTitle(), "Software Options");
        QCheckBox* zero = dialog->check1(2);
        EXPECT_EQ(zero->text(), "Hide leading zero's of frequencies");
        EXPECT_FALSE(zero->isChecked());
        zero->click();
        QTest::mouseClick(dialog->okButton(), Qt::LeftButton);
    });

    EXPECT_EQ(settings.zero, 1);
    EXPECT_EQ(shown(4, 1), "146.5200");   // the grid is filled anew in the new form
    EXPECT_FALSE(std::filesystem::exists(dir.path() / "setup.ini"));   // nothing written before the exit

    exitProgram();
    EXPECT_TRUE(setupHas("zero=1"));
}

TEST_F(SettingsWindowsTest, CancelDropsEveryChange)
{
    const Settings before = settings;
    const std::string opendir = table->opendir;
    dialogs.files.push_back(dir.file("elsewhere"));

    // Opened from the toolbar button this time.
    QAction* button = toolbarButton("soft_options");
    ASSERT_NE(button, nullptr);
    ASSERT_TRUE(button->isEnabled());
    whileOpen<OptionsWindow>([&] { QTest::mouseClick(window->toolbar2()->widgetForAction(button), Qt::LeftButton); },
                       [this](OptionsWindow* dialog) {
                           dialog->check1(2)->click();
                           dialog->check1(31)->click();
                           dialog->align()->setCurrentIndex(2);
                           dialog->bandplan()->setCurrentIndex(0);
                           dialog->hscroll1()->setValue(5);
                           dialog->backena()->click();
                           dialog->command4()->click();
                           EXPECT_EQ(dialog->defaultFolderText()->text().toStdString(), dir.file("elsewhere"));
                           QTest::mouseClick(dialog->cancelButton(), Qt::LeftButton);
                       });

    EXPECT_TRUE(changedKeys(before, settings).empty());
    EXPECT_EQ(table->opendir, opendir);
}

TEST_F(SettingsWindowsTest, EachBoxOfCheck1ShowsAndSetsOnlyItsOwnKey)
{
    std::set<std::string> keys;
    for (int i = 0; i < OptionsWindow::kChecks; ++i) {
        const std::string name = OptionsWindow::checkKey(i);
        SCOPED_TRACE(name);
        keys.insert(name);
        OptionsWindow dialog(*table, window.get());
        const Settings before = settings;
        const bool wasOn = dialog.check1(i)->isChecked();
        dialog.check1(i)->click();
        dialog.accept();
        ASSERT_EQ(changedKeys(before, settings), std::vector<std::string>{name});
        const auto key = std::find_if(settingKeys().begin(), settingKeys().end(),
                                      [&](const SettingKey& k) { return k.name == name; });
        EXPECT_EQ(before.*key->member, wasOn ? 1 : 0);   // the box showed the value the setting had
    }
    EXPECT_EQ(keys.size(), std::size_t(OptionsWindow::kChecks));
    // A few boxes by caption, with the keys they stand for.
    OptionsWindow dialog(*table, window.get());
    for (auto [i, key, caption] : {std::tuple{0, "9khz", "Advanced Frequency Upload"},
                                   {17, "option9", "Show Easy Tag Dropdown List"},
                                   {31, "ffont", "Display Tags in Fixed Width Font"}}) {
        EXPECT_EQ(dialog.check1(i)->text(), caption);
        EXPECT_EQ(std::string(OptionsWindow::checkKey(i)), key);
    }
}

TEST_F(SettingsWindowsTest, TabsHoldEveryBoxAndTheEncryptedGroupKeepsItsModes)
{
    OptionsWindow dialog(*table, window.get());
    auto* tabs = dialog.findChild<QTabWidget*>();
    ASSERT_NE(tabs, nullptr);
    QStringList captions;
    for (int t = 0; t < tabs->count(); ++t) captions << tabs->tabText(t);
    EXPECT_EQ(captions, (QStringList{"General", "Bandplan", "Tags", "Trunk", "Virtual Control", "Backup"}));

    // Every box sits on exactly one page.
    std::vector<int> pageOf(OptionsWindow::kChecks, -1);
    for (int t = 0; t < tabs->count(); ++t)
        for (int i = 0; i < OptionsWindow::kChecks; ++i)
            if (tabs->widget(t)->isAncestorOf(dialog.check1(i))) {
                EXPECT_EQ(pageOf[i], -1) << i;
                pageOf[i] = t;
            }
    for (int i = 0; i < OptionsWindow::kChecks; ++i) EXPECT_NE(pageOf[i], -1) << i;

    // enc1..enc4 share the one group that names what they resume.
    QWidget* group = dialog.check1(24)->parentWidget();
    EXPECT_EQ(group->property("title").toString(), "APCO 25 encrypted communication auto resume");
    for (int i = 25; i <= 27; ++i) EXPECT_EQ(dialog.check1(i)->parentWidget(), group);
    EXPECT_EQ(group->findChildren<QCheckBox*>().size(), 4);
}

TEST_F(SettingsWindowsTest, SliderLabelCountsMinutesAndOkTakesTheBackupValues)
{
    settings.backupdelay = 30;
    settings.backena = 1;
    OptionsWindow dialog(*table, window.get());
    QSlider* slider = dialog.hscroll1();
    EXPECT_EQ(slider->minimum(), 1);
    EXPECT_EQ(slider->maximum(), 99);
    EXPECT_EQ(slider->value(), 30);
    EXPECT_EQ(dialog.minutesLabel()->text(), "30 Minutes.");
    EXPECT_TRUE(dialog.backena()->isChecked());

    slider->setValue(1);
    EXPECT_EQ(dialog.minutesLabel()->text(), "1 Minute.");
    QTest::keyClick(slider, Qt::Key_Right);
    EXPECT_EQ(slider->value(), 2);
    EXPECT_EQ(dialog.minutesLabel()->text(), "2 Minutes.");
    slider->setValue(250);
    EXPECT_EQ(dialog.minutesLabel()->text(), "99 Minutes.");
    slider->setValue(7);
    dialog.backena()->click();

    dialog.accept();
    EXPECT_EQ(settings.backupdelay, 7);
    EXPECT_EQ(settings.backena, 0);
}

TEST_F(SettingsWindowsTest, CombosOfferTheirChoicesAndOkAlignsTheGrid)
{
    settings.bandplan = 1;
    OptionsWindow dialog(*table, window.get());
    EXPECT_EQ(dialog.bandplan()->count(), 6);
    EXPECT_EQ(dialog.bandplan()->currentIndex(), 1);
    EXPECT_EQ(dialog.align()->count(), 3);
    EXPECT_EQ(dialog.model()->count(), 3);
    EXPECT_EQ(dialog.model()->currentIndex(), 0);

    const QModelIndex cell = window->gridModel()->indexOfCell(1, 2);
    auto alignment = [&] {
        return window->gridModel()->data(cell, Qt::TextAlignmentRole).value<Qt::Alignment>() & Qt::AlignHorizontal_Mask;
    };
    EXPECT_EQ(alignment(), Qt::AlignLeft);

    dialog.align()->setCurrentIndex(1);
    dialog.bandplan()->setCurrentIndex(5);
    dialog.model()->setCurrentIndex(2);
    QTest::mouseClick(dialog.okButton(), Qt::LeftButton);
    EXPECT_EQ(dialog.result(), QDialog::Accepted);
    EXPECT_EQ(settings.align, 1);
    EXPECT_EQ(settings.bandplan, 5);
    EXPECT_EQ(settings.model, 2);
    EXPECT_EQ(alignment(), Qt::AlignHCenter);

    // A value from a hand-edited file that no choice stands for stays as it is.
    settings.bandplan = 9;
    OptionsWindow again(*table, window.get());
    EXPECT_EQ(again.bandplan()->currentIndex(), -1);
    again.accept();
    EXPECT_EQ(settings.bandplan, 9);
}

TEST_F(SettingsWindowsTest, FolderButtonsAskForAFolderAndOkKeepsIt)
{
    const std::string start = table->opendir;
    const std::string defaults = dir.file("mem files");
    const std::string backups = dir.file("backups");
    table->backdir = dir.file("old backups");
    dialogs.files = {defaults, std::nullopt, backups};

    OptionsWindow dialog(*table, window.get());
    EXPECT_EQ(dialog.defaultFolderText()->text().toStdString(), start);
    dialog.command4()->click();
    EXPECT_EQ(dialog.defaultFolderText()->text().toStdString(), defaults);
    dialog.command5()->click();   // the chooser cancelled: the folder stays
    EXPECT_EQ(dialog.backupFolderText()->text().toStdString(), dir.file("old backups"));
    dialog.command5()->click();
    EXPECT_EQ(dialog.backupFolderText()->text().toStdString(), backups);

    ASSERT_EQ(dialogs.asked.size(), 3u);
    for (const auto& asked : dialogs.asked) {
        EXPECT_EQ(asked.kind, ScriptedDialogs::ChooserKind::Folder);
        EXPECT_EQ(asked.choice.title, "Choose a folder:");
    }
    EXPECT_EQ(dialogs.asked[0].choice.folder, start);
    EXPECT_EQ(dialogs.asked[1].choice.folder, dir.file("old backups"));
    EXPECT_EQ(table->opendir, start);   // nothing taken before Ok

    dialog.accept();
    EXPECT_EQ(table->opendir, defaults);
    EXPECT_EQ(table->savedir, defaults);
    EXPECT_EQ(table->backdir, backups);
    exitProgram();
    EXPECT_EQ(profile.get("folders", "opendir", "?"), defaults + "x");
    EXPECT_EQ(profile.get("folders", "backdir", "?"), backups + "x");
}

TEST_F(SettingsWindowsTest, ResetTrunkSystemsClearsTheTypesOfAllBanks)
{
    for (int b = 0; b < kChannelBanks; ++b) doc.trunkset[b].trunktype = std::to_string(b % 9 + 1);
    doc.trunkset[4].trunkfields[2] = "1";

    whileOpen<OptionsWindow>("soft_options", [](OptionsWindow* dialog) {
        EXPECT_EQ(dialog->command3()->text(), "Reset Trunk systems");
        EXPECT_TRUE(dialog->command3()->isEnabled());
        dialog->command3()->click();
        dialog->reject();
    });
    for (int b = 0; b < kChannelBanks; ++b) EXPECT_EQ(doc.trunkset[b].trunktype, "0") << b;
    EXPECT_EQ(doc.trunkset[4].trunkfields[2], "1");

    exitProgram();   // ttype.dat keeps the reset for the next start
    EXPECT_EQ(test::crlfLines(test::readBytes(dir.path() / "ttype.dat")), std::vector<std::string>(10, "0"));
}

// ---- Reset Table Width ---------------------------------------------------------------------

TEST_F(SettingsWindowsTest, ResetTableWidthGivesBackTheBuiltInWidths)
{
    QTableView* view = window->memtabel();
    std::vector<int> builtIn;
    for (int c = 0; c < window->gridModel()->columnCount(); ++c) builtIn.push_back(view->columnWidth(c));
    view->setColumnWidth(0, builtIn[0] + 70);
    view->setColumnWidth(1, 15);

    window->action("restable")->trigger();
    for (int c = 0; c < window->gridModel()->columnCount(); ++c) EXPECT_EQ(view->columnWidth(c), builtIn[c]) << c;
}

// ---- Default data per channel ---------------------------------------------------------------

TEST_F(SettingsWindowsTest, DefaultDataOkKeepsTheChosenDelayInDefdataIni)
{
    table->setModel(ModelSwitches::of(Model::BC785D));
    whileOpen<DefaultDataWindow>("setdef", [](DefaultDataWindow* dialog) {
        EXPECT_EQ(dialog->windowTitle(), "Default data per channel:");
        QComboBox* delay = dialog->combo1(DefaultData::Delay);
        EXPECT_EQ(dialog->label1(DefaultData::Delay)->text(), "Delay Time:");
        ASSERT_EQ(delay->count(), 8);
        EXPECT_EQ(delay->currentText(), "1");
        delay->setCurrentIndex(delay->findText("4"));
        dialog->check1(DefaultData::Tone)->click();   // off by default
        QTest::mouseClick(dialog->okButton(), Qt::LeftButton);
    });
    EXPECT_EQ(table->defdata.value[DefaultData::Delay][1], 3);
    EXPECT_EQ(table->defdata.value[DefaultData::Delay][0], 1);   // the other layout keeps its own
    EXPECT_EQ(table->defdata.enabled[DefaultData::Tone], 1);
    EXPECT_EQ(table->defdata.gridText(DefaultData::Delay, 1), "4");
    EXPECT_FALSE(std::filesystem::exists(dir.path() / "defdata.ini"));

    exitProgram();
    DefaultData reread;
    readDefaultData(reread, dir.path());
    EXPECT_EQ(reread.value[DefaultData::Delay][1], 3);
    EXPECT_EQ(reread.enabled[DefaultData::Tone], 1);
}

TEST_F(SettingsWindowsTest, DefaultDataShowsEachFieldWithItsFlagAndCancelKeepsTheOldValues)
{
    table->defdata.enabled = {1, 0, 1, 0, 1, 0, 1};
    table->defdata.value[DefaultData::Tone][0] = 5;
    table->defdata.value[DefaultData::Delay][0] = 1;
    const DefaultData before = table->defdata;
    whileOpen<DefaultDataWindow>("setdef", [this](DefaultDataWindow* dialog) {
        for (int f = 0; f < DefaultData::FieldCount; ++f) {
            SCOPED_TRACE(f);
            const auto field = static_cast<DefaultData::Field>(f);
            EXPECT_EQ(dialog->label1(f)->text().toStdString(), DefaultData::caption(field));
            EXPECT_EQ(dialog->check1(f)->isChecked(), table->defdata.enabled[f] == 1);
            // A field without a default cannot be chosen until its box is ticked.
            EXPECT_EQ(dialog->combo1(f)->isEnabled(), table->defdata.enabled[f] == 1);
            EXPECT_EQ(dialog->combo1(f)->count(), int(DefaultData::fieldList(field, 0).size()));
        }
        EXPECT_EQ(dialog->combo1(DefaultData::Tone)->currentText().toStdString(),
                  DefaultData::fieldList(DefaultData::Tone, 0)[5]);
        QComboBox* delay = dialog->combo1(DefaultData::Delay);
        EXPECT_EQ(delay->currentText(), "2");   // the short list of the BC250D family
        dialog->check1(DefaultData::Delay)->click();
        EXPECT_TRUE(delay->isEnabled());
        delay->setCurrentIndex(0);
        dialog->check1(DefaultData::Trunk)->click();
        QTest::mouseClick(dialog->cancelButton(), Qt::LeftButton);
    });
    EXPECT_EQ(table->defdata.value, before.value);
    EXPECT_EQ(table->defdata.enabled, before.enabled);
}

} // namespace
} // namespace kestra
