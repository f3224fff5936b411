// fakebox [ADDRESS]  runs a network box with the features of real ones until it is killed, and
// writes "READY" once it answers. Only for a private network.

#include "FakeBox.h"

#include <QCoreApplication>

#include <cstdio>

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    FakeBox::Options options;
    if (argc > 1)
        options.address = QString::fromLocal8Bit(argv[1]);
    options.description = FakeBox::fullDescription();
    FakeBox box(options);
    if (!box.start())
        return 1;
    std::puts("READY");
    std::fflush(stdout);
    return QCoreApplication::exec();
}
