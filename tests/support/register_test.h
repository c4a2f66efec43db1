// SPDX-License-Identifier: MIT
#pragma once

#include <QtTest>

#include <string>

/// A program runs one of its test classes: that whose subject is the program's first word.
/// The words behind it are the test framework's.
class TestSubject
{
public:
    using Run = int (*)(int argc, char** argv);

    TestSubject(const std::string& name, Run run);
};

/// "name" of the path ".../tst_name.cpp".
std::string subjectOfFile(const std::string& path);

/// Stands where an application object would: the test runs without any.
struct NoApplication
{
    NoApplication(int& /*argc*/, char** /*argv*/) {}
};

template <class Test, class Application>
int runTest(int argc, char** argv)
{
    const Application application(argc, argv);
    Test test;
    return QTest::qExec(&test, argc, argv);
}

/// Makes a test class the subject that its file is named after. It runs in an application object of
/// this class: QApplication, QCoreApplication, NoApplication, or one of the test's own.
#define REGISTER_TEST(TestClass, ApplicationClass)                                                 \
    static const TestSubject testSubject(subjectOfFile(__FILE__),                                  \
                                         runTest<TestClass, ApplicationClass>);
