// SPDX-License-Identifier: MIT
#include "support/guarded_test.h"
#include "support/patience.h"
#include "support/register_test.h"
#include "support/watched_thread.h"

#include <kit/password_file.h>
#include <kit/usage_error.h>

#include <QTemporaryDir>
#include <QtTest>

#include <algorithm>
#include <array>
#include <fcntl.h>
#include <new>
#include <poll.h>
#include <string_view>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

/// How programs read a password.
class TestPasswordFile : public GuardedTest
{
    Q_OBJECT

private slots:
    void init();
    void aPasswordIsAFilesFirstLine_data();
    void aPasswordIsAFilesFirstLine();
    void aFileWithoutAPasswordIsRefused_data();
    void aFileWithoutAPasswordIsRefused();
    void aPathThatCannotBeReadIsNamed_data();
    void aPathThatCannotBeReadIsNamed();
    void aFileThatOthersMayReadIsWarnedOf_data();
    void aFileThatOthersMayReadIsWarnedOf();
    void aPipeGivesItsLineThoughItStaysOpen();
    void aPipeWhoseWriterIsGoneHasEnded();
    void aLineMayComeInPieces();
    void aPipeIntoWhichNobodyWritesIsGivenUp();
    void aPipeWithoutAnEndOfLineIsGivenUp();
    void aPipeWhoseWriterWritesNothingHasNoPassword();
    void aWipedTextIsNoLongerInMemory();
    void aTextIsWipedAtTheEndEvenByAnException();
    void aSecretLeavesNothingBehind();
    void aSecretIsOverwrittenBeforeItChanges();

private:
    std::string write(const QByteArray& content);
    std::string makePipe() const;

    QScopedPointer<QTemporaryDir> fFolder;
};

namespace {

/// For pipes that deliver, and for those that do not.
constexpr auto longEnough = std::chrono::milliseconds(patience);
constexpr auto notLong = std::chrono::milliseconds(20);

/// Both ends of a pipe: nobody has to wait to open it.
int openBothEnds(const std::string& path)
{
    return ::open(path.c_str(), O_RDWR | O_CLOEXEC);
}

void put(int file, const QByteArray& text)
{
    QCOMPARE(::write(file, text.constData(), static_cast<std::size_t>(text.size())),
             ssize_t{text.size()});
}

QString mistakeIn(const std::string& path, std::chrono::milliseconds limit = longEnough)
{
    try {
        kit::readPassword(path, limit);
    } catch (const kit::UsageError& error) {
        return error.what();
    }
    return {};
}

} // namespace

void TestPasswordFile::init()
{
    fFolder.reset(new QTemporaryDir);
}

std::string TestPasswordFile::write(const QByteArray& content)
{
    QFile file(fFolder->filePath("password"));
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        return {};
    file.setPermissions(QFile::ReadOwner | QFile::WriteOwner);
    return file.fileName().toStdString();
}

void TestPasswordFile::aPasswordIsAFilesFirstLine_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QByteArray>("password");
    QTest::newRow("one line") << QByteArray("secret\n") << QByteArray("secret");
    QTest::newRow("no line break") << QByteArray("secret") << QByteArray("secret");
    QTest::newRow("two lines") << QByteArray("secret\nmore\n") << QByteArray("secret");
    QTest::newRow("CR LF") << QByteArray("secret\r\n") << QByteArray("secret");
    QTest::newRow("CR alone") << QByteArray("secret\r") << QByteArray("secret");
    QTest::newRow("blanks belong to it") << QByteArray(" se cret \n") << QByteArray(" se cret ");
    QTest::newRow("UTF-8") << QByteArray("gr\xc3\xbc\xc3\x9f\n")
                           << QByteArray("gr\xc3\xbc\xc3\x9f");
    QTest::newRow("longest") << QByteArray(4096, 'x') + '\n' << QByteArray(4096, 'x');
    QTest::newRow("a long second line")
        << "secret\n" + QByteArray(100000, 'x') << QByteArray("secret");
}

void TestPasswordFile::aPasswordIsAFilesFirstLine()
{
    QFETCH(QByteArray, content);
    QFETCH(QByteArray, password);
    QCOMPARE(kit::readPassword(write(content)).text, password.toStdString());
}

void TestPasswordFile::aFileWithoutAPasswordIsRefused_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("cause");
    QTest::newRow("empty") << QByteArray() << "its first line is empty";
    QTest::newRow("empty line") << QByteArray("\nsecret\n") << "its first line is empty";
    QTest::newRow("line break only") << QByteArray("\r\n") << "its first line is empty";
    QTest::newRow("too long") << QByteArray(4097, 'x')
                              << "its first line is too long to be a password";
    QTest::newRow("much too long")
        << QByteArray(1000000, 'x') << "its first line is too long to be a password";
}

void TestPasswordFile::aFileWithoutAPasswordIsRefused()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, cause);
    const std::string path = write(content);
    QCOMPARE(mistakeIn(path), "password file '" + QString::fromStdString(path) + "': " + cause);
}

void TestPasswordFile::aPathThatCannotBeReadIsNamed_data()
{
    QTest::addColumn<QString>("mistake");
    QTest::newRow("/nowhere/secret") << "'/nowhere/secret': No such file or directory";
    QTest::newRow("/") << "'/': Is a directory";
    QTest::newRow("/dev/null") << "'/dev/null': its first line is empty";
    QTest::newRow("/dev/zero") << "'/dev/zero': its first line is too long";
}

void TestPasswordFile::aPathThatCannotBeReadIsNamed()
{
    QFETCH(QString, mistake);
    const QString message = mistakeIn(QTest::currentDataTag());
    QVERIFY2(message.contains(mistake), qPrintable(message));
}

std::string TestPasswordFile::makePipe() const
{
    const std::string path = fFolder->filePath("pipe").toStdString();
    return ::mkfifo(path.c_str(), 0600) == 0 ? path : std::string();
}

void TestPasswordFile::aFileThatOthersMayReadIsWarnedOf_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<bool>("warned");
    QTest::newRow("0600") << 0600 << false;
    QTest::newRow("0400") << 0400 << false;
    QTest::newRow("writable by the group") << 0620 << false;
    QTest::newRow("readable by the group") << 0640 << true;
    QTest::newRow("readable by all") << 0604 << true;
}

void TestPasswordFile::aFileThatOthersMayReadIsWarnedOf()
{
    QFETCH(int, mode);
    QFETCH(bool, warned);
    const std::string path = write("secret\n");
    QCOMPARE(::chmod(path.c_str(), static_cast<mode_t>(mode)), 0);
    const kit::Password password = kit::readPassword(path);
    QCOMPARE(password.text, std::string("secret"));
    QCOMPARE(password.warning, warned
                                   ? "others on this machine may read the password file '" + path +
                                         "'; keep it to yourself: chmod 600 '" + path + "'"
                                   : std::string());
}

void TestPasswordFile::aPipeGivesItsLineThoughItStaysOpen()
{
    const std::string path = makePipe();
    const int both = openBothEnds(path);
    put(both, "secret\nmore");
    QCOMPARE(kit::readPassword(path, longEnough).text, std::string("secret"));
    ::close(both);
}

/// As a shell's <(...), of which the program gets the reading end.
void TestPasswordFile::aPipeWhoseWriterIsGoneHasEnded()
{
    int ends[2] = {-1, -1};
    QCOMPARE(::pipe2(ends, O_CLOEXEC), 0);
    put(ends[1], "secret");
    ::close(ends[1]);
    const std::string path = "/dev/fd/" + std::to_string(ends[0]);
    QCOMPARE(kit::readPassword(path, longEnough).text, std::string("secret"));
    ::close(ends[0]);
}

void TestPasswordFile::aLineMayComeInPieces()
{
    const std::string path = makePipe();
    WatchedThread writer([&path] {
        const int file = ::open(path.c_str(), O_WRONLY | O_CLOEXEC); // waits for the reader
        for (const QByteArray piece : {"se", "cret", "\n"}) {
            // Once the pipe is empty the reader has what was there, and waits or is about to.
            struct pollfd none = {};
            int left = 0;
            do
                ::poll(&none, 0, 1);
            while (::ioctl(file, FIONREAD, &left) == 0 && left > 0);
            put(file, piece);
        }
        ::close(file);
    });
    const std::string password = kit::readPassword(path, longEnough).text;
    writer.join();
    QCOMPARE(password, std::string("secret"));
}

void TestPasswordFile::aPipeIntoWhichNobodyWritesIsGivenUp()
{
    const std::string path = makePipe();
    const QString mistake =
        "password file '" + QString::fromStdString(path) + "': nobody wrote a line into it";
    QCOMPARE(mistakeIn(path, notLong), mistake + " within 20 ms"); // nobody opened it
    const int both = openBothEnds(path);
    QCOMPARE(mistakeIn(path, notLong), mistake + " within 20 ms");
    ::close(both);
}

void TestPasswordFile::aPipeWithoutAnEndOfLineIsGivenUp()
{
    const std::string path = makePipe();
    const int both = openBothEnds(path);
    put(both, "secret");
    const QString mistake = mistakeIn(path, notLong);
    QVERIFY2(mistake.contains("nobody wrote a line into it"), qPrintable(mistake));
    QVERIFY(!mistake.contains("secret"));
    ::close(both);
}

void TestPasswordFile::aPipeWhoseWriterWritesNothingHasNoPassword()
{
    const std::string path = makePipe();
    WatchedThread writer([&path] { ::close(::open(path.c_str(), O_WRONLY | O_CLOEXEC)); });
    const QString mistake = mistakeIn(path);
    writer.join();
    QVERIFY2(mistake.contains("its first line is empty"), qPrintable(mistake));
}

void TestPasswordFile::aWipedTextIsNoLongerInMemory()
{
    for (std::string secret : {std::string("secret"), std::string(1000, 'x')}) {
        const char* const bytes = secret.data();
        const std::size_t size = secret.size();
        kit::wipe(secret);
        QVERIFY(secret.empty());
        QVERIFY(secret.data() == bytes);
        QVERIFY(std::all_of(bytes, bytes + size, [](char byte) { return byte == 0; }));
    }
}

void TestPasswordFile::aTextIsWipedAtTheEndEvenByAnException()
{
    std::string secret(1000, 'x');
    const char* const bytes = secret.data();
    try {
        const kit::WipedAtEnd wiped(secret);
        QCOMPARE(secret.size(), std::size_t{1000});
        throw std::runtime_error("no robot");
    } catch (const std::runtime_error&) {
        QVERIFY(secret.empty());
        QVERIFY(std::all_of(bytes, bytes + 1000, [](char byte) { return byte == 0; }));
    }
}

void TestPasswordFile::aSecretLeavesNothingBehind()
{
    alignas(kit::Secret) std::array<char, sizeof(kit::Secret)> place{};
    for (const bool isMoved : {false, true}) {
        auto* secret = new (place.data()) kit::Secret("open sesame");
        const kit::Secret other = isMoved ? std::move(*secret) : *secret;
        QVERIFY(other == "open sesame");
        secret->~Secret();
        const std::string_view left(place.data(), place.size());
        QVERIFY(left.find("sesame") == std::string_view::npos);
    }
}

void TestPasswordFile::aSecretIsOverwrittenBeforeItChanges()
{
    kit::Secret secret(std::string(1000, 'x'));
    const kit::Secret other("open");
    const char* const bytes = secret.data();
    secret = secret; // nothing happens
    QCOMPARE(secret.size(), std::size_t{1000});
    secret = other;
    QVERIFY(secret == "open" && secret.data() == bytes);
    QVERIFY(std::all_of(bytes + 4, bytes + 1000, [](char byte) { return byte == 0; }));
}

REGISTER_TEST(TestPasswordFile, NoApplication)
#include "tst_password_file.moc"
