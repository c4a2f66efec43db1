// SPDX-License-Identifier: MIT
#pragma once

#include "link/link_actions.h"

#include <boost/asio/io_context.hpp>

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace zo {

/// The addresses of a host, or why there are none.
struct LookUpResult
{
    std::vector<LinkAddress> addresses;
    std::string problem;
};

/// Finds the addresses of `host` and runs `done` in `context` then, for as long as that runs.
/// Throws when memory runs out, or the threads.
///
/// A name is asked for on a detached thread that shares `context`: the system's look-up may hang
/// for minutes and cannot be cancelled, and neither a caller nor the end of a link may wait for it.
void lookUp(const std::shared_ptr<boost::asio::io_context>& context, const std::string& host,
            int port, std::function<void(const LookUpResult&)> done);

} // namespace zo
