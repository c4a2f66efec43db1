// SPDX-License-Identifier: MIT
#pragma once

#include <kit/program.h>

#include <string>

/// Tells once for each outage that and why nothing is published.
class Trouble
{
public:
    /// Nothing: it is over.
    void report(const std::string& trouble)
    {
        if (trouble.empty() == !fIsThere)
            return;
        fIsThere = !trouble.empty();
        kit::tell("tarvek-robot", fIsThere ? trouble + ". Trying again." : "publishing again.");
    }

private:
    bool fIsThere = false;
};
