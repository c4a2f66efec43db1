// SPDX-License-Identifier: MIT
#include <kit/background_output.h>
#include <kit/output.h>

#include <condition_variable>
#include <exception>
#include <thread>
#include <utility>

namespace kit {

struct BackgroundOutput::Shared
{
    void write(int descriptor);
    void add(const std::string& more)
    {
        text += more;
        waiting += more.size();
        changed.notify_all();
    }
    void throwError() const
    {
        if (error)
            std::rethrow_exception(error);
    }

    std::mutex mutex; ///< guards all below
    std::condition_variable changed;
    std::string text;
    std::size_t waiting = 0; ///< bytes: those of `text`, and those that are being written
    bool isEnding = false;
    std::exception_ptr error;
};

/// Until the end, or the first failure.
void BackgroundOutput::Shared::write(int descriptor)
{
    Output output(descriptor);
    std::unique_lock<std::mutex> lock(mutex);
    while (!error) {
        changed.wait(lock, [this] { return !text.empty() || isEnding; });
        if (isEnding)
            return;
        const std::string taken = std::exchange(text, {});
        lock.unlock();
        std::exception_ptr failure;
        try {
            output.add(taken);
            output.flush();
        } catch (...) {
            failure = std::current_exception();
        }
        lock.lock();
        error = failure;
        if (error)
            text.clear(); // nobody will write it
        waiting = text.size();
        changed.notify_all();
    }
}

BackgroundOutput::BackgroundOutput(int descriptor) : fShared(std::make_shared<Shared>())
{
    // It may be held up for ever: nobody waits for its end.
    std::thread([shared = fShared, descriptor] { shared->write(descriptor); }).detach();
}

BackgroundOutput::~BackgroundOutput()
{
    std::unique_lock<std::mutex> lock(fShared->mutex);
    waitForEnd(lock);
    fShared->isEnding = true;
    fShared->changed.notify_all();
}

void BackgroundOutput::add(const std::string& text)
{
    const std::lock_guard<std::mutex> lock(fShared->mutex);
    fShared->throwError();
    fShared->add(text);
}

void BackgroundOutput::offer(const std::string& text, std::size_t much)
{
    const std::lock_guard<std::mutex> lock(fShared->mutex);
    if (!fShared->error && fShared->waiting < much)
        fShared->add(text);
}

std::size_t BackgroundOutput::waiting() const
{
    const std::lock_guard<std::mutex> lock(fShared->mutex);
    return fShared->waiting;
}

void BackgroundOutput::finish()
{
    std::unique_lock<std::mutex> lock(fShared->mutex);
    waitForEnd(lock);
    fShared->throwError();
}

void BackgroundOutput::waitForEnd(std::unique_lock<std::mutex>& lock) const
{
    fShared->changed.wait_for(lock, fPatience,
                              [this] { return fShared->waiting == 0 || fShared->error; });
}

} // namespace kit
