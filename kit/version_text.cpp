// SPDX-License-Identifier: MIT
#include <kit/version_text.h>

namespace kit {

std::string programVersion()
{
    return GLIMMET_VERSION;
}

std::string versionText(const std::string& program, const std::vector<ZoVersion::Part>& parts)
{
    std::vector<ZoVersion::Part> all{{program, programVersion()}};
    all.insert(all.end(), parts.begin(), parts.end());
    all.emplace_back("libzo", ZoVersion::library());
    for (const ZoVersion::Part& part : ZoVersion::parts())
        all.push_back(part);
    std::string text;
    for (const ZoVersion::Part& part : all)
        text += part.first + ' ' + part.second + '\n';
    return text;
}

} // namespace kit
