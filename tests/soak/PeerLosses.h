#pragma once

#include "CameraUser.h"

#include <QtTest>

/// Ends the use of a camera whose other side is a process of its own, which is lost before: killed
/// and started again during a recording, frozen for a while, or frozen at the closing.
template <typename Peer>
class PeerLosses final
{
public:
    PeerLosses(Peer& otherSide, SoakLog& soakLog, CameraUser& cameraUser)
        : peer(otherSide),
          log(soakLog),
          user(cameraUser)
    {
    }

    /// Another way each time.
    void close(int number)
    {
        constexpr int ways = 3;
        if (number % ways == 0) {
            user.record([this] { restart(); });
            user.close();
        } else if (number % ways == 1) {
            freeze();
            user.close();
        } else {
            closeFrozen();
        }
    }

private:
    void restart()
    {
        constexpr int goneTime = 500;
        constexpr int startLimit = 20000;
        peer.kill();
        QTest::qWait(goneTime);
        log.run("start of the peer", startLimit, [this] { return peer.start(); });
        user.awaitReturn();
    }

    /// Beyond the patience with a device that gives no frames.
    void freeze()
    {
        constexpr int frozenTime = 2500;
        peer.freeze();
        QTest::qWait(frozenTime);
        peer.thaw();
        user.awaitReturn();
    }

    void closeFrozen()
    {
        peer.freeze();
        user.closeLost();
        peer.thaw();
    }

    Peer& peer;
    SoakLog& log;
    CameraUser& user;
};
