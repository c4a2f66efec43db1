// SPDX-License-Identifier: MIT
#include "connection/traffic_text.h"

#include <QCoreApplication>
#include <QLocale>
#include <QStringList>

#include <algorithm>
#include <cmath>

namespace {

using Following = ZoLinkStatus::Following;

/// The context that translators find the texts in.
struct TrafficText
{
    Q_DECLARE_TR_FUNCTIONS(TrafficText)
};

/// With one decimal where that is worth something.
QString numberText(double number)
{
    const bool hasDecimal = number >= 0.05 && number < 9.95;
    return QLocale().toString(number, 'f', hasDecimal ? 1 : 0);
}

QString roundTripText(std::chrono::microseconds time)
{
    const double shortest = 0.1; // less would be a matter of luck
    return TrafficText::tr("%1 ms").arg(
        numberText(std::max(static_cast<double>(time.count()) / 1000, shortest)));
}

QString ageText(std::chrono::milliseconds age)
{
    const double seconds = static_cast<double>(age.count()) / 1000;
    if (seconds < 1)
        return TrafficText::tr("%1 ms ago")
            .arg(QLocale().toString(static_cast<qlonglong>(age.count())));
    if (seconds < 120)
        return TrafficText::tr("%1 s ago").arg(numberText(seconds));
    if (seconds < 120 * 60)
        return TrafficText::tr("%1 min ago").arg(static_cast<int>(seconds / 60));
    return TrafficText::tr("%1 h ago").arg(static_cast<int>(seconds / 3600));
}

QString bytesText(double bytes)
{
    return TrafficText::tr("%1/s").arg(
        QLocale().formattedDataSize(std::llround(bytes), 1, QLocale::DataSizeSIFormat));
}

QString briefMode(Following following)
{
    switch (following) {
    case Following::Changes:
        return TrafficText::tr("changes only");
    case Following::Everything:
        return TrafficText::tr("everything");
    case Following::None:
        break;
    }
    return {};
}

QString modeDetail(Following following)
{
    switch (following) {
    case Following::Changes:
        return TrafficText::tr("the robot tells what was written, and only that is read");
    case Following::Everything:
        return TrafficText::tr("every value is read each time");
    case Following::None:
        break;
    }
    return TrafficText::tr("no values are followed");
}

} // namespace

QString trafficBrief(const ZoLinkStatus& link)
{
    if (!link.connected)
        return {};
    QStringList parts;
    if (link.roundTrip)
        parts += roundTripText(*link.roundTrip);
    parts += TrafficText::tr("%1 answers/s").arg(numberText(link.answersPerSecond));
    const QString mode = briefMode(link.following);
    if (!mode.isEmpty())
        parts += mode;
    return parts.join(TrafficText::tr(", "));
}

QString trafficDetail(const ZoLinkStatus& link)
{
    if (!link.connected)
        return {};
    const QString unknown = TrafficText::tr("none yet");
    const QStringList lines = {
        TrafficText::tr("Round trip: %1")
            .arg(link.roundTrip ? roundTripText(*link.roundTrip) : unknown),
        TrafficText::tr("Newest answer: %1")
            .arg(link.answerAge ? ageText(*link.answerAge) : unknown),
        TrafficText::tr("Answers: %1/s").arg(numberText(link.answersPerSecond)),
        TrafficText::tr("Received: %1").arg(bytesText(link.bytesReceivedPerSecond)),
        TrafficText::tr("Sent: %1").arg(bytesText(link.bytesSentPerSecond)),
        TrafficText::tr("Following: %1").arg(modeDetail(link.following))};
    return lines.join('\n');
}
