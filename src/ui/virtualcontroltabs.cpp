// The Virtual Control's tabs beside the keyboard: "Font" (the display's font
// and colours), "Misc." (the lists of active banks and the trunk lists), and
// the tabs whose work comes in a later version.

#include "ui/virtualcontrolwindow.h"

#include "platform/qt/qtext.h"
#include "ui/widgets/lcdpanel.h"
#include "ui/widgets/panelkey.h"

#include <QCheckBox>
#include <QColorDialog>
#include <QComboBox>
#include <QFontDatabase>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace kestra {

namespace {

int firstOf(ActiveList list)
{
    switch (list) {
    case ActiveList::SearchBanks: return 100;
    case ActiveList::ScanBanks: return 110;
    case ActiveList::IdLists: return 120;
    }
    return 100;
}

} // namespace

QWidget* VirtualControlWindow::buildLaterTab(const char* name, const char* what)
{
    auto* page = new QWidget;
    page->setObjectName(name);
    auto* layout = new QVBoxLayout(page);
    auto* note = new QLabel(QString::fromUtf8(what) + " comes in a later version of Kestra Console.", page);
    note->setObjectName("later");
    note->setAlignment(Qt::AlignCenter);
    note->setWordWrap(true);
    layout->addWidget(note);
    return page;
}

QWidget* VirtualControlWindow::buildFontTab()
{
    auto* page = new QWidget;
    page->setObjectName("Font");
    auto* layout = new QGridLayout(page);

    check6_ = new QCheckBox("Use custom settings:", page);
    check6_->setObjectName("Check6");
    check6_->setChecked(vfo_.custom == 1);
    layout->addWidget(check6_, 0, 0, 1, 2);

    layout->addWidget(new QLabel("Font:", page), 1, 0);
    fontNames_ = new QComboBox(page);
    fontNames_->setObjectName("fontname");
    QStringList families = QFontDatabase::families();
    if (!families.contains("Terminal")) families.prepend("Terminal");
    fontNames_->addItems(families);
    layout->addWidget(fontNames_, 1, 1);

    layout->addWidget(new QLabel("Size:", page), 2, 0);
    fontSizes_ = new QComboBox(page);
    fontSizes_->setObjectName("fontsize");
    for (int size : LcdLook::kSizes) fontSizes_->addItem(QString::number(size));
    layout->addWidget(fontSizes_, 2, 1);

    check5_ = new QCheckBox("Bold", page);
    check5_->setObjectName("Check5");
    layout->addWidget(check5_, 3, 1);

    auto* colours = new QHBoxLayout;
    const char* captions[3] = {"Text ForeColor", "Text BackColor", "Display Back"};
    for (int i = 0; i < 3; ++i) {
        auto* button = new QPushButton(captions[i], page);
        button->setObjectName("colour");
        button->setProperty("index", i);
        connect(button, &QPushButton::clicked, this, [this, i] { chooseColour(i); });
        colours->addWidget(button);
    }
    layout->addLayout(colours, 4, 0, 1, 3);

    fontSample_ = new QLabel(" 146.5200 NFM ", page);
    fontSample_->setObjectName("sample");
    fontSample_->setAlignment(Qt::AlignCenter);
    fontSample_->setMinimumHeight(48);
    layout->addWidget(fontSample_, 5, 0, 1, 3);

    auto* buttons = new QHBoxLayout;
    auto* apply = new QPushButton("Apply", page);
    apply->setObjectName("apply");
    connect(apply, &QPushButton::clicked, this, &VirtualControlWindow::fontTabApply);
    auto* reset = new QPushButton("Default", page);
    reset->setObjectName("default");
    connect(reset, &QPushButton::clicked, this, &VirtualControlWindow::fontTabDefault);
    buttons->addStretch(1);
    buttons->addWidget(apply);
    buttons->addWidget(reset);
    layout->addLayout(buttons, 6, 0, 1, 3);
    layout->setColumnStretch(2, 1);
    layout->setRowStretch(7, 1);

    // The sample follows the choice before it is applied.
    connect(fontNames_, &QComboBox::currentIndexChanged, this, &VirtualControlWindow::fontTabSample);
    connect(fontSizes_, &QComboBox::currentIndexChanged, this, &VirtualControlWindow::fontTabSample);
    connect(check5_, &QCheckBox::toggled, this, &VirtualControlWindow::fontTabSample);
    return page;
}

void VirtualControlWindow::fontTabFromLook()
{
    pendingLook_ = look_;
    int name = fontNames_->findText(toQt(look_.fontname), Qt::MatchFixedString);
    if (name < 0) {
        fontNames_->addItem(toQt(look_.fontname));
        name = fontNames_->count() - 1;
    }
    fontNames_->setCurrentIndex(name);
    int size = fontSizes_->findText(QString::number(look_.fontsize));
    if (size < 0) {
        fontSizes_->addItem(QString::number(look_.fontsize));
        size = fontSizes_->count() - 1;
    }
    fontSizes_->setCurrentIndex(size);
    check5_->setChecked(look_.fontbold == 1);
    fontTabSample();
}

void VirtualControlWindow::fontTabSample()
{
    // The colours have no control of their own: the sample shows them.
    QFont font(fontNames_->currentText());
    font.setPointSize(std::min(fontSizes_->currentText().toInt(), 18));
    font.setBold(check5_->isChecked());
    fontSample_->setFont(font);
    fontSample_->setStyleSheet(QString("color: %1; background: %2; border: 6px solid %3;")
                                   .arg(LcdLook::colour(pendingLook_.color[0]).name(),
                                        LcdLook::colour(pendingLook_.color[1]).name(),
                                        LcdLook::colour(pendingLook_.color[2]).name()));
}

void VirtualControlWindow::chooseColour(int which)
{
    const QString titles[3] = {"Text ForeColor", "Text BackColor", "Display Back"};
    const QColor chosen = QColorDialog::getColor(LcdLook::colour(pendingLook_.color[which]), this, titles[which]);
    if (!chosen.isValid()) return;
    pendingLook_.color[which] = LcdLook::classic(chosen);
    if (which == 0) pendingLook_.color[3] = pendingLook_.color[0];
    fontTabSample();
}

void VirtualControlWindow::fontTabApply()
{
    pendingLook_.fontname = fromQt(fontNames_->currentText());
    if (pendingLook_.fontname.size() < 4) pendingLook_.fontname = "Terminal";
    pendingLook_.fontsize = std::clamp(fontSizes_->currentText().toInt(), 8, 24);
    pendingLook_.fontbold = check5_->isChecked() ? 1 : 0;
    look_ = pendingLook_;
    applyLook();
}

void VirtualControlWindow::fontTabDefault()
{
    look_ = LcdLook{};
    fontTabFromLook();
    applyLook();
}

QWidget* VirtualControlWindow::buildMiscTab()
{
    auto* page = new QWidget;
    page->setObjectName("Misc.");
    // A size smaller than the rest, so that both halves fit the fixed width.
    QFont small = page->font();
    small.setPointSizeF(small.pointSizeF() - 1);
    page->setFont(small);
    auto* layout = new QHBoxLayout(page);
    layout->setSpacing(6);

    auto* left = new QVBoxLayout;
    const char* captions[3] = {"Active Searchbanks (use double click to toggle):",
                               "Active Scanbanks (use double click to toggle):",
                               "Active Scanlists (use double click to toggle):"};
    for (int f = 0; f < 3; ++f) {
        auto* frame = new QGroupBox(captions[f], page);
        frame->setObjectName("activeframe");
        frame->setProperty("index", f);
        auto* row = new QHBoxLayout(frame);
        row->setSpacing(1);
        for (int i = 0; i < 10; ++i) {
            const int index = 100 + 10 * f + i;
            auto* letter = new ToggleLetter(index, QString(QChar('A' + i)), frame);
            connect(letter, &ToggleLetter::doubleClicked, this, [this, index] { letterToggled(index); });
            row->addWidget(letter);
            linkb1_[index] = letter;
        }
        row->addStretch(1);
        // Shown once the scanner has told which are active.
        frame->hide();
        QSizePolicy keep = frame->sizePolicy();
        keep.setRetainSizeWhenHidden(true);
        frame->setSizePolicy(keep);
        activeFrames_[f] = frame;
        left->addWidget(frame);
    }
    left->addStretch(1);
    layout->addLayout(left);

    auto* trunk = new QGroupBox("Trunk Lists:", page);
    trunk->setObjectName("trunklists");
    auto* grid = new QGridLayout(trunk);
    grid->setSpacing(1);
    grid->setHorizontalSpacing(2);
    for (int bank = 0; bank < 10; ++bank) {
        auto* caption = new QLabel(QString("Bank %1:").arg(bank + 1), trunk);
        caption->setMinimumWidth(caption->sizeHint().width() + 4);
        grid->addWidget(caption, bank, 0);
        for (int i = 0; i < 10; ++i) {
            const int index = bank * 10 + i;
            auto* letter = new ToggleLetter(index, QString(QChar('A' + i)), trunk);
            connect(letter, &ToggleLetter::doubleClicked, this, [this, index] { letterToggled(index); });
            grid->addWidget(letter, bank, i + 1);
            linkb1_[index] = letter;
        }
    }
    trunk->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    layout->addWidget(trunk, 0, Qt::AlignTop);
    return page;
}

void VirtualControlWindow::activeReply(ActiveList list, const std::string& reply)
{
    const std::array<bool, 10> lit = activeFromReply(reply);
    const int first = firstOf(list);
    activeFrames_[(first - 100) / 10]->show();
    for (int i = 0; i < 10; ++i) linkb1_[first + i]->setOn(lit[i]);
}

void VirtualControlWindow::letterToggled(int index)
{
    ToggleLetter* letter = linkb1_[index];
    letter->setOn(!letter->on());
    // The trunk lists only change colour; the three lists go to the scanner,
    // and the next poll of the list confirms them.
    if (index < 100) return;
    const ActiveList list = index < 110 ? ActiveList::SearchBanks : index < 120 ? ActiveList::ScanBanks : ActiveList::IdLists;
    const int first = firstOf(list);
    std::array<bool, 10> lit{};
    for (int i = 0; i < 10; ++i) lit[i] = linkb1_[first + i]->on();
    if (!closed_) loop_->send(activeCommand(list, lit));
}

} // namespace kestra
