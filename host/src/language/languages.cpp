// SPDX-License-Identifier: MIT
#include "language/languages.h"

#include <QCoreApplication>
#include <QDir>
#include <QLibraryInfo>
#include <QTranslator>

// In a static library nobody else does that. Not in a namespace: the toolkit's macro has it so.
static void initTexts()
{
    Q_INIT_RESOURCE(tarvek_app_texts);
}

namespace {

constexpr char ownCatalogue[] = "tarvek";
constexpr char writtenLanguage[] = "en";
constexpr char folder[] = ":/translations";

QString toolkitFolder()
{
#if QT_VERSION_MAJOR >= 6
    return QLibraryInfo::path(QLibraryInfo::TranslationsPath);
#else
    return QLibraryInfo::location(QLibraryInfo::TranslationsPath);
#endif
}

/// The toolkit keeps the texts in use for all of the program, too.
QString& spoken()
{
    static QString language;
    return language;
}

/// A catalogue that is missing changes nothing.
void use(const QString& place, const QString& catalogue)
{
    auto* texts = new QTranslator(qApp);
    const QString file = QString("%1/%2_%3.qm").arg(place, catalogue, spoken());
    if (!texts->load(file) || !QCoreApplication::installTranslator(texts))
        delete texts;
}

} // namespace

QStringList languages()
{
    initTexts();
    QStringList codes;
    const QString start = QString(ownCatalogue) + '_';
    for (const QString& name : QDir(folder).entryList({start + "*.qm"}, QDir::Files, QDir::Name))
        codes += name.mid(start.size()).section('.', 0, 0);
    return codes;
}

QString languageFor(const QStringList& wanted)
{
    const QStringList known = languages();
    for (QString code : wanted) {
        code = code.replace('_', '-').section('-', 0, 0);
        if (known.contains(code))
            return code;
    }
    return writtenLanguage;
}

void speak(const QString& language)
{
    initTexts();
    spoken() = language;
    // Of two that have a text the later one is asked first.
    use(toolkitFolder(), "qtbase");
    use(folder, ownCatalogue);
}

void speakAlso(const QString& catalogue)
{
    if (!spoken().isEmpty())
        use(folder, catalogue);
}
