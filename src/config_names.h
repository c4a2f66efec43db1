// SPDX-License-Identifier: MIT
#pragma once

/// Elements and attributes of a configuration file.
struct ConfigNames
{
    static constexpr char fRoot[] = "stm_viewer";
    static constexpr char fEntry[] = "stm_value";
    static constexpr char fColor[] = "color";

    // of an entry
    static constexpr char fName[] = "name";
    static constexpr char fAlias[] = "alias";
    static constexpr char fWatch[] = "watch";
    static constexpr char fGraph[] = "graph";

    // of a colour
    static constexpr char fRed[] = "red";
    static constexpr char fGreen[] = "green";
    static constexpr char fBlue[] = "blue";
};
