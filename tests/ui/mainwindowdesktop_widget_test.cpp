// The main window as a desktop user meets it: the usual keys on the menu
// entries, file choosers that start where the user's files are, and the
// recent files under File.

#include "editor/backup.h"

#include "support/mainwindowrig.h"

#include <QDialog>
#include <QMenu>
#include <QTest>

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

namespace kestra {
namespace {

namespace fs = std::filesystem;

class DesktopTest : public ::testing::Test, protected test::MainWindowRig {
protected:
    void SetUp() override
    {
        // The user's documents folder, away from the program's folder.
        fs::create_directories(documents.path() / "Documents");
        fs::create_directories(documents.path() / "mems");
        setenv("XDG_DOCUMENTS_DIR", (documents.path() / "Documents").c_str(), 1);
        Options options;
        options.beforeWindow = [this] { prepare(); };
        start(options);
    }
    void TearDown() override { unsetenv("XDG_DOCUMENTS_DIR"); }

    virtual void prepare() {}

    std::string mem(const std::string& name)
    {
        test::HandMadeMem file;
        file.header = "KESTRA MEM V1.02 - made by the test";
        const std::string path = (documents.path() / "mems" / name).string();
        test::writeBytes(path, file.text());
        return path;
    }

    QStringList recentCaptions()
    {
        QStringList captions;
        for (QAction* a : window->actionArray("filenaam"))
            if (a->isVisible()) captions << a->text() + (a->isEnabled() ? "" : " (off)");
        return captions;
    }

    void key(int key, Qt::KeyboardModifiers mods = Qt::ControlModifier)
    {
        QTest::keyClick(window->memtabel(), static_cast<Qt::Key>(key), mods);
    }

    test::TempDir documents;
};

TEST_F(DesktopTest, MenuEntriesShowTheUsualKeysAndTheKeysWork)
{
    const std::pair<const char*, const char*> expected[] = {
        {"menunew", "Ctrl+N"},   {"tabopen", "Ctrl+O"},  {"savenu", "Ctrl+S"},   {"tabsaveas", "Ctrl+Shift+S"},
        {"menuprint", "Ctrl+P"}, {"tabundo", "Ctrl+Z"},  {"tab_cut", "Ctrl+X"},  {"tab_copy", "Ctrl+C"},
        {"tab_paste", "Ctrl+V"}, {"menufind", "Ctrl+F"}, {"shortkey", "F1"},
    };
    for (const auto& [name, keys] : expected)
        EXPECT_EQ(window->action(name)->shortcut().toString(), QString::fromLatin1(keys)) << name;

    // Ctrl+O from the grid: the Open chooser, starting in Documents, not in
    // the program's folder, since nothing was opened yet.
    key(Qt::Key_O);
    ASSERT_EQ(dialogs.asked.size(), 1u);
    EXPECT_EQ(dialogs.asked[0].choice.title, "Open");
    EXPECT_EQ(dialogs.asked[0].choice.folder, (documents.path() / "Documents").string());

    // Ctrl+S on an untitled table asks for a name; Ctrl+Shift+S always does.
    key(Qt::Key_S);
    ASSERT_EQ(dialogs.asked.size(), 2u);
    EXPECT_EQ(dialogs.asked[1].choice.title, "Save As");
    key(Qt::Key_S, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(dialogs.asked.size(), 3u);

    // Ctrl+C, Ctrl+V and Ctrl+Z on the grid go through the Edit entries.
    typeInto(1, col::freq, "146.5");
    select(1, col::freq);
    key(Qt::Key_C);
    select(2, col::freq);
    key(Qt::Key_V);
    EXPECT_EQ(cell(2, col::freq), cell(1, col::freq));
    EXPECT_FALSE(cell(2, col::freq).trimmed().isEmpty());
    key(Qt::Key_Z);
    EXPECT_TRUE(cell(2, col::freq).trimmed().isEmpty());

    // F1: the keyboard help.
    key(Qt::Key_F1, Qt::NoModifier);
    auto* help = window->findChild<QDialog*>("shortcuts");
    ASSERT_NE(help, nullptr);
    EXPECT_TRUE(help->isVisible());
    help->close();
}

TEST_F(DesktopTest, RecentFilesFollowOpenAndSaveAndOpenFromTheMenu)
{
    EXPECT_EQ(recentCaptions(), QStringList{"No old Files (off)"});

    const std::string a = mem("a.mem");
    dialogs.files.push_back(a);
    key(Qt::Key_O);
    ASSERT_EQ(table->doc().fnaam, a);
    EXPECT_EQ(recentCaptions(), QStringList{"&1 " + QString::fromStdString(a)});

    // Save As into another folder: the chooser starts at the open document.
    const std::string b = (documents.path() / "Documents" / "b.mem").string();
    dialogs.files.push_back(b);
    key(Qt::Key_S, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(dialogs.asked.back().choice.folder, (documents.path() / "mems").string());
    ASSERT_EQ(table->doc().fnaam, b);
    EXPECT_EQ(recentCaptions(), (QStringList{"&1 " + QString::fromStdString(b), "&2 " + QString::fromStdString(a)}));
    EXPECT_EQ(profile.get(kRecentSection, "RecentFile1", ""), b);
    EXPECT_EQ(profile.get(kRecentSection, "RecentFile3", ""), "Not Used");

    // Key 2 in the open File menu opens a.mem again; it moves to the top.
    auto* file = window->findChild<QMenu*>("file_tab");
    file->popup(window->mapToGlobal(QPoint(0, 0)));
    ASSERT_TRUE(QTest::qWaitForWindowExposed(file));
    QTest::keyClick(file, Qt::Key_2);
    EXPECT_EQ(table->doc().fnaam, a);
    EXPECT_EQ(recentCaptions(), (QStringList{"&1 " + QString::fromStdString(a), "&2 " + QString::fromStdString(b)}));

    // A file that went away is told, and nothing is loaded.
    fs::remove(b);
    window->actionArray("filenaam")[1]->trigger();
    ASSERT_FALSE(dialogs.shown.empty());
    EXPECT_EQ(dialogs.shown.back().text, "The file " + b + " cannot be found.");
    EXPECT_EQ(table->doc().fnaam, a);
}

class DesktopStartTest : public DesktopTest {
protected:
    void prepare() override
    {
        for (int i = 1; i <= 5; ++i) addRecentFile(profile, "/x/f" + std::to_string(i) + ".mem");
    }
};

TEST_F(DesktopStartTest, TheStoreFillsTheMenuAtStartNewestFirstFourAtMost)
{
    EXPECT_EQ(recentCaptions(),
              (QStringList{"&1 /x/f5.mem", "&2 /x/f4.mem", "&3 /x/f3.mem", "&4 /x/f2.mem"}));
}

} // namespace
} // namespace kestra
