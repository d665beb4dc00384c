#pragma once
// Read Data: the scanner's channels into the document. Opening the window
// reads the bank tags and the trunk types; a click checks the model, clears
// what is to be read (unless merging) and walks the channels with seven
// exchanges each (two for an empty one); the end of the run chains to the
// other kinds of data that were ticked and reads the priority channels.

#include "exchange.h"
#include "openingreads.h"
#include "trunkidlink.h"

#include "core/document.h"

#include <array>
#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace kestra {

class ReadPipeline {
    OpeningReads opening_;  // first: the results below refer to it

public:
    enum class Scope { None, AllBanks, SingleBank, ChannelRange };
    struct Options {
        Scope scope = Scope::None;
        int bank = -1;                  // Combo1, for Single Bank
        std::string rangeStart, rangeEnd;  // Text10 (0) and (1), for Channel Range
        bool frequencies = true;
        bool trunkIds = false;
        bool searchEvents = false;
        bool trunkSettings = false;
        bool merge = false;

        // The banks (0..9) the trunk data of the run covers: all ten, the
        // chosen one, or those the channel range touches.
        std::vector<int> banks() const;
    };

    ReadPipeline(ExchangeEngine& engine, Document& doc, Dialogs& dialogs, Scheduler& scheduler,
                 std::filesystem::path folder);
    ~ReadPipeline();

    // Opening the window: the bank tags, then the trunk types.
    void open();
    // The click on Read Data. False when nothing started (a message said why).
    bool readData(const Options& options);

    // The lines of Combo1: "1 - 100 / 1", with " / " and the tag once read.
    std::vector<std::string> combo1Lines() const;

    // Results for the main window: the reads of the opening.
    // The reads of the opening have ended (well or not); `then` runs when they do.
    bool opened() const { return opening_.done; }
    void whenOpened(std::function<void()> then) { opening_.onDone = std::move(then); }

    bool& tagsread = opening_.tagsread;
    std::array<std::string, 10>& tags = opening_.tags;   // as read, "_" for an empty one
    std::array<int, 10>& ttyper = opening_.ttyper;       // trunk types of the scanner
    bool& typesread = opening_.typesread;
    int& onebankread;                   // the document's
    bool finished = false;              // Timer3 has run: the window closes
    std::function<void()> onFinished;
    // What of the run could not be read right (a priority channel whose
    // replies never agreed); empty when all went well.
    std::vector<std::string> troubles;

    // The bank tags read at the opening into the document's banktags: "_" (a
    // tag the scanner has empty) becomes " ". Nothing when they were not read.
    void applyTags(Document& doc) const;

    static int trunkTypeOfWord(std::string_view reply) { return OpeningReads::trunkTypeOfWord(reply); }

private:
    void startChannels();
    void step(int index);
    // Whether the reply in rxdata may be decoded: it has its form and, with
    // verification on, agrees with the copy read before it. Otherwise the
    // command has gone out again (past a few, a garbled reply or a disagreeing
    // copy counts as a try of the channel; the tenth ends the run): false.
    bool replyTaken(int state);
    // The priority channel of a bank, read until two replies agree.
    void readPriority(int bank);
    void decode(int state);
    // The other kinds of data after the channels, in the order Trunk Id's,
    // Trunk Bank Settings, Search Events; the last one ends the run.
    void chainAfterChannels();
    void afterIds();
    void endOfRun();
    void log(const std::string& line);

    ExchangeEngine& engine_;
    Document& doc_;
    Dialogs& dialogs_;
    Scheduler& scheduler_;
    std::filesystem::path folder_;
    Options options_;
    std::ofstream rxdat_;
    std::unique_ptr<TrunkIdLink> idLink_;
    bool verify_ = true;
    // The copy of a reply that the next one must match, and how often this
    // reply was asked for again.
    struct Copy {
        int state = 0, chanid = -1;
        std::string reply;
        int asked = 0;
    } copy_;
    // Garbled or disagreeing copies of one reply that are asked for again
    // before each further one counts as a try of the channel.
    static constexpr int kFreeAsks = 5;
};

} // namespace kestra
