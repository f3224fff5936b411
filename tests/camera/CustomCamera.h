#pragma once

#include <zolens/MyCamera.h>

#include <QStringList>

#include <map>
#include <memory>

/// A device that has what a test gives it and notes what is written to it. It makes no frames by
/// itself.
class CustomCamera final : public CWCamera
{
public:
    struct Property
    {
        double lowest = 0.0;
        double highest = 100.0;
        double value = 50.0;
        double standard = 50.0;
        bool readable = true;
    };

    std::map<int, Property> properties;
    std::vector<QSize> previews{{640, 480}, {1280, 720}};
    QSize preview{1280, 720};
    std::vector<int> formats{1, 19};
    int format = 1;
    bool still = false;
    std::vector<QSize> stills{{800, 600}, {1600, 1200}};
    QSize stillNow{1600, 1200};
    bool upsideDown = false;
    bool mirrored = false;
    bool automatic = false;
    std::vector<int> balanceModes;
    int balanceMode = CWWhiteBalance_Manual;
    /// Whether a colour temperature that is written ends the automatic mode, as some devices do it.
    bool temperatureEndsAutomatic = false;
    std::vector<int> colorModes;
    std::vector<int> frequencies;
    int frequency = 0;
    /// A device that runs already and whose frames pass for this one's. Null for none.
    std::unique_ptr<CWCamera> frameSource;
    /// "format 1", "size 0", "still 1", "auto on", "balance 2", "12 = 500", "frequency 2" and
    /// "reset 13", in the order of the calls.
    QStringList written;

    /// The first words of what was written, each where it came first.
    QStringList writtenOnceEach() const
    {
        QStringList words;
        for (const QString& call : written)
            words << call.section(QLatin1Char(' '), 0, 0);
        words.removeDuplicates();
        return words;
    }

    void previewSizes(std::vector<QSize>* sizes) override { *sizes = previews; }
    void previewSize(QSize* size) override { *size = preview; }
    void previewFormats(std::vector<int>* values) override { *values = formats; }
    int previewFormat() override { return format; }
    int setPreviewFormat(int index) override
    {
        note(QStringLiteral("format %1").arg(index));
        format = formats.at(static_cast<std::size_t>(index));
        return 0;
    }
    bool hasStillCapture() override { return still; }
    void stillSizes(std::vector<QSize>* sizes) override { *sizes = stills; }
    void stillSize(QSize* size) override { *size = stillNow; }
    void setFlip(bool on) override { upsideDown = on; }
    bool flip() override { return upsideDown; }
    void setMirror(bool on) override { mirrored = on; }
    bool mirror() override { return mirrored; }
    void setAutoExposure(bool on) override
    {
        note(on ? QStringLiteral("auto on") : QStringLiteral("auto off"));
        automatic = on;
    }
    void whiteBalanceModes(std::vector<int>* modes) override { *modes = balanceModes; }
    void setWhiteBalanceMode(int mode) override
    {
        note(QStringLiteral("balance %1").arg(mode));
        balanceMode = mode;
    }
    int whiteBalanceMode() override { return balanceMode; }
    bool isPropertySupported(tagCMProperty id) override { return properties.count(id) > 0; }
    void propertyRange(tagCMProperty id, double* min, double* max, double* step) override
    {
        *min = properties[id].lowest;
        *max = properties[id].highest;
        *step = 1.0;
    }
    void propertyValues(std::vector<int>* values, tagCMProperty) override { *values = colorModes; }
    int getProperty(tagCMProperty id, double* value) override
    {
        ++reads;
        if (!isPropertySupported(id) || !properties[id].readable)
            return -1;
        *value = properties[id].value;
        return 0;
    }
    int setProperty(tagCMProperty id, double value) override
    {
        note(QStringLiteral("%1 = %2").arg(int(id)).arg(value));
        if (!isPropertySupported(id))
            return -1;
        properties[id].value = value;
        if (id == CMProperty_ColorTemperature && temperatureEndsAutomatic)
            balanceMode = CWWhiteBalance_Manual;
        return 0;
    }
    void powerFrequencies(std::vector<int>* values) override { *values = frequencies; }
    int powerFrequency() override { return frequency; }
    void setPowerFrequency(int value) override
    {
        note(QStringLiteral("frequency %1").arg(value));
        frequency = value;
    }
    bool start(zolens::FrameSink*) override { return true; }
    void stop() override
    {
        if (frameSource)
            frameSource->stop();
    }
    QImage captureStill() override { return QImage(); }
    _tag_VideoDeviceInfo deviceInfo() const override { return {}; }

    int reads = 0;

protected:
    int selectPreviewSize(int index) override
    {
        note(QStringLiteral("size %1").arg(index));
        preview = previews.at(static_cast<std::size_t>(index));
        return 0;
    }
    int selectStillSize(int index) override
    {
        note(QStringLiteral("still %1").arg(index));
        stillNow = stills.at(static_cast<std::size_t>(index));
        return 0;
    }
    double defaultValue(tagCMProperty id) override
    {
        note(QStringLiteral("reset %1").arg(int(id)));
        return properties[id].standard;
    }

private:
    void note(const QString& what) { written << what; }
};

/// A camera with a fake device that is open.
struct OpenFake
{
    OpenFake()
    {
        auto made = std::make_unique<CustomCamera>();
        device = made.get();
        camera.camera = std::move(made);
    }

    MyCamera camera;
    CustomCamera* device = nullptr;
};
