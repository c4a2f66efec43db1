// SPDX-License-Identifier: MIT
#include "recording/recording_state.h"

#include <kit/quantity.h>

#include <QCoreApplication>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLocale>
#include <QStringList>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

using Phase = RecordingState::Phase;

constexpr double mostExact = 9007199254740992.0; ///< whole numbers up to there

class Text
{
    Q_DECLARE_TR_FUNCTIONS(RecordingState)
};

std::optional<Phase> phaseFrom(const QString& name)
{
    if (name == "recording")
        return Phase::Recording;
    if (name == "waiting")
        return Phase::Waiting;
    if (name == "ended")
        return Phase::Ended;
    return {};
}

std::optional<qint64> countFrom(const QJsonValue& value)
{
    const double number = value.toDouble(-1);
    if (number < 0 || number > mostExact || std::floor(number) != number)
        return {};
    return static_cast<qint64>(number);
}

QString sizeText(qint64 bytes)
{
    return QString::fromStdString(kit::sizeText(static_cast<std::uint64_t>(bytes)));
}

/// The number that tells a language which of its forms goes with `count`.
int plural(qint64 count)
{
    return static_cast<int>(std::min<qint64>(count, std::numeric_limits<int>::max()));
}

/// With the region's marks between thousands.
QString counted(const QString& text, qint64 count)
{
    return text.arg(QLocale().toString(count));
}

} // namespace

std::optional<RecordingState> recordingStateFrom(const QByteArray& line)
{
    const QJsonObject object = QJsonDocument::fromJson(line).object();
    const auto phase = phaseFrom(object["state"].toString());
    const auto rows = countFrom(object["rows"]);
    const auto missed = countFrom(object["missed"]);
    const auto bytes = countFrom(object["bytes"]);
    if (!phase || !rows || !missed || !bytes)
        return {};
    return RecordingState{*phase,
                          *rows,
                          *missed,
                          countFrom(object["tooLarge"]).value_or(0),
                          countFrom(object["empty"]).value_or(0),
                          *bytes,
                          countFrom(object["free"]),
                          object["file"].toString(),
                          object["cause"].toString().simplified()};
}

QString recordingText(const RecordingState& state)
{
    if (state.phase == Phase::Starting)
        return Text::tr("starting");
    QStringList parts;
    if (state.phase == Phase::Waiting)
        parts += Text::tr("waits for the robot");
    parts += counted(Text::tr("%1 rows", nullptr, plural(state.rows)), state.rows);
    parts += sizeText(state.bytes);
    if (state.missed > 0)
        parts += counted(Text::tr("%1 polls missed", nullptr, plural(state.missed)), state.missed);
    if (state.tooLarge > 0)
        parts += counted(Text::tr("%1 values too large", nullptr, plural(state.tooLarge)),
                         state.tooLarge);
    if (state.empty > 0)
        parts += Text::tr("keys without a value: %1").arg(QLocale().toString(state.empty));
    if (state.free)
        parts += Text::tr("%1 free").arg(sizeText(*state.free));
    return parts.join(Text::tr(", "));
}
