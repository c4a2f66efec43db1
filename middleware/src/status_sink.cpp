#include "status_sink.h"

#include <zo/error.h>

#include <utility>

StatusSink::StatusSink(std::string command) : fCommand(std::move(command)) {}

void StatusSink::takeArray(const ReplyPlace&, int)
{
    refuse();
}

void StatusSink::takeText(const ReplyPlace&, std::string_view text)
{
    fAnswers.push_back({false, std::string(text)});
}

void StatusSink::takeInteger(const ReplyPlace&, long long)
{
    refuse();
}

void StatusSink::takeNil(const ReplyPlace&)
{
    refuse();
}

void StatusSink::takeError(const ReplyPlace&, std::string_view text)
{
    fAnswers.push_back({true, std::string(text)});
}

std::string StatusSink::nameOf(const ReplyPlace&) const
{
    return "the reply to " + fCommand;
}

void StatusSink::refuse() const
{
    throw ZoError("malformed reply to " + fCommand);
}
