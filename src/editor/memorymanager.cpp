#include "editor/memorymanager.h"

#include "core/memtable.h"
#include "editor/lineops.h"

#include <algorithm>
#include <array>
#include <utility>
#include <vector>

namespace kestra {

namespace {

using Line = std::array<std::string, kCellColumns>;
using Op = MemoryJob::Operation;
using Part = MemoryJob::BankPart;

Line& lineOf(Document& doc, int channel)
{
    return doc.memdata[channelBank(channel)][channelRow(channel)];
}

// The channel an edit operation empties on purpose.
void emptyLine(Line& line)
{
    line[col::line] = " ";
    line[col::freq] = "Empty";
    for (int c = col::tag; c < kCellColumns; ++c) line[c] = " ";
}

// Writes a channel into a place; without tags the place keeps its own.
void put(Line& place, const Line& channel, bool withTag)
{
    std::string tag = std::move(place[col::tag]);
    place = channel;
    if (!withTag) place[col::tag] = std::move(tag);
}

const char* pastVerb(Op op)
{
    switch (op) {
    case Op::Copy: return "copied";
    case Op::Move: return "moved";
    case Op::Swap: return "swapped";
    }
    return "";
}

std::string bankName(int bank)
{
    return bank == kDummyBank ? std::string("the Dummy bank") : "Bank " + std::to_string(bank + 1);
}

std::string capitalised(std::string text)
{
    if (!text.empty() && text[0] >= 'a' && text[0] <= 'z') text[0] = static_cast<char>(text[0] - 'a' + 'A');
    return text;
}

std::string channelSpan(int first, int count)
{
    return count == 1 ? "channel " + std::to_string(first)
                      : "channels " + std::to_string(first) + "-" + std::to_string(first + count - 1);
}

// The channel ranges of a job as they are worked: ends within 1..1100 and in
// order, and the count cut so that the destination ends at channel 1100.
struct Ranges {
    int from = 1, to = 1, asked = 0, count = 0;
};

Ranges rangesOf(const MemoryJob& job)
{
    Ranges r;
    int first = std::clamp(job.fromFirst, 1, kLastChannel);
    int last = std::clamp(job.fromLast, 1, kLastChannel);
    if (last < first) std::swap(first, last);
    r.from = first;
    r.to = std::clamp(job.toFirst, 1, kLastChannel);
    r.asked = last - first + 1;
    r.count = std::min(r.asked, kLastChannel - r.to + 1);
    return r;
}

MemoryOutcome runChannels(Document& doc, const MemoryJob& job)
{
    MemoryOutcome out;
    const Ranges r = rangesOf(job);
    if (r.from == r.to) {
        out.note = "Source and destination are the same channels: nothing was changed.";
        return out;
    }

    // Every channel of both ranges as it was, so that overlapping ranges
    // read nothing that this job has already written.
    std::vector<Line> source, target;
    for (int i = 0; i < r.count; ++i) {
        source.push_back(lineOf(doc, r.from + i));
        target.push_back(lineOf(doc, r.to + i));
    }
    for (int i = 0; i < r.count; ++i) put(lineOf(doc, r.to + i), source[i], job.copyTags);

    const auto inTarget = [&](int channel) { return channel >= r.to && channel < r.to + r.count; };
    const auto inSource = [&](int channel) { return channel >= r.from && channel < r.from + r.count; };
    if (job.operation == Op::Move) {
        for (int i = 0; i < r.count; ++i)
            if (!inTarget(r.from + i)) emptyLine(lineOf(doc, r.from + i));
    } else if (job.operation == Op::Swap) {
        // The channels pushed out of the destination fill, in their order, the
        // places the source left. Apart ranges simply change places; ranges
        // that overlap turn round their union, and no channel is lost.
        std::vector<int> vacated;
        std::vector<const Line*> displaced;
        for (int i = 0; i < r.count; ++i) {
            if (!inTarget(r.from + i)) vacated.push_back(r.from + i);
            if (!inSource(r.to + i)) displaced.push_back(&target[i]);
        }
        for (std::size_t k = 0; k < vacated.size() && k < displaced.size(); ++k)
            put(lineOf(doc, vacated[k]), *displaced[k], job.copyTags);
    }

    out.changed = true;
    const char* verb = pastVerb(job.operation);
    out.done = capitalised(channelSpan(r.from, r.count)) + " " + verb +
               (job.operation == Op::Swap ? " with " : " to ") + channelSpan(r.to, r.count) + ".";
    if (r.count < r.asked)
        out.note = "Channel " + std::to_string(kLastChannel) + " is the last channel: only " +
                   std::to_string(r.count) + " of the " + std::to_string(r.asked) + " channels were " + verb + ".";
    return out;
}

// ---- banks ----

// What goes with a bank's channels. The lockout flags and the priority
// channel exist for Bank 1..10 only.
struct BankChannels {
    std::array<Line, kChannelRows + 1> lines;
    std::string tag;
    std::int16_t lockm = 0, locks = 0;
    int priorityRow = 0;   // the priority channel's row, 0 when it lies outside the bank

    static BankChannels of(const Document& doc, int bank)
    {
        BankChannels b;
        b.lines = {};
        for (int r = 1; r <= kChannelRows; ++r) b.lines[r] = doc.memdata[bank][r];
        b.tag = doc.banktags[bank];
        if (bank < kChannelBanks) {
            b.lockm = doc.banklockm[bank];
            b.locks = doc.banklocks[bank];
            const int row = doc.priochan[bank] - bank * kChannelRows;
            b.priorityRow = row >= 1 && row <= kChannelRows ? row : 0;
        }
        return b;
    }
    void into(Document& doc, int bank, bool withTag) const
    {
        for (int r = 1; r <= kChannelRows; ++r) doc.memdata[bank][r] = lines[r];
        if (withTag) doc.banktags[bank] = tag;
        if (bank < kChannelBanks) {
            doc.banklockm[bank] = lockm;
            doc.banklocks[bank] = locks;
            if (priorityRow != 0) doc.priochan[bank] = static_cast<std::int16_t>(bank * kChannelRows + priorityRow);
        }
    }
};

struct BankTrunk {
    TrunkSystem system;
    std::array<TrunkIdEntry, 100> ids;
    std::array<std::string, 10> listTags;

    static BankTrunk of(const Document& doc, int bank)
    {
        return {doc.trunkset[bank], doc.trunkids[bank], doc.trunklisttags[bank]};
    }
    void into(Document& doc, int bank) const
    {
        doc.trunkset[bank] = system;
        doc.trunkids[bank] = ids;
        doc.trunklisttags[bank] = listTags;
    }
    // A bank whose trunk settings moved away: trunking off, no IDs, no tags.
    static BankTrunk none()
    {
        BankTrunk t;
        t.system.trunktype = "0";
        return t;
    }
};

MemoryOutcome runBanks(Document& doc, const MemoryJob& job)
{
    MemoryOutcome out;
    const int from = std::clamp(job.fromBank, 0, kDummyBank);
    const int to = std::clamp(job.toBank, 0, kDummyBank);
    const char* verb = pastVerb(job.operation);
    if (from == to) {
        out.note = "Source and destination are the same bank: nothing was changed.";
        return out;
    }

    const bool channels = job.part != Part::TrunkSettings;
    bool trunk = job.part != Part::Channels;
    if (trunk && (from == kDummyBank || to == kDummyBank)) {
        trunk = false;
        if (!channels) {
            out.note = "The Dummy bank has no trunk settings: nothing was changed.";
            return out;
        }
        out.note = std::string("The Dummy bank has no trunk settings: only the channels were ") + verb + ".";
    }

    if (channels) {
        const BankChannels source = BankChannels::of(doc, from);
        const BankChannels target = BankChannels::of(doc, to);
        source.into(doc, to, job.copyTags);
        if (job.operation == Op::Swap) {
            target.into(doc, from, job.copyTags);
        } else if (job.operation == Op::Move) {
            doc.emptyChannels(from);
            if (job.copyTags)
                doc.banktags[from] = from == kDummyBank ? std::string("Dummy") : "Bank " + std::to_string(from + 1);
            if (from < kChannelBanks) {
                doc.banklockm[from] = 0;
                doc.banklocks[from] = 0;
                doc.priochan[from] = static_cast<std::int16_t>(from * kChannelRows + 1);
            }
        }
    }
    if (trunk) {
        const BankTrunk source = BankTrunk::of(doc, from);
        const BankTrunk target = BankTrunk::of(doc, to);
        source.into(doc, to);
        if (job.operation == Op::Swap) target.into(doc, from);
        else if (job.operation == Op::Move) BankTrunk::none().into(doc, from);
    }

    out.changed = true;
    const char* what = !channels ? "The trunk settings of " : trunk ? "The channels and trunk settings of " : "";
    out.done = (*what ? what + bankName(from) : capitalised(bankName(from))) + " " + verb +
               (job.operation == Op::Swap ? " with " : " to ") + bankName(to) + ".";
    return out;
}

} // namespace

MemoryOutcome runMemoryJob(Document& doc, const MemoryJob& job)
{
    return job.unit == MemoryJob::Unit::Banks ? runBanks(doc, job) : runChannels(doc, job);
}

MemoryOutcome MemoryManager::perform(const MemoryJob& job)
{
    table_.settings().copytags = job.copyTags ? 1 : 0;
    if (!table_.createbank()) return {};

    // The banks whose channels the job may change, as they are now: Edit >
    // Undo gives them back, each on its own tab.
    std::array<bool, kDummyBank + 1> touched{};
    if (job.unit == MemoryJob::Unit::Banks) {
        if (job.part != Part::TrunkSettings) {
            touched[std::clamp(job.toBank, 0, kDummyBank)] = true;
            if (job.operation != Op::Copy) touched[std::clamp(job.fromBank, 0, kDummyBank)] = true;
        }
    } else {
        const Ranges r = rangesOf(job);
        for (int i = 0; i < r.count; ++i) {
            touched[(r.to + i - 1) / kChannelRows] = true;
            if (job.operation != Op::Copy) touched[(r.from + i - 1) / kChannelRows] = true;
        }
    }
    std::vector<std::pair<int, LineOperations::BankCopy>> before;
    for (int b = 0; b <= kDummyBank; ++b) {
        if (undo_ && touched[b]) before.emplace_back(b, undo_->bankCopy(b));
    }

    const MemoryOutcome outcome = runMemoryJob(table_.doc(), job);
    if (outcome.changed) {
        for (auto& [bank, copy] : before) undo_->keepUndo(bank, std::move(copy));
        table_.fillgrid();
        table_.markDirty();
    }
    if (!outcome.note.empty()) table_.dialogs().message(outcome.note, {}, Buttons::Ok, Icon::Information);
    return outcome;
}

} // namespace kestra
