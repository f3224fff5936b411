#include "FfmpegLog.h"

#include <mutex>

extern "C" {
#include <libavutil/log.h>
}

namespace zolens {

void silenceFfmpeg()
{
    static std::once_flag once;
    std::call_once(once, [] { av_log_set_level(AV_LOG_QUIET); });
}

} // namespace zolens
