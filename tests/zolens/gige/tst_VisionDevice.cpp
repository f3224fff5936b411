#include "ImitatedCamera.h"
#include "gige/VisionDevice.h"

#include <QtTest>

#include <future>
#include <thread>

using zolens::VisionDevice;

namespace {

constexpr std::chrono::milliseconds moment(500);

/// Runs when the object that it is noted at ends.
void noteThread(gpointer thread, GObject*)
{
    *static_cast<std::thread::id*>(thread) = std::this_thread::get_id();
}

} // namespace

/// What a lost camera has its thread tell, on the device of Aravis that needs no camera.
class tst_VisionDevice final : public QObject
{
    Q_OBJECT

private slots:
    void tellsItsLossOnce()
    {
        int losses = 0;
        VisionDevice device(imitatedCamera(), [&] { ++losses; });
        QVERIFY(!device.isLost());
        g_signal_emit_by_name(device.device(), "control-lost");
        device.giveUp();
        QVERIFY(device.isLost());
        QCOMPARE(losses, 1);
    }

    // The thread that tells the loss is one that the end of the device waits for.
    void endsOnTheThreadOfItsOwner()
    {
        std::promise<void> telling;
        std::promise<void> destroyed;
        auto device = std::make_unique<VisionDevice>(imitatedCamera(), [&] {
            telling.set_value();
            destroyed.get_future().wait_for(moment);
        });
        std::thread::id endedOn;
        g_object_weak_ref(G_OBJECT(device->device()), &noteThread, &endedOn);
        std::thread camera(
            [sender = device->device()] { g_signal_emit_by_name(sender, "control-lost"); });
        telling.get_future().wait();
        device.reset();
        destroyed.set_value();
        camera.join();
        QVERIFY(endedOn == std::this_thread::get_id());
    }
};

QTEST_APPLESS_MAIN(tst_VisionDevice)

#include "tst_VisionDevice.moc"
