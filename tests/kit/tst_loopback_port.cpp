// SPDX-License-Identifier: MIT
#include "support/guarded_test.h"
#include "support/register_test.h"

#include <kit/loopback_port.h>

#include <QtTest>

/// How programs find a port for a server of their own.
class TestLoopbackPort : public GuardedTest
{
    Q_OBJECT

private slots:
    void aSocketHasItsPortForItselfAsLongAsItIsOpen();
    void everySocketHasAPortOfItsOwn();
    void aFreePortIsFree();
};

void TestLoopbackPort::aSocketHasItsPortForItselfAsLongAsItIsOpen()
{
    kit::Descriptor socket = kit::socketWithLoopbackPort();
    const int port = kit::portOf(socket);
    QVERIFY(port > 0 && port <= 65535);
    QVERIFY(!kit::isLoopbackPortFree(port));
    socket = kit::Descriptor();
    QVERIFY(kit::isLoopbackPortFree(port));
}

void TestLoopbackPort::everySocketHasAPortOfItsOwn()
{
    const kit::Descriptor first = kit::socketWithLoopbackPort();
    const kit::Descriptor second = kit::socketWithLoopbackPort();
    QVERIFY(kit::portOf(first) != kit::portOf(second));
    QVERIFY_EXCEPTION_THROWN(kit::portOf(kit::Descriptor()), std::system_error);
}

void TestLoopbackPort::aFreePortIsFree()
{
    QVERIFY(kit::isLoopbackPortFree(kit::freeLoopbackPort()));
}

REGISTER_TEST(TestLoopbackPort, NoApplication)
#include "tst_loopback_port.moc"
