// SPDX-License-Identifier: MIT
#include "plugins/root_element.h"

#include <QFile>
#include <QFileInfo>
#include <QXmlStreamReader>

namespace {

constexpr int beginning = 1 << 16; ///< bytes: comments may stand before the root element

} // namespace

QString rootElementOf(const QString& file)
{
    QFile opened(file);
    if (!QFileInfo(file).isFile() || !opened.open(QIODevice::ReadOnly))
        return {};
    // In letters: the reader would refuse bytes behind the root element that are none in UTF-8.
    QXmlStreamReader reader(QString::fromLatin1(opened.read(beginning)));
    return reader.readNextStartElement() ? reader.name().toString() : QString();
}
