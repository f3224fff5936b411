#include "device/SinkGate.h"
#include "zolens/FrameCollector.h"

#include <QtTest>

#include <future>

using namespace std::chrono_literals;
using zolens::SinkGate;

namespace {

const QSize size(4, 3);

/// A sink that holds up whoever brings it something.
class SlowSink final : public zolens::FrameSink
{
public:
    QImage acquireFrame(const QSize& /*size*/) override
    {
        hold();
        return {};
    }
    void deliver(QImage&& /*frame*/) override { hold(); }

    std::promise<void> entered;
    std::promise<void> release;

private:
    void hold()
    {
        entered.set_value();
        release.get_future().wait();
    }
};

} // namespace

class tst_SinkGate final : public QObject
{
    Q_OBJECT

private slots:
    void letsFramesThrough()
    {
        FrameCollector sink;
        SinkGate gate(&sink);
        QImage frame = gate.acquireFrame(size);
        QCOMPARE(frame.size(), size);
        frame.fill(Qt::red);
        gate.deliver(std::move(frame));
        QCOMPARE(sink.lastFrame().pixelColor(0, 0), QColor(Qt::red));
        gate.modesChanged();
        QCOMPARE(int(sink.modeChanges), 1);
    }

    void touchesTheSinkNoMoreOnceItIsShut()
    {
        FrameCollector sink;
        SinkGate gate(&sink);
        gate.shut();
        QVERIFY(gate.acquireFrame(size).isNull());
        gate.deliver(QImage(size, QImage::Format_RGB32));
        gate.modesChanged();
        QCOMPARE(int(sink.modeChanges), 0);
        QCOMPARE(sink.asked.load(), 0);
        QCOMPARE(sink.count(), 0);
    }

    void shuttingWaitsForACallUnderWay_data()
    {
        QTest::addColumn<bool>("delivering");
        QTest::newRow("asking for a frame") << false;
        QTest::newRow("delivering one") << true;
    }

    void shuttingWaitsForACallUnderWay()
    {
        QFETCH(bool, delivering);
        SlowSink sink;
        SinkGate gate(&sink);
        const auto worker = std::async(std::launch::async, [&gate, delivering] {
            if (delivering)
                gate.deliver(QImage(size, QImage::Format_RGB32));
            else
                gate.acquireFrame(size);
        });
        sink.entered.get_future().wait();
        const auto shutting = std::async(std::launch::async, [&gate] { gate.shut(); });
        const bool waited = shutting.wait_for(100ms) == std::future_status::timeout;
        sink.release.set_value();
        QVERIFY(waited);
        QVERIFY(shutting.wait_for(30s) == std::future_status::ready);
    }
};

QTEST_APPLESS_MAIN(tst_SinkGate)
#include "tst_SinkGate.moc"
