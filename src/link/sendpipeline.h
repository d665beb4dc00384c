#pragma once
// Send Data: the document into the scanner. After the model check and the
// confirmations the run walks the channels: at the first channel of a bank
// its trunk type (when the scanner's differs) and "MA"; then "PM" with the
// frequency, and ten steps for the step, the frequency again (by "PM" or keyed
// in), lockout, attenuator, record, delay, beep alert, tag, mode and subtone.
// An empty channel is cleared with one exchange. Delete Bank clears a bank.

#include "exchange.h"
#include "openingreads.h"
#include "readpipeline.h"

#include "core/document.h"
#include "core/settings.h"

#include <array>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <vector>

namespace kestra {

class SendPipeline {
    OpeningReads opening_;  // first: the results below refer to it

public:
    using Scope = ReadPipeline::Scope;
    using Options = ReadPipeline::Options;

    SendPipeline(ExchangeEngine& engine, Document& doc, Settings& settings, Dialogs& dialogs, Scheduler& scheduler,
                 std::filesystem::path folder);
    ~SendPipeline();

    // Opening the window: which banks have trunk channels, then the bank tags
    // and the scanner's trunk types.
    void open();
    // The click on Send Data; false when nothing started.
    bool sendData(const Options& options);
    // Delete Bank on the chosen bank; false when nothing was deleted.
    bool deleteBank(const Options& options);

    // The lines of Combo1: "1 - 100 / 1", "  -  EMPTY" for a bank without
    // data, and the tag once read.
    std::vector<std::string> combo1Lines() const;
    bool bankHasData(int bank) const;

    // The reads of the opening have ended (well or not); `then` runs when they do.
    bool opened() const { return opening_.done; }
    void whenOpened(std::function<void()> then) { opening_.onDone = std::move(then); }

    bool& tagsread = opening_.tagsread;
    std::array<std::string, 10>& tags = opening_.tags;
    std::array<int, 10>& ttyper = opening_.ttyper;
    std::array<int, 10> tyes{};   // banks with at least one trunk channel
    bool freqbykey = false;
    bool finished = false;
    std::function<void()> onFinished;
    // What of the run could not be sent whole (a bank whose menu walk went
    // astray); empty when all went well.
    std::vector<std::string> troubles;

    // The keys that type a frequency in ("0100.0000": KEY02 1, KEY02 0,
    // KEY02 0, KEY03, KEY04, KEY04; KEY14 follows).
    static std::vector<std::string> frequencyKeys(const std::string& txd);
    // The eight wire digits of a stored frequency, as it is stored or as the
    // grid shows it without leading zeros: "00000000" for an empty channel
    // (a value of 0), nothing for a text that no eight digits can stand for.
    static std::optional<std::string> txdOf(const std::string& freq);

private:
    void senddata();
    void step(int index);
    // A cell outside its list (step, delay, mode): the step is left out, with
    // a line in txlog.txt, and the next one follows.
    void skipStep(int index, const std::string& cell);
    void frequencyStep();
    // The wire form of the channel's frequency; nothing (after the message,
    // with the run stopped) when it cannot be formed.
    std::optional<std::string> txdChecked(const std::string& errorText);
    // The other kinds of data after the channels, in the order Trunk Bank
    // Settings, Trunk Id's, Search Events; the last one ends the run.
    void chainAfterChannels();
    void endOfRun();
    void log(const std::string& line);
    std::array<std::string, kCellColumns>& line() { return doc_.memdata[engine_.bk()][engine_.ka()]; }

    ExchangeEngine& engine_;
    Document& doc_;
    Settings& settings_;
    Dialogs& dialogs_;
    Scheduler& scheduler_;
    std::filesystem::path folder_;
    Options options_;
    std::ofstream txlog_;
};

} // namespace kestra
