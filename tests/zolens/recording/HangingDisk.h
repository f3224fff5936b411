#pragma once

#include <QString>

/// Writes into a file that this process has open hang once a little was written, as on a disk that
/// does not answer.
class HangingWrites final
{
public:
    explicit HangingWrites(const QString& path);
    ~HangingWrites();
    Q_DISABLE_COPY(HangingWrites)

    /// The write that hangs and all others fail.
    void fail();

private:
    int reader = -1;
};

/// Opening a file, which is made for it, hangs; for longer than tests take.
class HangingOpening final
{
public:
    explicit HangingOpening(const QString& path);
    ~HangingOpening();
    Q_DISABLE_COPY(HangingOpening)

    /// It opens at last.
    void recover();

private:
    int holder = -1;
};

/// Handing over to the disk what was written hangs, in the whole process, after `passing` times
/// that do not.
class HangingSync final
{
public:
    explicit HangingSync(int passing = 0);
    ~HangingSync();
    Q_DISABLE_COPY(HangingSync)

    /// Those that hang.
    int callers() const;
    /// They come back at last.
    void recover();
};
