#pragma once

#include <QProcess>

#include <csignal>

#include <sys/prctl.h>
#include <sys/wait.h>

/// The other side of a connection, in a process of its own. It ends with this object, and with the
/// test however that ends. Its errors are shown among the test's own.
class PeerProcess final : public QProcess
{
public:
    PeerProcess() { setProcessChannelMode(ForwardedErrorChannel); }
    ~PeerProcess() override { end(); }

    /// Without a farewell, as by a power cut.
    void end()
    {
        constexpr int endTime = 5000;
        if (state() == NotRunning)
            return;
        kill();
        waitForFinished(endTime);
    }

    /// Keeps it from running, with its connections open. It does nothing more once this returns.
    void freeze()
    {
        const auto id = id_t(processId());
        ::kill(pid_t(id), SIGSTOP);
        siginfo_t stopped;
        waitid(P_PID, id, &stopped, WSTOPPED | WNOWAIT);
    }

    void thaw() { ::kill(pid_t(processId()), SIGCONT); }

protected:
    void setupChildProcess() override { prctl(PR_SET_PDEATHSIG, SIGKILL); }
};
