#pragma once

#include <QString>

/// The keys of the settings store, each spelled here and nowhere else, with those defaults on which
/// all readers agree. Every QSettings of the program is the default-constructed one.
class Keys final
{
public:
    Keys() = delete;

    // Application
    static const QString& theme();
    static const QString& themeDefault();
    static const QString& maximizeWhenLanuch();
    static constexpr bool maximizeWhenLanuchDefault = false;
    static const QString& confirmExit();
    static constexpr bool confirmExitDefault = true;
    static const QString& language();
    static const QString& languageDefault();

    // Capture and report files. The default directories are those of StoragePath. The capture page
    // of the preferences reads capturePopup with the default true, everyone else with this one.
    static const QString& captureFilePath();
    static const QString& captureFileFormat();
    static const QString& captureFileFormatDefault();
    static const QString& capturePopup();
    static constexpr bool capturePopupDefault = false;
    static const QString& exportResultFilePath();
    static const QString& exportResultPopup();
    static constexpr bool exportResultPopupDefault = false;

    // Keyboard. The shortcut keys are complete keys inside keyboardGroup(); values and defaults are
    // portable texts of QKeySequence.
    static const QString& keyboardGroup();
    static const QString& shortcutsSnap();
    static const QString& shortcutsSnapDefault();
    static const QString& shortcutsFullscreen();
    static const QString& shortcutsFullscreenDefault();
    static const QString& shortcutsZoomIn();
    static const QString& shortcutsZoomInDefault();
    static const QString& shortcutsZoomOut();
    static const QString& shortcutsZoomOutDefault();

    // Camera. disableStill has no default here: its readers differ on purpose.
    static const QString& tryStillCapture();
    static constexpr bool tryStillCaptureDefault = true;
    static const QString& disableStill();
    static const QString& useOnePushWhiteBalance();
    static constexpr bool useOnePushWhiteBalanceDefault = true;
    static const QString& rtspUrl();

    // Measurement
    static const QString& showScalebar();
    static constexpr bool showScalebarDefault = false;
    static const QString& showCross();
    static constexpr bool showCrossDefault = false;

    // Stored attribute sets of the tools, read and written by ToolAttributes only.
    static const QString& attributesGeneralTool();
    static const QString& attributesRectange();
    static const QString& attributesCalibrationRuler();
    static const QString& attributesArrow();
    static const QString& attributesTextAnnotation();
    static const QString& attributesText();
    static const QString& attributesCounter();
    static const QString& attributesScalebar();
};
