// SPDX-License-Identifier: MIT
#include "complete.h"

#include "become_recorder.h"
#include "zo_command.h"

#include <kit/password_file.h>

#include <zo/zo.h>

kit::Completion completeZo(const std::vector<std::string>& words)
{
    UnfinishedZoCommand line = readUnfinishedZoCommand(words);
    if (line.command.action == ZoCommand::Action::Record) {
        line.command.operands.insert(line.command.operands.begin(), "--complete");
        becomeRecorder(std::move(line.command.operands));
    }
    if (line.wantsKey)
        line.completion.texts = keysToChoose(line.command.connection);
    return line.completion;
}

std::vector<std::string> keysToChoose(kit::Connection& connection)
{
    const kit::WipedAtEnd wiped(connection.options.password);
    kit::completeConnection(connection);
    const auto broker = ZoBroker::create("zo", connection.address.host, connection.address.port,
                                         connection.options);
    return ZoMemoryProxy(broker->getProxy("ZoMemory", 0)).getDataListName();
}
