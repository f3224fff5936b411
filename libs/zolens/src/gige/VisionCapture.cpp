#include "VisionCapture.h"

#include "DeviceNames.h"
#include "NetworkBox.h"
#include "StartThread.h"
#include "UsbVision.h"
#include "VisionControls.h"
#include "VisionFormats.h"
#include "VisionLog.h"

#include <poll.h>

#include <thread>
#include <utility>

namespace zolens {
namespace {

using std::chrono::milliseconds;

/// A busy box is asked for so long; a call that is under way then ends within the time that the
/// opening of a camera may take.
constexpr milliseconds openingTime(3500);
constexpr milliseconds comebackTime(1000);
/// Pictures that may wait while one is converted; more would be shown late.
constexpr int mostWaiting = 2;
/// A crowded network costs parts of many pictures in a row. Of a box that sends no whole picture
/// at all, a new start may make something.
constexpr int mostLostInARow = 100;

AravisPointer<ArvCamera> connectTo(VisionSession& session, StreamClock::time_point deadline)
{
    const VisionAddress& address = session.address;
    if (address.type == CWDevice_Usb3Vision)
        return connectToUsbCamera(address.number);
    return connectToBox(address.host, deadline, session.wake);
}

/// As the camera states it, whatever that is.
SensorData dataOf(ArvBuffer& buffer)
{
    std::size_t size = 0;
    const auto* bytes = static_cast<const uchar*>(arv_buffer_get_image_data(&buffer, &size));
    gint padding = 0;
    gint endPadding = 0;
    arv_buffer_get_image_padding(&buffer, &padding, &endPadding);
    return {bytes, size, std::uint32_t(padding)};
}

} // namespace

VisionCapture::VisionCapture(std::shared_ptr<VisionSession> visionSession)
    : session(std::move(visionSession)),
      controls(std::make_shared<VisionControls>())
{
}

VisionCapture::~VisionCapture()
{
    controls->detach();
    if (device && device->isLost())
        release();
}

bool VisionCapture::open()
{
    begun = StreamClock::now();
    if (!connect(begun + openingTime))
        return false;
    describe();
    session->setControls(controls);
    return startInSomeSize();
}

bool VisionCapture::connect(StreamClock::time_point deadline)
{
    auto camera = connectTo(*session, deadline);
    if (!camera)
        return false;
    const auto tell = [about = std::weak_ptr<VisionSession>(session)] {
        if (const auto alive = about.lock())
            alive->wake.ring();
    };
    device = std::make_shared<VisionDevice>(std::move(camera), tell);
    stream = std::make_unique<VisionStream>(device, session->wake);
    if (!offerModes())
        return false;
    controls->attach(device);
    return !session->wake.isCancelled();
}

void VisionCapture::describe()
{
    FeatureAccess features(*device);
    const auto textOf = [&](auto read) {
        const auto text =
            features.attempt([&](GError** error) { return read(features.camera(), error); });
        return plainText(text.value_or(nullptr));
    };
    const bool isBox = session->address.type == CWDevice_NetworkBox;
    session->info.type = session->address.type;
    session->info.index = session->address.number;
    session->info.name =
        deviceName(textOf(arv_camera_get_vendor_name), textOf(arv_camera_get_model_name),
                   isBox ? QStringLiteral("GigE Vision") : QStringLiteral("USB3 Vision"))
            .toStdString();
    session->info.address = session->address.host.toStdString();
}

bool VisionCapture::offerModes()
{
    FeatureAccess features(*device);
    session->offer(visionFormats(features), VideoModes::FirstSize::Largest);
    return !session->modes.sizes().empty();
}

bool VisionCapture::startStream(const VideoMode& mode)
{
    return stream->start(session->modes.format(mode.format), mode.size);
}

bool VisionCapture::startPreview()
{
    const VideoMode asked = session->modes.preview();
    if (!startStream(asked))
        return false;
    running = {asked.format, stream->size()};
    session->correct(asked, running);
    return true;
}

/// Buses and memory may have room for smaller pictures only.
bool VisionCapture::startInSomeSize()
{
    bool started = startPreview();
    while (!started && !device->isLost() && !session->wake.isCancelled() &&
           session->modes.selectSmallerSize())
        started = startPreview();
    return started;
}

/// Takes the preview up, as it was before where the camera refuses the new mode.
bool VisionCapture::resume()
{
    const VideoMode asked = session->modes.preview();
    if (startPreview())
        return true;
    if (device->isLost() || asked == running)
        return false;
    session->correct(asked, running);
    return startPreview();
}

void VisionCapture::run()
{
    for (;;) {
        begun = StreamClock::now();
        const CaptureEnd end = capture();
        if (end == CaptureEnd::Cancelled)
            break;
        if (end == CaptureEnd::LargeStill)
            takeStill();
        if ((end == CaptureEnd::Stalled || !resume()) && !comeBack())
            break;
    }
    qCInfo(visionLog, "%s ended, %llu damaged and %llu dropped frames", session->info.name.c_str(),
           session->damaged.load(), session->dropped.load());
}

/// False when it was cancelled meanwhile.
bool VisionCapture::comeBack()
{
    qCInfo(visionLog, "%s is away", session->info.name.c_str());
    session->away = true;
    session->still.fulfil(QImage());
    do {
        release();
        ++session->restarts;
        const auto time = pause.next(StreamClock::now() - begun);
        if (!session->wake.sleepFor(std::chrono::ceil<milliseconds>(time)))
            return false;
        begun = StreamClock::now();
    } while (!connect(begun + comebackTime) || !resume());
    session->away = false;
    qCInfo(visionLog, "%s is back", session->info.name.c_str());
    return true;
}

/// What the camera does not answer to any more takes seconds, on a thread of its own, or on this
/// one where the system has none left. The box is free for a new connection a moment later if it
/// lives.
void VisionCapture::release()
{
    controls->detach();
    if (!device)
        return;
    device->giveUp();
    std::thread thread =
        startThread([lostStream = std::exchange(stream, nullptr),
                     lostDevice = std::exchange(device, nullptr), bell = session]() mutable {
            lostStream.reset();
            lostDevice.reset();
        });
    if (thread.joinable())
        thread.detach();
}

CaptureEnd VisionCapture::capture()
{
    auto watchdog = FrameWatchdog::startedAt(StreamClock::now(), stream->frameTime());
    lostInARow = 0;
    auto interruption = session->interruption(running);
    for (; !interruption; interruption = session->interruption(running)) {
        if (const auto picture = nextPicture(&watchdog))
            show(*picture);
        else if (isOverdue(watchdog))
            return CaptureEnd::Stalled;
        else
            waitForPicture(watchdog);
    }
    return *interruption;
}

bool VisionCapture::isOverdue(const FrameWatchdog& watchdog) const
{
    return device->isLost() || StreamClock::now() > watchdog.deadline() + controls->exposureTime();
}

/// The oldest one, without those for which there is no time.
VisionStream::Picture VisionCapture::nextPicture(FrameWatchdog* watchdog)
{
    while (auto picture = stream->take()) {
        const bool sound = stream->isSound(*picture);
        lostInARow = sound ? 0 : lostInARow + 1;
        if (lostInARow <= mostLostInARow)
            watchdog->frameArrived(StreamClock::now());
        if (!sound)
            ++session->damaged;
        else if (stream->waiting() > mostWaiting)
            ++session->dropped;
        else
            return picture;
    }
    return nullptr;
}

void VisionCapture::waitForPicture(const FrameWatchdog& watchdog)
{
    pollfd bell = {session->wake.descriptor(), POLLIN, 0};
    const auto deadline = watchdog.deadline() + controls->exposureTime();
    if (poll(&bell, 1, pollTimeUntil(deadline)) > 0)
        session->wake.clear();
}

void VisionCapture::show(ArvBuffer& buffer)
{
    QImage target = session->sink.acquireFrame(stream->size());
    if (session->wantsPreviewStill()) {
        const QImage still = stillOf(buffer);
        session->still.fulfil(still);
    }
    if (!target.isNull() && convert(buffer, &target))
        session->sink.deliver(std::move(target));
}

/// A still picture is kept for long, so it is none of the few that go around.
QImage VisionCapture::stillOf(ArvBuffer& buffer)
{
    QImage still(stream->size(), QImage::Format_RGB32);
    return !still.isNull() && convert(buffer, &still) ? still : QImage();
}

bool VisionCapture::convert(ArvBuffer& buffer, QImage* target)
{
    const SensorFormat* format = findSensorFormat(arv_buffer_get_image_pixel_format(&buffer));
    if (!format ||
        !converter.convert(*format, dataOf(buffer), session->look.orientation(), target)) {
        ++session->damaged;
        return false;
    }
    session->look.apply(target);
    return true;
}

void VisionCapture::takeStill()
{
    session->still.fulfil(startStream(session->modes.still()) ? settledPicture() : QImage());
    stream->stop();
}

QImage VisionCapture::settledPicture()
{
    auto watchdog = FrameWatchdog::startedAt(StreamClock::now(), stream->frameTime());
    const int settling = session->settlingFrames(stream->frameTime());
    int pictures = 0;
    while (session->still.isPending() && !session->wake.isCancelled() && !isOverdue(watchdog)) {
        const auto picture = nextPicture(&watchdog);
        if (picture && ++pictures > settling)
            return stillOf(*picture);
        if (!picture)
            waitForPicture(watchdog);
    }
    return {};
}

} // namespace zolens
