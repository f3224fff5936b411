#include "app/Keys.h"
#include "app/StoragePath.h"
#include "support/ContextTranslator.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QImageWriter>
#include <QLineEdit>
#include <QSettings>
#include <QTemporaryDir>
#include <QTimer>
#include <QtTest>

#include <functional>

namespace {

/// What a save dialog proposes at the moment when it shows.
struct Proposal
{
    QString title;
    QString directory;
    QString name;
    QStringList filters;
    QString filter;
};

/// Answers the next save dialog through its own widgets: with a file name, or by Escape where
/// that is empty.
class DialogUser final
{
public:
    explicit DialogUser(QString fileName) : typed(std::move(fileName))
    {
        QObject::connect(&timer, &QTimer::timeout, &timer, [this] { tryAnswer(); });
        timer.start(20);
    }

    Proposal proposal;

private:
    void tryAnswer()
    {
        auto* dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
        if (!dialog || !dialog->isVisible())
            return;
        timer.stop();
        auto* edit = dialog->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
        proposal = {dialog->windowTitle(), dialog->directory().path(), edit->text(),
                    dialog->nameFilters(), dialog->selectedNameFilter()};
        if (typed.isEmpty()) {
            QTest::keyClick(dialog, Qt::Key_Escape);
            return;
        }
        edit->selectAll();
        QTest::keyClicks(edit, typed);
        QTest::keyClick(edit, Qt::Key_Return);
    }

    QString typed;
    QTimer timer;
};

/// The time of a file name's stamp; not valid where the name has another form.
QDateTime stampOf(const QString& completeBaseName)
{
    return QDateTime::fromString(completeBaseName, QStringLiteral("yyyyMMdd-hhmmss-zzz"));
}

void verifyStamp(const QString& fileName, const QDateTime& notBefore)
{
    const QDateTime stamp = stampOf(QFileInfo(fileName).completeBaseName());
    QVERIFY2(stamp.isValid(), qPrintable(fileName));
    QVERIFY(stamp >= notBefore);
    QVERIFY(stamp <= QDateTime::currentDateTime());
}

} // namespace

class tst_StoragePath final : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();

    void defaultDirectoriesLieInTheDocuments();
    void normalizedDirectoryHasSlashesAndOneAtTheEnd();
    void snapshotWithoutSettingsLandsInTheDefaultDirectory();
    void storedFormatKeepsItsCapitalsInTheExtension();
    void unknownFormatIsTheExtensionAsStored();
    void backslashesBecomeSlashesForSnapshotsAndReports();
    void videoGluesItsStampToADirectoryWithoutSeparator();
    void reportWithoutSettingsLandsInTheDefaultDirectory();
    void directoryAccessorsMakeTheDirectory();
    void reportDirectoryIsStoredWithSlashes();
    void missingDirectoryThatCannotBeMadeStillGivesAName();

    void filterIsFoundByPartOfTheFormat_data();
    void filterIsFoundByPartOfTheFormat();
    void filterListsStandInTheirOrder();
    void supportedFormatsFilterNamesEveryWriter();
    void filtersAreTranslatedInTheGeneralContext();

    void snapshotDialogProposesStampAndFilter();
    void snapshotDialogPreselectsByCapitalFormat();
    void snapshotDialogPreselectsNothingForAnUnknownFormat();
    void chosenNameIsTakenAsTypedAndItsDirectoryMade();
    void videoDialogOffersVideoFilters();
    void reportDialogOffersWorkbooks();
    void cancelledDialogsGiveEmptyNames();
    void dialogTitlesAreTranslatedInTheOwnContext();

private:
    QTemporaryDir directory;
};

void tst_StoragePath::initTestCase()
{
    QCoreApplication::setApplicationName(QStringLiteral("Orvo"));
    QCoreApplication::setOrganizationName(QStringLiteral("Orvo"));
    QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    QVERIFY(directory.isValid());
}

void tst_StoragePath::init()
{
    QSettings().clear();
}

void tst_StoragePath::defaultDirectoriesLieInTheDocuments()
{
    const QString documents = QDir::homePath() + QStringLiteral("/Documents/Orvo Files/");
    QCOMPARE(StoragePath::defaultImagePath(), documents + QStringLiteral("Images/"));
    QCOMPARE(StoragePath::defaultReportPath(), documents + QStringLiteral("Reports/"));
}

void tst_StoragePath::normalizedDirectoryHasSlashesAndOneAtTheEnd()
{
    QCOMPARE(StoragePath::normalizedDirectory(QStringLiteral("/a/b")), QStringLiteral("/a/b/"));
    QCOMPARE(StoragePath::normalizedDirectory(QStringLiteral("/a/b/")), QStringLiteral("/a/b/"));
    QCOMPARE(StoragePath::normalizedDirectory(QStringLiteral("C:\\a\\b\\")),
             QStringLiteral("C:/a/b/"));
    QCOMPARE(StoragePath::normalizedDirectory(QString()), QStringLiteral("/"));
}

void tst_StoragePath::snapshotWithoutSettingsLandsInTheDefaultDirectory()
{
    QDir(StoragePath::defaultImagePath()).removeRecursively();
    const QDateTime before = QDateTime::currentDateTime();
    const QString name = StoragePath::imageFileName(false, nullptr);
    QVERIFY(name.startsWith(StoragePath::defaultImagePath()));
    QCOMPARE(QFileInfo(name).suffix(), QStringLiteral("jpg"));
    verifyStamp(name, before);
    QVERIFY(QDir(StoragePath::defaultImagePath()).exists());
}

void tst_StoragePath::storedFormatKeepsItsCapitalsInTheExtension()
{
    QSettings().setValue(Keys::captureFileFormat(), QStringLiteral("PNG"));
    QCOMPARE(QFileInfo(StoragePath::imageFileName(false, nullptr)).suffix(), QStringLiteral("PNG"));
}

void tst_StoragePath::unknownFormatIsTheExtensionAsStored()
{
    QSettings().setValue(Keys::captureFileFormat(), QStringLiteral("xyz"));
    QCOMPARE(QFileInfo(StoragePath::imageFileName(false, nullptr)).suffix(), QStringLiteral("xyz"));
}

void tst_StoragePath::backslashesBecomeSlashesForSnapshotsAndReports()
{
    QString stored = directory.filePath(QStringLiteral("back/slashes"));
    const QString expected = stored + QLatin1Char('/');
    stored.replace(QLatin1Char('/'), QLatin1Char('\\'));
    QSettings().setValue(Keys::captureFilePath(), stored);
    QSettings().setValue(Keys::exportResultFilePath(), stored);
    QCOMPARE(QFileInfo(StoragePath::imageFileName(false, nullptr)).path() + QLatin1Char('/'),
             expected);
    QCOMPARE(QFileInfo(StoragePath::reportFileName(false, nullptr)).path() + QLatin1Char('/'),
             expected);
    QVERIFY(QDir(expected).exists());
}

void tst_StoragePath::videoGluesItsStampToADirectoryWithoutSeparator()
{
    const QDateTime before = QDateTime::currentDateTime();
    QSettings().setValue(Keys::captureFilePath(), directory.filePath(QStringLiteral("films")));
    const QString glued = StoragePath::videoFileName(false, nullptr);
    const QString prefix = directory.filePath(QStringLiteral("films"));
    QVERIFY(glued.startsWith(prefix));
    QVERIFY(glued.endsWith(QStringLiteral(".mp4")));
    QVERIFY(stampOf(glued.mid(prefix.size()).chopped(4)) >= before);
    QVERIFY(!QDir(prefix).exists());

    QSettings().setValue(Keys::captureFilePath(), directory.filePath(QStringLiteral("films/")));
    const QString inside = StoragePath::videoFileName(false, nullptr);
    QCOMPARE(QFileInfo(inside).absolutePath(), prefix);
    verifyStamp(inside, before);
    QVERIFY(QDir(prefix).exists());
}

void tst_StoragePath::reportWithoutSettingsLandsInTheDefaultDirectory()
{
    QDir(StoragePath::defaultReportPath()).removeRecursively();
    const QDateTime before = QDateTime::currentDateTime();
    const QString name = StoragePath::reportFileName(false, nullptr);
    QVERIFY(name.startsWith(StoragePath::defaultReportPath()));
    QVERIFY(name.endsWith(QStringLiteral(".xlsx")));
    verifyStamp(name, before);
    QVERIFY(QDir(StoragePath::defaultReportPath()).exists());
}

void tst_StoragePath::directoryAccessorsMakeTheDirectory()
{
    const QString images = directory.filePath(QStringLiteral("made/images"));
    const QString reports = directory.filePath(QStringLiteral("made/reports"));
    QSettings().setValue(Keys::captureFilePath(), images);
    QSettings().setValue(Keys::exportResultFilePath(), reports);
    QCOMPARE(StoragePath::imagePath(), images);
    QCOMPARE(StoragePath::reportPath(), reports);
    QVERIFY(QDir(images).exists());
    QVERIFY(QDir(reports).exists());
    QSettings().clear();
    QCOMPARE(StoragePath::imagePath(), StoragePath::defaultImagePath());
    QCOMPARE(StoragePath::reportPath(), StoragePath::defaultReportPath());
}

void tst_StoragePath::reportDirectoryIsStoredWithSlashes()
{
    const QString native = QDir::toNativeSeparators(directory.filePath(QStringLiteral("set")));
    StoragePath::setReportPath(native);
    QCOMPARE(QSettings().value(Keys::exportResultFilePath()).toString(),
             directory.filePath(QStringLiteral("set")));
}

void tst_StoragePath::missingDirectoryThatCannotBeMadeStillGivesAName()
{
    QFile file(directory.filePath(QStringLiteral("plainfile")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QSettings().setValue(Keys::captureFilePath(),
                         QString(file.fileName() + QStringLiteral("/below")));
    const QString name = StoragePath::imageFileName(false, nullptr);
    QVERIFY(name.startsWith(file.fileName() + QStringLiteral("/below/")));
    QVERIFY(!QFileInfo(name).absoluteDir().exists());
}

void tst_StoragePath::filterIsFoundByPartOfTheFormat_data()
{
    QTest::addColumn<QString>("format");
    QTest::addColumn<QString>("filter");
    const auto row = [](const char* format, const char* filter) {
        QTest::newRow(format) << QString::fromLatin1(format) << QString::fromLatin1(filter);
    };
    row("bmp", "Windows Bitmap (*.bmp)");
    row("jpg", "JPEG (*.jpg *.jpeg)");
    row("jpeg", "JPEG (*.jpg *.jpeg)");
    row("JPG", "JPEG (*.jpg *.jpeg)");
    row("png", "Portable Network Graphics (*.png)");
    row("tif", "Tag Image File Format (*.tif *.tiff)");
    row("Tiff", "Tag Image File Format (*.tif *.tiff)");
    row("mp4", "Video Files (*.mp4)");
    row(".mp4", "Video Files (*.mp4)");
    row("pngbmp", "Windows Bitmap (*.bmp)");
    row("gif", "");
    row("", "");
}

void tst_StoragePath::filterIsFoundByPartOfTheFormat()
{
    QFETCH(QString, format);
    QFETCH(QString, filter);
    QCOMPARE(StoragePath::filterForFormat(format), filter);
}

void tst_StoragePath::filterListsStandInTheirOrder()
{
    const QStringList images = StoragePath::imageSaveFilters().split(QStringLiteral(";;"));
    const QStringList expected = {QStringLiteral("Windows Bitmap (*.bmp)"),
                                  QStringLiteral("JPEG (*.jpg *.jpeg)"),
                                  QStringLiteral("Portable Network Graphics (*.png)"),
                                  QStringLiteral("Tag Image File Format (*.tif *.tiff)"),
                                  StoragePath::supportedImageFormatsFilter(),
                                  QStringLiteral("All files (*.*)")};
    QCOMPARE(images, expected);
    QCOMPARE(StoragePath::videoSaveFilters(),
             QStringLiteral("Video Files (*.mp4);;All files (*.*)"));
}

void tst_StoragePath::supportedFormatsFilterNamesEveryWriter()
{
    const QString filter = StoragePath::supportedImageFormatsFilter();
    const QString opening = QStringLiteral("All supported formats (");
    QVERIFY(filter.startsWith(opening));
    QVERIFY(filter.endsWith(QLatin1Char(')')));
    const QStringList patterns = filter.mid(opening.size()).chopped(1).split(QLatin1Char(' '));
    QCOMPARE(patterns.size(), QImageWriter::supportedImageFormats().size());
    QVERIFY(patterns.contains(QStringLiteral("*.png")));
    QCOMPARE(filter, opening + filter.mid(opening.size()).toLower());
}

void tst_StoragePath::filtersAreTranslatedInTheGeneralContext()
{
    const ContextTranslator translator;
    QCOMPARE(StoragePath::filterForFormat(QStringLiteral("png")),
             QStringLiteral("QObject|Portable Network Graphics (*.png)"));
    const QString separator = QStringLiteral(";;");
    const QStringList filters = StoragePath::imageSaveFilters().split(separator) +
                                StoragePath::videoSaveFilters().split(separator);
    for (const QString& filter : filters)
        QVERIFY2(filter.startsWith(QStringLiteral("QObject|")), qPrintable(filter));
}

void tst_StoragePath::snapshotDialogProposesStampAndFilter()
{
    QSettings().setValue(Keys::captureFilePath(), directory.path());
    const QDateTime before = QDateTime::currentDateTime();
    const DialogUser user{QString()};
    StoragePath::imageFileName(true, nullptr);
    QCOMPARE(user.proposal.title, QStringLiteral("Save File"));
    QCOMPARE(user.proposal.directory, directory.path());
    QVERIFY(stampOf(user.proposal.name) >= before);
    QCOMPARE(user.proposal.filters.size(), 6);
    QCOMPARE(user.proposal.filter, QStringLiteral("JPEG (*.jpg *.jpeg)"));
}

void tst_StoragePath::snapshotDialogPreselectsByCapitalFormat()
{
    QSettings().setValue(Keys::captureFilePath(), directory.path());
    QSettings().setValue(Keys::captureFileFormat(), QStringLiteral("TIF"));
    const DialogUser user{QString()};
    StoragePath::imageFileName(true, nullptr);
    QCOMPARE(user.proposal.filter, QStringLiteral("Tag Image File Format (*.tif *.tiff)"));
}

void tst_StoragePath::snapshotDialogPreselectsNothingForAnUnknownFormat()
{
    QSettings().setValue(Keys::captureFilePath(), directory.path());
    QSettings().setValue(Keys::captureFileFormat(), QStringLiteral("xyz"));
    const DialogUser user{QString()};
    StoragePath::imageFileName(true, nullptr);
    QCOMPARE(user.proposal.filter, user.proposal.filters.first());
}

void tst_StoragePath::chosenNameIsTakenAsTypedAndItsDirectoryMade()
{
    QSettings().setValue(Keys::captureFilePath(), directory.path());
    const QString typed = directory.filePath(QStringLiteral("new/deep/cell.png"));
    const DialogUser user(typed);
    QCOMPARE(StoragePath::imageFileName(true, nullptr), typed);
    QVERIFY(QDir(directory.filePath(QStringLiteral("new/deep"))).exists());
    QVERIFY(!QFileInfo::exists(typed));
}

void tst_StoragePath::videoDialogOffersVideoFilters()
{
    QSettings().setValue(Keys::captureFilePath(), directory.filePath(QString()));
    const QString typed = directory.filePath(QStringLiteral("films2/cell.mp4"));
    const DialogUser user(typed);
    QCOMPARE(StoragePath::videoFileName(true, nullptr), typed);
    QCOMPARE(user.proposal.title, QStringLiteral("Save File"));
    QCOMPARE(user.proposal.filters, QStringList({QStringLiteral("Video Files (*.mp4)"),
                                                 QStringLiteral("All files (*.*)")}));
    QCOMPARE(user.proposal.filter, QStringLiteral("Video Files (*.mp4)"));
    QVERIFY(QDir(directory.filePath(QStringLiteral("films2"))).exists());
}

void tst_StoragePath::reportDialogOffersWorkbooks()
{
    QSettings().setValue(Keys::exportResultFilePath(), directory.path());
    const QDateTime before = QDateTime::currentDateTime();
    const QString typed = directory.filePath(QStringLiteral("reports/cells.xlsx"));
    const DialogUser user(typed);
    QCOMPARE(StoragePath::reportFileName(true, nullptr), typed);
    QCOMPARE(user.proposal.title, QStringLiteral("Export"));
    QCOMPARE(user.proposal.filters.first(), QStringLiteral("Excel File (*.xlsx)"));
    QVERIFY(stampOf(user.proposal.name) >= before);
    QVERIFY(QDir(directory.filePath(QStringLiteral("reports"))).exists());
}

void tst_StoragePath::cancelledDialogsGiveEmptyNames()
{
    const std::function<QString()> questions[] = {
        [] { return StoragePath::imageFileName(true, nullptr); },
        [] { return StoragePath::videoFileName(true, nullptr); },
        [] { return StoragePath::reportFileName(true, nullptr); }};
    for (const auto& question : questions) {
        const DialogUser user{QString()};
        QVERIFY(question().isEmpty());
        QVERIFY(!user.proposal.title.isEmpty());
    }
}

void tst_StoragePath::dialogTitlesAreTranslatedInTheOwnContext()
{
    const ContextTranslator translator;
    const DialogUser image{QString()};
    StoragePath::imageFileName(true, nullptr);
    QCOMPARE(image.proposal.title, QStringLiteral("StoragePath|Save File"));
    const DialogUser report{QString()};
    StoragePath::reportFileName(true, nullptr);
    QCOMPARE(report.proposal.title, QStringLiteral("StoragePath|Export"));
    QCOMPARE(report.proposal.filters.first(), QStringLiteral("StoragePath|Excel File (*.xlsx)"));
}

QTEST_MAIN(tst_StoragePath)
#include "tst_StoragePath.moc"
