#pragma once
// A push button with the object name its window gives it (tests and saved
// settings find controls by name), optionally put into a layout.

#include <QBoxLayout>
#include <QPushButton>

namespace kestra {

inline QPushButton* namedButton(const char* caption, const char* name, QWidget* parent, QBoxLayout* into = nullptr)
{
    auto* button = new QPushButton(caption, parent);
    button->setObjectName(name);
    if (into) into->addWidget(button);
    return button;
}

} // namespace kestra
