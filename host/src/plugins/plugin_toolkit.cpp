// SPDX-License-Identifier: MIT
#include "plugins/plugin_toolkit.h"

#include <QByteArray>
#include <QFile>
#include <QFileInfo>

namespace {

constexpr qint64 mostBytes = 1 << 28; ///< of a library with all that debuggers want to know

} // namespace

std::optional<int> pluginToolkit(const QString& file)
{
    // What stands before a plug-in's description: Qt 5 has a section of its own for it; Qt 6 a
    // note, of which these are the kind and the name.
    static const QByteArray section("QTMETADATA !");
    static const QByteArray note("\x01\0Qtqt-project!", 16);

    QFile opened(file);
    if (!QFileInfo(file).isFile() || !opened.open(QIODevice::ReadOnly))
        return {};
    const QByteArray library = opened.read(mostBytes);
    std::optional<int> found;
    for (const QByteArray& mark : {section, note}) {
        for (auto at = library.indexOf(mark); at >= 0; at = library.indexOf(mark, at + 1)) {
            const auto version =
                at + mark.size() + 1; // behind the number of the description's form
            if (version < library.size() && found != QT_VERSION_MAJOR)
                found = static_cast<unsigned char>(library.at(version));
        }
    }
    return found;
}
