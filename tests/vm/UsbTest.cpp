#include "UsbTest.h"

#include <QtTest>

void UsbTest::initTestCase()
{
    bench = std::make_unique<UsbBench>(largest);
    QVERIFY2(bench->usb.isPlugged(), "needs root, and the modules vhci-hcd and uvcvideo");
}

void UsbTest::init()
{
    QVERIFY(bench->plug());
}

void UsbTest::cleanup()
{
    QVERIFY(bench->unplug());
}

void UsbTest::cleanupTestCase()
{
    bench.reset();
}
