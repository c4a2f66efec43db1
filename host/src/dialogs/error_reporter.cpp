// SPDX-License-Identifier: MIT
#include "dialogs/error_reporter.h"

#include <QElapsedTimer>
#include <QMessageBox>

#include <utility>

namespace {

ErrorReporter::Clock startedClock()
{
    QElapsedTimer timer;
    timer.start();
    return [timer] { return timer.elapsed(); };
}

} // namespace

ErrorReporter::ErrorReporter(QObject* parent) : ErrorReporter(startedClock(), parent) {}

ErrorReporter::ErrorReporter(Clock clock, QObject* parent)
    : QObject(parent), fClock(std::move(clock))
{
}

ErrorReporter::~ErrorReporter() = default;

void ErrorReporter::report(QWidget* window, const QString& text, Origin origin)
{
    const bool repeated = isRepeated(text);
    if (fBox || (origin == Origin::RunningWork && repeated))
        emit noted(text.simplified());
    else
        openBox(window, text);
}

bool ErrorReporter::isRepeated(const QString& text)
{
    const qint64 now = fClock();
    const bool repeated = text == fLastText && fLastTime && now - *fLastTime <= fQuietTime;
    fLastText = text;
    fLastTime = now;
    return repeated;
}

void ErrorReporter::openBox(QWidget* window, const QString& text)
{
    fBox = new QMessageBox(QMessageBox::Critical, tr("Error"), text, QMessageBox::Ok, window);
    // Texts come from robots and plug-ins: they are shown, never interpreted.
    fBox->setTextFormat(Qt::PlainText);
    fBox->setAttribute(Qt::WA_DeleteOnClose);
    // Not exec(): the work below must go on, and nothing may be left hanging in a nested loop.
    fBox->open();
}
