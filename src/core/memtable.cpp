#include "memtable.h"

#include "listreader.h"
#include "reffiles.h"
#include "setupfile.h"
#include "text.h"


#include <algorithm>
#include <bitset>

namespace kestra {

namespace {
constexpr const char* kCrLf = "\r\n";
constexpr const char* kFolderSection = "folders";
constexpr const char* kModelSection = "model";

bool startsWith(std::string_view text, std::string_view prefix) { return text.substr(0, prefix.size()) == prefix; }

// Busy cursor for the length of a scope.
class Busy {
public:
    explicit Busy(MemtabView& view) : view_(view) { view_.setBusy(true); }
    ~Busy() { view_.setBusy(false); }

private:
    MemtabView& view_;
};
} // namespace

MemTable::MemTable(Document& doc, Settings& settings, Grid& grid, Services services)
    : doc_(doc), settings_(settings), grid_(grid), services_(std::move(services))
{
    opendir = savedir = backdir = services_.folder.path().string();
    applyLayout();
}

MemTable::~MemTable() = default;

// ---- the bridge between grid and store ----

bool MemTable::createbank() { return readGrid(false); }

bool MemTable::readGrid(bool onlyEdited)
{
    const int bank = doc_.currentBank;
    if (bank < 0 || bank > kDummyBank) {
        services_.dialogs.beep();
        services_.dialogs.message("Create error, click tabs and try again.");
        return false;
    }
    const GridSelection selection = grid_.selection();
    const bool wasShown = grid_.shown();
    grid_.hide();

    const int bc785d = doc_.model.bc785d;
    const int columns = gridDataColumns(bc785d);
    const int freqColumn = gridColumnOfStore(bc785d, col::freq);
    auto& rows = doc_.memdata[bank];
    for (int r = 1; r <= kChannelRows; ++r) {
        auto& line = rows[r];
        // The cells whose grid text goes into the store. A whole read takes
        // every cell, and converts even the store columns the layout does not
        // show. Otherwise a cell still showing what its stored code paints
        // keeps that code; a row whose frequency was typed over is taken whole,
        // since every other cell of it was painted for the old frequency.
        std::bitset<kCellColumns> taken;
        const bool wholeRow = !onlyEdited || grid_.text(r, freqColumn) != shownText(line, col::freq);
        if (wholeRow) taken.set();
        for (int gc = 1; gc <= columns; ++gc) {
            const int sc = gridColumn(bc785d, gc).storeColumn;
            const std::string& text = grid_.text(r, gc);
            if (!wholeRow && text == shownText(line, sc)) continue;
            line[sc] = text;
            taken.set(static_cast<std::size_t>(sc));
        }
        doc_.addeasytag(line[col::tag], bank, settings_.option9);

        if (taken[col::freq]) {
            if (line[col::freq].empty()) line[col::freq] = "0";
            line[col::freq] = formatFreq(line[col::freq], settings_.zero);
            if (IntVal(line[col::freq]) > 1300) line[col::freq] = "1300";
        }
        if (Val(line[col::freq]) != 0) {
            auto& trunk = line[col::trunk];
            if (taken[col::trunk]) {
                if (trunk.empty() || trunk == "Off")
                    trunk = "0";
                else if (trunk == "On")
                    trunk = "1";
            }
            for (int c : {col::record, col::recordHidden, col::beep, col::lockout, col::atten})
                if (taken[static_cast<std::size_t>(c)])
                    if (auto code = onOffCode(line[c])) line[c] = *code;
            if (taken[col::mode])
                if (auto code = modeCode(line[col::mode])) line[col::mode] = *code;
            if (taken[col::delay])
                if (auto code = delayCode(line[col::delay], bc785d)) line[col::delay] = *code;
            if (taken[col::step])
                if (auto code = stepCode(line[col::step], doc_.model.x96)) line[col::step] = *code;
            if (taken[col::tone])
                if (auto code = toneCode(line[col::tone])) line[col::tone] = *code;
            if (line[col::comment].size() > kCommentLength) line[col::comment].resize(kCommentLength);
        }
        if (r % 10 == 0) view_->showProgress(r);
    }
    if (settings_.option9 == 1) rebuildeasytags();

    grid_.setSelection(selection);
    if (wasShown) grid_.show();
    view_->hideProgress();
    return true;
}

std::string MemTable::shownText(const ChannelCells& line, int storeColumn) const
{
    if (Val(line[col::freq]) == 0) return {};
    const std::string& cell = line[storeColumn];
    switch (storeColumn) {
    case col::freq: return formatFreq(cell, settings_.zero);
    case col::tag: return cell;
    case col::trunk:
    case col::record:
    case col::recordHidden:
    case col::beep:
    case col::lockout:
    case col::atten: return onOffText(cell);
    case col::delay: return delayText(cell, doc_.model.bc785d);
    case col::tone: return toneText(repairToneCode(cell));
    case col::mode: return modeText(cell);
    case col::step: return stepText(cell);
    default: return {};
    }
}

void MemTable::convertcell(int storeColumn, int row, int gridColumn)
{
    const int bank = doc_.currentBank;
    if (bank < 0 || bank > kDummyBank) {
        services_.dialogs.beep();
        services_.dialogs.message("convert error");
        return;
    }
    auto& line = doc_.memdata[bank][row];
    if (Val(line[col::freq]) != 0) {
        if (storeColumn == col::tone) line[col::tone] = repairToneCode(line[col::tone]);
        if (storeColumn == col::tag) doc_.addeasytag(line[col::tag], bank, settings_.option9);
    }
    grid_.setText(row, gridColumn, shownText(line, storeColumn));
}

void MemTable::fillgrid()
{
    const GridSelection selection = grid_.selection();
    const bool wasShown = grid_.shown();
    grid_.hide();
    const int bc785d = doc_.model.bc785d;
    const int columns = gridDataColumns(bc785d);
    int progress = 0;
    for (int gc = 1; gc <= columns; ++gc) {
        const int sc = gridColumn(bc785d, gc).storeColumn;
        for (int r = 1; r <= kChannelRows; ++r) convertcell(sc, r, gc);
        progress += 100 / columns;
        view_->showProgress(progress);
    }
    grid_.setSelection(selection);
    if (wasShown) grid_.show();
    view_->hideProgress();
}

void MemTable::rebuildeasytags() { view_->easyTagsRebuilt(); }

void MemTable::clearbank() { doc_.clearbank(doc_.currentBank); }

// ---- start-up ----

std::string MemTable::chooseFolder(const std::string& stored) const
{
    std::string value = stored;
    if (!value.empty()) value.pop_back();  // the "x" behind every stored folder
    if (value.empty() || value == "unknown") return services_.folder.path().string();
    return value;
}

void MemTable::readProfile()
{
    auto& p = services_.profile;
    opendir = chooseFolder(p.get(kFolderSection, "opendir", "unknownx"));
    savedir = chooseFolder(p.get(kFolderSection, "savedir", "unknownx"));
    backdir = chooseFolder(p.get(kFolderSection, "backdir", "unknownx"));
    doc_.model = storedModel(p);
    applyLayout();
}

void MemTable::writeProfile()
{
    auto& p = services_.profile;
    p.set(kModelSection, "bc785d", std::to_string(doc_.model.bc785d));
    p.set(kModelSection, "x96", std::to_string(doc_.model.x96));
    p.set(kModelSection, "ubc33", std::to_string(doc_.model.ubc33));
}

void MemTable::readSettingsFiles()
{
    com = readCom250(services_.folder.path());
    // A model that cannot go faster than 19200 baud is never started faster.
    com.baud = allowedBaud(com.baud, doc_.model);
    readSetup(settings_, services_.folder.path(), com.usbc);
}

void MemTable::formLoad()
{
    const auto& folder = services_.folder.path();
    doc_.defaultPriorityChannels();
    doc_.currentBank = 0;
    doc_.setDefaultBankTags(true);
    if (settings_.remtags == 1) readNames(doc_, folder);
    if (settings_.remtrunk == 1) readTrunkTypes(doc_, folder);
    view_->bankTagsChanged();
    readDefaultData(defdata, folder);
    doc_.clearAllCells();
    if (settings_.bandplan == 2 && !readBandplan(doc_, folder)) {
        services_.dialogs.message(kBandplanMissing);
        settings_.bandplan = 0;
    }
    applyLayout();
    fillgrid();
    grid_.select(1, 1);
    doc_.dirty = false;
    view_->bankChanged();
    view_->captionChanged();
    if (settings_.loadlast == 1) {
        timer4_ = makeTimer(services_.scheduler, 200, true, [this] { loadLastFile(); });
        timer4_->setEnabled(true);
    }
}

void MemTable::loadLastFile()
{
    std::string bytes;
    if (!readFileBytes(services_.folder.file("lastfile.ini"), bytes)) return;
    const std::string name = ListReader(bytes).line().value_or("");
    if (name.empty()) return;
    loadmem(name);
}

// ---- model and layout ----

void MemTable::applyLayout()
{
    const int bc785d = doc_.model.bc785d;
    const int columns = gridDataColumns(bc785d);
    grid_.resize(kChannelRows + 1, columns + 1);
    grid_.setText(0, 0, "");
    for (int gc = 1; gc <= columns; ++gc) grid_.setText(0, gc, gridColumn(bc785d, gc).header);
    const int bank = std::clamp(doc_.currentBank, 0, kDummyBank);
    for (int r = 1; r <= kChannelRows; ++r) grid_.setText(r, 0, std::to_string(channelNumber(bank, r)));
    view_->layoutChanged();
}

void MemTable::setModel(const ModelSwitches& model)
{
    // What was typed since the last read is carried into the store under the
    // old layout, so that nothing is lost; every other cell keeps its stored
    // code, which the old layout may show only in part (the BC250D shows every
    // delay but None as "2"). The codes meet the new layout when its grid is
    // next read back.
    readGrid(true);
    doc_.model = model;
    doc_.model.normalise();
    applyLayout();
    fillgrid();
    view_->captionChanged();
}

std::string MemTable::modelName() const { return kestra::modelName(doc_.model.model()); }

std::string MemTable::caption() const
{
    return "Kestra Console for Uniden " + modelName() + " - [ " + doc_.fnaam + " ]";
}

std::string MemTable::tabCaption(int bank) const
{
    if (bank >= 0 && bank < 10) return std::to_string(bank + 1) + ": " + doc_.banktags[bank];
    return "Dummy";
}

std::string MemTable::frameLabel() const
{
    if (doc_.currentBank >= 0 && doc_.currentBank < 10) return doc_.banktags[doc_.currentBank];
    return "Dummy";
}

// ---- tabs ----

void MemTable::changeBank(int index)
{
    Busy busy(*view_);
    grid_.hide();
    view_->commitEdit();
    createbank();
    doc_.currentBank = std::clamp(index, 0, kDummyBank);
    view_->bankChanged();
    applyLayout();
    grid_.select(1, 1);
    fillgrid();
    grid_.select(1, 1);
    grid_.show();
}

// ---- File menu ----

bool MemTable::askClearTable()
{
    if (!doc_.dirty) return true;
    const std::string question = std::string("This will clear your table.") + kCrLf + "If not saved, data is lost!" +
                                 kCrLf + "Save data?";
    switch (services_.dialogs.message(question, "Warning", Buttons::YesNoCancel, Icon::Exclamation)) {
    case Answer::Yes:
        if (fileSave()) return true;
        saveNotChosen("the table stays as it is.");
        return false;
    case Answer::No: return true;
    default: return false;
    }
}

void MemTable::saveNotChosen(const std::string& consequence)
{
    // Yes to "Save data?" and then no file chosen: nothing is lost, since
    // nothing goes on. (A file that could not be written has said so already.)
    if (startsWith(doc_.fnaam, "Untitled")) services_.dialogs.message("Nothing was saved, so " + consequence);
}

void MemTable::fileNew()
{
    view_->commitEdit();
    if (!askClearTable()) return;
    doc_.clearstores();
    doc_.onebankread = 0;
    doc_.fnaam = "Untitled";
    if (settings_.cleartag == 1) {
        doc_.setDefaultBankTags(false);
        view_->bankTagsChanged();
        view_->bankChanged();
    }
    fillgrid();
    rebuildeasytags();
    doc_.dirty = false;
    view_->captionChanged();
}

namespace {
std::string folderOf(const std::string& path)
{
    return std::filesystem::path(path).parent_path().string();
}
} // namespace

std::string MemTable::startFolder(const std::string& last) const
{
    namespace fs = std::filesystem;
    std::error_code ec;
    const fs::path own = fs::weakly_canonical(services_.folder.path(), ec);
    const auto usable = [&](const fs::path& folder) {
        if (folder.empty() || !fs::is_directory(folder, ec)) return false;
        const fs::path canonical = fs::weakly_canonical(folder, ec);
        // The program's folder and anything inside it are not the user's.
        const auto [ownEnd, folderEnd] = std::mismatch(own.begin(), own.end(), canonical.begin(), canonical.end());
        return ownEnd != own.end();
    };
    if (!doc_.fnaam.empty() && !startsWith(doc_.fnaam, "Untitled")) {
        const fs::path current = fs::path(doc_.fnaam).parent_path();
        if (usable(current)) return current.string();
    }
    if (usable(last)) return last;
    return AppFolder::documents().string();
}

void MemTable::fileOpen()
{
    view_->commitEdit();
    if (!askClearTable()) return;
    auto name = services_.dialogs.openFile({"Open", "KESTRA Data Files|*.mem|All Files|*.*", startFolder(opendir), {}});
    if (!name) return;
    if (!contains(*name, ".MEM") && !contains(*name, ".R3C") && !contains(*name, ".mem")) return;
    opendir = folderOf(*name);
    loadmem(*name);
}

bool MemTable::openMemFile(const std::string& path)
{
    view_->commitEdit();
    if (!askClearTable()) return false;
    return loadmem(path);
}

void MemTable::fileOpenLorven()
{
    view_->commitEdit();
    if (!askClearTable()) return;
    auto name = services_.dialogs.openFile({"Open LORVEN mem file", "Bank Files|*.mem|All Files|*.*", startFolder(opendir), {}});
    if (!name) return;
    if (!contains(*name, ".MEM") && !contains(*name, ".mem")) return;
    opendir = folderOf(*name);
    load780(*name);
}

void MemTable::fileOpenSpecial()
{
    view_->commitEdit();
    if (!askClearTable()) return;
    auto name = services_.dialogs.openFile({"Open special", "KESTRA Data Files|*.csv|All Files|*.*", startFolder(opendir), {}});
    if (!name) return;
    if (!contains(*name, ".CSV") && !contains(*name, ".csv")) return;
    opendir = folderOf(*name);
    loadspecial(*name);
}

bool MemTable::fileSave()
{
    view_->commitEdit();
    if (!createbank()) return false;
    if (saveCheck) saveCheck();
    if (startsWith(doc_.fnaam, "Untitled")) return fileSaveAs();
    Busy busy(*view_);
    return savemem(doc_.fnaam);
}

bool MemTable::fileSaveAs()
{
    view_->commitEdit();
    if (!createbank()) return false;
    if (saveCheck) saveCheck();
    const std::string offered = startsWith(doc_.fnaam, "Untitled") ? std::string() : doc_.fnaam;
    auto name = services_.dialogs.saveFile({"Save As", "KESTRA data files|*.mem", startFolder(savedir), offered});
    if (!name || name->empty()) {
        doc_.fnaam = "Untitled";
        view_->captionChanged();
        return false;
    }
    std::string path = *name;
    if (!contains(path, ".MEM") && !contains(path, ".mem")) path += ".mem";
    doc_.fnaam = path;
    savedir = folderOf(path);
    view_->captionChanged();
    Busy busy(*view_);
    return savemem(path);
}

bool MemTable::savemem(const std::string& path)
{
    const std::filesystem::path target = memSavePath(path);
    const bool readOnly = isReadOnlyFile(target);
    if (readOnly && services_.dialogs.message("The file " + cp1252FromUtf8(target.string()) +
                                                  " is read-only. Replace it anyway?",
                                              "Save", Buttons::YesNo, Icon::Exclamation) != Answer::Yes)
        return false;
    const std::string failure = writeFileAtomic(target, memText(doc_, settings_), readOnly);
    if (!failure.empty()) {
        services_.dialogs.message("The file " + cp1252FromUtf8(target.string()) + " could not be written (" +
                                      cp1252FromUtf8(failure) + "). The file on disk is unchanged.",
                                  "Save", Buttons::Ok, Icon::Critical);
        return false;
    }
    doc_.dirty = false;
    return true;
}

void MemTable::afterLoad()
{
    // The stores hold another document now: a send of all banks has no
    // single-bank read of its own to warn about.
    doc_.onebankread = 0;
    view_->bankTagsChanged();
    view_->bankChanged();
    fillgrid();
    grid_.show();
    view_->captionChanged();
}

void MemTable::refuseFile(const std::string& path)
{
    if (notRegularFile(path)) {
        services_.dialogs.message(notRegularMessage(path));
    } else {
        const MemLoadResult missing{MemLoadStatus::Invalid, 0, 0, 0, 53};
        services_.dialogs.message(missing.message());
    }
    doc_.fnaam = "Untitled";
    view_->captionChanged();
}

bool MemTable::loadmem(const std::string& path)
{
    doc_.clearEasyTags();
    rebuildeasytags();
    std::string bytes;
    if (!readFileBytes(path, bytes)) {
        settings_.loadlast = 0;
        refuseFile(path);
        return false;
    }
    const MemLoadResult result = readMem(doc_, bytes, settings_.option9);
    if (result.status == MemLoadStatus::NotCompatible) {
        services_.dialogs.message(result.message());
        return false;
    }
    if (result.status == MemLoadStatus::Invalid) {
        services_.dialogs.message(result.message());
        doc_.fnaam = "Untitled";
        afterLoad();  // what was read stays, and the grid shows it
        return false;
    }
    doc_.fnaam = path;
    afterLoad();
    if (settings_.option9 == 1) rebuildeasytags();
    return true;
}

bool MemTable::load780(const std::string& path)
{
    std::string bytes;
    if (!readFileBytes(path, bytes)) {
        refuseFile(path);
        return false;
    }
    const MemLoadResult result = read780(doc_, bytes, settings_.option9);
    if (result.status == MemLoadStatus::NotLorven || result.status == MemLoadStatus::LorvenNoVersion) {
        // Another kind of file: the document, its name and the grid stay as they were.
        services_.dialogs.message(result.message());
        return false;
    }
    doc_.clearEasyTags();
    rebuildeasytags();
    if (result.status == MemLoadStatus::Invalid) {
        services_.dialogs.message(result.message());
        doc_.fnaam = "Untitled";
        afterLoad();
        return false;
    }
    doc_.fnaam = path;
    afterLoad();
    return true;
}

bool MemTable::loadspecial(const std::string& path)
{
    doc_.clearEasyTags();
    rebuildeasytags();
    if (notRegularFile(path)) {
        services_.dialogs.message(notRegularMessage(path));
        return false;
    }
    std::string bytes;
    readFileBytes(path, bytes);  // a file that cannot be read reads as empty
    readSpecial(doc_, bytes, settings_.option9);
    doc_.fnaam = path;
    afterLoad();
    if (settings_.option9 == 1) rebuildeasytags();
    return true;
}

// ---- exit ----

bool MemTable::exitRequested()
{
    writeProfile();
    if (settings_.option4 == 0 &&
        services_.dialogs.message("Exit KESTRA?", "Exit", Buttons::OkCancel, Icon::Question) != Answer::Ok)
        return false;
    view_->commitEdit();
    if (doc_.dirty) {
        switch (services_.dialogs.message("Save data?", "Warning", Buttons::YesNoCancel, Icon::Exclamation)) {
        case Answer::Yes:
            if (!fileSave()) {
                saveNotChosen("KESTRA stays open.");
                return false;
            }
            break;
        case Answer::No: break;
        default: return false;
        }
    }
    Busy busy(*view_);
    createbank();
    if (saveCheck) saveCheck();
    writeFileAtomic(services_.folder.file("lastused.sav"), memText(doc_, settings_));
    if (settings_.loadlast == 1 && !doc_.fnaam.empty() && !startsWith(doc_.fnaam, "Untitled"))
        writeFileAtomic(services_.folder.file("lastfile.ini"), doc_.fnaam + kCrLf);
    return true;
}

void MemTable::unload()
{
    auto& p = services_.profile;
    p.set(kFolderSection, "opendir", opendir + "x");
    p.set(kFolderSection, "savedir", savedir + "x");
    p.set(kFolderSection, "backdir", backdir + "x");
    const auto& folder = services_.folder.path();
    writeNames(doc_, folder);
    writeTrunkTypes(doc_, folder);
    writeSetup(settings_, folder);
    writeDefaultData(defdata, folder);
}

bool MemTable::portFree()
{
    if (!vcrunning) return true;
    services_.dialogs.message(kVcRunning);
    return false;
}

std::vector<std::string> MemTable::bankEmptyStatus() const { return kestra::bankEmptyStatus(doc_); }

} // namespace kestra
