// SPDX-License-Identifier: MIT
#include "connection/connection_settings.h"

#include "connection/ssh_relay.h"

#include <kit/connection_options.h>
#include <kit/escape.h>
#include <kit/password_file.h>

#include <zo/error.h>

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QStringList>

#include <algorithm>
#include <arpa/inet.h>

namespace {

/// The context that translators find the texts in.
struct Text
{
    Q_DECLARE_TR_FUNCTIONS(ConnectionSettings)
};

[[noreturn]] void refuse(const QString& problem)
{
    throw ZoError(problem.toStdString());
}

[[noreturn]] void refuse(const QString& problem, const QString& file)
{
    refuse(problem.arg(file));
}

/// The same file whatever the working folder will be.
QString absolute(const std::string& path)
{
    return path.empty() ? QString() : QFileInfo(QFile::decodeName(path.c_str())).absoluteFilePath();
}

std::string encoded(const QString& path)
{
    return QFile::encodeName(path).toStdString();
}

constexpr std::size_t longestSentinel = 256; ///< bytes

bool isPrintable(char one)
{
    const auto byte = static_cast<unsigned char>(one);
    return byte >= ' ' && byte != 0x7f;
}

/// What --timeout set; 0: nothing.
int timeoutOf(const ZoBrokerOptions& options)
{
    const bool areAlike = options.connectTimeout == options.exchangeTimeout;
    const auto longest = std::chrono::milliseconds(kit::longestTime);
    return areAlike ? static_cast<int>(std::min(options.connectTimeout, longest).count()) : 0;
}

} // namespace

ZoAddress inOneForm(ZoAddress address)
{
    std::string& host = address.host;
    const std::size_t zone = std::min(host.find('%'), host.size()); // a name of this machine's
    in6_addr number{};
    char text[INET6_ADDRSTRLEN] = "";
    if (::inet_pton(AF_INET6, host.substr(0, zone).c_str(), &number) == 1)
        host.replace(0, zone, ::inet_ntop(AF_INET6, &number, text, sizeof text));
    else
        std::transform(host.begin(), host.end(), host.begin(),
                       [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; });
    return address;
}

namespace {

void putInOneForm(std::vector<ZoAddress>& all)
{
    for (ZoAddress& address : all)
        address = inOneForm(address);
}

QString robotTextAt(QString text, const ConnectionSettings& robot)
{
    for (const QString& part : {QString::fromStdString(robot.other.sentinel), robot.prefix}) {
        if (!part.isEmpty())
            text = Text::tr("%1 at %2").arg(part, text);
    }
    return text;
}

} // namespace

ConnectionSettings::ConnectionSettings(const ZoAddress& robot, const ZoBrokerOptions& options)
    : address(inOneForm(robot)),
      prefix(QString::fromStdString(options.prefix)),
      user(QString::fromLocal8Bit(options.user.c_str())),
      password(options.password),
      tls(options.tls),
      caFile(absolute(options.tlsCaFile)),
      certFile(absolute(options.tlsCertFile)),
      keyFile(absolute(options.tlsKeyFile)),
      timeout(timeoutOf(options)),
      other(options)
{
    kit::wipe(other.password);
    putInOneForm(other.furtherAddresses);
    if (timeout == 0)
        return;
    const ZoBrokerOptions standard; // which a user may choose again
    other.connectTimeout = standard.connectTimeout;
    other.exchangeTimeout = standard.exchangeTimeout;
    other.callTimeout = standard.callTimeout;
    other.keyListTimeout = standard.keyListTimeout;
}

ZoBrokerOptions ConnectionSettings::brokerOptions() const
{
    ZoBrokerOptions options = other;
    options.prefix = prefix.toStdString();
    options.user = user.toStdString();
    options.password = password;
    options.tls = tls;
    options.tlsCaFile = encoded(caFile);
    options.tlsCertFile = encoded(certFile);
    options.tlsKeyFile = encoded(keyFile);
    options.follow = follow;
    if (timeout > 0)
        kit::setTimeouts(options, std::chrono::milliseconds(timeout));
    if (relay)
        kit::setTunnel(options, relay->path());
    return options;
}

void refuseUnreadableFiles(const ConnectionSettings& settings)
{
    for (const QString& path : {settings.caFile, settings.certFile, settings.keyFile}) {
        const QFileInfo file(path);
        if (file.exists() && !file.isFile())
            refuse(Text::tr("'%1' is no file with certificates or a key: choose another"), path);
        if (!path.isEmpty() && !file.exists())
            refuse(Text::tr("the file '%1' is not there: put it right, or choose another"), path);
        if (!path.isEmpty() && !file.isReadable())
            refuse(Text::tr("the file '%1' may not be read: put it right, or choose another"),
                   path);
    }
}

void ConnectionSettings::setAddresses(std::vector<ZoAddress> all)
{
    putInOneForm(all);
    address = all.front();
    other.furtherAddresses.assign(all.begin() + 1, all.end());
}

QString ConnectionSettings::addressesText() const
{
    QString text = addressText();
    for (const ZoAddress& further : other.furtherAddresses)
        text += ',' + QString::fromStdString(further.toText());
    return text;
}

QString ConnectionSettings::robotText() const
{
    return robotTextAt(addressText(), *this);
}

QString ConnectionSettings::wayText() const
{
    QString text = robotTextAt(addressesText(), *this);
    if (other.replica)
        text = Text::tr("a replica of %1").arg(text);
    return jumpHost.isEmpty() ? text : Text::tr("%1 by way of %2").arg(text, jumpHost);
}

void ConnectionSettings::openWay()
{
    relay.reset();
    if (jumpHost.isEmpty())
        return;
    relay = std::make_shared<SshRelay>(jumpHost.toStdString(), address);
    relay->allowQuestions();
}

QString wordsOfSsh(const ConnectionSettings& settings)
{
    if (!settings.relay)
        return {};
    QStringList lines;
    for (const QString& line : QString::fromLocal8Bit(settings.relay->lastWords().c_str())
                                   .split('\n', Qt::SkipEmptyParts))
        lines += QString::fromStdString(kit::escaped(line.trimmed().toStdString()));
    if (lines.isEmpty())
        return {};
    return Text::tr("ssh says:\n%1").arg(lines.join('\n'));
}

QString endWithWordsOfSsh(const ConnectionSettings& settings)
{
    const QString words = wordsOfSsh(settings);
    return words.isEmpty() ? QString() : "\n\n" + words;
}

void checkNodes(const ConnectionSettings& settings)
{
    const std::string& sentinel = settings.other.sentinel;
    const bool areSeveral = !settings.other.furtherAddresses.empty() || !sentinel.empty();
    if (areSeveral && !settings.jumpHost.isEmpty())
        refuse(Text::tr("ssh leads to one server: give one address and no sentinel, or go there "
                        "without ssh"));
    const bool isFit = sentinel.size() <= longestSentinel &&
                       std::all_of(sentinel.begin(), sentinel.end(), isPrintable);
    if (!isFit)
        refuse(Text::tr("the name of the robot's server among its sentinels is too long, or has "
                        "control characters"));
    if (settings.other.replica && !sentinel.empty())
        refuse(Text::tr("replicas are those of a cluster, and sentinels lead to a server without "
                        "one: choose one of them"));
}

bool isSameAddress(const ConnectionSettings& one, const ConnectionSettings& other)
{
    return inOneForm(one.address) == inOneForm(other.address) && one.prefix == other.prefix &&
           one.jumpHost == other.jumpHost && one.other.sentinel == other.other.sentinel &&
           one.other.furtherAddresses == other.other.furtherAddresses;
}

bool isSameRobot(const ConnectionSettings& one, const ConnectionSettings& other)
{
    return isSameAddress(one, other) && one.user == other.user;
}
