#pragma once

#include <QString>

#include <atomic>

namespace zolens {

/// Replaces a complete fragmented recording by a plain MP4 file with one index, which every player
/// can seek in. The new file is made beside and takes the place at once. False, with the recording
/// as it was, when it is cancelled, when room is short or when anything fails.
bool rewriteAsPlainMp4(const QString& path, const std::atomic<bool>& cancelled);

} // namespace zolens
