#include "vcontrol/activity.h"

#include "core/text.h"

#include <algorithm>

namespace kestra {

namespace {

std::vector<std::string> cellsOf(const std::string& line)
{
    std::vector<std::string> cells{""};
    for (char c : line) {
        if (c == ',') cells.emplace_back();
        else cells.back() += c;
    }
    cells.resize(10);
    for (std::string& cell : cells) cell = trim(cell);
    return cells;
}

} // namespace

void ActivityLog::hit(const std::string& line, std::int64_t nowMs)
{
    const std::vector<std::string> cells = cellsOf(line);
    const std::string& type = cells[0];
    Entry entry;
    bool followsId = false;
    if (type == "ID" || type == "ID-NEW" || type == "P25") {
        entry.kind = type == "P25" ? "P25 ID" : "Trunk ID";
        entry.subject = cells[4];
        entry.where = "Bank " + cells[1];
        followsId = true;
    } else if (type == "SUB" || type == "DCS") {
        entry.kind = type == "SUB" ? "CTCSS" : "DCS";
        entry.subject = type == "SUB" ? cells[5] : cells[6];
        entry.where = cells[3];
    } else {
        entry.kind = "Frequency";
        entry.subject = cells[3];
        entry.where = cells[2].empty() ? "" : "Ch " + cells[2];
        entry.tag = cells[4];
    }
    const std::string key = entry.kind + "|" + entry.subject + "|" + entry.where;
    auto [it, fresh] = places_.try_emplace(key, entries_.size());
    if (fresh) entries_.push_back(entry);
    Entry& known = entries_[it->second];
    ++known.hits;
    known.lastMs = nowMs;
    if (!entry.tag.empty()) known.tag = entry.tag;
    touch(it->second);

    rows_.push_front(Row{nowMs, -1, ""});
    if (rows_.size() > kRows) rows_.pop_back();
    ++serial_;
    open_.push_back(Open{serial_, it->second, followsId, followsId ? entry.subject : cells[3], nowMs});
}

ActivityLog::Row* ActivityLog::rowOf(std::uint64_t serial)
{
    const std::uint64_t back = serial_ - serial;
    return back < rows_.size() ? &rows_[static_cast<std::size_t>(back)] : nullptr;
}

void ActivityLog::tick(const DisplayState& state, std::int64_t nowMs)
{
    if (open_.empty()) return;
    const std::string frequency = trim(state.freqtext), id = trim(state.trunkid);
    const std::size_t before = open_.size();
    std::erase_if(open_, [&](const Open& open) {
        const bool onAir = state.busyshown && (open.id ? id == open.subject : frequency == open.subject);
        if (onAir) return false;
        const std::int64_t duration = nowMs - open.startMs;
        if (Row* row = rowOf(open.serial)) row->durationMs = duration;
        entries_[open.entry].totalMs += duration;
        touch(open.entry);
        return true;
    });
    if (open_.size() != before && onClosed) onClosed();
}

void ActivityLog::recordingStarted(std::int64_t nowMs) { recordingSinceMs_ = nowMs; }

void ActivityLog::recordingSaved(const std::string& file)
{
    if (recordingSinceMs_ < 0) return;
    for (Row& row : rows_) {
        if (row.startMs < recordingSinceMs_) break;  // newest first: the rest is older
        if (row.recording.empty()) row.recording = file;
    }
    recordingSinceMs_ = -1;
}

void ActivityLog::clearRows() { rows_.clear(); }

void ActivityLog::touch(std::size_t entry)
{
    if (std::find(changed_.begin(), changed_.end(), entry) == changed_.end()) changed_.push_back(entry);
}

std::vector<std::size_t> ActivityLog::takeChanged()
{
    std::vector<std::size_t> out;
    out.swap(changed_);
    return out;
}

std::string ActivityLog::durationText(std::int64_t ms)
{
    if (ms < 0) return "";
    const std::int64_t tenths = (ms + 50) / 100;
    if (tenths < 600) return std::to_string(tenths / 10) + "." + std::to_string(tenths % 10) + " s";
    const std::int64_t seconds = (ms + 500) / 1000;
    const std::string s = std::to_string(seconds % 60);
    return std::to_string(seconds / 60) + " min " + (s.size() < 2 ? "0" : "") + s + " s";
}

} // namespace kestra
