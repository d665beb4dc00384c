#pragma once
// The printer the reports write to: one font, a current position, lines of
// text laid out by tab positions, pages and the end of the document. Units
// are twips (1/1440 inch); tab positions count in character columns of the
// current font, column 1 being the left edge. Texts are in the program's
// single-byte form (Windows-1252).

#include <string>
#include <vector>

namespace kestra {

// One piece of a printed line: text that starts at a tab position. Tab 0
// means "where the previous piece ended".
struct PrintPiece {
    int tab = 0;
    std::string text;
    bool operator==(const PrintPiece&) const = default;
};

class Printer {
public:
    virtual ~Printer() = default;

    virtual void setFont(const std::string& name, double size) = 0;
    // Moves the origin: a negative left or top moves the text right or down
    // by that many twips (the margins of a report).
    virtual void setScaleOrigin(int left, int top) = 0;

    // The height of the page in twips, and the vertical print position in
    // the coordinates of the origin.
    virtual double pageHeight() const = 0;
    virtual double currentY() const = 0;
    virtual void setCurrentY(double y) = 0;

    // Prints one line (no pieces: a blank line) and moves to the next.
    virtual void printLine(const std::vector<PrintPiece>& pieces) = 0;
    // Ends the page; the next line starts at the top of a new one. A page
    // ended right before the end of the document leaves no blank page.
    virtual void newPage() = 0;
    virtual void endDoc() = 0;

    // 0 while all went well, else the number of the first failure; once it is
    // set the printer does nothing more.
    virtual int error() const = 0;
};

// The failure of a printer that could not be opened or written to.
inline constexpr int kPrinterError = 482;

} // namespace kestra
