// SPDX-License-Identifier: MIT
#pragma once

#include "simulation/agenda.h"

#include <cstdio>
#include <string>

/// Tells on the standard output what happens in a schedule, if someone wants to read it.
class Trace
{
public:
    Trace(const Agenda& agenda, bool isWanted)
        : fAgenda(agenda), fBegin(agenda.now()), fIsWanted(isWanted)
    {
    }

    /// `text` makes the line, and is called only when it is wanted.
    template <class Text>
    void line(Text text) const
    {
        if (fIsWanted)
            std::printf("%13.6f ms  %s\n", milliseconds(fAgenda.now() - fBegin),
                        std::string(text()).c_str());
    }

private:
    static double milliseconds(std::chrono::nanoseconds time)
    {
        return std::chrono::duration<double, std::milli>(time).count();
    }

    const Agenda& fAgenda;
    const Agenda::Time fBegin;
    const bool fIsWanted;
};
