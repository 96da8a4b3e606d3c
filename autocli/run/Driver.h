#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "autocli/base/Fault.h"
#include "autocli/base/Sink.h"
#include "autocli/line/Vocabulary.h"
#include "platform/autocli/AutoCli.h"

namespace autocli {

/// Runs the words of one command line against the tree: finds the node, parses, executes, writes.
/// `pluginFaults` are reported with whatever comes of it, and count when the line names what is not
/// there. Returns the exit status, the highest that applies. Flushes nothing.
int RunLine(const std::vector<std::string>& words, const Vocabulary& vocabulary,
            const std::vector<Fault>& pluginFaults, Sink& out, Sink& err);

/// The same for a tool of the program that answers like a command. `name` stands for its path; the
/// errors that it reports are of the kind `errors`.
int RunTool(const std::string& name, const std::shared_ptr<Corvex::AutoCli::CommandSpec>& command,
            std::vector<std::string> words, FaultKind errors, Sink& out, Sink& err);

/// Runs one line of a batch, whose answer is one JSON document on one line that begins with the
/// line's number. `pluginFaults` are reported only when the line names what is not there. Returns
/// the exit status. Flushes nothing.
int RunBatchLine(const std::vector<std::string>& words, std::size_t number,
                 const Vocabulary& vocabulary, const std::vector<Fault>& pluginFaults, Sink& out);
/// The answer to a line of a batch that cannot be run.
int RefuseBatchLine(std::size_t number, const std::string& message, Sink& out);

}  // namespace autocli
