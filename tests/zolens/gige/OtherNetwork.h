#pragma once

#include <QProcess>
#include <QString>

#include <fcntl.h>
#include <sched.h>
#include <unistd.h>

/// Another network of this machine than the one of the test: what is opened while the object exists
/// belongs to it. A wire named "wire" leads there from the test's network, for as long as something
/// there is open. Only for tests in a private network.
class OtherNetwork final
{
public:
    /// With the address that the end of the wire has over there.
    explicit OtherNetwork(const QString& address)
        : home(open("/proc/thread-self/ns/net", O_RDONLY | O_CLOEXEC))
    {
        const QString there = QStringLiteral("/proc/%1/fd/%2").arg(getpid()).arg(home);
        ready = home >= 0 && unshare(CLONE_NEWNET) == 0 &&
                ip(QStringLiteral("link add wire-end type veth peer name wire")) &&
                ip(QStringLiteral("link set wire netns ") + there) &&
                ip(QStringLiteral("address add %1 dev wire-end").arg(address)) &&
                ip(QStringLiteral("link set wire-end up")) &&
                ip(QStringLiteral("route add default dev wire-end"));
    }
    ~OtherNetwork()
    {
        setns(home, CLONE_NEWNET);
        close(home);
    }
    OtherNetwork(const OtherNetwork&) = delete;
    OtherNetwork& operator=(const OtherNetwork&) = delete;

    bool isReady() const { return ready; }

    /// Calls the tool of that name with arguments that blanks divide.
    static bool ip(const QString& arguments)
    {
        return QProcess::execute(QStringLiteral("ip"), arguments.split(QLatin1Char(' '))) == 0;
    }

private:
    const int home;
    bool ready = false;
};
