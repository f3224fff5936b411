#include <Colours.h>
#include <StyleSheet.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QTest>

using zostyle::loadStyleSheet;
using zostyle::withColours;

class tst_StyleSheet : public QObject
{
    Q_OBJECT

private slots:
    void putsColoursInForNames();
    void takesTheLongestName();
    void warnsOfAnUnknownName();
    void leavesTextWithoutNamesAlone();
    void isEmptyForAMissingFile();
    void theProgramsSheetIsResolved();
    void theProgramsSheetNamesColoursOnly();
    void everyImageOfTheProgramsSheetIsThere();
};

void tst_StyleSheet::putsColoursInForNames()
{
    QCOMPARE(withColours(QStringLiteral("a { color: @text; } b { color: @window }")),
             QStringLiteral("a { color: #e6edf7; } b { color: #17212f }"));
}

void tst_StyleSheet::takesTheLongestName()
{
    QCOMPARE(withColours(QStringLiteral("@selection-text @selection")),
             QStringLiteral("#ffffff #1873ae"));
}

void tst_StyleSheet::warnsOfAnUnknownName()
{
    QTest::ignoreMessage(QtWarningMsg, "Style sheet: no colour is called \"no-such\"");
    QCOMPARE(withColours(QStringLiteral("a { color: @no-such; } b { color: @focus; }")),
             QStringLiteral("a { color: transparent; } b { color: #5cb8f0; }"));
}

void tst_StyleSheet::leavesTextWithoutNamesAlone()
{
    const QString plain = QStringLiteral("QLabel { margin: 2px } /* @ 2 */");
    QCOMPARE(withColours(plain), plain);
    QCOMPARE(withColours(QString()), QString());
}

void tst_StyleSheet::isEmptyForAMissingFile()
{
    QCOMPARE(loadStyleSheet(QStringLiteral(":/no/such.qss")), QString());
    QCOMPARE(loadStyleSheet(QString()), QString());
}

void tst_StyleSheet::theProgramsSheetIsResolved()
{
    const QString sheet = loadStyleSheet(QStringLiteral(STYLE_SHEET));
    QVERIFY(sheet.contains(QLatin1String("QPushButton")));
    static const QRegularExpression placeholder(QStringLiteral("@[a-z]"));
    QVERIFY(!sheet.contains(placeholder));
}

/// Colours stand in the table alone.
void tst_StyleSheet::theProgramsSheetNamesColoursOnly()
{
    QFile file(QStringLiteral(STYLE_SHEET));
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QString source = QString::fromUtf8(file.readAll());
    static const QRegularExpression number(
        QStringLiteral(":[^;{]*(#[0-9a-fA-F]{3,8}\\b|rgba?\\()"));
    QVERIFY(!source.contains(number));
    for (const zostyle::Colour& each : zostyle::Colours) {
        const QRegularExpression use(QLatin1Char('@') + each.name +
                                     QStringLiteral("(?![A-Za-z0-9-])"));
        const bool inPalette =
            each.tone == zostyle::Tone::Shadow || each.tone == zostyle::Tone::Warning;
        QVERIFY2(inPalette || source.contains(use), each.name.data());
    }
}

/// The images lie beside the sheet, in the sources as in the resources.
void tst_StyleSheet::everyImageOfTheProgramsSheetIsThere()
{
    static const QRegularExpression url(QStringLiteral("url\\(([^)]*)\\)"));
    const QDir directory = QFileInfo(QStringLiteral(STYLE_SHEET)).dir();
    auto images = url.globalMatch(loadStyleSheet(QStringLiteral(STYLE_SHEET)));
    QVERIFY(images.hasNext());
    while (images.hasNext()) {
        const QString path = images.next().captured(1);
        QVERIFY2(path.startsWith(QLatin1String(":/res/style/")), qPrintable(path));
        QVERIFY2(directory.exists(QFileInfo(path).fileName()), qPrintable(path));
    }
}

QTEST_GUILESS_MAIN(tst_StyleSheet)
#include "tst_StyleSheet.moc"
