#include "LastHolder.h"

namespace zolens {

LastHolder::LastHolder(gpointer heldObject) : object(G_OBJECT(heldObject))
{
    g_object_add_toggle_ref(object, &LastHolder::note, this);
}

LastHolder::~LastHolder()
{
    {
        std::unique_lock<std::mutex> lock(mutex);
        noted.wait(lock, [this] { return last; });
    }
    g_object_remove_toggle_ref(object, &LastHolder::note, this);
}

void LastHolder::note(gpointer holder, GObject*, gboolean isLast)
{
    auto* const self = static_cast<LastHolder*>(holder);
    const std::lock_guard<std::mutex> lock(self->mutex);
    self->last = isLast;
    self->noted.notify_all();
}

} // namespace zolens
