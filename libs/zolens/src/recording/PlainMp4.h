#pragma once

#include <QString>

#include <atomic>

namespace zolens {

/// Lets one file take the place of another: it is used once or withdrawn, never both. Thread-safe.
class ReplacementPermit final
{
public:
    /// For good. False when it was used before.
    bool withdraw();
    bool isWithdrawn() const;
    /// Right before the file is replaced. False when it was withdrawn before.
    bool use();

private:
    enum class State { Valid, Withdrawn, Used };

    std::atomic<State> state{State::Valid};
};

/// Replaces a complete fragmented recording by a plain MP4 file with one index, which every player
/// can seek in. The new file is made beside and takes the place at once; it has no name until then
/// where the file system can do that, so that a killed program leaves none behind. False, with the
/// recording as it was, when the permit is withdrawn, when room is short or when anything fails.
bool rewriteAsPlainMp4(const QString& path, ReplacementPermit* permit);

} // namespace zolens
