#include <zolens/CWCamera.h>

#include <QtTest>

#include <map>

namespace {

/// A device with two preview sizes, one still size and a gain.
class SmallCamera final : public CWCamera
{
public:
    void previewSizes(std::vector<QSize>* sizes) override { *sizes = {{640, 480}, {320, 240}}; }
    void previewSize(QSize* size) override { *size = QSize(640, 480); }
    void previewFormats(std::vector<int>* formats) override { *formats = {0}; }
    int previewFormat() override { return 0; }
    int setPreviewFormat(int index) override { return index == 0 ? 0 : -1; }
    bool hasStillCapture() override { return true; }
    void stillSizes(std::vector<QSize>* sizes) override { *sizes = {{800, 600}}; }
    void stillSize(QSize* size) override { *size = QSize(800, 600); }
    void setFlip(bool) override {}
    bool flip() override { return false; }
    void setMirror(bool) override {}
    bool mirror() override { return false; }
    void setAutoExposure(bool) override {}
    void whiteBalanceModes(std::vector<int>* modes) override { modes->clear(); }
    void setWhiteBalanceMode(int) override {}
    int whiteBalanceMode() override { return CWWhiteBalance_Manual; }
    bool isPropertySupported(tagCMProperty id) override { return id == CMProperty_Gain; }
    void propertyRange(tagCMProperty, double*, double*, double*) override {}
    void propertyValues(std::vector<int>* values, tagCMProperty) override { values->clear(); }
    int getProperty(tagCMProperty id, double* value) override
    {
        *value = written[id];
        return 0;
    }
    int setProperty(tagCMProperty id, double value) override
    {
        written[id] = value;
        return 0;
    }
    void powerFrequencies(std::vector<int>* values) override { values->clear(); }
    int powerFrequency() override { return 0; }
    void setPowerFrequency(int) override {}
    bool start(zolens::FrameSink*) override { return true; }
    void stop() override {}
    QImage captureStill() override { return {}; }
    _tag_VideoDeviceInfo deviceInfo() const override { return {}; }

    std::map<tagCMProperty, double> written;
    std::vector<int> selected;

protected:
    int selectPreviewSize(int index) override
    {
        selected.push_back(index);
        return 0;
    }
    int selectStillSize(int index) override
    {
        selected.push_back(100 + index);
        return 0;
    }
    double defaultValue(tagCMProperty) override { return 2.5; }
};

} // namespace

class tst_CWCamera final : public QObject
{
    Q_OBJECT

private slots:
    void selectsSizesByTheirPosition()
    {
        SmallCamera camera;
        QCOMPARE(camera.setPreviewSize(1), 0);
        QCOMPARE(camera.setStillCaptureSize(0), 0);
        QCOMPARE(camera.selected, (std::vector<int>{1, 100}));
    }

    void refusesPositionsOutsideTheLists()
    {
        SmallCamera camera;
        QVERIFY(camera.setPreviewSize(-1) != 0);
        QVERIFY(camera.setPreviewSize(2) != 0);
        QVERIFY(camera.setStillCaptureSize(1) != 0);
        QVERIFY(camera.selected.empty());
    }

    void resetWritesAndReturnsTheDefault()
    {
        SmallCamera camera;
        QCOMPARE(camera.resetProperty(CMProperty_Gain), 2.5);
        QCOMPARE(camera.written[CMProperty_Gain], 2.5);
    }

    void resetOfAnUnsupportedPropertyWritesNothing()
    {
        SmallCamera camera;
        QCOMPARE(camera.resetProperty(CMProperty_Hue), 0.0);
        QVERIFY(camera.written.empty());
    }
};

QTEST_APPLESS_MAIN(tst_CWCamera)
#include "tst_CWCamera.moc"
