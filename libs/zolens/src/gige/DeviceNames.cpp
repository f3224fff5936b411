#include "DeviceNames.h"

namespace zolens {

QString plainText(const char* text, int length)
{
    QString result = QString::fromUtf8(text, length);
    for (QChar& character : result) {
        if (!character.isPrint() && !character.isSurrogate())
            character = QLatin1Char(' ');
    }
    return result.simplified();
}

QString plainText(const char* text)
{
    return plainText(text, int(qstrlen(text)));
}

QString deviceName(const QString& vendor, const QString& model, const QString& kind)
{
    if (model.startsWith(vendor, Qt::CaseInsensitive) && !model.isEmpty())
        return model;
    const QString name = QStringLiteral("%1 %2").arg(vendor, model).trimmed();
    return name.isEmpty() ? kind : name;
}

} // namespace zolens
