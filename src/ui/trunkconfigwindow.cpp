#include "ui/trunkconfigwindow.h"
#include "ui/memorymanagerwindow.h"
#include "ui/widgets/keyfilter.h"
#include "ui/widgets/okcancel.h"

#include "core/memtable.h"
#include "platform/qt/qtext.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTabBar>
#include <QVBoxLayout>

#include <algorithm>
#include <optional>

namespace kestra {

namespace {

constexpr TrunkGroup kGroups[] = {TrunkGroup::Motorola, TrunkGroup::BaseConfig, TrunkGroup::Edacs, TrunkGroup::Lt};
constexpr const char* kGroupNames[] = {"motorola", "baseconfig", "edacs", "lt"};

QComboBox* makeList(QWidget* parent, const char* name, const std::vector<std::string>& entries)
{
    auto* list = new QComboBox(parent);
    list->setObjectName(name);
    for (const std::string& entry : entries) list->addItem(toQt(entry));
    list->setCurrentIndex(-1);
    list->setMinimumContentsLength(10);
    return list;
}

QCheckBox* makeCheck(QWidget* parent, const char* name, const char* caption)
{
    auto* check = new QCheckBox(QString::fromUtf8(caption), parent);
    check->setObjectName(name);
    return check;
}

QPushButton* makeAllButton(QWidget* parent, const char* name, const char* tip)
{
    auto* button = new QPushButton("All", parent);
    button->setObjectName(name);
    button->setAutoDefault(false);
    button->setToolTip(QString::fromUtf8(tip));
    return button;
}

QLineEdit* makeBox(QWidget* parent, const char* name, int index, TrunkBox kind, int width)
{
    auto* box = new QLineEdit(parent);
    box->setObjectName(name);
    box->setProperty("index", index);
    box->setMaxLength(12);
    box->setMaximumWidth(width);
    new KeyFilter(box, [kind](char key) { return trunkBoxAccepts(kind, key); }, kind == TrunkBox::FleetBlock);
    return box;
}

void setIndex(QComboBox* list, int index)
{
    if (list) list->setCurrentIndex(index >= 0 && index < list->count() ? index : -1);
}
void setTicked(QCheckBox* check, bool on)
{
    if (check) check->setChecked(on);
}
int indexOf(const QComboBox* list, int otherwise) { return list ? list->currentIndex() : otherwise; }
bool tickedIn(const QCheckBox* check, bool otherwise) { return check ? check->isChecked() : otherwise; }

} // namespace

TrunkConfigWindow::TrunkConfigWindow(MemTable& table, LineOperations* undo, QWidget* parent)
    : QDialog(parent), table_(table), undo_(undo), banks_(table.doc().trunkset),
      bank_(std::clamp(table.doc().currentBank, 0, kChannelBanks - 1)), bc785d_(table.doc().model.bc785d == 1 ? 1 : 0)
{
    setObjectName("trunkconfig");
    setWindowTitle("Trunk Configuration");
    setModal(true);

    auto* typeRow = new QHBoxLayout;
    auto* typeLabel = new QLabel("Trunk Type:", this);
    trunkType_ = new QComboBox(this);
    trunkType_->setObjectName("trunktype");
    for (const char* text : kestra::trunkTypeList()) trunkType_->addItem(QString::fromLatin1(text));
    trunkType_->setMinimumContentsLength(26);
    typeLabel->setBuddy(trunkType_);
    typeRow->addWidget(typeLabel);
    typeRow->addWidget(trunkType_);
    typeRow->addStretch(1);

    tabs_ = new QTabBar(this);
    tabs_->setObjectName("banktabs");
    tabs_->setFocusPolicy(Qt::StrongFocus);
    // All ten tabs in view: no scroll arrows in the way of the keyboard.
    tabs_->setUsesScrollButtons(false);
    for (int b = 0; b < kChannelBanks; ++b) tabs_->addTab(QString("Bank %1").arg(b + 1));
    tabs_->setCurrentIndex(bank_);

    buildGroups();

    clearBank_ = new QPushButton("Clear This Bank", this);
    clearBank_->setObjectName("clearbank");
    clearBank_->setAutoDefault(false);
    copyBanks_ = new QPushButton("Copy/Move/Swap Banks", this);
    copyBanks_->setObjectName("copybanks");
    copyBanks_->setAutoDefault(false);
    const OkCancelRow okCancel = makeOkCancelRow(this, "Close");
    close_ = okCancel.ok;
    cancel_ = okCancel.cancel;
    okCancel.row->insertWidget(0, clearBank_);
    okCancel.row->insertWidget(1, copyBanks_);

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(typeRow);
    layout->addWidget(tabs_);
    for (const TrunkGroupControls& g : groups_) layout->addWidget(g.frame);
    layout->addStretch(1);
    layout->addLayout(okCancel.row);

    connect(trunkType_, &QComboBox::activated, this, &TrunkConfigWindow::chooseType);
    connect(tabs_, &QTabBar::currentChanged, this, [this](int index) {
        if (index != bank_) chooseBank(index);
    });
    connect(clearBank_, &QPushButton::clicked, this, &TrunkConfigWindow::clearThisBank);
    connect(copyBanks_, &QPushButton::clicked, this, &TrunkConfigWindow::copyMoveSwapBanks);
    connect(close_, &QPushButton::clicked, this, &TrunkConfigWindow::accept);
    connect(cancel_, &QPushButton::clicked, this, &TrunkConfigWindow::reject);

    setTypeListFromStore();
    loadBank();
    trunkType_->setFocus();
}

void TrunkConfigWindow::buildGroups()
{
    const auto& delays = trunkDelayEntries(bc785d_);
    for (int i = 0; i < 4; ++i) {
        const TrunkGroup which = kGroups[i];
        TrunkGroupControls& g = groups_[i];
        g.frame = new QGroupBox(QString::fromLatin1(trunkGroupCaption(which)), this);
        g.frame->setObjectName(kGroupNames[i]);
        QWidget* f = g.frame;
        auto* grid = new QGridLayout(f);
        int row = 0;
        // A list with its caption and, where it has one, its All button.
        auto listRow = [&](const char* caption, QComboBox* list, std::optional<AllButton> all = {},
                           const char* allName = nullptr) {
            auto* label = new QLabel(QString::fromUtf8(caption), f);
            label->setBuddy(list);
            grid->addWidget(label, row, 0);
            grid->addWidget(list, row, 1);
            if (all) {
                auto* button = makeAllButton(f, allName, "This value for every bank");
                connect(button, &QPushButton::clicked, this, [this, target = *all] { applyToAll(target); });
                grid->addWidget(button, row, 3);
            }
            ++row;
            return label;
        };

        if (which == TrunkGroup::Motorola) {
            g.controlChannelLabel = new QLabel("Control Channel:", f);
            g.controlChannel = makeList(f, "controlchannel", controlChannelEntries());
            g.controlChannelLabel->setBuddy(g.controlChannel);
            g.controlChannelOnly = makeCheck(f, "controlchannelonly", "Control Channel Only");
            g.controlChannelAll = makeAllButton(f, "controlchannelall", "This control channel setting for every bank");
            connect(g.controlChannelAll, &QPushButton::clicked, this,
                    [this] { applyToAll(AllButton::ControlChannel); });
            grid->addWidget(g.controlChannelLabel, row, 0);
            grid->addWidget(g.controlChannel, row, 1);
            grid->addWidget(g.controlChannelOnly, row, 2);
            grid->addWidget(g.controlChannelAll, row, 3);
            ++row;
        }
        if (which == TrunkGroup::Motorola || which == TrunkGroup::BaseConfig) {
            g.statusBit = makeCheck(f, "statusbit", "Status Bit ON");
            grid->addWidget(g.statusBit, row++, 0, 1, 2);
            g.endCode = makeList(f, "endcode", endCodeEntries());
            listRow("End Code:", g.endCode, AllButton::EndCode, "endcodeall");
        }
        if (which == TrunkGroup::Edacs) {
            g.idFormat = makeList(f, "idformat", idFormatEntries());
            listRow("ID Format:", g.idFormat, AllButton::IdFormat, "idformatall");
        }
        if (which != TrunkGroup::Lt) {
            g.icall = makeList(f, "icall", icallEntries());
            listRow("Icall:", g.icall, AllButton::Icall, "icallall");
        }
        g.delay = makeList(f, "delay", delays);
        listRow("Delay:", g.delay, AllButton::Delay, "delayall");
        g.record = makeCheck(f, "record", "Record");
        grid->addWidget(g.record, row++, 0, 1, 2);
        g.activityId = makeCheck(f, "activityid", "Activity ID");
        grid->addWidget(g.activityId, row++, 0, 1, 2);
        if (which == TrunkGroup::Edacs) {
            g.emergencyAlt = makeCheck(f, "emergencyalt", "Emergency ALT");
            grid->addWidget(g.emergencyAlt, row++, 0, 1, 2);
        }

        if (which == TrunkGroup::Motorola) {
            g.fleetmap = makeList(f, "fleetmap", fleetmapEntries());
            g.fleetmapLabel = listRow("Fleetmap:", g.fleetmap);
            connect(g.fleetmap, &QComboBox::activated, this, &TrunkConfigWindow::fleetmapChosen);
            g.customLabel = new QLabel("Custom:", f);
            g.clearCustom = new QPushButton("clr", f);
            g.clearCustom->setObjectName("clr");
            g.clearCustom->setAutoDefault(false);
            g.clearCustom->setToolTip("Empty the eight blocks");
            connect(g.clearCustom, &QPushButton::clicked, this, [this] {
                for (QLineEdit* box : groups_[0].blocks) box->clear();
            });
            grid->addWidget(g.customLabel, row, 0);
            grid->addWidget(g.clearCustom, row, 3);
            auto* blocks = new QGridLayout;
            for (int n = 0; n < 8; ++n) {
                g.blockLabels[n] = new QLabel(QString("Block %1").arg(n), f);
                g.blocks[n] = makeBox(f, "block", n, TrunkBox::FleetBlock, 48);
                g.blockLabels[n]->setBuddy(g.blocks[n]);
                blocks->addWidget(g.blockLabels[n], (n / 4) * 2, n % 4);
                blocks->addWidget(g.blocks[n], (n / 4) * 2 + 1, n % 4);
            }
            grid->addLayout(blocks, row++, 1, 1, 2);
        }
        if (which == TrunkGroup::BaseConfig) {
            const char* names[3] = {"basefrequency", "basestep", "baseoffset"};
            const TrunkBox kinds[3] = {TrunkBox::Frequency, TrunkBox::Step, TrunkBox::Offset};
            auto* configs = new QGridLayout;
            configs->addWidget(new QLabel("Frequency:", f), 0, 1);
            configs->addWidget(new QLabel("Step:", f), 0, 2);
            configs->addWidget(new QLabel("Offset CH.", f), 0, 3);
            for (int s = 0; s < 3; ++s) {
                configs->addWidget(new QLabel(QString("Base Config %1:").arg(s + 1), f), s + 1, 0);
                for (int item = 0; item < 3; ++item) {
                    g.baseConfigs[s][item] = makeBox(f, names[item], s, kinds[item], item == 0 ? 96 : 64);
                    configs->addWidget(g.baseConfigs[s][item], s + 1, item + 1);
                }
            }
            configs->setColumnStretch(4, 1);
            grid->addLayout(configs, row++, 0, 1, 4);
        }
        grid->setColumnStretch(2, 1);
    }
}

const TrunkGroupControls* TrunkConfigWindow::shownGroup() const
{
    const TrunkGroup which = trunkGroupOf(trunkTypeOf(banks_[bank_]));
    return which == TrunkGroup::None ? nullptr : &groups_[static_cast<int>(which) - 1];
}

void TrunkConfigWindow::arrange()
{
    const TrunkArrangement a = trunkArrangementOf(trunkTypeOf(banks_[bank_]));
    for (int i = 0; i < 4; ++i) groups_[i].frame->setVisible(kGroups[i] == a.group);
    TrunkGroupControls& m = groups_[0];
    m.controlChannelLabel->setVisible(a.controlChannelList);
    m.controlChannel->setVisible(a.controlChannelList);
    m.controlChannelOnly->setVisible(a.controlChannelOnly);
    m.fleetmapLabel->setVisible(a.fleetmap);
    m.fleetmap->setVisible(a.fleetmap);
    for (int n = 0; n < 8; ++n) {
        m.blocks[n]->setVisible(a.fleetmap);
        m.blockLabels[n]->setVisible(a.fleetmap);
    }
    showCustomControls();
}

void TrunkConfigWindow::showCustomControls()
{
    TrunkGroupControls& m = groups_[0];
    const bool custom = trunkArrangementOf(trunkTypeOf(banks_[bank_])).fleetmap &&
                        customFleetmapShown(m.fleetmap->currentIndex());
    m.customLabel->setVisible(custom);
    m.clearCustom->setVisible(custom);
}

void TrunkConfigWindow::showForm(const TrunkForm& form)
{
    const TrunkGroupControls* g = shownGroup();
    if (!g) return;
    setIndex(g->controlChannel, form.controlChannel);
    setTicked(g->controlChannelOnly, form.controlChannelOnly);
    setTicked(g->statusBit, form.statusBit);
    setIndex(g->idFormat, form.idFormat);
    setIndex(g->endCode, form.endCode);
    setIndex(g->icall, form.icall);
    setIndex(g->delay, form.delay);
    setTicked(g->record, form.record);
    setTicked(g->activityId, form.activityId);
    setTicked(g->emergencyAlt, form.emergencyAlt);
    setIndex(g->fleetmap, form.fleetmap);
    for (int n = 0; n < 8; ++n)
        if (g->blocks[n]) g->blocks[n]->setText(toQt(form.fleetBlocks[n]));
    for (int s = 0; s < 3; ++s) {
        if (!g->baseConfigs[s][0]) break;
        const BaseConfigBoxes& c = form.baseConfigs[s];
        g->baseConfigs[s][0]->setText(toQt(c.frequency));
        g->baseConfigs[s][1]->setText(toQt(c.step));
        g->baseConfigs[s][2]->setText(toQt(c.offset));
    }
    showCustomControls();
}

TrunkForm TrunkConfigWindow::formShown() const
{
    TrunkForm form;
    const TrunkGroupControls* g = shownGroup();
    if (!g) return form;
    form.controlChannel = indexOf(g->controlChannel, -1);
    form.controlChannelOnly = tickedIn(g->controlChannelOnly, false);
    form.statusBit = tickedIn(g->statusBit, false);
    form.idFormat = indexOf(g->idFormat, -1);
    form.endCode = indexOf(g->endCode, -1);
    form.icall = indexOf(g->icall, -1);
    form.delay = indexOf(g->delay, -1);
    form.record = tickedIn(g->record, false);
    form.activityId = tickedIn(g->activityId, false);
    form.emergencyAlt = tickedIn(g->emergencyAlt, false);
    form.fleetmap = indexOf(g->fleetmap, -1);
    for (int n = 0; n < 8; ++n)
        if (g->blocks[n]) form.fleetBlocks[n] = fromQt(g->blocks[n]->text());
    for (int s = 0; s < 3; ++s) {
        if (!g->baseConfigs[s][0]) break;
        form.baseConfigs[s] = {fromQt(g->baseConfigs[s][0]->text()), fromQt(g->baseConfigs[s][1]->text()),
                               fromQt(g->baseConfigs[s][2]->text())};
    }
    return form;
}

void TrunkConfigWindow::loadBank() { showForm(loadsettings(banks_[bank_], bc785d_)); }

void TrunkConfigWindow::saveBank()
{
    TrunkForm form = formShown();
    savesettings(banks_[bank_], form);
    showForm(form);
}

void TrunkConfigWindow::setTypeListFromStore()
{
    const int type = trunkTypeOf(banks_[bank_]);
    if (type >= 0) trunkType_->setCurrentIndex(type < kTrunkTypeCount ? type : -1);
    arrange();
}

void TrunkConfigWindow::chooseType(int type)
{
    const TrunkGroup before = trunkGroupOf(trunkTypeOf(banks_[bank_]));
    banks_[bank_].trunktype = std::to_string(type);
    arrange();
    // Within one group the controls keep what was set in them; another group
    // shows the bank's fields as the new type reads them.
    if (trunkGroupOf(type) != before) loadBank();
}

void TrunkConfigWindow::chooseBank(int index)
{
    if (index < 0 || index >= kChannelBanks || index == bank_) return;
    if (trunkTypeOf(banks_[index]) < 0) {
        tabs_->setCurrentIndex(bank_);
        return;
    }
    saveBank();
    bank_ = index;
    tabs_->setCurrentIndex(bank_);
    setTypeListFromStore();
    loadBank();
}

void TrunkConfigWindow::fleetmapChosen(int entry)
{
    TrunkForm form = formShown();
    chooseFleetmap(form, entry);
    showForm(form);
}

void TrunkConfigWindow::clearThisBank()
{
    clearTrunkBank(banks_[bank_]);
    loadBank();
}

void TrunkConfigWindow::applyToAll(AllButton button)
{
    applyToAllBanks(banks_, button, trunkTypeOf(banks_[bank_]), formShown());
}

void TrunkConfigWindow::copyMoveSwapBanks()
{
    // The Memory Manager works on the document: it gets what this window has.
    saveBank();
    commit();
    MemoryManagerWindow manager(table_, undo_, MemoryManagerWindow::Mode::Trunk, this);
    manager.presetBanks(bank_);
    manager.exec();
    if (manager.changed()) banksMoved_ = true;
    banks_ = table_.doc().trunkset;
    setTypeListFromStore();
    loadBank();
}

void TrunkConfigWindow::commit()
{
    Document& doc = table_.doc();
    if (doc.trunkset == banks_) return;
    doc.trunkset = banks_;
    table_.markDirty();
}

void TrunkConfigWindow::accept()
{
    saveBank();
    commit();
    QDialog::accept();
}

} // namespace kestra
