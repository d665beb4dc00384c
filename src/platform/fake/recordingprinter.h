#pragma once
// A printer that keeps what it is told: every call as a line of text, and
// the printed lines page by page. Used by the tests; it can be made to fail
// at a given line, as a printer that runs out of paper would.

#include "platform/printer.h"

#include <string>
#include <vector>

namespace kestra {

class RecordingPrinter : public Printer {
public:
    // Calls as text: "font Arial 8.25", "origin -800 -500", "y 15538",
    // "line 1:1: |8:Empty", "newpage", "enddoc".
    std::vector<std::string> calls;
    // The printed lines of each page (the pieces as given).
    std::vector<std::vector<std::vector<PrintPiece>>> pages{1};

    // The line height and page height the reports see (A4, a small font).
    double lineHeight = 195;
    double height = 16838;
    // The printed line (counted from 1 over the document) at which the
    // printer fails with kPrinterError; 0 never.
    int failAtLine = 0;

    void setFont(const std::string& name, double size) override;
    void setScaleOrigin(int left, int top) override;
    double pageHeight() const override { return height; }
    double currentY() const override { return y_; }
    void setCurrentY(double y) override;
    void printLine(const std::vector<PrintPiece>& pieces) override;
    void newPage() override;
    void endDoc() override;
    int error() const override { return error_; }

    // A line as "tab:text|tab:text" (what "line" calls record).
    static std::string lineText(const std::vector<PrintPiece>& pieces);

private:
    double y_ = 0;
    int lines_ = 0;
    int error_ = 0;
};

} // namespace kestra
