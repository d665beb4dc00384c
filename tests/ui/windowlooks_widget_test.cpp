// How the main window and the Read Data window look to the user: the toolbar
// pictures on a desktop without an icon theme, the grid after a change of
// model (whole headers, a Tag column for 16 characters, the window's width
// used), the list combos showing the current row, and the transfer window
// naming the scanner, labelling its number boxes and saying "Stopped" after
// STOP. Screenshots of both windows go to $TEST_OUTPUT_DIR (else the build's
// Testing/screenshots), named after the scale factor, for a person to look at.

// The scanner's headers come before Qt's, which takes "slots" for a word of its own.
#include "sim/virtualscanner.h"

#include "core/memfile.h"
#include "ui/portsetupwindow.h"
#include "ui/transferwindow.h"
#include "ui/widgets/gridmodel.h"

#include "support/mainwindowrig.h"

#include <QComboBox>
#include <QGroupBox>
#include <QHeaderView>
#include <QIcon>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTableView>
#include <QTest>
#include <QToolBar>

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <map>

namespace kestra {
namespace {

std::filesystem::path screenshotFolder()
{
    if (const char* dir = std::getenv("TEST_OUTPUT_DIR"); dir && *dir) return dir;
    return KESTRA_TEST_OUTPUT_DIR;
}

// Saves what the widget shows as <name>-x<scale>.png.
void screenshot(QWidget* widget, const std::string& name)
{
    const std::filesystem::path folder = screenshotFolder();
    std::filesystem::create_directories(folder);
    const QString scale = qEnvironmentVariable("QT_SCALE_FACTOR", "1");
    const std::filesystem::path shot = folder / (name + "-x" + scale.toStdString() + ".png");
    EXPECT_TRUE(widget->grab().save(QString::fromStdString(shot.string())));
    std::cout << "screenshot: " << shot.string() << std::endl;
}

// The pixels of a picture that are not transparent.
int inkOf(const QImage& image)
{
    int ink = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x) ink += qAlpha(image.pixel(x, y)) > 0;
    return ink;
}

class WindowLooksTest : public ::testing::Test, protected test::MainWindowRig {};

TEST_F(WindowLooksTest, EveryToolbarButtonHasItsOwnPictureWithoutAnIconTheme)
{
    // A desktop without a theme: the pictures must come from the program's own files.
    const QString theme = QIcon::themeName();
    const QStringList paths = QIcon::themeSearchPaths();
    QIcon::setThemeName("kestra-no-such-theme");
    QIcon::setThemeSearchPaths({});
    startAs(Model::BC785D);

    std::map<QByteArray, QString> seen;   // picture bytes -> the first button that drew them
    int buttons = 0;
    for (QToolBar* bar : {window->toolbar1(), window->toolbar2()})
        for (QAction* tool : bar->actions()) {
            const QString key = tool->property("key").toString();
            SCOPED_TRACE(key.toStdString());
            ++buttons;
            ASSERT_FALSE(tool->icon().isNull());
            const QImage image = tool->icon().pixmap(QSize(24, 24)).toImage().convertToFormat(QImage::Format_ARGB32);
            ASSERT_FALSE(image.isNull());
            const int ink = inkOf(image);
            const int area = image.width() * image.height();   // larger than 24 x 24 on a scaled screen
            EXPECT_GT(ink, area / 10);
            EXPECT_LT(ink, area);   // a picture, not a filled square
            const QByteArray bytes(reinterpret_cast<const char*>(image.constBits()), image.sizeInBytes());
            const auto [at, fresh] = seen.try_emplace(bytes, key);
            // Only the two "shift up" buttons share their picture.
            if (!fresh) EXPECT_TRUE(at->second == "memtab_shiftup" && key == "edit_shiftup") << "same as " << at->second.toStdString();
        }
    EXPECT_EQ(buttons, 41);
    close();
    QIcon::setThemeSearchPaths(paths);
    QIcon::setThemeName(theme);
}

// A main window on a BC796D document that the user switches to a UBC3300,
// with a MEM file of channels loaded, on the scanner on com1.
class ModelChangeLooksTest : public WindowLooksTest {
protected:
    void SetUp() override
    {
        Options options = Options::connected();
        options.beforeWindow = [this] { doc.model = ModelSwitches::of(Model::BC796D); };
        start(options);

        // The county's channels, saved and opened again as a file.
        const char* tags[] = {"Fire Dispatch 01", "WWWWWWWWWWWWWWWW", "Police North", "EMS Tac 2"};
        for (int row = 1; row <= 4; ++row) {
            test::putChannel(doc, 0, row, row % 2 ? "0154.4300" : "0460.2500", tags[row - 1]);
            doc.memdata[0][row][col::step] = "2";
            doc.memdata[0][row][col::mode] = row == 3 ? "1" : "2";
            doc.memdata[0][row][col::delay] = "1";
        }
        const std::string file = dir.file("county.mem");
        ASSERT_TRUE(table->savemem(file));
        doc.clearstores();
        ASSERT_TRUE(table->loadmem(file));

        whileOpen<PortSetupWindow>("comset", [](PortSetupWindow* setup) {
            QTest::mouseClick(setup->option1(4), Qt::LeftButton, {}, QPoint(8, setup->option1(4)->height() / 2));
            QTest::mouseClick(setup->command1(), Qt::LeftButton);
        });
        ASSERT_EQ(doc.model.model(), Model::UBC3300);
        QApplication::processEvents();
    }
};

TEST_F(ModelChangeLooksTest, TheGridFillsTheWindowWithWholeHeadersAndTheCombosShowTheRow)
{
    QTableView* grid = view();
    // The third channel: its step, mode and delay in the combos above the grid.
    select(3, col::freq);
    QApplication::processEvents();
    screenshot(window.get(), "memtab");

    QHeaderView* header = grid->horizontalHeader();
    const QFontMetrics headerFont(header->font());
    for (int c = 0; c < header->count(); ++c) {
        const QString text = window->gridModel()->headerData(c, Qt::Horizontal).toString();
        EXPECT_GE(header->sectionSize(c), headerFont.horizontalAdvance(text) + 8) << text.toStdString();
    }
    // Sixteen of the widest letter fit the Tag column in the font the tags are shown in.
    const QModelIndex tag = window->gridModel()->indexOfCell(2, column(col::tag));
    const QVariant tagFont = window->gridModel()->data(tag, Qt::FontRole);
    const QFontMetrics tagMetrics(tagFont.isValid() ? tagFont.value<QFont>() : grid->font());
    EXPECT_GE(grid->columnWidth(tag.column()), tagMetrics.horizontalAdvance(QString(16, 'W')));
    // The columns reach the right edge of the grid.
    int total = 0;
    for (int c = 0; c < header->count(); ++c) total += header->sectionSize(c);
    EXPECT_GE(total, grid->viewport()->width());

    for (const auto& [name, storeColumn] : {std::pair{"combostep", col::step}, std::pair{"modecombo", col::mode},
                                            std::pair{"delaycombo", col::delay}}) {
        auto* combo = window->findChild<QComboBox*>(name);
        ASSERT_NE(combo, nullptr);
        EXPECT_EQ(combo->currentText().toStdString(), cell(3, storeColumn).toStdString()) << name;
    }

    // A small window: the combos keep their texts whole.
    window->resize(640, 480);
    QApplication::processEvents();
    screenshot(window.get(), "memtab-small");
}

TEST_F(ModelChangeLooksTest, TheReadDataWindowNamesTheScannerLabelsItsBoxesAndSaysStopped)
{
    ASSERT_TRUE(ifOpened<TransferWindow>("menread", [this](TransferWindow* w) {
        scheduler.runUntil([w] { return w->readPipeline()->opened(); }, 60'000);
        w->refreshStatus();
        EXPECT_EQ(w->frame3D2()->title().toStdString(), "Communication UBC3300");
        for (QLineEdit* box : {w->text4(), w->text5(), w->text6(), w->text10(0), w->text10(1)}) {
            bool labelled = false;
            for (QLabel* label : w->findChildren<QLabel*>())
                labelled |= label->buddy() == box && !label->text().isEmpty();
            EXPECT_TRUE(labelled) << box->objectName().toStdString();
        }
        QTest::mouseClick(w->option3D2(0), Qt::LeftButton);
        QTest::mouseClick(w->command1(), Qt::LeftButton);
        scheduler.runUntil([w] { return w->engine().chanid >= 3; }, 600'000);
        w->refreshStatus();
        screenshot(w, "arcomm8");
        QTest::mouseClick(w->command3d1(), Qt::LeftButton);
        scheduler.advance(2'000);
        w->refreshStatus();
        EXPECT_EQ(w->text3()->text().toStdString(), "Stopped");
        screenshot(w, "arcomm8-stopped");
    }));
}

} // namespace
} // namespace kestra
