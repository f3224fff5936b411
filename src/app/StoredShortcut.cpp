#include "app/StoredShortcut.h"

#include <QSettings>
#include <QVariant>

QKeySequence storedShortcut(const QString& key, const QString& defaultText)
{
    const QVariant value = QSettings().value(key, defaultText);
    if (value.userType() == QMetaType::QKeySequence)
        return value.value<QKeySequence>();
    return QKeySequence::fromString(value.toString(), QKeySequence::PortableText);
}
