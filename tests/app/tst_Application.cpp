#include "app/Application.h"

#include <zolens/CWUVCFilter.h>

#include <QApplication>
#include <QIcon>
#include <QSettings>
#include <QStyle>
#include <QStyleFactory>
#include <QtTest>

class tst_Application : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { setApplicationNames(); }

    void theSettingsStoreIsNamedAfterTheProgram()
    {
        QCOMPARE(QCoreApplication::applicationName(), QStringLiteral("Orvo"));
        QCOMPARE(QCoreApplication::organizationName(), QStringLiteral("Orvo"));
        QVERIFY(QSettings().fileName().endsWith(QStringLiteral("Orvo/Orvo.conf")));
    }

    void onlyTheDarkThemeReplacesTheStyle_data()
    {
        QTest::addColumn<QString>("theme");
        QTest::addColumn<bool>("replaced");
        QTest::newRow("dark") << QStringLiteral("darkblue") << true;
        QTest::newRow("capitals") << QStringLiteral("DARKBLUE") << true;
        QTest::newRow("mixed") << QStringLiteral("DarkBlue") << true;
        QTest::newRow("platform") << QStringLiteral("default") << false;
        QTest::newRow("empty") << QString() << false;
        QTest::newRow("blank behind") << QStringLiteral("darkblue ") << false;
    }

    void onlyTheDarkThemeReplacesTheStyle()
    {
        QFETCH(QString, theme);
        QFETCH(bool, replaced);
        QApplication::setStyle(QStyleFactory::create(QStringLiteral("windows")));
        const QPointer<QStyle> before = QApplication::style();
        installStyle(theme);
        QCOMPARE(QApplication::style() != before.data(), replaced);
        QCOMPARE(before.isNull(), replaced);
    }

    void theDarkThemeIsDark()
    {
        installStyle(QStringLiteral("darkblue"));
        const QPalette palette = QApplication::palette();
        QVERIFY(palette.color(QPalette::Window).lightness() < 64);
        QVERIFY(palette.color(QPalette::WindowText).lightness() > 192);
        QVERIFY(palette.color(QPalette::Window).blue() > palette.color(QPalette::Window).red());
    }

    void iconsComeFromTheProgramsTheme()
    {
        const QStringList before = QIcon::fallbackSearchPaths();
        installIconTheme();
        QCOMPARE(QIcon::themeName(), QStringLiteral("light-blue"));
        QCOMPARE(QIcon::fallbackSearchPaths(), QStringList(before)
                                                   << QStringLiteral(":res/icons/custom-icons"));
    }

    void theFontHasNinePoints()
    {
        installFont();
        QCOMPARE(QApplication::font().pointSize(), 9);
    }

    void theDeviceFilterIsFilledOnceHoweverOften()
    {
        installDeviceFilter();
        installDeviceFilter();
        QCOMPARE(uvcFilter.items().size(), std::size_t(19));
        const auto& rows = uvcFilter.items();
        const auto named = std::count_if(rows.begin(), rows.end(), [](const CWUVCFilterItem& row) {
            return !row.model.empty();
        });
        QCOMPARE(static_cast<int>(named), 13);
    }

    void pixmapsAndLayoutFollowTheScreenScale()
    {
        setApplicationAttributes();
        QVERIFY(QCoreApplication::testAttribute(Qt::AA_EnableHighDpiScaling));
        QVERIFY(QCoreApplication::testAttribute(Qt::AA_UseHighDpiPixmaps));
    }
};

QTEST_MAIN(tst_Application)
#include "tst_Application.moc"
