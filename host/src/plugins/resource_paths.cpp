// SPDX-License-Identifier: MIT
#include "plugins/resource_paths.h"

#include <QCoreApplication>
#include <QDir>

#include <algorithm>

namespace {

QString besideProgram(const char* relative)
{
    return QDir::cleanPath(QCoreApplication::applicationDirPath() + '/' + relative);
}

} // namespace

QString ownPluginDir()
{
    return besideProgram(TARVEK_PLUGIN_DIR);
}

QString ownImageDir()
{
    return besideProgram(TARVEK_IMAGE_DIR);
}

QString ownGuideFile()
{
    return besideProgram(TARVEK_GUIDE);
}

QString ownIconFile()
{
    return besideProgram(TARVEK_ICON);
}

std::string imageDirForPanels(const QString& folder)
{
    const bool isAscii =
        std::all_of(folder.begin(), folder.end(), [](QChar c) { return c.unicode() < 128; });
    if (isAscii)
        return (folder.endsWith('/') ? folder : folder + '/').toStdString();
    QDir::setSearchPaths("tarvekimages", {folder});
    return "tarvekimages:/";
}
