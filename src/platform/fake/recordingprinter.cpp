#include "platform/fake/recordingprinter.h"

#include <cstdio>

namespace kestra {

namespace {
std::string number(double v)
{
    char buf[32];
    std::snprintf(buf, sizeof buf, "%g", v);
    return buf;
}
} // namespace

void RecordingPrinter::setFont(const std::string& name, double size)
{
    if (error_) return;
    calls.push_back("font " + name + " " + number(size));
}

void RecordingPrinter::setScaleOrigin(int left, int top)
{
    if (error_) return;
    calls.push_back("origin " + std::to_string(left) + " " + std::to_string(top));
}

void RecordingPrinter::setCurrentY(double y)
{
    if (error_) return;
    y_ = y;
    calls.push_back("y " + number(y));
}

std::string RecordingPrinter::lineText(const std::vector<PrintPiece>& pieces)
{
    std::string text;
    for (std::size_t i = 0; i < pieces.size(); ++i) {
        if (i) text += '|';
        text += std::to_string(pieces[i].tab) + ":" + pieces[i].text;
    }
    return text;
}

void RecordingPrinter::printLine(const std::vector<PrintPiece>& pieces)
{
    if (error_) return;
    if (failAtLine > 0 && ++lines_ >= failAtLine) {
        error_ = kPrinterError;
        return;
    }
    calls.push_back("line " + lineText(pieces));
    pages.back().push_back(pieces);
    y_ += lineHeight;
}

void RecordingPrinter::newPage()
{
    if (error_) return;
    calls.push_back("newpage");
    pages.emplace_back();
    y_ = 0;
}

void RecordingPrinter::endDoc()
{
    if (error_) return;
    calls.push_back("enddoc");
    // A page ended right before the end leaves no blank page.
    if (pages.size() > 1 && pages.back().empty()) pages.pop_back();
}

} // namespace kestra
