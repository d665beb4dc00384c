#pragma once
// The routines of the main window memtab that are not controls: the bridge
// between grid and store (createbank, convertcell, fillgrid), the bank tabs,
// the caption, the File menu with its questions, the exit steps and the
// last-file timer. The window holds a MemTable and calls it; kestractl and the
// tests drive the same object without a window.

#include "defaultdata.h"
#include "document.h"
#include "grid.h"
#include "memfile.h"
#include "settings.h"
#include "setupfile.h"

#include "platform/appfolder.h"
#include "platform/dialogs.h"
#include "platform/profilestore.h"
#include "platform/scheduler.h"

#include <functional>
#include <memory>
#include <string>

namespace kestra {

// What the window shows of the routines' work. Every call has a do-nothing
// default so that a headless user implements only what it needs.
class MemtabView {
public:
    virtual ~MemtabView() = default;
    virtual void showProgress(int /*percent 0..100*/) {}
    virtual void hideProgress() {}
    virtual void easyTagsRebuilt() {}   // refill the tag combo and the ten bank combos
    virtual void bankTagsChanged() {}   // tab captions and bank text boxes
    virtual void captionChanged() {}    // the file name or the model changed
    virtual void layoutChanged() {}     // grid columns, headers or channel numbers changed
    virtual void bankChanged() {}       // the current bank changed (tab, frame label)
    virtual void setBusy(bool /*busy*/) {}
    virtual void commitEdit() {}        // close an open cell edit into the grid
    // A window over the main one is open (a transfer, a fill, a manager):
    // it may be writing the store, and the grid may not show what it holds.
    virtual bool windowOpen() const { return false; }
};

class MemTable {
public:
    struct Services {
        Dialogs& dialogs;
        ProfileStore& profile;
        Scheduler& scheduler;
        AppFolder folder;
    };

    MemTable(Document& doc, Settings& settings, Grid& grid, Services services);
    ~MemTable();

    void setView(MemtabView* view) { view_ = view ? view : &nullView_; }
    bool windowOpen() const { return view_->windowOpen(); }

    Document& doc() { return doc_; }
    const Document& doc() const { return doc_; }
    Settings& settings() { return settings_; }
    Grid& grid() { return grid_; }
    Dialogs& dialogs() { return services_.dialogs; }
    Scheduler& scheduler() { return services_.scheduler; }
    ProfileStore& profile() { return services_.profile; }
    const AppFolder& folder() const { return services_.folder; }

    // ---- the bridge between grid and store ----
    bool createbank();
    void convertcell(int storeColumn, int row, int gridColumn);
    void fillgrid();
    void rebuildeasytags();
    void clearbank();

    // ---- start-up ----
    // The per-user values: the three folders and the model switches.
    void readProfile();
    void writeProfile();
    // com250.ini into com (the speed cut to what the model can do) and
    // setup.ini, with the delays of a USB converter named in com250.ini.
    void readSettingsFiles();
    // The parts of Form Load that concern the document: priority channels,
    // bank 0, bank tags, layout, cleared cells, channel numbers, cell 1,1,
    // clean flag, and Timer4 when loadlast is on.
    void formLoad();
    // Timer4: load the file named in lastfile.ini.
    void loadLastFile();

    // ---- model and layout ----
    void setModel(const ModelSwitches& model);   // headers, counts, fillgrid, caption
    void applyLayout();                          // grid size, headers, channel numbers of the current bank
    std::string modelName() const;               // "BC250D" ... "UBC3300"
    std::string caption() const;                 // the window caption, UTF-8 (it carries the file path)
    std::string tabCaption(int bank) const;      // "1: Bank: 1" ... "Dummy"
    std::string frameLabel() const;              // the current bank's tag, "Dummy" on the Dummy tab

    // ---- tabs ----
    void changeBank(int index);

    // ---- File menu ----
    void fileNew();
    void fileOpen();
    void fileOpenSpecial();
    void fileOpenLorven();
    bool fileSave();      // false when nothing was written
    bool fileSaveAs();
    // "This will clear your table." ... Yes saves first. False means Cancel.
    bool askClearTable();
    // Opens a MEM file named by the program rather than by the file chooser
    // (a backup to restore): the open edit closed, "Save data?" asked, then
    // loadmem. False when the user kept the table or the file was refused.
    bool openMemFile(const std::string& path);
    void markDirty() { doc_.dirty = true; }

    // The routines of the MEM file with everything the window does around them.
    bool loadmem(const std::string& path);
    bool load780(const std::string& path);
    bool loadspecial(const std::string& path);
    bool savemem(const std::string& path);   // tells the user when the file cannot be written

    // The check of the table that runs before every save (set by the editor).
    std::function<void()> saveCheck;

    // ---- exit ----
    // Steps 1 to 7 of Exit. False when the user cancelled.
    bool exitRequested();
    // Step 8, when the window unloads: the per-user values, names.dat,
    // ttype.dat, setup.ini and defdata.ini. (The window writes its own place
    // and widths.)
    void unload();

    // ---- reports ----
    std::vector<std::string> bankEmptyStatus() const;

    // The folders the file dialogs last used.
    std::string opendir, savedir, backdir;
    // Where a file chooser starts: the current document's folder, else the
    // folder last used (`last`), else the user's documents folder. Never the
    // program's own folder, which holds its settings, not the user's files.
    std::string startFolder(const std::string& last) const;
    // The default data of a new channel (defdata.ini).
    DefaultData defdata;
    // The port, speed and USB converter every exchange with the scanner uses
    // (com250.ini; the Rs232 setup changes them).
    ComSettings com;

    // True while the Virtual Control holds the scanner's port: every menu
    // entry that needs the port refuses with kVcRunning.
    bool vcrunning = false;
    static constexpr const char* kVcRunning = "Not possible while Virtual Control is running";
    // The guard of those entries: false (after the message) while the Virtual Control runs.
    bool portFree();

private:
    using ChannelCells = std::array<std::string, kCellColumns>;
    // createbank; with onlyEdited, the cells whose grid text still is what
    // fillgrid paints from their stored code keep that code.
    bool readGrid(bool onlyEdited);
    // The grid text fillgrid paints for a store cell of a channel.
    std::string shownText(const ChannelCells& line, int storeColumn) const;
    std::string chooseFolder(const std::string& stored) const;
    // After Yes to "Save data?" the user chose no file: says what follows.
    void saveNotChosen(const std::string& consequence);
    void afterLoad();
    // A file that could not be read: missing (error 53) or not a regular file.
    // The name becomes "Untitled"; the stores stay.
    void refuseFile(const std::string& path);

    Document& doc_;
    Settings& settings_;
    Grid& grid_;
    Services services_;
    MemtabView nullView_;
    MemtabView* view_ = &nullView_;
    std::unique_ptr<Timer> timer4_;
};

} // namespace kestra
