#include <zostyle/ZoStyleFactory.h>

#include <StyleSheet.h>

#include <QApplication>
#include <QLabel>
#include <QProxyStyle>
#include <QPushButton>
#include <QStyleFactory>
#include <QTest>

namespace {

const QString SheetPath = QStringLiteral(STYLE_SHEET);

QStyle* newDarkStyle()
{
    return ZoStyleFactory::newStyle(ZoStyleFactory::DarkBlueStyle, SheetPath);
}

/// Counts how often a widget is told of another style.
class Listener final : public QLabel
{
public:
    int styleChanges = 0;

protected:
    void changeEvent(QEvent* event) override
    {
        styleChanges += event->type() == QEvent::StyleChange ? 1 : 0;
        QLabel::changeEvent(event);
    }
};

} // namespace

class tst_ZoStyleFactory : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void bringsPaletteAndSheetToTheApplication();
    void styleIsTheNewOneUnderTheSheet();
    void anotherStyleTakesBothBack();
    void givesTheApplicationItsOwnSheetBack();
    void mayBeSetAgain();
    void reachesWidgetsThatAreThere();
    void standsAlsoAfterTheSheetWasTakenAway();
    void aMissingSheetLeavesThePalette();
    void anUnusedStyleChangesNothing();
    void systemStyleChangesNothing();
};

void tst_ZoStyleFactory::init()
{
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("windows")));
    qApp->setStyleSheet(QString());
}

void tst_ZoStyleFactory::bringsPaletteAndSheetToTheApplication()
{
    QApplication::setStyle(newDarkStyle());
    QCOMPARE(qApp->styleSheet(), zostyle::loadStyleSheet(SheetPath));
    const QPalette palette = QApplication::palette();
    QCOMPARE(palette.color(QPalette::Window), QColor(0x17, 0x21, 0x2f));
    QCOMPARE(palette.color(QPalette::Base), QColor(0x1e, 0x2b, 0x3d));
    QCOMPARE(palette.color(QPalette::Button), QColor(0x26, 0x36, 0x4d));
    QCOMPARE(palette.color(QPalette::WindowText), QColor(0xe6, 0xed, 0xf7));
    QCOMPARE(palette.color(QPalette::Highlight), QColor(0x18, 0x73, 0xae));
    QCOMPARE(palette.color(QPalette::HighlightedText), QColor(Qt::white));
    QCOMPARE(palette.color(QPalette::Disabled, QPalette::Text), QColor(0x6f, 0x81, 0x9b));
}

void tst_ZoStyleFactory::styleIsTheNewOneUnderTheSheet()
{
    QPointer<QStyle> style = newDarkStyle();
    QApplication::setStyle(style);
    QVERIFY(style);
    QCOMPARE(style->metaObject()->className(), "zostyle::ZoDarkBlueStyle");
    QCOMPARE(QApplication::style()->findChildren<QStyle*>().count(style), 1);
    QVERIFY(qobject_cast<QProxyStyle*>(style)->baseStyle()->inherits("QFusionStyle"));
}

void tst_ZoStyleFactory::anotherStyleTakesBothBack()
{
    const QPalette before = QApplication::palette();
    QPointer<QStyle> style = newDarkStyle();
    QApplication::setStyle(style);
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("windows")));
    QVERIFY(!style);
    QCOMPARE(qApp->styleSheet(), QString());
    QCOMPARE(QApplication::palette(), before);
    QVERIFY(QApplication::style()->inherits("QWindowsStyle"));
}

void tst_ZoStyleFactory::givesTheApplicationItsOwnSheetBack()
{
    const QString own = QStringLiteral("QLabel { margin: 3px; }");
    qApp->setStyleSheet(own);
    QApplication::setStyle(newDarkStyle());
    QCOMPARE(qApp->styleSheet(), zostyle::loadStyleSheet(SheetPath));
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("windows")));
    QCOMPARE(qApp->styleSheet(), own);
}

void tst_ZoStyleFactory::mayBeSetAgain()
{
    QApplication::setStyle(newDarkStyle());
    QPointer<QStyle> second = newDarkStyle();
    QApplication::setStyle(second);
    QVERIFY(second);
    QCOMPARE(qApp->styleSheet(), zostyle::loadStyleSheet(SheetPath));
    QCOMPARE(QApplication::palette().color(QPalette::Window), QColor(0x17, 0x21, 0x2f));
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("windows")));
    QCOMPARE(qApp->styleSheet(), QString());
}

void tst_ZoStyleFactory::reachesWidgetsThatAreThere()
{
    QPushButton button(QStringLiteral("Text"));
    button.show();
    QVERIFY(QTest::qWaitForWindowExposed(&button));
    Listener listener;
    listener.show();
    QVERIFY(QTest::qWaitForWindowExposed(&listener));
    listener.styleChanges = 0;
    QApplication::setStyle(newDarkStyle());
    QCOMPARE(button.sizeHint().height(), 24);
    QVERIFY(listener.styleChanges >= 1);

    const QColor ground = button.grab().toImage().pixelColor(8, 4);
    QCOMPARE(ground, QColor(0x26, 0x36, 0x4d));
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("windows")));
    QVERIFY(button.grab().toImage().pixelColor(8, 4) != ground);
}

void tst_ZoStyleFactory::standsAlsoAfterTheSheetWasTakenAway()
{
    QApplication::setStyle(newDarkStyle());
    qApp->setStyleSheet(QString());
    QCOMPARE(qApp->styleSheet(), zostyle::loadStyleSheet(SheetPath));
}

void tst_ZoStyleFactory::aMissingSheetLeavesThePalette()
{
    QApplication::setStyle(
        ZoStyleFactory::newStyle(ZoStyleFactory::DarkBlueStyle, QStringLiteral(":/no/such.qss")));
    QCOMPARE(qApp->styleSheet(), QString());
    QCOMPARE(QApplication::palette().color(QPalette::Window), QColor(0x17, 0x21, 0x2f));
}

void tst_ZoStyleFactory::anUnusedStyleChangesNothing()
{
    qApp->setStyleSheet(zostyle::loadStyleSheet(SheetPath));
    delete newDarkStyle();
    QCOMPARE(qApp->styleSheet(), zostyle::loadStyleSheet(SheetPath));
}

void tst_ZoStyleFactory::systemStyleChangesNothing()
{
    QApplication::setStyle(ZoStyleFactory::newStyle(ZoStyleFactory::SystemStyle, SheetPath));
    QCOMPARE(qApp->styleSheet(), QString());
    QVERIFY(QApplication::palette().color(QPalette::Window) != QColor(0x17, 0x21, 0x2f));
}

QTEST_MAIN(tst_ZoStyleFactory)
#include "tst_ZoStyleFactory.moc"
