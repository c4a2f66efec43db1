// SPDX-License-Identifier: MIT
#include "robots/robot_check.h"

#include <kit/password_file.h>

#include <zo/error.h>

#include <QRunnable>
#include <QThreadPool>

#include <algorithm>
#include <mutex>
#include <utility>

namespace {

// Some may still wait for their robots after they were called off.
constexpr int mostAtOnce = 8;

} // namespace

/// What the two threads share, and each may leave first.
struct RobotCheck::Talk
{
    std::mutex mutex;
    RobotCheck* listener; ///< null: it has gone. Guarded by the mutex.

    explicit Talk(RobotCheck* check) : listener(check) {}

    bool hasListener()
    {
        const std::lock_guard<std::mutex> lock(mutex);
        return listener != nullptr;
    }

    /// Has `act` done with the listener, on its thread.
    template <class Act>
    void tell(Act act)
    {
        const std::lock_guard<std::mutex> lock(mutex);
        if (listener)
            QMetaObject::invokeMethod(
                listener, [to = listener, act] { act(*to); }, Qt::QueuedConnection);
    }
};

namespace {

/// What runs on the thread. All threads of the pool end before the program does.
template <class Talk>
class Task : public QRunnable
{
public:
    Task(std::shared_ptr<Talk> talk, const ConnectionSettings& settings)
        : fTalk(std::move(talk)), fSettings(settings)
    {
    }

    void run() override
    {
        bool isGood = false;
        QString problem;
        try {
            isGood = check();
        } catch (const std::exception& error) {
            problem = QString::fromUtf8(error.what());
        }
        if (!isGood)
            problem += endWithWordsOfSsh(fSettings);
        fTalk->tell([isGood, problem](RobotCheck& check) { emit check.finished(isGood, problem); });
    }

private:
    bool check()
    {
        refuseUnreadableFiles(fSettings);
        fSettings.openWay();
        ZoBrokerOptions options = fSettings.brokerOptions();
        const kit::WipedAtEnd wiped(options.password);
        const auto tell = [this](const ZoCheck::Step& step) {
            fTalk->tell([step](RobotCheck& check) { emit check.stepDone(step); });
        };
        return ZoCheck::run(fSettings.address, options, tell,
                            [this] { return fTalk->hasListener(); });
    }

    const std::shared_ptr<Talk> fTalk;
    ConnectionSettings fSettings;
};

} // namespace

RobotCheck::RobotCheck(QObject* parent) : QObject(parent), fTalk(std::make_shared<Talk>(this)) {}

RobotCheck::~RobotCheck()
{
    const std::lock_guard<std::mutex> lock(fTalk->mutex);
    fTalk->listener = nullptr;
}

void RobotCheck::start(const ConnectionSettings& settings)
{
    QThreadPool* const pool = QThreadPool::globalInstance();
    pool->setMaxThreadCount(std::max(pool->maxThreadCount(), mostAtOnce));
    pool->start(new Task<Talk>(fTalk, settings));
}
