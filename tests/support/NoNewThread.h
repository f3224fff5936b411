#pragma once

#include <QtGlobal>

#include <cstdint>

#include <pthread.h>

/// Lets the process make no further thread while it lives, as a system does that has none left: new
/// threads are to have a stack that no memory holds.
class NoNewThread final
{
public:
    NoNewThread()
    {
        pthread_getattr_default_np(&usual);
        pthread_attr_t tooLarge = usual;
        pthread_attr_setstacksize(&tooLarge, SIZE_MAX / 4);
        pthread_setattr_default_np(&tooLarge);
    }
    ~NoNewThread()
    {
        pthread_setattr_default_np(&usual);
        pthread_attr_destroy(&usual);
    }
    Q_DISABLE_COPY_MOVE(NoNewThread)

private:
    pthread_attr_t usual;
};
