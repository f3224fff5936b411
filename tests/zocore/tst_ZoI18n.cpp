#include <zocore/ZoI18n.h>

#include <QDir>
#include <QLibraryInfo>
#include <QProcess>
#include <QResource>
#include <QSettings>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>
#include <QTranslator>

#include <memory>

namespace {

const QString LanguageKey = QStringLiteral("i18n/language");

/// What the probe tells of a run of its own.
struct Answer
{
    QString locale;
    bool found = false;
    QString text;
};

QString hello()
{
    return QCoreApplication::translate("Greeting", "Hello");
}

} // namespace

class tst_ZoI18n : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void takesTheCatalogueOfTheStoredLanguage();
    void fallsBackFromCountryToLanguageToAnyCountry_data();
    void fallsBackFromCountryToLanguageToAnyCountry();
    void prefersTheClosestCatalogue();
    void readsEachKindByItsPrefix();
    void leavesSourceTextWithoutACatalogue();
    void passesOverADamagedCatalogue();
    void readsCataloguesOfResources();
    void findsQtsOwnCataloguesByARelativeDirectory();
    void prefersTheDirectoryBesideTheProgram();
    void findsTheShareDirectoryOfTheProgram();
    void followsTheSystem_data();
    void followsTheSystem();
    void storedLanguageWinsOverTheSystem();

private:
    void addCatalogue(const QString& name, const QString& text);
    void addCatalogue(const QString& directory, const QString& name, const QString& text);
    Answer probe(const QProcessEnvironment& environment, const QString& directory) const;

    std::unique_ptr<QTemporaryDir> directory;
    std::unique_ptr<QTranslator> translator;
};

void tst_ZoI18n::initTestCase()
{
    QCoreApplication::setApplicationName(QStringLiteral("Probe"));
    QCoreApplication::setOrganizationName(QStringLiteral("Probe"));
}

void tst_ZoI18n::init()
{
    directory = std::make_unique<QTemporaryDir>();
    translator = std::make_unique<QTranslator>();
    QSettings().clear();
}

void tst_ZoI18n::cleanup()
{
    translator.reset();
}

void tst_ZoI18n::addCatalogue(const QString& name, const QString& text)
{
    addCatalogue(directory->path(), name, text);
}

void tst_ZoI18n::addCatalogue(const QString& place, const QString& name, const QString& text)
{
    QVERIFY(QDir().mkpath(place));
    const QString source = directory->filePath(QStringLiteral("source.ts"));
    QFile file(source);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(
        "<?xml version=\"1.0\" encoding=\"utf-8\"?><!DOCTYPE TS><TS version=\"2.1\"><context>"
        "<name>Greeting</name><message><source>Hello</source><translation>" +
        text.toUtf8() + "</translation></message></context></TS>");
    file.close();
    const QString target = place + QLatin1Char('/') + name + QStringLiteral(".qm");
    QCOMPARE(QProcess::execute(QStringLiteral(LRELEASE_PROGRAM),
                               {QStringLiteral("-silent"), source, QStringLiteral("-qm"), target}),
             0);
}

Answer tst_ZoI18n::probe(const QProcessEnvironment& environment, const QString& place) const
{
    QProcess process;
    process.setProcessEnvironment(environment);
    process.start(QStringLiteral(PROBE_PROGRAM), {QStringLiteral("app_"), place});
    process.waitForFinished();
    const QStringList lines =
        QString::fromUtf8(process.readAllStandardOutput()).split(QLatin1Char('\n'));
    if (lines.size() < 3)
        return {};
    return {lines.at(0), lines.at(1) == QLatin1String("found"), lines.at(2)};
}

void tst_ZoI18n::takesTheCatalogueOfTheStoredLanguage()
{
    addCatalogue(QStringLiteral("fr_FR"), QStringLiteral("Bonjour"));
    QSettings().setValue(LanguageKey, QStringLiteral("fr_FR"));
    const ZoI18n i18n;
    QCOMPARE(i18n.locale(), QLocale(QLocale::French, QLocale::France));
    QVERIFY(i18n.translateApp(translator.get(), directory->path()));
    QCOMPARE(hello(), QStringLiteral("Bonjour"));
}

void tst_ZoI18n::fallsBackFromCountryToLanguageToAnyCountry_data()
{
    QTest::addColumn<QString>("language");
    QTest::addColumn<QString>("catalogue");
    QTest::newRow("exact") << "de_AT"
                           << "de_AT";
    QTest::newRow("language alone") << "de_AT"
                                    << "de";
    QTest::newRow("another country") << "de_AT"
                                     << "de_DE";
    QTest::newRow("Hong Kong") << "zh_HK"
                               << "zh_TW";
    QTest::newRow("Macao") << "zh_MO"
                           << "zh_TW";
    QTest::newRow("Singapore") << "zh_SG"
                               << "zh_CN";
    QTest::newRow("Chinese alone") << "zh"
                                   << "zh_CN";
    QTest::newRow("dash") << "pt-BR"
                          << "pt_BR";
    QTest::newRow("three letters") << "fil_PH"
                                   << "fil_PH";
}

void tst_ZoI18n::fallsBackFromCountryToLanguageToAnyCountry()
{
    QFETCH(QString, language);
    QFETCH(QString, catalogue);
    addCatalogue(catalogue, QStringLiteral("right"));
    const bool chinese = language.startsWith(QLatin1String("zh"));
    addCatalogue(QStringLiteral("ja_JP"), QStringLiteral("wrong"));
    if (chinese)
        addCatalogue(catalogue == QLatin1String("zh_CN") ? QStringLiteral("zh_TW")
                                                         : QStringLiteral("zh_CN"),
                     QStringLiteral("wrong"));
    QSettings().setValue(LanguageKey, language);
    QVERIFY(ZoI18n().translateApp(translator.get(), directory->path()));
    QCOMPARE(hello(), QStringLiteral("right"));
}

void tst_ZoI18n::prefersTheClosestCatalogue()
{
    QSettings().setValue(LanguageKey, QStringLiteral("de_AT"));
    addCatalogue(QStringLiteral("de_DE"), QStringLiteral("any"));
    addCatalogue(QStringLiteral("de"), QStringLiteral("language"));
    QVERIFY(ZoI18n().translateApp(translator.get(), directory->path()));
    QCOMPARE(hello(), QStringLiteral("language"));

    addCatalogue(QStringLiteral("de_AT"), QStringLiteral("exact"));
    translator = std::make_unique<QTranslator>();
    QVERIFY(ZoI18n().translateApp(translator.get(), directory->path()));
    QCOMPARE(hello(), QStringLiteral("exact"));
}

void tst_ZoI18n::readsEachKindByItsPrefix()
{
    addCatalogue(QStringLiteral("zowidgets_de"), QStringLiteral("widgets"));
    addCatalogue(QStringLiteral("qt_de"), QStringLiteral("qt"));
    addCatalogue(QStringLiteral("de_DE"), QStringLiteral("application"));
    QSettings().setValue(LanguageKey, QStringLiteral("de_DE"));
    const ZoI18n i18n;
    QVERIFY(i18n.translate(translator.get(), QStringLiteral("zowidgets_"), directory->path()));
    QCOMPARE(hello(), QStringLiteral("widgets"));

    QTranslator qt;
    QVERIFY(i18n.translateQt(&qt, directory->path()));
    QCOMPARE(hello(), QStringLiteral("qt"));

    QTranslator application;
    QVERIFY(i18n.translateApp(&application, directory->path()));
    QCOMPARE(hello(), QStringLiteral("application"));
}

void tst_ZoI18n::leavesSourceTextWithoutACatalogue()
{
    addCatalogue(QStringLiteral("de_DE"), QStringLiteral("Hallo"));
    for (const char* language : {"en_US", "fr_FR"}) {
        QSettings().setValue(LanguageKey, QString::fromLatin1(language));
        QVERIFY(!ZoI18n().translateApp(translator.get(), directory->path()));
        QCOMPARE(hello(), QStringLiteral("Hello"));
    }
    QSettings().setValue(LanguageKey, QStringLiteral("de_DE"));
    QVERIFY(!ZoI18n().translateApp(translator.get(), directory->filePath(QStringLiteral("no"))));
    QVERIFY(!ZoI18n().translateApp(nullptr, directory->path()));
}

void tst_ZoI18n::passesOverADamagedCatalogue()
{
    QFile damaged(directory->filePath(QStringLiteral("de_AT.qm")));
    QVERIFY(damaged.open(QIODevice::WriteOnly));
    damaged.write("this is no catalogue");
    damaged.close();
    QSettings().setValue(LanguageKey, QStringLiteral("de_AT"));
    QVERIFY(!ZoI18n().translateApp(translator.get(), directory->path()));

    addCatalogue(QStringLiteral("de_DE"), QStringLiteral("Hallo"));
    QVERIFY(ZoI18n().translateApp(translator.get(), directory->path()));
    QCOMPARE(hello(), QStringLiteral("Hallo"));
}

void tst_ZoI18n::readsCataloguesOfResources()
{
    addCatalogue(QStringLiteral("de_DE"), QStringLiteral("Hallo"));
    QFile description(directory->filePath(QStringLiteral("i18n.qrc")));
    QVERIFY(description.open(QIODevice::WriteOnly));
    description.write("<RCC><qresource prefix=\"/i18n\"><file>de_DE.qm</file></qresource></RCC>");
    description.close();
    const QString compiled = directory->filePath(QStringLiteral("i18n.rcc"));
    QCOMPARE(QProcess::execute(QStringLiteral(RCC_PROGRAM),
                               {QStringLiteral("-binary"), description.fileName(),
                                QStringLiteral("-o"), compiled}),
             0);
    QVERIFY(QResource::registerResource(compiled));
    QSettings().setValue(LanguageKey, QStringLiteral("de_AT"));
    QVERIFY(ZoI18n().translateApp(translator.get(), QStringLiteral(":/i18n")));
    QCOMPARE(hello(), QStringLiteral("Hallo"));
    translator.reset();
    QVERIFY(QResource::unregisterResource(compiled));
}

void tst_ZoI18n::findsQtsOwnCataloguesByARelativeDirectory()
{
    const QDir qtDirectory(QLibraryInfo::location(QLibraryInfo::TranslationsPath));
    QVERIFY2(qtDirectory.exists(QStringLiteral("qtbase_de.qm")), "a package is missing");
    QSettings().setValue(LanguageKey, QStringLiteral("de_DE"));
    const QString translations = QStringLiteral("translations");
    QVERIFY(ZoI18n().translate(translator.get(), QStringLiteral("qtbase_"), translations));
    QCOMPARE(QCoreApplication::translate("QPlatformTheme", "Cancel"), QStringLiteral("Abbrechen"));
}

void tst_ZoI18n::prefersTheDirectoryBesideTheProgram()
{
    const QString name = QStringLiteral("beside-") + QString::number(qApp->applicationPid());
    QDir program(QCoreApplication::applicationDirPath());
    addCatalogue(program.filePath(name), QStringLiteral("de"), QStringLiteral("Hallo"));
    QSettings().setValue(LanguageKey, QStringLiteral("de_DE"));
    const bool found = ZoI18n().translateApp(translator.get(), name);
    QDir(program.filePath(name)).removeRecursively();
    QVERIFY(found);
    QCOMPARE(hello(), QStringLiteral("Hallo"));
}

void tst_ZoI18n::findsTheShareDirectoryOfTheProgram()
{
    const QString share = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    const QString place = share + QStringLiteral("/probe/catalogues");
    addCatalogue(place, QStringLiteral("de"), QStringLiteral("Hallo"));
    QSettings().setValue(LanguageKey, QStringLiteral("de_DE"));
    QVERIFY(ZoI18n().translateApp(translator.get(), QStringLiteral("catalogues")));
    QCOMPARE(hello(), QStringLiteral("Hallo"));
}

void tst_ZoI18n::followsTheSystem_data()
{
    QTest::addColumn<QString>("stored");
    QTest::addColumn<QString>("variable");
    QTest::addColumn<QString>("system");
    QTest::addColumn<QString>("text");
    QTest::newRow("nothing stored") << QString() << "LC_ALL"
                                    << "de_AT.UTF-8"
                                    << "Hallo";
    QTest::newRow("default") << "default"
                             << "LC_ALL"
                             << "de_AT.UTF-8"
                             << "Hallo";
    QTest::newRow("garbage") << "no language!"
                             << "LC_ALL"
                             << "de_AT.UTF-8"
                             << "Hallo";
    QTest::newRow("unknown code") << "qq_QQ"
                                  << "LC_ALL"
                                  << "de_AT.UTF-8"
                                  << "Hallo";
    QTest::newRow("messages only") << "default"
                                   << "LC_MESSAGES"
                                   << "de_DE.UTF-8"
                                   << "Hallo";
    QTest::newRow("language list") << "default"
                                   << "LANGUAGE"
                                   << "de:fr"
                                   << "Hallo";
    QTest::newRow("English") << "default"
                             << "LC_ALL"
                             << "en_GB.UTF-8"
                             << "Hello";
    QTest::newRow("no locale") << "default"
                               << "LC_ALL"
                               << "C"
                               << "Hello";
}

void tst_ZoI18n::followsTheSystem()
{
    QFETCH(QString, stored);
    QFETCH(QString, variable);
    QFETCH(QString, system);
    QFETCH(QString, text);
    addCatalogue(QStringLiteral("app_de_DE"), QStringLiteral("Hallo"));
    if (!stored.isEmpty())
        QSettings().setValue(LanguageKey, stored);
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char* name : {"LC_ALL", "LC_MESSAGES", "LANGUAGE"})
        environment.remove(QString::fromLatin1(name));
    environment.insert(QStringLiteral("LANG"), QStringLiteral("en_US.UTF-8"));
    environment.insert(variable, system);
    const Answer answer = probe(environment, directory->path());
    QCOMPARE(answer.text, text);
    QCOMPARE(answer.found, text != QLatin1String("Hello"));
}

void tst_ZoI18n::storedLanguageWinsOverTheSystem()
{
    addCatalogue(QStringLiteral("app_de_DE"), QStringLiteral("Hallo"));
    addCatalogue(QStringLiteral("app_fr_FR"), QStringLiteral("Bonjour"));
    QSettings().setValue(LanguageKey, QStringLiteral("fr_FR"));
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("de_DE.UTF-8"));
    const Answer answer = probe(environment, directory->path());
    QCOMPARE(answer.locale, QStringLiteral("fr_FR"));
    QCOMPARE(answer.text, QStringLiteral("Bonjour"));
}

QTEST_GUILESS_MAIN(tst_ZoI18n)
#include "tst_ZoI18n.moc"
