#pragma once

#include <QString>

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>

namespace zolens {

/// A camera of GigE Vision as it introduces itself. Texts are plain and of one line, or empty.
struct NetworkBox
{
    std::uint32_t address; ///< Of IPv4, the first octet uppermost.
    QString vendor;
    QString model;
    QString serialNumber;
    QString userName; ///< The one that its user gave it.
};

/// The port at which boxes are asked.
constexpr std::uint16_t boxPort = 3956;

/// Asks all boxes to introduce themselves. One whose address does not belong to the network that it
/// is in may answer by a broadcast, since nothing else of it arrives.
extern const std::array<std::uint8_t, 8> boxQuestion;

/// Nothing for what is no correct answer to that question.
std::optional<NetworkBox> readBoxAnswer(const std::uint8_t* data, std::size_t size);

} // namespace zolens
