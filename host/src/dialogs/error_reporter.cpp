// SPDX-License-Identifier: MIT
#include "dialogs/error_reporter.h"

#include <QElapsedTimer>
#include <QMessageBox>
#include <QStringList>
#include <QVariant>

#include <algorithm>
#include <iterator>
#include <utility>

namespace {

constexpr char textsProperty[] = "errors";

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
    const bool isNews = !isRepeated(text) || origin == Origin::UserAction;
    QMessageBox* box = isNews ? boxOf(window) : nullptr;
    if (isNews && !box)
        box = openBox(window);
    if (!box || !add(box, text))
        note(text);
}

bool ErrorReporter::isRepeated(const QString& text)
{
    const qint64 now = fClock();
    for (auto last = fLastTimes.begin(); last != fLastTimes.end();)
        last = now - *last > fQuietTime ? fLastTimes.erase(last) : std::next(last);
    const bool repeated = fLastTimes.contains(text);
    if (repeated || fLastTimes.size() < fMostKept)
        fLastTimes[text] = now;
    return repeated;
}

/// The one that is open over `window`, or is that window; null: there is none.
QMessageBox* ErrorReporter::boxOf(QWidget* window) const
{
    const auto isTheirs = [window](const QPointer<QMessageBox>& box) {
        return box && !box->isHidden() && (box == window || box->parentWidget() == window);
    };
    const auto found = std::find_if(fBoxes.begin(), fBoxes.end(), isTheirs);
    return found == fBoxes.end() ? nullptr : found->data();
}

/// False when there is no place in sight for it.
bool ErrorReporter::add(QMessageBox* box, const QString& text)
{
    QStringList texts = box->property(textsProperty).toStringList();
    const auto place = texts.indexOf(text);
    if (place >= 0 || texts.size() == fMostKept)
        return place >= 0 && place < fMostInABox;
    texts += text;
    box->setProperty(textsProperty, texts);
    const QStringList others = texts.mid(fMostInABox);
    if (others.isEmpty()) {
        box->setText(texts.join("\n\n"));
        return true;
    }
    box->setInformativeText(
        tr("%n more in the details.", nullptr, static_cast<int>(others.size())));
    box->setDetailedText(others.join("\n\n"));
    return false;
}

QMessageBox* ErrorReporter::openBox(QWidget* window)
{
    auto* box =
        new QMessageBox(QMessageBox::Critical, tr("Error"), QString(), QMessageBox::Ok, window);
    // Texts come from robots and plug-ins: they are shown, never interpreted.
    box->setTextFormat(Qt::PlainText);
    box->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    box->setAttribute(Qt::WA_DeleteOnClose);
    fBoxes.removeAll(nullptr);
    fBoxes += box;
    // Not exec(): the work below must go on, and nothing may be left hanging in a nested loop.
    box->open();
    return box;
}
