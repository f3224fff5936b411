#pragma once

// GLib has members of the name that Qt takes for a keyword.
#pragma push_macro("signals")
#undef signals
#include <arv.h>
#pragma pop_macro("signals")

#include <memory>
#include <mutex>

namespace zolens {

/// Held while a device is opened: Aravis reads the description of one at a time, and mixes up those
/// that two threads have it read.
inline std::mutex openingMutex;

struct GObjectDeleter
{
    void operator()(void* object) const { g_object_unref(object); }
};

/// Owns one reference to an object of Aravis.
template <typename T>
using AravisPointer = std::unique_ptr<T, GObjectDeleter>;

struct GlibDeleter
{
    void operator()(void* memory) const { g_free(memory); }
};

/// Owns what GLib has allocated.
template <typename T>
using GlibPointer = std::unique_ptr<T, GlibDeleter>;

/// Takes the error that a call of Aravis may leave, and frees it.
class AravisError final
{
public:
    AravisError() = default;
    ~AravisError() { g_clear_error(&error); }
    AravisError(const AravisError&) = delete;
    AravisError& operator=(const AravisError&) = delete;

    /// For the next call.
    GError** out()
    {
        g_clear_error(&error);
        return &error;
    }
    explicit operator bool() const { return error != nullptr; }
    bool is(ArvDeviceError code) const { return g_error_matches(error, ARV_DEVICE_ERROR, code); }
    const char* text() const { return error ? error->message : "no error"; }

private:
    GError* error = nullptr;
};

} // namespace zolens
