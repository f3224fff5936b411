#include "CameraUser.h"

#include "support/CameraValues.h"
#include "support/TimeLimits.h"
#include "zolens/recording/RecordedVideo.h"

#include <QDir>
#include <QtTest>

#include <algorithm>

namespace {

/// Of a still, for which the library promises no time.
constexpr int stillLimit = 15000;
/// Of all other calls of the GUI thread, two for the device among them.
constexpr int callLimit = 1000 + timelimits::slack;
constexpr int framesLimit = 30000;
/// Of a recording that the encoder was late with when its time to stop had passed.
constexpr int completionLimit = 15000;
constexpr int returnLimit = 20000;

/// More than can have been on their way before.
constexpr int fewestRecordedFrames = 5;
constexpr int mostRecordedFrames = 25;
constexpr int recordingNames = 3;
constexpr int pauseTime = 250;

constexpr tagCMProperty properties[] = {
    CMProperty_Brightness, CMProperty_Contrast,     CMProperty_Hue,
    CMProperty_Saturation, CMProperty_Gamma,        CMProperty_Sharpness,
    CMProperty_Gain,       CMProperty_ExposureTime, CMProperty_ExposureTarget,
    CMProperty_RedGain,    CMProperty_GreenGain,    CMProperty_BlueGain,
    CMProperty_ColorMode,  CMProperty_Denoise,      CMProperty_ColorTemperature,
};

constexpr int attempts = 4;

/// On a busy machine a device's answer can come later than the library waits for it.
bool tryAgain(const std::function<bool()>& action)
{
    constexpr int attemptPause = 100;
    for (int attempt = 1; attempt < attempts; ++attempt) {
        if (action())
            return true;
        QTest::qWait(attemptPause);
    }
    return action();
}

} // namespace

CameraUser::CameraUser(SoakLog& soakLog, const QString& recordingFolder)
    : log(soakLog),
      folder(recordingFolder)
{
}

void CameraUser::open(const Opening& opening)
{
    camera = std::make_unique<MyCamera>();
    viewer = std::make_unique<QObject>();
    connect(camera.get(), &MyCamera::getImage, viewer.get(), [this](const QImage& image) {
        shown = image;
        ++frames;
    });
    bool opened = false;
    for (int attempt = 1; attempt <= attempts && !opened; ++attempt)
        log.run("open", timelimits::start, [&] {
            opened = opening(*camera);
            return opened || attempt < attempts;
        });
    awaitFrames("first frames", 3);
}

void CameraUser::useAll()
{
    std::vector<void (CameraUser::*)()> uses = {
        &CameraUser::changeSize, &CameraUser::changeFormat, &CameraUser::useProperties,
        &CameraUser::turn,       &CameraUser::snap,         &CameraUser::recordUse,
        &CameraUser::pause,
    };
    std::shuffle(uses.begin(), uses.end(), random);
    for (const auto& use : uses) {
        if (log.problem().isEmpty())
            (this->*use)();
    }
}

void CameraUser::changeSize()
{
    std::vector<QSize> sizes;
    log.run("list of sizes", callLimit, [&] {
        camera->camera->previewSizes(&sizes);
        return !sizes.empty();
    });
    const int index = choose(std::max(1, int(sizes.size())));
    log.run("change of size", callLimit,
            [&] { return camera->camera->setPreviewSize(index) == 0; });
    log.run("frames of the size", framesLimit, [&] { return seeSize(sizes[std::size_t(index)]); });
}

void CameraUser::changeFormat()
{
    std::vector<int> formats;
    log.run("list of formats", callLimit, [&] {
        camera->camera->previewFormats(&formats);
        return !formats.empty();
    });
    const int index = choose(std::max(1, int(formats.size())));
    log.run("change of format", callLimit,
            [&] { return camera->camera->setPreviewFormat(index) == 0; });
    awaitFrames("frames of the format", 5);
}

void CameraUser::useProperties()
{
    CWCamera& device = *camera->camera;
    log.run("automatic off", callLimit, [&] {
        device.setAutoExposure(false);
        device.setWhiteBalanceMode(CWWhiteBalance_Manual);
        return true;
    });
    for (const tagCMProperty id : properties) {
        if (device.isPropertySupported(id))
            useProperty(id);
    }
    log.run("automatic on", callLimit, [&] {
        device.setAutoExposure(true);
        device.setWhiteBalanceMode(CWWhiteBalance_OnePush);
        device.setWhiteBalanceMode(CWWhiteBalance_Auto);
        return true;
    });
}

void CameraUser::useProperty(tagCMProperty id)
{
    CWCamera& device = *camera->camera;
    const cameravalues::Range range = cameravalues::rangeOf(device, id);
    const double wanted = range.lowest + (range.highest - range.lowest) * random.generateDouble();
    double value = range.lowest - 1.0;
    log.run("property set", callLimit,
            [&] { return tryAgain([&] { return device.setProperty(id, wanted) == 0; }); });
    log.run("property read", callLimit,
            [&] { return tryAgain([&] { return device.getProperty(id, &value) == 0; }); });
    if (value < range.lowest || value > range.highest)
        log.problem(QStringLiteral("property %1 is %2").arg(id).arg(value));
    log.run("property text", callLimit, [&] {
        return tryAgain([&] { return !camera->getFormatedProperty(id, false).isEmpty(); });
    });
    log.run("property reset", callLimit, [&] {
        device.resetProperty(id);
        return true;
    });
}

void CameraUser::turn()
{
    const bool flip = isOneIn(2);
    const bool mirror = isOneIn(2);
    log.run("flip and mirror", callLimit, [&] {
        camera->camera->setFlip(flip);
        camera->camera->setMirror(mirror);
        return camera->camera->flip() == flip && camera->camera->mirror() == mirror;
    });
    awaitFrames("turned frames", 2);
}

void CameraUser::snap()
{
    log.run("still", stillLimit, [this] { return !camera->snap().isNull(); });
    awaitFrames("frames after a still", 2);
}

void CameraUser::recordUse()
{
    record([this] {
        if (isOneIn(3))
            changeSize();
    });
}

void CameraUser::record(const std::function<void()>& meanwhile)
{
    startRecording();
    if (log.problem().isEmpty())
        meanwhile();
    log.run("end of recording", timelimits::recording, [this] {
        camera->stopRecording();
        return true;
    });
    checkRecordings();
}

/// Names come again while the earlier file is still worked on.
void CameraUser::startRecording()
{
    const QString path = QStringLiteral("%1/%2.mp4").arg(folder).arg(choose(recordingNames));
    const int wanted = random.bounded(fewestRecordedFrames, mostRecordedFrames);
    recordings.insert(path);
    log.run("start of recording", callLimit, [&] { return camera->startRecording(path); });
    awaitFrames("recorded frames", wanted);
}

void CameraUser::pause()
{
    camera->pause = true;
    QTest::qWait(pauseTime);
    const int before = frames;
    QTest::qWait(pauseTime);
    log.run("pause", callLimit, [&] { return frames == before; });
    camera->pause = false;
    awaitFrames("frames after a pause", 2);
}

void CameraUser::awaitReturn()
{
    log.run("return of frames", returnLimit, [this] { return seeFrames(5, returnLimit); });
}

void CameraUser::close()
{
    const bool recording = log.problem().isEmpty() && isOneIn(2);
    if (recording)
        startRecording();
    camera->pause = isOneIn(4);
    end(recording);
}

void CameraUser::closeLost()
{
    end(false);
}

void CameraUser::end(bool recording)
{
    log.run(recording ? "close while recording" : "close",
            recording ? timelimits::recording + timelimits::stop : timelimits::stop, [this] {
                camera->close();
                return true;
            });
    log.run("destruction", timelimits::rewriting, [this] {
        camera.reset();
        return true;
    });
    camera.reset();
    viewer.reset();
    shown = QImage();
    checkRecordings();
    for (const QString& path : recordings)
        QFile::remove(path);
    recordings.clear();
}

void CameraUser::checkRecordings()
{
    for (const QString& path : recordings) {
        RecordedVideo video;
        const bool plays = QTest::qWaitFor(
            [&] {
                video = RecordedVideo::read(path);
                return video.readable && !video.frames.empty();
            },
            completionLimit);
        if (!plays)
            log.problem(QStringLiteral("%1 of %2 bytes plays %3 frames")
                            .arg(path)
                            .arg(QFileInfo(path).size())
                            .arg(video.frames.size()));
    }
}

void CameraUser::awaitFrames(const char* what, int count)
{
    log.run(what, framesLimit, [&] { return seeFrames(count, framesLimit); });
}

bool CameraUser::seeFrames(int count, int limit) const
{
    const int wanted = frames + count;
    return QTest::qWaitFor([&] { return frames >= wanted; }, limit);
}

bool CameraUser::seeSize(const QSize& size) const
{
    return QTest::qWaitFor([&] { return shown.size() == size; }, framesLimit);
}
