#pragma once
// The one rule of Advanced Data Import that finds frequencies in any text:
// CSV, tab separated, plain text, HTML, the text of a web page on the
// clipboard. It knows nothing of columns: every token in which a dot stands
// between two digits is taken, cleaned of the junk at its ends. No band test
// happens here; the frequency rules apply when a channel is edited or sent.

#include <filesystem>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace kestra {

class FrequencyHarvest {
public:
    // A harvest stops taking new text once the list holds this many items.
    static constexpr std::size_t kFull = 1001;
    // The longest frequency text kept.
    static constexpr std::size_t kItemLength = 15;
    // The clipboard path takes no more than this many characters.
    static constexpr std::size_t kClipboardLimit = 58000;

    // List1, "Frequency data found:", in the order found.
    const std::vector<std::string>& items() const { return items_; }
    void clear();

    // Splits the text into tokens and offers each to addfrequency. Returns at
    // once when the list is full.
    void scantext(std::string_view text);
    // One token: appended when a dot stands between two digits and the
    // cleaned text, of value above 0, is not in the list yet.
    void addfrequency(std::string_view token);
    // The file line by line through scantext, stopping when the list is full.
    // False when the file cannot be read (the list keeps what was found).
    bool scanfile(const std::filesystem::path& path);
    // The clipboard text, cut to kClipboardLimit characters.
    void scanClipboard(std::string_view text) { scantext(text.substr(0, kClipboardLimit)); }

    // Called at the start and end of every scantext, so a window can keep
    // itself alive through a long run.
    std::function<void()> onProgress;

private:
    std::vector<std::string> items_;
    std::unordered_set<std::string> known_;
};

struct Document;

// "Export To Table:": up to 100 items into the frequency column of a bank
// (0..10) from channel `start` on (below 1 counts as 1); nothing else of a
// channel changes, and rows past the table's last are skipped. Marks the
// document changed. Returns how many items were written.
int exportToTable(Document& doc, const std::vector<std::string>& items, int bank, int start);

// The items as clipboard text: joined by CR LF, no pair behind the last.
std::string clipboardText(const std::vector<std::string>& items);

// The cleaned frequency text of a token, or "" when it is none (see addfrequency).
std::string harvestToken(std::string_view token);

} // namespace kestra
