#include "Webcam.h"

#include "ColorChart.h"
#include "support/fakev4l2/TestPictures.h"

#include <array>
#include <cmath>
#include <tuple>

namespace {

constexpr int bestExposure = 250;     ///< With the least gain; as the control counts it.
constexpr int lampTemperature = 4600; ///< In kelvins.
constexpr double gainStepsPerDoubling = 25.0;
constexpr double pi = 3.14159265358979323846;
constexpr int framesPerPosition = 3;

constexpr std::array<quint32, 10> visibleControls = {
    V4L2_CID_BRIGHTNESS,    V4L2_CID_CONTRAST,
    V4L2_CID_SATURATION,    V4L2_CID_HUE,
    V4L2_CID_GAMMA,         V4L2_CID_GAIN,
    V4L2_CID_SHARPNESS,     V4L2_CID_WHITE_BALANCE_TEMPERATURE,
    V4L2_CID_EXPOSURE_AUTO, V4L2_CID_EXPOSURE_ABSOLUTE};

double amplification(const FakeControls& controls)
{
    return std::exp2(controls.value(V4L2_CID_GAIN) / gainStepsPerDoubling);
}

void chooseByItself(FakeControls& controls)
{
    if (controls.value(V4L2_CID_EXPOSURE_AUTO) == V4L2_EXPOSURE_APERTURE_PRIORITY)
        controls.choose(V4L2_CID_EXPOSURE_ABSOLUTE,
                        int(std::lround(bestExposure / amplification(controls))));
    if (controls.value(V4L2_CID_AUTO_WHITE_BALANCE) == 1)
        controls.choose(V4L2_CID_WHITE_BALANCE_TEMPERATURE, lampTemperature);
}

CameraLook lookOf(const FakeControls& controls)
{
    CameraLook look;
    look.light =
        controls.value(V4L2_CID_EXPOSURE_ABSOLUTE) * amplification(controls) / double(bestExposure);
    look.warmth =
        std::sqrt(double(controls.value(V4L2_CID_WHITE_BALANCE_TEMPERATURE)) / lampTemperature);
    look.gamma = controls.value(V4L2_CID_GAMMA) / 100.0;
    look.contrast = controls.value(V4L2_CID_CONTRAST) / 32.0;
    look.brightness = controls.value(V4L2_CID_BRIGHTNESS) / 200.0;
    look.saturation = controls.value(V4L2_CID_SATURATION) / 64.0;
    look.hue = controls.value(V4L2_CID_HUE) * pi / 180.0;
    look.sharpness = (controls.value(V4L2_CID_SHARPNESS) + 2.0) / 8.0;
    return look;
}

/// The frames of one round of the ball are kept, until a control, the format or the size changes.
class Frames final
{
public:
    explicit Frames(FakeControls& cameraControls) : controls(cameraControls) {}

    QByteArray frame(quint32 fourcc, const QSize& size, int number)
    {
        chooseByItself(controls);
        forgetUnlessSame(fourcc, size);
        const int position = number / framesPerPosition % ColorChart::positions;
        QByteArray& data = round[std::size_t(position)];
        if (data.isEmpty())
            data = encoded(fourcc, chart.picture(size, lookOf(controls), position));
        return data;
    }

private:
    using Values = std::array<int, visibleControls.size()>;

    void forgetUnlessSame(quint32 fourcc, const QSize& size)
    {
        Values values = {};
        std::transform(visibleControls.begin(), visibleControls.end(), values.begin(),
                       [this](quint32 id) { return controls.value(id); });
        const auto now = std::make_tuple(fourcc, size.width(), size.height(), values);
        if (now == made)
            return;
        made = now;
        round.fill({});
    }

    static QByteArray encoded(quint32 fourcc, const QImage& picture)
    {
        return fourcc == V4L2_PIX_FMT_MJPEG ? pictures::jpeg(picture) : pictures::yuyv(picture);
    }

    FakeControls& controls;
    ColorChart chart;
    std::tuple<quint32, int, int, Values> made;
    std::array<QByteArray, ColorChart::positions> round;
};

void addClass(FakeControls* controls, quint32 id)
{
    controls->add({id,
                   V4L2_CTRL_TYPE_CTRL_CLASS,
                   0,
                   0,
                   0,
                   0,
                   0,
                   {},
                   V4L2_CTRL_FLAG_READ_ONLY | V4L2_CTRL_FLAG_WRITE_ONLY});
}

void addPictureControls(FakeControls* controls)
{
    addClass(controls, V4L2_CID_USER_CLASS);
    controls->addInteger(V4L2_CID_BRIGHTNESS, -64, 64, 0);
    controls->addInteger(V4L2_CID_CONTRAST, 0, 64, 32);
    controls->addInteger(V4L2_CID_SATURATION, 0, 128, 64);
    controls->addInteger(V4L2_CID_HUE, -40, 40, 0);
    controls->addBoolean(V4L2_CID_AUTO_WHITE_BALANCE, true);
    controls->addInteger(V4L2_CID_GAMMA, 72, 500, 100);
    controls->addInteger(V4L2_CID_GAIN, 0, 100, 0);
    controls->addMenu(V4L2_CID_POWER_LINE_FREQUENCY, {0, 1, 2}, 1);
    controls->addInteger(V4L2_CID_WHITE_BALANCE_TEMPERATURE, 2800, 6500, lampTemperature);
    controls->addInteger(V4L2_CID_SHARPNESS, 0, 6, 3);
    controls->addInteger(V4L2_CID_BACKLIGHT_COMPENSATION, 0, 2, 1);
}

void addLensControls(FakeControls* controls)
{
    addClass(controls, V4L2_CID_CAMERA_CLASS);
    controls->addMenu(V4L2_CID_EXPOSURE_AUTO, {1, 3}, 3);
    controls->addInteger(V4L2_CID_EXPOSURE_ABSOLUTE, 3, 2047, bestExposure);
    controls->addBoolean(V4L2_CID_EXPOSURE_AUTO_PRIORITY, false);
    controls->addInteger(V4L2_CID_FOCUS_ABSOLUTE, 0, 250, 0);
    controls->addInteger(V4L2_CID_ZOOM_ABSOLUTE, 100, 500, 100);
}

} // namespace

std::shared_ptr<FakeCamera> makeWebcam()
{
    auto camera = std::make_shared<FakeCamera>();
    camera->name = "HD USB Camera: HD USB Camera";
    camera->formats = {
        {V4L2_PIX_FMT_MJPEG, {{1280, 720}, {640, 480}, {800, 600}, {320, 240}}, {}},
        {V4L2_PIX_FMT_YUYV, {{640, 480}, {320, 240}}, {}},
    };
    addPictureControls(&camera->controls);
    addLensControls(&camera->controls);
    const auto frames = std::make_shared<Frames>(camera->controls);
    camera->pictures = [frames](quint32 fourcc, const QSize& size, int number) {
        return frames->frame(fourcc, size, number);
    };
    return camera;
}
