#include "platform/qt/qtdialogs.h"
#include "platform/qt/qtext.h"

#include "platform/cp1252.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QGridLayout>
#include <QSpacerItem>
#include <QMessageBox>
#include <QRegularExpression>
#include <QStringList>

#include <vector>

namespace kestra {

namespace {

std::optional<std::string> chosenPath(const QString& path)
{
    if (path.isEmpty()) return std::nullopt;
    return QFile::encodeName(path).toStdString();
}

QString startPath(const FileChoice& choice)
{
    const QString folder = QFile::decodeName(choice.folder.c_str());
    const QString name = QFile::decodeName(choice.name.c_str());
    if (name.isEmpty()) return folder;
    if (folder.isEmpty()) return name;
    return QDir(folder).filePath(name);
}

// The buttons of a box, first one first (it is the default button).
std::vector<QMessageBox::StandardButton> buttonsOf(Buttons buttons)
{
    switch (buttons) {
    case Buttons::Ok:
        return {QMessageBox::Ok};
    case Buttons::OkCancel:
        return {QMessageBox::Ok, QMessageBox::Cancel};
    case Buttons::YesNo:
        return {QMessageBox::Yes, QMessageBox::No};
    case Buttons::YesNoCancel:
        return {QMessageBox::Yes, QMessageBox::No, QMessageBox::Cancel};
    case Buttons::RetryCancel:
        return {QMessageBox::Retry, QMessageBox::Cancel};
    case Buttons::AbortRetryIgnore:
        return {QMessageBox::Abort, QMessageBox::Retry, QMessageBox::Ignore};
    }
    return {QMessageBox::Ok};
}

QMessageBox::Icon iconOf(Icon icon)
{
    switch (icon) {
    case Icon::None:
        return QMessageBox::NoIcon;
    case Icon::Information:
        return QMessageBox::Information;
    case Icon::Exclamation:
        return QMessageBox::Warning;
    case Icon::Critical:
        return QMessageBox::Critical;
    case Icon::Question:
        return QMessageBox::Question;
    }
    return QMessageBox::NoIcon;
}

std::optional<Answer> answerOf(QMessageBox::StandardButton button)
{
    switch (button) {
    case QMessageBox::Ok:
        return Answer::Ok;
    case QMessageBox::Cancel:
        return Answer::Cancel;
    case QMessageBox::Yes:
        return Answer::Yes;
    case QMessageBox::No:
        return Answer::No;
    case QMessageBox::Retry:
        return Answer::Retry;
    case QMessageBox::Abort:
        return Answer::Abort;
    case QMessageBox::Ignore:
        return Answer::Ignore;
    default:
        return std::nullopt;
    }
}

// What a box answers when it was closed without a button: its Cancel, else
// its last button ("No" of Yes/No, "Ignore" of Abort/Retry/Ignore).
Answer dismissedAnswer(Buttons buttons)
{
    switch (buttons) {
    case Buttons::Ok:
        return Answer::Ok;
    case Buttons::YesNo:
        return Answer::No;
    case Buttons::AbortRetryIgnore:
        return Answer::Ignore;
    default:
        return Answer::Cancel;
    }
}

QStringList patternsOf(const QString& patterns)
{
    QStringList result;
    const auto add = [&](const QString& pattern) {
        if (!pattern.isEmpty() && !result.contains(pattern)) result << pattern;
    };
    for (QString pattern : patterns.split(QRegularExpression(QStringLiteral("[;\\s]+")), Qt::SkipEmptyParts)) {
        if (pattern == QLatin1String("*.*")) pattern = QStringLiteral("*");
        add(pattern);
        add(pattern.toLower());
        add(pattern.toUpper());
    }
    return result;
}

} // namespace

QString qtFileFilter(const std::string& filter)
{
    if (filter.empty()) return {};
    const QStringList parts = toQt(filter).split(QLatin1Char('|'));
    QStringList entries;
    for (qsizetype i = 0; i < parts.size(); i += 2) {
        QString description = parts[i].trimmed();
        QStringList patterns;
        if (i + 1 < parts.size()) {
            patterns = patternsOf(parts[i + 1]);
        } else if (description.contains(QLatin1Char('*')) || description.contains(QLatin1Char('?'))) {
            // A lone pattern without description.
            patterns = patternsOf(description);
            description.clear();
        }
        if (patterns.isEmpty()) continue;
        // "MEM files (*.mem)" carries its pattern already; Qt reads the last
        // parenthesised part as the patterns, so it is replaced by ours.
        if (description.endsWith(QLatin1Char(')'))) {
            const qsizetype open = description.lastIndexOf(QLatin1Char('('));
            if (open >= 0) description = description.left(open).trimmed();
        }
        const QString list = patterns.join(QLatin1Char(' '));
        entries << (description.isEmpty() ? list : description) + QStringLiteral(" (") + list + QLatin1Char(')');
    }
    return entries.join(QStringLiteral(";;"));
}

Answer QtDialogs::message(const std::string& text, const std::string& title, Buttons buttons, Icon icon)
{
    const std::vector<QMessageBox::StandardButton> standard = buttonsOf(buttons);
    QMessageBox::StandardButtons set;
    for (const auto button : standard) set |= button;

    QMessageBox box(iconOf(icon), toQt(title.empty() ? std::string(kApplicationTitle) : title), toQt(text), set,
                    parent_);
    box.setTextFormat(Qt::PlainText);
    box.setDefaultButton(standard.front());
    // The window manager cuts a caption wider than its window: a short message
    // under a long caption gets a box wide enough for the caption (in the bold
    // face title bars use) and for the title bar's icon and buttons.
    if (auto* grid = qobject_cast<QGridLayout*>(box.layout())) {
        QFont bold = box.font();
        bold.setBold(true);
        const QFontMetrics metrics(bold);
        const int width = metrics.horizontalAdvance(box.windowTitle()) + 6 * metrics.height();
        grid->addItem(new QSpacerItem(width, 0, QSizePolicy::Minimum, QSizePolicy::Fixed), grid->rowCount(), 0, 1,
                      grid->columnCount());
    }
    box.exec();
    return answerOf(box.standardButton(box.clickedButton())).value_or(dismissedAnswer(buttons));
}

void QtDialogs::beep()
{
    QApplication::beep();
}

std::optional<std::string> QtDialogs::openFile(const FileChoice& choice)
{
    return chosenPath(
        QFileDialog::getOpenFileName(parent_, toQt(choice.title), startPath(choice), qtFileFilter(choice.filter)));
}

std::optional<std::string> QtDialogs::saveFile(const FileChoice& choice)
{
    return chosenPath(
        QFileDialog::getSaveFileName(parent_, toQt(choice.title), startPath(choice), qtFileFilter(choice.filter)));
}

std::optional<std::string> QtDialogs::chooseFolder(const std::string& prompt, const std::string& start)
{
    return chosenPath(QFileDialog::getExistingDirectory(parent_, toQt(prompt), QFile::decodeName(start.c_str())));
}

} // namespace kestra
