#pragma once
// The document: memdata and its companions, the trunk and search stores, the
// Easy Tag lists and the model switches. One Document is owned by the main
// window for the whole run and passed by reference to everything that reads
// or writes the channels.

#include "cellcodes.h"

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace kestra {

inline constexpr int kBanks = 13;        // 0..9 Bank 1..10, 10 Dummy, 11 Search, 12 custom bandplan
inline constexpr int kChannelBanks = 10; // banks saved in a MEM file
inline constexpr int kDummyBank = 10;
inline constexpr int kSearchBank = 11;
inline constexpr int kBandplanBank = 12;
inline constexpr int kRows = 112;        // row 0 and 101..111 carry no channel
inline constexpr int kChannelRows = 100;
inline constexpr int kCellColumns = 14;  // 0..12 and the comment as column 13
inline constexpr std::size_t kCommentLength = 40;
inline constexpr std::size_t kTagLength = 16;      // the width of a channel's tag
inline constexpr int kEasyTagsMax = 1000;
inline constexpr int kBankEasyTagsMax = 100;

// One bank's trunk system (trunkset): its type, ten fields and three blocks of eight.
struct TrunkSystem {
    std::string trunktype;
    std::array<std::string, 10> trunkfields;
    std::array<std::array<std::string, 8>, 3> trunkblocks;
    bool operator==(const TrunkSystem&) const = default;
};

// One entry of a bank's trunk ID list: five text fields.
using TrunkIdEntry = std::array<std::string, 5>;
namespace idcol {
inline constexpr int id = 0, tag = 1, record = 2, beep = 3, reserved = 4;
}
inline constexpr int kIdLists = 10;       // scan lists per bank
inline constexpr int kIdsPerList = 10;
// The store row of slot `digit` (0..9, 0 the tenth) of list 0..9: the store
// keeps each list the way the scanner numbers it.
inline constexpr int idStoreRow(int list, int digit) { return list * kIdsPerList + digit; }

struct Document {
    // memdata: [bank][row][column], column 13 the comment.
    std::array<std::array<std::array<std::string, kCellColumns>, kRows>, kBanks> memdata;

    std::array<std::string, 12> banktags;
    std::array<std::int16_t, 10> banklockm{};
    std::array<std::int16_t, 10> banklocks{};
    std::array<std::string, 16> fipscodes;
    std::array<std::int16_t, 10> priochan{};

    std::array<TrunkSystem, 10> trunkset;
    std::array<std::array<TrunkIdEntry, 100>, 10> trunkids;
    std::array<std::array<std::string, 10>, 10> trunklisttags;
    std::array<std::array<std::string, 10>, 10> srcdata;

    // Easy Tag lists (kept only while "Show Easy Tag Dropdown List" is on).
    std::vector<std::string> easytags;
    std::array<std::vector<std::string>, 10> banktaglist;

    ModelSwitches model;

    // Document state.
    bool dirty = false;
    std::string fnaam = "Untitled";  // the file shown in the caption: a native (UTF-8) path, not code-page text
    int currentBank = 0;
    // 1 when the last Read Data covered a single bank (a send of all banks
    // then asks twice).
    int onebankread = 0;
    // 1 when the last read of trunk data (IDs or settings) covered one bank:
    // sending the IDs of all banks then asks once more.
    int onebanktrunk = 0;

    Document();

    std::string& cell(int bank, int row, int column) { return memdata[bank][row][column]; }
    const std::string& cell(int bank, int row, int column) const { return memdata[bank][row][column]; }

    // The single rule of emptiness: the frequency's value is 0.
    bool isEmpty(int bank, int row) const;

    // What the splash window writes into banks 0..9, rows 0..101 before the
    // main window clears everything again.
    void fillSplashDefaults();
    // Every cell of every bank "" (the state at process start).
    void clearAllCells();
    // Banks 0..11, rows 0..100: column 0 "", column 1 "0", the rest "". What a load starts from.
    void clearForLoad();
    // File > New.
    void clearstores();
    // Every channel of one bank empty ("Empty"); does nothing for bank 12.
    void clearbank(int bank);
    // Every channel of one bank "Empty", its other cells " " (the search
    // ranges are left alone). Does nothing for bank 12.
    void emptyChannels(int bank);
    // priochan[b] = b * 100 + 1.
    void defaultPriorityChannels();
    // "Bank: 1" ... "Bank: 10", "Dummy", "Search" (start-up) or "Bank 1" ... (File > New).
    void setDefaultBankTags(bool withColon);

    // Adds a tag to the Easy Tag lists when option9 is on.
    void addeasytag(std::string_view tag, int bank, int option9);
    void clearEasyTags();
};

// The trunk type code of a bank (trunkset's trunktype as a number; "" is 0).
int bankTrunkType(const Document& doc, int bank);

// A channel's number: bank * 100 + row (bank 0 row 1 is channel 1). The
// numbers 1001..1100 are the Dummy bank's.
inline int channelNumber(int bank, int row) { return bank * 100 + row; }
inline constexpr int kLastChannel = (kDummyBank + 1) * kChannelRows;   // 1100
// The bank (0..9, 10 the Dummy bank) and row of channel 1..1100.
inline int channelBank(int channel) { return (channel - 1) / kChannelRows; }
inline int channelRow(int channel) { return channel - channelBank(channel) * kChannelRows; }

// "Bank Empty Status:" and the lines of the banks that have no channel.
std::vector<std::string> bankEmptyStatus(const Document& doc);

} // namespace kestra
