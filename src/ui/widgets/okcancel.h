#pragma once
// The Ok and Cancel buttons of the program's settings windows ("Command1" and
// "Command2"), right-aligned on a row of their own; Ok is the default button.

#include <QHBoxLayout>
#include <QPushButton>
#include <QWidget>

namespace kestra {

struct OkCancelRow {
    QPushButton* ok;
    QPushButton* cancel;
    QHBoxLayout* row;
};

inline OkCancelRow makeOkCancelRow(QWidget* parent, const char* okText)
{
    auto* ok = new QPushButton(okText, parent);
    ok->setObjectName("Command1");
    ok->setDefault(true);
    auto* cancel = new QPushButton("Cancel", parent);
    cancel->setObjectName("Command2");
    auto* row = new QHBoxLayout;
    row->addStretch(1);
    row->addWidget(ok);
    row->addWidget(cancel);
    return {ok, cancel, row};
}

} // namespace kestra
