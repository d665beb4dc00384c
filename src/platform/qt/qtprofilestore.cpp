#include "platform/qt/qtprofilestore.h"
#include "platform/qt/qtext.h"

#include "platform/cp1252.h"

#include <QFile>
#include <QStringList>

namespace kestra {

namespace {

QString keyOf(const std::string& section, const std::string& key)
{
    return toQt(section) + QLatin1Char('/') + toQt(key);
}

} // namespace

QtProfileStore::QtProfileStore()
    : settings_(std::make_unique<QSettings>(QSettings::IniFormat, QSettings::UserScope,
                                            QString::fromLatin1(kProfileApplication),
                                            QString::fromLatin1(kProfileApplication)))
{
}

QtProfileStore::QtProfileStore(const std::string& iniPath)
    : settings_(std::make_unique<QSettings>(QFile::decodeName(iniPath.c_str()), QSettings::IniFormat))
{
}

QtProfileStore::~QtProfileStore() = default;

std::string QtProfileStore::get(const std::string& section, const std::string& key,
                                const std::string& defaultValue) const
{
    const QVariant value = settings_->value(keyOf(section, key));
    if (!value.isValid()) return defaultValue;
    // A hand-edited value with an unquoted comma reads back as a list.
    if (value.typeId() == QMetaType::QStringList) return fromQt(value.toStringList().join(QLatin1Char(',')));
    return fromQt(value.toString());
}

void QtProfileStore::set(const std::string& section, const std::string& key, const std::string& value)
{
    settings_->setValue(keyOf(section, key), toQt(value));
    settings_->sync();
}

std::string QtProfileStore::fileName() const
{
    return QFile::encodeName(settings_->fileName()).toStdString();
}

} // namespace kestra
