#include "CameraUser.h"
#include "PeerLosses.h"
#include "Soak.h"
#include "support/rtspserver/RtspServer.h"

namespace {

const char* const streams[] = {"/h264", "/mjpeg", "/h264?udp", "/h265"};
constexpr int streamCount = 4;

} // namespace

/// Streams of several kinds, from a server that is lost in each cycle.
class tst_StreamSoak final : public QObject
{
    Q_OBJECT

private slots:
    void staysSoundInUse()
    {
        RtspServer server;
        QVERIFY(server.start());
        Soak soak;
        CameraUser user(soak.log(), soak.folder());
        PeerLosses losses(server, soak.log(), user);
        const QString problem = soak.run([&](int number) {
            const QString url = server.url(QLatin1String(streams[number % streamCount]));
            user.open([url](MyCamera& camera) { return camera.open(CWDevice_NetworkStream, url); });
            user.useAll();
            losses.close(number);
        });
        QVERIFY2(problem.isEmpty(), qPrintable(problem));
    }
};

int main(int argc, char** argv)
{
    return Soak::main<tst_StreamSoak>(argc, argv);
}

#include "tst_StreamSoak.moc"
