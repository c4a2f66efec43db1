// SPDX-License-Identifier: MIT
#include "config_manager.h"
#include "model.h"
#include "module.h"
#include "support/files.h"
#include "support/guarded_test.h"
#include "support/patience.h"
#include "support/register_test.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTextCodec>
#include <QTranslator>
#include <QtTest>

#include <boost/make_shared.hpp>

#include <atomic>
#include <csignal>
#include <cstdlib>
#include <ctime>
#include <fcntl.h>
#include <fstream>
#include <future>
#include <memory>
#include <stdexcept>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>
#include <tinyxml.h>
#include <unistd.h>

#ifdef __SANITIZE_ADDRESS__
// NOLINTNEXTLINE(bugprone-reserved-identifier): the name that the checks give it
extern "C" std::size_t __sanitizer_get_current_allocated_bytes();
#endif

namespace {

using ModelPointer = boost::shared_ptr<Model const>;

boost::shared_ptr<Module> newModule()
{
    return boost::make_shared<Module>(boost::shared_ptr<ZoMemoryProxy>());
}

STMVal& addEntry(Module& module, const std::string& name, const std::string& alias)
{
    const auto value = boost::make_shared<STMVal>();
    value->names = {name, alias};
    value->color.red = 1;
    value->color.green = 20;
    value->color.blue = 254;
    module.addSTMVal(value);
    return *value;
}

// The message of the exception that `action` throws; empty when it throws none.
template <class Action>
QString messageOf(Action action)
{
    try {
        action();
    } catch (const std::runtime_error& error) {
        return QString::fromUtf8(error.what());
    }
    return QString();
}

QString loadMessage(const boost::shared_ptr<Module>& module, const QString& path)
{
    return messageOf([&] { ConfigManager::loadConfigurationFile(module, path); });
}

QString saveMessage(const boost::shared_ptr<Module>& module, const QString& path)
{
    return messageOf([&] { ConfigManager::saveConfigurationFile(module->fModel, path); });
}

int timesOpen(const QString& path)
{
    int count = 0;
    const QDir descriptors("/proc/self/fd");
    for (const QString& each : descriptors.entryList(QDir::System | QDir::Files)) {
        if (QFile::symLinkTarget(descriptors.filePath(each)) == path)
            ++count;
    }
    return count;
}

enum LoadEnd
{
    RETURNED,
    RETRIES,
    ADDED_MORE,
    GREW
};

std::size_t countEntries(const Module& module)
{
    const ZoCriticalSectionRead guard(module.fModel->fMutex);
    return module.fModel->fSTMVals.size();
}

double processorSeconds()
{
    timespec time = {};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

// The address checks keep what is freed for a while, and know better what is in use.
std::size_t bytesInUse()
{
#ifdef __SANITIZE_ADDRESS__
    return __sanitizer_get_current_allocated_bytes();
#else
    std::size_t all = 0;
    std::size_t resident = 0;
    std::ifstream("/proc/self/statm") >> all >> resident;
    return resident * static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
#endif
}

void useProcessor(double seconds, const std::atomic<bool>& unless)
{
    for (const double end = processorSeconds() + seconds; processorSeconds() < end && !unless;)
        std::this_thread::yield();
}

// How a load ends of a file whose first entry is whole. For a process that ends with it.
LoadEnd endOfLoad(const QString& path)
{
    const auto module = newModule();
    std::atomic<bool> returned(false);
    std::thread([&] {
        ConfigManager::loadConfigurationFile(module, path);
        returned = true;
    }).detach();
    useProcessor(0.3, returned);
    const std::size_t before = bytesInUse();
    useProcessor(0.7, returned);
    if (returned)
        return RETURNED;
    if (countEntries(*module) != 1)
        return ADDED_MORE;
    return bytesInUse() > before + 4000000 ? GREW : RETRIES;
}

// What the system tells about an open file of this process, in the words of fcntl; -1 when there
// is not exactly one at the path.
int flagsOf(const QString& path)
{
    const QDir descriptors("/proc/self/fd");
    QStringList found;
    for (const QString& each : descriptors.entryList(QDir::System | QDir::Files)) {
        if (QFile::symLinkTarget(descriptors.filePath(each)) == path)
            found += each;
    }
    if (found.size() != 1)
        return -1;
    const QByteArray info = bytesOf("/proc/self/fdinfo/" + found.first());
    const QByteArray flags = info.mid(info.indexOf("flags:") + 6);
    return flags.left(flags.indexOf('\n')).trimmed().toInt(nullptr, 8);
}

/// What the toolkit takes for the encoding of the locale, until its end.
class LocaleEncoding
{
public:
    explicit LocaleEncoding(const QByteArray& name)
        : fBefore(QTextCodec::codecForLocale()), fCodec(QTextCodec::codecForName(name))
    {
        QTextCodec::setCodecForLocale(fCodec);
    }
    ~LocaleEncoding() { QTextCodec::setCodecForLocale(fBefore); }
    LocaleEncoding(const LocaleEncoding&) = delete;
    LocaleEncoding& operator=(const LocaleEncoding&) = delete;

    bool isKnown() const { return fCodec; }

private:
    QTextCodec* fBefore;
    QTextCodec* fCodec;
};

/// The reading end of a pipe that lies in a folder.
class PipeReader
{
public:
    explicit PipeReader(const QString& path)
        : fMade(mkfifo(path.toUtf8().constData(), 0600) == 0),
          fFile(open(path.toUtf8().constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC))
    {
    }
    ~PipeReader() { stop(); }
    PipeReader(const PipeReader&) = delete;
    PipeReader& operator=(const PipeReader&) = delete;

    bool isOpen() const { return fMade && fFile >= 0; }

    /// Waits until the writer can write no more.
    bool waitUntilFull() const
    {
        const int size = fcntl(fFile, F_GETPIPE_SZ);
        return QTest::qWaitFor([&] { return waiting() == size; }, patience);
    }

    /// All that comes until the writer closes its end.
    QByteArray readAll() const
    {
        QByteArray all;
        char bytes[1000];
        fcntl(fFile, F_SETFL, 0);
        for (ssize_t got = 1; got > 0;) {
            got = read(fFile, bytes, sizeof bytes);
            all.append(bytes, static_cast<int>(got));
        }
        return all;
    }

    void stop()
    {
        if (fFile >= 0)
            close(fFile);
        fFile = -1;
    }

private:
    int waiting() const
    {
        int bytes = 0;
        return ioctl(fFile, FIONREAD, &bytes) == 0 ? bytes : -1;
    }

    bool fMade;
    int fFile;
};

// Marks every text that asks for its translation in the context of the class.
class Marker : public QTranslator
{
public:
    bool isEmpty() const override { return false; }
    QString translate(const char* context, const char* text, const char* /*disambiguation*/,
                      int /*n*/) const override
    {
        return qstrcmp(context, "ConfigManager") == 0 ? "~" + QString::fromUtf8(text) : QString();
    }
};

} // namespace

class TestConfigManager : public GuardedTest
{
    Q_OBJECT

private slots:
    void init();
    void aMissingNumberLeavesTheTargetAlone();
    void aNumberIsReadWithItsSign();
    void textThatIsNoNumberStillCountsAsPresent();
    void everyNumberButZeroIsTrue();
    void theFileHoldsThreeLinesForEachKey();
    void anEmptyModelIsSavedAsTheRootAlone();
    void markupInNamesIsEscaped();
    void savingReplacesWhatTheFileHeld();
    void savingWaitsForAWriterOfTheModel();
    void savingSharesTheModelWithReaders();
    void whatWasSavedIsReadBack();
    void savingLoadingAndSavingGivesTheSameBytes();
    void everyByteOfAnAliasSurvives();
    void whatWasSavedIsReadWhateverItsSize();
    void aLatin1AliasInAHandWrittenFileSurvives();
    void coloursAreStoredAsRead();
    void missingColoursAreRandom();
    void onlyTheFirstColourOfAnEntryCounts();
    void otherElementsAreSkipped();
    void loadingAddsToTheKeysThatAreThere();
    void loadingFromNoElementFails();
    void anEntryWithoutNameOrAliasNeverReturns_data();
    void anEntryWithoutNameOrAliasNeverReturns();
    void aPathOutsideAsciiIsOpened_data();
    void aPathOutsideAsciiIsOpened();
    void newFilesAreForWhomTheUserAllows();
    void aMissingFolderCannotBeSavedTo();
    void aFolderOrAPipeCannotBeSavedTo();
    void aPipeIsGivenEveryByteHoweverSlowItsReader();
    void aReaderThatIsGoneDoesNotEndTheProcess();
    void aFailedWriteGoesUnnoticed();
    void aMissingFileCannotBeLoaded();
    void aFileThatIsNoXmlCannotBeLoaded_data();
    void aFileThatIsNoXmlCannotBeLoaded();
    void whatIsNoOrdinaryFileCannotBeLoaded();
    void aTerminalThatIsOpenedDoesNotBecomeTheMaster();
    void aFileBeyondTheLimitCannotBeLoaded();
    void aFileEndsAtItsFirstZeroByte();
    void anotherRootElementCannotBeLoaded();
    void theDescriptionFillsTheLowestMarkerOfThePath();
    void messagesAreTranslated();
    void onlyASuccessfulLoadLeavesTheFileOpen();
    void savingClosesTheFile();
    void otherProgramsDoNotInheritTheFile();

private:
    QString path(const QString& name) const { return fFolder->filePath(name); }
    boost::shared_ptr<Module> loaded(const QByteArray& bytes) const;

    std::unique_ptr<QTemporaryDir> fFolder;
};

void TestConfigManager::init()
{
    fFolder = std::make_unique<QTemporaryDir>();
    QVERIFY(fFolder->isValid());
}

boost::shared_ptr<Module> TestConfigManager::loaded(const QByteArray& bytes) const
{
    writeBytes(path("given.xml"), bytes);
    auto module = newModule();
    ConfigManager::loadConfigurationFile(module, path("given.xml"));
    return module;
}

void TestConfigManager::aMissingNumberLeavesTheTargetAlone()
{
    const TiXmlElement element("color");
    int number = 42;
    bool flag = true;
    QVERIFY(!ConfigManager::readInt("red", &element, number));
    QVERIFY(!ConfigManager::readBool("red", &element, flag));
    QCOMPARE(number, 42);
    QVERIFY(flag);
}

void TestConfigManager::aNumberIsReadWithItsSign()
{
    TiXmlElement element("color");
    int number = 0;
    element.SetAttribute("red", "-5");
    QVERIFY(ConfigManager::readInt("red", &element, number));
    QCOMPARE(number, -5);
    element.SetAttribute("red", " +17 apples");
    QVERIFY(ConfigManager::readInt("red", &element, number));
    QCOMPARE(number, 17);
}

void TestConfigManager::textThatIsNoNumberStillCountsAsPresent()
{
    TiXmlElement element("stm_value");
    int number = 0;
    bool flag = false;
    for (const char* text : {"true", "false", "", "x1"}) {
        element.SetAttribute("watch", text);
        QVERIFY(ConfigManager::readInt("watch", &element, number));
        QVERIFY(ConfigManager::readBool("watch", &element, flag));
    }
}

void TestConfigManager::everyNumberButZeroIsTrue()
{
    TiXmlElement element("stm_value");
    for (const char* text : {"1", "2", "-1", "300"}) {
        bool flag = false;
        element.SetAttribute("watch", text);
        QVERIFY(ConfigManager::readBool("watch", &element, flag));
        QVERIFY(flag);
    }
    bool flag = true;
    element.SetAttribute("watch", "0");
    QVERIFY(ConfigManager::readBool("watch", &element, flag));
    QVERIFY(!flag);
}

void TestConfigManager::theFileHoldsThreeLinesForEachKey()
{
    const auto module = newModule();
    STMVal& arm = addEntry(*module, "Arm/Elbow", "elbow");
    arm.watch = true;
    arm.color.red = -300;
    STMVal& leg = addEntry(*module, "Leg/Knee", "Leg/Knee");
    leg.watch = true;
    leg.graph = true;
    ConfigManager::saveConfigurationFile(module->fModel, path("keys.xml"));
    QCOMPARE(
        bytesOf(path("keys.xml")),
        QByteArray("<stm_viewer>\n"
                   "    <stm_value name=\"Arm/Elbow\" alias=\"elbow\" watch=\"1\" graph=\"0\">\n"
                   "        <color red=\"-300\" green=\"20\" blue=\"254\" />\n"
                   "    </stm_value>\n"
                   "    <stm_value name=\"Leg/Knee\" alias=\"Leg/Knee\" watch=\"1\" graph=\"1\">\n"
                   "        <color red=\"1\" green=\"20\" blue=\"254\" />\n"
                   "    </stm_value>\n"
                   "</stm_viewer>\n"));
}

void TestConfigManager::anEmptyModelIsSavedAsTheRootAlone()
{
    const auto module = newModule();
    ConfigManager::saveConfigurationFile(module->fModel, path("empty.xml"));
    QCOMPARE(bytesOf(path("empty.xml")), QByteArray("<stm_viewer />\n"));
    ConfigManager::loadConfigurationFile(module, path("empty.xml"));
    QVERIFY(module->fModel->fSTMVals.empty());
}

void TestConfigManager::markupInNamesIsEscaped()
{
    const auto module = newModule();
    addEntry(*module, "<a>&b", "'c\td");
    ConfigManager::saveConfigurationFile(module->fModel, path("keys.xml"));
    const QByteArray expected = "name=\"&lt;a&gt;&amp;b\" alias=\"&apos;c&#x09;d\" watch";
    QVERIFY2(bytesOf(path("keys.xml")).contains(expected), bytesOf(path("keys.xml")).constData());
}

void TestConfigManager::savingReplacesWhatTheFileHeld()
{
    writeBytes(path("keys.xml"), QByteArray(10000, 'x'));
    ConfigManager::saveConfigurationFile(newModule()->fModel, path("keys.xml"));
    QCOMPARE(bytesOf(path("keys.xml")), QByteArray("<stm_viewer />\n"));
}

void TestConfigManager::savingWaitsForAWriterOfTheModel()
{
    const auto module = newModule();
    module->fModel->fMutex->lockWrite();
    TiXmlElement root("stm_viewer");
    auto saved = std::async(std::launch::async, [&] {
        return ConfigManager::saveConfiguration(module->fModel, &root);
    });
    const auto whileWriting = saved.wait_for(std::chrono::milliseconds(100));
    module->fModel->fMutex->unlockWrite();
    QCOMPARE(whileWriting, std::future_status::timeout);
    QVERIFY(saved.get());
}

void TestConfigManager::savingSharesTheModelWithReaders()
{
    const auto module = newModule();
    module->fModel->fMutex->lockRead();
    TiXmlElement root("stm_viewer");
    auto saved = std::async(std::launch::async, [&] {
        return ConfigManager::saveConfiguration(module->fModel, &root);
    });
    const auto whileReading = saved.wait_for(std::chrono::seconds(20));
    module->fModel->fMutex->unlockRead();
    QCOMPARE(whileReading, std::future_status::ready);
    QVERIFY(saved.get());
}

void TestConfigManager::whatWasSavedIsReadBack()
{
    const auto module = newModule();
    addEntry(*module, "first", "1").watch = true;
    addEntry(*module, "second", "2").graph = true;
    addEntry(*module, "first", "1");
    ConfigManager::saveConfigurationFile(module->fModel, path("keys.xml"));
    const auto again = newModule();
    ConfigManager::loadConfigurationFile(again, path("keys.xml"));
    const auto& values = again->fModel->fSTMVals;
    QCOMPARE(values.size(), std::size_t(3));
    QCOMPARE(values[0]->names, std::make_pair(std::string("first"), std::string("1")));
    QCOMPARE(values[1]->names, std::make_pair(std::string("second"), std::string("2")));
    QCOMPARE(values[2]->names, values[0]->names);
    QVERIFY(values[0]->watch && !values[0]->graph);
    QVERIFY(!values[1]->watch && values[1]->graph);
    QVERIFY(values[0]->type.empty() && values[0]->value.empty());
    QCOMPARE(values[1]->color.red, 1);
    QCOMPARE(values[1]->color.green, 20);
    QCOMPARE(values[1]->color.blue, 254);
}

void TestConfigManager::savingLoadingAndSavingGivesTheSameBytes()
{
    const auto module = newModule();
    for (int i = 0; i < 300; ++i) {
        STMVal& value =
            addEntry(*module, "key \"" + std::to_string(i), "it's <" + std::to_string(i));
        value.watch = i % 2;
        value.graph = i % 3;
        value.color.red = i * 7 - 900;
    }
    ConfigManager::saveConfigurationFile(module->fModel, path("first.xml"));
    const auto again = newModule();
    ConfigManager::loadConfigurationFile(again, path("first.xml"));
    ConfigManager::saveConfigurationFile(again->fModel, path("second.xml"));
    QVERIFY(bytesOf(path("first.xml")).size() > 30000);
    QCOMPARE(bytesOf(path("second.xml")), bytesOf(path("first.xml")));
}

void TestConfigManager::everyByteOfAnAliasSurvives()
{
    std::string all = " ";
    for (int byte = 0; byte < 256; ++byte)
        all += static_cast<char>(byte);
    const auto module = newModule();
    addEntry(*module, all, "");
    for (int byte = 0; byte < 256; ++byte)
        addEntry(*module, std::string(1, static_cast<char>(byte)), all.substr(byte) + "&#x41;");
    ConfigManager::saveConfigurationFile(module->fModel, path("bytes.xml"));
    const auto again = newModule();
    ConfigManager::loadConfigurationFile(again, path("bytes.xml"));
    QCOMPARE(again->fModel->fSTMVals.size(), std::size_t(257));
    for (std::size_t i = 0; i < 257; ++i)
        QVERIFY(again->fModel->fSTMVals[i]->names == module->fModel->fSTMVals[i]->names);
}

// The same file with a comment, which the panel never writes, is refused.
void TestConfigManager::whatWasSavedIsReadWhateverItsSize()
{
    const std::string name(11 * 1000 * 1000, '\xE9');
    const auto module = newModule();
    for (int i = 0; i < 10; ++i)
        addEntry(*module, i % 2 ? "key" : name, std::to_string(i) + name.substr(i * 1000000));
    const QString file = path("keys.xml");
    ConfigManager::saveConfigurationFile(module->fModel, file);
    QVERIFY(QFileInfo(file).size() > 100 * 1000 * 1000);
    const auto again = newModule();
    ConfigManager::loadConfigurationFile(again, file);
    QCOMPARE(again->fModel->fSTMVals.size(), std::size_t(10));
    for (std::size_t i = 0; i < 10; ++i)
        QVERIFY(again->fModel->fSTMVals[i]->names == module->fModel->fSTMVals[i]->names);
    QFile appended(file);
    QVERIFY(appended.open(QIODevice::Append));
    QVERIFY(appended.write("<!-- -->") > 0);
    appended.close();
    QVERIFY(loadMessage(again, file).contains("Error: the file is larger than 64 MiB."));
    QCOMPARE(again->fModel->fSTMVals.size(), std::size_t(10));
}

void TestConfigManager::aLatin1AliasInAHandWrittenFileSurvives()
{
    const auto module =
        loaded("<stm_viewer><stm_value name=\"a\" alias=\"\xE9t\xE9\"/></stm_viewer>");
    QCOMPARE(module->fModel->fSTMVals.at(0)->names.second, std::string("\xE9t\xE9"));
    ConfigManager::saveConfigurationFile(module->fModel, path("again.xml"));
    QVERIFY(bytesOf(path("again.xml")).contains("alias=\"\xE9t\xE9\""));
}

void TestConfigManager::coloursAreStoredAsRead()
{
    const auto module =
        loaded("<stm_viewer><stm_value name='a' alias='b' watch='2' graph='-1'>"
               "<color red='300' green='-5' blue='2147483647'/></stm_value></stm_viewer>");
    const STMVal& value = *module->fModel->fSTMVals.at(0);
    QVERIFY(value.watch && value.graph);
    QCOMPARE(value.color.red, 300);
    QCOMPARE(value.color.green, -5);
    QCOMPARE(value.color.blue, 2147483647);
}

void TestConfigManager::missingColoursAreRandom()
{
    std::srand(7);
    const Color first;
    const Color second;
    std::srand(7);
    const auto module = loaded("<stm_viewer><stm_value name='a' alias='a'/>"
                               "<stm_value name='b' alias='b'><color green='-9'/></stm_value>"
                               "</stm_viewer>");
    const Color& none = module->fModel->fSTMVals.at(0)->color;
    const Color& some = module->fModel->fSTMVals.at(1)->color;
    QVERIFY(none.red == first.red && none.green == first.green && none.blue == first.blue);
    QVERIFY(some.red == second.red && some.green == -9 && some.blue == second.blue);
}

void TestConfigManager::onlyTheFirstColourOfAnEntryCounts()
{
    const auto module = loaded("<stm_viewer><stm_value name='a' alias='a'><other red='3'/>"
                               "<color red='1'/><color red='2'/></stm_value></stm_viewer>");
    QCOMPARE(module->fModel->fSTMVals.at(0)->color.red, 1);
}

void TestConfigManager::otherElementsAreSkipped()
{
    const auto module =
        loaded("<?xml version='1.0'?><other/><stm_viewer><x name='x' alias='x'/>text"
               "<stm_value name='a' alias='a'/><!-- c --><y><stm_value name='y' alias='y'/></y>"
               "<stm_value name='b' alias='b'/></stm_viewer><stm_viewer/>");
    QCOMPARE(module->fModel->fSTMVals.size(), std::size_t(2));
    QCOMPARE(module->fModel->fSTMVals[0]->names.first, std::string("a"));
    QCOMPARE(module->fModel->fSTMVals[1]->names.first, std::string("b"));
}

void TestConfigManager::loadingAddsToTheKeysThatAreThere()
{
    const auto module = newModule();
    addEntry(*module, "a", "old");
    ConfigManager::saveConfigurationFile(module->fModel, path("keys.xml"));
    ConfigManager::loadConfigurationFile(module, path("keys.xml"));
    QCOMPARE(module->fModel->fSTMVals.size(), std::size_t(2));
    QCOMPARE(module->fModel->fSTMVals[1]->names.second, std::string("old"));
}

void TestConfigManager::loadingFromNoElementFails()
{
    const TiXmlElement bare("stm_viewer");
    QVERIFY(!ConfigManager::loadConfiguration(newModule(), nullptr));
    QVERIFY(ConfigManager::loadConfiguration(newModule(), &bare));
}

void TestConfigManager::anEntryWithoutNameOrAliasNeverReturns_data()
{
    QTest::addColumn<QByteArray>("entry");
    QTest::addColumn<bool>("returns");
    QTest::newRow("whole") << QByteArray("<stm_value name='a' alias='a'/>") << true;
    QTest::newRow("no alias") << QByteArray("<stm_value name='a'/>") << false;
    QTest::newRow("no name") << QByteArray("<stm_value alias='a'/>") << false;
    QTest::newRow("neither") << QByteArray("<stm_value/>") << false;
}

// In a process of its own, as nothing ends the retries: some hundred thousand in the time given.
void TestConfigManager::anEntryWithoutNameOrAliasNeverReturns()
{
    QFETCH(QByteArray, entry);
    QFETCH(bool, returns);
    const QByteArray whole = "<stm_value name='w' alias='w'/>";
    writeBytes(path("given.xml"), "<stm_viewer>" + whole + entry + whole + "</stm_viewer>");
    const pid_t child = fork();
    if (child == 0) {
        alarm(60);
        _exit(endOfLoad(path("given.xml")));
    }
    int status = 0;
    QCOMPARE(waitpid(child, &status, 0), child);
    QVERIFY(WIFEXITED(status));
    QCOMPARE(static_cast<LoadEnd>(WEXITSTATUS(status)), returns ? RETURNED : RETRIES);
}

void TestConfigManager::aPathOutsideAsciiIsOpened_data()
{
    QTest::addColumn<QByteArray>("encoding");
    for (const char* encoding : {"UTF-8", "ISO-8859-1", "US-ASCII"})
        QTest::newRow(encoding) << QByteArray(encoding);
}

// Whatever the toolkit takes for the encoding of the locale. Also run in other locales.
void TestConfigManager::aPathOutsideAsciiIsOpened()
{
    QFETCH(QByteArray, encoding);
    const LocaleEncoding other(encoding);
    QVERIFY(other.isKnown());
    const QByteArray bytes = fFolder->path().toUtf8() + "/Schl\xC3\xBCssel \xE2\x82\xAC.xml";
    const QString name = QString::fromUtf8(bytes);
    const auto module = newModule();
    addEntry(*module, "a", "a");
    ConfigManager::saveConfigurationFile(module->fModel, name);
    QCOMPARE(access(bytes.constData(), R_OK), 0);
    ConfigManager::loadConfigurationFile(module, name);
    QCOMPARE(module->fModel->fSTMVals.size(), std::size_t(2));
    QCOMPARE(unlink(bytes.constData()), 0);
    QVERIFY(loadMessage(module, name).contains(name));
    QVERIFY(saveMessage(module, name + "/none").contains(name));
}

void TestConfigManager::newFilesAreForWhomTheUserAllows()
{
    const mode_t before = umask(0017);
    ConfigManager::saveConfigurationFile(newModule()->fModel, path("keys.xml"));
    umask(before);
    struct stat status = {};
    QCOMPARE(stat(path("keys.xml").toUtf8().constData(), &status), 0);
    QCOMPARE(status.st_mode & 0777, mode_t(0660));
}

void TestConfigManager::aMissingFolderCannotBeSavedTo()
{
    const QString name = path("none/%2/keys.xml");
    QCOMPARE(saveMessage(newModule(), name),
             "Failed to open location " + name +
                 " for writing.\n%2\nConfiguration file will not be saved.");
}

void TestConfigManager::aFolderOrAPipeCannotBeSavedTo()
{
    const QString pipeName = path("pipe");
    QCOMPARE(mkfifo(pipeName.toUtf8().constData(), 0600), 0);
    for (const QString& name : {pipeName, fFolder->path()}) {
        QCOMPARE(saveMessage(newModule(), name),
                 "Failed to open location " + name +
                     " for writing.\n%2\nConfiguration file will not be saved.");
    }
}

void TestConfigManager::aPipeIsGivenEveryByteHoweverSlowItsReader()
{
    const auto module = newModule();
    for (int i = 0; i < 5000; ++i)
        addEntry(*module, std::to_string(i), std::string(40, 'x'));
    ConfigManager::saveConfigurationFile(module->fModel, path("keys.xml"));
    PipeReader reader(path("pipe"));
    QVERIFY(reader.isOpen());
    auto message =
        std::async(std::launch::async, [&] { return saveMessage(module, path("pipe")); });
    const bool wasFull = reader.waitUntilFull();
    const QByteArray got = reader.readAll();
    QVERIFY(wasFull);
    QCOMPARE(message.get(), QString());
    QVERIFY(got == bytesOf(path("keys.xml")));
}

// In a process of its own, as the signal would end it.
void TestConfigManager::aReaderThatIsGoneDoesNotEndTheProcess()
{
    const auto module = newModule();
    for (int i = 0; i < 5000; ++i)
        addEntry(*module, std::to_string(i), std::string(40, 'x'));
    PipeReader reader(path("pipe"));
    QVERIFY(reader.isOpen());
    const pid_t child = fork();
    if (child == 0) {
        alarm(60);
        reader.stop();
        const bool quiet = saveMessage(module, path("pipe")).isEmpty();
        sigset_t blocked;
        sigset_t pending;
        pthread_sigmask(SIG_BLOCK, nullptr, &blocked);
        sigpending(&pending);
        const bool asBefore = !sigismember(&blocked, SIGPIPE) && !sigismember(&pending, SIGPIPE);
        _exit(quiet && asBefore ? 0 : 1);
    }
    const bool wasFull = reader.waitUntilFull();
    reader.stop();
    int status = 0;
    QCOMPARE(waitpid(child, &status, 0), child);
    QVERIFY(wasFull);
    QVERIFY(WIFEXITED(status));
    QCOMPARE(WEXITSTATUS(status), 0);
}

void TestConfigManager::aFailedWriteGoesUnnoticed()
{
    QCOMPARE(saveMessage(newModule(), "/dev/full"), QString());
}

void TestConfigManager::aMissingFileCannotBeLoaded()
{
    const QString name = path("none %1 %2.xml");
    QCOMPARE(loadMessage(newModule(), name),
             "Failed to open location " + name +
                 " for reading.\nConfiguration file will not be loaded.");
}

void TestConfigManager::aFileThatIsNoXmlCannotBeLoaded_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("description");
    const QByteArray entry = "<stm_viewer><stm_value name='a' alias='a'/>";
    const QString cut = "Error reading Element value: the file ends inside a character.";
    QTest::newRow("empty") << QByteArray() << "Error document empty.";
    QTest::newRow("text") << QByteArray("hello") << "Error document empty.";
    QTest::newRow("open root") << entry << "Error reading Element value.";
    QTest::newRow("other end tag") << entry + "</x>"
                                   << "Error reading end tag.";
    QTest::newRow("twice the same attribute")
        << QByteArray("<a b='1' b='2'/>") << "Error parsing Element.";
    QTest::newRow("mark and a cut character, 8 bytes")
        << QByteArray("\xEF\xBB\xBF<a>\xE2\x82") << cut;
    QTest::newRow("declared and cut in a character")
        << "<?xml version='1.0' encoding='UTF-8'?>" + entry + "\xF0\x9F" << cut;
    QTest::newRow("36,000 nested elements")
        << QByteArray("<a>").repeated(36000) + QByteArray("</a>").repeated(36000)
        << "Error parsing Element: more than 256 nested elements.";
}

void TestConfigManager::aFileThatIsNoXmlCannotBeLoaded()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, description);
    const QString name = path("given.xml");
    writeBytes(name, bytes);
    const auto module = newModule();
    QCOMPARE(loadMessage(module, name), "Could not parse XML from location " + name + ".\n" +
                                            description +
                                            "\nConfiguration file will not be loaded.");
    QVERIFY(module->fModel->fSTMVals.empty());
}

void TestConfigManager::whatIsNoOrdinaryFileCannotBeLoaded()
{
    const QString pipeName = path("pipe");
    QCOMPARE(mkfifo(pipeName.toUtf8().constData(), 0600), 0);
    const QString begin = "Could not parse XML from location ";
    const QString end = ".\nConfiguration file will not be loaded.";
    QCOMPARE(loadMessage(newModule(), fFolder->path()),
             begin + fFolder->path() + ".\nFailed to open file: it is a directory" + end);
    for (const QString& name : {pipeName, QString("/dev/zero"), QString("/dev/null")}) {
        QCOMPARE(loadMessage(newModule(), name),
                 begin + name + ".\nFailed to open file: it is a device or a pipe" + end);
    }
}

// In a process of its own, of which a terminal that it opens could become the master.
void TestConfigManager::aTerminalThatIsOpenedDoesNotBecomeTheMaster()
{
    const int end = posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
    QVERIFY(grantpt(end) == 0 && unlockpt(end) == 0);
    const QString name = ptsname(end);
    const pid_t child = fork();
    if (child == 0) {
        alarm(60);
        setsid();
        const bool isRefused = loadMessage(newModule(), name).contains("a device or a pipe");
        _exit(isRefused && open("/dev/tty", O_RDWR | O_CLOEXEC) < 0 ? 0 : 1);
    }
    int status = 0;
    QCOMPARE(waitpid(child, &status, 0), child);
    close(end);
    QVERIFY(WIFEXITED(status));
    QCOMPARE(WEXITSTATUS(status), 0);
}

void TestConfigManager::aFileBeyondTheLimitCannotBeLoaded()
{
    const QString name = path("large.xml");
    writeBytes(name, "<stm_viewer/>");
    QVERIFY(QFile::resize(name, 3000000000));
    QCOMPARE(loadMessage(newModule(), name), "Could not parse XML from location " + name +
                                                 ".\nError: the file is larger than 64 MiB.\n"
                                                 "Configuration file will not be loaded.");
}

void TestConfigManager::aFileEndsAtItsFirstZeroByte()
{
    QByteArray bytes = "<stm_viewer><stm_value name='a' alias='a'/></stm_viewer>";
    bytes.append('\0').append("<stm_viewer");
    QCOMPARE(loaded(bytes)->fModel->fSTMVals.size(), std::size_t(1));
}

void TestConfigManager::anotherRootElementCannotBeLoaded()
{
    const QString name = path("other.xml");
    writeBytes(name, "<viewer><stm_value name='a' alias='a'/></viewer>");
    const auto module = newModule();
    QCOMPARE(loadMessage(module, name),
             "Incorrect Tarvek Glimmet configuration file at location " + name + ".\n.");
    QVERIFY(module->fModel->fSTMVals.empty());
}

void TestConfigManager::theDescriptionFillsTheLowestMarkerOfThePath()
{
    const QString name = path("100%1.xml");
    writeBytes(name, "");
    QCOMPARE(loadMessage(newModule(), name), "Could not parse XML from location " +
                                                 path("100Error document empty..xml") +
                                                 ".\n%2\nConfiguration file will not be loaded.");
    writeBytes(path("100%2.xml"), "");
    QCOMPARE(loadMessage(newModule(), path("100%2.xml")),
             "Could not parse XML from location " + path("100Error document empty..xml") +
                 ".\nError document empty.\nConfiguration file will not be loaded.");
}

void TestConfigManager::messagesAreTranslated()
{
    Marker marker;
    QVERIFY(QCoreApplication::installTranslator(&marker));
    writeBytes(path("empty.xml"), "");
    writeBytes(path("other.xml"), "<a/>");
    QVERIFY(saveMessage(newModule(), path("none/a")).startsWith("~Failed to open location /"));
    QVERIFY(loadMessage(newModule(), path("none")).startsWith("~Failed to open location /"));
    QVERIFY(loadMessage(newModule(), path("empty.xml")).startsWith("~Could not parse XML from"));
    QVERIFY(loadMessage(newModule(), path("other.xml")).startsWith("~Incorrect Tarvek Glimmet"));
}

void TestConfigManager::onlyASuccessfulLoadLeavesTheFileOpen()
{
    const QString name = QFileInfo(fFolder->path()).canonicalFilePath() + "/given.xml";
    loaded("<stm_viewer/>");
    QCOMPARE(timesOpen(name), 1);
    loaded("<stm_viewer/>");
    QCOMPARE(timesOpen(name), 2);
    for (const char* bad : {"", "<other/>", "<stm_viewer>"}) {
        writeBytes(name, bad);
        QVERIFY(!loadMessage(newModule(), name).isEmpty());
    }
    QCOMPARE(timesOpen(name), 2);
}

void TestConfigManager::savingClosesTheFile()
{
    const QString name = QFileInfo(fFolder->path()).canonicalFilePath() + "/saved.xml";
    ConfigManager::saveConfigurationFile(newModule()->fModel, name);
    QCOMPARE(timesOpen(name), 0);
}

// While the file is being written, and behind a load.
void TestConfigManager::otherProgramsDoNotInheritTheFile()
{
    const QString name = QFileInfo(fFolder->path()).canonicalFilePath() + "/keys.xml";
    const auto module = newModule();
    module->fModel->fMutex->lockWrite();
    auto saved = std::async(std::launch::async, [&] { return saveMessage(module, name); });
    const bool isOpen = QTest::qWaitFor([&] { return timesOpen(name) == 1; }, patience);
    const int flags = flagsOf(name);
    module->fModel->fMutex->unlockWrite();
    QVERIFY(isOpen);
    QCOMPARE(saved.get(), QString());
    QCOMPARE(flags & (O_ACCMODE | O_CLOEXEC), O_WRONLY | O_CLOEXEC);
    ConfigManager::loadConfigurationFile(module, name);
    QCOMPARE(flagsOf(name) & (O_ACCMODE | O_CLOEXEC), O_RDONLY | O_CLOEXEC);
}

REGISTER_TEST(TestConfigManager, QCoreApplication)
#include "tst_config_manager.moc"
