// SPDX-License-Identifier: MIT
#include "simulation/action_text.h"

using namespace zo;

namespace {

std::string quoted(const SharedText& text)
{
    return text ? '"' + *text + '"' : "no problem";
}

struct Text
{
    std::string operator()(const LinkAction::LookUp& action) const
    {
        return "LookUp " + std::to_string(action.number);
    }
    std::string operator()(const LinkAction::Connect& action) const
    {
        return "Connect " + std::to_string(action.connection) + " to " +
               action.address.address().to_string();
    }
    std::string operator()(const LinkAction::StartTls& action) const
    {
        return "StartTls " + std::to_string(action.connection);
    }
    std::string operator()(const LinkAction::Write& action) const
    {
        return "Write " + std::to_string(action.connection) + ", bytes " +
               std::to_string(action.offset) + " to " +
               std::to_string(action.offset + action.size) + " of " +
               std::to_string(action.bytes->size());
    }
    std::string operator()(const LinkAction::Close& action) const
    {
        return "Close " + std::to_string(action.connection);
    }
    std::string operator()(const LinkAction::End& action) const
    {
        return "End of " + action.exchange->name() + ", " + quoted(action.problem);
    }
    std::string operator()(const LinkAction::Tell& action) const
    {
        const LinkCondition& condition = action.condition;
        const char* const state = condition.isUp ? "up" : condition.isRefused ? "refused" : "down";
        return std::string("Tell ") + state + ", " + quoted(condition.cause);
    }
};

} // namespace

std::string actionText(const LinkAction::Any& action)
{
    return std::visit(Text(), action);
}
