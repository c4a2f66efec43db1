#include "error_reporter.h"

#include <QMessageBox>

ErrorReporter::ErrorReporter(QObject* parent) : QObject(parent) {}

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
    const bool repeated =
        text == fLastText && fSinceLast.isValid() && !fSinceLast.hasExpired(fQuietTime);
    fLastText = text;
    fSinceLast.start();
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
