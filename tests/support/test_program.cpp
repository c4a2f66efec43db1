// SPDX-License-Identifier: MIT
// The main function of every test program.
#include "support/register_test.h"

#include <iostream>
#include <map>

namespace {

std::map<std::string, TestSubject::Run>& subjects()
{
    static std::map<std::string, TestSubject::Run> all;
    return all;
}

int complain(const std::string& program, const std::string& problem)
{
    std::cerr << program << ": " << problem << "; give one of these first:\n";
    for (const auto& subject : subjects())
        std::cerr << "  " << subject.first << '\n';
    return 2;
}

} // namespace

TestSubject::TestSubject(const std::string& name, Run run)
{
    subjects().emplace(name, run);
}

std::string subjectOfFile(const std::string& path)
{
    const std::string prefix = "tst_";
    const auto begin = path.rfind('/') + 1 + prefix.size();
    return path.substr(begin, path.rfind('.') - begin);
}

int main(int argc, char** argv)
{
    if (argc < 2)
        return complain(argv[0], "no subject");
    const auto subject = subjects().find(argv[1]);
    if (subject == subjects().end())
        return complain(argv[0], std::string("no subject \"") + argv[1] + '"');
    argv[1] = argv[0];
    return subject->second(argc - 1, argv + 1);
}
