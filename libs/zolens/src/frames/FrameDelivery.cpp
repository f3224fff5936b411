#include "FrameDelivery.h"

#include "FrameRateMeter.h"
#include "StartThread.h"

#include <condition_variable>
#include <mutex>
#include <thread>
#include <utility>

namespace zolens {

namespace {

/// One shown, one queued.
constexpr int mostOutstanding = 2;
/// Those, one that waits, one that the device fills and a spare one.
constexpr int poolBuffers = mostOutstanding + 3;

/// What the images out there report to. They hold it too, hence it outlives the delivery.
class Outbox final
{
public:
    void put(QImage&& frame);
    /// Waits for a frame that may go out; null when closed.
    QImage take();
    void cameBack();
    void close();
    quint64 replaced() const;

private:
    mutable std::mutex mutex;
    std::condition_variable changed;
    QImage waiting;
    int outstanding = 0;
    quint64 replacedFrames = 0;
    bool closed = false;
};

void Outbox::put(QImage&& frame)
{
    QImage older;
    {
        const std::lock_guard lock(mutex);
        older = std::move(waiting);
        waiting = std::move(frame);
        replacedFrames += older.isNull() ? 0 : 1;
    }
    changed.notify_one();
}

QImage Outbox::take()
{
    std::unique_lock lock(mutex);
    changed.wait(lock,
                 [this] { return closed || (!waiting.isNull() && outstanding < mostOutstanding); });
    if (closed)
        return {};
    ++outstanding;
    return std::exchange(waiting, QImage());
}

void Outbox::cameBack()
{
    {
        const std::lock_guard lock(mutex);
        --outstanding;
    }
    changed.notify_one();
}

/// Images may keep the outbox for long, and it keeps no frame then.
void Outbox::close()
{
    QImage unseen;
    {
        const std::lock_guard lock(mutex);
        closed = true;
        unseen = std::move(waiting);
    }
    changed.notify_one();
}

quint64 Outbox::replaced() const
{
    const std::lock_guard lock(mutex);
    return replacedFrames;
}

/// The same pixels as an image that tells the outbox when its last copy is gone.
QImage tracked(QImage&& frame, const std::shared_ptr<Outbox>& outbox)
{
    struct Ticket
    {
        QImage frame;
        std::shared_ptr<Outbox> outbox;
    };
    const auto release = [](void* info) {
        const std::unique_ptr<Ticket> ticket(static_cast<Ticket*>(info));
        ticket->frame = QImage();
        ticket->outbox->cameBack();
    };
    auto* ticket = new Ticket{std::move(frame), outbox};
    const QImage& held = ticket->frame;
    return QImage(held.constBits(), held.width(), held.height(), held.bytesPerLine(), held.format(),
                  release, ticket);
}

} // namespace

class FrameDelivery::Private final
{
public:
    Private(Viewer frameViewer, const std::atomic<bool>& pauseFlag, std::function<void()> notice)
        : viewer(std::move(frameViewer)),
          paused(pauseFlag),
          modesNotice(std::move(notice))
    {
    }

    void run();
    void countArrival();
    void passToTap(const QImage& frame, FrameRateMeter::Clock::time_point arrival);
    void setShown(const QImage& frame);
    QImage shownFrame() const;

    const Viewer viewer;
    const std::atomic<bool>& paused;
    const std::function<void()> modesNotice;
    const std::shared_ptr<Outbox> outbox = std::make_shared<Outbox>();
    FramePool pool{poolBuffers};
    std::atomic<quint64> refused{0};
    mutable std::mutex meterMutex;
    FrameRateMeter meter;
    mutable std::mutex shownMutex;
    QImage shown; ///< The last one that the viewers got.
    std::mutex tapMutex;
    Tap tap;
    std::thread thread;
};

void FrameDelivery::Private::run()
{
    for (QImage frame = outbox->take(); !frame.isNull(); frame = outbox->take()) {
        const QImage pixels = frame;
        const QImage image = tracked(std::move(frame), outbox);
        if (!paused) {
            setShown(pixels);
            viewer(image);
        }
    }
}

void FrameDelivery::Private::countArrival()
{
    const std::lock_guard lock(meterMutex);
    meter.frameArrived(FrameRateMeter::Clock::now());
}

void FrameDelivery::Private::passToTap(const QImage& frame,
                                       FrameRateMeter::Clock::time_point arrival)
{
    const std::lock_guard lock(tapMutex);
    if (tap)
        tap(frame, arrival);
}

void FrameDelivery::Private::setShown(const QImage& frame)
{
    const std::lock_guard lock(shownMutex);
    shown = frame;
}

QImage FrameDelivery::Private::shownFrame() const
{
    const std::lock_guard lock(shownMutex);
    return shown;
}

FrameDelivery::FrameDelivery(Viewer viewer, const std::atomic<bool>& paused,
                             std::function<void()> modesNotice)
    : d(std::make_unique<Private>(std::move(viewer), paused, std::move(modesNotice)))
{
    d->thread = startThread([this] { d->run(); });
}

FrameDelivery::~FrameDelivery()
{
    d->outbox->close();
    if (isRunning())
        d->thread.join();
}

bool FrameDelivery::isRunning() const
{
    return d->thread.joinable();
}

QImage FrameDelivery::acquireFrame(const QSize& size)
{
    d->countArrival();
    if (d->paused)
        return {};
    QImage frame = d->pool.acquire(size);
    d->refused += frame.isNull() ? 1 : 0;
    return frame;
}

void FrameDelivery::deliver(QImage&& frame)
{
    if (frame.isNull() || d->paused)
        return;
    const auto arrival = FrameRateMeter::Clock::now();
    const QImage shared = frame;
    d->outbox->put(std::move(frame));
    d->passToTap(shared, arrival);
}

void FrameDelivery::modesChanged()
{
    if (d->modesNotice)
        d->modesNotice();
}

void FrameDelivery::setTap(Tap tap)
{
    const std::lock_guard lock(d->tapMutex);
    d->tap = std::move(tap);
    const QImage shown = d->shownFrame();
    if (d->tap && !shown.isNull())
        d->tap(shown, FrameRateMeter::Clock::now());
}

float FrameDelivery::frameRate() const
{
    const std::lock_guard lock(d->meterMutex);
    return d->meter.rate(FrameRateMeter::Clock::now());
}

quint64 FrameDelivery::droppedFrames() const
{
    return d->refused + d->outbox->replaced();
}

} // namespace zolens
