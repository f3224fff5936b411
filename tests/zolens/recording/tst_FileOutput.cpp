#include "recording/FileOutput.h"

#include "support/FileSizeLimit.h"

#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QtTest>

using zolens::FileOutput;

namespace {

/// Bytes that do not repeat soon.
QByteArray pattern(int size)
{
    QByteArray bytes(size, Qt::Uninitialized);
    quint32 state = 1;
    for (char& byte : bytes) {
        state = state * 1664525U + 1013904223U;
        byte = char(state >> 24);
    }
    return bytes;
}

void put(const FileOutput& output, const QByteArray& bytes)
{
    avio_write(output.context(), reinterpret_cast<const uchar*>(bytes.constData()), bytes.size());
}

} // namespace

class tst_FileOutput final : public QObject
{
    Q_OBJECT

private:
    QByteArray content() const
    {
        QFile other(path);
        return other.open(QIODevice::ReadOnly) ? other.readAll() : QByteArray("unreadable");
    }

    QFile& openFile()
    {
        file = std::make_unique<QFile>(path);
        file->open(QIODevice::WriteOnly | QIODevice::Unbuffered);
        return *file;
    }

    std::unique_ptr<QTemporaryDir> folder;
    QString path;
    std::unique_ptr<QFile> file;

private slots:
    void init()
    {
        folder = std::make_unique<QTemporaryDir>();
        path = folder->filePath(QStringLiteral("output"));
    }

    void cleanup() { file.reset(); }

    void handsOnWhatIsHeldBackWhenFlushed()
    {
        FileOutput output(openFile());
        put(output, "ten bytes.");
        QCOMPARE(content(), QByteArray());
        QVERIFY(output.flush());
        QCOMPARE(content(), QByteArray("ten bytes."));
        QVERIFY(output.flush());
        QCOMPARE(content(), QByteArray("ten bytes."));
    }

    void writesAnyAmountInOrder()
    {
        // Pieces below, at and beyond what is held back at most.
        const QByteArray bytes = pattern(300000);
        FileOutput output(openFile());
        int written = 0;
        for (const int piece : {1, 65535, 65536, 65537, 3, 100000, 0})
            put(output, bytes.mid(std::exchange(written, written + piece), piece));
        put(output, bytes.mid(written));
        QVERIFY(output.flush());
        QVERIFY(content() == bytes);
    }

    void writesWhereTheFileStands()
    {
        QFile& target = openFile();
        target.write("before ");
        FileOutput output(target);
        put(output, "after");
        QVERIFY(output.flush());
        QCOMPARE(content(), QByteArray("before after"));
    }

    void writesAtAnyPlace()
    {
        FileOutput output(openFile());
        AVIOContext* const context = output.context();
        QVERIFY(context->seekable & AVIO_SEEKABLE_NORMAL);
        put(output, "0123456789");
        QCOMPARE(avio_seek(context, 2, SEEK_SET), 2);
        put(output, "ab");
        QCOMPARE(avio_seek(context, 3, SEEK_CUR), 7);
        put(output, "c");
        QCOMPARE(avio_tell(context), 8);
        QCOMPARE(avio_seek(context, 12, SEEK_SET), 12);
        put(output, "end");
        QVERIFY(output.flush());
        QCOMPARE(avio_size(context), 15);
        QCOMPARE(content(), QByteArray("01ab456c89\0\0end", 15));
    }

    void countsPlacesFromWhereItIsTold_data()
    {
        QTest::addColumn<int>("offset");
        QTest::addColumn<int>("whence");
        QTest::addColumn<int>("answer");
        QTest::addColumn<int>("place");
        // The file has ten bytes and stands at the sixth.
        QTest::newRow("begin") << 0 << SEEK_SET << 0 << 0;
        QTest::newRow("from the begin") << 4 << SEEK_SET << 4 << 4;
        QTest::newRow("here") << 0 << SEEK_CUR << 6 << 6;
        QTest::newRow("onwards") << 3 << SEEK_CUR << 9 << 9;
        QTest::newRow("back") << -2 << SEEK_CUR << 4 << 4;
        QTest::newRow("end") << 0 << SEEK_END << 10 << 10;
        QTest::newRow("before the end") << -3 << SEEK_END << 7 << 7;
        QTest::newRow("beyond the end") << 5 << SEEK_END << 15 << 15;
        QTest::newRow("size") << 0 << AVSEEK_SIZE << 10 << 6;
        QTest::newRow("size, whatever else is asked") << 3 << (AVSEEK_SIZE | SEEK_END) << 10 << 6;
        QTest::newRow("before the begin") << -1 << SEEK_SET << AVERROR(EIO) << 6;
    }

    void countsPlacesFromWhereItIsTold()
    {
        QFETCH(int, offset);
        QFETCH(int, whence);
        QFETCH(int, answer);
        QFETCH(int, place);
        QFile& target = openFile();
        target.write("0123456789");
        target.seek(6);
        const FileOutput output(target);
        AVIOContext* const context = output.context();
        QCOMPARE(context->seek(context->opaque, offset, whence), int64_t(answer));
        QCOMPARE(target.pos(), qint64(place));
    }

    void tellsEverAfterThatAWriteFailed()
    {
        constexpr int room = 70000;
        QFile& target = openFile();
        FileOutput output(target);
        const QByteArray bytes = pattern(room + 1);
        {
            const FileSizeLimit limit(room);
            put(output, bytes.left(room));
            QVERIFY(output.flush());
            put(output, bytes.mid(room));
            QVERIFY(!output.flush());
        }
        put(output, "there is room again");
        QVERIFY(!output.flush());
        QVERIFY(content() == bytes.left(room));
    }

    void aWriteThatIsCutShortHasFailed()
    {
        FileOutput output(openFile());
        const FileSizeLimit limit(1000);
        put(output, pattern(1500));
        QVERIFY(!output.flush());
        QVERIFY(content() == pattern(1000));
    }

    void tellsWhenTheFileTakesNothing()
    {
        QFile full(QStringLiteral("/dev/full"));
        QVERIFY(full.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
        FileOutput output(full);
        QVERIFY(output.flush());
        put(output, "x");
        QVERIFY(!output.flush());
    }

    void tellsWhenTheFileIsNotOpenForWriting()
    {
        openFile().close();
        file->open(QIODevice::ReadOnly);
        FileOutput output(*file);
        put(output, "x");
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("ReadOnly device")));
        QVERIFY(!output.flush());
        QCOMPARE(content(), QByteArray());
    }
};

QTEST_APPLESS_MAIN(tst_FileOutput)
#include "tst_FileOutput.moc"
