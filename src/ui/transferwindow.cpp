#include "ui/transferwindow.h"

#include "platform/unboundport.h"

#include "core/memfile.h"
#include "core/modelword.h"
#include "core/text.h"
#include "platform/qt/qtext.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollBar>
#include <QTimer>
#include <QVBoxLayout>

namespace kestra {

namespace {

constexpr int twipsToPixels(int twips) { return (twips + 7) / 15; }

// The refresh of the status fields while the window is open.
constexpr int kRefreshMs = 50;

constexpr int kFrequencies = 0, kTrunkIds = 1, kSearchEvents = 2, kTrunkSettings = 3;
constexpr const char* kKinds[4] = {"Frequencies", "Trunk Id's", "Search Events", "Trunk Bank Settings"};

// Text10 takes digits, minus, point and control characters only.
bool rangeKeyPasses(const QString& text)
{
    for (const QChar ch : text) {
        const char16_t c = ch.unicode();
        if (c < 32 || c == 127) continue;
        if ((c >= '0' && c <= '9') || c == '-' || c == '.') continue;
        return false;
    }
    return true;
}

QLineEdit* statusField(const char* name, QWidget* parent)
{
    auto* field = new QLineEdit(parent);
    field->setObjectName(name);
    field->setReadOnly(true);
    field->setFocusPolicy(Qt::NoFocus);
    return field;
}

// The communication frame's caption names the scanner.
void showModelName(QGroupBox* frame, Model model)
{
    frame->setTitle(QStringLiteral("Communication ") + QString::fromLatin1(modelName(model)));
}

} // namespace

TransferWindow::TransferWindow(Caption caption, Services services, Link link, QWidget* parent)
    : QDialog(parent), caption_(caption), services_(services), port_(std::move(link.port)), comport_(link.comport),
      baud_(link.baud)
{
    if (!port_) port_ = std::make_unique<UnboundPort>();
    setObjectName("arcomm8");
    setWindowTitle(caption_ == Caption::ReadData ? "Read Data" : "Send Data");
    setModal(true);

    engine_ = std::make_unique<ExchangeEngine>(*port_, services_.scheduler, services_.dialogs, services_.settings,
                                               comport_, baud_, caption_);
    if (caption_ == Caption::ReadData) {
        read_ = std::make_unique<ReadPipeline>(*engine_, services_.doc, services_.dialogs, services_.scheduler,
                                               services_.folder);
        read_->onFinished = [this] { runEnded(); };
    } else {
        send_ = std::make_unique<SendPipeline>(*engine_, services_.doc, services_.settings, services_.dialogs,
                                               services_.scheduler, services_.folder);
        send_->onFinished = [this] { runEnded(); };
    }
    // STOP gives the options and the start button back (command1 stays hidden
    // in "Send Data"; Command5 is its start button there). Delete Bank waits
    // for the next choice of a single bank.
    engine_->hooks.stopped = [this] {
        frame3D6_->setEnabled(true);
        command1_->setEnabled(true);
        if (command5_) command5_->setEnabled(true);
        refreshStatus();
    };

    buildControls();
    // The window's own size, or larger where the desktop's font needs more
    // room for the captions ("Channel Range:", "Trunk Bank Settings").
    const QSize hint = sizeHint();
    resize(std::max(twipsToPixels(kWidthTwips), hint.width()), std::max(twipsToPixels(kHeightTwips), hint.height()));

    refresh_ = new QTimer(this);
    refresh_->setInterval(kRefreshMs);
    connect(refresh_, &QTimer::timeout, this, &TransferWindow::refreshStatus);
}

TransferWindow::~TransferWindow()
{
    // The pipeline lets go of the engine's hooks before the engine goes, and
    // the engine of the port before the port goes.
    read_.reset();
    send_.reset();
    engine_.reset();
    if (port_) {
        port_->setRThreshold(0);
        port_->close();
    }
}

void TransferWindow::buildControls()
{
    auto* layout = new QVBoxLayout(this);

    // The communication frame: status fields, progress and the delay slider.
    frame3D2_ = new QGroupBox(this);
    frame3D2_->setObjectName("Frame3D2");
    showModelName(frame3D2_, services_.doc.model.model());
    auto* comm = new QGridLayout(frame3D2_);
    text3_ = statusField("Text3", frame3D2_);
    text4_ = statusField("Text4", frame3D2_);
    text5_ = statusField("Text5", frame3D2_);
    // Wide enough for "1000" and a retry count in the desktop's font.
    const int numberWidth = text4_->fontMetrics().horizontalAdvance("00000") + 16;
    text4_->setMaximumWidth(numberWidth);
    text5_->setMaximumWidth(numberWidth);
    comm->addWidget(text3_, 0, 0, 1, 4);
    // The channel and the state (or retry count), each with its caption.
    auto* numbers = new QHBoxLayout;
    for (const auto& [caption, field] : {std::pair{"Channel:", text4_}, std::pair{"State:", text5_}}) {
        auto* label = new QLabel(caption, frame3D2_);
        label->setBuddy(field);
        numbers->addWidget(label);
        numbers->addWidget(field);
    }
    comm->addLayout(numbers, 1, 0, 1, 2);
    panel3d1_ = new QProgressBar(frame3D2_);
    panel3d1_->setObjectName("panel3d1");
    panel3d1_->setRange(0, 100);
    panel3d1_->setValue(0);
    comm->addWidget(panel3d1_, 1, 2, 1, 2);

    label6_ = new QLabel("Delay (ms):", frame3D2_);
    label6_->setObjectName("Label6");
    text6_ = statusField("Text6", frame3D2_);
    text6_->setMaximumWidth(numberWidth);
    label6_->setBuddy(text6_);
    text6_->setAutoFillBackground(true);
    hscroll1_ = new QScrollBar(Qt::Horizontal, frame3D2_);
    hscroll1_->setObjectName("HScroll1");
    hscroll1_->setRange(25, 1000);
    hscroll1_->setSingleStep(1);
    hscroll1_->setPageStep(25);
    command10_ = new QPushButton("Default", frame3D2_);
    command10_->setObjectName("Command10");
    comm->addWidget(label6_, 2, 0);
    comm->addWidget(text6_, 2, 1);
    comm->addWidget(hscroll1_, 2, 2);
    comm->addWidget(command10_, 2, 3);
    comm->setColumnStretch(2, 1);
    layout->addWidget(frame3D2_);

    // The options frame: which banks and which kinds of data.
    frame3D6_ = new QGroupBox(this);
    frame3D6_->setObjectName("Frame3D6");
    auto* options = new QGridLayout(frame3D6_);
    auto* group = new QButtonGroup(this);
    const char* optionCaptions[3] = {"All Banks", "Single Bank:", "Channel Range:"};
    for (int i = 0; i < 3; ++i) {
        option3D2_[i] = new QRadioButton(optionCaptions[i], frame3D6_);
        option3D2_[i]->setObjectName(QString("Option3D2_%1").arg(i));
        group->addButton(option3D2_[i], i);
        options->addWidget(option3D2_[i], i, 0);
    }
    connect(group, &QButtonGroup::idClicked, this, &TransferWindow::optionClicked);

    combo1_ = new QComboBox(frame3D6_);
    combo1_->setObjectName("Combo1");
    combo1_->setMinimumContentsLength(24);
    options->addWidget(combo1_, 1, 1, 1, 4);

    const char* rangeCaptions[2] = {"Start:", "End:"};
    for (int i = 0; i < 2; ++i) {
        auto* label = new QLabel(rangeCaptions[i], frame3D6_);
        label->setObjectName(QString("Label10_%1").arg(i));
        text10_[i] = new QLineEdit(frame3D6_);
        text10_[i]->setObjectName(QString("Text10_%1").arg(i));
        text10_[i]->setMaximumWidth(numberWidth);
        label->setBuddy(text10_[i]);
        text10_[i]->installEventFilter(this);
        options->addWidget(label, 2, 1 + 2 * i);
        options->addWidget(text10_[i], 2, 2 + 2 * i);
    }

    auto* kinds = new QVBoxLayout;
    for (int i = 0; i < 4; ++i) {
        check3D3_[i] = new QCheckBox(kKinds[i], frame3D6_);
        check3D3_[i]->setObjectName(QString("Check3D3_%1").arg(i));
        kinds->addWidget(check3D3_[i]);
    }
    check3D3_[kFrequencies]->setChecked(true);
    options->addLayout(kinds, 0, 5, 3, 1);

    command22_ = new QPushButton("All", frame3D6_);
    command22_->setObjectName("Command22");
    connect(command22_, &QPushButton::clicked, this, &TransferWindow::allClicked);
    check3D5_ = new QCheckBox("Merge Data", frame3D6_);
    check3D5_->setObjectName("Check3D5");
    options->addWidget(command22_, 3, 5);
    options->addWidget(check3D5_, 3, 0);
    if (caption_ == Caption::ReadData) {
        // A reply is taken only when a second copy agrees: noise on the line
        // costs a question more, never a wrong channel.
        verify_ = new QCheckBox("Verify (read every reply twice)", frame3D6_);
        verify_->setObjectName("CheckVerify");
        verify_->setChecked(services_.settings.verifyread == 1);
        connect(verify_, &QCheckBox::toggled, this, [this](bool on) { services_.settings.verifyread = on ? 1 : 0; });
        options->addWidget(verify_, 4, 0, 1, 5);
    }
    options->setColumnStretch(4, 1);
    layout->addWidget(frame3D6_);


    // The buttons. "Send Data" has its own start button and Delete Bank in
    // place of command1.
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    command1_ = new QPushButton("Read Data", this);
    command1_->setObjectName("command1");
    command1_->setVisible(caption_ == Caption::ReadData);
    connect(command1_, &QPushButton::clicked, this, &TransferWindow::readClicked);
    buttons->addWidget(command1_);
    if (caption_ == Caption::SendData) {
        command3_ = new QPushButton("&Delete Bank", this);
        command3_->setObjectName("Command3");
        connect(command3_, &QPushButton::clicked, this, &TransferWindow::deleteClicked);
        command5_ = new QPushButton("&Send Data", this);
        command5_->setObjectName("Command5");
        connect(command5_, &QPushButton::clicked, this, &TransferWindow::sendClicked);
        buttons->addWidget(command3_);
        buttons->addWidget(command5_);
    }
    command3d1_ = new QPushButton("STOP", this);
    command3d1_->setObjectName("command3d1");
    connect(command3d1_, &QPushButton::clicked, this, &TransferWindow::stopClicked);
    buttons->addWidget(command3d1_);
    layout->addLayout(buttons);

    // The slider group shows at 19200 baud and above only.
    for (QWidget* w : std::initializer_list<QWidget*>{label6_, text6_, hscroll1_, command10_})
        w->setVisible(engine_->sliderShown());
    connect(hscroll1_, &QScrollBar::valueChanged, this, &TransferWindow::delayMoved);
    connect(command10_, &QPushButton::clicked, this, &TransferWindow::defaultClicked);

    for (const std::string& line : bankLines()) combo1_->addItem(toQt(line));
    combo1_->setCurrentIndex(-1);
    updateDeleteButton();
}

void TransferWindow::showEvent(QShowEvent* event)
{
    QDialog::showEvent(event);
    if (!loaded_) formLoad();
}

void TransferWindow::formLoad()
{
    if (loaded_) return;
    loaded_ = true;
    refresh_->start();

    modelWord_ = engine_->openForm(services_.doc.model.bc785d);
    writeFileAtomic(services_.folder / "version.ini", modelWord_);
    // The frame names the scanner that answered; a word that names none
    // leaves the document's model.
    showModelName(frame3D2_, modelInWord(modelWord_).value_or(services_.doc.model.model()));

    // The slider takes delay1, and its handler sets the step timers.
    const QSignalBlocker block(hscroll1_);
    hscroll1_->setValue(services_.settings.delay1);
    delayMoved(hscroll1_->value());

    // The start buttons wait for the reads of the opening: a run begun
    // meanwhile would have its replies taken by them.
    command1_->setEnabled(false);
    if (command5_) command5_->setEnabled(false);
    if (command3_) command3_->setEnabled(false);
    auto opened = [this] {
        command1_->setEnabled(true);
        if (command5_) command5_->setEnabled(true);
        updateDeleteButton();
        refreshStatus();
    };
    if (read_) {
        read_->whenOpened(opened);
        read_->open();
    }
    if (send_) {
        send_->whenOpened(opened);
        send_->open();
    }
    refreshStatus();
}

void TransferWindow::delayMoved(int ms)
{
    engine_->setDelay(ms);
    const int delay = services_.settings.delay1;
    text6_->setText(QString::number(delay));
    QPalette palette = text6_->palette();
    palette.setColor(QPalette::Base, delay < 100 ? QColor(255, 0, 0) : QColor(0, 255, 0));
    text6_->setPalette(palette);
}

void TransferWindow::defaultClicked()
{
    engine_->defaultDelay();
    hscroll1_->setValue(services_.settings.delay1);
    delayMoved(hscroll1_->value());
}

void TransferWindow::optionClicked(int index)
{
    // A range reads frequencies only; the banks options give the other kinds back.
    const bool range = index == 2;
    if (range) check3D3_[kFrequencies]->setChecked(true);
    for (int i : {kTrunkIds, kSearchEvents, kTrunkSettings}) {
        if (range) check3D3_[i]->setChecked(false);
        check3D3_[i]->setEnabled(!range);
    }
    updateDeleteButton();
}

void TransferWindow::updateDeleteButton()
{
    if (command3_) command3_->setEnabled(option3D2_[1]->isChecked() && send_->opened());
}

void TransferWindow::resetSelection()
{
    // A button group keeps one button checked: let go of it to clear them all.
    QButtonGroup* group = option3D2_[0]->group();
    group->setExclusive(false);
    for (QRadioButton* option : option3D2_) option->setChecked(false);
    group->setExclusive(true);
    combo1_->setCurrentIndex(-1);
    for (int i : {kTrunkIds, kSearchEvents, kTrunkSettings}) check3D3_[i]->setEnabled(true);
    updateDeleteButton();
}

void TransferWindow::allClicked()
{
    check3D3_[kFrequencies]->setChecked(true);
    check3D3_[kSearchEvents]->setChecked(true);
    if (!option3D2_[2]->isChecked()) {
        check3D3_[kTrunkIds]->setChecked(true);
        check3D3_[kTrunkSettings]->setChecked(true);
    }
}

ReadPipeline::Options TransferWindow::selection() const
{
    ReadPipeline::Options o;
    o.scope = option3D2_[0]->isChecked()   ? ReadPipeline::Scope::AllBanks
              : option3D2_[1]->isChecked() ? ReadPipeline::Scope::SingleBank
              : option3D2_[2]->isChecked() ? ReadPipeline::Scope::ChannelRange
                                           : ReadPipeline::Scope::None;
    o.bank = combo1_->currentIndex();
    o.rangeStart = fromQt(text10_[0]->text());
    o.rangeEnd = fromQt(text10_[1]->text());
    o.frequencies = check3D3_[kFrequencies]->isChecked();
    o.trunkIds = check3D3_[kTrunkIds]->isChecked();
    o.searchEvents = check3D3_[kSearchEvents]->isChecked();
    o.trunkSettings = check3D3_[kTrunkSettings]->isChecked();
    o.merge = check3D5_->isChecked();
    return o;
}

void TransferWindow::readClicked()
{
    if (!read_) return;
    // The model check waits and yields: no second click meanwhile.
    command1_->setEnabled(false);
    const ReadPipeline::Options options = selection();
    if (!read_->readData(options)) {
        command1_->setEnabled(true);
        refreshStatus();
        return;
    }
    runBegun(options);
}

void TransferWindow::sendClicked()
{
    if (!send_) return;
    // The model check and the confirmations wait and yield: no second click meanwhile.
    command5_->setEnabled(false);
    command3_->setEnabled(false);
    const ReadPipeline::Options options = selection();
    if (!send_->sendData(options)) {
        command5_->setEnabled(true);
        updateDeleteButton();
        refreshStatus();
        return;
    }
    runBegun(options);
}

void TransferWindow::runBegun(const ReadPipeline::Options& options)
{
    runStarted_ = true;
    if (runFinished()) {
        refreshStatus();
        return;
    }
    // Text10 shows the range as it is moved: held to 1..1000.
    if (options.scope == ReadPipeline::Scope::ChannelRange) {
        for (QLineEdit* t : text10_) {
            const long long v = IntVal(fromQt(t->text()));
            if (v > 1000) t->setText("1000");
            if (v < 1) t->setText("1");
        }
    }
    frame3D6_->setEnabled(false);
    refreshStatus();
}

void TransferWindow::deleteClicked()
{
    if (!send_) return;
    // The deletion waits between channels and yields: the options and both
    // buttons stay off until it is over.
    frame3D6_->setEnabled(false);
    command5_->setEnabled(false);
    command3_->setEnabled(false);
    const bool deleted = send_->deleteBank(selection());
    frame3D6_->setEnabled(true);
    command5_->setEnabled(true);
    if (deleted)
        resetSelection();
    else
        updateDeleteButton();
    refreshStatus();
}

void TransferWindow::stopClicked() { engine_->stopxfer(); }

bool TransferWindow::runFinished() const { return (read_ && read_->finished) || (send_ && send_->finished); }

void TransferWindow::runEnded()
{
    refreshStatus();
    accept();
}

std::vector<std::string> TransferWindow::bankLines() const
{
    if (read_) return read_->combo1Lines();
    if (send_) return send_->combo1Lines();
    return {};
}

void TransferWindow::refreshStatus()
{
    if (!engine_) return;
    const ExchangeEngine::Status& s = engine_->status;
    auto set = [](QLineEdit* field, const std::string& text) {
        const QString q = toQt(text);
        if (field->text() != q) field->setText(q);
    };
    // After STOP the status line says so, until the next run begins.
    set(text3_, engine_->stopflag == 1 ? std::string("Stopped") : s.text3);
    set(text4_, s.text4);
    set(text5_, s.text5);
    panel3d1_->setValue(s.progress);

    const std::vector<std::string> lines = bankLines();
    for (int i = 0; i < int(lines.size()) && i < combo1_->count(); ++i) {
        const QString q = toQt(lines[i]);
        if (combo1_->itemText(i) != q) combo1_->setItemText(i, q);
    }
}

bool TransferWindow::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::KeyPress && (watched == text10_[0] || watched == text10_[1])) {
        auto* key = static_cast<QKeyEvent*>(event);
        if (!rangeKeyPasses(key->text())) return true;
    }
    return QDialog::eventFilter(watched, event);
}

void TransferWindow::done(int result)
{
    if (!closing_) {
        closing_ = true;
        refresh_->stop();
        // A run still going is stopped as STOP stops it: no timer of it may
        // fire once the window has gone.
        if (runStarted_ && !runFinished() && engine_->stopflag == 0) engine_->stopxfer();
        refreshStatus();
        port_->setRThreshold(0);
        port_->close();
    }
    QDialog::done(result);
}

} // namespace kestra
