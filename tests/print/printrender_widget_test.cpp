// The report as it lands on paper: a full document's all-banks report
// written into a PDF in the time a user waits for, and its first page drawn
// by pdftoppm compared with a stored picture, so that a shifted column or a
// lost line is seen.

#include "platform/qt/qtprinter.h"
#include "print/reports.h"

#include "support/reportdocument.h"
#include "support/testfiles.h"

#include <QImage>

#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <iostream>

namespace kestra {
namespace {

const std::string kReference = std::string(KESTRA_TEST_DATA_DIR) + "/allbanks-page1.png";

// Page `page` of a PDF as a grey picture at 50 dots an inch.
QImage pagePicture(const std::string& pdf, int page, const std::string& stem)
{
    const std::string command = "pdftoppm -r 50 -gray -png -singlefile -f " + std::to_string(page) + " -l " +
                                std::to_string(page) + " '" + pdf + "' '" + stem + "'";
    EXPECT_EQ(std::system(command.c_str()), 0) << command;
    return QImage(QString::fromStdString(stem + ".png")).convertToFormat(QImage::Format_Grayscale8);
}

// The share of pixels (0..1) whose grey differs by more than a quarter of
// the scale: anti-aliasing noise stays below it, a moved word does not.
double differingShare(const QImage& a, const QImage& b)
{
    if (a.size() != b.size()) return 1.0;
    long differing = 0;
    for (int y = 0; y < a.height(); ++y) {
        const uchar* la = a.constScanLine(y);
        const uchar* lb = b.constScanLine(y);
        for (int x = 0; x < a.width(); ++x) differing += std::abs(int(la[x]) - int(lb[x])) > 64;
    }
    return double(differing) / (double(a.width()) * a.height());
}

constexpr double kTolerance = 0.002;

TEST(PrintRenderingTest, AllBanksOfAFullDocumentAreQuickAndLookAsTheyDid)
{
    test::TempDir dir;
    const Document doc = test::reportDocument();
    const std::string pdf = dir.file("all.pdf");

    const auto start = std::chrono::steady_clock::now();
    const int error = QtPrinter::writePdf(pdf, [&](Printer& printer) {
        return printReport(printer, doc, {PrintItem::AllBanks, 0, "2026-11-23", "scanner.mem"});
    });
    const auto ms = std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - start);
    ASSERT_EQ(error, 0);
    std::cout << "all banks, 1000 channels, 22 pages: " << ms.count() << " ms\n";
    EXPECT_LT(ms.count(), 1000);

    const QImage page1 = pagePicture(pdf, 1, dir.file("page1"));
    ASSERT_FALSE(page1.isNull());
    QImage reference(QString::fromStdString(kReference));
    if (reference.isNull() && std::getenv("KESTRA_WRITE_REFERENCE")) {
        ASSERT_TRUE(page1.save(QString::fromStdString(kReference)));
        GTEST_SKIP() << "reference written to " << kReference;
    }
    ASSERT_FALSE(reference.isNull()) << kReference;
    reference = reference.convertToFormat(QImage::Format_Grayscale8);
    const double same = differingShare(page1, reference);
    std::cout << "page 1 against the reference: " << same * 100 << " % of pixels differ\n";
    EXPECT_LT(same, kTolerance);

    // The tolerance is tight enough to see a page with other values: the
    // second page (channels 51 to 100) and bank 2's first page both fail it.
    for (int page : {2, 3}) {
        const double other = differingShare(pagePicture(pdf, page, dir.file("page" + std::to_string(page))), reference);
        std::cout << "page " << page << " against the reference: " << other * 100 << " %\n";
        EXPECT_GT(other, kTolerance);
    }
}

} // namespace
} // namespace kestra
