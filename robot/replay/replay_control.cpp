// SPDX-License-Identifier: MIT
#include "replay_control.h"

#include <zo/error.h>

#include <utility>

ReplayControl::ReplayControl(ZoMemoryProxy memory, std::function<void(const std::string&)> tell)
    : fMemory(std::move(memory)),
      fTell(std::move(tell)),
      fRequest(ZoValue::fromElements({ZoValue::fromElements({kit::replayControlKey, 0})})),
      fThread([this] { run(); })
{
}

ReplayControl::~ReplayControl()
{
    {
        const std::lock_guard<std::mutex> lock(fMutex);
        fIsEnding = true;
    }
    fChanged.notify_all();
    fThread.join();
}

std::vector<kit::ReplayCommand> ReplayControl::take()
{
    std::vector<std::string> texts;
    {
        const std::lock_guard<std::mutex> lock(fMutex);
        texts.swap(fTexts);
    }
    std::vector<kit::ReplayCommand> commands;
    for (const std::string& text : texts) {
        if (const auto command = kit::replayCommandFrom(text))
            commands.push_back(*command);
        else
            fTell(std::string(kit::replayControlKey) + " is no command: '" + text +
                  "'. These are: " + kit::replayCommands);
    }
    return commands;
}

std::string ReplayControl::problem()
{
    const std::lock_guard<std::mutex> lock(fMutex);
    return fProblem;
}

void ReplayControl::run()
{
    std::unique_lock<std::mutex> lock(fMutex);
    while (!fIsEnding) {
        lock.unlock();
        std::vector<std::string> texts;
        std::string problem;
        try {
            texts = look();
        } catch (const ZoError& error) {
            problem = error.toString();
        }
        lock.lock();
        fTexts.insert(fTexts.end(), texts.begin(), texts.end());
        fProblem = problem;
        fChanged.wait_for(lock, fInterval, [this] { return fIsEnding; });
    }
}

/// One that is set between the look and the taking is found there.
std::vector<std::string> ReplayControl::look()
{
    const ZoValue values = fMemory.getListData(fRequest);
    if (values.getSize() != 1 || values[0].getType() == ZoValue::Invalid)
        return {};
    const ZoValue taken = fMemory.exchangeData(kit::replayControlKey, ZoValue());
    std::vector<std::string> texts{values[0].toString(ZoBrief)};
    if (taken.getType() != ZoValue::Invalid && taken != values[0])
        texts.push_back(taken.toString(ZoBrief));
    return texts;
}
