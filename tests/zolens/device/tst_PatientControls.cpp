#include "device/CaptureSession.h"
#include "device/PatientControls.h"

#include <QElapsedTimer>
#include <QtTest>

#include <mutex>
#include <thread>

using namespace std::chrono_literals;
using zolens::CaptureSession;
using zolens::DeviceControls;
using zolens::PatientControls;

namespace {

/// A device with all properties, each of which answers after a while.
class SlowControls final : public DeviceControls
{
public:
    explicit SlowControls(std::chrono::milliseconds answerTime) : time(answerTime)
    {
        for (int id = CMProperty_Brightness; id <= CMProperty_Gamma; ++id)
            answers.noteValue(tagCMProperty(id), id + 0.5);
        answers.noteWhiteBalanceMode(CWWhiteBalance_Auto);
        answers.notePowerFrequency(2);
    }

    std::optional<Range> range(tagCMProperty) const override { return Range{0, 9, 1, 0}; }
    std::vector<int> whiteBalanceModes() const override { return {}; }
    std::vector<int> powerFrequencies() const override { return {}; }

    std::optional<double> read(tagCMProperty) override
    {
        std::this_thread::sleep_for(time);
        ++asked;
        return 7;
    }
    bool write(tagCMProperty id, double value) override
    {
        std::this_thread::sleep_for(time);
        const std::lock_guard<std::mutex> lock(mutex);
        written.push_back({id, value});
        return value >= 0;
    }
    void setAutoExposure(bool on) override { write(CMProperty_ExposureTime, on); }
    void setWhiteBalanceMode(int) override {}
    int whiteBalanceMode() override { return int(*read(CMProperty_RedGain)); }
    int powerFrequency() override { return int(*read(CMProperty_RedGain)); }
    void setPowerFrequency(int) override {}
    std::chrono::microseconds exposureTime() const override { return {}; }

    std::vector<std::pair<int, double>> all()
    {
        const std::lock_guard<std::mutex> lock(mutex);
        return written;
    }

    const std::chrono::milliseconds time;
    std::atomic<int> asked{0};

private:
    std::mutex mutex;
    std::vector<std::pair<int, double>> written;
};

using Written = std::vector<std::pair<int, double>>;

} // namespace

class tst_PatientControls final : public QObject
{
    Q_OBJECT

private:
    std::shared_ptr<CaptureSession> session;
    std::shared_ptr<SlowControls> device;

    void plug(std::chrono::milliseconds answerTime)
    {
        session = std::make_shared<CaptureSession>(nullptr);
        device = std::make_shared<SlowControls>(answerTime);
        session->setControls(device);
    }

private slots:
    void readsTheDevice()
    {
        plug(0ms);
        PatientControls controls(session);
        QCOMPARE(controls.read(CMProperty_Hue).value_or(-1), 7.0);
        QCOMPARE(controls.whiteBalanceMode(), 7);
        QCOMPARE(controls.powerFrequency(), 7);
    }

    void tellsWhatTheDeviceRefuses()
    {
        plug(0ms);
        PatientControls controls(session);
        QVERIFY(controls.write(CMProperty_Hue, 1));
        QVERIFY(!controls.write(CMProperty_Hue, -1));
    }

    void withoutADeviceThereIsNothing()
    {
        plug(0ms);
        session->setControls(nullptr);
        PatientControls controls(session);
        QVERIFY(!controls.read(CMProperty_Hue));
        QVERIFY(!controls.write(CMProperty_Hue, 1));
        QCOMPARE(controls.whiteBalanceMode(), int(CWWhiteBalance_Manual));
        QCOMPARE(controls.powerFrequency(), 0);
    }

    // A camera that needs 200 ms for each answer, and a panel that asks for thirty.
    void manySlowAnswersAreNotWaitedForAndTheLastOnesStandIn()
    {
        plug(200ms);
        PatientControls controls(session);
        QElapsedTimer timer;
        timer.start();
        QCOMPARE(controls.read(CMProperty_Hue).value_or(-1), 7.0);
        for (int i = 0; i < 30; ++i)
            controls.read(CMProperty_Contrast);
        QCOMPARE(controls.read(CMProperty_Hue).value_or(-1), 2.5);
        QCOMPARE(controls.whiteBalanceMode(), int(CWWhiteBalance_Auto));
        QCOMPARE(controls.powerFrequency(), 2);
        QVERIFY2(timer.elapsed() < 2500, qPrintable(QString::number(timer.elapsed())));
        QVERIFY2(device->asked < 10, "questions pile up");
    }

    void asksAgainWhenTimeHasPassed()
    {
        plug(600ms);
        PatientControls controls(session);
        QCOMPARE(controls.read(CMProperty_Hue).value_or(-1), 2.5);
        QTRY_COMPARE(int(device->asked), 1);
        controls.read(CMProperty_Hue);
        QTRY_COMPARE(int(device->asked), 2);
        controls.read(CMProperty_Hue);
        QCOMPARE(int(device->asked), 2);
        QTRY_VERIFY_WITH_TIMEOUT(controls.read(CMProperty_Hue).has_value() && device->asked > 2,
                                 10000);
    }

    // As by a slider that is drawn while the camera hangs.
    void whatIsSetMeanwhileIsSetAtLast()
    {
        plug(600ms);
        PatientControls controls(session);
        QElapsedTimer timer;
        timer.start();
        for (int value = 0; value < 50; ++value)
            QVERIFY(controls.write(CMProperty_Hue, value));
        controls.setAutoExposure(false);
        controls.setAutoExposure(true);
        QVERIFY2(timer.elapsed() < 2500, qPrintable(QString::number(timer.elapsed())));
        const Written expected = {
            {CMProperty_Hue, 0}, {CMProperty_Hue, 49}, {CMProperty_ExposureTime, 1}};
        QTRY_COMPARE_WITH_TIMEOUT(device->all().size(), expected.size(), 10000);
        QCOMPARE(device->all(), expected);
    }
};

QTEST_GUILESS_MAIN(tst_PatientControls)
#include "tst_PatientControls.moc"
