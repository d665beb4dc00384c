#pragma once
// What the transfer window reads as soon as it opens, before any click: the
// ten bank tags ("TA B" A to J), then the trunk types of the banks ("TB" A to
// J). Two requests go out at once and every reply asks for the next, until
// the replies of A and J are both in; eleven replies without both mean the
// read failed (the tags get one more try).

#include "exchange.h"

#include "core/document.h"

#include <array>
#include <functional>
#include <string>

namespace kestra {

class OpeningReads {
public:
    // With setDocumentTypes the trunk types read become the document's (Read
    // Data); otherwise they are only kept as the scanner's (Send Data).
    OpeningReads(ExchangeEngine& engine, Document& doc, Dialogs& dialogs, bool setDocumentTypes);

    void start();

    bool tagsread = false;
    std::array<std::string, 10> tags;  // as read: "_" for an empty tag, ";" for ","
    bool typesread = false;
    std::array<int, 10> ttyper{};      // the scanner's trunk type of each bank
    bool done = false;                 // both reads have ended, well or not
    std::function<void()> onDone;

    // The scanner's trunk type words: "E2-8" 1 ... "EDCS S" 9, anything else 0.
    static int trunkTypeOfWord(std::string_view reply);

private:
    void readTags();
    void tagReply();
    void readTrunkTypes();
    void trunkTypeReply();
    void finish();

    ExchangeEngine& engine_;
    Document& doc_;
    Dialogs& dialogs_;
    bool setDocumentTypes_;
    int counter_ = 0;
    int overruns_ = 0;
    int nextLetter_ = 0;
};

} // namespace kestra
