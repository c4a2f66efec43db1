#include "support/guarded_test.h"
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
    void theMostAttributesOfOneElementAreCounted();
    void lineEndsAreNormalizedUpToTheFirstZeroByte();
    void textThatEndsInsideACharacterIsSeen_data();
    void textThatEndsInsideACharacterIsSeen();
    void asManyNestedElementsAsAllowedAreParsed();
    void deeplyNestedElementsAreRefused();
    void elementsNestedBehindSwallowedEndTagsAreRefused_data();
    void elementsNestedBehindSwallowedEndTagsAreRefused();
    void tooManyAttributesAreRefused();
    void tooManyTagsAreRefused();
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

void TestXmlGuard::theMostAttributesOfOneElementAreCounted()
{
    const XmlShape shape = xmlShape("<r x='a=b'><a b='1' c=2 d=\"=\"/><a b='1'></a></r>");
    QCOMPARE(shape.attributes, std::size_t(3));
    QCOMPARE(shape.tags, std::size_t(5));
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

void TestXmlGuard::tooManyAttributesAreRefused()
{
    QCOMPARE(reasonAgainst("<a" + attributes(xmlMaxAttributes) + "/>"), std::string());
    QCOMPARE(reasonAgainst("<a" + attributes(xmlMaxAttributes + 1) + "/>"),
             std::string("Error parsing Element: more than 256 attributes in one element."));
}

void TestXmlGuard::tooManyTagsAreRefused()
{
    QCOMPARE(
        reasonAgainst("<r>" + repeated("<>", xmlMaxTags) + "</r>"),
        std::string("Error parsing Element: more than 4000000 elements, comments and end tags."));
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

QTEST_APPLESS_MAIN(TestXmlGuard)
#include "tst_xml_guard.moc"
