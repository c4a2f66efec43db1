// SPDX-License-Identifier: MIT
#include "connection/typed_addresses.h"

#include <zo/error.h>

#include <QStringList>

#include <algorithm>

namespace {

bool isAddress(const QString& text)
{
    try {
        ZoAddress::fromText(text.toStdString());
        return true;
    } catch (const ZoError&) {
        return false;
    }
}

bool lacksPort(const QString& address)
{
    return isAddress(address + ":1");
}

QStringList partsOf(const QString& text)
{
    QStringList parts = text.split(',');
    for (QString& part : parts)
        part = part.trimmed();
    return parts;
}

} // namespace

std::vector<ZoAddress> typedAddresses(const QString& text, int port)
{
    QStringList parts = partsOf(text);
    for (QString& part : parts) {
        if (lacksPort(part))
            part += ':' + QString::number(port);
    }
    return ZoAddress::listFromText(parts.join(',').toStdString());
}

int typedPort(const QString& text)
{
    const QStringList parts = partsOf(text);
    const bool areNamed = std::all_of(parts.begin(), parts.end(), [](const QString& part) {
        return isAddress(part) && !lacksPort(part);
    });
    return areNamed ? ZoAddress::fromText(parts.first().toStdString()).port : 0;
}
