#include "ui/virtualcontrolwindow.h"

#include "core/text.h"
#include "platform/qt/qtext.h"
#include "platform/qt/qtrecorder.h"
#include "ui/statuswindow.h"
#include "ui/widgets/lcdpanel.h"
#include "ui/widgets/panelkey.h"
#include "ui/widgets/tuningknob.h"

#include <QCheckBox>
#include <QCloseEvent>
#include <QFontDatabase>
#include <QFontInfo>
#include <QFrame>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenuBar>
#include <QScreen>
#include <QTabBar>
#include <QTabWidget>
#include <QVBoxLayout>

#include <algorithm>
#include <chrono>

namespace kestra {

namespace {

constexpr int kTwipsPerPixel = 15;

// The display's font: the chosen one when the system has it, else the
// system's fixed font at the chosen size.
QFont lcdFont(const LcdLook& look)
{
    const QString family = toQt(look.fontname);
    QFont font;
    if (QFontDatabase::families().contains(family, Qt::CaseInsensitive)) {
        font = QFont(family);
    } else {
        font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    }
    font.setPointSize(look.fontsize);
    font.setBold(look.fontbold == 1);
    return font;
}

QRect screenRect(const QWidget* widget)
{
    const QScreen* screen = widget->screen() ? widget->screen() : QGuiApplication::primaryScreen();
    return screen ? screen->geometry() : QRect(0, 0, 1024, 768);
}

} // namespace

LcdLook LcdLook::read(const ProfileStore& profile)
{
    LcdLook look;
    look.fontname = profile.get(kSection, "Fontname", "Terminal");
    if (look.fontname.size() < 4) look.fontname = "Terminal";
    look.fontsize = std::clamp(Val16(profile.get(kSection, "Fontsize", "24")), 8, 24);
    look.fontbold = Val16(profile.get(kSection, "Fontbold", "1")) == 1 ? 1 : 0;
    for (int i = 0; i < 4; ++i) {
        const std::string value = trim(profile.get(kSection, "color" + std::to_string(i + 1), ""));
        if (!value.empty()) look.color[i] = static_cast<int>(IntVal(value) & 0xFFFFFF);
    }
    return look;
}

void LcdLook::save(ProfileStore& profile) const
{
    profile.set(kSection, "Fontname", fontname);
    profile.set(kSection, "Fontsize", std::to_string(fontsize));
    profile.set(kSection, "Fontbold", std::to_string(fontbold));
    for (int i = 0; i < 4; ++i) profile.set(kSection, "color" + std::to_string(i + 1), std::to_string(color[i]));
}

VirtualControlWindow::VirtualControlWindow(MemTable& table, std::unique_ptr<SerialPort> port, Recorder* recorder,
                                           QWidget* parent)
    : QMainWindow(parent), table_(table)
{
    setObjectName("lcd2");
    setWindowTitle(kCaption);
    setAttribute(Qt::WA_DeleteOnClose);
    const Settings& s = table_.settings();
    if (s.qview == 1) setWindowFlag(Qt::WindowStaysOnTopHint, true);

    vfo_ = VfoIni::load(table_.folder().path());
    if (vfo_.custom == 1) look_ = LcdLook::read(table_.profile());
    pendingLook_ = look_;

    LinkSettings link;
    link.port = table_.com.port;
    link.baud = table_.com.baud;
    link.delay1 = s.delay1;
    link.retryforever = vfo_.retryforever();
    link.encrypted = {s.enc1 == 1, s.enc2 == 1, s.enc3 == 1, s.enc4 == 1};
    loop_ = std::make_unique<ControlLoop>(table_.scheduler(), table_.dialogs(), std::move(port), link);
    loop_->hooks.displayChanged = [this] { displayChanged(); };
    loop_->hooks.replyTaken = [this](int step, const std::string& reply) {
        replyTaken(step);
        if (step == 8) activeReply(ActiveList::IdLists, reply);
        if (step == 9) activeReply(ActiveList::SearchBanks, reply);
        if (step == 12) activeReply(ActiveList::ScanBanks, reply);
    };
    loop_->hooks.status = [this](const std::string& text) { label22_->setText(toQt(text)); };
    loop_->hooks.closedDuringWait = [this] { setWindowTitle(kBusyCaption); };

    Scheduler& scheduler = table_.scheduler();
    opened_ = localNow();
    openedMs_ = scheduler.now();
    // The hit log sees the loop's display after the panel has taken it.
    hitlog_ = std::make_unique<HitLog>(
        table_.doc(), [this](const std::string& command) { if (!closed_) loop_->send(command); },
        [this] { return now(); });
    hitlog_->options = HitLogOptions::fromIni(vfo_);
    hitlog_->logname = vfo_.filename;
    hitlog_->onHit = [this](const std::string&) { showHistory(); };
    hitlog_->attach(scheduler, *loop_);
    if (!recorder) {
        ownRecorder_ = std::make_unique<QtRecorder>();
        recorder = ownRecorder_.get();
    }
    audio_ = std::make_unique<AudioRecorder>(scheduler, table_.dialogs(), *recorder, loop_->state(), table_.doc(),
                                             table_.folder().path(), [this] { return now(); });
    audio_->setAudioPath(vfo_.audiopath);
    audio_->setRecordOut(vfo_.option[7] != 0);
    audio_->changed = [this] { showAudio(); };
    // A recording holds the hits logged while it ran: their rows can play it.
    audio_->onStarted = [this, &scheduler] { hitlog_->activity.recordingStarted(scheduler.now()); };
    audio_->onSaved = [this](const std::filesystem::path& file) {
        hitlog_->activity.recordingSaved(file.string());
        showHistory();
    };

    lijnknip1_ = makeTimer(scheduler, kBlinkMs, false, [this] { lcd_->blink(); });
    timer11_ = makeTimer(scheduler, kKnobTickMs, false, [this] { knobTick(false); });
    timer7_ = makeTimer(scheduler, kKnobTickMs, false, [this] { knobTick(true); });

    buildFrame();
    // Fixed in width, at least its height in height: a smaller size snaps back.
    setFixedWidth(kWidthTwips / kTwipsPerPixel);
    setMinimumHeight(kMinHeightTwips / kTwipsPerPixel);
    resize(kWidthTwips / kTwipsPerPixel, kMinHeightTwips / kTwipsPerPixel);
    if (s.vpos == 1) placeFromVfo();
    applyLook();
    fontTabFromLook();
    applyPanel();
    showAudio();
}

VirtualControlWindow::~VirtualControlWindow()
{
    // The link closes as the window goes, and tells the panel nothing more.
    loop_->hooks = {};
    if (states2_) delete states2_.data();
}

void VirtualControlWindow::buildFrame()
{
    QMenu* file = menuBar()->addMenu("&File");
    file->setObjectName("file_menu");
    QAction* exit = file->addAction("E&xit");
    exit->setObjectName("file_exit");
    connect(exit, &QAction::triggered, this, &QWidget::close);
    QMenu* audio = menuBar()->addMenu("&Audio");
    audio->setObjectName("audio_menu");
    arOn_ = audio->addAction("Audio Recording ON");
    arOn_->setObjectName("ar_on");
    arOn_->setCheckable(true);
    // The click toggles the mark; the recorder says what it now is.
    connect(arOn_, &QAction::triggered, this, [this] {
        audio_->toggleRecordingOn();
        showAudio();
    });

    auto* central = new QWidget(this);
    auto* layout = new QVBoxLayout(central);
    layout->setContentsMargins(6, 4, 6, 6);
    layout->setSpacing(4);
    layout->addWidget(buildDisplay(central));

    auto* statusRow = new QHBoxLayout;
    label22_ = new QLabel(central);
    label22_->setObjectName("Label22");
    label22_->setFrameShape(QFrame::StyledPanel);
    label22_->setFrameShadow(QFrame::Sunken);
    label22_->setMinimumHeight(22);
    statusRow->addWidget(label22_, 1);
    label23_ = new QLabel(central);
    label23_->setObjectName("Label23");
    label23_->setToolTip("Seconds the squelch has been open");
    label23_->setFrameShape(QFrame::StyledPanel);
    label23_->setFrameShadow(QFrame::Sunken);
    label23_->setAlignment(Qt::AlignCenter);
    label23_->setFixedWidth(40);
    statusRow->addWidget(label23_);
    layout->addLayout(statusRow);

    sstab1_ = new QTabWidget(central);
    sstab1_->setObjectName("SSTab1");
    // Eight tabs in a row across the fixed width.
    sstab1_->tabBar()->setStyleSheet("QTabBar::tab { padding: 4px 7px; }");
    sstab1_->addTab(buildKeyboardTab(), "Keyboard");
    sstab1_->addTab(buildHistoryTab(), "History");
    sstab1_->addTab(buildExtenderTab(), "Src Extender");
    sstab1_->addTab(buildLogSetupTab(), "Log Setup");
    sstab1_->addTab(buildAudioSetupTab(), "Audio Setup");
    sstab1_->addTab(buildAudioRecTab(), "Audio Rec.");
    sstab1_->addTab(buildFontTab(), "Font");
    sstab1_->addTab(buildMiscTab(), "Misc.");
    layout->addWidget(sstab1_, 1);
    setCentralWidget(central);
}

QWidget* VirtualControlWindow::buildDisplay(QWidget* parent)
{
    auto* row = new QWidget(parent);
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(8);
    lcd_ = new LcdPanel(row);
    lcd_->setObjectName("lijn");
    layout->addWidget(lcd_, 0, Qt::AlignTop);

    auto* side = new QVBoxLayout;
    side->setSpacing(6);
    meter_ = new SignalMeter(row);
    meter_->setObjectName("Picture20");
    meter_->setToolTip("Signal strength");
    side->addWidget(meter_);
    busy_ = new QLabel("BUSY", row);
    busy_->setObjectName("Label4");
    busy_->setProperty("index", 3);
    busy_->setAlignment(Qt::AlignCenter);
    busy_->setFixedSize(meter_->sizeHint().width(), 24);
    busy_->setStyleSheet("background: #d00000; color: white; font-weight: bold; border-radius: 3px;");
    QSizePolicy keep = busy_->sizePolicy();
    keep.setRetainSizeWhenHidden(true);
    busy_->setSizePolicy(keep);
    busy_->hide();
    side->addWidget(busy_);
    side->addStretch(1);
    layout->addLayout(side);
    layout->addStretch(1);
    return row;
}

void VirtualControlWindow::placeFromVfo()
{
    // [pos] keeps the place in units as decimal text; nothing kept, nothing moved.
    if (!trim(vfo_.left).empty() && !trim(vfo_.top).empty())
        move(static_cast<int>(Val(vfo_.left)) / kTwipsPerPixel, static_cast<int>(Val(vfo_.top)) / kTwipsPerPixel);
    const int height = static_cast<int>(Val(vfo_.height)) / kTwipsPerPixel;
    if (height > minimumHeight()) resize(width(), height);
}

void VirtualControlWindow::storePlace()
{
    // A place off the screen comes back to its middle; a height too small to
    // hold anything becomes 1000 units.
    const QRect screen = screenRect(this);
    int left = x() * kTwipsPerPixel;
    int top = y() * kTwipsPerPixel;
    int height = this->height() * kTwipsPerPixel;
    if (left > screen.right() * kTwipsPerPixel) left = screen.width() * kTwipsPerPixel / 2;
    if (top > screen.bottom() * kTwipsPerPixel) top = screen.height() * kTwipsPerPixel / 2;
    if (height < 500) height = 1000;
    vfo_.left = std::to_string(left);
    vfo_.top = std::to_string(top);
    vfo_.height = std::to_string(height);
}

void VirtualControlWindow::start()
{
    if (started_) return;
    started_ = true;
    table_.vcrunning = true;
    lijnknip1_->setEnabled(true);
    autoResumeChanged();
    audio_->load();
    ModelSwitches& model = table_.doc().model;
    const ModelSwitches before = model;
    loop_->open(table_.folder().path(), model);
    if (closed_) return;  // closed during the opening's waits
    if (!(model == before) && onModelChanged) onModelChanged();
    applyPanel();
}

DateTime VirtualControlWindow::now() const
{
    using namespace std::chrono;
    const sys_days day = year_month_day{year{opened_.year}, month{static_cast<unsigned>(opened_.month)},
                                        std::chrono::day{static_cast<unsigned>(opened_.day)}};
    const sys_time<milliseconds> at = day + hours{opened_.hour} + minutes{opened_.minute} +
                                      seconds{opened_.second} + milliseconds{table_.scheduler().now() - openedMs_};
    const sys_days today = floor<days>(at);
    const year_month_day date{today};
    const hh_mm_ss<seconds> time{floor<seconds>(at - today)};
    DateTime when;
    when.year = static_cast<int>(date.year());
    when.month = static_cast<int>(static_cast<unsigned>(date.month()));
    when.day = static_cast<int>(static_cast<unsigned>(date.day()));
    when.hour = static_cast<int>(time.hours().count());
    when.minute = static_cast<int>(time.minutes().count());
    when.second = static_cast<int>(time.seconds().count());
    return when;
}

void VirtualControlWindow::runKey(const KeyAction& action)
{
    if (closed_) return;
    loop_->run(action);
}

void VirtualControlWindow::displayChanged()
{
    const DisplayState& st = loop_->state();
    for (int l = 0; l < LcdPanel::kLines; ++l) {
        const std::string& text = st.lcdline[l];
        const std::string* raw = l < 3 ? &st.lcdraw[l] : nullptr;
        // The scanner marks the active bank by inverting its digit in the
        // row of ten on line 3; that digit blinks, as on the scanner.
        const bool bankRow = l == 2 && (contains(text, "Bank") || contains(text, "Range"));
        std::array<bool, LcdPanel::kColumns> inverted{}, blinking{};
        for (int i = 0; i < LcdPanel::kColumns; ++i) {
            // The raw field: 16 characters of text, "][", then 16 attributes.
            const std::size_t at = 18 + static_cast<std::size_t>(i);
            const bool marked = raw && raw->size() > at && (*raw)[at] == '#';
            inverted[i] = st.lcdinv[l] == 1 || marked;
            blinking[i] = bankRow && marked;
        }
        const QString shown = toQt(text);
        lcd_->setLine(l, shown, inverted, blinking);
        if (states2_) states2_->setLine(l, shown);
    }
    picture23_->setVisible(st.optionOverlay);
    refreshIndicators();
}

void VirtualControlWindow::replyTaken(int pollstep)
{
    if (pollstep == 5) {
        applyPanel();
        label22_->setText(toQt(loop_->state().statusline));
    }
    refreshIndicators();
}

void VirtualControlWindow::refreshIndicators()
{
    const DisplayState& st = loop_->state();
    busy_->setVisible(st.busyshown);
    meter_->setSignal(st.signal);
    for (int i = 0; i < 12; ++i) keysA_[i]->setLit(st.lamps[i]);
    label23_->setText(toQt(loop_->autoResume().label()));
    if (states2_) states2_->setBusy(st.busytwin);
}

void VirtualControlWindow::applyPanel()
{
    const PanelLook look = updatePanel(loop_->state(), table_.doc().model);
    for (int i = 0; i < 12; ++i) {
        keysA_[i]->setCaption(toQt(look.groupA[i]));
        keysB_[i]->setCaption(toQt(look.groupB[i]));
    }
    for (int i = 0; i < 10; ++i)
        if (keysC_[i]) keysC_[i]->setCaption(toQt(look.groupC[i]));
    refreshIndicators();
}

void VirtualControlWindow::applyLook()
{
    const QFont font = lcdFont(look_);
    lcd_->setLcdFont(font);
    lcd_->setColours(LcdLook::colour(look_.color[0]), LcdLook::colour(look_.color[1]), LcdLook::colour(look_.color[2]));
    if (states2_) {
        states2_->setLcdFont(font);
        states2_->setColours(LcdLook::colour(look_.color[0]), LcdLook::colour(look_.color[1]));
    }
}

void VirtualControlWindow::changeEvent(QEvent* event)
{
    QMainWindow::changeEvent(event);
    if (event->type() == QEvent::WindowStateChange && isMinimized() && started_ && !closed_ &&
        table_.settings().vcstat == 1)
        showStatusWindow();
}

void VirtualControlWindow::showStatusWindow()
{
    if (!states2_) {
        states2_ = new StatusWindow(nullptr);
        connect(states2_, &StatusWindow::restoreRequested, this, &VirtualControlWindow::restoreFromStatus);
        connect(states2_, &StatusWindow::unloading, this, [this] {
            const QPoint place = states2_->placeTwips();
            vfo_.statusLeft = place.x();
            vfo_.statusTop = place.y();
        });
        applyLook();
        // Unplaced, it goes to the lower right corner of the screen.
        const QRect screen = screenRect(this);
        const int left = vfo_.statusLeft != 0 ? vfo_.statusLeft
                                              : screen.width() * kTwipsPerPixel - StatusWindow::kWidthTwips;
        const int top = vfo_.statusTop != 0 ? vfo_.statusTop
                                            : screen.height() * kTwipsPerPixel - StatusWindow::kHeightTwips - 500;
        states2_->moveTwips(left, top);
        const DisplayState& st = loop_->state();
        for (int l = 0; l < 4; ++l) states2_->setLine(l, toQt(st.lcdline[l]));
        states2_->setBusy(st.busytwin);
    }
    states2_->show();
    states2_->raise();
}

void VirtualControlWindow::restoreFromStatus()
{
    setWindowState(windowState() & ~Qt::WindowMinimized);
    showNormal();
    raise();
    activateWindow();
    if (states2_) states2_->close();
}

void VirtualControlWindow::closeEvent(QCloseEvent* event)
{
    if (closed_) {
        event->accept();
        return;
    }
    closed_ = true;
    // The link first: a wait in progress ends at once and no timer fires again.
    loop_->close();
    for (Timer* t : {lijnknip1_.get(), timer7_.get(), timer11_.get()}) t->setEnabled(false);
    // The display's font and colours, and whether they are the user's own.
    look_.save(table_.profile());
    vfo_.custom = check6_->isChecked() ? 1 : 0;
    // The log file closes, the recorder gives up what runs and writes audio.ini.
    hitlog_->setLogging(false);
    const std::string audioError = audio_->close();
    if (!audioError.empty()) label22_->setText(toQt(audioError));
    storeTabs();
    if (table_.settings().vpos == 1) storePlace();
    if (states2_) states2_->close();   // keeps its place in vfo_
    vfo_.save(table_.folder().path());
    table_.vcrunning = false;
    if (onClosed) onClosed();
    event->accept();
}

} // namespace kestra
