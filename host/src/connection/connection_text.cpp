// SPDX-License-Identifier: MIT
#include "connection/connection_text.h"

#include <QCoreApplication>
#include <QStringList>

namespace {

/// The context that translators find the texts in.
struct ConnectionText
{
    Q_DECLARE_TR_FUNCTIONS(ConnectionText)
};

constexpr int longestReason = 250; ///< lest a robot fills the window with it

/// The beginning of `text`, if it is too long.
QString cut(const QString& text)
{
    return text.size() <= longestReason ? text : text.left(longestReason - 1) + QChar(0x2026);
}

/// The same, for one that comes to the point at its end.
QString cutToEnd(const QString& text)
{
    return text.size() <= longestReason ? text : QChar(0x2026) + text.right(longestReason - 1);
}

/// A time of today without its date.
QString timeText(const QDateTime& time, const QDateTime& now)
{
    return time.toString(time.date() == now.date() ? "HH:mm:ss" : "yyyy-MM-dd HH:mm:ss");
}

QString briefForm(const ConnectionState& state)
{
    if (state.connected)
        return ConnectionText::tr("Connected since %1");
    if (state.refused)
        return ConnectionText::tr("Refused, lost since %1");
    if (state.closed)
        return ConnectionText::tr("Disconnected since %1");
    return state.lost ? ConnectionText::tr("Connection lost since %1")
                      : ConnectionText::tr("Interrupted since %1");
}

/// What is being done about a link that is down.
QString remedy(const ConnectionState& state)
{
    if (state.refused)
        return ConnectionText::tr("The connection is not tried again: that would not help, and "
                                  "might lock the account. \"Connect again\" asks for what was "
                                  "refused.");
    if (state.closed)
        return ConnectionText::tr(
            "The connection was closed on request. \"Reconnect\" opens it again.");
    return ConnectionText::tr("The connection is tried again and again, until it works.");
}

/// What becomes of the panels.
QString consequence(const ConnectionState& state)
{
    if (state.concerned == 0)
        return {};
    if (state.lost)
        return ConnectionText::tr("Panels have stopped fetching: once connected, start it again in "
                                  "each, where it says how it fetches.");
    return ConnectionText::tr("Panels then go on by themselves.");
}

QString extent(const ConnectionState& state)
{
    if (state.concerned == state.panels)
        return {};
    return ConnectionText::tr("Concerns %1 of %n panels; the others go on.", nullptr, state.panels)
        .arg(state.concerned);
}

QString sentences(QStringList parts)
{
    parts.removeAll(QString());
    return parts.join(' ');
}

} // namespace

QString connectionBrief(const ConnectionState& state, const QDateTime& now)
{
    return briefForm(state).arg(timeText(state.since, now));
}

QString connectionDetail(const ConnectionState& state, const QString& address)
{
    if (state.connected)
        return address;
    // The cause names the address.
    if (state.refused)
        return ConnectionText::tr("Not trying again: %1").arg(state.cause);
    if (state.closed)
        return state.cause;
    return ConnectionText::tr("Trying again: %1").arg(state.cause);
}

QString connectionTitlePrefix(const ConnectionState& state)
{
    if (state.connected)
        return {};
    if (state.refused)
        return ConnectionText::tr("Refused: ");
    if (state.closed)
        return ConnectionText::tr("Disconnected: ");
    return state.lost ? ConnectionText::tr("Lost: ") : ConnectionText::tr("Interrupted: ");
}

QString connectionHeadline(const ConnectionState& state, const QString& address,
                           const QDateTime& now)
{
    return ConnectionText::tr("%1 (%2)").arg(connectionBrief(state, now), address);
}

QString connectionAdvice(const ConnectionState& state)
{
    if (!state.connected)
        return sentences({ConnectionText::tr("Nothing new comes in: values are the last ones that "
                                             "came, and curves drawn since then are no new data."),
                          remedy(state), consequence(state), extent(state)});
    if (state.stopped == 0)
        return {};
    return ConnectionText::tr("Panels that were open when the connection was lost have stopped "
                              "fetching, and show what came before. Start it again in each, where "
                              "it says how it fetches.");
}

QString connectionReason(const ConnectionState& state)
{
    if (state.connected || state.closed)
        return {};
    return state.remark.isEmpty() ? cut(state.cause)
                                  : cut(state.cause) + '\n' + cutToEnd(state.remark);
}
