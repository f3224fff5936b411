#include <zolens/MyCamera.h>

#include <QtTest>

#include <atomic>

namespace {

int entriesOf(const QString& directory)
{
    return QDir(directory).entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot).size();
}

qint64 residentBytes()
{
    QFile file(QStringLiteral("/proc/self/statm"));
    const bool opened = file.open(QIODevice::ReadOnly);
    return opened ? file.readAll().split(' ').at(1).toLongLong() * 4096 : 0;
}

} // namespace

class tst_CameraReopening final : public QObject
{
    Q_OBJECT

private slots:
    void opensTwoHundredTimesWithoutLeaking()
    {
        const auto cycle = [] {
            MyCamera camera;
            std::atomic<int> frames{0};
            connect(
                &camera, &MyCamera::getImage, &camera, [&frames](const QImage&) { ++frames; },
                Qt::DirectConnection);
            QVERIFY(camera.open(CWDevice_Simulated, 0, true));
            QCOMPARE(camera.camera->setPreviewSize(0), 0);
            QTRY_VERIFY_WITH_TIMEOUT(frames > 0, 5000);
            camera.close();
        };
        for (int i = 0; i < 20; ++i) {
            cycle();
        }
        const int threads = entriesOf(QStringLiteral("/proc/self/task"));
        const int descriptors = entriesOf(QStringLiteral("/proc/self/fd"));
        const qint64 memory = residentBytes();
        for (int i = 0; i < 200; ++i) {
            cycle();
        }
        QCOMPARE(entriesOf(QStringLiteral("/proc/self/task")), threads);
        QCOMPARE(entriesOf(QStringLiteral("/proc/self/fd")), descriptors);
        // One leaked frame an opening would be 250 MB.
        QVERIFY2(residentBytes() - memory < 24'000'000,
                 qPrintable(QString::number(residentBytes() - memory)));
    }
};

QTEST_GUILESS_MAIN(tst_CameraReopening)
#include "tst_CameraReopening.moc"
