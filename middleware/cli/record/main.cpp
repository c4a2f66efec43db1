// SPDX-License-Identifier: MIT
#include "complete.h"
#include "configuration.h"
#include "progress.h"
#include "record_arguments.h"
#include "recorder.h"
#include "status_lines.h"

#include <kit/background_output.h>
#include <kit/output.h>
#include <kit/password_file.h>
#include <kit/program.h>
#include <kit/signals.h>
#include <kit/usage_error.h>

#include <zo/zo.h>

#include <algorithm>
#include <future>
#include <optional>
#include <unistd.h>

namespace {

constexpr const char* programName = "zo record";

using kit::Tell;
using Wait = decltype(RecorderTime::wait);
using std::chrono::steady_clock;

/// Told to end before there was anything to record.
struct EndedEarly
{
};

void waitUntil(const std::function<bool()>& holds, const Wait& wait)
{
    constexpr std::chrono::milliseconds step{10};
    while (!holds())
        if (!wait(steady_clock::now() + step))
            throw EndedEarly();
}

/// The broker has a password of its own from then on.
boost::shared_ptr<ZoBroker> connect(RecordArguments& arguments, const Wait& wait, const Tell& tell)
{
    kit::Connection& connection = arguments.connection;
    if (!connection.warning.empty())
        tell(connection.warning);
    connection.options.follow = arguments.follow;
    auto broker = ZoBroker::begin("zo-record", connection.address.host, connection.address.port,
                                  connection.options);
    kit::wipe(connection.options.password);
    waitUntil([&] { return !broker->linkStatus().opening; }, wait);
    const ZoLinkStatus status = broker->linkStatus();
    if (!status.connected)
        throw ZoError(status.cause);
    return broker;
}

/// A slow robot takes its time for the list.
std::vector<std::string> keysOf(ZoMemoryProxy memory, ZoBroker& broker, const Wait& wait)
{
    auto keys = std::async(std::launch::async, [&memory] { return memory.getDataListName(); });
    try {
        waitUntil(
            [&] { return keys.wait_for(steady_clock::duration(0)) == std::future_status::ready; },
            wait);
    } catch (const EndedEarly&) {
        broker.disconnect(); // that call fails at once, and its thread is waited for
        throw;
    }
    return keys.get();
}

Columns allColumns(std::vector<std::string> keys)
{
    if (keys.empty())
        throw ZoError("the robot has no key to record");
    std::sort(keys.begin(), keys.end());
    return columnsOf(keys);
}

Columns columnsFor(const RecordArguments& arguments, Columns wanted, const Tell& tell)
{
    if (arguments.changes || arguments.keyNames)
        for (Column& column : wanted)
            column.name = column.key;
    Columns columns = withDistinctNames(wanted, tell);
    if (!arguments.changes)
        checkNoChanges(columns);
    return columns;
}

std::unique_ptr<Rows> rowsFor(const RecordArguments& arguments, const Columns& columns)
{
    if (arguments.changes)
        return std::make_unique<ChangeRows>(columns);
    return std::make_unique<TableRows>(columns);
}

std::unique_ptr<RowSink> sinkFor(const RecordArguments& arguments, const Rows& rows,
                                 const Tell& tell)
{
    const RecordingFile::Form form{rows.header(), rows.fields()};
    if (arguments.output.empty())
        return std::make_unique<StreamSink>(kit::standardOutput, form.header);
    if (arguments.rotation.isWanted())
        return std::make_unique<RotatingSink>(arguments.output, form, arguments.rotation, tell);
    const auto now = std::chrono::duration_cast<RecordingFile::Time>(
        std::chrono::system_clock::now().time_since_epoch());
    return std::make_unique<FileSink>(arguments.output, form, now, tell);
}

/// A recording that can begin.
struct PreparedRecording
{
    boost::shared_ptr<ZoBroker> broker;
    ZoMemoryProxy memory;
    RecorderPlan plan;
    std::unique_ptr<Rows> rows;
    std::unique_ptr<RowSink> sink;
};

PreparedRecording prepare(RecordArguments& arguments, const Wait& wait, const Tell& tell)
{
    Columns wanted = arguments.configuration.empty() ? columnsOf(arguments.keys)
                                                     : watchedColumns(arguments.configuration);
    auto broker = connect(arguments, wait, tell);
    ZoMemoryProxy memory(broker->getProxy("ZoMemory", 0));
    if (arguments.allKeys)
        wanted = allColumns(keysOf(memory, *broker, wait));
    const Columns columns = columnsFor(arguments, std::move(wanted), tell);
    RecorderPlan plan{
        {}, arguments.period, arguments.duration, arguments.gapRows, !arguments.status};
    for (const Column& column : columns)
        plan.keys.push_back(column.key);
    auto rows = rowsFor(arguments, columns);
    auto sink = sinkFor(arguments, *rows, tell);
    return {std::move(broker), std::move(memory), std::move(plan), std::move(rows),
            std::move(sink)};
}

/// Of lines for another program; nothing: there is none that waits for any.
using StatusOutput = std::optional<kit::BackgroundOutput>;

void offerEnd(const std::string& cause, StatusOutput& output)
{
    RecorderState ended;
    ended.phase = RecorderState::Phase::Ended;
    ended.cause = cause;
    output->offer(statusLine(ended));
}

/// Nothing when it is told to end meanwhile. A program that waits for lines hears of such a
/// beginning, and of one that failed, too.
std::optional<PreparedRecording> prepare(RecordArguments& arguments, const Wait& wait,
                                         const Tell& tell, StatusOutput& output)
{
    try {
        return prepare(arguments, wait, tell);
    } catch (const EndedEarly&) {
        if (output)
            offerEnd({}, output);
        else
            tell("told to end before it could begin: nothing is recorded");
        return {};
    } catch (const std::exception& error) {
        if (output)
            offerEnd(error.what(), output);
        throw;
    }
}

/// On a terminal that shows no rows themselves.
bool showsProgress(const RecordArguments& arguments)
{
    const bool showsRows = arguments.output.empty() && ::isatty(STDOUT_FILENO) != 0;
    return !arguments.quiet && !showsRows && ::isatty(STDERR_FILENO) != 0;
}

std::unique_ptr<RecordingView> viewFor(const RecordArguments& arguments, StatusOutput& output,
                                       kit::BackgroundOutput& errors)
{
    if (output)
        return std::make_unique<StatusLines>(
            [&output](const std::string& line) { output->offer(line); });
    if (!showsProgress(arguments))
        return std::make_unique<ProgressLine>(nullptr);
    // Most of what waits for a stopped terminal shall be messages.
    return std::make_unique<ProgressLine>([&errors](const std::string& text) {
        errors.offer(text, kit::BackgroundOutput::fMuch / 8);
    });
}

/// A recording does not outlive the program that asked to be told of it.
bool isReaderGone()
{
    try {
        kit::Output(kit::standardOutput).waitUntil({}); // that time is over
        return false;
    } catch (const kit::OutputClosed&) {
        return true;
    }
}

void record(RecordArguments& arguments, const kit::Signals& signals, const Tell& tell,
            kit::BackgroundOutput& errors)
{
    StatusOutput output;
    if (arguments.status)
        output.emplace(kit::standardOutput);
    const Wait wait = [&](RecorderTime::Point then) {
        return signals.waitUntil(then) == 0 && !(output && isReaderGone());
    };
    std::optional<PreparedRecording> recording = prepare(arguments, wait, tell, output);
    if (!recording)
        return;
    const auto view = viewFor(arguments, output, errors);
    const RecordedRobot robot{recording->memory,
                              [&recording] { return recording->broker->linkStatus(); }};
    Recorder(robot, *recording->rows, *recording->sink, *view, tell, {readClocks, wait})
        .run(recording->plan);
}

/// The terminal of the messages may be stopped, which must not hold up a recording or its end.
int record(RecordArguments arguments)
{
    const kit::Signals signals{SIGINT, SIGTERM, SIGHUP};
    std::signal(SIGXFSZ, SIG_IGN); // a limit of a file's size is an error of writing, too
    kit::BackgroundOutput errors(STDERR_FILENO);
    const auto tell = [&errors](const std::string& message) {
        errors.offer(kit::lineOf(programName, message));
    };
    const auto run = [&] {
        try {
            record(arguments, signals, tell, errors);
        } catch (const kit::UsageError& error) {
            tell(error.what()); // of what a file says, where help does not
            return kit::exitWrongUse;
        }
        return kit::exitDone;
    };
    return kit::runProgram(programName, run, tell);
}

int run(RecordArguments arguments)
{
    switch (arguments.action) {
    case RecordArguments::Action::Help:
        kit::print(recordHelp());
        break;
    case RecordArguments::Action::Version:
        kit::print(recordVersion());
        break;
    case RecordArguments::Action::Record:
        return record(std::move(arguments));
    }
    return kit::exitDone;
}

kit::Completion completeRecord(const std::vector<std::string>& words)
{
    kit::Connection connection;
    const auto completion = completeRecordOptions(words, connection);
    return completion ? *completion : kit::Completion{keysToChoose(connection)};
}

} // namespace

int main(int argc, char** argv)
{
    kit::prepareProcess();
    const std::vector<std::string> words(argv + 1, argv + argc);
    if (kit::isAskedToComplete(words))
        return kit::answerShell(words, completeRecord);
    return kit::runProgram(programName, [&] { return run(readRecordArguments(words)); });
}
