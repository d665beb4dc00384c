#include "ui/listtagwindow.h"

#include "platform/qt/qtext.h"
#include "trunk/idlistedit.h"
#include "trunk/trunkids.h"
#include "ui/widgets/keyfilter.h"
#include "ui/widgets/okcancel.h"

#include <QFontDatabase>
#include <QFontInfo>
#include <QFontMetrics>
#include <QHBoxLayout>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include <functional>

namespace kestra {

ListTagWindow::ListTagWindow(Document& doc, int bank, QWidget* parent)
    : QDialog(parent), doc_(doc), bank_(bank)
{
    setObjectName("listtags");
    setWindowTitle(toQt("Scan List Tags - Bank " + std::to_string(bank + 1)));
    setModal(true);

    QFont fixed("Courier New");
    fixed.setStyleHint(QFont::TypeWriter);
    if (!QFontInfo(fixed).fixedPitch()) fixed = QFontDatabase::systemFont(QFontDatabase::FixedFont);

    auto* grid = new QGridLayout;
    grid->addWidget(new QLabel("List No.", this), 0, 0);
    for (int l = 0; l < kIdLists; ++l) {
        auto* box = new QLineEdit(this);
        box->setObjectName("Text1");
        box->setProperty("index", l);
        box->setFont(fixed);
        box->setMaxLength(static_cast<int>(kIdTagLength));
        box->setMinimumWidth(QFontMetrics(fixed).horizontalAdvance(QString(18, 'M')));
        new KeyFilter(box, &listTagKeyAccepted);
        auto* label = new QLabel(QString::number(l + 1), this);
        label->setBuddy(box);
        grid->addWidget(label, l + 1, 0);
        grid->addWidget(box, l + 1, 1);
        boxes_[l] = box;
    }

    auto* tools = new QVBoxLayout;
    auto addTool = [this, tools](const char* name, const char* caption, std::function<void()> work) {
        auto* b = new QPushButton(caption, this);
        b->setObjectName(name);
        b->setAutoDefault(false);
        connect(b, &QPushButton::clicked, this, std::move(work));
        tools->addWidget(b);
    };
    auto eachBox = [this](const std::function<std::string(int, const std::string&)>& f) {
        for (int l = 0; l < kIdLists; ++l) boxes_[l]->setText(toQt(f(l, fromQt(boxes_[l]->text()))));
    };
    addTool("clearall", "Clear All", [eachBox] { eachBox([](int, const std::string&) { return std::string(); }); });
    addTool("defaults", "Default", [this, eachBox] {
        eachBox([this](int l, const std::string&) { return defaultListTag(bank_, l + 1); });
    });
    addTool("alignleft", "Left", [eachBox] { eachBox([](int, const std::string& t) { return leftTag(t); }); });
    addTool("center", "Center", [eachBox] { eachBox([](int, const std::string& t) { return centerTag(t); }); });
    addTool("defaultall", "Default All Banks", [this] {
        defaultListTagsAllBanks(doc_);
        showStored();
    });
    tools->addStretch(1);

    const OkCancelRow okCancel = makeOkCancelRow(this, "Ok");
    ok_ = okCancel.ok;
    cancel_ = okCancel.cancel;
    auto* body = new QHBoxLayout;
    body->addLayout(grid, 1);
    body->addLayout(tools);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(body);
    layout->addLayout(okCancel.row);
    connect(ok_, &QPushButton::clicked, this, &ListTagWindow::accept);
    connect(cancel_, &QPushButton::clicked, this, &ListTagWindow::reject);

    showStored();
}

QPushButton* ListTagWindow::button(const char* name) const { return findChild<QPushButton*>(name); }

void ListTagWindow::showStored()
{
    for (int l = 0; l < kIdLists; ++l) boxes_[l]->setText(toQt(doc_.trunklisttags[bank_][l]));
}

void ListTagWindow::accept()
{
    for (int l = 0; l < kIdLists; ++l) doc_.trunklisttags[bank_][l] = fromQt(boxes_[l]->text());
    QDialog::accept();
}

} // namespace kestra
