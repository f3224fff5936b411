#pragma once

#include <QByteArray>
#include <QString>

#include <atomic>
#include <cstdint>
#include <functional>
#include <thread>
#include <vector>

/// Stands between a camera and a box, with an address of its own, and changes what the box tells of
/// its pictures, for the life of the object. Has a thread of its own. Only for tests in a private
/// network.
class BoxRelay final
{
public:
    /// Gets what a picture begins with: a packet that tells of what kind the picture is.
    using Change = std::function<void(QByteArray* leader)>;

    BoxRelay(const QString& boxAddress, Change leaderChange);
    ~BoxRelay();

    /// To be called before the start: the box seems to refuse to change that register.
    void protect(std::uint32_t number) { readOnly.push_back(number); }
    bool start();
    static QString address() { return QStringLiteral("10.0.0.4"); }

    // Places in a leader, of numbers with the upper byte first.
    static constexpr int payloadType = 10; ///< Two bytes.
    static constexpr int width = 24;       ///< Four bytes.
    static constexpr int height = 28;      ///< Four bytes.
    static constexpr int padding = 40;     ///< Two bytes: the bytes after each row.

private:
    void run();
    void passQuestion();
    void passAnswer();
    void passPicture();

    const std::uint32_t box; ///< Its address.
    const Change change;
    std::vector<std::uint32_t> readOnly;
    int questions = -1;
    int answers = -1;
    int pictures = -1;
    std::uint32_t clientAddress = 0;
    std::uint16_t clientPort = 0;
    std::uint16_t picturePort = 0; ///< Of the client.
    std::atomic<bool> ending{false};
    std::thread thread;
};
