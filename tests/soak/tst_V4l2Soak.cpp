#include "CameraUser.h"
#include "Soak.h"

#include "DeviceClasses.h"
#include "support/fakev4l2/CameraBench.h"
#include "support/fakev4l2/TestPictures.h"

#include <atomic>

namespace {

constexpr int ways = 4;
constexpr int damagedTime = 500;

} // namespace

/// A fake USB camera that stalls, sends damaged frames, loses its buffers or is unplugged.
class tst_V4l2Soak final : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        zolens::setCaptureHost(bench.host());
        plug();
    }

    void staysSoundInUse()
    {
        Soak soak;
        CameraUser user(soak.log(), soak.folder());
        const QString problem = soak.run([&](int number) {
            const bool tryStill = user.isOneIn(2);
            user.open(
                [tryStill](MyCamera& camera) { return camera.open(CWDevice_Uvc, 0, tryStill); });
            user.useAll();
            if (number % ways == 3) {
                unplug(user);
            } else {
                user.record([&] { disturb(number % ways, user); });
                user.close();
            }
            if (bench.system->openHandles() != 0)
                soak.log().problem(QStringLiteral("the device is still open"));
        });
        QVERIFY2(problem.isEmpty(), qPrintable(problem));
    }

private:
    void plug()
    {
        device = CameraBench::webcam();
        device->pictures = [this](quint32 fourcc, const QSize& size, int) {
            const QByteArray good = pictures::quartersAs(fourcc, size);
            return damaging ? good.left(good.size() / 3) : good;
        };
        bench.plug(0, device, "1234", "5678");
    }

    void disturb(int way, CameraUser& user)
    {
        if (way == 0)
            device->stall();
        else if (way == 1)
            device->breakQueue();
        damaging = way == 2;
        QTest::qWait(damagedTime);
        damaging = false;
        user.awaitReturn();
    }

    void unplug(CameraUser& user)
    {
        bench.unplug(0);
        user.closeLost();
        plug();
    }

    CameraBench bench;
    std::shared_ptr<FakeCamera> device;
    std::atomic<bool> damaging{false};
};

int main(int argc, char** argv)
{
    return Soak::main<tst_V4l2Soak>(argc, argv);
}

#include "tst_V4l2Soak.moc"
