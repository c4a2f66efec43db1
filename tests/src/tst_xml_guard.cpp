// SPDX-License-Identifier: MIT
#include "support/growth.h"
#include "support/guarded_test.h"
#include "support/register_test.h"
#include "xml_file.h"
#include "xml_guard.h"

#include <QtTest>

#include <string>
#include <tinyxml.h>

Q_DECLARE_METATYPE(std::string)

namespace {

std::string repeated(const std::string& text, std::size_t times)
{
    std::string result;
    for (std::size_t i = 0; i < times; ++i)
        result += text;
    return result;
}

std::string attributes(std::size_t count)
{
    std::string result;
    for (std::size_t i = 0; i < count; ++i)
        result += " a" + std::to_string(i) + "='<'";
    return result;
}

std::string reasonAgainst(const std::string& text)
{
    TiXmlDocument document;
    std::string error;
    parseXml(text, document, error);
    return error;
}

} // namespace

class TestXmlGuard : public GuardedTest
{
    Q_OBJECT

private slots:
    void nestingIsCountedAsTheParserNests_data();
    void nestingIsCountedAsTheParserNests();
    void whatTheParserBuildsIsCounted_data();
    void whatTheParserBuildsIsCounted();
    void eachAttributeIsComparedWithThoseOfItsElement();
    void longNamesOfAttributesTakeMoreComparisons();
    void eachNodeIsCountedWithTheElementsAroundIt();
    void charactersTakeMoreThanBytes();
    void lineEndsAreNormalizedUpToTheFirstZeroByte();
    void textThatEndsInsideACharacterIsSeen_data();
    void textThatEndsInsideACharacterIsSeen();
    void asManyNestedElementsAsAllowedAreParsed();
    void deeplyNestedElementsAreRefused();
    void elementsNestedBehindSwallowedEndTagsAreRefused_data();
    void elementsNestedBehindSwallowedEndTagsAreRefused();
    void textsThatTakeTooLongAreRefused_data();
    void textsThatTakeTooLongAreRefused();
    void theLimitIsTheLastEffortAllowed();
    void measuringGrowsWithTheText_data();
    void measuringGrowsWithTheText();
    void anEncodingNamedByReferencesIsRefused();
    void everyShortTextBehindAByteOrderMarkIsRefusedOrParsed();
    void theParsersOwnDescriptionIsHandedOn();
};

void TestXmlGuard::nestingIsCountedAsTheParserNests_data()
{
    QTest::addColumn<std::string>("text");
    QTest::addColumn<int>("nesting");
    QTest::newRow("nothing") << std::string() << 0;
    QTest::newRow("closed by itself") << std::string("<a/><a /><a b=/>") << 0;
    QTest::newRow("side by side") << std::string("<r><a></a><a></a></r>") << 2;
    QTest::newRow("three deep") << std::string("<a><b>text<c></c></b></a>") << 3;
    QTest::newRow("end tag in a value") << std::string("<a b='</a>'><a b=\"</a>\">") << 2;
    QTest::newRow("end tag in a comment") << std::string("<a><!--</a>--><a>") << 2;
    QTest::newRow("end tag in a comment that begins with a bracket")
        << std::string("<a><!--></a>--><a>") << 2;
    QTest::newRow("end tag outside") << std::string("</a><a><a></a></a>") << 2;
    QTest::newRow("end tag in raw text") << std::string("<a><![CDATA[</a>]]><a>") << 2;
    QTest::newRow("end tag in a declaration")
        << std::string("<a><?xml version='</a>'?><a><!DOCTYPE</a><a>") << 3;
    QTest::newRow("end tag swallowed by a reference")
        << std::string("<a>&#</a>#1;<a>&#x</a>x1;<a>") << 3;
    QTest::newRow("quote swallowed by a reference") << std::string("<a b='&#'#;'>") << 1;
    QTest::newRow("text behind the root") << std::string("<a></a> text <a><a><a>") << 1;
    QTest::newRow("single bytes") << std::string("<a>\xE2</a><a>\xE2</a>") << 1;
    QTest::newRow("end tag swallowed by a character, mark")
        << std::string("\xEF\xBB\xBF<a>\xE2</a><a>\xE2</a>") << 2;
    QTest::newRow("end tag swallowed by a character, declared")
        << std::string("<?xml encoding='utf-8'?><a>\xE2</a><a>\xE2</a>") << 2;
    QTest::newRow("end tag swallowed by a character, declared without a name")
        << std::string("<?xml version=1?><a>\xE2</a><a>\xE2</a>") << 2;
    QTest::newRow("single bytes, declared")
        << std::string("<?xml encoding=\"ISO-8859-1\"?><a>\xE2</a><a>\xE2</a>") << 1;
}

void TestXmlGuard::nestingIsCountedAsTheParserNests()
{
    QFETCH(std::string, text);
    QFETCH(int, nesting);
    QCOMPARE(static_cast<int>(xmlShape(text).nesting), nesting);
}

void TestXmlGuard::whatTheParserBuildsIsCounted_data()
{
    QTest::addColumn<std::string>("text");
    QTest::addColumn<int>("nodes");
    QTest::addColumn<int>("attributes");
    QTest::addColumn<int>("references");
    const std::string none;
    QTest::newRow("nothing") << none << 0 << 0 << 0;
    QTest::newRow("text alone") << std::string("text & text") << 0 << 0 << 0;
    QTest::newRow("elements") << std::string("<r><a/><a></a></r>") << 3 << 0 << 0;
    QTest::newRow("texts") << std::string("<r> a <a/> b <a/> </r>") << 5 << 0 << 0;
    QTest::newRow("other nodes") << std::string("<r><!-- --><![CDATA[x]]><!x><></r>") << 5 << 0
                                 << 0;
    QTest::newRow("attributes") << std::string("<r x='a=b'><a b='1' c=2 d=\"=\"/><a b='1'/></r>")
                                << 3 << 5 << 0;
    QTest::newRow("declaration") << std::string("<?xml version='1' encoding=''?><a/>") << 2 << 3
                                 << 0;
    QTest::newRow("references") << std::string("<r a='&&lt;&#1;&#x1;'>&gt; &x</r>") << 2 << 1 << 6;
}

void TestXmlGuard::whatTheParserBuildsIsCounted()
{
    QFETCH(std::string, text);
    QFETCH(int, nodes);
    QFETCH(int, attributes);
    QFETCH(int, references);
    const XmlShape shape = xmlShape(text);
    QCOMPARE(shape.bytes, text.size());
    QCOMPARE(static_cast<int>(shape.nodes), nodes);
    QCOMPARE(static_cast<int>(shape.attributes), attributes);
    QCOMPARE(static_cast<int>(shape.references), references);
}

void TestXmlGuard::eachAttributeIsComparedWithThoseOfItsElement()
{
    const std::string small = "<a b='' c=''/>";
    QCOMPARE(xmlShape(small).comparisons, std::size_t(4));
    QCOMPARE(xmlShape("<r>" + repeated(small, 100) + "</r>").comparisons, std::size_t(400));
    const std::size_t few = xmlShape("<a" + attributes(1000) + "/>").comparisons;
    const std::size_t many = xmlShape("<a" + attributes(2000) + "/>").comparisons;
    QVERIFY(few >= 1000 * 1000);
    QVERIFY(many >= 4 * few);
}

void TestXmlGuard::longNamesOfAttributesTakeMoreComparisons()
{
    const auto comparisons = [](std::size_t length) {
        const std::string name(length, 'n');
        return xmlShape("<a " + name + "1='' " + name + "2='' " + name + "3=''/>").comparisons;
    };
    QCOMPARE(comparisons(1), std::size_t(9));
    QVERIFY(comparisons(1000) >= 9 + 3 * 3000 / 64);
    QVERIFY(comparisons(2000) < 2 * comparisons(1000));
}

void TestXmlGuard::eachNodeIsCountedWithTheElementsAroundIt()
{
    QCOMPARE(xmlShape("<a/><a/>").ancestors, std::size_t(0));
    QCOMPARE(xmlShape("<a><b><c/></b><b>text</b></a>").ancestors, std::size_t(1 + 2 + 1 + 2));
    const std::string deep = repeated("<a>", 200);
    const std::size_t before = xmlShape(deep).ancestors;
    QCOMPARE(xmlShape(deep + repeated("<a/>", 100)).ancestors, before + 20000);
}

void TestXmlGuard::charactersTakeMoreThanBytes()
{
    const std::string text = "<a>" + std::string(1000, 'x') + "</a>";
    const std::string mark = "\xEF\xBB\xBF";
    QVERIFY(!xmlShape(text).isUtf8);
    QVERIFY(xmlShape(mark + text).isUtf8);
    QVERIFY(xmlShape("<?xml version='1.0'?>" + text).isUtf8);
    QVERIFY(!xmlShape("<?xml encoding='latin1'?>" + text).isUtf8);
    QCOMPARE(xmlEffort(xmlShape(mark + text)), xmlEffort(xmlShape(text)) + 3 + 1010 / 2);
}

void TestXmlGuard::lineEndsAreNormalizedUpToTheFirstZeroByte()
{
    std::string text("a\r\nb\rc\n\r\0d\r", 11);
    normalizeXml(text);
    QCOMPARE(text, std::string("a\nb\nc\n\n"));
}

void TestXmlGuard::textThatEndsInsideACharacterIsSeen_data()
{
    QTest::addColumn<std::string>("text");
    QTest::addColumn<bool>("isCut");
    const std::string utf8 = "<?xml version='1.0' encoding='UTF-8'?>";
    QTest::newRow("whole") << utf8 + "\xE2\x82\xAC" << false;
    QTest::newRow("one of two") << utf8 + "<a>\xC3" << true;
    QTest::newRow("two of three") << utf8 + "<a>\xE2\x82" << true;
    QTest::newRow("three of four") << utf8 + "<a>\xF0\x9F\x98" << true;
    QTest::newRow("behind a mark") << std::string("\xEF\xBB\xBF<a>\xE2\x82") << true;
    QTest::newRow("behind the root") << utf8 + "<a/>\xC3" << true;
    QTest::newRow("single bytes") << std::string("<a>\xE2") << false;
    QTest::newRow("declared single bytes")
        << std::string("<?xml encoding='latin1'?><a>\xE2") << false;
}

void TestXmlGuard::textThatEndsInsideACharacterIsSeen()
{
    QFETCH(std::string, text);
    QFETCH(bool, isCut);
    QCOMPARE(xmlShape(text).cutCharacter, isCut);
    if (isCut) {
        QCOMPARE(reasonAgainst(text),
                 std::string("Error reading Element value: the file ends inside a character."));
    }
}

void TestXmlGuard::asManyNestedElementsAsAllowedAreParsed()
{
    QCOMPARE(reasonAgainst(repeated("<a>", xmlMaxNesting) + repeated("</a>", xmlMaxNesting)),
             std::string());
}

void TestXmlGuard::deeplyNestedElementsAreRefused()
{
    const std::string expected = "Error parsing Element: more than 256 nested elements.";
    for (const std::size_t depth : {xmlMaxNesting + 1, std::size_t(36000), std::size_t(1000000)}) {
        QCOMPARE(reasonAgainst(repeated("<a>", depth) + repeated("</a>", depth)), expected);
        QCOMPARE(reasonAgainst(repeated("<a>", depth)), expected);
    }
}

void TestXmlGuard::elementsNestedBehindSwallowedEndTagsAreRefused_data()
{
    QTest::addColumn<std::string>("prefix");
    QTest::addColumn<std::string>("unit");
    const std::string none;
    QTest::newRow("value") << none << std::string("<a b='</a>'>");
    QTest::newRow("comment") << none << std::string("<a><!--</a>-->");
    QTest::newRow("raw text") << none << std::string("<a><![CDATA[</a>]]>");
    QTest::newRow("reference") << none << std::string("<a>&#</a>#1;");
    QTest::newRow("declaration") << none << std::string("<a><?xml version='?></a>'?>");
    QTest::newRow("characters") << std::string("\xEF\xBB\xBF") << std::string("<a>\xE2</a>");
    QTest::newRow("line ends") << std::string("\xEF\xBB\xBF") << std::string("<a>\xE2\r\n</a>");
}

void TestXmlGuard::elementsNestedBehindSwallowedEndTagsAreRefused()
{
    QFETCH(std::string, prefix);
    QFETCH(std::string, unit);
    const std::string reason = reasonAgainst(prefix + repeated(unit, 100000));
    QCOMPARE(reason, std::string("Error parsing Element: more than 256 nested elements."));
}

// Each of them would take the parser a second and more, or a gigabyte; some took a minute.
void TestXmlGuard::textsThatTakeTooLongAreRefused_data()
{
    QTest::addColumn<std::string>("prefix");
    QTest::addColumn<std::string>("unit");
    QTest::addColumn<int>("times");
    const std::string none;
    const std::string open = "<a>";
    const std::string deep = repeated("<a>", 255);
    const std::string named = " " + std::string(100000, 'n');
    QTest::newRow("elements") << open << std::string("<a/>") << 3000000;
    QTest::newRow("elements with end tags") << open << std::string("<a></a>") << 3000000;
    QTest::newRow("elements side by side") << none << std::string("<a/>") << 3000000;
    QTest::newRow("elements and texts") << open << std::string("<a/>x") << 2000000;
    QTest::newRow("comments") << open << std::string("<!---->") << 4000000;
    QTest::newRow("raw texts") << open << std::string("<![CDATA[]]>") << 4000000;
    QTest::newRow("unknown tags") << open << std::string("<>") << 10000000;
    QTest::newRow("declarations") << open << std::string("<?xml?>") << 4000000;
    QTest::newRow("words of a declaration")
        << std::string("<?xml ") << std::string("x ") << 20000000;
    QTest::newRow("elements deep within others") << deep << std::string("<a/>") << 200000;
    QTest::newRow("unknown tags deep within elements") << deep << std::string("<>") << 200000;
    QTest::newRow("up and down") << none << deep + repeated("</a>", 255) << 2000;
    QTest::newRow("attributes") << open << std::string("<a b=1 c=2 d=3 e=4/>") << 700000;
    QTest::newRow("elements of many attributes") << open << "<a" + attributes(256) + "/>" << 2000;
    QTest::newRow("one element of too many") << "<a" + attributes(10000) << std::string("/>") << 1;
    QTest::newRow("long names of attributes")
        << "<a" + named + "1=1" + repeated(named + "2=2", 250) << std::string("/>") << 1;
    QTest::newRow("broken references") << std::string("<a b='") << std::string("&") << 30000000;
    QTest::newRow("references") << open << std::string("&lt;") << 12000000;
}

void TestXmlGuard::textsThatTakeTooLongAreRefused()
{
    QFETCH(std::string, prefix);
    QFETCH(std::string, unit);
    QFETCH(int, times);
    const std::string text = prefix + repeated(unit, static_cast<std::size_t>(times));
    QVERIFY(text.size() < std::size_t(64) << 20);
    QCOMPARE(reasonAgainst(text), std::string("Error: parsing the file would take too long."));
}

void TestXmlGuard::theLimitIsTheLastEffortAllowed()
{
    XmlShape shape;
    shape.bytes = xmlMaxEffort;
    QCOMPARE(xmlRefusal(shape), std::string());
    ++shape.bytes;
    QVERIFY(!xmlRefusal(shape).empty());
}

void TestXmlGuard::measuringGrowsWithTheText_data()
{
    QTest::addColumn<std::string>("prefix");
    QTest::addColumn<std::string>("unit");
    QTest::newRow("open references") << std::string("<a>") << std::string("&#");
    QTest::newRow("references closed at the end") << std::string("<a b='") << std::string("&#x1");
    QTest::newRow("open comments") << std::string("<a>") << std::string("<!--");
    QTest::newRow("open raw texts") << std::string("<a>") << std::string("<![CDATA[");
    QTest::newRow("open quotes") << std::string() << std::string("<a b='");
    QTest::newRow("open declarations") << std::string() << std::string("<?xml encoding='");
    QTest::newRow("line ends") << std::string() << std::string("\r");
    QTest::newRow("brackets") << std::string("<a><!--") << std::string(">");
}

// A walk that looked at the rest again from each of its places would be quadratic.
void TestXmlGuard::measuringGrowsWithTheText()
{
    QFETCH(std::string, prefix);
    QFETCH(std::string, unit);
    const double growth = growthAtFourTimes(100000, [&](int times) {
        std::string text = prefix + repeated(unit, static_cast<std::size_t>(times)) + ";";
        const double start = processorSeconds();
        normalizeXml(text);
        xmlShape(text);
        return processorSeconds() - start;
    });
    QVERIFY2(growth < mostLinearGrowth, qPrintable(QString::number(growth)));
}

void TestXmlGuard::anEncodingNamedByReferencesIsRefused()
{
    QCOMPARE(reasonAgainst("<?xml encoding='UTF&#45;8'?><a/>"),
             std::string("Error parsing Declaration: the name of the encoding is not plain text."));
}

// Run with the address checks this shows that no such text makes the parser leave its buffer.
void TestXmlGuard::everyShortTextBehindAByteOrderMarkIsRefusedOrParsed()
{
    const std::string bytes = "<a/>&'\xC3\xE2\xEF\xF0";
    std::size_t tried = 0;
    for (std::size_t number = 0; number < 100000; ++number) {
        std::string text = "\xEF\xBB\xBF";
        for (std::size_t rest = number, i = 0; i < 5; ++i, rest /= bytes.size())
            text += bytes[rest % bytes.size()];
        TiXmlDocument document;
        std::string error;
        const bool parsed = parseXml(text, document, error);
        QCOMPARE(parsed, error.empty());
        ++tried;
    }
    QCOMPARE(tried, std::size_t(100000));
}

void TestXmlGuard::theParsersOwnDescriptionIsHandedOn()
{
    QCOMPARE(reasonAgainst(""), std::string("Error document empty."));
    QCOMPARE(reasonAgainst("<a b></a>"), std::string("Error reading Attributes."));
}

REGISTER_TEST(TestXmlGuard, NoApplication)
#include "tst_xml_guard.moc"
