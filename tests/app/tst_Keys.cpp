#include "app/Keys.h"

#include <QtTest>

class tst_Keys final : public QObject
{
    Q_OBJECT

private slots:
    void keysAreThoseOfTheStore_data();
    void keysAreThoseOfTheStore();
    void defaultsAreThoseOfAFreshStore();
    void shortcutDefaultsParseToTheirKeys();
};

void tst_Keys::keysAreThoseOfTheStore_data()
{
    QTest::addColumn<QString>("key");
    const auto row = [](const char* expected, const QString& key) {
        QTest::newRow(expected) << key;
    };
    row("gui/theme", Keys::theme());
    row("gui/maximizeWhenLanuch", Keys::maximizeWhenLanuch());
    row("gui/confirmExit", Keys::confirmExit());
    row("i18n/language", Keys::language());
    row("preferences/capture/filepath", Keys::captureFilePath());
    row("preferences/capture/fileformat", Keys::captureFileFormat());
    row("preferences/capture/popup", Keys::capturePopup());
    row("preferences/measurement/exportresult/filepath", Keys::exportResultFilePath());
    row("preferences/measurement/exportresult/popup", Keys::exportResultPopup());
    row("preferences/environment/keyboard", Keys::keyboardGroup());
    row("preferences/environment/keyboard/shortcuts_snap", Keys::shortcutsSnap());
    row("preferences/environment/keyboard/shortcuts_fullscreen", Keys::shortcutsFullscreen());
    row("preferences/environment/keyboard/shortcuts_zoomin", Keys::shortcutsZoomIn());
    row("preferences/environment/keyboard/shortcuts_zoomout", Keys::shortcutsZoomOut());
    row("camera/tryStillCapture", Keys::tryStillCapture());
    row("cwwidgets/disablestill", Keys::disableStill());
    row("camera/useonepushwb", Keys::useOnePushWhiteBalance());
    row("cww/rtspurl", Keys::rtspUrl());
    row("measurement/showscalebar", Keys::showScalebar());
    row("measurement/showcross", Keys::showCross());
    row("measurement/attr_generaltool", Keys::attributesGeneralTool());
    row("measurement/attr_toolrectange", Keys::attributesRectange());
    row("measurement/attr_toolcalibration", Keys::attributesCalibrationRuler());
    row("measurement/attr_toolarrow", Keys::attributesArrow());
    row("measurement/attr_annotation1", Keys::attributesTextAnnotation());
    row("measurement/attr_annotation", Keys::attributesText());
    row("measurement/attr_counter", Keys::attributesCounter());
    row("measurement/attr_textscalebar", Keys::attributesScalebar());
}

void tst_Keys::keysAreThoseOfTheStore()
{
    QFETCH(QString, key);
    QCOMPARE(key, QString::fromLatin1(QTest::currentDataTag()));
}

void tst_Keys::defaultsAreThoseOfAFreshStore()
{
    QCOMPARE(Keys::themeDefault(), QStringLiteral("darkblue"));
    QCOMPARE(Keys::languageDefault(), QStringLiteral("default"));
    QCOMPARE(Keys::captureFileFormatDefault(), QStringLiteral("jpg"));
    QVERIFY(!Keys::maximizeWhenLanuchDefault);
    QVERIFY(Keys::confirmExitDefault);
    QVERIFY(!Keys::capturePopupDefault);
    QVERIFY(!Keys::exportResultPopupDefault);
    QVERIFY(Keys::tryStillCaptureDefault);
    QVERIFY(Keys::useOnePushWhiteBalanceDefault);
    QVERIFY(!Keys::showScalebarDefault);
    QVERIFY(!Keys::showCrossDefault);
}

void tst_Keys::shortcutDefaultsParseToTheirKeys()
{
    QCOMPARE(Keys::shortcutsSnapDefault(), QStringLiteral("Return"));
    QCOMPARE(Keys::shortcutsFullscreenDefault(), QStringLiteral("F11"));
    QCOMPARE(Keys::shortcutsZoomInDefault(), QStringLiteral("Ctrl++"));
    QCOMPARE(Keys::shortcutsZoomOutDefault(), QStringLiteral("Ctrl+-"));
    QCOMPARE(QKeySequence(Keys::shortcutsZoomInDefault()), QKeySequence(Qt::CTRL + Qt::Key_Plus));
    QCOMPARE(QKeySequence(Keys::shortcutsZoomOutDefault()), QKeySequence(Qt::CTRL + Qt::Key_Minus));
}

QTEST_MAIN(tst_Keys)
#include "tst_Keys.moc"
