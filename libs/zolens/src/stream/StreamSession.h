#pragma once

#include "Outcome.h"
#include "SinkGate.h"
#include "StillRequest.h"
#include "StreamInterrupt.h"
#include "StreamUrl.h"

#include <QSize>

#include <atomic>

namespace zolens {

/// What a camera and its worker share, from one start to the stop. Owned by both, so that a worker
/// which hangs in the system can end later by itself. Every part is thread-safe.
struct StreamSession
{
    StreamSession(const StreamUrl& source, FrameSink* frameSink) : url(source), sink(frameSink) {}

    void setPictureSize(const QSize& size);
    /// Empty until it is known.
    QSize pictureSize() const;

    const StreamUrl url;
    SinkGate sink;
    StreamInterrupt interrupt;
    StillRequest still;
    /// Whether the source could be opened.
    Outcome opened;
    /// Settled when the worker is done.
    Outcome finished;
    std::atomic<bool> flip{false};
    std::atomic<bool> mirror{false};
    /// As in CWCamera::previewFormats.
    std::atomic<int> format{0};

private:
    /// Both lengths in one word, so that they change together.
    std::atomic<quint64> size{0};
};

} // namespace zolens
