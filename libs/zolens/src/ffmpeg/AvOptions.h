#pragma once

#include <QtGlobal>

extern "C" {
#include <libavutil/dict.h>
}

namespace zolens {

/// Options of one opening. Frees what the opening left over.
class AvOptions final
{
public:
    AvOptions() = default;
    Q_DISABLE_COPY(AvOptions)
    ~AvOptions() { av_dict_free(&entries); }

    void set(const char* key, const char* value) { av_dict_set(&entries, key, value, 0); }
    AVDictionary** get() { return &entries; }
    const char* firstUnused() const
    {
        const AVDictionaryEntry* entry = av_dict_get(entries, "", nullptr, AV_DICT_IGNORE_SUFFIX);
        return entry ? entry->key : nullptr;
    }

private:
    AVDictionary* entries = nullptr;
};

} // namespace zolens
