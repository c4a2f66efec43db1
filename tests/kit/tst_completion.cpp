// SPDX-License-Identifier: MIT
#include "support/guarded_test.h"
#include "support/register_test.h"

#include <kit/completion.h>
#include <kit/program.h>
#include <kit/usage_error.h>

#include <QtTest>

#include <sys/wait.h>
#include <unistd.h>

using Texts = std::vector<std::string>;

Q_DECLARE_METATYPE(Texts)

/// How a program tells a shell what may come next.
class TestCompletion : public GuardedTest
{
    Q_OBJECT

private slots:
    void optionsAreCompletedByTheirNames();
    void aValueIsAFileOrNothingKnown();
    void aValueIsOneOfItsChoices();
    void whatStandsBeforeTheLastWordIsRead();
    void behindTheOptionsIsAnOperand_data();
    void behindTheOptionsIsAnOperand();
    void aMistakeBeforeTheLastWordIsOne();
    void onlyAShellAsks();
    void whatFitsIsPrinted();
    void linesOfBashAreAnsweredInItsQuotes();
    void whatFailsSaysNothing();
    void nobodyWaitsForLong();

private:
    std::optional<kit::Completion> complete(const Texts& texts);

    bool fLoud = false;
    std::string fFile;
    std::string fName;
    Texts fRest;
};

namespace {

struct Answer
{
    int status;
    std::string text;
};

/// In a process of its own, which it may end.
Answer answerTo(const Texts& words, const kit::Complete& complete)
{
    int ends[2] = {-1, -1};
    if (::pipe(ends) != 0)
        return {-1, "no pipe"};
    const pid_t child = ::fork();
    if (child == 0) {
        ::dup2(ends[1], kit::standardOutput);
        ::_exit(kit::answerShell(words, complete));
    }
    ::close(ends[1]);
    std::string text;
    char letters[4096];
    for (ssize_t count = 0; (count = ::read(ends[0], letters, sizeof letters)) > 0;)
        text.append(letters, static_cast<std::size_t>(count));
    ::close(ends[0]);
    int status = 0;
    ::waitpid(child, &status, 0);
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, text};
}

kit::Completion keys(const Texts&)
{
    return {{"Arm/Elbow", "Arm/a b", "Arm/$(x)", "Arm/a:b", "Leg", "Arm/new\nline", "Arm/\x1b[2J",
             "Arm/\xc2\x9b", ""}};
}

kit::Option colorOption()
{
    static std::string color;
    kit::Option option = kit::textOption("--color", "COLOR", "", color);
    option.choices = {"red", "green"};
    return option;
}

} // namespace

std::optional<kit::Completion> TestCompletion::complete(const Texts& texts)
{
    kit::Words words(texts);
    auto completion = kit::completeOptions(
        words, {kit::flag("--loud", "", fLoud), kit::textOption("--file", "FILE", "", fFile),
                kit::textOption("--name", "NAME", "", fName), colorOption(),
                kit::settlingOption({"--help", "-h"}, "", [] {})});
    fRest = words.takeAll();
    return completion;
}

void TestCompletion::optionsAreCompletedByTheirNames()
{
    const Texts names{"--loud", "--file", "--name", "--color", "--help", "-h"};
    for (const char* word : {"-", "--", "--lo", "--nonsense"}) {
        const auto completion = complete({"--loud", word});
        QVERIFY(completion);
        QCOMPARE(completion->texts, names);
        QVERIFY(!completion->isFile);
    }
}

void TestCompletion::aValueIsAFileOrNothingKnown()
{
    for (const Texts& words : {Texts{"--file", ""}, Texts{"--file", "-x"}, Texts{"--file=a"}}) {
        const auto completion = complete(words);
        QVERIFY(completion && completion->isFile && completion->texts.empty());
    }
    for (const Texts& words : {Texts{"--name", "a"}, Texts{"--name="}, Texts{"--help", "a"}}) {
        const auto completion = complete(words);
        QVERIFY(completion && !completion->isFile && completion->texts.empty());
    }
}

void TestCompletion::aValueIsOneOfItsChoices()
{
    const auto apart = complete({"--color", ""});
    QVERIFY(apart && !apart->isFile);
    QCOMPARE(apart->texts, Texts({"red", "green"}));
    const auto together = complete({"--color=r"});
    QVERIFY(together && !together->isFile);
    QCOMPARE(together->texts, Texts({"--color=red", "--color=green"}));
}

void TestCompletion::whatStandsBeforeTheLastWordIsRead()
{
    QVERIFY(complete({"--name", "some", "--file=other", "--loud", "-"}));
    QVERIFY(fLoud);
    QCOMPARE(fName, std::string("some"));
    QCOMPARE(fFile, std::string("other"));
}

void TestCompletion::behindTheOptionsIsAnOperand_data()
{
    QTest::addColumn<Texts>("words");
    QTest::addColumn<Texts>("rest");
    QTest::newRow("nothing yet") << Texts{""} << Texts{""};
    QTest::newRow("begun") << Texts{"--loud", "a"} << Texts{"a"};
    QTest::newRow("another before") << Texts{"a", "--lo"} << Texts{"a", "--lo"};
    QTest::newRow("behind dashes") << Texts{"--", "-a"} << Texts{"--", "-a"};
    QTest::newRow("behind a dash") << Texts{"-", "-a"} << Texts{"-", "-a"};
    QTest::newRow("behind a flag") << Texts{"--loud", ""} << Texts{""};
}

void TestCompletion::behindTheOptionsIsAnOperand()
{
    QFETCH(Texts, words);
    QVERIFY(!complete(words));
    QTEST(fRest, "rest");
}

void TestCompletion::aMistakeBeforeTheLastWordIsOne()
{
    QVERIFY_EXCEPTION_THROWN(complete({"--nonsense", "a"}), kit::UsageError);
    QVERIFY_EXCEPTION_THROWN(complete({"--loud=x", "a"}), kit::UsageError);
}

void TestCompletion::onlyAShellAsks()
{
    QVERIFY(kit::isAskedToComplete({"--complete", ""}));
    QVERIFY(kit::isAskedToComplete({"--complete-line", "zo ", " "}));
    for (const Texts& words : {Texts{}, Texts{"--complete"}, Texts{"--complete-line", "zo"},
                               Texts{"get", "--complete", "a"}, Texts{"--complet", "a"}})
        QVERIFY(!kit::isAskedToComplete(words));
}

void TestCompletion::whatFitsIsPrinted()
{
    const Answer answer = answerTo({"--complete", "x", "Arm/"}, [](const Texts& words) {
        return words == Texts{"x", "Arm/"} ? keys(words) : kit::Completion{};
    });
    QCOMPARE(answer.status, 0);
    QCOMPARE(answer.text, std::string("Arm/Elbow\nArm/a b\nArm/$(x)\nArm/a:b\n"));
    const Answer file = answerTo({"--complete", "x"}, [](const Texts&) {
        return kit::Completion{{}, true};
    });
    QCOMPARE(file.status, kit::exitWantsFile);
    QCOMPARE(file.text, std::string());
}

void TestCompletion::linesOfBashAreAnsweredInItsQuotes()
{
    QCOMPARE(answerTo({"--complete-line", "zo get Arm/", " :"}, keys).text,
             std::string("Arm/Elbow\nArm/a\\ b\nArm/\\$\\(x\\)\nArm/a:b\n"));
    QCOMPARE(answerTo({"--complete-line", "zo get \"Arm/", " :\""}, keys).text,
             std::string("Arm/Elbow\nArm/a b\nArm/\\$(x)\nArm/a:b\n"));
    QCOMPARE(answerTo({"--complete-line", "zo get Arm/a:", " :"}, keys).text, std::string("b\n"));
    QCOMPARE(answerTo({"--complete-line", "z", " :"}, keys).text, std::string());
}

void TestCompletion::whatFailsSaysNothing()
{
    const Answer answer = answerTo(
        {"--complete", "x"}, [](const Texts&) -> kit::Completion { throw kit::UsageError("no"); });
    QCOMPARE(answer.status, 0);
    QCOMPARE(answer.text, std::string());
}

void TestCompletion::nobodyWaitsForLong()
{
    const Answer answer = answerTo({"--complete", "x"}, [](const Texts&) -> kit::Completion {
        while (true)
            ::pause();
    });
    QCOMPARE(answer.status, 0);
    QCOMPARE(answer.text, std::string());
}

REGISTER_TEST(TestCompletion, NoApplication)
#include "tst_completion.moc"
