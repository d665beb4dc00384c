#include "ui/portsetupwindow.h"

#include "sim/programports.h"
#include "core/memtable.h"
#include "platform/qt/qtext.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

#include <algorithm>

namespace kestra {

namespace {

constexpr const char* kAdvice[PortSetupWindow::kAdviceLines] = {
    " Make sure your scanner is in remote mode:",
    " Press MENU - Press 3",
    " Press 5 ",
    " Select either 4800 - 9600 - 19200",
    "- 38400 - 57600",
    " Confirm and store your selection by pressing 'E'",
    " Use USB converters at your own risk!",
    " 38400/57600 baudrate for x96 models only!",
};

// Eats the carriage return typed into the "other:" port box, so that it
// neither closes the window nor presses a button.
class SwallowReturn : public QObject {
public:
    using QObject::QObject;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() == QEvent::KeyPress || event->type() == QEvent::KeyRelease || event->type() == QEvent::ShortcutOverride) {
            const int key = static_cast<QKeyEvent*>(event)->key();
            if (key == Qt::Key_Return || key == Qt::Key_Enter) return true;
        }
        return QObject::eventFilter(watched, event);
    }
};

// The wait cursor for the length of a scope.
class WaitCursor {
public:
    WaitCursor() { QApplication::setOverrideCursor(Qt::WaitCursor); }
    ~WaitCursor() { QApplication::restoreOverrideCursor(); }
    WaitCursor(const WaitCursor&) = delete;
    WaitCursor& operator=(const WaitCursor&) = delete;
};

QString pathText(const std::string& path) { return QString::fromLocal8Bit(path.c_str()); }

QString targetText(const std::string& target)
{
    if (target.empty()) return PortSetupWindow::kUnboundText;
    if (target == PortBinding::kVirtual) return PortSetupWindow::kVirtualText;
    return pathText(target);
}

} // namespace

PortSetupWindow::PortSetupWindow(MemTable& table, ProgramPorts& ports, QWidget* parent)
    : QDialog(parent), table_(table), ports_(ports), original_(ports.binding)
{
    setObjectName("comsetup");
    setWindowTitle("Rs232 setup:");
    setModal(true);

    auto* outer = new QVBoxLayout(this);
    auto* columns = new QHBoxLayout;
    outer->addLayout(columns);
    auto* left = new QVBoxLayout;
    auto* right = new QVBoxLayout;
    columns->addLayout(left);
    columns->addSpacing(8);
    columns->addLayout(right, 1);

    // The model.
    frame2_ = new QGroupBox("Model:", this);
    frame2_->setObjectName("Frame2");
    auto* models = new QVBoxLayout(frame2_);
    for (int i = 0; i < kModels; ++i) {
        option1_[i] = new QRadioButton(modelName(modelOfOption(i)), frame2_);
        option1_[i]->setObjectName("Option1");
        option1_[i]->setProperty("index", i);
        models->addWidget(option1_[i]);
    }
    left->addWidget(frame2_);

    // The port: com1 to com8, or another number typed beside "other:".
    frame1_ = new QGroupBox("Comport:", this);
    frame1_->setObjectName("Frame1");
    auto* portGrid = new QGridLayout(frame1_);
    for (int i = 0; i < kPortOptions; ++i) {
        const QString caption = i < 8 ? QString("com%1").arg(i + 1) : QString("other:");
        option3d1_[i] = new QRadioButton(caption, frame1_);
        option3d1_[i]->setObjectName("option3d1");
        option3d1_[i]->setProperty("index", i);
        portGrid->addWidget(option3d1_[i], i % 3, i / 3);
    }
    text1_ = new QLineEdit(frame1_);
    text1_->setObjectName("Text1");
    text1_->setToolTip("enter comport number 9 - 19");
    text1_->setPlaceholderText("enter comport number 9 - 19");
    text1_->setMaxLength(5);
    text1_->installEventFilter(new SwallowReturn(text1_));
    portGrid->addWidget(text1_, 3, 0, 1, 3);
    left->addWidget(frame1_);

    // The speed and the USB converter.
    auto* baudRow = new QHBoxLayout;
    label1_ = new QLabel("Baudrate:", this);
    label1_->setObjectName("Label1");
    combo1_ = new QComboBox(this);
    combo1_->setObjectName("Combo1");
    for (int baud : kBaudRates) combo1_->addItem(QString::number(baud));
    label1_->setBuddy(combo1_);
    baudRow->addWidget(label1_);
    baudRow->addWidget(combo1_, 1);
    left->addLayout(baudRow);
    check1_ = new QCheckBox("Enable extra delay (option for USB)", this);
    check1_->setObjectName("Check1");
    left->addWidget(check1_);
    left->addStretch(1);

    // The advice.
    auto* advice = new QGroupBox(this);
    advice->setObjectName("advice");
    auto* adviceLayout = new QVBoxLayout(advice);
    adviceLayout->setSpacing(1);
    for (int i = 0; i < kAdviceLines; ++i) {
        label2_[i] = new QLabel(kAdvice[i], advice);
        label2_[i]->setObjectName("Label2");
        label2_[i]->setProperty("index", i);
        label2_[i]->setTextFormat(Qt::PlainText);
        adviceLayout->addWidget(label2_[i]);
    }
    right->addWidget(advice);

    // The binding of the chosen port number.
    auto* binding = new QGroupBox("Port binding", this);
    binding->setObjectName("portbinding");
    auto* bindingLayout = new QVBoxLayout(binding);
    portTargetLabel_ = new QLabel(binding);
    portTargetLabel_->setObjectName("porttargetlabel");
    portTarget_ = new QComboBox(binding);
    portTarget_->setObjectName("porttarget");
    portTarget_->setEditable(true);
    portTarget_->setInsertPolicy(QComboBox::NoInsert);
    portTarget_->setToolTip("A serial device, the built-in virtual scanner, or the path of a device "
                            "(such as a pseudo-terminal)");
    portTarget_->addItem(kUnboundText);
    portTarget_->addItem(kVirtualText);
    for (const SerialDeviceChoice& choice : serialDeviceChoices()) {
        portTarget_->addItem(pathText(choice.path));
        if (choice.path != choice.device)
            portTarget_->setItemData(portTarget_->count() - 1, pathText(choice.device), Qt::ToolTipRole);
    }
    portTargetLabel_->setBuddy(portTarget_);
    bindings_ = new QListWidget(binding);
    bindings_->setObjectName("bindings");
    bindings_->setSelectionMode(QAbstractItemView::NoSelection);
    bindings_->setFocusPolicy(Qt::NoFocus);
    bindings_->setFixedHeight(bindings_->fontMetrics().height() * 4 + 8);
    bindingLayout->addWidget(portTargetLabel_);
    bindingLayout->addWidget(portTarget_);
    bindingLayout->addWidget(new QLabel("Bound ports:", binding));
    bindingLayout->addWidget(bindings_);
    right->addWidget(binding);
    right->addStretch(1);

    // The buttons.
    auto* buttons = new QHBoxLayout;
    command3_ = new QPushButton("AutoDetect", this);
    command3_->setObjectName("Command3");
    command1_ = new QPushButton("Ok", this);
    command1_->setObjectName("Command1");
    command2_ = new QPushButton("Cancel", this);
    command2_->setObjectName("Command2");
    for (QPushButton* button : {command3_, command1_, command2_}) button->setAutoDefault(false);
    command1_->setEnabled(false);   // until a port is chosen
    buttons->addWidget(command3_);
    buttons->addStretch(1);
    buttons->addWidget(command1_);
    buttons->addWidget(command2_);
    outer->addLayout(buttons);

    showValues();

    for (QRadioButton* option : option3d1_) {
        connect(option, &QRadioButton::clicked, this, [this] { command1_->setEnabled(true); });
        connect(option, &QRadioButton::toggled, this, [this](bool on) {
            if (!on) return;
            text1_->setEnabled(option3d1_[8]->isChecked());
            showBinding();
        });
    }
    connect(text1_, &QLineEdit::textChanged, this, [this] {
        if (option3d1_[8]->isChecked()) showBinding();
    });
    connect(portTarget_, &QComboBox::currentTextChanged, this, &PortSetupWindow::bindTyped);
    connect(portTarget_, &QComboBox::activated, this, [this](int index) { bindTyped(portTarget_->itemText(index)); });
    // Turning the box off puts the delays back at once, Cancel or not.
    connect(check1_, &QCheckBox::toggled, this, [this](bool on) {
        if (on) return;
        Settings& settings = table_.settings();
        settings.delay1 = 100;
        settings.delay2 = 200;
        settings.delay3 = 400;
    });
    connect(command1_, &QPushButton::clicked, this, &PortSetupWindow::accept);
    connect(command2_, &QPushButton::clicked, this, &PortSetupWindow::reject);
    connect(command3_, &QPushButton::clicked, this, &PortSetupWindow::autoDetect);
}

void PortSetupWindow::showValues()
{
    const ModelSwitches& model = table_.doc().model;
    option1_[optionOfModel(model.model())]->setChecked(true);
    showPort(table_.com.port);
    // A model without the fast speeds shows 19200 for them.
    int baud = table_.com.baud;
    if (model.x96 == 0 && baud >= 19201) baud = 19200;
    int index = 2;   // a speed outside the list shows as 19200
    for (int i = 0; i < 5; ++i)
        if (kBaudRates[i] == baud) index = i;
    combo1_->setCurrentIndex(index);
    check1_->setChecked(table_.com.usbc == 1);
    // Choosing the port of the current values counts as the click that allows "Ok".
    command1_->setEnabled(true);
}

void PortSetupWindow::showPort(int port)
{
    if (port >= 1 && port <= 8) {
        option3d1_[port - 1]->setChecked(true);
        text1_->clear();
    } else {
        option3d1_[8]->setChecked(true);
        text1_->setText(QString::number(port));
    }
    text1_->setEnabled(option3d1_[8]->isChecked());
    showBinding();
}

int PortSetupWindow::selectedPort() const
{
    for (int i = 0; i < 8; ++i)
        if (option3d1_[i]->isChecked()) return i + 1;
    return clampOtherPort(fromQt(text1_->text()));
}

void PortSetupWindow::showBinding()
{
    const int port = selectedPort();
    portTargetLabel_->setText(QString("com%1 is bound to:").arg(port));
    // The list's choice follows the text, so that picking it again still counts.
    const QString text = targetText(ports_.binding.target(port));
    showing_ = true;
    portTarget_->setCurrentIndex(-1);
    if (const int at = portTarget_->findText(text); at >= 0)
        portTarget_->setCurrentIndex(at);
    else
        portTarget_->setEditText(text);
    showing_ = false;
    refreshBindings();
}

void PortSetupWindow::bindTyped(const QString& text)
{
    if (showing_) return;
    const QString typed = text.trimmed();
    std::string target;
    if (typed == kVirtualText)
        target = PortBinding::kVirtual;
    else if (!typed.isEmpty() && typed != kUnboundText)
        target = typed.toLocal8Bit().toStdString();
    ports_.binding.bind(selectedPort(), target);
    refreshBindings();
}

void PortSetupWindow::refreshBindings()
{
    bindings_->clear();
    for (const auto& [port, target] : ports_.binding.targets)
        bindings_->addItem(QString("com%1: %2").arg(port).arg(targetText(target)));
}

SetupChoice PortSetupWindow::choice() const
{
    SetupChoice c;
    for (int i = 0; i < kModels; ++i)
        if (option1_[i]->isChecked()) c.modelOption = i;
    c.port = selectedPort();
    c.baudIndex = std::max(0, combo1_->currentIndex());
    c.usb = check1_->isChecked();
    return c;
}

void PortSetupWindow::autoDetect()
{
    Dialogs& dialogs = table_.dialogs();
    dialogs.message(kDetectAdvice);

    // The built-in scanner answers as the model chosen here: it stands in for
    // the scanner the user says is on the cable.
    const SetupChoice c = choice();
    const Model model = modelOfOption(c.modelOption);
    DetectResult r;
    {
        // The search waits on the line for half a minute at worst, with the
        // event loop running: nothing in the window may be pressed meanwhile.
        WaitCursor busy;
        setEnabled(false);
        detecting_ = true;
        r = autodetect(ports_.factory(model), ports_.scheduler(), ModelSwitches::of(model), kBaudRates[c.baudIndex]);
        detecting_ = false;
        setEnabled(true);
    }
    if (r.found) {
        option1_[std::clamp(r.model, 0, kModels - 1)]->setChecked(true);
        showPort(r.port);
        for (int i = 0; i < 5; ++i)
            if (kBaudRates[i] == r.baud) combo1_->setCurrentIndex(i);
    }
    for (std::size_t i = 0; i < r.messages.size(); ++i)
        if (i > 0 || r.messages[i] != kDetectAdvice) dialogs.message(r.messages[i]);
}

void PortSetupWindow::accept()
{
    const SetupChoice c = choice();
    result_ = applySetup(c);
    Dialogs& dialogs = table_.dialogs();
    if (!result_.message.empty()) dialogs.message(result_.message);
    Settings& settings = table_.settings();
    if (c.usb) {
        settings.delay1 = 200;
        settings.delay2 = 200;
        settings.delay3 = 400;
    }
    // The UBC3300 has a display of its own.
    if (modelOfOption(c.modelOption) == Model::UBC3300) settings.model = 3;
    const auto& folder = table_.folder().path();
    if (const std::string problem = writeCom250(result_.com, folder); !problem.empty()) dialogs.message(problem);
    if (const std::string problem = ports_.saveBinding(); !problem.empty()) dialogs.message(problem);
    QDialog::accept();
}

void PortSetupWindow::reject()
{
    // Closing the window (Escape, the title bar) waits for the search to end.
    if (detecting_) return;
    ports_.binding = original_;
    QDialog::reject();
}

} // namespace kestra
