// SPDX-License-Identifier: MIT
#include "application.h"
#include "desktop.h"

#include <kit/program.h>

#include <string>
#include <vector>

namespace {

using Words = std::vector<std::string>;

int printText(CommandLine::Action action)
{
    kit::print(action == CommandLine::Action::Help ? desktopHelp() : desktopVersion());
    return kit::exitDone;
}

/// `program` is the name by which it was called.
int runWindows(const std::string& program, const Words& words)
{
    // The toolkit takes its own options out of the array, and reads it as long as the program runs.
    Words texts = hidePluginOption(words);
    texts.insert(texts.begin(), program);
    std::vector<char*> pointers;
    pointers.reserve(texts.size() + 1);
    for (std::string& text : texts)
        pointers.push_back(text.data());
    pointers.push_back(nullptr);
    int count = static_cast<int>(texts.size());
    Application application(count, pointers.data());
    const CommandLine commandLine =
        parseCommandLine({pointers.begin() + 1, pointers.begin() + count});
    if (commandLine.action != CommandLine::Action::Run)
        return printText(commandLine.action);
    kit::tellWarning("tarvek-desktop", commandLine.warning);
    Desktop desktop(commandLine, application.errors());
    QObject::connect(&desktop, &Desktop::finished, &application, &QCoreApplication::quit);
    desktop.start();
    return Application::exec();
}

int run(const std::string& program, const Words& words)
{
    Application::prepare();
    const CommandLine::Action action = actionOf(words); // a text needs no display
    return action == CommandLine::Action::Run ? runWindows(program, words) : printText(action);
}

} // namespace

int main(int argc, char** argv)
{
    kit::prepareProcess();
    return kit::runProgram("tarvek-desktop", [&] { return run(argv[0], {argv + 1, argv + argc}); });
}
