// SPDX-License-Identifier: MIT
#include "network/report.h"

#include <cstdio>

namespace {

std::string shown(const Report::Figure& figure)
{
    if (!figure)
        return "-";
    char text[32];
    std::snprintf(text, sizeof text, "%.*f", *figure < 1000 ? 2 : 0, *figure);
    return text;
}

} // namespace

std::string Target::text() const
{
    char text[32];
    std::snprintf(text, sizeof text, "%s %g", kind == Kind::AtMost ? "at most" : "at least", value);
    return text;
}

void Report::begin(const std::string& title)
{
    fTitle = title;
    std::printf("\n%s\n%-44s %10s %10s\n", title.c_str(), "", "followed", "plain");
}

void Report::line(const std::string& what, const Figure& followed, const Figure& plain,
                  const std::optional<Target>& target)
{
    const bool isMissed = target && (!followed || (fIsJudging && !target->isMet(*followed)));
    const std::string wanted = target ? "   " + target->text() : "";
    const std::string all = what + ": " + shown(followed) + wanted;
    std::printf("  %-42s %10s %10s%s%s\n", what.c_str(), shown(followed).c_str(),
                shown(plain).c_str(), wanted.c_str(), isMissed ? "  MISSED" : "");
    std::fflush(stdout);
    if (isMissed)
        fMissed.push_back(fTitle + ": " + all);
}

bool Report::end() const
{
    std::printf("\n%zu figures missed their target.\n", fMissed.size());
    for (const std::string& missed : fMissed)
        std::printf("  %s\n", missed.c_str());
    return fMissed.empty();
}
