#pragma once
// What the transfer window reads as soon as it opens, before any click: the
// ten bank tags ("TA B" A to J), then the trunk types of the banks ("TB" A to
// J). Two requests go out at once and every reply asks for the next, until
// the replies of A and J are both in; eleven replies without both, or a
// second without any reply, end that pass. A failed pass of the tags is tried
// once more before "Reading banknames failed.".
//
// With verification on, a bank's line is taken only when two passes brought
// the same line, and passes go on (up to a few) until every bank has one.

#include "exchange.h"

#include "core/document.h"

#include <array>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace kestra {

class OpeningReads {
public:
    // With setDocumentTypes the trunk types read become the document's (Read
    // Data); otherwise they are only kept as the scanner's (Send Data).
    OpeningReads(ExchangeEngine& engine, Document& doc, Dialogs& dialogs, bool setDocumentTypes);
    ~OpeningReads();

    void start();
    // A run begins: reads still under way end here, quietly (they must not
    // take the replies of the run).
    void cancel();

    bool tagsread = false;
    std::array<std::string, 10> tags;  // as read: "_" for an empty tag, ";" for ","
    bool typesread = false;
    std::array<int, 10> ttyper{};      // the scanner's trunk type of each bank
    bool done = false;                 // both reads have ended, well or not
    std::function<void()> onDone;

    // The scanner's trunk type words: "E2-8" 1 ... "EDCS S" 9, anything else 0.
    static int trunkTypeOfWord(std::string_view reply);

    // How long a pass waits for a reply before it counts as failed.
    static constexpr int kReplyTimeoutMs = 1000;

private:
    enum class Kind { Tags, Types };
    void beginPass(Kind kind);
    void reply(Kind kind);
    // A pass ended without all lines; linesTaken: its lines were looked at already.
    void passFailed(bool linesTaken = false);
    // Every bank has its line: decode, and go on to the trunk types or end.
    void allTaken();
    // The lines of a pass that ended with A and J both in: true when every
    // bank now has its line.
    bool takeLines();
    void decodeTags();
    void decodeTypes();
    void finish();

    ExchangeEngine& engine_;
    Document& doc_;
    Dialogs& dialogs_;
    bool setDocumentTypes_;
    std::unique_ptr<Timer> timeout_;
    Kind kind_ = Kind::Tags;
    int counter_ = 0;
    int passes_ = 0;
    int nextLetter_ = 0;
    // Per bank: the lines seen in the passes so far, and the line taken.
    std::array<std::vector<std::string>, 10> seen_;
    std::array<std::string, 10> taken_;
    std::array<bool, 10> have_{};
};

} // namespace kestra
