// SPDX-License-Identifier: MIT
#include "support/config_files.h"
#include "support/files.h"
#include "support/forked_action.h"
#include "support/growth.h"
#include "support/guarded_test.h"
#include "support/register_test.h"
#include "support/watched_thread.h"

#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

#include <atomic>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <thread>
#include <tinyxml.h>
#include <unistd.h>

#ifdef __SANITIZE_ADDRESS__
// NOLINTNEXTLINE(bugprone-reserved-identifier): the name that the checks give it
extern "C" std::size_t __sanitizer_get_current_allocated_bytes();
#endif

namespace {

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
    void aFileEndsAtItsFirstZeroByte();

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
    bool isSaved = false;
    WatchedThread saving(
        [&] { isSaved = ConfigManager::saveConfiguration(module->fModel, &root); });
    const bool waits = saving.waits();
    module->fModel->fMutex->unlockWrite();
    QVERIFY(waits);
    saving.join();
    QVERIFY(isSaved);
}

void TestConfigManager::savingSharesTheModelWithReaders()
{
    const auto module = newModule();
    module->fModel->fMutex->lockRead();
    TiXmlElement root("stm_viewer");
    bool isSaved = false;
    WatchedThread saving(
        [&] { isSaved = ConfigManager::saveConfiguration(module->fModel, &root); });
    const bool ends = saving.ends();
    module->fModel->fMutex->unlockRead();
    QVERIFY(ends);
    saving.join();
    QVERIFY(isSaved);
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
    ForkedAction child([this] { return endOfLoad(path("given.xml")); });
    QCOMPARE(child.waitForExit(), int(returns ? RETURNED : RETRIES));
}

void TestConfigManager::aFileEndsAtItsFirstZeroByte()
{
    QByteArray bytes = "<stm_viewer><stm_value name='a' alias='a'/></stm_viewer>";
    bytes.append('\0').append("<stm_viewer");
    QCOMPARE(loaded(bytes)->fModel->fSTMVals.size(), std::size_t(1));
}

REGISTER_TEST(TestConfigManager, QCoreApplication)
#include "tst_config_manager.moc"
