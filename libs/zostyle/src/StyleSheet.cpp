#include "StyleSheet.h"

#include "Colours.h"

#include <QDebug>
#include <QFile>
#include <QRegularExpression>

#include <algorithm>

namespace zostyle {

namespace {

QString colourText(const QString& name)
{
    const auto found = std::find_if(Colours.begin(), Colours.end(),
                                    [&name](const Colour& each) { return each.name == name; });
    if (found != Colours.end())
        return QColor(found->rgb).name();
    qWarning() << "Style sheet: no colour is called" << name;
    return QStringLiteral("transparent");
}

} // namespace

QString withColours(const QString& sheet)
{
    static const QRegularExpression placeholder(QStringLiteral("@([A-Za-z][A-Za-z0-9-]*)"));
    QString filled;
    int end = 0;
    auto matches = placeholder.globalMatch(sheet);
    while (matches.hasNext()) {
        const QRegularExpressionMatch match = matches.next();
        filled += sheet.midRef(end, match.capturedStart() - end);
        filled += colourText(match.captured(1));
        end = match.capturedEnd();
    }
    filled += sheet.midRef(end);
    return filled;
}

QString loadStyleSheet(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return {};
    return withColours(QString::fromUtf8(file.readAll()));
}

} // namespace zostyle
