#include "ui/searchextenderwindow.h"

#include "platform/unboundport.h"
#include "search/searchranges.h"
#include "ui/widgets/extendergrid.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace kestra {

SearchExtenderWindow::SearchExtenderWindow(Services services, Link link, QWidget* parent)
    : QDialog(parent), services_(std::move(services)), port_(std::move(link.port))
{
    setObjectName("sextend");
    setWindowTitle("Search Range Extender");
    setModal(true);
    if (!port_) port_ = std::make_unique<UnboundPort>();
    link_ = std::make_unique<SearchLink>(*port_, services_.scheduler, services_.dialogs, services_.settings,
                                         link.comport, link.baud);

    grid_ = new ExtenderGrid(this);
    grid_->setPresets(extenderPresets(services_.presets));
    grid_->onChosen = [this](const SearchPreset& preset) { choose(preset); };

    auto* controls = new QGroupBox("Scanner Controls:", this);
    auto* keys = new QGridLayout(controls);
    struct Key {
        const char* name;
        const char* caption;
        const char* command;
    };
    static constexpr Key kKeys[] = {
        {"Command2", "SRCH", "KEY09"}, {"Command3", "UP", "KEY07H"},   {"Command4", "DOWN", "KEY08H"},
        {"Command5", "HOLD", "KEY07"}, {"Command1", "LockOut", "KEY06"}, {"Command6", "Clear All Lockout", "KEY06H"},
    };
    int n = 0;
    for (const Key& k : kKeys) {
        auto* b = new QPushButton(k.caption, controls);
        b->setObjectName(k.name);
        b->setAutoDefault(false);
        const std::string command = k.command;
        connect(b, &QPushButton::clicked, this, [this, command] { link_->command(command); });
        keys->addWidget(b, n / 3, n % 3);
        ++n;
    }

    auto* note = new QLabel("Use double click to select search range. Bank 10 is used for extended search. Extended "
                            "Search ranges are stored in search.txt file.",
                            this);
    note->setWordWrap(true);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(grid_, 1);
    layout->addWidget(note);
    layout->addWidget(controls);
    resize(8000 / 15, 6000 / 15);
}

SearchExtenderWindow::~SearchExtenderWindow() { link_->close(); }

QPushButton* SearchExtenderWindow::button(const char* name) const { return findChild<QPushButton*>(name); }

void SearchExtenderWindow::showEvent(QShowEvent* event)
{
    QDialog::showEvent(event);
    if (!loaded_) formLoad();
}

void SearchExtenderWindow::formLoad()
{
    if (loaded_) return;
    loaded_ = true;
    if (link_->open()) link_->wakeForExtender();
}

void SearchExtenderWindow::choose(const SearchPreset& preset)
{
    services_.scheduler.wait(link_->delay());
    link_->command("KEY01");
    for (const std::string& line : extenderCommands(preset.start, preset.end, preset.mode, preset.step, preset.tag))
        link_->command(line);
}

} // namespace kestra
