#include "platform/qt/qtappfolder.h"
#include "platform/qt/qtdialogs.h"
#include "platform/qt/qtprofilestore.h"
#include "platform/qt/qtscheduler.h"

#include <QAbstractButton>
#include <QApplication>
#include <QMessageBox>
#include <QTemporaryDir>
#include <QTimer>

#include <gtest/gtest.h>

#include <vector>

namespace kestra {
namespace {

TEST(QtScheduler, WaitKeepsTimersRunningAndLastsItsTime)
{
    QtScheduler s;
    int ticks = 0;
    auto ticker = makeTimer(s, 100, false, [&] { ++ticks; });
    ticker->setEnabled(true);

    const std::int64_t start = s.now();
    s.wait(0.3);
    const std::int64_t waited = s.now() - start;
    EXPECT_GE(waited, 300);
    EXPECT_LT(waited, 1000);
    EXPECT_GE(ticks, 2);
    EXPECT_LE(ticks, 4);

    const std::int64_t before = s.now();
    s.wait(0);
    s.wait(-1);
    EXPECT_LT(s.now() - before, 50);
    EXPECT_EQ(Scheduler::clampWait(7), 5.0);
}

TEST(QtScheduler, NestedWaitsSingleShotsAndSilentTimers)
{
    QtScheduler s;
    std::vector<std::int64_t> innerTicks;
    std::int64_t innerEnd = -1;
    int zeroFired = 0;

    auto ticker = makeTimer(s, 40, false, [&] {
        if (innerEnd < 0) innerTicks.push_back(s.now());
    });
    std::unique_ptr<Timer> waiter;
    waiter = makeTimer(s, 20, true, [&] {
        EXPECT_FALSE(waiter->enabled());
        s.wait(0.2);
        innerEnd = s.now();
        waiter.reset();  // destroyed inside its own handler
    });
    auto zero = makeTimer(s, 0, false, [&] { ++zeroFired; });
    const std::int64_t start = s.now();
    ticker->setEnabled(true);
    waiter->setEnabled(true);
    zero->setEnabled(true);

    s.wait(0.1);

    // The outer wait ends with the inner one, which ran the ticker meanwhile.
    EXPECT_EQ(waiter, nullptr);
    EXPECT_GE(innerEnd - start, 220);
    EXPECT_GE(s.now() - start, 220);
    EXPECT_GE(innerTicks.size(), 3u);
    EXPECT_EQ(zeroFired, 0);
    EXPECT_TRUE(zero->enabled());

    // Enabling again restarts the countdown.
    int fired = 0;
    auto once = makeTimer(s, 150, true, [&] { ++fired; });
    once->setEnabled(true);
    s.wait(0.1);
    once->setEnabled(true);
    s.wait(0.1);
    EXPECT_EQ(fired, 0);
    s.wait(0.1);
    EXPECT_EQ(fired, 1);
    EXPECT_FALSE(once->enabled());
}

TEST(QtProfileStore, ValuesSurviveInTheIniFile)
{
    QTemporaryDir dir;
    ASSERT_TRUE(dir.isValid());
    const std::string path = (dir.path() + QStringLiteral("/store.ini")).toStdString();
    {
        QtProfileStore store(path);
        EXPECT_EQ(store.get("Settings", "bc785d", "0"), "0");
        store.set("Settings", "bc785d", "1");
        store.set("Settings", "lastdir", "C:\\Scan\\M\xFCnchen, 2024");  // u-umlaut and a comma
        store.set("vfo", "top", "120");
        EXPECT_EQ(store.get("Settings", "bc785d", "0"), "1");
    }
    QtProfileStore again(path);
    EXPECT_EQ(again.fileName(), path);
    EXPECT_EQ(again.get("Settings", "bc785d", "0"), "1");
    EXPECT_EQ(again.get("Settings", "lastdir", ""), "C:\\Scan\\M\xFCnchen, 2024");
    EXPECT_EQ(again.get("vfo", "top", ""), "120");
    EXPECT_EQ(again.get("vfo", "bc785d", "none"), "none");
}

TEST(QtAppFolder, IsTheFolderKestractlUsesAndExists)
{
    QTemporaryDir home;
    ASSERT_TRUE(home.isValid());
    const QByteArray oldHome = qgetenv("XDG_DATA_HOME");
    const QString oldOrganization = QCoreApplication::organizationName();
    const QString oldApplication = QCoreApplication::applicationName();
    qputenv("XDG_DATA_HOME", home.path().toLocal8Bit());
    QCoreApplication::setOrganizationName(QString());
    QCoreApplication::setApplicationName(QStringLiteral("kestra"));

    const AppFolder folder = defaultAppFolder();
    const AppFolder standard = AppFolder::standard();

    QCoreApplication::setOrganizationName(oldOrganization);
    QCoreApplication::setApplicationName(oldApplication);
    if (oldHome.isNull()) {
        qunsetenv("XDG_DATA_HOME");
    } else {
        qputenv("XDG_DATA_HOME", oldHome);
    }
    EXPECT_EQ(folder.path(), standard.path());
    EXPECT_EQ(folder.path().string().rfind(home.path().toStdString() + "/", 0), 0u) << folder.path();
    EXPECT_TRUE(std::filesystem::is_directory(folder.path()));
}

TEST(QtDialogs, FilterBecomesQtForm)
{
    EXPECT_EQ(qtFileFilter("KESTRA Data Files|*.mem|All Files|*.*"),
              QStringLiteral("KESTRA Data Files (*.mem *.MEM);;All Files (*)"));
    EXPECT_EQ(qtFileFilter("Text (*.txt;*.CSV)|*.txt;*.CSV"), QStringLiteral("Text (*.txt *.TXT *.CSV *.csv)"));
    EXPECT_EQ(qtFileFilter("*.icf"), QStringLiteral("*.icf *.ICF (*.icf *.ICF)"));
    EXPECT_EQ(qtFileFilter("Caf\xE9|*.wav"), QStringLiteral("Caf\u00E9 (*.wav *.WAV)"));
    EXPECT_EQ(qtFileFilter(""), QString());
    EXPECT_EQ(qtFileFilter("No pattern|"), QString());
}

struct SeenBox {
    QString title;
    QString text;
    QMessageBox::Icon icon = QMessageBox::NoIcon;
    Qt::TextFormat format = Qt::AutoText;
    int width = 0;
};

// Clicks the button with the given text on the message box once it shows, and
// notes what the box looked like.
void clickWhenShown(const QString& buttonText, SeenBox* seen)
{
    QTimer::singleShot(0, [=] {
        auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        if (!box) {
            clickWhenShown(buttonText, seen);
            return;
        }
        *seen = {box->windowTitle(), box->text(), box->icon(), box->textFormat(), box->width()};
        for (QAbstractButton* button : box->buttons()) {
            if (button->text().remove(QLatin1Char('&')) == buttonText) {
                button->click();
                return;
            }
        }
        box->done(-1);  // no such button: close without one
    });
}

TEST(QtDialogs, MessageBoxesShowTheTextAndReturnTheButtonClicked)
{
    QtDialogs dialogs;
    SeenBox seen;

    clickWhenShown(QStringLiteral("No"), &seen);
    EXPECT_EQ(dialogs.message("Save changes to \x93test\x94?", {}, Buttons::YesNoCancel, Icon::Question), Answer::No);
    EXPECT_EQ(seen.title, QString::fromLatin1(kApplicationTitle));
    // A short question under the long caption: the box is wide enough for the caption.
    QFont bold = QApplication::font();
    bold.setBold(true);
    EXPECT_GT(seen.width, QFontMetrics(bold).horizontalAdvance(seen.title));
    EXPECT_EQ(seen.text, QStringLiteral("Save changes to \u201Ctest\u201D?"));
    EXPECT_EQ(seen.icon, QMessageBox::Question);

    // Text that looks like markup is shown as it is.
    clickWhenShown(QStringLiteral("Ignore"), &seen);
    EXPECT_EQ(dialogs.message("<b>Port</b>", "Com", Buttons::AbortRetryIgnore, Icon::Exclamation), Answer::Ignore);
    EXPECT_EQ(seen.title, QStringLiteral("Com"));
    EXPECT_EQ(seen.format, Qt::PlainText);
    EXPECT_EQ(seen.icon, QMessageBox::Warning);

    clickWhenShown(QStringLiteral("Retry"), &seen);
    EXPECT_EQ(dialogs.message("Again?", {}, Buttons::RetryCancel, Icon::Critical), Answer::Retry);
    EXPECT_EQ(seen.icon, QMessageBox::Critical);

    clickWhenShown(QStringLiteral("none"), &seen);
    EXPECT_EQ(dialogs.message("Go on?", {}, Buttons::OkCancel), Answer::Cancel);
}

} // namespace
} // namespace kestra
