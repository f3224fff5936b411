#include "app/Keys.h"

#include <QKeySequence>

namespace {

QString portableText(int key)
{
    return QKeySequence(key).toString(QKeySequence::PortableText);
}

} // namespace

const QString& Keys::theme()
{
    static const QString key = QStringLiteral("gui/theme");
    return key;
}

const QString& Keys::themeDefault()
{
    static const QString text = QStringLiteral("darkblue");
    return text;
}

const QString& Keys::maximizeWhenLanuch()
{
    static const QString key = QStringLiteral("gui/maximizeWhenLanuch");
    return key;
}

const QString& Keys::confirmExit()
{
    static const QString key = QStringLiteral("gui/confirmExit");
    return key;
}

const QString& Keys::language()
{
    static const QString key = QStringLiteral("i18n/language");
    return key;
}

const QString& Keys::languageDefault()
{
    static const QString text = QStringLiteral("default");
    return text;
}

const QString& Keys::captureFilePath()
{
    static const QString key = QStringLiteral("preferences/capture/filepath");
    return key;
}

const QString& Keys::captureFileFormat()
{
    static const QString key = QStringLiteral("preferences/capture/fileformat");
    return key;
}

const QString& Keys::captureFileFormatDefault()
{
    static const QString text = QStringLiteral("jpg");
    return text;
}

const QString& Keys::capturePopup()
{
    static const QString key = QStringLiteral("preferences/capture/popup");
    return key;
}

const QString& Keys::exportResultFilePath()
{
    static const QString key = QStringLiteral("preferences/measurement/exportresult/filepath");
    return key;
}

const QString& Keys::exportResultPopup()
{
    static const QString key = QStringLiteral("preferences/measurement/exportresult/popup");
    return key;
}

const QString& Keys::keyboardGroup()
{
    static const QString key = QStringLiteral("preferences/environment/keyboard");
    return key;
}

const QString& Keys::shortcutsSnap()
{
    static const QString key = keyboardGroup() + QStringLiteral("/shortcuts_snap");
    return key;
}

const QString& Keys::shortcutsSnapDefault()
{
    static const QString text = portableText(Qt::Key_Return);
    return text;
}

const QString& Keys::shortcutsFullscreen()
{
    static const QString key = keyboardGroup() + QStringLiteral("/shortcuts_fullscreen");
    return key;
}

const QString& Keys::shortcutsFullscreenDefault()
{
    static const QString text = portableText(Qt::Key_F11);
    return text;
}

const QString& Keys::shortcutsZoomIn()
{
    static const QString key = keyboardGroup() + QStringLiteral("/shortcuts_zoomin");
    return key;
}

const QString& Keys::shortcutsZoomInDefault()
{
    static const QString text = portableText(Qt::CTRL + Qt::Key_Plus);
    return text;
}

const QString& Keys::shortcutsZoomOut()
{
    static const QString key = keyboardGroup() + QStringLiteral("/shortcuts_zoomout");
    return key;
}

const QString& Keys::shortcutsZoomOutDefault()
{
    static const QString text = portableText(Qt::CTRL + Qt::Key_Minus);
    return text;
}

const QString& Keys::tryStillCapture()
{
    static const QString key = QStringLiteral("camera/tryStillCapture");
    return key;
}

const QString& Keys::disableStill()
{
    static const QString key = QStringLiteral("cwwidgets/disablestill");
    return key;
}

const QString& Keys::useOnePushWhiteBalance()
{
    static const QString key = QStringLiteral("camera/useonepushwb");
    return key;
}

const QString& Keys::rtspUrl()
{
    static const QString key = QStringLiteral("cww/rtspurl");
    return key;
}

const QString& Keys::showScalebar()
{
    static const QString key = QStringLiteral("measurement/showscalebar");
    return key;
}

const QString& Keys::showCross()
{
    static const QString key = QStringLiteral("measurement/showcross");
    return key;
}

const QString& Keys::attributesGeneralTool()
{
    static const QString key = QStringLiteral("measurement/attr_generaltool");
    return key;
}

const QString& Keys::attributesRectange()
{
    static const QString key = QStringLiteral("measurement/attr_toolrectange");
    return key;
}

const QString& Keys::attributesCalibrationRuler()
{
    static const QString key = QStringLiteral("measurement/attr_toolcalibration");
    return key;
}

const QString& Keys::attributesArrow()
{
    static const QString key = QStringLiteral("measurement/attr_toolarrow");
    return key;
}

const QString& Keys::attributesTextAnnotation()
{
    static const QString key = QStringLiteral("measurement/attr_annotation1");
    return key;
}

const QString& Keys::attributesText()
{
    static const QString key = QStringLiteral("measurement/attr_annotation");
    return key;
}

const QString& Keys::attributesCounter()
{
    static const QString key = QStringLiteral("measurement/attr_counter");
    return key;
}

const QString& Keys::attributesScalebar()
{
    static const QString key = QStringLiteral("measurement/attr_textscalebar");
    return key;
}
