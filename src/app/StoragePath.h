#pragma once

#include <QCoreApplication>
#include <QString>

class QWidget;

/// Decides where a snapshot, a video and a report go and what they are called, from the settings
/// and the local time. File names are complete paths; an empty one means that the user cancelled
/// the file dialog. Main thread only.
class StoragePath final
{
    Q_DECLARE_TR_FUNCTIONS(StoragePath)

public:
    StoragePath() = delete;

    /// Both in native separators, with one at the end.
    static QString defaultImagePath();
    static QString defaultReportPath();

    /// Forward slashes, with one at the end.
    static QString normalizedDirectory(const QString& path);

    /// The stored directories, or else the default ones; made if missing.
    static QString imagePath();
    static QString reportPath();
    static void setReportPath(const QString& path);

    /// With `popup` the user chooses in a file dialog above `parent`. The directory of the result
    /// is made if missing.
    static QString imageFileName(bool popup, QWidget* parent);
    static QString reportFileName(bool popup, QWidget* parent);
    static QString videoFileName(bool popup, QWidget* parent);

    /// File dialog filters. `format` is a file extension in any case; empty for an unknown one.
    static QString filterForFormat(const QString& format);
    static QString imageSaveFilters();
    static QString videoSaveFilters();
    static QString supportedImageFormatsFilter();
};
