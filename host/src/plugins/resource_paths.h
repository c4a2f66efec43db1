// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <string>

/// Where the program's own files are. The build folder has the layout of an installation, so
/// all are found from the program's place.

/// The folder of the panels that come with the program.
QString ownPluginDir();
/// The folder of the images that panels read.
QString ownImageDir();
/// The user guide.
QString ownGuideFile();
/// The program's icon.
QString ownIconFile();

/// `folder` as panels take it: ends in "/", ready to have an image's name put behind it. Panels
/// read these bytes as Latin-1, so a folder whose name has other letters than ASCII goes by a
/// search path of the toolkit's instead of by its name.
std::string imageDirForPanels(const QString& folder);
