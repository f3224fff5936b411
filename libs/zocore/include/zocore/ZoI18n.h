#pragma once

#include <QLocale>
#include <QString>

class QTranslator;

/// Finds the translation catalogues that fit the user's language, loads them into translators and
/// installs these on the application. The language is the stored setting "i18n/language", where
/// "default" means the system's own. A plain value, used while the program starts.
class ZoI18n
{
public:
    /// Reads the language from the default settings store.
    ZoI18n();

    /// The locale whose catalogues are looked for.
    QLocale locale() const;

    /// Loads the catalogue `prefix` + language from `directory` and installs it. A relative
    /// directory is looked for beside the program, in its share directories and in Qt's own
    /// translations directory. False when no catalogue fits, which leaves the source texts.
    bool translate(QTranslator* translator, const QString& prefix, const QString& directory) const;

    /// The same for Qt's own catalogue, "qt_" + language.
    bool translateQt(QTranslator* translator, const QString& directory) const;

    /// The same for the application's catalogue, whose name is the language alone ("de_DE.qm").
    bool translateApp(QTranslator* translator, const QString& directory) const;

private:
    QString language;
};
