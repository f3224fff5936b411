#include "calibration/CalibrationSession.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

#include <sys/wait.h>
#include <unistd.h>

using namespace CalibrationSession;

namespace {

constexpr const char* openWarning = "Couldn't open calibration file.";

QByteArray contentOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("cannot be opened");
}

QJsonArray recordsIn(const QByteArray& content)
{
    return QJsonDocument::fromJson(content).object().value(QLatin1String("calibrations")).toArray();
}

} // namespace

/// The calibration file: what the model writes, takes and keeps, by hand and over the lives of the
/// program.
class tst_CalibrationFile final : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        setNames();
        QVERIFY(directory.isValid());
    }
    void init() { emptyDefaultFile(); }

    void fileHoldsAllButThePixelRow();
    void emptyListIsSavedAsAnEmptyArray();
    void damagedFilesLeaveThePixelRow_data();
    void damagedFilesLeaveThePixelRow();
    void unopenedFileLeavesTheListAlone();
    void recordsAreTakenAsTheyStand();
    void binaryFormReadsBack();
    void binaryFormIsValidated();
    void loadKeepsTheCheckedRow();

    void listIsSavedWithTheApplication();
    void listIsSavedByAProcessThatExits();
    void loadingIsLoggedWithThePath();
    void damagedDefaultFileIsOverwrittenAtTheEnd();
    void unreadableDefaultFileLeavesThePixelRow();

private:
    QTemporaryDir directory;
};

void tst_CalibrationFile::fileHoldsAllButThePixelRow()
{
    Session session;
    session.model.appendCalibration(
        {QStringLiteral("10x"), 0.25, QStringLiteral("dry"), QStringLiteral("1_\u00b5m")});
    const QString path = directory.filePath(QStringLiteral("export.json"));
    QVERIFY(session.model.save(path, false));
    const QByteArray expected = "{\n"
                                "    \"calibrations\": [\n"
                                "        {\n"
                                "            \"default_unit_key\": \"1_\xc2\xb5m\",\n"
                                "            \"name\": \"10x\",\n"
                                "            \"remark\": \"dry\",\n"
                                "            \"value\": 0.25\n"
                                "        }\n"
                                "    ]\n"
                                "}\n";
    QCOMPARE(contentOf(path), expected);
}

void tst_CalibrationFile::emptyListIsSavedAsAnEmptyArray()
{
    Session session;
    const QString path = directory.filePath(QStringLiteral("empty.json"));
    QVERIFY(session.model.save(path, false));
    const QJsonObject object = QJsonDocument::fromJson(contentOf(path)).object();
    QCOMPARE(object.keys(), QStringList{QStringLiteral("calibrations")});
    QVERIFY(object.value(QLatin1String("calibrations")).isArray());
    QVERIFY(recordsIn(contentOf(path)).isEmpty());
}

void tst_CalibrationFile::damagedFilesLeaveThePixelRow_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("empty object") << QByteArray("{}");
    QTest::newRow("empty file") << QByteArray();
    QTest::newRow("garbage") << QByteArray("\x00\xff\xfe garbage }{", 13);
    QTest::newRow("cut short") << QByteArray("{\"calibrations\": [{\"name\": \"A\"");
    QTest::newRow("array on top") << QByteArray("[{\"name\": \"A\"}]");
    QTest::newRow("list of another type") << QByteArray("{\"calibrations\": \"A\"}");
}

void tst_CalibrationFile::damagedFilesLeaveThePixelRow()
{
    QFETCH(QByteArray, content);
    Session session;
    addAandB(session.model);
    const QString path = directory.filePath(QStringLiteral("damaged.json"));
    write(path, content);
    QVERIFY(session.model.load(path, false));
    QCOMPARE(names(session.model), QStringLiteral("In pixels"));
}

void tst_CalibrationFile::unopenedFileLeavesTheListAlone()
{
    Session session;
    addAandB(session.model);
    QSignalSpy reset(&session.model, &QAbstractItemModel::modelReset);
    QTest::ignoreMessage(QtWarningMsg, openWarning);
    QVERIFY(!session.model.load(directory.filePath(QStringLiteral("missing.json")), false));
    QTest::ignoreMessage(QtWarningMsg, openWarning);
    QVERIFY(!session.model.save(directory.filePath(QStringLiteral("no/such/dir.json")), false));
    QCOMPARE(names(session.model), QStringLiteral("In pixels A B"));
    QCOMPARE(reset.size(), 0);
}

void tst_CalibrationFile::recordsAreTakenAsTheyStand()
{
    Session session;
    const QString path = directory.filePath(QStringLiteral("odd.json"));
    write(path, "{\"calibrations\": [{\"name\": \"A\", \"value\": 0},"
                "{\"value\": 1e-6, \"name\": \"a\", \"default_unit_key\": \"9_ly\"}, 7]}");
    QVERIFY(session.model.load(path, false));
    QCOMPARE(names(session.model), QStringLiteral("In pixels A a "));
    QCOMPARE(session.model.calibrationAt(1).value, 0.0);
    QCOMPARE(session.model.calibrationAt(2).defaultUnitKey, QStringLiteral("9_ly"));
    QVERIFY(!session.model.calibrationAt(3).isValid());
}

void tst_CalibrationFile::binaryFormReadsBack()
{
    Session session;
    addAandB(session.model);
    const QString path = directory.filePath(QStringLiteral("export.dat"));
    QVERIFY(session.model.save(path, true));
    QVERIFY(contentOf(path).startsWith("qbjs"));
    QVERIFY(session.model.removeRows(1, 2));
    QVERIFY(session.model.load(path, true));
    QCOMPARE(names(session.model), QStringLiteral("In pixels A B"));
    QCOMPARE(session.model.calibrationAt(2).value, 1e-6);
}

void tst_CalibrationFile::binaryFormIsValidated()
{
    Session session;
    addAandB(session.model);
    const QString path = directory.filePath(QStringLiteral("broken.dat"));
    QVERIFY(session.model.save(path, true));
    write(path, contentOf(path).chopped(8));
    QVERIFY(session.model.load(path, true));
    QCOMPARE(names(session.model), QStringLiteral("In pixels"));
}

void tst_CalibrationFile::loadKeepsTheCheckedRow()
{
    Session session;
    addAandB(session.model);
    session.model.checkRow(2);
    const QString path = directory.filePath(QStringLiteral("same.json"));
    QVERIFY(session.model.save(path, false));
    QVERIFY(session.model.load(path, false));
    QCOMPARE(checkedRows(session.model), QVector<int>{2});
}

void tst_CalibrationFile::listIsSavedWithTheApplication()
{
    {
        Session session;
        addAandB(session.model);
        session.model.checkRow(2);
        QVERIFY(recordsIn(contentOf(defaultFile())).isEmpty());
    }
    QCOMPARE(recordsIn(contentOf(defaultFile())).size(), 2);
    Session next;
    QCOMPARE(names(next.model), QStringLiteral("In pixels A B"));
    QCOMPARE(checkedRows(next.model), QVector<int>{0});
}

void tst_CalibrationFile::listIsSavedByAProcessThatExits()
{
    std::fflush(nullptr);
    const pid_t child = fork();
    if (child == 0) {
        // Neither the application object nor the test ends here, only the process.
        auto* session = new Session;
        addAandB(session->model);
        std::exit(0);
    }
    int status = 0;
    QCOMPARE(waitpid(child, &status, 0), child);
    QVERIFY(WIFEXITED(status));
    QCOMPARE(recordsIn(contentOf(defaultFile())).size(), 2);
}

void tst_CalibrationFile::loadingIsLoggedWithThePath()
{
    const QString message = QStringLiteral("Loading calibration file ") + defaultFile();
    QTest::ignoreMessage(QtDebugMsg, qPrintable(message));
    Session session;
    QCOMPARE(session.model.rowCount(), 1);
}

void tst_CalibrationFile::damagedDefaultFileIsOverwrittenAtTheEnd()
{
    write(defaultFile(), "not a calibration file");
    {
        Session session;
        QCOMPARE(session.model.rowCount(), 1);
    }
    QVERIFY(QJsonDocument::fromJson(contentOf(defaultFile())).isObject());
}

void tst_CalibrationFile::unreadableDefaultFileLeavesThePixelRow()
{
    // A directory of the file's name can be neither read nor written, not even by root.
    QVERIFY(QFile::remove(defaultFile()));
    QVERIFY(QDir().mkpath(defaultFile()));
    QTest::ignoreMessage(QtWarningMsg, openWarning);
    {
        Session session;
        QCOMPARE(names(session.model), QStringLiteral("In pixels"));
        addAandB(session.model);
        QTest::ignoreMessage(QtWarningMsg, openWarning);
    }
    QVERIFY(QFileInfo(defaultFile()).isDir());
}

QTEST_APPLESS_MAIN(tst_CalibrationFile)
#include "tst_CalibrationFile.moc"
