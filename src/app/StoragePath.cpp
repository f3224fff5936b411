#include "app/StoragePath.h"

#include "app/Keys.h"

#include <QDateTime>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QImageWriter>
#include <QSettings>
#include <QStandardPaths>
#include <QStringList>

namespace {

QString timeStamp()
{
    return QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMdd-hhmmss-zzz"));
}

QString defaultDirectory(const QString& folder)
{
    const QString documents = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    return QDir::toNativeSeparators(documents + QLatin1Char('/') +
                                    QCoreApplication::applicationName() +
                                    QStringLiteral(" Files/") + folder + QLatin1Char('/'));
}

QString storedImageDirectory()
{
    return QSettings().value(Keys::captureFilePath(), StoragePath::defaultImagePath()).toString();
}

QString storedReportDirectory()
{
    return QSettings()
        .value(Keys::exportResultFilePath(), StoragePath::defaultReportPath())
        .toString();
}

QString storedImageFormat()
{
    return QSettings()
        .value(Keys::captureFileFormat(), Keys::captureFileFormatDefault())
        .toString();
}

/// A directory that cannot be made shows when the file is written.
QString withDirectoryMade(const QString& fileName)
{
    if (!fileName.isEmpty())
        QDir().mkpath(QFileInfo(fileName).absolutePath());
    return fileName;
}

QString bitmapFilter()
{
    return QObject::tr("Windows Bitmap (*.bmp)");
}

QString jpegFilter()
{
    return QObject::tr("JPEG (*.jpg *.jpeg)");
}

QString pngFilter()
{
    return QObject::tr("Portable Network Graphics (*.png)");
}

QString tiffFilter()
{
    return QObject::tr("Tag Image File Format (*.tif *.tiff)");
}

QString videoFilter()
{
    return QObject::tr("Video Files (*.mp4)");
}

QString allFilesFilter()
{
    return QObject::tr("All files (*.*)");
}

QString joined(const QStringList& filters)
{
    return filters.join(QStringLiteral(";;"));
}

} // namespace

QString StoragePath::defaultImagePath()
{
    return defaultDirectory(QStringLiteral("Images"));
}

QString StoragePath::defaultReportPath()
{
    return defaultDirectory(QStringLiteral("Reports"));
}

QString StoragePath::normalizedDirectory(const QString& path)
{
    // Also the separators of another system, from which the setting may come.
    const QString directory = QString(path).replace(QLatin1Char('\\'), QLatin1Char('/'));
    return directory.endsWith(QLatin1Char('/')) ? directory : directory + QLatin1Char('/');
}

QString StoragePath::imagePath()
{
    QString directory = storedImageDirectory();
    QDir().mkpath(directory);
    return directory;
}

QString StoragePath::reportPath()
{
    QString directory = storedReportDirectory();
    QDir().mkpath(directory);
    return directory;
}

void StoragePath::setReportPath(const QString& path)
{
    QSettings().setValue(Keys::exportResultFilePath(), QDir::fromNativeSeparators(path));
}

QString StoragePath::imageFileName(bool popup, QWidget* parent)
{
    const QString format = storedImageFormat();
    const QString baseName = normalizedDirectory(storedImageDirectory()) + timeStamp();
    if (!popup)
        return withDirectoryMade(baseName + QLatin1Char('.') + format);
    QString selected = filterForFormat(format);
    return withDirectoryMade(QFileDialog::getSaveFileName(parent, tr("Save File"), baseName,
                                                          imageSaveFilters(), &selected));
}

QString StoragePath::reportFileName(bool popup, QWidget* parent)
{
    const QString baseName = normalizedDirectory(storedReportDirectory()) + timeStamp();
    if (!popup)
        return withDirectoryMade(baseName + QStringLiteral(".xlsx"));
    return withDirectoryMade(
        QFileDialog::getSaveFileName(parent, tr("Export"), baseName, tr("Excel File (*.xlsx);;")));
}

QString StoragePath::videoFileName(bool popup, QWidget* parent)
{
    // Unlike the other two: a stored directory is taken as it stands, so without a separator at
    // its end the time stamp continues its last component.
    const QString baseName = storedImageDirectory() + timeStamp();
    if (!popup)
        return withDirectoryMade(baseName + QStringLiteral(".mp4"));
    QString selected = filterForFormat(QStringLiteral(".mp4"));
    return withDirectoryMade(QFileDialog::getSaveFileName(parent, tr("Save File"), baseName,
                                                          videoSaveFilters(), &selected));
}

QString StoragePath::filterForFormat(const QString& format)
{
    const QString lower = format.toLower();
    const auto has = [&lower](const char* extension) {
        return lower.indexOf(QLatin1String(extension)) >= 0;
    };
    if (has("bmp"))
        return bitmapFilter();
    if (has("jpg") || has("jpeg"))
        return jpegFilter();
    if (has("png"))
        return pngFilter();
    if (has("tif") || has("tiff"))
        return tiffFilter();
    return has("mp4") ? videoFilter() : QString();
}

QString StoragePath::imageSaveFilters()
{
    return joined({bitmapFilter(), jpegFilter(), pngFilter(), tiffFilter(),
                   supportedImageFormatsFilter(), allFilesFilter()});
}

QString StoragePath::videoSaveFilters()
{
    return joined({videoFilter(), allFilesFilter()});
}

QString StoragePath::supportedImageFormatsFilter()
{
    QStringList patterns;
    for (const QByteArray& format : QImageWriter::supportedImageFormats())
        patterns += QStringLiteral("*.") + QString::fromLatin1(format).toLower();
    return QObject::tr("All supported formats ") + QLatin1Char('(') +
           patterns.join(QLatin1Char(' ')) + QLatin1Char(')');
}
