#include "BoxAnswer.h"

#include "DeviceNames.h"

#include <QtEndian>

#include <algorithm>

namespace zolens {
namespace {

constexpr std::uint8_t wantsAnswer = 0x01;
constexpr std::uint8_t allowsBroadcast = 0x10;
constexpr std::uint16_t requestNumber = 1;
constexpr std::uint16_t success = 0;
constexpr std::uint16_t discoveryAnswer = 3;

constexpr std::size_t headerSize = 8;
constexpr std::size_t contentSize = 248;

/// Where a text stands in an answer. One that fills its room has no end mark.
struct TextField
{
    std::size_t offset;
    std::size_t length;
};

constexpr std::size_t addressOffset = 44;
constexpr TextField vendorField = {80, 32};
constexpr TextField modelField = {112, 32};
constexpr TextField serialField = {224, 16};
constexpr TextField userNameField = {240, 16};

std::uint16_t word(const std::uint8_t* data, std::size_t index)
{
    return qFromBigEndian<std::uint16_t>(data + 2 * index);
}

bool isAnswer(const std::uint8_t* data, std::size_t size)
{
    return size == headerSize + contentSize && word(data, 0) == success &&
           word(data, 1) == discoveryAnswer && word(data, 2) == contentSize &&
           word(data, 3) == requestNumber;
}

/// Whether a single host can have it.
bool isHostAddress(std::uint32_t address)
{
    constexpr std::uint32_t firstHost = 0x01000000;
    constexpr std::uint32_t firstGroup = 0xe0000000;
    return address >= firstHost && address < firstGroup;
}

QString text(const std::uint8_t* data, const TextField& field)
{
    const std::uint8_t* begin = data + field.offset;
    const std::uint8_t* end = std::find(begin, begin + field.length, 0);
    return plainText(reinterpret_cast<const char*>(begin), int(end - begin));
}

} // namespace

const std::array<std::uint8_t, 8> boxQuestion = {
    0x42, wantsAnswer | allowsBroadcast, 0x00, 0x02, 0x00, 0x00, 0x00, requestNumber};

std::optional<NetworkBox> readBoxAnswer(const std::uint8_t* data, std::size_t size)
{
    if (!isAnswer(data, size))
        return std::nullopt;
    const auto address = qFromBigEndian<std::uint32_t>(data + addressOffset);
    if (!isHostAddress(address))
        return std::nullopt;
    return NetworkBox{address, text(data, vendorField), text(data, modelField),
                      text(data, serialField), text(data, userNameField)};
}

} // namespace zolens
