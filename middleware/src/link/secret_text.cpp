// SPDX-License-Identifier: MIT
#include "link/secret_text.h"

#include <cstring>
#include <utility>

namespace zo {

namespace {

struct Secret
{
    explicit Secret(std::string secret) : text(std::move(secret)) {}
    ~Secret() { wipe(text); }
    Secret(const Secret&) = delete;
    Secret& operator=(const Secret&) = delete;

    std::string text;
};

} // namespace

void wipe(std::string& secret) noexcept
{
    secret.resize(secret.capacity()); // what it held once may stand behind its end
    ::explicit_bzero(secret.data(), secret.size());
    secret.clear();
}

SharedText secretText(std::string text)
{
    const auto secret = std::make_shared<Secret>(std::move(text));
    return SharedText(secret, &secret->text);
}

} // namespace zo
