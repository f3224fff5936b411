#pragma once

#include <QtGlobal>

#include <csignal>

#include <sys/resource.h>

/// Refuses files to grow beyond so many bytes, until its end.
class FileSizeLimit final
{
public:
    explicit FileSizeLimit(rlim_t bytes)
    {
        std::signal(SIGXFSZ, SIG_IGN);
        getrlimit(RLIMIT_FSIZE, &before);
        const rlimit smaller{bytes, before.rlim_max};
        setrlimit(RLIMIT_FSIZE, &smaller);
    }
    ~FileSizeLimit()
    {
        setrlimit(RLIMIT_FSIZE, &before);
        std::signal(SIGXFSZ, SIG_DFL);
    }
    Q_DISABLE_COPY(FileSizeLimit)

private:
    rlimit before{};
};
