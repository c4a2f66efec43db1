// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

/// The languages that the program can show its texts in, by codes such as "de"; English, in which
/// they are written, is one of them. The texts are resources, so no application object is needed to
/// know them.
QStringList languages();

/// The first of `wanted` that there is, or English. They are as QLocale::uiLanguages() has them,
/// the best one first: "de-AT", "de_AT" and "de" are one language here.
QString languageFor(const QStringList& wanted);

/// From now on new windows show the program's texts, and the toolkit's, in this one of languages().
/// Numbers and times keep the forms of the system's region. Needs the application object.
void speak(const QString& language);

/// The same, in the language that was spoken last, for the texts of a plug-in, which carries them
/// as resources ":/translations/CATALOGUE_CODE.qm". Without that language they stay as they are
/// written.
void speakAlso(const QString& catalogue);
