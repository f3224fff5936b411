#include "LiveCapture.h"

#include "MicroscopePictures.h"
#include "support.h"

namespace bench {

void FrameCount::add(int number)
{
    const std::lock_guard<std::mutex> lock(mutex);
    ++seen;
    if (last >= 0) {
        const int step = (number - last + period) % period;
        ordered = ordered && step > 0 && step < period / 2;
        missing += ordered ? step - 1 : 0;
    }
    last = number;
}

void FrameCount::restart()
{
    const std::lock_guard<std::mutex> lock(mutex);
    last = -1;
    seen = 0;
    missing = 0;
    ordered = true;
}

int FrameCount::frames() const
{
    const std::lock_guard<std::mutex> lock(mutex);
    return seen;
}

int FrameCount::lost() const
{
    const std::lock_guard<std::mutex> lock(mutex);
    return missing;
}

bool FrameCount::isOrdered() const
{
    const std::lock_guard<std::mutex> lock(mutex);
    return ordered;
}

LiveCapture::LiveCapture(const std::vector<QByteArray>& jpegs, const QSize& size,
                         int framesPerSecond)
    : painted(int(jpegs.size())),
      delivery(
          [this](const QImage& image) {
              QMetaObject::invokeMethod(
                  &view, [this, image] { paint(image); }, Qt::QueuedConnection);
          },
          paused),
      system(std::make_shared<TimedV4l2>(machine.system))
{
    view.setFrameShape(QFrame::NoFrame);
    view.move(0, 0);
    show(view);
    view.resize(viewport + view.size() - view.viewport()->size());
    const auto device = std::make_shared<FakeCamera>();
    device->formats = {{V4L2_PIX_FMT_MJPEG, {size}, {}}};
    device->framesPerSecond = framesPerSecond;
    device->pictures = [jpegs](quint32, const QSize&, int number) {
        return jpegs[std::size_t(number) % jpegs.size()];
    };
    machine.plug(0, device, "1234", "5678");
}

LiveCapture::~LiveCapture()
{
    camera.reset();
}

bool LiveCapture::start()
{
    zolens::V4l2Address address = machine.address();
    address.host.system = system;
    camera = std::make_unique<zolens::V4l2Camera>(std::move(address), false);
    return camera->start(&delivery);
}

double LiveCapture::processorTime() const
{
    return bench::processorTime(CLOCK_PROCESS_CPUTIME_ID) - system->ownTime();
}

void LiveCapture::paint(const QImage& image)
{
    view.setImage(image);
    view.viewport()->repaint();
    using Milliseconds = std::chrono::duration<double, std::milli>;
    processing = Milliseconds(TimedV4l2::Clock::now() - system->handedOut()).count();
    painted.add(numberOf(image));
    arrivals.add();
}

} // namespace bench
