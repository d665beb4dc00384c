#include "platform/qt/qtappfolder.h"

#include "platform/profilestore.h"

#include <QCoreApplication>
#include <QFile>
#include <QStandardPaths>

namespace kestra {

AppFolder defaultAppFolder()
{
    if (QCoreApplication::organizationName().isEmpty())
        QCoreApplication::setOrganizationName(QString::fromLatin1(kProfileApplication));
    if (QCoreApplication::applicationName().isEmpty())
        QCoreApplication::setApplicationName(QStringLiteral("kestra"));
    const QString location = QStandardPaths::writableLocation(QStandardPaths::AppDataLocation);
    AppFolder folder(std::filesystem::path(QFile::encodeName(location).toStdString()));
    folder.ensure();
    return folder;
}

} // namespace kestra
