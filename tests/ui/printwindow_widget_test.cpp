// The Print window on the real main window: opened from the toolbar, a
// report chosen with the mouse, its pages shown before printing, the PDF
// written with what was typed into the grid; a printer that fails is told
// and the window stays; the test page goes out in landscape.

#include "ui/printpreviewwindow.h"
#include "ui/printwindow.h"

#include "support/mainwindowrig.h"

#include <QCheckBox>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>

#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>

namespace kestra {
namespace {

using PrintWindowTest = test::ModelWindowTest<Model::BC785D>;

std::string run(const std::string& command)
{
    std::string text;
    if (FILE* pipe = popen((command + " 2>/dev/null").c_str(), "r")) {
        char buf[4096];
        while (std::size_t n = fread(buf, 1, sizeof buf, pipe)) text.append(buf, n);
        pclose(pipe);
    }
    return text;
}

void setTicked(QCheckBox* box, bool on)
{
    if (box->isChecked() != on) QTest::mouseClick(box, Qt::LeftButton, {}, QPoint(8, box->height() / 2));
    EXPECT_EQ(box->isChecked(), on);
}

TEST_F(PrintWindowTest, TheToolbarOpensThePagesBeforeTheyGoIntoThePdf)
{
    typeInto(1, col::freq, "155.5");
    typeInto(1, col::tag, "Harbour");
    const std::string pdf = dir.file("banks");
    int previewPages = 0;

    whileOpen<PrintWindow>([&] { toolbarButton("menuprint")->trigger(); }, [&](PrintWindow* w) {
        EXPECT_EQ(w->objectName(), "printie");
        EXPECT_EQ(w->windowTitle(), "Let's Print...");
        EXPECT_TRUE(w->option(PrintItem::ActiveBank)->isChecked());
        QRadioButton* all = w->option(PrintItem::AllBanks);
        EXPECT_EQ(all->text(), "All Memory Banks");
        QTest::mouseClick(all, Qt::LeftButton, {}, QPoint(8, all->height() / 2));
        EXPECT_EQ(w->selectedItem(), PrintItem::AllBanks);
        setTicked(w->pdfBox(), true);
        EXPECT_TRUE(w->previewBox()->isChecked());
        dialogs.files.push_back(pdf);
        QObject::connect(w, &PrintWindow::previewShown, w, [&](QDialog* dialog) {
            auto* preview = qobject_cast<PrintPreviewWindow*>(dialog);
            ASSERT_NE(preview, nullptr);
            EXPECT_EQ(preview->objectName(), "printpreview");
            previewPages = preview->pageCount();
            QTest::mouseClick(preview->printButton(), Qt::LeftButton);
        });
        QTest::mouseClick(w->printButton(), Qt::LeftButton);
        EXPECT_FALSE(w->isVisible());
    });

    EXPECT_EQ(previewPages, 22);
    ASSERT_EQ(dialogs.asked.size(), 1u);
    EXPECT_EQ(dialogs.asked[0].choice.filter, "PDF Files|*.pdf|All Files|*.*");
    ASSERT_TRUE(std::filesystem::exists(pdf + ".pdf"));
    const std::string text = run("pdftotext -layout '" + pdf + ".pdf' -");
    EXPECT_EQ(std::count(text.begin(), text.end(), '\f'), 22);
    EXPECT_NE(text.find("Harbour"), std::string::npos);
    EXPECT_NE(text.find("155.5000"), std::string::npos);
    EXPECT_NE(text.find("Page 22 / 22"), std::string::npos);
    EXPECT_TRUE(messages().empty());
}

TEST_F(PrintWindowTest, APrinterFailureIsToldAndTheWindowStaysForTheTestPage)
{
    const std::string testPage = dir.file("landscape.pdf");
    whileOpen<PrintWindow>("menuprint", [&](PrintWindow* w) {
        QTest::mouseClick(w->option(PrintItem::SearchData), Qt::LeftButton, {}, QPoint(8, 8));
        setTicked(w->previewBox(), false);
        setTicked(w->pdfBox(), true);
        dialogs.files.push_back(dir.file("no/such/folder/report.pdf"));
        QTest::mouseClick(w->printButton(), Qt::LeftButton);
        EXPECT_TRUE(w->isVisible());
        EXPECT_EQ(messages(), std::vector<std::string>{"Problem in printerroutine #1 Err = 482"});

        dialogs.files.push_back(testPage);
        QTest::mouseClick(w->tableButton(), Qt::LeftButton);
        EXPECT_TRUE(w->isVisible());
        // Nothing chosen: nothing printed, the window stays.
        QTest::mouseClick(w->printButton(), Qt::LeftButton);
        EXPECT_TRUE(w->isVisible());
        QTest::mouseClick(w->cancelButton(), Qt::LeftButton);
        EXPECT_FALSE(w->isVisible());
    });
    EXPECT_NE(run("pdftotext '" + testPage + "' -").find("Should print in landscape mode"), std::string::npos);
    // "Page size:      841.89 x 595.276 pts (A4)": wider than high.
    const std::string info = run("pdfinfo '" + testPage + "'");
    double width = 0, height = 0;
    const std::size_t at = info.find("Page size:");
    ASSERT_NE(at, std::string::npos) << info;
    std::sscanf(info.c_str() + at, "Page size: %lf x %lf", &width, &height);
    EXPECT_GT(width, height) << info;
    EXPECT_EQ(messages().size(), 1u);
}

} // namespace
} // namespace kestra
