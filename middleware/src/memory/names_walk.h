// SPDX-License-Identifier: MIT
#pragma once

#include "link/deadline.h"
#include "link/link_settings.h"
#include "link/shared_text.h"
#include "wire/reply_sink.h"

#include <zo/value.h>

#include <functional>
#include <memory>
#include <string>

namespace zo {

class Link;

/// The names that end with `ending` of all text keys of the robot behind `link`, each once: an
/// array of strings. Throws ZoError when it takes too long, or more than 64 MiB of memory.
///
/// The server goes through all keys that it has for it, those of other robots, too: a page of ten
/// thousand holds up its other clients for some milliseconds, and only the robot's own are sent.
ZoValue namesOf(Link& link, const std::string& ending);

/// Sends `bytes` to a robot, a request called `name`, and returns when `sink` has as many replies;
/// throws ZoError when they do not come by the deadline.
using AskForNames =
    std::function<void(const std::string& name, const SharedText& bytes, int replies,
                       const std::shared_ptr<ReplySink>& sink, const Deadline& deadline)>;

/// The same of the robot of `settings`, of which `ask` asks each page.
ZoValue namesOf(const LinkSettings& settings, const AskForNames& ask,
                const std::string& ending = {});

} // namespace zo
