#pragma once

#include <QByteArray>

#include <algorithm>

#include <sys/mman.h>
#include <unistd.h>

/// Bytes at the very end of memory: whoever reads or writes beyond them, be it a library, ends the
/// program.
class GuardedBytes final
{
public:
    explicit GuardedBytes(const QByteArray& content) : length(std::size_t(content.size()))
    {
        const auto page = std::size_t(sysconf(_SC_PAGESIZE));
        usable = (length + page - 1) / page * page;
        mapped = usable + page;
        begin = mmap(nullptr, mapped, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        mprotect(first() + usable, page, PROT_NONE);
        std::copy(content.begin(), content.end(), data());
    }
    ~GuardedBytes() { munmap(begin, mapped); }
    Q_DISABLE_COPY(GuardedBytes)

    uchar* data() const { return first() + usable - length; }
    /// Filled with one value.
    static QByteArray blank(int size, uchar value = 0x5a) { return QByteArray(size, char(value)); }

private:
    uchar* first() const { return static_cast<uchar*>(begin); }

    const std::size_t length;
    std::size_t usable = 0;
    std::size_t mapped = 0;
    void* begin = nullptr;
};
