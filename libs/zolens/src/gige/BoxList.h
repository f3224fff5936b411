#pragma once

#include "BoxAnswer.h"
#include "zolens/CameraTypes.h"

#include <map>
#include <vector>

namespace zolens {

/// The boxes that have lately introduced themselves, each known by its address.
class BoxList final
{
public:
    void heard(const NetworkBox& box);
    /// Ends a round of asking. Boxes that have been silent for some rounds are forgotten.
    void endRound();

    /// In the order of their addresses. Boxes of one model are told apart in their names by what
    /// their users called them, or by their serial numbers.
    std::vector<_tag_VideoDeviceInfo> devices() const;

    /// Room for what answers on a network, not for what somebody makes up.
    static constexpr std::size_t mostBoxes = 256;
    static constexpr int patience = 3; ///< Rounds.

private:
    struct Entry
    {
        NetworkBox box;
        int silentRounds = 0;
    };

    std::map<std::uint32_t, Entry> entries;
};

} // namespace zolens
