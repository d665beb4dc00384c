#pragma once
// Two radio buttons of one control array in a frame of their own, tied to a
// 0/1 setting: the setting chooses the checked button and follows every
// change. The buttons carry the array's name and their index (property
// "index").

#include <QButtonGroup>
#include <QGroupBox>
#include <QRadioButton>
#include <QVBoxLayout>

#include <array>

namespace kestra {

inline QGroupBox* makeRadioPair(QWidget* parent, const char* name, const char* first, const char* second,
                                int& setting, std::array<QRadioButton*, 2>& buttons)
{
    auto* frame = new QGroupBox(parent);
    auto* layout = new QVBoxLayout(frame);
    auto* group = new QButtonGroup(frame);
    const char* captions[2] = {first, second};
    for (int i = 0; i < 2; ++i) {
        auto* button = new QRadioButton(QString::fromUtf8(captions[i]), frame);
        button->setObjectName(name);
        button->setProperty("index", i);
        group->addButton(button, i);
        layout->addWidget(button);
        buttons[i] = button;
    }
    buttons[setting == 1 ? 1 : 0]->setChecked(true);
    QObject::connect(group, &QButtonGroup::idToggled, frame, [&setting](int id, bool on) {
        if (on) setting = id;
    });
    return frame;
}

} // namespace kestra
