// SPDX-License-Identifier: MIT
#include "key_groups.h"
#include "noise.h"

#include <array>
#include <cstdio>

namespace {

using SkinValue = ZoValue (*)(std::uint32_t patch, double t);

double pressure(std::uint32_t patch, double t)
{
    return rounded(50 * (1 + smoothNoise(patch, t / 2)), 2);
}

struct SkinKey
{
    const char* name;
    SkinValue value;
};

constexpr double touchLimit = 75;

const std::array<SkinKey, 7> skinKeys = {{
    {"Pressure", [](std::uint32_t patch, double t) { return ZoValue(pressure(patch, t)); }},
    {"Temperature",
     [](std::uint32_t patch, double t) {
         return ZoValue(rounded(29 + 3 * smoothNoise(patch + 1, t / 30), 2));
     }},
    {"Touched",
     [](std::uint32_t patch, double t) { return ZoValue(pressure(patch, t) > touchLimit); }},
    {"Raw", [](std::uint32_t patch,
               double t) { return ZoValue(static_cast<std::int64_t>(40 * pressure(patch, t))); }},
    {"State",
     [](std::uint32_t patch, double t) {
         return ZoValue(pressure(patch, t) > touchLimit ? "touched" : "free");
     }},
    {"Shear",
     [](std::uint32_t patch, double t) { return ZoValue(rounded(smoothNoise(patch + 2, t), 3)); }},
    {"Direction",
     [](std::uint32_t patch, double t) {
         ZoValue array;
         array.arraySetSize(2);
         array[0] = ZoValue(rounded(smoothNoise(patch + 3, t), 3));
         array[1] = ZoValue(rounded(smoothNoise(patch + 4, t), 3));
         return array;
     }},
}};

std::string patchPrefix(int patch)
{
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "Skin/%05d/", patch);
    return text.data();
}

} // namespace

void addSkinKeys(KeyCollector& keys, int count)
{
    for (int patch = 1; keys.size() < count; ++patch) {
        const std::uint32_t seed = keys.seed();
        for (const SkinKey& key : skinKeys)
            keys.add(patchPrefix(patch) + key.name,
                     [seed, value = key.value](double t) { return value(seed, t); });
    }
}
