#include "openingreads.h"

#include "vocabulary.h"

#include "core/text.h"

#include <algorithm>

namespace kestra {

OpeningReads::OpeningReads(ExchangeEngine& engine, Document& doc, Dialogs& dialogs, bool setDocumentTypes)
    : engine_(engine), doc_(doc), dialogs_(dialogs), setDocumentTypes_(setDocumentTypes)
{
}

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
    engine_.hooks.bankTags = [this] { tagReply(); };
    engine_.hooks.trunkTypes = [this] { trunkTypeReply(); };
    tagsread = typesread = done = false;
    overruns_ = 0;
    readTags();
}

void OpeningReads::readTags()
{
    SerialPort& port = engine_.port();
    port.input();
    engine_.rxdata.clear();
    engine_.commstate = 33;
    counter_ = 0;
    port.setRThreshold(0);
    engine_.sendline(wire::readBankTag(0));
    engine_.wait(engine_.stepDelay() / 1000.0);
    engine_.sendline(wire::readBankTag(1));
    engine_.wait(engine_.stepDelay() / 1000.0);
    nextLetter_ = 2;
    port.setRThreshold(1);
}

void OpeningReads::tagReply()
{
    engine_.commstate = 33;
    ++counter_;
    engine_.status.text3 = "Read Bank Names/ " + std::to_string(counter_);
    const std::string& rx = engine_.rxdata;
    if (contains(rx, "TA B A ") && contains(rx, "TA B J ")) {
        engine_.status.text3 = "Names Read Ok";
        tagsread = true;
        for (int b = 0; b < 10; ++b) {
            std::string tag = wire::decodeBankTag(rx, b).value_or("");
            if (tag.empty()) tag = "_";
            std::replace(tag.begin(), tag.end(), ',', ';');
            tags[b] = tag;
        }
        readTrunkTypes();
        return;
    }
    if (counter_ > 11) {
        if (++overruns_ == 1) {
            readTags();
        } else {
            engine_.port().input();
            dialogs_.message("Reading banknames failed.");
            readTrunkTypes();
        }
        return;
    }
    if (nextLetter_ < 10) engine_.sendline(wire::readBankTag(nextLetter_++));
}

void OpeningReads::readTrunkTypes()
{
    SerialPort& port = engine_.port();
    port.input();
    engine_.rxdata.clear();
    engine_.commstate = 34;
    counter_ = 0;
    port.setRThreshold(0);
    engine_.sendline(wire::readTrunkType(0));
    nextLetter_ = 1;
    port.setRThreshold(1);
}

void OpeningReads::trunkTypeReply()
{
    engine_.commstate = 34;
    ++counter_;
    engine_.status.text3 = "Read trunktype/" + std::to_string(counter_);
    const std::string& rx = engine_.rxdata;
    if (contains(rx, "TB A ") && contains(rx, "TB J ")) {
        engine_.status.text3 = "Trunk type read Ok";
        typesread = true;
        for (int b = 0; b < 10; ++b) {
            const std::string marker = std::string("TB ") + wire::bankLetter(b) + " ";
            const std::size_t pos = rx.find(marker);
            std::string line;
            if (pos != std::string::npos) line = rx.substr(pos, rx.find('\r', pos) - pos);
            ttyper[b] = trunkTypeOfWord(line);
            if (setDocumentTypes_) doc_.trunkset[b].trunktype = std::to_string(ttyper[b]);
        }
        finish();
        return;
    }
    if (counter_ > 11) {
        engine_.port().input();
        dialogs_.message("Reading trunktype failed.");
        finish();
        return;
    }
    if (nextLetter_ < 10) engine_.sendline(wire::readTrunkType(nextLetter_++));
}

void OpeningReads::finish()
{
    engine_.port().setRThreshold(0);
    engine_.commstate = 0;
    done = true;
    if (onDone) onDone();
}

} // namespace kestra
