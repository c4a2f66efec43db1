// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>
#include <utility>

namespace zo {

/// A text that several hold without a copy: handing it on needs no memory, and so cannot fail.
using SharedText = std::shared_ptr<const std::string>;

inline SharedText sharedText(std::string text)
{
    return std::make_shared<const std::string>(std::move(text));
}

} // namespace zo
