#include "ui/generalparamswindow.h"

#include "platform/qt/qtext.h"
#include "ui/widgets/keyfilter.h"
#include "ui/widgets/namedbutton.h"

#include <QComboBox>
#include <QFormLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace kestra {

namespace {

struct Names {
    const char* caption;
    const char* reset;
};

Names namesOf(const ModelSwitches& model)
{
    if (model.ubc33 == 1) return {"UBC3300 General parameters", "Reset UBC3300"};
    if (model.bc785d == 1) return {"BC785/796 General parameters", "Reset BC785/796D"};
    return {"BC250/296 General Parameters:", "Reset BC250/296D"};
}

} // namespace

GeneralParamsWindow::GeneralParamsWindow(TransferWindow::Services services, TransferWindow::Link link, QWidget* parent)
    : ScannerDialog(services, std::move(link), parent)
{
    setObjectName("bc780set");
    const Names names = namesOf(services_.doc.model);
    setWindowTitle(names.caption);
    params_ = std::make_unique<GeneralParams>(engine(), services_.doc.model.bc785d);

    auto* general = new QGroupBox("General:", this);
    auto* form = new QFormLayout(general);
    const auto& all = generalOptions();
    for (int i = 0; i < kGeneralOptions; ++i) {
        auto* list = new QComboBox(general);
        list->setObjectName(QString("Combo%1").arg(i + 1));
        for (const char* choice : all[static_cast<std::size_t>(i)].choices) list->addItem(choice);
        list->setCurrentIndex(-1);
        form->addRow(all[static_cast<std::size_t>(i)].label, list);
        options_[static_cast<std::size_t>(i)] = list;
    }

    auto* codes = new QGroupBox("Fips code: 6 digits.", this);
    auto* grid = new QGridLayout(codes);
    for (int n = 1; n <= kFipsBoxes; ++n) {
        auto* box = new QLineEdit(codes);
        box->setObjectName(QString("Text2_%1").arg(n));
        box->setMaxLength(6);
        new KeyFilter(box, [](char c) { return c >= '0' && c <= '9'; });
        grid->addWidget(new QLabel(QString::number(n), codes), (n - 1) / 5, ((n - 1) % 5) * 2);
        grid->addWidget(box, (n - 1) / 5, ((n - 1) % 5) * 2 + 1);
        fips_[static_cast<std::size_t>(n - 1)] = box;
    }
    command5_ = namedButton("Store", "Command5", codes);
    command6_ = namedButton("Clear all", "Command6", codes);
    grid->addWidget(command5_, 3, 6, 1, 2);
    grid->addWidget(command6_, 3, 8, 1, 2);
    params_->showFips(services_.doc.fipscodes);
    for (int n = 1; n <= kFipsBoxes; ++n) fips_[static_cast<std::size_t>(n - 1)]->setText(toQt(params_->fips[n - 1]));

    auto* reset = new QHBoxLayout;
    text1_ = new QLineEdit(this);
    text1_->setObjectName("Text1");
    text1_->setPlaceholderText("Type RESET");
    command4_ = namedButton(names.reset, "Command4", this);
    reset->addWidget(text1_);
    reset->addWidget(command4_);

    command1_ = namedButton("Read from scanner", "Command1", this);
    command2_ = namedButton("Send to scanner", "Command2", this);
    close_ = namedButton("Close", "Command3", this);
    progress_ = new QLabel(this);
    progress_->setObjectName("progress");
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(command1_);
    buttons->addWidget(command2_);
    buttons->addWidget(progress_, 1);
    buttons->addWidget(close_);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(general);
    layout->addWidget(codes);
    layout->addLayout(reset);
    layout->addLayout(buttons);

    connect(command1_, &QPushButton::clicked, this, &GeneralParamsWindow::readScanner);
    connect(command2_, &QPushButton::clicked, this, &GeneralParamsWindow::sendScanner);
    connect(command5_, &QPushButton::clicked, this, &GeneralParamsWindow::store);
    connect(command6_, &QPushButton::clicked, this, [this] {
        for (QLineEdit* box : fips_) box->clear();
    });
    connect(command4_, &QPushButton::clicked, this, &GeneralParamsWindow::resetScanner);
    connect(close_, &QPushButton::clicked, this, &QDialog::accept);
}

GeneralParamsWindow::~GeneralParamsWindow() = default;

void GeneralParamsWindow::busy(bool on)
{
    // Without the scanner nothing can be read or sent; the codes can still be stored.
    const bool line = lineOpen();
    for (QPushButton* b : {command1_, command2_, command4_}) b->setEnabled(!on && line);
    for (QPushButton* b : {command5_, close_}) b->setEnabled(!on);
}

void GeneralParamsWindow::boxesToParams()
{
    for (int n = 1; n <= kFipsBoxes; ++n) params_->fips[n - 1] = fromQt(fips_[static_cast<std::size_t>(n - 1)]->text());
    for (int i = 0; i < kGeneralOptions; ++i) params_->values[i] = options_[static_cast<std::size_t>(i)]->currentIndex();
}

void GeneralParamsWindow::paramsToControls()
{
    for (int i = 0; i < kGeneralOptions; ++i)
        if (params_->values[i] >= 0) options_[static_cast<std::size_t>(i)]->setCurrentIndex(params_->values[i]);
    for (int n = 1; n <= kFipsBoxes; ++n) fips_[static_cast<std::size_t>(n - 1)]->setText(toQt(params_->fips[n - 1]));
}

void GeneralParamsWindow::readScanner()
{
    busy(true);
    boxesToParams();
    params_->read([this](int step) { progress_->setText(QString("%1 / 11").arg(step)); });
    paramsToControls();
    busy(false);
}

void GeneralParamsWindow::sendScanner()
{
    busy(true);
    boxesToParams();
    params_->send(services_.doc.fipscodes);
    progress_->setText("Sent");
    busy(false);
}

void GeneralParamsWindow::store()
{
    busy(true);
    boxesToParams();
    params_->storeFips(services_.doc.fipscodes);
    busy(false);
}

void GeneralParamsWindow::resetScanner()
{
    const bool sent = params_->reset(fromQt(text1_->text()), [this] {
        return services_.dialogs.message(GeneralParams::kResetWarning, {}, Buttons::YesNo) == Answer::Yes;
    });
    if (sent) text1_->clear();
}

} // namespace kestra
