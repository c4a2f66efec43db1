// SPDX-License-Identifier: MIT
#include "robots/keyring.h"

#include <kit/password_file.h>

#include <QObject>

#if QT_VERSION_MAJOR == 5
#include <qt5keychain/keychain.h>
#else
#include <qt6keychain/keychain.h>
#endif

namespace {

constexpr char serviceName[] = "Tarvek Desktop";

class SystemKeyring : public QObject, public Keyring
{
public:
    void read(const QString& name, const Found& found) override
    {
        auto* job = new QKeychain::ReadPasswordJob(serviceName);
        connect(job, &QKeychain::Job::finished, this, [job, found] {
            std::string password;
            const kit::WipedAtEnd wiped(password);
            if (job->error() == QKeychain::NoError)
                password = job->binaryData().toStdString();
            found(password);
        });
        begin(job, name);
    }

    void write(const QString& name, const std::string& password, const Failed& failed) override
    {
        auto* job = new QKeychain::WritePasswordJob(serviceName);
        job->setBinaryData(QByteArray::fromStdString(password));
        connect(job, &QKeychain::Job::finished, this, [job, failed] {
            if (job->error() != QKeychain::NoError)
                failed(job->errorString());
        });
        begin(job, name);
    }

    void forget(const QString& name) override
    {
        begin(new QKeychain::DeletePasswordJob(serviceName), name);
    }

private:
    static void begin(QKeychain::Job* job, const QString& name)
    {
        job->setInsecureFallback(false); // not into a file that anybody can read
        job->setKey(name);
        job->start(); // deletes itself
    }
};

} // namespace

std::unique_ptr<Keyring> systemKeyring()
{
    return std::make_unique<SystemKeyring>();
}

QString keyringName(const ConnectionSettings& settings)
{
    // Not translated: a user who changes the language finds it again.
    const QString way = settings.jumpHost.isEmpty() ? QString() : " via " + settings.jumpHost;
    const QString sentinel = QString::fromStdString(settings.other.sentinel);
    const QString name = sentinel.isEmpty() ? QString() : " of " + sentinel;
    return settings.user + '@' + settings.addressesText() + name + way;
}
