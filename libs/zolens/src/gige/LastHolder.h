#pragma once

#include "Aravis.h"

#include <condition_variable>
#include <mutex>

namespace zolens {

/// Sees to it that an object ends on the thread of its owner. A signal that is under way holds its
/// sender too, on a thread which the end of the sender may wait for.
class LastHolder final
{
public:
    explicit LastHolder(gpointer heldObject);
    /// Waits until nobody else holds the object, and lets it go.
    ~LastHolder();
    LastHolder(const LastHolder&) = delete;
    LastHolder& operator=(const LastHolder&) = delete;

private:
    static void note(gpointer holder, GObject* object, gboolean isLast);

    GObject* const object;
    std::mutex mutex;
    std::condition_variable noted;
    bool last = false;
};

} // namespace zolens
