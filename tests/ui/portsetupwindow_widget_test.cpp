// The Rs232 setup window comsetup, opened from the model menu of a real main
// window: the model change it brings about in the grid, com250.ini and
// ports.ini, the speed messages, the "other:" port, the USB box and AutoDetect
// over several virtual scanners.

// The scanner's headers come before Qt's, which takes "slots" for a word of its own.
#include "sim/virtualport.h"
#include "sim/virtualscanner.h"

#include "ui/portsetupwindow.h"
#include "ui/widgets/gridmodel.h"
#include "core/reffiles.h"

#include "support/mainwindowrig.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QTableView>
#include <QTest>

#include <gtest/gtest.h>

#include <functional>
#include <memory>

namespace kestra {
namespace {

using Lines = std::vector<std::string>;

class PortSetupWindowTest : public ::testing::Test, protected test::MainWindowRig {
protected:
    void SetUp() override
    {
        Options options = Options::connected();
        options.beforeTable = [this] { prepare(); };
        start(options);
    }

    // Files of the program's folder before the start.
    virtual void prepare() {}

    // Opens Rs232 setup from the menu and acts on the window while its modal
    // loop runs.
    void whileOpen(const std::function<void(PortSetupWindow*)>& act) { MainWindowRig::whileOpen<PortSetupWindow>("comset", act); }

    // A click where the user aims: on the mark of a radio or check box (a box
    // stretched by its layout takes no click beyond its text), in the middle of
    // a push button.
    static void click(QAbstractButton* button)
    {
        const bool marked = qobject_cast<QRadioButton*>(button) || qobject_cast<QCheckBox*>(button);
        const QPoint at = marked ? QPoint(std::min(8, button->width() / 2), button->height() / 2) : button->rect().center();
        QTest::mouseClick(button, Qt::LeftButton, {}, at);
    }

    QComboBox* topCombo(const char* name) const { return window->findChild<QComboBox*>(name); }
};

TEST_F(PortSetupWindowTest, OkChangesTheModelAndTheGridFollowsIt)
{
    doc.cell(0, 4, 1) = "0146.5200";
    table->fillgrid();
    ASSERT_EQ(window->gridModel()->columnCount(), 10);
    ASSERT_EQ(topCombo("delaycombo")->count(), 2);

    whileOpen([](PortSetupWindow* dialog) {
        EXPECT_EQ(dialog->windowTitle(), "Rs232 setup:");
        // The current values: the UBC3300 of a fresh start on com1 at 19200.
        EXPECT_TRUE(dialog->option1(4)->isChecked());
        EXPECT_TRUE(dialog->option3d1(0)->isChecked());
        EXPECT_EQ(dialog->combo1()->currentText(), "19200");
        EXPECT_FALSE(dialog->check1()->isChecked());
        EXPECT_TRUE(dialog->command1()->isEnabled());
        click(dialog->option1(3));
        EXPECT_EQ(dialog->option1(3)->text(), "BC796D");
        dialog->combo1()->setCurrentIndex(4);
        click(dialog->command1());
    });

    EXPECT_TRUE(messages().empty());
    EXPECT_EQ(fileLines("com250.ini"), (Lines{"[com]", "port=1", "baud=57600", "usbc=0"}));
    EXPECT_EQ(fileLines("ports.ini"), (Lines{"[ports]", "1=virtual"}));
    EXPECT_EQ(table->com.baud, 57600);

    ASSERT_EQ(window->gridModel()->columnCount(), 11);
    EXPECT_EQ(window->gridModel()->headerData(4, Qt::Horizontal).toString(), "Record");
    EXPECT_EQ(window->windowTitle(), "Kestra Console for Uniden BC796D - [ Untitled ]");
    EXPECT_EQ(window->action("men_ar5")->text(), "&BC796D");
    EXPECT_EQ(shown(4, 1), "0146.5200");
    // The lists of the new model: eight delays, the x96 steps.
    EXPECT_EQ(topCombo("delaycombo")->count(), 8);
    EXPECT_EQ(topCombo("delaycombo")->itemText(7), "-10");
    EXPECT_GE(topCombo("combostep")->findText("6.25"), 0);
}

class PortSetupWindowWidthsTest : public PortSetupWindowTest {
protected:
    // Widths kept for each layout, in whole pixels; the start does not read
    // them (tabwidth is off).
    void prepare() override
    {
        writeColumnWidths(0, k250, dir.path());
        writeColumnWidths(1, k785, dir.path());
    }

public:
    inline static const std::vector<int> k250 = {1500, 3000, 900, 900, 900, 900, 1200, 1200, 1350, 1500};
    inline static const std::vector<int> k785 = {1200, 2850, 900, 900, 1050, 900, 900, 1200, 1200, 1350, 1500};
};

TEST_F(PortSetupWindowWidthsTest, TheWidthsKeptForTheNewLayoutAreTaken)
{
    ASSERT_NE(window->columnWidthsTwips(), k250);
    // The UBC3300 and the BC250D share the layout: only the file changes the widths.
    whileOpen([](PortSetupWindow* dialog) {
        click(dialog->option1(0));
        click(dialog->command1());
    });
    EXPECT_EQ(window->columnWidthsTwips(), k250);
    whileOpen([](PortSetupWindow* dialog) {
        click(dialog->option1(1));
        click(dialog->command1());
    });
    EXPECT_EQ(window->columnWidthsTwips(), k785);
}

TEST_F(PortSetupWindowTest, SpeedsTheModelLacksAreCutToNineteenTwoWithTheirMessage)
{
    whileOpen([](PortSetupWindow* dialog) {
        click(dialog->option1(0));
        dialog->combo1()->setCurrentIndex(3);
        click(dialog->command1());
    });
    EXPECT_EQ(messages(), Lines{"BC250/785 only supports 4800/9600/19200 baud, setting changed to 19200"});
    EXPECT_EQ(fileLines("com250.ini")[2], "baud=19200");
    EXPECT_EQ(window->windowTitle(), "Kestra Console for Uniden BC250D - [ Untitled ]");

    dialogs.shown.clear();
    whileOpen([](PortSetupWindow* dialog) {
        EXPECT_TRUE(dialog->option1(0)->isChecked());
        click(dialog->option1(4));
        dialog->combo1()->setCurrentIndex(4);
        click(dialog->command1());
    });
    EXPECT_EQ(messages(), Lines{"UBC3300 only supports 4800/9600/19200 baud, setting changed to 19200"});
    EXPECT_EQ(table->com.baud, 19200);
    EXPECT_EQ(settings.model, 3);   // the display of the UBC3300
}

class PortSetupWindowFastStartTest : public PortSetupWindowTest {
protected:
    void prepare() override
    {
        test::writeBytes(dir.path() / "com250.ini", "[com]\r\nport=3\r\nbaud=38400\r\nusbc=0\r\n");
        profile.set("model", "bc785d", "0");
        profile.set("model", "x96", "1");
        profile.set("model", "ubc33", "0");
    }
};

TEST_F(PortSetupWindowFastStartTest, TheFastSpeedOfAnX96ModelShowsAndOtherModelsShowNineteenTwo)
{
    whileOpen([](PortSetupWindow* dialog) {
        EXPECT_TRUE(dialog->option1(2)->isChecked());   // BC296D
        EXPECT_TRUE(dialog->option3d1(2)->isChecked());
        EXPECT_EQ(dialog->combo1()->currentText(), "38400");
        dialog->reject();
    });
    table->setModel(ModelSwitches::of(Model::BC785D));
    whileOpen([](PortSetupWindow* dialog) {
        EXPECT_TRUE(dialog->option1(1)->isChecked());
        EXPECT_EQ(dialog->combo1()->currentText(), "19200");
        click(dialog->command2());
    });
}

TEST_F(PortSetupWindowTest, OtherPortIsHeldToOneToNineteenAndACarriageReturnIsSwallowed)
{
    whileOpen([](PortSetupWindow* dialog) {
        EXPECT_FALSE(dialog->text1()->isEnabled());
        click(dialog->option3d1(8));
        ASSERT_TRUE(dialog->text1()->isEnabled());
        QTest::keyClicks(dialog->text1(), "2");
        QTest::keyClick(dialog->text1(), Qt::Key_Return);
        ASSERT_TRUE(dialog->isVisible());
        QTest::keyClicks(dialog->text1(), "5");
        EXPECT_EQ(dialog->text1()->text(), "25");
        EXPECT_EQ(dialog->portTargetLabel()->text(), "com19 is bound to:");
        click(dialog->command1());
    });
    EXPECT_EQ(fileLines("com250.ini")[1], "port=19");
    EXPECT_EQ(table->com.port, 19);

    whileOpen([](PortSetupWindow* dialog) {
        EXPECT_TRUE(dialog->option3d1(8)->isChecked());
        EXPECT_EQ(dialog->text1()->text(), "19");
        dialog->text1()->selectAll();
        QTest::keyClicks(dialog->text1(), "0");
        click(dialog->command1());
    });
    EXPECT_EQ(fileLines("com250.ini")[1], "port=1");

    whileOpen([](PortSetupWindow* dialog) {
        EXPECT_TRUE(dialog->option3d1(0)->isChecked());
        EXPECT_EQ(dialog->text1()->text(), "");
        EXPECT_FALSE(dialog->text1()->isEnabled());
        click(dialog->command2());
    });
}

TEST_F(PortSetupWindowTest, CancelStoresNothing)
{
    whileOpen([](PortSetupWindow* dialog) {
        click(dialog->option1(1));
        click(dialog->option3d1(2));
        dialog->combo1()->setCurrentIndex(0);
        dialog->portTarget()->setCurrentText(PortSetupWindow::kVirtualText);
        EXPECT_EQ(dialog->bindings()->count(), 2);
        click(dialog->command2());
    });
    EXPECT_FALSE(std::filesystem::exists(dir.path() / "com250.ini"));
    EXPECT_FALSE(std::filesystem::exists(dir.path() / "ports.ini"));
    EXPECT_EQ(ports->binding.target(3), "");
    EXPECT_EQ(table->com.port, 1);
    EXPECT_EQ(table->com.baud, 19200);
    EXPECT_EQ(window->windowTitle(), "Kestra Console for Uniden UBC3300 - [ Untitled ]");
    EXPECT_TRUE(messages().empty());
}

class PortSetupWindowUsbTest : public PortSetupWindowTest {
protected:
    void prepare() override { test::writeBytes(dir.path() / "com250.ini", "[com]\r\nport=2\r\nbaud=9600\r\nusbc=1\r\n"); }
};

TEST_F(PortSetupWindowUsbTest, TheUsbBoxRaisesTheDelaysAtOkAndTurnedOffLowersThemAtOnce)
{
    ASSERT_EQ(settings.delay1, 200);
    whileOpen([this](PortSetupWindow* dialog) {
        ASSERT_TRUE(dialog->check1()->isChecked());
        click(dialog->check1());
        EXPECT_EQ(settings.delay1, 100);
        EXPECT_EQ(settings.delay2, 200);
        EXPECT_EQ(settings.delay3, 400);
        click(dialog->command2());
    });
    EXPECT_EQ(settings.delay1, 100);   // Cancel does not take it back

    whileOpen([](PortSetupWindow* dialog) { click(dialog->command1()); });
    EXPECT_EQ(settings.delay1, 200);
    EXPECT_EQ(settings.delay2, 200);
    EXPECT_EQ(settings.delay3, 400);
    EXPECT_EQ(fileLines("com250.ini"), (Lines{"[com]", "port=2", "baud=9600", "usbc=1"}));
}

TEST_F(PortSetupWindowTest, APortNumberIsBoundToTheVirtualScannerOrATypedDeviceAndKeptInPortsIni)
{
    whileOpen([](PortSetupWindow* dialog) {
        QComboBox* target = dialog->portTarget();
        EXPECT_EQ(target->currentText(), PortSetupWindow::kVirtualText);   // com1 on a fresh start

        click(dialog->option3d1(2));
        EXPECT_EQ(dialog->portTargetLabel()->text(), "com3 is bound to:");
        EXPECT_EQ(target->currentText(), PortSetupWindow::kUnboundText);
        target->setCurrentIndex(1);
        click(dialog->option3d1(3));
        target->lineEdit()->selectAll();
        QTest::keyClicks(target->lineEdit(), "/dev/pts/7");
        click(dialog->option3d1(0));
        target->setCurrentIndex(0);

        QStringList listed;
        for (int i = 0; i < dialog->bindings()->count(); ++i) listed << dialog->bindings()->item(i)->text();
        EXPECT_EQ(listed, (QStringList{"com3: Virtual scanner", "com4: /dev/pts/7"}));
        click(dialog->option3d1(3));
        EXPECT_EQ(target->currentText(), "/dev/pts/7");
        click(dialog->command1());
    });
    EXPECT_EQ(fileLines("ports.ini"), (Lines{"[ports]", "3=virtual", "4=/dev/pts/7"}));
    EXPECT_TRUE(ports->binding.isVirtual(3));
    EXPECT_EQ(ports->binding.target(1), "");
}

// A scanner of its own on the cable of a port, at its speed.
struct BenchScanner {
    BenchScanner(Model model, int baud) : scanner(model, baud)
    {
        device->respond = [this](std::string_view bytes) {
            if (onReceive) onReceive();
            return scanner.receive(bytes);
        };
        device->baud = [this] { return scanner.baudRate(); };
    }
    sim::VirtualScanner scanner;
    std::shared_ptr<VirtualDevice> device = std::make_shared<VirtualDevice>();
    std::function<void()> onReceive;
};

TEST_F(PortSetupWindowTest, AutoDetectShowsTheLastScannerThatAnswersAndOkStoresIt)
{
    BenchScanner low(Model::BC296D, 4800);
    BenchScanner high(Model::BC796D, 38400);
    ports->attach(2, low.device);
    ports->attach(5, high.device);
    ports->virtualScanner(Model::UBC3300).setBaudRate(9600);   // com1 answers too, at 9600

    whileOpen([&](PortSetupWindow* dialog) {
        bool busy = false, locked = false;
        high.onReceive = [&] {
            const QCursor* cursor = QApplication::overrideCursor();
            busy = cursor && cursor->shape() == Qt::WaitCursor;
            locked = !dialog->isEnabled();
            dialog->reject();   // Escape while the search runs
        };
        click(dialog->command3());
        high.onReceive = nullptr;
        EXPECT_TRUE(busy);
        EXPECT_TRUE(locked);
        EXPECT_EQ(QApplication::overrideCursor(), nullptr);
        EXPECT_TRUE(dialog->isEnabled());
        EXPECT_EQ(messages(), (Lines{kDetectAdvice, kDetected}));
        ASSERT_TRUE(dialog->isVisible());   // it stays open, with the result to store
        EXPECT_TRUE(dialog->option1(3)->isChecked());
        EXPECT_TRUE(dialog->option3d1(4)->isChecked());
        EXPECT_EQ(dialog->combo1()->currentText(), "38400");
        click(dialog->command1());
    });
    EXPECT_EQ(fileLines("com250.ini"), (Lines{"[com]", "port=5", "baud=38400", "usbc=0"}));
    EXPECT_EQ(window->action("men_ar5")->text(), "&BC796D");
}

TEST_F(PortSetupWindowTest, AutoDetectWithoutAScannerSaysSoAndLeavesTheChoice)
{
    whileOpen([this](PortSetupWindow* dialog) {
        dialog->portTarget()->setCurrentText(PortSetupWindow::kUnboundText);   // com1: nothing on any port
        click(dialog->option1(0));
        dialog->combo1()->setCurrentIndex(1);
        click(dialog->command3());
        EXPECT_EQ(messages(), (Lines{kDetectAdvice, "", kNotDetected, "For best performance, use 19200 baudrate setting."}));
        EXPECT_TRUE(dialog->option1(0)->isChecked());
        EXPECT_TRUE(dialog->option3d1(0)->isChecked());
        EXPECT_EQ(dialog->combo1()->currentText(), "9600");
        click(dialog->command2());
    });
    EXPECT_TRUE(ports->binding.isVirtual(1));   // Cancel gives the binding back
}

} // namespace
} // namespace kestra
