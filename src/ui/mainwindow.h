#pragma once
// The main window memtab: the menus, the two toolbars, the help bar, the bank
// tabs tabbed1, the frame label, the grid memtabel and the status bar
// StatusBar1 with the progress bar prstatus, and above the tabs the top frame
// with the Smart Info bar and the list and Easy Tag combos. Typing into the
// grid opens the in-place text box Text1. The window holds the controls and
// calls MemTable and CellEntry for everything the menus, tabs and keys do.
//
// One class in four files: mainwindow.cpp the frame, the status bar and what
// the logic tells the window; mainwindowmenus.cpp the menus and toolbars;
// mainwindowgrid.cpp the grid, its keys, Text1 and the top frame;
// mainwindowactions.cpp what the entries do (files, edits, windows, transfers).

#include "core/memtable.h"
#include "core/reffiles.h"
#include "editor/backup.h"
#include "editor/banktools.h"
#include "editor/cellentry.h"
#include "editor/frequencyentry.h"
#include "editor/lineops.h"
#include "importexport/memimport.h"

#include "platform/appfolder.h"
#include "ui/transferwindow.h"

#include <QMainWindow>
#include <QPointer>

#include <map>
#include <memory>
#include <string>
#include <vector>

class QAction;
class QActionGroup;
class QComboBox;
class QKeyEvent;
class QLineEdit;
class QFrame;
class QLabel;
class QMenu;
class QProgressBar;
class QTabBar;
class QTableView;
class QToolBar;

namespace kestra {

class ProgramPorts;
class Recorder;
class GridModel;
class VirtualControlWindow;

class MainWindow : public QMainWindow, public MemtabView {
    Q_OBJECT
public:
    // How long the status bar keeps the last line of a transfer.
    static constexpr int kRunLineMs = 15000;

    // folder: the program's folder, where window.dat and the column width files live.
    MainWindow(MemTable& table, AppFolder folder, QWidget* parent = nullptr);
    ~MainWindow() override;

    // Form Load: the fixed-width font, MemTable::formLoad, the window's place
    // from window.dat (setting window = 1), the column widths from the layout's
    // width file (setting tabwidth = 1), then the controls from the logic.
    void formLoad();

    // The window's place and the grid's column widths in twips (15 to a pixel),
    // as window.dat and the width files keep them.
    WindowPlace place() const;
    void setPlace(const WindowPlace& place);
    std::vector<int> columnWidthsTwips() const;
    void setColumnWidthsTwips(const std::vector<int>& widths);

    MemTable& table() { return table_; }
    // The program's ports. Without ports of the program's own (setPorts), the
    // window makes them over its folder the first time they are asked for.
    ProgramPorts& ports();
    // What a window with a port of its own is given: the document and its
    // services, and the scanner's port of com250.ini.
    TransferWindow::Services windowServices();
    TransferWindow::Link scannerLink();
    void setPorts(ProgramPorts* ports) { ports_ = ports; }
    // The sound capture device the Virtual Control records from; it must
    // outlive the Virtual Control. None set: the Virtual Control takes the
    // system's own.
    void setRecorder(Recorder* recorder) { recorder_ = recorder; }
    GridModel* gridModel() const { return model_; }
    QTableView* memtabel() const { return memtabel_; }
    QTabBar* tabbed1() const { return tabbed1_; }
    QMenu* tabpop() const { return tabpop_; }
    // The Virtual Control window lcd2 while it is open, else null.
    VirtualControlWindow* virtualControl() const;
    QToolBar* toolbar1() const { return toolbar1_; }
    QToolBar* toolbar2() const { return toolbar2_; }
    QLabel* frameLabel() const { return frameLabel_; }
    QLabel* channelPanel() const { return panelChannel_; }
    QLabel* filePanel() const { return panelFile_; }
    QProgressBar* prstatus() const { return prstatus_; }
    QWidget* helpbar() const { return helpbar_; }
    CellEntry& cellEntry() { return *cellEntry_; }
    LineOperations& lineOps() { return *lineOps_; }
    // The in-place text box over the cell being typed into.
    QLineEdit* text1() const { return text1_; }
    // The top frame: the Smart Info bar with its title and text, and the combos.
    QWidget* topFrame() const { return topFrame_; }
    QWidget* smartBar() const { return smartBar_; }
    QLabel* smartTitle() const { return smartTitle_; }
    QLabel* smartText() const { return smartText_; }
    QComboBox* textcombo() const { return textcombo_; }
    QComboBox* bankcombo(int bank) const { return bank >= 0 && bank < 10 ? bankcombos_[bank] : nullptr; }

    // A menu entry by its control name (the first when the name is an array).
    QAction* action(const std::string& name) const;
    // The entries of a control array (bk0, filenaam) by index.
    const std::vector<QAction*>& actionArray(const std::string& name) const;

    // The fixed-width font of the tags: "Lucida Console" when the system has
    // it, else "Courier New", else the system's fixed font.
    static QFont fixedWidthFont();

    // MemtabView
    void showProgress(int percent) override;
    void hideProgress() override;
    void bankTagsChanged() override;
    void captionChanged() override;
    void layoutChanged() override;
    void bankChanged() override;
    void setBusy(bool busy) override;
    void commitEdit() override;
    void easyTagsRebuilt() override;

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void buildMenus();
    void buildToolbars();
    void buildCentral();
    void buildStatusBar();
    QTableView* buildGrid(QWidget* parent);   // memtabel with Text1 over it
    QWidget* buildTopFrame(QWidget* parent);

    // window.dat and the width files keep sizes in twips, 15 to a pixel.
    static constexpr int twipsToPixels(int twips) { return (twips + 7) / 15; }

    QAction* addEntry(QMenu* menu, const char* name, const char* caption, bool enabled = false);
    QMenu* addSubmenu(QMenu* parentMenu, const char* name, const char* caption, bool enabled = true);
    void connectEntry(const char* name, void (MainWindow::*handler)());
    // An entry that closes the open cell edit and runs a line operation.
    void connectLineEntry(const char* name, void (MainWindow::*handler)());
    // An entry that needs the scanner's port: it refuses while the Virtual
    // Control holds the port.
    void connectPortEntry(const char* name, void (MainWindow::*handler)());

    // Refreshers of what the window shows from the logic.
    void updateCaption();
    void updateTabs();
    void updateFrameLabel();
    void updateBankChecks();
    void updateChannelPanel();
    void applyColumnWidths();
    // The width the caption of a grid column needs, in the bold face of a highlighted header.
    int captionWidth(int column) const;
    // The grid's columns changed in number: their widths wait for their captions.
    bool columnsPending_ = false;
    void layoutColumnsChanged();
    void updateTopFrame();      // what shows of the top frame by the settings smart and option9
    void updateSmartInfo();
    void fillListCombos();      // the lists of the model
    void syncListCombos();      // the combo of the active column shows the cell's value

    // Cell entry.
    bool gridKey(QKeyEvent* event);
    bool windowOpen() const override;
    bool forwardingToText1_ = false;  // a key on its way from the grid to Text1
    void gridDoubleClicked(int row, int col);
    void openText1();
    void placeText1();
    void closeText1(bool keep, bool moveOn);
    void listChosen(int storeColumn, QComboBox* combo);
    void tagChosen(QComboBox* combo);

    // Handlers.
    void onTabChanged(int index);
    void menuNew();
    void menuOpen();
    void menuBackupRestore();
    void menuOpenSpecial();
    void menuOpenLorven();
    void menuSave();
    void menuSaveAs();
    void menuExit();
    void showBankEmptyStatus();
    void showAbout();
    void toggleToolbar(bool on);
    void toggleHelpbar(bool on);
    void menuSoftOptions();
    void menuComset();
    void menuReadData();
    void menuSendData();
    // The Virtual Control: memtab hides while it runs unless the setting vcm keeps it.
    void menuVirtualControl();
    // Trunk > ID List: the "Trunk Id's:" window on the bank on view.
    void menuIdList();
    // mainwindowsearch.cpp
    void menuSearchEvents();
    void menuSearchExtender();
    void menuActiveBanks();
    void menuSetupDefaultData();
    void menuResetTableWidth();
    void menuCheckTable();
    void menuBandplanCurrentBank();
    void menuBandplanAllBanks();
    // Trunk > System Settings: the window trunkconfig.
    void menuTrunkSettings();
    void menuGeneralParams();
    void menuPriorityChannels();
    void menuEasyProgram();
    void menuBankTags();
    void menuPrint();
    void showShortcuts();
    // File > Import and Export: Advanced Data Import, WebCatcher, CSV, CHIRP.
    void menuAdvancedImport();
    void menuWebCatcher();
    void menuExportCsv();
    void menuImportIcf();
    void menuImportMem(MemImportKind kind);
    void menuImportChirp();
    void menuExportChirp();
    void afterFileCommand();
    // The four recent-file entries of the File menu, from the per-user store.
    void updateRecentFiles();
    void openRecentFile(int index);
    // Edit and Options entries over LineOperations, with the system clipboard.
    void editUndo();
    void editCut();
    void editCopy();
    void editPaste();
    void editDelete();
    void editCutLines();
    void editCopyLines();
    void editPasteLines();
    void editShiftUp();
    void editShiftDown();
    void editClearSelectedLines();
    void editInsertEmptyLine();
    void editRemoveEmptyLines();
    void editRemoveSelectedLines();
    void editClearLockouts();
    void editFillDown();
    void editFillSeries();
    void editSelectAll();
    void editPasteSpecial();
    void editCenterTags();
    void editRemoveLeadingSpaces();
    void editFillDefaultData();
    void editEasyFill();   // the window easy2
    void editClearBank();
    // Copy/Move/Swap of channels and banks in the window editmenu.
    void editCopyChannels();
    void editSwapBanks();
    // The bulk tools over BankTools: sorting, duplicates, find and replace.
    void sortAscending();
    void sortDescending();
    void findDuplicatesCurrentBank();
    void findDuplicatesAllBanks();
    void removeDuplicates();
    void menuFind();
    void menuReplace();
    void afterLineOperation();

    MemTable& table_;
    AppFolder folder_;
    GridModel* model_ = nullptr;
    std::unique_ptr<FrequencyEntry> frequency_;
    std::unique_ptr<CellEntry> cellEntry_;
    std::unique_ptr<LineOperations> lineOps_;
    std::unique_ptr<BankTools> bankTools_;   // after lineOps_: a sort keeps its undo there
    std::unique_ptr<Backup> backup_;   // Timer3, started with Form Load
    ProgramPorts* ports_ = nullptr;
    Recorder* recorder_ = nullptr;
    std::unique_ptr<ProgramPorts> ownPorts_;
    QPointer<VirtualControlWindow> vc_;
    bool vcmainvisible_ = true;       // memtab was visible when the Virtual Control opened
    std::unique_ptr<Timer> timer6_;   // the Virtual Control at start (setting vstart)

    QTableView* memtabel_ = nullptr;
    QTabBar* tabbed1_ = nullptr;
    QLabel* frameLabel_ = nullptr;
    QWidget* helpbar_ = nullptr;
    QToolBar* toolbar1_ = nullptr;
    QToolBar* toolbar2_ = nullptr;
    QMenu* tabpop_ = nullptr;
    QMenu* modelMenu_ = nullptr;
    QLabel* panelChannel_ = nullptr;
    QLabel* panelFile_ = nullptr;
    QWidget* panelProgress_ = nullptr;
    QProgressBar* prstatus_ = nullptr;
    QActionGroup* bankGroup_ = nullptr;
    QLineEdit* text1_ = nullptr;
    QWidget* topFrame_ = nullptr;
    QWidget* smartBar_ = nullptr;
    QLabel* smartTitle_ = nullptr;
    QLabel* smartText_ = nullptr;
    QWidget* easyTags_ = nullptr;
    QComboBox* combostep_ = nullptr;
    QComboBox* modecombo_ = nullptr;
    QComboBox* delaycombo_ = nullptr;
    QComboBox* ctc_ = nullptr;
    QComboBox* dcsc_ = nullptr;
    QComboBox* textcombo_ = nullptr;
    QComboBox* bankcombos_[10] = {};

    std::map<std::string, QAction*> actions_;
    std::map<std::string, std::vector<QAction*>> arrays_;

    int busy_ = 0;
    bool tabSync_ = false;
    bool unloaded_ = false;
    bool closingText1_ = false;
};

} // namespace kestra
