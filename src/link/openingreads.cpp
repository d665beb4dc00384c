#include "openingreads.h"

#include "vocabulary.h"

#include "core/text.h"

#include <algorithm>

namespace kestra {

namespace {
// The line that begins with `marker`, up to its carriage return; nothing when
// the marker is not there or its line is not ended yet.
std::optional<std::string> lineAt(const std::string& rx, const std::string& marker)
{
    const std::size_t pos = rx.find(marker);
    if (pos == std::string::npos) return std::nullopt;
    const std::size_t cr = rx.find('\r', pos);
    if (cr == std::string::npos) return std::nullopt;
    return rx.substr(pos, cr - pos);
}

std::string marker(const char* head, int bank) { return head + std::string(1, wire::bankLetter(bank)) + " "; }
} // namespace

OpeningReads::OpeningReads(ExchangeEngine& engine, Document& doc, Dialogs& dialogs, bool setDocumentTypes)
    : engine_(engine), doc_(doc), dialogs_(dialogs), setDocumentTypes_(setDocumentTypes)
{
    timeout_ = makeTimer(engine_.scheduler(), kReplyTimeoutMs, true, [this] { passFailed(); });
}

OpeningReads::~OpeningReads() = default;

int OpeningReads::trunkTypeOfWord(std::string_view reply)
{
    static constexpr std::pair<const char*, int> words[] = {{"E2-8", 1}, {"TYPE", 2}, {"E2-9", 3}, {"E2-U", 4},
                                                            {"E2-V", 5}, {"EDCS W", 6}, {"EDCS N", 7}, {"LT", 8},
                                                            {"EDCS S", 9}};
    for (const auto& [word, type] : words)
        if (contains(reply, word)) return type;
    return 0;
}

void OpeningReads::start()
{
    engine_.hooks.bankTags = [this] { reply(Kind::Tags); };
    engine_.hooks.trunkTypes = [this] { reply(Kind::Types); };
    tagsread = typesread = done = false;
    // A port that did not open has nobody to answer.
    if (!engine_.portOpened) {
        finish();
        return;
    }
    kind_ = Kind::Tags;
    passes_ = 0;
    seen_ = {};
    have_ = {};
    beginPass(Kind::Tags);
}

void OpeningReads::cancel()
{
    if (done) return;
    timeout_->setEnabled(false);
    done = true;
    if (onDone) onDone();
}

void OpeningReads::beginPass(Kind kind)
{
    kind_ = kind;
    ++passes_;
    SerialPort& port = engine_.port();
    port.input();
    engine_.rxdata.clear();
    engine_.commstate = kind == Kind::Tags ? 33 : 34;
    counter_ = 0;
    port.setRThreshold(0);
    if (kind == Kind::Tags) {
        engine_.sendline(wire::readBankTag(0));
        if (!engine_.wait(engine_.stepDelay() / 1000.0)) return;
        engine_.sendline(wire::readBankTag(1));
        if (!engine_.wait(engine_.stepDelay() / 1000.0)) return;
        nextLetter_ = 2;
    } else {
        engine_.sendline(wire::readTrunkType(0));
        nextLetter_ = 1;
    }
    timeout_->setEnabled(true);
    port.setRThreshold(1);
}

void OpeningReads::reply(Kind kind)
{
    timeout_->setEnabled(false);
    if (done || engine_.stopflag == 1) return;
    engine_.commstate = kind == Kind::Tags ? 33 : 34;
    ++counter_;
    engine_.status.text3 = (kind == Kind::Tags ? "Read Bank Names/ " : "Read trunktype/") + std::to_string(counter_);
    const char* head = kind == Kind::Tags ? "TA B " : "TB ";
    const std::string& rx = engine_.rxdata;
    if (contains(rx, marker(head, 0)) && contains(rx, marker(head, 9))) {
        if (takeLines())
            allTaken();
        else
            passFailed(true);
        return;
    }
    if (counter_ > 11) {
        passFailed();
        return;
    }
    // The letters go on past J: the scanner refuses those, and each refusal
    // counts towards the limit, so a scanner that never gives A and J ends.
    engine_.sendline((kind == Kind::Tags ? wire::readBankTag(nextLetter_) : wire::readTrunkType(nextLetter_)));
    ++nextLetter_;
    timeout_->setEnabled(true);
}

bool OpeningReads::takeLines()
{
    const bool verify = engine_.settings().verifyread == 1;
    const char* head = kind_ == Kind::Tags ? "TA B " : "TB ";
    bool all = true;
    for (int b = 0; b < 10; ++b) {
        if (have_[b]) continue;
        const auto line = lineAt(engine_.rxdata, marker(head, b));
        if (line && (!verify || std::find(seen_[b].begin(), seen_[b].end(), *line) != seen_[b].end())) {
            taken_[b] = *line;
            have_[b] = true;
            continue;
        }
        if (line) seen_[b].push_back(*line);
        all = false;
    }
    return all;
}

void OpeningReads::allTaken()
{
    if (kind_ == Kind::Tags) {
        engine_.status.text3 = "Names Read Ok";
        decodeTags();
        passes_ = 0;
        beginPass(Kind::Types);
    } else {
        engine_.status.text3 = "Trunk type read Ok";
        decodeTypes();
        finish();
    }
}

void OpeningReads::passFailed(bool linesTaken)
{
    timeout_->setEnabled(false);
    if (done) return;
    engine_.port().setRThreshold(0);
    const bool verify = engine_.settings().verifyread == 1;
    // With verification the lines of a pass that did not end well count
    // too: a line seen twice is a line read, whichever passes brought it.
    // (Each pass's lines are taken once: a line is never its own second copy.)
    if (verify && !linesTaken && takeLines()) {
        allTaken();
        return;
    }
    // The tags get one more pass, the trunk types none; verification asks for
    // passes until two agree, a few at the most.
    const int most = verify ? 6 : kind_ == Kind::Tags ? 2 : 1;
    if (passes_ < most) {
        beginPass(kind_);
        return;
    }
    engine_.port().input();
    if (kind_ == Kind::Tags) {
        dialogs_.message("Reading banknames failed.");
        if (engine_.stopflag == 1) return;
        seen_ = {};
        have_ = {};
        passes_ = 0;
        beginPass(Kind::Types);
    } else {
        dialogs_.message("Reading trunktype failed.");
        finish();
    }
}

void OpeningReads::decodeTags()
{
    tagsread = true;
    for (int b = 0; b < 10; ++b) {
        std::string tag = wire::decodeBankTag(taken_[b] + "\r", b).value_or("");
        if (tag.empty()) tag = "_";
        std::replace(tag.begin(), tag.end(), ',', ';');
        tags[b] = tag;
    }
    seen_ = {};
    have_ = {};
}

void OpeningReads::decodeTypes()
{
    typesread = true;
    for (int b = 0; b < 10; ++b) {
        ttyper[b] = trunkTypeOfWord(taken_[b]);
        if (setDocumentTypes_) doc_.trunkset[b].trunktype = std::to_string(ttyper[b]);
    }
}

void OpeningReads::finish()
{
    timeout_->setEnabled(false);
    engine_.port().setRThreshold(0);
    engine_.commstate = 0;
    done = true;
    if (onDone) onDone();
}

} // namespace kestra
