#pragma once

namespace pg::cli {

class CommandContext;

// The run functions of the commands, one file each (democommand.cpp ...).
int runDemo(CommandContext &context);
int runArchive(CommandContext &context);

} // namespace pg::cli
