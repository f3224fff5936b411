#include "zocore/ZoI18n.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QLibraryInfo>
#include <QSettings>
#include <QStandardPaths>
#include <QTranslator>

namespace {

const QLatin1String LanguageKey("i18n/language");
const QLatin1String SystemLanguage("default");
const QLatin1String Suffix(".qm");

/// The language of messages, which may differ from the one of numbers and dates.
QLocale systemLocale()
{
    const QStringList languages = QLocale::system().uiLanguages();
    return languages.isEmpty() ? QLocale::system() : QLocale(languages.first());
}

QLocale storedLocale()
{
    const QString stored = QSettings().value(LanguageKey, SystemLanguage).toString();
    const QLocale locale(stored);
    return stored == SystemLanguage || locale.language() == QLocale::C ? systemLocale() : locale;
}

/// Chinese is written in two ways; the country alone does not tell which catalogue can be read.
QString chineseName(const QLocale& locale)
{
    return locale.script() == QLocale::TraditionalChineseScript ? QStringLiteral("zh_TW")
                                                                : QStringLiteral("zh_CN");
}

/// The files of `directory` that fit the locale, the closest first.
QStringList fittingFiles(const QDir& directory, const QString& prefix, const QLocale& locale)
{
    const QString name = locale.name();
    const QString language = name.section(QLatin1Char('_'), 0, 0);
    QStringList files{prefix + name + Suffix};
    if (locale.language() == QLocale::Chinese)
        files += prefix + chineseName(locale) + Suffix;
    files += prefix + language + Suffix;
    files += directory.entryList({prefix + language + QStringLiteral("_*") + Suffix}, QDir::Files,
                                 QDir::Name);
    return files;
}

/// Where a directory may lie, in the order in which it is looked for.
QStringList places(const QString& directory)
{
    if (QDir::isAbsolutePath(directory))
        return {directory};
    const QString own =
        QCoreApplication::applicationName().toLower() + QLatin1Char('/') + directory;
    const QDir program(QCoreApplication::applicationDirPath());
    QStringList found{program.filePath(directory),
                      program.filePath(QStringLiteral("../share/") + own)};
    found += QStandardPaths::locateAll(QStandardPaths::GenericDataLocation, own,
                                       QStandardPaths::LocateDirectory);
    found += QLibraryInfo::location(QLibraryInfo::TranslationsPath);
    return found;
}

bool load(QTranslator& translator, const QDir& directory, const QStringList& files)
{
    for (const QString& file : files) {
        const QString path = directory.filePath(file);
        if (QFile::exists(path) && translator.load(path))
            return true;
    }
    return false;
}

} // namespace

ZoI18n::ZoI18n() : language(storedLocale().name()) {}

QLocale ZoI18n::locale() const
{
    return QLocale(language);
}

bool ZoI18n::translate(QTranslator* translator, const QString& prefix,
                       const QString& directory) const
{
    if (!translator || locale().language() == QLocale::C)
        return false;
    const QStringList directories = places(directory);
    for (const QString& place : directories) {
        const QDir there(place);
        if (load(*translator, there, fittingFiles(there, prefix, locale())))
            return QCoreApplication::installTranslator(translator);
    }
    return false;
}

bool ZoI18n::translateQt(QTranslator* translator, const QString& directory) const
{
    return translate(translator, QStringLiteral("qt_"), directory);
}

bool ZoI18n::translateApp(QTranslator* translator, const QString& directory) const
{
    return translate(translator, QString(), directory);
}
