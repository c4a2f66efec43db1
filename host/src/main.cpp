// SPDX-License-Identifier: MIT
#include "application.h"
#include "connection/ssh_relay.h"
#include "desktop.h"
#include "dialogs/ssh_question.h"
#include "ending_signals.h"
#include "language/languages.h"

#include <kit/password_file.h>
#include <kit/program.h>

#include <QLocale>

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
    // ssh's questions come up in a process of their own, which finds it there.
    if (!commandLine.language.isEmpty())
        qputenv("LANGUAGE", commandLine.language.toLatin1());
    speak(languageFor(QLocale::system().uiLanguages()));
    Desktop desktop(commandLine, application.errors());
    QObject::connect(&desktop, &Desktop::finished, &application, &QCoreApplication::quit);
    const EndingSignals endings;
    QObject::connect(&endings, &EndingSignals::received, &desktop, &Desktop::endAll);
    desktop.start();
    return Application::exec();
}

/// As a program for SSH_ASKPASS: the answer goes to standard output.
int answerSsh(const std::string& program, const Words& words)
{
    kit::endWithParent(); // ssh may be ended while it asks
    Words texts = {program};
    char* pointers[] = {texts[0].data(), nullptr};
    int count = 1;
    const Application application(count, pointers);
    speak(languageFor(QLocale::system().uiLanguages()));
    SshQuestion question(QString::fromLocal8Bit(words.empty() ? "" : words[0].c_str()),
                         qEnvironmentVariable("SSH_ASKPASS_PROMPT"));
    if (question.exec() != QDialog::Accepted)
        return kit::exitFailed;
    std::string answer = question.answer().toStdString() + "\n";
    const kit::WipedAtEnd wiped(answer);
    kit::print(answer);
    return kit::exitDone;
}

int run(const std::string& program, const Words& words)
{
    Application::prepare();
    if (qEnvironmentVariableIsSet(answersSshVariable))
        return answerSsh(program, words);
    const CommandLine::Action action = actionOf(words); // a text needs no display
    return action == CommandLine::Action::Run ? runWindows(program, words) : printText(action);
}

} // namespace

int main(int argc, char** argv)
{
    kit::prepareProcess();
    const Words words(argv + 1, argv + argc);
    if (kit::isAskedToComplete(words))
        return kit::answerShell(words, completeCommandLine);
    return kit::runProgram("tarvek-desktop", [&] { return run(argv[0], words); });
}
