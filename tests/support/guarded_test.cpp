// SPDX-License-Identifier: MIT
#include "support/guarded_test.h"

#include <QMutex>
#include <QMutexLocker>
#include <QStringList>
#include <QtTest>

#include <utility>
#include <vector>

namespace {

QMutex messageMutex;
QStringList strayWarnings;
QtMessageHandler frameworkHandler = nullptr;
std::vector<std::unique_ptr<QObject>> helpers; // of the GUI thread only

/// The offscreen platform says what it cannot do whenever a window of limited size or a popup is
/// shown.
bool isChatterOfThePlatform(const QString& text)
{
    static const QStringList chatter{"This plugin does not support propagateSizeHints()",
                                     "This plugin does not support raise()",
                                     "This plugin does not support grabbing the keyboard"};
    return chatter.contains(text);
}

void watchMessages(QtMsgType type, const QMessageLogContext& context, const QString& text)
{
    if (isChatterOfThePlatform(text))
        return;
    if (type == QtWarningMsg || type == QtCriticalMsg) {
        const QMutexLocker lock(&messageMutex);
        strayWarnings += text;
    }
    if (frameworkHandler)
        frameworkHandler(type, context, text);
}

} // namespace

#ifdef __SANITIZE_ADDRESS__
// The offscreen platform never frees the screen that it makes. The toolkit's widgets, compiled
// without exceptions, leave the 16-byte mark of a guarded pointer behind when one passes through;
// the object itself, if it leaked, would still be told. The watchdog thread of the test framework,
// the only one of the toolkit's kind, may still be giving its data back when the process ends.
//
// NOLINTNEXTLINE(bugprone-reserved-identifier): the name that the checks look for
extern "C" __attribute__((visibility("default"))) const char* __lsan_default_suppressions()
{
    return "leak:libqoffscreen.so\n"
           "leak:QThread::QThread\n"
           "leak:QtSharedPointer::ExternalRefCountData::getAndRef\n";
}
#endif

#ifdef __SANITIZE_THREAD__
// The test framework's own watchdog thread is not compiled for data-race checks, which therefore
// see its end as a race. Nothing of the project stands on such a stack.
// NOLINTNEXTLINE(bugprone-reserved-identifier): the name that the checks look for
extern "C" __attribute__((visibility("default"))) const char* __tsan_default_suppressions()
{
    return "race:QWaitCondition::~QWaitCondition\nrace:QTest::qRun\n";
}
#endif

void GuardedTest::initTestCase()
{
    // Only now: the test framework installs its own handler when a run begins.
    const QtMessageHandler previous = qInstallMessageHandler(watchMessages);
    if (previous != watchMessages)
        frameworkHandler = previous;
}

void GuardedTest::keepUntilEnd(std::unique_ptr<QObject> helper)
{
    helpers.push_back(std::move(helper));
}

void GuardedTest::cleanup()
{
    helpers.clear();
    QStringList stray;
    {
        const QMutexLocker lock(&messageMutex);
        stray.swap(strayWarnings);
    }
    QVERIFY2(stray.isEmpty(), qPrintable("unexpected warnings: " + stray.join(" | ")));
}
