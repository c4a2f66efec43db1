// SPDX-License-Identifier: MIT
#include "config_manager.h"
#include "model.h"
#include "module.h"
#include "saved_form.h"
#include "support/guarded_test.h"
#include "support/register_test.h"
#include "xml_file.h"
#include "xml_guard.h"

#include <QtTest>

#include <boost/make_shared.hpp>

#include <random>
#include <string>
#include <tinyxml.h>

Q_DECLARE_METATYPE(std::string)

namespace {

const std::string entry = "<stm_value name=\"a\" alias='b' watch=\"0\" graph=\"1\">\n"
                          "<color red=\"1\" green=\"-20\" blue=\"254\" />\n</stm_value>\n";

std::string inRoot(const std::string& entries)
{
    return "<stm_viewer>\n" + entries + "</stm_viewer>\n";
}

std::string entryNamed(const std::string& value)
{
    return "<stm_value name=" + value +
           " alias='' watch='' graph=''><color red='' green='' blue=''/></stm_value>";
}

std::string withName(const std::string& value)
{
    return inRoot(entryNamed(value));
}

/// What is saved for keys of these names, each its own alias.
std::string saved(const std::vector<std::string>& names)
{
    Module module((boost::shared_ptr<ZoMemoryProxy>()));
    for (const std::string& name : names)
        module.addSTMVal(name, name);
    auto* root = new TiXmlElement("stm_viewer");
    ConfigManager::saveConfiguration(module.fModel, root);
    TiXmlDocument document;
    document.LinkEndChild(root);
    TiXmlPrinter printer;
    document.Accept(&printer);
    return printer.CStr();
}

bool goesOn(const std::string& text)
{
    return SavedForm().goesOn(text);
}

bool isParsed(const std::string& text)
{
    TiXmlDocument document;
    std::string error;
    return parseXml(text, document, error);
}

} // namespace

class TestSavedForm : public GuardedTest
{
    Q_OBJECT

private slots:
    void whateverIsSavedHasTheForm();
    void otherSpellingsHaveTheForm_data();
    void otherSpellingsHaveTheForm();
    void whatDeviatesHasNotTheForm_data();
    void whatDeviatesHasNotTheForm();
    void everyBeginningGoesOn();
    void aGrowingTextGoesOnBehindItsLastEntry();
    void whatHasTheFormIsParsed();
    void effortDoesNotMatterToIt();
};

void TestSavedForm::whateverIsSavedHasTheForm()
{
    std::string all;
    for (int byte = 0; byte < 256; ++byte)
        all += static_cast<char>(byte);
    std::vector<std::string> names;
    QVERIFY(isSavedForm(saved(names)));
    for (const std::string& name :
         {std::string(), all, std::string("&#x41;"), std::string("&#x"), std::string("\"'"),
          std::string("]]>"), std::string("<!--"), std::string("\xEF\xBB\xBF")}) {
        names.push_back(name);
        QVERIFY2(isSavedForm(saved(names)), name.c_str());
    }
    for (int byte = 0; byte < 256; ++byte) {
        names.emplace_back(1, static_cast<char>(byte));
        QVERIFY2(isSavedForm(saved(names)), qPrintable(QString::number(byte)));
    }
}

void TestSavedForm::otherSpellingsHaveTheForm_data()
{
    QTest::addColumn<std::string>("text");
    QTest::newRow("no entries") << std::string("<stm_viewer/>");
    QTest::newRow("no entries, end tag") << std::string("<stm_viewer></stm_viewer>");
    QTest::newRow("one entry") << inRoot(entry);
    QTest::newRow("several entries") << inRoot(entry + entry + entry);
    QTest::newRow("least white space") << std::string(
        "<stm_viewer><stm_value name=''alias=''watch=''graph=''><color red=''green=''"
        "blue=''/></stm_value></stm_viewer>");
    QTest::newRow("most white space") << std::string(
        " \n<stm_viewer\t>\r\n<stm_value\v name = '' alias\n=\n'' watch='' graph=''\f>"
        " <color  red='' green='' blue='' /> </stm_value\n> </stm_viewer > \n ");
    QTest::newRow("colour with an end tag")
        << inRoot("<stm_value name='' alias='' watch='' graph=''><color red='' green='' blue='' >"
                  " </color ></stm_value>");
    for (const char* value : {"\"'\"", "'\"'", "'<>/='", "'&amp;&lt;&gt;&quot;&apos;'", "'\xE9'",
                              "'&#x0;&#xaF01;&#x000000000000000000000009;'", "'\n'"})
        QTest::newRow(value) << withName(value);
}

void TestSavedForm::otherSpellingsHaveTheForm()
{
    QFETCH(std::string, text);
    QVERIFY(isSavedForm(text));
    QVERIFY(isParsed(text));
}

void TestSavedForm::whatDeviatesHasNotTheForm_data()
{
    QTest::addColumn<std::string>("text");
    QTest::newRow("text") << std::string("text");
    QTest::newRow("mark") << "\xEF\xBB\xBF" + inRoot(entry);
    QTest::newRow("declaration") << "<?xml version='1.0'?>" + inRoot(entry);
    QTest::newRow("comment") << inRoot(entry + "<!-- -->" + entry);
    QTest::newRow("other root") << std::string("<stm_viewers/>");
    QTest::newRow("attribute of the root") << std::string("<stm_viewer a=''/>");
    QTest::newRow("second root") << inRoot(entry) + inRoot(entry);
    QTest::newRow("text behind the root") << inRoot(entry) + "x";
    QTest::newRow("zero behind the root") << inRoot(entry) + std::string(1, '\0');
    QTest::newRow("text between entries") << inRoot(entry + "x" + entry);
    QTest::newRow("text in an entry")
        << inRoot("<stm_value name='' alias='' watch='' graph=''>x<color red='' green='' blue=''/>"
                  "</stm_value>");
    QTest::newRow("no colour") << inRoot(
        "<stm_value name='' alias='' watch='' graph=''></stm_value>");
    QTest::newRow("closed entry") << inRoot("<stm_value name='' alias='' watch='' graph=''/>");
    QTest::newRow("two colours") << inRoot(
        "<stm_value name='' alias='' watch='' graph=''><color red='' green='' blue=''/>"
        "<color red='' green='' blue=''/></stm_value>");
    QTest::newRow("filled colour")
        << inRoot("<stm_value name='' alias='' watch='' graph=''><color red='' green='' blue=''>x"
                  "</color></stm_value>");
    QTest::newRow("open colour") << inRoot(
        "<stm_value name='' alias='' watch='' graph=''><color red='' green='' blue=''>"
        "</stm_value>");
    QTest::newRow("parted end of a colour")
        << inRoot("<stm_value name='' alias='' watch='' graph=''><color red='' green='' blue=''/ >"
                  "</stm_value>");
    QTest::newRow("missing attribute")
        << inRoot("<stm_value name='' alias='' watch=''><color red='' green='' blue=''/>"
                  "</stm_value>");
    QTest::newRow("other order") << inRoot(
        "<stm_value alias='' name='' watch='' graph=''><color red='' green='' blue=''/>"
        "</stm_value>");
    QTest::newRow("twice the same attribute")
        << inRoot("<stm_value name='' name='' alias='' watch='' graph=''>"
                  "<color red='' green='' blue=''/></stm_value>");
    QTest::newRow("one attribute more")
        << inRoot("<stm_value name='' alias='' watch='' graph='' x=''>"
                  "<color red='' green='' blue=''/></stm_value>");
    QTest::newRow("longer name of an element")
        << inRoot("<stm_values name='' alias='' watch='' graph=''><color red='' green='' blue=''/>"
                  "</stm_values>");
    QTest::newRow("name of an element grown into an attribute's")
        << inRoot("<stm_valuename='' alias='' watch='' graph=''><color red='' green='' blue=''/>"
                  "</stm_value>");
    QTest::newRow("longer name of an attribute") << inRoot("<stm_value names='");
    QTest::newRow("longer name in an end tag")
        << inRoot("<stm_value name='' alias='' watch='' graph=''><color red='' green='' blue=''/>"
                  "</stm_value_>");
    for (const char* value :
         {"unquoted", "=''", "'&'", "'&amp'", "'&#65;'", "'&#x;'", "'&#xG;'", "'&#x41'", "'&nbsp;'",
          "'&ap;'", "'&apo;'", "'&AMP;'", "'&#X41;'", "'&#x4'1;'", "''' "})
        QTest::newRow(value) << withName(value);
    QTest::newRow("zero in a value") << withName("'" + std::string(1, '\0') + "'");
    QTest::newRow("zero in an open value")
        << "<stm_viewer><stm_value name='" + std::string(1, '\0');
}

void TestSavedForm::whatDeviatesHasNotTheForm()
{
    QFETCH(std::string, text);
    QVERIFY(!goesOn(text));
    QVERIFY(!isSavedForm(text));
}

void TestSavedForm::everyBeginningGoesOn()
{
    const std::string text =
        inRoot(entry + "<stm_value name='&amp;&lt;&gt;&quot;&apos;&#x9f;' alias='' watch='' "
                       "graph=''><color red='' green='' blue=''></color></stm_value>");
    SavedForm growing;
    for (std::size_t size = 0; size <= text.size(); ++size) {
        const std::string beginning = text.substr(0, size);
        QVERIFY2(goesOn(beginning), beginning.c_str());
        QVERIFY2(growing.goesOn(beginning), beginning.c_str());
        const bool isWhole = size + 1 >= text.size(); // the last byte is a line end
        QCOMPARE(isSavedForm(beginning), isWhole);
        QCOMPARE(growing.isWhole(), isWhole);
    }
    QVERIFY(!growing.goesOn(text + "x"));
}

// It does not look again at what it has seen: that could be anything.
void TestSavedForm::aGrowingTextGoesOnBehindItsLastEntry()
{
    SavedForm form;
    std::string text = "<stm_viewer>" + entry + entry;
    QVERIFY(form.goesOn(text));
    const std::size_t seen = text.size();
    text += inRoot(entry).substr(13);
    std::fill(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(seen), '#');
    QVERIFY(form.goesOn(text));
    QVERIFY(form.isWhole());
}

// Such texts are given to the parser whatever their size: it must not fail at their end.
void TestSavedForm::whatHasTheFormIsParsed()
{
    const std::string bytes = std::string(" \n<>/='\"&;#xam\r\xC3") + '\0';
    const std::string text = inRoot(entry + entryNamed("'&lt;&#x1;'") + entry);
    std::mt19937 random(1);
    int whole = 0;
    for (int i = 0; i < 200000; ++i) {
        std::string changed = text;
        for (auto changes = random() % 3 + 1; changes > 0; --changes) {
            const auto at = random() % changed.size();
            if (random() % 2)
                changed[at] = bytes[random() % bytes.size()];
            else if (random() % 2)
                changed.insert(at, 1, bytes[random() % bytes.size()]);
            else
                changed.erase(at, 1);
        }
        normalizeXml(changed);
        if (isSavedForm(changed)) {
            ++whole;
            QVERIFY2(isParsed(changed), changed.c_str());
        }
    }
    QVERIFY(whole > 1000 && whole < 150000);
}

void TestSavedForm::effortDoesNotMatterToIt()
{
    std::string value;
    for (int i = 0; i < 12000000; ++i)
        value += "&lt;";
    const std::string text = withName("'" + value + "'");
    QVERIFY(xmlEffort(xmlShape(text)) > xmlMaxEffort);
    QVERIFY(isParsed(text));
    QVERIFY(!isParsed(text + "<!-- -->"));
}

REGISTER_TEST(TestSavedForm, NoApplication)
#include "tst_saved_form.moc"
