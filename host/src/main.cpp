// SPDX-License-Identifier: MIT
#include "application.h"
#include "desktop.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

namespace {

/// Whether the words ask for a text only, which needs no display.
bool wantsText(int argc, char** argv)
{
    return std::any_of(argv + 1, argv + argc, [](const char* word) {
        return !std::strcmp(word, "--help") || !std::strcmp(word, "--help-all") ||
               !std::strcmp(word, "-h") || !std::strcmp(word, "--version") ||
               !std::strcmp(word, "-v");
    });
}

int answer(const CommandLine& commandLine)
{
    const QByteArray text = commandLine.text.toLocal8Bit();
    if (commandLine.action == CommandLine::Action::Inform) {
        std::fputs(text.constData(), stdout);
        return 0;
    }
    std::fprintf(stderr, "tarvek-desktop: %s\nSee tarvek-desktop --help\n", text.constData());
    return 2;
}

int runWindows(const std::vector<std::string>& words)
{
    // The toolkit changes what it is given and reads it as long as the program runs.
    std::vector<std::string> texts = hidePluginOption(words);
    std::vector<char*> pointers;
    pointers.reserve(texts.size() + 1);
    for (std::string& text : texts)
        pointers.push_back(text.data());
    pointers.push_back(nullptr);
    int count = static_cast<int>(texts.size());
    Application application(count, pointers.data());
    const CommandLine commandLine = parseCommandLine(Application::arguments().mid(1));
    if (commandLine.action != CommandLine::Action::Run)
        return answer(commandLine);
    Desktop desktop(commandLine, application.errors());
    QObject::connect(&desktop, &Desktop::finished, &application, &QCoreApplication::quit);
    desktop.start();
    return Application::exec();
}

} // namespace

int main(int argc, char** argv)
{
    Application::prepare();
    if (!wantsText(argc, argv))
        return runWindows({argv, argv + argc});
    const QCoreApplication application(argc, argv);
    return answer(parseCommandLine(QCoreApplication::arguments().mid(1)));
}
